// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSImage.h"

/// Placing an image in a rectangle by a content mode, and clipping it to round corners.

namespace brindle {

/// How an image lies in a rectangle; other numbers count as 0. The names hold where y grows downward: "top" is the edge at
/// the rectangle's origin.
enum : NSInteger {
    BRContentModeScaleToFill = 0,
    BRContentModeScaleAspectFit = 1,
    BRContentModeScaleAspectFill = 2, ///< reaches over the rectangle and is not clipped
    BRContentModeRedraw = 3, ///< as 0
    BRContentModeCenter = 4, ///< this and all that follow keep the image's size
    BRContentModeTop = 5,
    BRContentModeBottom = 6,
    BRContentModeLeft = 7,
    BRContentModeRight = 8,
    BRContentModeTopLeft = 9,
    BRContentModeTopRight = 10,
    BRContentModeBottomLeft = 11,
    BRContentModeBottomRight = 12,
};

/// Draws the image over what is there. Modes 5 to 12 clip it to the rectangle; the others do not clip, so an image that fills or is
/// centred reaches over it. An image of exactly the rectangle's size is drawn into it whatever the mode.
/// Centred and fitted places are rounded down to whole points, except at the far edges of modes 8, 10 and 12.
/// - alpha: multiplies the image's.
inline void drawInRect_contentMode_alpha(
    To<NSImage> image, NSRect rect, NSInteger mode, double alpha)
{
    image.send<"drawInRect:contentMode:alpha:">(rect, mode, alpha);
}
/// The same with alpha 1.
inline void drawInRect_contentMode(To<NSImage> image, NSRect rect, NSInteger mode)
{
    image.send<"drawInRect:contentMode:">(rect, mode);
}
/// The same, clipped to the rectangle with round corners unless the radius is 0.
inline void drawInRect_radius_contentMode(
    To<NSImage> image, NSRect rect, double radius, NSInteger mode)
{
    image.send<"drawInRect:radius:contentMode:">(rect, radius, mode);
}
/// The same with mode 0.
inline void drawInRect_radius(To<NSImage> image, NSRect rect, double radius)
{
    image.send<"drawInRect:radius:">(rect, radius);
}
/// Begins a path in the context and adds the rectangle with round corners to it; the transform is as before.
/// - radius: 0 adds the rectangle itself.
inline void addRoundedRectToPath_rect_radius(
    To<NSImage> image, CGContextRef context, NSRect rect, float radius)
{
    image.send<"addRoundedRectToPath:rect:radius:">(context, rect, radius);
}

}
