# ksv_gtest(<name> SOURCES ... [LIBS ...] [LABELS ...])
# One GoogleTest executable whose cases are registered with CTest one by one.
# Tests read fixtures relative to KSV_SOURCE_DIR and the observed OpenPegasus
# answers under KSV_SHARED_DIR.
function(ksv_gtest name)
    cmake_parse_arguments(T "" "" "SOURCES;LIBS;LABELS" ${ARGN})
    add_executable(${name} ${T_SOURCES})
    target_link_libraries(${name} PRIVATE ${T_LIBS} GTest::gmock GTest::gtest GTest::gtest_main
                                          Threads::Threads)
    target_compile_definitions(${name} PRIVATE KSV_SHARED_DIR="${KSV_SHARED_DIR}"
                                               KSV_SOURCE_DIR="${PROJECT_SOURCE_DIR}"
                                               KSV_BINARY_DIR="${PROJECT_BINARY_DIR}")
    # A list of labels must reach the test properties as one value.
    string(REPLACE ";" "\\;" labels "${T_LABELS}")
    gtest_discover_tests(${name} PROPERTIES LABELS "${labels}" DISCOVERY_TIMEOUT 120)
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
