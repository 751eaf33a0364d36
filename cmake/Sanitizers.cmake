# Sanitizers apply to the whole build, since code with and without them does not mix.
#
# TESSALY_SANITIZE is empty, "address,undefined", "thread" or "fuzzer,address,undefined". The last
# is libFuzzer's and needs clang; it sets TESSALY_FUZZING, which leaves only the fuzz targets.

set(TESSALY_SANITIZE "" CACHE STRING "Sanitizers to build with, as -fsanitize= takes them")

set(TESSALY_FUZZING OFF)
set(tessaly_instrumentation "${TESSALY_SANITIZE}")
if(TESSALY_SANITIZE MATCHES "(^|,)fuzzer(,|$)")
    if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
        message(FATAL_ERROR
            "Only clang has the fuzzer. Configure with: cmake --preset fuzz (needs clang-14)")
    endif()
    set(TESSALY_FUZZING ON)
    # A target links the fuzzer's main function for itself; see tests/fuzz/CMakeLists.txt.
    string(REGEX REPLACE "(^|,)fuzzer(,|$)" "\\1fuzzer-no-link\\2"
        tessaly_instrumentation "${TESSALY_SANITIZE}")
endif()

if(tessaly_instrumentation)
    add_compile_options(
        "-fsanitize=${tessaly_instrumentation}" -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options("-fsanitize=${tessaly_instrumentation}")
    # The check of virtual tables opens a pipe, and takes it for an error when there is no
    # descriptor left, which some tests are about.
    add_compile_options(-fno-sanitize=vptr)
endif()

# The library's own checks of indexes and iterators, wherever speed is not the point.
if(tessaly_instrumentation OR CMAKE_BUILD_TYPE STREQUAL "Debug")
    add_compile_definitions(_GLIBCXX_ASSERTIONS)
endif()
