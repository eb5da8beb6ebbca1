// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSColor.h"

#include "foundation/NSData.h"
#include "foundation/NSKeyedArchiver.h"
#include "foundation/NSKeyedUnarchiver.h"
#include "support/Strings.h"

using namespace brindle;

namespace {

Ref<NSColor> roundTrip(const Ref<NSColor>& color)
{
    return cast<NSColor>(
        NSKeyedUnarchiver::cls().unarchivedObjectOfClass_fromData_error(NSColor::cls(),
            NSKeyedArchiver::cls().archivedDataWithRootObject(color.get()).get(), nullptr));
}

void expectRoundTrip(const Ref<NSColor>& color)
{
    const Ref<NSColor> back = roundTrip(color);
    ASSERT_TRUE(back);
    EXPECT_TRUE(back->isEqual(color.get())) << textOf(color) << " came back as " << textOf(back);
}

}

TEST(NSColorCoding, ColoursOfEverySpaceComeBack)
{
    const auto& colors = NSColor::cls();
    expectRoundTrip(colors.colorWithCalibratedRed_green_blue_alpha(0.1, 0.2, 1.0 / 3, 0.75));
    expectRoundTrip(colors.colorWithDeviceRed_green_blue_alpha(0, 1, 0.5, 1));
    expectRoundTrip(colors.colorWithCalibratedWhite_alpha(0.7, 1));
    expectRoundTrip(colors.colorWithDeviceWhite_alpha(0.7, 0));
    expectRoundTrip(colors.clearColor());
}

TEST(NSColorCoding, ASystemColourComesBackAsTheOneThatFollowsTheAppearance)
{
    EXPECT_EQ(roundTrip(NSColor::cls().labelColor()), NSColor::cls().labelColor());
}

TEST(NSColorCoding, NumbersAreWrittenAsText)
{
    const Ref<NSData> data = NSKeyedArchiver::cls().archivedDataWithRootObject(
        NSColor::cls().colorWithCalibratedRed_green_blue_alpha(0.5, 0.25, 1, 1).get());
    const auto bytes = bytesOf(data.get());
    const std::string text(bytes.begin(), bytes.end());
    EXPECT_NE(text.find(std::string("0.5 0.25 1\0", 11)), std::string::npos);
}
