// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cmath>

#include "NSTextViewPrivate.h"
#include "TextPlacesPrivate.h"
#include "appkit/NSLayoutManager.h"
#include "appkit/NSTextContainer.h"
#include "appkit/NSTextStorage.h"
#include "appkit/NSWindow.h"
#include "runtime/Table.h"

namespace brindle {

NSUInteger TextViewAccess::length(NSTextView& view) { return of(view).storage->length(); }

NSRect TextViewAccess::caretRect(NSTextView& view, CaretPlace place)
{
    const NSPoint origin = view.textContainerOrigin();
    const NSRect rect = of(view).layout->insertionRectForCharacterAtIndex_upstream(
        std::min(place.index, length(view)), place.isUpstream());
    return NSOffsetRect(rect, origin.x, origin.y);
}

CaretPlace TextViewAccess::placeAt(NSTextView& view, NSPoint point)
{
    const NSPoint origin = view.textContainerOrigin();
    const TextViewState& s = of(view);
    bool upstream = false;
    const NSUInteger index = s.layout->insertionIndexForPoint_inTextContainer_upstream(
        { point.x - origin.x, point.y - origin.y }, s.container.get(), &upstream);
    return { index, upstream ? NSSelectionAffinityUpstream : NSSelectionAffinityDownstream };
}

std::vector<NSRect> TextViewAccess::rectsOf(NSTextView& view, NSRange range)
{
    const NSPoint origin = view.textContainerOrigin();
    const TextViewState& s = of(view);
    NSUInteger count = 0;
    const NSRect* rects
        = s.layout
              ->rectArrayForCharacterRange_withinSelectedCharacterRange_inTextContainer_rectCount(
                  range, range, s.container.get(), &count);
    std::vector<NSRect> moved(rects, rects + count);
    for (NSRect& rect : moved)
        rect = NSOffsetRect(rect, origin.x, origin.y);
    return moved;
}

NSRange TextViewAccess::lineAt(NSTextView& view, CaretPlace place)
{
    const NSUInteger end = length(view);
    NSLayoutManager& layout = *of(view).layout;
    // The letter before a caret at the end of a wrapped line is on that line.
    const bool isBehind = place.isUpstream() && place.index > 0
        && !NSEqualRects(caretRect(view, place), caretRect(view, place.index));
    const NSUInteger index = isBehind ? place.index - 1 : place.index;
    if (!end || (index >= end && layout.extraLineFragmentRect().size.height > 0))
        return NSMakeRange(end, 0);
    NSRange line {};
    layout.lineFragmentRectForGlyphAtIndex_effectiveRange(std::min(index, end - 1), &line);
    return line;
}

NSSize TextViewAccess::usedSize(NSTextView& view)
{
    const TextViewState& s = of(view);
    const NSSize used = s.layout->usedRectForTextContainer(s.container.get()).size;
    return { std::ceil(used.width + 2 * s.inset.width),
        std::ceil(used.height + 2 * s.inset.height) };
}

void TextViewAccess::relayout(NSTextView& view)
{
    view.sizeToFit();
    view.setNeedsDisplay(true);
}

template <> struct NSTextView::Methods<struct Layout> {

    static constexpr CGFloat kUnbounded = 1e7;

    static TextViewState& of(NSTextView& self) { return TextViewAccess::of(self); }

    static Ref<NSTextContainer> container(NSTextView& self) { return of(self).container; }
    static Ref<NSLayoutManager> manager(NSTextView& self) { return of(self).layout; }
    static Ref<NSTextStorage> storage(NSTextView& self) { return of(self).storage; }
    static NSSize inset(NSTextView& self) { return of(self).inset; }
    static void setInset(NSTextView& self, NSSize inset)
    {
        of(self).inset = inset;
        fitContainer(self);
        TextViewAccess::relayout(self);
    }
    static NSPoint origin(NSTextView& self)
    {
        return { of(self).inset.width, of(self).inset.height };
    }

    // The container's width and height follow the view's where they are told to.
    static void fitContainer(NSTextView& self)
    {
        const TextViewState& s = of(self);
        const NSSize room = self.bounds().size;
        NSSize size = s.container->containerSize();
        if (s.container->widthTracksTextView())
            size.width = std::max(room.width - 2 * s.inset.width, 1.0);
        if (s.container->heightTracksTextView())
            size.height = std::max(room.height - 2 * s.inset.height, 1.0);
        setContainer(s, size);
    }
    static void setFrameSize(NSTextView& self, NSSize size)
    {
        super<NSTextView, "setFrameSize:">(self, size);
        if (TextViewAccess::isReady(self))
            fitContainer(self);
    }
    static CGFloat between(CGFloat value, CGFloat least, CGFloat most)
    {
        return std::max(std::min(value, most), least);
    }
    // A line without end has no right end or middle to stand at: one that does not begin at the left gets the room that is
    // there, or as much as it needs.
    static void fitLine(const TextViewState& s)
    {
        setContainer(s, { kUnbounded, kUnbounded });
        const NSRect used = s.layout->usedRectForTextContainer(s.container.get());
        if (used.origin.x > 0)
            setContainer(s, { std::max(s.minSize.width, std::ceil(used.size.width)), kUnbounded });
    }
    static void setContainer(const TextViewState& s, NSSize size)
    {
        const NSSize present = s.container->containerSize();
        if (size.width != present.width || size.height != present.height)
            s.container->setContainerSize(size);
    }
    static void sizeToFit(NSTextView& self)
    {
        const TextViewState& s = of(self);
        if (!s.verticallyResizable && !s.horizontallyResizable)
            return;
        if (s.singleLine && s.horizontallyResizable)
            fitLine(s);
        const NSSize used = TextViewAccess::usedSize(self);
        NSSize size = self.frame().size;
        if (s.horizontallyResizable)
            size.width = between(used.width, s.minSize.width, s.maxSize.width);
        if (s.verticallyResizable)
            size.height = between(used.height, s.minSize.height, s.maxSize.height);
        const NSSize present = self.frame().size;
        if (size.width != present.width || size.height != present.height)
            self.setFrameSize(size);
    }

    static bool isVertical(NSTextView& self) { return of(self).verticallyResizable; }
    static void setVertical(NSTextView& self, bool is) { of(self).verticallyResizable = is; }
    static bool isHorizontal(NSTextView& self) { return of(self).horizontallyResizable; }
    static void setHorizontal(NSTextView& self, bool is) { of(self).horizontallyResizable = is; }
    static NSSize minSize(NSTextView& self) { return of(self).minSize; }
    static void setMinSize(NSTextView& self, NSSize size) { of(self).minSize = size; }
    static NSSize maxSize(NSTextView& self) { return of(self).maxSize; }
    static void setMaxSize(NSTextView& self, NSSize size) { of(self).maxSize = size; }

    // ---- places on the screen

    static NSRect onScreen(NSTextView& self, NSRect rect)
    {
        const NSRect inWindow = self.convertRect_toView(rect, nullptr);
        const Ref<NSWindow> window = self.window();
        return window ? window->convertRectToScreen(inWindow) : inWindow;
    }
    /// An index is where the caret stands, if it is the caret's.
    static CaretPlace placeOf(NSTextView& self, NSUInteger index)
    {
        const CaretPlace head = TextViewAccess::head(self);
        return head.index == index ? head : CaretPlace(index);
    }
    static NSRect firstRect(NSTextView& self, NSRange range, NSRange* actual)
    {
        range = TextViewAccess::clamped(self, range);
        if (actual)
            *actual = range;
        if (!range.length)
            return onScreen(self, TextViewAccess::caretRect(self, placeOf(self, range.location)));
        const std::vector<NSRect> rects = TextViewAccess::rectsOf(self, range);
        return onScreen(self, rects.empty() ? NSZeroRect : rects.front());
    }
    static NSUInteger indexForInsertion(NSTextView& self, NSPoint point)
    {
        return TextViewAccess::placeAt(self, point).index;
    }
    static NSUInteger indexForScreenPoint(NSTextView& self, NSPoint point)
    {
        const Ref<NSWindow> window = self.window();
        const NSPoint inWindow = window ? window->convertPointFromScreen(point) : point;
        const NSPoint origin = self.textContainerOrigin();
        const NSPoint place = self.convertPoint_fromView(inWindow, nullptr);
        return of(self).layout->glyphIndexForPoint_inTextContainer(
            { place.x - origin.x, place.y - origin.y }, of(self).container.get());
    }

    // ---- scrolling

    static void scrollRangeToVisible(NSTextView& self, NSRange range)
    {
        range = TextViewAccess::clamped(self, range);
        NSRect rect = TextViewAccess::caretRect(
            self, range.length ? NSMaxRange(range) : placeOf(self, range.location));
        if (range.length) {
            for (const NSRect& part : TextViewAccess::rectsOf(self, range))
                rect = NSUnionRect(rect, part);
        }
        rect.size.width = std::max(rect.size.width, 1.0);
        const Ref<NSView> clip = self.superview();
        if (clip && clip->respondsToSelector(selector<"scrollEditorToShow:">))
            clip->send<"scrollEditorToShow:">(rect);
        else if (self.respondsToSelector(selector<"scrollRectToVisible:">))
            self.send<"scrollRectToVisible:", bool>(rect);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "textContainer", imp<container> },
            { "layoutManager", imp<manager> },
            { "textStorage", imp<storage> },
            { "textContainerInset", imp<inset> },
            { "setTextContainerInset:", imp<setInset> },
            { "textContainerOrigin", imp<origin> },
            { "setFrameSize:", imp<setFrameSize> },
            { "sizeToFit", imp<sizeToFit> },
            { "isVerticallyResizable", imp<isVertical> },
            { "setVerticallyResizable:", imp<setVertical> },
            { "isHorizontallyResizable", imp<isHorizontal> },
            { "setHorizontallyResizable:", imp<setHorizontal> },
            { "minSize", imp<minSize> },
            { "setMinSize:", imp<setMinSize> },
            { "maxSize", imp<maxSize> },
            { "setMaxSize:", imp<setMaxSize> },
            { "firstRectForCharacterRange:actualRange:", imp<firstRect> },
            { "characterIndexForInsertionAtPoint:", imp<indexForInsertion> },
            { "characterIndexForPoint:", imp<indexForScreenPoint> },
            { "scrollRangeToVisible:", imp<scrollRangeToVisible> },
        });
    }
};
BRINDLE_RECORD(NSTextView, Layout)

}
