vn_add_test(NAME objectmodel.tovi SOURCES tst_vnobject2tovi.cpp LIBS VN::ObjectModel)
