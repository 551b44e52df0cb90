# Configure, build and run the consumer project against an installed prefix.
file(REMOVE_RECURSE ${BUILD})
execute_process(COMMAND ${CMAKE_COMMAND} -S ${SOURCE} -B ${BUILD} -G ${GENERATOR}
                        -DCMAKE_PREFIX_PATH=${PREFIX} RESULT_VARIABLE rc)
if(rc)
  message(FATAL_ERROR "consumer configure failed")
endif()
execute_process(COMMAND ${CMAKE_COMMAND} --build ${BUILD} RESULT_VARIABLE rc)
if(rc)
  message(FATAL_ERROR "consumer build failed")
endif()
# The installed libraries are found through the RPATH CMake gives installed targets
# only when set; be explicit for the run.
set(ENV{LD_LIBRARY_PATH} "${PREFIX}/lib:${PREFIX}/lib64:$ENV{LD_LIBRARY_PATH}")
execute_process(COMMAND ${BUILD}/consumer RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE err)
message(STATUS "${out}${err}")
if(rc)
  message(FATAL_ERROR "consumer run failed: ${rc}")
endif()
