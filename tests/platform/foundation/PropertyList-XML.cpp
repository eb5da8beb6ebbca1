// SPDX-License-Identifier: Apache-2.0
#include "foundation/NSPropertyListSerialization.h"

#include <cmath>

#include "foundation/NSDate.h"
#include "foundation/NSMutableArray.h"
#include "foundation/NSMutableDictionary.h"
#include "foundation/NSMutableString.h"
#include "foundation/NSSet.h"
#include "foundation/PropertyListUID.h"
#include "support/PropertyLists.h"

using namespace brindle;
using namespace brindle::test;
using namespace std::literals;

namespace {

constexpr const char* kRefused = "3840: line 1: ";

std::string list(std::string_view content)
{
    return "<plist version=\"1.0\">" + std::string(content) + "</plist>";
}

/// Answers the description of what stands in a list, or why it is refused.
std::string read(std::string_view content)
{
    const Ref<NSObject> value = readList(list(content));
    return value ? textOf(value) : readFailure(list(content));
}

/// Answers what is written between the tags of the list.
std::string writtenInTags(const Ref<NSObject>& value)
{
    const std::string text = writeList(value, kXML);
    const std::string_view begin = "<plist version=\"1.0\">\n";
    const std::size_t from = text.find(begin);
    if (from == std::string::npos)
        return text;
    return text.substr(from + begin.size(), text.rfind("</plist>") - from - begin.size());
}

std::string inUnits(std::string_view ascii, std::size_t size, bool isBig)
{
    std::string bytes;
    for (const char c : ascii) {
        std::string unit(size, '\0');
        unit[isBig ? size - 1 : 0] = c;
        bytes += unit;
    }
    return bytes;
}

std::string nested(int depth)
{
    std::string text;
    for (int i = 0; i < depth; ++i)
        text += "<array>";
    for (int i = 0; i < depth; ++i)
        text += "</array>";
    return list(text);
}

}

// ---- writing

TEST(XMLList, WritesTheUsualHeaderAndTabs)
{
    const Ref<NSDictionary> value = makeDictionary({ { "b"_ns, makeArray({ "x"_ns }).get() },
        { "a"_ns, NSNumber::cls().numberWithBool(true).get() } });
    EXPECT_EQ(writeList(value, kXML),
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
        "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
        "<plist version=\"1.0\">\n"
        "<dict>\n"
        "\t<key>b</key>\n"
        "\t<array>\n"
        "\t\t<string>x</string>\n"
        "\t</array>\n"
        "\t<key>a</key>\n"
        "\t<true/>\n"
        "</dict>\n"
        "</plist>\n");
}

TEST(XMLList, EmptyContainersAreEmptyTags)
{
    EXPECT_EQ(writtenInTags(NSArray::cls().array()), "<array/>\n");
    EXPECT_EQ(writtenInTags(NSDictionary::cls().dictionary()), "<dict/>\n");
}

TEST(XMLList, TextIsEscaped)
{
    EXPECT_EQ(
        writtenInTags(string("a<b>&\"'ä\r\n")), "<string>a&lt;b&gt;&amp;\"'ä&#13;\n</string>\n");
}

TEST(XMLList, EveryPlaneOfTextComesBack)
{
    for (const char* const text : { "", "a", "ä", "€", "😀", "a\rb\r\nc", "]]>", " x " })
        EXPECT_EQ(textOf(readList(writeList(string(text), kXML))), text);
}

TEST(XMLList, CharactersThatXMLDoesNotHaveAreNotWritten)
{
    for (const char* const text : { "\x01", "\x1f", "a\uFFFE", "\uFFFF" })
        EXPECT_EQ(writeFailure(string(text), kXML),
            "3851: a string has a character that is not allowed in XML");
    EXPECT_EQ(writeFailure(string(std::string_view("\0", 1)), kXML),
        "3851: a string has a character that is not allowed in XML");
    EXPECT_EQ(writeFailure(stringFrom(u"\xd800"sv), kXML),
        "3851: a string has a character that is not allowed in XML");
}

