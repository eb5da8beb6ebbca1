// SPDX-License-Identifier: Apache-2.0
#include "foundation/NSCharacterSet.h"

#include <gtest/gtest.h>

#include "foundation/NSData.h"
#include "foundation/NSKeyedArchiver.h"
#include "foundation/NSKeyedUnarchiver.h"
#include "foundation/NSString+CharacterSets.h"
#include "runtime/Table.h"
#include "support/Strings.h"

namespace brindle {

/// Decides by a rule of its own.
class EvenSet : public NSCharacterSet {
    BRINDLE_OBJECT(EvenSet, NSCharacterSet)
};

template <> struct EvenSet::Methods<struct Membership> {
    static bool isMember(EvenSet&, std::uint32_t code) { return code % 2 == 0 && code < 1000; }
    static void table(Builder& t) { t.methods({ { "longCharacterIsMember:", imp<isMember> } }); }
};
BRINDLE_RECORD(EvenSet, Membership)

namespace {

    Ref<NSCharacterSet> setOf(NSString* letters)
    {
        return NSCharacterSet::cls().characterSetWithCharactersInString(letters);
    }
    /// Answers the letters of a text that are in a set.
    std::string kept(const Ref<NSCharacterSet>& set, std::u32string_view letters)
    {
        std::u32string out;
        for (const char32_t c : letters) {
            if (set->longCharacterIsMember(c))
                out += c;
        }
        return utf8(NSString::cls().alloc()->send<"initWithBytes:length:encoding:", Ref<NSString>>(
            static_cast<const void*>(out.data()), static_cast<NSUInteger>(out.size() * 4),
            static_cast<NSUInteger>(NSUTF32LittleEndianStringEncoding)));
    }
    constexpr std::u32string_view kSample = U"aZß9\t \n+!ǅ\u0301٣\u00a0😀";

