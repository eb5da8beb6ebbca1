// SPDX-License-Identifier: Apache-2.0
#include "support/Shaping.h"
#include "support/Topics.h"

namespace brindle::bench {

namespace {

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
