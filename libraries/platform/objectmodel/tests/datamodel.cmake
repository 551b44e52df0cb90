# The application's data table.
vn_add_test(NAME objectmodel.datamodel SOURCES tst_vndatamodel.cpp LIBS VN::ObjectModel)
