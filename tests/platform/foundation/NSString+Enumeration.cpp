// SPDX-License-Identifier: Apache-2.0
#include "foundation/NSString+Enumeration.h"

#include <gtest/gtest.h>

#include "foundation/NSMutableString.h"
#include "support/Strings.h"

namespace brindle {

namespace {

    /// Answers the pieces with "|" between them.
    std::string pieces(NSString* text, NSStringEnumerationOptions options)
    {
        std::string out;
        enumerateSubstringsInRange_options_usingBlock(
            text, { 0, text->length() }, options, [&](NSString* piece, NSRange, NSRange, bool*) {
                out += (out.empty() ? "" : "|") + (piece ? utf8(piece) : std::string("nil"));
            });
        return out;
    }
    /// Answers the enclosing pieces with "|" between them.
    std::string enclosing(NSString* text, NSStringEnumerationOptions options)
    {
        std::string out;
        enumerateSubstringsInRange_options_usingBlock(text, { 0, text->length() },
            options | NSStringEnumerationSubstringNotRequired,
            [&](NSString*, NSRange, NSRange whole, bool*) {
                out += (out.empty() ? "" : "|") + utf8(text->substringWithRange(whole));
            });
        return out;
    }

    TEST(StringEnumeration, ByLines)
    {
        EXPECT_EQ(pieces("a\nb\r\nc\rd\u0085e\u2028f\u2029g"_ns, NSStringEnumerationByLines),
            "a|b|c|d|e|f|g");
        EXPECT_EQ(enclosing("a\r\nb"_ns, NSStringEnumerationByLines), "a\r\n|b");
    }
    TEST(StringEnumeration, AnEmptyLineIsAPiece)
    {
        EXPECT_EQ(pieces("a\n\nb\n"_ns, NSStringEnumerationByLines), "a||b");
        EXPECT_EQ(pieces(""_ns, NSStringEnumerationByLines), "");
    }
    TEST(StringEnumeration, ByParagraphs)
    {
        EXPECT_EQ(pieces("a\u2028b\u0085c\u2029d\ne"_ns, NSStringEnumerationByParagraphs),
            "a\u2028b\u0085c|d|e");
    }
    TEST(StringEnumeration, ByLetters)
    {
        EXPECT_EQ(pieces("ae\u0301😀"_ns, NSStringEnumerationByComposedCharacterSequences),
            "a|e\u0301|😀");
    }
    TEST(StringEnumeration, ByWords)
    {
        EXPECT_EQ(pieces(" Don't stop, 3.14 – über!"_ns, NSStringEnumerationByWords),
            "Don't|stop|3.14|über");
        EXPECT_EQ(enclosing(" a, b."_ns, NSStringEnumerationByWords), " a, |b.");
    }
    TEST(StringEnumeration, BySentences)
    {
        EXPECT_EQ(
            pieces("One. Two? Three"_ns, NSStringEnumerationBySentences), "One. |Two? |Three");
    }
    TEST(StringEnumeration, Backwards)
    {
        EXPECT_EQ(
            pieces("a b c"_ns, NSStringEnumerationByWords | NSStringEnumerationReverse), "c|b|a");
    }
    TEST(StringEnumeration, WithoutText)
    {
        EXPECT_EQ(
            pieces("a b"_ns, NSStringEnumerationByWords | NSStringEnumerationSubstringNotRequired),
            "nil|nil");
    }
    TEST(StringEnumeration, StaysInTheRange)
    {
        std::string out;
        enumerateSubstringsInRange_options_usingBlock("one two three"_ns, { 1, 8 },
            NSStringEnumerationByWords, [&](NSString* piece, NSRange range, NSRange, bool*) {
                out += utf8(piece) + std::to_string(range.location) + " ";
            });
        EXPECT_EQ(out, "ne1 two4 t8 ");
        EXPECT_NE(raisedBy([] {
            enumerateSubstringsInRange_options_usingBlock(
                "a"_ns, { 1, 1 }, 0, [](NSString*, NSRange, NSRange, bool*) {});
        }),
            "");
    }
    TEST(StringEnumeration, EndsWhenItIsStopped)
    {
        std::string out;
        enumerateLinesUsingBlock("a\nb\nc"_ns, [&](NSString* line, bool* stop) {
            out += utf8(line);
            *stop = out.size() == 2;
        });
        EXPECT_EQ(out, "ab");
    }
    TEST(StringEnumeration, TheStringMayChangeMeanwhile)
    {
        const Ref<NSMutableString> text = cast<NSMutableString>("a\nb"_ns->mutableCopy());
        std::string out;
        enumerateLinesUsingBlock(text.get(), [&](NSString* line, bool*) {
            text->setString(""_ns);
            out += utf8(line);
        });
        EXPECT_EQ(out, "ab");
    }

    // ---- the lines of a range

    TEST(LineRanges, HoldWholeLines)
    {
        NSString* const text = "ab\r\ncd\nef"_ns;
        EXPECT_EQ(lineRangeForRange(text, { 0, 0 }), NSMakeRange(0, 4));
        EXPECT_EQ(lineRangeForRange(text, { 3, 0 }), NSMakeRange(0, 4));
        EXPECT_EQ(lineRangeForRange(text, { 3, 1 }), NSMakeRange(0, 4));
        EXPECT_EQ(lineRangeForRange(text, { 1, 4 }), NSMakeRange(0, 7));
        EXPECT_EQ(lineRangeForRange(text, { 4, 0 }), NSMakeRange(4, 3));
        EXPECT_EQ(lineRangeForRange(text, { 9, 0 }), NSMakeRange(7, 2));
        EXPECT_EQ(lineRangeForRange(""_ns, { 0, 0 }), NSMakeRange(0, 0));
    }
    TEST(LineRanges, TellWhereTheContentEnds)
    {
        NSUInteger start = 9;
        NSUInteger end = 9;
        NSUInteger contents = 9;
        getLineStart_end_contentsEnd_forRange("ab\r\ncd"_ns, &start, &end, &contents, { 1, 0 });
        EXPECT_EQ(start, 0u);
        EXPECT_EQ(end, 4u);
        EXPECT_EQ(contents, 2u);
        getLineStart_end_contentsEnd_forRange("ab"_ns, nullptr, nullptr, nullptr, { 0, 0 });
    }
    TEST(LineRanges, OfParagraphsPassOverLineSeparators)
    {
        EXPECT_EQ(paragraphRangeForRange("a\u2028b\u2029c"_ns, { 0, 0 }), NSMakeRange(0, 4));
        EXPECT_EQ(lineRangeForRange("a\u2028b\u2029c"_ns, { 0, 0 }), NSMakeRange(0, 2));
    }
    TEST(LineRanges, ThatLeaveTheTextRaise)
    {
        EXPECT_NE(raisedBy([] { lineRangeForRange("a"_ns, { 1, 1 }); }), "");
    }

}

}
