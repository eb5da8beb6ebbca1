# SPDX-License-Identifier: Apache-2.0
# Test programs and the surroundings they run in.

include(GoogleTest)

# Every test sees the same language, time zone, fonts and home folder, no screen and no desktop.
set(brindle_test_home "${CMAKE_BINARY_DIR}/test-home")
file(MAKE_DIRECTORY "${brindle_test_home}")
set(brindle_test_environment
    LC_ALL=set:C.UTF-8
    LANGUAGE=unset:
    TZ=set:UTC
    BRINDLE_DISPLAY=set:headless
    BRINDLE_GOLDEN=set:${CMAKE_CURRENT_SOURCE_DIR}/golden
    DISPLAY=unset:
    WAYLAND_DISPLAY=unset:
    HOME=set:${brindle_test_home}
    XDG_CONFIG_HOME=set:${brindle_test_home}/config
    XDG_CACHE_HOME=set:${brindle_test_home}/cache
    XDG_DATA_HOME=set:${brindle_test_home}/data
    XDG_CURRENT_DESKTOP=unset:
    GTK_THEME=unset:
    DBUS_SESSION_BUS_ADDRESS=set:disabled:
    # No strict string checks: the keyboard library copies lengths out of replies that end in no zero.
    ASAN_OPTIONS=set:detect_stack_use_after_return=1
    LSAN_OPTIONS=set:suppressions=${CMAKE_CURRENT_SOURCE_DIR}/leaks.supp:print_suppressions=0
    UBSAN_OPTIONS=set:print_stacktrace=1
    # Children of a test begin threads of their own.
    TSAN_OPTIONS=set:second_deadlock_stack=1:die_after_fork=0)
set(fonts "${CMAKE_CURRENT_SOURCE_DIR}/golden/fonts.conf")
if(EXISTS "${fonts}")
    list(APPEND brindle_test_environment FONTCONFIG_FILE=set:${fonts})
endif()

# The library under test is optimised; the tests need not be, and a quarter of the time of compiling them is saved.
function(brindle_compile_test target)
    brindle_compile(${target})
    brindle_compile_folders(${target})
    if(NOT BRINDLE_SANITIZE)
        target_compile_options(${target} PRIVATE $<$<CONFIG:RelWithDebInfo>:-O0 -g0>)
    endif()
endfunction()

# brindle_test_program(<name> <sources>...): an executable over the static library, so that a test may also
# reach what the shared library keeps to itself. Started by itself it sees the pinned fonts too.
set_source_files_properties(Surroundings.cpp PROPERTIES
    COMPILE_DEFINITIONS BRINDLE_TESTS="${CMAKE_CURRENT_SOURCE_DIR}")
function(brindle_test_program name)
    add_executable(${name} ${ARGN} Surroundings.cpp)
    brindle_compile_test(${name})
    target_link_libraries(${name} PRIVATE
        brindle_test_support brindle_static GTest::gmock GTest::gtest_main)
endfunction()

# brindle_hardening_test(<name> <label> <command>...): a test of minutes, left out unless ctest is asked for the
# configuration Hardening.
function(brindle_hardening_test name label)
    add_test(NAME ${name} COMMAND ${ARGN} CONFIGURATIONS Hardening)
    set_tests_properties(${name} PROPERTIES
        LABELS "hardening;${label}"
        TIMEOUT 7200
        ENVIRONMENT_MODIFICATION "${brindle_test_environment}")
endfunction()

# Runs the program that is named next twenty times, each time in another order. A process may make a class only once, so
# each is one of its own.
set(brindle_shuffled sh -c "seq 20 | xargs -I@ \"$0\" --gtest_shuffle --gtest_random_seed=@ --gtest_brief=1")

# brindle_test_shards(<program> <area>): a handful of CTest tests that share the cases of a program. A process that is
# watched takes long to start, and one for each case would take hours.
function(brindle_test_shards program area)
    set(count 8)
    math(EXPR last "${count} - 1")
    foreach(index RANGE ${last})
        set(name ${program}.${index})
        add_test(NAME ${name} COMMAND ${program})
        set_tests_properties(${name} PROPERTIES
            LABELS ${area}
            TIMEOUT 1800
            FAIL_REGULAR_EXPRESSION "\\[  SKIPPED \\]"
            ENVIRONMENT_MODIFICATION
                "${brindle_test_environment};GTEST_TOTAL_SHARDS=set:${count};GTEST_SHARD_INDEX=set:${index}")
    endforeach()
endfunction()

# brindle_test_area(<area> <folders>...): the sources of some folders as <area>-tests, one CTest test a case, under a
# sanitizer one a shard, labelled with the area. An area without sources is left out.
function(brindle_test_area area)
    set(sources)
    foreach(folder IN LISTS ARGN)
        file(GLOB_RECURSE found CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/${folder}/*.cpp")
        list(APPEND sources ${found})
    endforeach()
    if(NOT sources)
        return()
    endif()

    set(program ${area}-tests)
    brindle_test_program(${program} ${sources})
    if(BRINDLE_SANITIZE)
        brindle_test_shards(${program} ${area})
        return()
    endif()
    gtest_discover_tests(${program}
        DISCOVERY_MODE PRE_TEST
        DISCOVERY_TIMEOUT 60
        TEST_PREFIX "${area}."
        TEST_LIST ${program}_cases)

    # The discovery cannot hand on a list as the value of a property; a second script sets it on the cases.
    set(script "${CMAKE_CURRENT_BINARY_DIR}/${program}-properties.cmake")
    file(WRITE "${script}" "set_tests_properties(\${${program}_cases} PROPERTIES
    LABELS [==[${area}]==]
    TIMEOUT 120
    ENVIRONMENT_MODIFICATION [==[${brindle_test_environment}]==])\n")
    set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES "${script}")

    brindle_hardening_test(${program}.shuffled shuffled ${brindle_shuffled} $<TARGET_FILE:${program}>)
endfunction()
