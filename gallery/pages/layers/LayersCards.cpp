// SPDX-License-Identifier: Apache-2.0
#include "LayersCards.h"

#include <array>
#include <cmath>
#include <numbers>

#include "foundation/NSArray.h"
#include "foundation/NSString.h"
#include "graphics/CALayer+BRExtension.h"
#include "kit/Drawing.h"
#include "kit/Palette.h"
#include "quartz/layers/CAGradientLayer.h"
#include "quartz/layers/CATransaction.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

namespace {

    Ref<CGColor> quartz(double hue, double saturation, double brightness)
    {
        return NSColor::cls()
            .colorWithCalibratedHue_saturation_brightness_alpha(hue, saturation, brightness, 1)
            ->CGColor();
    }

    /// Puts things where they belong without moving them there.
    struct Still {
        Still()
        {
            CATransaction::cls().begin();
            CATransaction::cls().setDisableActions(true);
        }
        ~Still() { CATransaction::cls().commit(); }
        Still(const Still&) = delete;
        Still& operator=(const Still&) = delete;
    };

}

// ---- curves

template <> struct CurvesCard::Methods<struct Running> {

    static constexpr double kSeconds = 1.2;
    static constexpr double kDot = 18;
    static constexpr double kLabel = 110;

    static std::array<NSString*, 5> names()
    {
        return { kCAMediaTimingFunctionLinear, kCAMediaTimingFunctionEaseIn,
            kCAMediaTimingFunctionEaseOut, kCAMediaTimingFunctionEaseInEaseOut,
            kCAMediaTimingFunctionDefault };
    }

    static Ref<NSView> initWithFrame(CurvesCard& self, NSRect frame)
    {
        self.setHeading("Curves of time"_ns);
        self.setCaption("The same way in the same time, in five manners"_ns);
        self.setWantsLayer(true);
        for (std::size_t i = 0; i < names().size(); ++i) {
            Ref<CALayer> dot = CALayer::cls().layer();
            dot->setCornerRadius(kDot / 2);
            dot->setBackgroundColor(quartz(0.55 + 0.08 * static_cast<double>(i), 0.7, 0.85).get());
            dot->setBounds({ { 0, 0 }, { kDot, kDot } });
            self.layer()->addSublayer(dot.get());
            self.dots_.push_back(dot);
        }
        self.chip_ = addChip(&self, "Run"_ns, "r"_ns, sending<"run">(&self));
        return super<CurvesCard, "initWithFrame:", Ref<NSView>>(self, frame);
    }

    static NSRect rowAt(CurvesCard& self, std::size_t row)
    {
        const NSRect body = self.bodyRect();
        const double height
            = (body.size.height - kChipHeight - kCardGap) / static_cast<double>(names().size());
        return NSMakeRect(body.origin.x, body.origin.y + height * static_cast<double>(row),
            body.size.width, height);
    }
    static CGPoint placeOf(CurvesCard& self, std::size_t row)
    {
        const NSRect room = rowAt(self, row);
        const double left = room.origin.x + kLabel + kDot / 2;
        return { self.right_ ? NSMaxX(room) - kDot / 2 : left, NSMidY(room) };
    }
    static void layOut(CurvesCard& self)
    {
        const Still still;
        for (std::size_t i = 0; i < self.dots_.size(); ++i)
            self.dots_[i]->setPosition(placeOf(self, i));
        const NSRect body = self.bodyRect();
        if (self.chip_)
            layOutChips({ self.chip_.get() }, { body.origin.x, NSMaxY(body) - kChipHeight });
    }
    static void setFrameSize(CurvesCard& self, NSSize size)
    {
        super<CurvesCard, "setFrameSize:">(self, size);
        layOut(self);
    }

    static void run(CurvesCard& self)
    {
        self.right_ = !self.right_;
        for (std::size_t i = 0; i < self.dots_.size(); ++i) {
            CATransaction::cls().begin();
            CATransaction::cls().setAnimationDuration(kSeconds);
            CATransaction::cls().setAnimationTimingFunction(
                CAMediaTimingFunction::cls().functionWithName(names()[i]).get());
            self.dots_[i]->setPosition(placeOf(self, i));
            CATransaction::cls().commit();
        }
    }

    static void drawBody(CurvesCard& self, NSRect)
    {
        for (std::size_t i = 0; i < names().size(); ++i) {
            const NSRect room = rowAt(self, i);
            drawText(
                names()[i], { room.origin.x, NSMidY(room) - 8 }, Style::body, palette().text.get());
            fillRounded(
                NSMakeRect(room.origin.x + kLabel, NSMidY(room) - 1, room.size.width - kLabel, 2),
                1, palette().grid.get());
        }
    }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "setFrameSize:", imp<setFrameSize> },
            { "run", imp<run> },
            { "drawBody:", imp<drawBody> },
        });
    }
};
BRINDLE_RECORD(CurvesCard, Running)

