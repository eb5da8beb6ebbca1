// SPDX-License-Identifier: Apache-2.0
#include "foundation/NSRegularExpression.h"

#include <gtest/gtest.h>

#include "foundation/NSArray.h"
#include "foundation/NSDictionary.h"
#include "foundation/NSError.h"
#include "foundation/NSMutableString.h"
#include "support/Strings.h"

namespace brindle {

namespace {

    Ref<NSRegularExpression> expression(NSString* pattern, NSRegularExpressionOptions options = 0)
    {
        return NSRegularExpression::cls().regularExpressionWithPattern_options_error(
            pattern, options, nullptr);
    }
    NSRange all(NSString* text) { return { 0, text->length() }; }
    /// Answers the matches with "|" between them.
    std::string matches(
        const Ref<NSRegularExpression>& expression, NSString* text, NSMatchingOptions options = 0)
    {
        std::string out;
        const auto found = expression->matchesInString_options_range(text, options, all(text));
        for (NSUInteger i = 0; i < found->count(); ++i) {
            const auto result = cast<NSTextCheckingResult>(found->objectAtIndex(i));
            out += (i ? "|" : "") + utf8(text->substringWithRange(result->range()));
        }
        return out;
    }
    std::string replaced(NSString* pattern, NSString* text, NSString* replacement)
    {
        return utf8(
            expression(pattern)->stringByReplacingMatchesInString_options_range_withTemplate(
                text, 0, all(text), replacement));
    }

    TEST(NSRegularExpression, FindsAllMatches)
    {
        EXPECT_EQ(matches(expression("[a-c]+"_ns), "ab-xc-😀a"_ns), "ab|c|a");
        EXPECT_EQ(matches(expression("x"_ns), ""_ns), "");
    }
    TEST(NSRegularExpression, EmptyMatchesDoNotStopTheSearch)
    {
        const auto found
            = expression("x*"_ns)->matchesInString_options_range("axb"_ns, 0, { 0, 3 });
        EXPECT_EQ(found->count(), 4u);
    }
    TEST(NSRegularExpression, CountsAndFindsTheFirst)
    {
        const auto digits = expression("\\d+"_ns);
        EXPECT_EQ(digits->numberOfMatchesInString_options_range("1a22"_ns, 0, { 0, 4 }), 2u);
        EXPECT_EQ(digits->rangeOfFirstMatchInString_options_range("a22"_ns, 0, { 0, 3 }),
            NSMakeRange(1, 2));
        EXPECT_EQ(digits->rangeOfFirstMatchInString_options_range("a"_ns, 0, { 0, 1 }).location,
            static_cast<NSUInteger>(NSNotFound));
        EXPECT_EQ(digits->firstMatchInString_options_range("a"_ns, 0, { 0, 1 }), nullptr);
    }
    TEST(NSRegularExpression, HasGroups)
    {
        const auto pair = expression("(\\w+)=(?<value>\\w+)|(x)"_ns);
        EXPECT_EQ(pair->numberOfCaptureGroups(), 3u);
        const auto result = pair->firstMatchInString_options_range("-a=bc"_ns, 0, { 0, 5 });
        EXPECT_EQ(result->numberOfRanges(), 4u);
        EXPECT_EQ(result->rangeAtIndex(0), NSMakeRange(1, 4));
        EXPECT_EQ(result->rangeAtIndex(1), NSMakeRange(1, 1));
        EXPECT_EQ(result->rangeWithName("value"_ns), NSMakeRange(3, 2));
        EXPECT_EQ(result->rangeAtIndex(3).location, static_cast<NSUInteger>(NSNotFound));
        EXPECT_EQ(result->rangeWithName("none"_ns).length, 0u);
        EXPECT_EQ(result->regularExpression(), pair);
        EXPECT_NE(raisedBy([&] { result->rangeAtIndex(4); }), "");
    }
    TEST(NSRegularExpression, ResultsCanBeMoved)
    {
        const auto result
            = expression("(a)|(b)"_ns)->firstMatchInString_options_range("xa"_ns, 0, { 0, 2 });
        const auto moved = result->resultByAdjustingRangesWithOffset(3);
        EXPECT_EQ(moved->rangeAtIndex(1), NSMakeRange(4, 1));
        EXPECT_EQ(moved->rangeAtIndex(2).location, static_cast<NSUInteger>(NSNotFound));
        EXPECT_NE(raisedBy([&] { result->resultByAdjustingRangesWithOffset(-2); }), "");
    }
    TEST(NSRegularExpression, TakesOptions)
    {
        EXPECT_EQ(matches(expression("A"_ns, NSRegularExpressionCaseInsensitive), "aA"_ns), "a|A");
        EXPECT_EQ(matches(expression("a b #c"_ns, NSRegularExpressionAllowCommentsAndWhitespace),
                      "ab"_ns),
            "ab");
        EXPECT_EQ(
            matches(expression("a."_ns, NSRegularExpressionIgnoreMetacharacters), "aba."_ns), "a.");
        EXPECT_EQ(matches(expression("a.b"_ns), "a\nb"_ns), "");
        EXPECT_EQ(
            matches(expression("a.b"_ns, NSRegularExpressionDotMatchesLineSeparators), "a\nb"_ns),
            "a\nb");
        EXPECT_EQ(
            matches(expression("^b"_ns, NSRegularExpressionAnchorsMatchLines), "a\nb"_ns), "b");
    }
    TEST(NSRegularExpression, LooksOnlyInTheRange)
    {
        const auto found = [](NSString* pattern, NSMatchingOptions options) {
            return expression(pattern)->numberOfMatchesInString_options_range(
                "abc"_ns, options, { 1, 1 });
        };
        EXPECT_EQ(found("."_ns, 0), 1u);
        EXPECT_EQ(found("^b$"_ns, 0), 1u);
        EXPECT_EQ(found("^b$"_ns, NSMatchingWithoutAnchoringBounds), 0u);
        EXPECT_EQ(found("(?<=a)b(?=c)"_ns, 0), 0u);
        EXPECT_EQ(found("(?<=a)b(?=c)"_ns, NSMatchingWithTransparentBounds), 1u);
    }
    TEST(NSRegularExpression, MatchesAnchoredAtTheStartOnly)
    {
        EXPECT_EQ(matches(expression("a"_ns), "aab"_ns, NSMatchingAnchored), "a");
        EXPECT_EQ(matches(expression("b"_ns), "aab"_ns, NSMatchingAnchored), "");
    }
    TEST(NSRegularExpression, EnumeratesUntilItIsStopped)
    {
        int calls = 0;
        expression("."_ns)->enumerateMatchesInString_options_range_usingBlock("abc"_ns,
            NSMatchingReportCompletion, { 0, 3 },
            [&](NSTextCheckingResult*, NSMatchingFlags, bool* stop) { *stop = ++calls == 2; });
        EXPECT_EQ(calls, 2);
    }
    TEST(NSRegularExpression, ReportsTheEndOnRequest)
    {
        std::string log;
        expression("a"_ns)->enumerateMatchesInString_options_range_usingBlock("ab"_ns,
            NSMatchingReportCompletion, { 0, 2 },
            [&](NSTextCheckingResult* result, NSMatchingFlags flags, bool*) {
                log += result ? "match " : flags & NSMatchingCompleted ? "end" : "?";
            });
        EXPECT_EQ(log, "match end");
    }

