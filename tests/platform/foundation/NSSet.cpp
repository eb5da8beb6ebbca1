// SPDX-License-Identifier: Apache-2.0
#include "foundation/NSSet.h"

#include "foundation/NSArray.h"
#include "foundation/NSNumber.h"
#include "support/Strings.h"

using namespace brindle;

namespace {

Ref<NSNumber> number(int value) { return NSNumber::cls().numberWithInt(value); }

std::string joined(const Ref<NSSet>& set)
{
    return utf8(set->allObjects()->componentsJoinedByString(" "_ns));
}

Ref<NSMutableSet> letters()
{
    return NSMutableSet::cls().setWithSet(makeSet({ "b"_ns, "a"_ns, "c"_ns }).get());
}

}

TEST(NSSet, KeepsEqualObjectsOnceInTheOrderTheyCame)
{
    EXPECT_EQ(joined(makeSet({ "b"_ns, "a"_ns, "b"_ns })), "b a");
}

TEST(NSSet, FindsByEquality)
{
    const Ref<NSString> a = stringFrom(std::string_view("a"));
    EXPECT_TRUE(letters()->containsObject(a.get()));
    EXPECT_FALSE(letters()->containsObject("x"_ns));
    EXPECT_FALSE(letters()->containsObject(nullptr));
}

TEST(NSSet, AMemberIsTheSetsOwnObject)
{
    const Ref<NSString> a = stringFrom(std::string_view("a"));
    const Ref<NSSet> set = makeSet({ a.get() });
    EXPECT_EQ(set->member("a"_ns).get(), a.get());
    EXPECT_FALSE(set->member("b"_ns));
}

TEST(NSSet, AnyObjectOfAnEmptySetIsNil)
{
    EXPECT_FALSE(NSSet::cls().set()->anyObject());
    EXPECT_EQ(textOf(letters()->anyObject()), "b");
}

TEST(NSSet, ANilObjectIsRefused)
{
    EXPECT_EQ(raisedBy([] { letters()->addObject(nullptr); }),
        "NSInvalidArgumentException: *** -[NSMutableSet addObject:]: object cannot be nil");
    EXPECT_NE(raisedBy([] { makeSet({ nullptr }); }), "");
}

TEST(NSSet, SetsOfTheSameObjectsAreEqualInAnyOrder)
{
    EXPECT_TRUE(letters()->isEqual(makeSet({ "a"_ns, "b"_ns, "c"_ns }).get()));
    EXPECT_FALSE(letters()->isEqual(makeSet({ "a"_ns, "b"_ns, "d"_ns }).get()));
    EXPECT_FALSE(letters()->isEqual(makeSet({ "a"_ns, "b"_ns }).get()));
}

TEST(NSSet, KnowsSubsetsAndCommonObjects)
{
    EXPECT_TRUE(makeSet({ "a"_ns })->isSubsetOfSet(letters().get()));
    EXPECT_FALSE(letters()->isSubsetOfSet(makeSet({ "a"_ns }).get()));
    EXPECT_TRUE(NSSet::cls().set()->isSubsetOfSet(nullptr));
    EXPECT_TRUE(letters()->intersectsSet(makeSet({ "x"_ns, "c"_ns }).get()));
    EXPECT_FALSE(letters()->intersectsSet(makeSet({ "x"_ns }).get()));
}

TEST(NSSet, UnitesSubtractsAndIntersects)
{
    Ref<NSMutableSet> set = letters();
    set->unionSet(makeSet({ "d"_ns, "a"_ns }).get());
    EXPECT_EQ(joined(set), "b a c d");
    set->minusSet(makeSet({ "a"_ns, "x"_ns }).get());
    EXPECT_EQ(joined(set), "b c d");
    set->intersectSet(makeSet({ "d"_ns, "b"_ns }).get());
    EXPECT_EQ(joined(set), "b d");
    set->minusSet(set.get());
    EXPECT_EQ(set->count(), 0u);
}

TEST(NSSet, AddingMakesANewSet)
{
    const Ref<NSSet> set = makeSet({ "a"_ns });
    EXPECT_EQ(joined(set->setByAddingObject("b"_ns)), "a b");
    EXPECT_EQ(joined(set->setByAddingObjectsFromArray(makeArray({ "a"_ns, "c"_ns }).get())), "a c");
    EXPECT_EQ(set->count(), 1u);
}

TEST(NSSet, RemembersManyObjectsThroughManyChanges)
{
    const Ref<NSMutableSet> set = make<NSMutableSet>();
    for (int i = 0; i < 5000; ++i)
        set->addObject(number(i).get());
    for (int i = 0; i < 5000; ++i) {
        if (i % 3)
            set->removeObject(number(i).get());
    }
    for (int i = 0; i < 5000; ++i)
        ASSERT_EQ(set->containsObject(number(i).get()), i % 3 == 0) << i;
    EXPECT_EQ(set->count(), 1667u);
    int expected = 0;
    for (NSNumber* item : each<NSNumber>(set)) {
        ASSERT_EQ(item->intValue(), expected);
        expected += 3;
    }
}

TEST(NSSet, AQueueOfAddedAndRemovedObjectsStaysSmallAndRight)
{
    const Ref<NSMutableSet> set = make<NSMutableSet>();
    for (int i = 0; i < 10000; ++i) {
        set->addObject(number(i).get());
        if (i >= 3)
            set->removeObject(number(i - 3).get());
    }
    EXPECT_EQ(joined(set), "9997 9998 9999");
}

TEST(NSSet, ACopyOfAnImmutableSetIsItself)
{
    const Ref<NSSet> set = makeSet({ "a"_ns });
    EXPECT_EQ(set->copy().get(), set.get());
}

TEST(NSSet, ACopyOfAMutableSetIsImmutableAndApart)
{
    const Ref<NSMutableSet> set = letters();
    const Ref<NSObject> copy = set->copy();
    set->removeAllObjects();
    EXPECT_TRUE(copy->isMemberOfClass(NSSet::cls()));
    EXPECT_EQ(cast<NSSet>(copy)->count(), 3u);
}

TEST(NSSet, AChangeDuringALoopRaises)
{
    const Ref<NSMutableSet> set = letters();
    const std::string text = raisedBy([&] {
        for ([[maybe_unused]] NSObject* item : *set)
            set->removeObject("a"_ns);
    });
    EXPECT_NE(text.find("*** Collection <NSMutableSet: 0x"), std::string::npos);
    EXPECT_NE(text.find("> was mutated while being enumerated."), std::string::npos);
}

TEST(NSSet, AChangeRaisesFromTheEnumerator)
{
    const Ref<NSMutableSet> set = letters();
    const Ref<NSEnumerator> enumerator = set->objectEnumerator();
    set->addObject("x"_ns);
    EXPECT_NE(raisedBy([&] { enumerator->nextObject(); }), "");
}

TEST(NSSet, AddingWhatIsThereIsNoChange)
{
    const Ref<NSMutableSet> set = letters();
    for (NSObject* item : *set)
        set->addObject(item);
    EXPECT_EQ(set->count(), 3u);
}

TEST(NSSet, ABlockCanChooseAndStop)
{
    const Ref<NSSet> chosen = letters()->objectsPassingTest([](NSObject* item, bool* stop) {
        *stop = item->isEqual("a"_ns);
        return true;
    });
    EXPECT_EQ(joined(chosen), "b a");
}

TEST(NSSet, DescribesItselfInBracesAndBrackets)
{
    EXPECT_EQ(utf8(makeSet({ "a"_ns, "b"_ns })->description()), "{(\n    a,\n    b\n)}");
}
