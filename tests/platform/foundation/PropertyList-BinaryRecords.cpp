// SPDX-License-Identifier: Apache-2.0
#include "foundation/NSMutableDictionary.h"
#include "support/PropertyLists.h"

using namespace brindle;
using namespace brindle::test;
using namespace std::literals;

// Dictionaries with the keys of the one before are written and read in fewer steps than others.

namespace {

void expectSameAgain(const Ref<NSObject>& list)
{
    const Ref<NSObject> read = readList(writeList(list, kBinary));
    ASSERT_TRUE(read);
    EXPECT_TRUE(read->isEqual(list.get())) << textOf(read->description());
}

/// Answers a list of bytes: objects, and a trailer with offsets and references of one byte.
std::string listOf(const std::vector<std::string>& objects, std::size_t top)
{
    std::string list = "bplist00";
    std::string table;
    for (const std::string& object : objects) {
        table += static_cast<char>(list.size());
        list += object;
    }
    const auto word
        = [](std::size_t value) { return std::string(7, '\0') + static_cast<char>(value); };
    const std::size_t start = list.size();
    return list + table + std::string(6, '\0') + "\1\1"s + word(objects.size()) + word(top)
        + word(start);
}

}

TEST(BinaryListRecords, OfTheSameKeysComeBack)
{
    std::vector<Ref<NSObject>> records;
    for (NSInteger i = 0; i < 100; ++i)
        records.push_back(
            makeDictionary({ { "a"_ns, number(i).get() }, { "b"_ns, number(-i).get() } }));
    expectSameAgain(makeArray(std::move(records)));
}

TEST(BinaryListRecords, InsideEachOtherKeepTheirValues)
{
    const Ref<NSDictionary> inner
        = makeDictionary({ { "a"_ns, number(1).get() }, { "b"_ns, number(2).get() } });
    const Ref<NSDictionary> middle
        = makeDictionary({ { "a"_ns, inner.get() }, { "b"_ns, number(3).get() } });
    const Ref<NSDictionary> outer
        = makeDictionary({ { "a"_ns, number(4).get() }, { "b"_ns, middle.get() } });
    expectSameAgain(makeArray({ inner.get(), outer.get(), middle.get() }));
}

TEST(BinaryListRecords, WithKeysByTurnsComeBack)
{
    const Ref<NSDictionary> one
        = makeDictionary({ { "a"_ns, number(1).get() }, { "b"_ns, number(2).get() } });
    const Ref<NSDictionary> turned
        = makeDictionary({ { "b"_ns, number(1).get() }, { "a"_ns, number(2).get() } });
    const Ref<NSDictionary> fewer = makeDictionary({ { "a"_ns, number(1).get() } });
    const Ref<NSDictionary> none = NSDictionary::cls().dictionary();
    expectSameAgain(
        makeArray({ one.get(), turned.get(), one.get(), fewer.get(), none.get(), fewer.get() }));
}

TEST(BinaryListRecords, WithoutARemovedKeyComeBack)
{
    const auto cut = [](NSString* key) {
        const auto record = NSMutableDictionary::cls().dictionary();
        for (NSString* const each : { "a"_ns, "b"_ns, "c"_ns })
            record->setObject_forKey(number(1).get(), each);
        record->removeObjectForKey(key);
        return record;
    };
    const auto first = cut("a"_ns), second = cut("b"_ns), third = cut("c"_ns);
    expectSameAgain(makeArray({ third.get(), first.get(), second.get(), third.get() }));
}

TEST(BinaryListRecords, KnownKeysDoNotExcuseTheValues)
{
    const std::string record = "\xd1\0\1"s;
    EXPECT_EQ(test::readFailure(listOf({ "Qa"s, "\x10\7"s, record, record, "\xa2\2\3"s }, 4)),
        "accepted");
    EXPECT_NE(
        test::readFailure(listOf({ "Qa"s, "\x10\7"s, record, "\xd1\0\x09"s, "\xa2\2\3"s }, 4)),
        "accepted");
    EXPECT_NE(test::readFailure(listOf({ "Qa"s, "\x10\7"s, record, "\xd1\0\4"s, "\xa2\2\3"s }, 4)),
        "accepted");
}

TEST(BinaryListRecords, KeysBehindTheirDictionaryStayBehindIt)
{
    const std::string list = listOf({ "\xd1\2\2"s, "\xd1\2\2"s, "Qa"s, "\xa2\0\1"s }, 3);
    const auto read = cast<NSArray>(test::readList(list));
    ASSERT_TRUE(read);
    const auto record = cast<NSDictionary>(read->objectAtIndex(1));
    EXPECT_EQ(textOf(record->objectForKey("a"_ns)), "a");
}
