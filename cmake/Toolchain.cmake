# Tools that make a build faster and are used where they are found; none is needed.

find_program(TESSALY_CCACHE ccache)
mark_as_advanced(TESSALY_CCACHE)
if(TESSALY_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_CXX_COMPILER_LAUNCHER "${TESSALY_CCACHE}")
endif()

find_program(TESSALY_LLD ld.lld)
mark_as_advanced(TESSALY_LLD)
if(TESSALY_LLD)
    add_link_options(-fuse-ld=lld)
endif()
