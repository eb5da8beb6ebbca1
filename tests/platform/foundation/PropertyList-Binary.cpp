// SPDX-License-Identifier: Apache-2.0
#include "foundation/NSPropertyListSerialization.h"

#include <cmath>
#include <limits>

#include "foundation/NSDate.h"
#include "foundation/NSMutableArray.h"
#include "foundation/NSMutableDictionary.h"
#include "foundation/NSMutableString.h"
#include "foundation/NSNull.h"
#include "foundation/PropertyListUID.h"
#include "runtime/Table.h"
#include "support/PropertyLists.h"

using namespace brindle;
using namespace brindle::test;
using namespace std::literals;

namespace {

std::string written(const Ref<NSObject>& list) { return writeList(list, kBinary); }

/// Answers the objects of a written list, without header, table and trailer.
std::string objectsIn(const std::string& list)
{
    return list.substr(8, static_cast<unsigned char>(list.back()) - 8u);
}

std::string readBack(const Ref<NSObject>& list) { return textOf(readList(written(list))); }

/// Levels of arrays that hold the one below `width` times.
std::string sharedChildren(int levels, int width)
{
    std::vector<std::string> objects;
    for (int i = 0; i < levels; ++i)
        objects.push_back(static_cast<char>(0xa0 | width)
            + std::string(static_cast<std::size_t>(width), static_cast<char>(i + 1)));
    objects.push_back("\x51x");
    std::string out = "bplist00";
    std::string table;
    for (const std::string& object : objects) {
        table += static_cast<char>(out.size() >> 8);
        table += static_cast<char>(out.size());
        out += object;
    }
    const std::size_t start = out.size();
    out += table + "\0\0\0\0\0\0\2\1"s + "\0\0\0\0\0\0\0"s + static_cast<char>(objects.size())
        + "\0\0\0\0\0\0\0\0"s + "\0\0\0\0\0\0"s + static_cast<char>(start >> 8)
        + static_cast<char>(start);
    return out;
}

}

// ---- values

TEST(BinaryList, WritesHeaderObjectsTableAndTrailer)
{
    EXPECT_EQ(written(number(5)),
        "bplist00\x10\x05\x08"
        "\0\0\0\0\0\0\1\1\0\0\0\0\0\0\0\1\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\x0a"s);
}

TEST(BinaryList, IntegersTakeTheFewestBytes)
{
    EXPECT_EQ(objectsIn(written(number(255))), "\x10\xff"s);
    EXPECT_EQ(objectsIn(written(number(256))), "\x11\1\0"s);
    EXPECT_EQ(objectsIn(written(number(65536))), "\x12\0\1\0\0"s);
    EXPECT_EQ(objectsIn(written(number(4294967296))), "\x13\0\0\0\1\0\0\0\0"s);
    EXPECT_EQ(objectsIn(written(number(-1))), "\x13\xff\xff\xff\xff\xff\xff\xff\xff"s);
}

TEST(BinaryList, IntegersAboveTheSignedOnesTake128Bits)
{
    const Ref<NSObject> largest = NSNumber::cls().numberWithUnsignedInteger(~NSUInteger { 0 });
    EXPECT_EQ(objectsIn(written(largest)), "\x14\0\0\0\0\0\0\0\0\xff\xff\xff\xff\xff\xff\xff\xff"s);
    EXPECT_EQ(readBack(largest), "18446744073709551615");
}

TEST(BinaryList, A128BitIntegerThatFitsIsAccepted)
{
    EXPECT_EQ(textOf(readList(binaryList({ "\x14\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\7"s }))), "7");
}

TEST(BinaryList, ALargerIntegerIsRefused)
{
    EXPECT_EQ(readFailure(binaryList({ "\x14\0\0\0\0\0\0\0\1\0\0\0\0\0\0\0\0"s })),
        "3840: byte 8: an integer has more than 64 bits");
    EXPECT_EQ(readFailure(binaryList({ "\x14\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff"
                                       "\xff\xff\xff" })),
        "3840: byte 8: an integer has more than 64 bits");
}

