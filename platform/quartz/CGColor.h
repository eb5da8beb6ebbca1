// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "CGColorSpace.h"

namespace brindle {

/// A colour: a space and its numbers, alpha last. Never changes. Numbers are kept as given; drawing bounds them to 0 to 1.
/// Thread: any.
class CGColor : public NSObject {
    BRINDLE_OBJECT(CGColor, NSObject)

public:
    const CGFloat* components() const { return components_; }
    std::size_t componentCount() const { return count_; } // alpha included
    CGFloat alpha() const { return components_[count_ ? count_ - 1 : 0]; }
    CGColorSpaceRef space() const { return space_.get(); }
    CGPatternRef pattern() const;

private:
    friend struct Colors;
    Ref<CGColorSpace> space_;
    Ref<NSObject> pattern_; // CGPattern; nil in most colours
    CGFloat components_[4] {};
    std::size_t count_ = 0;
};

/// - components: the space's numbers and the alpha behind them, copied.
/// - Nil: NULL for a NULL space or NULL components.
BRINDLE_EXPORT CGColorRef CGColorCreate(CGColorSpaceRef space, const CGFloat* components);
/// Answers a colour that paints with a pattern.
/// - space: of patterns. - components: of the space's base, if it has one, and the alpha behind them.
/// - Nil: NULL without any of these.
BRINDLE_EXPORT CGColorRef CGColorCreateWithPattern(
    CGColorSpaceRef space, CGPatternRef pattern, const CGFloat* components);
/// Answers the pattern that a colour paints with; NULL for others.
BRINDLE_EXPORT CGPatternRef CGColorGetPattern(CGColorRef color);
BRINDLE_EXPORT CGColorRef CGColorCreateGenericGray(CGFloat gray, CGFloat alpha);
BRINDLE_EXPORT CGColorRef CGColorCreateGenericRGB(
    CGFloat red, CGFloat green, CGFloat blue, CGFloat alpha);
BRINDLE_EXPORT CGColorRef CGColorCreateSRGB(
    CGFloat red, CGFloat green, CGFloat blue, CGFloat alpha);
BRINDLE_EXPORT CGColorRef CGColorCreateCopy(CGColorRef color);
BRINDLE_EXPORT CGColorRef CGColorCreateCopyWithAlpha(CGColorRef color, CGFloat alpha);
/// Answers the numbers, good while the colour lives; NULL for NULL.
BRINDLE_EXPORT const CGFloat* CGColorGetComponents(CGColorRef color);
/// Answers how many numbers there are, alpha included.
BRINDLE_EXPORT std::size_t CGColorGetNumberOfComponents(CGColorRef color);
BRINDLE_EXPORT CGFloat CGColorGetAlpha(CGColorRef color);
BRINDLE_EXPORT CGColorSpaceRef CGColorGetColorSpace(CGColorRef color);
/// Answers whether both are NULL, or both have one space and the same numbers.
BRINDLE_EXPORT bool CGColorEqualToColor(CGColorRef a, CGColorRef b);
BRINDLE_EXPORT CGColorRef CGColorRetain(CGColorRef color);
BRINDLE_EXPORT void CGColorRelease(CGColorRef color);

}
