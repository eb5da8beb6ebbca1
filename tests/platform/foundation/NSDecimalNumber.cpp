// SPDX-License-Identifier: Apache-2.0
#include "foundation/NSDecimalNumber.h"

#include <cmath>
#include <limits>

#include "foundation/Exceptions.h"
#include "foundation/NSKeyedArchiver.h"
#include "foundation/NSKeyedUnarchiver.h"
#include "foundation/NSLocale.h"
#include "foundation/NSNumberFormatter.h"
#include "support/Strings.h"

using namespace brindle;

namespace {

Ref<NSDecimalNumber> decimal(const char* text)
{
    return NSDecimalNumber::cls().decimalNumberWithString(
        NSString::cls().stringWithUTF8String(text).get());
}
std::string text(const Ref<NSDecimalNumber>& number) { return utf8(number->stringValue()); }

/// Answers a behavior that raises for nothing.
Ref<NSDecimalNumberHandler> quiet(
    NSRoundingMode mode = NSRoundPlain, short scale = NSDecimalNoScale)
{
    return NSDecimalNumberHandler::cls()
        .decimalNumberHandlerWithRoundingMode_scale_raiseOnExactness_raiseOnOverflow_raiseOnUnderflow_raiseOnDivideByZero(
            mode, scale, false, false, false, false);
}
std::string rounded(const char* number, NSRoundingMode mode, short scale)
{
    return text(
        decimal(number)->decimalNumberByRoundingAccordingToBehavior(quiet(mode, scale).get()));
}
template <class Call> std::string raised(Call call)
{
    try {
        call();
    } catch (const Exception& exception) {
        const std::string what = exception.what();
        return what.substr(0, what.find(':'));
    }
    return "";
}

const char* const kNines = "99999999999999999999999999999999999999"; // 38

}

// ---- text

TEST(NSDecimalNumber, ReadsAndWritesPlainDigits)
{
    for (const char* same : { "0", "1", "-1", "0.1", "-12.5", "1234567890.0987654321",
             "0.00000000000000000000000000000000000001", "18446744073709551616" })
        EXPECT_EQ(text(decimal(same)), same);
}

TEST(NSDecimalNumber, LeavesOutWhatSaysNothing)
{
    EXPECT_EQ(text(decimal("+0012.500")), "12.5");
    EXPECT_EQ(text(decimal("-0.0")), "0");
    EXPECT_EQ(text(decimal(".5")), "0.5");
    EXPECT_EQ(text(decimal("7.")), "7");
}

TEST(NSDecimalNumber, ReadsPowersOfTen)
{
    EXPECT_EQ(text(decimal("12.5e3")), "12500");
    EXPECT_EQ(text(decimal("12.5E-3")), "0.0125");
    EXPECT_EQ(text(decimal("1e+2")), "100");
}

TEST(NSDecimalNumber, LeavesAloneWhatStandsBehindTheNumber)
{
    EXPECT_EQ(text(decimal("12 apples")), "12");
    EXPECT_EQ(text(decimal("1.2.3")), "1.2");
    EXPECT_EQ(text(decimal("5e")), "5");
}

TEST(NSDecimalNumber, TextWithoutDigitsIsNoNumber)
{
    for (const char* none : { "", "-", ".", "e5", "apples", "NaN" })
        EXPECT_EQ(text(decimal(none)), "NaN") << none;
    EXPECT_EQ(text(NSDecimalNumber::cls().decimalNumberWithString(nullptr)), "NaN");
}

TEST(NSDecimalNumber, FarPowersAreZeroOrNoNumber)
{
    EXPECT_EQ(text(decimal("1e-99999999999999")), "0");
    EXPECT_EQ(text(decimal("1e99999999999999")), "NaN");
    EXPECT_EQ(text(decimal("1e-129")), "0");
    EXPECT_EQ(text(decimal("1e165")), "NaN");
    EXPECT_EQ(decimal("1e164")->doubleValue(), 1e164);
}

TEST(NSDecimalNumber, ALongTextIsRoundedTo38Digits)
{
    EXPECT_EQ(text(decimal("0.123456789012345678901234567890123456785")),
        "0.12345678901234567890123456789012345679");
    EXPECT_EQ(text(decimal((std::string("0.") + kNines + "9").c_str())), "1");
}

