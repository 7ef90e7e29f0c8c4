# The default network is part of the program: it works on a fresh machine.
qt_add_resources(${room} classifier PREFIX "/classifier" BASE "${CMAKE_SOURCE_DIR}/resources/classifier"
  OPTIONS --no-compress FILES
  "${CMAKE_SOURCE_DIR}/resources/classifier/network.onnx"
  "${CMAKE_SOURCE_DIR}/resources/classifier/classifier.json")
set_source_files_properties("${CMAKE_CURRENT_LIST_DIR}/listening/MelFrontEnd.cpp" PROPERTIES COMPILE_OPTIONS "$<$<CONFIG:Release>:-O3>")
