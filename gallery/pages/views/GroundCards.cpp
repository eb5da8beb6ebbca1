// SPDX-License-Identifier: Apache-2.0
#include <cmath>

#include "ViewCards.h"
#include "appkit/NSImage.h"
#include "kit/Drawing.h"
#include "kit/Palette.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct GroundCard::Methods<struct Grounds> {

    static Ref<NSView> initWithFrame(GroundCard& self, NSRect frame)
    {
        self.setHeading("Grounds"_ns);
        self.setCaption("Blended, in place of what is behind, not drawn"_ns);
        for (Ref<GWBackgroundColorView>* view : { &self.blended_, &self.opaque_, &self.without_ }) {
            *view = make<GWBackgroundColorView>();
            self.addSubview(view->get());
        }
        self.opaque_->setOpaqueBackground(true);
        self.without_->setDrawsBackground(false);
        return super<GroundCard, "initWithFrame:", Ref<NSView>>(self, frame);
    }

    static void setFrameSize(GroundCard& self, NSSize size)
    {
        super<GroundCard, "setFrameSize:">(self, size);
        if (self.without_)
            layOutRow({ self.blended_.get(), self.opaque_.get(), self.without_.get() },
                inset(self.bodyRect(), 16));
    }
    static void drawBody(GroundCard& self, NSRect body)
    {
        constexpr double kStep = 16;
        for (double y = 0; y < body.size.height; y += kStep) {
            for (double x = 0; x < body.size.width; x += kStep) {
                const bool isSoft = (static_cast<int>(x / kStep) + static_cast<int>(y / kStep)) % 2;
                fill(NSMakeRect(body.origin.x + x, body.origin.y + y,
                         std::min(kStep, body.size.width - x),
                         std::min(kStep, body.size.height - y)),
                    isSoft ? palette().soft.get() : palette().grid.get());
            }
        }
        const Ref<NSColor> half = palette().accent->colorWithAlphaComponent(0.55);
        self.blended_->setBackgroundColor(half.get());
        self.opaque_->setBackgroundColor(palette().accent.get());
    }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "setFrameSize:", imp<setFrameSize> },
            { "drawBody:", imp<drawBody> },
        });
    }
};
BRINDLE_RECORD(GroundCard, Grounds)

template <> struct CoverCard::Methods<struct Covers> {

    /// Hills under a sun, 160 by 100 points, drawn as finely as they are shown.
    static Ref<NSImage> landscape()
    {
        return NSImage::cls().imageWithSize_flipped_drawingHandler(
            { 160, 100 }, true, [](NSRect room) {
                const auto shade = [](double red, double green, double blue) {
                    return NSColor::cls().colorWithSRGBRed_green_blue_alpha(red, green, blue, 1);
                };
                fill(room, shade(0.55, 0.76, 0.90).get());
                fillRounded(NSMakeRect(104, 18, 28, 28), 14, shade(0.98, 0.82, 0.36).get());
                fillRounded(NSMakeRect(-30, 52, 130, 130), 65, shade(0.36, 0.60, 0.45).get());
                fillRounded(NSMakeRect(60, 64, 140, 140), 70, shade(0.25, 0.48, 0.40).get());
                return true;
            });
    }
    static Ref<NSView> initWithFrame(CoverCard& self, NSRect frame)
    {
        self.setHeading("Images"_ns);
        self.setCaption("One image covers views of any shape, at three alphas"_ns);
        const Ref<NSImage> image = landscape();
        double alpha = 1;
        for (Ref<VLImageView>& view : self.views_) {
            view = make<VLImageView>();
            view->setImage(image.get());
            view->setImageAlpha(alpha);
            alpha -= 0.3;
            self.addSubview(view.get());
        }
        return super<CoverCard, "initWithFrame:", Ref<NSView>>(self, frame);
    }
    static void setFrameSize(CoverCard& self, NSSize size)
    {
        super<CoverCard, "setFrameSize:">(self, size);
        if (!self.views_.back())
            return;
        const NSRect body = self.bodyRect();
        constexpr double kShares[] = { 0.52, 0.28, 0.2 };
        const double room = body.size.width - 2 * kCardGap;
        double x = body.origin.x;
        for (std::size_t i = 0; i < self.views_.size(); ++i) {
            const double width = std::round(room * kShares[i]);
            self.views_[i]->setFrame(NSMakeRect(x, body.origin.y, width, body.size.height));
            x += width + kCardGap;
        }
    }
    static void drawBody(CoverCard& self, NSRect)
    {
        for (const Ref<VLImageView>& view : self.views_)
            view->setBackgroundColor(palette().soft.get());
    }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "setFrameSize:", imp<setFrameSize> },
            { "drawBody:", imp<drawBody> },
        });
    }
};
BRINDLE_RECORD(CoverCard, Covers)

}
