// SPDX-License-Identifier: Apache-2.0
#include "foundation/NSNumberFormatter.h"

#include <cmath>

#include "foundation/NSLocale.h"
#include "foundation/NSNumber.h"
#include "support/Strings.h"
#include "support/UserLanguage.h"

using namespace brindle;
using test::UserLanguage;

namespace {

Ref<NSNumberFormatter> formatter(NSNumberFormatterStyle style, NSString* locale = "en_US"_ns)
{
    auto out = make<NSNumberFormatter>();
    out->setNumberStyle(style);
    out->setLocale(NSLocale::cls().localeWithLocaleIdentifier(locale).get());
    return out;
}

std::string written(const Ref<NSNumberFormatter>& how, double value)
{
    return utf8(how->stringFromNumber(NSNumber::cls().numberWithDouble(value).get()));
}

}

TEST(NumberFormatter, WritesInManyStyles)
{
    EXPECT_EQ(written(formatter(NSNumberFormatterNoStyle), 1234.5), "1234");
    EXPECT_EQ(written(formatter(NSNumberFormatterDecimalStyle), 1234.5678), "1,234.568");
    EXPECT_EQ(written(formatter(NSNumberFormatterPercentStyle), 0.25), "25%");
    EXPECT_EQ(written(formatter(NSNumberFormatterCurrencyStyle), 1234.5), "$1,234.50");
    EXPECT_EQ(written(formatter(NSNumberFormatterScientificStyle), 1234.5), "1.2345E3");
    EXPECT_EQ(written(formatter(NSNumberFormatterSpellOutStyle), 21), "twenty-one");
    EXPECT_EQ(written(formatter(NSNumberFormatterOrdinalStyle), 2), "2nd");
}

TEST(NumberFormatter, FollowsTheLocale)
{
    EXPECT_EQ(written(formatter(NSNumberFormatterDecimalStyle, "de_DE"_ns), 1234.5), "1.234,5");
    const UserLanguage user("de_DE");
    EXPECT_EQ(utf8(NSNumberFormatter::cls().localizedStringFromNumber_numberStyle(
                  NSNumber::cls().numberWithInt(1234).get(), NSNumberFormatterDecimalStyle)),
        "1.234");
}

TEST(NumberFormatter, MoneyCanBeAnothers)
{
    const auto how = formatter(NSNumberFormatterCurrencyStyle);
    how->setCurrencyCode("EUR"_ns);
    EXPECT_EQ(written(how, 2), "€2.00");
}

TEST(NumberFormatter, DigitsCanBeSet)
{
    const auto how = formatter(NSNumberFormatterDecimalStyle);
    how->setMinimumFractionDigits(2);
    how->setMaximumFractionDigits(4);
    EXPECT_EQ(written(how, 1.5), "1.50");
    EXPECT_EQ(written(how, 1.23456789), "1.2346");
    how->setMinimumIntegerDigits(3);
    EXPECT_EQ(written(how, 1.5), "001.50");
    how->setUsesGroupingSeparator(false);
    EXPECT_EQ(written(how, 12345.5), "12345.50");
    EXPECT_EQ(how->minimumFractionDigits(), 2u);
    EXPECT_FALSE(how->usesGroupingSeparator());
}

TEST(NumberFormatter, AnotherStyleForgetsTheDigits)
{
    const auto how = formatter(NSNumberFormatterDecimalStyle);
    how->setMinimumFractionDigits(2);
    how->setNumberStyle(NSNumberFormatterPercentStyle);
    EXPECT_EQ(written(how, 0.5), "50%");
}

TEST(NumberFormatter, RoundsHalvesToTheEvenUnlessToldOtherwise)
{
    const auto how = formatter(NSNumberFormatterNoStyle);
    EXPECT_EQ(written(how, 2.5), "2");
    how->setRoundingMode(NSNumberFormatterRoundUp);
    EXPECT_EQ(written(how, 2.1), "3");
}

TEST(NumberFormatter, HugeDigitsAndStylesDoNoHarm)
{
    const auto how = formatter(static_cast<NSNumberFormatterStyle>(99));
    how->setMinimumFractionDigits(~NSUInteger { 0 });
    EXPECT_EQ(written(how, 1).size(), 342u);
    EXPECT_NE(written(formatter(NSNumberFormatterDecimalStyle), std::nan("")), "");
    EXPECT_EQ(written(formatter(NSNumberFormatterDecimalStyle), INFINITY), "∞");
}

TEST(NumberFormatter, ReadsWhatItWrites)
{
    const auto read = [](const Ref<NSNumberFormatter>& how, NSString* text) {
        return textOf(how->numberFromString(text));
    };
    EXPECT_EQ(read(formatter(NSNumberFormatterDecimalStyle), "1,234.5"_ns), "1234.5");
    EXPECT_EQ(read(formatter(NSNumberFormatterDecimalStyle, "de_DE"_ns), "1.234,5"_ns), "1234.5");
    EXPECT_EQ(read(formatter(NSNumberFormatterPercentStyle), "25%"_ns), "0.25");
    EXPECT_EQ(read(formatter(NSNumberFormatterNoStyle), "42"_ns), "42");
}

TEST(NumberFormatter, TheWholeTextMustBeANumber)
{
    const auto how = formatter(NSNumberFormatterDecimalStyle);
    EXPECT_FALSE(how->numberFromString("12 apples"_ns));
    EXPECT_FALSE(how->numberFromString(""_ns));
    EXPECT_TRUE(std::isnan(maybe(how->numberFromString("NaN"_ns))->doubleValue()));
    EXPECT_FALSE(how->numberFromString(nullptr));
    EXPECT_FALSE(how->stringFromNumber(nullptr));
    EXPECT_FALSE(how->stringForObjectValue("1"_ns));
    EXPECT_FALSE(how->getObjectValue_forString_errorDescription(nullptr, "x"_ns, nullptr));
}

TEST(NumberFormatter, KeepsWholeNumbersWhole)
{
    EXPECT_EQ(
        utf8(formatter(NSNumberFormatterNoStyle)
                 ->stringFromNumber(NSNumber::cls().numberWithLongLong(9223372036854775807).get())),
        "9223372036854775807");
    EXPECT_EQ(
        utf8(formatter(NSNumberFormatterNoStyle)
                 ->stringFromNumber(
                     NSNumber::cls().numberWithUnsignedLongLong(18446744073709551615u).get())),
        "18446744073709551615");
}
