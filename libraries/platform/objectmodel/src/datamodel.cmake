# Table models of the object model: the application's data table.
list(APPEND headers src/vndatamodel.h)
list(APPEND sources src/vndatamodel.cpp)
