// SPDX-License-Identifier: Apache-2.0
#include "Shaper.h"

#include "FontFacePrivate.h"
#include "LetterPairs.h"
#include "WordCache.h"

#include <algorithm>
#include <limits>
#include <mutex>

namespace brindle::text {

namespace {

    constexpr char16_t kSpace = u' ';
    constexpr std::size_t kBatchUnits = 512;
    constexpr std::size_t kWindowUnits = 4096;
    constexpr std::size_t kKeptGlyphs = 8192;
    constexpr std::size_t kMostTableBytes = 1024 * 1024;

    struct Segment {
        std::size_t start = 0;
        std::size_t wordStart = 0; // behind the spaces
        std::size_t end = 0;
    };

    /// A part of a stretch whose words are shaped.
    struct Window {
        std::size_t start = 0;
        std::size_t end = 0;
    };

    /// A word that is not remembered yet.
    struct NewWord {
        Segment segment;
        std::uint64_t hash = 0;
    };

    /// Answers a place at or a little before an index where a character begins.
    std::size_t cutBefore(std::u16string_view text, std::size_t index, std::size_t start)
    {
        constexpr std::size_t kSteps = 64;
        const auto continues = [](char16_t unit) {
            const bool half = unit >= 0xDC00 && unit < 0xE000;
            const bool joins = unit == 0x200D || (unit >= 0xFE00 && unit <= 0xFE0F);
            return half || joins
                || (harfBuzz()
                    && BRINDLE_HARFBUZZ(hb_unicode_combining_class)(
                           BRINDLE_HARFBUZZ(hb_unicode_funcs_get_default)(), unit)
                        != HB_UNICODE_COMBINING_CLASS_NOT_REORDERED);
        };
        for (std::size_t at = index; at > start && index - at < kSteps; --at) {
            if (!continues(text[at]) && text[at - 1] != 0x200D)
                return at;
        }
        return index;
    }

    /// The spaces and the word that begin at `start`. What is longer than any word is cut.
    Segment segmentAt(std::u16string_view text, std::size_t start)
    {
        std::size_t end = start;
        while (end < text.size() && text[end] == kSpace)
            ++end;
        const std::size_t wordStart = end;
        const std::size_t limit = end + std::min(kLongestSegment, text.size() - end);
        while (end < limit && text[end] != kSpace)
            ++end;
        if (end == limit && end < text.size())
            end = cutBefore(text, end, wordStart);
        return { start, wordStart, end };
    }

    /// A piece whose glyphs lie somewhere.
    class ShapedPiece final : public ShapingSink::Piece {
    public:
        ShapedPiece(
            const Segment& segment, const Advances& moved, std::span<const ShapedGlyph> glyphs)
            : Piece({ segment.start, segment.wordStart, segment.end, moved })
            , glyphs_(glyphs)
        {
        }
        std::span<const ShapedGlyph> glyphs() const override { return glyphs_; }

    private:
        std::span<const ShapedGlyph> glyphs_;
    };

    /// A piece of plain letters, which are set when somebody wants to see them.
    class LetterPiece final : public ShapingSink::Piece {
    public:
        LetterPiece(LetterPairs* pairs, std::u16string_view text, std::vector<ShapedGlyph>& glyphs)
            : Piece({})
            , pairs_(pairs)
            , text_(text)
            , glyphs_(glyphs)
        {
        }
        /// Becomes the piece that begins at an index, where its letters' places are known.
        bool moveTo(std::size_t at) { return pairs_ && pairs_->measure(text_, at, *this); }
        std::span<const ShapedGlyph> glyphs() const override
        {
            pairs_->set(text_.substr(start), end - start, glyphs_);
            return glyphs_;
        }

    private:
        LetterPairs* pairs_; // none where letters are no plain ones
        std::u16string_view text_; // of the stretch
        std::vector<ShapedGlyph>& glyphs_;
    };

    /// Shapes words, alone or many at once, through one cache.
    class WordShaper {
    public:
        static WordShaper& shared()
        {
            // Never destroyed: other threads may still measure text while the process ends.
            static WordShaper* const shaper = new WordShaper;
            return *shaper;
        }

        /// Shapes the words that begin in a window of the text; answers where the next one begins.
        std::size_t shape(
            std::u16string_view text, Window window, const ShapingStyle& style, ShapingSink& sink);

