// SPDX-License-Identifier: Apache-2.0
#include "CIImage.h"

#include "CIColor.h"
#include "CIContext.h"
#include "FilterPixelsPrivate.h"
#include "foundation/NSData.h"
#include "quartz/CGGeometry.h"
#include "runtime/Table.h"

#include <algorithm>

namespace brindle {

using quartz::FilterPixels;

namespace {

    /// Answers whole pixels for a rectangle; nothing when it is empty or too large.
    FilterPixels wholePixels(CGRect rect)
    {
        constexpr double kFarthest = 1 << 30;
        const CGRect r = CGRectIntegral(rect);
        const bool isUsable = std::abs(r.origin.x) < kFarthest && std::abs(r.origin.y) < kFarthest
            && r.size.width > 0 && r.size.height > 0
            && r.size.width * r.size.height <= static_cast<double>(quartz::kMostPixels);
        if (!isUsable)
            return {};
        return { static_cast<std::ptrdiff_t>(r.origin.x), static_cast<std::ptrdiff_t>(r.origin.y),
            static_cast<std::ptrdiff_t>(r.size.width), static_cast<std::ptrdiff_t>(r.size.height),
            {} };
    }

    /// Copies what two rectangles share.
    void copyShared(FilterPixels& to, std::ptrdiff_t left, std::ptrdiff_t bottom,
        std::ptrdiff_t width, std::ptrdiff_t height, const std::uint32_t* words)
    {
        const std::ptrdiff_t fromX = std::max(left, to.left);
        const std::ptrdiff_t endX = std::min(left + width, to.left + to.width);
        const std::ptrdiff_t fromY = std::max(bottom, to.bottom);
        const std::ptrdiff_t endY = std::min(bottom + height, to.bottom + to.height);
        for (std::ptrdiff_t y = fromY; y < endY && fromX < endX; ++y) {
            const std::uint32_t* const row = words + (bottom + height - 1 - y) * width;
            std::copy(row + fromX - left, row + endX - left, to.row(y) + fromX - to.left);
        }
    }

