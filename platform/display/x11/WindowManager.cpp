// SPDX-License-Identifier: Apache-2.0
#include "WindowManagerPrivate.h"

#include <algorithm>

#include "RepliesPrivate.h"

namespace brindle::display {

void WindowManager::read()
{
    known_ = true;
    window_ = XCB_NONE;
    supported_.clear();
    const xcb_atom_t check = connection_.atom(Atom::netSupportingWmCheck);
    const auto onRoot = connection_.values(connection_.root(), check, XCB_ATOM_WINDOW, 1);
    if (onRoot.empty())
        return;
    // The events are asked for first: a manager that dies in between is then heard of.
    const std::uint32_t mask = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(connection_.raw(), onRoot[0], XCB_CW_EVENT_MASK, &mask);
    const auto itself = connection_.ask(onRoot[0], check, XCB_ATOM_WINDOW, 1);
    const auto supported
        = connection_.ask(connection_.root(), connection_.atom(Atom::netSupported), XCB_ATOM_ATOM);
    const auto onItself = connection_.values(itself);
    supported_ = connection_.values(supported);
    if (onItself.empty() || onItself[0] != onRoot[0])
        return;
    window_ = onRoot[0];
}

bool WindowManager::isAlive()
{
    if (!known_)
        read();
    return window_ != XCB_NONE;
}

bool WindowManager::supports(Atom protocol)
{
    return isAlive()
        && std::find(supported_.begin(), supported_.end(), connection_.atom(protocol))
        != supported_.end();
}

std::optional<PixelRect> WindowManager::workArea()
{
    if (!isAlive())
        return std::nullopt;
    const auto whichDesktop = connection_.ask(
        connection_.root(), connection_.atom(Atom::netCurrentDesktop), XCB_ATOM_CARDINAL, 1);
    const auto whichAreas = connection_.ask(
        connection_.root(), connection_.atom(Atom::netWorkArea), XCB_ATOM_CARDINAL);
    const auto desktop = connection_.values(whichDesktop);
    return workAreaFrom(connection_.values(whichAreas), desktop);
}

std::vector<StrutValues> WindowManager::struts()
{
    constexpr std::uint32_t kMostWindows = 1024;
    constexpr std::uint32_t kMostValues = 12;
    using Question = Connection::Question;
    std::vector<std::pair<Question, Question>> asked;
    const auto ask = [&](xcb_window_t window, Atom atom) {
        return connection_.ask(window, connection_.atom(atom), XCB_ATOM_CARDINAL, kMostValues);
    };
    for (const xcb_window_t window : connection_.values(connection_.root(),
             connection_.atom(Atom::netClientList), XCB_ATOM_WINDOW, kMostWindows))
        asked.emplace_back(ask(window, Atom::netWmStrutPartial), ask(window, Atom::netWmStrut));
    std::vector<StrutValues> all;
    for (const auto& [partial, plain] : asked) {
        const auto ranged = connection_.values(partial);
        if (const auto strut = strutFrom(ranged, connection_.values(plain)))
            all.push_back(*strut);
    }
    return all;
}

bool WindowManager::propertyChanged(xcb_atom_t property)
{
    if (property == connection_.atom(Atom::netSupportingWmCheck)
        || property == connection_.atom(Atom::netSupported)) {
        known_ = false;
        return true;
    }
    return property == connection_.atom(Atom::netWorkArea)
        || property == connection_.atom(Atom::netCurrentDesktop);
}

bool WindowManager::windowDestroyed(xcb_window_t window)
{
    if (window == XCB_NONE || window != window_)
        return false;
    known_ = false;
    return true;
}

}
