# Helpers shared by every library, test and app of the project.

set(VN_INSTALL_INCLUDEDIR ${CMAKE_INSTALL_INCLUDEDIR}/vndatabase)
set(VN_INSTALL_CMAKEDIR ${CMAKE_INSTALL_LIBDIR}/cmake/VNDatabase)

function(vn_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra)
  if(VN_WERROR)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
endfunction()

if(VN_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-omit-frame-pointer -fno-sanitize-recover=undefined)
  add_link_options(-fsanitize=address,undefined)
  # The same options as the sanitize test preset, so that a plain
  # `ctest --test-dir build-sanitize` judges the way CI does.
  set(VN_SANITIZER_TEST_ENV
    "ASAN_OPTIONS=detect_leaks=1:abort_on_error=1"
    "UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1"
    "LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/cmake/lsan.supp:print_suppressions=0")
else()
  set(VN_SANITIZER_TEST_ENV "")
endif()

# vn_add_library(NAME <target> ALIAS <Short> SOURCES ... [PUBLIC_HEADERS ...]
#                [PUBLIC_LIBS ...] [PRIVATE_LIBS ...])
# Makes a shared library VN::<Short>, its generated export header
# <target>_export.h (macro <TARGET>_EXPORT), and installs its public headers flat
# under include/vndatabase/.
function(vn_add_library)
  cmake_parse_arguments(A "" "NAME;ALIAS" "SOURCES;PUBLIC_HEADERS;PUBLIC_LIBS;PRIVATE_LIBS;INCLUDE_DIRS" ${ARGN})
  add_library(${A_NAME} SHARED ${A_SOURCES} ${A_PUBLIC_HEADERS})
  add_library(VN::${A_ALIAS} ALIAS ${A_NAME})
  set_target_properties(${A_NAME} PROPERTIES EXPORT_NAME ${A_ALIAS}
    VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR})
  string(TOUPPER ${A_NAME} upper)
  generate_export_header(${A_NAME} BASE_NAME ${A_NAME}
    EXPORT_FILE_NAME ${CMAKE_CURRENT_BINARY_DIR}/generated/${A_NAME}_export.h)
  if(NOT A_INCLUDE_DIRS)
    set(A_INCLUDE_DIRS ${CMAKE_CURRENT_SOURCE_DIR}/src)
  endif()
  foreach(dir IN LISTS A_INCLUDE_DIRS)
    target_include_directories(${A_NAME} PUBLIC $<BUILD_INTERFACE:${dir}>)
  endforeach()
  target_include_directories(${A_NAME} PUBLIC
    $<BUILD_INTERFACE:${CMAKE_CURRENT_BINARY_DIR}/generated>
    $<INSTALL_INTERFACE:${VN_INSTALL_INCLUDEDIR}>)
  target_link_libraries(${A_NAME} PUBLIC ${A_PUBLIC_LIBS} PRIVATE ${A_PRIVATE_LIBS})
  vn_warnings(${A_NAME})
  install(TARGETS ${A_NAME} EXPORT VNDatabaseTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
  install(FILES ${A_PUBLIC_HEADERS} ${CMAKE_CURRENT_BINARY_DIR}/generated/${A_NAME}_export.h
    DESTINATION ${VN_INSTALL_INCLUDEDIR})
endfunction()

# vn_add_test(NAME <ctest name> SOURCES ... LIBS ... [LABELS ...] [WIDGETS])
# One Qt Test executable registered with CTest. Widget tests run offscreen.
function(vn_add_test)
  cmake_parse_arguments(A "WIDGETS" "NAME" "SOURCES;LIBS;LABELS" ${ARGN})
  if(NOT BUILD_TESTING)
    return()
  endif()
  string(REPLACE "." "_" exe "tst_${A_NAME}")
  add_executable(${exe} ${A_SOURCES})
  target_link_libraries(${exe} PRIVATE Qt5::Test ${A_LIBS})
  # Helpers that tests of every library share (file reads and writes...).
  target_include_directories(${exe} PRIVATE ${PROJECT_SOURCE_DIR}/tests/support)
  vn_warnings(${exe})
  add_test(NAME ${A_NAME} COMMAND ${exe})
  set(env QT_QPA_PLATFORM=offscreen QT_FORCE_STDERR_LOGGING=1 ${VN_SANITIZER_TEST_ENV})
  set_tests_properties(${A_NAME} PROPERTIES ENVIRONMENT "${env}" TIMEOUT 300)
  if(A_LABELS)
    set_tests_properties(${A_NAME} PROPERTIES LABELS "${A_LABELS}")
  endif()
endfunction()

function(vn_install_package)
  install(EXPORT VNDatabaseTargets NAMESPACE VN:: DESTINATION ${VN_INSTALL_CMAKEDIR})
  configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/VNDatabaseConfig.cmake.in
    ${PROJECT_BINARY_DIR}/VNDatabaseConfig.cmake INSTALL_DESTINATION ${VN_INSTALL_CMAKEDIR})
  write_basic_package_version_file(${PROJECT_BINARY_DIR}/VNDatabaseConfigVersion.cmake
    COMPATIBILITY SameMajorVersion)
  install(FILES ${PROJECT_BINARY_DIR}/VNDatabaseConfig.cmake
    ${PROJECT_BINARY_DIR}/VNDatabaseConfigVersion.cmake DESTINATION ${VN_INSTALL_CMAKEDIR})
endfunction()
