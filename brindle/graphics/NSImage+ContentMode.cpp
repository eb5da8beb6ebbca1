// SPDX-License-Identifier: Apache-2.0
#include "NSImage+ContentMode.h"

#include "runtime/Table.h"

#include <cmath>

namespace brindle {

namespace {

    NSRect centred(NSRect r, NSSize size)
    {
        return { { r.origin.x + std::floor(r.size.width / 2 - size.width / 2),
                     r.origin.y + std::floor(r.size.height / 2 - size.height / 2) },
            size };
    }

    bool isWider(NSSize image, NSSize rect)
    {
        return image.width / image.height > rect.width / rect.height;
    }
    NSSize asWideAs(NSSize image, NSSize rect)
    {
        return { rect.width, std::floor(image.height / image.width * rect.width) };
    }
    NSSize asHighAs(NSSize image, NSSize rect)
    {
        return { std::floor(rect.height * image.width / image.height), rect.height };
    }

    /// Answers where an image of a size lies in a rectangle.
    NSRect targetRect(NSRect r, NSSize image, NSInteger mode)
    {
        const CGFloat middleX = r.origin.x + std::floor(r.size.width / 2 - image.width / 2);
        const CGFloat middleY = r.origin.y + std::floor(r.size.height / 2 - image.height / 2);
        const CGFloat farX = r.origin.x + (r.size.width - image.width);
        // Two of the modes at the far edge round down and one does not.
        const CGFloat wholeFarY = r.origin.y + std::floor(r.size.height - image.height);
        const CGFloat farY = r.origin.y + (r.size.height - image.height);
        const auto at = [image](CGFloat x, CGFloat y) { return NSRect { { x, y }, image }; };
        switch (mode) {
        case BRContentModeScaleAspectFit:
            return centred(
                r, isWider(image, r.size) ? asWideAs(image, r.size) : asHighAs(image, r.size));
        case BRContentModeScaleAspectFill:
            return centred(
                r, isWider(image, r.size) ? asHighAs(image, r.size) : asWideAs(image, r.size));
        case BRContentModeCenter:
            return centred(r, image);
        case BRContentModeTop:
            return at(middleX, r.origin.y);
        case BRContentModeBottom:
            return at(middleX, wholeFarY);
        case BRContentModeLeft:
            return at(r.origin.x, middleY);
        case BRContentModeRight:
            return at(farX, middleY);
        case BRContentModeTopLeft:
            return at(r.origin.x, r.origin.y);
        case BRContentModeTopRight:
            return at(farX, r.origin.y);
        case BRContentModeBottomLeft:
            return at(r.origin.x, wholeFarY);
        case BRContentModeBottomRight:
            return at(farX, farY);
        default:
            return r;
        }
    }

    struct ContentMode {

        static void drawWithAlpha(NSImage& self, NSRect rect, NSInteger mode, double alpha)
        {
            const NSSize size = self.size();
            const bool fits = CGSizeEqualToSize(size, rect.size);
            const NSRect target = fits ? rect : targetRect(rect, size, mode);
            const bool clips
                = !fits && mode >= BRContentModeTop && mode <= BRContentModeBottomRight;
            const Ref<CGContext> context = currentCGContext();
            if (clips) {
                CGContextSaveGState(context.get());
                CGContextBeginPath(context.get());
                CGContextAddRect(context.get(), rect);
                CGContextClip(context.get());
            }
            self.drawInRect_fromRect_operation_fraction(
                target, { NSZeroPoint, size }, NSCompositeSourceOver, alpha);
            if (clips)
                CGContextRestoreGState(context.get());
        }
        static void draw(NSImage& self, NSRect rect, NSInteger mode)
        {
            drawInRect_contentMode_alpha(self, rect, mode, 1);
        }
        static void drawWithRadius(NSImage& self, NSRect rect, double radius, NSInteger mode)
        {
            const Ref<CGContext> context = currentCGContext();
            CGContextSaveGState(context.get());
            if (radius != 0) { // what is no number counts as a radius
                addRoundedRectToPath_rect_radius(
                    self, context.get(), rect, static_cast<float>(radius));
                CGContextClip(context.get());
            }
            drawInRect_contentMode(self, rect, mode);
            CGContextRestoreGState(context.get());
        }
        static void drawRounded(NSImage& self, NSRect rect, double radius)
        {
            drawInRect_radius_contentMode(self, rect, radius, BRContentModeScaleToFill);
        }

        /// The corners' radius becomes the unit of length.
        static void addRoundedRect(NSImage&, CGContext* context, NSRect rect, float radius)
        {
            CGContextBeginPath(context);
            CGContextSaveGState(context);
            CGContextTranslateCTM(context, CGRectGetMinX(rect), CGRectGetMinY(rect));
            if (radius == 0) {
                CGContextAddRect(
                    context, CGRectMake(0, 0, CGRectGetWidth(rect), CGRectGetHeight(rect)));
                CGContextClosePath(context);
            } else {
                CGContextScaleCTM(context, radius, radius);
                const float fw = static_cast<float>(CGRectGetWidth(rect)) / radius;
                const float fh = static_cast<float>(CGRectGetHeight(rect)) / radius;
                CGContextMoveToPoint(context, fw, fh / 2);
                CGContextAddArcToPoint(context, fw, fh, fw / 2, fh, 1);
                CGContextAddArcToPoint(context, 0, fh, 0, fh / 2, 1);
                CGContextAddArcToPoint(context, 0, 0, fw / 2, 0, 1);
                CGContextAddArcToPoint(context, fw, 0, fw, fh / 2, 1);
                CGContextClosePath(context);
            }
            CGContextRestoreGState(context); // the path stays
        }

        static void table(Builder& t)
        {
            t.methods({
                { "drawInRect:contentMode:alpha:", imp<drawWithAlpha> },
                { "drawInRect:contentMode:", imp<draw> },
                { "drawInRect:radius:contentMode:", imp<drawWithRadius> },
                { "drawInRect:radius:", imp<drawRounded> },
                { "addRoundedRectToPath:rect:radius:", imp<addRoundedRect> },
            });
        }
    };

}
BRINDLE_EXTENSION(NSImage, ContentMode)

}
