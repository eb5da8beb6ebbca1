# SPDX-License-Identifier: Apache-2.0
# Debian packages, one a component, made by the target `package` of the preset of that name.

set(brindle_abi ${PROJECT_VERSION_MAJOR})
set(brindle_package_library "libbrindle${brindle_abi}")
set(brindle_package_development libbrindle-dev)
set(brindle_package_tools brindle-tools)
set(brindle_package_python python3-brindle)
set(brindle_package_gallery brindle-gallery)
set(brindle_components library development tools python gallery)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME brindle)
set(CPACK_PACKAGE_VENDOR "The Brindle authors")
set(CPACK_PACKAGE_CONTACT "The Brindle authors <brindle@example.org>")
set(CPACK_PACKAGE_DIRECTORY "${CMAKE_BINARY_DIR}/packages")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_COMPONENTS_ALL ${brindle_components})
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

# What others link to is read out of the files; what is only opened, or is no library, is said here.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${CMAKE_BINARY_DIR}")
pkg_check_modules(BRINDLE_ICU QUIET icu-uc)
string(REGEX MATCH "^[0-9]+" icu_major "${BRINDLE_ICU_VERSION}")
set(same_version "(= ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})")
set(needs_library "${brindle_package_library} ${same_version}")

set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_GENERATE_SHLIBS ON)
string(CONCAT CPACK_DEBIAN_LIBRARY_PACKAGE_DEPENDS "libicu${icu_major}, libharfbuzz0b, libjpeg62-turbo | libjpeg8, libxcb-cursor0, "
    "libxcb-randr0, libxcb-xinput0, libxcb-xfixes0, libxkbcommon-x11-0")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_RECOMMENDS "fonts-inter, fonts-liberation2, fonts-dejavu-core, libsystemd0")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${needs_library}")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SUGGESTS "pkg-config, cmake")
set(CPACK_DEBIAN_TOOLS_PACKAGE_SECTION devel)
set(CPACK_DEBIAN_TOOLS_PACKAGE_DEPENDS "${needs_library}")
set(CPACK_DEBIAN_PYTHON_PACKAGE_SECTION python)
set(CPACK_DEBIAN_PYTHON_PACKAGE_ARCHITECTURE all)
set(CPACK_DEBIAN_PYTHON_PACKAGE_DEPENDS "python3, ${needs_library}")
set(CPACK_DEBIAN_GALLERY_PACKAGE_SECTION devel)
set(CPACK_DEBIAN_GALLERY_PACKAGE_DEPENDS "${needs_library}")

set(use_library "What programs written with it need to run.")
set(use_development "Headers, the static library, CMake and pkg-config files.")
set(use_tools "brindle-plist checks, shows and converts property lists.")
set(use_python "Messages to every class from Python.")
set(use_gallery "The application that shows everything.")
foreach(component IN LISTS brindle_components)
    string(TOUPPER "${component}" upper)
    set(package "${brindle_package_${component}}")
    set(CPACK_DEBIAN_${upper}_PACKAGE_NAME "${package}")
    set(CPACK_COMPONENT_${upper}_DESCRIPTION "${use_${component}}")
    install(FILES "${PROJECT_SOURCE_DIR}/NOTICE"
        DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/${package}" RENAME copyright COMPONENT ${component})
endforeach()

# CPack strips programs and shared libraries, and leaves archives as they are.
install(CODE "execute_process(COMMAND \"${CMAKE_STRIP}\" --strip-debug
    \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_LIBDIR}/libbrindle.a\" COMMAND_ERROR_IS_FATAL ANY)"
    COMPONENT development)

include(CPack)
