# Sample loops: GCC 12 vectorises loops of unknown length from -O3 on only.
set_source_files_properties("${CMAKE_CURRENT_LIST_DIR}/SampleFormats.cpp" PROPERTIES COMPILE_OPTIONS "$<$<CONFIG:Release>:-O3>")
