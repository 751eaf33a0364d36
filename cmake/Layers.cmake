# The architecture as data.
#
# A folder is a layer, and a layer is one CMake target. The layers stand here from the bottom up;
# TESSALY_FOLDER_<layer> is a layer's folder and TESSALY_MAY_USE_<layer> names the layers that it
# may use, all of them further down. tessaly_library() refuses any other edge at configure time, and
# the house rules (tests/house) read the same table to refuse an #include that crosses it.
#
# Programs (the application itself, cli/, bench/, tests/) stand on top of all layers and may use any
# of them.

set(TESSALY_LAYERS
    tree scan archive theme text frame platform background platform_linux resources delegate
    controls screen preview_protocol preview_decoder preview results records history screens drives
    window)

set(TESSALY_FOLDER_tree              engine/tree)
set(TESSALY_FOLDER_scan              engine/scan)
set(TESSALY_FOLDER_archive           engine/archive)
set(TESSALY_FOLDER_theme             app/controls/theme)
set(TESSALY_FOLDER_text              app/controls/text)
set(TESSALY_FOLDER_frame             app/controls/frame)
set(TESSALY_FOLDER_platform          platform)
set(TESSALY_FOLDER_background        platform/background)
set(TESSALY_FOLDER_platform_linux    platform/linux)
set(TESSALY_FOLDER_resources         resources)
set(TESSALY_FOLDER_delegate          app/delegate)
set(TESSALY_FOLDER_controls          app/controls)
set(TESSALY_FOLDER_screen            app/screen)
set(TESSALY_FOLDER_preview_protocol  preview/protocol)
set(TESSALY_FOLDER_preview_decoder   preview/decoder)
set(TESSALY_FOLDER_preview           preview)
set(TESSALY_FOLDER_results           screens/results)
set(TESSALY_FOLDER_records           history/records)
set(TESSALY_FOLDER_history           history)
set(TESSALY_FOLDER_screens           screens)
set(TESSALY_FOLDER_drives            drives)
set(TESSALY_FOLDER_window            app/window)

set(TESSALY_MAY_USE_tree)
set(TESSALY_MAY_USE_scan              tree)
set(TESSALY_MAY_USE_archive           tree)
set(TESSALY_MAY_USE_theme)
set(TESSALY_MAY_USE_text              tree)
set(TESSALY_MAY_USE_frame             theme)
set(TESSALY_MAY_USE_platform)
set(TESSALY_MAY_USE_background)
set(TESSALY_MAY_USE_platform_linux    tree scan archive theme text platform background)
set(TESSALY_MAY_USE_resources)
set(TESSALY_MAY_USE_delegate          platform)
set(TESSALY_MAY_USE_controls          tree theme text frame resources)
set(TESSALY_MAY_USE_screen            theme delegate controls)
set(TESSALY_MAY_USE_preview_protocol  scan)
set(TESSALY_MAY_USE_preview_decoder   scan preview_protocol)
set(TESSALY_MAY_USE_preview
    tree scan archive theme text frame platform background preview_protocol)
set(TESSALY_MAY_USE_results
    tree archive theme text platform resources delegate controls screen)
set(TESSALY_MAY_USE_records           tree scan archive platform delegate)
set(TESSALY_MAY_USE_history
    theme text platform resources delegate controls screen records)
set(TESSALY_MAY_USE_screens
    tree scan archive theme text platform resources delegate controls screen results records)
set(TESSALY_MAY_USE_drives
    tree theme text platform resources delegate controls screen)
set(TESSALY_MAY_USE_window
    theme frame platform resources delegate controls screen history screens drives)

