// SPDX-License-Identifier: Apache-2.0
#include "TextLinesPrivate.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "../text/Unicode.h"
#include "CATextLayer.h"

namespace brindle::quartz {

namespace {

    /// A line longer than this many units is cut: no layer is as wide.
    constexpr std::size_t kLongestLine = 8192;

    bool isSpace(char16_t unit) { return unit == ' ' || unit == '\t'; }
    bool endsParagraph(char16_t unit)
    {
        return unit == '\n' || unit == '\r' || unit == 0x2028 || unit == 0x2029;
    }

    std::vector<std::u16string_view> paragraphsOf(std::u16string_view text)
    {
        std::vector<std::u16string_view> paragraphs;
        std::size_t begin = 0;
        for (std::size_t i = 0; i < text.size(); ++i) {
            if (!endsParagraph(text[i]))
                continue;
            paragraphs.push_back(text.substr(begin, i - begin));
            if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n')
                ++i;
            begin = i + 1;
        }
        paragraphs.push_back(text.substr(begin));
        return paragraphs;
    }

    /// Answers how much of a line that is too wide stays on it: up to the last space, else up to the last character
    /// that fits; one character at least. Spaces hang over the edge.
    std::size_t endOfFirstLine(const text::Line& line, double width)
    {
        const std::u16string_view text = line.text();
        std::size_t fits = 0;
        std::size_t behindSpace = 0;
        for (const std::size_t cut : text::characterBoundaries(text)) {
            if (cut == 0)
                continue;
            const bool space = isSpace(text[cut - 1]);
            if (fits > 0 && !space && line.caretOffset(cut) > width)
                break;
            fits = cut;
            if (space)
                behindSpace = cut;
        }
        return behindSpace > 0 && fits < text.size() ? behindSpace : fits;
    }

    std::u16string_view withoutTrailingSpaces(std::u16string_view text)
    {
        while (!text.empty() && isSpace(text.back()))
            text.remove_suffix(1);
        return text;
    }

    std::optional<text::TruncationPlace> placeOf(const NSString* mode)
    {
        if (!mode)
            return std::nullopt;
        if (mode->isEqual(kCATruncationStart.get()))
            return text::TruncationPlace::head;
        if (mode->isEqual(kCATruncationMiddle.get()))
            return text::TruncationPlace::middle;
        if (mode->isEqual(kCATruncationEnd.get()))
            return text::TruncationPlace::tail;
        return std::nullopt;
    }

    text::Line truncated(std::u16string_view text, const TextFit& fit, text::TruncationPlace place)
    {
        const text::FontRun run { { 0, text.size() }, fit.font };
        return text::shapeTruncatedLine(text, { &run, 1 }, fit.width, place).line;
    }

    /// Breaks paragraphs into lines, as many as have room or can be seen.
    class Wrapping {
    public:
        Wrapping(const TextFit& fit, std::vector<text::Line>& lines)
            : fit_(fit)
            , lines_(lines)
            , place_(placeOf(fit.truncation))
            , most_(place_
                      ? std::max(1.0, std::floor(fit.height / std::max(lineHeight(fit.font), 1.0)))
                      : std::ceil(fit.height / std::max(lineHeight(fit.font), 1.0)) + 1)
        {
        }
        bool isFull() const { return !(most_ > 0) || static_cast<double>(lines_.size()) >= most_; }
        void add(std::u16string_view paragraph)
        {
            do {
                text::Line line = tooMuchOf(paragraph);
                if (line.width() <= fit_.width) {
                    paragraph.remove_prefix(line.text().size());
                    lines_.push_back(std::move(line));
                    continue;
                }
                if (place_ && static_cast<double>(lines_.size()) + 1 >= most_) {
                    lines_.push_back(truncated(line.text(), fit_, *place_));
                    return;
                }
                const std::size_t end = endOfFirstLine(line, fit_.width);
                lines_.push_back(
                    text::shapeLine(withoutTrailingSpaces(paragraph.substr(0, end)), fit_.font));
                paragraph.remove_prefix(end);
            } while (!paragraph.empty() && !isFull());
        }

    private:
        /// Answers a line of enough text to fill the width, or of all there is.
        text::Line tooMuchOf(std::u16string_view paragraph) const
        {
            std::size_t length = 256;
            text::Line line = text::shapeLine(paragraph.substr(0, length), fit_.font);
            while (
                line.width() <= fit_.width && length < paragraph.size() && length < kLongestLine) {
                length *= 2;
                line = text::shapeLine(paragraph.substr(0, length), fit_.font);
            }
            return line;
        }

        const TextFit& fit_;
        std::vector<text::Line>& lines_;
        std::optional<text::TruncationPlace> place_;
        double most_;
    };

}

double lineHeight(const text::Font& font)
{
    return std::round(font.ascender()) + std::round(-font.descender()) + std::round(font.leading());
}

std::vector<text::Line> linesFor(std::u16string_view text, const TextFit& fit)
{
    std::vector<text::Line> lines;
    Wrapping wrapping(fit, lines);
    const auto place = placeOf(fit.truncation);
    for (const std::u16string_view paragraph : paragraphsOf(text)) {
        const std::u16string_view start = paragraph.substr(0, kLongestLine);
        if (wrapping.isFull())
            break;
        if (fit.wrapped)
            wrapping.add(paragraph);
        else if (place)
            lines.push_back(truncated(start, fit, *place));
        else
            lines.push_back(text::shapeLine(start, fit.font));
    }
    return lines;
}

}
