// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "foundation/NSGeometry.h"
#include "runtime/Export.h"

/// Centring, overlap, snapping and screen rows.
///
/// Where a function rounds, it narrows the double to a float, rounds half away from zero and widens the result: above
/// 2 to the 24th whole numbers lose their last digits, and infinities and NaN pass through.

namespace brindle {
BRINDLE_C_BEGIN

/// Answers the frame of the main screen in points, or the zero rectangle without a display. Thread: main.
BRINDLE_EXPORT CGRect BRUIScreen(void);
/// Answers the main screen's height in points; 0 without a display. Thread: main.
BRINDLE_EXPORT CGFloat BRUIScreenHeight(void);

/// Answers how many rows of about `standardHeight` points fill the main screen, rounded. Thread: main.
BRINDLE_EXPORT CGFloat BRUIGetEvenNumberRowsForScreenFromUIStandardHeight(CGFloat standardHeight);
/// Answers how many rows of about `standardHeight` points fill `viewHeight`, rounded.
BRINDLE_EXPORT CGFloat BRUIGetEvenNumberRowsForScreenFromUIStandardHeightWithView(
    CGFloat standardHeight, CGFloat viewHeight);
/// Answers the height of one of those rows, rounded; an infinity, or NaN for a height of 0, when not even half a
/// row fits.
BRINDLE_EXPORT CGFloat BRUIGetEvenRowHeightForUIStandardHeightWithView(
    CGFloat standardHeight, CGFloat viewHeight);
/// The same under its other name.
BRINDLE_EXPORT CGFloat BRRowHeightRoundToIntegralForScreenHeight(
    CGFloat standardHeight, CGFloat screenHeight);

/// Answers a rectangle of `rect`'s size in the middle of `inRect`; nothing is rounded.
BRINDLE_EXPORT CGRect DKCenterRect(CGRect rect, CGRect inRect);
/// Answers how much of `rect` overlaps, measured by width plus height, as a fraction: 1 when it lies wholly inside,
/// 0 when they are apart, NaN for a rectangle without width and height. Touching counts.
BRINDLE_EXPORT CGFloat CGRectGetIntersectionPercent(CGRect rect, CGRect otherRect);

/// Answers the x that centres `size` in a rectangle of `rect`'s width, rounded; `rect`'s origin does not count.
BRINDLE_EXPORT CGFloat BRGetMidXRectAndSize(CGRect rect, CGSize size);
/// Answers the y that centres `size` in a rectangle of `rect`'s height, rounded; `rect`'s origin does not count.
BRINDLE_EXPORT CGFloat BRGetMidYRectAndSize(CGRect rect, CGSize size);
/// Answers half of `outer` minus half of `inner`, rounded.
BRINDLE_EXPORT CGFloat BRGetMidFloats(CGFloat outer, CGFloat inner);

/// Answers the value snapped to a multiple of the interval, both rounded to whole numbers first. A remainder of half
/// the (unrounded) interval goes up; negative values go towards zero.
/// An interval that rounds to 0 ends the process: "brindle: BRRoundToNearestInterval: the interval rounds to 0".
BRINDLE_EXPORT CGFloat BRRoundToNearestInterval(CGFloat value, CGFloat interval);

BRINDLE_C_END
}