TEST(NSDecimalNumber, TheLocaleHasItsOwnPoint)
{
    const Ref<NSLocale> german = NSLocale::cls().localeWithLocaleIdentifier("de_DE"_ns);
    const auto number
        = NSDecimalNumber::cls().decimalNumberWithString_locale("12,5"_ns, german.get());
    EXPECT_EQ(text(number), "12.5");
    EXPECT_EQ(utf8(number->descriptionWithLocale(german.get())), "12,5");
}

// ---- numbers

TEST(NSDecimalNumber, IsMadeOfAMantissaAndAPower)
{
    const auto made = [](unsigned long long mantissa, short exponent, bool isNegative) {
        return text(NSDecimalNumber::cls().decimalNumberWithMantissa_exponent_isNegative(
            mantissa, exponent, isNegative));
    };
    EXPECT_EQ(made(12345, -2, true), "-123.45");
    EXPECT_EQ(made(~0ull, 0, false), "18446744073709551615");
    EXPECT_EQ(made(5, 300, false), "NaN");
}

TEST(NSDecimalNumber, KnowsItsLimits)
{
    const std::string most = std::string(kNines) + std::string(127, '0');
    EXPECT_EQ(text(NSDecimalNumber::cls().maximumDecimalNumber()), most);
    EXPECT_EQ(text(NSDecimalNumber::cls().minimumDecimalNumber()), "-" + most);
    EXPECT_EQ(text(NSDecimalNumber::cls().zero()), "0");
    EXPECT_EQ(text(NSDecimalNumber::cls().one()), "1");
    EXPECT_TRUE(std::isnan(NSDecimalNumber::cls().notANumber()->doubleValue()));
}

TEST(NSDecimalNumber, ReadsAsEveryOtherType)
{
    EXPECT_EQ(decimal("-9223372036854775808")->longLongValue(), INT64_MIN);
    EXPECT_EQ(decimal("18446744073709551615")->unsignedLongLongValue(), UINT64_MAX);
    EXPECT_EQ(decimal("12.9")->intValue(), 12);
    EXPECT_EQ(decimal("0.1")->doubleValue(), 0.1);
    EXPECT_TRUE(decimal("0.1")->boolValue());
    EXPECT_STREQ(decimal("3")->objCType(), "d");
    double value = 0;
    decimal("3")->getValue(&value);
    EXPECT_EQ(value, 3);
}

TEST(NSDecimalNumber, TheMakersOfNumbersMakeDecimals)
{
    const auto number = cast<NSDecimalNumber>(NSDecimalNumber::cls().numberWithDouble(0.1));
    EXPECT_EQ(text(number->decimalNumberByAdding(decimal("0.2").get())), "0.3");
    EXPECT_EQ(utf8(NSDecimalNumber::cls().numberWithInt(-5)->stringValue()), "-5");
}

TEST(NSDecimalNumber, EqualsNumbersWithTheSameDigits)
{
    EXPECT_TRUE(decimal("0.1")->isEqual(NSNumber::cls().numberWithDouble(0.1).get()));
    EXPECT_TRUE(NSNumber::cls().numberWithInt(3)->isEqual(decimal("3.0").get()));
    EXPECT_EQ(NSNumber::cls().numberWithInt(3)->hash(), decimal("3.0")->hash());
    EXPECT_FALSE(decimal("3")->isEqual("3"_ns));
    EXPECT_FALSE(decimal("3")->isEqual(nullptr));
}

TEST(NSDecimalNumber, ComparesWhatDoublesCannotTellApart)
{
    const auto a = decimal("0.10000000000000000000000000000000000001");
    EXPECT_EQ(a->compare(decimal("0.1").get()), NSOrderedDescending);
    EXPECT_EQ(decimal("-1e30")->compare(decimal("1e-30").get()), NSOrderedAscending);
    EXPECT_EQ(decimal("1.50")->compare(decimal("1.5").get()), NSOrderedSame);
    EXPECT_EQ(
        NSDecimalNumber::cls().notANumber()->compare(decimal("-5").get()), NSOrderedAscending);
    EXPECT_EQ(raised([&] { a->compare(nullptr); }), "NSInvalidArgumentException");
}

