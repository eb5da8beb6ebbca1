// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSBitmapImageRep.h"

#include "NSImagePrivate.h"
#include "appkit/NSColor.h"
#include "foundation/NSData.h"
#include "quartz/CGBitmapContext.h"
#include "runtime/Table.h"

#include <algorithm>
#include <cmath>

namespace brindle {

namespace {

    /// The layout of pictures that came from files and from Quartz.
    BitmapLayout layoutOf(const CGImage& picture, bool alpha)
    {
        return { picture.width(), picture.height(), 8, alpha ? std::size_t { 4 } : 3, alpha, false,
            false, 0, picture.width() * 4, 32 };
    }

    bool tellsAlpha(CGImage& picture)
    {
        switch (CGImageGetAlphaInfo(&picture)) {
        case kCGImageAlphaNone:
        case kCGImageAlphaNoneSkipFirst:
        case kCGImageAlphaNoneSkipLast:
            return false;
        default:
            return true;
        }
    }

    /// Checks what a host asks for, and fills in what it leaves open.
    bool complete(BitmapLayout& l, NSString* space)
    {
        constexpr std::size_t kMostBytes = std::size_t { 1 } << 29;
        const std::string name = utf8Of(space);
        l.gray = name == "NSDeviceWhiteColorSpace" || name == "NSCalibratedWhiteColorSpace";
        const bool rgb = name == "NSDeviceRGBColorSpace" || name == "NSCalibratedRGBColorSpace";
        const std::size_t colors = l.gray ? 1 : 3;
        if ((!rgb && !l.gray) || l.samples != colors + (l.alpha ? 1 : 0) || l.wide == 0
            || l.high == 0 || l.high > quartz::kMostPixels / l.wide
            || (l.bits != 1 && l.bits != 2 && l.bits != 4 && l.bits != 8 && l.bits != 16))
            return false;
        const std::size_t needed = l.planar ? l.bits : l.bits * l.samples;
        if (l.bitsPerPixel == 0)
            l.bitsPerPixel = needed;
        if (l.bitsPerPixel < needed || l.bitsPerPixel > 128 || l.bitsPerPixel % l.bits != 0)
            return false;
        const std::size_t row = (l.wide * l.bitsPerPixel + 7) / 8;
        if (l.bytesPerRow == 0)
            l.bytesPerRow = row;
        return l.bytesPerRow >= row && l.bytesPerRow <= kMostBytes / l.high / l.planes();
    }

