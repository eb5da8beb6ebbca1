// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSImageRep.h"

#include "NSGraphicsContextPrivate.h"
#include "NSImagePrivate.h"
#include "appkit/NSScreen.h"
#include "foundation/NSData.h"
#include "foundation/NSDictionary.h"
#include "foundation/NSNumber.h"
#include "foundation/NSURL.h"
#include "quartz/CGBitmapContext.h"
#include "quartz/ContextState.h"
#include "runtime/Table.h"

#include <cmath>

namespace brindle {

DeviceScale DeviceScale::of(const Ref<CGContext>& context)
{
    if (!context) {
        const CGFloat scale = maybe(NSScreen::cls().mainScreen())->backingScaleFactor();
        return scale > 0 ? DeviceScale { scale, scale } : DeviceScale {};
    }
    const CGAffineTransform t = CGContextGetUserSpaceToDeviceSpaceTransform(context.get());
    return { std::hypot(t.a, t.b), std::hypot(t.c, t.d) };
}

std::size_t pixelsFor(double length, double scale)
{
    constexpr double kLongestSide = 32767;
    const double pixels = std::ceil(std::abs(length) * scale - 1.0 / 256);
    return static_cast<std::size_t>(pixels >= 1 ? std::min(pixels, kLongestSide) : 1);
}

void ImageRepAccess::describe(NSImageRep& rep, const Facts& facts, NSString* space)
{
    rep.size_ = facts.size;
    rep.pixelsWide_ = facts.wide;
    rep.pixelsHigh_ = facts.high;
    rep.bitsPerSample_ = facts.bits;
    rep.alpha_ = facts.alpha;
    rep.opaque_ = facts.opaque;
    rep.colorSpaceName_ = space;
}

void ImageRepAccess::copyFacts(NSImageRep& to, const NSImageRep& from)
{
    describe(to,
        { from.size_, from.pixelsWide_, from.pixelsHigh_, from.bitsPerSample_, from.alpha_,
            from.opaque_ },
        from.colorSpaceName_.get());
}

template <> struct NSImageRep::Methods<struct Facts> {

    // ---- reading files

    static Ref<NSArray> repsWithContentsOfFile(Class&, NSString* path)
    {
        const auto reps = BitmapAccess::readFile(utf8Of(path));
        return reps.empty() ? nullptr : arrayOf(reps);
    }
    static Ref<NSImageRep> repWithContentsOfFile(Class&, NSString* path)
    {
        const auto reps = BitmapAccess::readFile(utf8Of(path));
        return reps.empty() ? nullptr : reps.front();
    }
    // Other places have paths too.
    static Ref<NSString> pathOf(NSURL* url)
    {
        return url && url->isFileURL() ? url->path() : Ref<NSString>();
    }
    static Ref<NSArray> repsWithContentsOfURL(Class& self, NSURL* url)
    {
        return self.send<"imageRepsWithContentsOfFile:", Ref<NSArray>>(pathOf(url).get());
    }
    static Ref<NSImageRep> repWithContentsOfURL(Class& self, NSURL* url)
    {
        return self.send<"imageRepWithContentsOfFile:", Ref<NSImageRep>>(pathOf(url).get());
    }
    static bool canInitWithData(Class&, NSData* data)
    {
        return quartz::isImage(std::as_bytes(bytesOf(data)));
    }

    // ---- facts

    static NSSize size(NSImageRep& self) { return self.size_; }
    static void setSize(NSImageRep& self, NSSize size) { self.size_ = size; }
    static NSInteger pixelsWide(NSImageRep& self) { return self.pixelsWide_; }
    static void setPixelsWide(NSImageRep& self, NSInteger pixels) { self.pixelsWide_ = pixels; }
    static NSInteger pixelsHigh(NSImageRep& self) { return self.pixelsHigh_; }
    static void setPixelsHigh(NSImageRep& self, NSInteger pixels) { self.pixelsHigh_ = pixels; }
    static NSInteger bitsPerSample(NSImageRep& self) { return self.bitsPerSample_; }
    static void setBitsPerSample(NSImageRep& self, NSInteger bits) { self.bitsPerSample_ = bits; }
    static bool hasAlpha(NSImageRep& self) { return self.alpha_; }
    static void setAlpha(NSImageRep& self, bool alpha) { self.alpha_ = alpha; }
    static bool isOpaque(NSImageRep& self) { return self.opaque_; }
    static void setOpaque(NSImageRep& self, bool opaque) { self.opaque_ = opaque; }
    static Ref<NSString> colorSpaceName(NSImageRep& self) { return self.colorSpaceName_; }
    static void setColorSpaceName(NSImageRep& self, NSString* name)
    {
        self.colorSpaceName_ = cast<NSString>(maybe(name)->copy());
    }

    static Ref<NSObject> copyWithZone(NSImageRep& self, void*)
    {
        Ref<NSImageRep> copy = cast<NSImageRep>(self.classObject()->send<"new", Ref<NSObject>>());
        ImageRepAccess::copyFacts(*copy, self);
        return copy;
    }

    static void table(Builder& t)
    {
        t.conformsTo({ "NSCopying" });
        t.classMethods({
            { "imageRepsWithContentsOfFile:", imp<repsWithContentsOfFile> },
            { "imageRepWithContentsOfFile:", imp<repWithContentsOfFile> },
            { "imageRepsWithContentsOfURL:", imp<repsWithContentsOfURL> },
            { "imageRepWithContentsOfURL:", imp<repWithContentsOfURL> },
            { "canInitWithData:", imp<canInitWithData> },
        });
        t.methods({
            { "size", imp<size> },
            { "setSize:", imp<setSize> },
            { "pixelsWide", imp<pixelsWide> },
            { "setPixelsWide:", imp<setPixelsWide> },
            { "pixelsHigh", imp<pixelsHigh> },
            { "setPixelsHigh:", imp<setPixelsHigh> },
            { "bitsPerSample", imp<bitsPerSample> },
            { "setBitsPerSample:", imp<setBitsPerSample> },
            { "hasAlpha", imp<hasAlpha> },
            { "setAlpha:", imp<setAlpha> },
            { "isOpaque", imp<isOpaque> },
            { "setOpaque:", imp<setOpaque> },
            { "colorSpaceName", imp<colorSpaceName> },
            { "setColorSpaceName:", imp<setColorSpaceName> },
            { "copyWithZone:", imp<copyWithZone> },
        });
    }
};
BRINDLE_RECORD(NSImageRep, Facts)

template <> struct NSImageRep::Methods<struct Drawing> {

    static bool draw(NSImageRep&) { return false; }

    static bool drawAtPoint(NSImageRep& self, NSPoint point)
    {
        return self.drawInRect({ point, self.size() });
    }
    static bool drawInRect(NSImageRep& self, NSRect rect)
    {
        const Ref<CGContext> port = currentCGContext();
        const NSSize size = self.size();
        if (!port || !(size.width > 0) || !(size.height > 0) || CGRectIsEmpty(rect))
            return false;
        const quartz::StateScope scope(port.get());
        const NSRect r = CGRectStandardize(rect);
        CGContextTranslateCTM(port.get(), r.origin.x, r.origin.y);
        CGContextScaleCTM(port.get(), r.size.width / size.width, r.size.height / size.height);
        return self.draw();
    }

    /// Answers what part of a picture lies in a rectangle of a space in which the picture has a size, y up.
    static Ref<CGImage> part(CGImage& picture, NSSize size, NSRect source)
    {
        const double across = static_cast<double>(picture.width()) / size.width;
        const double down = static_cast<double>(picture.height()) / size.height;
        const CGRect pixels { { source.origin.x * across, (size.height - NSMaxY(source)) * down },
            { source.size.width * across, source.size.height * down } };
        const auto isWhole = [](double n) { return std::abs(n - std::round(n)) < 1.0 / 512; };
        if (!isWhole(pixels.origin.x) || !isWhole(pixels.origin.y) || !isWhole(NSMaxX(pixels))
            || !isWhole(NSMaxY(pixels)))
            return nullptr;
        const double left = std::round(pixels.origin.x);
        const double top = std::round(pixels.origin.y);
        return Ref<CGImage>::adopt(CGImageCreateWithImageInRect(&picture,
            CGRectMake(
                left, top, std::round(NSMaxX(pixels)) - left, std::round(NSMaxY(pixels)) - top)));
    }

    static void applyHints(CGContextRef port, NSDictionary* hints)
    {
        const Ref<NSObject> wish = maybe(hints)->objectForKey(NSImageHintInterpolation);
        if (wish && wish->isKindOfClass(NSNumber::cls()))
            CGContextSetInterpolationQuality(port,
                static_cast<CGInterpolationQuality>(
                    static_cast<NSNumber*>(wish.get())->intValue()));
    }

    static bool drawPart(NSImageRep& self, NSRect rect, NSRect source,
        NSCompositingOperation operation, CGFloat fraction, bool respectFlipped,
        NSDictionary* hints)
    {
        const Ref<NSGraphicsContext> context = NSGraphicsContext::cls().currentContext();
        const Ref<CGContext> port = maybe(context)->CGContext();
        const NSSize size = self.size();
        const NSRect all { {}, size };
        const NSRect wanted = NSEqualRects(source, NSZeroRect) ? all : CGRectStandardize(source);
        const NSRect shown = NSIntersectionRect(wanted, all);
        if (!port || NSIsEmptyRect(shown) || NSIsEmptyRect(rect))
            return false;
        const quartz::StateScope scope(port.get());
        if (respectFlipped && context->isFlipped()) {
            CGContextTranslateCTM(port.get(), 0, NSMinY(rect) + NSMaxY(rect));
            CGContextScaleCTM(port.get(), 1, -1);
        }
        const double across = rect.size.width / wanted.size.width;
        const double down = rect.size.height / wanted.size.height;
        const auto place = [&](NSRect part) {
            return NSMakeRect(rect.origin.x + (part.origin.x - wanted.origin.x) * across,
                rect.origin.y + (part.origin.y - wanted.origin.y) * down, part.size.width * across,
                part.size.height * down);
        };
        NSRect whole = place(all);
        const Ref<CGImage> picture
            = self.CGImageForProposedRect_context_hints(&whole, context.get(), hints);
        if (!picture)
            return false;
        applyHints(port.get(), hints);
        CGContextSetBlendMode(port.get(), blendModeFor(operation));
        CGContextSetAlpha(port.get(), quartz::alpha(port.get()) * fraction);
        if (NSEqualRects(shown, all)) {
            CGContextDrawImage(port.get(), place(all), picture.get());
            return true;
        }
        const Ref<CGImage> cut = part(*picture, size, shown);
        if (!cut)
            CGContextClipToRect(port.get(), place(shown));
        CGContextDrawImage(port.get(), place(cut ? shown : all), cut ? cut.get() : picture.get());
        return true;
    }

    static Ref<CGImage> picture(
        NSImageRep& self, NSRect* proposed, NSGraphicsContext* context, NSDictionary*)
    {
        const NSSize size = self.size();
        const NSSize wanted = proposed ? proposed->size : size;
        if (!(size.width > 0) || !(size.height > 0) || CGRectIsEmpty({ {}, wanted }))
            return nullptr;
        const DeviceScale scale = context ? DeviceScale::of(context->CGContext()) : DeviceScale {};
        const std::size_t wide = pixelsFor(wanted.width, scale.across);
        const std::size_t high = pixelsFor(wanted.height, scale.down);
        if (high > quartz::kMostPixels / wide)
            return nullptr;
        const Ref<CGContext> canvas
            = quartz::makeContext(static_cast<int>(wide), static_cast<int>(high));
        if (!canvas)
            return nullptr;
        CGContextScaleCTM(canvas.get(), static_cast<double>(wide) / size.width,
            static_cast<double>(high) / size.height);
        const CurrentContextScope current(
            NSGraphicsContext::cls()
                .graphicsContextWithCGContext_flipped(canvas.get(), false)
                .get());
        self.draw();
        return Ref<CGImage>::adopt(CGBitmapContextCreateImage(canvas.get()));
    }

    static void table(Builder& t)
    {
        t.methods({
            { "draw", imp<draw> },
            { "drawAtPoint:", imp<drawAtPoint> },
            { "drawInRect:", imp<drawInRect> },
            { "drawInRect:fromRect:operation:fraction:respectFlipped:hints:", imp<drawPart> },
            { "CGImageForProposedRect:context:hints:", imp<picture> },
        });
    }
};
BRINDLE_RECORD(NSImageRep, Drawing)

}
