# Tools that make a build faster and are used where they are found; none is needed.

find_program(TESSALY_CCACHE ccache)
mark_as_advanced(TESSALY_CCACHE)
if(TESSALY_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    # It takes precompiled headers only when it need not compare the times of what is in them.
    set(CMAKE_CXX_COMPILER_LAUNCHER
        "${CMAKE_COMMAND}" -E env CCACHE_SLOPPINESS=pch_defines,time_macros "${TESSALY_CCACHE}")
endif()

find_program(TESSALY_LLD ld.lld)
mark_as_advanced(TESSALY_LLD)
if(TESSALY_LLD)
    add_link_options(-fuse-ld=lld)
endif()
