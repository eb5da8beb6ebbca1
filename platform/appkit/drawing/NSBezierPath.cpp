// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSBezierPath.h"

#include "appkit/NSAffineTransform.h"
#include "runtime/NSException.h"
#include "runtime/Table.h"

#include <algorithm>
#include <atomic>
#include <string>
#include <tuple>
#include <utility>

namespace brindle {

using quartz::PathData;

class CGPath* NSBezierPath::path()
{
    if (!path_)
        path_ = make<class CGPath>();
    return path_.get();
}

PathData& NSBezierPath::started()
{
    if (steps().isEmpty())
        raise("NSGenericException", "No current point for line");
    return steps();
}

// ---- making, and what new paths begin with

namespace {

    struct Defaults {
        std::atomic<CGFloat> lineWidth = 1;
        std::atomic<CGFloat> miterLimit = 10;
        std::atomic<CGFloat> flatness = 0.6;
        std::atomic<NSWindingRule> windingRule = NSNonZeroWindingRule;
        std::atomic<NSLineCapStyle> lineCapStyle = NSButtLineCapStyle;
        std::atomic<NSLineJoinStyle> lineJoinStyle = NSMiterLineJoinStyle;
    };
    constinit Defaults defaults;

}

template <> struct NSBezierPath::Methods<struct Making> {

    template <auto Field> static auto get(Class&) { return (defaults.*Field).load(); }
    template <auto Field>
    static void set(Class&, decltype(get<Field>(std::declval<Class&>())) value)
    {
        defaults.*Field = value;
    }

    static Ref<NSObject> init(NSBezierPath& self)
    {
        if (!super<NSBezierPath, "init", Ref<NSObject>>(self))
            return nullptr;
        self.lineWidth_ = defaults.lineWidth;
        self.miterLimit_ = defaults.miterLimit;
        self.flatness_ = defaults.flatness;
        self.windingRule_ = defaults.windingRule;
        self.lineCapStyle_ = defaults.lineCapStyle;
        self.lineJoinStyle_ = defaults.lineJoinStyle;
        return &self;
    }
    static Ref<NSBezierPath> bezierPath(Class& self)
    {
        return cast<NSBezierPath>(self.send<"new", Ref<NSObject>>());
    }

    static void table(Builder& t)
    {
        t.methods({ { "init", imp<init> } });
        t.classMethods({
            { "bezierPath", imp<bezierPath> },
            { "defaultLineWidth", imp<get<&Defaults::lineWidth>> },
            { "setDefaultLineWidth:", imp<set<&Defaults::lineWidth>> },
            { "defaultMiterLimit", imp<get<&Defaults::miterLimit>> },
            { "setDefaultMiterLimit:", imp<set<&Defaults::miterLimit>> },
            { "defaultFlatness", imp<get<&Defaults::flatness>> },
            { "setDefaultFlatness:", imp<set<&Defaults::flatness>> },
            { "defaultWindingRule", imp<get<&Defaults::windingRule>> },
            { "setDefaultWindingRule:", imp<set<&Defaults::windingRule>> },
            { "defaultLineCapStyle", imp<get<&Defaults::lineCapStyle>> },
            { "setDefaultLineCapStyle:", imp<set<&Defaults::lineCapStyle>> },
            { "defaultLineJoinStyle", imp<get<&Defaults::lineJoinStyle>> },
            { "setDefaultLineJoinStyle:", imp<set<&Defaults::lineJoinStyle>> },
        });
        t.properties({
            property<&NSBezierPath::windingRule_>("windingRule", nonatomic),
            property<&NSBezierPath::lineWidth_>("lineWidth", nonatomic),
            property<&NSBezierPath::lineCapStyle_>("lineCapStyle", nonatomic),
            property<&NSBezierPath::lineJoinStyle_>("lineJoinStyle", nonatomic),
            property<&NSBezierPath::miterLimit_>("miterLimit", nonatomic),
            property<&NSBezierPath::flatness_>("flatness", nonatomic),
        });
    }
};
BRINDLE_RECORD(NSBezierPath, Making)

// ---- elements

template <> struct NSBezierPath::Methods<struct Elements> {

    static NSPoint currentPoint(NSBezierPath& self)
    {
        if (self.steps().isEmpty())
            raise("NSGenericException", "No current point");
        return self.steps().current();
    }
    static NSPoint away(NSBezierPath& self, NSPoint by)
    {
        const NSPoint from = self.started().current();
        return { from.x + by.x, from.y + by.y };
    }

    static void moveToPoint(NSBezierPath& self, NSPoint point) { self.steps().move(point); }
    static void lineToPoint(NSBezierPath& self, NSPoint point) { self.started().line(point); }
    static void curveToPoint(NSBezierPath& self, NSPoint end, NSPoint control1, NSPoint control2)
    {
        self.started().curve(control1, control2, end);
    }
    static void closePath(NSBezierPath& self) { self.steps().close(); }

    static void relativeMoveToPoint(NSBezierPath& self, NSPoint by)
    {
        self.moveToPoint(away(self, by));
    }
    static void relativeLineToPoint(NSBezierPath& self, NSPoint by)
    {
        self.lineToPoint(away(self, by));
    }
    static void relativeCurveToPoint(
        NSBezierPath& self, NSPoint end, NSPoint control1, NSPoint control2)
    {
        self.curveToPoint_controlPoint1_controlPoint2(
            away(self, end), away(self, control1), away(self, control2));
    }

    static NSInteger elementCount(NSBezierPath& self)
    {
        return static_cast<NSInteger>(self.steps().count());
    }
    static std::size_t checked(NSBezierPath& self, NSInteger index)
    {
        if (index < 0 || index >= elementCount(self))
            raise("NSRangeException",
                "index " + std::to_string(index) + " beyond the path's "
                    + std::to_string(elementCount(self)) + " elements");
        return static_cast<std::size_t>(index);
    }
    static NSBezierPathElement elementAndPoints(
        NSBezierPath& self, NSInteger index, NSPoint* points)
    {
        const PathData& steps = self.steps();
        const std::size_t place = checked(self, index);
        const CGPathElementType type = steps.typeAt(place);
        if (points)
            std::copy_n(steps.pointsAt(place), PathData::pointsOf(type), points);
        switch (type) {
        case kCGPathElementMoveToPoint:
            return NSMoveToBezierPathElement;
        case kCGPathElementAddLineToPoint:
            return NSLineToBezierPathElement;
        case kCGPathElementCloseSubpath:
            return NSClosePathBezierPathElement;
        default:
            return NSCurveToBezierPathElement;
        }
    }
    static NSBezierPathElement elementAtIndex(NSBezierPath& self, NSInteger index)
    {
        return self.elementAtIndex_associatedPoints(index, nullptr);
    }
    static void setAssociatedPoints(NSBezierPath& self, const NSPoint* points, NSInteger index)
    {
        const std::size_t place = checked(self, index);
        if (points)
            self.steps().setPointsAt(place, points);
    }
    static void removeAllPoints(NSBezierPath& self) { self.steps().clear(); }
    static bool isEmpty(NSBezierPath& self) { return self.steps().isEmpty(); }

    static void table(Builder& t)
    {
        t.methods({
            { "moveToPoint:", imp<moveToPoint> },
            { "lineToPoint:", imp<lineToPoint> },
            { "curveToPoint:controlPoint1:controlPoint2:", imp<curveToPoint> },
            { "closePath", imp<closePath> },
            { "relativeMoveToPoint:", imp<relativeMoveToPoint> },
            { "relativeLineToPoint:", imp<relativeLineToPoint> },
            { "relativeCurveToPoint:controlPoint1:controlPoint2:", imp<relativeCurveToPoint> },
            { "elementCount", imp<elementCount> },
            { "elementAtIndex:associatedPoints:", imp<elementAndPoints> },
            { "elementAtIndex:", imp<elementAtIndex> },
            { "setAssociatedPoints:atIndex:", imp<setAssociatedPoints> },
            { "removeAllPoints", imp<removeAllPoints> },
            { "isEmpty", imp<isEmpty> },
            { "currentPoint", imp<currentPoint> },
        });
    }
};
BRINDLE_RECORD(NSBezierPath, Elements)

// ---- the shape as a whole

template <> struct NSBezierPath::Methods<struct Shape> {

    static NSRect bounds(NSBezierPath& self)
    {
        const NSRect box = self.steps().box();
        return CGRectIsNull(box) ? NSZeroRect : box;
    }
    static NSRect controlPointBounds(NSBezierPath& self)
    {
        const NSRect box = self.steps().controlBox();
        return CGRectIsNull(box) ? NSZeroRect : box;
    }
    static bool containsPoint(NSBezierPath& self, NSPoint point)
    {
        return self.steps().contains(point, self.windingRule() == NSEvenOddWindingRule);
    }

    static Ref<NSBezierPath> with(NSBezierPath& self, const PathData& steps)
    {
        const auto made
            = cast<NSBezierPath>(self.classObject()->send<"bezierPath", Ref<NSBezierPath>>());
        made->steps() = steps;
        made->windingRule_ = self.windingRule_;
        made->lineCapStyle_ = self.lineCapStyle_;
        made->lineJoinStyle_ = self.lineJoinStyle_;
        made->lineWidth_ = self.lineWidth_;
        made->miterLimit_ = self.miterLimit_;
        made->flatness_ = self.flatness_;
        made->dashes_ = self.dashes_;
        made->dashPhase_ = self.dashPhase_;
        return made;
    }
    static Ref<NSObject> copyWithZone(NSBezierPath& self, void*)
    {
        return with(self, self.steps());
    }
    static Ref<NSBezierPath> flattened(NSBezierPath& self)
    {
        return with(self, self.steps().flattened(self.flatness()));
    }
    static Ref<NSBezierPath> reversed(NSBezierPath& self)
    {
        return with(self, self.steps().reversed());
    }
    static void transform(NSBezierPath& self, NSAffineTransform* transform)
    {
        if (!transform)
            return;
        const NSAffineTransformStruct n = transform->transformStruct();
        PathData moved;
        moved.append(self.steps(), { n.m11, n.m12, n.m21, n.m22, n.tX, n.tY });
        self.steps() = std::move(moved);
    }

    static bool isEqual(NSBezierPath& self, NSObject* object)
    {
        if (object == &self)
            return true;
        if (!object || !object->isKindOfClass(NSBezierPath::cls()))
            return false;
        auto& other = *static_cast<NSBezierPath*>(object);
        const auto line = [](NSBezierPath& p) {
            return std::tie(p.windingRule_, p.lineCapStyle_, p.lineJoinStyle_, p.lineWidth_,
                p.miterLimit_, p.flatness_, p.dashes_, p.dashPhase_);
        };
        return self.steps() == other.steps() && line(self) == line(other);
    }
    static std::uint64_t hash(NSBezierPath& self) { return self.path()->hash(); }

    static void table(Builder& t)
    {
        t.conformsTo({ "NSCopying" });
        t.methods({
            { "bounds", imp<bounds> },
            { "controlPointBounds", imp<controlPointBounds> },
            { "containsPoint:", imp<containsPoint> },
            { "copyWithZone:", imp<copyWithZone> },
            { "bezierPathByFlatteningPath", imp<flattened> },
            { "bezierPathByReversingPath", imp<reversed> },
            { "transformUsingAffineTransform:", imp<transform> },
            { "isEqual:", imp<isEqual> },
            { "hash", imp<hash> },
        });
    }
};
BRINDLE_RECORD(NSBezierPath, Shape)

}
