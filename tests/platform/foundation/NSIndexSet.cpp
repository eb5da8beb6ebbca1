// SPDX-License-Identifier: Apache-2.0
#include "foundation/NSIndexSet.h"

#include <set>

#include "support/Strings.h"

using namespace brindle;

namespace {

constexpr NSUInteger kNotFound = static_cast<NSUInteger>(NSNotFound);

Ref<NSMutableIndexSet> indexes(std::initializer_list<NSRange> ranges)
{
    Ref<NSMutableIndexSet> set = make<NSMutableIndexSet>();
    for (const NSRange range : ranges)
        set->addIndexesInRange(range);
    return set;
}

/// "1-2 5" for {1, 2, 5}.
std::string text(const Ref<NSIndexSet>& set)
{
    std::string out;
    set->enumerateRangesUsingBlock([&](NSRange range, bool*) {
        out += (out.empty() ? "" : " ") + std::to_string(range.location);
        if (range.length > 1)
            out += "-" + std::to_string(range.location + range.length - 1);
    });
    return out;
}

}

TEST(NSIndexSet, HoldsOneIndex)
{
    const Ref<NSIndexSet> set = NSIndexSet::cls().indexSetWithIndex(7);
    EXPECT_EQ(set->count(), 1u);
    EXPECT_TRUE(set->containsIndex(7));
    EXPECT_FALSE(set->containsIndex(6));
    EXPECT_FALSE(set->containsIndex(8));
}

TEST(NSIndexSet, AnEmptySetHasNoFirstAndLast)
{
    EXPECT_EQ(NSIndexSet::cls().indexSet()->firstIndex(), kNotFound);
    EXPECT_EQ(NSIndexSet::cls().indexSet()->lastIndex(), kNotFound);
    EXPECT_EQ(NSIndexSet::cls().indexSetWithIndexesInRange({ 5, 0 })->count(), 0u);
}

TEST(NSIndexSet, FirstAndLastAreTheEnds)
{
    EXPECT_EQ(indexes({ { 9, 2 }, { 3, 1 } })->firstIndex(), 3u);
    EXPECT_EQ(indexes({ { 9, 2 }, { 3, 1 } })->lastIndex(), 10u);
}

TEST(NSIndexSet, RangesThatTouchBecomeOne)
{
    EXPECT_EQ(text(indexes({ { 1, 2 }, { 5, 2 }, { 3, 2 } })), "1-6");
}

TEST(NSIndexSet, RangesThatOverlapBecomeOne)
{
    EXPECT_EQ(text(indexes({ { 2, 4 }, { 0, 3 }, { 8, 1 } })), "0-5 8");
}

TEST(NSIndexSet, RemovingInTheMiddleLeavesTheEnds)
{
    const Ref<NSMutableIndexSet> set = indexes({ { 0, 10 } });
    set->removeIndexesInRange({ 3, 4 });
    EXPECT_EQ(text(set), "0-2 7-9");
}

TEST(NSIndexSet, RemovingAcrossRangesCutsBoth)
{
    const Ref<NSMutableIndexSet> set = indexes({ { 0, 3 }, { 5, 3 }, { 10, 3 } });
    set->removeIndexesInRange({ 2, 9 });
    EXPECT_EQ(text(set), "0-1 11-12");
}

TEST(NSIndexSet, RemovingTheUnboundedRangeEmptiesTheSet)
{
    const Ref<NSMutableIndexSet> set = indexes({ { 4, 5 } });
    set->removeIndexesInRange({ 6, ~NSUInteger { 0 } });
    EXPECT_EQ(text(set), "4-5");
}

TEST(NSIndexSet, AnIndexTooLargeRaises)
{
    EXPECT_EQ(raisedBy([] { NSIndexSet::cls().indexSetWithIndex(kNotFound); }),
        "NSRangeException: *** -[NSIndexSet initWithIndexesInRange:]: range {9223372036854775807, "
        "1} exceeds maximum "
        "index value of NSNotFound - 1");
    EXPECT_NE(raisedBy([] { indexes({ { 1, kNotFound } }); }), "");
}

