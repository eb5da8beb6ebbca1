// SPDX-License-Identifier: Apache-2.0
#include "foundation/HashingPrivate.h"

#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "foundation/NSStringPrivate.h"

using namespace brindle;

namespace {

constexpr std::uint64_t kBucket = 0xff;

/// Answers texts whose hashes have the same low bits with a seed.
std::vector<std::string> colliding(std::uint64_t seed)
{
    std::vector<std::string> texts;
    for (int i = 0; texts.size() < 500; ++i) {
        std::string text = "text " + std::to_string(i);
        if ((strings::hashOf(std::string_view(text), seed) & kBucket) == 0)
            texts.push_back(std::move(text));
    }
    return texts;
}

}

TEST(Hashing, TextsThatCollideWithOneSeedDoNotWithAnother)
{
    std::set<std::uint64_t> buckets;
    for (const std::string& text : colliding(12345))
        buckets.insert(strings::hashOf(std::string_view(text), 54321) & kBucket);
    EXPECT_GT(buckets.size(), 150u);
}

TEST(Hashing, TheSeedStaysTheSame)
{
    EXPECT_EQ(hashing::seed(), hashing::seed());
    EXPECT_NE(hashing::seed(), 0u);
}

TEST(Hashing, EveryByteCounts)
{
    for (std::size_t length = 1; length < 40; ++length) {
        std::vector<unsigned char> bytes(length, 'a');
        std::set<std::uint64_t> hashes { hashing::ofBytes(bytes) };
        for (unsigned char& byte : bytes) {
            byte = 'b';
            hashes.insert(hashing::ofBytes(bytes));
            byte = 'a';
        }
        EXPECT_EQ(hashes.size(), length + 1) << length;
    }
}

TEST(Hashing, BytesOfOtherLengthsDiffer)
{
    std::set<std::uint64_t> hashes;
    const std::vector<unsigned char> zeros(40);
    for (std::size_t length = 0; length <= zeros.size(); ++length)
        hashes.insert(hashing::ofBytes(zeros.data(), length));
    EXPECT_EQ(hashes.size(), zeros.size() + 1);
}

TEST(Hashing, TextIsTheSameHoweverItIsKept)
{
    using namespace std::string_view_literals;
    EXPECT_EQ(strings::hashOf("abc"sv, 7), strings::hashOf(u"abc"sv, 7));
    EXPECT_NE(strings::hashOf(u"ab\u0107"sv, 7), strings::hashOf(u"abc"sv, 7));
}
