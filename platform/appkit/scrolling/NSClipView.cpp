// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSClipView.h"

#include <algorithm>
#include <cmath>

#include "appkit/NSColor.h"
#include "appkit/NSEvent.h"
#include "appkit/NSGraphicsContext.h"
#include "appkit/views/NSViewPrivate.h"
#include "appkit/windows/NSWindowPrivate.h"
#include "foundation/Exceptions.h"
#include "foundation/NSNotificationCenter.h"
#include "quartz/layers/AllServedPrivate.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    constexpr unsigned kDeepest = 32; // scrolling in observers of scrolling

    Ref<NSNotificationCenter> center() { return NSNotificationCenter::cls().defaultCenter(); }

    // What is no number stays as it was.
    CGFloat placed(CGFloat wanted, CGFloat present, CGFloat start, CGFloat whole, CGFloat part)
    {
        if (std::isnan(wanted))
            return present;
        return std::max(std::min(wanted, start + whole - part), start);
    }

}

template <> struct NSClipView::Methods<struct Content> {

    static bool isFlipped(NSClipView& self)
    {
        return self.documentView_ && self.documentView_->isFlipped();
    }
    static bool no(NSClipView&) { return false; }

    // ---- the document

    static void watch(NSClipView& self, NSView& document)
    {
        document.setPostsFrameChangedNotifications(true);
        document.setPostsBoundsChangedNotifications(true);
        center()->addObserver_selector_name_object(
            &self, selector<"viewFrameChanged:">, NSViewFrameDidChangeNotification, &document);
        center()->addObserver_selector_name_object(
            &self, selector<"viewBoundsChanged:">, NSViewBoundsDidChangeNotification, &document);
    }
    static void unwatch(NSClipView& self, NSView& document)
    {
        center()->removeObserver_name_object(&self, NSViewFrameDidChangeNotification, &document);
        center()->removeObserver_name_object(&self, NSViewBoundsDidChangeNotification, &document);
    }
    static Ref<NSView> forget(NSClipView& self)
    {
        if (self.documentView_)
            unwatch(self, *self.documentView_);
        return std::exchange(self.documentView_, nullptr);
    }
    static void setDocumentView(NSClipView& self, NSView* view)
    {
        if (view && !view->isKindOfClass(NSView::cls()))
            raise("NSInvalidArgumentException", "*** -[NSClipView setDocumentView:]: not a view");
        if (self.documentView_ == view)
            return;
        if (view && self.isDescendantOf(view))
            raise("NSInvalidArgumentException",
                "*** -[NSClipView setDocumentView:]: a view cannot be put into itself");
        const Ref<NSClipView> alive(&self);
        const Ref<NSView> fresh(view);
        AllServed all;
        if (const Ref<NSView> old = forget(self))
            ViewAccess::takeOut(*old, all);
        if (fresh && !self.documentView_) { // or the end of editing in the old one has set one
            self.documentView_ = fresh;
            if (ViewAccess::superview(*fresh) != &self)
                self.addSubview(fresh.get());
            watch(self, *fresh);
        }
        self.setNeedsDisplay(true);
        settle(self);
        all.end();
    }
    static void willRemoveSubview(NSClipView& self, NSView* view)
    {
        super<NSClipView, "willRemoveSubview:">(self, view);
        if (!view || self.documentView_ != view)
            return;
        const Ref<NSView> gone = forget(self);
        maybe(self.superview())->send<"reflectScrolledClipView:">(&self);
    }
    static Ref<NSView> documentView(NSClipView& self) { return self.documentView_; }

    static NSRect documentFrame(NSClipView& self)
    {
        return self.documentView_ ? self.documentView_->frame()
                                  : NSRect { NSZeroPoint, self.bounds().size };
    }
    static NSRect documentRect(NSClipView& self)
    {
        NSRect rect = documentFrame(self);
        const NSSize least = self.bounds().size;
        rect.size.width = std::max(rect.size.width, least.width);
        rect.size.height = std::max(rect.size.height, least.height);
        return rect;
    }
    static NSRect documentVisibleRect(NSClipView& self)
    {
        const Ref<NSView> document = self.documentView_;
        if (!document)
            return NSZeroRect;
        return NSIntersectionRect(
            document->convertRect_fromView(self.bounds(), &self), document->bounds());
    }

    // Something is larger, smaller or elsewhere now: the position may be outside, the knobs stand elsewhere.
    static void settle(NSClipView& self)
    {
        if (self.documentView_)
            self.setBoundsOrigin(self.bounds().origin);
        maybe(self.superview())->send<"reflectScrolledClipView:">(&self);
    }
    static void documentChanged(NSClipView& self, NSNotification*)
    {
        const Ref<NSClipView> alive(&self);
        settle(self);
    }
    static void setFrameSize(NSClipView& self, NSSize size)
    {
        const NSSize before = self.frame().size;
        super<NSClipView, "setFrameSize:">(self, size);
        if (self.frame().size != before)
            settle(self);
    }

    // ---- the position

    static NSRect constrainBoundsRect(NSClipView& self, NSRect wanted)
    {
        const NSRect document = documentFrame(self);
        const NSPoint present = self.bounds().origin;
        wanted.origin.x = placed(
            wanted.origin.x, present.x, NSMinX(document), document.size.width, wanted.size.width);
        wanted.origin.y = placed(
            wanted.origin.y, present.y, NSMinY(document), document.size.height, wanted.size.height);
        return wanted;
    }
    static NSPoint constrainScrollPoint(NSClipView& self, NSPoint point)
    {
        return self.constrainBoundsRect({ point, self.bounds().size }).origin;
    }
    static void scrollToPoint(NSClipView& self, NSPoint point)
    {
        self.setBoundsOrigin(self.constrainScrollPoint(point));
    }
    static void setBoundsOrigin(NSClipView& self, NSPoint wanted)
    {
        const NSRect bounds = self.bounds();
        const NSPoint origin = self.constrainBoundsRect({ wanted, bounds.size }).origin;
        if (origin == bounds.origin || self.steps_ >= kDeepest)
            return;
        const Ref<NSClipView> alive(&self);
        struct Step {
            explicit Step(unsigned& steps)
                : count(steps)
            {
                ++count;
            }
            ~Step() { --count; }
            Step(const Step&) = delete;
            Step& operator=(const Step&) = delete;
            unsigned& count;
        };
        const Step step(self.steps_);
        const bool isMoved = self.copiesOnScroll() && self.isOpaque()
            && WindowAccess::copyForScrolling(
                self, { bounds.origin.x - origin.x, bounds.origin.y - origin.y });
        ViewAccess::moveBounds(self, origin, !isMoved);
        maybe(self.superview())->send<"reflectScrolledClipView:">(&self);
        ViewAccess::postBoundsChange(self);
    }
    static void setBounds(NSClipView& self, NSRect bounds)
    {
        super<NSClipView, "setBounds:">(self, self.constrainBoundsRect(bounds));
        maybe(self.superview())->send<"reflectScrolledClipView:">(&self);
    }

    // ---- the pointer

    static CGFloat beyond(CGFloat place, CGFloat start, CGFloat end)
    {
        return place < start ? place - start : place > end ? place - end : 0;
    }
    static bool autoscroll(NSClipView& self, NSEvent* event)
    {
        if (!event)
            return false;
        const NSPoint point = self.convertPoint_fromView(event->locationInWindow(), nullptr);
        const NSRect bounds = self.bounds();
        self.scrollToPoint({ NSMinX(bounds) + beyond(point.x, NSMinX(bounds), NSMaxX(bounds)),
            NSMinY(bounds) + beyond(point.y, NSMinY(bounds), NSMaxY(bounds)) });
        return self.bounds().origin != bounds.origin;
    }

    // ---- drawing

    static Ref<NSColor> backgroundColor(NSClipView& self)
    {
        return self.backgroundColor_ ? self.backgroundColor_
                                     : NSColor::cls().controlBackgroundColor();
    }
    static void setBackgroundColor(NSClipView& self, NSColor* color)
    {
        self.backgroundColor_ = color;
        self.setNeedsDisplay(true);
    }
    static void setDrawsBackground(NSClipView& self, bool draws)
    {
        self.drawsBackground_ = draws;
        self.setNeedsDisplay(true);
    }
    static bool isOpaque(NSClipView& self)
    {
        if (self.drawsBackground())
            return self.backgroundColor()->alphaComponent() >= 1;
        const Ref<NSView> document = self.documentView_;
        return document && document->isOpaque()
            && NSContainsRect(ViewAccess::frame(*document), self.bounds());
    }
    static void drawRect(NSClipView& self, NSRect rect)
    {
        if (!self.drawsBackground())
            return;
        self.backgroundColor()->set();
        NSRectFillUsingOperation(rect, NSCompositeSourceOver);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "isFlipped", imp<isFlipped> },
            { "isOpaque", imp<isOpaque> },
            { "acceptsFirstResponder", imp<no> },
            { "documentView", imp<documentView> },
            { "setDocumentView:", imp<setDocumentView> },
            { "willRemoveSubview:", imp<willRemoveSubview> },
            { "documentRect", imp<documentRect> },
            { "documentVisibleRect", imp<documentVisibleRect> },
            { "viewFrameChanged:", imp<documentChanged> },
            { "viewBoundsChanged:", imp<documentChanged> },
            { "setFrameSize:", imp<setFrameSize> },
            { "constrainBoundsRect:", imp<constrainBoundsRect> },
            { "constrainScrollPoint:", imp<constrainScrollPoint> },
            { "scrollToPoint:", imp<scrollToPoint> },
            { "setBoundsOrigin:", imp<setBoundsOrigin> },
            { "setBounds:", imp<setBounds> },
            { "autoscroll:", imp<autoscroll> },
            { "drawRect:", imp<drawRect> },
            { "backgroundColor", imp<backgroundColor> },
            { "setBackgroundColor:", imp<setBackgroundColor> },
            { "setDrawsBackground:", imp<setDrawsBackground> },
        });
        t.properties({
            property<&NSClipView::documentView_>("documentView", nonatomic),
            property<&NSClipView::backgroundColor_>("backgroundColor", nonatomic, copied),
            property<&NSClipView::drawsBackground_>("drawsBackground", nonatomic),
            property<&NSClipView::copiesOnScroll_>("copiesOnScroll", nonatomic),
        });
    }
};
BRINDLE_RECORD(NSClipView, Content)

}
