// SPDX-License-Identifier: Apache-2.0
#include "foundation/NSString.h"

#include <gtest/gtest.h>

#include "foundation/NSArray.h"
#include "runtime/Table.h"
#include "support/Strings.h"

namespace brindle {

/// Holds the letters of a text; the strings only ask it for membership.
class LetterSet : public NSObject {
    BRINDLE_OBJECT(LetterSet, NSObject)

public:
    std::u32string letters_;
};

template <> struct LetterSet::Methods<struct Membership> {
    static bool isMember(LetterSet& self, std::uint32_t c)
    {
        return self.letters_.find(static_cast<char32_t>(c)) != std::u32string::npos;
    }
    static void table(Builder& t) { t.methods({ { "longCharacterIsMember:", imp<isMember> } }); }
};
BRINDLE_RECORD(LetterSet, Membership)

namespace {

    /// Answers the elements with "|" between them.
    std::string joined(const Ref<NSArray>& array)
    {
        std::string out;
        for (NSUInteger i = 0; i < array->count(); ++i)
            out += (i ? "|" : "") + textOf(array->objectAtIndex(i));
        return out;
    }
    struct Letters {
        explicit Letters(std::u32string letters) { set->letters_ = std::move(letters); }
        operator NSCharacterSet*() const { return reinterpret_cast<NSCharacterSet*>(set.get()); }
        Ref<LetterSet> set = make<LetterSet>();
    };

    TEST(NSStringPieces, Appends)
    {
        EXPECT_EQ(utf8("a"_ns->stringByAppendingString("ä"_ns)), "aä");
        EXPECT_NE(raisedBy([] { "a"_ns->stringByAppendingString(nullptr); }), "");
    }
    TEST(NSStringPieces, SeparatesByAString)
    {
        EXPECT_EQ(joined("a, b, c"_ns->componentsSeparatedByString(", "_ns)), "a|b|c");
    }
    TEST(NSStringPieces, KeepsEmptyPieces)
    {
        EXPECT_EQ(joined(",a,,b,"_ns->componentsSeparatedByString(","_ns)), "|a||b|");
    }
    TEST(NSStringPieces, TheWholeTextIsOnePieceWithoutSeparator)
    {
        EXPECT_EQ("abc"_ns->componentsSeparatedByString("x"_ns)->count(), 1u);
        EXPECT_EQ("abc"_ns->componentsSeparatedByString(""_ns)->count(), 1u);
    }
    TEST(NSStringPieces, TheEmptyTextIsOneEmptyPiece)
    {
        EXPECT_EQ(""_ns->componentsSeparatedByString(","_ns)->count(), 1u);
    }
    TEST(NSStringPieces, SeparatesByASetOfLetters)
    {
        EXPECT_EQ(
            joined("a b😀c"_ns->componentsSeparatedByCharactersInSet(Letters(U" 😀"))), "a|b|c");
    }
    TEST(NSStringPieces, TrimsBothEnds)
    {
        EXPECT_EQ(utf8("  a b "_ns->stringByTrimmingCharactersInSet(Letters(U" "))), "a b");
        EXPECT_EQ(utf8("😀x😀"_ns->stringByTrimmingCharactersInSet(Letters(U"😀"))), "x");
    }
    TEST(NSStringPieces, TrimmingMayLeaveNothing)
    {
        EXPECT_EQ(utf8("   "_ns->stringByTrimmingCharactersInSet(Letters(U" "))), "");
    }
    TEST(NSStringPieces, FindsLettersOfASet)
    {
        EXPECT_EQ("ab😀b"_ns->rangeOfCharacterFromSet(Letters(U"😀b")), NSMakeRange(1, 1));
        EXPECT_EQ("ab😀x"_ns->rangeOfCharacterFromSet_options(Letters(U"😀b"), NSBackwardsSearch),
            NSMakeRange(2, 2));
        EXPECT_EQ("ab"_ns->rangeOfCharacterFromSet(Letters(U"x")).location,
            static_cast<NSUInteger>(NSNotFound));
        EXPECT_EQ(
            "ab"_ns->rangeOfCharacterFromSet_options(Letters(U"b"), NSAnchoredSearch).length, 0u);
    }
    TEST(NSStringPieces, FillsUpToALength)
    {
        EXPECT_EQ(utf8("abc"_ns->stringByPaddingToLength_withString_startingAtIndex(9, "."_ns, 0)),
            "abc......");
        EXPECT_EQ(utf8("abc"_ns->stringByPaddingToLength_withString_startingAtIndex(9, ". "_ns, 1)),
            "abc . . .");
    }
    TEST(NSStringPieces, CutsToALength)
    {
        EXPECT_EQ(
            utf8("abc"_ns->stringByPaddingToLength_withString_startingAtIndex(2, "."_ns, 0)), "ab");
    }
    TEST(NSStringPieces, FillingWithNothingRaises)
    {
        EXPECT_NE(raisedBy([] {
            "a"_ns->stringByPaddingToLength_withString_startingAtIndex(2, ""_ns, 0);
        }),
            "");
        EXPECT_NE(raisedBy([] {
            "a"_ns->stringByPaddingToLength_withString_startingAtIndex(2, nullptr, 0);
        }),
            "");
    }
    TEST(NSStringPieces, PathsHaveComponents)
    {
        const auto parts = [](NSString* path) { return joined(path->pathComponents()); };
        EXPECT_EQ(parts("/a/b"_ns), "/|a|b");
        EXPECT_EQ(parts("/a/b/"_ns), "/|a|b|/");
        EXPECT_EQ(parts("a//b"_ns), "a|b");
        EXPECT_EQ(parts("/"_ns), "/");
        EXPECT_EQ(parts("//"_ns), "/");
        EXPECT_EQ(parts("a/"_ns), "a|/");
        EXPECT_EQ(""_ns->pathComponents()->count(), 0u);
    }
    TEST(NSStringPieces, ComponentsMakeAPath)
    {
        for (NSString* path : { "/a/b"_ns, "a/b"_ns, "/"_ns, ""_ns })
            EXPECT_EQ(
                utf8(NSString::cls().pathWithComponents(path->pathComponents().get())), utf8(path));
    }

}

}
