# Parameter values: the reference database's parameters computed for the
# analyses of a project from identified compounds, and stored with them.
list(APPEND VN_DB_HEADERS src/vnparametervalues.h)
list(APPEND VN_DB_SOURCES src/vnparametervalues.cpp)
list(APPEND VN_DB_LIBS VN::Sedra VN::Geochem)