    // ---- patterns that are no good

    TEST(NSRegularExpression, ABadPatternAnswersNilWithReasonAndPlace)
    {
        Ref<NSError> error;
        EXPECT_EQ(NSRegularExpression::cls().regularExpressionWithPattern_options_error(
                      "ab(c"_ns, 0, &error),
            nullptr);
        EXPECT_EQ(error->code(), NSFormattingError);
        const auto facts = error->userInfo();
        EXPECT_EQ(textOf(facts->objectForKey(NSDebugDescriptionErrorKey)),
            "The regular expression cannot be read: mismatched parenthesis at 4.");
        EXPECT_EQ(textOf(facts->objectForKey("NSInvalidValue"_ns)), "ab(c");
    }
    TEST(NSRegularExpression, ABadPatternIsToldToTheUserInWords)
    {
        Ref<NSError> error;
        NSRegularExpression::cls().regularExpressionWithPattern_options_error("ab(c"_ns, 0, &error);
        EXPECT_EQ(textOf(error->localizedDescription()),
            "The regular expression cannot be read: mismatched parenthesis at 4.");
    }
    TEST(NSRegularExpression, BadPatternsAnswerNil)
    {
        for (NSString* pattern :
            { "["_ns, "*"_ns, "a{2,1}"_ns, "\\"_ns, "(?<a"_ns, ")"_ns, "\\p{x}"_ns, ""_ns })
            EXPECT_EQ(expression(pattern), nullptr) << utf8(pattern);
    }
    TEST(NSRegularExpression, NilRaises)
    {
        EXPECT_NE(raisedBy([] { expression(nullptr); }), "");
        EXPECT_NE(raisedBy([] {
            expression("a"_ns)->matchesInString_options_range(nullptr, 0, { 0, 0 });
        }),
            "");
    }
    TEST(NSRegularExpression, ARangeThatLeavesTheTextRaises)
    {
        EXPECT_NE(raisedBy([] {
            expression("a"_ns)->matchesInString_options_range("a"_ns, 0, { 1, 1 });
        }),
            "");
    }
    TEST(NSRegularExpression, ASearchThatTakesTooLongIsGivenUp)
    {
        NSMatchingFlags last = 0;
        const auto text = stringFrom(std::string(40, 'a') + "b");
        expression("(a|aa)+$"_ns)
            ->enumerateMatchesInString_options_range_usingBlock(text.get(), 0, all(text.get()),
                [&](NSTextCheckingResult*, NSMatchingFlags flags, bool*) { last = flags; });
        EXPECT_TRUE(last & NSMatchingInternalError);
    }
    TEST(NSRegularExpression, DeepRecursionUsesNoStack)
    {
        const auto text = stringFrom(std::string(2'000'000, 'a'));
        EXPECT_LE(expression("(?:a|b)*c"_ns)
                      ->numberOfMatchesInString_options_range(text.get(), 0, all(text.get())),
            1u);
    }

