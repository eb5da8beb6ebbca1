// SPDX-License-Identifier: Apache-2.0
#include "foundation/NSString.h"

#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "foundation/NSMutableString.h"
#include "runtime/Runtime.h"
#include "runtime/Table.h"
#include "support/Strings.h"

namespace brindle {

/// A string that keeps its text in its own way: the letters a, b, c ... of a given number.
class AlphabetString : public NSString {
    BRINDLE_OBJECT(AlphabetString, NSString)
    NSUInteger count_ = 4;
};

template <> struct AlphabetString::Methods<struct OwnText> {
    static NSUInteger length(AlphabetString& self) { return self.count_; }
    static unichar characterAtIndex(AlphabetString&, NSUInteger index)
    {
        return static_cast<unichar>(u'a' + index);
    }
    static void table(Builder& t)
    {
        t.methods({ { "length", imp<length> }, { "characterAtIndex:", imp<characterAtIndex> } });
    }
};
BRINDLE_RECORD(AlphabetString, OwnText)

namespace {

    TEST(NSString, LiteralsOfOneTextAreOneObject)
    {
        EXPECT_EQ("open"_ns, "open"_ns);
        EXPECT_EQ(strings::literal("open"), "open"_ns);
    }
    TEST(NSString, LiteralsOutliveTheirReleases)
    {
        for (int i = 0; i < 3; ++i)
            release("still here"_ns);
        EXPECT_EQ(utf8("still here"_ns), "still here");
    }
    TEST(NSString, LengthCountsUtf16Units)
    {
        EXPECT_EQ("a"_ns->length(), 1u);
        EXPECT_EQ("ä"_ns->length(), 1u);
        EXPECT_EQ("😀"_ns->length(), 2u);
    }
    TEST(NSString, CharacterAtIndexAnswersHalvesOfAPair)
    {
        EXPECT_EQ("😀"_ns->characterAtIndex(0), 0xd83d);
        EXPECT_EQ("😀"_ns->characterAtIndex(1), 0xde00);
    }
    TEST(NSString, CharacterPastTheEndRaises)
    {
        EXPECT_EQ(raisedBy([] { "abc"_ns->characterAtIndex(3); }),
            "NSRangeException: *** -[NSString characterAtIndex:]: Index 3 out of bounds; string "
            "length 3");
    }
    TEST(NSString, SubstringToIndexPastTheEndRaises)
    {
        EXPECT_EQ(raisedBy([] { ""_ns->substringToIndex(1); }),
            "NSRangeException: *** -[NSString substringToIndex:]: Index 1 out of bounds; string "
            "length 0");
    }
    TEST(NSString, SubstringFromIndexPastTheEndRaises)
    {
        EXPECT_EQ(raisedBy([] { "ab"_ns->substringFromIndex(3); }),
            "NSRangeException: *** -[NSString substringFromIndex:]: Index 3 out of bounds; string "
            "length 2");
    }
    TEST(NSString, SubstringWithRangePastTheEndRaises)
    {
        EXPECT_EQ(raisedBy([] {
            "ab"_ns->substringWithRange({ 1, 2 });
        }),
            "NSRangeException: *** -[NSString substringWithRange:]: Range {1, 2} out of bounds; "
            "string length 2");
    }
    TEST(NSString, SubstringWithRangeThatWrapsAroundRaises)
    {
        EXPECT_NE(raisedBy([] { "ab"_ns->substringWithRange({ 1, ~0ull }); }), "");
    }
    TEST(NSString, SubstringsReachFromEdgeToEdge)
    {
        EXPECT_EQ(utf8("abc"_ns->substringToIndex(3)), "abc");
        EXPECT_EQ(utf8("abc"_ns->substringFromIndex(3)), "");
        EXPECT_EQ(utf8("häßlich"_ns->substringWithRange({ 1, 2 })), "äß");
    }
    TEST(NSString, NullUtf8Raises)
    {
        EXPECT_EQ(raisedBy([] { NSString::cls().stringWithUTF8String(nullptr); }),
            "NSInvalidArgumentException: *** +[NSString stringWithUTF8String:]: NULL cString");
        EXPECT_EQ(raisedBy([] { alloc<NSString>()->initWithUTF8String(nullptr); }),
            "NSInvalidArgumentException: *** -[NSString initWithUTF8String:]: NULL cString");
    }
    TEST(NSString, InvalidUtf8GivesNil)
    {
        for (const char* bytes :
            { "\xff", "\xc3", "\xc0\x80", "\xe0\x80\x80", "\xed\xa0\x80", "a\x80",
                "\xf4\x90\x80\x80", "\xf0\x80\x80\x80", "\xe2\x82", "\xf8\x88\x80\x80\x80" })
            EXPECT_FALSE(NSString::cls().stringWithUTF8String(bytes));
    }
    TEST(NSString, EdgesOfUtf8ReadAsTheyAre)
    {
        const Ref<NSString> text = stringFrom(
            "\x7f\xc2\x80\xdf\xbf\xe0\xa0\x80\xef\xbf\xbf\xf0\x90\x80\x80\xf4\x8f\xbf\xbf");
        ASSERT_TRUE(text);
        EXPECT_EQ(utf16Of(text), u"\x7f\x80\u07ff\u0800\xffff\xd800\xdc00\xdbff\xdfff");
    }
    TEST(NSString, Utf8StringEndsWithNul)
    {
        EXPECT_STREQ("plain"_ns->UTF8String(), "plain");
        EXPECT_STREQ("größer 😀"_ns->UTF8String(), "größer 😀");
    }
    TEST(NSString, Utf8StringIsMadeOnce)
    {
        const Ref<NSString> text = stringFrom("größer");
        EXPECT_EQ(text->UTF8String(), text->UTF8String());
    }
    TEST(NSString, Utf8StringIsOneForAllThreads)
    {
        const Ref<NSString> text = stringFrom("für alle");
        std::vector<const char*> answers(4);
        std::vector<std::thread> threads;
        for (const char*& answer : answers)
            threads.emplace_back([&answer, &text] { answer = text->UTF8String(); });
        for (std::thread& thread : threads)
            thread.join();
        for (const char* answer : answers)
            EXPECT_EQ(answer, text->UTF8String());
    }
    TEST(NSString, UnpairedSurrogatesReadAsReplacementInUtf8)
    {
        EXPECT_EQ(utf8(stringFrom(u"a\xd800")), "a\xef\xbf\xbd");
    }
    TEST(NSString, KeepsNulsInside)
    {
        const Ref<NSString> text = stringFrom(std::string_view("a\0b", 3));
        EXPECT_EQ(text->length(), 3u);
        EXPECT_EQ(utf8Of(text), std::string("a\0b", 3));
    }
    TEST(NSString, NilReadsAsEmptyInPlainFunctions)
    {
        EXPECT_EQ(utf8Of(Ref<NSString>()), "");
        EXPECT_EQ(utf16Of(Ref<NSString>()), u"");
    }
    TEST(NSString, EqualTextIsEqualWhateverTheStorage)
    {
        const Ref<NSMutableString> wide = cast<NSMutableString>("aä"_ns->mutableCopy());
        wide->deleteCharactersInRange({ 1, 1 });
        EXPECT_TRUE(wide->isEqual("a"_ns));
        EXPECT_TRUE("a"_ns->isEqual(wide.get()));
        EXPECT_EQ(wide->hash(), "a"_ns->hash());
    }
    TEST(NSString, ComposedAndDecomposedAreNotEqual)
    {
        EXPECT_FALSE("\u00e9"_ns->isEqualToString("e\u0301"_ns));
    }
    TEST(NSString, IsNotEqualToNilOrToOtherObjects)
    {
        EXPECT_FALSE("a"_ns->isEqual(nullptr));
        EXPECT_FALSE("a"_ns->isEqualToString(nullptr));
        EXPECT_FALSE("NSObject"_ns->isEqual(NSObject::cls().object));
    }