// ---- looks

template <> struct LooksCard::Methods<struct Samples> {

    enum Look : std::size_t { graded, framed, masked, turned, shadowed, grouped, count };
    static constexpr std::size_t kColumns = 3;
    static constexpr double kMargin = 14;

    static Ref<CALayer> plain(const Ref<CGColor>& ground, double cornerRadius)
    {
        Ref<CALayer> layer = CALayer::cls().layer();
        layer->setBackgroundColor(ground.get());
        layer->setCornerRadius(cornerRadius);
        return layer;
    }
    static Ref<CALayer> gradient()
    {
        Ref<CAGradientLayer> layer = make<CAGradientLayer>();
        layer->setColors(makeArray({ quartz(0.55, 0.5, 0.95), quartz(0.75, 0.6, 0.7) }).get());
        layer->setCornerRadius(10);
        return layer;
    }
    static Ref<CALayer> sample(std::size_t look)
    {
        Ref<CALayer> layer;
        switch (look) {
        case framed:
            layer = plain(quartz(0.12, 0.35, 1), 22);
            layer->setBorderWidth(4);
            layer->setBorderColor(quartz(0.08, 0.8, 0.8).get());
            break;
        case masked:
            layer = gradient();
            layer->setMask(plain(quartz(0, 0, 0), 0).get());
            break;
        case turned:
            layer = plain(quartz(0.38, 0.55, 0.7), 6);
            break;
        case shadowed:
            layer = plain(quartz(0.1, 0.1, 1), 10);
            layer->setShadowOpacity(0.55F);
            layer->setShadowRadius(5);
            layer->setShadowOffset({ 0, 4 });
            break;
        case grouped: // faded as one: the lower square does not shine through the upper one
            layer = CALayer::cls().layer();
            layer->addSublayer(plain(quartz(0.02, 0.7, 0.9), 8).get());
            layer->addSublayer(plain(quartz(0.58, 0.7, 0.8), 8).get());
            layer->setOpacity(0.5F);
            break;
        default:
            layer = gradient();
        }
        return layer;
    }

    static Ref<NSView> initWithFrame(LooksCard& self, NSRect frame)
    {
        self.setHeading("Looks"_ns);
        self.setCaption("What a layer is without any drawing"_ns);
        self.setWantsLayer(true);
        for (std::size_t look = 0; look < count; ++look) {
            self.samples_.push_back(sample(look));
            self.layer()->addSublayer(self.samples_.back().get());
        }
        self.chip_ = addChip(&self, "Turn"_ns, "t"_ns, sending<"turn">(&self));
        return super<LooksCard, "initWithFrame:", Ref<NSView>>(self, frame);
    }

    static NSRect cellAt(LooksCard& self, std::size_t index)
    {
        const NSRect body = self.bodyRect();
        const double width = body.size.width / kColumns;
        const double height
            = (body.size.height - kChipHeight - kCardGap) / (double { count } / kColumns);
        const std::size_t row = index / kColumns;
        return NSMakeRect(body.origin.x + static_cast<double>(index % kColumns) * width,
            body.origin.y + static_cast<double>(row) * height, width, height);
    }

    static void setFrameSize(LooksCard& self, NSSize size)
    {
        super<LooksCard, "setFrameSize:">(self, size);
        const Still still;
        const NSSize cell = cellAt(self, 0).size;
        const double side
            = std::max(std::floor(std::min(cell.width, cell.height - 18) - 2 * kMargin), 1.0);
        for (std::size_t i = 0; i < count; ++i) {
            const NSRect place = cellAt(self, i);
            self.samples_[i]->setBounds({ { 0, 0 }, { side, side } });
            self.samples_[i]->setPosition({ NSMidX(place), NSMidY(place) - 9 });
        }
        const Ref<CALayer> disc = self.samples_[masked]->mask();
        disc->setFrame({ { 0, 0 }, { side, side } });
        disc->setCornerRadius(side / 2);
        self.samples_[turned]->setBounds({ { 0, 0 }, { side * 0.7, side * 0.7 } });
        double offset = 0;
        const Ref<NSArray> squares = self.samples_[grouped]->sublayers();
        for (CALayer* square : each<CALayer>(squares)) {
            square->setFrame({ { offset, offset }, { side * 0.65, side * 0.65 } });
            offset += side * 0.35;
        }
        const NSRect body = self.bodyRect();
        layOutChips({ self.chip_.get() }, { body.origin.x, NSMaxY(body) - kChipHeight });
    }
    static void turn(LooksCard& self)
    {
        self.angle_ += std::numbers::pi / 4;
        CATransaction::cls().begin();
        CATransaction::cls().setAnimationDuration(0.8);
        self.samples_[turned]->setTransform(CATransform3DMakeRotation(self.angle_, 0, 0, 1));
        CATransaction::cls().commit();
    }
    static void drawBody(LooksCard& self, NSRect)
    {
        NSString* const names[count] = { "gradient"_ns, "border"_ns, "mask"_ns, "transform"_ns,
            "shadow"_ns, "opacity of two"_ns };
        for (std::size_t i = 0; i < count; ++i)
            labelled(names[i], cellAt(self, i));
    }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "setFrameSize:", imp<setFrameSize> },
            { "turn", imp<turn> },
            { "drawBody:", imp<drawBody> },
        });
    }
};
BRINDLE_RECORD(LooksCard, Samples)

