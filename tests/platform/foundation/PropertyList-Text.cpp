// SPDX-License-Identifier: Apache-2.0
#include "foundation/NSPropertyListSerialization.h"

#include "foundation/NSMutableDictionary.h"
#include "foundation/NSMutableString.h"
#include "support/PropertyLists.h"

using namespace brindle;
using namespace brindle::test;
using namespace std::literals;

namespace {

std::string readText(std::string_view text)
{
    const Ref<NSObject> value = readList(text);
    return value ? textOf(value) : readFailure(text);
}

std::string nested(int depth, char open, char close)
{
    return std::string(static_cast<std::size_t>(depth), open)
        + std::string(static_cast<std::size_t>(depth), close);
}

}

TEST(TextList, ReadsDictionariesArraysAndData)
{
    EXPECT_EQ(readText("{ a = 1; b = { }; }"), "{\n    a = 1;\n    b = {\n    };\n}");
    EXPECT_EQ(readText("( a, (b), )"), "(\n    a,\n    (\n        b\n    )\n)");
    EXPECT_EQ(readText("()"), "(\n)");
    EXPECT_EQ(bytesIn(cast<NSData>(readList("<0a0B 0c\n>"))), "\x0a\x0b\x0c");
    EXPECT_EQ(bytesIn(cast<NSData>(readList("<>"))), "");
}

TEST(TextList, AnswersTheFormat)
{
    NSPropertyListFormat format {};
    const Ref<NSObject> value
        = NSPropertyListSerialization::cls().propertyListWithData_options_format_error(
            dataOf("()").get(), 0, &format, nullptr);
    EXPECT_EQ(format, NSPropertyListOpenStepFormat);
}

TEST(TextList, OneBareWordIsAString)
{
    EXPECT_EQ(readText("word"), "word");
    EXPECT_EQ(readText("\n /usr/lib$x_y:z.a-1 \n"), "/usr/lib$x_y:z.a-1");
}

TEST(TextList, SeveralPlainWordsAreNoList)
{
    EXPECT_EQ(readText("several plain words"), "3840: line 1: text stands behind the value");
}

TEST(TextList, NothingIsNoList)
{
    EXPECT_EQ(readText(""), "3840: line 1: there is no value");
    EXPECT_EQ(readText(" \n// only a comment"), "3840: line 2: there is no value");
}

TEST(TextList, RubbishIsNoList)
{
    EXPECT_EQ(readText("\x01\x02\x03"), "3840: line 1: a value is missing");
    EXPECT_EQ(readText("\x89PNG\r\n"), "3840: line 1: the text is not UTF-8");
    EXPECT_EQ(readText("\0\0\0\0"sv), "3840: line 1: a value is missing");
}

TEST(TextList, AStringsFileIsADictionary)
{
    EXPECT_EQ(readText("/* Title */\n\"Hello\" = \"Bonjour\"; // greeting\nshort;\n"),
        "{\n    Hello = Bonjour;\n    short = short;\n}");
}

TEST(TextList, AStringsFileMayBeUTF16)
{
    std::string bytes = "\xff\xfe";
    for (const char c : "\"a\" = \"b\";"s)
        bytes += { c, '\0' };
    EXPECT_EQ(readText(bytes), "{\n    a = b;\n}");
}

TEST(TextList, CommentsAreSkipped)
{
    EXPECT_EQ(readText("{ // a = 1;\r b /* = */ = /**/ 2; }"), "{\n    b = 2;\n}");
    EXPECT_EQ(readText("( /* x )"), "3840: line 1: a comment does not end");
}

TEST(TextList, QuotedStringsHaveEscapes)
{
    EXPECT_EQ(readText(R"("\a\b\f\n\r\t\v\"\'\\\q")"), "\a\b\f\n\r\t\v\"'\\q");
    EXPECT_EQ(readText("'a \"b\" c'"), "a \"b\" c");
    EXPECT_EQ(readText("\"a\\\nb\""), "a\nb");
    EXPECT_EQ(readText("\"\\ä\""), "ä");
}