    TEST(NSCharacterSet, HoldsTheLettersOfAString)
    {
        EXPECT_EQ(kept(setOf("aß😀"_ns), kSample), "aß😀");
    }
    TEST(NSCharacterSet, HoldsARange)
    {
        const auto set = NSCharacterSet::cls().characterSetWithRange({ 'x', 0x100 });
        EXPECT_FALSE(set->characterIsMember('w'));
        EXPECT_TRUE(set->characterIsMember('x'));
        EXPECT_TRUE(set->characterIsMember('x' + 0xff));
        EXPECT_FALSE(set->characterIsMember('x' + 0x100));
    }
    TEST(NSCharacterSet, ARangeEndsWithUnicode)
    {
        const auto set
            = NSCharacterSet::cls().characterSetWithRange({ 0x10fffe, ~NSUInteger { 0 } });
        EXPECT_TRUE(set->longCharacterIsMember(0x10ffff));
        EXPECT_FALSE(set->longCharacterIsMember(0x110000));
    }
    TEST(NSCharacterSet, AnEmptyRangeHasNoMember)
    {
        EXPECT_FALSE(NSCharacterSet::cls().characterSetWithRange({ 1, 0 })->characterIsMember(1));
    }
    TEST(NSCharacterSet, NamedSetsFollowUnicode)
    {
        const auto c = NSCharacterSet::cls();
        EXPECT_EQ(kept(c.letterCharacterSet(), kSample), "aZßǅ\u0301");
        EXPECT_EQ(kept(c.lowercaseLetterCharacterSet(), kSample), "aß");
        EXPECT_EQ(kept(c.uppercaseLetterCharacterSet(), kSample), "Zǅ");
        EXPECT_EQ(kept(c.capitalizedLetterCharacterSet(), kSample), "ǅ");
        EXPECT_EQ(kept(c.nonBaseCharacterSet(), kSample), "\u0301");
        EXPECT_EQ(kept(c.decimalDigitCharacterSet(), kSample), "9٣");
        EXPECT_EQ(kept(c.alphanumericCharacterSet(), kSample), "aZß9ǅ\u0301٣");
        EXPECT_EQ(kept(c.whitespaceCharacterSet(), kSample), "\t \u00a0");
        EXPECT_EQ(kept(c.newlineCharacterSet(), kSample), "\n");
        EXPECT_EQ(kept(c.whitespaceAndNewlineCharacterSet(), kSample), "\t \n\u00a0");
        EXPECT_EQ(kept(c.punctuationCharacterSet(), kSample), "!");
        EXPECT_EQ(kept(c.symbolCharacterSet(), kSample), "+😀");
        EXPECT_EQ(kept(c.controlCharacterSet(), kSample), "\t\n");
        EXPECT_EQ(kept(c.decomposableCharacterSet(), U"aä"), "ä");
    }
    TEST(NSCharacterSet, IllegalAreTheCodePointsWithoutLetter)
    {
        const auto set = NSCharacterSet::cls().illegalCharacterSet();
        EXPECT_TRUE(set->longCharacterIsMember(0xfffe));
        EXPECT_FALSE(set->characterIsMember('a'));
    }
    TEST(NSCharacterSet, ANamedSetIsOneObject)
    {
        EXPECT_EQ(
            NSCharacterSet::cls().letterCharacterSet(), NSCharacterSet::cls().letterCharacterSet());
    }
    TEST(NSCharacterSet, PartsOfURLsHaveTheirOwnSets)
    {
        constexpr std::u32string_view sample = U"a-;:@/?#[]%&ä";
        const auto c = NSCharacterSet::cls();
        EXPECT_EQ(kept(c.URLUserAllowedCharacterSet(), sample), "a-;&");
        EXPECT_EQ(kept(c.URLPasswordAllowedCharacterSet(), sample), "a-;&");
        EXPECT_EQ(kept(c.URLHostAllowedCharacterSet(), sample), "a-;:[]&");
        EXPECT_EQ(kept(c.URLPathAllowedCharacterSet(), sample), "a-:@/&");
        EXPECT_EQ(kept(c.URLQueryAllowedCharacterSet(), sample), "a-;:@/?&");
        EXPECT_EQ(kept(c.URLFragmentAllowedCharacterSet(), sample), "a-;:@/?&");
    }
    TEST(NSCharacterSet, TheInvertedSetHoldsTheRest)
    {
        EXPECT_EQ(kept(setOf("aß"_ns)->invertedSet(), U"abßä😀"), "bä😀");
        EXPECT_EQ(kept(NSCharacterSet::cls().letterCharacterSet()->invertedSet(), kSample),
            "9\t \n+!٣\u00a0😀");
    }
    TEST(NSCharacterSet, InvertedTwiceIsEqual)
    {
        const auto set = setOf("aß😀"_ns);
        EXPECT_TRUE(set->invertedSet()->invertedSet()->isEqual(set.get()));
    }
    TEST(NSCharacterSet, EqualSetsHaveEqualHashes)
    {
        const auto range = NSCharacterSet::cls().characterSetWithRange({ 'a', 3 });
        EXPECT_TRUE(range->isEqual(setOf("cba"_ns).get()));
        EXPECT_EQ(range->hash(), setOf("cba"_ns)->hash());
        EXPECT_FALSE(range->isEqual(setOf("ab"_ns).get()));
        EXPECT_FALSE(range->isEqual("abc"_ns));
    }
    TEST(NSCharacterSet, KnowsItsSubsets)
    {
        const auto letters = NSCharacterSet::cls().letterCharacterSet();
        EXPECT_TRUE(letters->isSupersetOfSet(setOf("azß"_ns).get()));
        EXPECT_FALSE(letters->isSupersetOfSet(setOf("az9"_ns).get()));
        EXPECT_TRUE(setOf("a"_ns)->isSupersetOfSet(setOf(""_ns).get()));
    }
    TEST(NSCharacterSet, KnowsItsPlanes)
    {
        const auto set = setOf("😀"_ns);
        EXPECT_FALSE(set->hasMemberInPlane(0));
        EXPECT_TRUE(set->hasMemberInPlane(1));
        EXPECT_FALSE(set->hasMemberInPlane(17));
    }
    TEST(NSCharacterSet, ABitmapMakesTheSameSet)
    {
        const auto set = setOf("aß😀\U0010ffff"_ns);
        const auto bitmap = set->bitmapRepresentation();
        EXPECT_EQ(bitmap->length(), 8192u + 2 * 8193u);
        EXPECT_TRUE(NSCharacterSet::cls()
                        .characterSetWithBitmapRepresentation(bitmap.get())
                        ->isEqual(set.get()));
    }
    TEST(NSCharacterSet, DamagedBitmapsMakeNoSet)
    {
        const auto made = [](std::size_t size, unsigned char plane) {
            std::vector<unsigned char> bytes(size);
            if (size > 8192)
                bytes[8192] = plane;
            return NSCharacterSet::cls().characterSetWithBitmapRepresentation(
                dataFrom(bytes).get());
        };
        EXPECT_EQ(made(8191, 0), nullptr);
        EXPECT_EQ(made(8193, 0), nullptr);
        EXPECT_EQ(made(8192 + 8193, 17), nullptr);
        EXPECT_NE(made(8192 + 8193, 16), nullptr);
        EXPECT_EQ(NSCharacterSet::cls().characterSetWithBitmapRepresentation(nullptr), nullptr);
    }
    TEST(NSCharacterSet, ComesBackFromAnArchive)
    {
        const auto set = setOf("aß😀"_ns);
        const auto data = NSKeyedArchiver::cls().archivedDataWithRootObject(set.get());
        const auto back = NSKeyedUnarchiver::cls().unarchiveObjectWithData(data.get());
        EXPECT_TRUE(back->isEqual(set.get()));
    }
    TEST(NSCharacterSet, ANilStringRaises)
    {
        EXPECT_NE(raisedBy([] { setOf(nullptr); }), "");
    }
    TEST(NSCharacterSet, ASubclassMayDecideByItself)
    {
        const Ref<EvenSet> even = make<EvenSet>();
        EXPECT_TRUE(even->characterIsMember('b'));
        EXPECT_FALSE(even->characterIsMember('a'));
        EXPECT_TRUE(even->invertedSet()->characterIsMember('a'));
        EXPECT_EQ("abc"_ns->rangeOfCharacterFromSet(even.get()), NSMakeRange(1, 1));
    }

