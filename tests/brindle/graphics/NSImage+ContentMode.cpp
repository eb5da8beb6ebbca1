// SPDX-License-Identifier: Apache-2.0
#include "graphics/NSImage+ContentMode.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "runtime/Table.h"
#include "support/Focused.h"
#include "support/Pictures.h"
#include "support/Strings.h"

namespace brindle {

/// An image that tells where it is drawn instead of drawing.
class PlacedImage : public NSImage {
    BRINDLE_OBJECT(PlacedImage, NSImage)

public:
    NSRect target() const { return target_; }
    NSRect source() const { return source_; }
    NSCompositingOperation operation() const { return operation_; }
    double fraction() const { return fraction_; }
    NSRect clip() const { return clip_; }

private:
    NSRect target_ {};
    NSRect source_ {};
    NSCompositingOperation operation_ {};
    double fraction_ = 0;
    NSRect clip_ {};
};

template <> struct PlacedImage::Methods<struct Recording> {
    static void draw(PlacedImage& self, NSRect rect, NSRect source,
        NSCompositingOperation operation, CGFloat fraction)
    {
        self.target_ = rect;
        self.source_ = source;
        self.operation_ = operation;
        self.fraction_ = fraction;
        self.clip_ = CGContextGetClipBoundingBox(currentCGContext().get());
    }
    static void table(Builder& t)
    {
        t.methods({ { "drawInRect:fromRect:operation:fraction:", imp<draw> } });
    }
};
BRINDLE_RECORD(PlacedImage, Recording)

namespace test {

    Ref<PlacedImage> placed(double width, double height)
    {
        return cast<PlacedImage>(alloc<PlacedImage>()->initWithSize(NSMakeSize(width, height)));
    }

    /// Answers where an image of a size lies in a rectangle.
    NSRect target(NSSize image, NSRect rect, NSInteger mode)
    {
        const auto drawn = placed(image.width, image.height);
        drawInRect_contentMode(drawn, rect, mode);
        return drawn->target();
    }

    struct Placement {
        NSInteger mode;
        NSRect target;
    };

    TEST(ContentMode, PlacesASmallerImage)
    {
        const NSRect rect = NSMakeRect(10, 20, 35.5, 41.5);
        for (const auto& [mode, expected] : {
                 Placement { 0, rect },
                 Placement { 1, NSMakeRect(10, 23, 35.5, 35) },
                 Placement { 2, NSMakeRect(7, 20, 41, 41.5) },
                 Placement { 3, rect },
                 Placement { 4, NSMakeRect(17, 30, 20, 20) },
                 Placement { 5, NSMakeRect(17, 20, 20, 20) },
                 Placement { 6, NSMakeRect(17, 41, 20, 20) },
                 Placement { 7, NSMakeRect(10, 30, 20, 20) },
                 Placement { 8, NSMakeRect(25.5, 30, 20, 20) },
                 Placement { 9, NSMakeRect(10, 20, 20, 20) },
                 Placement { 10, NSMakeRect(25.5, 20, 20, 20) },
                 Placement { 11, NSMakeRect(10, 41, 20, 20) },
                 Placement { 12, NSMakeRect(25.5, 41.5, 20, 20) },
             })
            EXPECT_EQ(target(NSMakeSize(20, 20), rect, mode), expected) << "mode " << mode;
    }

    TEST(ContentMode, PlacesALargerImage)
    {
        const NSRect rect = NSMakeRect(0, 0, 50, 50);
        for (const auto& [mode, expected] : {
                 Placement { 0, rect },
                 Placement { 1, NSMakeRect(0, 12, 50, 25) },
                 Placement { 2, NSMakeRect(-25, 0, 100, 50) },
                 Placement { 3, rect },
                 Placement { 4, NSMakeRect(-51, -13, 151, 75) },
                 Placement { 5, NSMakeRect(-51, 0, 151, 75) },
                 Placement { 6, NSMakeRect(-51, -25, 151, 75) },
                 Placement { 7, NSMakeRect(0, -13, 151, 75) },
                 Placement { 8, NSMakeRect(-101, -13, 151, 75) },
                 Placement { 9, NSMakeRect(0, 0, 151, 75) },
                 Placement { 10, NSMakeRect(-101, 0, 151, 75) },
                 Placement { 11, NSMakeRect(0, -25, 151, 75) },
                 Placement { 12, NSMakeRect(-101, -25, 151, 75) },
             })
            EXPECT_EQ(target(mode == 1 || mode == 2 ? NSMakeSize(100, 50) : NSMakeSize(151, 75),
                          rect, mode),
                expected)
                << "mode " << mode;
    }

