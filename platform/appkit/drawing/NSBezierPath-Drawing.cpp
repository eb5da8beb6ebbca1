// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSBezierPath.h"

#include "appkit/NSGraphicsContext.h"
#include "quartz/ContextState.h"
#include "runtime/Table.h"

#include <algorithm>

namespace brindle {

template <> struct NSBezierPath::Methods<struct Drawing> {

    static void setLineDash(
        NSBezierPath& self, const CGFloat* pattern, NSInteger count, CGFloat phase)
    {
        self.dashes_.assign(pattern, pattern + (pattern && count > 0 ? count : 0));
        self.dashPhase_ = phase;
    }
    static void getLineDash(NSBezierPath& self, CGFloat* pattern, NSInteger* count, CGFloat* phase)
    {
        if (pattern)
            std::copy(self.dashes_.begin(), self.dashes_.end(), pattern);
        if (count)
            *count = static_cast<NSInteger>(self.dashes_.size());
        if (phase)
            *phase = self.dashPhase_;
    }

    static void fill(NSBezierPath& self)
    {
        const Ref<CGContext> port = currentCGContext();
        const quartz::StateScope scope(port.get());
        CGContextAddPath(port.get(), self.path());
        if (self.windingRule() == NSEvenOddWindingRule)
            CGContextEOFillPath(port.get());
        else
            CGContextFillPath(port.get());
    }
    static void stroke(NSBezierPath& self)
    {
        const Ref<CGContext> port = currentCGContext();
        const quartz::StateScope scope(port.get());
        CGContextSetLineWidth(port.get(), self.lineWidth());
        CGContextSetLineCap(port.get(), static_cast<CGLineCap>(self.lineCapStyle()));
        CGContextSetLineJoin(port.get(), static_cast<CGLineJoin>(self.lineJoinStyle()));
        CGContextSetMiterLimit(port.get(), self.miterLimit());
        CGContextSetFlatness(port.get(), self.flatness());
        CGContextSetLineDash(port.get(), self.dashPhase_, self.dashes_.data(), self.dashes_.size());
        CGContextAddPath(port.get(), self.path());
        CGContextStrokePath(port.get());
    }
    static void addClip(NSBezierPath& self)
    {
        const Ref<CGContext> port = currentCGContext();
        CGContextBeginPath(port.get());
        CGContextAddPath(port.get(), self.path());
        if (self.windingRule() == NSEvenOddWindingRule)
            CGContextEOClip(port.get());
        else
            CGContextClip(port.get());
    }
    static void setClip(NSBezierPath& self)
    {
        quartz::resetClip(currentCGContext().get());
        self.addClip();
    }

    static void fillRect(Class&, NSRect rect) { CGContextFillRect(currentCGContext().get(), rect); }
    static void strokeRect(Class& self, NSRect rect)
    {
        self.send<"bezierPathWithRect:", Ref<NSBezierPath>>(rect)->stroke();
    }
    static void clipRect(Class&, NSRect rect)
    {
        CGContextClipToRect(currentCGContext().get(), rect);
    }
    static void strokeLine(Class& self, NSPoint from, NSPoint to)
    {
        const auto line = self.send<"bezierPath", Ref<NSBezierPath>>();
        line->moveToPoint(from);
        line->lineToPoint(to);
        line->stroke();
    }

    static void table(Builder& t)
    {
        t.classMethods({
            { "fillRect:", imp<fillRect> },
            { "strokeRect:", imp<strokeRect> },
            { "clipRect:", imp<clipRect> },
            { "strokeLineFromPoint:toPoint:", imp<strokeLine> },
        });
        t.methods({
            { "setLineDash:count:phase:", imp<setLineDash> },
            { "getLineDash:count:phase:", imp<getLineDash> },
            { "fill", imp<fill> },
            { "stroke", imp<stroke> },
            { "addClip", imp<addClip> },
            { "setClip", imp<setClip> },
        });
    }
};
BRINDLE_RECORD(NSBezierPath, Drawing)

}
