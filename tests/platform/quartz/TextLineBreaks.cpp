// SPDX-License-Identifier: Apache-2.0
#include "quartz/text/LineBreaks.h"

#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "quartz/text/Unicode.h"

namespace brindle::text {

namespace {

    std::vector<bool> byUnicode(const std::u16string& text)
    {
        std::vector<bool> allowed(text.size() + 1);
        for (const std::size_t at : lineBoundaries(text))
            allowed[at] = true;
        return allowed;
    }

    void expectWhatUnicodeSays(std::u16string_view letters)
    {
        std::mt19937 random(5);
        for (int i = 0; i < 2000; ++i) {
            std::u16string text;
            for (std::size_t length = random() % 24; length > 0; --length)
                text += letters[random() % letters.size()];
            const LineBreaks breaks(text);
            const std::vector<bool> allowed = byUnicode(text);
            for (std::size_t at = 1; at < text.size(); ++at)
                ASSERT_EQ(breaks.isAllowedAt(at), allowed[at]) << "text " << i << " at " << at;
        }
    }

}

TEST(TextLineBreaks, PlainTextBreaksWhereUnicodeSays) { expectWhatUnicodeSays(u"aab9'.,!?-  "); }

TEST(TextLineBreaks, OtherTextBreaksWhereUnicodeSays)
{
    expectWhatUnicodeSays(u"aab9'.,!?-  (\"/\u00E9\u6F22\u00A0\t");
}

TEST(TextLineBreaks, NextAnswersTheEndWhereNothingBreaksInside)
{
    const std::u16string text = u"well-off people";
    const LineBreaks breaks(text);
    EXPECT_EQ(breaks.next(0, 8), 5u);
    EXPECT_EQ(breaks.next(9, 15), 15u);
}

}