    std::size_t count(NSInteger number)
    {
        return number > 0 ? static_cast<std::size_t>(number) : 0;
    }

}

bool BitmapState::allocate()
{
    const std::size_t plane = layout.bytesPerPlane();
    memory.reset(static_cast<unsigned char*>(std::calloc(layout.planes(), plane)));
    for (std::size_t i = 0; memory && i < layout.planes(); ++i)
        planes[i] = memory.get() + i * plane;
    return memory != nullptr;
}

void BitmapState::makeBytes()
{
    if (!picture || !allocate())
        return;
    const std::uint32_t* const pixels = picture->pixels();
    for (std::size_t i = 0; i < layout.wide * layout.high; ++i) {
        const std::uint32_t p = pixels[i];
        const std::uint32_t bytes = (p & 0xFF00FF00) | (p >> 16 & 0xFF) | (p & 0xFF) << 16;
        std::memcpy(memory.get() + i * 4, &bytes, 4);
    }
    picture = nullptr;
}

NSUInteger BitmapState::sample(std::size_t x, std::size_t y, std::size_t sample) const
{
    const std::size_t plane = layout.planar ? sample : 0;
    const std::size_t bit
        = x * layout.bitsPerPixel + (layout.planar ? 0 : layout.place(sample) * layout.bits);
    const unsigned char* const byte = planes[plane] + y * layout.bytesPerRow + bit / 8;
    if (layout.bits == 16) {
        std::uint16_t value = 0;
        std::memcpy(&value, byte, sizeof value);
        return value;
    }
    return *byte >> (8 - layout.bits - bit % 8) & layout.greatest();
}

void BitmapState::setSample(std::size_t x, std::size_t y, std::size_t sample, NSUInteger value)
{
    const std::size_t plane = layout.planar ? sample : 0;
    const std::size_t bit
        = x * layout.bitsPerPixel + (layout.planar ? 0 : layout.place(sample) * layout.bits);
    unsigned char* const byte = planes[plane] + y * layout.bytesPerRow + bit / 8;
    const NSUInteger bounded = std::min(value, layout.greatest());
    if (layout.bits == 16) {
        const auto word = static_cast<std::uint16_t>(bounded);
        std::memcpy(byte, &word, sizeof word);
        return;
    }
    const std::size_t shift = 8 - layout.bits - bit % 8;
    *byte = static_cast<unsigned char>((*byte & ~(layout.greatest() << shift)) | bounded << shift);
}

Ref<CGImage> BitmapState::convert() const
{
    const BitmapLayout& l = layout;
    if (!planes[0])
        return nullptr;
    if (l.bits == 8 && !l.planar && l.format == 0 && (!l.alpha || l.bitsPerPixel % 32 == 0)
        && l.bitsPerPixel <= 32) {
        const bool spare = l.bitsPerPixel > l.samples * 8;
        const CGBitmapInfo plain = spare ? kCGImageAlphaNoneSkipLast : kCGImageAlphaNone;
        const std::size_t used = l.bytesPerRow * (l.high - 1) + l.wide * l.bitsPerPixel / 8;
        const Ref<CGImage> image = quartz::imageFromBytes(
            { std::as_bytes(std::span(planes[0], used)), l.wide, l.high, l.bytesPerRow,
                l.bitsPerPixel, l.gray, l.alpha ? kCGImageAlphaPremultipliedLast : plain });
        if (image)
            return image;
    }
    const double greatest = static_cast<double>(l.greatest());
    std::vector<std::uint32_t> pixels(l.wide * l.high);
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        const auto part = [&](std::size_t s) {
            return static_cast<double>(sample(i % l.wide, i / l.wide, s)) / greatest;
        };
        const double alpha = l.alpha ? part(l.samples - 1) : 1;
        const double by = l.alpha && !l.isMultiplied() ? alpha : 1;
        const auto level = [&](std::size_t s) {
            return static_cast<std::uint32_t>(std::lround(std::min(part(s) * by, alpha) * 255));
        };
        pixels[i] = static_cast<std::uint32_t>(std::lround(alpha * 255)) << 24 | level(0) << 16
            | level(l.gray ? 0 : 1) << 8 | level(l.gray ? 0 : 2);
    }
    return quartz::imageTaking(std::move(pixels), l.wide, l.high, l.alpha);
}

BitmapState& BitmapAccess::state(NSBitmapImageRep& rep)
{
    if (!rep.state_)
        rep.state_ = std::make_shared<BitmapState>();
    return *rep.state_;
}

void BitmapAccess::take(NSBitmapImageRep& rep, const Ref<CGImage>& picture, NSSize size)
{
    BitmapState& s = state(rep);
    const bool alpha = tellsAlpha(*picture);
    s.layout = layoutOf(*picture, alpha);
    s.picture = picture;
    const NSSize pixels = NSMakeSize(
        static_cast<CGFloat>(picture->width()), static_cast<CGFloat>(picture->height()));
    ImageRepAccess::describe(rep,
        { NSEqualSizes(size, NSZeroSize) ? pixels : size, static_cast<NSInteger>(picture->width()),
            static_cast<NSInteger>(picture->height()), 8, alpha, picture->isOpaque() },
        NSDeviceRGBColorSpace);
}

Ref<NSBitmapImageRep> BitmapAccess::bitmap(const Ref<CGImage>& picture, NSSize size)
{
    Ref<NSBitmapImageRep> rep = make<NSBitmapImageRep>();
    take(*rep, picture, size);
    return rep;
}