TEST(BinaryList, BooleansStayBooleans)
{
    const Ref<NSObject> list = readList(written(NSNumber::cls().numberWithBool(true)));
    EXPECT_STREQ(cast<NSNumber>(list)->objCType(), "B");
}

TEST(BinaryList, SinglePrecisionStaysSingle)
{
    const Ref<NSObject> list = readList(written(NSNumber::cls().numberWithFloat(0.1f)));
    EXPECT_STREQ(cast<NSNumber>(list)->objCType(), "f");
    EXPECT_EQ(cast<NSNumber>(list)->floatValue(), 0.1f);
}

TEST(BinaryList, RealNumbersKeepNotANumber)
{
    const Ref<NSObject> list = readList(written(NSNumber::cls().numberWithDouble(NAN)));
    EXPECT_TRUE(std::isnan(cast<NSNumber>(list)->doubleValue()));
}

TEST(BinaryList, AsciiTakesAByteAndOtherTextTwo)
{
    EXPECT_EQ(objectsIn(written(string("abc"))),
        "\x53"
        "abc");
    EXPECT_EQ(objectsIn(written(string("ä€"))), "\x62\0\xe4\x20\xac"s);
    EXPECT_EQ(readBack(string("ä€😀")), "ä€😀");
}

TEST(BinaryList, LongValuesHaveTheirCountBehindTheMarker)
{
    const std::string text(300, 'x');
    EXPECT_EQ(written(string(text)).substr(8, 4), "\x5f\x11\x01\x2c"s);
    EXPECT_EQ(readBack(string(text)), text);
}

TEST(BinaryList, DataComesBack)
{
    const std::string bytes("\0\xff\x80", 3);
    EXPECT_EQ(bytesIn(cast<NSData>(readList(written(dataOf(bytes))))), bytes);
}

TEST(BinaryList, AnyFiniteDateIsKept)
{
    for (const double seconds : { 0.0, 0.25, -1e300, std::numeric_limits<double>::denorm_min() })
        EXPECT_EQ(cast<NSDate>(readList(written(date(seconds))))->timeIntervalSinceReferenceDate(),
            seconds);
}

TEST(BinaryList, ADateThatIsNotFiniteIsRefused)
{
    EXPECT_EQ(readFailure(binaryList({ "\x33\x7f\xf8\0\0\0\0\0\0"s })),
        "3840: byte 8: a date is not a finite number");
    EXPECT_EQ(readFailure(binaryList({ "\x33\xff\xf0\0\0\0\0\0\0"s })),
        "3840: byte 8: a date is not a finite number");
    EXPECT_EQ(writeFailure(date(INFINITY), kBinary), "3851: a date is not a finite number");
}

TEST(BinaryList, ReferencesOfArchivesHaveAMarkerOfTheirOwn)
{
    EXPECT_EQ(objectsIn(written(makeUID(5))), "\x80\x05");
    EXPECT_EQ(objectsIn(written(makeUID(256))), "\x81\1\0"s);
    const Ref<NSObject> list = readList(written(makeUID(70000)));
    ASSERT_TRUE(list->isKindOfClass(PropertyListUID::cls()));
    EXPECT_EQ(cast<PropertyListUID>(list)->unsignedIntegerValue(), 70000u);
}

TEST(BinaryList, DictionariesKeepTheirOrder)
{
    const Ref<NSDictionary> list
        = makeDictionary({ { "b"_ns, "1"_ns }, { "a"_ns, "2"_ns }, { "c"_ns, "3"_ns } });
    const Ref<NSObject> back = readList(written(list));
    EXPECT_EQ(utf8(cast<NSDictionary>(back)->allKeys()->componentsJoinedByString(" "_ns)), "b a c");
    EXPECT_TRUE(back->isEqual(list.get()));
}

TEST(BinaryList, OfEqualKeysTheLastOneStays)
{
    const Ref<NSObject> list
        = readList(binaryList({ "\xd2\1\1\2\3"sv, "\x51k", "\x51x", "\x51y" }));
    EXPECT_EQ(textOf(list), "{\n    k = y;\n}");
}