// ---- text

template <> struct SmoothTextCard::Methods<struct Texts> {

    static Ref<NSView> initWithFrame(SmoothTextCard& self, NSRect frame)
    {
        self.setHeading("Smooth text"_ns);
        self.setCaption(
            "Each layer takes the size of its text, broken at the width it was given"_ns);
        self.setWantsLayer(true);
        for (int i = 0; i < 3; ++i) {
            Ref<BRSmoothTextLayer> text = BRSmoothTextLayer::cls().layer();
            text->setString("The quick brown fox jumps over the lazy dog."_ns);
            text->setFont("Helvetica"_ns);
            text->setFontSize(15);
            text->setWrapped(true);
            text->setBorderWidth(1);
            self.layer()->addSublayer(text.get());
            self.texts_.push_back(text);
        }
        return super<SmoothTextCard, "initWithFrame:", Ref<NSView>>(self, frame);
    }
    static void setFrameSize(SmoothTextCard& self, NSSize size)
    {
        super<SmoothTextCard, "setFrameSize:">(self, size);
        const Still still;
        const NSRect body = self.bodyRect();
        constexpr double kShares[] { 0.2, 0.3, 0.46 };
        double x = body.origin.x;
        for (std::size_t i = 0; i < self.texts_.size(); ++i) {
            const double width = std::max((body.size.width - 2 * kCardGap) * kShares[i], 1.0);
            self.texts_[i]->setFrame({ { x, body.origin.y }, { width, 10 } });
            self.texts_[i]->sizeInWidth();
            x += width + kCardGap;
        }
    }
    // The appearance may have changed since.
    static void drawBody(SmoothTextCard& self, NSRect)
    {
        const Still still;
        for (const Ref<BRSmoothTextLayer>& text : self.texts_) {
            text->setForegroundColor(palette().text->CGColor().get());
            text->setBorderColor(palette().accent->CGColor().get());
        }
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
BRINDLE_RECORD(SmoothTextCard, Texts)

}
