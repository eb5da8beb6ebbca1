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

    constexpr std::size_t kBack = 0xFFB0; // -80

    /// A font with one table, and what its rules say.
    class RuledFont {
    public:
        RuledFont(const std::string& table, const std::string& contents)
            : RuledFont(std::map<std::string, std::string> { { table, contents } })
        {
        }
        explicit RuledFont(const std::map<std::string, std::string>& tables)
            : file_(smallFont(tables))
            , rules_(readLetterRules(std::as_bytes(std::span(file_))))
        {
        }
        const LetterRules& rules() const { return rules_; }
        LetterKerning::Kern kern(char first, char second) const
        {
            return rules_.kerning.behind(placeOf(first))[placeOf(second)];
        }
        std::int32_t step(char first, char second) const { return kern(first, second).step; }

    private:
        std::string file_;
        LetterRules rules_;
    };

    /// A part that lists "V" behind "A".
    FontBytes listed(std::size_t move = kBack)
    {
        FontBytes part { 1, 12, 4, 0, 1, 18 };
        return part.text(coverage('A').bytes()).word(1).word(smallGlyph('V')).word(move);
    }

    /// A part of two classes of seconds behind "A": "V" is the second of them, all others the first.
    FontBytes classes(std::size_t moveOfOthers, std::size_t move)
    {
        FontBytes part { 2, 20, 4, 0, 26, 34, 1, 2, moveOfOthers, move };
        part.text(coverage('A').bytes());
        part.text(FontBytes { 1, smallGlyph('A'), 1, 0 }.bytes());
        return part.text(FontBytes { 1, smallGlyph('V'), 1, 1 }.bytes());
    }

    /// A table of positions with one lookup of two parts.
    std::string positions(const FontBytes& first, const FontBytes& second)
    {
        // The first part stands where the list of one lookup with one part has it; the second one behind.
        const std::string one = ruleTable("kern", 2, first);
        const std::size_t lookup = one.size() - first.size() - 8;
        std::string table = one.substr(0, lookup);
        table += FontBytes { 2, 0, 2, 10, 10 + first.size() }.bytes();
        return table + first.bytes() + second.bytes();
    }

    /// The table of kerning that faces had before, with "V" behind "A".
    std::string oldTable(std::size_t coverage = 1)
    {
        return FontBytes { 0, 1, 0, 20, coverage, 1, 6, 0, 0, smallGlyph('A'), smallGlyph('V'),
            0xFFB1 }
            .bytes();
    }

}

TEST(LetterKerning, MovesThePairsThatAreListed)
{
    const RuledFont font("GPOS", ruleTable("kern", 2, listed()));
    EXPECT_EQ(font.step('A', 'V'), -80);
    EXPECT_EQ(font.step('A', 'W'), 0);
    EXPECT_EQ(font.step('V', 'A'), 0);
    EXPECT_EQ(font.kern('A', 'V').moved, 0);
    EXPECT_TRUE(font.kern('A', 'V').isSure);
}

TEST(LetterKerning, MovesLettersByTheirClasses)
{
    const RuledFont font("GPOS", ruleTable("kern", 2, classes(0, kBack)));
    EXPECT_EQ(font.step('A', 'V'), -80);
    EXPECT_EQ(font.step('A', 'W'), 0);
    EXPECT_EQ(font.step('V', 'V'), 0) << "it is not covered";
    EXPECT_TRUE(font.kern('A', 'W').isSure);
}

TEST(LetterKerning, IsNotSureOfLettersOfNoClassThatAreMoved)
{
    const RuledFont font("GPOS", ruleTable("kern", 2, classes(7, kBack)));
    EXPECT_TRUE(font.kern('A', 'V').isSure);
    EXPECT_FALSE(font.kern('A', 'W').isSure);
}

TEST(LetterKerning, IsSettledByTheFirstPartThatHasThePair)
{
    const RuledFont font("GPOS", positions(listed(0xFFFF), classes(0, kBack)));
    EXPECT_EQ(font.step('A', 'V'), -1);
}

