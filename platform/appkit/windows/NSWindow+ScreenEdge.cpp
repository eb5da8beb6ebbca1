// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSWindow+ScreenEdge.h"

#include "NSWindowPrivate.h"
#include "appkit/application/NSApplicationPrivate.h"
#include "runtime/Table.h"

#include <cmath>

namespace brindle {

namespace {

    // From the top of its screen to the end of the strip; nothing for a window that lies elsewhere.
    std::optional<display::Strut> strutOf(const WindowState& s)
    {
        const display::Screen* const screen = ScreenAccess::screenFor(s.frame);
        if (!screen || !(s.reservedHeight > 0))
            return std::nullopt;
        display::Strut strut;
        strut.thickness = NSMaxY(screen->frame) - (NSMaxY(s.frame) - s.reservedHeight);
        strut.start = NSMinX(s.frame);
        strut.end = NSMaxX(s.frame);
        const bool atTop = NSMaxY(s.frame) >= NSMaxY(screen->frame);
        const bool fits = strut.thickness > 0 && strut.thickness < screen->frame.size.height / 2;
        return atTop && fits && strut.start < strut.end ? std::optional(strut) : std::nullopt;
    }

}

void WindowAccess::settleScreenEdge(NSWindow& window)
{
    const WindowState& s = state(window);
    if (s.surface && s.reservesEdge)
        s.surface->setStrut(strutOf(s));
}

template <> struct NSWindow::Methods<struct ScreenEdge> {

    static WindowState& of(NSWindow& self) { return WindowAccess::state(self); }

    static CGFloat reserved(NSWindow& self) { return of(self).reservedHeight; }
    static void setReserved(NSWindow& self, CGFloat height)
    {
        WindowState& s = of(self);
        s.reservedHeight = height > 0 && std::isfinite(height) ? height : 0;
        s.reservesEdge = s.reservesEdge || s.reservedHeight > 0;
        WindowAccess::settleScreenEdge(self);
    }
    static NSScreenEdgeStanding standing(NSWindow& self)
    {
        const WindowState& s = of(self);
        if (!s.surface)
            return NSScreenEdgeNotReserved;
        switch (s.surface->strutStanding()) {
        case display::StrutStanding::none:
            return NSScreenEdgeNotReserved;
        case display::StrutStanding::atEdge:
            return NSScreenEdgeReserved;
        case display::StrutStanding::belowPanel:
            return NSScreenEdgeBelowPanel;
        case display::StrutStanding::screenBeyond:
            return NSScreenEdgeScreenBeyond;
        case display::StrutStanding::noManager:
            return NSScreenEdgeNoManager;
        }
        return NSScreenEdgeNotReserved;
    }
    static CGFloat offset(NSWindow& self)
    {
        const WindowState& s = of(self);
        return s.surface ? s.surface->strutOffset() : 0;
    }

    static void table(Builder& t)
    {
        t.methods({
            { "reservedScreenEdge", imp<reserved> },
            { "setReservedScreenEdge:", imp<setReserved> },
            { "screenEdgeStanding", imp<standing> },
            { "screenEdgeOffset", imp<offset> },
        });
    }
};
BRINDLE_RECORD(NSWindow, ScreenEdge)

}
