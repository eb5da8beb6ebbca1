// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSScrollView.h"

#include <algorithm>

#include "appkit/NSColor.h"
#include "foundation/Exceptions.h"
#include "foundation/NSTimer.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct NSScrollView::Methods<struct Content> {

    static Ref<NSView> initWithFrame(NSScrollView& self, NSRect frame)
    {
        const Ref<NSView> made = super<NSScrollView, "initWithFrame:", Ref<NSView>>(self, frame);
        if (!made)
            return nullptr;
        self.scrollerStyle_ = NSScroller::cls().preferredScrollerStyle();
        self.contentView_
            = cast<NSClipView>(alloc<NSClipView>()->initWithFrame({ NSZeroPoint, frame.size }));
        self.addSubview(self.contentView_.get());
        self.tile();
        return made;
    }
    static void dealloc(NSScrollView& self)
    {
        maybe(self.fade_)->invalidate();
        maybe(self.settle_)->invalidate();
        super<NSScrollView, "dealloc">(self);
    }
    static bool isFlipped(NSScrollView&) { return true; }
    static bool isOpaque(NSScrollView& self)
    {
        return maybe(self.contentView_)->isOpaque() && self.borderType_ == NSNoBorder
            && self.drawsBackground();
    }

    // ---- clip view and document

    static Ref<NSClipView> contentView(NSScrollView& self) { return self.contentView_; }
    static void setContentView(NSScrollView& self, NSClipView* clip)
    {
        if (!clip || self.contentView_ == clip)
            return;
        if (!clip->isKindOfClass(NSClipView::cls()))
            raise("NSInvalidArgumentException",
                "*** -[NSScrollView setContentView:]: not a clip view");
        const Ref<NSScrollView> alive(&self);
        const Ref<NSClipView> fresh(clip);
        const Ref<NSClipView> old = std::exchange(self.contentView_, fresh);
        const Ref<NSView> document = maybe(old)->documentView();
        maybe(old)->removeFromSuperview();
        self.addSubview_positioned_relativeTo(fresh.get(), NSWindowBelow, nullptr);
        if (document && !fresh->documentView())
            fresh->setDocumentView(document.get());
        self.tile();
    }
    static Ref<NSView> documentView(NSScrollView& self)
    {
        return maybe(self.contentView())->documentView();
    }
    static void setDocumentView(NSScrollView& self, NSView* view)
    {
        const Ref<NSScrollView> alive(&self);
        maybe(self.contentView())->setDocumentView(view);
        self.tile();
    }
    static NSRect documentVisibleRect(NSScrollView& self)
    {
        return maybe(self.contentView())->documentVisibleRect();
    }
    static NSSize contentSize(NSScrollView& self)
    {
        return maybe(self.contentView())->frame().size;
    }
    static void willRemoveSubview(NSScrollView& self, NSView* view)
    {
        super<NSScrollView, "willRemoveSubview:">(self, view);
        for (Ref<NSScroller>* scroller : { &self.verticalScroller_, &self.horizontalScroller_ }) {
            if (*scroller && scroller->get() == view)
                *scroller = nullptr;
        }
    }

    // ---- scrollers

    static void putScroller(NSScrollView& self, Ref<NSScroller>& place, NSScroller* fresh)
    {
        if (place == fresh)
            return;
        if (fresh && !fresh->isKindOfClass(NSScroller::cls()))
            raise("NSInvalidArgumentException", "*** -[NSScrollView setScroller:]: not a scroller");
        const Ref<NSScroller> scroller(fresh);
        if (const Ref<NSScroller> old = std::exchange(place, nullptr)) {
            old->setTarget(nullptr);
            old->removeFromSuperview();
        }
        if (scroller) {
            self.addSubview(scroller.get());
            place = scroller;
            scroller->setScrollerStyle(self.scrollerStyle_);
            scroller->setKnobStyle(self.knobStyle_);
            scroller->setTarget(&self);
            scroller->setAction(selector<"scrollWithScroller:">);
        }
        self.tile();
        self.flashScrollers();
    }
    static void setHasScroller(NSScrollView& self, Ref<NSScroller>& place, bool has, NSSize shape)
    {
        if (has == (place != nullptr))
            return;
        const Ref<NSScroller> made = has
            ? cast<NSScroller>(alloc<NSScroller>()->initWithFrame({ NSZeroPoint, shape }))
            : nullptr;
        putScroller(self, place, made.get());
    }
    static bool hasVertical(NSScrollView& self) { return self.verticalScroller_ != nullptr; }
    static void setHasVertical(NSScrollView& self, bool has)
    {
        setHasScroller(self, self.verticalScroller_, has, { 15, 100 });
    }
    static bool hasHorizontal(NSScrollView& self) { return self.horizontalScroller_ != nullptr; }
    static void setHasHorizontal(NSScrollView& self, bool has)
    {
        setHasScroller(self, self.horizontalScroller_, has, { 100, 15 });
    }
    static Ref<NSScroller> vertical(NSScrollView& self) { return self.verticalScroller_; }
    static void setVertical(NSScrollView& self, NSScroller* scroller)
    {
        putScroller(self, self.verticalScroller_, scroller);
    }
    static Ref<NSScroller> horizontal(NSScrollView& self) { return self.horizontalScroller_; }
    static void setHorizontal(NSScrollView& self, NSScroller* scroller)
    {
        putScroller(self, self.horizontalScroller_, scroller);
    }
    static void setAutohides(NSScrollView& self, bool hides)
    {
        self.autohides_ = hides;
        self.tile();
    }
    static void setScrollerStyle(NSScrollView& self, NSScrollerStyle style)
    {
        self.scrollerStyle_ = style;
        maybe(self.verticalScroller_)->setScrollerStyle(style);
        maybe(self.horizontalScroller_)->setScrollerStyle(style);
        self.tile();
        self.flashScrollers();
    }
    static void setKnobStyle(NSScrollView& self, NSScrollerKnobStyle style)
    {
        self.knobStyle_ = style;
        maybe(self.verticalScroller_)->setKnobStyle(style);
        maybe(self.horizontalScroller_)->setKnobStyle(style);
    }

    // ---- look

    static void setBorderType(NSScrollView& self, NSBorderType type)
    {
        self.borderType_ = type;
        self.tile();
        self.setNeedsDisplay(true);
    }
    static bool drawsBackground(NSScrollView& self)
    {
        return maybe(self.contentView())->drawsBackground();
    }
    static void setDrawsBackground(NSScrollView& self, bool draws)
    {
        maybe(self.contentView())->setDrawsBackground(draws);
        self.setNeedsDisplay(true);
    }
    static Ref<NSColor> backgroundColor(NSScrollView& self)
    {
        return maybe(self.contentView())->backgroundColor();
    }
    static void setBackgroundColor(NSScrollView& self, NSColor* color)
    {
        maybe(self.contentView())->setBackgroundColor(color);
    }

    // ---- steps

    static CGFloat line(NSScrollView& self) { return self.verticalLine_; }
    static void setLine(NSScrollView& self, CGFloat points)
    {
        self.setVerticalLineScroll(points);
        self.setHorizontalLineScroll(points);
    }
    static CGFloat page(NSScrollView& self) { return self.verticalPage_; }
    static void setPage(NSScrollView& self, CGFloat points)
    {
        self.setVerticalPageScroll(points);
        self.setHorizontalPageScroll(points);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "dealloc", imp<dealloc> },
            { "isFlipped", imp<isFlipped> },
            { "isOpaque", imp<isOpaque> },
            { "contentView", imp<contentView> },
            { "setContentView:", imp<setContentView> },
            { "documentView", imp<documentView> },
            { "setDocumentView:", imp<setDocumentView> },
            { "documentVisibleRect", imp<documentVisibleRect> },
            { "contentSize", imp<contentSize> },
            { "willRemoveSubview:", imp<willRemoveSubview> },
            { "hasVerticalScroller", imp<hasVertical> },
            { "setHasVerticalScroller:", imp<setHasVertical> },
            { "hasHorizontalScroller", imp<hasHorizontal> },
            { "setHasHorizontalScroller:", imp<setHasHorizontal> },
            { "verticalScroller", imp<vertical> },
            { "setVerticalScroller:", imp<setVertical> },
            { "horizontalScroller", imp<horizontal> },
            { "setHorizontalScroller:", imp<setHorizontal> },
            { "setAutohidesScrollers:", imp<setAutohides> },
            { "setScrollerStyle:", imp<setScrollerStyle> },
            { "setScrollerKnobStyle:", imp<setKnobStyle> },
            { "setBorderType:", imp<setBorderType> },
            { "drawsBackground", imp<drawsBackground> },
            { "setDrawsBackground:", imp<setDrawsBackground> },
            { "backgroundColor", imp<backgroundColor> },
            { "setBackgroundColor:", imp<setBackgroundColor> },
            { "lineScroll", imp<line> },
            { "setLineScroll:", imp<setLine> },
            { "pageScroll", imp<page> },
            { "setPageScroll:", imp<setPage> },
        });
        using S = NSScrollView;
        t.properties({
            property<&S::autohides_>("autohidesScrollers", nonatomic, ivarName("_autohides")),
            property<&S::scrollerStyle_>("scrollerStyle", nonatomic),
            property<&S::knobStyle_>("scrollerKnobStyle", nonatomic, ivarName("_knobStyle")),
            property<&S::borderType_>("borderType", nonatomic),
            property<&S::horizontalElasticity_>(
                "horizontalScrollElasticity", nonatomic, ivarName("_horizontalElasticity")),
            property<&S::verticalElasticity_>(
                "verticalScrollElasticity", nonatomic, ivarName("_verticalElasticity")),
            property<&S::verticalLine_>("verticalLineScroll", nonatomic, ivarName("_verticalLine")),
            property<&S::horizontalLine_>(
                "horizontalLineScroll", nonatomic, ivarName("_horizontalLine")),
            property<&S::verticalPage_>("verticalPageScroll", nonatomic, ivarName("_verticalPage")),
            property<&S::horizontalPage_>(
                "horizontalPageScroll", nonatomic, ivarName("_horizontalPage")),
            property<&S::predominantAxis_>(
                "usesPredominantAxisScrolling", nonatomic, ivarName("_predominantAxis")),
            property<&S::dynamic_>("scrollsDynamically", nonatomic, ivarName("_dynamic")),
        });
    }
};
BRINDLE_RECORD(NSScrollView, Content)

}
