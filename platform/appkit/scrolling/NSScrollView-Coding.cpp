// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSScrollView.h"
#include "appkit/NSColor.h"
#include "appkit/views/CodingPrivate.h"

namespace brindle {

// - Shape: what every view writes, and which of the subviews is the document: "NSDocView".
template <> struct NSClipView::Methods<struct Coding> {

    static void code(const NumberCoding& number, NSClipView& self)
    {
        number("NSDrawsBackground"_ns, self.drawsBackground_);
        number("NSCopiesOnScroll"_ns, self.copiesOnScroll_);
    }
    static void encode(NSClipView& self, NSCoder* coder)
    {
        super<NSClipView, "encodeWithCoder:">(self, coder);
        coder->encodeObject_forKey(self.documentView_.get(), "NSDocView"_ns);
        coder->encodeObject_forKey(self.backgroundColor_.get(), "NSBGColor"_ns);
        code({ coder, false }, self);
    }
    static Ref<NSObject> initWithCoder(NSClipView& self, NSCoder* coder)
    {
        Ref<NSObject> made = super<NSClipView, "initWithCoder:", Ref<NSObject>>(self, coder);
        if (!made)
            return nullptr;
        self.backgroundColor_ = decode<NSColor>(coder, "NSBGColor"_ns);
        code({ coder, true }, self);
        self.setDocumentView(decode<NSView>(coder, "NSDocView"_ns).get());
        self.scrollToPoint(coder->decodeRectForKey("NSBounds"_ns).origin);
        return made;
    }

    static void table(Builder& t) { extendCoding<encode, initWithCoder>(t); }
};
BRINDLE_RECORD(NSClipView, Coding)

// - Shape: what every view writes; "NSContentView", "NSVScroller" and "NSHScroller" name subviews.
template <> struct NSScrollView::Methods<struct Coding> {

    static void code(const NumberCoding& number, NSScrollView& self)
    {
        number("NSBorderType"_ns, self.borderType_, NSGrooveBorder);
        number("NSScrollerStyle"_ns, self.scrollerStyle_, NSScrollerStyleOverlay);
        number("NSKnobStyle"_ns, self.knobStyle_, NSScrollerKnobStyleLight);
        number("NSHElasticity"_ns, self.horizontalElasticity_, NSScrollElasticityAllowed);
        number("NSVElasticity"_ns, self.verticalElasticity_, NSScrollElasticityAllowed);
        number("NSVLineScroll"_ns, self.verticalLine_);
        number("NSHLineScroll"_ns, self.horizontalLine_);
        number("NSVPageScroll"_ns, self.verticalPage_);
        number("NSHPageScroll"_ns, self.horizontalPage_);
        number("NSAutohidesScrollers"_ns, self.autohides_);
        number("NSPredominantAxis"_ns, self.predominantAxis_);
        number("NSScrollsDynamically"_ns, self.dynamic_);
    }
    static void encode(NSScrollView& self, NSCoder* coder)
    {
        super<NSScrollView, "encodeWithCoder:">(self, coder);
        coder->encodeObject_forKey(self.contentView_.get(), "NSContentView"_ns);
        coder->encodeObject_forKey(self.verticalScroller_.get(), "NSVScroller"_ns);
        coder->encodeObject_forKey(self.horizontalScroller_.get(), "NSHScroller"_ns);
        code({ coder, false }, self);
    }
    static Ref<NSObject> initWithCoder(NSScrollView& self, NSCoder* coder)
    {
        Ref<NSObject> made = super<NSScrollView, "initWithCoder:", Ref<NSObject>>(self, coder);
        if (!made)
            return nullptr;
        code({ coder, true }, self);
        Ref<NSClipView> clip = decode<NSClipView>(coder, "NSContentView"_ns);
        if (!clip)
            clip = make<NSClipView>();
        // What holds a header is made anew by tiling.
        for (NSView* view : each<NSView>(self.subviews())) {
            if (view->isKindOfClass(NSClipView::cls()) && view != clip.get())
                view->removeFromSuperview();
        }
        if (clip->superview() != &self)
            self.addSubview_positioned_relativeTo(clip.get(), NSWindowBelow, nullptr);
        self.contentView_ = clip;
        self.verticalScroller_ = own(self, decode<NSScroller>(coder, "NSVScroller"_ns));
        self.horizontalScroller_ = own(self, decode<NSScroller>(coder, "NSHScroller"_ns));
        self.tile();
        return made;
    }
    /// Takes a scroller over; one that is no subview is none of its own.
    static Ref<NSScroller> own(NSScrollView& self, const Ref<NSScroller>& scroller)
    {
        if (!scroller || scroller->superview() != &self)
            return nullptr;
        scroller->setTarget(&self);
        scroller->setAction(selector<"scrollWithScroller:">);
        return scroller;
    }

    static void table(Builder& t) { extendCoding<encode, initWithCoder>(t); }
};
BRINDLE_RECORD(NSScrollView, Coding)

}
