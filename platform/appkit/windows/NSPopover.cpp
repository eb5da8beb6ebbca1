// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSPopover.h"

#include "appkit/NSApplication.h"
#include "appkit/NSBezierPath.h"
#include "appkit/NSColor.h"
#include "appkit/NSEvent.h"
#include "appkit/NSScreen.h"
#include "appkit/NSViewController.h"
#include "appkit/NSWindow.h"
#include "appkit/controls/ControlDrawingPrivate.h"
#include "foundation/Exceptions.h"
#include "foundation/NSArray.h"
#include "foundation/NSNotificationCenter.h"
#include "runtime/Table.h"

#include <algorithm>
#include <cmath>

namespace brindle {

namespace {

    constexpr CGFloat kArrow = 11; // from the rim to its tip
    constexpr CGFloat kRadius = 7;
    constexpr CGFloat kRim = 1;

    /// Where a popover stands: on which side of the rectangle, and how far along its own side the arrow is.
    struct PopoverPlace {
        NSRect frame; // of the window, arrow included
        NSRectEdge edge = NSMinYEdge;
        CGFloat tip = 0;
    };

    bool isVertical(NSRectEdge edge) { return edge == NSMinYEdge || edge == NSMaxYEdge; }
    NSRectEdge oppositeOf(NSRectEdge edge) { return static_cast<NSRectEdge>((edge + 2) % 4); }

    CGFloat roomBeyond(NSRect target, NSRectEdge edge, NSRect screen)
    {
        switch (edge) {
        case NSMinXEdge:
            return NSMinX(target) - NSMinX(screen);
        case NSMaxXEdge:
            return NSMaxX(screen) - NSMaxX(target);
        case NSMinYEdge:
            return NSMinY(target) - NSMinY(screen);
        case NSMaxYEdge:
            return NSMaxY(screen) - NSMaxY(target);
        }
        return 0;
    }

    PopoverPlace placeFor(NSSize content, NSRect target, NSRectEdge edge, NSRect screen)
    {
        NSSize body { content.width + 2 * kRim, content.height + 2 * kRim };
        const CGFloat depth = (isVertical(edge) ? body.height : body.width) + kArrow;
        const NSRectEdge other = oppositeOf(edge);
        if (roomBeyond(target, edge, screen) < depth && roomBeyond(target, other, screen) >= depth)
            edge = other;
        (isVertical(edge) ? body.height : body.width) += kArrow;
        NSRect frame { { NSMidX(target) - body.width / 2, NSMidY(target) - body.height / 2 },
            body };
        if (edge == NSMinXEdge)
            frame.origin.x = NSMinX(target) - body.width;
        else if (edge == NSMaxXEdge)
            frame.origin.x = NSMaxX(target);
        else if (edge == NSMinYEdge)
            frame.origin.y = NSMinY(target) - body.height;
        else
            frame.origin.y = NSMaxY(target);
        const auto within = [](CGFloat value, CGFloat least, CGFloat most) {
            return std::round(std::max(std::min(value, most), least));
        };
        frame.origin.x = within(frame.origin.x, NSMinX(screen), NSMaxX(screen) - body.width);
        frame.origin.y = within(frame.origin.y, NSMinY(screen), NSMaxY(screen) - body.height);
        const CGFloat along
            = isVertical(edge) ? NSMidX(target) - NSMinX(frame) : NSMidY(target) - NSMinY(frame);
        const CGFloat length = isVertical(edge) ? body.width : body.height;
        const CGFloat margin = kRadius + kArrow;
        return { frame, edge, within(along, margin, std::max(margin, length - margin)) };
    }

