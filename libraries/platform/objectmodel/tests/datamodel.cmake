# The application's data table.
vn_add_test(NAME objectmodel.datamodel SOURCES tst_vndatamodel.cpp tst_shapespies.h LIBS VN::ObjectModel)
