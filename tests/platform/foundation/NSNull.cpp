// SPDX-License-Identifier: Apache-2.0
#include "foundation/NSNull.h"

#include <gtest/gtest.h>

#include "support/Strings.h"

namespace brindle {

namespace {

    TEST(NSNull, ThereIsOnlyOne)
    {
        EXPECT_EQ(NSNull::cls().null().get(), NSNull::cls().null().get());
        EXPECT_EQ(make<NSNull>().get(), NSNull::cls().null().get());
        EXPECT_EQ(NSNull::cls().null()->copy().get(), NSNull::cls().null().get());
    }
    TEST(NSNull, DescribesItself)
    {
        EXPECT_EQ(utf8(NSNull::cls().null()->description()), "<null>");
    }
    TEST(NSNull, EqualsOnlyItself)
    {
        EXPECT_TRUE(NSNull::cls().null()->isEqual(NSNull::cls().null().get()));
        EXPECT_FALSE(NSNull::cls().null()->isEqual(nullptr));
    }

}

}
