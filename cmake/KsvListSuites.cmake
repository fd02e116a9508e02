# Run after a GoogleTest executable is built: writes the CTest tests that run it, one per suite
# (--gtest_filter=<suite>.*), from what --gtest_list_tests reads.
#   cmake -D EXECUTABLE=... -D OUTPUT=... -D WORKING_DIRECTORY=... -D LABELS=... -D TIMEOUT=...
#         -P KsvListSuites.cmake
execute_process(COMMAND "${EXECUTABLE}" --gtest_list_tests
                WORKING_DIRECTORY "${WORKING_DIRECTORY}"
                TIMEOUT ${TIMEOUT}
                RESULT_VARIABLE status
                OUTPUT_VARIABLE listing
                ERROR_VARIABLE errors)
if(NOT status EQUAL 0)
    message(FATAL_ERROR "${EXECUTABLE} --gtest_list_tests failed (${status}):\n${listing}${errors}")
endif()

# Parameter values printed after a '#' may hold characters that CMake lists treat specially.
string(REGEX REPLACE "[][;]" "_" listing "${listing}")
string(REPLACE "\n" ";" lines "${listing}")
# Labels come comma-separated: a list would split the command line that passes them.
string(REPLACE "," ";" labels "${LABELS}")
set(tests "")
foreach(line IN LISTS lines)
    # Suites start in the first column and end with a '.'; their cases are indented.
    if(line MATCHES "^([^ #][^ ]*)\\.")
        set(suite "${CMAKE_MATCH_1}")
        string(APPEND tests
               "add_test([==[${suite}]==] [==[${EXECUTABLE}]==] [==[--gtest_filter=${suite}.*]==])\n"
               "set_tests_properties([==[${suite}]==] PROPERTIES"
               " WORKING_DIRECTORY [==[${WORKING_DIRECTORY}]==] LABELS [==[${labels}]==])\n")
    endif()
endforeach()
file(WRITE "${OUTPUT}" "${tests}")