TEST(BinaryList, EqualStringsAreWrittenOnce)
{
    const Ref<NSArray> list
        = makeArray({ stringFrom("word").get(), stringFrom("word").get(), "word"_ns });
    EXPECT_EQ(objectsIn(written(list)), "\x54word\xa3\0\0\0"s);
}

TEST(BinaryList, EqualNumbersOfDifferentKindsAreWrittenEach)
{
    const Ref<NSArray> list = makeArray({ number(1).get(),
        NSNumber::cls().numberWithBool(true).get(), NSNumber::cls().numberWithDouble(1).get() });
    EXPECT_EQ(cast<NSArray>(readList(written(list)))->count(), 3u);
    EXPECT_EQ(objectsIn(written(list)).size(), 2u + 1 + 9 + 4);
}

TEST(BinaryList, ManyObjectsTakeLargerReferences)
{
    std::vector<Ref<NSObject>> numbers;
    for (NSInteger i = 0; i < 70000; ++i)
        numbers.push_back(number(i));
    const Ref<NSArray> list = makeArray(numbers);
    const std::string bytes = written(list);
    EXPECT_EQ(bytes[bytes.size() - 25], 4); // a reference's bytes
    EXPECT_TRUE(readList(bytes)->isEqual(list.get()));
}

// ---- what others may write

TEST(BinaryList, AnyCharacterMayFollowTheHeader)
{
    EXPECT_EQ(textOf(readList(binaryList({ "\x51x" }, 0, "bplist0z"))), "x");
}

TEST(BinaryList, SizesOfOneToEightBytesAreAccepted)
{
    for (unsigned offsets = 1; offsets <= 8; ++offsets) {
        for (unsigned references = 1; references <= 8; ++references) {
            const auto big = [](std::size_t value, unsigned size) {
                std::string text(size, '\0');
                text.back() = static_cast<char>(value);
                return text;
            };
            std::string list = "bplist00\xa1" + big(1, references);
            const std::size_t leaf = list.size();
            list += "\x51x";
            const std::size_t table = list.size();
            list += big(8, offsets) + big(leaf, offsets) + "\0\0\0\0\0\0"s
                + static_cast<char>(offsets) + static_cast<char>(references) + big(2, 8) + big(0, 8)
                + big(table, 8);
            EXPECT_EQ(textOf(readList(list)), "(\n    x\n)") << offsets << ' ' << references;
        }
    }
}

TEST(BinaryList, SharedChildrenAreBuiltOnce)
{
    const Ref<NSObject> list = readList(sharedChildren(40, 3));
    ASSERT_TRUE(list);
    const auto array = cast<NSArray>(list);
    EXPECT_EQ(array->objectAtIndex(0).get(), array->objectAtIndex(2).get());
}

TEST(BinaryList, SharedChildrenAreWrittenOnce)
{
    const Ref<NSObject> list = readList(sharedChildren(40, 3));
    EXPECT_LT(written(list).size(), 400u);
}

// ---- what is refused

TEST(BinaryList, AContainerThatContainsItselfIsRefused)
{
    EXPECT_EQ(readFailure(binaryList({ "\xa1\0"sv })), "3840: byte 8: a container contains itself");
    EXPECT_EQ(readFailure(binaryList({ "\xa1\1"sv, "\xd1\2\0"sv, "\x51k" })),
        "3840: byte 8: a container contains itself");
}

TEST(BinaryList, AContainerThatContainsItselfIsNotWritten)
{
    const Ref<NSMutableArray> list = make<NSMutableArray>();
    list->addObject(makeArray({ list.get() }).get());
    EXPECT_EQ(writeFailure(list, kBinary), "3851: a container contains itself");
    list->removeAllObjects();
}

