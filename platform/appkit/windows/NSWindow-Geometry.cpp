// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cmath>
#include <utility>

#include "NSWindowPrivate.h"
#include "appkit/NSWindow+Proportions.h"
#include "appkit/application/NSApplicationPrivate.h"
#include "appkit/views/PropertyMovementPrivate.h"
#include "appkit/views/SubviewsPrivate.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    CGFloat between(CGFloat value, CGFloat least, CGFloat most)
    {
        return std::max(std::min(value, most), least);
    }

    void tellLiveResize(NSView& view, bool begins)
    {
        if (begins)
            view.viewWillStartLiveResize();
        else
            view.viewDidEndLiveResize();
        forSubviews(view, [begins](NSView& subview) { tellLiveResize(subview, begins); });
    }

    void tellBackingChange(NSView& view)
    {
        view.viewDidChangeBackingProperties();
        forSubviews(view, [](NSView& subview) { tellBackingChange(subview); });
    }

}

NSSize WindowAccess::limited(const NSWindow& window, NSSize size)
{
    const WindowState& s = state(window);
    return { between(size.width, s.minSize.width, s.maxSize.width),
        between(size.height, s.minSize.height, s.maxSize.height) };
}

void WindowAccess::applyFrame(NSWindow& window, NSRect frame, bool tellSurface)
{
    WindowState& s = state(window);
    const Ref<NSWindow> alive(&window);
    const NSRect old = s.frame;
    s.frame = frame;
    if (tellSurface && s.surface)
        s.surface->setFrame(frame);
    settleScreenEdge(window);
    const NSPoint shift { frame.origin.x - old.origin.x, frame.origin.y - old.origin.y };
    if (shift != NSPoint {}) {
        const std::vector<Ref<NSWindow>> children = s.children;
        for (const Ref<NSWindow>& child : children) {
            const NSRect childFrame = state(*child).frame;
            applyFrame(*child,
                { { childFrame.origin.x + shift.x, childFrame.origin.y + shift.y },
                    childFrame.size },
                true);
        }
    }
    if (frame.size != old.size) {
        frameView(window).setFrame({ {}, frame.size });
        s.contentView->setFrame(window.contentRectForFrameRect({ {}, frame.size }));
        damageAll(window);
        placeSheet(window);
    }
    if (frame.origin != old.origin)
        notify(window, NSWindowDidMoveNotification, "windowDidMove:");
    if (frame.size != old.size)
        notify(window, NSWindowDidResizeNotification, "windowDidResize:");
    if (frame == old)
        return;
    s.viewsMoved = true;
    autosaveFrame(window);
    settleScreen(window);
}

void WindowAccess::settleScreen(NSWindow& window)
{
    WindowState& s = state(window);
    if (!s.visible)
        return;
    const Ref<NSWindow> alive(&window);
    settleScreenEdge(window);
    const display::Screen* screen = ScreenAccess::screenFor(s.frame);
    const NSRect place = screen ? screen->frame : NSRect {};
    const bool isNew = !s.screenFrame;
    const bool moved = std::exchange(s.screenFrame, place) != place;
    const CGFloat scale = window.backingScaleFactor();
    const bool rescaled = std::exchange(s.knownScale, scale) != scale;
    if (isNew)
        return;
    if (rescaled) {
        damageAll(window);
        tellBackingChange(frameView(window));
        notify(window, NSWindowDidChangeBackingPropertiesNotification,
            "windowDidChangeBackingProperties:");
    }
    if (moved)
        notify(window, NSWindowDidChangeScreenNotification, "windowDidChangeScreen:");
}

void WindowAccess::frameChangedByDesktop(NSWindow& window, NSRect frame)
{
    applyFrame(window, frame, false);
}

void WindowAccess::beginLiveResize(NSWindow& window)
{
    WindowState& s = state(window);
    if (std::exchange(s.liveResize, true))
        return;
    notify(window, NSWindowWillStartLiveResizeNotification, "windowWillStartLiveResize:");
    tellLiveResize(frameView(window), true);
}

void WindowAccess::endLiveResize(NSWindow& window)
{
    WindowState& s = state(window);
    if (!std::exchange(s.liveResize, false))
        return;
    tellLiveResize(frameView(window), false);
    notify(window, NSWindowDidEndLiveResizeNotification, "windowDidEndLiveResize:");
}

