# Measured data of the project database: multichannel data read lazily from
# acquisition files, the import layer, and the facade's acquisition operations.
list(APPEND VN_DB_HEADERS src/vnmcdatadynamic.h src/vndatabaseimport.h)
list(APPEND VN_DB_SOURCES src/vnmcdatadynamic.cpp src/vndatabaseimport.cpp src/vndatabaseacquisition.cpp)
list(APPEND VN_DB_LIBS VN::FileFormats VN::Plavo VN::ObjectModel VN::Sedra)