TEST(BinaryList, TheMostAre512ContainersInEachOtherAreTheMost)
{
    EXPECT_EQ(writeFailure(nestedArrays(512), kBinary), "written");
    EXPECT_EQ(writeFailure(nestedArrays(513), kBinary), "3851: containers are nested too deeply");
    EXPECT_TRUE(readList(written(nestedArrays(512))));
}
TEST(BinaryList, DeeperListsAreNotRead)
{
    const auto nested = [](std::size_t depth) {
        std::string out = "bplist00";
        for (std::size_t i = 1; i < depth; ++i)
            out += "\xa1"s + static_cast<char>(i >> 16) + static_cast<char>(i >> 8)
                + static_cast<char>(i);
        out += "\xa0";
        const std::size_t table = out.size();
        const auto word = [](std::size_t value) {
            std::string text;
            for (int shift = 56; shift >= 0; shift -= 8)
                text += static_cast<char>(value >> shift);
            return text;
        };
        for (std::size_t i = 0; i < depth; ++i)
            out += word(8 + 4 * i).substr(4);
        return out + "\0\0\0\0\0\0\4\3"s + word(depth) + word(0) + word(table);
    };
    EXPECT_EQ(readFailure(nested(512)), "accepted");
    EXPECT_EQ(readFailure(nested(513)), "3840: byte 2056: containers are nested too deeply");
    EXPECT_EQ(readFailure(nested(100000)), "3840: byte 2056: containers are nested too deeply");
}

TEST(BinaryList, DepthCountsAlongTheLongestWay)
{
    // A deep child that was met before, near the top, is still deep below others.
    const Ref<NSObject> deep = nestedArrays(400);
    Ref<NSObject> chain = deep;
    for (int i = 0; i < 200; ++i)
        chain = makeArray({ chain.get() });
    EXPECT_EQ(writeFailure(makeArray({ deep.get(), chain.get() }), kBinary),
        "3851: containers are nested too deeply");
}

TEST(BinaryList, KeysThatAreNoStringsAreRefused)
{
    EXPECT_EQ(readFailure(binaryList({ "\xd1\1\1"sv, "\x10\5"sv })),
        "3840: byte 8: a dictionary's key is no string");
    EXPECT_EQ(writeFailure(makeDictionary({ { number(1).get(), "x"_ns } }), kBinary),
        "3851: a dictionary's key is no string");
}

TEST(BinaryList, TextThatIsNoTextIsRefused)
{
    EXPECT_EQ(readFailure(binaryList({ "\x51\xe4" })), "3840: byte 8: a string is not ASCII");
    EXPECT_EQ(
        readFailure(binaryList({ "\x61\xd8\x00"sv })), "3840: byte 8: a string is not UTF-16");
    EXPECT_EQ(readFailure(binaryList({ "\x62\xdc\x00\xd8\x00"sv })),
        "3840: byte 8: a string is not UTF-16");
    EXPECT_EQ(writeFailure(stringFrom(u"a\xdc00"sv), kBinary),
        "3851: a string has a surrogate without its partner");
}

TEST(BinaryList, MarkersWithoutMeaningAreRefused)
{
    for (unsigned marker = 0; marker < 256; ++marker) {
        const unsigned high = marker >> 4;
        const unsigned low = marker & 15;
        const bool isKnown = marker == 0x08 || marker == 0x09 || (high == 1 && low <= 4)
            || marker == 0x22 || marker == 0x23 || marker == 0x33 || high == 4 || high == 5
            || high == 6 || (high == 8 && low < 8) || high == 0xa || high == 0xd;
        const std::string object
            = static_cast<char>(marker) + std::string(marker % 16 == 15 ? 0 : 64, '\0');
        const std::string failure = readFailure(binaryList({ object }));
        EXPECT_EQ(failure == "3840: byte 8: no object begins with this byte",
            !isKnown || (low == 15 && high >= 4))
            << marker << ' ' << failure;
    }
}