TEST(XMLList, NumbersAreShort)
{
    EXPECT_EQ(writtenInTags(number(-5)), "<integer>-5</integer>\n");
    EXPECT_EQ(writtenInTags(NSNumber::cls().numberWithUnsignedInteger(~NSUInteger { 0 })),
        "<integer>18446744073709551615</integer>\n");
    EXPECT_EQ(writtenInTags(NSNumber::cls().numberWithDouble(0.1)), "<real>0.1</real>\n");
    EXPECT_EQ(writtenInTags(NSNumber::cls().numberWithDouble(-INFINITY)), "<real>-inf</real>\n");
    EXPECT_EQ(writtenInTags(NSNumber::cls().numberWithDouble(-NAN)), "<real>nan</real>\n");
}

TEST(XMLList, SinglePrecisionIsWrittenExactly)
{
    const Ref<NSObject> single = NSNumber::cls().numberWithFloat(0.1f);
    EXPECT_EQ(writtenInTags(single), "<real>0.10000000149011612</real>\n");
    EXPECT_TRUE(readList(writeList(single, kXML))->isEqual(single.get()));
}

TEST(XMLList, DatesAreWrittenInWholeSeconds)
{
    EXPECT_EQ(writtenInTags(date(0)), "<date>2001-01-01T00:00:00Z</date>\n");
    EXPECT_EQ(writtenInTags(date(-0.5)), "<date>2000-12-31T23:59:59Z</date>\n");
    EXPECT_EQ(writtenInTags(NSDate::cls().distantPast()), "<date>0000-12-30T00:00:00Z</date>\n");
    EXPECT_EQ(writtenInTags(NSDate::cls().distantFuture()), "<date>4001-01-01T00:00:00Z</date>\n");
}

TEST(XMLList, DatesWithoutFourDigitsOfYearAreNotWritten)
{
    for (const double seconds : { 1e300, -1e300, 3e11, -7e10, double(NAN) })
        EXPECT_EQ(
            writeFailure(date(seconds), kXML), "3851: a date lies outside of the years 0 to 9999");
}

TEST(XMLList, LinesOfDataEndAtColumn76)
{
    EXPECT_EQ(writtenInTags(dataOf(std::string(60, '\0'))),
        "<data>\n" + std::string(76, 'A') + "\n" + std::string(4, 'A') + "\n</data>\n");
    EXPECT_EQ(writtenInTags(makeArray({ dataOf(std::string(52, '\0')).get() })),
        "<array>\n\t<data>\n\t" + std::string(68, 'A') + "\n\tAA==\n\t</data>\n</array>\n");
}

TEST(XMLList, ReferencesOfArchivesAreDictionaries)
{
    const std::string text = writtenInTags(makeArray({ makeUID(7).get() }));
    EXPECT_EQ(text,
        "<array>\n\t<dict>\n\t\t<key>CF$UID</key>\n\t\t<integer>7</integer>\n\t</dict>\n</"
        "array>\n");
    const Ref<NSObject> back = readList(list(text));
    EXPECT_TRUE(cast<NSArray>(back)->objectAtIndex(0)->isEqual(makeUID(7).get()));
}

TEST(XMLList, OnlyAnIndexMakesAReference)
{
    EXPECT_EQ(read("<dict><key>CF$UID</key><integer>-1</integer></dict>"),
        "{\n    \"CF$UID\" = \"-1\";\n}");
    EXPECT_EQ(read("<dict><key>CF$UID</key><real>1</real></dict>"), "{\n    \"CF$UID\" = 1;\n}");
    EXPECT_EQ(read("<dict><key>CF$UID</key><integer>1</integer><key>a</key><true/></dict>"),
        "{\n    \"CF$UID\" = 1;\n    a = 1;\n}");
}

TEST(XMLList, ObjectsOfOtherClassesAreNotWritten)
{
    EXPECT_EQ(writeFailure(makeArray({ NSSet::cls().set().get() }), kXML),
        "3851: an object of class NSSet has no place in a list");
    EXPECT_EQ(writeFailure(makeDictionary({ { number(1).get(), "x"_ns } }), kXML),
        "3851: a dictionary's key is no string");
}

TEST(XMLList, AContainerThatContainsItselfIsNotWritten)
{
    const Ref<NSMutableArray> around = make<NSMutableArray>();
    around->addObject(around.get());
    EXPECT_EQ(writeFailure(around, kXML), "3851: a container contains itself");
    around->removeAllObjects();
}

TEST(XMLList, TextOfSharedChildrenIsLimited)
{
    Ref<NSObject> value = string("x");
    for (int level = 0; level < 40; ++level)
        value = makeArray({ value.get(), value.get(), value.get() });
    EXPECT_EQ(
        writeFailure(value, kXML), "3851: children shared by many parents make the text too long");
}

