// SPDX-License-Identifier: Apache-2.0
#include "foundation/NSMutableString.h"

#include <gtest/gtest.h>

#include "support/Strings.h"

namespace brindle {

namespace {

    Ref<NSMutableString> text(NSString* from) { return cast<NSMutableString>(from->mutableCopy()); }

    TEST(NSMutableString, AppendsTextOfEitherWidth)
    {
        const Ref<NSMutableString> string = text("a"_ns);
        string->appendString("b"_ns);
        string->appendString("ä"_ns);
        string->appendString("c"_ns);
        EXPECT_EQ(utf8(string), "abäc");
    }
    TEST(NSMutableString, AppendsByFormat)
    {
        const Ref<NSMutableString> string = text("n="_ns);
        string->appendFormat("%d%@"_ns, 3, "!"_ns);
        EXPECT_EQ(utf8(string), "n=3!");
    }
    TEST(NSMutableString, InsertsAtEveryPlace)
    {
        const Ref<NSMutableString> string = text("bd"_ns);
        string->insertString_atIndex("a"_ns, 0);
        string->insertString_atIndex("c"_ns, 2);
        string->insertString_atIndex("e"_ns, 4);
        EXPECT_EQ(utf8(string), "abcde");
    }
    TEST(NSMutableString, InsertingPastTheEndRaises)
    {
        EXPECT_EQ(raisedBy([] { text("ab"_ns)->insertString_atIndex("x"_ns, 3); }),
            "NSRangeException: *** -[NSMutableString insertString:atIndex:]: Range {3, 0} out of "
            "bounds; string length 2");
    }
    TEST(NSMutableString, DeletesARange)
    {
        const Ref<NSMutableString> string = text("abcd"_ns);
        string->deleteCharactersInRange({ 1, 2 });
        EXPECT_EQ(utf8(string), "ad");
    }
    TEST(NSMutableString, DeletingPastTheEndRaisesAndChangesNothing)
    {
        const Ref<NSMutableString> string = text("ab"_ns);
        EXPECT_NE(raisedBy([&] { string->deleteCharactersInRange({ 1, 2 }); }), "");
        EXPECT_EQ(utf8(string), "ab");
    }
    TEST(NSMutableString, AppendingNilRaises)
    {
        EXPECT_EQ(raisedBy([] { text("ab"_ns)->appendString(nullptr); }),
            "NSInvalidArgumentException: *** -[NSMutableString appendString:]: nil argument");
    }
    TEST(NSMutableString, CanTakeItselfIn)
    {
        const Ref<NSMutableString> string = text("aä"_ns);
        string->appendString(string.get());
        string->replaceCharactersInRange_withString({ 1, 1 }, string.get());
        EXPECT_EQ(utf8(string), "aaäaäaä");
    }
    TEST(NSMutableString, SetStringReplacesAll)
    {
        const Ref<NSMutableString> string = text("before"_ns);
        string->setString("nachher ü"_ns);
        EXPECT_EQ(utf8(string), "nachher ü");
    }
    TEST(NSMutableString, ReplacesOccurrencesAndCounts)
    {
        const Ref<NSMutableString> string = text("a.b.c."_ns);
        EXPECT_EQ(string->replaceOccurrencesOfString_withString_options_range(
                      "."_ns, ", "_ns, 0, { 0, 4 }),
            2u);
        EXPECT_EQ(utf8(string), "a, b, c.");
    }
    TEST(NSMutableString, Utf8FollowsEveryChange)
    {
        const Ref<NSMutableString> string = text("ä"_ns);
        EXPECT_STREQ(string->UTF8String(), "ä");
        string->appendString("x"_ns);
        EXPECT_STREQ(string->UTF8String(), "äx");
    }
    TEST(NSMutableString, HashFollowsEveryChange)
    {
        const Ref<NSMutableString> string = text("a"_ns);
        EXPECT_EQ(string->hash(), "a"_ns->hash());
        string->appendString("b"_ns);
        EXPECT_EQ(string->hash(), "ab"_ns->hash());
    }
    TEST(NSMutableString, CopiesStayWhenTheOriginalChanges)
    {
        const Ref<NSMutableString> string = text("a"_ns);
        const Ref<NSString> copy = cast<NSString>(string->copy());
        string->appendString("b"_ns);
        EXPECT_EQ(utf8(copy), "a");
    }
    TEST(NSMutableString, AWildCapacityIsOnlyAHint)
    {
        EXPECT_EQ(NSMutableString::cls().stringWithCapacity(~0ull)->length(), 0u);
    }

}

}
