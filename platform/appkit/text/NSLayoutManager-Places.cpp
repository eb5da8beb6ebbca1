// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cmath>

#include "LayoutManagerPrivate.h"
#include "TextDrawingPrivate.h"
#include "appkit/NSGraphicsContext.h"
#include "appkit/NSTextStorage.h"
#include "foundation/Exceptions.h"
#include "runtime/Runtime.h"

namespace brindle {

using layouts::Fragment;
using layouts::Layout;

namespace {

    NSUInteger lengthOf(NSLayoutManager& manager) { return maybe(manager.textStorage())->length(); }
    NSRange clamped(NSLayoutManager& manager, NSRange range)
    {
        const NSUInteger length = lengthOf(manager);
        const NSUInteger start = std::min(range.location, length);
        return NSMakeRange(start, std::min(range.length, length - start));
    }

    /// Answers the fragment of an index. - Raises: `NSRangeException` where the text has none; nil where it has no place.
    const Fragment* fragmentOf(NSLayoutManager& manager, NSUInteger index, const char* operation)
    {
        if (index >= lengthOf(manager))
            layouts::raiseIndex(manager, operation, index);
        Layout& layout = layouts::ready(manager);
        layout.ensureIndex(index);
        if (layout.fragments().empty() || index >= layout.laidOutTo())
            return nullptr;
        return &layout.fragments()[layout.fragmentAt(index)];
    }

