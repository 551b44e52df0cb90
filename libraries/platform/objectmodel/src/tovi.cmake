# Reference kinds: the objects of the reference databases.
list(APPEND headers
  src/vnobject2tovi.h src/vnobject2tovicompound.h src/vnobject2tovieic.h src/vnobject2toviratio.h
  src/vnobject2tovijoint.h src/vnobject2tovigraph.h src/vnobject2tovioverlay.h)
list(APPEND sources
  src/vnobject2tovi.cpp src/vnobject2tovicompound.cpp src/vnobject2tovieic.cpp src/vnobject2toviratio.cpp
  src/vnobject2tovijoint.cpp src/vnobject2tovigraph.cpp src/vnobject2tovioverlay.cpp)
