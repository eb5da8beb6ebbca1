// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <vector>

#include "NSParagraphStyle.h"
#include "foundation/NSGeometry.h"
#include "runtime/Block.h"

namespace brindle {

class NSArray;
class NSDictionary;
class NSFont;
class NSTextContainer;
class NSTextStorage;

namespace layouts {
    class Layout;
    struct LayoutEnd {
        BRINDLE_EXPORT void operator()(Layout* layout) const;
    };
}

/// Lays the text of a storage out in containers, answers where its letters stand, and draws them.
///
/// Every UTF-16 unit has one glyph index, its own; a unit that is drawn together with the one before it has glyph 0. Lines are
/// laid out when somebody asks for them, and again as far as an edit changed them. Rectangles and points count in their
/// container, from its top left corner downward, points; rectangles of lines tile it, beside exclusion paths. Only lines that fit its height are
/// laid out; what is left goes into the next container, or nowhere.
/// - Raises: `NSRangeException` for indexes at or behind the end of the text where an answer needs a line.
/// Thread: one at a time. Cost: an edit costs its paragraph; words that were seen before are not shaped again.
class NSLayoutManager : public NSObject {
    BRINDLE_OBJECT(NSLayoutManager, NSObject)

public:
    NSLayoutManager(const NSLayoutManager&) = delete;

    // ---- text and containers

    Ref<NSTextStorage> textStorage() const { return send<"textStorage", Ref<NSTextStorage>>(); }
    /// Sent by the storage, which keeps the manager.
    void setTextStorage(NSTextStorage* storage) { send<"setTextStorage:">(storage); }
    /// Moves the manager to another storage.
    void replaceTextStorage(NSTextStorage* storage) { send<"replaceTextStorage:">(storage); }
    Ref<NSArray> textContainers() const { return send<"textContainers", Ref<NSArray>>(); }
    void addTextContainer(NSTextContainer* container) { send<"addTextContainer:">(container); }
    void insertTextContainer_atIndex(NSTextContainer* container, NSUInteger index)
    {
        send<"insertTextContainer:atIndex:">(container, index);
    }
    void removeTextContainerAtIndex(NSUInteger index)
    {
        send<"removeTextContainerAtIndex:">(index);
    }
    void textContainerChangedGeometry(NSTextContainer* container)
    {
        send<"textContainerChangedGeometry:">(container);
    }
    Ref<NSObject> delegate() const { return send<"delegate", Ref<NSObject>>(); }
    /// Not kept.
    void setDelegate(NSObject* delegate) { send<"setDelegate:">(delegate); }

    // ---- manner

    /// 0 (the default) to 1. Words are not hyphenated whatever it says.
    float hyphenationFactor() const { return send<"hyphenationFactor", float>(); }
    void setHyphenationFactor(float factor) { send<"setHyphenationFactor:">(factor); }
    /// Whether lines have the fonts' own room between them; YES unless set.
    bool usesFontLeading() const { return send<"usesFontLeading", bool>(); }
    void setUsesFontLeading(bool uses) { send<"setUsesFontLeading:">(uses); }
    /// Kept; layout never runs in the background.
    bool backgroundLayoutEnabled() const { return send<"backgroundLayoutEnabled", bool>(); }
    void setBackgroundLayoutEnabled(bool enabled) { send<"setBackgroundLayoutEnabled:">(enabled); }
    bool allowsNonContiguousLayout() const { return send<"allowsNonContiguousLayout", bool>(); }
    void setAllowsNonContiguousLayout(bool allows)
    {
        send<"setAllowsNonContiguousLayout:">(allows);
    }

    /// Answers the height of a line of this font: ascent, descent and leading, each rounded. 0 for nil.
    CGFloat defaultLineHeightForFont(NSFont* font) const
    {
        return send<"defaultLineHeightForFont:", CGFloat>(font);
    }
    /// Answers how far below the top of such a line its letters stand.
    CGFloat defaultBaselineOffsetForFont(NSFont* font) const
    {
        return send<"defaultBaselineOffsetForFont:", CGFloat>(font);
    }

    // ---- laying out

    /// Sent by the storage for every edit.
    void processEditingForTextStorage_edited_range_changeInLength_invalidatedRange(
        NSTextStorage* storage, NSUInteger mask, NSRange range, NSInteger delta,
        NSRange invalidated)
    {
        send<"processEditingForTextStorage:edited:range:changeInLength:invalidatedRange:">(
            storage, mask, range, delta, invalidated);
    }
    void invalidateLayoutForCharacterRange_actualCharacterRange(NSRange range, NSRange* actual)
    {
        send<"invalidateLayoutForCharacterRange:actualCharacterRange:">(range, actual);
    }
    void ensureLayoutForTextContainer(NSTextContainer* container)
    {
        send<"ensureLayoutForTextContainer:">(container);
    }
    void ensureLayoutForCharacterRange(NSRange range)
    {
        send<"ensureLayoutForCharacterRange:">(range);
    }