        void forget();

        std::mutex mutex;
        WordCache cache;
        LetterTables tables { kMostTableBytes };
        std::uint64_t hits = 0;
        std::uint64_t misses = 0;

    private:
        /// What HarfBuzz made of a text.
        struct Shaping {
            std::vector<ShapedGlyph> glyphs; // in visual order
            std::vector<std::uint8_t> safe; // by unit: whether the text may be cut there
        };

        void run(std::u16string_view text, Shaping& result);
        void setCharacters(std::u16string_view text, Shaping& result);
        void fillBuffer(std::u16string_view text);
        void hideControls(std::u16string_view text);
        void shapeAlone(const NewWord& word, ShapingSink& sink);
        void shapeMissing(ShapingSink& sink);
        void shapeTogether(ShapingSink& sink);
        void finish(const NewWord& word, std::span<ShapedGlyph> glyphs, std::size_t firstCluster,
            ShapingSink& sink);
        WordKey keyFor(Segment segment) const;
        void setStyle(const ShapingStyle& style);
        std::size_t shapeSegment(std::size_t start, ShapingSink& sink);

        std::u16string_view text_;
        ShapingStyle style_;
        LetterPairs* pairs_ = nullptr; // of the style; none where letters are no plain ones
        std::vector<ShapedGlyph> letters_;
        HarfBuzz<hb_buffer_t> buffer_;
        Shaping alone_;
        Shaping batch_;
        std::vector<NewWord> missing_; // neighbours, in order
    };

    void WordShaper::fillBuffer(std::u16string_view text)
    {
        if (!buffer_)
            buffer_.reset(BRINDLE_HARFBUZZ(hb_buffer_create)());
        hb_buffer_t* buffer = buffer_.get();
        BRINDLE_HARFBUZZ(hb_buffer_clear_contents)(buffer);
        BRINDLE_HARFBUZZ(hb_buffer_set_script)(buffer, static_cast<hb_script_t>(style_.script));
        BRINDLE_HARFBUZZ(hb_buffer_set_direction)
        (buffer, style_.rightToLeft ? HB_DIRECTION_RTL : HB_DIRECTION_LTR);
        const int length
            = static_cast<int>(std::min<std::size_t>(text.size(), std::numeric_limits<int>::max()));
        BRINDLE_HARFBUZZ(hb_buffer_add_utf16)
        (buffer, reinterpret_cast<const std::uint16_t*>(text.data()), length, 0, length);
    }

    /// Turns control characters into ones that shaping leaves blank, and tabs into spaces.
    void WordShaper::hideControls(std::u16string_view text)
    {
        constexpr auto isControl
            = [](char16_t unit) { return unit == 0x09 || isHiddenControl(unit); };
        if (std::ranges::none_of(text, isControl))
            return;
        constexpr hb_codepoint_t kZeroWidthSpace = 0x200B;
        unsigned count = 0;
        hb_glyph_info_t* infos = BRINDLE_HARFBUZZ(hb_buffer_get_glyph_infos)(buffer_.get(), &count);
        for (hb_glyph_info_t& info : std::span(infos, count)) {
            if (info.codepoint == 0x09)
                info.codepoint = kSpace;
            else if (info.codepoint < 0x10000
                && isHiddenControl(static_cast<char16_t>(info.codepoint)))
                info.codepoint = kZeroWidthSpace;
        }
    }

    void WordShaper::run(std::u16string_view text, Shaping& result)
    {
        hb_font_t* const font = style_.face->handles().shaping(*style_.face);
        if (!font) {
            setCharacters(text, result);
            return;
        }
        fillBuffer(text);
        hideControls(text);
        BRINDLE_HARFBUZZ(hb_shape)(font, buffer_.get(), nullptr, 0);
        unsigned count = 0;
        const hb_glyph_info_t* infos
            = BRINDLE_HARFBUZZ(hb_buffer_get_glyph_infos)(buffer_.get(), &count);
        const hb_glyph_position_t* positions
            = BRINDLE_HARFBUZZ(hb_buffer_get_glyph_positions)(buffer_.get(), &count);
        result.glyphs.resize(count);
        result.safe.assign(text.size() + 1, 0);
        for (std::size_t i = 0; i < count; ++i) {
            const hb_glyph_info_t& info = infos[i];
            const hb_glyph_position_t& position = positions[i];
            result.glyphs[i] = { info.codepoint, info.cluster, position.x_advance,
                position.x_offset, position.y_offset };
            result.safe[info.cluster] = (info.mask & HB_GLYPH_FLAG_UNSAFE_TO_BREAK) == 0;
        }
        // A very long word must not leave its memory behind.
        if (count > kKeptGlyphs)
            buffer_.reset();
    }