// ---- arithmetic

TEST(NSDecimalNumber, AddsTenthsExactly)
{
    auto sum = NSDecimalNumber::cls().zero();
    for (int i = 0; i < 10; ++i)
        sum = sum->decimalNumberByAdding(decimal("0.1").get());
    EXPECT_EQ(text(sum), "1");
}

TEST(NSDecimalNumber, SubtractsAcrossZero)
{
    EXPECT_EQ(text(decimal("0.3")->decimalNumberBySubtracting(decimal("1").get())), "-0.7");
    EXPECT_EQ(text(decimal("-5")->decimalNumberBySubtracting(decimal("-5").get())), "0");
    EXPECT_EQ(text(decimal("1000000")->decimalNumberBySubtracting(decimal("0.000001").get())),
        "999999.999999");
}

TEST(NSDecimalNumber, MultipliesAllDigits)
{
    EXPECT_EQ(text(decimal("12345678901234567890")
                       ->decimalNumberByMultiplyingBy(decimal("98765432109876543").get())),
        "1219326311370217949644871231852004270");
    EXPECT_EQ(text(decimal("-0.5")->decimalNumberByMultiplyingBy(decimal("0.5").get())), "-0.25");
    EXPECT_EQ(text(decimal(kNines)->decimalNumberByMultiplyingBy(decimal(kNines).get())),
        std::string(kNines).substr(1) + "8" + std::string(38, '0'));
}

TEST(NSDecimalNumber, DividesTo38Digits)
{
    EXPECT_EQ(text(decimal("1")->decimalNumberByDividingBy(decimal("4").get())), "0.25");
    EXPECT_EQ(text(decimal("1")->decimalNumberByDividingBy(decimal("3").get())),
        "0.33333333333333333333333333333333333333");
    EXPECT_EQ(text(decimal("2")->decimalNumberByDividingBy(decimal("-3").get())),
        "-0.66666666666666666666666666666666666667");
    EXPECT_EQ(text(decimal(kNines)->decimalNumberByDividingBy(decimal(kNines).get())), "1");
    EXPECT_EQ(text(decimal("0")->decimalNumberByDividingBy(decimal("7").get())), "0");
}

TEST(NSDecimalNumber, RaisesToPowers)
{
    EXPECT_EQ(text(decimal("1.1")->decimalNumberByRaisingToPower(5)), "1.61051");
    EXPECT_EQ(text(decimal("-2")->decimalNumberByRaisingToPower(101)),
        "-2535301200456458802993406410752");
    EXPECT_EQ(text(decimal("0")->decimalNumberByRaisingToPower(0)), "1");
    EXPECT_EQ(raised([] { decimal("10")->decimalNumberByRaisingToPower(~NSUInteger { 0 }); }),
        "NSDecimalNumberOverflowException");
}

TEST(NSDecimalNumber, MovesThePoint)
{
    EXPECT_EQ(text(decimal("12.5")->decimalNumberByMultiplyingByPowerOf10(3)), "12500");
    EXPECT_EQ(text(decimal("12.5")->decimalNumberByMultiplyingByPowerOf10(-3)), "0.0125");
    EXPECT_EQ(raised([] { decimal("1")->decimalNumberByMultiplyingByPowerOf10(SHRT_MAX); }),
        "NSDecimalNumberOverflowException");
    EXPECT_EQ(raised([] { decimal("1")->decimalNumberByMultiplyingByPowerOf10(SHRT_MIN); }),
        "NSDecimalNumberUnderflowException");
}

TEST(NSDecimalNumber, NoNumberGivesNoNumber)
{
    const auto none = NSDecimalNumber::cls().notANumber();
    const auto one = NSDecimalNumber::cls().one();
    EXPECT_EQ(text(none->decimalNumberByAdding(one.get())), "NaN");
    EXPECT_EQ(text(one->decimalNumberByMultiplyingBy(none.get())), "NaN");
    EXPECT_EQ(text(none->decimalNumberByRaisingToPower(2)), "NaN");
    EXPECT_EQ(text(none->decimalNumberByRoundingAccordingToBehavior(nullptr)), "NaN");
}

