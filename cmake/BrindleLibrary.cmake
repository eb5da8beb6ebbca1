# SPDX-License-Identifier: Apache-2.0
# Every source is compiled once; the shared and the static library are made from the same objects.

include(CheckLinkerFlag)

if(NOT brindle_sources)
    message(FATAL_ERROR "platform/ and brindle/ hold no sources")
endif()

add_library(brindle_objects OBJECT ${brindle_sources})
brindle_compile(brindle_objects)
brindle_compile_folders(brindle_objects)
# Extensions that bear the name of another one in their folder.
foreach(extension shell/NSWindow+canBecomeKeyWindow viewkit/NSView+GWExtensions viewkit/NSView+NSTableCellView)
    set_source_files_properties("${PROJECT_SOURCE_DIR}/brindle/${extension}.cpp" PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
endforeach()
target_include_directories(brindle_objects PUBLIC ${brindle_roots})
target_link_libraries(brindle_objects PRIVATE PkgConfig::BRINDLE_DEPENDENCIES brindle_late)

set_source_files_properties("${PROJECT_SOURCE_DIR}/brindle/introspection/NSUserDefaults+ReviewRequest.cpp" PROPERTIES
    COMPILE_DEFINITIONS "BRINDLE_REVIEW_HOST=\"${BRINDLE_REVIEW_HOST}\"")

# What a start runs lies side by side, where the linker can do that; tools/start-order writes the list. It names
# functions, hence a section for each.
set(brindle_start "${PROJECT_SOURCE_DIR}/cmake/start.ld")
check_linker_flag(CXX "LINKER:-T,${brindle_start}" brindle_orders_code)
if(brindle_orders_code)
    target_compile_options(brindle_objects PRIVATE -ffunction-sections)
endif()

# --- the shared library -------------------------------------------------------------------------------

set(brindle_map "${PROJECT_SOURCE_DIR}/cmake/brindle.map")
add_library(brindle SHARED $<TARGET_OBJECTS:brindle_objects>)
add_library(Brindle::brindle ALIAS brindle)
brindle_compile(brindle)
set_target_properties(brindle PROPERTIES
    LINKER_LANGUAGE CXX
    VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR}
    LINK_DEPENDS "${brindle_map}")
# Classes stay registered and their methods reachable for the life of the process, hence nodelete.
target_link_options(brindle PRIVATE
    "LINKER:--version-script=${brindle_map}" "LINKER:-z,nodelete" "LINKER:--as-needed"
    "LINKER:-Bsymbolic-functions") # its own functions are found when it is linked, not when a program starts
# Tables of methods are full of addresses; packed, the loader reads a hundredth of the pages to set them.
check_linker_flag(CXX "LINKER:-z,pack-relative-relocs" brindle_packs_addresses)
if(brindle_packs_addresses)
    target_link_options(brindle PRIVATE "LINKER:-z,pack-relative-relocs")
endif()
if(brindle_orders_code)
    target_link_options(brindle PRIVATE "LINKER:-T,${brindle_start}")
    set_property(TARGET brindle APPEND PROPERTY LINK_DEPENDS "${brindle_start}")
endif()
if(NOT (BRINDLE_SANITIZE AND CMAKE_CXX_COMPILER_ID MATCHES Clang))
    # clang leaves the sanitizers' own symbols to the executable.
    target_link_options(brindle PRIVATE "LINKER:--no-undefined")
endif()
target_link_libraries(brindle PRIVATE PkgConfig::BRINDLE_DEPENDENCIES)

# --- the static library -------------------------------------------------------------------------------

# One relocatable object: a class is announced by a record in a section and referred to by nothing, so the
# linker would leave its object out of an ordinary archive. Why: docs/decisions/one-object-archive.md.
set(object_list "${CMAKE_CURRENT_BINARY_DIR}/brindle-objects.rsp")
set(one_object "${CMAKE_CURRENT_BINARY_DIR}/brindle-static.o")
file(GENERATE OUTPUT "${object_list}"
    CONTENT "\"$<JOIN:$<TARGET_OBJECTS:brindle_objects>,\"\n\">\"\n")
add_custom_command(OUTPUT "${one_object}"
    COMMAND ${CMAKE_LINKER} -r -o "${one_object}" "@${object_list}"
    DEPENDS "$<TARGET_OBJECTS:brindle_objects>" "${object_list}"
    COMMENT "Joining the objects of libbrindle.a"
    VERBATIM)
set_source_files_properties("${one_object}" PROPERTIES EXTERNAL_OBJECT ON GENERATED ON)

add_library(brindle_static STATIC "${one_object}")
add_library(Brindle::brindle_static ALIAS brindle_static)
set_target_properties(brindle_static PROPERTIES
    LINKER_LANGUAGE CXX OUTPUT_NAME brindle)
target_link_libraries(brindle_static PUBLIC PkgConfig::BRINDLE_DEPENDENCIES $<BUILD_INTERFACE:brindle_late>)
target_link_options(brindle_static INTERFACE $<BUILD_INTERFACE:${brindle_link}>)
if(NOT BRINDLE_INSTALL AND NOT PROJECT_IS_TOP_LEVEL)
    set_target_properties(brindle_static PROPERTIES EXCLUDE_FROM_ALL ON)
endif()

foreach(library brindle brindle_static)
    target_compile_features(${library} PUBLIC cxx_std_20)
    foreach(root IN LISTS brindle_roots)
        target_include_directories(${library} PUBLIC "$<BUILD_INTERFACE:${root}>")
    endforeach()
    target_include_directories(${library} PUBLIC
        "$<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/brindle>")
endforeach()

# --- header-check: every public header compiles alone ---------------------------------------------------

# A source that begins with its own header is the proof for that header; the others get a unit of their own.
function(brindle_begins_with source header answer)
    set(${answer} FALSE PARENT_SCOPE)
    if(EXISTS "${source}")
        file(STRINGS "${source}" first REGEX "^#include" LIMIT_COUNT 1)
        cmake_path(GET header FILENAME name)
        if(first STREQUAL "#include \"${name}\"" OR first STREQUAL "#include \"${header}\"")
            set(${answer} TRUE PARENT_SCOPE)
        endif()
    endif()
endfunction()

if(PROJECT_IS_TOP_LEVEL)
    set(header_units)
    foreach(header IN LISTS brindle_public_headers)
        string(REGEX REPLACE "\\.h$" ".cpp" source "${header}")
        set(proven FALSE)
        foreach(root IN LISTS brindle_roots)
            if(NOT proven)
                brindle_begins_with("${root}/${source}" "${header}" proven)
            endif()
        endforeach()
        if(proven)
            continue()
        endif()
        set(unit "${CMAKE_CURRENT_BINARY_DIR}/header-check/${header}.cpp")
        file(CONFIGURE OUTPUT "${unit}" CONTENT "#include \"@header@\"\n")
        list(APPEND header_units "${unit}")
    endforeach()
    if(header_units)
        # Without the dependencies' include folders: a public header shows no third-party header.
        add_library(header-check OBJECT EXCLUDE_FROM_ALL ${header_units})
        brindle_compile(header-check)
        target_compile_options(header-check PRIVATE -O0 -g0)
        target_include_directories(header-check PRIVATE ${brindle_roots})
    endif()
endif()
