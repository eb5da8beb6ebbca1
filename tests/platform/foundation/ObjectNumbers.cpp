// SPDX-License-Identifier: Apache-2.0
#include "foundation/archives/ObjectNumbersPrivate.h"

#include <vector>

#include <gtest/gtest.h>

using namespace brindle;
using brindle::archives::ObjectNumbers;

namespace {

/// Answers what stands for an object at an address; nobody looks into it.
const NSObject* objectAt(std::uintptr_t address)
{
    return reinterpret_cast<const NSObject*>(address);
}

}

TEST(ObjectNumbers, AnObjectHasNoneAtFirst)
{
    ObjectNumbers numbers;
    EXPECT_EQ(numbers[objectAt(0x5000)], 0u);
}

TEST(ObjectNumbers, NeighboursHaveNumbersOfTheirOwn)
{
    ObjectNumbers numbers;
    for (std::uint32_t i = 1; i < 1000; ++i)
        numbers[objectAt(0x7f0000000010 + 32 * i)] = i;
    for (std::uint32_t i = 1; i < 1000; ++i)
        EXPECT_EQ(numbers[objectAt(0x7f0000000010 + 32 * i)], i);
}

TEST(ObjectNumbers, ObjectsFarApartHaveNumbersOfTheirOwn)
{
    ObjectNumbers numbers;
    std::vector<std::uintptr_t> addresses;
    for (unsigned shift = 10; shift < 47; ++shift) {
        for (std::uintptr_t i = 1; i < 40; ++i)
            addresses.push_back((std::uintptr_t { 1 } << 47) + (i << shift) + shift * 32);
    }
    for (const std::uintptr_t address : addresses)
        ++numbers[objectAt(address)];
    for (const std::uintptr_t address : addresses)
        EXPECT_EQ(numbers[objectAt(address)], 1u);
}
