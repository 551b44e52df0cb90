# Graph and overlay models: the graph description with its XML, and the
# reference value pair they share with the reference database.
list(APPEND VN_DB_HEADERS
  src/vntovidata.h
  src/models/vngraphdata.h)
list(APPEND VN_DB_SOURCES
  src/vntovidata.cpp
  src/models/vngraphdata.cpp)
list(APPEND VN_DB_LIBS VN::Plavo)
