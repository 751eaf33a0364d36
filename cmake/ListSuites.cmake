# Read by ctest: adds the suites of one test program (see TestSuites.cmake), which sets
# TESSALY_SUITES_PROGRAM, _NAME, _LABEL, _ONE_BY_ONE and _RESULTS.

if(NOT EXISTS "${TESSALY_SUITES_PROGRAM}")
    # A test that cannot be run fails; ./test --only leaves it out.
    add_test(${TESSALY_SUITES_NAME}_NOT_BUILT ${TESSALY_SUITES_NAME}_NOT_BUILT)
    return()
endif()

execute_process(
    COMMAND "${TESSALY_SUITES_PROGRAM}" --gtest_list_tests
    OUTPUT_VARIABLE listed
    RESULT_VARIABLE status)
if(NOT status EQUAL 0)
    message(FATAL_ERROR "${TESSALY_SUITES_PROGRAM} cannot list its tests: ${status}")
endif()

# A suite stands at the start of a line and ends with a dot; "# " begins a type parameter.
string(REGEX MATCHALL "(^|\n)[A-Za-z0-9_/]+\\." suites "${listed}")
foreach(suite IN LISTS suites)
    string(REGEX REPLACE "[\n.]" "" suite "${suite}")
    string(REPLACE "/" "-" file "${suite}")
    add_test("${suite}" "${TESSALY_SUITES_PROGRAM}" "--gtest_filter=${suite}.*"
        "--gtest_output=xml:${TESSALY_SUITES_RESULTS}/${file}.xml")
    set_tests_properties("${suite}" PROPERTIES LABELS "${TESSALY_SUITES_LABEL}")
    if(TESSALY_SUITES_ONE_BY_ONE)
        set_tests_properties("${suite}" PROPERTIES RESOURCE_LOCK ${TESSALY_SUITES_NAME})
    endif()
endforeach()