TEST(XMLList, LongTextWithoutSharingIsNotLimited)
{
    const std::string long1(std::size_t { 40 } << 20, 'x');
    const Ref<NSArray> value = makeArray({ string(long1).get(), string(long1).get() });
    EXPECT_EQ(writeFailure(value, kXML), "written");
}

// ---- reading

TEST(XMLList, ReadsEveryKindOfValue)
{
    EXPECT_EQ(read("<string>x</string>"), "x");
    EXPECT_EQ(read("<integer>12</integer>"), "12");
    EXPECT_EQ(read("<real>1.5</real>"), "1.5");
    EXPECT_EQ(read("<true/>"), "1");
    EXPECT_EQ(read("<false></false>"), "0");
    EXPECT_EQ(read("<date>2024-01-31T12:34:56Z</date>"), "2024-01-31 12:34:56 +0000");
    EXPECT_EQ(bytesIn(cast<NSData>(readList(list("<data>YWJj\n\tZA==</data>")))), "abcd");
    EXPECT_EQ(read("<array><string/><array/></array>"), "(\n    \"\",\n    (\n    )\n)");
    EXPECT_EQ(read("<dict><key>a</key><dict/></dict>"), "{\n    a = {\n    };\n}");
}

TEST(XMLList, AnswersTheFormat)
{
    NSPropertyListFormat format {};
    const Ref<NSObject> value
        = NSPropertyListSerialization::cls().propertyListWithData_options_format_error(
            dataOf(list("<true/>")).get(), 0, &format, nullptr);
    EXPECT_EQ(format, NSPropertyListXMLFormat_v1_0);
}

TEST(XMLList, AnEmptyKeyIsAccepted)
{
    EXPECT_EQ(read("<dict><key></key><string>x</string></dict>"), "{\n    \"\" = x;\n}");
    EXPECT_EQ(read("<dict><key/><string>x</string></dict>"), "{\n    \"\" = x;\n}");
}

TEST(XMLList, SectionsAndCommentsAreAccepted)
{
    EXPECT_EQ(read("<!-- a --><string>a<![CDATA[<&>]]>b<!-- c -->d</string><!-- e -->"), "a<&>bd");
}

TEST(XMLList, ReferencesToCharactersAreAccepted)
{
    EXPECT_EQ(read("<string>&lt;&gt;&amp;&quot;&apos;&#65;&#x42;&#x1F600;</string>"), "<>&\"'AB😀");
}

TEST(XMLList, LineEndsAreUnified)
{
    EXPECT_EQ(read("<string>a\r\nb\rc\nd<![CDATA[\r\n\r]]></string>"), "a\nb\nc\nd\n\n");
    EXPECT_EQ(read("<string>&#13;</string>"), "\r");
}

TEST(XMLList, HexadecimalIntegersAndSpacesAroundNumbersAreAccepted)
{
    EXPECT_EQ(read("<integer>0x1F</integer>"), "31");
    EXPECT_EQ(read("<integer>-0X10</integer>"), "-16");
    EXPECT_EQ(read("<integer> +7\n</integer>"), "7");
    EXPECT_EQ(read("<real>\t+2.5 </real>"), "2.5");
}

TEST(XMLList, IntegersHave64Bits)
{
    EXPECT_EQ(read("<integer>18446744073709551615</integer>"), "18446744073709551615");
    EXPECT_EQ(read("<integer>-9223372036854775808</integer>"), "-9223372036854775808");
    EXPECT_EQ(
        read("<integer>18446744073709551616</integer>"), "3840: line 1: an integer cannot be read");
    EXPECT_EQ(
        read("<integer>-9223372036854775809</integer>"), "3840: line 1: an integer cannot be read");
}

TEST(XMLList, RealNumbersMayBeInfiniteOrNone)
{
    EXPECT_EQ(read("<real>inf</real>"), "inf");
    EXPECT_EQ(read("<real>-infinity</real>"), "-inf");
    EXPECT_EQ(read("<real>+Infinity</real>"), "inf");
    EXPECT_EQ(read("<real>NaN</real>"), "nan");
}

TEST(XMLList, EqualKeysAreOneObject)
{
    const Ref<NSObject> value = readList(
        list("<array><dict><key>k</key><true/></dict><dict><key>k</key><true/></dict></array>"));
    const auto keyOf = [&](NSUInteger index) {
        return cast<NSDictionary>(cast<NSArray>(value)->objectAtIndex(index))
            ->allKeys()
            ->objectAtIndex(0)
            .get();
    };
    EXPECT_EQ(keyOf(0), keyOf(1));
}

