// SPDX-License-Identifier: Apache-2.0
#include "foundation/NSArray.h"

#include "foundation/NSIndexSet.h"
#include "foundation/NSMutableArray.h"
#include "foundation/NSNumber.h"
#include "foundation/NSSet.h"
#include "runtime/Table.h"
#include "support/Strings.h"

using namespace brindle;

namespace {

constexpr NSUInteger kNotFound = static_cast<NSUInteger>(NSNotFound);

Ref<NSArray> letters() { return makeArray({ "a"_ns, "b"_ns, "c"_ns }); }

std::string joined(const Ref<NSArray>& array)
{
    return array ? utf8(array->componentsJoinedByString(" "_ns)) : "(nil)";
}

}

namespace brindle {

/// The numbers from zero on, made when they are asked for.
class CountingArray : public NSArray {
    BRINDLE_OBJECT(CountingArray, NSArray)
};
template <> struct CountingArray::Methods<struct Reading> {
    static NSUInteger count(CountingArray&) { return 3; }
    static Ref<NSObject> objectAtIndex(CountingArray&, NSUInteger index)
    {
        return NSNumber::cls().numberWithInt(static_cast<int>(index));
    }
    static void table(Builder& t)
    {
        t.methods({ { "count", imp<count> }, { "objectAtIndex:", imp<objectAtIndex> } });
    }
};
BRINDLE_RECORD(CountingArray, Reading)

}

TEST(NSArray, AnEmptyArrayCountsZero) { EXPECT_EQ(NSArray::cls().array()->count(), 0u); }

TEST(NSArray, KeepsItsObjectsInOrder)
{
    EXPECT_EQ(joined(letters()), "a b c");
    EXPECT_EQ(textOf(letters()->objectAtIndex(1)), "b");
}

TEST(NSArray, AnIndexOutsideRaisesWithTheBounds)
{
    EXPECT_EQ(raisedBy([] { letters()->objectAtIndex(3); }),
        "NSRangeException: *** -[NSArray objectAtIndex:]: index 3 beyond bounds [0 .. 2]");
}

TEST(NSArray, AnIndexIntoAnEmptyArrayRaises)
{
    EXPECT_EQ(raisedBy([] { NSArray::cls().array()->objectAtIndex(0); }),
        "NSRangeException: *** -[NSArray objectAtIndex:]: index 0 beyond bounds for empty array");
}

TEST(NSArray, FirstAndLastOfAnEmptyArrayAreNil)
{
    EXPECT_FALSE(NSArray::cls().array()->firstObject());
    EXPECT_FALSE(NSArray::cls().array()->lastObject());
}

TEST(NSArray, FirstAndLastAreTheEnds)
{
    EXPECT_EQ(textOf(letters()->firstObject()), "a");
    EXPECT_EQ(textOf(letters()->lastObject()), "c");
}

TEST(NSArray, ANilObjectIsRefused)
{
    EXPECT_EQ(raisedBy([] {
        makeArray({ "a"_ns, nullptr });
    }),
        "NSInvalidArgumentException: *** -[NSArray initWithObjects:count:]: attempt to insert nil "
        "object "
        "from objects[1]");
}

TEST(NSArray, AListOfObjectsEndsAtTheFirstNil)
{
    EXPECT_EQ(NSArray::cls().arrayWithObjects("a"_ns, "b"_ns, nullptr)->count(), 2u);
}

TEST(NSArray, FindsByEquality)
{
    const Ref<NSString> b = stringFrom(std::string_view("b"));
    EXPECT_EQ(letters()->indexOfObject(b.get()), 1u);
    EXPECT_TRUE(letters()->containsObject(b.get()));
}

TEST(NSArray, WhatIsNotThereIsNotFound)
{
    EXPECT_EQ(letters()->indexOfObject("x"_ns), kNotFound);
    EXPECT_FALSE(letters()->containsObject("x"_ns));
    EXPECT_EQ(letters()->indexOfObject(nullptr), kNotFound);
}

TEST(NSArray, FindsOnlyWithinTheRange)
{
    const Ref<NSArray> array = makeArray({ "a"_ns, "b"_ns, "a"_ns });
    EXPECT_EQ(array->indexOfObject_inRange("a"_ns, { 1, 2 }), 2u);
    EXPECT_EQ(array->indexOfObject_inRange("a"_ns, { 1, 1 }), kNotFound);
}

