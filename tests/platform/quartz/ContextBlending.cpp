// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>

#include "support/Pixels.h"

// The formulas are those of "Compositing and Blending Level 1" (W3C, 2015), the operators those of T. Porter and T. Duff,
// "Compositing Digital Images" (1984).

using namespace brindle;
using test::isNear;
using test::Picture;
using test::Rgba;

namespace {

using Part = double;
using Color = std::array<Part, 3>;

/// A colour with its alpha, not multiplied.
struct Paint {
    Color color;
    Part alpha;
};

using Mix = std::function<Color(const Color& below, const Color& above)>;

template <class F> Mix each(F&& formula)
{
    return [=](const Color& b, const Color& s) {
        return Color { formula(b[0], s[0]), formula(b[1], s[1]), formula(b[2], s[2]) };
    };
}

Part hardLight(Part b, Part s) { return s <= 0.5 ? b * 2 * s : b + (2 * s - 1) - b * (2 * s - 1); }
Part dodge(Part b, Part s) { return b == 0 ? 0 : s == 1 ? 1 : std::min(1.0, b / (1 - s)); }
Part burn(Part b, Part s) { return b == 1 ? 1 : s == 0 ? 0 : 1 - std::min(1.0, (1 - b) / s); }
Part softLight(Part b, Part s)
{
    if (s <= 0.5)
        return b - (1 - 2 * s) * b * (1 - b);
    const Part d = b <= 0.25 ? ((16 * b - 12) * b + 4) * b : std::sqrt(b);
    return b + (2 * s - 1) * (d - b);
}

Part lum(const Color& c) { return 0.3 * c[0] + 0.59 * c[1] + 0.11 * c[2]; }
Part sat(const Color& c) { return std::ranges::max(c) - std::ranges::min(c); }
Color withLum(Color c, Part wanted)
{
    const Part shift = wanted - lum(c);
    for (Part& part : c)
        part += shift;
    const Part low = std::ranges::min(c);
    const Part high = std::ranges::max(c);
    for (Part& part : c) {
        if (low < 0)
            part = wanted + (part - wanted) * wanted / (wanted - low);
        if (high > 1)
            part = wanted + (part - wanted) * (1 - wanted) / (high - wanted);
    }
    return c;
}
Color withSat(const Color& c, Part wanted)
{
    const Part low = std::ranges::min(c);
    const Part range = sat(c);
    Color result {};
    for (std::size_t i = 0; i < 3 && range > 0; ++i)
        result[i] = (c[i] - low) * wanted / range;
    return result;
}

/// Answers the pixel that a mode makes of two paints.
Rgba blended(const Mix& mix, const Paint& below, const Paint& above)
{
    const Color mixed = mix(below.color, above.color);
    const auto part = [&](std::size_t i) {
        return above.alpha * (1 - below.alpha) * above.color[i]
            + above.alpha * below.alpha * mixed[i]
            + (1 - above.alpha) * below.alpha * below.color[i];
    };
    const auto byte = [](Part value) { return static_cast<int>(std::lround(value * 255)); };
    return { byte(part(0)), byte(part(1)), byte(part(2)),
        byte(above.alpha + below.alpha - above.alpha * below.alpha) };
}

/// Answers the pixel of Porter and Duff's factors.
Rgba composed(Part fromAbove, Part fromBelow, const Paint& below, const Paint& above)
{
    const auto part = [&](std::size_t i) {
        return fromAbove * above.alpha * above.color[i] + fromBelow * below.alpha * below.color[i];
    };
    const auto byte
        = [](Part value) { return static_cast<int>(std::lround(std::min(value, 1.0) * 255)); };
    return { byte(part(0)), byte(part(1)), byte(part(2)),
        byte(fromAbove * above.alpha + fromBelow * below.alpha) };
}

const std::array<Paint, 7> kPaints { { { { 1, 0.2, 0 }, 1 }, { { 0.2, 0.4, 0.6 }, 1 },
    { { 0.8, 0.8, 0.1 }, 0.6 }, { { 0, 0, 0 }, 0.5 }, { { 1, 1, 1 }, 1 },
    { { 0.1, 0.9, 0.5 }, 0.3 }, { { 0, 0, 0 }, 0 } } };

Rgba painted(CGBlendMode mode, const Paint& below, const Paint& above, bool asPath)
{
    const Picture picture(8, 8);
    const auto set = [&](const Paint& paint) {
        CGContextSetRGBFillColor(
            picture, paint.color[0], paint.color[1], paint.color[2], paint.alpha);
    };
    set(below);
    CGContextFillRect(picture, CGRectMake(0, 0, 8, 8));
    set(above);
    CGContextSetBlendMode(picture, mode);
    if (asPath)
        CGContextFillEllipseInRect(picture, CGRectMake(-10, -10, 28, 28));
    else
        CGContextFillRect(picture, CGRectMake(0, 0, 8, 8));
    return picture.at(4, 4);
}

template <class Expected> void expectMode(CGBlendMode mode, Expected&& expected)
{
    for (const Paint& below : kPaints) {
        for (const Paint& above : kPaints) {
            for (const bool asPath : { false, true })
                EXPECT_PRED_FORMAT3(
                    isNear, painted(mode, below, above, asPath), expected(below, above), 3)
                    << mode << " " << &below - kPaints.data() << " " << &above - kPaints.data();
        }
    }
}

void expectMix(CGBlendMode mode, const Mix& mix)
{
    expectMode(mode, [&](const Paint& b, const Paint& s) { return blended(mix, b, s); });
}

/// - above, below: what counts of each, from the two alphas.
void expectFactors(CGBlendMode mode, Part (*above)(Part b, Part s), Part (*below)(Part b, Part s))
{
    expectMode(mode, [&](const Paint& b, const Paint& s) {
        return composed(above(b.alpha, s.alpha), below(b.alpha, s.alpha), b, s);
    });
}

}

