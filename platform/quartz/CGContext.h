// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "CGColor.h"
#include "CGImage.h"
#include "CGPath.h"

namespace brindle {

class NSDictionary;

namespace quartz {
    struct ContextData;
}

/// Where drawing goes, with the state of the pen.
///
/// User space is points with y up until somebody transforms it. The state (transform, clip, colours, alpha, blend mode,
/// lines, shadow, sampling, smoothing) is saved and restored as a whole; the current path is not part of it and is kept
/// in device space. Numbers that make no sense paint nothing; they never spoil the context.
/// Functions do nothing and answer zero for a NULL context.
/// Thread: one at a time.
class CGContext : public NSObject {
    BRINDLE_OBJECT(CGContext, NSObject)

public:
    quartz::ContextData& data() const { return *data_; }

private:
    friend struct Contexts;
    quartz::ContextData* data_ = nullptr; // owned
};

// ---- state

BRINDLE_EXPORT CGContextRef CGContextRetain(CGContextRef context);
BRINDLE_EXPORT void CGContextRelease(CGContextRef context);
BRINDLE_EXPORT void CGContextSaveGState(CGContextRef context);
/// Without a saved state (since the innermost transparency layer began) it does nothing.
BRINDLE_EXPORT void CGContextRestoreGState(CGContextRef context);
BRINDLE_EXPORT void CGContextFlush(CGContextRef context);
BRINDLE_EXPORT void CGContextSynchronize(CGContextRef context);

BRINDLE_EXPORT void CGContextTranslateCTM(CGContextRef context, CGFloat tx, CGFloat ty);
BRINDLE_EXPORT void CGContextScaleCTM(CGContextRef context, CGFloat sx, CGFloat sy);
/// - angle: radians.
BRINDLE_EXPORT void CGContextRotateCTM(CGContextRef context, CGFloat angle);
BRINDLE_EXPORT void CGContextConcatCTM(CGContextRef context, CGAffineTransform transform);
/// Answers user space to the context's base space, in which y is up and a bitmap's pixel is one unit.
BRINDLE_EXPORT CGAffineTransform CGContextGetCTM(CGContextRef context);
BRINDLE_EXPORT CGAffineTransform CGContextGetUserSpaceToDeviceSpaceTransform(CGContextRef context);
BRINDLE_EXPORT CGPoint CGContextConvertPointToDeviceSpace(CGContextRef context, CGPoint point);
BRINDLE_EXPORT CGPoint CGContextConvertPointToUserSpace(CGContextRef context, CGPoint point);
BRINDLE_EXPORT CGRect CGContextConvertRectToDeviceSpace(CGContextRef context, CGRect rect);
BRINDLE_EXPORT CGRect CGContextConvertRectToUserSpace(CGContextRef context, CGRect rect);

/// Multiplies all later painting.
BRINDLE_EXPORT void CGContextSetAlpha(CGContextRef context, CGFloat alpha);
BRINDLE_EXPORT void CGContextSetBlendMode(CGContextRef context, CGBlendMode mode);
/// NULL paints nothing.
BRINDLE_EXPORT void CGContextSetFillColorWithColor(CGContextRef context, CGColorRef color);
BRINDLE_EXPORT void CGContextSetStrokeColorWithColor(CGContextRef context, CGColorRef color);
BRINDLE_EXPORT void CGContextSetRGBFillColor(
    CGContextRef context, CGFloat red, CGFloat green, CGFloat blue, CGFloat alpha);
BRINDLE_EXPORT void CGContextSetRGBStrokeColor(
    CGContextRef context, CGFloat red, CGFloat green, CGFloat blue, CGFloat alpha);
BRINDLE_EXPORT void CGContextSetGrayFillColor(CGContextRef context, CGFloat gray, CGFloat alpha);
BRINDLE_EXPORT void CGContextSetGrayStrokeColor(CGContextRef context, CGFloat gray, CGFloat alpha);

/// - width: points, 1 at first; 0 and less draw the thinnest line.
BRINDLE_EXPORT void CGContextSetLineWidth(CGContextRef context, CGFloat width);
BRINDLE_EXPORT void CGContextSetLineCap(CGContextRef context, CGLineCap cap);
BRINDLE_EXPORT void CGContextSetLineJoin(CGContextRef context, CGLineJoin join);
/// - limit: 10 at first.
BRINDLE_EXPORT void CGContextSetMiterLimit(CGContextRef context, CGFloat limit);
/// - lengths: points on, points off, ...; no lengths, or lengths that add to nothing, make a whole line.
BRINDLE_EXPORT void CGContextSetLineDash(
    CGContextRef context, CGFloat phase, const CGFloat* lengths, std::size_t count);
BRINDLE_EXPORT void CGContextSetFlatness(CGContextRef context, CGFloat flatness);

BRINDLE_EXPORT void CGContextSetShouldAntialias(CGContextRef context, bool antialias);
BRINDLE_EXPORT void CGContextSetAllowsAntialiasing(CGContextRef context, bool allows);
/// Glyphs are always smoothed in grey; the wish is kept in the state.
BRINDLE_EXPORT void CGContextSetShouldSmoothFonts(CGContextRef context, bool smooth);
BRINDLE_EXPORT void CGContextSetAllowsFontSmoothing(CGContextRef context, bool allows);
BRINDLE_EXPORT void CGContextSetInterpolationQuality(
    CGContextRef context, CGInterpolationQuality quality);
BRINDLE_EXPORT CGInterpolationQuality CGContextGetInterpolationQuality(CGContextRef context);
/// - offset: base space, y up whatever the transform. - color: NULL ends the shadow.
BRINDLE_EXPORT void CGContextSetShadowWithColor(
    CGContextRef context, CGSize offset, CGFloat blur, CGColorRef color);
/// The same in black at a third.
BRINDLE_EXPORT void CGContextSetShadow(CGContextRef context, CGSize offset, CGFloat blur);

// ---- path

BRINDLE_EXPORT void CGContextBeginPath(CGContextRef context);
BRINDLE_EXPORT void CGContextMoveToPoint(CGContextRef context, CGFloat x, CGFloat y);
BRINDLE_EXPORT void CGContextAddLineToPoint(CGContextRef context, CGFloat x, CGFloat y);
BRINDLE_EXPORT void CGContextAddLines(
    CGContextRef context, const CGPoint* points, std::size_t count);
BRINDLE_EXPORT void CGContextAddCurveToPoint(CGContextRef context, CGFloat cp1x, CGFloat cp1y,
    CGFloat cp2x, CGFloat cp2y, CGFloat x, CGFloat y);
BRINDLE_EXPORT void CGContextAddQuadCurveToPoint(
    CGContextRef context, CGFloat cpx, CGFloat cpy, CGFloat x, CGFloat y);
BRINDLE_EXPORT void CGContextClosePath(CGContextRef context);
BRINDLE_EXPORT void CGContextAddRect(CGContextRef context, CGRect rect);
BRINDLE_EXPORT void CGContextAddRects(CGContextRef context, const CGRect* rects, std::size_t count);
BRINDLE_EXPORT void CGContextAddEllipseInRect(CGContextRef context, CGRect rect);
BRINDLE_EXPORT void CGContextAddArc(CGContextRef context, CGFloat x, CGFloat y, CGFloat radius,
    CGFloat startAngle, CGFloat endAngle, bool clockwise);
/// A line to the first point of tangency, then the arc that touches (current, 1) and (1, 2).
BRINDLE_EXPORT void CGContextAddArcToPoint(
    CGContextRef context, CGFloat x1, CGFloat y1, CGFloat x2, CGFloat y2, CGFloat radius);
BRINDLE_EXPORT void CGContextAddPath(CGContextRef context, CGPathRef path);
BRINDLE_EXPORT bool CGContextIsPathEmpty(CGContextRef context);
BRINDLE_EXPORT CGPoint CGContextGetPathCurrentPoint(CGContextRef context);
BRINDLE_EXPORT CGRect CGContextGetPathBoundingBox(CGContextRef context);
BRINDLE_EXPORT CGPathRef CGContextCopyPath(CGContextRef context);

// ---- painting; all of them use the path up where they use it

BRINDLE_EXPORT void CGContextFillPath(CGContextRef context);
BRINDLE_EXPORT void CGContextEOFillPath(CGContextRef context);
BRINDLE_EXPORT void CGContextStrokePath(CGContextRef context);
BRINDLE_EXPORT void CGContextDrawPath(CGContextRef context, CGPathDrawingMode mode);
BRINDLE_EXPORT void CGContextFillRect(CGContextRef context, CGRect rect);
BRINDLE_EXPORT void CGContextFillRects(
    CGContextRef context, const CGRect* rects, std::size_t count);
BRINDLE_EXPORT void CGContextFillEllipseInRect(CGContextRef context, CGRect rect);
BRINDLE_EXPORT void CGContextStrokeRect(CGContextRef context, CGRect rect);
BRINDLE_EXPORT void CGContextStrokeRectWithWidth(CGContextRef context, CGRect rect, CGFloat width);
BRINDLE_EXPORT void CGContextStrokeEllipseInRect(CGContextRef context, CGRect rect);
/// Strokes the segments 0-1, 2-3, ...
BRINDLE_EXPORT void CGContextStrokeLineSegments(
    CGContextRef context, const CGPoint* points, std::size_t count);
/// Makes the rectangle transparent.
BRINDLE_EXPORT void CGContextClearRect(CGContextRef context, CGRect rect);
/// Draws an image, its top at the rectangle's greatest y; made smaller, it averages all pixels it covers.
BRINDLE_EXPORT void CGContextDrawImage(CGContextRef context, CGRect rect, CGImageRef image);

/// The clip becomes what lies in both it and the path. An empty path leaves nothing.
BRINDLE_EXPORT void CGContextClip(CGContextRef context);
BRINDLE_EXPORT void CGContextEOClip(CGContextRef context);
BRINDLE_EXPORT void CGContextClipToRect(CGContextRef context, CGRect rect);
BRINDLE_EXPORT void CGContextClipToRects(
    CGContextRef context, const CGRect* rects, std::size_t count);
/// Leaves of the clip what a picture lets through that lies in the rectangle, and nothing outside: a grey picture without
/// alpha as far as it is light, any other as far as it is opaque.
BRINDLE_EXPORT void CGContextClipToMask(CGContextRef context, CGRect rect, CGImageRef mask);
/// Answers an upright rectangle of user space that holds the clip; null when nothing is left.
BRINDLE_EXPORT CGRect CGContextGetClipBoundingBox(CGContextRef context);

/// Begins a group: what is painted until its end is put together first, then laid down once with the alpha, blend mode
/// and shadow of now; within, these start afresh. Groups nest; each end also restores the state.
/// - info: not used.
BRINDLE_EXPORT void CGContextBeginTransparencyLayer(CGContextRef context, NSDictionary* info);
BRINDLE_EXPORT void CGContextBeginTransparencyLayerWithRect(
    CGContextRef context, CGRect rect, NSDictionary* info);
BRINDLE_EXPORT void CGContextEndTransparencyLayer(CGContextRef context);

}
