// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSImage.h"

#include "NSImagePrivate.h"
#include "quartz/CGBitmapContext.h"
#include "quartz/ContextState.h"
#include "runtime/NSException.h"
#include "runtime/Table.h"

#include <algorithm>
#include <cmath>

namespace brindle {

namespace {

    /// One direction of a stretched image: where its three parts begin and end, in the image and in the target.
    struct Edges {
        double source[4];
        double target[4];
    };

    /// - near, far: what keeps its size; both shrink alike where the target has no room for them.
    Edges edges(double length, double near, double far, double from, double to)
    {
        const double a = std::clamp(near, 0.0, length);
        const double b = std::clamp(far, 0.0, length - a);
        const double fit = a + b > to - from ? (to - from) / (a + b) : 1;
        return { { 0, a, length - b, length }, { from, from + a * fit, to - b * fit, to } };
    }

}

template <> struct NSImage::Methods<struct Drawing> {

    static void drawPart(NSImage& self, NSRect rect, NSRect source,
        NSCompositingOperation operation, CGFloat fraction, bool respectFlipped,
        NSDictionary* hints)
    {
        const NSSize size = self.size();
        const Ref<CGContext> port = currentCGContext();
        if (!port || !(size.width > 0) || !(size.height > 0) || NSIsEmptyRect(rect))
            return;
        const bool whole = NSEqualRects(source, NSZeroRect);
        const NSSize drawn = whole ? size : source.size;
        const NSSize full = NSMakeSize(rect.size.width * size.width / drawn.width,
            rect.size.height * size.height / drawn.height);
        const Ref<NSImageRep> rep = ImageAccess::best(self, full, DeviceScale::of(port));
        const NSSize repSize = maybe(rep)->size();
        const double across = repSize.width / size.width;
        const double down = repSize.height / size.height;
        const NSRect inRep = whole ? NSZeroRect
                                   : NSMakeRect(source.origin.x * across, source.origin.y * down,
                                       source.size.width * across, source.size.height * down);
        maybe(rep)->drawInRect_fromRect_operation_fraction_respectFlipped_hints(
            rect, inRep, operation, fraction, respectFlipped, hints);
    }
    static void drawShort(NSImage& self, NSRect rect, NSRect source,
        NSCompositingOperation operation, CGFloat fraction)
    {
        self.drawInRect_fromRect_operation_fraction_respectFlipped_hints(
            rect, source, operation, fraction, false, nullptr);
    }
    static void drawAtPoint(NSImage& self, NSPoint point, NSRect source,
        NSCompositingOperation operation, CGFloat fraction)
    {
        const NSSize size = NSEqualRects(source, NSZeroRect) ? self.size() : source.size;
        self.drawInRect_fromRect_operation_fraction({ point, size }, source, operation, fraction);
    }

    // ---- stretched images with margins

    static void drawPiece(NSImage& self, NSRect target, NSRect source)
    {
        if (!NSIsEmptyRect(target) && !NSIsEmptyRect(source))
            self.drawInRect_fromRect_operation_fraction_respectFlipped_hints(
                target, source, NSCompositeSourceOver, 1, true, nullptr);
    }
    /// Lays pieces of their own size side by side, beginning at the target's origin; the last ones are cut.
    static void tilePiece(NSImage& self, NSRect target, NSRect source, bool across, bool down)
    {
        constexpr double kMostTiles = 4096; // more are too small to be seen
        const double w = across ? source.size.width : target.size.width;
        const double h = down ? source.size.height : target.size.height;
        if (NSIsEmptyRect(target) || NSIsEmptyRect(source)
            || (target.size.width / w) * (target.size.height / h) > kMostTiles)
            return drawPiece(self, target, source);
        for (double y = 0; y < target.size.height; y += h) {
            for (double x = 0; x < target.size.width; x += w) {
                const double shownWidth = std::min(w, target.size.width - x);
                const double shownHeight = std::min(h, target.size.height - y);
                NSRect part = source;
                part.size.width *= shownWidth / w;
                part.size.height *= shownHeight / h;
                drawPiece(self,
                    NSMakeRect(target.origin.x + x, target.origin.y + y, shownWidth, shownHeight),
                    part);
            }
        }
    }
    static void drawNineParts(NSImage& self, NSRect rect)
    {
        const NSSize size = self.size();
        const NSEdgeInsets& caps = self.capInsets_;
        const bool flipped = maybe(NSGraphicsContext::cls().currentContext())->isFlipped();
        const Edges x = edges(size.width, caps.left, caps.right, NSMinX(rect), NSMaxX(rect));
        const Edges y = edges(size.height, caps.bottom, caps.top, NSMinY(rect), NSMaxY(rect));
        const bool tiles = self.resizingMode_ == NSImageResizingModeTile;
        for (int row = 0; row < 3; ++row) {
            for (int column = 0; column < 3; ++column) {
                const NSRect source = NSMakeRect(x.source[column], y.source[row],
                    x.source[column + 1] - x.source[column], y.source[row + 1] - y.source[row]);
                NSRect target = NSMakeRect(x.target[column], y.target[row],
                    x.target[column + 1] - x.target[column], y.target[row + 1] - y.target[row]);
                if (flipped)
                    target.origin.y = NSMinY(rect) + NSMaxY(rect) - NSMaxY(target);
                if (tiles)
                    tilePiece(self, target, source, column == 1, row == 1);
                else
                    drawPiece(self, target, source);
            }
        }
    }
    static void drawWhole(NSImage& self, NSRect rect)
    {
        if (!NSIsEmptyRect(rect) && self.capInsets_ != NSEdgeInsets {})
            return drawNineParts(self, CGRectStandardize(rect));
        self.drawInRect_fromRect_operation_fraction_respectFlipped_hints(
            rect, NSZeroRect, NSCompositeSourceOver, 1, true, nullptr);
    }

    // ---- other forms

    static bool drawRepresentation(NSImage&, NSImageRep* rep, NSRect rect)
    {
        return maybe(rep)->drawInRect_fromRect_operation_fraction_respectFlipped_hints(
            rect, NSZeroRect, NSCompositeSourceOver, 1, true, nullptr);
    }
    static void composite(
        NSImage& self, NSPoint point, NSCompositingOperation operation, CGFloat fraction)
    {
        NSRect rect { point, self.size() };
        if (maybe(NSGraphicsContext::cls().currentContext())->isFlipped())
            rect.origin.y -= rect.size.height;
        self.drawInRect_fromRect_operation_fraction_respectFlipped_hints(
            rect, NSZeroRect, operation, fraction, true, nullptr);
    }
    static void compositeWhole(NSImage& self, NSPoint point, NSCompositingOperation operation)
    {
        composite(self, point, operation, 1);
    }

    // ---- focus

    static void lockFocusFlipped(NSImage& self, bool flipped)
    {
        const NSSize size = self.size();
        const DeviceScale scale = DeviceScale::of(nullptr);
        const std::size_t wide = pixelsFor(size.width, scale.across);
        const std::size_t high = pixelsFor(size.height, scale.down);
        const bool isUsable
            = size.width > 0 && size.height > 0 && high <= quartz::kMostPixels / wide;
        const Ref<CGContext> canvas = isUsable
            ? quartz::makeContext(static_cast<int>(wide), static_cast<int>(high))
            : nullptr;
        if (!canvas)
            raise("NSImageCacheException",
                "Can't cache image: its size is zero, or too large to be drawn in");
        CGContextScaleCTM(canvas.get(), static_cast<double>(wide) / size.width,
            static_cast<double>(high) / size.height);
        const auto contexts = NSGraphicsContext::cls();
        const std::size_t depth = self.locks_.size();
        const Ref<NSGraphicsContext> former = contexts.currentContext();
        self.locks_.push_back({ former, canvas });
        contexts.setCurrentContext(
            contexts.graphicsContextWithCGContext_flipped(canvas.get(), false).get());
        try {
            self.drawInRect_fromRect_operation_fraction(
                { {}, size }, NSZeroRect, NSCompositeSourceOver, 1);
        } catch (...) {
            contexts.setCurrentContext(former.get());
            self.locks_.resize(depth);
            throw;
        }
        if (!flipped)
            return;
        CGContextTranslateCTM(canvas.get(), 0, size.height);
        CGContextScaleCTM(canvas.get(), 1, -1);
        contexts.setCurrentContext(
            contexts.graphicsContextWithCGContext_flipped(canvas.get(), true).get());
    }
    static void lockFocus(NSImage& self) { self.lockFocusFlipped(false); }
    static void unlockFocus(NSImage& self)
    {
        if (self.locks_.empty())
            return;
        const Lock lock = std::move(self.locks_.back());
        self.locks_.pop_back();
        NSGraphicsContext::cls().setCurrentContext(lock.former.get());
        const auto drawn = Ref<CGImage>::adopt(CGBitmapContextCreateImage(lock.context.get()));
        const NSSize size = self.size();
        ImageAccess::setReps(self, { BitmapAccess::bitmap(drawn, size) }, size);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "drawInRect:", imp<drawWhole> },
            { "drawInRect:fromRect:operation:fraction:", imp<drawShort> },
            { "drawInRect:fromRect:operation:fraction:respectFlipped:hints:", imp<drawPart> },
            { "drawAtPoint:fromRect:operation:fraction:", imp<drawAtPoint> },
            { "drawRepresentation:inRect:", imp<drawRepresentation> },
            { "compositeToPoint:operation:", imp<compositeWhole> },
            { "compositeToPoint:operation:fraction:", imp<composite> },
            { "lockFocus", imp<lockFocus> },
            { "lockFocusFlipped:", imp<lockFocusFlipped> },
            { "unlockFocus", imp<unlockFocus> },
        });
    }
};
BRINDLE_RECORD(NSImage, Drawing)

}
