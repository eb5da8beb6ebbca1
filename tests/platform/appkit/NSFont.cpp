// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSFont.h"

#include "foundation/NSData.h"
#include "foundation/NSKeyedArchiver.h"
#include "foundation/NSKeyedUnarchiver.h"
#include "support/Strings.h"

namespace brindle {

TEST(NSFont, ComesBackFromAnArchiveWithNameAndSize)
{
    const Ref<NSFont> font = NSFont::cls().boldSystemFontOfSize(17.5);
    const Ref<NSData> data = NSKeyedArchiver::cls().archivedDataWithRootObject(font.get());
    EXPECT_TRUE(font->isEqual(NSKeyedUnarchiver::cls().unarchiveObjectWithData(data.get()).get()));
}

TEST(NSFont, UnknownNameAndNilNameAnswerNil)
{
    EXPECT_EQ(NSFont::cls().fontWithName_size("No Such Face"_ns, 12), nullptr);
    EXPECT_EQ(NSFont::cls().fontWithName_size(nullptr, 12), nullptr);
}

TEST(NSFont, IsTheSameObjectWhenItIsAskedForAgain)
{
    const Ref<NSFont> font = NSFont::cls().systemFontOfSize(21);
    EXPECT_EQ(NSFont::cls().systemFontOfSize(21), font);
    EXPECT_FALSE(NSFont::cls().systemFontOfSize(22) == font);
    EXPECT_FALSE(NSFont::cls().boldSystemFontOfSize(21) == font);
}

TEST(NSFont, ManyOthersLaterItIsStillEqual)
{
    const Ref<NSFont> font = NSFont::cls().systemFontOfSize(21);
    for (int size = 30; size < 60; ++size)
        EXPECT_EQ(NSFont::cls().systemFontOfSize(size)->pointSize(), size);
    EXPECT_TRUE(NSFont::cls().systemFontOfSize(21)->isEqual(font.get()));
}

TEST(NSFont, SizeZeroMeansTheSizeOfTheRole)
{
    EXPECT_EQ(NSFont::cls().systemFontOfSize(0)->pointSize(), 13);
    EXPECT_EQ(NSFont::cls().menuBarFontOfSize(0)->pointSize(), 14);
    EXPECT_EQ(NSFont::cls().fontWithName_size("Helvetica"_ns, 0)->pointSize(), 12);
}

}
