// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "quartz/CGPath.h"

namespace brindle {

class NSAffineTransform;
class NSFont;

enum NSBezierPathElement : NSUInteger {
    NSMoveToBezierPathElement = 0,
    NSLineToBezierPathElement = 1,
    NSCurveToBezierPathElement = 2,
    NSClosePathBezierPathElement = 3,
};

enum NSWindingRule : NSUInteger { NSNonZeroWindingRule = 0, NSEvenOddWindingRule = 1 };

enum NSLineCapStyle : NSUInteger {
    NSButtLineCapStyle = 0,
    NSRoundLineCapStyle = 1,
    NSSquareLineCapStyle = 2,
};

enum NSLineJoinStyle : NSUInteger {
    NSMiterLineJoinStyle = 0,
    NSRoundLineJoinStyle = 1,
    NSBevelLineJoinStyle = 2,
};

/// A shape of lines and cubic curves, with how its line is drawn and what counts as its inside.
///
/// Elements are kept as they were added. A move behind a move replaces it; a line behind a close begins a new subpath at
/// the start of the last one, and only then is a move added for it. Coordinates are kept as they are, also infinities and
/// NaN; painting leaves such points out.
/// Two paths are equal when their elements, their inside and their line are.
/// Thread: one at a time.
class NSBezierPath : public NSObject {
    BRINDLE_OBJECT(NSBezierPath, NSObject)

public:
    struct Meta : NSObject::Meta {
        Ref<NSBezierPath> bezierPath() const { return send<"bezierPath", Ref<NSBezierPath>>(); }
        // Paths of one shape; see the operation that appends it.
        Ref<NSBezierPath> bezierPathWithRect(NSRect rect) const
        {
            return send<"bezierPathWithRect:", Ref<NSBezierPath>>(rect);
        }
        Ref<NSBezierPath> bezierPathWithOvalInRect(NSRect rect) const
        {
            return send<"bezierPathWithOvalInRect:", Ref<NSBezierPath>>(rect);
        }
        Ref<NSBezierPath> bezierPathWithRoundedRect_xRadius_yRadius(
            NSRect rect, CGFloat xRadius, CGFloat yRadius) const
        {
            return send<"bezierPathWithRoundedRect:xRadius:yRadius:", Ref<NSBezierPath>>(
                rect, xRadius, yRadius);
        }

        // Painting in the current context without a path of one's own.
        /// Fills with the fill colour, over what is there.
        void fillRect(NSRect rect) const { send<"fillRect:">(rect); }
        /// Draws the edge with the defaults below.
        void strokeRect(NSRect rect) const { send<"strokeRect:">(rect); }
        void clipRect(NSRect rect) const { send<"clipRect:">(rect); }
        /// Draws a line with the defaults below.
        void strokeLineFromPoint_toPoint(NSPoint from, NSPoint to) const
        {
            send<"strokeLineFromPoint:toPoint:">(from, to);
        }

        // What new paths begin with; for the whole process, from any thread.
        CGFloat defaultLineWidth() const { return send<"defaultLineWidth", CGFloat>(); } // 1
        void setDefaultLineWidth(CGFloat width) const { send<"setDefaultLineWidth:">(width); }
        CGFloat defaultMiterLimit() const { return send<"defaultMiterLimit", CGFloat>(); } // 10
        void setDefaultMiterLimit(CGFloat limit) const { send<"setDefaultMiterLimit:">(limit); }
        CGFloat defaultFlatness() const { return send<"defaultFlatness", CGFloat>(); } // 0.6
        void setDefaultFlatness(CGFloat flatness) const { send<"setDefaultFlatness:">(flatness); }
        NSWindingRule defaultWindingRule() const
        {
            return send<"defaultWindingRule", NSWindingRule>();
        }
        void setDefaultWindingRule(NSWindingRule rule) const
        {
            send<"setDefaultWindingRule:">(rule);
        }
        NSLineCapStyle defaultLineCapStyle() const
        {
            return send<"defaultLineCapStyle", NSLineCapStyle>();
        }
        void setDefaultLineCapStyle(NSLineCapStyle style) const
        {
            send<"setDefaultLineCapStyle:">(style);
        }
        NSLineJoinStyle defaultLineJoinStyle() const
        {
            return send<"defaultLineJoinStyle", NSLineJoinStyle>();
        }
        void setDefaultLineJoinStyle(NSLineJoinStyle style) const
        {
            send<"setDefaultLineJoinStyle:">(style);
        }
    };

    // ---- drawing a shape, step by step

