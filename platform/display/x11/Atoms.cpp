// SPDX-License-Identifier: Apache-2.0
#include "AtomsPrivate.h"

#include <string_view>

namespace brindle::display {

namespace {

    constexpr std::array<std::string_view, static_cast<std::size_t>(Atom::count)> kNames {
        "UTF8_STRING",
        "WM_PROTOCOLS",
        "WM_DELETE_WINDOW",
        "WM_TAKE_FOCUS",
        "WM_STATE",
        "WM_CHANGE_STATE",
        "_NET_WM_PING",
        "_NET_WM_NAME",
        "_NET_WM_ICON_NAME",
        "_NET_WM_PID",
        "_NET_WM_WINDOW_TYPE",
        "_NET_WM_WINDOW_TYPE_NORMAL",
        "_NET_WM_WINDOW_TYPE_UTILITY",
        "_NET_WM_WINDOW_TYPE_DIALOG",
        "_NET_WM_WINDOW_TYPE_DOCK",
        "_NET_WM_WINDOW_TYPE_POPUP_MENU",
        "_NET_WM_WINDOW_TYPE_TOOLTIP",
        "_NET_WM_STATE",
        "_NET_WM_STATE_ABOVE",
        "_NET_WM_STATE_MODAL",
        "_NET_WM_STATE_HIDDEN",
        "_NET_WM_STATE_FULLSCREEN",
        "_NET_WM_STATE_MAXIMIZED_VERT",
        "_NET_WM_STATE_MAXIMIZED_HORZ",
        "_NET_WM_STATE_SKIP_TASKBAR",
        "_NET_WM_STATE_SKIP_PAGER",
        "_NET_WM_DESKTOP",
        "_NET_WM_WINDOW_OPACITY",
        "_NET_WM_STRUT",
        "_NET_WM_STRUT_PARTIAL",
        "_NET_WM_MOVERESIZE",
        "_NET_ACTIVE_WINDOW",
        "_NET_RESTACK_WINDOW",
        "_NET_SUPPORTED",
        "_NET_SUPPORTING_WM_CHECK",
        "_NET_WORKAREA",
        "_NET_CURRENT_DESKTOP",
        "_NET_CLIENT_LIST",
        "_BRINDLE_SCREEN_EDGE",
        "_MOTIF_WM_HINTS",
        "MANAGER",
        "_XSETTINGS_SETTINGS",
        "_XSETTINGS_S0",
        "_NET_WM_CM_S0",
    };
    static_assert(kNames.back() == "_NET_WM_CM_S0", "one name for each atom");

}

void Atoms::ask(xcb_connection_t* connection)
{
    for (std::size_t i = 0; i < kCount; ++i) {
        cookies_[i] = xcb_intern_atom(
            connection, 0, static_cast<std::uint16_t>(kNames[i].size()), kNames[i].data());
    }
}

void Atoms::receive(xcb_connection_t* connection)
{
    for (std::size_t i = 0; i < kCount; ++i) {
        const auto reply = owned(xcb_intern_atom_reply(connection, cookies_[i], nullptr));
        values_[i] = reply ? reply->atom : 0;
    }
}

}
