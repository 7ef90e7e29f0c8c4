# The two precompiled headers that all targets share.

if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  set(nothing "${CMAKE_BINARY_DIR}/nothing.cpp")
  file(CONFIGURE OUTPUT "${nothing}" CONTENT "// A precompiled header needs a file that uses it.\n")
  foreach(kind IN ITEMS sources tests)
    add_library(tonequill_precompiled_${kind} OBJECT "${nothing}")
    set_target_properties(tonequill_precompiled_${kind} PROPERTIES AUTOMOC OFF EXCLUDE_FROM_ALL ON)
    target_link_libraries(tonequill_precompiled_${kind} PRIVATE Qt6::Core QCoro6::Core tonequill_flags)
    # Whatever defines macros is left out: its users alone have them.
    target_precompile_headers(tonequill_precompiled_${kind} PRIVATE
      <QByteArray> <QDir> <QFile> <QFileInfo> <QHash> <QJsonArray> <QJsonDocument> <QJsonObject>
      <QList> <QObject> <QSet> <QString> <QStringList> <QTimer> <QUuid> <QVariant> <QCoroTask>
      <algorithm> <array> <chrono> <cmath> <cstring> <functional> <limits> <memory> <mutex>
      <numeric> <optional> <span> <stdexcept> <string> <utility> <vector>)
  endforeach()
  target_link_libraries(tonequill_precompiled_tests PRIVATE GTest::gmock)
  target_precompile_headers(tonequill_precompiled_tests PRIVATE <gmock/gmock.h> <QTemporaryDir> <QCoreApplication>)
endif()

# tonequill_precompile(TARGET KIND)
#
# Has the target take what nearly every file includes from one of two precompiled headers:
# that of the sources or that of the tests. clang (for libFuzzer and clang-tidy) builds
# without them, which proves the includes.
#
# GCC is silent about it, but a function may be compiled with the optimisation that the
# precompiled header was made with: -ffp-contract=off was lost so. Therefore flags that
# change code belong to all (tonequill_flags), or to single files, which then do without.
function(tonequill_precompile target kind)
  if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    return()
  endif()
  get_target_property(options ${target} COMPILE_OPTIONS)
  if(options)
    message(FATAL_ERROR "${target} has flags of its own (${options}): give them to single files.")
  endif()
  get_target_property(sources ${target} SOURCES)
  foreach(source IN LISTS sources)
    get_source_file_property(options "${source}" COMPILE_OPTIONS)
    if(options)
      set_source_files_properties("${source}" PROPERTIES SKIP_PRECOMPILE_HEADERS ON)
    endif()
  endforeach()
  target_precompile_headers(${target} REUSE_FROM tonequill_precompiled_${kind})
endfunction()
