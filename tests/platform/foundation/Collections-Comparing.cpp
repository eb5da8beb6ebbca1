// SPDX-License-Identifier: Apache-2.0
#include <set>

#include <gtest/gtest.h>

#include "foundation/CollectionsPrivate.h"
#include "foundation/NSArray.h"
#include "foundation/NSDate.h"
#include "foundation/NSDictionary.h"
#include "foundation/NSMutableArray.h"
#include "foundation/NSNumber.h"
#include "foundation/NSOrderedSet.h"
#include "foundation/NSSet.h"
#include "support/Strings.h"

// Equality and hashes of collections that hold collections. Where they hold the same ones many times over, an answer that
// asks all of them again each time does not come in the lifetime of the test.

using namespace brindle;

namespace {

Ref<NSObject> number(int value) { return NSNumber::cls().numberWithInt(value); }

/// Answers a collection whose every level holds the one below twice.
template <class Wrap> Ref<NSObject> shared(Wrap wrap, const char* leaf = "x")
{
    Ref<NSObject> list = stringFrom(leaf);
    for (int level = 0; level < 60; ++level)
        list = wrap(list);
    return list;
}

Ref<NSObject> inArrays(const char* leaf = "x")
{
    return shared([](auto& list) { return makeArray({ list.get(), list.get() }); }, leaf);
}

Ref<NSObject> inDictionaries(const char* leaf = "x")
{
    return shared(
        [](auto& list) {
            return makeDictionary({ { "a"_ns, list.get() }, { "b"_ns, list.get() } });
        },
        leaf);
}

Ref<NSObject> inSets()
{
    return shared([](auto& list) {
        return makeSet({ list.get(), makeArray({ list.get() }).get() });
    });
}

Ref<NSObject> inOrderedSets()
{
    return shared([](auto& list) {
        const Ref<NSArray> inner = makeArray({ list.get() });
        return NSOrderedSet::cls().orderedSetWithArray(
            makeArray({ list.get(), inner.get() }).get());
    });
}

/// Answers how many of the hashes are different.
template <class Make> std::size_t hashesOf(int count, Make make)
{
    std::set<std::uint64_t> seen;
    for (int i = 0; i < count; ++i)
        seen.insert(make(i)->hash());
    return seen.size();
}

}

TEST(CollectionComparing, SharedElementsAreComparedOnce)
{
    EXPECT_TRUE(inArrays()->isEqual(inArrays().get()));
    EXPECT_TRUE(inDictionaries()->isEqual(inDictionaries().get()));
    EXPECT_TRUE(inSets()->isEqual(inSets().get()));
    EXPECT_TRUE(inOrderedSets()->isEqual(inOrderedSets().get()));
}

TEST(CollectionComparing, SharedElementsThatDifferAreFound)
{
    EXPECT_FALSE(inArrays("x")->isEqual(inArrays("y").get()));
    EXPECT_FALSE(inDictionaries("x")->isEqual(inDictionaries("y").get()));
}

TEST(CollectionComparing, WhatWasFoundIsForgottenAfterwards)
{
    const Ref<NSMutableArray> inner = NSMutableArray::cls().array();
    const Ref<NSMutableArray> one = NSMutableArray::cls().array();
    const Ref<NSMutableArray> other = NSMutableArray::cls().array();
    const Ref<NSMutableArray> twin = NSMutableArray::cls().array();
    for (int i = 0; i < 3000; ++i) {
        one->addObject(inner.get());
        other->addObject(twin.get());
    }
    EXPECT_TRUE(one->isEqual(other.get()));
    inner->addObject("x"_ns);
    EXPECT_FALSE(one->isEqual(other.get()));
}

TEST(CollectionComparing, PastALimitItRaises)
{
    const auto list = [] {
        const Ref<NSMutableArray> all = NSMutableArray::cls().array();
        for (int i = 0; i < 20; ++i)
            all->addObject(makeArray({ number(i).get() }).get());
        return all;
    };
    const Ref<NSArray> one = list();
    const Ref<NSArray> other = list();
    std::size_t left = 10;
    const collections::ComparisonLimit limit(&left);
    EXPECT_EQ(raisedBy([&] { one->isEqual(other.get()); }),
        "NSGenericException: *** Collections are nested too deeply, or too much alike, to be "
        "compared.");
    EXPECT_EQ(left, 0u);
}

