// SPDX-License-Identifier: Apache-2.0
#include "foundation/NSScanner.h"

#include <sstream>

#include <gtest/gtest.h>

#include "foundation/NSCharacterSet.h"
#include "foundation/NSMutableString.h"
#include "support/Strings.h"

namespace brindle {

namespace {

    Ref<NSScanner> over(NSString* text) { return NSScanner::cls().scannerWithString(text); }
    Ref<NSCharacterSet> setOf(NSString* letters)
    {
        return NSCharacterSet::cls().characterSetWithCharactersInString(letters);
    }
    /// Answers what was read, "-" for a failure, and the location behind it.
    template <class Scan> std::string read(const Ref<NSScanner>& scanner, Scan scan)
    {
        Ref<NSString> out;
        const bool found = scan(*scanner.get(), &out);
        return (found ? utf8(out) : "-") + "@" + std::to_string(scanner->scanLocation());
    }
    std::string upTo(const Ref<NSScanner>& scanner, NSString* wanted)
    {
        return read(scanner,
            [&](NSScanner& s, auto* out) { return s.scanUpToString_intoString(wanted, out); });
    }
    std::string past(const Ref<NSScanner>& scanner, NSString* wanted)
    {
        return read(
            scanner, [&](NSScanner& s, auto* out) { return s.scanString_intoString(wanted, out); });
    }

    // ---- places

    TEST(NSScanner, BeginsAtTheStart)
    {
        const auto scanner = over("abc"_ns);
        EXPECT_EQ(scanner->scanLocation(), 0u);
        EXPECT_EQ(utf8(scanner->string()), "abc");
        EXPECT_FALSE(scanner->caseSensitive());
    }
    TEST(NSScanner, ReadsACopyOfAMutableString)
    {
        const Ref<NSMutableString> text = cast<NSMutableString>("ab"_ns->mutableCopy());
        const auto scanner = over(text.get());
        text->setString(""_ns);
        EXPECT_EQ(utf8(scanner->string()), "ab");
    }
    TEST(NSScanner, ANilStringRaises)
    {
        EXPECT_NE(raisedBy([] { over(nullptr); }), "");
    }
    TEST(NSScanner, TheLocationMayBeTheEnd)
    {
        const auto scanner = over("abc"_ns);
        scanner->setScanLocation(3);
        EXPECT_TRUE(scanner->isAtEnd());
    }
    TEST(NSScanner, ALocationBehindTheEndRaises)
    {
        EXPECT_EQ(raisedBy([] { over("abc"_ns)->setScanLocation(4); }),
            "NSRangeException: *** -[NSScanner setScanLocation:]: Range or index out of bounds");
    }
    TEST(NSScanner, ALocationBelowZeroRaises)
    {
        EXPECT_EQ(raisedBy([] { over("abc"_ns)->setScanLocation(static_cast<NSUInteger>(-1)); }),
            "NSRangeException: *** -[NSScanner setScanLocation:]: Range or index out of bounds");
    }
    TEST(NSScanner, IsAtTheEndWhenOnlySkippableCharactersRemain)
    {
        const auto scanner = over("a \n\t"_ns);
        EXPECT_FALSE(scanner->isAtEnd());
        scanner->setScanLocation(1);
        EXPECT_TRUE(scanner->isAtEnd());
        scanner->setCharactersToBeSkipped(nullptr);
        EXPECT_FALSE(scanner->isAtEnd());
    }
    TEST(NSScanner, SkipsTheGivenCharacters)
    {
        const auto scanner = over("?&a=1&&b"_ns);
        scanner->setCharactersToBeSkipped(setOf("&?"_ns).get());
        EXPECT_EQ(upTo(scanner, "&"_ns), "a=1@5");
        EXPECT_EQ(upTo(scanner, "&"_ns), "b@8");
        EXPECT_EQ(upTo(scanner, "&"_ns), "-@8");
    }

    // ---- strings

