// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "foundation/Exceptions.h"
#include "foundation/NSMutableArray.h"
#include "foundation/NSString.h"
#include "support/Strings.h"
#include "viewkit/NSArray+Reverse.h"
#include "viewkit/NSMutableArray+GWExtensions.h"

namespace brindle {

namespace {

    Ref<NSMutableArray> letters(std::initializer_list<NSString*> all)
    {
        const Ref<NSMutableArray> array = make<NSMutableArray>();
        for (NSString* letter : all)
            array->addObject(letter);
        return array;
    }
    std::string joined(const Ref<NSArray>& array)
    {
        return utf8Of(array->componentsJoinedByString(" "_ns));
    }

    TEST(ObjectsOnce, AddsWhatIsNotThere)
    {
        const auto array = letters({ "a"_ns });
        EXPECT_TRUE(addObjectOnce(*array, "b"_ns));
        EXPECT_EQ(joined(array), "a b");
    }

    TEST(ObjectsOnce, DoesNotAddAnEqualObject)
    {
        const auto array = letters({ "a"_ns });
        const Ref<NSString> equal = NSString::cls().stringWithUTF8String("a");
        EXPECT_FALSE(addObjectOnce(*array, equal.get()));
        EXPECT_EQ(array->count(), 1u);
    }

    TEST(ObjectsOnce, NilIsRefused)
    {
        const auto array = letters({});
        EXPECT_THROW(addObjectOnce(*array, nullptr), Exception);
    }

    TEST(ObjectsOnce, InsertingMovesToTheFront)
    {
        const auto array = letters({ "a"_ns, "b"_ns, "c"_ns, "d"_ns });
        insertObjectOnce_atIndex(*array, "d"_ns, 0);
        EXPECT_EQ(joined(array), "d a b c");
    }

    TEST(ObjectsOnce, InsertingRemovesEveryEqualObject)
    {
        const auto array = letters({ "a"_ns, "b"_ns, "a"_ns, "c"_ns });
        insertObjectOnce_atIndex(*array, "a"_ns, 1);
        EXPECT_EQ(joined(array), "b a c");
    }

    TEST(ObjectsOnce, TheIndexCountsAfterTheRemoval)
    {
        const auto array = letters({ "a"_ns, "b"_ns });
        EXPECT_THROW(insertObjectOnce_atIndex(*array, "a"_ns, 2), Exception);
        EXPECT_EQ(joined(array), "b");
    }

    TEST(ReversedArray, TurnsTheOrder)
    {
        const auto array = letters({ "a"_ns, "b"_ns, "c"_ns });
        EXPECT_EQ(joined(reversedArray(*array)), "c b a");
    }

    TEST(ReversedArray, OfNothingIsEmpty)
    {
        const auto array = letters({});
        EXPECT_EQ(reversedArray(*array)->count(), 0u);
    }

    TEST(ReversedArray, IsANewMutableArray)
    {
        const auto array = letters({ "a"_ns });
        const Ref<NSArray> reversed = reversedArray(*array);
        EXPECT_NE(reversed, array.get());
        EXPECT_TRUE(reversed->isKindOfClass(NSMutableArray::cls()));
    }

}

}
