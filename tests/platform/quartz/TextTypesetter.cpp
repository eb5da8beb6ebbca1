// SPDX-License-Identifier: Apache-2.0
#include <cmath>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "quartz/text/LineBreaks.h"
#include "quartz/text/Typesetter.h"

namespace brindle::text {

namespace {

    constexpr std::size_t kLineLength = 14; // letters that a line has room for

    Font monospaced() { return { FontFace::named("LiberationMono"), 10 }; }

    /// Takes where lines end.
    struct LineEnds final : LineTaker {
        double roomForLine(std::size_t) override
        {
            return (kLineLength + 0.5) * monospaced().advance(monospaced().face->glyphFor('x'));
        }
        bool addLine(const LineBox& line) override
        {
            ends.push_back(NSMaxRange(line.range));
            return true;
        }
        std::vector<std::size_t> ends;
    };

    /// Breaks a paragraph in several stretches of one font.
    std::vector<std::size_t> endsOf(std::u16string_view text, const std::vector<std::size_t>& cuts)
    {
        std::vector<StyledRun> runs;
        std::size_t start = 0;
        for (const std::size_t end : cuts) {
            StyledRun run;
            run.range = NSMakeRange(start, end - start);
            run.font = monospaced();
            run.raise = runs.size() % 2 ? 1 : 0; // or they would be one stretch
            runs.push_back(run);
            start = end;
        }
        LineEnds taker;
        ParagraphRules rules;
        rules.direction = BaseDirection::leftToRight;
        rules.mayHaveTabs = false;
        breakParagraph(text, runs, rules, taker);
        return taker.ends;
    }

    /// The same letter by letter: a line ends at the last place where one may begin, as long as what it shows has room.
    std::vector<std::size_t> expectedEnds(std::u16string_view text)
    {
        const LineBreaks breaks(text);
        std::vector<std::size_t> ends;
        std::size_t start = 0;
        std::size_t best = 0;
        for (std::size_t at = 1; at <= text.size(); ++at) {
            const bool mayEnd = at == text.size() || breaks.isAllowedAt(at);
            if (!mayEnd)
                continue;
            std::size_t shown = at;
            while (shown > start && text[shown - 1] == u' ')
                --shown;
            if (shown - start > kLineLength && best > start) {
                ends.push_back(best);
                start = best;
            }
            best = at;
        }
        ends.push_back(text.size());
        return ends;
    }

    /// Words shorter than a line, plain ones and others, and spaces between them.
    /// - signs: none that keeps to what stands behind a space, or a line would have no place to end.
    std::u16string randomParagraph(std::mt19937& random, std::u16string_view signs)
    {
        std::u16string text;
        for (std::size_t words = 1 + random() % 12; words > 0; --words) {
            for (std::size_t letters = 1 + random() % 7; letters > 0; --letters)
                text += static_cast<char16_t>(u'a' + random() % 26);
            if (random() % 3 == 0)
                text += signs[random() % signs.size()];
            if (random() % 6 == 0)
                text += u"xy";
            text += std::u16string(1 + (random() % 5 == 0), u' ');
        }
        if (random() % 2)
            text.pop_back();
        return text;
    }

    void expectGreedyLines(std::u16string_view signs, bool isCut)
    {
        std::mt19937 random(29);
        for (int round = 0; round < 400; ++round) {
            const std::u16string text = randomParagraph(random, signs);
            std::vector<std::size_t> cuts;
            for (std::size_t at = 1; isCut && at < text.size(); ++at) {
                if (random() % 8 == 0)
                    cuts.push_back(at);
            }
            cuts.push_back(text.size());
            ASSERT_EQ(endsOf(text, cuts), expectedEnds(text))
                << std::string(text.begin(), text.end()) << "|";
        }
    }

}

TEST(Typesetter, FillsLinesOfPlainWords) { expectGreedyLines(u".,;:!?", false); }
TEST(Typesetter, FillsLinesOfPlainWordsInSeveralStyles) { expectGreedyLines(u".,;:!?", true); }
TEST(Typesetter, FillsLinesOfWordsThatBreakInside) { expectGreedyLines(u"-/)'%$", false); }
TEST(Typesetter, FillsLinesOfWordsThatBreakInsideInSeveralStyles)
{
    expectGreedyLines(u"-/)'%$.,", true);
}
TEST(Typesetter, FillsLinesWithDashesBetweenWords) { expectGreedyLines(u"\u2014-", true); }

}