TEST(XMLList, ByteOrderMarksAreAccepted)
{
    const std::string text = list("<string>x</string>");
    EXPECT_EQ(textOf(readList("\xef\xbb\xbf" + text)), "x");
    EXPECT_EQ(textOf(readList("\xff\xfe" + inUnits(text, 2, false))), "x");
    EXPECT_EQ(textOf(readList("\xfe\xff" + inUnits(text, 2, true))), "x");
    EXPECT_EQ(textOf(readList("\xff\xfe\0\0"s + inUnits(text, 4, false))), "x");
    EXPECT_EQ(textOf(readList("\0\0\xfe\xff"s + inUnits(text, 4, true))), "x");
}

TEST(XMLList, WiderUnitsAreAcceptedWithoutAMark)
{
    const std::string text = list("<string>x</string>");
    for (const bool isBig : { false, true }) {
        EXPECT_EQ(textOf(readList(inUnits(text, 2, isBig))), "x");
        EXPECT_EQ(textOf(readList(inUnits(text, 4, isBig))), "x");
    }
}

TEST(XMLList, TheDeclaredEncodingIsUsed)
{
    const std::string text = list("<string>\xe4</string>");
    EXPECT_EQ(textOf(readList("<?xml version='1.0' encoding='ISO-8859-1'?>" + text)), "ä");
    EXPECT_EQ(readFailure("<?xml version='1.0' encoding='klingon'?>" + text),
        "3840: line 1: the declared encoding is not known");
}

TEST(XMLList, TextThatIsNotUTF8IsRefused)
{
    EXPECT_EQ(readFailure(list("<string>a\n\xff</string>")), "3840: line 2: the text is not UTF-8");
    EXPECT_EQ(
        readFailure(list("<string>\xed\xa0\x80</string>")), "3840: line 1: the text is not UTF-8");
}

TEST(XMLList, SurrogatesWithoutPartnerAreRefused)
{
    EXPECT_EQ(readFailure("\xff\xfe<\0\x00\xd8"s),
        "3840: byte 0: the text has a surrogate without its partner");
}

TEST(XMLList, TheUsualDocumentTypeIsAccepted)
{
    EXPECT_EQ(textOf(readList("<!DOCTYPE plist>" + list("<true/>"))), "1");
    EXPECT_EQ(textOf(readList(
                  "<?xml version=\"1.0\"?><!DOCTYPE plist PUBLIC \"-//Apple Computer//DTD PLIST "
                  "1.0//EN\" \"http://www.apple.com/DTDs/PropertyList-1.0.dtd\" >"
                  + list("<true/>"))),
        "1");
}

TEST(XMLList, OtherDocumentTypesAreRefused)
{
    const std::string end = list("<true/>");
    EXPECT_EQ(readFailure("<!DOCTYPE plist [<!ENTITY a \"x\">]>" + end),
        "3840: line 1: a document type of its own is not read");
    EXPECT_EQ(readFailure("<!DOCTYPE plist SYSTEM \"file:///etc/passwd\">" + end),
        "3840: line 1: a document type of its own is not read");
    EXPECT_EQ(readFailure("<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
                          "\"file:///etc/passwd\">"
                  + end),
        "3840: line 1: the document type is not that of a property list");
    EXPECT_EQ(readFailure("<!DOCTYPE html>" + end),
        "3840: line 1: the document type is not that of a property list");
}

TEST(XMLList, OtherEntitiesAreRefused)
{
    EXPECT_EQ(read("<string>&nbsp;</string>"), "3840: line 1: the entity &nbsp; is not known");
    for (const char* const number : { "&#0;", "&#x1;", "&#xD800;", "&#xFFFE;", "&#1114112;", "&#;",
             "&#x;", "&#12a;", "&#-5;", "&#99999999999;" })
        EXPECT_EQ(read("<string>"s + number + "</string>"),
            "3840: line 1: the entity "s + number + " is not known");
}

TEST(XMLList, ABareAmpersandIsRefused)
{
    EXPECT_EQ(read("<string>a & b</string>"), "3840: line 1: an ampersand stands alone");
    EXPECT_EQ(read("<string>a &amp</string>"), "3840: line 1: an ampersand stands alone");
}