TEST(LetterKerning, GoesOnToTheNextPartWithoutThePair)
{
    FontBytes other { 1, 12, 4, 0, 1, 18 };
    other.text(coverage('A').bytes()).word(1).word(smallGlyph('x')).word(5);
    const RuledFont font("GPOS", positions(other, classes(0, kBack)));
    EXPECT_EQ(font.step('A', 'V'), -80);
    EXPECT_EQ(font.step('A', 'x'), 5);
}

TEST(LetterKerning, IsNotSureWhetherAPartPassesLettersOfNoClassOn)
{
    FontBytes other { 1, 12, 4, 0, 1, 18 };
    other.text(coverage('A').bytes()).word(1).word(smallGlyph('x')).word(5);
    const RuledFont font("GPOS", positions(classes(0, kBack), other));
    EXPECT_FALSE(font.kern('A', 'x').isSure);
    EXPECT_TRUE(font.kern('A', 'y').isSure);
    EXPECT_TRUE(font.kern('A', 'V').isSure);
}

TEST(LetterKerning, AddsWhatSeveralLookupsDo)
{
    const RuledFont font(
        "GPOS", ruleTable("kern", 2, listed(), 2)); // the second is the same one again
    EXPECT_EQ(font.step('A', 'V'), -160);
}

TEST(LetterKerning, PassesOverFeaturesThatAreNotInUse)
{
    const RuledFont font("GPOS", ruleTable("cpsp", 2, listed()));
    EXPECT_EQ(font.step('A', 'V'), 0);
}

TEST(LetterKerning, DividesMovesOfTheOldTableBetweenBothLetters)
{
    const RuledFont font("kern", oldTable());
    EXPECT_EQ(font.step('A', 'V'), -79);
    EXPECT_EQ(font.kern('A', 'V').moved, -39);
    EXPECT_EQ(font.step('A', 'W'), 0);
}

TEST(LetterKerning, PassesOverTheOldTableWherePositionsKern)
{
    const RuledFont font(
        { { "kern", oldTable() }, { "GPOS", ruleTable("kern", 2, classes(0, 3)) } });
    EXPECT_EQ(font.step('A', 'V'), 3);
}

TEST(LetterKerning, ReadsTheOldTableBesidePositionsWithoutKerning)
{
    const RuledFont font({ { "kern", oldTable() }, { "GPOS", ruleTable("dist", 2, listed()) } });
    EXPECT_EQ(font.step('A', 'V'), -159);
}

TEST(LetterKerning, PassesOverAnOldTableForTextThatRunsDown)
{
    EXPECT_EQ(RuledFont("kern", oldTable(0)).step('A', 'V'), 0);
}

TEST(LetterKerning, IsLeftToShapingAcrossTheLine)
{
    EXPECT_TRUE(RuledFont("kern", oldTable(5)).rules().isFree.none());
}

TEST(LetterKerning, IsNotSureOfAListThatLeavesTheTable)
{
    FontBytes part { 1, 12, 4, 0, 1, 0x7000 };
    const RuledFont font("GPOS", ruleTable("kern", 2, part.text(coverage('A').bytes())));
    EXPECT_FALSE(font.kern('A', 'V').isSure);
    EXPECT_TRUE(font.kern('V', 'A').isSure);
}

TEST(LetterKerning, OfTooManyPartsIsLeftToShaping)
{
    EXPECT_FALSE(RuledFont("GPOS", ruleTable("kern", 2, listed(), 64)).rules().isFree.none());
    EXPECT_TRUE(RuledFont("GPOS", ruleTable("kern", 2, listed(), 65)).rules().isFree.none());
}

TEST(LetterRules, AreNotReadWhereAnotherShaperWouldTakeOver)
{
    for (const char* table : { "Silf", "morx", "kerx", "trak" })
        EXPECT_TRUE(RuledFont(table, "abcd").rules().isFree.none()) << table;
}

TEST(LetterRules, SetNoLetterFreeThatIsAMark)
{
    FontBytes table { 1, 0, 12, 0, 0, 0 };
    table.text(FontBytes { 1, smallGlyph('^'), 1, 3 }.bytes());
    const RuledFont font("GDEF", table.bytes());
    EXPECT_FALSE(font.rules().isFree[placeOf('^')]);
    EXPECT_TRUE(font.rules().isFree[placeOf('a')]);
}

}
