# Graph and overlay models: the graph description with its XML, the table
# models through which graphs and overlays are edited, the graph document,
# and the reference value pair they share with the reference database.
list(APPEND VN_DB_HEADERS
  src/vntovidata.h
  src/models/vngraphdata.h
  src/models/vndatamodelgraph.h
  src/models/vndatamodeloverlay.h
  src/models/vngraphdocument.h)
list(APPEND VN_DB_SOURCES
  src/vntovidata.cpp
  src/models/vngraphdata.cpp
  src/models/vndatamodelgraph.cpp
  src/models/vndatamodeloverlay.cpp
  src/models/vngraphdocument.cpp)
list(APPEND VN_DB_LIBS VN::Plavo VN::ObjectModel VN::Sedra)