TEST(ContextBlending, SeparableModesFollowTheirFormulas)
{
    expectMix(kCGBlendModeNormal, each([](Part, Part s) { return s; }));
    expectMix(kCGBlendModeMultiply, each([](Part b, Part s) { return b * s; }));
    expectMix(kCGBlendModeScreen, each([](Part b, Part s) { return b + s - b * s; }));
    expectMix(kCGBlendModeOverlay, each([](Part b, Part s) { return hardLight(s, b); }));
    expectMix(kCGBlendModeDarken, each([](Part b, Part s) { return std::min(b, s); }));
    expectMix(kCGBlendModeLighten, each([](Part b, Part s) { return std::max(b, s); }));
    expectMix(kCGBlendModeColorDodge, each(dodge));
    expectMix(kCGBlendModeColorBurn, each(burn));
    expectMix(kCGBlendModeSoftLight, each(softLight));
    expectMix(kCGBlendModeHardLight, each(hardLight));
    expectMix(kCGBlendModeDifference, each([](Part b, Part s) { return std::abs(b - s); }));
    expectMix(kCGBlendModeExclusion, each([](Part b, Part s) { return b + s - 2 * b * s; }));
}

TEST(ContextBlending, ModesOfHueAndLightFollowTheirFormulas)
{
    expectMix(kCGBlendModeHue,
        [](const Color& b, const Color& s) { return withLum(withSat(s, sat(b)), lum(b)); });
    expectMix(kCGBlendModeSaturation,
        [](const Color& b, const Color& s) { return withLum(withSat(b, sat(s)), lum(b)); });
    expectMix(kCGBlendModeColor, [](const Color& b, const Color& s) { return withLum(s, lum(b)); });
    expectMix(
        kCGBlendModeLuminosity, [](const Color& b, const Color& s) { return withLum(b, lum(s)); });
}

TEST(ContextBlending, OperatorsCountByTheirAlphas)
{
    const auto one = [](Part, Part) { return 1.0; };
    const auto none = [](Part, Part) { return 0.0; };
    const auto ofBelow = [](Part b, Part) { return b; };
    const auto ofAbove = [](Part, Part s) { return s; };
    const auto outsideBelow = [](Part b, Part) { return 1 - b; };
    const auto outsideAbove = [](Part, Part s) { return 1 - s; };
    expectFactors(kCGBlendModeClear, none, none);
    expectFactors(kCGBlendModeCopy, one, none);
    expectFactors(kCGBlendModeSourceIn, ofBelow, none);
    expectFactors(kCGBlendModeSourceOut, outsideBelow, none);
    expectFactors(kCGBlendModeSourceAtop, ofBelow, outsideAbove);
    expectFactors(kCGBlendModeDestinationOver, outsideBelow, one);
    expectFactors(kCGBlendModeDestinationIn, none, ofAbove);
    expectFactors(kCGBlendModeDestinationOut, none, outsideAbove);
    expectFactors(kCGBlendModeDestinationAtop, outsideBelow, ofAbove);
    expectFactors(kCGBlendModeXOR, outsideBelow, outsideAbove);
    expectFactors(kCGBlendModePlusLighter, one, one);
}

