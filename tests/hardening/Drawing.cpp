// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <random>

#include "appkit/NSBezierPath.h"
#include "appkit/NSColor.h"
#include "appkit/NSGradient.h"
#include "appkit/NSShadow.h"
#include "quartz/CGGradient.h"
#include "quartz/ContextState.h"
#include "support/Figures.h"
#include "support/Focused.h"

// Every rectangle, point, size, radius, width and angle that drawing takes, with numbers that make no sense.

using namespace brindle;

namespace {

class Numbers {
public:
    explicit Numbers(std::uint32_t seed)
        : random_(seed)
    {
    }
    std::size_t below(std::size_t count) { return random_() % count; }
    double any()
    {
        using Limits = std::numeric_limits<double>;
        static constexpr std::array kOdd { 0.0, -0.0, 1.0, -1.0, 0.5, 7.25, 31.0, 64.0, -40.0, 1e-9,
            Limits::denorm_min(), Limits::min(), Limits::max(), -Limits::max(), Limits::infinity(),
            -Limits::infinity(), Limits::quiet_NaN(), 1e9, -1e9, 2147483647.0, -2147483648.0,
            2147483648.0, 4294967296.0, 9007199254740993.0, 1e18, -1e18, 32767.0, 8388608.0,
            -8388608.5, 1e38, 1e300, 1e-300 };
        return kOdd[below(kOdd.size())];
    }
    CGPoint point() { return { any(), any() }; }
    CGSize size() { return { any(), any() }; }
    CGRect rect() { return { point(), size() }; }

private:
    std::mt19937 random_;
};

using Call = void (*)(CGContextRef context, Numbers& n);

Ref<CGGradient> blackToWhite()
{
    return quartz::gradientFromStops({ { 0, { 0, 0, 0, 1 } }, { 1, { 1, 1, 1, 1 } } });
}

Ref<CGImage> smallImage()
{
    static const std::array<std::uint32_t, 16> pixels { 0xFF102030, 0x80402010 };
    return quartz::imageFromPixels(pixels.data(), 4, 4, 16);
}

constexpr std::array<Call, 37> kCalls {
    [](CGContextRef c, Numbers& n) { CGContextTranslateCTM(c, n.any(), n.any()); },
    [](CGContextRef c, Numbers& n) { CGContextScaleCTM(c, n.any(), n.any()); },
    [](CGContextRef c, Numbers& n) { CGContextRotateCTM(c, n.any()); },
    [](CGContextRef c, Numbers& n) { CGContextSetAlpha(c, n.any()); },
    [](CGContextRef c, Numbers& n) {
        CGContextSetRGBFillColor(c, n.any(), n.any(), n.any(), n.any());
    },
    [](CGContextRef c, Numbers& n) { CGContextSetLineWidth(c, n.any()); },
    [](CGContextRef c, Numbers& n) { CGContextSetMiterLimit(c, n.any()); },
    [](CGContextRef c, Numbers& n) {
        const CGFloat lengths[] = { n.any(), n.any() };
        CGContextSetLineDash(c, n.any(), lengths, 2);
    },
    [](CGContextRef c, Numbers& n) {
        CGContextSetBlendMode(c, static_cast<CGBlendMode>(n.below(30)));
    },
    [](CGContextRef c, Numbers& n) { CGContextMoveToPoint(c, n.any(), n.any()); },
    [](CGContextRef c, Numbers& n) { CGContextAddLineToPoint(c, n.any(), n.any()); },
    [](CGContextRef c, Numbers& n) {
        CGContextAddCurveToPoint(c, n.any(), n.any(), n.any(), n.any(), n.any(), n.any());
    },
    [](CGContextRef c, Numbers& n) {
        CGContextAddQuadCurveToPoint(c, n.any(), n.any(), n.any(), n.any());
    },
    [](CGContextRef c, Numbers& n) {
        CGContextAddArc(c, n.any(), n.any(), n.any(), n.any(), n.any(), n.below(2) == 1);
    },
    [](CGContextRef c, Numbers& n) {
        CGContextAddArcToPoint(c, n.any(), n.any(), n.any(), n.any(), n.any());
    },
    [](CGContextRef c, Numbers& n) { CGContextAddRect(c, n.rect()); },
    [](CGContextRef c, Numbers& n) { CGContextAddEllipseInRect(c, n.rect()); },
    [](CGContextRef c, Numbers& n) {
        CGContextDrawPath(c, static_cast<CGPathDrawingMode>(n.below(5)));
    },
    [](CGContextRef c, Numbers& n) { CGContextFillRect(c, n.rect()); },
    [](CGContextRef c, Numbers& n) { CGContextStrokeRectWithWidth(c, n.rect(), n.any()); },
    [](CGContextRef c, Numbers& n) { CGContextFillEllipseInRect(c, n.rect()); },
    [](CGContextRef c, Numbers& n) { CGContextClearRect(c, n.rect()); },
    [](CGContextRef c, Numbers& n) { CGContextDrawImage(c, n.rect(), smallImage().get()); },
    [](CGContextRef c, Numbers& n) { CGContextClipToRect(c, n.rect()); },
    [](CGContextRef c, Numbers& n) { CGContextClipToMask(c, n.rect(), smallImage().get()); },
    [](CGContextRef c, Numbers&) { CGContextClip(c); },
    [](CGContextRef c, Numbers& n) {
        CGContextDrawLinearGradient(c, blackToWhite().get(), n.point(), n.point(),
            static_cast<CGGradientDrawingOptions>(n.below(4)));
    },
    [](CGContextRef c, Numbers& n) {
        CGContextDrawRadialGradient(c, blackToWhite().get(), n.point(), n.any(), n.point(), n.any(),
            static_cast<CGGradientDrawingOptions>(n.below(4)));
    },
    [](CGContextRef c, Numbers& n) {
        CGContextBeginTransparencyLayerWithRect(c, n.rect(), nullptr);
    },
    [](CGContextRef c, Numbers&) { CGContextEndTransparencyLayer(c); },
    [](CGContextRef c, Numbers&) { CGContextSaveGState(c); },
    [](CGContextRef c, Numbers&) { CGContextRestoreGState(c); },
    [](CGContextRef, Numbers& n) { NSRectFillUsingOperation(n.rect(), NSCompositeSourceOver); },
    [](CGContextRef, Numbers& n) { NSFrameRectWithWidth(n.rect(), n.any()); },
    [](CGContextRef, Numbers& n) {
        make<NSGradient>()
            ->initWithStartingColor_endingColor(
                NSColor::cls().redColor().get(), NSColor::cls().blueColor().get())
            ->drawInRect_angle(n.rect(), n.any());
    },
    [](CGContextRef, Numbers& n) {
        const auto path = NSBezierPath::cls().bezierPathWithRoundedRect_xRadius_yRadius(
            n.rect(), n.any(), n.any());
        path->setLineWidth(n.any());
        path->stroke();
        path->fill();
    },
    [](CGContextRef c, Numbers& n) {
        const auto path = Ref<CGPath>::adopt(CGContextCopyPath(c));
        const auto outline = Ref<CGPath>::adopt(CGPathCreateCopyByStrokingPath(
            path.get(), nullptr, n.any(), kCGLineCapRound, kCGLineJoinRound, n.any()));
        const CGFloat lengths[] = { n.any(), n.any() };
        const auto dashes = Ref<CGPath>::adopt(
            CGPathCreateCopyByDashingPath(path.get(), nullptr, n.any(), lengths, 2));
    },
};

void castSomeShadow(Numbers& n)
{
    const auto shadow = cast<NSShadow>(NSShadow::cls().send<"new", Ref<NSObject>>());
    shadow->setShadowOffset(n.size());
    shadow->setShadowBlurRadius(n.any());
    shadow->set();
}

/// Answers whether a context still draws as a new one does.
bool drawsPlainly(CGContextRef context)
{
    CGContextClearRect(context, CGRectMake(0, 0, 64, 64));
    CGContextSetRGBFillColor(context, 1, 0, 0, 1);
    CGContextFillEllipseInRect(context, CGRectMake(8, 8, 48, 48));
    const auto image = Ref<CGImage>::adopt(CGBitmapContextCreateImage(context));
    return test::pixelAt(image.get(), 32, 32) == test::Rgba { 255, 0, 0, 255 }
    && test::pixelAt(image.get(), 2, 2).alpha == 0;
}

}

TEST(HardenedDrawing, NumbersThatMakeNoSenseDoNoHarm)
{
    constexpr int kTogether = 50; // calls that build on each other
    const int batches = test::rounds(100'000) / kTogether;
    for (int batch = 0; batch < batches; ++batch) {
        Numbers numbers(static_cast<std::uint32_t>(batch));
        const test::Focused picture(64, 64);
        {
            const quartz::StateScope scope(picture);
            if (numbers.below(8) == 0)
                castSomeShadow(numbers);
            for (int i = 0; i < kTogether; ++i)
                kCalls[numbers.below(kCalls.size())](picture, numbers);
        }
        ASSERT_TRUE(drawsPlainly(picture)) << batch;
    }
    test::publish({ "calls with numbers that make no sense: contexts that do not draw as before",
        long { batches } * kTogether, 0, "contexts", 0 });
}