    TEST(NSScanner, ReadsUpToAString) { EXPECT_EQ(upTo(over("ab=c"_ns), "="_ns), "ab@2"); }
    TEST(NSScanner, ReadsTheRestWhenTheStringIsMissing)
    {
        EXPECT_EQ(upTo(over("abc"_ns), "="_ns), "abc@3");
    }
    TEST(NSScanner, AnswersNoWhenItStandsAtTheString)
    {
        EXPECT_EQ(upTo(over(" =a"_ns), "="_ns), "-@0");
    }
    TEST(NSScanner, AnswersNoAtTheEnd) { EXPECT_EQ(upTo(over(""_ns), "="_ns), "-@0"); }
    TEST(NSScanner, TheResultPointerMayBeNull)
    {
        const auto scanner = over("ab=c"_ns);
        EXPECT_TRUE(scanner->scanUpToString_intoString("="_ns, nullptr));
        EXPECT_TRUE(scanner->scanString_intoString("="_ns, nullptr));
        EXPECT_EQ(scanner->scanLocation(), 3u);
    }
    TEST(NSScanner, AFailureLeavesTheResultAlone)
    {
        Ref<NSString> out = "kept"_ns;
        EXPECT_FALSE(over("abc"_ns)->scanString_intoString("x"_ns, &out));
        EXPECT_EQ(utf8(out), "kept");
    }
    TEST(NSScanner, ReadsAStringBehindSkippedCharacters)
    {
        EXPECT_EQ(past(over("  ab"_ns), "ab"_ns), "ab@4");
    }
    TEST(NSScanner, AStringThatIsNotThereLeavesTheLocation)
    {
        EXPECT_EQ(past(over("  ab"_ns), "b"_ns), "-@0");
    }
    TEST(NSScanner, TheEmptyStringIsNeverThere) { EXPECT_EQ(past(over("ab"_ns), ""_ns), "-@0"); }
    TEST(NSScanner, IgnoresCaseUnlessAskedNotTo)
    {
        const auto scanner = over("ABab"_ns);
        EXPECT_EQ(past(scanner, "ab"_ns), "AB@2");
        scanner->setScanLocation(0);
        scanner->setCaseSensitive(true);
        EXPECT_EQ(upTo(scanner, "ab"_ns), "AB@2");
    }
    TEST(NSScanner, FindsStringsFarAheadInAnyText)
    {
        const auto text = stringFrom(std::u16string(5000, u'ä') + u"ENDe");
        EXPECT_EQ(over(text.get())->scanUpToString_intoString("end"_ns, nullptr), true);
        EXPECT_EQ(past(over("äÄx"_ns), "ÄÄ"_ns), "äÄ@2");
    }
    TEST(NSScanner, ManyPiecesOfALongTextTakeTimeForEachOnce)
    {
        std::u16string text;
        for (int i = 0; i < 10'000; ++i)
            text += u"ä&";
        const auto scanner = over(stringFrom(text).get());
        int pieces = 0;
        while (scanner->scanUpToString_intoString("&"_ns, nullptr)) {
            scanner->scanString_intoString("&"_ns, nullptr);
            ++pieces;
        }
        EXPECT_EQ(pieces, 10'000);
    }

    // ---- sets

    TEST(NSScanner, ReadsLettersOfASet)
    {
        const auto scanner = over(" abc1"_ns);
        EXPECT_EQ(read(scanner,
                      [](NSScanner& s, auto* out) {
                          return s.scanCharactersFromSet_intoString(
                              NSCharacterSet::cls().letterCharacterSet().get(), out);
                      }),
            "abc@4");
    }
    TEST(NSScanner, ReadsUpToLettersOfASet)
    {
        const auto scanner = over(" ab😀1"_ns);
        const auto scan = [](NSScanner& s, auto* out) {
            return s.scanUpToCharactersFromSet_intoString(
                NSCharacterSet::cls().decimalDigitCharacterSet().get(), out);
        };
        EXPECT_EQ(read(scanner, scan), "ab😀@5");
        EXPECT_EQ(read(scanner, scan), "-@5");
    }

    // ---- numbers

    template <class T, bool (NSScanner::*Scan)(T*)> std::string number(NSString* text)
    {
        const auto scanner = over(text);
        T value {};
        const bool found = (scanner.get()->*Scan)(&value);
        std::ostringstream out;
        out.precision(17);
        if (found)
            out << value;
        else
            out << "-";
        out << '@' << scanner->scanLocation();
        return out.str();
    }
    constexpr auto anInt = number<std::int32_t, &NSScanner::scanInt>;
    constexpr auto anInteger = number<NSInteger, &NSScanner::scanInteger>;
    constexpr auto anUnsigned = number<std::uint64_t, &NSScanner::scanUnsignedLongLong>;
    constexpr auto aDouble = number<double, &NSScanner::scanDouble>;
    constexpr auto aHexInt = number<std::uint32_t, &NSScanner::scanHexInt>;
    constexpr auto aHexLong = number<std::uint64_t, &NSScanner::scanHexLongLong>;
    constexpr auto aHexDouble = number<double, &NSScanner::scanHexDouble>;

    TEST(NSScannerNumbers, ReadsIntegers)
    {
        EXPECT_EQ(anInt(" -12x"_ns), "-12@4");
        EXPECT_EQ(anInt("+7"_ns), "7@2");
        EXPECT_EQ(anInteger("9007199254740993"_ns), "9007199254740993@16");
    }
    TEST(NSScannerNumbers, NoDigitsAreNoInteger)
    {
        for (NSString* text : { ""_ns, "-"_ns, "x"_ns, "- 1"_ns, "+-1"_ns })
            EXPECT_EQ(anInt(text), "-@0") << utf8(text);
    }
    TEST(NSScannerNumbers, IntegersTooLargeSaturate)
    {
        EXPECT_EQ(anInt("99999999999"_ns), "2147483647@11");
        EXPECT_EQ(anInt("-99999999999"_ns), "-2147483648@12");
        EXPECT_EQ(anInteger("99999999999999999999"_ns), "9223372036854775807@20");
        EXPECT_EQ(anInteger("-9223372036854775808"_ns), "-9223372036854775808@20");
        EXPECT_EQ(anUnsigned("18446744073709551616"_ns), "18446744073709551615@20");
    }
    TEST(NSScannerNumbers, ANegativeNumberIsNoUnsignedOne)
    {
        EXPECT_EQ(anUnsigned("-5"_ns), "0@2");
    }
    TEST(NSScannerNumbers, ReadsHexadecimalNumbers)
    {
        EXPECT_EQ(aHexInt("ff"_ns), "255@2");
        EXPECT_EQ(aHexInt(" 0XfFg"_ns), "255@5");
        EXPECT_EQ(aHexInt("1ffffffff"_ns), "4294967295@9");
        EXPECT_EQ(aHexLong("123456789abcdef0"_ns), "1311768467463790320@16");
        EXPECT_EQ(aHexLong("11111111111111111"_ns), "18446744073709551615@17");
    }
    TEST(NSScannerNumbers, TheZeroOfAMarkWithoutDigitsIsANumber)
    {
        EXPECT_EQ(aHexInt("0xg"_ns), "0@1");
    }
    TEST(NSScannerNumbers, ReadsFractions)
    {
        EXPECT_EQ(aDouble(" -1.5e3x"_ns), "-1500@7");
        EXPECT_EQ(aDouble(".5"_ns), "0.5@2");
        EXPECT_EQ(aDouble("5."_ns), "5@2");
    }
    TEST(NSScannerNumbers, AnExponentWithoutDigitsIsNotRead)
    {
        EXPECT_EQ(aDouble("1e+"_ns), "1@1");
    }
    TEST(NSScannerNumbers, AFractionWantsADigit)
    {
        for (NSString* text : { "."_ns, "-."_ns, "e1"_ns, "nan"_ns, "inf"_ns })
            EXPECT_EQ(aDouble(text), "-@0") << utf8(text);
    }
    TEST(NSScannerNumbers, FractionsTooLargeAreInfinite)
    {
        EXPECT_EQ(aDouble("1e999"_ns), "inf@5");
        EXPECT_EQ(aDouble("1e-999"_ns), "0@6");
    }
    TEST(NSScannerNumbers, AFloatHasItsOwnPrecision)
    {
        float value = 0;
        EXPECT_TRUE(over("0.1"_ns)->scanFloat(&value));
        EXPECT_EQ(value, 0.1f);
    }
    TEST(NSScannerNumbers, ReadsHexadecimalFractions)
    {
        EXPECT_EQ(aHexDouble("-0x1.8p1"_ns), "-3@8");
        EXPECT_EQ(aHexDouble("1.8"_ns), "-@0");
    }
    TEST(NSScannerNumbers, TheResultPointerMayBeNull)
    {
        const auto scanner = over("1 0xf 2.5"_ns);
        EXPECT_TRUE(scanner->scanInt(nullptr));
        EXPECT_TRUE(scanner->scanHexInt(nullptr));
        EXPECT_TRUE(scanner->scanDouble(nullptr));
        EXPECT_TRUE(scanner->isAtEnd());
    }

}

}
