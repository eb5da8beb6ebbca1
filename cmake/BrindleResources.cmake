# SPDX-License-Identifier: Apache-2.0
# The framework's own bundle: brindle/resources/ with an Info.plist, in share/brindle of the build tree and of the
# installed one. The library looks for it from its own place upwards.

set(brindle_resources "${CMAKE_CURRENT_BINARY_DIR}/share/brindle")
configure_file(brindle/resources/Info.plist.in "${brindle_resources}/Info.plist" @ONLY)
file(GLOB resources CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/brindle/resources/*.png")
foreach(resource IN LISTS resources)
    configure_file("${resource}" "${brindle_resources}" COPYONLY)
endforeach()

# The last place, for a program that holds the static library and lies in another tree.
if(PROJECT_IS_TOP_LEVEL)
    set(brindle_last_resources "${CMAKE_INSTALL_FULL_DATADIR}/brindle")
else()
    set(brindle_last_resources "${brindle_resources}")
endif()
set_source_files_properties("${PROJECT_SOURCE_DIR}/platform/foundation/NSBundle.cpp" PROPERTIES
    COMPILE_DEFINITIONS "BRINDLE_RESOURCES=\"${brindle_last_resources}\"")