TEST(BinaryList, CountsThatLieAreRefused)
{
    for (const char marker : { '\x4f', '\x5f', '\x6f', '\xaf', '\xdf' }) {
        for (const std::string_view count :
            { "\x13\x10\0\0\0\0\0\0\0"sv, "\x13\x80\0\0\0\0\0\0\0"sv,
                "\x13\xff\xff\xff\xff\xff\xff\xff\xff"sv, "\x12\0\1\0\0"sv, "\x10\x20"sv })
            EXPECT_EQ(readFailure(binaryList({ marker + std::string(count) })),
                "3840: byte 8: an object is longer than the list");
        EXPECT_EQ(readFailure(binaryList({ marker + "\x14"s })),
            "3840: byte 8: no object begins with this byte");
    }
    EXPECT_EQ(readFailure(binaryList({ "\x13\0\0"sv })),
        "3840: byte 8: an object is longer than the list");
}

TEST(BinaryList, ReferencesOutOfTheTableAreRefused)
{
    EXPECT_EQ(readFailure(binaryList({ "\xa1\1"sv })),
        "3840: byte 8: a container holds what is not in the table");
    EXPECT_EQ(readFailure(binaryList({ "\xd1\0\7"sv })),
        "3840: byte 8: a container holds what is not in the table");
}

TEST(BinaryList, TrailersThatLieAreRefused)
{
    const std::string good = binaryList({ "\xa1\1"sv, "\x51x" });
    const std::size_t trailer = good.size() - 32;
    const auto changed = [&](std::size_t place, std::string_view bytes) {
        std::string list = good;
        list.replace(trailer + place, bytes.size(), bytes);
        const std::string failure = readFailure(list);
        return failure.substr(failure.rfind(": ") + 2);
    };
    EXPECT_EQ(changed(6, "\0"sv), "offsets have 1 to 8 bytes");
    EXPECT_EQ(changed(6, "\x09"), "offsets have 1 to 8 bytes");
    EXPECT_EQ(changed(7, "\0"sv), "references have 1 to 8 bytes");
    EXPECT_EQ(changed(7, "\xff"), "references have 1 to 8 bytes");
    EXPECT_EQ(
        changed(8, "\0\0\0\0\0\0\0\0"sv), "there are not as many objects as the trailer says");
    EXPECT_EQ(
        changed(8, "\0\0\0\0\0\0\0\3"sv), "there are not as many objects as the trailer says");
    EXPECT_EQ(
        changed(8, "\x10\0\0\0\0\0\0\0"sv), "there are not as many objects as the trailer says");
    EXPECT_EQ(changed(16, "\0\0\0\0\0\0\0\2"sv), "the top object is not in the table");
    EXPECT_EQ(changed(24, "\0\0\0\0\0\0\0\x08"sv), "the table of offsets lies outside of the list");
    EXPECT_EQ(changed(24, "\xff\xff\xff\xff\xff\xff\xff\xff"sv),
        "the table of offsets lies outside of the list");
}

TEST(BinaryList, OffsetsOutOfTheObjectsAreRefused)
{
    std::string list = binaryList({ "\x51x" });
    for (const char offset : { '\0', '\x07', '\x0a', '\xff' }) {
        list[11] = offset;
        EXPECT_EQ(readFailure(list), "3840: byte 10: an offset leads out of the objects");
    }
}

TEST(BinaryList, ObjectsThatOverlapManyTimesAreRefused)
{
    std::string list = "bplist00\x5f\x12\0\0\x40\0"s + std::string(0x4000, 'x');
    const std::size_t table = list.size();
    for (int i = 0; i < 0x1000; ++i)
        list += "\0\0\0\x08"s;
    list += "\0\0\0\0\0\0\4\2\0\0\0\0\0\0\x10\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0"s
        + static_cast<char>(table >> 8) + static_cast<char>(table);
    EXPECT_EQ(readFailure(list), "3840: byte 8: objects overlap");
}

TEST(BinaryList, EveryTruncationIsRefused)
{
    const std::string list = written(makeDictionary({ { "key"_ns, number(1000).get() },
        { "ä"_ns, makeArray({ date(1).get(), dataOf("abc").get(), makeUID(1).get() }).get() } }));
    for (std::size_t length = 8; length < list.size(); ++length)
        EXPECT_NE(readFailure(list.substr(0, length)), "accepted") << length;
}

