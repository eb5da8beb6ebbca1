// SPDX-License-Identifier: Apache-2.0
#include "text/NSString+PercentEscapes.h"

#include <gtest/gtest.h>

#include "foundation/CFURL.h"
#include "support/Strings.h"

namespace brindle {

namespace {

    std::string added(NSString* text) { return utf8(stringByAddingPercentEscapes(text)); }
    std::string replaced(NSString* text) { return utf8(stringByReplacingPercentEscapes(text)); }
    Ref<NSString> loneSurrogate() { return stringFrom(std::u16string_view(u"a\xdc00z", 3)); }

    TEST(PercentEscapes, EscapeSpacesAndReservedCharacters)
    {
        EXPECT_EQ(added("a b&c"_ns), "a%20b%26c");
    }
    TEST(PercentEscapes, AreOfTheBytesOfUTF8)
    {
        EXPECT_EQ(added("ä"_ns), "%C3%A4");
        EXPECT_EQ(added("😀"_ns), "%F0%9F%98%80");
    }
    TEST(PercentEscapes, LeaveLettersDigitsAndFourMarks)
    {
        std::string all;
        for (int c = 0; c < 128; ++c)
            all += static_cast<char>(c);
        std::string kept;
        const std::string text = added(stringFrom(std::string_view(all)).get());
        for (std::size_t at = 0; at < text.size(); at += text[at] == '%' ? 3 : 1) {
            if (text[at] != '%')
                kept += text[at];
        }
        EXPECT_EQ(kept, "-.0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ_abcdefghijklmnopqrstuvwxyz~");
    }
    TEST(PercentEscapes, EscapeTheReservedSetWithCapitals)
    {
        EXPECT_EQ(added("!*'();:@&=+$,/?%#[]"_ns),
            "%21%2A%27%28%29%3B%3A%40%26%3D%2B%24%2C%2F%3F%25%23%5B%5D");
    }
    TEST(PercentEscapes, OfNothingAreNothing)
    {
        EXPECT_EQ(added(""_ns), "");
        EXPECT_EQ(replaced(""_ns), "");
    }
    TEST(PercentEscapes, OfAnUnpairedSurrogateAreNil)
    {
        EXPECT_EQ(added(loneSurrogate().get()), "(nil)");
    }
    TEST(PercentEscapes, AreReplacedByWhatTheyStandFor)
    {
        EXPECT_EQ(replaced("a%20b%26c"_ns), "a b&c");
        EXPECT_EQ(replaced("%c3%A4"_ns), "ä");
    }
    TEST(PercentEscapes, APlusStays) { EXPECT_EQ(replaced("a+b"_ns), "a+b"); }
    TEST(PercentEscapes, CutOffAreNil)
    {
        EXPECT_EQ(replaced("a%"_ns), "(nil)");
        EXPECT_EQ(replaced("a%2"_ns), "(nil)");
    }
    TEST(PercentEscapes, ThatAreNotHexadecimalAreNil)
    {
        EXPECT_EQ(replaced("%g0"_ns), "(nil)");
        EXPECT_EQ(replaced("%0g"_ns), "(nil)");
        EXPECT_EQ(replaced("%ä0"_ns), "(nil)");
    }
    TEST(PercentEscapes, OfBytesThatAreNotUTF8AreNil)
    {
        EXPECT_EQ(replaced("%ff"_ns), "(nil)");
        EXPECT_EQ(replaced("%c3"_ns), "(nil)");
    }
    TEST(PercentEscapes, ComeBackAsTheyWere)
    {
        NSString* const text = "a b/ä😀?%&=\n~"_ns;
        EXPECT_EQ(replaced(stringByAddingPercentEscapes(text).get()), utf8(text));
    }

    // ---- the C functions

    std::string plain(CFStringRef string, CFStringRef leave, CFStringRef escape = nullptr)
    {
        return utf8(created(CFURLCreateStringByAddingPercentEscapes(
            nullptr, string, leave, escape, kCFStringEncodingUTF8)));
    }
    std::string without(CFStringRef string, CFStringRef leave)
    {
        return utf8(created(CFURLCreateStringByReplacingPercentEscapesUsingEncoding(
            nullptr, string, leave, kCFStringEncodingUTF8)));
    }

    TEST(CFURL, EscapesOnlyWhatIsNotLegal)
    {
        EXPECT_EQ(
            plain("http://h/a b?c=d#[%]ä"_ns, nullptr), "http://h/a%20b?c=d%23%5B%25%5D%C3%A4");
    }
    TEST(CFURL, LeavesCharactersOnRequest) { EXPECT_EQ(plain("a b#c"_ns, "#"_ns), "a%20b#c"); }
    TEST(CFURL, EscapesLegalOnesOnRequest) { EXPECT_EQ(plain("a/b"_ns, nullptr, "/"_ns), "a%2Fb"); }
    TEST(CFURL, ReplacesNothingWithoutASetToLeave)
    {
        EXPECT_EQ(without("%20%"_ns, nullptr), "%20%");
    }
    TEST(CFURL, ReplacesAllWithTheEmptySet) { EXPECT_EQ(without("%20%2F"_ns, ""_ns), " /"); }
    TEST(CFURL, LeavesEscapesOnRequest) { EXPECT_EQ(without("%20%2f"_ns, "/"_ns), " %2f"); }
    TEST(CFURL, NilAnswersNil)
    {
        EXPECT_EQ(plain(nullptr, nullptr), "(nil)");
        EXPECT_EQ(without(nullptr, ""_ns), "(nil)");
    }
    TEST(CFURL, OtherEncodingsAnswerNil)
    {
        EXPECT_EQ(CFURLCreateStringByAddingPercentEscapes(nullptr, "a"_ns, nullptr, nullptr, 0x600),
            nullptr);
        EXPECT_EQ(
            CFURLCreateStringByReplacingPercentEscapesUsingEncoding(nullptr, "a"_ns, ""_ns, 0x600),
            nullptr);
    }
    TEST(CFURL, WhatIsCreatedBelongsToTheCaller)
    {
        CFStringRef text = CFURLCreateStringByAddingPercentEscapes(
            nullptr, "a b"_ns, nullptr, nullptr, kCFStringEncodingUTF8);
        WeakRef<NSString> watched(const_cast<NSString*>(text));
        CFRetain(text);
        CFRelease(text);
        EXPECT_NE(watched.get(), nullptr);
        CFRelease(text);
        EXPECT_EQ(watched.get(), nullptr);
    }

}

}
