// SPDX-License-Identifier: Apache-2.0
#include <cstring>

#include "appkit/NSBezierPath.h"
#include "appkit/NSColor.h"
#include "appkit/NSGradient.h"
#include "appkit/NSGraphicsContext.h"
#include "appkit/NSShadow.h"
#include "quartz/CGBitmapContext.h"
#include "support/Measure.h"
#include "support/Topics.h"

// The same drawings as those of contexts, by the kit's own calls, beside the calls to the context.

namespace brindle::bench {

namespace {

    constexpr NSRect kRect { { 20, 30 }, { 60, 20 } };

    /// A context that is current while an operation is measured.
    class Canvas {
    public:
        Canvas(int width, int height)
            : port_(quartz::makeContext(width, height))
            , context_(NSGraphicsContext::cls().graphicsContextWithGraphicsPort_flipped(
                  port_.get(), false))
        {
        }
        CGContext* port() const { return port_.get(); }
        void focus() const { NSGraphicsContext::cls().setCurrentContext(context_.get()); }

    private:
        Ref<CGContext> port_;
        Ref<NSGraphicsContext> context_;
    };

    /// Repeats an operation in a canvas of its own.
    template <class Prepare, class F>
    Sample inCanvas(Prepare prepare, F operation, int width = 256, int height = 128)
    {
        const auto canvas = std::make_shared<Canvas>(width, height);
        return [=](std::size_t count) {
            canvas->focus();
            prepare(canvas->port());
            const Stopwatch watch;
            for (std::size_t i = 0; i < count; ++i)
                operation(canvas->port());
            const double elapsed = watch.elapsed();
            NSGraphicsContext::cls().setCurrentContext(nullptr);
            return elapsed;
        };
    }

    void setColors(CGContext* port)
    {
        CGContextSetRGBFillColor(port, 0.2, 0.4, 0.9, 1);
        CGContextSetRGBStrokeColor(port, 0.1, 0.2, 0.5, 1);
    }

    Pair rectangle()
    {
        return { inCanvas(setColors, [](CGContext*) { NSRectFill(kRect); }),
            inCanvas(setColors, [](CGContext* port) { CGContextFillRect(port, kRect); }) };
    }

    Pair rounded(bool shadowed)
    {
        const auto path
            = NSBezierPath::cls().bezierPathWithRoundedRect_xRadius_yRadius(kRect, 2.5, 2.5);
        const auto prepare = [shadowed](CGContext* port) {
            setColors(port);
            const auto shadow = cast<NSShadow>(NSShadow::cls().send<"new", Ref<NSObject>>());
            shadow->setShadowBlurRadius(3);
            if (shadowed)
                shadow->set();
        };
        return { inCanvas(prepare,
                     [path, shadowed](CGContext*) {
                         path->fill();
                         if (!shadowed)
                             path->stroke();
                     }),
            {} };
    }

    Pair gradient()
    {
        const auto colors = make<NSGradient>()->initWithStartingColor_endingColor(
            NSColor::cls().whiteColor().get(), NSColor::cls().blackColor().get());
        return { inCanvas(setColors, [=](CGContext*) { colors->drawInRect_angle(kRect, 90); }),
            {} };
    }

    Pair clear()
    {
        constexpr int kWidth = 1920;
        constexpr int kHeight = 1080;
        const auto pixels = std::make_shared<std::vector<std::uint32_t>>(kWidth * kHeight);
        return { inCanvas(
                     setColors,
                     [](CGContext* port) {
                         CGContextClearRect(port, CGRectMake(0, 0, kWidth, kHeight));
                     },
                     kWidth, kHeight),
            repeated([pixels](std::size_t) {
                std::memset(pixels->data(), 0, pixels->size() * sizeof(std::uint32_t));
                keep(pixels->data());
            }) };
    }

}

void addDrawing(Plan& plan)
{
    plan.time("kit: NSRectFill 60 x 20, beside the context's call", kNoBudget, rectangle);
    plan.time(
        "kit: rounded rectangle, filled and stroked", atMost(3000), [] { return rounded(false); });
    plan.time(
        "kit: rounded rectangle with a shadow, blur 3", atMost(2200), [] { return rounded(true); });
    plan.time("kit: gradient 60 x 20, from top to bottom", kNoBudget, gradient);
    plan.time("clear 1,920 x 1,080 beside memset", kNoBudget, clear);
}

}
