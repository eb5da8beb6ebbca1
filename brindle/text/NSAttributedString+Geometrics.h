// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "foundation/NSAttributedString.h"
#include "foundation/NSGeometry.h"

namespace brindle {

// How much room a text needs in a box. Unbounded is 3.4028235e38, the largest finite `float`.
//
// Lines have the customary padding of 5 points at both ends, which counts: a text 40 wide measures 50, and wraps at a width
// of 49. A line break at the end adds no height.
// Thread: any. Cost: each measurement lays the text out anew and keeps nothing; words that were seen before are not shaped
// again.

/// Answers the size that the text uses inside a box; the zero size for an empty text.
inline NSSize sizeForWidth_height(To<NSAttributedString> string, float width, float height)
{
    return string.send<"sizeForWidth:height:", NSSize>(width, height);
}
/// Answers the height with an unbounded one to use.
inline float heightForWidth(To<NSAttributedString> string, float width)
{
    return string.send<"heightForWidth:", float>(width);
}
/// Answers the width with an unbounded one to use.
inline float widthForHeight(To<NSAttributedString> string, float height)
{
    return string.send<"widthForHeight:", float>(height);
}

}