    // ---- glyphs

    NSUInteger numberOfGlyphs() const { return send<"numberOfGlyphs", NSUInteger>(); }
    bool isValidGlyphIndex(NSUInteger index) const
    {
        return send<"isValidGlyphIndex:", bool>(index);
    }
    /// Answers the number of the glyph in its font; 0 where there is none.
    std::uint32_t glyphAtIndex(NSUInteger index) const
    {
        return send<"glyphAtIndex:", std::uint32_t>(index);
    }
    NSUInteger characterIndexForGlyphAtIndex(NSUInteger index) const
    {
        return send<"characterIndexForGlyphAtIndex:", NSUInteger>(index);
    }
    NSUInteger glyphIndexForCharacterAtIndex(NSUInteger index) const
    {
        return send<"glyphIndexForCharacterAtIndex:", NSUInteger>(index);
    }
    /// Ranges that leave the text are cut.
    NSRange glyphRangeForCharacterRange_actualCharacterRange(NSRange range, NSRange* actual) const
    {
        return send<"glyphRangeForCharacterRange:actualCharacterRange:", NSRange>(range, actual);
    }
    NSRange characterRangeForGlyphRange_actualGlyphRange(NSRange range, NSRange* actual) const
    {
        return send<"characterRangeForGlyphRange:actualGlyphRange:", NSRange>(range, actual);
    }

    // ---- lines

    /// Answers what stands in a container, and lays it out.
    NSRange glyphRangeForTextContainer(NSTextContainer* container)
    {
        return send<"glyphRangeForTextContainer:", NSRange>(container);
    }
    /// - Nil: for text that has no place.
    Ref<NSTextContainer> textContainerForGlyphAtIndex_effectiveRange(
        NSUInteger index, NSRange* range)
    {
        return send<"textContainerForGlyphAtIndex:effectiveRange:", Ref<NSTextContainer>>(
            index, range);
    }
    /// Answers what the lines of a container take up together, with their padding at both sides and the extra line; lays
    /// the container out.
    NSRect usedRectForTextContainer(NSTextContainer* container)
    {
        return send<"usedRectForTextContainer:", NSRect>(container);
    }
    NSRect lineFragmentRectForGlyphAtIndex_effectiveRange(NSUInteger index, NSRange* range)
    {
        return send<"lineFragmentRectForGlyphAtIndex:effectiveRange:", NSRect>(index, range);
    }
    NSRect lineFragmentUsedRectForGlyphAtIndex_effectiveRange(NSUInteger index, NSRange* range)
    {
        return send<"lineFragmentUsedRectForGlyphAtIndex:effectiveRange:", NSRect>(index, range);
    }
    /// Answers where a glyph's pen stands on the baseline, seen from the origin of its line's rectangle.
    NSPoint locationForGlyphAtIndex(NSUInteger index)
    {
        return send<"locationForGlyphAtIndex:", NSPoint>(index);
    }
    /// Answers the empty line behind a line break at the end, and of an empty text; else the zero rectangle.
    NSRect extraLineFragmentRect() { return send<"extraLineFragmentRect", NSRect>(); }
    NSRect extraLineFragmentUsedRect() { return send<"extraLineFragmentUsedRect", NSRect>(); }
    Ref<NSTextContainer> extraLineFragmentTextContainer()
    {
        return send<"extraLineFragmentTextContainer", Ref<NSTextContainer>>();
    }
    using LineVisitor = Block<void(
        NSRect rect, NSRect used, NSTextContainer* container, NSRange range, bool* stop)>;
    void enumerateLineFragmentsForGlyphRange_usingBlock(NSRange range, const LineVisitor& block)
    {
        send<"enumerateLineFragmentsForGlyphRange:usingBlock:">(range, block.get());
    }

    // ---- places

