// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include <hb.h>

#include "quartz/text/Line.h"
#include "support/Measure.h"

// What measurements of text are held against, and the texts.

namespace brindle::bench {

/// HarfBuzz and nothing else, with one buffer that is used again.
class BareShaper {
public:
    explicit BareShaper(const text::FontFace& face)
    {
        hb_blob_t* const blob = hb_blob_create_from_file(face.filePath().c_str());
        hb_face_t* const bare = hb_face_create(blob, face.fileIndex());
        font_ = hb_font_create(bare);
        hb_face_destroy(bare);
        hb_blob_destroy(blob);
    }
    ~BareShaper()
    {
        hb_buffer_destroy(buffer_);
        hb_font_destroy(font_);
    }
    BareShaper(const BareShaper&) = delete;
    BareShaper& operator=(const BareShaper&) = delete;

    void shape(const std::u16string& text)
    {
        const auto length = static_cast<int>(text.size());
        hb_buffer_clear_contents(buffer_);
        hb_buffer_add_utf16(
            buffer_, reinterpret_cast<const std::uint16_t*>(text.data()), length, 0, length);
        hb_buffer_set_direction(buffer_, HB_DIRECTION_LTR);
        hb_buffer_set_script(buffer_, HB_SCRIPT_LATIN);
        hb_shape(font_, buffer_, nullptr, 0);
        unsigned count = 0;
        keep(hb_buffer_get_glyph_positions(buffer_, &count));
    }

private:
    hb_font_t* font_ = nullptr;
    hb_buffer_t* buffer_ = hb_buffer_create();
};

/// Lines of words of 2 to 9 letters that do not come twice.
inline std::vector<std::u16string> makeLines(std::size_t count, std::size_t length)
{
    static std::mt19937 random(20);
    std::vector<std::u16string> lines(count);
    for (std::u16string& line : lines) {
        while (line.size() < length) {
            for (std::size_t letters = 2 + random() % 8; letters > 0; --letters)
                line += static_cast<char16_t>(u'a' + random() % 26);
            line += u' ';
        }
        line.resize(length);
    }
    return lines;
}

/// A face with plain kerning and ligatures; in one that exchanges letters all day only the floor would count.
inline text::Font plainFont() { return { text::FontFace::named("Helvetica"), 13 }; }

enum class Words { areNew, wereSeen };

/// Prepares a text for measuring.
template <class Prepare> using Prepared = std::invoke_result_t<Prepare, const std::u16string&>;

/// Works on lines one after another: other lines in each block, or the same ones again and again. What `prepare` makes of
/// a line is not counted.
template <class Prepare, class Shape>
Sample overLines(std::size_t length, Words words, Prepare prepare, Shape shape)
{
    const auto lines = std::make_shared<std::vector<Prepared<Prepare>>>();
    return [=](std::size_t count) {
        if (words == Words::areNew || lines->size() != count) {
            lines->clear();
            for (const std::u16string& line : makeLines(count, length))
                lines->push_back(prepare(line));
            if (words == Words::wereSeen)
                std::for_each(lines->begin(), lines->end(), shape);
        }
        const Stopwatch watch;
        for (const auto& line : *lines)
            shape(line);
        return watch.elapsed();
    };
}
/// The same for the lines as they are.
template <class Shape> Sample overLines(std::size_t length, Words words, Shape shape)
{
    return overLines(
        length, words, [](const std::u16string& line) { return line; }, shape);
}

}