    void clearOutside(FilterPixels& pixels, CGRect extent)
    {
        const CGRect r = CGRectIntegral(extent);
        const CGRect all { { static_cast<double>(pixels.left), static_cast<double>(pixels.bottom) },
            { static_cast<double>(pixels.width), static_cast<double>(pixels.height) } };
        if (CGRectContainsRect(r, all))
            return;
        const CGRect kept = CGRectIntersection(r, all);
        FilterPixels old = pixels;
        std::fill(pixels.words.begin(), pixels.words.end(), 0u);
        if (CGRectIsEmpty(kept))
            return;
        FilterPixels part = wholePixels(kept);
        part.words.resize(static_cast<std::size_t>(part.width * part.height));
        copyShared(part, old.left, old.bottom, old.width, old.height, old.words.data());
        copyShared(pixels, part.left, part.bottom, part.width, part.height, part.words.data());
    }

}

Ref<CIImage> FilterAccess::derived(CIImage* input, CGRect extent, quartz::FilterStep step)
{
    Ref<CIImage> image = make<CIImage>();
    image->input_ = input;
    image->extent_ = extent;
    image->step_ = std::make_shared<const quartz::FilterStep>(std::move(step));
    return image;
}

Ref<CGImage> FilterAccess::render(CIImage& image, CGRect rect)
{
    // From the picture that is wanted back to the one that has pixels.
    std::vector<const CIImage*> steps;
    double reach = 0;
    const CIImage* source = &image;
    for (; source->step_; source = source->input_.get()) {
        steps.push_back(source);
        reach += static_cast<double>(source->step_->reach);
    }
    FilterPixels wanted = wholePixels(rect);
    FilterPixels pixels = wholePixels(CGRectInset(CGRectIntegral(rect), -reach, -reach));
    if (wanted.width == 0 || pixels.width == 0)
        return nullptr;
    pixels.words.resize(static_cast<std::size_t>(pixels.width * pixels.height));
    if (const Ref<CGImage>& picture = source->picture_)
        copyShared(pixels, 0, 0, static_cast<std::ptrdiff_t>(picture->width()),
            static_cast<std::ptrdiff_t>(picture->height()), picture->pixels());
    for (auto step = steps.rbegin(); step != steps.rend(); ++step) {
        (*step)->step_->apply(pixels);
        clearOutside(pixels, (*step)->extent_);
    }
    if (reach > 0) {
        wanted.words.resize(static_cast<std::size_t>(wanted.width * wanted.height));
        copyShared(
            wanted, pixels.left, pixels.bottom, pixels.width, pixels.height, pixels.words.data());
        pixels = std::move(wanted);
    }
    const auto wide = static_cast<std::size_t>(pixels.width);
    const auto high = static_cast<std::size_t>(pixels.height);
    return quartz::imageTaking(std::move(pixels.words), wide, high, true);
}

template <> struct CIImage::Methods<struct All> {

    static Ref<CIImage> initWithCGImage(CIImage& self, class CGImage* picture)
    {
        if (!picture || !super<CIImage, "init", Ref<NSObject>>(self))
            return nullptr;
        self.picture_ = picture;
        self.extent_ = CGRectMake(
            0, 0, static_cast<CGFloat>(picture->width()), static_cast<CGFloat>(picture->height()));
        return &self;
    }
    static Ref<CIImage> initWithData(CIImage& self, NSData* data)
    {
        const quartz::ImageFile file = quartz::decodeImage(std::as_bytes(bytesOf(data)));
        return initWithCGImage(self, file.image.get());
    }
    static Ref<CIImage> imageWithCGImage(Class& self, class CGImage* picture)
    {
        return cast<CIImage>(self.send<"alloc", Ref<NSObject>>())->initWithCGImage(picture);
    }
    static Ref<CIImage> imageWithData(Class& self, NSData* data)
    {
        return cast<CIImage>(self.send<"alloc", Ref<NSObject>>())->initWithData(data);
    }
    static CGRect extent(CIImage& self) { return self.extent_; }
    static Ref<CIImage> cropped(CIImage& self, CGRect rect)
    {
        const CGRect shared = CGRectIntersection(self.extent_, rect);
        return FilterAccess::derived(
            &self, CGRectIsNull(shared) ? CGRectZero : shared, { 0, [](FilterPixels&) {} });
    }
    static Ref<NSObject> copyWithZone(CIImage& self, void*) { return &self; }

    static void table(Builder& t)
    {
        t.conformsTo({ "NSCopying" });
        t.classMethods({
            { "imageWithCGImage:", imp<imageWithCGImage> },
            { "imageWithData:", imp<imageWithData> },
        });
        t.methods({
            { "initWithCGImage:", imp<initWithCGImage> },
            { "initWithData:", imp<initWithData> },
            { "extent", imp<extent> },
            { "imageByCroppingToRect:", imp<cropped> },
            { "copyWithZone:", imp<copyWithZone> },
        });
    }
};
BRINDLE_RECORD(CIImage, All)

template <> struct CIContext::Methods<struct All> {

    static Ref<CIContext> context(Class& self)
    {
        return cast<CIContext>(self.send<"new", Ref<NSObject>>());
    }
    static Ref<CIContext> withOptions(Class& self, NSDictionary*) { return context(self); }
    static Ref<CGImage> create(CIContext&, CIImage* image, CGRect rect)
    {
        return image && image->isKindOfClass(CIImage::cls()) ? FilterAccess::render(*image, rect)
                                                             : nullptr;
    }

    static void table(Builder& t)
    {
        t.classMethods(
            { { "context", imp<context> }, { "contextWithOptions:", imp<withOptions> } });
        t.methods({ { "createCGImage:fromRect:", imp<create> } });
    }
};
BRINDLE_RECORD(CIContext, All)

template <> struct CIColor::Methods<struct All> {

    static Ref<CIColor> withAlpha(
        Class& self, CGFloat red, CGFloat green, CGFloat blue, CGFloat alpha)
    {
        Ref<CIColor> color = cast<CIColor>(self.send<"new", Ref<NSObject>>());
        color->red_ = red;
        color->green_ = green;
        color->blue_ = blue;
        color->alpha_ = alpha;
        return color;
    }
    static Ref<CIColor> opaque(Class& self, CGFloat red, CGFloat green, CGFloat blue)
    {
        return withAlpha(self, red, green, blue, 1);
    }
    static Ref<NSObject> copyWithZone(CIColor& self, void*) { return &self; }

    static void table(Builder& t)
    {
        t.conformsTo({ "NSCopying" });
        t.classMethods({
            { "colorWithRed:green:blue:", imp<opaque> },
            { "colorWithRed:green:blue:alpha:", imp<withAlpha> },
        });
        t.properties({
            property<&CIColor::red_>("red", readonly, nonatomic),
            property<&CIColor::green_>("green", readonly, nonatomic),
            property<&CIColor::blue_>("blue", readonly, nonatomic),
            property<&CIColor::alpha_>("alpha", readonly, nonatomic),
        });
        t.methods({ { "copyWithZone:", imp<copyWithZone> } });
    }
};
BRINDLE_RECORD(CIColor, All)

}
