// SPDX-License-Identifier: Apache-2.0
#include "NSBezierPath+XUIKitAdditions.h"

#include "appkit/NSAffineTransform.h"
#include "appkit/NSGraphicsContext.h"
#include "runtime/Runtime.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    // Its address is the key of the Quartz path that hangs on a path.
    constexpr char kCGPathKey[] = "XUIKit_CGPath";

    /// Adds a line to a corner; to a round one a line and the curve from `begin` to `end`.
    void addCorner(CGMutablePathRef path, bool round, NSPoint corner, NSPoint begin, NSPoint end)
    {
        if (!round)
            return CGPathAddLineToPoint(path, nullptr, corner.x, corner.y);
        CGPathAddLineToPoint(path, nullptr, begin.x, begin.y);
        CGPathAddCurveToPoint(path, nullptr, corner.x, corner.y, end.x, end.y, end.x, end.y);
    }

    struct XUIKitAdditions_Implementation {

        // ---- making

        static Ref<NSBezierPath> withRoundedRect(Class& self, NSRect rect, CGFloat radius)
        {
            return self.send<"bezierPathWithRoundedRect:xRadius:yRadius:", Ref<NSBezierPath>>(
                rect, radius, radius);
        }
        static Ref<NSBezierPath> withRoundedCorners(
            Class& self, NSRect rect, NSUInteger corners, NSSize radii)
        {
            const auto [x, y] = rect.origin;
            const auto [rx, ry] = radii;
            const CGFloat minX = CGRectGetMinX(rect);
            const CGFloat minY = CGRectGetMinY(rect);
            const CGFloat maxX = CGRectGetMaxX(rect);
            const CGFloat maxY = CGRectGetMaxY(rect);
            const auto rounds = [corners](NSUInteger bit) { return (corners & bit) != 0; };
            const bool first = rounds(BRRectCornerTopLeft);
            const auto path = Ref<CGPath>::adopt(CGPathCreateMutable());
            CGPathMoveToPoint(path.get(), nullptr, first ? x + rx : x, y);
            addCorner(path.get(), rounds(BRRectCornerTopRight), { maxX, minY }, { maxX - rx, minY },
                { maxX, minY + ry });
            addCorner(path.get(), rounds(BRRectCornerBottomRight), { maxX, maxY },
                { maxX, maxY - ry }, { maxX - rx, maxY });
            addCorner(path.get(), rounds(BRRectCornerBottomLeft), { minX, maxY },
                { minX + rx, maxY }, { minX, maxY - ry });
            addCorner(path.get(), first, { x, y }, { x, y + ry }, { x + rx, y });
            CGPathCloseSubpath(path.get());
            return withCGPath(self, path.get());
        }
        static Ref<NSBezierPath> withArc(Class& self, NSPoint center, CGFloat radius,
            CGFloat startAngle, CGFloat endAngle, bool clockwise)
        {
            Ref<NSBezierPath> path = self.send<"bezierPath", Ref<NSBezierPath>>();
            path->appendBezierPathWithArcWithCenter_radius_startAngle_endAngle_clockwise(
                center, radius, startAngle, endAngle, clockwise);
            return path;
        }
        static Ref<NSBezierPath> withCGPath(Class& self, CGPathRef elements)
        {
            Ref<NSBezierPath> path = self.send<"bezierPath", Ref<NSBezierPath>>();
            setCGPath(path, elements);
            return path;
        }

        // ---- adding

        static void addQuadCurve(NSBezierPath& self, NSPoint end, NSPoint control)
        {
            constexpr double kTwoThirds = 0.6666666666666666;
            const auto towards = [control](NSPoint from) {
                return NSMakePoint(from.x + kTwoThirds * (control.x - from.x),
                    from.y + kTwoThirds * (control.y - from.y));
            };
            self.curveToPoint_controlPoint1_controlPoint2(
                end, towards(self.currentPoint()), towards(end));
        }
        static void addArc(NSBezierPath& self, NSPoint center, CGFloat radius, CGFloat startAngle,
            CGFloat endAngle, bool clockwise)
        {
            self.appendBezierPathWithArcWithCenter_radius_startAngle_endAngle_clockwise(
                center, radius, startAngle, endAngle, clockwise);
        }
        static void applyTransform(NSBezierPath& self, CGAffineTransform t)
        {
            const Ref<NSAffineTransform> transform = NSAffineTransform::cls().transform();
            transform->setTransformStruct({ t.a, t.b, t.c, t.d, t.tx, t.ty });
            self.transformUsingAffineTransform(transform.get());
        }

        // ---- painting

        /// Brackets painting with a blend mode and an alpha.
        class Blend {
        public:
            Blend(CGBlendMode mode, CGFloat alpha)
                : port_(maybe(NSGraphicsContext::cls().currentContext())->graphicsPort())
            {
                CGContextSaveGState(port_.get());
                CGContextSetBlendMode(port_.get(), mode);
                CGContextSetAlpha(port_.get(), alpha);
            }
            ~Blend() { CGContextRestoreGState(port_.get()); }
            Blend(const Blend&) = delete;
            Blend& operator=(const Blend&) = delete;

        private:
            Ref<CGContext> port_;
        };
        static void fillWithBlendMode(NSBezierPath& self, CGBlendMode mode, CGFloat alpha)
        {
            const Blend blend(mode, alpha);
            self.fill();
        }
        static void strokeWithBlendMode(NSBezierPath& self, CGBlendMode mode, CGFloat alpha)
        {
            const Blend blend(mode, alpha);
            self.stroke();
        }

        // ---- Quartz paths

        static void addElement(void* path, const CGPathElement* element)
        {
            auto& self = *static_cast<NSBezierPath*>(path);
            const CGPoint* const p = element->points;
            switch (element->type) {
            case kCGPathElementMoveToPoint:
                return self.moveToPoint(p[0]);
            case kCGPathElementAddLineToPoint:
                return self.lineToPoint(p[0]);
            case kCGPathElementAddQuadCurveToPoint:
                return addQuadCurveToPoint_controlPoint(self, p[1], p[0]);
            case kCGPathElementAddCurveToPoint:
                return self.curveToPoint_controlPoint1_controlPoint2(p[2], p[0], p[1]);
            case kCGPathElementCloseSubpath:
                return self.closePath();
            }
        }
        static void setElements(NSBezierPath& self, CGPathRef elements)
        {
            self.removeAllPoints();
            if (!CGPathIsEmpty(elements))
                CGPathApply(elements, &self, addElement);
        }

        /// Adds an element to a Quartz path. Answers whether its subpath is closed then.
        static bool addTo(CGMutablePathRef path, NSBezierPath& self, NSInteger index, bool closed)
        {
            NSPoint p[3];
            switch (self.elementAtIndex_associatedPoints(index, p)) {
            case NSMoveToBezierPathElement:
                CGPathMoveToPoint(path, nullptr, p[0].x, p[0].y);
                return closed; // a move alone opens nothing that could be closed
            case NSLineToBezierPathElement:
                CGPathAddLineToPoint(path, nullptr, p[0].x, p[0].y);
                return false;
            case NSCurveToBezierPathElement:
                CGPathAddCurveToPoint(
                    path, nullptr, p[0].x, p[0].y, p[1].x, p[1].y, p[2].x, p[2].y);
                return false;
            case NSClosePathBezierPathElement:
                CGPathCloseSubpath(path);
                return true;
            }
            return closed;
        }
        static Ref<CGPath> elements(NSBezierPath& self)
        {
            const auto path = Ref<CGPath>::adopt(CGPathCreateMutable());
            bool closed = false;
            const NSInteger count = self.elementCount();
            for (NSInteger i = 0; i < count; ++i)
                closed = addTo(path.get(), self, i, closed);
            if (!closed)
                CGPathCloseSubpath(path.get());
            Ref<CGPath> copy = Ref<CGPath>::adopt(CGPathCreateCopy(path.get()));
            objc_setAssociatedObject(&self, kCGPathKey, copy.get(), OBJC_ASSOCIATION_RETAIN);
            return copy;
        }

        static void setEvenOdd(NSBezierPath& self, bool evenOdd)
        {
            self.setWindingRule(evenOdd ? NSEvenOddWindingRule : NSNonZeroWindingRule);
        }
        static bool evenOdd(NSBezierPath& self)
        {
            return self.windingRule() == NSEvenOddWindingRule;
        }

        static void table(Builder& t)
        {
            t.classMethods({
                { "bezierPathWithRoundedRect:cornerRadius:", imp<withRoundedRect> },
                { "bezierPathWithRoundedRect:byRoundingCorners:cornerRadii:",
                    imp<withRoundedCorners> },
                { "bezierPathWithArcCenter:radius:startAngle:endAngle:clockwise:", imp<withArc> },
                { "bezierPathWithCGPath:", imp<withCGPath> },
            });
            t.methods({
                { "addQuadCurveToPoint:controlPoint:", imp<addQuadCurve> },
                { "addArcWithCenter:radius:startAngle:endAngle:clockwise:", imp<addArc> },
                { "applyTransform:", imp<applyTransform> },
                { "fillWithBlendMode:alpha:", imp<fillWithBlendMode> },
                { "strokeWithBlendMode:alpha:", imp<strokeWithBlendMode> },
                { "setCGPath:", imp<setElements> },
                { "CGPath", imp<elements> },
                { "setUsesEvenOddFillRule:", imp<setEvenOdd> },
                { "usesEvenOddFillRule", imp<evenOdd> },
            });
        }
    };

}
BRINDLE_EXTENSION(NSBezierPath, XUIKitAdditions_Implementation)

}
