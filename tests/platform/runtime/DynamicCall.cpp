// SPDX-License-Identifier: Apache-2.0
#include "runtime/DynamicCallPrivate.h"

#include <cstdint>
#include <gtest/gtest.h>

namespace brindle {
namespace {

    /// Calls a function by the text of its types with two arguments behind the receiver and the selector.
    template <class R, class A, class B>
    R call(R (*function)(NSObject*, SEL, A, B), const char* types, A a, B b)
    {
        NSObject* const receiver = nullptr;
        const SEL selector {};
        const void* const arguments[] = { &receiver, &selector, &a, &b };
        union {
            R answer;
            std::uint64_t room[4];
        } result {};
        callDynamically(
            reinterpret_cast<IMP>(function), types, const_cast<void* const*>(arguments), &result);
        return result.answer;
    }

    struct Floats {
        float values[4];
    };
    Floats doubled(NSObject*, SEL, Floats f, std::int64_t by)
    {
        for (float& value : f.values)
            value *= static_cast<float>(by);
        return f;
    }
    TEST(DynamicCall, TakesAndAnswersArraysOfFloatsInStructures)
    {
        const Floats answer = call(
            &doubled, "{Floats=[4f]}@:{Floats=[4f]}q", Floats { 1, 2, 3, 4 }, std::int64_t { 2 });
        EXPECT_EQ(answer.values[0], 2);
        EXPECT_EQ(answer.values[3], 8);
    }

    struct FloatsAndCounts {
        float values[2];
        std::int32_t counts[2];
    };
    FloatsAndCounts moved(NSObject*, SEL, FloatsAndCounts m, double by)
    {
        return { { m.values[0] + static_cast<float>(by), m.values[1] },
            { m.counts[0], m.counts[1] + 1 } };
    }
    TEST(DynamicCall, TakesEachEightBytesAsWhatLiesInThem)
    {
        const FloatsAndCounts answer = call(&moved, "{Mixed=[2f][2i]}@:{Mixed=[2f][2i]}d",
            FloatsAndCounts { { 1, 2 }, { 3, 4 } }, 0.5);
        EXPECT_EQ(answer.values[0], 1.5f);
        EXPECT_EQ(answer.values[1], 2);
        EXPECT_EQ(answer.counts[0], 3);
        EXPECT_EQ(answer.counts[1], 5);
    }

    union Number {
        double real;
        float parts[2];
    };
    Number half(NSObject*, SEL, Number n, std::int64_t)
    {
        n.real /= 2;
        return n;
    }
    TEST(DynamicCall, TakesAUnionOfFloatingPointNumbersAsOne)
    {
        EXPECT_EQ(
            call(&half, "(Number=d[2f])@:(Number=d[2f])q", Number { 5 }, std::int64_t { 0 }).real,
            2.5);
    }

    struct Either {
        double before;
        union {
            double real;
            std::int64_t whole;
        };
    };
    Either swapped(NSObject*, SEL, Either e, double by)
    {
        Either answer {};
        answer.before = e.before + by;
        answer.whole = e.whole + 1;
        return answer;
    }
    TEST(DynamicCall, TakesAUnionWithAnIntegerAsAnInteger)
    {
        Either given {};
        given.before = 1;
        given.whole = 41;
        const Either answer = call(&swapped, "{Either=d(?=dq)}@:{Either=d(?=dq)}d", given, 0.25);
        EXPECT_EQ(answer.before, 1.25);
        EXPECT_EQ(answer.whole, 42);
    }

    struct Inner {
        char tag;
        double value;
    };
    struct Outer {
        Inner inner;
    };
    Outer retagged(NSObject*, SEL, Outer o, std::int64_t tag)
    {
        return { { static_cast<char>(tag), o.inner.value * 2 } };
    }
    TEST(DynamicCall, LaysStructuresInStructuresOutAsTheyAre)
    {
        const Outer answer = call(&retagged, "{Outer={Inner=cd}}@:{Outer={Inner=cd}}q",
            Outer { { 'a', 1.5 } }, std::int64_t { 'b' });
        EXPECT_EQ(answer.inner.tag, 'b');
        EXPECT_EQ(answer.inner.value, 3);
    }

    TEST(DynamicCall, ArraysOfNothingTakeNoTime)
    {
        EXPECT_EQ(call(
                      +[](NSObject*, SEL, std::int64_t a, std::int64_t b) { return a - b; },
                      "q@:qq", std::int64_t { 5 }, std::int64_t { 2 }),
            3);
        const std::uint64_t room[2] {};
        std::uint64_t result[2] {};
        NSObject* const receiver = nullptr;
        const SEL selector {};
        const void* const arguments[] = { &receiver, &selector, &room };
        callDynamically(reinterpret_cast<IMP>(+[](NSObject*, SEL) { return std::int64_t { 7 }; }),
            "q@:{?=[1000000[1000000[1000000{?=}]]]q}", const_cast<void* const*>(arguments), result);
        EXPECT_EQ(result[0], 7u);
    }

}
}
