# SPDX-License-Identifier: Apache-2.0
# include/brindle/<folder>/…, both libraries, the CMake package, brindle.pc and share/brindle, the framework's bundle.
# Components: library (what runs), development (what builds), tools, python, gallery.

include(CMakePackageConfigHelpers)

foreach(root IN LISTS brindle_roots)
    foreach(header IN LISTS brindle_public_headers)
        if(EXISTS "${root}/${header}")
            cmake_path(GET header PARENT_PATH folder)
            install(FILES "${root}/${header}"
                DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/brindle/${folder}" COMPONENT development)
        endif()
    endforeach()
endforeach()

# Two export sets, so that who links the shared library needs none of the libraries under it.
install(TARGETS brindle EXPORT BrindleTargets
    LIBRARY COMPONENT library NAMELINK_COMPONENT development)
install(TARGETS brindle_static EXPORT BrindleStaticTargets ARCHIVE COMPONENT development)
set(package_folder "${CMAKE_INSTALL_LIBDIR}/cmake/Brindle")
foreach(set BrindleTargets BrindleStaticTargets)
    install(EXPORT ${set} NAMESPACE Brindle:: DESTINATION "${package_folder}" COMPONENT development)
endforeach()

set(package_config "${CMAKE_CURRENT_BINARY_DIR}/BrindleConfig.cmake")
set(package_version "${CMAKE_CURRENT_BINARY_DIR}/BrindleConfigVersion.cmake")
configure_package_config_file(cmake/BrindleConfig.cmake.in "${package_config}"
    INSTALL_DESTINATION "${package_folder}")
write_basic_package_version_file("${package_version}" COMPATIBILITY SameMajorVersion)
install(FILES "${package_config}" "${package_version}"
    DESTINATION "${package_folder}" COMPONENT development)

# pkg-config reads Requires.private even for the shared library, which would ask every host for our
# dependencies' headers; Libs.private is read only for --static.
list(JOIN BRINDLE_DEPENDENCIES_LDFLAGS " " BRINDLE_PRIVATE_LIBRARIES)
# The prefix is found from the file itself: an installed tree can be moved, and --prefix can be given late.
cmake_path(RELATIVE_PATH CMAKE_INSTALL_PREFIX
    BASE_DIRECTORY "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig" OUTPUT_VARIABLE BRINDLE_PC_PREFIX)
configure_file(cmake/brindle.pc.in brindle.pc @ONLY)
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/brindle.pc"
    DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig" COMPONENT development)
install(DIRECTORY "${brindle_resources}/"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/brindle" COMPONENT library)
install(FILES LICENSE NOTICE DESTINATION "${CMAKE_INSTALL_DOCDIR}" COMPONENT development)

# Plain Python: it finds the library from where it lies.
install(DIRECTORY "${PROJECT_SOURCE_DIR}/bindings/python/brindle"
    DESTINATION "lib/python3/dist-packages" COMPONENT python
    PATTERN "__pycache__" EXCLUDE)
