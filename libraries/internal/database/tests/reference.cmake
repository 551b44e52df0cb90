vn_add_test(NAME database.reference.lifecycle SOURCES tst_vndatabasetovi.cpp LIBS VN::Database)
vn_add_test(NAME database.reference.objects SOURCES tst_vndatabasetoviobjects.cpp LIBS VN::Database)
vn_add_test(NAME database.reference.merged SOURCES tst_vndatabasetovimerged.cpp LIBS VN::Database)
