// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <limits>

#include "runtime/Encoding.h"
#include "runtime/Export.h"

namespace brindle {

using NSInteger = std::int64_t;
using NSUInteger = std::uint64_t;
using CGFloat = double;

/// The location that stands for "not found".
inline constexpr NSInteger NSNotFound = std::numeric_limits<NSInteger>::max();

/// A place, in points; y grows upward unless a view is flipped.
struct CGPoint {
    CGFloat x = 0;
    CGFloat y = 0;
    friend bool operator==(const CGPoint&, const CGPoint&) = default;
};

/// An extent, in points. Negative extents are allowed and kept.
struct CGSize {
    CGFloat width = 0;
    CGFloat height = 0;
    friend bool operator==(const CGSize&, const CGSize&) = default;
};

/// A rectangle, in points. Equality compares the four numbers: -0 equals 0, NaN equals nothing.
struct CGRect {
    CGPoint origin;
    CGSize size;
    friend bool operator==(const CGRect&, const CGRect&) = default;
};

using NSPoint = CGPoint;
using NSSize = CGSize;
using NSRect = CGRect;

/// A stretch of a sequence: `length` elements from `location` on.
struct NSRange {
    NSUInteger location = 0;
    NSUInteger length = 0;
    friend bool operator==(const NSRange&, const NSRange&) = default;
};

/// The sides of a rectangle, as `NSDivideRect` counts them.
enum NSRectEdge : NSUInteger { NSMinXEdge = 0, NSMinYEdge = 1, NSMaxXEdge = 2, NSMaxYEdge = 3 };

template <> struct Structure<CGPoint> {
    static constexpr const char* encoding = "{CGPoint=dd}";
};
template <> struct Structure<CGSize> {
    static constexpr const char* encoding = "{CGSize=dd}";
};
template <> struct Structure<CGRect> {
    static constexpr const char* encoding = "{CGRect={CGPoint=dd}{CGSize=dd}}";
};
template <> struct Structure<NSRange> {
    static constexpr const char* encoding = "{_NSRange=QQ}";
};

inline constexpr NSPoint NSZeroPoint {};
inline constexpr NSSize NSZeroSize {};
inline constexpr NSRect NSZeroRect {};

constexpr NSPoint NSMakePoint(CGFloat x, CGFloat y) { return { x, y }; }
constexpr NSSize NSMakeSize(CGFloat width, CGFloat height) { return { width, height }; }
constexpr NSRect NSMakeRect(CGFloat x, CGFloat y, CGFloat width, CGFloat height)
{
    return { { x, y }, { width, height } };
}
constexpr NSRange NSMakeRange(NSUInteger location, NSUInteger length)
{
    return { location, length };
}

// Edges and middles as they stand: nothing is standardised.
constexpr CGFloat NSMinX(NSRect r) { return r.origin.x; }
constexpr CGFloat NSMinY(NSRect r) { return r.origin.y; }
constexpr CGFloat NSMaxX(NSRect r) { return r.origin.x + r.size.width; }
constexpr CGFloat NSMaxY(NSRect r) { return r.origin.y + r.size.height; }
constexpr CGFloat NSMidX(NSRect r) { return r.origin.x + r.size.width * 0.5; }
constexpr CGFloat NSMidY(NSRect r) { return r.origin.y + r.size.height * 0.5; }
constexpr CGFloat NSWidth(NSRect r) { return r.size.width; }
constexpr CGFloat NSHeight(NSRect r) { return r.size.height; }

constexpr bool NSEqualPoints(NSPoint a, NSPoint b) { return a == b; }
constexpr bool NSEqualSizes(NSSize a, NSSize b) { return a == b; }
constexpr bool NSEqualRects(NSRect a, NSRect b) { return a == b; }
constexpr bool NSEqualRanges(NSRange a, NSRange b) { return a == b; }
constexpr NSUInteger NSMaxRange(NSRange r) { return r.location + r.length; }
constexpr bool NSLocationInRange(NSUInteger location, NSRange r)
{
    return location >= r.location && location - r.location < r.length;
}

// What can be said about rectangles. A rectangle without a positive width and height is empty, and so is one with
// a NaN extent.
constexpr bool NSIsEmptyRect(NSRect r) { return !(r.size.width > 0 && r.size.height > 0); }
/// Moves the edges inward by these amounts, outward by negative ones; nothing is clamped.
constexpr NSRect NSInsetRect(NSRect r, CGFloat dx, CGFloat dy)
{
    return { { r.origin.x + dx, r.origin.y + dy },
        { r.size.width - 2 * dx, r.size.height - 2 * dy } };
}
constexpr NSRect NSOffsetRect(NSRect r, CGFloat dx, CGFloat dy)
{
    return { { r.origin.x + dx, r.origin.y + dy }, r.size };
}
/// Answers whether a point lies inside: the edges at the least x and y belong to the rectangle, the others do not.
constexpr bool NSPointInRect(NSPoint p, NSRect r)
{
    return p.x >= NSMinX(r) && p.x < NSMaxX(r) && p.y >= NSMinY(r) && p.y < NSMaxY(r);
}
/// The same for the pixel under a pointer: where y grows upward the upper edge belongs to the rectangle, not the lower.
constexpr bool NSMouseInRect(NSPoint p, NSRect r, bool flipped)
{
    return flipped ? NSPointInRect(p, r)
                   : p.x >= NSMinX(r) && p.x < NSMaxX(r) && p.y > NSMinY(r) && p.y <= NSMaxY(r);
}
/// Answers whether both share more than an edge; an empty one shares nothing.
constexpr bool NSIntersectsRect(NSRect a, NSRect b)
{
    return !NSIsEmptyRect(a) && !NSIsEmptyRect(b) && NSMinX(a) < NSMaxX(b) && NSMinX(b) < NSMaxX(a)
        && NSMinY(a) < NSMaxY(b) && NSMinY(b) < NSMaxY(a);
}
/// Answers whether `inner` lies in `outer`, edges included; an empty one lies nowhere.
constexpr bool NSContainsRect(NSRect outer, NSRect inner)
{
    return !NSIsEmptyRect(inner) && NSMinX(outer) <= NSMinX(inner) && NSMinY(outer) <= NSMinY(inner)
        && NSMaxX(outer) >= NSMaxX(inner) && NSMaxY(outer) >= NSMaxY(inner);
}
/// Answers what both have in common; the zero rectangle when `NSIntersectsRect` says no.
BRINDLE_EXPORT NSRect NSIntersectionRect(NSRect a, NSRect b);
/// Answers the smallest rectangle around both; an empty one adds nothing, two empty ones give the zero rectangle.
BRINDLE_EXPORT NSRect NSUnionRect(NSRect a, NSRect b);
/// Answers the smallest rectangle with whole edges around this one; the zero rectangle for an empty one.
BRINDLE_EXPORT NSRect NSIntegralRect(NSRect r);
/// Cuts a slice off at an edge.
/// - amount: points; below 0 it counts as 0. When it is above the extent the slice is the whole rectangle and the
///   remainder has no extent and lies at the far edge.
/// - Nil: either result may be unwanted. An empty rectangle gives two zero rectangles.
BRINDLE_EXPORT void NSDivideRect(
    NSRect r, NSRect* slice, NSRect* remainder, CGFloat amount, NSRectEdge edge);

/// Answers the range that both cover; {0, 0} when there is none.
BRINDLE_EXPORT NSRange NSIntersectionRange(NSRange a, NSRange b);
/// Answers the smallest range around both.
BRINDLE_EXPORT NSRange NSUnionRange(NSRange a, NSRange b);

class NSString;
template <class T> class Ref;

// Text forms: "{1, 2}" for points, sizes and ranges, "{{1, 2}, {3, 4}}" for rectangles, numbers as %g writes them.
BRINDLE_EXPORT Ref<NSString> NSStringFromPoint(NSPoint point);
BRINDLE_EXPORT Ref<NSString> NSStringFromSize(NSSize size);
BRINDLE_EXPORT Ref<NSString> NSStringFromRect(NSRect rect);
BRINDLE_EXPORT Ref<NSString> NSStringFromRange(NSRange range);
// The numbers of a text in their order, whatever stands between them; what is missing is 0. Nil reads zero.
BRINDLE_EXPORT NSPoint NSPointFromString(const NSString* text);
BRINDLE_EXPORT NSSize NSSizeFromString(const NSString* text);
BRINDLE_EXPORT NSRect NSRectFromString(const NSString* text);
BRINDLE_EXPORT NSRange NSRangeFromString(const NSString* text);

}