template <> struct NSBitmapImageRep::Methods<struct Making> {

    static Ref<NSBitmapImageRep> initWithFormat(NSBitmapImageRep& self, unsigned char** planes,
        NSInteger wide, NSInteger high, NSInteger bits, NSInteger samples, bool alpha, bool planar,
        NSString* space, NSBitmapFormat format, NSInteger bytesPerRow, NSInteger bitsPerPixel)
    {
        BitmapLayout layout { count(wide), count(high), count(bits), count(samples), alpha, planar,
            false, format, count(bytesPerRow), count(bitsPerPixel) };
        constexpr NSUInteger kKnown
            = NSAlphaFirstBitmapFormat | NSAlphaNonpremultipliedBitmapFormat;
        if ((format & ~kKnown) != 0 || bytesPerRow < 0 || bitsPerPixel < 0
            || !complete(layout, space) || !super<NSBitmapImageRep, "init", Ref<NSObject>>(self))
            return nullptr;
        BitmapState& state = BitmapAccess::state(self);
        state.layout = layout;
        if (planes && planes[0]) {
            for (std::size_t i = 0; i < layout.planes(); ++i) {
                if (!planes[i])
                    return nullptr;
                state.planes[i] = planes[i];
            }
        } else if (!state.allocate())
            return nullptr;
        ImageRepAccess::describe(self,
            { NSMakeSize(static_cast<CGFloat>(wide), static_cast<CGFloat>(high)), wide, high, bits,
                alpha, !alpha },
            space);
        return &self;
    }
    static Ref<NSBitmapImageRep> initWithPlanes(NSBitmapImageRep& self, unsigned char** planes,
        NSInteger wide, NSInteger high, NSInteger bits, NSInteger samples, bool alpha, bool planar,
        NSString* space, NSInteger bytesPerRow, NSInteger bitsPerPixel)
    {
        return initWithFormat(self, planes, wide, high, bits, samples, alpha, planar, space,
            NSBitmapFormat {}, bytesPerRow, bitsPerPixel);
    }
    static Ref<NSBitmapImageRep> initWithCGImage(NSBitmapImageRep& self, class CGImage* picture)
    {
        if (!picture || !super<NSBitmapImageRep, "init", Ref<NSObject>>(self))
            return nullptr;
        BitmapAccess::take(self, picture, NSZeroSize);
        return &self;
    }
    static Ref<NSBitmapImageRep> initWithFocusedViewRect(NSBitmapImageRep& self, NSRect rect)
    {
        const Ref<CGContext> port = currentCGContext();
        const auto shown = Ref<class CGImage>::adopt(CGBitmapContextCreateImage(port.get()));
        if (!shown || NSIsEmptyRect(rect))
            return nullptr;
        NSRect pixels = CGContextConvertRectToDeviceSpace(port.get(), rect);
        pixels.origin.y = static_cast<CGFloat>(shown->height()) - NSMaxY(pixels);
        const auto part
            = Ref<class CGImage>::adopt(CGImageCreateWithImageInRect(shown.get(), pixels));
        if (!part || !super<NSBitmapImageRep, "init", Ref<NSObject>>(self))
            return nullptr;
        BitmapAccess::take(self, part, rect.size);
        return &self;
    }

    static Ref<NSObject> copyWithZone(NSBitmapImageRep& self, void* zone)
    {
        auto copy = cast<NSBitmapImageRep>(
            super<NSBitmapImageRep, "copyWithZone:", Ref<NSObject>>(self, zone));
        const BitmapState& from = BitmapAccess::state(self);
        BitmapState& to = BitmapAccess::state(*copy);
        to.layout = from.layout;
        to.picture = from.picture;
        to.frames = from.frames;
        to.frame = from.frame;
        to.loops = from.loops;
        if (from.properties)
            to.properties = cast<NSMutableDictionary>(from.properties->mutableCopy());
        if (!from.picture && from.planes[0] && to.allocate()) {
            for (std::size_t i = 0; i < from.layout.planes(); ++i)
                std::memcpy(to.planes[i], from.planes[i], from.layout.bytesPerPlane());
        }
        return copy;
    }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithBitmapDataPlanes:pixelsWide:pixelsHigh:bitsPerSample:samplesPerPixel:"
              "hasAlpha:isPlanar:colorSpaceName:bytesPerRow:bitsPerPixel:",
                imp<initWithPlanes> },
            { "initWithBitmapDataPlanes:pixelsWide:pixelsHigh:bitsPerSample:samplesPerPixel:"
              "hasAlpha:isPlanar:colorSpaceName:bitmapFormat:bytesPerRow:bitsPerPixel:",
                imp<initWithFormat> },
            { "initWithCGImage:", imp<initWithCGImage> },
            { "initWithFocusedViewRect:", imp<initWithFocusedViewRect> },
            { "copyWithZone:", imp<copyWithZone> },
        });
    }
};
BRINDLE_RECORD(NSBitmapImageRep, Making)

