# The warnings that our own code is compiled with. They stay off the targets' interface, so that
# they never reach the headers of others.

option(TESSALY_WERROR "Treat warnings as errors; continuous integration does" OFF)

function(tessaly_warnings target)
    target_compile_options(${target} PRIVATE
        -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor
        $<$<BOOL:${TESSALY_WERROR}>:-Werror>)
    if(CMAKE_UNITY_BUILD)
        # Sources that are compiled together take one another's names for a header's.
        target_compile_options(${target} PRIVATE -Wno-shadow -Wno-subobject-linkage)
    endif()
endfunction()