TEST(XMLList, UnknownTagsAreRefused)
{
    EXPECT_EQ(read("<set/>"), "3840: line 1: the tag <set> is not known");
    EXPECT_EQ(read("<String>x</String>"), "3840: line 1: the tag <String> is not known");
    EXPECT_EQ(read("<>"), "3840: line 1: the tag <> is not known");
}

TEST(XMLList, MissingEndsAreRefused)
{
    const std::pair<const char*, const char*> cases[] = {
        { "<plist>", "the text ends in the middle of the list" },
        { "<plist><string>x", "the text ends in the middle of the list" },
        { "<plist><string>x</plist>", "the end of <string> is missing" },
        { "<plist><array></dict></plist>", "the end of <array> is missing" },
        { "<plist><true/></plist", "the end of <plist> is missing" },
        { "<plist><true/", "a tag does not end" },
        { "<plist><!-- ", "a comment does not end" },
        { "<plist><?x ", "an instruction does not end" },
        { "<plist><string><![CDATA[x</string></plist>", "a section does not end" },
        { "<plist version='1.0><true/></plist>", "a quoted text does not end" },
        { "<plist version><true/></plist>", "an attribute has no value" },
        { "<plist version=1><true/></plist>", "a quoted text is missing" },
        { "<plist version='&'><true/></plist>", "an attribute holds markup" },
        { "<plist/>", "the list is empty" },
        { "<plist></plist>", "the list is empty" },
        { "<!-- only -->", "the text ends in the middle of the list" },
        { "<?xml version='1.0'?><true/>", "the list does not begin with its tag" },
    };
    for (const auto& [text, reason] : cases)
        EXPECT_EQ(readFailure(text), std::string(kRefused) + reason) << text;
}

TEST(XMLList, WhatStandsInTheWrongPlaceIsRefused)
{
    const std::pair<const char*, const char*> cases[] = {
        { "x", "text stands where a tag belongs" },
        { "<true/>x", "text stands where a tag belongs" },
        { "<true/><true/>", "there is more than one value" },
        { "<plist/>", "a list stands in a list" },
        { "<key>x</key>", "a key stands where a value belongs" },
        { "<dict><true/></dict>", "a value stands without its key" },
        { "<dict><key>a</key></dict>", "a key has no value" },
        { "<dict><key>a</key><key>b</key></dict>", "a key stands where a value belongs" },
        { "<string>a<true/></string>", "a tag stands in a text" },
        { "<string>a]]>b</string>", "the end of a section stands without its begin" },
        { "<string>\x01</string>", "a character is not allowed in XML" },
        { "<string>\xef\xbf\xbf</string>", "a character is not allowed in XML" },
        { "<string><![CDATA[\x02]]></string>", "a character is not allowed in XML" },
        { "<!-- a -- b --><true/>", "two hyphens stand in a comment" },
        { "<?xml version='1.0'?><true/>", "an instruction stands where none may be" },
        { "<true>x</true>", "true and false are empty" },
        { "<string a='b'>x</string>", "a tag does not end" },
    };
    for (const auto& [content, reason] : cases)
        EXPECT_EQ(read(content), std::string(kRefused) + reason) << content;
}

TEST(XMLList, TextBehindTheListIsRefused)
{
    EXPECT_EQ(readFailure(list("<true/>") + "x"), "3840: line 1: text stands behind the list");
    EXPECT_EQ(readFailure(list("<true/>") + list("<true/>")),
        "3840: line 1: text stands behind the list");
    EXPECT_EQ(readFailure(list("<true/>") + "\n<!-- x -->\n"), "accepted");
}

TEST(XMLList, ValuesThatCannotBeReadAreRefused)
{
    for (const char* const text : { "", " ", "x", "1.5", "0x", "--1", "+-1", "1 2", "0xg" })
        EXPECT_EQ(
            read("<integer>"s + text + "</integer>"), "3840: line 1: an integer cannot be read")
            << text;
    for (const char* const text : { "", "x", "1,5", "+-1", "++1", "nan(1)", "1e999" })
        EXPECT_EQ(read("<real>"s + text + "</real>"), "3840: line 1: a real number cannot be read")
            << text;
    for (const char* const text : { "", "2024-01-31", "2024-02-30T00:00:00Z",
             "2024-01-31T24:00:00Z", "2024-01-31T12:34:56", "2024-01-31 12:34:56Z",
             "20x4-01-31T12:34:56Z", "2024-01-31T12:60:00Z", "2024-01-31T12:00:60Z" })
        EXPECT_EQ(read("<date>"s + text + "</date>"), "3840: line 1: a date cannot be read")
            << text;
    for (const char* const text : { "A", "AA", "AAA", "A===", "AA=A", "*", "AAAA=" })
        EXPECT_EQ(read("<data>"s + text + "</data>"), "3840: line 1: data is not base64") << text;
}