template <> struct NSBitmapImageRep::Methods<struct Pixels> {

    static BitmapState& state(NSBitmapImageRep& self) { return BitmapAccess::state(self); }

    static unsigned char* bitmapData(NSBitmapImageRep& self)
    {
        state(self).makeBytes();
        return state(self).planes[0];
    }
    static void getPlanes(NSBitmapImageRep& self, unsigned char** planes)
    {
        state(self).makeBytes();
        if (planes)
            std::copy_n(state(self).planes.begin(), 5, planes);
    }
    static NSInteger whole(std::size_t number) { return static_cast<NSInteger>(number); }
    static NSInteger pixelsWide(NSBitmapImageRep& self) { return whole(state(self).layout.wide); }
    static NSInteger pixelsHigh(NSBitmapImageRep& self) { return whole(state(self).layout.high); }
    static NSInteger bitsPerSample(NSBitmapImageRep& self)
    {
        return whole(state(self).layout.bits);
    }
    static NSInteger bytesPerRow(NSBitmapImageRep& self)
    {
        return whole(state(self).layout.bytesPerRow);
    }
    static NSInteger bytesPerPlane(NSBitmapImageRep& self)
    {
        return whole(state(self).layout.bytesPerPlane());
    }
    static NSInteger bitsPerPixel(NSBitmapImageRep& self)
    {
        return whole(state(self).layout.bitsPerPixel);
    }
    static NSInteger samplesPerPixel(NSBitmapImageRep& self)
    {
        return whole(state(self).layout.samples);
    }
    static NSInteger numberOfPlanes(NSBitmapImageRep& self)
    {
        return whole(state(self).layout.planes());
    }
    static bool isPlanar(NSBitmapImageRep& self) { return state(self).layout.planar; }
    static bool hasAlpha(NSBitmapImageRep& self) { return state(self).layout.alpha; }
    static NSBitmapFormat bitmapFormat(NSBitmapImageRep& self)
    {
        return static_cast<NSBitmapFormat>(state(self).layout.format);
    }

    // ---- single pixels

    static bool contains(NSBitmapImageRep& self, NSInteger x, NSInteger y)
    {
        const BitmapLayout& l = state(self).layout;
        return x >= 0 && y >= 0 && static_cast<std::size_t>(x) < l.wide
            && static_cast<std::size_t>(y) < l.high;
    }
    /// Reads a pixel's samples without making bytes of a picture.
    static std::array<NSUInteger, 4> samplesAt(const BitmapState& s, std::size_t x, std::size_t y)
    {
        std::array<NSUInteger, 4> samples {};
        if (s.picture) {
            const std::uint32_t p = s.picture->pixels()[y * s.layout.wide + x];
            return { p >> 16 & 0xFF, p >> 8 & 0xFF, p & 0xFF, p >> 24 };
        }
        for (std::size_t i = 0; i < s.layout.samples; ++i)
            samples[i] = s.sample(x, y, i);
        return samples;
    }
    static Ref<NSColor> colorAt(NSBitmapImageRep& self, NSInteger x, NSInteger y)
    {
        const BitmapState& s = state(self);
        if (!contains(self, x, y) || (!s.picture && !s.planes[0]))
            return nullptr;
        const auto samples = samplesAt(s, static_cast<std::size_t>(x), static_cast<std::size_t>(y));
        const BitmapLayout& l = s.layout;
        const NSUInteger alpha = l.alpha ? samples[l.samples - 1] : l.greatest();
        const auto part = [&](std::size_t i) {
            const NSUInteger whole = l.isMultiplied() ? alpha : l.greatest();
            return whole == 0 ? 0.0 : static_cast<double>(samples[i]) / static_cast<double>(whole);
        };
        const double cover = static_cast<double>(alpha) / static_cast<double>(l.greatest());
        const auto colors = NSColor::cls();
        const bool calibrated = utf8Of(self.colorSpaceName()).starts_with("NSCalibrated");
        if (l.gray)
            return calibrated ? colors.colorWithCalibratedWhite_alpha(part(0), cover)
                              : colors.colorWithDeviceWhite_alpha(part(0), cover);
        return calibrated
            ? colors.colorWithCalibratedRed_green_blue_alpha(part(0), part(1), part(2), cover)
            : colors.colorWithDeviceRed_green_blue_alpha(part(0), part(1), part(2), cover);
    }
    static void setColorAt(NSBitmapImageRep& self, NSColor* color, NSInteger x, NSInteger y)
    {
        const Ref<NSColor> fitting
            = maybe(color)->colorUsingColorSpaceName(self.colorSpaceName().get());
        if (!fitting || !contains(self, x, y))
            return;
        CGFloat parts[4] {};
        const BitmapLayout& l = state(self).layout;
        if (l.gray)
            fitting->getWhite_alpha(&parts[0], &parts[3]);
        else
            fitting->getRed_green_blue_alpha(&parts[0], &parts[1], &parts[2], &parts[3]);
        const double by = l.isMultiplied() ? parts[3] : 1;
        NSUInteger samples[4] {};
        const std::size_t colors = l.gray ? 1 : 3;
        const auto level = [&](double part) {
            return static_cast<NSUInteger>(std::lround(part * static_cast<double>(l.greatest())));
        };
        for (std::size_t i = 0; i < colors; ++i)
            samples[i] = level(parts[i] * by);
        if (l.alpha)
            samples[colors] = level(parts[3]);
        self.setPixel_atX_y(samples, x, y);
    }
    static void getPixel(NSBitmapImageRep& self, NSUInteger* samples, NSInteger x, NSInteger y)
    {
        const BitmapState& s = state(self);
        if (!samples || !contains(self, x, y) || (!s.picture && !s.planes[0]))
            return;
        const auto all = samplesAt(s, static_cast<std::size_t>(x), static_cast<std::size_t>(y));
        std::copy_n(all.begin(), s.layout.samples, samples);
    }
    static void setPixel(NSBitmapImageRep& self, NSUInteger* samples, NSInteger x, NSInteger y)
    {
        BitmapState& s = state(self);
        s.makeBytes();
        if (!samples || !contains(self, x, y) || !s.planes[0])
            return;
        for (std::size_t i = 0; i < s.layout.samples; ++i)
            s.setSample(static_cast<std::size_t>(x), static_cast<std::size_t>(y), i, samples[i]);
    }

    // ---- drawing

    static Ref<class CGImage> image(NSBitmapImageRep& self) { return state(self).image(); }
    static Ref<class CGImage> imageFor(
        NSBitmapImageRep& self, NSRect*, NSGraphicsContext*, NSDictionary*)
    {
        return self.CGImage();
    }
    static bool draw(NSBitmapImageRep& self)
    {
        const Ref<CGContext> port = currentCGContext();
        const Ref<class CGImage> picture = self.CGImage();
        CGContextDrawImage(port.get(), { {}, self.size() }, picture.get());
        return port && picture;
    }

    static void table(Builder& t)
    {
        t.methods({
            { "bitmapData", imp<bitmapData> },
            { "getBitmapDataPlanes:", imp<getPlanes> },
            { "pixelsWide", imp<pixelsWide> },
            { "pixelsHigh", imp<pixelsHigh> },
            { "bitsPerSample", imp<bitsPerSample> },
            { "hasAlpha", imp<hasAlpha> },
            { "bytesPerRow", imp<bytesPerRow> },
            { "bytesPerPlane", imp<bytesPerPlane> },
            { "bitsPerPixel", imp<bitsPerPixel> },
            { "samplesPerPixel", imp<samplesPerPixel> },
            { "numberOfPlanes", imp<numberOfPlanes> },
            { "isPlanar", imp<isPlanar> },
            { "bitmapFormat", imp<bitmapFormat> },
            { "colorAtX:y:", imp<colorAt> },
            { "setColor:atX:y:", imp<setColorAt> },
            { "getPixel:atX:y:", imp<getPixel> },
            { "setPixel:atX:y:", imp<setPixel> },
            { "CGImage", imp<image> },
            { "CGImageForProposedRect:context:hints:", imp<imageFor> },
            { "draw", imp<draw> },
        });
    }
};
BRINDLE_RECORD(NSBitmapImageRep, Pixels)

}
