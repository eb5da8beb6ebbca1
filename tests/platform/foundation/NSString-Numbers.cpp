// SPDX-License-Identifier: Apache-2.0
#include "foundation/NSString.h"

#include <cmath>

#include <gtest/gtest.h>

#include "support/Strings.h"

namespace brindle {

namespace {

    TEST(NSStringNumbers, IntegersFollowWhiteSpaceAndASign)
    {
        EXPECT_EQ(" \t\n-42abc"_ns->integerValue(), -42);
        EXPECT_EQ("+7"_ns->integerValue(), 7);
        EXPECT_EQ("\u00a0\u30005"_ns->integerValue(), 5);
    }
    TEST(NSStringNumbers, NoNumberIsZero)
    {
        for (NSString* text : { ""_ns, "abc"_ns, "-"_ns, "- 5"_ns, "0x10"_ns, "--5"_ns })
            EXPECT_EQ(text->integerValue(), 0) << utf8(text);
    }
    TEST(NSStringNumbers, IntegersSaturate)
    {
        EXPECT_EQ("9223372036854775807"_ns->integerValue(), INT64_MAX);
        EXPECT_EQ("9223372036854775808"_ns->integerValue(), INT64_MAX);
        EXPECT_EQ("99999999999999999999999"_ns->longLongValue(), INT64_MAX);
        EXPECT_EQ("-9223372036854775808"_ns->integerValue(), INT64_MIN);
        EXPECT_EQ("-9223372036854775809"_ns->integerValue(), INT64_MIN);
    }
    TEST(NSStringNumbers, SmallIntegersSaturateAt32Bits)
    {
        EXPECT_EQ("2147483648"_ns->intValue(), INT32_MAX);
        EXPECT_EQ("-2147483649"_ns->intValue(), INT32_MIN);
    }
    TEST(NSStringNumbers, ReadsDoubles)
    {
        EXPECT_EQ(" 3.25kg"_ns->doubleValue(), 3.25);
        EXPECT_EQ("-.5"_ns->doubleValue(), -0.5);
        EXPECT_EQ("1e3"_ns->doubleValue(), 1000);
        EXPECT_EQ("1E-2"_ns->doubleValue(), 0.01);
        EXPECT_EQ("0.1"_ns->doubleValue(), 0.1);
    }
    TEST(NSStringNumbers, AnExponentWithoutDigitsIsNone)
    {
        EXPECT_EQ("2e"_ns->doubleValue(), 2);
        EXPECT_EQ("2e+"_ns->doubleValue(), 2);
    }
    TEST(NSStringNumbers, OnlyDecimalNumbersAreDoubles)
    {
        for (NSString* text : { "inf"_ns, "nan"_ns, "0x1p4"_ns, ""_ns, "."_ns, "e5"_ns, "ä"_ns })
            EXPECT_EQ(text->doubleValue(), 0) << utf8(text);
    }
    TEST(NSStringNumbers, HugeDoublesAreInfinite)
    {
        EXPECT_EQ("1e999"_ns->doubleValue(), HUGE_VAL);
        EXPECT_EQ("-1e999"_ns->doubleValue(), -HUGE_VAL);
        EXPECT_EQ("1e-999"_ns->doubleValue(), 0);
    }
    TEST(NSStringNumbers, FloatsAreRoundedOnce) { EXPECT_EQ("0.1"_ns->floatValue(), 0.1f); }
    TEST(NSStringNumbers, BooleansAreLettersOrDigits)
    {
        for (NSString* text :
            { "YES"_ns, "y"_ns, "True"_ns, "t"_ns, "1"_ns, "9x"_ns, " 001"_ns, "-1"_ns, "+00T"_ns })
            EXPECT_TRUE(text->boolValue()) << utf8(text);
        for (NSString* text : { ""_ns, "NO"_ns, "false"_ns, "0"_ns, "000"_ns, "on"_ns, "x1"_ns })
            EXPECT_FALSE(text->boolValue()) << utf8(text);
    }

}

}
