# Sample loops: GCC 12 vectorises loops of unknown length from -O3 on only.
set(loops SampleLoops.cpp analysis/MonoEnvelope.cpp effects/FeedbackDelay.cpp effects/HallReverb.cpp effects/Mixer.cpp export/AudioExporter.cpp)
list(TRANSFORM loops PREPEND "${CMAKE_CURRENT_LIST_DIR}/")
set_source_files_properties(${loops} PROPERTIES COMPILE_OPTIONS "$<$<CONFIG:Release>:-O3>")
# The same bytes on every machine: no product and sum are fused into one rounding.
target_compile_options(${room} PRIVATE -ffp-contract=off)
