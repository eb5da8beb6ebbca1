// SPDX-License-Identifier: Apache-2.0
#include "NSGeometry.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include "GeometryTextPrivate.h"
#include "NSString.h"

namespace brindle {

NSRect NSIntersectionRect(NSRect a, NSRect b)
{
    if (!NSIntersectsRect(a, b))
        return NSZeroRect;
    const CGFloat x = std::max(NSMinX(a), NSMinX(b));
    const CGFloat y = std::max(NSMinY(a), NSMinY(b));
    return { { x, y }, { std::min(NSMaxX(a), NSMaxX(b)) - x, std::min(NSMaxY(a), NSMaxY(b)) - y } };
}

NSRect NSUnionRect(NSRect a, NSRect b)
{
    if (NSIsEmptyRect(a))
        return NSIsEmptyRect(b) ? NSZeroRect : b;
    if (NSIsEmptyRect(b))
        return a;
    const CGFloat x = std::min(NSMinX(a), NSMinX(b));
    const CGFloat y = std::min(NSMinY(a), NSMinY(b));
    return { { x, y }, { std::max(NSMaxX(a), NSMaxX(b)) - x, std::max(NSMaxY(a), NSMaxY(b)) - y } };
}

NSRect NSIntegralRect(NSRect r)
{
    if (NSIsEmptyRect(r))
        return NSZeroRect;
    const CGFloat x = std::floor(NSMinX(r));
    const CGFloat y = std::floor(NSMinY(r));
    return { { x, y }, { std::ceil(NSMaxX(r)) - x, std::ceil(NSMaxY(r)) - y } };
}

void NSDivideRect(NSRect r, NSRect* slice, NSRect* remainder, CGFloat amount, NSRectEdge edge)
{
    NSRect cut {};
    NSRect rest {};
    if (!NSIsEmptyRect(r)) {
        const bool horizontal = edge == NSMinXEdge || edge == NSMaxXEdge;
        const bool fromEnd = edge == NSMaxXEdge || edge == NSMaxYEdge;
        const CGFloat extent = horizontal ? r.size.width : r.size.height;
        const CGFloat taken = std::min(amount > 0 ? amount : 0, extent);
        cut = rest = r;
        CGFloat& cutOrigin = horizontal ? cut.origin.x : cut.origin.y;
        CGFloat& restOrigin = horizontal ? rest.origin.x : rest.origin.y;
        (horizontal ? cut.size.width : cut.size.height) = taken;
        (horizontal ? rest.size.width : rest.size.height) = extent - taken;
        if (fromEnd)
            cutOrigin += extent - taken;
        else
            restOrigin += taken;
    }
    if (slice)
        *slice = cut;
    if (remainder)
        *remainder = rest;
}

NSRange NSIntersectionRange(NSRange a, NSRange b)
{
    const NSUInteger begin = std::max(a.location, b.location);
    const NSUInteger end = std::min(NSMaxRange(a), NSMaxRange(b));
    return begin < end ? NSRange { begin, end - begin } : NSRange {};
}

NSRange NSUnionRange(NSRange a, NSRange b)
{
    const NSUInteger begin = std::min(a.location, b.location);
    return { begin, std::max(NSMaxRange(a), NSMaxRange(b)) - begin };
}

namespace {

    /// Writes a number as %g does, with a point in every language.
    std::string number(CGFloat value)
    {
        char text[32];
        const auto end
            = std::to_chars(text, text + sizeof text, value, std::chars_format::general, 6);
        return std::string(text, end.ptr);
    }

    /// Writes a number as %g does, or with as many digits more as tell it from all others.
    std::string exactNumber(CGFloat value)
    {
        const std::string text = number(value);
        CGFloat same = 0;
        std::from_chars(text.data(), text.data() + text.size(), same);
        if (same == value)
            return text;
        char digits[32];
        const auto end = std::to_chars(digits, digits + sizeof digits, value);
        return std::string(digits, end.ptr);
    }

    using Digits = std::string(CGFloat value);

    std::string pair(Digits digits, CGFloat a, CGFloat b)
    {
        return "{" + digits(a) + ", " + digits(b) + "}";
    }
    std::string pairs(Digits digits, const NSRect& rect)
    {
        return "{" + pair(digits, rect.origin.x, rect.origin.y) + ", "
            + pair(digits, rect.size.width, rect.size.height) + "}";
    }

    /// Reads the numbers of a text, in their order.
    template <class T, std::size_t N> std::array<T, N> numbersIn(const NSString* text)
    {
        std::array<T, N> numbers {};
        const std::string all = utf8Of(text);
        const char* at = all.data();
        const char* const end = at + all.size();
        for (std::size_t found = 0; found < N && at < end;) {
            const std::from_chars_result read = std::from_chars(at, end, numbers[found]);
            if (read.ec == std::errc::invalid_argument) {
                ++at;
                continue;
            }
            ++found;
            at = read.ptr;
        }
        return numbers;
    }

}

Ref<NSString> NSStringFromPoint(NSPoint point)
{
    return stringFrom(pair(number, point.x, point.y));
}
Ref<NSString> NSStringFromSize(NSSize size)
{
    return stringFrom(pair(number, size.width, size.height));
}
Ref<NSString> NSStringFromRect(NSRect rect) { return stringFrom(pairs(number, rect)); }

Ref<NSString> geometry::exactText(NSPoint point)
{
    return stringFrom(pair(exactNumber, point.x, point.y));
}
Ref<NSString> geometry::exactText(NSSize size)
{
    return stringFrom(pair(exactNumber, size.width, size.height));
}
Ref<NSString> geometry::exactText(NSRect rect) { return stringFrom(pairs(exactNumber, rect)); }

Ref<NSString> NSStringFromRange(NSRange range)
{
    return stringFrom(
        "{" + std::to_string(range.location) + ", " + std::to_string(range.length) + "}");
}

NSPoint NSPointFromString(const NSString* text)
{
    const auto [x, y] = numbersIn<CGFloat, 2>(text);
    return { x, y };
}

NSSize NSSizeFromString(const NSString* text)
{
    const auto [width, height] = numbersIn<CGFloat, 2>(text);
    return { width, height };
}

NSRect NSRectFromString(const NSString* text)
{
    const auto [x, y, width, height] = numbersIn<CGFloat, 4>(text);
    return { { x, y }, { width, height } };
}

NSRange NSRangeFromString(const NSString* text)
{
    const auto [location, length] = numbersIn<NSUInteger, 2>(text);
    return { location, length };
}

}