    void moveToPoint(NSPoint point) { send<"moveToPoint:">(point); }
    /// - Raises: `NSGenericException`, "No current point for line", on a path without elements; so do curves and the
    ///   relative forms.
    void lineToPoint(NSPoint point) { send<"lineToPoint:">(point); }
    void curveToPoint_controlPoint1_controlPoint2(NSPoint end, NSPoint control1, NSPoint control2)
    {
        send<"curveToPoint:controlPoint1:controlPoint2:">(end, control1, control2);
    }
    /// Ends the subpath; the current point is its start again. Nothing on an empty path or twice in a row.
    void closePath() { send<"closePath">(); }
    // The same, told from the current point.
    void relativeMoveToPoint(NSPoint by) { send<"relativeMoveToPoint:">(by); }
    void relativeLineToPoint(NSPoint by) { send<"relativeLineToPoint:">(by); }
    void relativeCurveToPoint_controlPoint1_controlPoint2(
        NSPoint end, NSPoint control1, NSPoint control2)
    {
        send<"relativeCurveToPoint:controlPoint1:controlPoint2:">(end, control1, control2);
    }

    // ---- whole shapes

    /// Adds the elements of another path, which may be the receiver; nil adds nothing.
    void appendBezierPath(NSBezierPath* path) { send<"appendBezierPath:">(path); }
    /// Adds lines through all points; the first is moved to where the path is empty.
    void appendBezierPathWithPoints_count(const NSPoint* points, NSInteger count)
    {
        send<"appendBezierPathWithPoints:count:">(points, count);
    }
    /// Adds a move, three lines and a close, from the origin along the width; a negative size runs the other way.
    void appendBezierPathWithRect(NSRect rect) { send<"appendBezierPathWithRect:">(rect); }
    /// Adds a closed ellipse of four curves, from the middle of the right side towards greater y.
    void appendBezierPathWithOvalInRect(NSRect rect)
    {
        send<"appendBezierPathWithOvalInRect:">(rect);
    }
    /// Adds a closed rectangle with quarter ellipses for corners.
    /// - xRadius, yRadius: half the side at most; a rectangle where either is 0 or less.
    void appendBezierPathWithRoundedRect_xRadius_yRadius(
        NSRect rect, CGFloat xRadius, CGFloat yRadius)
    {
        send<"appendBezierPathWithRoundedRect:xRadius:yRadius:">(rect, xRadius, yRadius);
    }
    /// Adds a part of a circle, a cubic for 90 degrees at most, behind a line from the current point; on an empty path it
    /// moves to the start instead.
    /// - startAngle, endAngle: degrees from the x axis towards the y axis. Angles apart by a multiple of 360, or by more in
    ///   the direction of the arc, make one full turn; equal ones none. Numbers that are not finite add nothing.
    void appendBezierPathWithArcWithCenter_radius_startAngle_endAngle_clockwise(
        NSPoint center, CGFloat radius, CGFloat startAngle, CGFloat endAngle, bool clockwise)
    {
        send<"appendBezierPathWithArcWithCenter:radius:startAngle:endAngle:clockwise:">(
            center, radius, startAngle, endAngle, clockwise);
    }
    /// The same from a smaller to a greater angle.
    void appendBezierPathWithArcWithCenter_radius_startAngle_endAngle(
        NSPoint center, CGFloat radius, CGFloat startAngle, CGFloat endAngle)
    {
        send<"appendBezierPathWithArcWithCenter:radius:startAngle:endAngle:">(
            center, radius, startAngle, endAngle);
    }
    /// Rounds the corner at `corner` on the way from the current point to `end`: a line, then an arc that touches both
    /// sides. Without a corner, or a radius above 0, it is a line to `corner`.
    /// - Raises: `NSGenericException` on a path without elements.
    void appendBezierPathWithArcFromPoint_toPoint_radius(
        NSPoint corner, NSPoint end, CGFloat radius)
    {
        send<"appendBezierPathWithArcFromPoint:toPoint:radius:">(corner, end, radius);
    }
    /// Adds a glyph's outline with its origin at the current point, which moves on by the glyph's advance.
    /// - Raises: `NSGenericException` on a path without elements. A nil font adds nothing.
    void appendBezierPathWithGlyph_inFont(std::uint32_t glyph, NSFont* font)
    {
        send<"appendBezierPathWithGlyph:inFont:">(glyph, font);
    }
    void appendBezierPathWithGlyphs_count_inFont(
        const std::uint32_t* glyphs, NSInteger count, NSFont* font)
    {
        send<"appendBezierPathWithGlyphs:count:inFont:">(glyphs, count, font);
    }

    // ---- elements

