# How every target of the project is made: one set of flags, one shape of subsystem.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")
set(CMAKE_AUTOMOC ON)

# Everything that our own code is compiled with. Imported targets are system
# includes, so the warnings are about our lines only.
add_library(tonequill_flags INTERFACE)
target_compile_options(tonequill_flags INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Wold-style-cast -Woverloaded-virtual
  -Wcast-qual -Wformat=2 -Wimplicit-fallthrough -Werror)
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

# tonequill_subsystem(NAME [DEPENDS subsystem...] [LINKS target...])
#
# Makes the library tonequill_NAME (alias Tonequill::NAME) of src/NAME, and with it
#  - the header check: every header of the folder is compiled alone;
#  - the layer check: the test layers_NAME fails on an include of a subsystem that
#    is not NAME itself or in DEPENDS;
#  - its tests: the program test_NAME of tests/NAME, once there are any.
# DEPENDS names the arrows in full; they are not inherited.
function(tonequill_subsystem name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "DEPENDS;LINKS")
  file(GLOB sources CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/*.cpp")
  file(GLOB headers CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/*.h")
  add_library(tonequill_${name} STATIC ${sources})
  add_library(Tonequill::${name} ALIAS tonequill_${name})
  target_sources(tonequill_${name} PUBLIC
    FILE_SET HEADERS BASE_DIRS "${CMAKE_SOURCE_DIR}/src" FILES ${headers})
  target_include_directories(tonequill_${name} PUBLIC "${CMAKE_SOURCE_DIR}/src")
  foreach(dependency IN LISTS arg_DEPENDS)
    target_link_libraries(tonequill_${name} PUBLIC tonequill_${dependency})
  endforeach()
  target_link_libraries(tonequill_${name} PUBLIC ${arg_LINKS} PRIVATE tonequill_flags)
  set_target_properties(tonequill_${name} PROPERTIES VERIFY_INTERFACE_HEADER_SETS ON)
  tonequill_moc_follows_globs(tonequill_${name})
  tonequill_precompile(tonequill_${name})
  if(BUILD_TESTING)
    add_test(NAME layers_${name} COMMAND ${CMAKE_COMMAND}
      "-DFOLDER=${CMAKE_CURRENT_SOURCE_DIR}" "-DNAME=${name}" "-DALLOWED=${arg_DEPENDS}"
      -P "${CMAKE_SOURCE_DIR}/cmake/CheckLayers.cmake")
  endif()
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

# Precompiles the headers that nearly every file takes. clang (sanitizers of
# libFuzzer, clang-tidy's view) builds without them, which proves the includes.
function(tonequill_precompile target)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    target_precompile_headers(${target} PRIVATE
      <QtCore/QString> <QtCore/QStringList> <QtCore/QObject> <QtCore/QUuid> <QtCore/QHash>
      <algorithm> <cmath> <functional> <memory> <optional> <span> <string> <vector>)
  endif()
endfunction()

# tonequill_test(NAME [LINKS target...]): the GoogleTest program of tests/NAME.
function(tonequill_test name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "LINKS")
  file(GLOB sources CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/${name}/*.cpp")
  if(NOT sources)
    return()
  endif()
  add_executable(test_${name} ${sources})
  target_link_libraries(test_${name} PRIVATE tonequill_test_support ${arg_LINKS} tonequill_flags)
  tonequill_moc_follows_globs(test_${name})
  tonequill_precompile(test_${name})
  add_test(NAME ${name} COMMAND test_${name})
  set_tests_properties(${name} PROPERTIES TIMEOUT 240
    ENVIRONMENT "QT_QPA_PLATFORM=offscreen;TSAN_OPTIONS=suppressions=${CMAKE_SOURCE_DIR}/cmake/tsan.supp")
endfunction()