TEST(BinaryList, AHeaderAloneIsNoWordOfText)
{
    EXPECT_EQ(readFailure("bplist00"), "3840: byte 8: the list ends before its trailer");
    EXPECT_EQ(textOf(readList("bplist0")), "bplist0");
}

TEST(BinaryList, AnotherHeaderIsNotBinary)
{
    EXPECT_EQ(readFailure(binaryList({ "\x51x" }, 0, "bplist10")).substr(0, 12), "3840: line 1");
}

// ---- what can be changed

TEST(BinaryList, MutableContainersHoldImmutableStrings)
{
    const Ref<NSDictionary> list = makeDictionary({ { "k"_ns, makeArray({ "x"_ns }).get() } });
    const Ref<NSObject> back = readList(written(list), NSPropertyListMutableContainers);
    ASSERT_TRUE(back->isKindOfClass(NSMutableDictionary::cls()));
    const Ref<NSObject> inner = cast<NSDictionary>(back)->objectForKey("k"_ns);
    ASSERT_TRUE(inner->isKindOfClass(NSMutableArray::cls()));
    EXPECT_FALSE(cast<NSArray>(inner)->objectAtIndex(0)->isKindOfClass(NSMutableString::cls()));
}

TEST(BinaryList, MutableLeavesAreNeverKeys)
{
    const Ref<NSDictionary> list = makeDictionary({ { "same"_ns, "same"_ns } });
    const auto back
        = cast<NSDictionary>(readList(written(list), NSPropertyListMutableContainersAndLeaves));
    EXPECT_TRUE(back->objectForKey("same"_ns)->isKindOfClass(NSMutableString::cls()));
    EXPECT_FALSE(back->allKeys()->objectAtIndex(0)->isKindOfClass(NSMutableString::cls()));
}

TEST(BinaryList, ImmutableListsCannotBeChanged)
{
    const Ref<NSObject> back = readList(written(makeArray({ "x"_ns })));
    EXPECT_FALSE(back->isKindOfClass(NSMutableArray::cls()));
}

TEST(BinaryList, SharedDepthIsFoundWhenReading)
{
    // Object 0 holds a chain of 400 and a chain of 200 that ends in the first one.
    constexpr std::size_t kLong = 400;
    constexpr std::size_t kAll = 1 + kLong + 200;
    const auto two = [](std::size_t value) {
        return std::string { static_cast<char>(value >> 8), static_cast<char>(value) };
    };
    std::string list = "bplist00\xa2" + two(1) + two(kLong + 1);
    std::string table = two(8);
    for (std::size_t i = 1; i < kAll; ++i) {
        table += two(list.size());
        const std::size_t next = i + 1 < kAll ? i + 1 : 1;
        list += i == kLong ? "\xa0" : "\xa1" + two(next);
    }
    const std::size_t start = list.size();
    list += table + "\0\0\0\0\0\0\2\2"s + "\0\0\0\0\0\0"s + two(kAll) + "\0\0\0\0\0\0\0\0"s
        + "\0\0\0\0\0\0"s + two(start);
    EXPECT_NE(readFailure(list).find("containers are nested too deeply"), std::string::npos);
}

// ---- collections that keep their elements in their own way

namespace {

class ThreeNumbers : public NSArray {
    BRINDLE_OBJECT(ThreeNumbers, NSArray)
};
template <> struct ThreeNumbers::Methods<struct Elements> {
    static NSUInteger count(ThreeNumbers&) { return 3; }
    static Ref<NSObject> objectAtIndex(ThreeNumbers&, NSUInteger index)
    {
        return number(static_cast<NSInteger>(index));
    }
    static void table(Builder& t)
    {
        t.methods({ { "count", imp<count> }, { "objectAtIndex:", imp<objectAtIndex> } });
    }
};
BRINDLE_RECORD(ThreeNumbers, Elements)

}

TEST(BinaryList, ElementsAreAskedOfTheCollection)
{
    const auto numbers = make<ThreeNumbers>();
    EXPECT_EQ(readBack(makeArray({ numbers.get(), numbers.get() })),
        textOf(makeArray({ numbers.get(), numbers.get() })));
}