TEST(NSIndexSet, TheLargestIndexIsAllowed)
{
    EXPECT_TRUE(NSIndexSet::cls().indexSetWithIndex(kNotFound - 1)->containsIndex(kNotFound - 1));
}

TEST(NSIndexSet, FindsNeighbours)
{
    const Ref<NSIndexSet> set = indexes({ { 2, 2 }, { 7, 1 } });
    EXPECT_EQ(set->indexGreaterThanIndex(3), 7u);
    EXPECT_EQ(set->indexGreaterThanIndex(7), kNotFound);
    EXPECT_EQ(set->indexGreaterThanOrEqualToIndex(3), 3u);
    EXPECT_EQ(set->indexLessThanIndex(7), 3u);
    EXPECT_EQ(set->indexLessThanIndex(2), kNotFound);
    EXPECT_EQ(set->indexLessThanOrEqualToIndex(6), 3u);
    EXPECT_EQ(set->indexLessThanIndex(0), kNotFound);
    EXPECT_EQ(set->indexGreaterThanIndex(kNotFound), kNotFound);
}

TEST(NSIndexSet, KnowsWhatItContains)
{
    const Ref<NSIndexSet> set = indexes({ { 2, 4 }, { 9, 2 } });
    EXPECT_TRUE(set->containsIndexesInRange({ 3, 2 }));
    EXPECT_FALSE(set->containsIndexesInRange({ 5, 2 }));
    EXPECT_FALSE(set->containsIndexesInRange({ 3, 0 }));
    EXPECT_TRUE(set->containsIndexes(indexes({ { 4, 1 }, { 10, 1 } }).get()));
    EXPECT_FALSE(set->containsIndexes(indexes({ { 4, 1 }, { 8, 1 } }).get()));
    EXPECT_TRUE(set->intersectsIndexesInRange({ 0, 3 }));
    EXPECT_FALSE(set->intersectsIndexesInRange({ 6, 3 }));
    EXPECT_EQ(set->countOfIndexesInRange({ 4, 6 }), 3u);
}

TEST(NSIndexSet, EnumeratesUpAndDown)
{
    std::string out;
    const NSIndexSet::Visitor note = [&](NSUInteger index, bool*) { out += std::to_string(index); };
    indexes({ { 1, 2 }, { 5, 1 } })->enumerateIndexesUsingBlock(note);
    indexes({ { 1, 2 }, { 5, 1 } })
        ->enumerateIndexesWithOptions_usingBlock(NSEnumerationReverse, note);
    EXPECT_EQ(out, "125521");
}

TEST(NSIndexSet, EnumeratesWithinARange)
{
    std::string out;
    indexes({ { 1, 3 }, { 5, 3 } })
        ->enumerateIndexesInRange_options_usingBlock(
            { 2, 4 }, 0, [&](NSUInteger index, bool*) { out += std::to_string(index); });
    EXPECT_EQ(out, "235");
}

TEST(NSIndexSet, ABlockCanStopTheEnumeration)
{
    std::string out;
    indexes({ { 1, 9 } })->enumerateIndexesUsingBlock([&](NSUInteger index, bool* stop) {
        out += std::to_string(index);
        *stop = index == 3;
    });
    EXPECT_EQ(out, "123");
}

TEST(NSIndexSet, ABlockMayChangeTheSet)
{
    const Ref<NSMutableIndexSet> set = indexes({ { 1, 3 } });
    set->enumerateIndexesUsingBlock([&](NSUInteger index, bool*) { set->removeIndex(index); });
    EXPECT_EQ(set->count(), 0u);
}

TEST(NSIndexSet, ChoosesByABlock)
{
    EXPECT_EQ(text(indexes({ { 0, 6 } })->indexesPassingTest([](NSUInteger index, bool*) {
        return index % 3 != 1;
    })),
        "0 2-3 5");
}