    /// Sets characters as they are, one behind the other: without the library nobody knows better.
    void WordShaper::setCharacters(std::u16string_view text, Shaping& result)
    {
        const FontFace& face = *style_.face;
        result.glyphs.clear();
        result.safe.assign(text.size() + 1, 1);
        for (std::size_t at = 0; at < text.size();) {
            const auto cluster = static_cast<std::uint32_t>(at);
            const char32_t codePoint = nextCodePoint(text, at);
            const bool isHidden
                = codePoint < 0x10000 && isHiddenControl(static_cast<char16_t>(codePoint));
            const bool isBlank = isHidden || codePoint == 0x09;
            const GlyphId glyph = face.glyphFor(isBlank ? kSpace : codePoint);
            result.glyphs.push_back(
                { glyph, cluster, isHidden ? 0 : face.handles().advances.of(glyph), 0, 0 });
        }
        if (style_.rightToLeft)
            std::ranges::reverse(result.glyphs);
    }

    /// Cuts the glyphs of the next units off a shaped text, from the side where it begins.
    class GlyphCutter {
    public:
        GlyphCutter(std::span<ShapedGlyph> glyphs, bool rightToLeft)
            : glyphs_(glyphs)
            , rightToLeft_(rightToLeft)
        {
        }

        /// Answers the glyphs of all units before `end` that were not taken yet.
        std::span<ShapedGlyph> takeUpTo(std::size_t end)
        {
            std::size_t count = 0;
            if (rightToLeft_) {
                while (count < glyphs_.size() && glyphs_[glyphs_.size() - 1 - count].cluster < end)
                    ++count;
                const auto taken = glyphs_.last(count);
                glyphs_ = glyphs_.first(glyphs_.size() - count);
                return taken;
            }
            while (count < glyphs_.size() && glyphs_[count].cluster < end)
                ++count;
            const auto taken = glyphs_.first(count);
            glyphs_ = glyphs_.subspan(count);
            return taken;
        }

    private:
        std::span<ShapedGlyph> glyphs_; // what is left
        bool rightToLeft_;
    };

    WordKey WordShaper::keyFor(Segment segment) const
    {
        return { style_, segment.end < text_.size(),
            text_.substr(segment.start, segment.end - segment.start) };
    }

    /// Remembers a shaped word and hands it on.
    void WordShaper::finish(const NewWord& word, std::span<ShapedGlyph> glyphs,
        std::size_t firstCluster, ShapingSink& sink)
    {
        const Segment& segment = word.segment;
        Advances advances;
        for (ShapedGlyph& glyph : glyphs) {
            glyph.cluster -= static_cast<std::uint32_t>(firstCluster);
            advances.whole += glyph.advance;
            if (glyph.cluster < segment.wordStart - segment.start)
                advances.spaces += glyph.advance;
        }
        cache.insert(keyFor(segment), word.hash, advances, glyphs);
        sink.addPiece(ShapedPiece(segment, advances, glyphs));
    }

    void WordShaper::shapeAlone(const NewWord& word, ShapingSink& sink)
    {
        const std::size_t length = word.segment.end - word.segment.start;
        const std::size_t follower = word.segment.end < text_.size() ? 1 : 0;
        run(text_.substr(word.segment.start, length + follower), alone_);
        GlyphCutter cutter(alone_.glyphs, style_.rightToLeft);
        finish(word, cutter.takeUpTo(length), 0, sink);
        if (alone_.glyphs.size() > kKeptGlyphs)
            alone_ = Shaping {};
    }

