# The QML modules of the window's rooms.

# tonequill_qml_module(ROOM QML_FILES file... [DEPENDS room...]): makes the room's QML module
# of its types and its .qml files: ui/library is Tonequill.Library. Those of DEPENDS that
# have a module are what it may import.
#
# The module lies in the room's static library, without a plugin. Its types are made known
# by the list that tonequill_register_qml_modules() writes. A lint warning fails the build
# as a compiler's does.
function(tonequill_qml_module name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "QML_FILES;DEPENDS")
  string(REPLACE "/" "_" room "tonequill_${name}")
  tonequill_qml_uri(uri ${name})

  set(modules "")
  set(types "") # the descriptions that the tools read: of what it imports, and its own
  foreach(dependency IN LISTS arg_DEPENDS)
    string(REPLACE "/" "_" dependency "tonequill_${dependency}")
    get_target_property(module ${dependency} QT_QML_MODULE_URI)
    if(module)
      get_target_property(file ${dependency} QT_QML_MODULE_PLUGIN_TYPES_FILE)
      list(APPEND modules ${module})
      list(APPEND types "${file}")
    endif()
  endforeach()

  foreach(file IN LISTS arg_QML_FILES)
    get_filename_component(alias "${file}" NAME)
    set_source_files_properties("${file}" PROPERTIES QT_RESOURCE_ALIAS "${alias}")
  endforeach()
  string(REPLACE "." "/" path "${uri}")
  set(folder "${CMAKE_BINARY_DIR}/qml")
  qt_add_qml_module(${room} URI ${uri} VERSION 1.0 NO_PLUGIN
    DEPENDENCIES QtQuick QtQuick.Templates ${modules} IMPORT_PATH "${folder}"
    RESOURCE_PREFIX /qt/qml OUTPUT_DIRECTORY "${folder}/${path}" QML_FILES ${arg_QML_FILES})
  set_property(GLOBAL APPEND PROPERTY TONEQUILL_QML_MODULES ${uri})

  # What is compiled ahead of time knows the types that it was compiled for.
  get_target_property(sources ${room} SOURCES)
  foreach(source IN LISTS sources)
    if(source MATCHES "/qmlcache/.*_qml\\.cpp$")
      add_custom_command(OUTPUT "${source}" APPEND DEPENDS ${types})
    endif()
  endforeach()
  # What the tools write shadows its own names; our flags are for our lines. The
  # registrations include our headers by name alone.
  list(FILTER sources INCLUDE REGEX "(qmlcache|qmltyperegistrations)")
  get_target_property(headers ${room} HEADER_SET)
  set(folders "")
  foreach(header IN LISTS headers)
    get_filename_component(header_folder "${header}" DIRECTORY)
    list(APPEND folders "${header_folder}")
  endforeach()
  list(REMOVE_DUPLICATES folders)
  set_source_files_properties(${sources} PROPERTIES
    COMPILE_OPTIONS "-w" SKIP_PRECOMPILE_HEADERS ON INCLUDE_DIRECTORIES "${folders}")

  get_target_property(file ${room} QT_QML_MODULE_PLUGIN_TYPES_FILE)
  set(lint_stamp "${CMAKE_CURRENT_BINARY_DIR}/${room}_lint.stamp")
  add_custom_command(OUTPUT "${lint_stamp}" WORKING_DIRECTORY "${CMAKE_CURRENT_SOURCE_DIR}" VERBATIM
    COMMAND Qt6::qmllint -I "${folder}" ${arg_QML_FILES}
    COMMAND ${CMAKE_COMMAND} -E touch "${lint_stamp}"
    DEPENDS ${arg_QML_FILES} ${types} "${file}" ui/.qmllint.ini)
  add_custom_target(${room}_lint ALL DEPENDS "${lint_stamp}")
endfunction()

# tonequill_qml_uri(RESULT ROOM): ui/library is Tonequill.Library.
function(tonequill_qml_uri result room)
  get_filename_component(name "${room}" NAME)
  string(SUBSTRING "${name}" 0 1 first)
  string(SUBSTRING "${name}" 1 -1 rest)
  string(TOUPPER "${first}" first)
  set(${result} "Tonequill.${first}${rest}" PARENT_SCOPE)
endfunction()

# tonequill_register_qml_modules(TARGET): writes what ui/window/QmlModules.h declares, the
# one list of the type registrations of all modules, into a target. The linker leaves a
# registration that nobody names in its static library.
function(tonequill_register_qml_modules target)
  get_property(modules GLOBAL PROPERTY TONEQUILL_QML_MODULES)
  set(declarations "")
  set(calls "")
  foreach(module IN LISTS modules)
    string(REPLACE "." "_" symbol "qml_register_types_${module}")
    string(APPEND declarations "void ${symbol}();\n")
    string(APPEND calls "    ${symbol}();\n")
  endforeach()
  set(file "${CMAKE_CURRENT_BINARY_DIR}/QmlModules.cpp")
  file(CONFIGURE OUTPUT "${file}" CONTENT "// Written by the build, from the rooms that have QML.
#include \"ui/window/QmlModules.h\"

${declarations}
void tonequill::registerQmlModules()
{
${calls}}
")
  target_sources(${target} PRIVATE "${file}")
endfunction()
