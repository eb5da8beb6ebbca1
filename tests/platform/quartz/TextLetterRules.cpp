// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "quartz/text/LetterRules.h"
#include "support/SmallFont.h"

namespace brindle::text {

namespace {

    using test::coverage;
    using test::FontBytes;
    using test::placeOf;
    using test::ruleTable;
    using test::smallFont;
    using test::smallGlyph;

    LetterRules rulesOf(const std::string& file)
    {
        return readLetterRules(std::as_bytes(std::span(file)));
    }
    LetterRules rulesWith(const std::string& table, const std::string& contents)
    {
        return rulesOf(smallFont({ { table, contents } }));
    }

    /// "f" and "i" become one. - set: where the ligatures of "f" are said to lie.
    FontBytes ligature(std::size_t set = 14)
    {
        FontBytes part { 1, 8, 1, set };
        part.text(coverage('f').bytes());
        return part.word(1).word(4).word(90).word(2).word(smallGlyph('i'));
    }

    TEST(LetterRules, AreNoneInAFontThatHasNone)
    {
        const LetterRules rules = rulesOf(smallFont({}));
        EXPECT_TRUE(rules.isFree.all());
        for (const PlainLetters& behind : rules.acting)
            EXPECT_TRUE(behind.none());
    }

    TEST(LetterRules, NameTheLettersThatAreJoined)
    {
        const LetterRules rules = rulesWith("GSUB", ruleTable("liga", 4, ligature()));
        EXPECT_TRUE(rules.isFree.all());
        EXPECT_EQ(rules.acting[placeOf('f')].count(), 1u);
        EXPECT_TRUE(rules.acting[placeOf('f')][placeOf('i')]);
        EXPECT_TRUE(rules.acting[placeOf('i')].none());
    }

    TEST(LetterRules, DoNotCountThoseOfFeaturesThatAreNotInUse)
    {
        const LetterRules rules = rulesWith("GSUB", ruleTable("dlig", 4, ligature()));
        EXPECT_TRUE(rules.acting[placeOf('f')].none());
    }

    TEST(LetterRules, SetNoLetterFreeThatIsExchanged)
    {
        FontBytes exchange { 1, 6, 3 };
        const LetterRules rules
            = rulesWith("GSUB", ruleTable("ccmp", 1, exchange.text(coverage('a').bytes())));
        EXPECT_FALSE(rules.isFree[placeOf('a')]);
        EXPECT_TRUE(rules.isFree[placeOf('b')]);
    }

    TEST(LetterRules, LeaveKerningByPairsToThePairs)
    {
        FontBytes kerning { 1, 12, 4, 0, 1, 18 };
        kerning.text(coverage('A').bytes()).word(1).word(smallGlyph('V')).word(0xFFB0);
        EXPECT_TRUE(rulesWith("GPOS", ruleTable("kern", 2, kerning)).isFree.all());
    }

    TEST(LetterRules, SetNoLetterFreeThatMovesTheOneBehindIt)
    {
        FontBytes kerning { 1, 12, 4, 4, 1, 18 };
        kerning.text(coverage('A').bytes()).word(1).word(smallGlyph('V')).word(0xFFB0).word(10);
        const LetterRules rules = rulesWith("GPOS", ruleTable("kern", 2, kerning));
        EXPECT_FALSE(rules.isFree[placeOf('A')]);
        EXPECT_TRUE(rules.isFree[placeOf('V')]);
    }

    TEST(LetterRules, SetNoLetterFreeThatSharesItsGlyph)
    {
        const LetterRules rules
            = rulesOf(smallFont({}, { { 0x20, 0x60, 1 }, { 0x61, 0x7A, smallGlyph('A') } }));
        EXPECT_FALSE(rules.isFree[placeOf('a')]);
        EXPECT_FALSE(rules.isFree[placeOf('A')]);
        EXPECT_TRUE(rules.isFree[placeOf('+')]);
    }

    TEST(LetterRules, SetNoLetterFreeThatTheFontLacks)
    {
        const LetterRules rules = rulesOf(smallFont({}, { { 0x20, 0x5A, 1 } }));
        EXPECT_TRUE(rules.isFree[placeOf('A')]);
        EXPECT_FALSE(rules.isFree[placeOf('a')]);
    }

    TEST(LetterRules, NameTheLettersThatAClassOfLettersActsOn)
    {
        // Behind "T" something is done to "o".
        FontBytes part { 2, 16, 22, 30, 38, 2, 0, 42 };
        part.text(coverage('o').bytes()); // 16: where it begins
        part.text(FontBytes { 1, smallGlyph('T'), 1, 1 }.bytes()); // 22: what stands before
        part.text(FontBytes { 1, smallGlyph('o'), 1, 1 }.bytes()); // 30: what it is done to
        part.text(FontBytes { 2, 0 }.bytes()); // 38: what stands behind
        part.text(FontBytes { 1, 4 }.bytes()); // 42: one rule
        part.text(FontBytes { 1, 1, 1, 0, 0 }.bytes()); // one before, of class 1, and itself
        const LetterRules rules = rulesWith("GSUB", ruleTable("calt", 6, part));
        EXPECT_TRUE(rules.acting[placeOf('T')][placeOf('o')]);
        EXPECT_FALSE(rules.acting[placeOf('T')][placeOf('a')]);
    }

    TEST(LetterRules, AreNotReadFromATableThatLeavesItsEnd)
    {
        const LetterRules rules = rulesWith("GSUB", ruleTable("liga", 4, ligature(0xFFF0)));
        EXPECT_TRUE(rules.isFree.none());
    }

    TEST(LetterRules, AreNotReadFromAnOldKerningTableOfUnknownForm)
    {
        const FontBytes table { 0, 1, 0, 6, 0x0101 };
        EXPECT_TRUE(rulesWith("kern", table.bytes()).isFree.none());
    }

    TEST(LetterRules, AreNotReadFromATableThatLeadsToTheSamePlacesOverAndOver)
    {
        constexpr std::size_t kRanges = 3000;
        FontBytes exchange { 1, 6, 3, 2, kRanges };
        for (std::size_t i = 0; i < kRanges; ++i)
            exchange.word(200 + i).word(200 + i).word(i); // of other glyphs
        EXPECT_TRUE(rulesWith("GSUB", ruleTable("liga", 1, exchange)).isFree.all());
        EXPECT_TRUE(rulesWith("GSUB", ruleTable("liga", 1, exchange, 60)).isFree.none());
    }

    TEST(LetterRules, TakeNoMoreMemoryForGlyphsOfHighNumbers)
    {
        const LetterRules rules = rulesOf(smallFont({}, { { 0x20, 0x7E, 0xFFFFFF00 } }));
        EXPECT_EQ(rules.acting.size(), kPlainLetters);
    }

    TEST(LetterRules, OfBytesThatAreNoFontAreNone)
    {
        EXPECT_TRUE(rulesOf("").isFree.none());
        EXPECT_TRUE(rulesOf("no font at all").isFree.none());
    }

}

}
