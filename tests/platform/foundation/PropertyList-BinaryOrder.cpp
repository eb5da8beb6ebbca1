// SPDX-License-Identifier: Apache-2.0
#include "foundation/NSPropertyListSerialization.h"

#include "support/PropertyLists.h"

using namespace brindle;
using namespace brindle::test;
using namespace std::literals;

// In which order objects may stand in a binary list, and who owns them once they are read.

namespace {

/// Answers what an array holds last, known without being owned.
WeakRef<NSObject> lastOf(const Ref<NSObject>& array)
{
    return cast<NSArray>(array)->lastObject().get();
}

std::string bigEndian(std::size_t value, int bytes)
{
    std::string text;
    for (int shift = 8 * (bytes - 1); shift >= 0; shift -= 8)
        text += static_cast<char>(value >> shift);
    return text;
}

/// Writes arrays nested so deep, the innermost first.
std::string nestedFromWithin(std::size_t depth)
{
    std::string out = "bplist00\xa0";
    std::string table = bigEndian(8, 3);
    for (std::size_t i = 1; i < depth; ++i) {
        table += bigEndian(out.size(), 3);
        out += "\xa1" + bigEndian(i - 1, 3);
    }
    return out + table + std::string("\0\0\0\0\0\0\3\3", 8) + bigEndian(depth, 8)
        + bigEndian(depth - 1, 8) + bigEndian(out.size(), 8);
}

}

TEST(BinaryListOrder, WhatIsHeldMayStandFirst)
{
    const std::string list = binaryList({ "\x51k", "\x51x", "\xd1\0\1"sv, "\xa2\2\1"sv }, 3);
    EXPECT_EQ(textOf(readList(list)), "(\n    {\n        k = x;\n    },\n    x\n)");
}

TEST(BinaryListOrder, WhatIsHeldMayStandLast)
{
    const std::string list = binaryList({ "\xa2\1\3"sv, "\xd1\2\3"sv, "\x51k", "\x51x" });
    EXPECT_EQ(textOf(readList(list)), "(\n    {\n        k = x;\n    },\n    x\n)");
}

TEST(BinaryListOrder, WhatIsHeldMayStandOnBothSides)
{
    const std::string list = binaryList({ "\x51k", "\xa2\2\3"sv, "\xd1\0\3"sv, "\x51x" }, 1);
    EXPECT_EQ(textOf(readList(list)), "(\n    {\n        k = x;\n    },\n    x\n)");
}

TEST(BinaryListOrder, WhatTheTopDoesNotReachMayContainItself)
{
    EXPECT_EQ(textOf(readList(binaryList({ "\xa1\0"sv, "\x51x", "\xa1\1"sv, "\xa1\3"sv }, 2))),
        "(\n    x\n)");
}

TEST(BinaryListOrder, WhatIsHeldFirstIsNestedNoDeeper)
{
    EXPECT_EQ(readFailure(nestedFromWithin(512)), "accepted");
    EXPECT_EQ(readFailure(nestedFromWithin(513)), "3840: byte 8: containers are nested too deeply");
    EXPECT_EQ(readFailure(nestedFromWithin(100000)).substr(0, 5), "3840:");
}

TEST(BinaryListOrder, ObjectsEndWithTheListThatHoldsThemManyTimes)
{
    const std::string list = binaryList({ "\x51x", "\xd1\0\0"sv, "\xa4\1\1\0\0"sv }, 2);
    for (const NSPropertyListReadOptions options :
        { NSPropertyListImmutable, NSPropertyListMutableContainers }) {
        Ref<NSObject> read = readList(list, options);
        const WeakRef<NSObject> last = lastOf(read);
        EXPECT_TRUE(last.get());
        read = nullptr;
        EXPECT_FALSE(last.get());
    }
}

TEST(BinaryListOrder, StringsThatCanBeChangedEndWithTheirList)
{
    // The string is a key too, for which another object stands.
    Ref<NSObject> read = readList(binaryList({ "\x51x", "\xd1\0\0"sv, "\xa3\1\0\0"sv }, 2),
        NSPropertyListMutableContainersAndLeaves);
    const WeakRef<NSObject> last = lastOf(read);
    EXPECT_TRUE(last.get());
    read = nullptr;
    EXPECT_FALSE(last.get());
}

TEST(BinaryListOrder, ValuesThatALaterOneReplacesEnd)
{
    Ref<NSObject> read
        = readList(binaryList({ "\x51k", "\x51x", "\x51y", "\xd2\0\0\1\2"sv, "\xa2\3\1"sv }, 4));
    EXPECT_EQ(textOf(read), "(\n    {\n        k = y;\n    },\n    x\n)");
    const WeakRef<NSObject> last = lastOf(read);
    read = nullptr;
    EXPECT_FALSE(last.get());
}

TEST(BinaryListOrder, KeysThatEqualAnotherMayBeHeldElsewhere)
{
    const std::string list
        = binaryList({ "\x51k", "\x51k", "\x51x", "\x51y", "\xd2\0\1\2\3"sv, "\xa3\4\1\2"sv }, 5);
    EXPECT_EQ(textOf(readList(list)), "(\n    {\n        k = y;\n    },\n    k,\n    x\n)");
}

TEST(BinaryListOrder, KeysOfManyDictionariesCanBeChangedWhereTheyAreNoKeys)
{
    const std::string list
        = binaryList({ "\x51k", "\x51x", "\xd1\0\1"sv, "\xd1\0\1"sv, "\xa3\2\3\0"sv }, 4);
    EXPECT_EQ(textOf(readList(list, NSPropertyListMutableContainersAndLeaves)),
        "(\n    {\n        k = x;\n    },\n    {\n        k = x;\n    },\n    k\n)");
}

TEST(BinaryListOrder, KeysOfManyDictionariesEndWithTheLastOne)
{
    Ref<NSObject> read = readList(binaryList(
        { "\x51k", "\x51x", "\xd1\0\1"sv, "\xd1\0\1"sv, "\xd1\0\1"sv, "\xa4\2\3\4\0"sv }, 5));
    const WeakRef<NSObject> key = lastOf(read);
    EXPECT_TRUE(key.get());
    read = nullptr;
    EXPECT_FALSE(key.get());
}

TEST(BinaryListOrder, WhatNothingHoldsEndsAtOnce)
{
    Ref<NSObject> read = readList(binaryList({ "\x51x", "\xa1\0"sv, "\xa1\0"sv }, 2));
    EXPECT_EQ(textOf(read), "(\n    x\n)");
    EXPECT_EQ(headerOf(lastOf(read).get().get()).count.load(), 2); // the array's and this one
}

TEST(BinaryListOrder, WhatComesLateIsFoundWhereverItStands)
{
    // In order but for one container near the end: what was made until then is made again.
    const std::string list
        = binaryList({ "\x51k", "\x51x", "\xd1\0\1"sv, "\xa1\4"sv, "\x51y", "\xa2\2\3"sv }, 5);
    EXPECT_EQ(
        textOf(readList(list)), "(\n    {\n        k = x;\n    },\n    (\n        y\n    )\n)");
}
