// SPDX-License-Identifier: Apache-2.0
#include "BRGeometry.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "appkit/NSScreen.h"
#include "quartz/CGGeometry.h"
#include "runtime/Block.h"

namespace brindle {

namespace {

    CGFloat rounded(CGFloat value) { return std::round(static_cast<float>(value)); }

    std::int64_t wholeNumber(CGFloat value)
    {
        const CGFloat whole = rounded(value);
        if (std::isnan(whole))
            return 0;
        using Limits = std::numeric_limits<std::int32_t>;
        return static_cast<std::int64_t>(std::clamp<CGFloat>(whole, Limits::min(), Limits::max()));
    }

}

CGRect BRUIScreen() { return maybe(NSScreen::cls().mainScreen())->frame(); }

CGFloat BRUIScreenHeight() { return BRUIScreen().size.height; }

CGFloat BRUIGetEvenNumberRowsForScreenFromUIStandardHeight(CGFloat standardHeight)
{
    return BRUIGetEvenNumberRowsForScreenFromUIStandardHeightWithView(
        standardHeight, BRUIScreenHeight());
}

CGFloat BRUIGetEvenNumberRowsForScreenFromUIStandardHeightWithView(
    CGFloat standardHeight, CGFloat viewHeight)
{
    return rounded(viewHeight / standardHeight);
}

CGFloat BRUIGetEvenRowHeightForUIStandardHeightWithView(CGFloat standardHeight, CGFloat viewHeight)
{
    return rounded(viewHeight / rounded(viewHeight / standardHeight));
}

CGFloat BRRowHeightRoundToIntegralForScreenHeight(CGFloat standardHeight, CGFloat screenHeight)
{
    return BRUIGetEvenRowHeightForUIStandardHeightWithView(standardHeight, screenHeight);
}

CGRect DKCenterRect(CGRect rect, CGRect inRect)
{
    return { { inRect.origin.x + (inRect.size.width - rect.size.width) * 0.5,
                 inRect.origin.y + (inRect.size.height - rect.size.height) * 0.5 },
        rect.size };
}

CGFloat CGRectGetIntersectionPercent(CGRect rect, CGRect otherRect)
{
    const CGSize common = CGRectIntersection(rect, otherRect).size;
    return (common.width + common.height) / (rect.size.width + rect.size.height);
}

CGFloat BRGetMidXRectAndSize(CGRect rect, CGSize size)
{
    return BRGetMidFloats(rect.size.width, size.width);
}

CGFloat BRGetMidYRectAndSize(CGRect rect, CGSize size)
{
    return BRGetMidFloats(rect.size.height, size.height);
}

CGFloat BRGetMidFloats(CGFloat outer, CGFloat inner) { return rounded(outer * 0.5 - inner * 0.5); }

CGFloat BRRoundToNearestInterval(CGFloat value, CGFloat interval)
{
    const std::int64_t whole = wholeNumber(value);
    const std::int64_t step = wholeNumber(interval);
    if (step == 0) // some processors would silently answer 0
        fatal("BRRoundToNearestInterval: the interval rounds to 0");
    const std::int64_t remainder = whole % step;
    const bool up = static_cast<CGFloat>(remainder) >= interval * 0.5;
    return static_cast<CGFloat>(whole - remainder + (up ? step : 0));
}

}
