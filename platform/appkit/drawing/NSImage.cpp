// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSImage.h"

#include "NSImagePrivate.h"
#include "foundation/Exceptions.h"
#include "foundation/NSData.h"
#include "foundation/NSURL.h"
#include "runtime/Table.h"

#include <algorithm>

namespace brindle {

namespace {

    struct Variant {
        const char* ending;
        double scale;
    };
    constexpr Variant kVariants[] = { { "@2x", 2 }, { "@3x", 3 } };

    /// Parts a path before the extension of its last component.
    std::pair<std::string, std::string> parted(const std::string& path)
    {
        const std::size_t dot = path.rfind('.');
        const std::size_t slash = path.rfind('/');
        const bool has = dot != std::string::npos && (slash == std::string::npos || dot > slash);
        return has ? std::pair(path.substr(0, dot), path.substr(dot)) : std::pair(path, "");
    }

    NSSize pixelsOver(NSImageRep& rep, double scale)
    {
        return NSMakeSize(static_cast<CGFloat>(rep.pixelsWide()) / scale,
            static_cast<CGFloat>(rep.pixelsHigh()) / scale);
    }

}

std::vector<Ref<NSImageRep>> ImageAccess::readVariants(const std::string& path)
{
    std::vector<Ref<NSImageRep>> reps;
    for (Ref<NSBitmapImageRep>& rep : BitmapAccess::readFile(path))
        reps.push_back(std::move(rep));
    if (reps.empty())
        return reps;
    const auto [stem, extension] = parted(path);
    for (const auto& [ending, scale] : kVariants) {
        if (stem.ends_with(ending)) {
            for (const Ref<NSImageRep>& rep : reps)
                rep->setSize(pixelsOver(*rep, scale));
            return reps;
        }
    }
    const NSSize size = reps.front()->size();
    for (const Variant& variant : kVariants) {
        for (Ref<NSBitmapImageRep>& rep :
            BitmapAccess::readFile(stem + variant.ending + extension)) {
            rep->setSize(size);
            reps.push_back(std::move(rep));
        }
    }
    return reps;
}

std::vector<Ref<NSImageRep>>& ImageAccess::reps(NSImage& image)
{
    if (const Ref<NSString> file = std::exchange(image.file_, nullptr))
        image.reps_ = readVariants(utf8Of(file));
    return image.reps_;
}

void ImageAccess::setReps(NSImage& image, std::vector<Ref<NSImageRep>> reps, NSSize size)
{
    image.file_ = nullptr;
    image.reps_ = std::move(reps);
    image.size_ = size;
}

Ref<NSImageRep> ImageAccess::best(NSImage& image, NSSize points, DeviceScale scale)
{
    constexpr double kNearlyEnough = 1.01; // a hundredth less is not worth another picture
    const double wide = points.width * scale.across;
    const double high = points.height * scale.down;
    Ref<NSImageRep> best;
    double bestPixels = 0;
    bool bestSuffices = false;
    for (const Ref<NSImageRep>& rep : reps(image)) {
        const auto w = static_cast<double>(rep->pixelsWide());
        const auto h = static_cast<double>(rep->pixelsHigh());
        const bool matches = w <= 0 || h <= 0;
        const double pixels = matches ? wide * high : w * h;
        const bool suffices = matches || (w * kNearlyEnough >= wide && h * kNearlyEnough >= high);
        const bool better = suffices == bestSuffices
            ? (suffices ? pixels < bestPixels : pixels > bestPixels)
            : suffices;
        if (!best || better) {
            best = rep;
            bestPixels = pixels;
            bestSuffices = suffices;
        }
    }
    return best;
}

std::vector<Ref<NSImageRep>> ImageAccess::bitmaps(NSImage& image)
{
    std::vector<Ref<NSImageRep>> bitmaps;
    const std::vector<Ref<NSImageRep>> present = reps(image); // drawing may change it
    for (const Ref<NSImageRep>& rep : present) {
        const bool isBitmap = rep->isKindOfClass(NSBitmapImageRep::cls());
        const Ref<CGImage> drawn = isBitmap
            ? nullptr
            : rep->CGImageForProposedRect_context_hints(nullptr, nullptr, nullptr);
        if (drawn)
            bitmaps.push_back(BitmapAccess::bitmap(drawn, rep->size()));
        else if (isBitmap)
            bitmaps.push_back(rep);
    }
    return bitmaps;
}

template <> struct NSImage::Methods<struct Making> {

    static Ref<NSImage> started(NSImage& self)
    {
        return super<NSImage, "init", Ref<NSObject>>(self) ? Ref<NSImage>(&self) : nullptr;
    }
    static Ref<NSImage> initWithSize(NSImage& self, NSSize size)
    {
        self.size_ = size;
        return started(self);
    }
    static Ref<NSImage> with(NSImage& self, std::vector<Ref<NSImageRep>> reps)
    {
        if (reps.empty())
            return nullptr;
        self.size_ = reps.front()->size();
        self.reps_ = std::move(reps);
        return started(self);
    }
    static Ref<NSImage> initWithContentsOfFile(NSImage& self, NSString* path)
    {
        return with(self, ImageAccess::readVariants(utf8Of(path)));
    }
    static Ref<NSImage> initWithContentsOfURL(NSImage& self, NSURL* url)
    {
        const bool isFile = maybe(url)->isFileURL();
        return isFile ? self.initWithContentsOfFile(url->path().get()) : nullptr;
    }
    static Ref<NSImage> initByReferencingFile(NSImage& self, NSString* path)
    {
        self.file_ = cast<NSString>(maybe(path)->copy());
        return started(self);
    }
    static Ref<NSImage> initByReferencingURL(NSImage& self, NSURL* url)
    {
        return self.initByReferencingFile(maybe(url)->isFileURL() ? url->path().get() : nullptr);
    }
    static Ref<NSImage> initWithData(NSImage& self, NSData* data)
    {
        std::vector<Ref<NSImageRep>> reps;
        for (Ref<NSBitmapImageRep>& rep : BitmapAccess::read(std::as_bytes(bytesOf(data))))
            reps.push_back(std::move(rep));
        return with(self, std::move(reps));
    }
    static Ref<NSImage> initWithCGImage(NSImage& self, CGImage* picture, NSSize size)
    {
        return picture ? with(self, { BitmapAccess::bitmap(picture, size) }) : nullptr;
    }
    static Ref<NSImage> withHandler(
        Class& self, NSSize size, bool flipped, Closure<bool(NSRect)>* handler)
    {
        const Ref<NSImage> image
            = cast<NSImage>(self.send<"alloc", Ref<NSObject>>())->initWithSize(size);
        if (handler)
            image->addRepresentation(alloc<NSCustomImageRep>()
                                         ->initWithSize_flipped_drawingHandler(
                                             size, flipped, NSCustomImageRep::Handler(handler))
                                         .get());
        return image;
    }

    static Ref<NSObject> copyWithZone(NSImage& self, void*)
    {
        Ref<NSImage> copy = cast<NSImage>(self.classObject()->send<"new", Ref<NSObject>>());
        for (const Ref<NSImageRep>& rep : ImageAccess::reps(self))
            copy->reps_.push_back(cast<NSImageRep>(rep->copy()));
        copy->size_ = self.size_;
        copy->accessibilityDescription_ = self.accessibilityDescription_;
        copy->capInsets_ = self.capInsets_;
        copy->resizingMode_ = self.resizingMode_;
        copy->cacheMode_ = self.cacheMode_;
        copy->alignmentRect_ = self.alignmentRect_;
        copy->hasAlignmentRect_ = self.hasAlignmentRect_;
        copy->template_ = self.template_;
        return copy;
    }

    static void table(Builder& t)
    {
        t.conformsTo({ "NSCopying" });
        t.classMethods({ { "imageWithSize:flipped:drawingHandler:", imp<withHandler> } });
        t.methods({
            { "initWithSize:", imp<initWithSize> },
            { "initWithContentsOfFile:", imp<initWithContentsOfFile> },
            { "initWithContentsOfURL:", imp<initWithContentsOfURL> },
            { "initByReferencingFile:", imp<initByReferencingFile> },
            { "initByReferencingURL:", imp<initByReferencingURL> },
            { "initWithData:", imp<initWithData> },
            { "initWithCGImage:size:", imp<initWithCGImage> },
            { "copyWithZone:", imp<copyWithZone> },
        });
    }
};
BRINDLE_RECORD(NSImage, Making)

template <> struct NSImage::Methods<struct Facts> {

    static NSSize size(NSImage& self)
    {
        if (!NSEqualSizes(self.size_, NSZeroSize))
            return self.size_;
        const auto& reps = ImageAccess::reps(self);
        return reps.empty() ? NSSize {} : reps.front()->size();
    }
    static void setSize(NSImage& self, NSSize size) { self.size_ = size; }
    static bool isValid(NSImage& self)
    {
        const bool hasSize = self.size_.width > 0 && self.size_.height > 0;
        return !ImageAccess::reps(self).empty() || hasSize;
    }
    static NSRect alignmentRect(NSImage& self)
    {
        return self.hasAlignmentRect_ ? self.alignmentRect_ : NSRect { {}, self.size() };
    }
    static void setAlignmentRect(NSImage& self, NSRect rect)
    {
        self.alignmentRect_ = rect;
        self.hasAlignmentRect_ = true;
    }

    // ---- representations

    static Ref<NSArray> representations(NSImage& self) { return arrayOf(ImageAccess::reps(self)); }
    static void add(NSImage& self, NSImageRep* rep)
    {
        if (!rep)
            return;
        if (!rep->isKindOfClass(NSImageRep::cls()))
            raise("NSInvalidArgumentException",
                "*** -[NSImage addRepresentation:]: the object is no image representation");
        ImageAccess::reps(self).push_back(rep);
    }
    static void addAll(NSImage& self, NSArray* reps)
    {
        for (NSObject* rep : each(Ref<NSArray>(reps)))
            self.addRepresentation(static_cast<NSImageRep*>(rep));
    }
    static void remove(NSImage& self, NSImageRep* rep)
    {
        std::erase_if(ImageAccess::reps(self), [rep](const auto& kept) { return kept == rep; });
    }
    static DeviceScale scaleFor(NSGraphicsContext* context)
    {
        const Ref<NSGraphicsContext> used
            = context ? context : NSGraphicsContext::cls().currentContext();
        return DeviceScale::of(maybe(used)->CGContext());
    }
    static Ref<NSImageRep> bestFor(
        NSImage& self, NSRect rect, NSGraphicsContext* context, NSDictionary*)
    {
        return ImageAccess::best(self, rect.size, scaleFor(context));
    }
    static Ref<CGImage> picture(
        NSImage& self, NSRect* proposed, NSGraphicsContext* context, NSDictionary* hints)
    {
        NSRect rect = proposed ? *proposed : NSRect { {}, self.size() };
        const DeviceScale scale = DeviceScale::of(maybe(context)->CGContext());
        const Ref<NSImageRep> rep = ImageAccess::best(self, rect.size, scale);
        return maybe(rep)->CGImageForProposedRect_context_hints(&rect, context, hints);
    }
    static Ref<NSData> tiff(NSImage& self)
    {
        return NSBitmapImageRep::cls().TIFFRepresentationOfImageRepsInArray(
            arrayOf(ImageAccess::bitmaps(self)).get());
    }
    static void recache(NSImage&) { }

    static void table(Builder& t)
    {
        t.properties({
            computed<NSSize>("size", nonatomic),
            property<&NSImage::template_>("template", nonatomic, getter("isTemplate")),
            property<&NSImage::capInsets_>("capInsets", nonatomic),
            property<&NSImage::resizingMode_>("resizingMode", nonatomic),
            property<&NSImage::cacheMode_>("cacheMode", nonatomic),
            property<&NSImage::accessibilityDescription_>(
                "accessibilityDescription", copied, nonatomic),
        });
        t.methods({
            { "size", imp<size> },
            { "setSize:", imp<setSize> },
            { "isValid", imp<isValid> },
            { "alignmentRect", imp<alignmentRect> },
            { "setAlignmentRect:", imp<setAlignmentRect> },
            { "representations", imp<representations> },
            { "addRepresentation:", imp<add> },
            { "addRepresentations:", imp<addAll> },
            { "removeRepresentation:", imp<remove> },
            { "bestRepresentationForRect:context:hints:", imp<bestFor> },
            { "CGImageForProposedRect:context:hints:", imp<picture> },
            { "TIFFRepresentation", imp<tiff> },
            { "recache", imp<recache> },
        });
    }
};
BRINDLE_RECORD(NSImage, Facts)

}
