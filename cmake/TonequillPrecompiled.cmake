# The precompiled headers that all targets share: one for the sources, one for the rooms
# of the window, one for the tests.

# Makes the precompiled header of a kind: what all take, and HEADERS. What defines macros
# stands in LINKS only if all users of the kind link it as well.
function(tonequill_make_precompiled kind)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "LINKS;HEADERS")
  set(nothing "${CMAKE_BINARY_DIR}/nothing.cpp")
  file(CONFIGURE OUTPUT "${nothing}" CONTENT "// A precompiled header needs a file that uses it.\n")
  set(target tonequill_precompiled_${kind})
  add_library(${target} OBJECT EXCLUDE_FROM_ALL "${nothing}")
  set_target_properties(${target} PROPERTIES AUTOMOC OFF)
  target_link_libraries(${target} PRIVATE Qt6::Core QCoro6::Core ${arg_LINKS} tonequill_flags)
  target_precompile_headers(${target} PRIVATE
    <QByteArray> <QDir> <QFile> <QFileInfo> <QHash> <QJsonArray> <QJsonDocument> <QJsonObject>
    <QList> <QObject> <QSet> <QString> <QStringList> <QTimer> <QUuid> <QVariant> <QCoroTask>
    <algorithm> <array> <chrono> <cmath> <cstring> <functional> <limits> <memory> <mutex>
    <numeric> <optional> <span> <stdexcept> <string> <utility> <vector> ${arg_HEADERS})
endfunction()

if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  tonequill_make_precompiled(sources)
  # With what the compiled QML takes.
  tonequill_make_precompiled(window LINKS Qt6::Quick HEADERS
    <QAbstractListModel> <QImage> <QPainter> <QQuickItem> <QQuickWindow> <QUrl>
    <QtQml/qqmlcomponent.h> <QtQml/qqmlcontext.h> <QtQml/qqmlengine.h> <QtQml/qqmlprivate.h>)
  tonequill_make_precompiled(tests LINKS GTest::gmock HEADERS <gmock/gmock.h> <QCoreApplication> <QTemporaryDir>)
endif()

# tonequill_precompile(TARGET KIND)
#
# Has the target take what nearly every file includes from the precompiled header of the
# kind: sources, window or tests. clang (for libFuzzer and clang-tidy) builds without them,
# which proves the includes.
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
    if(options MATCHES "-[fO]")
      set_source_files_properties("${source}" PROPERTIES SKIP_PRECOMPILE_HEADERS ON)
    endif()
  endforeach()
  target_precompile_headers(${target} REUSE_FROM tonequill_precompiled_${kind})
endfunction()