TEST(ContextBlending, PlusDarkerAddsWhatIsLacking)
{
    EXPECT_PRED_FORMAT3(isNear,
        painted(kCGBlendModePlusDarker, { { 1, 0.5, 0.8 }, 1 }, { { 0.9, 0.6, 0.1 }, 1 }, true),
        (Rgba { 230, 26, 0, 255 }), 2);
}

TEST(ContextBlending, GroupsAreLaidDownInTheModeOfTheirBeginning)
{
    const Picture picture(8, 8);
    CGContextSetRGBFillColor(picture, 0.2, 0.4, 0.6, 1);
    CGContextFillRect(picture, CGRectMake(0, 0, 8, 8));
    CGContextSetBlendMode(picture, kCGBlendModeScreen);
    CGContextBeginTransparencyLayer(picture, nullptr);
    CGContextSetRGBFillColor(picture, 0.8, 0.8, 0.1, 1);
    CGContextFillRect(picture, CGRectMake(0, 0, 8, 8));
    CGContextEndTransparencyLayer(picture);
    EXPECT_PRED_FORMAT3(isNear, picture.at(4, 4), (Rgba { 214, 224, 163, 255 }), 2);
}

TEST(ContextBlending, ALineMixesAsAnAreaDoesAndLeavesWhatIsBeside)
{
    const auto drawn = [](CGBlendMode mode, bool isLine, int y) {
        const Picture picture(16, 16);
        CGContextSetRGBFillColor(picture, 0.2, 0.4, 0.6, 0.8);
        CGContextFillRect(picture, CGRectMake(0, 0, 16, 16));
        CGContextSetBlendMode(picture, mode);
        CGContextSetAlpha(picture, 0.5);
        CGContextSetRGBFillColor(picture, 0.8, 0.4, 0.2, 1);
        CGContextSetRGBStrokeColor(picture, 0.8, 0.4, 0.2, 1);
        CGContextSetLineWidth(picture, 2);
        if (isLine) {
            CGContextMoveToPoint(picture, 2, 8);
            CGContextAddLineToPoint(picture, 14, 8);
            CGContextStrokePath(picture);
        } else
            CGContextFillRect(picture, CGRectMake(2, 7, 12, 2));
        return picture.at(8, y);
    };
    for (const CGBlendMode mode : { kCGBlendModeNormal, kCGBlendModeCopy, kCGBlendModeSourceIn,
             kCGBlendModeSourceOut, kCGBlendModeSourceAtop, kCGBlendModeDestinationOver,
             kCGBlendModeDestinationIn, kCGBlendModeDestinationOut, kCGBlendModeDestinationAtop,
             kCGBlendModeXOR, kCGBlendModePlusDarker }) {
        for (const int y : { 4, 6, 7, 8, 9, 11 })
            EXPECT_PRED_FORMAT3(isNear, drawn(mode, true, y), drawn(mode, false, y), 2)
                << mode << " at " << y;
    }
}

TEST(ContextBlending, ATurnedImageFadesInEveryModeAsOneThatStandsUpright)
{
    const auto drawn = [](CGBlendMode mode, bool turns) {
        const Picture source(8, 8);
        CGContextSetRGBFillColor(source, 0.8, 0.4, 0.2, 1);
        CGContextFillRect(source, CGRectMake(0, 0, 8, 8));
        const Picture picture(8, 8);
        CGContextSetRGBFillColor(picture, 0.2, 0.4, 0.6, 0.8);
        CGContextFillRect(picture, CGRectMake(0, 0, 8, 8));
        CGContextSetBlendMode(picture, mode);
        CGContextSetAlpha(picture, 0.5);
        if (turns) {
            CGContextTranslateCTM(picture, 8, 0);
            CGContextRotateCTM(picture, std::acos(0));
        }
        CGContextDrawImage(picture, CGRectMake(0, 0, 8, 8), source.image().get());
        return picture.at(4, 4);
    };
    for (const CGBlendMode mode :
        { kCGBlendModeNormal, kCGBlendModeMultiply, kCGBlendModeCopy, kCGBlendModeSourceIn,
            kCGBlendModeSourceOut, kCGBlendModeSourceAtop, kCGBlendModeDestinationIn,
            kCGBlendModeDestinationOut, kCGBlendModeDestinationAtop, kCGBlendModeXOR })
        EXPECT_PRED_FORMAT3(isNear, drawn(mode, true), drawn(mode, false), 2) << mode;
}
