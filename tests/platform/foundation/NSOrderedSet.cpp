// SPDX-License-Identifier: Apache-2.0
#include "foundation/NSOrderedSet.h"

#include <gtest/gtest.h>

#include "foundation/NSIndexSet.h"
#include "foundation/NSMutableArray.h"
#include "runtime/NSException.h"
#include "support/Strings.h"

using namespace brindle;

namespace {

Ref<NSMutableOrderedSet> letters(const char* text)
{
    const auto all = NSMutableArray::cls().array();
    for (; *text; ++text)
        all->addObject(stringFrom(std::string(1, *text)).get());
    return NSMutableOrderedSet::cls().orderedSetWithArray(all.get());
}

std::string text(const NSOrderedSet* set)
{
    return utf8Of(set->array()->componentsJoinedByString(""_ns));
}

TEST(NSOrderedSet, IsEmptyWithoutInit)
{
    const Ref<NSOrderedSet> bare = alloc<NSOrderedSet>();
    EXPECT_FALSE(bare->containsObject("a"_ns));
    EXPECT_EQ(bare->indexOfObject("a"_ns), NSNotFound);
    EXPECT_THROW(bare->objectAtIndex(0), Exception);
    bare->enumerateObjectsUsingBlock([](NSObject*, NSUInteger, bool*) { ADD_FAILURE(); });
}

TEST(NSOrderedSet, KeepsTheFirstOfEqualObjectsAndTheirOrder)
{
    EXPECT_EQ(text(letters("bacab").get()), "bac");
}

TEST(NSOrderedSet, AnswersPlacesAndObjects)
{
    const auto set = letters("abc");
    EXPECT_EQ(set->indexOfObject("b"_ns), 1u);
    EXPECT_EQ(set->indexOfObject("z"_ns), NSNotFound);
    EXPECT_TRUE((*set)[2]->isEqual("c"_ns));
    EXPECT_TRUE(set->firstObject()->isEqual("a"_ns));
    EXPECT_TRUE(set->lastObject()->isEqual("c"_ns));
    EXPECT_TRUE(set->containsObject("c"_ns));
    EXPECT_FALSE(set->containsObject(nullptr));
}

TEST(NSOrderedSet, AnswersNilAtBothEndsWhenItIsEmpty)
{
    EXPECT_FALSE(NSOrderedSet::cls().orderedSet()->firstObject());
    EXPECT_FALSE(NSOrderedSet::cls().orderedSet()->lastObject());
}

TEST(NSOrderedSet, RefusesAPlacePastTheEnd)
{
    EXPECT_THROW((void)letters("abc")->objectAtIndex(3), Exception);
    EXPECT_THROW(letters("abc")->insertObject_atIndex("d"_ns, 4), Exception);
    EXPECT_THROW(letters("abc")->removeObjectAtIndex(3), Exception);
}

TEST(NSOrderedSet, RefusesNil)
{
    EXPECT_THROW(letters("abc")->addObject(nullptr), Exception);
    EXPECT_THROW((void)NSOrderedSet::cls().orderedSetWithObject(nullptr), Exception);
}

TEST(NSOrderedSet, LeavesAnEqualObjectWhereItIs)
{
    const auto set = letters("abc");
    set->addObject("a"_ns);
    set->insertObject_atIndex("c"_ns, 0);
    EXPECT_EQ(text(set.get()), "abc");
}

TEST(NSOrderedSet, InsertsRemovesReplacesAndExchanges)
{
    const auto set = letters("abc");
    set->insertObject_atIndex("x"_ns, 1);
    set->removeObject("a"_ns);
    set->replaceObjectAtIndex_withObject(2, "y"_ns);
    set->exchangeObjectAtIndex_withObjectAtIndex(0, 1);
    EXPECT_EQ(text(set.get()), "bxy");
    EXPECT_FALSE(set->containsObject("c"_ns));
    set->addObject("c"_ns);
    EXPECT_EQ(text(set.get()), "bxyc");
}

TEST(NSOrderedSet, ReplacesNothingByAnObjectThatIsElsewhere)
{
    const auto set = letters("abc");
    set->replaceObjectAtIndex_withObject(0, "c"_ns);
    EXPECT_EQ(text(set.get()), "abc");
}

TEST(NSOrderedSet, MovesObjectsTogether)
{
    const auto set = letters("abcde");
    set->moveObjectsAtIndexes_toIndex(
        NSIndexSet::cls().indexSetWithIndexesInRange({ 1, 2 }).get(), 3);
    EXPECT_EQ(text(set.get()), "adebc");
    EXPECT_THROW(set->moveObjectsAtIndexes_toIndex(NSIndexSet::cls().indexSetWithIndex(0).get(), 5),
        Exception);
}

TEST(NSOrderedSet, JoinsSubtractsAndMeets)
{
    const auto set = letters("abc");
    set->unionOrderedSet(letters("cd").get());
    EXPECT_EQ(text(set.get()), "abcd");
    set->minusOrderedSet(letters("b").get());
    EXPECT_EQ(text(set.get()), "acd");
    set->intersectSet(letters("dxc")->set().get());
    EXPECT_EQ(text(set.get()), "cd");
    set->minusSet(nullptr);
    EXPECT_EQ(text(set.get()), "cd");
    set->addObject("c"_ns);
    EXPECT_EQ(text(set.get()), "cd");
    set->addObject("b"_ns);
    EXPECT_EQ(text(set.get()), "cdb");
}

TEST(NSOrderedSet, TakesObjectsWithoutInit)
{
    const auto bare = [] { return alloc<NSMutableOrderedSet>(); };
    EXPECT_FALSE(bare()->intersectsOrderedSet(letters("a").get()));
    EXPECT_FALSE(bare()->intersectsSet(letters("a")->set().get()));
    bare()->isSubsetOfOrderedSet(letters("a").get());
    bare()->isSubsetOfSet(letters("a")->set().get());
    bare()->removeAllObjects();
    bare()->minusOrderedSet(letters("a").get());
    bare()->intersectSet(nullptr);
    bare()->sortUsingComparator([](NSObject*, NSObject*) { return NSOrderedSame; });
    EXPECT_THROW(bare()->removeObjectAtIndex(0), Exception);
    EXPECT_THROW(bare()->replaceObjectAtIndex_withObject(0, "a"_ns), Exception);
    EXPECT_THROW(bare()->exchangeObjectAtIndex_withObjectAtIndex(0, 0), Exception);
    const auto set = bare();
    set->addObject("a"_ns);
    set->unionOrderedSet(letters("ab").get());
    EXPECT_EQ(text(set.get()), "ab");
}

TEST(NSOrderedSet, ComparesWithOtherSets)
{
    EXPECT_TRUE(letters("abc")->isEqual(letters("abc").get()));
    EXPECT_FALSE(letters("abc")->isEqual(letters("acb").get()));
    EXPECT_TRUE(letters("ab")->isSubsetOfOrderedSet(letters("bca").get()));
    EXPECT_FALSE(letters("ab")->isSubsetOfSet(letters("a")->set().get()));
    EXPECT_TRUE(letters("ab")->intersectsOrderedSet(letters("zb").get()));
    EXPECT_FALSE(letters("ab")->intersectsOrderedSet(nullptr));
}

TEST(NSOrderedSet, CopiesAsAnImmutableOneAndBack)
{
    const auto set = letters("abc");
    const auto copy = cast<NSOrderedSet>(set->copy());
    set->removeAllObjects();
    EXPECT_EQ(text(copy.get()), "abc");
    EXPECT_FALSE(copy->isKindOfClass(NSMutableOrderedSet::cls()));
    EXPECT_EQ(copy->copy(), copy);
    EXPECT_TRUE(copy->mutableCopy()->isKindOfClass(NSMutableOrderedSet::cls()));
}

TEST(NSOrderedSet, SortsAndTurnsRound)
{
    const auto set = letters("bac");
    EXPECT_EQ(text(set->reversedOrderedSet().get()), "cab");
    set->sortUsingComparator(
        [](NSObject* a, NSObject* b) { return cast<NSString>(a)->compare(cast<NSString>(b)); });
    EXPECT_EQ(text(set.get()), "abc");
}

TEST(NSOrderedSet, IsSafeToChangeWhileASnapshotIsRead)
{
    const auto set = letters("abc");
    const auto snapshot = set->array();
    for (NSObject* const each : *snapshot)
        set->removeObject(each);
    EXPECT_EQ(set->count(), 0u);
}

}