TEST(NSArray, FindsByAddressWhereThatIsAskedFor)
{
    const Ref<NSObject> one = make<NSObject>();
    const Ref<NSObject> two = make<NSObject>();
    EXPECT_EQ(makeArray({ one.get(), two.get() })->indexOfObjectIdenticalTo(two.get()), 1u);
}

TEST(NSArray, EqualArraysAreEqualWhateverTheirClass)
{
    const Ref<NSMutableArray> other = NSMutableArray::cls().arrayWithArray(letters().get());
    EXPECT_TRUE(letters()->isEqual(other.get()));
    EXPECT_EQ(letters()->hash(), other->hash());
}

TEST(NSArray, ArraysOfOtherLengthOrOrderDiffer)
{
    EXPECT_FALSE(letters()->isEqualToArray(makeArray({ "a"_ns, "b"_ns }).get()));
    EXPECT_FALSE(letters()->isEqualToArray(makeArray({ "a"_ns, "c"_ns, "b"_ns }).get()));
    EXPECT_FALSE(letters()->isEqualToArray(nullptr));
    EXPECT_FALSE(letters()->isEqual("a"_ns));
}

TEST(NSArray, ACopyIsTheArrayItself)
{
    const Ref<NSArray> array = letters();
    EXPECT_EQ(array->copy().get(), array.get());
}

TEST(NSArray, AMutableCopyIsMutableAndApart)
{
    const Ref<NSArray> array = letters();
    const Ref<NSMutableArray> copy = cast<NSMutableArray>(array->mutableCopy());
    copy->addObject("d"_ns);
    EXPECT_EQ(copy->count(), 4u);
    EXPECT_EQ(array->count(), 3u);
}

TEST(NSArray, CopiedItemsAreCopies)
{
    const Ref<NSArray> inner = NSMutableArray::cls().arrayWithObject("a"_ns);
    const Ref<NSArray> outer = makeArray({ inner.get() });
    const Ref<NSArray> copy = alloc<NSArray>()->initWithArray_copyItems(outer.get(), true);
    EXPECT_NE(copy->objectAtIndex(0).get(), inner.get());
    EXPECT_TRUE(copy->isEqualToArray(outer.get()));
}

TEST(NSArray, DescribesItselfInOldStyle)
{
    EXPECT_EQ(utf8(letters()->description()), "(\n    a,\n    b,\n    c\n)");
}

TEST(NSArray, DescribesNothingAsEmptyBrackets)
{
    EXPECT_EQ(utf8(NSArray::cls().array()->description()), "(\n)");
}

TEST(NSArray, QuotesWhatIsNotPurelyAlphanumeric)
{
    const Ref<NSArray> array = makeArray({ "a b"_ns, ""_ns, "a1"_ns, "\"\n\\"_ns, "ä"_ns });
    EXPECT_EQ(utf8(array->description()),
        "(\n    \"a b\",\n    \"\",\n    a1,\n    \"\\\"\\n\\\\\",\n    \"\\U00e4\"\n)");
}

TEST(NSArray, IndentsArraysInArraysByFourSpaces)
{
    const Ref<NSArray> array = makeArray({ makeArray({ "a"_ns }).get() });
    EXPECT_EQ(utf8(array->description()), "(\n    (\n        a\n    )\n)");
}

TEST(NSArray, AnArrayThatHoldsItselfStillDescribesItself)
{
    const Ref<NSMutableArray> array = make<NSMutableArray>();
    array->addObject(array.get());
    EXPECT_FALSE(utf8(array->description()).empty());
    array->removeAllObjects();
}

TEST(NSArray, TheEnumeratorHandsOutAllOnce)
{
    const Ref<NSEnumerator> enumerator = letters()->objectEnumerator();
    EXPECT_EQ(textOf(enumerator->nextObject()), "a");
    EXPECT_EQ(joined(enumerator->allObjects()), "b c");
    EXPECT_FALSE(enumerator->nextObject());
}

TEST(NSArray, TheReverseEnumeratorGoesBackwards)
{
    EXPECT_EQ(joined(letters()->reverseObjectEnumerator()->allObjects()), "c b a");
}

TEST(NSArray, ALoopVisitsAllInOrder)
{
    std::string text;
    const Ref<NSArray> array = letters();
    for (NSObject* item : *array)
        text += textOf(item);
    EXPECT_EQ(text, "abc");
}

TEST(NSArray, EachKeepsAnArrayThatNobodyElseKeeps)
{
    std::string text;
    for (NSString* item :
        each<NSString>(makeArray({ make<NSMutableArray>()->description().get() })))
        text += utf8(item);
    EXPECT_EQ(text, "(\n)");
}