    // ---- replacing

    TEST(NSRegularExpression, ReplacesByATemplate)
    {
        EXPECT_EQ(replaced("(\\w)=(\\w)"_ns, "-a=b,c=d-"_ns, "$2:$1"_ns), "-b:a,d:c-");
        EXPECT_EQ(replaced("a"_ns, "aba"_ns, "[$0]"_ns), "[a]b[a]");
        EXPECT_EQ(replaced("x"_ns, "aba"_ns, "y"_ns), "aba");
    }
    TEST(NSRegularExpression, ABackslashTakesTheNextCharacterAsItIs)
    {
        EXPECT_EQ(replaced("a"_ns, "a"_ns, "\\$0\\\\"_ns), "$0\\");
    }
    TEST(NSRegularExpression, OtherDollarsStandForThemselves)
    {
        EXPECT_EQ(replaced("a"_ns, "a"_ns, "$x $"_ns), "$x $");
    }
    TEST(NSRegularExpression, GroupsThatAreNotThereAreEmpty)
    {
        EXPECT_EQ(replaced("a|(b)"_ns, "a"_ns, "<$1$7>"_ns), "<>");
    }
    TEST(NSRegularExpression, ASecondDigitWantsAGroup)
    {
        EXPECT_EQ(replaced("(a)"_ns, "a"_ns, "$12"_ns), "a2");
    }
    TEST(NSRegularExpression, EscapesPatternsAndTemplates)
    {
        NSString* const text = "a.b*$1\\(x)[y]"_ns;
        const auto pattern = NSRegularExpression::cls().escapedPatternForString(text);
        EXPECT_EQ(matches(expression(pattern.get()), text), utf8(text));
        const auto replacement = NSRegularExpression::cls().escapedTemplateForString(text);
        EXPECT_EQ(replaced("^.$"_ns, "q"_ns, replacement.get()), utf8(text));
    }
    TEST(NSRegularExpression, ReplacesInPlace)
    {
        const Ref<NSMutableString> text = cast<NSMutableString>("aXbX"_ns->mutableCopy());
        EXPECT_EQ(expression("X"_ns)->replaceMatchesInString_options_range_withTemplate(
                      text.get(), 0, { 0, 3 }, "-"_ns),
            1u);
        EXPECT_EQ(utf8(text.get()), "a-bX");
    }
    TEST(NSRegularExpression, WritesTheReplacementOfAResult)
    {
        const auto numbers = expression("(\\d)"_ns);
        const auto result = numbers->firstMatchInString_options_range("a1"_ns, 0, { 0, 2 });
        EXPECT_EQ(utf8(numbers->replacementStringForResult_inString_offset_template(
                      result.get(), "xxa1"_ns, 2, "<$1>"_ns)),
            "<1>");
        EXPECT_NE(raisedBy([&] {
            numbers->replacementStringForResult_inString_offset_template(
                result.get(), "a"_ns, 0, "$1"_ns);
        }),
            "");
    }
    TEST(NSRegularExpression, EqualityComparesPatternAndOptions)
    {
        EXPECT_TRUE(expression("a"_ns)->isEqual(expression("a"_ns).get()));
        EXPECT_FALSE(expression("a"_ns)->isEqual(expression("a"_ns, 1).get()));
        EXPECT_FALSE(expression("a"_ns)->isEqual("a"_ns));
    }

    // ---- searches of strings

    TEST(NSStringPatterns, FindAMatch)
    {
        const auto find = [](NSString* pattern, NSStringCompareOptions options) {
            return "ab12cd3"_ns->rangeOfString_options(
                pattern, options | NSRegularExpressionSearch);
        };
        EXPECT_EQ(find("[0-9]+"_ns, 0), NSMakeRange(2, 2));
        EXPECT_EQ(find("B"_ns, NSCaseInsensitiveSearch), NSMakeRange(1, 1));
        EXPECT_EQ(find("[0-9]+"_ns, NSAnchoredSearch).length, 0u);
        EXPECT_EQ(find("("_ns, 0).location, static_cast<NSUInteger>(NSNotFound));
    }
    TEST(NSStringPatterns, ReplaceMatchesByATemplate)
    {
        EXPECT_EQ(utf8("a1b22"_ns->stringByReplacingOccurrencesOfString_withString_options_range(
                      "(\\d+)"_ns, "<$1>"_ns, NSRegularExpressionSearch, { 0, 5 })),
            "a<1>b<22>");
    }
    TEST(NSStringPatterns, ABadPatternReplacesNothing)
    {
        EXPECT_EQ(utf8("a("_ns->stringByReplacingOccurrencesOfString_withString_options_range(
                      "("_ns, "x"_ns, NSRegularExpressionSearch, { 0, 2 })),
            "a(");
    }

}

}
