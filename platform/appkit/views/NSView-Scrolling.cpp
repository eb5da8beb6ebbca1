// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSClipView.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct NSView::Methods<struct Scrolling> {

    static Ref<NSClipView> enclosingClip(NSView& self)
    {
        for (NSView* v = self.superview_; v; v = v->superview_) {
            if (v->isKindOfClass(NSClipView::cls()))
                return static_cast<NSClipView*>(v);
        }
        return nullptr;
    }

    // In a clip view whose y goes the other way the visible rectangle begins at its other end.
    static void scrollPoint(NSView& self, NSPoint point)
    {
        const Ref<NSClipView> clip = enclosingClip(self);
        if (!clip)
            return;
        NSPoint origin = clip->convertPoint_fromView(point, &self);
        if (self.isFlipped() != clip->isFlipped())
            origin.y -= clip->bounds().size.height;
        clip->scrollToPoint(origin);
    }

    /// Answers where a visible stretch begins that shows the wanted one, moved as little as is needed.
    static CGFloat startFor(CGFloat start, CGFloat length, CGFloat wanted, CGFloat extent)
    {
        const CGFloat before = wanted - start;
        const CGFloat after = wanted + extent - (start + length);
        if ((before >= 0 && after <= 0) || (before <= 0 && after >= 0))
            return start; // all of it shows, or nothing but it
        if (extent > length)
            return wanted;
        return start + (before < 0 ? before : after);
    }
    static bool scrollRectToVisible(NSView& self, NSRect rect)
    {
        const Ref<NSClipView> clip = enclosingClip(self);
        if (!clip)
            return false;
        const NSRect wanted = clip->convertRect_fromView(rect, &self);
        const NSRect shown = clip->bounds();
        clip->scrollToPoint(
            { startFor(NSMinX(shown), shown.size.width, NSMinX(wanted), wanted.size.width),
                startFor(NSMinY(shown), shown.size.height, NSMinY(wanted), wanted.size.height) });
        return clip->bounds().origin != shown.origin;
    }
    static bool autoscroll(NSView& self, NSEvent* event)
    {
        const Ref<NSClipView> clip = enclosingClip(self);
        return maybe(clip)->send<"autoscroll:", bool>(event);
    }
    static NSRect adjustScroll(NSView&, NSRect proposed) { return proposed; }
    static void scrollClipView(NSView&, NSClipView* clip, NSPoint point)
    {
        maybe(clip)->scrollToPoint(point);
    }
    static void reflectScrolledClipView(NSView&, NSClipView*) { }

    static void table(Builder& t)
    {
        t.methods({
            { "scrollPoint:", imp<scrollPoint> },
            { "scrollRectToVisible:", imp<scrollRectToVisible> },
            { "autoscroll:", imp<autoscroll> },
            { "adjustScroll:", imp<adjustScroll> },
            { "scrollClipView:toPoint:", imp<scrollClipView> },
            { "reflectScrolledClipView:", imp<reflectScrolledClipView> },
        });
    }
};
BRINDLE_RECORD(NSView, Scrolling)

}
