# SPDX-License-Identifier: Apache-2.0
# The libraries under the platform. The installed package asks for the same list when somebody links the
# static library, so it is written once, here.

set(BRINDLE_PKG_CONFIG_MODULES cairo freetype2 fontconfig libpng xcb xcb-shm)

find_package(PkgConfig REQUIRED)
pkg_check_modules(BRINDLE_DEPENDENCIES REQUIRED IMPORTED_TARGET ${BRINDLE_PKG_CONFIG_MODULES})

# The headers of these are compiled against; the libraries are opened when something needs them.
pkg_check_modules(BRINDLE_LATE REQUIRED
    harfbuzz libjpeg xcb-cursor xcb-shape xcb-randr xcb-xkb xcb-xinput xcb-xfixes xkbcommon xkbcommon-x11)
add_library(brindle_late INTERFACE)
target_include_directories(brindle_late SYSTEM INTERFACE ${BRINDLE_LATE_INCLUDE_DIRS})
find_package(ICU REQUIRED COMPONENTS uc i18n)
