// SPDX-License-Identifier: Apache-2.0
#include "foundation/NSValue.h"

#include <gtest/gtest.h>

#include "foundation/NSNumber.h"
#include "support/Strings.h"

namespace brindle {

namespace {

    TEST(NSValue, KeepsPointsSizesRectsAndRanges)
    {
        const auto meta = NSValue::cls();
        EXPECT_EQ(meta.valueWithPoint({ 1, 2 })->pointValue(), NSMakePoint(1, 2));
        EXPECT_EQ(meta.valueWithSize({ 3, 4 })->sizeValue(), (NSSize { 3, 4 }));
        EXPECT_EQ(meta.valueWithRect(NSMakeRect(1, 2, 3, 4))->rectValue(), NSMakeRect(1, 2, 3, 4));
        EXPECT_EQ(meta.valueWithRange({ 5, 6 })->rangeValue(), NSMakeRange(5, 6));
    }
    TEST(NSValue, TellsItsType)
    {
        EXPECT_STREQ(NSValue::cls().valueWithPoint({})->objCType(), "{CGPoint=dd}");
        EXPECT_STREQ(NSValue::cls().valueWithRange({})->objCType(), "{_NSRange=QQ}");
    }
    TEST(NSValue, AnotherTypeReadsZero)
    {
        EXPECT_EQ(NSValue::cls().valueWithRange({ 5, 6 })->pointValue(), NSZeroPoint);
        EXPECT_EQ(NSValue::cls().valueWithPoint({ 5, 6 })->rectValue(), NSZeroRect);
    }
    TEST(NSValue, CopiesBytes)
    {
        short numbers[2] = { 1, 2 };
        const Ref<NSValue> value = NSValue::cls().valueWithBytes_objCType(numbers, "[2s]");
        numbers[0] = 9;
        short out[2] {};
        value->getValue(out);
        EXPECT_EQ(out[0], 1);
        EXPECT_EQ(out[1], 2);
    }
    TEST(NSValue, GetValueWithAnotherSizeRaises)
    {
        double out = 0;
        EXPECT_EQ(
            raisedBy([&] { NSValue::cls().valueWithPoint({})->getValue_size(&out, sizeof out); }),
            "NSInvalidArgumentException: *** -[NSValue getValue:size:]: Cannot get value with size "
            "8. The type encoded as "
            "{CGPoint=dd} is expected to be 16 bytes");
    }
    TEST(NSValue, AMalformedTypeRaises)
    {
        const int number = 1;
        EXPECT_NE(raisedBy([&] { NSValue::cls().valueWithBytes_objCType(&number, "{open"); }), "");
        EXPECT_NE(raisedBy([&] { NSValue::cls().valueWithBytes_objCType(&number, nullptr); }), "");
        EXPECT_NE(raisedBy([&] { NSValue::cls().valueWithBytes_objCType(nullptr, "i"); }), "");
    }
    TEST(NSValue, EqualityIsTypeAndBytes)
    {
        const Ref<NSValue> point = NSValue::cls().valueWithPoint({ 1, 2 });
        EXPECT_TRUE(point->isEqual(NSValue::cls().valueWithPoint({ 1, 2 }).get()));
        EXPECT_EQ(point->hash(), NSValue::cls().valueWithPoint({ 1, 2 })->hash());
        EXPECT_FALSE(point->isEqual(NSValue::cls().valueWithPoint({ 2, 1 }).get()));
        EXPECT_FALSE(point->isEqual(NSValue::cls().valueWithSize({ 1, 2 }).get()));
        EXPECT_FALSE(point->isEqual("{1, 2}"_ns));
        EXPECT_FALSE(point->isEqual(nullptr));
    }
    TEST(NSValue, KeepsAddresses)
    {
        int target = 0;
        EXPECT_EQ(NSValue::cls().valueWithPointer(&target)->pointerValue(), &target);
        EXPECT_STREQ(NSValue::cls().valueWithPointer(&target)->objCType(), "^v");
    }
    TEST(NSValue, DoesNotRetainAnObject)
    {
        const Ref<NSObject> object = make<NSObject>();
        const auto count = [&object] { return object->send<"retainCount", NSUInteger>(); };
        const NSUInteger before = count();
        const Ref<NSValue> value = NSValue::cls().valueWithNonretainedObject(object.get());
        EXPECT_EQ(count(), before);
        EXPECT_EQ(value->nonretainedObjectValue().get(), object.get());
    }
    TEST(NSValue, DescribesItself)
    {
        EXPECT_EQ(textOf(NSValue::cls().valueWithPoint({ 1, 2.5 })), "NSPoint: {1, 2.5}");
        EXPECT_EQ(textOf(NSValue::cls().valueWithSize({ 1, 2 })), "NSSize: {1, 2}");
        EXPECT_EQ(textOf(NSValue::cls().valueWithRect(NSMakeRect(1, 2, 3, 4))),
            "NSRect: {{1, 2}, {3, 4}}");
        EXPECT_EQ(textOf(NSValue::cls().valueWithRange({ 1, 2 })), "NSRange: {1, 2}");
        EXPECT_EQ(textOf(NSValue::cls().valueOf(0x01020304)), "<04030201>");
    }
    TEST(NSValue, CopiesAreTheValueItself)
    {
        const Ref<NSValue> value = NSValue::cls().valueWithPoint({});
        EXPECT_EQ(value->copy().get(), value.get());
    }

}

}
