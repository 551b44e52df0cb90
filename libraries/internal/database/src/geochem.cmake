# Peaks and identification on the project's analyses: the chromatograms read
# from acquisition files, the peaks kept as peak detections.
list(APPEND VN_DB_HEADERS src/vnchromatogram.h)
list(APPEND VN_DB_SOURCES src/vndatabasepeaks.cpp)
list(APPEND VN_DB_LIBS VN::Geochem VN::FileFormats VN::Sedra)
