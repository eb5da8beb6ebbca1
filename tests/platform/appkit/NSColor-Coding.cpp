// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSColor.h"

#include "foundation/NSData.h"
#include "foundation/NSKeyedArchiver.h"
#include "foundation/NSKeyedUnarchiver.h"
#include "runtime/Table.h"
#include "support/Strings.h"

namespace brindle {

/// Writes itself as a colour would, with any space and numbers.
class ForgedColor : public NSObject {
    BRINDLE_OBJECT(ForgedColor, NSObject)

public:
    int space = 0;
    Ref<NSString> key;
    std::string numbers;
};
template <> struct ForgedColor::Methods<struct Coding> {
    static void encode(ForgedColor& self, NSCoder* coder)
    {
        coder->encodeInt_forKey(self.space, "NSColorSpace"_ns);
        coder->encodeBytes_length_forKey(self.numbers.data(), self.numbers.size(), self.key.get());
    }
    static void table(Builder& t) { t.methods({ { "encodeWithCoder:", imp<encode> } }); }
};
BRINDLE_RECORD(ForgedColor, Coding)

}

using namespace brindle;

namespace {

/// Answers what an archive of these numbers reads as.
std::string forged(int space, NSString* key, std::string numbers)
{
    const Ref<ForgedColor> color = make<ForgedColor>();
    color->space = space;
    color->key = key;
    color->numbers = std::move(numbers);
    NSKeyedArchiver::cls().setClassName_forClass("NSColor"_ns, ForgedColor::cls());
    const Ref<NSData> data = NSKeyedArchiver::cls().archivedDataWithRootObject(color.get());
    return textOf(NSKeyedUnarchiver::cls().unarchivedObjectOfClass_fromData_error(
        NSColor::cls(), data.get(), nullptr));
}

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

TEST(NSColorCoding, NumbersAreBoundedWhenRead)
{
    EXPECT_EQ(forged(1, "NSRGB"_ns, "3 -1 nan 0.5"), "NSCalibratedRGBColorSpace 1 0 0 0.5");
    EXPECT_EQ(forged(3, "NSWhite"_ns, "inf"), "NSCalibratedWhiteColorSpace 1 1");
}

TEST(NSColorCoding, MissingOrWrongNumbersAreRefused)
{
    EXPECT_EQ(forged(1, "NSRGB"_ns, "0.5 0.5"), "(nil)");
    EXPECT_EQ(forged(1, "NSRGB"_ns, "red green blue"), "(nil)");
    EXPECT_EQ(forged(1, "NSRGB"_ns, "   "), "(nil)");
    EXPECT_EQ(forged(1, "NSRGB"_ns, ""), "(nil)");
    EXPECT_EQ(forged(1, "NSWhite"_ns, "0.5 0.5 0.5"), "(nil)");
}

TEST(NSColorCoding, UnknownSpacesAndNamesAreRefused)
{
    EXPECT_EQ(forged(0, "NSRGB"_ns, "1 1 1"), "(nil)");
    EXPECT_EQ(forged(77, "NSRGB"_ns, "1 1 1"), "(nil)");
    EXPECT_EQ(forged(6, "NSColorName"_ns, "textColor"), "(nil)"); // bytes, not a string
}