# tessaly_library(<layer> [CLASSES <path>...] [SOURCES <.cpp>...] [HEADERS <.hpp>...]
#                 [USES <layer>...] [LINKS <target of another project>...])
#
# Adds the layer's library as tessaly_<layer>, also called Tessaly::<layer>. Paths are relative to
# the layer's folder. A class is a header and a source of the same name, listed without an ending.
# Every header is compiled alone by the target all_verify_interface_header_sets.
function(tessaly_library layer)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "CLASSES;SOURCES;HEADERS;USES;LINKS")
    if(arg_UNPARSED_ARGUMENTS)
        message(FATAL_ERROR
            "tessaly_library(${layer}): what is \"${arg_UNPARSED_ARGUMENTS}\"? "
            "Put it after CLASSES, SOURCES, HEADERS, USES or LINKS.")
    endif()
    tessaly_require_layer(${layer})
    foreach(used IN LISTS arg_USES)
        tessaly_require_edge(${layer} ${used})
    endforeach()

    list(TRANSFORM arg_CLASSES APPEND .cpp OUTPUT_VARIABLE sources)
    list(TRANSFORM arg_CLASSES APPEND .hpp OUTPUT_VARIABLE headers)
    list(APPEND sources ${arg_SOURCES})
    list(APPEND headers ${arg_HEADERS})

    set(target tessaly_${layer})
    add_library(${target} STATIC ${sources})
    add_library(Tessaly::${layer} ALIAS ${target})
    target_sources(${target} PUBLIC
        FILE_SET HEADERS BASE_DIRS "${PROJECT_SOURCE_DIR}" FILES ${headers})
    target_compile_features(${target} PUBLIC cxx_std_20)
    list(TRANSFORM arg_USES PREPEND "Tessaly::")
    target_link_libraries(${target} PUBLIC ${arg_USES} ${arg_LINKS})
    tessaly_warnings(${target})
    tessaly_share_precompiled(${target} ${arg_LINKS})

    # A later target_link_libraries() in the same folder is no way round the table.
    cmake_language(EVAL CODE "cmake_language(DEFER CALL tessaly_check_links ${layer})")
endfunction()

# tessaly_program(<name> SOURCES <.cpp>... [USES <layer>...] [LINKS <target>...])
#
# Adds a program, which may use any layer.
function(tessaly_program name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;USES;LINKS")
    if(arg_UNPARSED_ARGUMENTS)
        message(FATAL_ERROR
            "tessaly_program(${name}): what is \"${arg_UNPARSED_ARGUMENTS}\"? "
            "Put it after SOURCES, USES or LINKS.")
    endif()
    add_executable(${name} ${arg_SOURCES})
    target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}")
    list(TRANSFORM arg_USES PREPEND "Tessaly::")
    target_link_libraries(${name} PRIVATE ${arg_USES} ${arg_LINKS})
    tessaly_warnings(${name})
endfunction()

function(tessaly_require_layer layer)
    if(NOT layer IN_LIST TESSALY_LAYERS)
        message(FATAL_ERROR
            "There is no layer \"${layer}\". Use one of: ${TESSALY_LAYERS}; or add the new layer "
            "to the table in cmake/Layers.cmake: its folder and what it may use.")
    endif()
endfunction()

function(tessaly_require_edge layer used)
    tessaly_require_layer(${used})
    if(NOT used IN_LIST TESSALY_MAY_USE_${layer})
        message(FATAL_ERROR
            "Layer \"${layer}\" may not use layer \"${used}\"; it may use: "
            "${TESSALY_MAY_USE_${layer}}. Move the code down to a layer that both may use, or let "
            "\"${layer}\" declare an interface that \"${used}\" implements. If the architecture "
            "itself changes, change TESSALY_MAY_USE_${layer} in cmake/Layers.cmake.")
    endif()
endfunction()

function(tessaly_check_links layer)
    get_target_property(private_links tessaly_${layer} LINK_LIBRARIES)
    get_target_property(public_links tessaly_${layer} INTERFACE_LINK_LIBRARIES)
    foreach(link IN LISTS private_links public_links)
        if(link MATCHES "^(Tessaly::|tessaly_)([a-z_]+)$")
            tessaly_require_edge(${layer} ${CMAKE_MATCH_2})
        endif()
    endforeach()
endfunction()

# The table itself: edges lead to layers that stand before the layer in the list, so no circle can
# be written down.
function(tessaly_check_table)
    set(below)
    foreach(layer IN LISTS TESSALY_LAYERS)
        foreach(used IN LISTS TESSALY_MAY_USE_${layer})
            if(NOT used IN_LIST below)
                message(FATAL_ERROR
                    "cmake/Layers.cmake lets \"${layer}\" use \"${used}\", which does not stand "
                    "below it in TESSALY_LAYERS. Let the use point downwards.")
            endif()
        endforeach()
        list(APPEND below ${layer})
    endforeach()
endfunction()
tessaly_check_table()
