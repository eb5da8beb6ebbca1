// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "foundation/NSGeometry.h"

namespace brindle {

/// Distances from the edges of a rectangle, points inward.
struct NSEdgeInsets {
    CGFloat top = 0;
    CGFloat left = 0;
    CGFloat bottom = 0;
    CGFloat right = 0;
    friend bool operator==(const NSEdgeInsets&, const NSEdgeInsets&) = default;
};
template <> struct Structure<NSEdgeInsets> {
    static constexpr const char* encoding = "{NSEdgeInsets=dddd}";
};

inline NSEdgeInsets NSEdgeInsetsMake(CGFloat top, CGFloat left, CGFloat bottom, CGFloat right)
{
    return { top, left, bottom, right };
}

}
