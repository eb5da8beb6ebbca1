// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSColor.h"

#include "quartz/CGImage.h"
#include "quartz/CGPattern.h"
#include "runtime/Table.h"
#include "support/Focused.h"

namespace brindle {

/// Answers what patterns ask images for: two points, the left red, the right blue.
class TwoPoints : public NSObject {
    BRINDLE_OBJECT(TwoPoints, NSObject)
};
template <> struct TwoPoints::Methods<struct Picture> {
    static NSSize size(TwoPoints&) { return { 2, 1 }; }
    static Ref<CGImage> image(TwoPoints&, NSRect*, NSObject*, NSObject*)
    {
        const std::uint32_t pixels[] = { 0xFFFF0000, 0xFF0000FF };
        return quartz::imageFromPixels(pixels, 2, 1, 8);
    }
    static void table(Builder& t)
    {
        t.methods({
            { "size", imp<size> },
            { "CGImageForProposedRect:context:hints:", imp<image> },
        });
    }
};
BRINDLE_RECORD(TwoPoints, Picture)

}

using namespace brindle;
using test::Rgba;

namespace {

Ref<NSColor> patternOf(const Ref<NSObject>& image)
{
    return NSColor::cls().send<"colorWithPatternImage:", Ref<NSColor>>(image.get());
}

}

TEST(NSColorPattern, PaintsWithTheImageSideBySide)
{
    const test::Focused picture(8, 8);
    patternOf(make<TwoPoints>())->set();
    NSRectFill(NSMakeRect(1, 0, 6, 8));
    EXPECT_EQ(picture.at(0, 4).alpha, 0);
    EXPECT_EQ(picture.at(1, 4), (Rgba { 0, 0, 255, 255 }));
    EXPECT_EQ(picture.at(2, 4), (Rgba { 255, 0, 0, 255 }));
    EXPECT_EQ(picture.at(6, 1), (Rgba { 255, 0, 0, 255 }));
}

TEST(NSColorPattern, StrokesToo)
{
    const test::Focused picture(8, 8);
    patternOf(make<TwoPoints>())->setStroke();
    CGContextStrokeRectWithWidth(picture, CGRectMake(2, 2, 4, 4), 2);
    EXPECT_EQ(picture.at(2, 2), (Rgba { 255, 0, 0, 255 }));
    EXPECT_EQ(picture.at(3, 2), (Rgba { 0, 0, 255, 255 }));
}

TEST(NSColorPattern, OfWhatIsNoPicturePaintsNothing)
{
    const test::Focused picture(8, 8);
    patternOf(make<NSObject>())->set();
    NSRectFill(NSMakeRect(0, 0, 8, 8));
    EXPECT_EQ(picture.at(4, 4).alpha, 0);
    EXPECT_FALSE(patternOf(make<NSObject>())->CGColor());
}

TEST(NSColorPattern, IsNoColourOfComponents)
{
    const auto color = patternOf(make<TwoPoints>())->CGColor();
    EXPECT_TRUE(CGColorGetPattern(color.get()));
    EXPECT_FALSE(NSColor::cls().colorWithCGColor(color.get()));
}
