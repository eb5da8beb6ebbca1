// SPDX-License-Identifier: Apache-2.0
#include "X11DisplayPrivate.h"

#include <algorithm>

#include "RepliesPrivate.h"
#include "X11SurfacePrivate.h"

namespace brindle::display {

namespace {

    constexpr std::size_t kPartialValues = 12; // of a partial strut
    constexpr std::size_t kTop = 2;
    constexpr std::size_t kTopStart = 8;
    constexpr std::size_t kTopEnd = 9;
    constexpr std::uint32_t kMostWindows = 4096;

}

// All questions are asked before the first answer is waited for.
std::vector<TopPanel> X11Display::topPanels()
{
    struct Asked {
        Connection::Question partial;
        Connection::Question plain;
        Connection::Question mark;
        xcb_translate_coordinates_cookie_t place;
    };
    std::vector<Asked> asked;
    xcb_connection_t* raw = connection_->raw();
    const auto ask = [&](xcb_window_t window, Atom atom) {
        return connection_->ask(window, connection_->atom(atom), XCB_ATOM_CARDINAL, kPartialValues);
    };
    for (const xcb_window_t window : connection_->values(connection_->root(),
             connection_->atom(Atom::netClientList), XCB_ATOM_WINDOW, kMostWindows)) {
        if (surfaceOf(window))
            continue;
        asked.push_back({ ask(window, Atom::netWmStrutPartial), ask(window, Atom::netWmStrut),
            ask(window, Atom::brindleScreenEdge),
            xcb_translate_coordinates(raw, window, connection_->root(), 0, 0) });
    }
    std::vector<TopPanel> panels;
    for (const Asked& window : asked) {
        const auto partial = connection_->values(window.partial);
        const auto strut = strutFrom(partial, connection_->values(window.plain));
        const auto mark = connection_->values(window.mark);
        const auto place = owned(xcb_translate_coordinates_reply(raw, window.place, nullptr));
        if (!strut || (*strut)[kTop] == 0)
            continue;
        const auto pixel = [](std::uint32_t value) {
            return static_cast<int>(std::min<std::uint32_t>(value, kLargestPixel));
        };
        TopPanel& panel = panels.emplace_back();
        panel.reach = pixel((*strut)[kTop]);
        panel.left = pixel((*strut)[kTopStart]);
        panel.right = pixel((*strut)[kTopEnd]) + 1;
        panel.top = place ? place->dst_y : 0;
        panel.isBar = !mark.empty();
        panel.hidden = mark.empty() ? 0 : pixel(mark[0]);
    }
    return panels;
}

int X11Display::depthBelowPanels(PixelRect rect, std::optional<int> ownBottom)
{
    const PixelRect screen = screens_.pixelFrames()[screens_.indexFor(rect)];
    const std::optional<PixelRect> area = manager_.workArea();
    return screenEdge_.depth(screen, rect.left, rect.right, topPanels(),
        area ? std::optional(area->top) : std::nullopt, ownBottom);
}

void X11Display::settleScreenEdge()
{
    screenEdgeDirty_ = false;
    for (X11Surface* surface : std::vector<X11Surface*>(order_))
        surface->settleScreenEdge();
}

void X11Display::offsetChanged(const X11Surface& surface)
{
    for (X11Surface* other : order_) {
        if (&other->leader() == &surface)
            other->applyFrame();
    }
}

}
