// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cmath>

#include "NSWindowPrivate.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    using display::ResizeEdge;

    constexpr CGFloat kNoLimit = 1e6;

    CGFloat positive(CGFloat value) { return value > 0 && std::isfinite(value) ? value : 0; }
    bool isSet(NSSize size) { return size.width > 0 && size.height > 0; }

    /// What of a frame takes no part in its proportion.
    NSSize baseOf(const NSWindow& window)
    {
        const WindowState& s = WindowAccess::state(window);
        if (!s.proportionOfContent)
            return {};
        const NSRect frame = window.frameRectForContentRect({ {}, { 100, 100 } });
        return { frame.size.width - 100, frame.size.height - 100 };
    }
    bool isWide(ResizeEdge edge) { return edge == ResizeEdge::left || edge == ResizeEdge::right; }
    bool isHigh(ResizeEdge edge) { return edge == ResizeEdge::top || edge == ResizeEdge::bottom; }

    CGFloat stepped(CGFloat start, CGFloat pulled, CGFloat step)
    {
        return step > 1 ? start + std::round((pulled - start) / step) * step : pulled;
    }

}

// A side leads, the other follows; at a corner the one that was pulled further for its proportion.
NSSize WindowAccess::proportioned(
    const NSWindow& window, NSSize start, NSSize pulled, ResizeEdge edge)
{
    const WindowState& s = state(window);
    if (!isSet(s.proportion))
        return { stepped(start.width, pulled.width, s.steps.width),
            stepped(start.height, pulled.height, s.steps.height) };
    const NSSize base = baseOf(window);
    const CGFloat ratio = s.proportion.width / s.proportion.height;
    const NSSize inner { pulled.width - base.width, pulled.height - base.height };
    const bool byWidth = isWide(edge) || (!isHigh(edge) && inner.width >= inner.height * ratio);
    return byWidth ? NSSize { pulled.width, inner.width / ratio + base.height }
                   : NSSize { inner.height * ratio + base.width, pulled.height };
}

bool WindowAccess::keepsProportions(const NSWindow& window)
{
    const WindowState& s = state(window);
    return isSet(s.proportion) || s.steps.width > 1 || s.steps.height > 1;
}

void WindowAccess::tellSizes(NSWindow& window)
{
    const WindowState& s = state(window);
    if (!s.surface)
        return;
    s.surface->setSizeLimits(s.minSize,
        { s.maxSize.width < kNoLimit ? s.maxSize.width : 0,
            s.maxSize.height < kNoLimit ? s.maxSize.height : 0 });
}

template <> struct NSWindow::Methods<struct Proportions> {

    static WindowState& of(NSWindow& self) { return WindowAccess::state(self); }

    static void set(NSWindow& self, NSSize proportion, bool ofContent, NSSize steps)
    {
        WindowState& s = of(self);
        s.proportion = { positive(proportion.width), positive(proportion.height) };
        s.proportionOfContent = ofContent;
        s.steps = { std::max(positive(steps.width), 1.0), std::max(positive(steps.height), 1.0) };
    }
    static NSSize ratio(NSWindow& self)
    {
        return of(self).proportionOfContent ? NSSize {} : of(self).proportion;
    }
    static NSSize contentRatio(NSWindow& self)
    {
        return of(self).proportionOfContent ? of(self).proportion : NSSize {};
    }
    static void setRatio(NSWindow& self, NSSize ratio) { set(self, ratio, false, { 1, 1 }); }
    static void setContentRatio(NSWindow& self, NSSize ratio) { set(self, ratio, true, { 1, 1 }); }
    static NSSize steps(NSWindow& self) { return of(self).steps; }
    static void setSteps(NSWindow& self, NSSize steps) { set(self, {}, false, steps); }

    static void table(Builder& t)
    {
        t.methods({
            { "aspectRatio", imp<ratio> },
            { "setAspectRatio:", imp<setRatio> },
            { "contentAspectRatio", imp<contentRatio> },
            { "setContentAspectRatio:", imp<setContentRatio> },
            { "resizeIncrements", imp<steps> },
            { "setResizeIncrements:", imp<setSteps> },
            { "contentResizeIncrements", imp<steps> },
            { "setContentResizeIncrements:", imp<setSteps> },
        });
    }
};
BRINDLE_RECORD(NSWindow, Proportions)

}
