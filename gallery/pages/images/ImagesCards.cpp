// SPDX-License-Identifier: Apache-2.0
#include "ImagesCards.h"

#include <array>
#include <cmath>

#include "Pictures.h"
#include "appkit/NSBezierPath.h"
#include "foundation/NSString.h"
#include "graphics/NSColor+DKAdditions.h"
#include "graphics/NSImage+AverageColor.h"
#include "graphics/NSImage+BRExtensions.h"
#include "graphics/NSImage+ContentMode.h"
#include "graphics/NSImage+InvertImage.h"
#include "graphics/NSImage+TintImage.h"
#include "kit/Drawing.h"
#include "kit/Palette.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

namespace {

    /// Answers the middle of a rectangle in a size, on whole points.
    NSRect centered(NSSize size, NSRect room)
    {
        return NSMakeRect(std::floor(NSMidX(room) - size.width / 2),
            std::floor(NSMidY(room) - size.height / 2), size.width, size.height);
    }

}

// ---- content modes

template <> struct ContentModesCard::Methods<struct Modes> {

    static constexpr int kColumns = 7;
    static constexpr NSSize kFrame { 60, 52 };
    static constexpr NSSize kLarger { 94, 66 };
    static constexpr NSSize kSmaller { 36, 25 };
    static constexpr double kRadius = 14;

    static Ref<NSView> initWithFrame(ContentModesCard& self, NSRect frame)
    {
        self.setHeading("Content modes"_ns);
        self.setCaption("How a picture lies in a frame; two of them reach over its edge"_ns);
        self.larger_ = addChip(&self, "Larger"_ns, "l"_ns, sending<"showLarger">(&self));
        self.smaller_ = addChip(&self, "Smaller"_ns, "s"_ns, sending<"showSmaller">(&self));
        self.round_ = addChip(&self, "Round"_ns, "r"_ns, sending<"roundCorners">(&self));
        self.showLarger();
        return super<ContentModesCard, "initWithFrame:", Ref<NSView>>(self, frame);
    }

    static void show(ContentModesCard& self, NSSize size)
    {
        self.image_ = landscape(size, Stand::forFlippedViews);
        const bool larger = size.width > kFrame.width;
        self.larger_->setOn(larger);
        self.smaller_->setOn(!larger);
        self.setNeedsDisplay(true);
    }
    static void showLarger(ContentModesCard& self) { show(self, kLarger); }
    static void showSmaller(ContentModesCard& self) { show(self, kSmaller); }
    static void roundCorners(ContentModesCard& self)
    {
        self.round_->setOn(!self.round_->isOn());
        self.setNeedsDisplay(true);
    }

    static void setFrameSize(ContentModesCard& self, NSSize size)
    {
        super<ContentModesCard, "setFrameSize:">(self, size);
        const NSRect body = self.bodyRect();
        layOutChips({ self.larger_.get(), self.smaller_.get(), self.round_.get() },
            { body.origin.x, NSMaxY(body) - kChipHeight });
    }

    static void drawBody(ContentModesCard& self, NSRect body)
    {
        static NSString* const names[] = { "scale to fill"_ns, "aspect fit"_ns, "aspect fill"_ns,
            "redraw"_ns, "centre"_ns, "top"_ns, "bottom"_ns, "left"_ns, "right"_ns, "top left"_ns,
            "top right"_ns, "bottom left"_ns, "bottom right"_ns };
        const double width = body.size.width / kColumns;
        const double height = (body.size.height - kChipHeight) / 2;
        int mode = 0;
        for (NSString* name : names) {
            const int row = mode / kColumns;
            const NSRect cell = NSMakeRect(body.origin.x + width * (mode % kColumns),
                body.origin.y + height * row, width, height - kCardGap / 2);
            const NSRect frame = centered(kFrame, labelled(name, cell));
            const double radius = self.round_->isOn() ? kRadius : 0;
            fillRounded(frame, radius, palette().soft.get());
            draw(self, frame, mode++);
            strokeRounded(inset(frame, -1), radius + 1, palette().accent.get());
        }
    }
    static void draw(ContentModesCard& self, NSRect frame, NSInteger mode)
    {
        if (self.round_->isOn())
            drawInRect_radius_contentMode(self.image_, frame, kRadius, mode);
        else
            drawInRect_contentMode(self.image_, frame, mode);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "setFrameSize:", imp<setFrameSize> },
            { "showLarger", imp<showLarger> },
            { "showSmaller", imp<showSmaller> },
            { "roundCorners", imp<roundCorners> },
            { "drawBody:", imp<drawBody> },
        });
    }
};
BRINDLE_RECORD(ContentModesCard, Modes)

