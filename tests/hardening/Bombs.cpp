// SPDX-License-Identifier: Apache-2.0
// Few bytes that stand for much: each is read at once or refused at once.

#include <string>
#include <vector>

#include "support/Figures.h"
#include "support/PropertyLists.h"

using namespace brindle;
using namespace brindle::test;

namespace {

std::string bigEndian(std::uint64_t value, int bytes)
{
    std::string text;
    for (int i = bytes - 1; i >= 0; --i)
        text += static_cast<char>(value >> (8 * i));
    return text;
}

/// A binary list of these objects, the first of them on top, with references of four bytes.
std::string wideList(const std::vector<std::string>& objects)
{
    std::string list = "bplist00";
    std::string offsets;
    for (const std::string& object : objects) {
        offsets += bigEndian(list.size(), 4);
        list += object;
    }
    const std::size_t table = list.size();
    return list + offsets + bigEndian(0x0404, 8) + bigEndian(objects.size(), 8) + bigEndian(0, 8)
        + bigEndian(table, 8);
}

/// Arrays in each other, each holding the next one so often.
std::string arraysInEachOther(std::uint32_t levels, std::size_t often)
{
    std::vector<std::string> objects;
    for (std::uint32_t level = 1; level <= levels; ++level) {
        std::string array(1, static_cast<char>(0xA0 + often));
        for (std::size_t i = 0; i < often; ++i)
            array += bigEndian(level, 4);
        objects.push_back(array);
    }
    objects.emplace_back("\x51k");
    return wideList(objects);
}

std::string repeated(std::string_view text, int times)
{
    std::string all;
    for (int i = 0; i < times; ++i)
        all += text;
    return all;
}

std::string growingEntities()
{
    std::string types = R"(<!ENTITY e0 "bomb">)";
    for (int i = 1; i < 30; ++i)
        types += "<!ENTITY e" + std::to_string(i) + " \""
            + repeated("&e" + std::to_string(i - 1) + ";", 10) + "\">";
    return "<?xml version=\"1.0\"?><!DOCTYPE plist [" + types
        + "]><plist><string>&e29;</string></plist>";
}

}

TEST(Bombs, AreReadOrRefusedAtOnce)
{
    constexpr int kDeep = 100'000;
    constexpr std::uint64_t kHuge = std::uint64_t { 1 } << 63;
    constexpr std::uint64_t kMany = std::uint64_t { 1 } << 60;
    Cost cost;
    for (const std::uint32_t levels : { 25U, 40U })
        cost.of([levels] { EXPECT_TRUE(readList(arraysInEachOther(levels, 3))); });
    for (const std::string& bomb :
        { arraysInEachOther(kDeep, 1), "<plist>" + repeated("<array>", kDeep), repeated("(", kDeep),
            growingEntities(), wideList({ "\x4F\x13" + bigEndian(kHuge, 8) }), // data
            wideList({ "\xAF\x13" + bigEndian(kMany, 8) }), // an array
            wideList({ "\xDF\x13" + bigEndian(kMany, 8) }) }) // a dictionary
        cost.of([&bomb] { EXPECT_FALSE(readList(bomb)); });
    cost.publish("lists that stand for much", 500, 64);
}