    NSRange rangeOf(const Layout& layout, std::size_t first, std::size_t end)
    {
        if (first >= end)
            return NSMakeRange(first < layout.fragments().size()
                    ? layout.fragments()[first].range.location
                    : layout.laidOutTo(),
                0);
        const NSUInteger start = layout.fragments()[first].range.location;
        return NSMakeRange(start, NSMaxRange(layout.fragments()[end - 1].range) - start);
    }

}

void layouts::raiseIndex(const NSLayoutManager& manager, const char* operation, NSUInteger index)
{
    raise("NSRangeException",
        std::string("*** -[") + class_getName(manager.classObject()) + " " + operation + "]: index "
            + std::to_string(index) + " is beyond the text");
}

template <> struct NSLayoutManager::Methods<struct Lines> {

    static NSUInteger numberOfGlyphs(NSLayoutManager& self) { return lengthOf(self); }
    static bool isValidIndex(NSLayoutManager& self, NSUInteger index)
    {
        return index < lengthOf(self);
    }
    static std::uint32_t glyphAtIndex(NSLayoutManager& self, NSUInteger index)
    {
        const Fragment* const fragment = fragmentOf(self, index, "glyphAtIndex:");
        if (!fragment)
            return 0;
        Layout& layout = layouts::ready(self);
        const layouts::GlyphLine& line = layout.glyphsOf(layout.fragmentAt(index));
        const NSUInteger place = line.toLine(index, fragment->range.location);
        for (const text::LineGlyph& glyph : line.line.glyphs()) {
            if (glyph.cluster == place)
                return glyph.glyph;
        }
        return 0;
    }
    static NSUInteger sameIndex(NSLayoutManager&, NSUInteger index) { return index; }
    static NSRange sameRange(NSLayoutManager& self, NSRange range, NSRange* actual)
    {
        range = clamped(self, range);
        if (actual)
            *actual = range;
        return range;
    }

    static void ensureContainer(NSLayoutManager& self, NSTextContainer*)
    {
        layouts::ready(self).ensureAll();
    }
    static void ensureRange(NSLayoutManager& self, NSRange range)
    {
        layouts::ready(self).ensureIndex(NSMaxRange(clamped(self, range)));
    }

    static NSRange rangeForContainer(NSLayoutManager& self, NSTextContainer* container)
    {
        Layout& layout = layouts::ready(self);
        layout.ensureAll();
        const auto [first, end] = layout.fragmentsIn(layouts::placeOf(self, container));
        return rangeOf(layout, first, end);
    }
    static Ref<NSTextContainer> containerForIndex(
        NSLayoutManager& self, NSUInteger index, NSRange* range)
    {
        const Fragment* const fragment
            = fragmentOf(self, index, "textContainerForGlyphAtIndex:effectiveRange:");
        if (range)
            *range = NSMakeRange(index, 0);
        if (!fragment)
            return nullptr;
        if (range) {
            const Layout& layout = layouts::ready(self);
            const auto [first, end] = layout.fragmentsIn(fragment->container);
            *range = rangeOf(layout, first, end);
        }
        return self.containers_[fragment->container];
    }
    static NSRect usedRect(NSLayoutManager& self, NSTextContainer* container)
    {
        Layout& layout = layouts::ready(self);
        layout.ensureAll();
        return layout.usedRect(layouts::placeOf(self, container));
    }

    static NSRect lineRect(NSLayoutManager& self, NSUInteger index, NSRange* range)
    {
        const Fragment* const fragment
            = fragmentOf(self, index, "lineFragmentRectForGlyphAtIndex:effectiveRange:");
        if (range)
            *range = fragment ? fragment->range : NSMakeRange(index, 0);
        return fragment ? fragment->rect : NSZeroRect;
    }
    static NSRect lineUsedRect(NSLayoutManager& self, NSUInteger index, NSRange* range)
    {
        const Fragment* const fragment
            = fragmentOf(self, index, "lineFragmentUsedRectForGlyphAtIndex:effectiveRange:");
        if (range)
            *range = fragment ? fragment->range : NSMakeRange(index, 0);
        return fragment ? fragment->used : NSZeroRect;
    }
    static NSPoint location(NSLayoutManager& self, NSUInteger index)
    {
        const Fragment* fragment = fragmentOf(self, index, "locationForGlyphAtIndex:");
        if (!fragment)
            return NSZeroPoint;
        const double x = layouts::ready(self).caretX(index, &fragment);
        return NSMakePoint(x - fragment->rect.origin.x, fragment->baseline);
    }

    static const Fragment* extraLine(NSLayoutManager& self)
    {
        Layout& layout = layouts::ready(self);
        layout.ensureAll();
        return layout.hasExtraLine() ? &layout.extraLine() : nullptr;
    }
    static NSRect extraRect(NSLayoutManager& self)
    {
        const Fragment* const line = extraLine(self);
        return line ? line->rect : NSZeroRect;
    }
    static NSRect extraUsedRect(NSLayoutManager& self)
    {
        const Fragment* const line = extraLine(self);
        return line ? line->used : NSZeroRect;
    }
    static Ref<NSTextContainer> extraContainer(NSLayoutManager& self)
    {
        const Fragment* const line = extraLine(self);
        return line ? self.containers_[line->container] : nullptr;
    }

    static void enumerateLines(NSLayoutManager& self, NSRange range,
        Closure<void(NSRect, NSRect, NSTextContainer*, NSRange, bool*)>* closure)
    {
        const LineVisitor block(closure);
        range = clamped(self, range);
        bool stop = false;
        for (NSUInteger at = range.location; at < NSMaxRange(range) && !stop;) {
            const Fragment* const found = fragmentOf(self, at, "enumerateLineFragments");
            if (!found)
                return;
            const Fragment fragment = *found; // the closure may change the text
            const Ref<NSTextContainer> container = self.containers_[fragment.container];
            block(fragment.rect, fragment.used, container.get(), fragment.range, &stop);
            at = std::max(at + 1, NSMaxRange(fragment.range));
            range = clamped(self, range);
        }
    }

    static void table(Builder& t)
    {
        t.methods({
            { "numberOfGlyphs", imp<numberOfGlyphs> },
            { "isValidGlyphIndex:", imp<isValidIndex> },
            { "glyphAtIndex:", imp<glyphAtIndex> },
            { "CGGlyphAtIndex:", imp<glyphAtIndex> },
            { "characterIndexForGlyphAtIndex:", imp<sameIndex> },
            { "glyphIndexForCharacterAtIndex:", imp<sameIndex> },
            { "glyphRangeForCharacterRange:actualCharacterRange:", imp<sameRange> },
            { "characterRangeForGlyphRange:actualGlyphRange:", imp<sameRange> },
            { "ensureLayoutForTextContainer:", imp<ensureContainer> },
            { "ensureLayoutForCharacterRange:", imp<ensureRange> },
            { "ensureLayoutForGlyphRange:", imp<ensureRange> },
            { "ensureGlyphsForCharacterRange:", imp<ensureRange> },
            { "ensureGlyphsForGlyphRange:", imp<ensureRange> },
            { "glyphRangeForTextContainer:", imp<rangeForContainer> },
            { "textContainerForGlyphAtIndex:effectiveRange:", imp<containerForIndex> },
            { "usedRectForTextContainer:", imp<usedRect> },
            { "lineFragmentRectForGlyphAtIndex:effectiveRange:", imp<lineRect> },
            { "lineFragmentUsedRectForGlyphAtIndex:effectiveRange:", imp<lineUsedRect> },
            { "locationForGlyphAtIndex:", imp<location> },
            { "extraLineFragmentRect", imp<extraRect> },
            { "extraLineFragmentUsedRect", imp<extraUsedRect> },
            { "extraLineFragmentTextContainer", imp<extraContainer> },
            { "enumerateLineFragmentsForGlyphRange:usingBlock:", imp<enumerateLines> },
        });
    }
};
BRINDLE_RECORD(NSLayoutManager, Lines)

template <> struct NSLayoutManager::Methods<struct Places> {

    static NSRect boundingRect(NSLayoutManager& self, NSRange range, NSTextContainer* container)
    {
        range = clamped(self, range);
        if (!range.length)
            return self.insertionRectForCharacterAtIndex(range.location);
        NSRect bounds = NSZeroRect;
        for (const NSRect& rect :
            layouts::ready(self).rectsFor(range, layouts::placeOf(self, container), false)) {
            // Lines that hold only a line break have no width, but a place.
            bounds = NSIsEmptyRect(bounds) && bounds.size.height == 0
                ? rect
                : NSMakeRect(std::min(NSMinX(bounds), NSMinX(rect)),
                    std::min(NSMinY(bounds), NSMinY(rect)),
                    std::max(NSMaxX(bounds), NSMaxX(rect)) - std::min(NSMinX(bounds), NSMinX(rect)),
                    std::max(NSMaxY(bounds), NSMaxY(rect))
                        - std::min(NSMinY(bounds), NSMinY(rect)));
        }
        return bounds;
    }
    static NSRange rangeForRect(NSLayoutManager& self, NSRect rect, NSTextContainer* container)
    {
        Layout& layout = layouts::ready(self);
        const std::size_t place = layouts::placeOf(self, container);
        layout.ensurePoint(place, NSMaxY(rect));
        const auto [first, end] = layout.fragmentsIn(place);
        if (first == end || !(NSMaxY(rect) > NSMinY(layout.fragments()[first].rect))
            || !(NSMinY(rect) < NSMaxY(layout.fragments()[end - 1].rect)))
            return NSMakeRange(0, 0);
        const std::size_t top = layout.rowNear(place, NSMinY(rect)).first;
        const auto [bottom, behind] = layout.rowNear(place, NSMaxY(rect));
        const bool isBelow
            = bottom > top && NSMinY(layout.fragments()[bottom].rect) >= NSMaxY(rect);
        return rangeOf(layout, top, isBelow ? bottom : behind);
    }

    static NSUInteger indexForPoint(
        NSLayoutManager& self, NSPoint point, NSTextContainer* container, CGFloat* fraction)
    {
        if (fraction)
            *fraction = 0;
        Layout& layout = layouts::ready(self);
        const std::size_t place = layouts::placeOf(self, container);
        layout.ensurePoint(place, point.y);
        const std::size_t at = layout.fragmentNear(place, point);
        if (at >= layout.fragments().size())
            return 0;
        const Fragment& fragment = layout.fragments()[at];
        const layouts::GlyphLine& glyphs = layout.glyphsOf(at);
        const double x = point.x - fragment.textX;
        const NSUInteger nearest = glyphs.line.indexAt(x);
        for (const NSUInteger index : { nearest, nearest ? nearest - 1 : 0 }) {
            const auto spans = glyphs.line.spansOf(NSMakeRange(index, 1));
            if (spans.empty() || x < spans.front().x || x > spans.front().x + spans.front().width)
                continue;
            if (fraction && spans.front().width > 0)
                *fraction = (x - spans.front().x) / spans.front().width;
            return glyphs.toText(index, fragment.range.location);
        }
        // Beside the line: its first or last unit.
        const bool isBehind = nearest > 0;
        if (fraction)
            *fraction = isBehind ? 1 : 0;
        const NSUInteger last = std::max(nearest, NSUInteger { 1 }) - 1;
        return glyphs.toText(isBehind ? last : 0, fragment.range.location);
    }
    static NSUInteger plainIndexForPoint(
        NSLayoutManager& self, NSPoint point, NSTextContainer* container)
    {
        return indexForPoint(self, point, container, nullptr);
    }
    static NSUInteger insertionIndexAndSide(
        NSLayoutManager& self, NSPoint point, NSTextContainer* container, bool* upstream)
    {
        bool side = false;
        const NSUInteger index
            = layouts::ready(self).indexNear(layouts::placeOf(self, container), point, &side);
        if (upstream)
            *upstream = side;
        return index;
    }
    static NSUInteger insertionIndex(
        NSLayoutManager& self, NSPoint point, NSTextContainer* container)
    {
        bool upstream = false;
        const NSUInteger index
            = self.insertionIndexForPoint_inTextContainer_upstream(point, container, &upstream);
        if (!upstream)
            return index;
        const Ref<NSString> text = self.textStorage()->string();
        return text->rangeOfComposedCharacterSequenceAtIndex(index - 1).location;
    }
    static NSRect insertionRect(NSLayoutManager& self, NSUInteger index)
    {
        return self.insertionRectForCharacterAtIndex_upstream(index, false);
    }
    static NSRect insertionRectOnSide(NSLayoutManager& self, NSUInteger index, bool upstream)
    {
        const Fragment* fragment = nullptr;
        const double x
            = layouts::ready(self).caretX(std::min(index, lengthOf(self)), &fragment, upstream);
        if (!fragment)
            return NSZeroRect;
        return NSMakeRect(x, fragment->used.origin.y, 0, fragment->used.size.height);
    }

    static const NSRect* rectArray(NSLayoutManager& self, NSRange range, NSRange selected,
        NSTextContainer* container, NSUInteger* count)
    {
        const bool isSelection = selected.location != static_cast<NSUInteger>(NSNotFound);
        self.rects_ = layouts::ready(self).rectsFor(
            clamped(self, range), layouts::placeOf(self, container), isSelection);
        if (count)
            *count = self.rects_.size();
        return self.rects_.data();
    }
    static void enumerateRects(NSLayoutManager& self, NSRange range, NSRange selected,
        NSTextContainer* container, Closure<void(NSRect, bool*)>* closure)
    {
        const RectVisitor block(closure);
        const bool isSelection = selected.location != static_cast<NSUInteger>(NSNotFound);
        bool stop = false;
        for (const NSRect rect : layouts::ready(self).rectsFor(
                 clamped(self, range), layouts::placeOf(self, container), isSelection)) {
            if (!stop)
                block(rect, &stop);
        }
    }

    /// Draws what a range has in each container.
    template <auto Draw> static void draw(NSLayoutManager& self, NSRange range, NSPoint origin)
    {
        const Ref<NSGraphicsContext> current = NSGraphicsContext::cls().currentContext();
        range = clamped(self, range);
        if (!current || !range.length)
            return;
        const layouts::Place place { origin, current->isFlipped() };
        for (std::size_t container = 0; container < self.containers_.size(); ++container)
            Draw(layouts::ready(self), range, container, place);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "boundingRectForGlyphRange:inTextContainer:", imp<boundingRect> },
            { "glyphRangeForBoundingRect:inTextContainer:", imp<rangeForRect> },
            { "glyphRangeForBoundingRectWithoutAdditionalLayout:inTextContainer:",
                imp<rangeForRect> },
            { "glyphIndexForPoint:inTextContainer:fractionOfDistanceThroughGlyph:",
                imp<indexForPoint> },
            { "glyphIndexForPoint:inTextContainer:", imp<plainIndexForPoint> },
            { "characterIndexForPoint:inTextContainer:fractionOfDistanceBetweenInsertionPoints:",
                imp<indexForPoint> },
            { "insertionIndexForPoint:inTextContainer:", imp<insertionIndex> },
            { "insertionRectForCharacterAtIndex:", imp<insertionRect> },
            { "insertionIndexForPoint:inTextContainer:upstream:", imp<insertionIndexAndSide> },
            { "insertionRectForCharacterAtIndex:upstream:", imp<insertionRectOnSide> },
            { "rectArrayForCharacterRange:withinSelectedCharacterRange:inTextContainer:rectCount:",
                imp<rectArray> },
            { "rectArrayForGlyphRange:withinSelectedGlyphRange:inTextContainer:rectCount:",
                imp<rectArray> },
            { "enumerateEnclosingRectsForGlyphRange:withinSelectedGlyphRange:inTextContainer:"
              "usingBlock:",
                imp<enumerateRects> },
            { "drawBackgroundForGlyphRange:atPoint:", imp<draw<layouts::drawBackgrounds>> },
            { "drawGlyphsForGlyphRange:atPoint:", imp<draw<layouts::drawText>> },
        });
    }
};
BRINDLE_RECORD(NSLayoutManager, Places)

}
