# Sample loops: GCC 12 vectorises loops of unknown length from -O3 on only.
set(loops SampleLoops.cpp analysis/MonoEnvelope.cpp effects/FeedbackDelay.cpp effects/HallReverb.cpp effects/Mixer.cpp export/AudioExporter.cpp)
list(TRANSFORM loops PREPEND "${CMAKE_CURRENT_LIST_DIR}/")
set_source_files_properties(${loops} PROPERTIES COMPILE_OPTIONS "$<$<CONFIG:Release>:-O3>")
