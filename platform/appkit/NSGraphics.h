// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSGraphicsContext.h"

/// Small drawings made of rectangles and images. All of them go to the current context, within its clip, and do nothing
/// without one.

namespace brindle {

class NSColor;
class NSImage;

/// Fills each rectangle with the colour of the same place, by the copy operation.
BRINDLE_EXPORT void NSRectFillListWithColors(
    const NSRect* rects, NSColor* const* colors, NSInteger count);
BRINDLE_EXPORT void NSRectFillListWithColorsUsingOperation(
    const NSRect* rects, NSColor* const* colors, NSInteger count, NSCompositingOperation operation);
/// - grays: 0 is black, 1 is white.
BRINDLE_EXPORT void NSRectFillListWithGrays(
    const NSRect* rects, const CGFloat* grays, NSInteger count);
/// Draws a frame of one point inside the rectangle, one point on, one off.
BRINDLE_EXPORT void NSDottedFrameRect(NSRect rect);
/// Draws slices of one point off the rectangle's sides, one after the other, each in its grey.
/// - clip: what lies outside is not drawn; an empty one clips nothing.
/// - Returns: what is left of the rectangle in the middle.
BRINDLE_EXPORT NSRect NSDrawTiledRects(
    NSRect bounds, NSRect clip, const NSRectEdge* sides, const CGFloat* grays, NSInteger count);
/// Draws the ends of a bar at their own size and its middle side by side between them; across, all of them are stretched.
/// Images may be nil.
/// - vertical: the start is at the top. - flipped: whether the y of the present space goes down.
BRINDLE_EXPORT void NSDrawThreePartImage(NSRect frame, NSImage* startCap, NSImage* centerFill,
    NSImage* endCap, bool vertical, NSCompositingOperation operation, CGFloat alpha, bool flipped);
/// Draws the corners of a frame at their own size, and its sides and its middle side by side between them. Images may be
/// nil; the corners at the left say how high and wide the sides are, and the right ones how wide theirs.
BRINDLE_EXPORT void NSDrawNinePartImage(NSRect frame, NSImage* topLeftCorner, NSImage* topEdgeFill,
    NSImage* topRightCorner, NSImage* leftEdgeFill, NSImage* centerFill, NSImage* rightEdgeFill,
    NSImage* bottomLeftCorner, NSImage* bottomEdgeFill, NSImage* bottomRightCorner,
    NSCompositingOperation operation, CGFloat alpha, bool flipped);

}
