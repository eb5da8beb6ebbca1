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
};
template <> struct GreyPart::Methods<struct Picture> {
    static NSSize size(GreyPart& self) { return self.size; }
    static void draw(
        GreyPart& self, NSRect rect, NSRect, NSCompositingOperation, CGFloat, bool, NSObject*)
    {
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
