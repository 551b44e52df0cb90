vn_add_test(NAME database.ttree SOURCES tst_ttree.cpp LIBS VN::Database)
vn_add_test(NAME database.objectselector.model SOURCES tst_objectselectormodel.cpp tst_objectselectorsample.h LIBS VN::Database)
vn_add_test(NAME database.objectselector.ctrl SOURCES tst_objectselectorctrl.cpp tst_objectselectorsample.h LIBS VN::Database)
vn_add_test(NAME database.objectselector.editor WIDGETS SOURCES tst_objectselectoreditor.cpp tst_objectselectorsample.h tst_objectselectorview.h LIBS VN::Database)
if(TARGET tst_database_objectselector_editor)
  # The screenshots land at the top of the build folder, for a look by eye.
  target_compile_definitions(tst_database_objectselector_editor PRIVATE VN_SELECTOR_SCREENSHOT_DIR="${CMAKE_BINARY_DIR}")
endif()
vn_add_test(NAME database.objectselector.treemodel WIDGETS SOURCES tst_objectselectortreemodel.cpp tst_objectselectorsample.h LIBS VN::Database)
