# tessaly_discover_suites(<program> LABEL <label> [ONE_BY_ONE])
#
# Adds each suite of a GoogleTest program as one test, named after the suite: its cases run in one
# process, which is started once. For quick cases the start of a process takes longer than the case.
#
# Suites are listed when ctest starts, so that a build never depends on running what it has just
# built. With ONE_BY_ONE no two suites of the program run at the same time. What each case did is
# written to <build>/suites/<suite>.xml, for tools/test_summary.py.
function(tessaly_discover_suites program)
    cmake_parse_arguments(PARSE_ARGV 1 arg "ONE_BY_ONE" "LABEL" "")
    set(script "${CMAKE_CURRENT_BINARY_DIR}/${program}_suites.cmake")
    file(GENERATE OUTPUT "${script}" CONTENT "\
set(TESSALY_SUITES_PROGRAM [==[$<TARGET_FILE:${program}>]==])
set(TESSALY_SUITES_NAME ${program})
set(TESSALY_SUITES_LABEL ${arg_LABEL})
set(TESSALY_SUITES_ONE_BY_ONE ${arg_ONE_BY_ONE})
set(TESSALY_SUITES_RESULTS [==[${PROJECT_BINARY_DIR}/suites]==])
include([==[${PROJECT_SOURCE_DIR}/cmake/ListSuites.cmake]==])
")
    set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES "${script}")
endfunction()
