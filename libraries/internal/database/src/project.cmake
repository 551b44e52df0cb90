# The project database: the facade over the storage library's database, the
# database factory and the shared mapper factory.
list(APPEND VN_DB_HEADERS src/vndatabase.h src/vndatabasefactory.h)
list(APPEND VN_DB_SOURCES src/vndatabase.cpp src/vndatabasefactory.cpp)
list(APPEND VN_DB_PRIVATE src/vndatabase_p.h)
list(APPEND VN_DB_LIBS VN::Sedra VN::Application VN::ObjectModel)
