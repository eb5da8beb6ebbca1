// SPDX-License-Identifier: Apache-2.0
#include "foundation/NSSortDescriptor.h"

#include <gtest/gtest.h>

#include "foundation/NSData.h"
#include "foundation/NSDictionary.h"
#include "foundation/NSKeyedArchiver.h"
#include "foundation/NSMutableArray.h"
#include "foundation/NSNumber.h"
#include "foundation/NSSet.h"
#include "runtime/NSException.h"
#include "support/Strings.h"

using namespace brindle;

namespace {

Ref<NSDictionary> person(NSString* name, NSInteger age)
{
    const auto number = NSNumber::cls().numberWithInteger(age);
    return makeDictionary({ { "name"_ns, name }, { "age"_ns, number.get() } });
}

std::string namesOf(const NSArray* people)
{
    std::string names;
    for (NSObject* const each : *people)
        names += utf8Of(cast<NSString>(cast<NSDictionary>(each)->objectForKey("name"_ns)));
    return names;
}

Ref<NSArray> people()
{
    return makeArray({ person("c"_ns, 3).get(), person("a"_ns, 7).get(), person("b"_ns, 3).get() });
}

Ref<NSSortDescriptor> by(NSString* key, bool ascending = true)
{
    return NSSortDescriptor::cls().sortDescriptorWithKey_ascending(key, ascending);
}

TEST(NSSortDescriptor, OrdersByAKey)
{
    const auto rules = makeArray({ by("name"_ns).get() });
    EXPECT_EQ(namesOf(sortedArrayUsingDescriptors(people(), rules.get()).get()), "abc");
}

TEST(NSSortDescriptor, OrdersTheOtherWayRound)
{
    const auto rules = makeArray({ by("name"_ns, false).get() });
    EXPECT_EQ(namesOf(sortedArrayUsingDescriptors(people(), rules.get()).get()), "cba");
}

TEST(NSSortDescriptor, LetsTheNextRuleDecideBetweenEqualOnes)
{
    const auto rules = makeArray({ by("age"_ns).get(), by("name"_ns).get() });
    EXPECT_EQ(namesOf(sortedArrayUsingDescriptors(people(), rules.get()).get()), "bca");
}

TEST(NSSortDescriptor, KeepsTheOrderOfEqualOnes)
{
    const auto rules = makeArray({ by("age"_ns).get() });
    EXPECT_EQ(namesOf(sortedArrayUsingDescriptors(people(), rules.get()).get()), "cba");
}

TEST(NSSortDescriptor, ComparesTheObjectsThemselvesWithoutAKey)
{
    const auto words = makeArray({ "b"_ns, "a"_ns });
    const auto sorted = sortedArrayUsingDescriptors(words, makeArray({ by(nullptr).get() }).get());
    EXPECT_TRUE(sorted->isEqualToArray(makeArray({ "a"_ns, "b"_ns }).get()));
}

TEST(NSSortDescriptor, PutsNilFirst)
{
    const auto nameless = makeDictionary({});
    EXPECT_EQ(by("name"_ns)->compareObject_toObject(nameless.get(), person("a"_ns, 1).get()),
        NSOrderedAscending);
    EXPECT_EQ(by("name"_ns)->compareObject_toObject(nameless.get(), nameless.get()), NSOrderedSame);
}

TEST(NSSortDescriptor, ComparesByAnOperation)
{
    const auto rule = NSSortDescriptor::cls().sortDescriptorWithKey_ascending_selector(
        nullptr, true, selector<"caseInsensitiveCompare:">);
    EXPECT_EQ(rule->compareObject_toObject("A"_ns, "b"_ns), NSOrderedAscending);
    EXPECT_EQ(rule->compareObject_toObject("a"_ns, "A"_ns), NSOrderedSame);
}

TEST(NSSortDescriptor, ComparesByABlock)
{
    const auto rule = NSSortDescriptor::cls().sortDescriptorWithKey_ascending_comparator(
        nullptr, true, [](NSObject* a, NSObject* b) {
            const auto one = cast<NSString>(a)->length();
            const auto other = cast<NSString>(b)->length();
            return one < other ? NSOrderedAscending
                : one > other  ? NSOrderedDescending
                               : NSOrderedSame;
        });
    EXPECT_EQ(rule->compareObject_toObject("zz"_ns, "aaa"_ns), NSOrderedAscending);
    EXPECT_FALSE(rule->selector());
}

TEST(NSSortDescriptor, IsArchivedWithoutAnOperationThatNobodyNamed)
{
    constexpr SEL unnamed { 1ull << 63 | 4711 };
    const auto rule
        = alloc<NSSortDescriptor>()->initWithKey_ascending_selector("name"_ns, true, unnamed);
    EXPECT_TRUE(NSKeyedArchiver::cls().archivedDataWithRootObject(rule.get()));
}

TEST(NSSortDescriptor, TurnsRound)
{
    const auto reversed = by("name"_ns)->reversedSortDescriptor();
    EXPECT_FALSE(reversed->ascending());
    EXPECT_TRUE(reversed->isEqual(by("name"_ns, false).get()));
    EXPECT_EQ(reversed->hash(), by("name"_ns, false)->hash());
}

TEST(NSSortDescriptor, SortsAnArrayInPlaceAndASetIntoOne)
{
    const auto rules = makeArray({ by(nullptr).get() });
    const auto words = NSMutableArray::cls().arrayWithArray(makeArray({ "b"_ns, "a"_ns }).get());
    sortUsingDescriptors(words, rules.get());
    EXPECT_EQ(utf8Of(cast<NSString>(words->firstObject())), "a");
    const auto fromSet = sortedArrayUsingDescriptors(makeSet({ "b"_ns, "a"_ns }), rules.get());
    EXPECT_EQ(utf8Of(cast<NSString>(fromSet->firstObject())), "a");
}

TEST(NSSortDescriptor, RefusesANullOperation)
{
    EXPECT_THROW((void)NSSortDescriptor::cls().sortDescriptorWithKey_ascending_selector(
                     nullptr, true, SEL {}),
        Exception);
    EXPECT_THROW((void)NSSortDescriptor::cls().sortDescriptorWithKey_ascending_comparator(
                     nullptr, true, nullptr),
        Exception);
}

}