    // ---- mutable

    Ref<NSMutableCharacterSet> mutableOf(NSString* letters)
    {
        return cast<NSMutableCharacterSet>(setOf(letters)->mutableCopy());
    }

    TEST(NSMutableCharacterSet, AddsAndRemoves)
    {
        const auto set = mutableOf("a"_ns);
        set->addCharactersInString("bß"_ns);
        set->addCharactersInRange({ 0x1f600, 3 });
        set->removeCharactersInString("a"_ns);
        set->removeCharactersInRange({ 0x1f601, 1 });
        EXPECT_EQ(kept(set, U"abß😀😁😂"), "bß😀😂");
    }
    TEST(NSMutableCharacterSet, LettersCanBeRemovedFromANamedSet)
    {
        const Ref<NSMutableCharacterSet> set = cast<NSMutableCharacterSet>(
            NSCharacterSet::cls().letterCharacterSet()->mutableCopy());
        set->removeCharactersInString("aß"_ns);
        EXPECT_EQ(kept(set, kSample), "Zǅ\u0301");
    }
    TEST(NSMutableCharacterSet, FormsUnionAndIntersection)
    {
        const auto set = mutableOf("aß9"_ns);
        set->formIntersectionWithCharacterSet(NSCharacterSet::cls().letterCharacterSet().get());
        EXPECT_EQ(kept(set, kSample), "aß");
        set->formUnionWithCharacterSet(NSCharacterSet::cls().decimalDigitCharacterSet().get());
        EXPECT_EQ(kept(set, kSample), "aß9٣");
        set->invert();
        EXPECT_EQ(kept(set, U"aß9٣z"), "z");
    }
    TEST(NSMutableCharacterSet, ACopyDoesNotFollowChanges)
    {
        const auto set = mutableOf("a"_ns);
        const Ref<NSCharacterSet> copy = cast<NSCharacterSet>(set->copy());
        set->addCharactersInString("b"_ns);
        EXPECT_FALSE(copy->characterIsMember('b'));
        EXPECT_FALSE(copy->isKindOfClass(NSMutableCharacterSet::cls()));
    }
    TEST(NSMutableCharacterSet, NamedSetsOfTheClassAreOwnAndMutable)
    {
        const auto set
            = cast<NSMutableCharacterSet>(NSMutableCharacterSet::cls().newlineCharacterSet());
        set->addCharactersInString("x"_ns);
        EXPECT_FALSE(NSMutableCharacterSet::cls().newlineCharacterSet()->characterIsMember('x'));
    }

