# SPDX-License-Identifier: Apache-2.0
# What belongs to the library, and which of its headers a host may include.

set(brindle_roots "${PROJECT_SOURCE_DIR}/platform" "${PROJECT_SOURCE_DIR}/brindle")

set(brindle_sources)
set(brindle_public_headers) # relative to their root, as they are included
foreach(root IN LISTS brindle_roots)
    file(GLOB_RECURSE sources CONFIGURE_DEPENDS "${root}/*.cpp")
    list(APPEND brindle_sources ${sources})

    file(GLOB_RECURSE headers RELATIVE "${root}" CONFIGURE_DEPENDS "${root}/*.h")
    list(FILTER headers EXCLUDE REGEX "Private\\.h$")
    list(FILTER headers EXCLUDE REGEX "^display/(x11|headless/private)/")
    list(APPEND brindle_public_headers ${headers})
endforeach()
