# Graph and overlay models.
vn_add_test(NAME database.models.graphdata SOURCES tst_vngraphdata.cpp LIBS VN::Database VN::Plavo)