TEST(NSArray, EachOfNilVisitsNothing)
{
    for (NSObject* item : each(Ref<NSArray>()))
        FAIL() << item;
}

TEST(NSArray, ABlockCanStopTheEnumeration)
{
    std::string text;
    letters()->enumerateObjectsUsingBlock([&](NSObject* item, NSUInteger index, bool* stop) {
        text += std::to_string(index) + textOf(item);
        *stop = index == 1;
    });
    EXPECT_EQ(text, "0a1b");
}

TEST(NSArray, ABlockEnumerationCanGoBackwards)
{
    std::string text;
    letters()->enumerateObjectsWithOptions_usingBlock(
        NSEnumerationReverse, [&](NSObject* item, NSUInteger index, bool*) {
            text += std::to_string(index) + textOf(item);
        });
    EXPECT_EQ(text, "2c1b0a");
}

TEST(NSArray, FindsTheFirstAndTheLastThatPassATest)
{
    const auto notA = [](NSObject* item, NSUInteger, bool*) { return !item->isEqual("a"_ns); };
    EXPECT_EQ(letters()->indexOfObjectPassingTest(notA), 1u);
    EXPECT_EQ(letters()->indexOfObjectWithOptions_passingTest(NSEnumerationReverse, notA), 2u);
}

TEST(NSArray, NothingThatPassesIsNotFound)
{
    EXPECT_EQ(
        letters()->indexOfObjectPassingTest([](NSObject*, NSUInteger, bool*) { return false; }),
        kNotFound);
}

TEST(NSArray, TellsTheIndexesOfAllThatPass)
{
    const Ref<NSIndexSet> found = letters()->indexesOfObjectsPassingTest(
        [](NSObject*, NSUInteger index, bool*) { return index != 1; });
    EXPECT_EQ(found->count(), 2u);
    EXPECT_EQ(joined(letters()->objectsAtIndexes(found.get())), "a c");
}

TEST(NSArray, FiltersByABlock)
{
    EXPECT_EQ(joined(letters()->filteredArrayUsingBlock(
                  [](NSObject* item) { return !item->isEqual("b"_ns); })),
        "a c");
}

TEST(NSArray, SendsEachElementAMessage)
{
    const Ref<NSMutableArray> inner = NSMutableArray::cls().arrayWithObject("x"_ns);
    makeArray({ inner.get() })->makeObjectsPerformSelector(selector<"removeAllObjects">);
    EXPECT_EQ(inner->count(), 0u);
}

TEST(NSArray, SendsEachElementAMessageWithAnObject)
{
    const Ref<NSMutableArray> inner = make<NSMutableArray>();
    makeArray({ inner.get(), inner.get() })
        ->makeObjectsPerformSelector_withObject(selector<"addObject:">, "x"_ns);
    EXPECT_EQ(inner->count(), 2u);
}

TEST(NSArray, ASubarrayIsThatStretch)
{
    EXPECT_EQ(joined(letters()->subarrayWithRange({ 1, 2 })), "b c");
    EXPECT_EQ(letters()->subarrayWithRange({ 3, 0 })->count(), 0u);
}

TEST(NSArray, ASubarrayBeyondTheEndRaises)
{
    EXPECT_EQ(raisedBy([] {
        letters()->subarrayWithRange({ 2, 2 });
    }),
        "NSRangeException: *** -[NSArray subarrayWithRange:]: range {2, 2} extends beyond bounds "
        "[0 .. 2]");
    EXPECT_NE(raisedBy([] { letters()->subarrayWithRange({ 1, kNotFound * 2 }); }), "");
}

TEST(NSArray, AddingMakesANewArray)
{
    const Ref<NSArray> array = letters();
    EXPECT_EQ(joined(array->arrayByAddingObject("d"_ns)), "a b c d");
    EXPECT_EQ(joined(array->arrayByAddingObjectsFromArray(array.get())), "a b c a b c");
    EXPECT_EQ(joined(array), "a b c");
}

TEST(NSArray, SortsByAnOperationOfTheElements)
{
    const Ref<NSArray> array = makeArray({ "c"_ns, "a"_ns, "b"_ns });
    EXPECT_EQ(joined(array->sortedArrayUsingSelector(selector<"compare:">)), "a b c");
}

TEST(NSArray, SortingRefusesAnOperationThatDoesNotCompare)
{
    EXPECT_NE(raisedBy([] { letters()->sortedArrayUsingSelector(selector<"length">); }), "");
}

