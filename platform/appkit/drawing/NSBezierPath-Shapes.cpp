// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSBezierPath.h"

#include "appkit/NSFont.h"
#include "quartz/text/FontFace.h"
#include "runtime/Table.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace brindle {

using quartz::PathData;

template <> struct NSBezierPath::Methods<struct Shapes> {

    static Ref<NSBezierPath> withRect(Class& self, NSRect rect)
    {
        Ref<NSBezierPath> path = self.send<"bezierPath", Ref<NSBezierPath>>();
        maybe(path)->appendBezierPathWithRect(rect);
        return path;
    }
    static Ref<NSBezierPath> withOval(Class& self, NSRect rect)
    {
        Ref<NSBezierPath> path = self.send<"bezierPath", Ref<NSBezierPath>>();
        maybe(path)->appendBezierPathWithOvalInRect(rect);
        return path;
    }
    static Ref<NSBezierPath> withRoundedRect(
        Class& self, NSRect rect, CGFloat xRadius, CGFloat yRadius)
    {
        Ref<NSBezierPath> path = self.send<"bezierPath", Ref<NSBezierPath>>();
        maybe(path)->appendBezierPathWithRoundedRect_xRadius_yRadius(rect, xRadius, yRadius);
        return path;
    }

    static void appendPath(NSBezierPath& self, NSBezierPath* path)
    {
        if (path)
            CGPathAddPath(self.path(), nullptr, path->path());
    }
    static void appendPoints(NSBezierPath& self, const NSPoint* points, NSInteger count)
    {
        for (NSInteger i = 0; points && i < count; ++i) {
            if (self.steps().isEmpty())
                self.moveToPoint(points[i]);
            else
                self.lineToPoint(points[i]);
        }
    }
    static void appendRect(NSBezierPath& self, NSRect rect)
    {
        CGPathAddRect(self.path(), nullptr, rect);
    }
    static void appendOval(NSBezierPath& self, NSRect rect)
    {
        CGPathAddEllipseInRect(self.path(), nullptr, rect);
    }
    static void appendRoundedRect(NSBezierPath& self, NSRect rect, CGFloat xRadius, CGFloat yRadius)
    {
        CGPathAddRoundedRect(self.path(), nullptr, rect, xRadius, yRadius);
    }

    /// Answers how many degrees an arc covers, 0 to 360.
    static double sweepOf(double start, double end, bool clockwise)
    {
        const double asked = clockwise ? start - end : end - start;
        if (asked >= 360)
            return 360;
        const double sweep = std::fmod(asked, 360);
        // From 360 back to 0 is a turn as from 0 to 360 is.
        return sweep < 0 || (sweep == 0 && asked < 0) ? sweep + 360 : sweep;
    }
    static void appendArc(NSBezierPath& self, NSPoint center, CGFloat radius, CGFloat startAngle,
        CGFloat endAngle, bool clockwise)
    {
        constexpr double kRadians = std::numbers::pi / 180;
        const double numbers[] = { center.x, center.y, radius, startAngle, endAngle };
        if (!std::ranges::all_of(numbers, [](double number) { return std::isfinite(number); }))
            return;
        const double sweep = sweepOf(startAngle, endAngle, clockwise) * kRadians;
        const double start = startAngle * kRadians;
        CGPathAddArc(self.path(), nullptr, center.x, center.y, radius, start,
            clockwise ? start - sweep : start + sweep, clockwise);
    }
    static void appendCounterClockwiseArc(
        NSBezierPath& self, NSPoint center, CGFloat radius, CGFloat startAngle, CGFloat endAngle)
    {
        self.appendBezierPathWithArcWithCenter_radius_startAngle_endAngle_clockwise(
            center, radius, startAngle, endAngle, false);
    }
    static void appendCorner(NSBezierPath& self, NSPoint corner, NSPoint end, CGFloat radius)
    {
        self.started();
        CGPathAddArcToPoint(self.path(), nullptr, corner.x, corner.y, end.x, end.y, radius);
    }

    static void addOutline(
        PathData& steps, const text::Font& font, std::uint32_t glyph, NSPoint origin)
    {
        using Kind = text::OutlineStep::Kind;
        const auto at = [&](NSPoint p) {
            return NSMakePoint(origin.x + p.x * font.size, origin.y + p.y * font.size);
        };
        PathData outline;
        for (const text::OutlineStep& step : font.face->outline(glyph)) {
            const NSPoint to = at(step.to);
            const NSPoint control = at(step.control1);
            switch (step.kind) {
            case Kind::move:
                outline.move(to);
                break;
            case Kind::line:
                outline.line(to);
                break;
            case Kind::quadratic:
                outline.curveLikeQuad(control, to);
                break;
            case Kind::cubic:
                outline.curve(control, at(step.control2), to);
                break;
            case Kind::close:
                outline.close();
                break;
            }
        }
        steps.append(outline, CGAffineTransformIdentity);
    }
    static void appendGlyph(NSBezierPath& self, std::uint32_t glyph, NSFont* font)
    {
        PathData& steps = self.started();
        const text::Font face = NSFont::textFont(font);
        if (!face.face)
            return;
        const NSPoint origin = steps.current();
        addOutline(steps, face, glyph, origin);
        steps.move({ origin.x + face.advance(glyph), origin.y });
    }
    static void appendGlyphs(
        NSBezierPath& self, const std::uint32_t* glyphs, NSInteger count, NSFont* font)
    {
        for (NSInteger i = 0; glyphs && i < count; ++i)
            self.appendBezierPathWithGlyph_inFont(glyphs[i], font);
    }

    static void table(Builder& t)
    {
        t.classMethods({
            { "bezierPathWithRect:", imp<withRect> },
            { "bezierPathWithOvalInRect:", imp<withOval> },
            { "bezierPathWithRoundedRect:xRadius:yRadius:", imp<withRoundedRect> },
        });
        t.methods({
            { "appendBezierPath:", imp<appendPath> },
            { "appendBezierPathWithPoints:count:", imp<appendPoints> },
            { "appendBezierPathWithRect:", imp<appendRect> },
            { "appendBezierPathWithOvalInRect:", imp<appendOval> },
            { "appendBezierPathWithRoundedRect:xRadius:yRadius:", imp<appendRoundedRect> },
            { "appendBezierPathWithArcWithCenter:radius:startAngle:endAngle:clockwise:",
                imp<appendArc> },
            { "appendBezierPathWithArcWithCenter:radius:startAngle:endAngle:",
                imp<appendCounterClockwiseArc> },
            { "appendBezierPathWithArcFromPoint:toPoint:radius:", imp<appendCorner> },
            { "appendBezierPathWithGlyph:inFont:", imp<appendGlyph> },
            { "appendBezierPathWithGlyphs:count:inFont:", imp<appendGlyphs> },
        });
    }
};
BRINDLE_RECORD(NSBezierPath, Shapes)

}