// ---- rounding and losses

TEST(NSDecimalNumber, RoundsInFourWays)
{
    EXPECT_EQ(rounded("1.25", NSRoundPlain, 1), "1.3");
    EXPECT_EQ(rounded("-1.25", NSRoundPlain, 1), "-1.3");
    EXPECT_EQ(rounded("1.29", NSRoundDown, 1), "1.2");
    EXPECT_EQ(rounded("-1.21", NSRoundDown, 1), "-1.3");
    EXPECT_EQ(rounded("1.21", NSRoundUp, 1), "1.3");
    EXPECT_EQ(rounded("-1.29", NSRoundUp, 1), "-1.2");
    EXPECT_EQ(rounded("1.25", NSRoundBankers, 1), "1.2");
    EXPECT_EQ(rounded("1.35", NSRoundBankers, 1), "1.4");
    EXPECT_EQ(rounded("1.2501", NSRoundBankers, 1), "1.3");
}

TEST(NSDecimalNumber, RoundsBeforeThePointToo)
{
    EXPECT_EQ(rounded("1250", NSRoundPlain, -2), "1300");
    EXPECT_EQ(rounded("49", NSRoundPlain, -2), "0");
    EXPECT_EQ(rounded("50", NSRoundPlain, -2), "100");
    EXPECT_EQ(rounded("0.5", NSRoundBankers, 0), "0");
    EXPECT_EQ(rounded("9.99", NSRoundPlain, 1), "10");
}

TEST(NSDecimalNumber, RoundsOnceAndNotTwice)
{
    const auto third = decimal("0.14999999999999999999999999999999999999");
    const auto sum = third->decimalNumberByAdding_withBehavior(
        decimal("0.000000000000000000000000000000000000009").get(), quiet(NSRoundPlain, 1).get());
    EXPECT_EQ(text(sum), "0.1");
}

TEST(NSDecimalNumber, RaisesForLossesAsItsBehaviorSays)
{
    const auto one = NSDecimalNumber::cls().one();
    const auto zero = NSDecimalNumber::cls().zero();
    const auto most = NSDecimalNumber::cls().maximumDecimalNumber();
    EXPECT_EQ(raised([&] { one->decimalNumberByDividingBy(zero.get()); }),
        "NSDecimalNumberDivideByZeroException");
    EXPECT_EQ(raised([&] { most->decimalNumberByAdding(most.get()); }),
        "NSDecimalNumberOverflowException");
    EXPECT_EQ(
        raised([&] { decimal("1e-100")->decimalNumberByMultiplyingBy(decimal("1e-100").get()); }),
        "NSDecimalNumberUnderflowException");
    EXPECT_EQ(raised([&] { one->decimalNumberByDividingBy(decimal("3").get()); }), "");
    EXPECT_EQ(text(one->decimalNumberByDividingBy_withBehavior(zero.get(), quiet().get())), "NaN");
    EXPECT_EQ(text(most->decimalNumberByAdding_withBehavior(most.get(), quiet().get())), "NaN");
}

TEST(NSDecimalNumber, NilIsRefused)
{
    EXPECT_EQ(
        raised([] { decimal("1")->decimalNumberByAdding(nullptr); }), "NSInvalidArgumentException");
}

TEST(NSDecimalNumber, TheDefaultBehaviorCanBeChanged)
{
    NSDecimalNumber::cls().setDefaultBehavior(quiet(NSRoundDown, 2).get());
    EXPECT_EQ(text(decimal("2")->decimalNumberByDividingBy(decimal("3").get())), "0.66");
    NSDecimalNumber::cls().setDefaultBehavior(nullptr);
    EXPECT_EQ(NSDecimalNumber::cls().defaultBehavior(),
        NSDecimalNumberHandler::cls().defaultDecimalNumberHandler());
}

// ---- beside other numbers

