vn_add_test(NAME database.project.scandir SOURCES tst_vndatabasescandir.cpp LIBS VN::Database)
vn_add_test(NAME database.project.factory SOURCES tst_vndatabasefactory.cpp LIBS VN::Database)
vn_add_test(NAME database.project.lifecycle SOURCES tst_vndatabase.cpp LIBS VN::Database)
