// SPDX-License-Identifier: Apache-2.0
#include "foundation/lists/BinaryListWriterPrivate.h"

#include <numeric>

#include "foundation/lists/BinaryListReaderPrivate.h"
#include "support/PropertyLists.h"

using namespace brindle;
using namespace brindle::lists;
using namespace std::literals;

namespace {

/// Answers the values that an array in a finished list holds, by the indexes of their objects.
std::vector<std::size_t> elementsOf(const Ref<NSData>& list)
{
    BinaryListReader reader;
    Failure failure;
    EXPECT_TRUE(reader.open(bytesOf(list.get()), failure)) << failure.reason;
    const auto elements = reader.elements(reader.top());
    std::vector<std::size_t> indexes;
    for (std::size_t i = 0; i < elements.size(); ++i)
        indexes.push_back(elements[i]);
    return indexes;
}

}

TEST(BinaryListWriter, EqualStringsAnswerOneIndexHoweverManyCameBetween)
{
    BinaryListWriter writer;
    const auto first = writer.string("key"sv);
    for (int i = 0; i < 5000; ++i)
        writer.string(std::string_view(std::to_string(i)));
    EXPECT_EQ(writer.string("key"sv), first);
}

TEST(BinaryListWriter, LongDataAnswersOneIndex)
{
    BinaryListWriter writer;
    const std::vector<unsigned char> bytes(200, 7);
    const auto first = writer.data(bytes);
    for (int i = 0; i < 5000; ++i)
        writer.integer(i);
    EXPECT_EQ(writer.data(bytes), first);
}

TEST(BinaryListWriter, EqualValuesAreInTheListOnce)
{
    BinaryListWriter writer;
    std::vector<BinaryListWriter::Index> elements;
    for (int round = 0; round < 2; ++round) {
        for (int i = 0; i < 5000; ++i) {
            elements.push_back(writer.integer(i));
            elements.push_back(writer.passingString(std::string_view(std::to_string(i))));
        }
    }
    const std::vector<std::size_t> indexes = elementsOf(writer.finish(writer.array(elements)));
    ASSERT_EQ(indexes.size(), 20000u);
    EXPECT_TRUE(std::equal(indexes.begin(), indexes.begin() + 10000, indexes.begin() + 10000));
    EXPECT_EQ(*std::max_element(indexes.begin(), indexes.end()), 9999u);
}

TEST(BinaryListWriter, DifferentValuesStayApartWhenTheirHashesAreEqual)
{
    // Hashes have 32 bits: among so many values some dozen pairs share theirs.
    constexpr int kValues = 500'000;
    BinaryListWriter writer;
    std::vector<BinaryListWriter::Index> elements;
    for (int round = 0; round < 2; ++round) {
        for (int i = 0; i < kValues; ++i)
            elements.push_back(writer.integer(i));
    }
    const std::vector<std::size_t> indexes = elementsOf(writer.finish(writer.array(elements)));
    ASSERT_EQ(indexes.size(), 2u * kValues);
    for (std::size_t i = 0; i < indexes.size(); ++i)
        ASSERT_EQ(indexes[i], i % kValues);
}

TEST(BinaryListWriter, ReferencesFollowTheObjectsWhenEqualOnesAreLeftOut)
{
    BinaryListWriter writer;
    std::vector<BinaryListWriter::Index> elements;
    for (int i = 0; i < 3000; ++i) {
        const auto key = writer.string("number"sv);
        const auto value = writer.real(i % 1500);
        elements.push_back(writer.dictionary({ &key, 1 }, { &value, 1 }));
    }
    const Ref<NSData> data = writer.finish(writer.array(elements));
    const auto list = cast<NSArray>(test::readList(test::bytesIn(data)));
    ASSERT_EQ(list->count(), 3000u);
    for (NSUInteger i = 0; i < 3000; ++i) {
        const auto entry = cast<NSDictionary>(list->objectAtIndex(i));
        EXPECT_EQ(cast<NSNumber>(entry->objectForKey("number"_ns))->integerValue(),
            static_cast<NSInteger>(i % 1500));
    }
}

TEST(BinaryListWriter, BeginsAnewAfterFinishing)
{
    BinaryListWriter writer;
    const auto first = test::bytesIn(writer.finish(writer.string("x"sv)));
    EXPECT_EQ(test::bytesIn(writer.finish(writer.string("x"sv))), first);
}

// ---- reading in place

TEST(BinaryListReader, FindsEntriesByTheirKey)
{
    BinaryListWriter writer;
    const BinaryListWriter::Index keys[] = { writer.string("a"sv), writer.string(u"ä"sv) };
    const BinaryListWriter::Index values[] = { writer.integer(5), writer.boolean(true) };
    const Ref<NSData> data = writer.finish(writer.dictionary(keys, values));
    BinaryListReader reader;
    Failure failure;
    ASSERT_TRUE(reader.open(bytesOf(data.get()), failure));
    EXPECT_EQ(reader.integer(reader.find(reader.top(), "a")), 5);
    EXPECT_EQ(reader.find(reader.top(), "b"), reader.count());
    EXPECT_EQ(reader.keys(reader.top()).size(), 2u);
    EXPECT_EQ(reader.ascii(reader.keys(reader.top())[0]), "a");
    EXPECT_EQ(reader.ascii(reader.keys(reader.top())[1]).data(), nullptr);
    EXPECT_FALSE(reader.leaf(reader.top()));
}

TEST(BinaryListReader, RefusesWhatIsNotBinary)
{
    BinaryListReader reader;
    Failure failure;
    EXPECT_FALSE(reader.open({}, failure));
    EXPECT_EQ(failure.reason, "a binary property list begins with bplist0");
}
