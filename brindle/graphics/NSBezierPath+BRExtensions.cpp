// SPDX-License-Identifier: Apache-2.0
#include "NSBezierPath+BRExtensions.h"

#include "quartz/CGGeometry.h"
#include "runtime/Table.h"

#include <cmath>

namespace brindle {

namespace {

    struct BRExtensions {

        static Ref<NSBezierPath> triangle(Class& self, NSRect rect)
        {
            return bezierPathWithTriangleInRect_bottomOrTop(&self, rect, true);
        }
        static Ref<NSBezierPath> triangleUpOrDown(Class& self, NSRect rect, bool bottomOrTop)
        {
            const CGFloat middle = std::round(static_cast<float>(CGRectGetMidX(rect)));
            const CGFloat maxY = CGRectGetMaxY(rect);
            const CGFloat base = bottomOrTop ? maxY : rect.origin.y;
            const CGFloat apex = bottomOrTop ? rect.origin.y : maxY;
            Ref<NSBezierPath> path = self.send<"bezierPath", Ref<NSBezierPath>>();
            path->moveToPoint({ rect.origin.x, base });
            path->lineToPoint({ middle, apex });
            path->lineToPoint({ CGRectGetMaxX(rect), base });
            path->lineToPoint({ rect.origin.x, base });
            path->closePath();
            return path;
        }
        static void flipVertical(NSBezierPath&) { }

        static void table(Builder& t)
        {
            t.classMethods({
                { "bezierPathWithTriangleInRect:", imp<triangle> },
                { "bezierPathWithTriangleInRect:bottomOrTop:", imp<triangleUpOrDown> },
            });
            t.methods({ { "flipVertical", imp<flipVertical> } });
        }
    };

}
BRINDLE_EXTENSION(NSBezierPath, BRExtensions)

}
