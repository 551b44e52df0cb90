# Graph and overlay models.
vn_add_test(NAME database.models.graphdata SOURCES tst_vngraphdata.cpp tst_models_sample.h
  LIBS VN::Database VN::Plavo)
vn_add_test(NAME database.models.graph SOURCES tst_vndatamodelgraph.cpp tst_models_sample.h
  LIBS VN::Database VN::Plavo)
vn_add_test(NAME database.models.overlay WIDGETS SOURCES tst_vndatamodeloverlay.cpp tst_models_sample.h
  LIBS VN::Database)
# The table-shape spies are shared with the object model's table tests.
foreach(t tst_database_models_graph)
  if(TARGET ${t})
    target_include_directories(${t} PRIVATE ${PROJECT_SOURCE_DIR}/libraries/platform/objectmodel/tests)
  endif()
endforeach()
# The models over real reference databases, and the reference-database selector.
vn_add_test(NAME database.models.reference SOURCES tst_vndatamodelreference.cpp tst_models_sample.h
  LIBS VN::Database VN::Plavo)
vn_add_test(NAME database.models.selector WIDGETS SOURCES tst_objectselectordatabasemodel.cpp tst_models_sample.h
  tst_objectselectorview.h LIBS VN::Database VN::Plavo)
if(TARGET tst_database_models_selector)
  # The widget is driven over the sample reference content; its screenshot
  # lands at the top of the build folder, for a look by eye.
  target_compile_definitions(tst_database_models_selector PRIVATE
    VN_TOVI_SAMPLE_FILE="${PROJECT_SOURCE_DIR}/libraries/internal/database/data/tovi-sample.json"
    VN_SELECTOR_SCREENSHOT_DIR="${CMAKE_BINARY_DIR}")
endif()
