# Reference-database kinds: the reference connector, records and mappers.
set(_tovi_names
  theadertoviconnector ttovibatch ttoviabstractmapper
  ttovicompound ttoviratio ttovieic ttovijoint ttovialias ttovigraph ttovioverlay
  ttovicompoundmapper ttoviratiomapper ttovieicmapper ttovijointmapper ttovialiasmapper
  ttovigraphmapper ttovioverlaymapper)
foreach(_n IN LISTS _tovi_names)
  list(APPEND headers src/tovi/${_n}.h)
  list(APPEND sources src/tovi/${_n}.cpp)
endforeach()
# The library target is made after this fragment: add our folder to its
# include path once it exists.
cmake_language(DEFER CALL target_include_directories vnsedra PUBLIC
  $<BUILD_INTERFACE:${CMAKE_CURRENT_SOURCE_DIR}/src/tovi>)