    NSInteger elementCount() const { return send<"elementCount", NSInteger>(); }
    /// Answers an element and its points.
    /// - points: receives 1 point for moves and lines, 3 for curves (control, control, end), none for a close; may be nil.
    /// - Raises: `NSRangeException` for an index past the end.
    NSBezierPathElement elementAtIndex_associatedPoints(NSInteger index, NSPoint* points) const
    {
        return send<"elementAtIndex:associatedPoints:", NSBezierPathElement>(index, points);
    }
    NSBezierPathElement elementAtIndex(NSInteger index) const
    {
        return send<"elementAtIndex:", NSBezierPathElement>(index);
    }
    /// Moves the points of an element; as many are read as it has. Nil changes nothing.
    /// - Raises: `NSRangeException` for an index past the end.
    void setAssociatedPoints_atIndex(const NSPoint* points, NSInteger index)
    {
        send<"setAssociatedPoints:atIndex:">(points, index);
    }
    void removeAllPoints() { send<"removeAllPoints">(); }
    bool isEmpty() const { return send<"isEmpty", bool>(); }
    /// Answers the last point; behind a close the start of its subpath.
    /// - Raises: `NSGenericException` on a path without elements.
    NSPoint currentPoint() const { return send<"currentPoint", NSPoint>(); }

    // ---- questions about the shape

    /// Answers the rectangle around the lines and curves, without their width; the zero rectangle for an empty path.
    NSRect bounds() const { return send<"bounds", NSRect>(); }
    /// Answers the rectangle around all points, those that control curves included.
    NSRect controlPointBounds() const { return send<"controlPointBounds", NSRect>(); }
    /// Answers whether a point lies where `fill` would paint.
    bool containsPoint(NSPoint point) const { return send<"containsPoint:", bool>(point); }

    // ---- changed copies, which keep the line and the inside

    /// Answers the path with lines in place of curves, none farther from its curve than the flatness.
    Ref<NSBezierPath> bezierPathByFlatteningPath() const
    {
        return send<"bezierPathByFlatteningPath", Ref<NSBezierPath>>();
    }
    /// Answers the path with each subpath run from its end to its start.
    Ref<NSBezierPath> bezierPathByReversingPath() const
    {
        return send<"bezierPathByReversingPath", Ref<NSBezierPath>>();
    }
    /// Moves all points; nil changes nothing.
    void transformUsingAffineTransform(NSAffineTransform* transform)
    {
        send<"transformUsingAffineTransform:">(transform);
    }

    // ---- line and inside

    NSWindingRule windingRule() const { return send<"windingRule", NSWindingRule>(); }
    void setWindingRule(NSWindingRule rule) { send<"setWindingRule:">(rule); }
    /// In points; 0 and less draw the thinnest line.
    CGFloat lineWidth() const { return send<"lineWidth", CGFloat>(); }
    void setLineWidth(CGFloat width) { send<"setLineWidth:">(width); }
    NSLineCapStyle lineCapStyle() const { return send<"lineCapStyle", NSLineCapStyle>(); }
    void setLineCapStyle(NSLineCapStyle style) { send<"setLineCapStyle:">(style); }
    NSLineJoinStyle lineJoinStyle() const { return send<"lineJoinStyle", NSLineJoinStyle>(); }
    void setLineJoinStyle(NSLineJoinStyle style) { send<"setLineJoinStyle:">(style); }
    CGFloat miterLimit() const { return send<"miterLimit", CGFloat>(); }
    void setMiterLimit(CGFloat limit) { send<"setMiterLimit:">(limit); }
    CGFloat flatness() const { return send<"flatness", CGFloat>(); }
    void setFlatness(CGFloat flatness) { send<"setFlatness:">(flatness); }
    /// - pattern: points on, points off, ...; copied. No lengths make a whole line. - phase: where in the pattern it starts.
    void setLineDash_count_phase(const CGFloat* pattern, NSInteger count, CGFloat phase)
    {
        send<"setLineDash:count:phase:">(pattern, count, phase);
    }
    /// - pattern: receives as many lengths as there are; count tells how many, so ask without it first. Each may be nil.
    void getLineDash_count_phase(CGFloat* pattern, NSInteger* count, CGFloat* phase) const
    {
        send<"getLineDash:count:phase:">(pattern, count, phase);
    }

    // ---- painting in the current context; its state stays as it is but for the clip

    void fill() { send<"fill">(); }
    void stroke() { send<"stroke">(); }
    /// Leaves of the clip what lies inside the path too; nothing for an empty path.
    void addClip() { send<"addClip">(); }
    /// Makes the path the clip, whatever it was.
    void setClip() { send<"setClip">(); }

private:
    friend struct BezierPathAccess;
    class CGPath* path();
    quartz::PathData& steps() { return path()->data(); }
    quartz::PathData& started(); // raises where there is no current point

    Ref<class CGPath> path_; // holds no quadratic curves
    NSWindingRule windingRule_ = NSNonZeroWindingRule;
    NSLineCapStyle lineCapStyle_ = NSButtLineCapStyle;
    NSLineJoinStyle lineJoinStyle_ = NSMiterLineJoinStyle;
    CGFloat lineWidth_ = 1;
    CGFloat miterLimit_ = 10;
    CGFloat flatness_ = 0.6;
    std::vector<CGFloat> dashes_;
    CGFloat dashPhase_ = 0;
};

}