    TEST(ContentMode, FittedImageIsCentredOnWholePoints)
    {
        EXPECT_EQ(
            target(NSMakeSize(100, 50), NSMakeRect(0, 0, 50, 50), 1), NSMakeRect(0, 12, 50, 25));
    }

    TEST(ContentMode, FittedTallImageKeepsTheHeight)
    {
        EXPECT_EQ(
            target(NSMakeSize(50, 100), NSMakeRect(0, 0, 51, 51), 1), NSMakeRect(13, 0, 25, 51));
        EXPECT_EQ(
            target(NSMakeSize(50, 100), NSMakeRect(0, 0, 51, 51), 2), NSMakeRect(0, -26, 51, 102));
    }

    TEST(ContentMode, FarCornerIsNotRoundedDown)
    {
        const NSRect rect = NSMakeRect(0, 0, 35.5, 35.5);
        EXPECT_EQ(target(NSMakeSize(20, 20), rect, 12), NSMakeRect(15.5, 15.5, 20, 20));
        EXPECT_EQ(target(NSMakeSize(20, 20), rect, 11), NSMakeRect(0, 15, 20, 20));
        EXPECT_EQ(target(NSMakeSize(20, 20), rect, 6), NSMakeRect(7, 15, 20, 20));
    }

    TEST(ContentMode, ImageOfTheSameSizeFillsTheRectangleInEveryMode)
    {
        const NSRect rect = NSMakeRect(3.25, 4.75, 20, 20);
        for (NSInteger mode = -1; mode <= 13; ++mode)
            EXPECT_EQ(target(NSMakeSize(20, 20), rect, mode), rect) << "mode " << mode;
    }

    TEST(ContentMode, OtherNumbersCountAsZero)
    {
        const NSRect rect = NSMakeRect(1, 2, 30, 40);
        for (const NSInteger mode :
            std::initializer_list<NSInteger> { -1, 13, INTPTR_MAX, INTPTR_MIN })
            EXPECT_EQ(target(NSMakeSize(20, 20), rect, mode), rect);
    }

    TEST(ContentMode, DrawsTheWholeImageOverWhatIsThere)
    {
        const auto image = placed(20, 10);
        drawInRect_contentMode_alpha(image, NSMakeRect(0, 0, 5, 5), 4, 0.25);
        EXPECT_EQ(image->source(), NSMakeRect(0, 0, 20, 10));
        EXPECT_EQ(image->operation(), NSCompositeSourceOver);
        EXPECT_EQ(image->fraction(), 0.25);
        drawInRect_contentMode(image, NSMakeRect(0, 0, 5, 5), 4);
        EXPECT_EQ(image->fraction(), 1);
    }

    TEST(ContentMode, ClipsOnlyEdgesAndCorners)
    {
        const NSRect rect = NSMakeRect(4, 4, 8, 8);
        for (NSInteger mode = -1; mode <= 13; ++mode) {
            const Focused context(20, 20);
            const auto image = placed(12, 12);
            drawInRect_contentMode(image, rect, mode);
            const bool clips = mode >= 5 && mode <= 12;
            EXPECT_EQ(image->clip(), clips ? rect : NSMakeRect(0, 0, 20, 20)) << "mode " << mode;
            EXPECT_EQ(CGContextGetClipBoundingBox(context), NSMakeRect(0, 0, 20, 20));
        }
    }

