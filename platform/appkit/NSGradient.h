// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <initializer_list>

#include "quartz/CGGradient.h"

namespace brindle {

class NSBezierPath;
class NSColor;

using NSGradientDrawingOptions = NSUInteger;
inline constexpr NSGradientDrawingOptions NSGradientDrawsBeforeStartingLocation
    = kCGGradientDrawsBeforeStartLocation;
inline constexpr NSGradientDrawingOptions NSGradientDrawsAfterEndingLocation
    = kCGGradientDrawsAfterEndLocation;

/// Colours that run into each other along a way from 0 to 1. Never changes.
///
/// Colours are converted to calibrated RGB when the gradient is made, system colours as they look then. Drawing goes to the
/// current context, with its alpha, blend mode and clip; gradients cast no shadow. Empty rectangles draw nothing.
/// Thread: any; drawing one at a time.
class NSGradient : public NSObject {
    BRINDLE_OBJECT(NSGradient, NSObject)

public:
    /// - Nil: nil for a nil colour and for one without components, such as a pattern. So are the others.
    Ref<NSGradient> initWithStartingColor_endingColor(NSColor* start, NSColor* end)
    {
        return send<"initWithStartingColor:endingColor:", Ref<NSGradient>>(start, end);
    }
    /// Spreads the colours evenly.
    /// - Nil: nil also without colours, and for an array that holds something else.
    Ref<NSGradient> initWithColors(NSArray* colors)
    {
        return send<"initWithColors:", Ref<NSGradient>>(colors);
    }
    /// A colour and its place from 0 to 1.
    struct Stop {
        NSColor* color;
        CGFloat location;
    };
    /// As a message it takes colours and places in turns; a nil ends the list.
    BRINDLE_EXPORT Ref<NSGradient> initWithColorsAndLocations(std::initializer_list<Stop> stops);
    /// - locations: 0 to 1, as many as colours; NULL spreads them evenly. - space: not used.
    Ref<NSGradient> initWithColors_atLocations_colorSpace(
        NSArray* colors, const CGFloat* locations, NSObject* space)
    {
        return send<"initWithColors:atLocations:colorSpace:", Ref<NSGradient>>(
            colors, locations, space);
    }

    /// Fills a rectangle.
    /// - angle: degrees from the x axis towards the y axis of the current coordinates: 0 runs from left to right, 90 from
    ///   the least y to the greatest. The way is as long as it takes for the corners to have the end colours.
    void drawInRect_angle(NSRect rect, CGFloat angle) { send<"drawInRect:angle:">(rect, angle); }
    /// Fills a path, by its winding rule; the way is that of the rectangle around it.
    void drawInBezierPath_angle(NSBezierPath* path, CGFloat angle)
    {
        send<"drawInBezierPath:angle:">(path, angle);
    }
    /// Fills a rectangle in circles, from a point in it to the circle through its corners.
    /// - center: 0, 0 is the middle, -1 and 1 are the sides; bounded to them.
    void drawInRect_relativeCenterPosition(NSRect rect, NSPoint center)
    {
        send<"drawInRect:relativeCenterPosition:">(rect, center);
    }
    void drawInBezierPath_relativeCenterPosition(NSBezierPath* path, NSPoint center)
    {
        send<"drawInBezierPath:relativeCenterPosition:">(path, center);
    }
    /// Paints the clip between two points, and beyond them when asked to.
    void drawFromPoint_toPoint_options(NSPoint start, NSPoint end, NSGradientDrawingOptions options)
    {
        send<"drawFromPoint:toPoint:options:">(start, end, options);
    }
    void drawFromCenter_radius_toCenter_radius_options(NSPoint startCenter, CGFloat startRadius,
        NSPoint endCenter, CGFloat endRadius, NSGradientDrawingOptions options)
    {
        send<"drawFromCenter:radius:toCenter:radius:options:">(
            startCenter, startRadius, endCenter, endRadius, options);
    }

    NSInteger numberOfColorStops() const { return send<"numberOfColorStops", NSInteger>(); }
    /// - color, location: may be NULL.
    /// - Raises: NSRangeException for an index that has no colour.
    void getColor_location_atIndex(Ref<NSColor>* color, CGFloat* location, NSInteger index) const
    {
        send<"getColor:location:atIndex:">(color, location, index);
    }
    /// Answers the colour at a place, mixed by component.
    /// - location: bounded to 0 to 1. - Nil: nil for a gradient without colours.
    Ref<NSColor> interpolatedColorAtLocation(CGFloat location) const
    {
        return send<"interpolatedColorAtLocation:", Ref<NSColor>>(location);
    }

private:
    Ref<CGGradient> gradient_; // nil for one made without colours, which draws nothing
};

}
