# Headers that most sources include, compiled once for all of them.
#
# They hide a missing #include, so only the preset "release" has them; "debug" compiles every source
# with nothing but what it includes itself.

option(TESSALY_PRECOMPILE "Compile the headers of Qt and of the standard library once" OFF)

set(TESSALY_STANDARD_HEADERS
    <algorithm> <array> <atomic> <chrono> <cmath> <cstdint> <filesystem> <functional> <map> <memory>
    <mutex> <optional> <set> <span> <string> <string_view> <thread> <utility> <variant> <vector>)
set(TESSALY_CORE_HEADERS
    <QByteArray> <QCoreApplication> <QFile> <QLoggingCategory> <QMetaObject> <QObject> <QPointer>
    <QString> <QStringList> <QTimer> <QVariant>)
set(TESSALY_QT_HEADERS
    <QAction> <QApplication> <QFile> <QKeyEvent> <QLabel> <QLoggingCategory> <QMenu> <QPainter>
    <QPainterPath> <QPointer> <QPushButton> <QScrollBar> <QStackedWidget> <QString> <QStringList>
    <QStyle> <QTimer> <QVBoxLayout> <QWidget> <QWindow>)

# tessaly_precompiled(<name> HEADERS <header>... [LINKS <target>...])
#
# Compiles the headers with what the links define. A target that is to share them has to define the
# same, and may define more.
function(tessaly_precompiled name)
    if(NOT TESSALY_PRECOMPILE)
        return()
    endif()
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "HEADERS;LINKS")
    set(source "${CMAKE_CURRENT_BINARY_DIR}/${name}.cpp")
    file(CONFIGURE OUTPUT "${source}" CONTENT "// Only there for its precompiled headers.\n")
    add_library(${name} OBJECT "${source}")
    target_compile_features(${name} PUBLIC cxx_std_20)
    target_link_libraries(${name} PRIVATE ${arg_LINKS})
    # Some warnings change which macros are defined.
    tessaly_warnings(${name})
    target_precompile_headers(${name} PRIVATE ${arg_HEADERS})
endfunction()

# tessaly_share_precompiled(<target> [<linked target>...])
#
# Has a target share what fits the part of Qt that it names as linked: the headers of the widgets,
# of Qt's core, or of the standard library alone. What links other parts is compiled without.
function(tessaly_share_precompiled target)
    if(NOT TESSALY_PRECOMPILE)
        return()
    endif()
    if("Qt6::Widgets" IN_LIST ARGN)
        set(headers tessaly_widget_headers)
    elseif("Qt6::Core" IN_LIST ARGN)
        set(headers tessaly_core_headers)
    elseif("${ARGN}" MATCHES "Qt6::")
        return()
    else()
        set(headers tessaly_standard_headers)
    endif()
    tessaly_reuse_precompiled(${target} ${headers})
endfunction()

# Has a target share the headers of tessaly_precompiled(<name>).
function(tessaly_reuse_precompiled target name)
    if(TESSALY_PRECOMPILE)
        target_precompile_headers(${target} REUSE_FROM ${name})
        # GCC no longer sees that such code is in a system header, where it would not warn.
        target_compile_options(${target} PRIVATE -Wno-stringop-overread -Wno-array-bounds)
    endif()
endfunction()
