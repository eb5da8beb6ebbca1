# SPDX-License-Identifier: Apache-2.0
# The libraries under the platform. The installed package asks for the same list when somebody links the
# static library, so it is written once, here.

set(BRINDLE_PKG_CONFIG_MODULES
    cairo harfbuzz freetype2 fontconfig libpng libjpeg
    icu-uc icu-i18n
    xcb xcb-randr xcb-xkb xcb-xinput xcb-cursor xcb-sync xcb-shm xcb-shape xcb-xfixes
    xkbcommon xkbcommon-x11)

find_package(PkgConfig REQUIRED)
pkg_check_modules(BRINDLE_DEPENDENCIES REQUIRED IMPORTED_TARGET ${BRINDLE_PKG_CONFIG_MODULES})
