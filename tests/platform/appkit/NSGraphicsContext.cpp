// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSGraphicsContext.h"

#include "appkit/NSColor.h"
#include "appkit/NSStringDrawing.h"
#include "support/Focused.h"

#include <cmath>

namespace brindle {

using test::Focused;
using test::isNear;
using test::Rgba;

TEST(NSGraphicsContext, RestoreMakesTheRememberedContextCurrent)
{
    const Focused picture(4, 4);
    const test::Picture other(4, 4);
    const Ref<NSGraphicsContext> first = NSGraphicsContext::cls().currentContext();
    {
        const GraphicsStateGuard saved;
        NSGraphicsContext::cls().setCurrentContext(
            NSGraphicsContext::cls().graphicsContextWithGraphicsPort_flipped(other, true).get());
        EXPECT_TRUE(NSGraphicsContext::cls().currentContext()->isFlipped());
    }
    EXPECT_EQ(NSGraphicsContext::cls().currentContext(), first);
}

TEST(NSGraphicsContext, RestoreBringsTheColourBack)
{
    const Focused picture(4, 4);
    NSColor::cls().redColor()->set();
    {
        const GraphicsStateGuard saved;
        NSColor::cls().blueColor()->set();
    }
    NSRectFill(NSMakeRect(0, 0, 4, 4));
    EXPECT_EQ(picture.at(0, 0), (Rgba { 255, 0, 0, 255 }));
}

TEST(NSGraphicsContext, NothingIsDrawnWithoutFocus)
{
    EXPECT_FALSE(NSGraphicsContext::cls().currentContext());
    const GraphicsStateGuard saved;
    NSColor::cls().redColor()->set();
    NSRectFill(NSMakeRect(0, 0, 4, 4));
    NSSetFocusRingStyle(NSFocusRingBelow);
}

TEST(NSGraphicsContext, RectFillReplacesAndSourceOverBlends)
{
    const Focused picture(2, 1);
    NSColor::cls().redColor()->set();
    NSRectFill(NSMakeRect(0, 0, 2, 1));
    NSColor::cls().colorWithCalibratedRed_green_blue_alpha(0, 0, 1, 0.5)->set();
    NSRectFill(NSMakeRect(0, 0, 1, 1));
    NSRectFillUsingOperation(NSMakeRect(1, 0, 1, 1), NSCompositeSourceOver);
    EXPECT_PRED_FORMAT3(isNear, picture.at(0, 0), (Rgba { 0, 0, 128, 128 }), 1);
    EXPECT_PRED_FORMAT3(isNear, picture.at(1, 0), (Rgba { 127, 0, 128, 255 }), 1);
}

TEST(NSGraphicsContext, FrameLiesInsideTheRectangle)
{
    const Focused picture(6, 6);
    NSColor::cls().redColor()->set();
    NSFrameRect(NSMakeRect(1, 1, 4, 4));
    EXPECT_EQ(picture.at(0, 0).alpha, 0);
    EXPECT_EQ(picture.at(1, 1).alpha, 255);
    EXPECT_EQ(picture.at(2, 2).alpha, 0);
    EXPECT_EQ(picture.at(4, 4).alpha, 255);
}

TEST(NSGraphicsContext, CompositingOperationSticks)
{
    const Focused picture(2, 2);
    const Ref<NSGraphicsContext> context = NSGraphicsContext::cls().currentContext();
    EXPECT_EQ(context->compositingOperation(), NSCompositeSourceOver);
    context->setCompositingOperation(NSCompositeSourceAtop);
    EXPECT_EQ(context->compositingOperation(), NSCompositeSourceAtop);
}

TEST(NSGraphicsContext, FocusRingSurroundsTheShapeUntilRestored)
{
    const Focused picture(20, 20);
    {
        const GraphicsStateGuard saved;
        NSColor::cls().whiteColor()->set();
        NSSetFocusRingStyle(NSFocusRingBelow);
        CGContextFillRect(picture, CGRectMake(8, 8, 4, 4));
    }
    EXPECT_GT(picture.at(6, 10).blue, picture.at(6, 10).red);
    EXPECT_EQ(picture.at(10, 10), (Rgba { 255, 255, 255, 255 }));
    EXPECT_EQ(picture.at(2, 10).alpha, 0);
}

TEST(NSStringDrawing, StringsFillTheRectangleTheyMeasure)
{
    const NSSize size = sizeWithAttributes("Lamp"_ns, nullptr);
    EXPECT_GT(size.width, 20);
    EXPECT_EQ(size.height, std::round(size.height));
    const Focused upright(60, 30);
    drawAtPoint_withAttributes("Lamp"_ns, NSMakePoint(4, 5), nullptr);
    const Ref<CGImage> expected = upright.image();
    const Focused flipped(60, 30, true);
    CGContextTranslateCTM(flipped, 0, 30);
    CGContextScaleCTM(flipped, 1, -1);
    drawAtPoint_withAttributes("Lamp"_ns, NSMakePoint(4, 25 - size.height), nullptr);
    EXPECT_TRUE(test::areAlike(flipped.image().get(), expected.get(), 0, "string"));
}

}
