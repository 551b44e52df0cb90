# Measured data in memory: multichannel data, ions, curves and the noise model.
vn_add_test(NAME objectmodel.data SOURCES tst_vnmcdata.cpp LIBS VN::ObjectModel)