// ---- tints

template <> struct TintedImagesCard::Methods<struct Tints> {

    struct Sample {
        NSString* name;
        Ref<NSImage> image;
    };

    static constexpr NSSize kLandscape { 74, 52 };
    static constexpr NSSize kBalloon { 43, 54 };

    static std::array<Sample, 5> samples(Ref<NSImage> (*picture)(NSSize, Stand), NSSize size)
    {
        const Ref<NSImage> image = picture(size, Stand::upright);
        const Ref<NSColor> accent = palette().accent;
        const NSSize half { size.width / 2, size.height / 2 };
        return { Sample { "as it is"_ns, image }, Sample { "inverted"_ns, invertedImage(image) },
            Sample { "half tinted"_ns,
                imageTintedWithColor(image, accent->colorWithAlphaComponent(0.5).get()) },
            Sample { "tinted"_ns, imageTintedWithColor(image, accent.get()) },
            // Resizing changes the picture that it is sent to.
            Sample { "resized"_ns, resizeImageToNewSize(picture(size, Stand::upright), half) } };
    }

    static void drawRow(const std::array<Sample, 5>& samples, NSRect row)
    {
        const double width = row.size.width / static_cast<double>(samples.size());
        for (const Sample& sample : samples) {
            row.size.width = width;
            const NSRect room = labelled(sample.name, row);
            sample.image->drawInRect(centered(sample.image->size(), room));
            row.origin.x += width;
        }
    }

    static void drawBody(TintedImagesCard&, NSRect body)
    {
        NSRect row = body;
        row.size.height = body.size.height / 2;
        drawRow(samples(landscape, kLandscape), row);
        row.origin.y += row.size.height;
        drawRow(samples(balloon, kBalloon), row);
    }

    static void table(Builder& t) { t.methods({ { "drawBody:", imp<drawBody> } }); }
};
BRINDLE_RECORD(TintedImagesCard, Tints)

// ---- averages

template <> struct AverageColorsCard::Methods<struct Averages> {

    static constexpr double kGap = 10;

    static Ref<NSView> initWithFrame(AverageColorsCard& self, NSRect frame)
    {
        const Ref<NSImage> hills = landscape({ 74, 52 });
        const Ref<NSImage> inverted = invertedImage(hills);
        const Ref<NSImage> balloon = gallery::balloon({ 43, 54 });
        for (const Ref<NSImage>& image : { hills, inverted, balloon })
            self.samples_.push_back({ image, averageColor(image) });
        return super<AverageColorsCard, "initWithFrame:", Ref<NSView>>(self, frame);
    }

    static void drawBody(AverageColorsCard& self, NSRect body)
    {
        const double height = body.size.height / static_cast<double>(self.samples_.size());
        NSRect row = body;
        row.size.height = height - kGap;
        for (const Sample& sample : self.samples_) {
            drawSample(sample, row);
            row.origin.y += height;
        }
    }

    static void drawSample(const Sample& sample, NSRect row)
    {
        NSRect left = row;
        left.size.width = std::round(row.size.width * 0.4);
        const NSSize full = sample.image->size();
        const double scale = row.size.height / full.height;
        sample.image->drawInRect(centered({ full.width * scale, row.size.height }, left));
        const NSRect swatch
            = NSMakeRect(NSMaxX(left) + kGap, row.origin.y, row.size.height, row.size.height);
        fillRounded(swatch, 6, sample.average.get());
        strokeRounded(swatch, 6, palette().border.get());
        const Ref<NSColor> opaque = sample.average->colorWithAlphaComponent(1);
        const NSPoint text { NSMaxX(swatch) + kGap, NSMidY(row) - 16 };
        drawText(hexString(opaque).get(), text, Style::code, palette().text.get());
        const double percent = sample.average->alphaComponent() * 100;
        drawText(NSString::cls().stringWithFormat("%.0f %% opaque"_ns, percent).get(),
            { text.x, text.y + 16 }, Style::caption, palette().quietText.get());
    }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "drawBody:", imp<drawBody> },
        });
    }
};
BRINDLE_RECORD(AverageColorsCard, Averages)

}
