# All programs with the label threads: what the thread sanitizer's build needs.
add_custom_target(threads_tests)

# bextora_test(name SOURCES file... LIBRARIES target... [LABELS label...] [TIMEOUT s])
# One GoogleTest program; its cases become ctest cases of their own.
function(bextora_test name)
    cmake_parse_arguments(arg "" "TIMEOUT" "SOURCES;LIBRARIES;LABELS" ${ARGN})
    add_executable(${name} ${arg_SOURCES})
    target_link_libraries(${name} PRIVATE warnings ${arg_LIBRARIES} GTest::gtest_main)
    bextora_known_leaks(${name})
    if(NOT arg_TIMEOUT)
        set(arg_TIMEOUT 120)
    endif()
    if("threads" IN_LIST arg_LABELS)
        add_dependencies(threads_tests ${name})
    endif()
    # A list would be taken apart on its way into the test's properties; one text with blanks is
    # found by "ctest -L" all the same. Discovery runs every program, slowly under a sanitizer.
    list(JOIN arg_LABELS " " labels)
    gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60
        PROPERTIES TIMEOUT ${arg_TIMEOUT} LABELS "${labels}")
endfunction()
