# Tests of the reference kinds of the storage library.
vn_add_test(NAME sedra.tovi.storage SOURCES tovi_storage_test.cpp tovi_testdatabase.h sedra_testproject.h
  LIBS VN::Sedra Qt5::Sql)
vn_add_test(NAME sedra.tovi.graph SOURCES tovi_graph_test.cpp tovi_testdatabase.h sedra_testproject.h
  LIBS VN::Sedra Qt5::Sql)
