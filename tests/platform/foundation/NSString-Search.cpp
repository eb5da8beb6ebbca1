// SPDX-License-Identifier: Apache-2.0
#include "foundation/NSString.h"

#include <gtest/gtest.h>

#include "support/Strings.h"

namespace brindle {

namespace {

    constexpr NSRange kNone { 0x7fffffffffffffff, 0 };

    NSRange search(NSString* text, NSString* wanted, NSStringCompareOptions options)
    {
        return text->rangeOfString_options(wanted, options);
    }

    TEST(NSStringSearch, NotFoundIsTheLargestIntegerAndNoLength)
    {
        EXPECT_EQ("abc"_ns->rangeOfString("x"_ns), kNone);
    }
    TEST(NSStringSearch, TheEmptyStringIsNeverFound)
    {
        EXPECT_EQ("abc"_ns->rangeOfString(""_ns), kNone);
        EXPECT_EQ(""_ns->rangeOfString(""_ns), kNone);
        EXPECT_FALSE("ä"_ns->containsString(""_ns));
    }
    TEST(NSStringSearch, NilRaises)
    {
        EXPECT_EQ(raisedBy([] { "abc"_ns->rangeOfString(nullptr); }),
            "NSInvalidArgumentException: *** -[NSString rangeOfString:]: nil argument");
        EXPECT_NE(raisedBy([] { "abc"_ns->containsString(nullptr); }), "");
    }
    TEST(NSStringSearch, FindsTheFirstPlace)
    {
        EXPECT_EQ("abcabc"_ns->rangeOfString("bc"_ns), NSMakeRange(1, 2));
    }
    TEST(NSStringSearch, FindsTheLastPlaceBackwards)
    {
        EXPECT_EQ(search("abcabc"_ns, "bc"_ns, NSBackwardsSearch), NSMakeRange(4, 2));
        EXPECT_EQ(search("äbcäbc"_ns, "ÄB"_ns, NSBackwardsSearch | NSCaseInsensitiveSearch),
            NSMakeRange(3, 2));
    }
    TEST(NSStringSearch, AnchoredFindsOnlyAtTheStart)
    {
        EXPECT_EQ(search("abcabc"_ns, "abc"_ns, NSAnchoredSearch), NSMakeRange(0, 3));
        EXPECT_EQ(search("abcabc"_ns, "bc"_ns, NSAnchoredSearch), kNone);
    }
    TEST(NSStringSearch, AnchoredBackwardsFindsOnlyAtTheEnd)
    {
        EXPECT_EQ(
            search("abcabc"_ns, "bc"_ns, NSAnchoredSearch | NSBackwardsSearch), NSMakeRange(4, 2));
        EXPECT_EQ(search("abcabc"_ns, "ab"_ns, NSAnchoredSearch | NSBackwardsSearch), kNone);
    }
    TEST(NSStringSearch, CaseCountsUnlessAsked)
    {
        EXPECT_EQ("Hello"_ns->rangeOfString("hello"_ns), kNone);
        EXPECT_EQ(search("say Hello"_ns, "hELLO"_ns, NSCaseInsensitiveSearch), NSMakeRange(4, 5));
    }
    TEST(NSStringSearch, FoldsCaseBeyondAscii)
    {
        EXPECT_EQ(search("ÜBER"_ns, "über"_ns, NSCaseInsensitiveSearch), NSMakeRange(0, 4));
        EXPECT_EQ(search("ΣΊΣΥΦΟΣ"_ns, "σίσυφος"_ns, NSCaseInsensitiveSearch), NSMakeRange(0, 7));
    }
    TEST(NSStringSearch, FullFoldingFindsSharpSByTwoLetters)
    {
        EXPECT_EQ(
            search("die Straße"_ns, "STRASSE"_ns, NSCaseInsensitiveSearch), NSMakeRange(4, 6));
        EXPECT_EQ(search("STRASSE 1"_ns, "straße"_ns, NSCaseInsensitiveSearch), NSMakeRange(0, 7));
    }
    TEST(NSStringSearch, HalfOfAFoldedLetterIsNotFound)
    {
        EXPECT_EQ(search("ß"_ns, "s"_ns, NSCaseInsensitiveSearch), kNone);
    }
    TEST(NSStringSearch, TheKelvinSignIsAnInsensitiveK)
    {
        EXPECT_EQ(search("300 \u212a"_ns, "k"_ns, NSCaseInsensitiveSearch), NSMakeRange(4, 1));
    }
    TEST(NSStringSearch, ComposedFindsDecomposed)
    {
        EXPECT_EQ("cafe\u0301!"_ns->rangeOfString("\u00e9"_ns), NSMakeRange(3, 2));
        EXPECT_EQ("caf\u00e9!"_ns->rangeOfString("e\u0301"_ns), NSMakeRange(3, 1));
    }
    TEST(NSStringSearch, ALetterWithItsMarkIsNotTheLetter)
    {
        EXPECT_EQ("e\u0301"_ns->rangeOfString("e"_ns), kNone);
    }
    TEST(NSStringSearch, LiteralComparesUnits)
    {
        EXPECT_EQ(search("caf\u00e9"_ns, "e\u0301"_ns, NSLiteralSearch), kNone);
        EXPECT_EQ(search("e\u0301"_ns, "e"_ns, NSLiteralSearch), NSMakeRange(0, 1));
    }
    TEST(NSStringSearch, DiacriticsMayBeIgnored)
    {
        EXPECT_EQ(search("déjà vu"_ns, "deja"_ns, NSDiacriticInsensitiveSearch), NSMakeRange(0, 4));
        EXPECT_EQ(search("de\u0301ja\u0300 vu"_ns, "ja"_ns, NSDiacriticInsensitiveSearch),
            NSMakeRange(3, 3));
    }
    TEST(NSStringSearch, WidthMayBeIgnored)
    {
        EXPECT_EQ(search("ＡＢＣ"_ns, "BC"_ns, NSWidthInsensitiveSearch), NSMakeRange(1, 2));
        EXPECT_EQ(search("ABC"_ns, "Ｂ"_ns, NSWidthInsensitiveSearch), NSMakeRange(1, 1));
    }
    TEST(NSStringSearch, RangesLimitTheSearchAndStayInTheReceiver)
    {
        EXPECT_EQ(
            "abcabc"_ns->rangeOfString_options_range("abc"_ns, 0, { 1, 5 }), NSMakeRange(3, 3));
        EXPECT_EQ("abcabc"_ns->rangeOfString_options_range("abc"_ns, 0, { 1, 4 }), kNone);
    }
    TEST(NSStringSearch, ARangePastTheEndRaises)
    {
        EXPECT_EQ(raisedBy([] {
            "abc"_ns->rangeOfString_options_range("a"_ns, 0, { 2, 2 });
        }),
            "NSRangeException: *** -[NSString rangeOfString:options:range:]: Range {2, 2} out of "
            "bounds; string length 3");
    }
    TEST(NSStringSearch, PrefixAndSuffixAreCaseSensitive)
    {
        EXPECT_TRUE("README.md"_ns->hasPrefix("READ"_ns));
        EXPECT_FALSE("README.md"_ns->hasPrefix("read"_ns));
        EXPECT_TRUE("README.md"_ns->hasSuffix(".md"_ns));
        EXPECT_FALSE("README.md"_ns->hasSuffix(".MD"_ns));
    }
    TEST(NSStringSearch, AnEmptyPrefixOrSuffixGivesNo)
    {
        EXPECT_FALSE("abc"_ns->hasPrefix(""_ns));
        EXPECT_FALSE("abc"_ns->hasSuffix(""_ns));
    }
    TEST(NSStringSearch, APrefixLongerThanTheTextGivesNo)
    {
        EXPECT_FALSE("ab"_ns->hasPrefix("abc"_ns));
    }
    TEST(NSStringSearch, ContainsStringFindsAPartOfTheText)
    {
        EXPECT_TRUE("Hello"_ns->containsString("ell"_ns));
        EXPECT_FALSE("Hello"_ns->containsString("elo"_ns));
    }
    TEST(NSStringSearch, PeopleSearchWithoutCaseAndAccents)
    {
        EXPECT_TRUE("Crème brûlée"_ns->localizedStandardContainsString("BRULEE"_ns));
        EXPECT_FALSE("Crème brûlée"_ns->localizedCaseInsensitiveContainsString("brulee"_ns));
    }
    TEST(NSStringSearch, ReplacesEveryOccurrence)
    {
        EXPECT_EQ(
            utf8("a-b-c"_ns->stringByReplacingOccurrencesOfString_withString("-"_ns, "--"_ns)),
            "a--b--c");
        EXPECT_EQ(
            utf8("aaa"_ns->stringByReplacingOccurrencesOfString_withString("aa"_ns, "ä"_ns)), "äa");
    }
    TEST(NSStringSearch, ReplacingTheEmptyStringChangesNothing)
    {
        EXPECT_EQ(
            utf8("abc"_ns->stringByReplacingOccurrencesOfString_withString(""_ns, "x"_ns)), "abc");
    }
    TEST(NSStringSearch, ReplacesByFoldingInARange)
    {
        EXPECT_EQ(utf8("Straße STRASSE strasse"_ns
                           ->stringByReplacingOccurrencesOfString_withString_options_range(
                               "strasse"_ns, "x"_ns, NSCaseInsensitiveSearch, { 0, 14 })),
            "x x strasse");
    }
    TEST(NSStringSearch, ReplacesARange)
    {
        EXPECT_EQ(utf8("hello"_ns->stringByReplacingCharactersInRange_withString({ 1, 3 }, "ä"_ns)),
            "häo");
    }
    TEST(NSStringSearch, MarksAndPairsBelongToTheirLetter)
    {
        EXPECT_EQ("ae\u0301b"_ns->rangeOfComposedCharacterSequenceAtIndex(2), NSMakeRange(1, 2));
        EXPECT_EQ("a😀b"_ns->rangeOfComposedCharacterSequenceAtIndex(2), NSMakeRange(1, 2));
        EXPECT_EQ(
            "a😀b"_ns->rangeOfComposedCharacterSequencesForRange({ 0, 2 }), NSMakeRange(0, 3));
    }
    TEST(NSStringSearch, ManyMatchesInLongForeignTextStayQuick)
    {
        std::u16string text;
        for (int i = 0; i < 100000; ++i)
            text += u"я-";
        const Ref<NSString> long_ = stringFrom(text);
        EXPECT_EQ(long_->stringByReplacingOccurrencesOfString_withString("-"_ns, ""_ns)->length(),
            100000u);
    }
    TEST(NSStringSearch, GoingThroughLongForeignTextStaysQuick)
    {
        std::u16string text;
        for (int i = 0; i < 10000; ++i)
            text += u"яж-";
        const Ref<NSString> long_ = stringFrom(text);
        NSUInteger count = 0;
        for (NSUInteger from = 0; from < text.size(); ++count) {
            const NSRange found = long_->rangeOfString_options_range("-"_ns,
                count % 2 ? NSCaseInsensitiveSearch : NSStringCompareOptions(),
                { from, text.size() - from });
            ASSERT_EQ(found, NSMakeRange(3 * count + 2, 1));
            from = NSMaxRange(found);
        }
        EXPECT_EQ(count, 10000u);
        for (NSUInteger end = text.size(); end > 0; end -= 3) {
            ASSERT_EQ(long_->rangeOfString_options_range(
                          "Ж"_ns, NSCaseInsensitiveSearch | NSBackwardsSearch, { 0, end }),
                NSMakeRange(end - 2, 1));
        }
        for (int i = 0; i < 10000; ++i)
            ASSERT_TRUE(long_->hasPrefix("яж"_ns) && long_->hasSuffix("ж-"_ns)
                && !long_->hasPrefix("ж"_ns) && !long_->hasSuffix("ж"_ns));
    }
    TEST(NSStringSearch, FindsWholeLettersHoweverFarOff)
    {
        for (NSUInteger far = 0; far < 100; ++far) {
            const std::u16string gap(far, u'я');
            const Ref<NSString> last = stringFrom(gap + u"e\u0301" + gap + u"e" + gap);
            EXPECT_EQ(search(last.get(), "e"_ns, 0), NSMakeRange(2 * far + 2, 1));
            EXPECT_EQ(search(last.get(), "é"_ns, 0), NSMakeRange(far, 2));
            EXPECT_EQ(search(last.get(), "\u0301"_ns, 0), kNone);
            const Ref<NSString> first = stringFrom(gap + u"e" + gap + u"e\u0301" + gap);
            EXPECT_EQ(search(first.get(), "e"_ns, NSBackwardsSearch), NSMakeRange(far, 1));
            EXPECT_EQ(search(first.get(), "é"_ns, NSBackwardsSearch), NSMakeRange(2 * far + 1, 2));
            EXPECT_EQ(search(first.get(), "\u0301"_ns, NSBackwardsSearch), kNone);
            const Ref<NSString> marked = stringFrom(u"e" + std::u16string(far, u'\u0301') + u"я");
            EXPECT_EQ(
                search(marked.get(), "eя"_ns, NSAnchoredSearch | NSDiacriticInsensitiveSearch),
                NSMakeRange(0, far + 2));
            EXPECT_EQ(search(marked.get(), "eя"_ns,
                          NSAnchoredSearch | NSBackwardsSearch | NSDiacriticInsensitiveSearch),
                NSMakeRange(0, far + 2));
        }
    }

}

}
