// SPDX-License-Identifier: Apache-2.0
#include "ToolTipsPrivate.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "appkit/NSColor.h"
#include "appkit/NSFont.h"
#include "appkit/NSScreen.h"
#include "appkit/NSStringDrawing.h"
#include "appkit/controls/ControlDrawingPrivate.h"
#include "appkit/windows/NSWindowPrivate.h"
#include "foundation/NSAttributedString.h"
#include "foundation/NSDictionary.h"
#include "foundation/NSRunLoop.h"
#include "foundation/NSTimer.h"
#include "runtime/Runtime.h"
#include "runtime/Table.h"

namespace brindle {

/// The parts of a view that have tips of their own.
class ToolTipRects : public NSObject {
    BRINDLE_OBJECT(ToolTipRects, NSObject)

public:
    struct Part {
        NSToolTipTag tag;
        NSRect rect;
        WeakRef<NSObject> owner;
        void* data;
    };
    std::vector<Part> parts_; // the last that was added counts first

    static ToolTipRects* of(const NSView& view)
    {
        return static_cast<ToolTipRects*>(objc_borrowAssociatedObject(&view, &kKey));
    }
    static ToolTipRects& made(NSView& view)
    {
        if (!of(view))
            objc_setAssociatedObject(
                &view, &kKey, make<ToolTipRects>().get(), OBJC_ASSOCIATION_RETAIN_NONATOMIC);
        return *of(view);
    }
    static void drop(NSView& view)
    {
        objc_setAssociatedObject(&view, &kKey, nullptr, OBJC_ASSOCIATION_RETAIN_NONATOMIC);
    }

private:
    static constexpr char kKey = 0;
};

/// The window of a tip. It never has the keyboard, whatever other windows may.
class ToolTipWindow : public NSWindow {
    BRINDLE_OBJECT(ToolTipWindow, NSWindow)
};

/// Draws a tip's text on its ground.
class ToolTipView : public NSView {
    BRINDLE_OBJECT(ToolTipView, NSView)

public:
    Ref<NSAttributedString> text_;
};

namespace {

    constexpr double kRestSeconds = 0.7; // until a tip comes
    constexpr double kNextSeconds = 0.1; // from one tip to the next
    constexpr double kShownSeconds = 10;
    constexpr CGFloat kWidest = 300;
    constexpr CGFloat kSides = 7;
    constexpr CGFloat kEnds = 4;
    constexpr CGFloat kBelowPointer = 20;

    /// Where a tip comes from.
    struct Source {
        Ref<NSView> view;
        NSToolTipTag tag = 0; // 0 is the view itself

        explicit operator bool() const { return view != nullptr; }
        bool operator==(const Source& other) const
        {
            return view == other.view && tag == other.tag;
        }
    };

    const ToolTipRects::Part* partAt(const NSView& view, NSPoint point)
    {
        const ToolTipRects* const rects = ToolTipRects::of(view);
        if (!rects)
            return nullptr;
        const auto found = std::find_if(rects->parts_.rbegin(), rects->parts_.rend(),
            [&](const ToolTipRects::Part& part) { return NSPointInRect(point, part.rect); });
        return found == rects->parts_.rend() ? nullptr : &*found;
    }
    Source sourceAt(NSWindow& window, NSPoint point)
    {
        Ref<NSView> view = WindowAccess::state(window).frameView->hitTest(point);
        for (; view; view = view->superview()) {
            if (const auto* part = partAt(*view, view->convertPoint_fromView(point, nullptr)))
                return { view, part->tag };
            if (maybe(view->toolTip())->length())
                return { view, 0 };
        }
        return {};
    }
    Ref<NSString> textOf(const Source& source, NSPoint point)
    {
        if (source.tag == 0)
            return source.view->toolTip();
        const NSPoint inside = source.view->convertPoint_fromView(point, nullptr);
        const auto* const part = partAt(*source.view, inside);
        const Ref<NSObject> owner = part ? part->owner.get() : nullptr;
        if (!owner)
            return nullptr;
        constexpr SEL asks = selector<"view:stringForToolTip:point:userData:">;
        if (owner->respondsToSelector(asks))
            return owner->send<"view:stringForToolTip:point:userData:", Ref<NSString>>(
                source.view.get(), part->tag, inside, part->data);
        return owner->isKindOfClass(NSString::cls()) ? cast<NSString>(owner) : owner->description();
    }

