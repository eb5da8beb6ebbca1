// SPDX-License-Identifier: Apache-2.0
#include "foundation/NSMutableArray.h"

#include "foundation/NSIndexSet.h"
#include "foundation/NSNumber.h"
#include "support/Strings.h"

using namespace brindle;

namespace {

Ref<NSMutableArray> letters()
{
    return NSMutableArray::cls().arrayWithObjects("a"_ns, "b"_ns, "c"_ns, "b"_ns);
}

std::string joined(const Ref<NSMutableArray>& array)
{
    return utf8(array->componentsJoinedByString(" "_ns));
}

std::string mutatedText(const Ref<NSMutableArray>& array)
{
    char address[24];
    std::snprintf(address, sizeof address, "%p", static_cast<void*>(array.get()));
    return "NSGenericException: *** Collection <NSMutableArray: " + std::string(address)
        + "> was mutated while being enumerated.";
}

}

TEST(NSMutableArray, AddsAtTheEnd)
{
    const Ref<NSMutableArray> array = NSMutableArray::cls().arrayWithCapacity(10);
    array->addObject("a"_ns);
    array->addObject("b"_ns);
    EXPECT_EQ(joined(array), "a b");
}

TEST(NSMutableArray, AddingNilRaises)
{
    EXPECT_EQ(raisedBy([] { letters()->addObject(nullptr); }),
        "NSInvalidArgumentException: *** -[NSMutableArray addObject:]: object cannot be nil");
}

TEST(NSMutableArray, InsertsUpToTheEnd)
{
    const Ref<NSMutableArray> array = letters();
    array->insertObject_atIndex("x"_ns, 0);
    array->insertObject_atIndex("y"_ns, 5);
    EXPECT_EQ(joined(array), "x a b c b y");
}

TEST(NSMutableArray, InsertingBeyondTheEndRaises)
{
    EXPECT_EQ(raisedBy([] { letters()->insertObject_atIndex("x"_ns, 5); }),
        "NSRangeException: *** -[NSMutableArray insertObject:atIndex:]: index 5 beyond bounds [0 "
        ".. 3]");
}

TEST(NSMutableArray, RemovesEveryEqualElement)
{
    const Ref<NSMutableArray> array = letters();
    array->removeObject("b"_ns);
    EXPECT_EQ(joined(array), "a c");
}

TEST(NSMutableArray, RemovingWhatIsNotThereOrNilChangesNothing)
{
    const Ref<NSMutableArray> array = letters();
    array->removeObject("x"_ns);
    array->removeObject(nullptr);
    EXPECT_EQ(joined(array), "a b c b");
}

TEST(NSMutableArray, RemovesWithinARangeOnly)
{
    const Ref<NSMutableArray> array = letters();
    array->removeObject_inRange("b"_ns, { 2, 2 });
    EXPECT_EQ(joined(array), "a b c");
}

TEST(NSMutableArray, RemovesAtAnIndex)
{
    const Ref<NSMutableArray> array = letters();
    array->removeObjectAtIndex(0);
    EXPECT_EQ(joined(array), "b c b");
}

TEST(NSMutableArray, RemovingAtAnIndexOutsideRaises)
{
    EXPECT_EQ(raisedBy([] { letters()->removeObjectAtIndex(4); }),
        "NSRangeException: *** -[NSMutableArray removeObjectAtIndex:]: index 4 beyond bounds [0 .. "
        "3]");
}

TEST(NSMutableArray, RemovingTheLastOfNothingRaises)
{
    EXPECT_NE(raisedBy([] { make<NSMutableArray>()->removeLastObject(); }), "");
}

TEST(NSMutableArray, RemovesRangesAndIndexes)
{
    const Ref<NSMutableArray> array = letters();
    array->removeObjectsInRange({ 1, 2 });
    EXPECT_EQ(joined(array), "a b");
    const Ref<NSMutableIndexSet> indexes = NSMutableIndexSet::cls().indexSetWithIndex(0);
    indexes->addIndex(2);
    const Ref<NSMutableArray> other = letters();
    other->removeObjectsAtIndexes(indexes.get());
    EXPECT_EQ(joined(other), "b b");
}

TEST(NSMutableArray, TakesScatteredElementsOutAndPutsThemBack)
{
    constexpr NSUInteger kCount = 200'000;
    const Ref<NSMutableArray> array = NSMutableArray::cls().arrayWithCapacity(kCount);
    const Ref<NSMutableIndexSet> even = make<NSMutableIndexSet>();
    for (NSUInteger i = 0; i < kCount; ++i) {
        array->addObject(NSNumber::cls().numberWithUnsignedInteger(i).get());
        if (i % 2 == 0)
            even->addIndex(i);
    }
    const Ref<NSArray> before = cast<NSArray>(array->copy());
    const Ref<NSArray> taken = array->objectsAtIndexes(even.get());
    array->removeObjectsAtIndexes(even.get());
    EXPECT_EQ(array->count(), kCount / 2);
    EXPECT_EQ(array->objectAtIndex(1)->description()->integerValue(), 3);
    array->insertObjects_atIndexes(taken.get(), even.get());
    EXPECT_TRUE(array->isEqualToArray(before.get()));
}

TEST(NSMutableArray, InsertingPastTheResultsEndChangesNothing)
{
    const Ref<NSMutableArray> array = letters();
    const Ref<NSMutableIndexSet> indexes = NSMutableIndexSet::cls().indexSetWithIndex(0);
    indexes->addIndex(6);
    EXPECT_NE(raisedBy([&] {
        array->insertObjects_atIndexes(makeArray({ "x"_ns, "y"_ns }).get(), indexes.get());
    }),
        "");
    EXPECT_EQ(joined(array), "a b c b");
}

