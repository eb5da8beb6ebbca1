// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSBezierPath.h"

namespace brindle {

/// Answers a triangle that points to the origin's y, with its base along max y.
inline Ref<NSBezierPath> bezierPathWithTriangleInRect(To<Class> cls, NSRect rect)
{
    return cls.send<"bezierPathWithTriangleInRect:", Ref<NSBezierPath>>(rect);
}
/// Answers a triangle with two equal sides as high as the rectangle.
///
/// Its apex stands over the middle, rounded to a whole number in single precision, halves away from zero.
/// - bottomOrTop: YES puts the base along max y, NO along the origin's y.
inline Ref<NSBezierPath> bezierPathWithTriangleInRect_bottomOrTop(
    To<Class> cls, NSRect rect, bool bottomOrTop)
{
    return cls.send<"bezierPathWithTriangleInRect:bottomOrTop:", Ref<NSBezierPath>>(
        rect, bottomOrTop);
}
/// Leaves the path as it is.
inline void flipVertical(To<NSBezierPath> path) { path.send<"flipVertical">(); }

}
