vn_add_test(NAME database.parameters SOURCES tst_vnparametervalues.cpp LIBS VN::Database)