    // ---- escapes

    std::string escaped(NSString* text)
    {
        return utf8(stringByAddingPercentEncodingWithAllowedCharacters(
            text, NSCharacterSet::cls().URLQueryAllowedCharacterSet().get()));
    }
    std::string unescaped(NSString* text) { return utf8(stringByRemovingPercentEncoding(text)); }

    TEST(PercentEncoding, KeepsTheAllowedCharacters)
    {
        EXPECT_EQ(escaped("a b/c%"_ns), "a%20b/c%25");
    }
    TEST(PercentEncoding, EscapesTheBytesOfUTF8)
    {
        EXPECT_EQ(escaped("ä😀"_ns), "%C3%A4%F0%9F%98%80");
    }
    TEST(PercentEncoding, EscapesOtherThanASCIIEvenWhenAllowed)
    {
        EXPECT_EQ(
            utf8(stringByAddingPercentEncodingWithAllowedCharacters("äa"_ns, setOf("äa"_ns).get())),
            "%C3%A4a");
    }
    TEST(PercentEncoding, UnpairedSurrogatesHaveNoEscapes)
    {
        EXPECT_EQ(escaped(stringFrom(std::u16string_view(u"a\xd800", 2)).get()), "(nil)");
    }
    TEST(PercentEncoding, RemovesEscapes)
    {
        EXPECT_EQ(unescaped("a%20b%C3%A4%f0%9f%98%80+"_ns), "a bä😀+");
        EXPECT_EQ(unescaped("ä%20"_ns), "ä ");
        EXPECT_EQ(unescaped(""_ns), "");
    }
    TEST(PercentEncoding, MalformedEscapesAnswerNil)
    {
        for (NSString* text : { "%"_ns, "a%2"_ns, "%zz"_ns, "%2g"_ns, "%%20"_ns })
            EXPECT_EQ(unescaped(text), "(nil)") << utf8(text);
    }
    TEST(PercentEncoding, BytesThatAreNoUTF8AnswerNil)
    {
        for (NSString* text : { "%ff"_ns, "%C3"_ns, "%C0%80"_ns, "%ED%A0%80"_ns })
            EXPECT_EQ(unescaped(text), "(nil)") << utf8(text);
    }
    TEST(PercentEncoding, AnEscapedEndOfTextIsALetter)
    {
        EXPECT_EQ(unescaped("a%00b"_ns), std::string("a\0b", 3));
    }
    TEST(CharacterSearch, StaysInTheRange)
    {
        const auto find = [](NSStringCompareOptions options, NSRange range) {
            return rangeOfCharacterFromSet_options_range(
                "xaxax"_ns, setOf("a"_ns).get(), options, range);
        };
        EXPECT_EQ(find(0, { 2, 3 }), NSMakeRange(3, 1));
        EXPECT_EQ(find(NSBackwardsSearch, { 0, 3 }), NSMakeRange(1, 1));
        EXPECT_EQ(find(NSAnchoredSearch, { 3, 2 }), NSMakeRange(3, 1));
        EXPECT_EQ(find(NSAnchoredSearch, { 2, 2 }).length, 0u);
        EXPECT_NE(raisedBy([&] { find(0, { 4, 2 }); }), "");
    }

}

}
