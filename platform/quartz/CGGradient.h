// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "CGColor.h"
#include "CGPath.h"
#include "raster/Fill.h"

namespace brindle {

class NSArray;

/// Colours along a way from 0 to 1. Never changes.
class CGGradient : public NSObject {
    BRINDLE_OBJECT(CGGradient, NSObject)

public:
    const std::vector<raster::GradientStop>& stops() const { return stops_; }

private:
    friend struct Gradients;
    std::vector<raster::GradientStop> stops_;
};

/// - components: the numbers of `count` colours, alpha included, one colour after the other.
/// - locations: 0 to 1; NULL spreads the colours evenly.
/// - Nil: NULL without a space, components or colours.
BRINDLE_EXPORT CGGradientRef CGGradientCreateWithColorComponents(
    CGColorSpaceRef space, const CGFloat* components, const CGFloat* locations, std::size_t count);
/// The same of `CGColor` objects.
/// - space: not used. - Nil: NULL without colours, or when one of them is something else.
BRINDLE_EXPORT CGGradientRef CGGradientCreateWithColors(
    CGColorSpaceRef space, NSArray* colors, const CGFloat* locations);
BRINDLE_EXPORT CGGradientRef CGGradientRetain(CGGradientRef gradient);
BRINDLE_EXPORT void CGGradientRelease(CGGradientRef gradient);

/// Paints the clip with a gradient from one point to another. Gradients cast no shadow.
/// - options: whether the end colours go on before the start and behind the end.
BRINDLE_EXPORT void CGContextDrawLinearGradient(CGContextRef context, CGGradientRef gradient,
    CGPoint start, CGPoint end, CGGradientDrawingOptions options);
BRINDLE_EXPORT void CGContextDrawRadialGradient(CGContextRef context, CGGradientRef gradient,
    CGPoint startCenter, CGFloat startRadius, CGPoint endCenter, CGFloat endRadius,
    CGGradientDrawingOptions options);

namespace quartz {
    /// Answers a gradient of stops in the order of their places.
    BRINDLE_EXPORT Ref<CGGradient> gradientFromStops(std::vector<raster::GradientStop> stops);
    /// Fills a shape with a gradient from one point to another, its end colours beyond them. Points and shape are user
    /// space.
    BRINDLE_EXPORT void fillWithGradient(CGContextRef context, const PathData& shape, bool evenOdd,
        const CGGradient& gradient, CGPoint start, CGPoint end);
}

}