TEST(TextList, OctalEscapesAreLetters)
{
    EXPECT_EQ(readText(R"("\101\60x\0601")"), "A0x01");
    EXPECT_EQ(readText(R"("\331\252\321")"), "ä“±");
}

TEST(TextList, UnitsAreEscapedInHexadecimal)
{
    EXPECT_EQ(readText(R"("\U00e4\U20AC\Ud83d\Ude00\U41!\U")"), "ä€😀A!U");
    EXPECT_EQ(
        readText(R"("\Ud83d")"), "3840: line 1: a string has a surrogate without its partner");
}

TEST(TextList, DescriptionsAreLists)
{
    const Ref<NSObject> value = makeDictionary(
        { { "a b"_ns, makeArray({ "ä\"\n"_ns }).get() }, { "d"_ns, dataOf("\x01\xff").get() } });
    EXPECT_TRUE(readList(textOf(value))->isEqual(value.get()));
}

TEST(TextList, WhatIsMissingIsTold)
{
    const std::pair<const char*, const char*> cases[] = {
        { "{ a = 1 }", "a semicolon is missing" },
        { "{ a 1; }", "a key has no value" },
        { "{ a = ; }", "a value is missing" },
        { "{ a = 1;", "the text ends too early" },
        { "( a b )", "a comma or parenthesis is missing" },
        { "( a", "a comma or parenthesis is missing" },
        { "( a,", "the text ends too early" },
        { "( , )", "a value is missing" },
        { "<0a0>", "data has half a byte" },
        { "<0x>", "data is not hexadecimal" },
        { "<0a", "data does not end" },
        { "\"a", "a quoted string does not end" },
        { "\"a\\", "a quoted string does not end" },
        { "{ } x", "text stands behind the value" },
        { "a = 1", "a semicolon is missing" },
        { "a = 1; b", "a key has no value" },
        { "{ () = 1; }", "a value is missing" },
        { "<array/>", "data is not hexadecimal" },
    };
    for (const auto& [text, reason] : cases)
        EXPECT_EQ(readText(text), "3840: line 1: "s + reason) << text;
}

TEST(TextList, TheMostAre512ContainersInEachOther)
{
    EXPECT_EQ(readFailure(nested(512, '(', ')')), "accepted");
    EXPECT_EQ(readFailure(nested(513, '(', ')')), "3840: line 1: containers are nested too deeply");
    EXPECT_EQ(
        readFailure(std::string(100000, '(')), "3840: line 1: containers are nested too deeply");
}

TEST(TextList, IsNotWritten)
{
    EXPECT_EQ(writeFailure(string("x"), NSPropertyListOpenStepFormat),
        "3851: lists are not written in this format");
}

TEST(TextList, LeavesMayBeMutable)
{
    const Ref<NSObject> value = readList("{ k = v; }", NSPropertyListMutableContainersAndLeaves);
    ASSERT_TRUE(value->isKindOfClass(NSMutableDictionary::cls()));
    EXPECT_TRUE(
        cast<NSDictionary>(value)->objectForKey("k"_ns)->isKindOfClass(NSMutableString::cls()));
}

// ---- strings

TEST(TextList, AStringReadsItselfAsAList)
{
    EXPECT_EQ(textOf("( a, b )"_ns->propertyList()), "(\n    a,\n    b\n)");
    EXPECT_EQ(textOf("<plist><true/></plist>"_ns->propertyList()), "1");
    EXPECT_FALSE("several words"_ns->propertyList());
    EXPECT_FALSE(stringFrom(u"\xd800"sv)->propertyList());
}

TEST(TextList, AStringReadsItselfAsAStringsFile)
{
    EXPECT_EQ(textOf("\"ä\" = b; c = \"\\n\";"_ns->propertyListFromStringsFileFormat()),
        "{\n    \"\\U00e4\" = b;\n    c = \"\\n\";\n}");
    EXPECT_EQ(""_ns->propertyListFromStringsFileFormat()->count(), 0u);
    EXPECT_FALSE("a b"_ns->propertyListFromStringsFileFormat());
}
