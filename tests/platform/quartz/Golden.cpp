// SPDX-License-Identifier: Apache-2.0
#include <array>
#include <cmath>
#include <numbers>

#include "quartz/CGGradient.h"
#include "quartz/TextDrawing.h"
#include "support/Golden.h"

using namespace brindle;
using test::expectSheet;
using test::inCell;

namespace {

void addRounded(CGContextRef context, CGRect rect, double radius)
{
    const auto path
        = Ref<CGPath>::adopt(CGPathCreateWithRoundedRect(rect, radius, radius, nullptr));
    CGContextBeginPath(context);
    CGContextAddPath(context, path.get());
}

Ref<CGGradient> threeColors()
{
    return quartz::gradientFromStops(
        { { 0, { 0.9, 0.2, 0.1, 1 } }, { 0.4, { 1, 0.9, 0.3, 1 } }, { 1, { 0.1, 0.3, 0.8, 1 } } });
}

}

TEST(Golden, RoundedRectangles)
{
    expectSheet("rounded-rectangles", 160, 120, [](CGContextRef context) {
        constexpr std::array kRadii { 0.0, 1.0, 2.5, 6.0, 10.0 };
        for (std::size_t i = 0; i < kRadii.size(); ++i) {
            const double y = 6 + 22.5 * static_cast<double>(i);
            CGContextSetRGBFillColor(context, 0.2, 0.4, 0.9, 1);
            CGContextSetRGBStrokeColor(context, 0.1, 0.2, 0.5, 1);
            addRounded(context, CGRectMake(8, y, 60, 20), kRadii[i]);
            CGContextDrawPath(context, kCGPathFillStroke);
            CGContextSetRGBFillColor(context, 0.8, 0.3, 0.2, 0.5);
            addRounded(context, CGRectMake(84.5, y + 0.25, 60, 18.5), kRadii[i]);
            CGContextFillPath(context);
        }
    });
}

TEST(Golden, Shadows)
{
    expectSheet("shadows", 200, 160, [](CGContextRef context) {
        constexpr std::array kBlurs { 0.0, 3.0, 8.0, 13.64 };
        constexpr std::array<CGSize, 3> kOffsets { { { 0, 0 }, { 0, -3 }, { 5, 4 } } };
        for (std::size_t i = 0; i < kBlurs.size(); ++i) {
            for (std::size_t j = 0; j < kOffsets.size(); ++j)
                inCell(context, 10 + 48.0 * static_cast<double>(i),
                    12 + 50.0 * static_cast<double>(j), [&] {
                        CGContextSetShadow(context, kOffsets[j], kBlurs[i]);
                        CGContextSetRGBFillColor(context, 1, 0.95, 0.8, 1);
                        addRounded(context, CGRectMake(4, 4, 26, 26), 5);
                        CGContextFillPath(context);
                    });
        }
    });
}

TEST(Golden, GradientsAtAngles)
{
    expectSheet("gradient-angles", 170, 130, [](CGContextRef context) {
        for (int i = 0; i < 12; ++i) {
            const double angle = i * std::numbers::pi / 6;
            const CGPoint along { std::cos(angle), std::sin(angle) };
            const double reach = 16 * std::abs(along.x) + 16 * std::abs(along.y);
            inCell(context, 22 + 42.0 * (i % 4), 22 + 42.0 * (i / 4), [&] {
                CGContextClipToRect(context, CGRectMake(-16, -16, 32, 32));
                CGContextDrawLinearGradient(context, threeColors().get(),
                    { -along.x * reach, -along.y * reach }, { along.x * reach, along.y * reach },
                    0);
            });
        }
    });
}

TEST(Golden, RadialGradients)
{
    expectSheet("gradient-circles", 140, 50, [](CGContextRef context) {
        constexpr CGGradientDrawingOptions kBoth
            = kCGGradientDrawsBeforeStartLocation | kCGGradientDrawsAfterEndLocation;
        const auto draw = [&](double x, CGPoint from, double start, CGGradientDrawingOptions how) {
            inCell(context, x, 25, [&] {
                CGContextClipToRect(context, CGRectMake(-20, -20, 40, 40));
                CGContextDrawRadialGradient(context, threeColors().get(), from, start, {}, 18, how);
            });
        };
        draw(24, {}, 0, 0);
        draw(70, { 4, 5 }, 4, 0);
        draw(116, { 4, 5 }, 4, kBoth);
    });
}

TEST(Golden, BlendModes)
{
    expectSheet("blend-modes", 204, 144, [](CGContextRef context) {
        for (int mode = 0; mode < 28; ++mode) {
            inCell(context, 4 + 28.5 * (mode % 7), 4 + 35.0 * (mode / 7), [&] {
                CGContextBeginTransparencyLayer(context, nullptr);
                CGContextSetRGBFillColor(context, 0.95, 0.6, 0.2, 1);
                CGContextFillRect(context, CGRectMake(0, 0, 18, 30));
                CGContextSetRGBFillColor(context, 0.2, 0.5, 0.3, 0.6);
                CGContextFillRect(context, CGRectMake(0, 0, 18, 14));
                CGContextSetBlendMode(context, static_cast<CGBlendMode>(mode));
                CGContextSetRGBFillColor(context, 0.3, 0.45, 0.9, 0.8);
                CGContextFillEllipseInRect(context, CGRectMake(6, 3, 20, 24));
                CGContextEndTransparencyLayer(context);
            });
        }
    });
}