TEST(NSArray, SortingKeepsTheOrderOfEqualElements)
{
    std::vector<Ref<NSObject>> numbers;
    for (int i = 0; i < 1000; ++i)
        numbers.push_back(NSNumber::cls().numberWithInt(i * 7919 % 1000));
    const auto byTens = [](NSObject* a, NSObject* b) {
        const int left = static_cast<NSNumber*>(a)->intValue() / 10;
        const int right = static_cast<NSNumber*>(b)->intValue() / 10;
        return left < right ? NSOrderedAscending
            : left > right  ? NSOrderedDescending
                            : NSOrderedSame;
    };
    std::vector<int> expected;
    for (const Ref<NSObject>& number : numbers)
        expected.push_back(cast<NSNumber>(number)->intValue());
    std::stable_sort(
        expected.begin(), expected.end(), [](int a, int b) { return a / 10 < b / 10; });
    std::vector<int> sorted;
    for (NSNumber* number : each<NSNumber>(makeArray(numbers)->sortedArrayUsingComparator(byTens)))
        sorted.push_back(number->intValue());
    EXPECT_EQ(sorted, expected);
}

TEST(NSArray, ASenselessComparisonLosesNothing)
{
    std::vector<Ref<NSObject>> numbers;
    for (int i = 0; i < 500; ++i)
        numbers.push_back(NSNumber::cls().numberWithInt(i));
    unsigned state = 1;
    const Ref<NSArray> sorted
        = makeArray(numbers)->sortedArrayUsingComparator([&](NSObject*, NSObject*) {
              state = state * 1664525 + 1013904223;
              return state >> 31 ? NSOrderedDescending : NSOrderedAscending;
          });
    EXPECT_EQ(NSSet::cls().setWithArray(sorted.get())->count(), 500u);
}

TEST(NSArray, FindsInASortedArray)
{
    const Ref<NSArray> array = makeArray({ "a"_ns, "c"_ns, "c"_ns, "e"_ns });
    const NSComparator compare = [](NSObject* a, NSObject* b) {
        return static_cast<NSString*>(a)->compare(static_cast<NSString*>(b));
    };
    const auto find = [&](NSString* text, NSUInteger options) {
        return array->indexOfObject_inSortedRange_options_usingComparator(
            text, { 0, 4 }, options, compare);
    };
    EXPECT_EQ(find("c"_ns, NSBinarySearchingFirstEqual), 1u);
    EXPECT_EQ(find("c"_ns, NSBinarySearchingLastEqual), 2u);
    EXPECT_EQ(find("d"_ns, 0), kNotFound);
    EXPECT_EQ(find("d"_ns, NSBinarySearchingInsertionIndex), 3u);
    EXPECT_EQ(find("z"_ns, NSBinarySearchingInsertionIndex), 4u);
}

TEST(NSArray, ASubclassNeedsOnlyItsTwoOperations)
{
    const Ref<NSArray> array = make<CountingArray>();
    EXPECT_EQ(joined(array), "0 1 2");
    EXPECT_EQ(textOf(array->lastObject()), "2");
    EXPECT_EQ(array->indexOfObject(NSNumber::cls().numberWithInt(1).get()), 1u);
    EXPECT_EQ(joined(array->reverseObjectEnumerator()->allObjects()), "2 1 0");
    std::string text;
    for (NSObject* item : *array)
        text += textOf(item);
    EXPECT_EQ(text, "012");
}

TEST(NSArray, KeepsItsElementsAndLetsThemGo)
{
    Ref<NSObject> object = make<NSObject>();
    const WeakRef<NSObject> watched = object;
    Ref<NSArray> array = makeArray({ object.get() });
    object = nullptr;
    EXPECT_TRUE(watched.get());
    array = nullptr;
    EXPECT_FALSE(watched.get());
}

TEST(NSArray, ADescriptionDoesNotRepeatSharedElementsForEver)
{
    Ref<NSObject> list = stringFrom("x");
    for (int level = 0; level < 40; ++level)
        list = makeArray({ list.get(), list.get(), list.get() });
    const std::string text = textOf(list);
    EXPECT_NE(text.find("\"<NSArray: 0x"), std::string::npos);
    EXPECT_LT(text.size(), std::size_t { 64 } << 20);
}

TEST(NSArray, ADescriptionRepeatsSharedElementsAsLongAsItIsShort)
{
    const Ref<NSArray> shared = makeArray({ "x"_ns });
    EXPECT_EQ(textOf(makeArray({ shared.get(), shared.get() })),
        "(\n    (\n        x\n    ),\n    (\n        x\n    )\n)");
}