    /// Answers a rectangle that holds all of a range, as high as its lines.
    NSRect boundingRectForGlyphRange_inTextContainer(NSRange range, NSTextContainer* container)
    {
        return send<"boundingRectForGlyphRange:inTextContainer:", NSRect>(range, container);
    }
    /// Answers the text of all lines that a rectangle touches; lays out no further than its end.
    NSRange glyphRangeForBoundingRect_inTextContainer(NSRect rect, NSTextContainer* container)
    {
        return send<"glyphRangeForBoundingRect:inTextContainer:", NSRange>(rect, container);
    }
    /// Answers the unit at a point or nearest to it. - fraction: how far through it the point lies, 0 to 1; may be null.
    NSUInteger glyphIndexForPoint_inTextContainer_fractionOfDistanceThroughGlyph(
        NSPoint point, NSTextContainer* container, CGFloat* fraction)
    {
        return send<"glyphIndexForPoint:inTextContainer:fractionOfDistanceThroughGlyph:",
            NSUInteger>(point, container, fraction);
    }
    NSUInteger glyphIndexForPoint_inTextContainer(NSPoint point, NSTextContainer* container)
    {
        return send<"glyphIndexForPoint:inTextContainer:", NSUInteger>(point, container);
    }
    NSUInteger characterIndexForPoint_inTextContainer_fractionOfDistanceBetweenInsertionPoints(
        NSPoint point, NSTextContainer* container, CGFloat* fraction)
    {
        return send<
            "characterIndexForPoint:inTextContainer:fractionOfDistanceBetweenInsertionPoints:",
            NSUInteger>(point, container, fraction);
    }
    /// Answers the index whose caret is nearest to a point; never inside a character as a reader counts them. Behind a line
    /// that was wrapped it is the last one whose caret still stands on that line.
    NSUInteger insertionIndexForPoint_inTextContainer(NSPoint point, NSTextContainer* container)
    {
        return send<"insertionIndexForPoint:inTextContainer:", NSUInteger>(point, container);
    }
    /// The same, where the caret may stand at the very end of a wrapped line.
    /// - upstream: receives whether it does; the same index is the start of the next line otherwise.
    NSUInteger insertionIndexForPoint_inTextContainer_upstream(
        NSPoint point, NSTextContainer* container, bool* upstream)
    {
        return send<"insertionIndexForPoint:inTextContainer:upstream:", NSUInteger>(
            point, container, upstream);
    }
    /// Answers where the caret before an index stands: no width, as high as its line; the length of the text has one too.
    NSRect insertionRectForCharacterAtIndex(NSUInteger index)
    {
        return send<"insertionRectForCharacterAtIndex:", NSRect>(index);
    }
    /// The same. - upstream: where a line was wrapped, the caret stands at its end instead of before the next one.
    NSRect insertionRectForCharacterAtIndex_upstream(NSUInteger index, bool upstream)
    {
        return send<"insertionRectForCharacterAtIndex:upstream:", NSRect>(index, upstream);
    }
    /// Answers the rectangles of a selection, good until the next question: lines that it leaves are covered to their end.
    /// - selected: a location of `NSNotFound` covers the letters only.
    const NSRect* rectArrayForCharacterRange_withinSelectedCharacterRange_inTextContainer_rectCount(
        NSRange range, NSRange selected, NSTextContainer* container, NSUInteger* count)
    {
        return send<"rectArrayForCharacterRange:withinSelectedCharacterRange:inTextContainer:"
                    "rectCount:",
            const NSRect*>(range, selected, container, count);
    }
    using RectVisitor = Block<void(NSRect rect, bool* stop)>;
    void enumerateEnclosingRectsForGlyphRange_withinSelectedGlyphRange_inTextContainer_usingBlock(
        NSRange range, NSRange selected, NSTextContainer* container, const RectVisitor& block)
    {
        send<"enumerateEnclosingRectsForGlyphRange:withinSelectedGlyphRange:inTextContainer:"
             "usingBlock:">(range, selected, container, block.get());
    }

    // ---- drawing, in the current context, upright in flipped and unflipped views

    /// - origin: of the container's top left corner.
    void drawBackgroundForGlyphRange_atPoint(NSRange range, NSPoint origin)
    {
        send<"drawBackgroundForGlyphRange:atPoint:">(range, origin);
    }
    void drawGlyphsForGlyphRange_atPoint(NSRange range, NSPoint origin)
    {
        send<"drawGlyphsForGlyphRange:atPoint:">(range, origin);
    }

protected:
    /// Containers that live on forget the layout manager.
    BRINDLE_EXPORT ~NSLayoutManager();

private:
    friend struct ManagerAccess;

    std::unique_ptr<layouts::Layout, layouts::LayoutEnd> layout_;
    NSTextStorage* storage_ = nullptr; // bare: the storage owns this manager and clears it
    std::vector<Ref<NSTextContainer>> containers_;
    WeakRef<NSObject> delegate_;
    float hyphenationFactor_ = 0;
    bool usesFontLeading_ = true;
    bool backgroundLayoutEnabled_ = true;
    bool allowsNonContiguousLayout_ = false;
    bool isStale_ = true; // the containers have changed
    std::vector<NSRect> rects_;
};

}
