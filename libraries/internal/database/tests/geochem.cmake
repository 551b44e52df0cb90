# Peaks stored as peak detections, and identification of the reference
# compounds in synthetic runs whose peaks are known.
vn_add_test(NAME database.geochem.peaks SOURCES tst_vndatabasepeaks.cpp tst_acquisitionproject.h
  tst_vndatabasetovihelpers.h LIBS VN::Database VN::Application VN::FileFormats VN::Geochem)
target_compile_definitions(tst_database_geochem_peaks PRIVATE
  VN_TOVI_SAMPLE_FILE="${PROJECT_SOURCE_DIR}/libraries/internal/database/data/tovi-sample.json")
