file(GLOB_RECURSE qml_files CONFIGURE_DEPENDS RELATIVE "${CMAKE_CURRENT_SOURCE_DIR}" "${CMAKE_CURRENT_LIST_DIR}/*.qml")
foreach(file IN LISTS qml_files)
  get_filename_component(name "${file}" NAME)
  set_source_files_properties("${file}" PROPERTIES QT_RESOURCE_ALIAS "${name}")
endforeach()
# The types are registered by hand (MainWindow): a static plugin would be one more target for nothing.
qt_add_qml_module(${room} URI Tonequill VERSION 1.0 NO_PLUGIN
  DEPENDENCIES QtQuick QtQuick.Templates
  RESOURCE_PREFIX /qt/qml OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/qml/Tonequill" QML_FILES ${qml_files})

file(GLOB icons CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/resources/icons/*.svg")
qt_add_resources(${room} tonequill_design PREFIX "/" BASE "${CMAKE_SOURCE_DIR}/resources"
  FILES "${CMAKE_SOURCE_DIR}/resources/design/tokens.json" ${icons})

# What qmlcachegen writes shadows its own names; our flags are for our lines.
get_target_property(sources ${room} SOURCES)
list(FILTER sources INCLUDE REGEX "(qmlcache|qmltyperegistrations)")
set_source_files_properties(${sources} PROPERTIES COMPILE_OPTIONS "-w" SKIP_PRECOMPILE_HEADERS ON)
# The registrations include our headers by name alone.
file(GLOB folders LIST_DIRECTORIES true "${CMAKE_CURRENT_LIST_DIR}/*")
set_source_files_properties(${sources} PROPERTIES INCLUDE_DIRECTORIES "${folders}")

# A lint warning fails the build as a compiler's does.
set(lint_stamp "${CMAKE_CURRENT_BINARY_DIR}/qmllint.stamp")
add_custom_command(OUTPUT "${lint_stamp}" WORKING_DIRECTORY "${CMAKE_CURRENT_SOURCE_DIR}" VERBATIM
  COMMAND Qt6::qmllint -I "${CMAKE_BINARY_DIR}/qml" ${qml_files}
  COMMAND ${CMAKE_COMMAND} -E touch "${lint_stamp}"
  DEPENDS ${qml_files} "${CMAKE_CURRENT_LIST_DIR}/.qmllint.ini" "${CMAKE_BINARY_DIR}/qml/Tonequill/${room}.qmltypes")
add_custom_target(${room}_lint ALL DEPENDS "${lint_stamp}")