TEST(XMLList, TheLineOfAFailureIsTold)
{
    EXPECT_EQ(readFailure("<plist>\n<array>\r\n<true/>\r<set/></array></plist>"),
        "3840: line 4: the tag <set> is not known");
}

TEST(XMLList, TheMostAre512ContainersInEachOther)
{
    EXPECT_EQ(readFailure(nested(512)), "accepted");
    EXPECT_EQ(readFailure(nested(513)), "3840: line 1: containers are nested too deeply");
    EXPECT_EQ(readFailure(nested(100000)), "3840: line 1: containers are nested too deeply");
    EXPECT_EQ(writeFailure(nestedArrays(512), kXML), "written");
    EXPECT_EQ(writeFailure(nestedArrays(513), kXML), "3851: containers are nested too deeply");
}

TEST(XMLList, EveryTruncationIsRefused)
{
    const std::string text = writeList(
        makeDictionary({ { "k"_ns, makeArray({ "x"_ns, number(5).get(), date(0).get() }).get() },
            { "d"_ns, dataOf("abc").get() } }),
        kXML);
    for (std::size_t length = 0; length + 1 < text.size(); ++length)
        EXPECT_NE(readFailure(text.substr(0, length)), "accepted") << length;
}

// ---- what can be changed

TEST(XMLList, MutableContainersHoldImmutableStrings)
{
    const Ref<NSObject> value
        = readList(list("<array><dict><key>k</key><string>x</string></dict></array>"),
            NSPropertyListMutableContainers);
    ASSERT_TRUE(value->isKindOfClass(NSMutableArray::cls()));
    const Ref<NSObject> inner = cast<NSArray>(value)->objectAtIndex(0);
    ASSERT_TRUE(inner->isKindOfClass(NSMutableDictionary::cls()));
    EXPECT_FALSE(
        cast<NSDictionary>(inner)->objectForKey("k"_ns)->isKindOfClass(NSMutableString::cls()));
}

TEST(XMLList, MutableLeavesAreStringsAndData)
{
    const Ref<NSObject> value
        = readList(list("<dict><key>s</key><string>x</string><key>d</key><data>AAAA</data></dict>"),
            NSPropertyListMutableContainersAndLeaves);
    const auto dictionary = cast<NSDictionary>(value);
    EXPECT_TRUE(dictionary->objectForKey("s"_ns)->isKindOfClass(NSMutableString::cls()));
    EXPECT_TRUE(dictionary->objectForKey("d"_ns)->isKindOfClass(NSMutableData::cls()));
    EXPECT_FALSE(dictionary->allKeys()->objectAtIndex(0)->isKindOfClass(NSMutableString::cls()));
}

TEST(XMLList, CharactersThatLookLikeForbiddenOnesAreAccepted)
{
    EXPECT_EQ(read("<string>\xef\xac\x81 \xef\xbf\xbd a>b</string>"), "ﬁ \xef\xbf\xbd a>b");
}

TEST(XMLList, ATagWhoseNameIsLongIsRefused)
{
    EXPECT_EQ(read("<dictionary/>"), "3840: line 1: the tag <dictionary> is not known");
}

TEST(XMLList, LongListsComeBackAndEndOneByOne)
{
    std::vector<Ref<NSObject>> numbers;
    for (NSInteger i = 0; i < 60000; ++i)
        numbers.push_back(NSNumber::cls().numberWithInteger(1000000 + i));
    const Ref<NSArray> list = makeArray(std::move(numbers));
    const std::string text = test::writeList(list, NSPropertyListXMLFormat_v1_0);
    ASSERT_GT(text.size(), std::size_t { 1 } << 20);
    auto read = cast<NSArray>(test::readList(text));
    ASSERT_TRUE(read);
    EXPECT_TRUE(read->isEqual(list.get()));
    const Ref<NSObject> last = read->objectAtIndex(59999);
    read = nullptr;
    EXPECT_EQ(cast<NSNumber>(last)->integerValue(), 1059999);
}
