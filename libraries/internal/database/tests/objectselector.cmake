vn_add_test(NAME database.ttree SOURCES tst_ttree.cpp LIBS VN::Database)
vn_add_test(NAME database.objectselector.model SOURCES tst_objectselectormodel.cpp tst_objectselectorsample.h LIBS VN::Database)
vn_add_test(NAME database.objectselector.ctrl SOURCES tst_objectselectorctrl.cpp tst_objectselectorsample.h LIBS VN::Database)
