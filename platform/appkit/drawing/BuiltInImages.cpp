// SPDX-License-Identifier: Apache-2.0
#include "NSImagePrivate.h"

#include "appkit/NSBezierPath.h"
#include "appkit/NSColor.h"

#include <cmath>
#include <numbers>

namespace brindle {

namespace {

    constexpr double kSide = 16; // points

    Ref<NSBezierPath> lines(std::initializer_list<NSPoint> points, double width = 1.5)
    {
        Ref<NSBezierPath> path = NSBezierPath::cls().bezierPath();
        for (const NSPoint& point : points) {
            if (path->isEmpty())
                path->moveToPoint(point);
            else
                path->lineToPoint(point);
        }
        path->setLineWidth(width);
        path->setLineCapStyle(NSRoundLineCapStyle);
        path->setLineJoinStyle(NSRoundLineJoinStyle);
        return path;
    }
    void stroke(std::initializer_list<NSPoint> points) { lines(points)->stroke(); }

    void drawAdd()
    {
        stroke({ { 8, 3 }, { 8, 13 } });
        stroke({ { 3, 8 }, { 13, 8 } });
    }
    void drawRemove() { stroke({ { 3, 8 }, { 13, 8 } }); }
    void drawStop()
    {
        stroke({ { 4, 4 }, { 12, 12 } });
        stroke({ { 4, 12 }, { 12, 4 } });
    }
    void drawLeft() { stroke({ { 10, 3 }, { 5, 8 }, { 10, 13 } }); }
    void drawRight() { stroke({ { 6, 3 }, { 11, 8 }, { 6, 13 } }); }
    void drawCheck() { stroke({ { 3.5, 8 }, { 6.5, 4.5 }, { 12.5, 12 } }); }
    void drawRows()
    {
        for (const double y : { 4.0, 8.0, 12.0 })
            stroke({ { 3, y }, { 13, y } });
    }
    void drawTiles()
    {
        for (const double x : { 3.0, 9.0 }) {
            for (const double y : { 3.0, 9.0 })
                NSBezierPath::cls()
                    .bezierPathWithRoundedRect_xRadius_yRadius(NSMakeRect(x, y, 4, 4), 1, 1)
                    ->fill();
        }
    }
    void drawRefresh()
    {
        const Ref<NSBezierPath> arc = lines({});
        arc->appendBezierPathWithArcWithCenter_radius_startAngle_endAngle_clockwise(
            { 8, 8 }, 5, 40, 340, false);
        arc->stroke();
        const Ref<NSBezierPath> head = lines({ { 14.5, 8.5 }, { 12.7, 4.3 }, { 10, 7.8 } }, 1);
        head->closePath();
        head->fill();
    }
    void drawGear()
    {
        constexpr int kTeeth = 8;
        const Ref<NSBezierPath> gear = NSBezierPath::cls().bezierPath();
        for (int i = 0; i < kTeeth * 4; ++i) {
            const double angle = (i - 0.5) * std::numbers::pi / (kTeeth * 2);
            const double radius = i % 4 < 2 ? 6.5 : 5;
            const NSPoint point { 8 + radius * std::cos(angle), 8 + radius * std::sin(angle) };
            if (i == 0)
                gear->moveToPoint(point);
            else
                gear->lineToPoint(point);
        }
        gear->closePath();
        gear->appendBezierPathWithOvalInRect(NSMakeRect(5.75, 5.75, 4.5, 4.5));
        gear->setWindingRule(NSEvenOddWindingRule);
        gear->fill();
    }

    struct BuiltIn {
        const char* name;
        void (*draw)();
    };
    constexpr BuiltIn kBuiltIns[] = {
        { "NSAddTemplate", drawAdd },
        { "NSRemoveTemplate", drawRemove },
        { "NSActionTemplate", drawGear },
        { "NSGoLeftTemplate", drawLeft },
        { "NSGoRightTemplate", drawRight },
        { "NSRefreshTemplate", drawRefresh },
        { "NSStopProgressTemplate", drawStop },
        { "NSListViewTemplate", drawRows },
        { "NSIconViewTemplate", drawTiles },
        { "NSMenuOnStateTemplate", drawCheck },
        { "NSMenuMixedStateTemplate", drawRemove },
    };

}

Ref<NSImage> builtInImage(const std::string& name)
{
    if (name == "NSApplicationIcon")
        return applicationIcon();
    for (const BuiltIn& image : kBuiltIns) {
        if (name != image.name)
            continue;
        const NSCustomImageRep::Handler handler = [draw = image.draw](NSRect) {
            NSColor::cls().blackColor()->set();
            draw();
            return true;
        };
        return NSImage::cls().imageWithSize_flipped_drawingHandler(
            NSMakeSize(kSide, kSide), false, handler);
    }
    return nullptr;
}

}
