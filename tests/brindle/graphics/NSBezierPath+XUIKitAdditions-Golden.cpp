// SPDX-License-Identifier: Apache-2.0
#include <array>

#include "appkit/NSColor.h"
#include "appkit/NSGraphicsContext.h"
#include "graphics/NSBezierPath+XUIKitAdditions.h"
#include "support/Golden.h"

namespace brindle::test {

TEST(Golden, RoundedPathsOfBothKinds)
{
    expectSheet("rounded-paths", 210, 100, [](CGContextRef context) {
        NSGraphicsContext::cls().setCurrentContext(
            NSGraphicsContext::cls().graphicsContextWithGraphicsPort_flipped(context, false).get());
        const auto draw = [](const Ref<NSBezierPath>& path) {
            NSColor::cls().colorWithCalibratedRed_green_blue_alpha(0.2, 0.4, 0.9, 1)->setFill();
            NSColor::cls().colorWithCalibratedRed_green_blue_alpha(0.1, 0.2, 0.5, 1)->setStroke();
            path->fill();
            path->stroke();
        };
        constexpr std::array<double, 3> kRadii { 3, 8, 40 };
        constexpr std::array<NSUInteger, 3> kCorners { BRRectCornerTopLeft,
            BRRectCornerTopLeft | BRRectCornerBottomRight, BRRectCornerAll };
        for (std::size_t i = 0; i < kRadii.size(); ++i) {
            const double x = 6.5 + 68 * static_cast<double>(i);
            draw(NSBezierPath::cls().bezierPathWithRoundedRect_xRadius_yRadius(
                NSMakeRect(x, 8.5, 56, 34), kRadii[i], kRadii[i]));
            draw(bezierPathWithRoundedRect_byRoundingCorners_cornerRadii(
                NSBezierPath::cls(), NSMakeRect(x, 56.5, 56, 34), kCorners[i], NSMakeSize(14, 10)));
        }
        NSGraphicsContext::cls().setCurrentContext(nullptr);
    });
}

}
