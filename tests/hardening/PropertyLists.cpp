// SPDX-License-Identifier: Apache-2.0
// Damaged property lists, made from good ones: nothing may crash, take long or eat memory.

#include <random>

#include "hardening/DamagedInputs.h"
#include "support/PropertyLists.h"
#include "support/RandomLists.h"

using namespace brindle;
using namespace brindle::test;

namespace {

std::string oldStyle()
{
    return "{ a = 1; \"b\\U00e4\\n\" = ( x, <0a0b>, { c = d; } ); /* e */ f = 'g'; }";
}

/// Good lists of every format.
std::vector<std::string> goodLists()
{
    RandomLists random(99, RandomLists::Dates::whole);
    std::vector<std::string> lists { oldStyle() };
    for (int i = 0; i < 10; ++i) {
        const Ref<NSObject> list = makeArray({ random.list().get(), random.list().get() });
        lists.push_back(writeList(list, kBinary));
        lists.push_back(writeList(list, kXML));
    }
    return lists;
}

/// Reads a damaged list, and writes it when it is still one.
void expectAListOrNone(const std::string& bytes)
{
    if (const Ref<NSObject> list = readList(bytes, NSPropertyListMutableContainersAndLeaves)) {
        writeList(list, kBinary);
        writeList(list, kXML);
    } else
        EXPECT_NE(readFailure(bytes), "no error");
}

class DamagedLists : public test::DamagedInputs {
protected:
    DamagedLists()
        : DamagedInputs("damaged lists", expectAListOrNone)
    {
    }
};

}

TEST_F(DamagedLists, EveryTruncation)
{
    for (const std::string& list : goodLists()) {
        for (std::size_t length = 0; length < list.size(); ++length)
            expect(list.substr(0, length));
    }
    publish("every truncation");
}

TEST_F(DamagedLists, TenThousandFlippedBits)
{
    std::mt19937 random(1);
    const std::vector<std::string> lists = goodLists();
    for (int i = 0; i < 10000; ++i) {
        std::string list = lists[random() % lists.size()];
        for (std::size_t flips = 1 + random() % 3; flips > 0; --flips) {
            char& byte = list[random() % list.size()];
            byte = static_cast<char>(byte ^ (1 << random() % 8));
        }
        expect(list);
    }
    publish("flipped bits");
}

TEST_F(DamagedLists, EveryByteByEveryMarker)
{
    const std::string list = writeList(RandomLists(3, RandomLists::Dates::whole).list(), kBinary);
    for (std::size_t at = 8; at < std::min<std::size_t>(list.size(), 400); ++at) {
        for (int marker = 0; marker < 256; ++marker) {
            std::string damaged = list;
            damaged[at] = static_cast<char>(marker);
            expect(damaged);
        }
    }
    publish("every marker in every place");
}

TEST_F(DamagedLists, CountsReplacedByLies)
{
    std::mt19937_64 random(2);
    const std::vector<std::string> lists = goodLists();
    for (int i = 0; i < 5000; ++i) {
        std::string list = lists[1 + 2 * (random() % 10)];
        const std::uint64_t lie = random() >> (random() % 64);
        const std::size_t size = std::size_t { 1 } << random() % 4;
        const std::size_t at = 8 + random() % (list.size() - 16);
        for (std::size_t byte = 0; byte < size; ++byte)
            list[at + byte] = static_cast<char>(lie >> (8 * byte));
        expect(list);
    }
    publish("counts that lie");
}

TEST_F(DamagedLists, PiecesOfTextRepeatedAndLost)
{
    std::mt19937 random(3);
    const std::vector<std::string> lists = goodLists();
    for (int i = 0; i < 5000; ++i) {
        const std::size_t which = random() % 11;
        std::string list = which ? lists[2 * which] : lists[0];
        const std::size_t from = random() % list.size();
        const std::size_t length = random() % (list.size() - from);
        const std::string piece = list.substr(from, length);
        if (random() % 2)
            list.erase(from, length);
        else
            list.insert(random() % list.size(), piece);
        expect(list);
    }
    publish("pieces repeated and lost");
}

TEST(RandomLists, TenThousandComeBackThroughBothFormats)
{
    RandomLists random(7, RandomLists::Dates::whole);
    for (int i = 0; i < 10000; ++i) {
        const Ref<NSObject> list = random.list();
        const Ref<NSObject> asXML = readList(writeList(readList(writeList(list, kBinary)), kXML));
        ASSERT_TRUE(asXML);
        ASSERT_TRUE(readList(writeList(asXML, kBinary))->isEqual(list.get()));
    }
    publish({ "random lists that differ after binary, XML and binary", 10000, 0, "lists", 0 });
}
