// SPDX-License-Identifier: Apache-2.0
#include "foundation/NSNumber.h"

#include <cmath>
#include <cstring>

#include <gtest/gtest.h>

#include "support/Strings.h"

namespace brindle {

namespace {

    NSNumber::Meta meta() { return NSNumber::cls(); }
    Ref<NSNumber> whole(NSInteger value) { return meta().numberWithInteger(value); }
    Ref<NSNumber> real(double value) { return meta().numberWithDouble(value); }
    bool equal(const Ref<NSNumber>& a, const Ref<NSNumber>& b)
    {
        return a->isEqual(b.get()) && b->isEqual(a.get()) && a->hash() == b->hash();
    }

    TEST(NSNumber, EqualsByValueWhateverMadeIt)
    {
        EXPECT_TRUE(equal(meta().numberWithInt(3), whole(3)));
        EXPECT_TRUE(equal(whole(3), real(3.0)));
        EXPECT_TRUE(equal(meta().numberWithUnsignedInteger(3), meta().numberWithFloat(3)));
        EXPECT_TRUE(equal(meta().numberWithBool(true), meta().numberWithChar(1)));
        EXPECT_TRUE(equal(meta().numberWithBool(false), real(-0.0)));
        EXPECT_TRUE(equal(whole(-3), real(-3)));
    }
    TEST(NSNumber, NegativeAndHugeUnsignedDiffer)
    {
        EXPECT_FALSE(whole(-1)->isEqual(meta().numberWithUnsignedInteger(~0ull).get()));
    }
    TEST(NSNumber, LargeIntegersAreNotRoundedToCompareWithDoubles)
    {
        EXPECT_FALSE(whole((1ll << 53) + 1)->isEqual(real(9007199254740992.0).get()));
        EXPECT_EQ(
            whole((1ll << 53) + 1)->compare(real(9007199254740992.0).get()), NSOrderedDescending);
        EXPECT_EQ(whole(INT64_MAX)->compare(real(9223372036854775808.0).get()), NSOrderedAscending);
        EXPECT_TRUE(
            equal(meta().numberWithUnsignedInteger(1ull << 63), real(9223372036854775808.0)));
    }
    TEST(NSNumber, IsNotEqualToOtherObjects)
    {
        EXPECT_FALSE(whole(1)->isEqual("1"_ns));
        EXPECT_FALSE(whole(1)->isEqual(nullptr));
        EXPECT_FALSE(whole(1)->isEqualToNumber(nullptr));
    }
    TEST(NSNumber, ComparesAcrossKinds)
    {
        EXPECT_EQ(whole(1)->compare(real(1.5).get()), NSOrderedAscending);
        EXPECT_EQ(whole(-1)->compare(real(-1.5).get()), NSOrderedDescending);
        EXPECT_EQ(real(2.5)->compare(whole(2).get()), NSOrderedDescending);
        EXPECT_EQ(real(1e300)->compare(whole(INT64_MAX).get()), NSOrderedDescending);
        EXPECT_EQ(real(-INFINITY)->compare(whole(INT64_MIN).get()), NSOrderedAscending);
        EXPECT_EQ(
            whole(-1)->compare(meta().numberWithUnsignedInteger(~0ull).get()), NSOrderedAscending);
    }
    TEST(NSNumber, ComparesSignedSafely)
    {
        EXPECT_EQ(whole(INT64_MIN)->compare(whole(INT64_MAX).get()), NSOrderedAscending);
        EXPECT_EQ(whole(-2)->compare(whole(-1).get()), NSOrderedAscending);
    }
    TEST(NSNumber, NanEqualsNanAndStandsFirst)
    {
        EXPECT_TRUE(equal(real(NAN), meta().numberWithFloat(NAN)));
        EXPECT_EQ(real(NAN)->compare(real(-INFINITY).get()), NSOrderedAscending);
        EXPECT_EQ(whole(0)->compare(real(NAN).get()), NSOrderedDescending);
    }
    TEST(NSNumber, ComparingWithNilRaises)
    {
        EXPECT_EQ(raisedBy([] { whole(1)->compare(nullptr); }),
            "NSInvalidArgumentException: *** -[NSNumber compare:]: nil argument");
    }
    TEST(NSNumber, BooleansAreTwoObjects)
    {
        EXPECT_EQ(meta().numberWithBool(true).get(), meta().numberWithBool(true).get());
        EXPECT_EQ(cast<NSNumber>(meta().alloc())->initWithBool(false).get(),
            meta().numberWithBool(false).get());
        EXPECT_NE(meta().numberWithBool(true).get(), meta().numberWithBool(false).get());
    }
    TEST(NSNumber, TellsItsType)
    {
        EXPECT_STREQ(meta().numberWithBool(true)->objCType(), "B");
        EXPECT_STREQ(meta().numberWithChar('a')->objCType(), "c");
        EXPECT_STREQ(meta().numberWithInt(1)->objCType(), "i");
        EXPECT_STREQ(whole(1)->objCType(), "q");
        EXPECT_STREQ(meta().numberWithUnsignedInteger(1)->objCType(), "Q");
        EXPECT_STREQ(meta().numberWithFloat(1)->objCType(), "f");
        EXPECT_STREQ(real(1)->objCType(), "d");
    }
    TEST(NSNumber, AFloatKeepsItsPrecision)
    {
        EXPECT_EQ(meta().numberWithFloat(0.1f)->doubleValue(), 0.10000000149011612);
    }
    TEST(NSNumber, DoublesAreCutTowardsZero)
    {
        EXPECT_EQ(real(2.9)->integerValue(), 2);
        EXPECT_EQ(real(-2.9)->intValue(), -2);
    }
    TEST(NSNumber, DoublesOutOfRangeSaturate)
    {
        EXPECT_EQ(real(1e10)->intValue(), INT32_MAX);
        EXPECT_EQ(real(-1e10)->intValue(), INT32_MIN);
        EXPECT_EQ(real(1e30)->integerValue(), INT64_MAX);
        EXPECT_EQ(real(-INFINITY)->integerValue(), INT64_MIN);
        EXPECT_EQ(real(-5)->unsignedIntegerValue(), 0u);
        EXPECT_EQ(real(1e30)->unsignedIntegerValue(), UINT64_MAX);
        EXPECT_EQ(real(300)->charValue(), 127);
        EXPECT_EQ(real(NAN)->integerValue(), 0);
    }
    TEST(NSNumber, IntegersAreCastAsInC)
    {
        EXPECT_EQ(whole(4294967297)->intValue(), 1);
        EXPECT_EQ(whole(-1)->unsignedIntegerValue(), ~0ull);
        EXPECT_EQ(meta().numberWithUnsignedInteger(~0ull)->integerValue(), -1);
        EXPECT_EQ(whole(257)->charValue(), 1);
    }
    TEST(NSNumber, EveryValueButZeroIsYes)
    {
        EXPECT_TRUE(real(0.5)->boolValue());
        EXPECT_TRUE(whole(256)->boolValue());
        EXPECT_FALSE(real(0)->boolValue());
        EXPECT_FALSE(whole(0)->boolValue());
    }
    TEST(NSNumber, UnsignedNumbersReadAsDoubles)
    {
        EXPECT_EQ(meta().numberWithUnsignedInteger(~0ull)->doubleValue(), 18446744073709551616.0);
    }
    TEST(NSNumber, DescribesIntegersAndBooleans)
    {
        EXPECT_EQ(textOf(meta().numberWithBool(true)), "1");
        EXPECT_EQ(textOf(meta().numberWithBool(false)), "0");
        EXPECT_EQ(textOf(whole(INT64_MIN)), "-9223372036854775808");
        EXPECT_EQ(textOf(meta().numberWithUnsignedInteger(~0ull)), "18446744073709551615");
        EXPECT_EQ(textOf(meta().numberWithChar('a')), "97");
    }
    TEST(NSNumber, DescribesRealsByTheFewestDigits)
    {
        EXPECT_EQ(textOf(real(0.1)), "0.1");
        EXPECT_EQ(textOf(meta().numberWithFloat(0.1f)), "0.1");
        EXPECT_EQ(textOf(real(1)), "1");
        EXPECT_EQ(textOf(real(1000000)), "1000000");
        EXPECT_EQ(textOf(real(1e20)), "1e+20");
        EXPECT_EQ(textOf(real(1.5e-7)), "1.5e-07");
        EXPECT_EQ(textOf(real(-0.25)), "-0.25");
        EXPECT_EQ(textOf(real(0)), "0");
        EXPECT_EQ(textOf(real(INFINITY)), "inf");
        EXPECT_EQ(textOf(real(NAN)), "nan");
    }
    TEST(NSNumber, DescriptionsOfRealsReadBackTheSame)
    {
        std::uint64_t seed = 42;
        for (int i = 0; i < 2000; ++i) {
            seed = seed * 6364136223846793005u + 1442695040888963407u;
            double value = 0;
            static_assert(sizeof value == sizeof seed);
            std::memcpy(&value, &seed, sizeof value);
            if (!std::isfinite(value))
                continue;
            EXPECT_EQ(real(value)->description()->doubleValue(), value);
        }
    }
    TEST(NSNumber, GivesItsBytes)
    {
        int number = 0;
        meta().numberWithInt(-7)->getValue(&number);
        EXPECT_EQ(number, -7);
        float small = 0;
        meta().numberWithFloat(0.5f)->getValue_size(&small, sizeof small);
        EXPECT_EQ(small, 0.5f);
    }
    TEST(NSNumber, IsMadeOfBytes)
    {
        const double value = 2.5;
        const Ref<NSValue> number = meta().valueWithBytes_objCType(&value, "d");
        EXPECT_TRUE(number->isEqual(real(2.5).get()));
        EXPECT_FALSE(meta().valueWithBytes_objCType(&value, "{CGPoint=dd}"));
    }
    TEST(NSNumber, IsAValueThatCopiesAsItself)
    {
        const Ref<NSNumber> number = whole(5);
        EXPECT_TRUE(number->isKindOfClass(NSValue::cls()));
        EXPECT_EQ(number->copy().get(), number.get());
    }

}

}