    TEST(NSString, EveryByteOfEveryLengthCountsForEquality)
    {
        for (std::size_t length = 1; length <= 80; ++length) {
            const std::string text(length, 'a');
            EXPECT_TRUE(stringFrom(text)->isEqualToString(stringFrom(text).get()));
            for (std::size_t i = 0; i < length; ++i) {
                std::string other = text;
                other[i] = 'b';
                EXPECT_FALSE(stringFrom(text)->isEqualToString(stringFrom(other).get()))
                    << i << " of " << length;
            }
        }
    }
    TEST(NSString, CopyOfAnImmutableStringIsItself)
    {
        const Ref<NSString> text = stringFrom("once");
        EXPECT_EQ(text->copy().get(), text.get());
        EXPECT_EQ(text->description().get(), text.get());
    }
    TEST(NSString, OnlyMutableStringsAreMutable)
    {
        EXPECT_FALSE("a"_ns->isKindOfClass(NSMutableString::cls()));
        EXPECT_TRUE("a"_ns->mutableCopy()->isKindOfClass(NSMutableString::cls()));
        EXPECT_FALSE(
            NSMutableString::cls().string()->copy()->isKindOfClass(NSMutableString::cls()));
    }
    TEST(NSString, ClassForArchivesFollowsMutability)
    {
        const auto archived
            = [](NSObject* text) { return text->send<"classForKeyedArchiver", Class*>(); };
        EXPECT_EQ(archived("a"_ns), NSString::cls().object);
        EXPECT_EQ(archived("a"_ns->mutableCopy().get()), NSMutableString::cls().object);
    }
    TEST(NSString, ClassOperationsOfTheMutableClassMakeMutableStrings)
    {
        const Ref<NSString> text = NSMutableString::cls().stringWithUTF8String("abc");
        EXPECT_TRUE(text->isKindOfClass(NSMutableString::cls()));
        EXPECT_EQ(utf8(text), "abc");
    }
    TEST(NSString, ReadsTextThatASubclassKeeps)
    {
        const Ref<AlphabetString> own = make<AlphabetString>();
        EXPECT_TRUE(own->isEqual("abcd"_ns));
        EXPECT_TRUE("abcd"_ns->isEqual(own.get()));
        EXPECT_EQ(own->hash(), "abcd"_ns->hash());
        EXPECT_STREQ(own->UTF8String(), "abcd");
        EXPECT_EQ(utf8(own->uppercaseString()), "ABCD");
        EXPECT_EQ("xxabcd"_ns->rangeOfString(own.get()), NSMakeRange(2, 4));
    }
    TEST(NSString, GetCharactersCopiesARange)
    {
        unichar units[2] {};
        "aäb"_ns->getCharacters_range(units, { 1, 2 });
        EXPECT_EQ(units[0], u'ä');
        EXPECT_EQ(units[1], u'b');
    }
    TEST(NSString, AnswersForNilReceiversAreEmpty)
    {
        NSString* const none = nullptr;
        EXPECT_EQ(maybe(none)->length(), 0u);
        EXPECT_FALSE(maybe(none)->stringByAppendingFormat("%d"_ns, 1));
        EXPECT_EQ(maybe(none)->UTF8String(), nullptr);
    }

}

}