    /// Shapes neighbouring words at once, which is quicker than one by one, and cuts the answer
    /// where that makes no difference.
    void WordShaper::shapeTogether(ShapingSink& sink)
    {
        const std::size_t first = missing_.front().segment.start;
        const std::size_t last = missing_.back().segment.end;
        const std::size_t length = last - first + (last < text_.size() ? 1 : 0);
        run(text_.substr(first, length), batch_);
        GlyphCutter cutter(batch_.glyphs, style_.rightToLeft);
        for (const NewWord& word : missing_) {
            const std::size_t start = word.segment.start - first;
            const std::size_t end = word.segment.end - first;
            const auto glyphs = cutter.takeUpTo(end);
            const bool startIsSafe = start == 0 || batch_.safe[start] != 0;
            const bool endIsSafe = end == length || batch_.safe[end] != 0;
            if (startIsSafe && endIsSafe)
                finish(word, glyphs, start, sink);
            else
                shapeAlone(word, sink);
        }
    }

    void WordShaper::shapeMissing(ShapingSink& sink)
    {
        if (missing_.size() == 1)
            shapeAlone(missing_.front(), sink);
        else if (!missing_.empty())
            shapeTogether(sink);
        missing_.clear();
    }

    void WordShaper::setStyle(const ShapingStyle& style)
    {
        if (style_ == style)
            return;
        style_ = style;
        const bool isPlain = style.script == kLatin && !style.rightToLeft;
        pairs_ = isPlain ? &tables.of(*style.face) : nullptr;
    }

    /// Hands on the word that begins at an index, or puts it with the missing ones; answers its end.
    std::size_t WordShaper::shapeSegment(std::size_t start, ShapingSink& sink)
    {
        const Segment segment = segmentAt(text_, start);
        if (segment.end - segment.start > WordCache::kLongestWord) {
            shapeMissing(sink);
            shapeAlone({ segment, 0 }, sink);
            return segment.end;
        }
        const WordKey key = keyFor(segment);
        const std::uint64_t hash = WordCache::hashOf(key);
        const CachedWord* word = cache.find(key, hash);
        if (word && !missing_.empty()) {
            // What is remembered now may be forgotten by what comes in.
            shapeMissing(sink);
            word = cache.find(key, hash);
        }
        if (word) {
            ++hits;
            sink.addPiece(ShapedPiece(segment, word->advances, word->glyphs));
            return segment.end;
        }
        ++misses;
        missing_.push_back({ segment, hash });
        if (segment.end - missing_.front().segment.start >= kBatchUnits)
            shapeMissing(sink);
        return segment.end;
    }

    std::size_t WordShaper::shape(
        std::u16string_view text, Window window, const ShapingStyle& style, ShapingSink& sink)
    {
        text_ = text;
        setStyle(style);
        missing_.clear();
        std::size_t at = window.start;
        LetterPiece letters(pairs_, text, letters_);
        while (at < window.end) {
            if (!letters.moveTo(at)) {
                at = shapeSegment(at, sink);
                continue;
            }
            if (!missing_.empty())
                shapeMissing(sink);
            ++hits;
            sink.addPiece(letters);
            at = letters.end;
        }
        shapeMissing(sink);
        if (letters_.capacity() > kKeptGlyphs)
            letters_ = {};
        return at;
    }

    void WordShaper::forget()
    {
        cache.clear();
        tables.clear();
        style_ = {};
        pairs_ = nullptr;
    }

}

void shapeStretch(std::u16string_view text, const ShapingStyle& style, ShapingSink& sink)
{
    // A long text lets other threads in between.
    for (std::size_t at = 0; at < text.size();)
        at = shapeWords(text, at, at + std::min(kWindowUnits, text.size() - at), style, sink);
}

std::size_t shapeWords(std::u16string_view text, std::size_t start, std::size_t end,
    const ShapingStyle& style, ShapingSink& sink)
{
    WordShaper& shaper = WordShaper::shared();
    const std::lock_guard lock(shaper.mutex);
    return shaper.shape(text, { start, end }, style, sink);
}

WordCacheState wordCacheState()
{
    WordShaper& shaper = WordShaper::shared();
    const std::lock_guard lock(shaper.mutex);
    return { shaper.cache.wordCount(), shaper.cache.byteCount() + shaper.tables.byteCount(),
        shaper.hits, shaper.misses };
}

void clearWordCache()
{
    WordShaper& shaper = WordShaper::shared();
    const std::lock_guard lock(shaper.mutex);
    shaper.forget();
}

}
