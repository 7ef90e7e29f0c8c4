# How every target of the project is made: one set of flags, one shape of room.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")
set(CMAKE_AUTOMOC ON)
# moc reads headers, not libraries: nothing waits for those to be built.
set(CMAKE_AUTOGEN_ORIGIN_DEPENDS OFF)

# Everything that our own code is compiled with. Imported targets are system
# includes, so the warnings are about our lines only.
add_library(tonequill_flags INTERFACE)
target_compile_options(tonequill_flags INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Wold-style-cast -Woverloaded-virtual
  -Wcast-qual -Wformat=2 -Wimplicit-fallthrough -Werror)
# The same samples on every machine: no product and sum are fused into one rounding.
target_compile_options(tonequill_flags INTERFACE -ffp-contract=off)
# SDL's users must have it, and a precompiled header is for equal definitions only.
target_compile_definitions(tonequill_flags INTERFACE _REENTRANT)
target_compile_definitions(tonequill_flags INTERFACE
  QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_FOREACH QT_NO_KEYWORDS
  QT_DISABLE_DEPRECATED_BEFORE=0x060400)
if(TONEQUILL_SANITIZE)
  # The instrumentation hides from GCC what it would need to see for the first; the
  # second tells of the fences in Qt's headers, which the thread sanitizer doesn't know.
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    target_compile_options(tonequill_flags INTERFACE -Wno-maybe-uninitialized -Wno-tsan)
  endif()
  target_compile_options(tonequill_flags INTERFACE
    -fsanitize=${TONEQUILL_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(tonequill_flags INTERFACE -fsanitize=${TONEQUILL_SANITIZE})
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
  # clang 14 has the coroutines but not the macro by which libstdc++ asks for them.
  target_compile_definitions(tonequill_flags INTERFACE __cpp_impl_coroutine=201902L)
  target_compile_options(tonequill_flags INTERFACE -Wno-builtin-macro-redefined)
  if(TONEQUILL_SANITIZE)
    # It puts data before functions, which clang 14 cannot do for coroutines.
    target_compile_options(tonequill_flags INTERFACE -fno-sanitize=function)
  endif()
endif()
find_program(TONEQUILL_MOLD mold)
if(TONEQUILL_MOLD)
  target_link_options(tonequill_flags INTERFACE -fuse-ld=mold)
endif()

# tonequill_room(NAME [DEPENDS room...] [INSIDE folder...] [LINKS target...] [PRIVATE_LINKS target...])
#
# Makes the library tonequill_NAME (alias Tonequill::NAME, with _ for /) of the folder NAME
# below this one: all its sources, those in its folders as well, but not those of a room
# that is declared for a folder of it.
#  - DEPENDS are the rooms that it may include. They stand above it in the list, and are
#    named in full: what those depend on is not inherited.
#  - INSIDE are folders of the room that nobody else may include.
#  - LINKS are the libraries that its headers show; PRIVATE_LINKS those that they hide.
# What else a room needs (resources, flags of single files) stands in its Room.cmake,
# where ${room} is the target. A room with .qml files is also a QML module.
# Every header outside INSIDE is compiled alone (all_verify_interface_header_sets).
function(tonequill_room name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "DEPENDS;INSIDE;LINKS;PRIVATE_LINKS")
  get_property(rooms GLOBAL PROPERTY TONEQUILL_ROOMS)
  foreach(dependency IN LISTS arg_DEPENDS)
    if(NOT dependency IN_LIST rooms)
      message(FATAL_ERROR "${name} depends on ${dependency}, which is not a room above it.")
    endif()
  endforeach()
  set(folder "${CMAKE_CURRENT_SOURCE_DIR}/${name}")
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS "${folder}/*.cpp")
  file(GLOB_RECURSE headers CONFIGURE_DEPENDS "${folder}/*.h")
  foreach(other IN LISTS rooms)
    if("${name}/" MATCHES "^${other}/")
      message(FATAL_ERROR "${name} is a folder of the room ${other}: declare it above that.")
    endif()
    list(FILTER sources EXCLUDE REGEX "^${CMAKE_CURRENT_SOURCE_DIR}/${other}/")
    list(FILTER headers EXCLUDE REGEX "^${CMAKE_CURRENT_SOURCE_DIR}/${other}/")
  endforeach()
  set(faces ${headers})
  foreach(inside IN LISTS arg_INSIDE)
    list(FILTER faces EXCLUDE REGEX "^${folder}/${inside}/")
  endforeach()
  set(hidden ${headers})
  list(REMOVE_ITEM hidden ${faces})

  string(REPLACE "/" "_" room "tonequill_${name}")
  string(REPLACE "tonequill_" "Tonequill::" alias "${room}")
  add_library(${room} STATIC ${sources})
  add_library(${alias} ALIAS ${room})
  target_sources(${room}
    PUBLIC FILE_SET HEADERS BASE_DIRS "${CMAKE_CURRENT_SOURCE_DIR}" FILES ${faces}
    PRIVATE ${hidden})
  target_include_directories(${room} PUBLIC "${CMAKE_CURRENT_SOURCE_DIR}")
  foreach(dependency IN LISTS arg_DEPENDS)
    string(REPLACE "/" "_" dependency "Tonequill::${dependency}")
    target_link_libraries(${room} PUBLIC ${dependency})
  endforeach()
  target_link_libraries(${room} PUBLIC ${arg_LINKS} PRIVATE ${arg_PRIVATE_LINKS} tonequill_flags)
  set_target_properties(${room} PROPERTIES VERIFY_INTERFACE_HEADER_SETS ON)
  tonequill_moc_follows_globs(${room})

  set_property(GLOBAL APPEND PROPERTY TONEQUILL_ROOMS ${name})
  set_property(GLOBAL PROPERTY TONEQUILL_INSIDE_LINKS_${name} ${arg_PRIVATE_LINKS})
  file(GLOB_RECURSE qml_files CONFIGURE_DEPENDS RELATIVE "${CMAKE_CURRENT_SOURCE_DIR}" "${folder}/*.qml")
  if(qml_files)
    tonequill_qml_module(${name} QML_FILES ${qml_files} DEPENDS ${arg_DEPENDS})
  endif()
  include("${folder}/Room.cmake" OPTIONAL)
  tonequill_precompile(${room} sources)
endfunction()

# tonequill_rooms_of(RESULT SUBSYSTEM [INSIDE]): the targets of the rooms of a top folder;
# with INSIDE also the libraries that they hide, for the tests of what lies inside.
function(tonequill_rooms_of result subsystem)
  cmake_parse_arguments(PARSE_ARGV 2 arg "INSIDE" "" "")
  get_property(rooms GLOBAL PROPERTY TONEQUILL_ROOMS)
  list(FILTER rooms INCLUDE REGEX "^${subsystem}(/|$)")
  set(targets "")
  foreach(name IN LISTS rooms)
    string(REPLACE "/" "_" target "Tonequill::${name}")
    list(APPEND targets ${target})
    if(arg_INSIDE)
      get_property(links GLOBAL PROPERTY TONEQUILL_INSIDE_LINKS_${name})
      list(APPEND targets ${links})
    endif()
  endforeach()
  list(REMOVE_DUPLICATES targets)
  set(${result} ${targets} PARENT_SCOPE)
endfunction()

# Makes moc look again when the list of files has changed: its rule depends only
# on the files that it saw the last time (CMake 3.25 with Ninja).
function(tonequill_moc_follows_globs target)
  get_target_property(sources ${target} SOURCES)
  get_target_property(headers ${target} HEADER_SET)
  if(NOT "${sources};${headers}" STREQUAL "${${target}_FILES}")
    file(REMOVE "${CMAKE_CURRENT_BINARY_DIR}/${target}_autogen/timestamp")
    set(${target}_FILES "${sources};${headers}" CACHE INTERNAL "The files that moc saw")
  endif()
endfunction()

# tonequill_test(SUBSYSTEM [LINKS target...]): the GoogleTest program test_SUBSYSTEM of
# tests/SUBSYSTEM and its folders, linked to all rooms of that subsystem.
function(tonequill_test name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "LINKS")
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/${name}/*.cpp")
  if(NOT sources)
    return()
  endif()
  tonequill_rooms_of(rooms ${name} INSIDE)
  add_executable(test_${name} ${sources})
  target_link_libraries(test_${name} PRIVATE tonequill_test_support ${rooms} ${arg_LINKS} tonequill_flags)
  tonequill_moc_follows_globs(test_${name})
  tonequill_precompile(test_${name} tests)
  add_test(NAME ${name} COMMAND test_${name})
  set_tests_properties(${name} PROPERTIES TIMEOUT 240
    ENVIRONMENT "QT_QPA_PLATFORM=offscreen;TSAN_OPTIONS=suppressions=${CMAKE_SOURCE_DIR}/cmake/tsan.supp")
endfunction()