TEST(NSIndexSet, ShiftingUpLeavesAGap)
{
    const Ref<NSMutableIndexSet> set = indexes({ { 0, 4 }, { 6, 1 } });
    set->shiftIndexesStartingAtIndex_by(2, 3);
    EXPECT_EQ(text(set), "0-1 5-6 9");
}

TEST(NSIndexSet, ShiftingDownOverwritesWhatIsBefore)
{
    const Ref<NSMutableIndexSet> set = indexes({ { 0, 4 }, { 6, 1 } });
    set->shiftIndexesStartingAtIndex_by(4, -2);
    EXPECT_EQ(text(set), "0-1 4");
}

TEST(NSIndexSet, ShiftingBelowZeroLosesThose)
{
    const Ref<NSMutableIndexSet> set = indexes({ { 1, 4 } });
    set->shiftIndexesStartingAtIndex_by(0, -3);
    EXPECT_EQ(text(set), "0-1");
}

TEST(NSIndexSet, ShiftingTooFarRaisesAndChangesNothing)
{
    const Ref<NSMutableIndexSet> set = indexes({ { 1, 4 } });
    EXPECT_NE(raisedBy([&] { set->shiftIndexesStartingAtIndex_by(0, NSNotFound); }), "");
    EXPECT_EQ(text(set), "1-4");
}

TEST(NSIndexSet, EqualSetsAreEqualHoweverTheyWereMade)
{
    EXPECT_TRUE(indexes({ { 1, 2 }, { 3, 1 } })
                    ->isEqual(NSIndexSet::cls().indexSetWithIndexesInRange({ 1, 3 }).get()));
    EXPECT_EQ(indexes({ { 1, 2 }, { 3, 1 } })->hash(),
        NSIndexSet::cls().indexSetWithIndexesInRange({ 1, 3 })->hash());
    EXPECT_FALSE(indexes({ { 1, 2 } })->isEqual(indexes({ { 1, 3 } }).get()));
}

TEST(NSIndexSet, ACopyOfAMutableSetIsImmutableAndApart)
{
    const Ref<NSMutableIndexSet> set = indexes({ { 1, 2 } });
    const Ref<NSObject> copy = set->copy();
    set->removeAllIndexes();
    EXPECT_TRUE(copy->isMemberOfClass(NSIndexSet::cls()));
    EXPECT_EQ(cast<NSIndexSet>(copy)->count(), 2u);
    EXPECT_EQ(copy->copy().get(), copy.get());
}

TEST(NSIndexSet, DescribesItsRanges)
{
    const std::string description = utf8(indexes({ { 1, 2 }, { 5, 1 } })->description());
    EXPECT_NE(description.find(">[number of indexes: 3 (in 2 ranges), indexes: (1-2 5)]"),
        std::string::npos);
    EXPECT_NE(utf8(make<NSIndexSet>()->description()).find(">(no indexes)"), std::string::npos);
}

TEST(NSIndexSet, AgreesWithAPlainSetThroughManyChanges)
{
    const Ref<NSMutableIndexSet> set = make<NSMutableIndexSet>();
    std::set<NSUInteger> plain;
    unsigned state = 1;
    const auto next
        = [&](unsigned below) { return (state = state * 1664525 + 1013904223) / 65536 % below; };
    for (int turn = 0; turn < 3000; ++turn) {
        const NSRange range { next(60), next(8) };
        const bool adds = next(2);
        adds ? set->addIndexesInRange(range) : set->removeIndexesInRange(range);
        for (NSUInteger i = 0; i < range.length; ++i) {
            if (adds)
                plain.insert(range.location + i);
            else
                plain.erase(range.location + i);
        }
        std::set<NSUInteger> found;
        set->enumerateIndexesUsingBlock([&](NSUInteger index, bool*) { found.insert(index); });
        ASSERT_EQ(found, plain) << turn;
        NSUInteger end = 0;
        set->enumerateRangesUsingBlock([&](NSRange part, bool*) {
            EXPECT_TRUE(part.length && (end == 0 || part.location > end));
            end = part.location + part.length;
        });
    }
}
