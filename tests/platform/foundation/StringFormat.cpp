// SPDX-License-Identifier: Apache-2.0
#include "foundation/StringFormat.h"

#include <clocale>
#include <cmath>

#include <gtest/gtest.h>

#include "foundation/NSMutableString.h"
#include "foundation/NSNumber.h"
#include "runtime/Table.h"
#include "support/Strings.h"

namespace brindle {

/// Answers the description that a test wants.
class Described : public NSObject {
    BRINDLE_OBJECT(Described, NSObject)

public:
    Ref<NSString> text_;
};

template <> struct Described::Methods<struct Describing> {
    static Ref<NSString> description(Described& self) { return self.text_; }
    static void table(Builder& t) { t.methods({ { "description", imp<description> } }); }
};
BRINDLE_RECORD(Described, Describing)

namespace {

    template <class... A> std::string format(NSString* pattern, A... arguments)
    {
        return utf8(NSString::cls().stringWithFormat(pattern, arguments...));
    }

    TEST(StringFormat, TextWithoutConversionsStays) { EXPECT_EQ(format("plain ä"_ns), "plain ä"); }
    TEST(StringFormat, PercentSignsAreDoubled) { EXPECT_EQ(format("100%%"_ns), "100%"); }
    TEST(StringFormat, ObjectsGiveTheirDescription)
    {
        const Ref<Described> object = make<Described>();
        object->text_ = "größer"_ns;
        EXPECT_EQ(format("<%@>"_ns, object.get()), "<größer>");
        EXPECT_EQ(format("<%@>"_ns, object), "<größer>");
    }
    TEST(StringFormat, NilObjectsReadNull)
    {
        EXPECT_EQ(format("id=%@"_ns, static_cast<NSString*>(nullptr)), "id=(null)");
        EXPECT_EQ(format("id=%@"_ns, nullptr), "id=(null)");
    }
    TEST(StringFormat, ObjectsWithoutDescriptionReadNull)
    {
        EXPECT_EQ(format("%@"_ns, make<Described>().get()), "(null)");
    }
    TEST(StringFormat, ClassesGiveTheirName)
    {
        EXPECT_EQ(format("%@"_ns, NSString::cls().object), "NSString");
    }
    TEST(StringFormat, ObjectsTakeWidthAndPrecision)
    {
        EXPECT_EQ(
            format("[%6@][%-6@][%.2@]"_ns, "abc"_ns, "abc"_ns, "abc"_ns), "[   abc][abc   ][ab]");
    }
    TEST(StringFormat, WritesSignedIntegersOfAllLengths)
    {
        EXPECT_EQ(
            format("%d %i %ld %lld %qd %zd %jd %td"_ns, -1, -2, -3l, -4ll, -5ll, -6l, -7l, -8l),
            "-1 -2 -3 -4 -5 -6 -7 -8");
        EXPECT_EQ(format("%hhd %hd"_ns, 257, 65537), "1 1");
    }
    TEST(StringFormat, WritesUnsignedIntegersOfAllLengths)
    {
        EXPECT_EQ(format("%u %lu %llu %qu"_ns, 4294967295u, ~0ul, ~0ull, ~0ull),
            "4294967295 18446744073709551615 18446744073709551615 18446744073709551615");
        EXPECT_EQ(format("%lu"_ns, NSUInteger { 7 }), "7");
    }
    TEST(StringFormat, WritesQuads)
    {
        EXPECT_EQ(format("%qi"_ns, std::int64_t { INT64_MIN }), "-9223372036854775808");
    }
    TEST(StringFormat, WritesHexadecimalAndOctal)
    {
        EXPECT_EQ(format("%02X %x %#x %o"_ns, 10, 255, 255, 8), "0A ff 0xff 10");
        EXPECT_EQ(format("%lx"_ns, 0x123456789abl), "123456789ab");
    }
    TEST(StringFormat, CapitalLettersAreLong)
    {
        EXPECT_EQ(format("%D %U %O"_ns, -1l, 1ul << 40, 8l), "-1 1099511627776 10");
    }
    TEST(StringFormat, TakesFlagsWidthAndPrecision)
    {
        EXPECT_EQ(format("[%5d][%-5d][%05d][%+d][% d][%.3d]"_ns, 42, 42, 42, 42, 42, 42),
            "[   42][42   ][00042][+42][ 42][042]");
    }
    TEST(StringFormat, StarsTakeWidthAndPrecisionFromArguments)
    {
        EXPECT_EQ(format("[%*d][%-*d][%.*f]"_ns, 4, 1, 4, 2, 2, 3.14159), "[   1][2   ][3.14]");
    }
    TEST(StringFormat, ANegativeStarMovesToTheLeft)
    {
        EXPECT_EQ(format("[%*d]"_ns, -4, 1), "[1   ]");
    }
    TEST(StringFormat, ANegativePrecisionIsNone)
    {
        EXPECT_EQ(format("%.*f"_ns, -1, 1.5), "1.500000");
    }
    TEST(StringFormat, WritesDoubles)
    {
        EXPECT_EQ(format("%f %.1f %e %g %G"_ns, 1.5, 0.25, 12345.678, 1e-10, 1e10),
            "1.500000 0.2 1.234568e+04 1e-10 1E+10");
        EXPECT_EQ(format("%5.1f|%-7.2f|%+.0f"_ns, 1.25, 2.5, 3.0), "  1.2|2.50   |+3");
        EXPECT_EQ(format("%a"_ns, 1.0), "0x1p+0");
    }
    TEST(StringFormat, FloatsAreWidened) { EXPECT_EQ(format("%.3f"_ns, 0.5f), "0.500"); }
    TEST(StringFormat, LongDoublesKeepTheirDigits) { EXPECT_EQ(format("%.1Lf"_ns, 1.5L), "1.5"); }
    TEST(StringFormat, WritesInfinityAndNan)
    {
        EXPECT_EQ(format("%f %f %F"_ns, INFINITY, -INFINITY, std::nan("")), "inf -inf NAN");
    }
    TEST(StringFormat, TheProcessLocaleChangesNothing)
    {
        const char* const found = std::setlocale(LC_NUMERIC, "de_DE.UTF-8");
        const std::string text = format("%.1f"_ns, 1.5);
        std::setlocale(LC_NUMERIC, "C");
        EXPECT_EQ(text, "1.5") << (found ? found : "the locale is not installed");
    }
    TEST(StringFormat, WritesCharacters)
    {
        EXPECT_EQ(format("%c%C%C"_ns, 'a', u'ä', 0x263a), "aä☺");
        EXPECT_EQ(format("[%3c]"_ns, 'a'), "[  a]");
    }
    TEST(StringFormat, ANulCharacterIsAUnit)
    {
        EXPECT_EQ(NSString::cls().stringWithFormat("%C"_ns, u'\0')->length(), 1u);
    }
    TEST(StringFormat, WritesCStringsAsUtf8)
    {
        EXPECT_EQ(format("%s|%5s|%-5s|%.2s"_ns, "é", "ab", "ab", "abc"), "é|   ab|ab   |ab");
        EXPECT_EQ(format("%s"_ns, static_cast<const char*>(nullptr)), "(null)");
    }
    TEST(StringFormat, APrecisionStopsBeforeTheEndOfAnOpenCString)
    {
        const char open[3] = { 'a', 'b', 'c' };
        EXPECT_EQ(format("%.3s"_ns, static_cast<const char*>(open)), "abc");
    }
    TEST(StringFormat, BytesThatAreNoUtf8ReadReplaced)
    {
        EXPECT_EQ(format("%s"_ns, "a\xff"), "a\xef\xbf\xbd");
    }
    TEST(StringFormat, WritesUnits)
    {
        EXPECT_EQ(format("%S %ls %.1S"_ns, u"größer", u"so", u"xy"), "größer so x");
    }
    TEST(StringFormat, WritesPointers)
    {
        EXPECT_EQ(format("%p %p"_ns, reinterpret_cast<void*>(0x1f), nullptr), "0x1f 0x0");
    }
    TEST(StringFormat, PositionsChooseTheArgument)
    {
        EXPECT_EQ(format("%2$@ %1$@"_ns, "world"_ns, "hello"_ns), "hello world");
        EXPECT_EQ(format("%2$d %1$.1f %2$d"_ns, 1.5, 7), "7 1.5 7");
    }
    TEST(StringFormat, PositionsChooseTheWidth)
    {
        EXPECT_EQ(format("[%1$*2$d]"_ns, 7, 4), "[   7]");
    }
    TEST(StringFormat, APositionLeftOutIsSkipped)
    {
        EXPECT_EQ(format("%1$d %3$d"_ns, 1, 2, 3), "1 3");
    }
    TEST(StringFormat, APositionUsedForTwoKindsReadsSafely)
    {
        EXPECT_EQ(format("%1$d %1$@"_ns, 5), "5 (null)");
        EXPECT_EQ(format("%1$d %1$s"_ns, 5), "5 (null)");
    }
    TEST(StringFormat, HugePositionsReadNothing)
    {
        EXPECT_EQ(format("%99999999999$d|%65$@"_ns), "0|(null)");
    }
    TEST(StringFormat, WritingBackIsNeverDone)
    {
        int target = 17;
        EXPECT_EQ(format("abc%nd"_ns, &target), "abcd");
        EXPECT_EQ(target, 17);
    }
    TEST(StringFormat, UnknownConversionsStayAsTheyAre)
    {
        EXPECT_EQ(format("%y %5! %ä"_ns), "%y %5! %ä");
    }
    TEST(StringFormat, AnOpenConversionAtTheEndStays)
    {
        EXPECT_EQ(format("50%"_ns), "50%");
        EXPECT_EQ(format("%-08.3l"_ns), "%-08.3l");
    }
    TEST(StringFormat, WildWidthsAreLimited)
    {
        EXPECT_EQ(NSString::cls().stringWithFormat("%99999999999d"_ns, 1)->length(), 65535u);
        EXPECT_EQ(NSString::cls().stringWithFormat("%*@"_ns, 2147483647, "a"_ns)->length(), 65535u);
    }
    TEST(StringFormat, ANilFormatRaises)
    {
        EXPECT_EQ(raisedBy([] { NSString::cls().stringWithFormat(nullptr); }),
            "NSInvalidArgumentException: *** +[NSString stringWithFormat:]: nil argument");
    }
    TEST(StringFormat, MakesStringsOfTheReceiversClass)
    {
        const Ref<NSString> text = NSMutableString::cls().stringWithFormat("%d"_ns, 1);
        EXPECT_TRUE(text->isKindOfClass(NSMutableString::cls()));
        EXPECT_EQ(utf8(text), "1");
    }
    TEST(StringFormat, AllOperationsWithFormatsAgree)
    {
        EXPECT_EQ(utf8(alloc<NSString>()->initWithFormat("%d-%@"_ns, 1, "a"_ns)), "1-a");
        EXPECT_EQ(utf8(NSString::cls().localizedStringWithFormat("%d-%@"_ns, 1, "a"_ns)), "1-a");
        EXPECT_EQ(utf8("x"_ns->stringByAppendingFormat("%d-%@"_ns, 1, "a"_ns)), "x1-a");
    }
    TEST(StringFormat, MoreArgumentsThanRegistersAreRead)
    {
        EXPECT_EQ(format("%d %f %d %f %d %f %d %f %d %f %d %f %@"_ns, 1, 1., 2, 2., 3, 3., 4, 4., 5,
                      5., 6, 6., "end"_ns),
            "1 1.000000 2 2.000000 3 3.000000 4 4.000000 5 5.000000 6 6.000000 end");
    }

    bool fits(NSString* translated, NSString* original)
    {
        return fittingFormat(translated, original) == translated;
    }
    TEST(StringFormat, ATranslationFitsWithTheSameArgumentsOrFewer)
    {
        EXPECT_TRUE(fits("vor %u"_ns, "%u ago"_ns));
        EXPECT_TRUE(fits("%2$@: %1$d"_ns, "%d %@"_ns));
        EXPECT_TRUE(fits("100%% %1$5d"_ns, "%d %@"_ns));
        EXPECT_TRUE(fits("bald"_ns, "%u ago"_ns));
    }
    TEST(StringFormat, ATranslationWithOtherArgumentsDoesNotFit)
    {
        EXPECT_FALSE(fits("%@"_ns, "%u"_ns));
        EXPECT_FALSE(fits("%s"_ns, "%@"_ns));
        EXPECT_FALSE(fits("%ls"_ns, "%s"_ns));
        EXPECT_FALSE(fits("%u %@"_ns, "%u"_ns));
        EXPECT_FALSE(fits("%2$@"_ns, "%f %@"_ns));
        EXPECT_FALSE(fits("%*d"_ns, "%d"_ns));
        EXPECT_FALSE(fits("%f"_ns, "%d"_ns));
    }

}

}