template <> struct NSWindow::Methods<struct Geometry> {

    static WindowState& of(NSWindow& self) { return WindowAccess::state(self); }

    static CGFloat barHeight(NSWindowStyleMask style)
    {
        return WindowAccess::hasBar(style) ? kTitleBarHeight : 0;
    }
    static NSRect frameFor(Class&, NSRect content, NSWindowStyleMask style)
    {
        if (!(style & NSFullSizeContentViewWindowMask))
            content.size.height += barHeight(style);
        return content;
    }
    static NSRect contentFor(Class&, NSRect frame, NSWindowStyleMask style)
    {
        if (!(style & NSFullSizeContentViewWindowMask))
            frame.size.height = std::max<CGFloat>(0, frame.size.height - barHeight(style));
        return frame;
    }
    static NSRect contentRectForFrame(NSWindow& self, NSRect frame)
    {
        return NSWindow::cls().contentRectForFrameRect_styleMask(frame, self.styleMask());
    }
    static NSRect frameRectForContent(NSWindow& self, NSRect content)
    {
        return NSWindow::cls().frameRectForContentRect_styleMask(content, self.styleMask());
    }

    static NSRect frame(NSWindow& self) { return of(self).frame; }

    // A title bar stays below the top of the screen and within reach from every side; the size stays as it is.
    static NSRect constrain(NSWindow&, NSRect frame, NSScreen* screen)
    {
        const display::Screen* found = ScreenAccess::screenFor(screen ? screen->frame() : frame);
        if (!found)
            return frame;
        const NSRect room = found->visibleFrame;
        constexpr CGFloat kReach = 40;
        if (NSMaxY(frame) > NSMaxY(room))
            frame.origin.y = NSMaxY(room) - frame.size.height;
        if (NSMaxY(frame) < NSMinY(room) + kTitleBarHeight)
            frame.origin.y = NSMinY(room) + kTitleBarHeight - frame.size.height;
        frame.origin.x = between(frame.origin.x, NSMinX(room) - frame.size.width + kReach,
            std::max(NSMinX(room), NSMaxX(room) - kReach));
        return frame;
    }
    static void setFrame(NSWindow& self, NSRect frame, bool display)
    {
        const Ref<NSWindow> alive(&self);
        if (WindowAccess::isTitled(of(self)))
            frame = self.constrainFrameRect_toScreen(frame, nullptr);
        WindowAccess::applyFrame(self, frame, true);
        if (display) // what nobody sees yet is drawn when it appears
            WindowAccess::drawIfVisible(self);
    }
    static void setFrameAnimated(NSWindow& self, NSRect frame, bool display, bool animate)
    {
        inAnimationGroup([&](NSAnimationContext& context) {
            context.setDuration(animate && of(self).visible ? animationResizeTime(self, frame) : 0);
            self.send<"animator", Ref<NSObject>>()->send<"setFrame:display:">(frame, display);
        });
    }
    static double resizeTime(NSWindow& self, NSRect frame)
    {
        const NSRect now = of(self).frame;
        const CGFloat way = std::max(
            { std::abs(NSMinX(frame) - NSMinX(now)), std::abs(NSMinY(frame) - NSMinY(now)),
                std::abs(NSMaxX(frame) - NSMaxX(now)), std::abs(NSMaxY(frame) - NSMaxY(now)) });
        return std::isnan(way) ? 0 : std::min(way / 150 * 0.2, 1.0);
    }
    static void setFrameOrigin(NSWindow& self, NSPoint origin)
    {
        WindowAccess::applyFrame(self, { origin, of(self).frame.size }, true);
    }
    static void setFrameTopLeft(NSWindow& self, NSPoint point)
    {
        self.setFrameOrigin({ point.x, point.y - of(self).frame.size.height });
    }
    // The top left corner stays where it is.
    static void setContentSize(NSWindow& self, NSSize size)
    {
        const NSRect old = of(self).frame;
        NSRect frame = self.frameRectForContentRect({ old.origin, size });
        frame.origin.y = NSMaxY(old) - frame.size.height;
        self.setFrame_display(frame, true);
    }
    static void center(NSWindow& self)
    {
        const NSRect frame = of(self).frame;
        const display::Screen* screen = ScreenAccess::screenFor(frame);
        if (!screen)
            return;
        const NSRect room = screen->visibleFrame;
        const CGFloat above = (room.size.height - frame.size.height) * (2.0 / 3);
        self.setFrameOrigin(
            { std::round(NSMidX(room) - frame.size.width / 2), std::round(NSMinY(room) + above) });
    }

    static NSPoint cascade(NSWindow& self, NSPoint point)
    {
        constexpr CGFloat kStep = kTitleBarHeight;
        if (point == NSPoint {})
            point = { NSMinX(of(self).frame), NSMaxY(of(self).frame) };
        else
            self.setFrameTopLeftPoint(point);
        return { point.x + kStep, point.y - kStep };
    }

    // ---- limits

    static NSSize minSize(NSWindow& self) { return of(self).minSize; }
    static NSSize maxSize(NSWindow& self) { return of(self).maxSize; }
    static void setMinSize(NSWindow& self, NSSize size)
    {
        of(self).minSize = size;
        WindowAccess::tellSizes(self);
    }
    static void setMaxSize(NSWindow& self, NSSize size)
    {
        of(self).maxSize = size;
        WindowAccess::tellSizes(self);
    }
    static NSSize contentSizeFor(NSWindow& self, NSSize size)
    {
        return self.contentRectForFrameRect({ {}, size }).size;
    }
    static NSSize contentMin(NSWindow& self) { return contentSizeFor(self, self.minSize()); }
    static NSSize contentMax(NSWindow& self) { return contentSizeFor(self, self.maxSize()); }
    static void setContentMin(NSWindow& self, NSSize size)
    {
        self.setMinSize(self.frameRectForContentRect({ {}, size }).size);
    }
    static void setContentMax(NSWindow& self, NSSize size)
    {
        self.setMaxSize(self.frameRectForContentRect({ {}, size }).size);
    }

    // ---- places

    static bool inLiveResize(NSWindow& self) { return of(self).liveResize; }
    static Ref<NSScreen> screen(NSWindow& self)
    {
        const display::Screen* screen = ScreenAccess::screenFor(of(self).frame);
        return screen ? ScreenAccess::make(*screen) : Ref<NSScreen>();
    }
    static CGFloat backingScale(NSWindow& self)
    {
        WindowState& state = of(self);
        if (state.surface)
            return state.surface->scale();
        const display::Screen* screen = ScreenAccess::screenFor(state.frame);
        return screen ? screen->scale : 1;
    }
    static NSPoint pointToScreen(NSWindow& self, NSPoint p)
    {
        const NSPoint origin = of(self).frame.origin;
        return { p.x + origin.x, p.y + origin.y };
    }
    static NSPoint pointFromScreen(NSWindow& self, NSPoint p)
    {
        const NSPoint origin = of(self).frame.origin;
        return { p.x - origin.x, p.y - origin.y };
    }
    static NSRect rectToScreen(NSWindow& self, NSRect r)
    {
        return { pointToScreen(self, r.origin), r.size };
    }
    static NSRect rectFromScreen(NSWindow& self, NSRect r)
    {
        return { pointFromScreen(self, r.origin), r.size };
    }

    static void table(Builder& t)
    {
        t.classMethods({
            { "frameRectForContentRect:styleMask:", imp<frameFor> },
            { "contentRectForFrameRect:styleMask:", imp<contentFor> },
        });
        t.methods({
            { "frame", imp<frame> },
            { "setFrame:display:", imp<setFrame> },
            { "setFrame:display:animate:", imp<setFrameAnimated> },
            { "animationResizeTime:", imp<resizeTime> },
            { "setFrameOrigin:", imp<setFrameOrigin> },
            { "setFrameTopLeftPoint:", imp<setFrameTopLeft> },
            { "setContentSize:", imp<setContentSize> },
            { "contentRectForFrameRect:", imp<contentRectForFrame> },
            { "frameRectForContentRect:", imp<frameRectForContent> },
            { "constrainFrameRect:toScreen:", imp<constrain> },
            { "center", imp<center> },
            { "cascadeTopLeftFromPoint:", imp<cascade> },
            { "minSize", imp<minSize> },
            { "setMinSize:", imp<setMinSize> },
            { "maxSize", imp<maxSize> },
            { "setMaxSize:", imp<setMaxSize> },
            { "contentMinSize", imp<contentMin> },
            { "setContentMinSize:", imp<setContentMin> },
            { "contentMaxSize", imp<contentMax> },
            { "setContentMaxSize:", imp<setContentMax> },
            { "inLiveResize", imp<inLiveResize> },
            { "screen", imp<screen> },
            { "backingScaleFactor", imp<backingScale> },
            { "convertBaseToScreen:", imp<pointToScreen> },
            { "convertScreenToBase:", imp<pointFromScreen> },
            { "convertPointToScreen:", imp<pointToScreen> },
            { "convertPointFromScreen:", imp<pointFromScreen> },
            { "convertRectToScreen:", imp<rectToScreen> },
            { "convertRectFromScreen:", imp<rectFromScreen> },
        });
    }
};
BRINDLE_RECORD(NSWindow, Geometry)

}
