// SPDX-License-Identifier: Apache-2.0
#include "X11DisplayPrivate.h"

#include <algorithm>
#include <array>

#include "X11SurfacePrivate.h"

namespace brindle::display {

namespace {

    void configure(
        Connection& connection, xcb_window_t window, xcb_window_t sibling, xcb_stack_mode_t mode)
    {
        if (sibling == XCB_NONE) {
            const std::uint32_t value = mode;
            xcb_configure_window(connection.raw(), window, XCB_CONFIG_WINDOW_STACK_MODE, &value);
            return;
        }
        const std::array<std::uint32_t, 2> values { sibling, mode };
        xcb_configure_window(connection.raw(), window,
            XCB_CONFIG_WINDOW_SIBLING | XCB_CONFIG_WINDOW_STACK_MODE, values.data());
    }

}

void X11Display::sortByLevel()
{
    std::stable_sort(order_.begin(), order_.end(),
        [](const X11Surface* a, const X11Surface* b) { return a->level() < b->level(); });
}

// Brings the native window to the place that the order says, as far as the desktop lets us.
void X11Display::place(X11Surface& surface)
{
    if (!surface.window() || !surface.isShown())
        return;
    const bool managed = surface.isManaged();
    const auto own = std::find(order_.begin(), order_.end(), &surface);
    // Only windows with the same parent can be compared; managed ones have the manager's frames around them.
    const auto next = std::find_if(own + 1, order_.end(), [&](const X11Surface* other) {
        return other->window() && other->isShown() && other->isManaged() == managed;
    });
    if (next == order_.end()) {
        configure(*connection_, surface.window(), XCB_NONE, XCB_STACK_MODE_ABOVE);
        return;
    }
    const xcb_window_t above = (*next)->window();
    if (!managed) {
        configure(*connection_, surface.window(), above, XCB_STACK_MODE_BELOW);
        return;
    }
    const bool sameLayer = surface.isFloating() == (*next)->isFloating();
    if (sameLayer && manager_.supports(Atom::netRestackWindow)) {
        const std::array<std::uint32_t, 3> data { 1, above, XCB_STACK_MODE_BELOW };
        connection_->tellManager(surface.window(), Atom::netRestackWindow, data);
    } else if (surface.level() != (*next)->level()) {
        configure(*connection_, surface.window(), XCB_NONE, XCB_STACK_MODE_ABOVE);
    }
}

void X11Display::raise(X11Surface& surface)
{
    // With what belongs to it, in the old order. Each is taken once, or parents in a circle would go on for ever.
    std::vector<X11Surface*> family { &surface };
    for (std::size_t i = 0; i < family.size(); ++i) {
        for (X11Surface* other : order_) {
            if (other->parent() == family[i]
                && std::find(family.begin(), family.end(), other) == family.end())
                family.push_back(other);
        }
    }
    for (X11Surface* member : family) {
        std::erase(order_, member);
        order_.push_back(member);
    }
    sortByLevel();
    for (X11Surface* member : family)
        place(*member);
}

void X11Display::lower(X11Surface& surface)
{
    std::erase(order_, &surface);
    order_.insert(order_.begin(), &surface);
    sortByLevel();
    if (surface.window() && surface.isShown())
        configure(*connection_, surface.window(), XCB_NONE, XCB_STACK_MODE_BELOW);
}

void X11Display::restack(X11Surface& surface, X11Surface& other, bool above)
{
    if (&surface == &other)
        return;
    std::erase(order_, &surface);
    const auto place = std::find(order_.begin(), order_.end(), &other);
    order_.insert(place + (above ? 1 : 0), &surface);
    sortByLevel();
    this->place(surface);
}

void X11Display::levelChanged(X11Surface& surface)
{
    sortByLevel();
    place(surface);
}

}
