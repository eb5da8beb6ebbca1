// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "TextExclusionPrivate.h"
#include "TextStylePrivate.h"
#include "appkit/NSLayoutManager.h"
#include "appkit/NSParagraphStyle.h"
#include "foundation/NSAttributedString.h"
#include "quartz/text/Typesetter.h"

/// Text laid out in rectangles: what layout managers and the drawing of strings stand on.
namespace brindle::layouts {

/// A rectangle that takes text. y grows downward from its top.
struct Container {
    double width = 0; // not positive, or not a number: unbounded
    double height = 0;
    double padding = 0; // at both ends of every line
    NSUInteger lineLimit = 0; // 0: none
    std::vector<Exclusion> exclusions; // where no text stands
};

inline constexpr double kSlack = 0.001;
/// Beyond this a position could not tell lines apart: text stands at its leading edge as if nobody had asked.
inline constexpr double kWidestAligned = 1e12;

/// A line, in its container's coordinates.
struct Fragment {
    NSRange range;
    NSRect
        rect; // rectangles of lines tile their container from top to bottom, but for what they keep out of
    NSRect used; // what text and padding take up
    double textX = 0; // where the line of glyphs begins
    double baseline = 0; // below the top of `rect`
    double room = 0; // that the text could have
    double indent = 0; // from which tabs are measured
    std::uint32_t container = 0;
    NSLineBreakMode cut = NSLineBreakByWordWrapping; // else what happens to a line that is too long
    bool wrapped = false; // the paragraph goes on
    bool justified = false;
    bool rightToLeft = false;
};

/// A line of glyphs with what it takes to go from its text to the whole.
struct GlyphLine {
    text::Line line;
    NSRange removed; // of the whole text: what an ellipsis stands for

    /// Where a unit of the whole text stands on the line. - start: of the fragment.
    NSUInteger toLine(NSUInteger index, NSUInteger start) const;
    NSUInteger toText(NSUInteger index, NSUInteger start) const;
};

/// Lays out as much as somebody asks for, and again what edits change.
///
/// Thread: one at a time. Cost: an edit costs its paragraph, and a move of the lines behind it.
class Layout {
public:
    Layout() = default;
    Layout(const Layout&) = delete;
    Layout& operator=(const Layout&) = delete;

    bool rest();

    /// - text: lent; nullptr for none.
    void setText(NSAttributedString* text);
    NSAttributedString* text() const { return text_; }
    void removeContainers();
    void addContainer(Container container);
    const std::vector<Container>& containers() const { return containers_; }
    bool usesFontLeading = true;
    void setLastLineTruncates(bool truncates) { lastLineTruncates_ = truncates; }

    void invalidate();
    /// - range: of the new text. - delta: by how much the text has become longer.
    void noteEdit(NSRange range, NSInteger delta);

    void ensureAll();
    void ensureIndex(NSUInteger index);
    void ensurePoint(std::size_t container, double y);

    /// Answers the lines laid out so far.
    const std::vector<Fragment>& fragments() const { return fragments_; }
    /// Answers where the text goes on that is not laid out yet.
    NSUInteger laidOutTo() const { return at_; }
    /// Answers the fragment that holds an index, or else the last; `fragments().size()` where there is none.
    std::size_t fragmentAt(NSUInteger index) const;
    /// Answers a container's fragments as first and end.
    std::pair<std::size_t, std::size_t> fragmentsIn(std::size_t container) const;
    /// Answers the fragments at a height, or the nearest ones, as first and end; several where a row has stretches.
    std::pair<std::size_t, std::size_t> rowNear(std::size_t container, double y) const;
    /// Answers the fragment at a place, or the nearest one; `fragments().size()` where there is none.
    std::size_t fragmentNear(std::size_t container, NSPoint point) const;

    /// The empty line behind a line break at the end of the text, and in an empty text.
    bool hasExtraLine() const { return hasExtraLine_; }
    const Fragment& extraLine() const { return extraLine_; }

    /// Answers what a container's lines take up together, the extra line too.
    NSRect usedRect(std::size_t container) const;

    /// Answers a fragment's glyphs, good until the next change or some hundred other questions.
    const GlyphLine& glyphsOf(std::size_t fragment);

    /// Answers where a caret before an index stands, in the container's coordinates, and its fragment.
    /// - upstream: at a place where a line was wrapped it stands at the end of that line, not before the next one.
    double caretX(NSUInteger index, const Fragment** fragment, bool upstream = false);
    /// Answers the index whose caret is nearest to a place. - upstream: receives on which side of a line's end that is.
    NSUInteger indexNear(std::size_t container, NSPoint point, bool* upstream);
    /// Answers the rectangles that a range covers in a container. - isSelection: lines that go on are covered to their end.
    std::vector<NSRect> rectsFor(NSRange range, std::size_t container, bool isSelection);

private:
    class Lines;
    struct Paragraph {
        NSUInteger start = 0;
        NSUInteger contentLength = 0;
        NSUInteger length = 0; // with its line break
        bool hasTabs = false;
        bool isPlain = false; // letters and signs of ASCII alone
    };

    void clear();
    void read();
    bool isFull() const { return container_ >= containers_.size(); }
    bool layOutNext();
    void finish();
    void truncateLast();
    Paragraph paragraphAt(NSUInteger start);
    void load(NSUInteger start, NSUInteger count);
    std::u16string_view units(NSUInteger start, NSUInteger length) const;
    void makeGlyphs(const Fragment& fragment, GlyphLine& made);
    void forgetGlyphs();

    NSAttributedString* text_ = nullptr;
    Ref<NSString> string_; // its text, since somebody asked and while it does not change
    NSUInteger length_ = 0;
    std::vector<Container> containers_;
    bool lastLineTruncates_ = false;

    std::vector<Fragment> fragments_;
    NSUInteger at_ = 0; // what comes next: in the text …
    std::size_t container_ = 0; // … and where it goes
    double y_ = 0;
    NSUInteger linesInContainer_ = 0;
    bool isContinuing_ = false; // in the middle of a paragraph
    bool isComplete_ = false;
    bool hasExtraLine_ = false;
    Fragment extraLine_;

    std::u16string buffer_; // a window of the text
    NSUInteger bufferStart_ = 0;
    std::vector<text::StyledRun> runs_;

    struct KnownGlyphs {
        std::size_t fragment;
        std::unique_ptr<GlyphLine> line;
    };
    std::vector<KnownGlyphs> glyphs_; // in the order of fragments
    std::vector<std::unique_ptr<GlyphLine>> spareLines_; // whose memory serves the next ones
    std::vector<text::StyledRun> glyphRuns_; // of the line that is being made
};

using LayoutOwner = std::unique_ptr<Layout, LayoutEnd>;

/// Answers a layout without text.
LayoutOwner takeLayout();

}
