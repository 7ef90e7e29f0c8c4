# The dictionary, for people to read and extend, is part of the program.
qt_add_resources(${room} terms PREFIX "/terms" BASE "${CMAKE_SOURCE_DIR}/resources/terms" FILES
  "${CMAKE_SOURCE_DIR}/resources/terms/arabic-english.txt")
