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
set(brindle_sanitizers_fuzzer address,undefined,float-cast-overflow) # and what fuzz/CMakeLists.txt adds

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
        POSITION_INDEPENDENT_CODE ON UNITY_BUILD OFF)
    target_compile_options(${target} PRIVATE
        ${brindle_warnings} $<$<BOOL:${BRINDLE_WARNINGS_AS_ERRORS}>:-Werror> ${brindle_code})
    target_link_options(${target} PRIVATE ${brindle_link})
endfunction()

# The sources of a folder are compiled together, a dozen at most: what they include is read and instantiated once.
# Why: docs/decisions/folders-compile-together.md.
function(brindle_compile_folders target)
    if(NOT BRINDLE_UNITY)
        return()
    endif()
    get_target_property(sources ${target} SOURCES)
    list(FILTER sources INCLUDE REGEX "\\.cpp$")
    list(SORT sources)
    set(folders)
    foreach(source IN LISTS sources)
        cmake_path(GET source PARENT_PATH folder)
        list(APPEND folders "${folder}")
        list(APPEND "in ${folder}" "${source}")
    endforeach()
    list(REMOVE_DUPLICATES folders)
    foreach(folder IN LISTS folders)
        cmake_path(RELATIVE_PATH folder BASE_DIRECTORY "${PROJECT_SOURCE_DIR}" OUTPUT_VARIABLE name)
        string(REPLACE "/" "-" name "${name}")
        list(LENGTH "in ${folder}" count)
        math(EXPR groups "(${count} + 11) / 12")
        set(index 0)
        foreach(source IN LISTS "in ${folder}")
            math(EXPR group "${index} * ${groups} / ${count} + 1")
            set_source_files_properties("${source}" PROPERTIES UNITY_GROUP "${name}-${group}")
            math(EXPR index "${index} + 1")
        endforeach()
    endforeach()
    set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_MODE GROUP)
    # One takes a class of a source for one of a header, the other a name of one source for one of the next.
    target_compile_options(${target} PRIVATE
        $<$<CXX_COMPILER_ID:GNU>:-Wno-subobject-linkage> $<$<CXX_COMPILER_ID:Clang>:-Wno-shadow>)
endfunction()
