// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSGraphics.h"

#include "runtime/Table.h"
#include "support/Colors.h"
#include "support/Focused.h"

namespace brindle {

/// Stands where an image would and fills its place with grey; so wide and high it says it is.
class GreyPart : public NSObject {
    BRINDLE_OBJECT(GreyPart, NSObject)

public:
    NSSize size;
    CGFloat gray = 0;
    std::vector<NSRect> places; // where it was drawn …
    std::vector<NSRect> sources; // … and what of it
};
template <> struct GreyPart::Methods<struct Picture> {
    static NSSize size(GreyPart& self) { return self.size; }
    static void draw(GreyPart& self, NSRect rect, NSRect source, NSCompositingOperation, CGFloat,
        bool, NSObject*)
    {
        self.places.push_back(rect);
        self.sources.push_back(source);
        NSRectFillListWithGrays(&rect, &self.gray, 1);
    }
    static void table(Builder& t)
    {
        t.methods({
            { "size", imp<size> },
            { "drawInRect:fromRect:operation:fraction:respectFlipped:hints:", imp<draw> },
        });
    }
};
BRINDLE_RECORD(GreyPart, Picture)

}

using namespace brindle;
using test::Rgba;

namespace {

Ref<GreyPart> part(double width, double height, double gray)
{
    const auto made = make<GreyPart>();
    made->size = { width, height };
    made->gray = gray;
    return made;
}

NSImage* image(const Ref<GreyPart>& made) { return reinterpret_cast<NSImage*>(made.get()); }

}

TEST(NSGraphics, FillsEachRectangleInItsColour)
{
    const test::Focused picture(10, 10);
    const NSRect rects[] = { NSMakeRect(0, 0, 5, 10), NSMakeRect(5, 0, 5, 10) };
    const auto red = rgb(1, 0, 0);
    NSColor* const colors[] = { red.get(), nullptr };
    NSRectFillListWithColors(rects, colors, 2);
    EXPECT_EQ(picture.at(2, 2), (Rgba { 255, 0, 0, 255 }));
    EXPECT_EQ(picture.at(7, 2).alpha, 0);
    const CGFloat grays[] = { 0, 1 };
    NSRectFillListWithGrays(rects, grays, 2);
    EXPECT_EQ(picture.at(2, 2), (Rgba { 0, 0, 0, 255 }));
    EXPECT_EQ(picture.at(7, 2), (Rgba { 255, 255, 255, 255 }));
}

TEST(NSGraphics, ListsLeaveTheColourAsItWas)
{
    const test::Focused picture(10, 10);
    rgb(0, 0, 1)->set();
    const NSRect rect = NSMakeRect(0, 0, 2, 2);
    const CGFloat gray = 1;
    NSRectFillListWithGrays(&rect, &gray, 1);
    NSRectFill(NSMakeRect(4, 4, 4, 4));
    EXPECT_EQ(picture.at(5, 5), (Rgba { 0, 0, 255, 255 }));
}

TEST(NSGraphics, DottedFrameIsOnAndOff)
{
    const test::Focused picture(10, 10);
    NSDottedFrameRect(NSMakeRect(0, 0, 10, 10));
    int on = 0;
    for (int x = 0; x < 10; ++x)
        on += picture.at(x, 9).alpha > 200;
    EXPECT_GE(on, 4);
    EXPECT_LE(on, 6);
    EXPECT_EQ(picture.at(5, 5).alpha, 0);
}

TEST(NSGraphics, TiledRectanglesSliceTheSides)
{
    const test::Focused picture(10, 10);
    const NSRectEdge sides[] = { NSMinXEdge, NSMaxYEdge };
    const CGFloat grays[] = { 0, 1 };
    const NSRect left = NSDrawTiledRects(NSMakeRect(0, 0, 10, 10), {}, sides, grays, 2);
    EXPECT_EQ(left, NSMakeRect(1, 0, 9, 9));
    EXPECT_EQ(picture.at(0, 5), (Rgba { 0, 0, 0, 255 }));
    EXPECT_EQ(picture.at(5, 0), (Rgba { 255, 255, 255, 255 }));
    EXPECT_EQ(picture.at(5, 5).alpha, 0);
}

