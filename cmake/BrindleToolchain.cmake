# SPDX-License-Identifier: Apache-2.0
# How everything of this project is compiled: brindle_compile(target) is called for each target.

if(PROJECT_IS_TOP_LEVEL)
    if(NOT CMAKE_BUILD_TYPE)
        set(CMAKE_BUILD_TYPE RelWithDebInfo CACHE STRING "" FORCE)
    endif()
    set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
    find_program(BRINDLE_CCACHE ccache)
    mark_as_advanced(BRINDLE_CCACHE)
    if(BRINDLE_CCACHE)
        # Paths count from this folder, so that another clone finds what this one compiled.
        set(brindle_launcher env "CCACHE_BASEDIR=${PROJECT_SOURCE_DIR}" CCACHE_NOHASHDIR=1 ${BRINDLE_CCACHE})
        foreach(language C CXX)
            if(NOT CMAKE_${language}_COMPILER_LAUNCHER)
                set(CMAKE_${language}_COMPILER_LAUNCHER ${brindle_launcher})
            endif()
        endforeach()
    endif()
endif()

# A number that its new type cannot hold is no part of "undefined", but conversions are to saturate.
set(brindle_sanitizers_address address,undefined,float-cast-overflow)
set(brindle_sanitizers_thread thread)
set(brindle_sanitizers_undefined undefined,float-cast-overflow)
set(brindle_sanitizers_fuzzer fuzzer-no-link,address,undefined,float-cast-overflow)

set(brindle_warnings -Wall -Wextra -Wpedantic -Wshadow -Wconversion)
if(CMAKE_CXX_COMPILER_ID MATCHES Clang)
    # g++ keeps this one out of -Wconversion for C++; both compilers are to complain about the same code.
    list(APPEND brindle_warnings -Wno-sign-conversion)
endif()

set(brindle_code
    -ffp-contract=off # answers are compared to the last bit
    -fno-semantic-interposition
    -UNDEBUG) # a broken rule of our own stops the program in every build
set(brindle_link)
if(BRINDLE_SANITIZE)
    if(NOT DEFINED brindle_sanitizers_${BRINDLE_SANITIZE})
        message(FATAL_ERROR "BRINDLE_SANITIZE is \"${BRINDLE_SANITIZE}\"; see its description")
    endif()
    set(kinds ${brindle_sanitizers_${BRINDLE_SANITIZE}})
    list(APPEND brindle_link -fsanitize=${kinds})
    list(APPEND brindle_code -fsanitize=${kinds} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    if(CMAKE_CXX_COMPILER_ID MATCHES Clang)
        # Methods are called through the C signature of their encoding, which this one takes for a mistake.
        list(APPEND brindle_code -fno-sanitize=function)
    else()
        # The instrumentation itself confuses this warning (it is documented to).
        list(APPEND brindle_warnings -Wno-maybe-uninitialized)
    endif()
endif()

function(brindle_compile target)
    set_target_properties(${target} PROPERTIES
        CXX_STANDARD 20 CXX_STANDARD_REQUIRED ON CXX_EXTENSIONS OFF
        CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON
        POSITION_INDEPENDENT_CODE ON)
    target_compile_options(${target} PRIVATE
        ${brindle_warnings} $<$<BOOL:${BRINDLE_WARNINGS_AS_ERRORS}>:-Werror> ${brindle_code})
    target_link_options(${target} PRIVATE ${brindle_link})
endfunction()
