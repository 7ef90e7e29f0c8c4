# The tables, for people to read and extend, are part of the program.
qt_add_resources(${room} planning PREFIX "/planning" BASE "${CMAKE_SOURCE_DIR}/resources/planning" FILES
  "${CMAKE_SOURCE_DIR}/resources/planning/intents.txt"
  "${CMAKE_SOURCE_DIR}/resources/planning/captions.txt"
  "${CMAKE_SOURCE_DIR}/resources/planning/topics.txt")
