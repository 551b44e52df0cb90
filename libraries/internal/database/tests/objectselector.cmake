vn_add_test(NAME database.ttree SOURCES tst_ttree.cpp LIBS VN::Database)