TEST(NSMutableArray, RemovesWhatAnotherArrayHolds)
{
    const Ref<NSMutableArray> array = letters();
    array->removeObjectsInArray(makeArray({ "b"_ns, "a"_ns }).get());
    EXPECT_EQ(joined(array), "c");
}

TEST(NSMutableArray, InsertsAtPlacesOfTheResult)
{
    const Ref<NSMutableArray> array = letters();
    const Ref<NSMutableIndexSet> indexes = NSMutableIndexSet::cls().indexSetWithIndex(0);
    indexes->addIndex(2);
    array->insertObjects_atIndexes(makeArray({ "x"_ns, "y"_ns }).get(), indexes.get());
    EXPECT_EQ(joined(array), "x a y b c b");
}

TEST(NSMutableArray, ReplacesAndExchanges)
{
    const Ref<NSMutableArray> array = letters();
    array->replaceObjectAtIndex_withObject(0, "x"_ns);
    array->exchangeObjectAtIndex_withObjectAtIndex(0, 2);
    EXPECT_EQ(joined(array), "c b x b");
}

TEST(NSMutableArray, ASubscriptAtTheEndAdds)
{
    const Ref<NSMutableArray> array = letters();
    array->setObject_atIndexedSubscript("x"_ns, 4);
    array->setObject_atIndexedSubscript("y"_ns, 0);
    EXPECT_EQ(joined(array), "y b c b x");
}

TEST(NSMutableArray, ReplacesARangeByAnotherArray)
{
    const Ref<NSMutableArray> array = letters();
    array->replaceObjectsInRange_withObjectsFromArray({ 1, 2 }, makeArray({ "x"_ns }).get());
    EXPECT_EQ(joined(array), "a x b");
}

TEST(NSMutableArray, AddsItsOwnElements)
{
    const Ref<NSMutableArray> array = NSMutableArray::cls().arrayWithObjects("a"_ns, "b"_ns);
    array->addObjectsFromArray(array.get());
    EXPECT_EQ(joined(array), "a b a b");
}

TEST(NSMutableArray, BecomesItselfUnchanged)
{
    const Ref<NSMutableArray> array = letters();
    array->setArray(array.get());
    EXPECT_EQ(joined(array), "a b c b");
}

TEST(NSMutableArray, SortsAndFiltersInPlace)
{
    const Ref<NSMutableArray> array = letters();
    array->sortUsingSelector(selector<"compare:">);
    EXPECT_EQ(joined(array), "a b b c");
    array->filterUsingBlock([](NSObject* item) { return item->isEqual("b"_ns); });
    EXPECT_EQ(joined(array), "b b");
}

TEST(NSMutableArray, ACopyIsImmutableAndApart)
{
    const Ref<NSMutableArray> array = letters();
    const Ref<NSObject> copy = array->copy();
    array->removeAllObjects();
    EXPECT_TRUE(copy->isMemberOfClass(NSArray::cls()));
    EXPECT_EQ(cast<NSArray>(copy)->count(), 4u);
}

TEST(NSMutableArray, AChangeDuringALoopRaises)
{
    const Ref<NSMutableArray> array = letters();
    EXPECT_EQ(raisedBy([&] {
        for (NSObject* item : *array)
            array->addObject(item);
    }),
        mutatedText(array));
}

TEST(NSMutableArray, AReplacementDuringALoopRaises)
{
    const Ref<NSMutableArray> array = letters();
    EXPECT_EQ(raisedBy([&] {
        for ([[maybe_unused]] NSObject* item : *array)
            array->replaceObjectAtIndex_withObject(0, "x"_ns);
    }),
        mutatedText(array));
}

TEST(NSMutableArray, RemovingTheLastVisitedElementRaisesAsWell)
{
    const Ref<NSMutableArray> array = NSMutableArray::cls().arrayWithObject("a"_ns);
    EXPECT_EQ(raisedBy([&] {
        for ([[maybe_unused]] NSObject* item : *array)
            array->removeAllObjects();
    }),
        mutatedText(array));
}

TEST(NSMutableArray, AChangeDuringABlockEnumerationRaises)
{
    const Ref<NSMutableArray> array = letters();
    EXPECT_EQ(raisedBy([&] {
        array->enumerateObjectsUsingBlock(
            [&](NSObject*, NSUInteger, bool*) { array->removeLastObject(); });
    }),
        mutatedText(array));
    EXPECT_EQ(raisedBy([&] {
        array->enumerateObjectsWithOptions_usingBlock(
            NSEnumerationReverse, [&](NSObject*, NSUInteger, bool*) { array->removeLastObject(); });
    }),
        mutatedText(array));
}

TEST(NSMutableArray, AChangeRaisesFromTheEnumerator)
{
    const Ref<NSMutableArray> array = letters();
    const Ref<NSEnumerator> enumerator = array->reverseObjectEnumerator();
    enumerator->nextObject();
    array->addObject("x"_ns);
    EXPECT_EQ(raisedBy([&] { enumerator->nextObject(); }), mutatedText(array));
}

TEST(NSMutableArray, ACopyCanBeEnumeratedWhileTheArrayChanges)
{
    const Ref<NSMutableArray> array = letters();
    for (NSObject* item : each(cast<NSArray>(array->copy())))
        array->removeObject(item);
    EXPECT_EQ(array->count(), 0u);
}

TEST(NSMutableArray, ABlockThatThrowsLeavesTheArrayUsable)
{
    const Ref<NSMutableArray> array = letters();
    EXPECT_THROW(
        array->sortUsingComparator([](NSObject*, NSObject*) -> NSComparisonResult { throw 1; }),
        int);
    EXPECT_EQ(joined(array), "a b c b");
}