TEST(CollectionComparing, AListThatHoldsItselfRaises)
{
    const auto endless = [] {
        const Ref<NSMutableArray> list = NSMutableArray::cls().array();
        list->addObject(list.get());
        return list;
    };
    const Ref<NSMutableArray> one = endless();
    const Ref<NSMutableArray> other = endless();
    EXPECT_NE(
        raisedBy([&] { one->isEqual(other.get()); }).find("NSGenericException"), std::string::npos);
    one->removeAllObjects();
    other->removeAllObjects();
}

TEST(CollectionHash, SharedElementsAreNotHashedForEver)
{
    EXPECT_EQ(inArrays()->hash(), inArrays()->hash());
    EXPECT_EQ(inDictionaries()->hash(), inDictionaries()->hash());
    EXPECT_EQ(inSets()->hash(), inSets()->hash());
    EXPECT_EQ(inOrderedSets()->hash(), inOrderedSets()->hash());
}

TEST(CollectionHash, TellsCollectionsOfOneLengthApart)
{
    EXPECT_EQ(hashesOf(100, [](int i) { return makeArray({ "a"_ns, number(i).get() }); }), 100u);
    EXPECT_EQ(
        hashesOf(100, [](int i) { return makeArray({ makeArray({ number(i).get() }).get() }); }),
        100u);
    EXPECT_EQ(hashesOf(100,
                  [](int i) {
                      return makeDictionary({ { "a"_ns, number(i).get() } });
                  }),
        100u);
    EXPECT_EQ(hashesOf(100, [](int i) { return makeSet({ "a"_ns, number(i).get() }); }), 100u);
    EXPECT_EQ(hashesOf(100,
                  [](int i) {
                      return NSOrderedSet::cls().orderedSetWithArray(
                          makeArray({ number(i).get() }).get());
                  }),
        100u);
}

TEST(CollectionHash, OrderCountsInArraysOnly)
{
    EXPECT_NE(makeArray({ "a"_ns, "b"_ns })->hash(), makeArray({ "b"_ns, "a"_ns })->hash());
    EXPECT_EQ(makeSet({ "a"_ns, "b"_ns })->hash(), makeSet({ "b"_ns, "a"_ns })->hash());
    EXPECT_EQ(makeDictionary({ { "a"_ns, "1"_ns }, { "b"_ns, "2"_ns } })->hash(),
        makeDictionary({ { "b"_ns, "2"_ns }, { "a"_ns, "1"_ns } })->hash());
}

TEST(CollectionHash, OfALongArrayIsThatOfItsCopy)
{
    const Ref<NSMutableArray> list = NSMutableArray::cls().array();
    for (int i = 0; i < 1000; ++i)
        list->addObject(makeArray({ number(i).get() }).get());
    EXPECT_EQ(list->hash(), NSArray::cls().arrayWithArray(list.get())->hash());
}

TEST(CollectionHash, OfAListThatHoldsItselfEnds)
{
    const Ref<NSMutableArray> list = NSMutableArray::cls().array();
    list->addObject(list.get());
    list->addObject(list.get());
    EXPECT_EQ(list->hash(), list->hash());
    list->removeAllObjects();
}

TEST(CollectionDescription, OfSharedOrderedSetsEnds)
{
    EXPECT_LT(textOf(inOrderedSets()).size(), std::size_t { 64 } << 20);
}

TEST(CollectionDescription, OfAnOrderedSetIsIndentedWhereItStands)
{
    const auto set = NSOrderedSet::cls().orderedSetWithArray(makeArray({ "a"_ns }).get());
    EXPECT_EQ(textOf(makeArray({ set.get() })), "(\n    {(\n        a\n    )}\n)");
}
