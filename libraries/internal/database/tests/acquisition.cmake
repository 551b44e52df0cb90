# Measured data of the project database: new analyses from multichannel data
# and instrument exports, signals, spectra, noise and lazy multichannel data.
vn_add_test(NAME database.acquisition.analyses SOURCES tst_vndatabaseacquisition.cpp tst_acquisitionproject.h
  LIBS VN::Database VN::Application VN::FileFormats VN::Plavo)
vn_add_test(NAME database.acquisition.dynamic SOURCES tst_vnmcdatadynamic.cpp tst_acquisitionproject.h
  LIBS VN::Database VN::Application VN::FileFormats)