    TEST(ContentMode, DoesNotClipAnImageOfTheSameSize)
    {
        const Focused context(20, 20);
        const auto image = placed(8, 8);
        drawInRect_contentMode(image, NSMakeRect(4, 4, 8, 8), 9);
        EXPECT_EQ(image->clip(), NSMakeRect(0, 0, 20, 20));
    }

    TEST(ContentMode, FillingImageReachesOverTheRectangle)
    {
        const Focused context(6, 4);
        const auto image = quartersImage();
        image->setSize(NSMakeSize(8, 4));
        drawInRect_contentMode(image, NSMakeRect(1, 0, 4, 4), 2);
        EXPECT_EQ(shape(context), "rr??gg/rr??gg/bb??ww/bb??ww"); // enlarged, the middle is mixed
    }

    TEST(ContentMode, WorksWithoutAContext)
    {
        drawInRect_radius_contentMode(quartersImage(), NSMakeRect(0, 0, 9, 9), 2, 9);
        EXPECT_FALSE(currentCGContext());
    }

    // ---- round corners

    TEST(RoundedImage, HasTransparentCorners)
    {
        const Focused context(20, 20);
        const auto image
            = alloc<NSImage>()->initWithCGImage_size(plainPicture(20, 20).get(), NSZeroSize);
        drawInRect_radius(image, NSMakeRect(0, 0, 20, 20), 8);
        for (const auto& [x, y] : { std::pair { 0, 0 }, { 19, 0 }, { 0, 19 }, { 19, 19 } })
            EXPECT_EQ(context.at(x, y), (Rgba { 0, 0, 0, 0 }));
        EXPECT_EQ(context.at(10, 0), (Rgba { 255, 255, 255, 255 }));
        EXPECT_EQ(context.at(10, 10), (Rgba { 255, 255, 255, 255 }));
        EXPECT_EQ(CGContextGetClipBoundingBox(context), NSMakeRect(0, 0, 20, 20));
    }

    TEST(RoundedImage, WithoutARadiusIsNotClipped)
    {
        const Focused context(20, 20);
        const auto image = placed(40, 40);
        drawInRect_radius_contentMode(image, NSMakeRect(5, 5, 10, 10), 0, 4);
        EXPECT_EQ(image->clip(), NSMakeRect(0, 0, 20, 20));
        EXPECT_EQ(image->target(), NSMakeRect(-10, -10, 40, 40));
    }

    TEST(RoundedImage, NoNumberCountsAsARadius)
    {
        const Focused context(20, 20);
        const auto image = placed(40, 40);
        drawInRect_radius(
            image, NSMakeRect(5, 5, 10, 10), std::numeric_limits<double>::quiet_NaN());
        EXPECT_NE(image->clip(), NSMakeRect(0, 0, 20, 20));
        EXPECT_EQ(CGContextGetClipBoundingBox(context), NSMakeRect(0, 0, 20, 20));
    }

    TEST(RoundedImage, PathSpansTheRectangle)
    {
        const Focused context(40, 40);
        addRoundedRectToPath_rect_radius(quartersImage(), context, NSMakeRect(5, 6, 20, 10), 3);
        const CGRect box = CGContextGetPathBoundingBox(context);
        EXPECT_NEAR(box.origin.x, 5, 1e-5);
        EXPECT_NEAR(box.origin.y, 6, 1e-5);
        EXPECT_NEAR(box.size.width, 20, 1e-5);
        EXPECT_NEAR(box.size.height, 10, 1e-5);
    }

    TEST(RoundedImage, PathWithoutRadiusIsTheRectangle)
    {
        const Focused context(40, 40);
        CGContextMoveToPoint(context, 1, 1); // what was there is gone
        CGContextAddLineToPoint(context, 39, 39);
        addRoundedRectToPath_rect_radius(quartersImage(), context, NSMakeRect(5, 6, 20, 10), 0);
        EXPECT_EQ(CGContextGetPathBoundingBox(context), NSMakeRect(5, 6, 20, 10));
        EXPECT_EQ(CGContextGetCTM(context).tx, 0);
    }

}

}