    Ref<NSAttributedString> styled(NSString* text)
    {
        const Ref<NSDictionary> look
            = makeDictionary({ { NSFontAttributeName, NSFont::cls().toolTipsFontOfSize(0).get() },
                { NSForegroundColorAttributeName, NSColor::cls().textColor().get() } });
        return alloc<NSAttributedString>()->initWithString_attributes(text, look.get());
    }

    /// The tip that is shown or waited for.
    struct Tip {
        Source source; // of the one that is shown
        Ref<NSWindow> window; // made with the first tip
        Ref<NSTimer> rest;
        Ref<NSTimer> end;
        WeakRef<NSWindow> over; // where the pointer is
        NSPoint point; // in that window
        bool used = false; // some view has a tip

        static Tip& shared()
        {
            static auto* const tip = new Tip;
            return *tip;
        }
        static void stop(Ref<NSTimer>& timer)
        {
            if (const Ref<NSTimer> stopped = std::exchange(timer, nullptr))
                stopped->invalidate();
        }
        void hide()
        {
            stop(end);
            source = {};
            if (window && window->isVisible())
                window->orderOut(nullptr);
        }
        void wait(double seconds)
        {
            if (rest)
                return rest->restart(seconds);
            rest = NSTimer::cls().timerWithTimeInterval_repeats_block(
                seconds, false, [this](NSTimer*) {
                    rest = nullptr;
                    show();
                });
            NSRunLoop::cls().mainRunLoop()->addTimer_forMode(rest.get(), NSRunLoopCommonModes);
        }
        void show()
        {
            const Ref<NSWindow> host = over.get();
            if (!host || !host->isVisible())
                return;
            const Source found = sourceAt(*host, point);
            if (!found)
                return;
            const Ref<NSString> text = textOf(found, point);
            if (!maybe(text)->length())
                return;
            source = found;
            present(text.get(), host->convertPointToScreen(point), host->screen());
            end = NSTimer::cls().timerWithTimeInterval_repeats_block(
                kShownSeconds, false, [this](NSTimer*) { hide(); });
            NSRunLoop::cls().mainRunLoop()->addTimer_forMode(end.get(), NSRunLoopCommonModes);
        }
        void present(NSString* text, NSPoint pointer, const Ref<NSScreen>& screen)
        {
            if (!window)
                makeWindow();
            const Ref<NSView> content = window->contentView();
            auto& view = static_cast<ToolTipView&>(*content);
            view.text_ = styled(text);
            const NSSize size = boundingRectWithSize_options(
                view.text_, { kWidest, 0 }, NSStringDrawingUsesLineFragmentOrigin)
                                    .size;
            NSRect frame = NSMakeRect(pointer.x, pointer.y - kBelowPointer,
                std::ceil(size.width) + 2 * kSides, std::ceil(size.height) + 2 * kEnds);
            frame.origin.y -= frame.size.height;
            window->setFrame_display(within(frame, pointer, screen), false);
            view.setNeedsDisplay(true);
            window->orderFrontRegardless();
        }
        /// Keeps a frame on its screen: beside the pointer, and above it where there is no room below.
        static NSRect within(NSRect frame, NSPoint pointer, const Ref<NSScreen>& screen)
        {
            if (!screen)
                return frame;
            const NSRect room = screen->visibleFrame();
            frame.origin.x
                = std::max(NSMinX(room), std::min(frame.origin.x, NSMaxX(room) - frame.size.width));
            if (frame.origin.y < NSMinY(room))
                frame.origin.y = pointer.y + kEnds;
            return frame;
        }
        void makeWindow()
        {
            window = alloc<ToolTipWindow>()->initWithContentRect_styleMask_backing_defer(
                NSMakeRect(0, 0, 100, 20), NSBorderlessWindowMask, NSBackingStoreBuffered, true);
            window->setLevel(kToolTipLevel);
            window->setIgnoresMouseEvents(true);
            window->setContentView(make<ToolTipView>().get());
        }
    };

}

void ToolTips::pointerMoved(NSWindow& window, NSPoint point)
{
    Tip& tip = Tip::shared();
    if (!tip.used)
        return;
    tip.over = &window;
    tip.point = point;
    if (!tip.source)
        return tip.wait(kRestSeconds);
    if (tip.source == sourceAt(window, point))
        return;
    tip.hide();
    tip.wait(kNextSeconds);
}

void ToolTips::dismiss()
{
    Tip& tip = Tip::shared();
    Tip::stop(tip.rest);
    if (tip.source)
        tip.hide();
}

template <> struct ToolTipWindow::Methods<struct Key> {

    static bool no(ToolTipWindow&) { return false; }
    static void table(Builder& t)
    {
        t.methods({ { "canBecomeKeyWindow", imp<no> }, { "canBecomeMainWindow", imp<no> } });
    }
};
BRINDLE_RECORD(ToolTipWindow, Key)

template <> struct ToolTipView::Methods<struct Drawing> {

    static bool yes(ToolTipView&) { return true; }
    static void drawRect(ToolTipView& self, NSRect)
    {
        const NSRect bounds = self.bounds();
        controls::fillRounded(
            bounds, 0, controls::shadeOf(NSColor::cls().controlBackgroundColor()));
        controls::frameRounded(
            bounds, 0, controls::pixel(), controls::shadeOf(NSColor::cls().controlShadowColor()));
        drawWithRect_options(
            self.text_, NSInsetRect(bounds, kSides, kEnds), NSStringDrawingUsesLineFragmentOrigin);
    }
    static void table(Builder& t)
    {
        t.methods({ { "isFlipped", imp<yes> }, { "isOpaque", imp<yes> },
            { "drawRect:", imp<drawRect> } });
    }
};
BRINDLE_RECORD(ToolTipView, Drawing)

template <> struct ToolTipRects::Methods<struct Nothing> {
    static void table(Builder&) { }
};
BRINDLE_RECORD(ToolTipRects, Nothing)

template <> struct NSView::Methods<struct Tips> {

    static void setToolTip(NSView& self, NSString* text)
    {
        self.toolTip_ = text ? cast<NSString>(text->copy()) : nullptr;
        Tip& tip = Tip::shared();
        tip.used = tip.used || text;
        if (tip.source.view == &self)
            ToolTips::dismiss();
    }
    static NSToolTipTag add(NSView& self, NSRect rect, NSObject* owner, void* data)
    {
        static constinit NSToolTipTag last = 0;
        Tip::shared().used = true;
        ToolTipRects::made(self).parts_.push_back({ ++last, rect, owner, data });
        return last;
    }
    static void remove(NSView& self, NSToolTipTag tag)
    {
        ToolTipRects* const rects = ToolTipRects::of(self);
        if (!rects)
            return;
        std::erase_if(
            rects->parts_, [tag](const ToolTipRects::Part& part) { return part.tag == tag; });
        if (Tip::shared().source == Source { &self, tag })
            ToolTips::dismiss();
    }
    static void removeAll(NSView& self)
    {
        ToolTipRects::drop(self);
        self.setToolTip(nullptr);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "setToolTip:", imp<setToolTip> },
            { "addToolTipRect:owner:userData:", imp<add> },
            { "removeToolTip:", imp<remove> },
            { "removeAllToolTips", imp<removeAll> },
        });
    }
};
BRINDLE_RECORD(NSView, Tips)

}
