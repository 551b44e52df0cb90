# Graph and overlay models.
vn_add_test(NAME database.models.graphdata SOURCES tst_vngraphdata.cpp LIBS VN::Database VN::Plavo)
vn_add_test(NAME database.models.graph SOURCES tst_vndatamodelgraph.cpp LIBS VN::Database VN::Plavo)
vn_add_test(NAME database.models.overlay SOURCES tst_vndatamodeloverlay.cpp LIBS VN::Database)