TEST(NSGraphics, BarKeepsItsEndsAndStretchesItsMiddle)
{
    const test::Focused picture(20, 10);
    NSDrawThreePartImage(NSMakeRect(0, 0, 20, 10), image(part(3, 10, 0)), image(part(1, 10, 1)),
        image(part(4, 10, 0)), false, NSCompositeSourceOver, 1, false);
    EXPECT_EQ(picture.at(2, 5).red, 0);
    EXPECT_EQ(picture.at(3, 5).red, 255);
    EXPECT_EQ(picture.at(15, 5).red, 255);
    EXPECT_EQ(picture.at(16, 5), (Rgba { 0, 0, 0, 255 }));
}

TEST(NSGraphics, StandingBarBeginsAtTheTop)
{
    const test::Focused picture(10, 20);
    NSDrawThreePartImage(NSMakeRect(0, 0, 10, 20), image(part(10, 3, 1)), nullptr, nullptr, true,
        NSCompositeSourceOver, 1, false);
    EXPECT_EQ(picture.at(5, 1).red, 255);
    EXPECT_EQ(picture.at(5, 18).alpha, 0);
}

TEST(NSGraphics, BarRepeatsItsMiddleAndCutsTheLastTile)
{
    const test::Focused picture(20, 10);
    const auto middle = part(4, 10, 1);
    NSDrawThreePartImage(NSMakeRect(0, 0, 20, 10), image(part(3, 10, 0)), image(middle),
        image(part(3, 10, 0)), false, NSCompositeSourceOver, 1, false);
    ASSERT_EQ(middle->places.size(), 4u);
    EXPECT_EQ(middle->places[1], NSMakeRect(7, 0, 4, 10));
    EXPECT_EQ(middle->sources[1], NSMakeRect(0, 0, 4, 10));
    EXPECT_EQ(middle->places[3], NSMakeRect(15, 0, 2, 10));
    EXPECT_EQ(middle->sources[3], NSMakeRect(0, 0, 2, 10));
}

TEST(NSGraphics, EndlessBarsAndTinyTilesAreStretched)
{
    const test::Focused picture(20, 10);
    for (const double width : { 0.0, 1e-9, 1.0 }) {
        const auto middle = part(width, 10, 1);
        NSDrawThreePartImage(NSMakeRect(0, 0, 1e300, 10), nullptr, image(middle), nullptr, false,
            NSCompositeSourceOver, 1, false);
        EXPECT_LE(middle->places.size(), 1u) << width;
    }
}

TEST(NSGraphics, FrameKeepsItsCornersAndRepeatsItsSides)
{
    const test::Focused picture(20, 20);
    const auto topLeft = part(3, 4, 0);
    const auto top = part(5, 4, 1);
    const auto topRight = part(2, 4, 0);
    const auto left = part(3, 5, 1);
    const auto center = part(5, 5, 0.5);
    const auto right = part(2, 5, 1);
    const auto bottomLeft = part(3, 6, 0);
    const auto bottom = part(5, 6, 1);
    const auto bottomRight = part(2, 6, 0);
    const auto draw = [&](bool flipped) {
        NSDrawNinePartImage(NSMakeRect(0, 0, 20, 20), image(topLeft), image(top), image(topRight),
            image(left), image(center), image(right), image(bottomLeft), image(bottom),
            image(bottomRight), NSCompositeSourceOver, 1, flipped);
    };
    draw(false);
    EXPECT_EQ(topLeft->places, (std::vector<NSRect> { NSMakeRect(0, 16, 3, 4) }));
    EXPECT_EQ(topRight->places, (std::vector<NSRect> { NSMakeRect(18, 16, 2, 4) }));
    EXPECT_EQ(bottomLeft->places, (std::vector<NSRect> { NSMakeRect(0, 0, 3, 6) }));
    EXPECT_EQ(bottomRight->places, (std::vector<NSRect> { NSMakeRect(18, 0, 2, 6) }));
    EXPECT_EQ(top->places.size(), 3u);
    EXPECT_EQ(
        left->places, (std::vector<NSRect> { NSMakeRect(0, 11, 3, 5), NSMakeRect(0, 6, 3, 5) }));
    EXPECT_EQ(center->places.size(), 6u);
    draw(true);
    EXPECT_EQ(topLeft->places.back(), NSMakeRect(0, 0, 3, 4));
    EXPECT_EQ(bottomRight->places.back(), NSMakeRect(18, 14, 2, 6));
}
