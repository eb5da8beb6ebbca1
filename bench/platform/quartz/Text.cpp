// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <random>

#include <hb.h>

#include "quartz/text/Line.h"
#include "support/Measure.h"
#include "support/Topics.h"

namespace brindle::bench {

namespace {

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
    std::vector<std::u16string> makeLines(std::size_t count, std::size_t length)
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
    text::Font plainFont() { return { text::FontFace::named("Helvetica"), 13 }; }

    enum class Words { areNew, wereSeen };

    /// Shapes lines one after another: other lines in each block, or the same ones again and again.
    template <class Shape> Sample overLines(std::size_t length, Words words, Shape shape)
    {
        const auto lines = std::make_shared<std::vector<std::u16string>>();
        return [=](std::size_t count) {
            if (words == Words::areNew || lines->size() != count) {
                *lines = makeLines(count, length);
                if (words == Words::wereSeen)
                    std::for_each(lines->begin(), lines->end(), shape);
            }
            const Stopwatch watch;
            for (const std::u16string& line : *lines)
                shape(line);
            return watch.elapsed();
        };
    }

    enum class Work { measure, line };

    Pair shaping(std::size_t length, Words words, Work work)
    {
        const text::Font font = plainFont();
        const auto bare = std::make_shared<BareShaper>(*font.face);
        const auto ours = [=](const std::u16string& line) {
            if (work == Work::measure)
                keep(text::measureLine(line, font).width);
            else
                keep(text::shapeLine(line, font).width());
        };
        return { overLines(length, words, ours),
            overLines(length, words, [bare](const std::u16string& line) { bare->shape(line); }),
            length > 1000 ? std::size_t { 2 }
                          : std::size_t { 64 } }; // as many words as are remembered
    }

}

void addText(Plan& plan)
{
    plan.time("measure 60 characters, new words, beside hb_shape", timesFloor(1.4),
        [] { return shaping(60, Words::areNew, Work::measure); });
    plan.time("measure 60 characters, words seen before", timesFloor(1.0 / 3.2),
        [] { return shaping(60, Words::wereSeen, Work::measure); });
    plan.time("measure 2,000 characters, new words, beside hb_shape", timesFloor(1.2),
        [] { return shaping(2000, Words::areNew, Work::measure); });
    plan.time("measure 2,000 characters, words seen before", timesFloor(20.0 / 100),
        [] { return shaping(2000, Words::wereSeen, Work::measure); });
    plan.time("line of 60 characters, new words, beside hb_shape", kNoBudget,
        [] { return shaping(60, Words::areNew, Work::line); });
    plan.time("line of 60 characters, words seen before", kNoBudget,
        [] { return shaping(60, Words::wereSeen, Work::line); });
}

}
