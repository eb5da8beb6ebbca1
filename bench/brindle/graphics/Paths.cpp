// SPDX-License-Identifier: Apache-2.0
#include "graphics/NSBezierPath+XUIKitAdditions.h"

#include <algorithm>
#include <string>
#include <vector>

#include "support/Measure.h"
#include "support/Topics.h"

namespace brindle::bench {

namespace {

    /// The same elements without objects and messages: what any program copies.
    struct PlainPath {
        struct Step {
            CGPathElementType type;
            CGPoint points[3];
        };
        std::vector<Step> steps;
    };

    /// Answers lines and curves in turn, with a new subpath every tenth element.
    Ref<NSBezierPath> longPath(NSInteger elements)
    {
        Ref<NSBezierPath> path = NSBezierPath::cls().bezierPath();
        for (NSInteger i = 0; i < elements; ++i) {
            const NSPoint at { static_cast<double>(i % 640), static_cast<double>(i / 640) };
            if (i % 10 == 0)
                path->moveToPoint(at);
            else if (i % 2 == 0)
                path->lineToPoint(at);
            else
                path->curveToPoint_controlPoint1_controlPoint2(at, { 1, at.y }, { at.x, 2 });
        }
        return path;
    }

    PlainPath plainCopy(CGPathRef path)
    {
        PlainPath plain;
        CGPathApply(path, &plain, [](void* info, const CGPathElement* element) {
            PlainPath::Step step { element->type, {} };
            std::copy_n(element->points, quartz::PathData::pointsOf(element->type), step.points);
            static_cast<PlainPath*>(info)->steps.push_back(step);
        });
        return plain;
    }

    /// Copies the elements one by one, as converting must.
    Sample copying(const PlainPath& from)
    {
        return repeated([from](std::size_t) {
            PlainPath to;
            for (const PlainPath::Step& step : from.steps)
                to.steps.push_back(step);
            keep(to.steps.data());
        });
    }

    Pair toQuartz(NSInteger elements)
    {
        const Ref<NSBezierPath> path = longPath(elements);
        return { repeated([path](std::size_t) { keep(quartzPath(path).get()); }),
            copying(plainCopy(quartzPath(path).get())) };
    }

    Pair fromQuartz(NSInteger elements)
    {
        const Ref<CGPath> quartz = quartzPath(longPath(elements));
        const Ref<NSBezierPath> path = NSBezierPath::cls().bezierPath();
        return { repeated([=](std::size_t) { setCGPath(path, quartz.get()); }),
            copying(plainCopy(quartz.get())) };
    }

}

void addPaths(Plan& plan)
{
    for (const NSInteger elements : { 1'000, 10'000, 100'000 }) {
        const std::string size = std::to_string(elements) + " elements";
        plan.time("CGPath of a path of " + size + " beside copying them", kNoBudget,
            [elements] { return toQuartz(elements); });
        plan.time("setCGPath: of " + size + " beside copying them", kNoBudget,
            [elements] { return fromQuartz(elements); });
    }
}

}
