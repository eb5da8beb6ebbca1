// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSScrollView.h"

#include <algorithm>

#include "appkit/NSColor.h"
#include "appkit/NSGraphicsContext.h"
#include "appkit/controls/ControlDrawingPrivate.h"
#include "appkit/views/NSViewPrivate.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct NSScrollView::Methods<struct Tiling> {

    static constexpr CGFloat borderWidth(NSBorderType type)
    {
        return type == NSNoBorder ? 0 : type == NSGrooveBorder ? 2 : 1;
    }
    /// Answers the room that a scroller takes from the content.
    static CGFloat thickness(bool present, NSControlSize size, NSScrollerStyle style)
    {
        return present && style == NSScrollerStyleLegacy
            ? NSScroller::cls().scrollerWidthForControlSize_scrollerStyle(size, style)
            : 0;
    }
    static NSSize around(bool horizontal, bool vertical, NSBorderType border, NSControlSize size,
        NSScrollerStyle style)
    {
        const CGFloat edges = 2 * borderWidth(border);
        return { edges + thickness(vertical, size, style),
            edges + thickness(horizontal, size, style) };
    }
    static NSSize frameSize(Class&, NSSize content, Class* horizontal, Class* vertical,
        NSBorderType border, NSControlSize size, NSScrollerStyle style)
    {
        const NSSize room = around(horizontal, vertical, border, size, style);
        return { content.width + room.width, content.height + room.height };
    }
    static NSSize contentSize(Class&, NSSize frame, Class* horizontal, Class* vertical,
        NSBorderType border, NSControlSize size, NSScrollerStyle style)
    {
        const NSSize room = around(horizontal, vertical, border, size, style);
        return { std::max(0.0, frame.width - room.width),
            std::max(0.0, frame.height - room.height) };
    }

    // ---- laying out

    static CGFloat widthOf(const Ref<NSScroller>& scroller)
    {
        return scroller
            ? scroller->classObject()->send<"scrollerWidthForControlSize:scrollerStyle:", CGFloat>(
                scroller->controlSize(), scroller->scrollerStyle())
            : 0;
    }
    static bool isBeside(const Ref<NSScroller>& scroller)
    {
        return scroller && scroller->scrollerStyle() == NSScrollerStyleLegacy;
    }
    /// Which scrollers show, and the content they leave.
    struct Plan {
        bool vertical;
        bool horizontal;
        NSRect content;
    };
    static Plan planFor(NSScrollView& self, NSRect room)
    {
        const Ref<NSView> document = self.documentView();
        const NSSize wanted = document ? document->frame().size : NSZeroSize;
        const Ref<NSScroller>& v = self.verticalScroller_;
        const Ref<NSScroller>& h = self.horizontalScroller_;
        Plan plan { v && !self.autohides_, h && !self.autohides_, room };
        for (int pass = 0; pass < 3; ++pass) { // one scroller may make the other necessary
            plan.content = room;
            if (plan.vertical && isBeside(v))
                plan.content.size.width = std::max(0.0, room.size.width - widthOf(v));
            if (plan.horizontal && isBeside(h))
                plan.content.size.height = std::max(0.0, room.size.height - widthOf(h));
            plan.vertical = plan.vertical || (v && wanted.height > plan.content.size.height);
            plan.horizontal = plan.horizontal || (h && wanted.width > plan.content.size.width);
        }
        return plan;
    }
    static void place(const Ref<NSScroller>& scroller, bool shows, NSRect frame)
    {
        if (!scroller)
            return;
        scroller->setHidden(!shows);
        scroller->setFrame(frame);
    }
    static void placeScrollers(NSScrollView& self, const Plan& plan, NSRect room)
    {
        const CGFloat wide = widthOf(self.verticalScroller_);
        const CGFloat high = widthOf(self.horizontalScroller_);
        const bool both = plan.vertical && plan.horizontal;
        place(self.verticalScroller_, plan.vertical,
            NSMakeRect(NSMaxX(room) - wide, NSMinY(room), wide,
                std::max(0.0, room.size.height - (both ? high : 0))));
        place(self.horizontalScroller_, plan.horizontal,
            NSMakeRect(NSMinX(room), NSMaxY(room) - high,
                std::max(0.0, room.size.width - (both ? wide : 0)), high));
    }

    // ---- the header

    static Ref<NSView> wantedHeader(NSScrollView& self)
    {
        const Ref<NSView> document = self.documentView();
        if (!document || !document->respondsToSelector(selector<"headerView">))
            return nullptr;
        return document->send<"headerView", Ref<NSView>>();
    }
    /// Puts the header where the document has one, and answers its height.
    static CGFloat settleHeader(NSScrollView& self)
    {
        const Ref<NSView> header = wantedHeader(self);
        if (!header) {
            if (const Ref<NSClipView> old = std::exchange(self.headerClip_, nullptr))
                old->removeFromSuperview();
            return 0;
        }
        if (!self.headerClip_) {
            self.headerClip_ = cast<NSClipView>(alloc<NSClipView>()->initWithFrame(NSZeroRect));
            self.addSubview_positioned_relativeTo(
                self.headerClip_.get(), NSWindowAbove, self.contentView_.get());
        }
        self.headerClip_->setDocumentView(header.get());
        return header->frame().size.height;
    }

    static void tile(NSScrollView& self)
    {
        if (self.tiling_ || !self.contentView_)
            return;
        const Ref<NSScrollView> alive(&self);
        place(self);
        self.reflectScrolledClipView(self.contentView_.get());
    }
    // A document that raises when it is resized does not end tiling for good.
    struct InTurn {
        explicit InTurn(NSScrollView& view)
            : view_(view)
        {
            view_.tiling_ = true;
        }
        ~InTurn() { view_.tiling_ = false; }
        InTurn(const InTurn&) = delete;
        InTurn& operator=(const InTurn&) = delete;

    private:
        NSScrollView& view_;
    };
    static void place(NSScrollView& self)
    {
        const InTurn turn(self);
        const CGFloat border = borderWidth(self.borderType_);
        NSRect room = NSInsetRect(self.bounds(), border, border);
        room.size.width = std::max(0.0, room.size.width);
        room.size.height = std::max(0.0, room.size.height);
        const CGFloat header = std::clamp(settleHeader(self), 0.0, room.size.height);
        NSRect below = room;
        below.origin.y += header;
        below.size.height -= header;
        const Ref<NSClipView> clip = self.contentView_;
        for (int pass = 0; pass < 2; ++pass) { // a document may follow the content's size
            const Plan plan = planFor(self, below);
            placeScrollers(self, plan, below);
            clip->setFrame(plan.content);
        }
        maybe(self.headerClip_)
            ->setFrame(NSMakeRect(NSMinX(room), NSMinY(room), clip->frame().size.width, header));
    }
    static void resizeSubviews(NSScrollView& self, NSSize) { self.tile(); }

    // ---- drawing

    static void drawBorder(NSScrollView& self)
    {
        const NSRect bounds = self.bounds();
        if (self.borderType_ == NSNoBorder)
            return;
        controls::Shade edge = controls::shadeOf(NSColor::cls().controlShadowColor());
        if (self.borderType_ == NSLineBorder)
            edge = controls::shadeOf(NSColor::cls().gridColor());
        controls::frameRounded(bounds, 0, 1, edge);
        if (self.borderType_ == NSGrooveBorder)
            controls::frameRounded(NSInsetRect(bounds, 1, 1), 0, 1,
                controls::shadeOf(NSColor::cls().controlHighlightColor()));
    }
    // Where two scrollers beside the content meet, and beside the header, nobody else draws.
    static void drawRect(NSScrollView& self, NSRect rect)
    {
        if (self.drawsBackground()) {
            self.backgroundColor()->set();
            NSRectFillUsingOperation(rect, NSCompositeSourceOver);
        }
        if (isBeside(self.verticalScroller_) && isBeside(self.horizontalScroller_)
            && !self.verticalScroller_->isHidden() && !self.horizontalScroller_->isHidden()) {
            NSColor::cls().scrollBarColor()->set();
            NSRectFill(NSMakeRect(NSMinX(self.verticalScroller_->frame()),
                NSMinY(self.horizontalScroller_->frame()), widthOf(self.verticalScroller_),
                widthOf(self.horizontalScroller_)));
        }
        drawBorder(self);
    }

    static void table(Builder& t)
    {
        t.classMethods({
            { "frameSizeForContentSize:horizontalScrollerClass:verticalScrollerClass:borderType:"
              "controlSize:scrollerStyle:",
                imp<frameSize> },
            { "contentSizeForFrameSize:horizontalScrollerClass:verticalScrollerClass:borderType:"
              "controlSize:scrollerStyle:",
                imp<contentSize> },
        });
        t.methods({
            { "tile", imp<tile> },
            { "resizeSubviewsWithOldSize:", imp<resizeSubviews> },
            { "drawRect:", imp<drawRect> },
        });
    }
};
BRINDLE_RECORD(NSScrollView, Tiling)

}
