# The look is part of the program: colours, sizes and icons.
file(GLOB icons CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/resources/icons/*.svg")
qt_add_resources(${room} tonequill_design PREFIX "/" BASE "${CMAKE_SOURCE_DIR}/resources"
  FILES "${CMAKE_SOURCE_DIR}/resources/design/tokens.json" ${icons})