namespace {

/// Answers whether two numbers are equal; it must not matter which is asked, and equal ones have one hash.
bool areEqual(const Ref<NSNumber>& a, const Ref<NSNumber>& b)
{
    const bool equal = a->isEqual(b.get());
    EXPECT_EQ(b->isEqual(a.get()), equal);
    EXPECT_EQ(a->isEqualToNumber(b.get()), equal);
    EXPECT_EQ(b->isEqualToNumber(a.get()), equal);
    EXPECT_EQ(a->compare(b.get()) == NSOrderedSame, equal);
    EXPECT_EQ(a->compare(b.get()), -b->compare(a.get()));
    if (equal) {
        EXPECT_EQ(a->hash(), b->hash());
    }
    return equal;
}
Ref<NSNumber> real(double value) { return NSNumber::cls().numberWithDouble(value); }
Ref<NSNumber> whole(std::uint64_t value)
{
    return NSNumber::cls().numberWithUnsignedLongLong(value);
}

}

TEST(NSDecimalNumber, EqualsAnotherNumberAsThatEqualsIt)
{
    EXPECT_TRUE(areEqual(decimal("0.1"), real(0.1)));
    EXPECT_TRUE(areEqual(decimal("0.10000000000000000000001"), real(0.1)));
    EXPECT_TRUE(areEqual(decimal("100"), whole(100)));
    EXPECT_TRUE(areEqual(decimal("1e2"), real(100)));
    EXPECT_TRUE(areEqual(decimal("-5.000000000000000000000000"), real(-5)));
    EXPECT_TRUE(areEqual(decimal("x"), real(NAN)));
    EXPECT_FALSE(areEqual(decimal("0.1"), NSNumber::cls().numberWithFloat(0.1f)));
    EXPECT_TRUE(areEqual(decimal("0.5"), NSNumber::cls().numberWithFloat(0.5f)));
    EXPECT_FALSE(areEqual(decimal("0.5"), whole(0)));
    EXPECT_FALSE(areEqual(decimal("0"), real(-0.25)));
}

TEST(NSDecimalNumber, EqualsWholeNumbersToTheLastDigit)
{
    EXPECT_TRUE(areEqual(decimal("9007199254740993"), whole(9007199254740993)));
    EXPECT_FALSE(areEqual(decimal("9007199254740993"), real(9007199254740992)));
    EXPECT_TRUE(areEqual(decimal("1152921504606847000"), whole(1152921504606847000)));
    EXPECT_FALSE(areEqual(decimal("1152921504606847000"), real(1152921504606846976)));
    EXPECT_TRUE(areEqual(decimal("18446744073709551615"), whole(18446744073709551615u)));
    EXPECT_FALSE(areEqual(decimal("18446744073709551616"), whole(18446744073709551615u)));
    EXPECT_TRUE(areEqual(decimal("-9223372036854775808"),
        NSNumber::cls().numberWithLongLong(std::numeric_limits<long long>::min())));
}

TEST(NSDecimalNumber, EqualsAnotherDecimalByAllItsDigits)
{
    EXPECT_FALSE(areEqual(decimal("0.1"), decimal("0.10000000000000000000001")));
    EXPECT_TRUE(areEqual(decimal("1e3"), decimal("1000.00")));
}

// ---- elsewhere

TEST(NSDecimalNumber, SurvivesAnArchive)
{
    for (const char* number : { "0.10000000000000000000000000000000000001", "-5", "1e164", "x" }) {
        const Ref<NSData> data
            = NSKeyedArchiver::cls().archivedDataWithRootObject(decimal(number).get());
        const auto back
            = cast<NSDecimalNumber>(NSKeyedUnarchiver::cls().unarchiveObjectWithData(data.get()));
        ASSERT_TRUE(back && back->isKindOfClass(NSDecimalNumber::cls()));
        EXPECT_EQ(text(back), text(decimal(number)));
    }
}

TEST(NSDecimalNumber, IsWrittenWithAllItsDigits)
{
    const auto formatter = make<NSNumberFormatter>();
    formatter->setNumberStyle(NSNumberFormatterDecimalStyle);
    formatter->setLocale(NSLocale::cls().localeWithLocaleIdentifier("en_US"_ns).get());
    formatter->setMaximumFractionDigits(25);
    EXPECT_EQ(
        utf8(formatter->stringFromNumber(decimal("12345678901234567890.12345678901234567").get())),
        "12,345,678,901,234,567,890.12345678901234567");
}