    NSRect bodyOf(NSRect bounds, NSRectEdge edge)
    {
        if (isVertical(edge))
            bounds.size.height -= kArrow;
        else
            bounds.size.width -= kArrow;
        if (edge == NSMaxXEdge) // right of the rectangle: the arrow is at the left
            bounds.origin.x += kArrow;
        if (edge == NSMaxYEdge)
            bounds.origin.y += kArrow;
        return bounds;
    }

}

/// Draws the bubble round the content.
class NSPopoverFrame : public NSView {
    BRINDLE_OBJECT(NSPopoverFrame, NSView)

public:
    WeakRef<NSPopover> popover_;
    NSRectEdge edge_ = NSMinYEdge;
    CGFloat tip_ = 0;
};

template <> struct NSPopoverFrame::Methods<struct Look> {

    static Ref<NSBezierPath> outline(NSPopoverFrame& self)
    {
        const NSRect body = NSInsetRect(bodyOf(self.bounds(), self.edge_), kRim, kRim);
        const Ref<NSBezierPath> path
            = NSBezierPath::cls().bezierPathWithRoundedRect_xRadius_yRadius(body, kRadius, kRadius);
        // The base of the arrow lies a little inside, so that the two make one shape.
        const bool up = isVertical(self.edge_);
        const bool towardMax = self.edge_ == NSMinXEdge || self.edge_ == NSMinYEdge;
        const CGFloat rim = up ? (towardMax ? NSMaxY(body) : NSMinY(body))
                               : (towardMax ? NSMaxX(body) : NSMinX(body));
        const CGFloat sign = towardMax ? 1 : -1;
        const auto at = [up](CGFloat along, CGFloat across) {
            return up ? NSPoint { along, across } : NSPoint { across, along };
        };
        path->moveToPoint(at(self.tip_ - kArrow, rim - sign));
        path->lineToPoint(at(self.tip_, rim + sign * (kArrow - 2 * kRim)));
        path->lineToPoint(at(self.tip_ + kArrow, rim - sign));
        path->closePath();
        return path;
    }
    static void drawRect(NSPopoverFrame& self, NSRect)
    {
        const Ref<NSBezierPath> path = outline(self);
        const bool dark = controls::isDark();
        // The ground hides the inner half, and what the rims of bubble and arrow would draw across each other.
        NSColor::cls().colorWithCalibratedWhite_alpha(dark ? 1 : 0.1, 0.3)->set();
        path->setLineWidth(2 * kRim);
        path->stroke();
        NSColor::cls().windowBackgroundColor()->set();
        path->fill();
    }
    /// Escape, where nothing in the bubble wants it.
    static bool performKeyEquivalent(NSPopoverFrame& self, NSEvent* event)
    {
        if (super<NSPopoverFrame, "performKeyEquivalent:", bool>(self, event))
            return true;
        const Ref<NSPopover> popover = self.popover_.get();
        const Ref<NSString> typed = maybe(event)->charactersIgnoringModifiers();
        if (!popover || popover->behavior() == NSPopoverBehaviorApplicationDefined
            || maybe(typed)->length() != 1 || typed->characterAtIndex(0) != 0x1B)
            return false;
        popover->performClose(nullptr);
        return true;
    }
    static void table(Builder& t)
    {
        t.methods({
            { "drawRect:", imp<drawRect> },
            { "performKeyEquivalent:", imp<performKeyEquivalent> },
        });
    }
};
BRINDLE_RECORD(NSPopoverFrame, Look)

template <> struct NSPopover::Methods<struct Basics> {

    static Ref<NSViewController> controller(NSPopover& self)
    {
        return static_cast<NSViewController*>(self.contentViewController_.get());
    }
    static void setController(NSPopover& self, NSViewController* controller)
    {
        self.contentViewController_ = controller;
        if (self.isShown())
            place(self);
    }
    static void setContentSize(NSPopover& self, NSSize size)
    {
        self.contentSize_ = size;
        if (self.isShown())
            place(self);
    }
    static void setPositioningRect(NSPopover& self, NSRect rect)
    {
        self.positioningRect_ = rect;
        if (self.isShown())
            place(self);
    }
    static bool isShown(NSPopover& self) { return self.window_ != nullptr; }

    static void tell(NSPopover& self, NSString* name, const char* delegateSelector)
    {
        const Ref<NSNotification> note
            = NSNotification::cls().notificationWithName_object(name, &self);
        const SEL sel = sel_registerName(delegateSelector);
        const Ref<NSObject> delegate = self.delegate_.get();
        if (delegate && delegate->respondsToSelector(sel))
            delegate->performSelector_withObject(sel, note.get());
        NSNotificationCenter::cls().defaultCenter()->postNotification(note.get());
    }

    static Ref<NSView> content(NSPopover& self)
    {
        const Ref<NSObject>& controller = self.contentViewController_;
        const bool shows = controller && controller->respondsToSelector(selector<"view">);
        return shows ? controller->send<"view", Ref<NSView>>() : Ref<NSView>();
    }
    static NSSize sizeOf(NSPopover& self, NSView* content)
    {
        const NSSize size = self.contentSize();
        return size.width > 0 && size.height > 0 ? size : content->frame().size;
    }
    static void place(NSPopover& self)
    {
        const Ref<NSView> view = self.view_.get();
        const Ref<NSView> shown = content(self);
        const Ref<NSWindow> host = maybe(view)->window();
        if (!host || !shown)
            return;
        const NSRect rect
            = NSIsEmptyRect(self.positioningRect_) ? view->bounds() : self.positioningRect_;
        const NSRect target = host->convertRectToScreen(view->convertRect_toView(rect, nullptr));
        const Ref<NSScreen> screen = host->screen();
        const NSRect room = screen ? screen->visibleFrame() : target;
        NSRectEdge edge = self.edge_;
        if (view->isFlipped() && isVertical(edge))
            edge = oppositeOf(edge);
        const PopoverPlace where = placeFor(sizeOf(self, shown.get()), target, edge, room);
        self.window_->setFrame_display(where.frame, false);
        const Ref<NSPopoverFrame> bubble = cast<NSPopoverFrame>(self.window_->contentView());
        NSPopoverFrame& frame = *bubble;
        frame.edge_ = where.edge;
        frame.tip_ = where.tip;
        frame.setNeedsDisplay(true);
        if (shown->superview() != &frame) {
            frame.setSubviews(make<NSArray>().get());
            frame.addSubview(shown.get());
        }
        shown->setFrame(NSInsetRect(bodyOf(frame.bounds(), where.edge), kRim, kRim));
    }

    static void show(NSPopover& self, NSRect rect, NSView* view, NSRectEdge edge)
    {
        if (!view || !view->isKindOfClass(NSView::cls()) || !view->window())
            raise("NSInvalidArgumentException",
                "*** -[NSPopover showRelativeToRect:ofView:preferredEdge:]: the view is in no "
                "window");
        if (!content(self))
            raise("NSInvalidArgumentException",
                "*** -[NSPopover showRelativeToRect:ofView:preferredEdge:]: there is nothing to "
                "show");
        self.positioningRect_ = rect;
        self.edge_ = edge > NSMaxYEdge ? NSMinYEdge : edge;
        self.view_ = view;
        if (self.isShown())
            return place(self);
        const Ref<NSPopover> alive(&self);
        const Ref<NSView> target(view);
        tell(self, NSPopoverWillShowNotification, "popoverWillShow:");
        const Ref<NSWindow> host = target->window();
        if (!host || self.isShown())
            return;
        self.kept_ = &self;
        self.window_ = alloc<NSWindow>()->initWithContentRect_styleMask_backing_defer(
            {}, NSBorderlessWindowMask, NSBackingStoreBuffered, true);
        self.window_->setReleasedWhenClosed(false);
        self.window_->setOpaque(false);
        self.window_->setBackgroundColor(NSColor::cls().clearColor().get());
        const Ref<NSPopoverFrame> frame = make<NSPopoverFrame>();
        frame->popover_ = &self;
        self.window_->setContentView(frame.get());
        place(self);
        host->addChildWindow_ordered(self.window_.get(), NSWindowAbove);
        observe(self, *host);
        self.window_->makeKeyAndOrderFront(nullptr);
        tell(self, NSPopoverDidShowNotification, "popoverDidShow:");
    }
    static void observe(NSPopover& self, NSWindow& host)
    {
        const Ref<NSNotificationCenter> center = NSNotificationCenter::cls().defaultCenter();
        const auto listen = [&](SEL sel, NSString* name, NSObject* object) {
            center->addObserver_selector_name_object(&self, sel, name, object);
        };
        listen(selector<"_lostKey:">, NSWindowDidResignKeyNotification, self.window_.get());
        listen(selector<"_hostBecameKey:">, NSWindowDidBecomeKeyNotification, &host);
        listen(selector<"_hostCloses:">, NSWindowWillCloseNotification, &host);
    }
    static void lostKey(NSPopover& self, NSNotification*)
    {
        if (self.behavior() == NSPopoverBehaviorTransient)
            self.performClose(nullptr);
    }
    static void hostBecameKey(NSPopover& self, NSNotification*)
    {
        if (self.behavior() == NSPopoverBehaviorSemitransient)
            self.performClose(nullptr);
    }
    static void hostCloses(NSPopover& self, NSNotification*) { self.close(); }

    static void performClose(NSPopover& self, NSObject*)
    {
        const Ref<NSObject> delegate = self.delegate_.get();
        if (delegate && delegate->respondsToSelector(selector<"popoverShouldClose:">)
            && !delegate->send<"popoverShouldClose:", bool>(&self))
            return;
        self.close();
    }
    static void close(NSPopover& self)
    {
        if (!self.isShown())
            return;
        const Ref<NSPopover> alive = std::move(self.kept_);
        const Ref<NSWindow> window = std::move(self.window_);
        self.window_ = nullptr;
        NSNotificationCenter::cls().defaultCenter()->removeObserver(&self);
        tell(self, NSPopoverWillCloseNotification, "popoverWillClose:");
        const Ref<NSWindow> host = window->parentWindow();
        const bool hadKey = window->isKeyWindow();
        maybe(host)->removeChildWindow(window.get());
        window->close();
        if (hadKey && host && host->isVisible())
            host->makeKeyWindow();
        tell(self, NSPopoverDidCloseNotification, "popoverDidClose:");
    }

    static void table(Builder& t)
    {
        t.methods({
            { "contentViewController", imp<controller> },
            { "setContentViewController:", imp<setController> },
            { "setContentSize:", imp<setContentSize> },
            { "setPositioningRect:", imp<setPositioningRect> },
            { "isShown", imp<isShown> },
            { "showRelativeToRect:ofView:preferredEdge:", imp<show> },
            { "performClose:", imp<performClose> },
            { "close", imp<close> },
            { "_lostKey:", imp<lostKey> },
            { "_hostBecameKey:", imp<hostBecameKey> },
            { "_hostCloses:", imp<hostCloses> },
        });
        t.properties({
            property<&NSPopover::delegate_>("delegate", nonatomic),
            property<&NSPopover::contentSize_>("contentSize", nonatomic),
            property<&NSPopover::behavior_>("behavior", nonatomic),
            property<&NSPopover::animates_>("animates", nonatomic),
            property<&NSPopover::positioningRect_>("positioningRect", nonatomic),
        });
    }
};
BRINDLE_RECORD(NSPopover, Basics)

}
