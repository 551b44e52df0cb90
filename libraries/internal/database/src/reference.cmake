# The reference databases: the interface, the database class, its manager,
# the merged view and the loader of delivered sample content.
list(APPEND VN_DB_HEADERS
  src/vntovidatabaseinterface.h
  src/vndatabasetovi.h
  src/vndatabasetovimgr.h
  src/vndatabasetovimerged.h
  src/vndatabasetovisample.h)
list(APPEND VN_DB_PRIVATE src/vndatabasetovi_p.h)
list(APPEND VN_DB_SOURCES
  src/vntovidatabaseinterface.cpp
  src/vndatabasetovi.cpp
  src/vndatabasetovimgr.cpp
  src/vndatabasetovimerged.cpp
  src/vndatabasetovisample.cpp)
list(APPEND VN_DB_LIBS VN::Sedra VN::Application VN::ObjectModel VN::Plavo)
