// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "CGColor.h"
#include "CGGeometry.h"

namespace brindle {

/// How a pattern is drawn and when its info is no longer needed; either may be NULL.
struct CGPatternCallbacks {
    unsigned version = 0; ///< 0
    void (*drawPattern)(void* info, CGContextRef context) = nullptr;
    void (*releaseInfo)(void* info) = nullptr;
};

/// All of these keep the distances of the cells as well as the pixels allow.
enum CGPatternTiling : std::int32_t {
    kCGPatternTilingNoDistortion = 0,
    kCGPatternTilingConstantSpacingMinimalDistortion = 1,
    kCGPatternTilingConstantSpacing = 2,
};

/// A cell that is drawn again and again, side by side, where a colour would be. Never changes.
///
/// A cell is drawn in pattern space, which lies on the base space by the pattern's matrix and the context's phase, whatever
/// the transform at the time of drawing. Of a cell that is larger than its steps, what stands out is not drawn.
/// Thread: as the drawing function allows.
class CGPattern : public NSObject {
    BRINDLE_OBJECT(CGPattern, NSObject)

public:
    CGRect bounds() const { return bounds_; }
    CGAffineTransform matrix() const { return matrix_; }
    CGSize step() const { return step_; }
    /// Answers whether the cell has colours of its own; otherwise it is drawn in that of the colour.
    bool isColored() const { return colored_; }
    /// Draws the cell in its own space.
    void draw(CGContextRef context) const;

private:
    friend struct Patterns;
    void* info_ = nullptr;
    CGPatternCallbacks callbacks_;
    CGRect bounds_;
    CGAffineTransform matrix_;
    CGSize step_;
    bool colored_ = true;
};

/// - bounds: of the cell, pattern space. - xStep, yStep: from one cell to the next; negative ones count like positive ones.
/// - Nil: NULL without callbacks, for empty bounds, steps of 0, and numbers that are none.
BRINDLE_EXPORT CGPatternRef CGPatternCreate(void* info, CGRect bounds, CGAffineTransform matrix,
    CGFloat xStep, CGFloat yStep, CGPatternTiling tiling, bool isColored,
    const CGPatternCallbacks* callbacks);
BRINDLE_EXPORT CGPatternRef CGPatternRetain(CGPatternRef pattern);
BRINDLE_EXPORT void CGPatternRelease(CGPatternRef pattern);

/// - components: of the pattern space's base, if it has one, and the alpha behind them.
BRINDLE_EXPORT void CGContextSetFillPattern(
    CGContextRef context, CGPatternRef pattern, const CGFloat* components);
BRINDLE_EXPORT void CGContextSetStrokePattern(
    CGContextRef context, CGPatternRef pattern, const CGFloat* components);
/// Moves the cells. Part of the state.
/// - phase: base space.
BRINDLE_EXPORT void CGContextSetPatternPhase(CGContextRef context, CGSize phase);

}
