# Modules: libraries that the program loads by itself, when they are needed. Helpers: programs that
# it starts.
#
# TESSALY_MODULES_FROM_PROGRAM and TESSALY_HELPERS_FROM_PROGRAM are where they lie as seen from the
# program's folder, in the build as after the installation.

include(GNUInstallDirs)

# So deep that cpack does not take them for libraries that others link with.
set(TESSALY_MODULE_FOLDER "${CMAKE_INSTALL_LIBDIR}/tessaly/modules")
file(RELATIVE_PATH TESSALY_MODULES_FROM_PROGRAM
    "${CMAKE_INSTALL_FULL_BINDIR}" "${CMAKE_INSTALL_FULL_LIBDIR}/tessaly/modules")

set(TESSALY_HELPER_FOLDER "${CMAKE_INSTALL_LIBEXECDIR}/tessaly")
file(RELATIVE_PATH TESSALY_HELPERS_FROM_PROGRAM
    "${CMAKE_INSTALL_FULL_BINDIR}" "${CMAKE_INSTALL_FULL_LIBEXECDIR}/tessaly")

# A layer may become part of the program or of a module. Nobody outside calls into either.
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)

# tessaly_module(<name> SOURCES <.cpp>... [USES <layer>...])
#
# Adds the module <name>.so as the target tessaly_<name>_module.
function(tessaly_module name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;USES")
    set(target tessaly_${name}_module)
    add_library(${target} MODULE ${arg_SOURCES})
    target_include_directories(${target} PRIVATE "${PROJECT_SOURCE_DIR}")
    list(TRANSFORM arg_USES PREPEND "Tessaly::")
    target_link_libraries(${target} PRIVATE ${arg_USES})
    set_target_properties(${target} PROPERTIES
        PREFIX ""
        OUTPUT_NAME ${name}
        LIBRARY_OUTPUT_DIRECTORY
            "${PROJECT_BINARY_DIR}/app/window/${TESSALY_MODULES_FROM_PROGRAM}")
    tessaly_warnings(${target})
endfunction()