TEST(Golden, SmoothAndRoughEdges)
{
    expectSheet("smoothing", 120, 60, [](CGContextRef context) {
        for (const bool smooth : { true, false }) {
            inCell(context, smooth ? 4 : 62, 4, [&] {
                CGContextSetShouldAntialias(context, smooth);
                CGContextSetRGBFillColor(context, 0.2, 0.4, 0.9, 1);
                CGContextFillEllipseInRect(context, CGRectMake(2.3, 2.6, 30, 24));
                CGContextFillRect(context, CGRectMake(36.4, 3.3, 12.5, 20.7));
                CGContextSetLineWidth(context, 1.5);
                CGContextMoveToPoint(context, 2, 34);
                CGContextAddLineToPoint(context, 50, 48);
                CGContextStrokePath(context);
            });
        }
    });
}

TEST(Golden, TextInManyScripts)
{
    expectSheet("scripts", 230, 190, [](CGContextRef context) {
        constexpr std::array<std::u16string_view, 8> kLines { u"Latin: Ångström, fjord, ¿qué?",
            u"Ελληνικά: Καλημέρα", u"Кириллица: Привет, мир", u"العربية: مرحبا بالعالم",
            u"עברית: שלום עולם", u"ไทย: สวัสดีชาวโลก", u"中文：你好，世界",
            u"Emoji: 😀 👍🏽 🏳️‍🌈 🇩🇪 1️⃣ ❤️ ❤" };
        const text::Font font { text::FontFace::named("DejaVuSans"), 13 };
        for (std::size_t i = 0; i < kLines.size(); ++i)
            quartz::drawTextLine(context, text::shapeLine(kLines[i], font),
                { 8, 170 - 22 * static_cast<double>(i) }, { 0.1, 0.1, 0.1, 1 });
    });
}

TEST(Golden, TextWithFontSmoothingOnAndOff)
{
    // Letters are smoothed in grey either way, on any ground: both halves are alike.
    expectSheet("text-smoothing", 240, 150, [](CGContextRef context) {
        for (const bool smooth : { true, false }) {
            CGContextSetShouldSmoothFonts(context, smooth);
            for (const bool isDark : { false, true }) {
                const double x = smooth ? 0 : 120;
                const double y = isDark ? 0 : 75;
                const double ground = isDark ? 0.15 : 1;
                CGContextSetRGBFillColor(context, ground, ground, ground, 1);
                CGContextFillRect(context, CGRectMake(x, y, 120, 75));
                double top = y + 68;
                for (const double size : { 9.0, 12.0, 16.0 }) {
                    const text::Font font { text::FontFace::named("Inter-Regular"), size };
                    top -= size * 1.35;
                    quartz::drawTextLine(context, text::shapeLine(u"Smooth eggs", font),
                        { x + 6, top }, { 1 - ground, 1 - ground, 1 - ground, 1 });
                }
            }
        }
    });
}

TEST(Golden, LinesAndDashes)
{
    expectSheet("lines", 150, 110, [](CGContextRef context) {
        for (int i = 0; i < 3; ++i) {
            inCell(context, 10 + 46.0 * i, 8, [&] {
                CGContextSetLineWidth(context, 7);
                CGContextSetLineCap(context, static_cast<CGLineCap>(i));
                CGContextSetLineJoin(context, static_cast<CGLineJoin>(i));
                const CGPoint points[] = { { 2, 4 }, { 28, 10 }, { 6, 36 } };
                CGContextAddLines(context, points, 3);
                CGContextStrokePath(context);
                CGContextSetLineWidth(context, 3);
                const CGFloat lengths[] = { 7, 4, 1, 4 };
                CGContextSetLineDash(context, 2.5 * i, lengths, 4);
                CGContextAddEllipseInRect(context, CGRectMake(2, 52, 30, 38));
                CGContextStrokePath(context);
            });
        }
    });
}

TEST(Golden, GroupsMasksAndClips)
{
    expectSheet("groups", 150, 60, [](CGContextRef context) {
        const auto discs = [&] {
            CGContextSetRGBFillColor(context, 0.9, 0.3, 0.2, 1);
            CGContextFillEllipseInRect(context, CGRectMake(2, 8, 26, 26));
            CGContextSetRGBFillColor(context, 0.2, 0.5, 0.9, 1);
            CGContextFillEllipseInRect(context, CGRectMake(16, 14, 26, 26));
        };
        inCell(context, 2, 6, [&] {
            CGContextSetAlpha(context, 0.5);
            CGContextSetShadow(context, { 2, -3 }, 5);
            CGContextBeginTransparencyLayer(context, nullptr);
            discs();
            CGContextEndTransparencyLayer(context);
        });
        inCell(context, 52, 6, [&] {
            addRounded(context, CGRectMake(8, 10, 26, 24), 8);
            CGContextClip(context);
            discs();
        });
        inCell(context, 102, 6, [&] {
            std::vector<std::uint32_t> ramp;
            for (std::uint32_t i = 0; i < 32; ++i)
                ramp.push_back(i * 8 << 24);
            const auto mask = quartz::imageFromPixels(ramp.data(), 32, 1, 128);
            CGContextClipToMask(context, CGRectMake(0, 0, 44, 44), mask.get());
            discs();
        });
    });
}
