# Measured data in memory: multichannel data and its ion channels, curves, the
# header of measured columns, and the noise record with its estimator.
list(APPEND headers src/vnmcdata.h src/vnion.h src/tdatacore.h src/vnheader.h src/tanalysisnoise.h
  src/vnmodelise.h)
list(APPEND sources src/vnmcdata.cpp src/vnion.cpp src/tdatacore.cpp src/vnheader.cpp src/vnmodelise.cpp)
