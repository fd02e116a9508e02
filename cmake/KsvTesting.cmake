function(ksv_test_settings target)
    target_link_libraries(${target} PRIVATE GTest::gmock GTest::gtest GTest::gtest_main
                                            Threads::Threads)
    target_compile_definitions(${target} PRIVATE KSV_SHARED_DIR="${KSV_SHARED_DIR}"
                                                 KSV_SOURCE_DIR="${PROJECT_SOURCE_DIR}"
                                                 KSV_BINARY_DIR="${PROJECT_BINARY_DIR}")
    # Header-only helpers every suite may use, such as starting work on several threads.
    target_include_directories(${target} PRIVATE "${PROJECT_SOURCE_DIR}/tests/support")
    # Suites that measure memory or limit the address space skip what a sanitizer's shadow memory
    # and quarantine make meaningless; gcc and clang do not agree on a macro that tells.
    if(KSV_SANITIZE MATCHES "address")
        target_compile_definitions(${target} PRIVATE KSV_ADDRESS_SANITIZER=1)
    endif()
    if(KSV_SANITIZE MATCHES "thread")
        target_compile_definitions(${target} PRIVATE KSV_THREAD_SANITIZER=1)
    endif()
endfunction()

# Parsing the test framework's headers takes longer than compiling most tests: the suites share
# one precompiled copy of them. It is made by an (empty) test executable with the suites' own
# settings, down to -fPIE, so that it stays valid for every suite.
function(ksv_add_test_headers)
    set(source "${PROJECT_BINARY_DIR}/ksv_test_headers.cpp")
    file(CONFIGURE OUTPUT "${source}" CONTENT "")
    add_executable(ksv_test_headers "${source}")
    ksv_test_settings(ksv_test_headers)
    target_precompile_headers(ksv_test_headers PRIVATE <gtest/gtest.h> <functional> <map> <memory>
                              <set> <sstream> <string> <thread> <vector>)
endfunction()

# Each suite of a test executable is one CTest test. A process per case cost more than most cases
# take under the sanitizers, and suites that start a server for all their cases started one per
# case; CTest still runs the suites in parallel, and a failing suite's output names its cases.
# The suites are listed when the executable is built; where it is not built, its one test fails
# saying so.
function(ksv_add_suite_tests name labels)
    set(suites "${CMAKE_CURRENT_BINARY_DIR}/${name}_suites.cmake")
    string(REPLACE ";" "," labels "${labels}")
    add_custom_command(TARGET ${name} POST_BUILD
        COMMAND "${CMAKE_COMMAND}" -D "EXECUTABLE=$<TARGET_FILE:${name}>" -D "OUTPUT=${suites}"
                -D "WORKING_DIRECTORY=${CMAKE_CURRENT_BINARY_DIR}" -D "LABELS=${labels}"
                -D TIMEOUT=120 -P "${PROJECT_SOURCE_DIR}/cmake/KsvListSuites.cmake"
        BYPRODUCTS "${suites}"
        VERBATIM)
    set(include "${CMAKE_CURRENT_BINARY_DIR}/${name}_include.cmake")
    file(WRITE "${include}"
         "if(EXISTS [==[${suites}]==])\n"
         "    include([==[${suites}]==])\n"
         "else()\n"
         "    add_test([==[${name}_NOT_BUILT]==] [==[${name}_NOT_BUILT]==])\n"
         "endif()\n")
    set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES "${include}")
endfunction()

# ksv_gtest(<name> SOURCES ... [LIBS ...] [LABELS ...])
# One GoogleTest executable whose suites are registered with CTest.
# Tests read fixtures relative to KSV_SOURCE_DIR and the observed OpenPegasus
# answers under KSV_SHARED_DIR.
function(ksv_gtest name)
    cmake_parse_arguments(T "" "" "SOURCES;LIBS;LABELS" ${ARGN})
    add_executable(${name} ${T_SOURCES})
    target_link_libraries(${name} PRIVATE ${T_LIBS})
    ksv_test_settings(${name})
    target_precompile_headers(${name} REUSE_FROM ksv_test_headers)
    ksv_add_suite_tests(${name} "${T_LABELS}")
    if("concurrency" IN_LIST T_LABELS)
        set_property(GLOBAL APPEND PROPERTY KSV_CONCURRENCY_TESTS ${name})
    endif()
endfunction()

# concurrency_tests builds just what the ThreadSanitizer run needs.
function(ksv_add_concurrency_target)
    get_property(suites GLOBAL PROPERTY KSV_CONCURRENCY_TESTS)
    add_custom_target(concurrency_tests)
    if(suites)
        add_dependencies(concurrency_tests ${suites})
    endif()
endfunction()
