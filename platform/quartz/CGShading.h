// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "CGGradient.h"

namespace brindle {

class CGFunction;
template <> struct Opaque<CGFunction> {
    static constexpr const char* encoding = "{CGFunction=}";
};
using CGFunctionRef = CGFunction*;

/// How a function is computed, and when its info is no longer needed; the latter may be NULL.
struct CGFunctionCallbacks {
    unsigned version = 0; ///< 0
    void (*evaluate)(void* info, const CGFloat* in, CGFloat* out) = nullptr;
    void (*releaseInfo)(void* info) = nullptr;
};

/// A function of one number that answers several, which a host computes. Thread: as `evaluate` allows.
class CGFunction : public NSObject {
    BRINDLE_OBJECT(CGFunction, NSObject)

public:
    /// Answers as many numbers as the function has results; each within its range.
    /// - part: 0 to 1, of the way through the domain.
    std::vector<CGFloat> valuesAt(double part) const;

private:
    friend struct Shadings;
    void* info_ = nullptr;
    CGFunctionCallbacks callbacks_;
    CGFloat from_ = 0; // the domain
    CGFloat to_ = 1;
    std::size_t results_ = 0;
    std::vector<CGFloat> range_; // least and most of each result; empty for any
};

/// Colours between two points or circles, as a function says. Never changes.
///
/// The function is asked once, at 257 places evenly along the way.
class CGShading : public NSObject {
    BRINDLE_OBJECT(CGShading, NSObject)

private:
    friend struct Shadings;
    Ref<CGGradient> colors_;
    CGPoint start_ {};
    CGPoint end_ {};
    CGFloat startRadius_ = 0;
    CGFloat endRadius_ = 0;
    bool isRadial_ = false;
    CGGradientDrawingOptions options_ {};
};

/// - domainDimension: 1. - domain: least and most of what goes in; NULL for 0 and 1.
/// - range: least and most of each of the `rangeDimension` results; NULL for any.
/// - Nil: NULL for other dimensions, and without `evaluate`.
BRINDLE_EXPORT CGFunctionRef CGFunctionCreate(void* info, std::size_t domainDimension,
    const CGFloat* domain, std::size_t rangeDimension, const CGFloat* range,
    const CGFunctionCallbacks* callbacks);
BRINDLE_EXPORT CGFunctionRef CGFunctionRetain(CGFunctionRef function);
BRINDLE_EXPORT void CGFunctionRelease(CGFunctionRef function);

/// - function: answers the components of a colour of the space, with or without alpha.
/// - extendStart, extendEnd: whether the colours at the ends go on beyond them.
/// - Nil: NULL without a space or a function, and where the function has too few results.
BRINDLE_EXPORT CGShadingRef CGShadingCreateAxial(CGColorSpaceRef space, CGPoint start, CGPoint end,
    CGFunctionRef function, bool extendStart, bool extendEnd);
BRINDLE_EXPORT CGShadingRef CGShadingCreateRadial(CGColorSpaceRef space, CGPoint start,
    CGFloat startRadius, CGPoint end, CGFloat endRadius, CGFunctionRef function, bool extendStart,
    bool extendEnd);
BRINDLE_EXPORT CGShadingRef CGShadingRetain(CGShadingRef shading);
BRINDLE_EXPORT void CGShadingRelease(CGShadingRef shading);

/// Paints the clip with a shading. Points are user space.
BRINDLE_EXPORT void CGContextDrawShading(CGContextRef context, CGShadingRef shading);

}
