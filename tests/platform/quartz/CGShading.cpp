// SPDX-License-Identifier: Apache-2.0
#include "quartz/CGShading.h"

#include "support/Pixels.h"

using namespace brindle;
using test::Picture;
using test::Rgba;

namespace {

int releasedShadings = 0;

/// Red grows along the way; opaque.
void redden(void*, const CGFloat* in, CGFloat* out)
{
    out[0] = *in;
    out[1] = out[2] = 0;
    out[3] = 1;
}
/// Beyond every range.
void overdo(void*, const CGFloat*, CGFloat* out)
{
    out[0] = 7;
    out[1] = -7;
    out[2] = 0.5;
}

Ref<CGFunction> makeFunction(decltype(CGFunctionCallbacks::evaluate) evaluate,
    std::size_t results = 4, const CGFloat* range = nullptr, const CGFloat* domain = nullptr)
{
    const CGFunctionCallbacks callbacks { 0, evaluate, [](void*) { ++releasedShadings; } };
    return Ref<CGFunction>::adopt(CGFunctionCreate(nullptr, 1, domain, results, range, &callbacks));
}

Ref<CGColorSpace> rgb() { return Ref<CGColorSpace>::adopt(CGColorSpaceCreateDeviceRGB()); }

}

TEST(CGShading, PaintsAlongAWayWhatItsFunctionSays)
{
    const Picture picture(100, 10);
    const auto shading = Ref<CGShading>::adopt(CGShadingCreateAxial(
        rgb().get(), { 0, 0 }, { 100, 0 }, makeFunction(redden).get(), false, false));
    CGContextDrawShading(picture, shading.get());
    EXPECT_LE(test::distance(picture.at(0, 5), { 1, 0, 0, 255 }), 2);
    EXPECT_LE(test::distance(picture.at(50, 5), { 128, 0, 0, 255 }), 2);
    EXPECT_LE(test::distance(picture.at(99, 5), { 254, 0, 0, 255 }), 2);
}

TEST(CGShading, GoesOnBeyondItsEndsWhereItIsToldTo)
{
    const auto ends = [](bool before, bool behind) {
        const Picture picture(100, 10);
        const auto shading = Ref<CGShading>::adopt(CGShadingCreateAxial(
            rgb().get(), { 40, 0 }, { 60, 0 }, makeFunction(redden).get(), before, behind));
        CGContextDrawShading(picture, shading.get());
        return std::pair(picture.at(10, 5), picture.at(90, 5));
    };
    EXPECT_EQ(ends(true, false), (std::pair<Rgba, Rgba> { { 0, 0, 0, 255 }, {} }));
    EXPECT_EQ(ends(false, true), (std::pair<Rgba, Rgba> { {}, { 255, 0, 0, 255 } }));
}

TEST(CGShading, RunsFromCircleToCircle)
{
    const Picture picture(100, 100);
    const auto shading = Ref<CGShading>::adopt(CGShadingCreateRadial(
        rgb().get(), { 50, 50 }, 0, { 50, 50 }, 40, makeFunction(redden).get(), false, false));
    CGContextDrawShading(picture, shading.get());
    EXPECT_LE(test::distance(picture.at(50, 50), { 4, 0, 0, 255 }), 6);
    EXPECT_LE(test::distance(picture.at(70, 50), { 130, 0, 0, 255 }), 6);
    EXPECT_EQ(picture.at(95, 50).alpha, 0);
}

TEST(CGFunction, IsAskedWithinItsDomainAndKeptWithinItsRange)
{
    const CGFloat domain[] { 2, 4 };
    EXPECT_EQ(makeFunction(redden, 4, nullptr, domain)->valuesAt(0.5)[0], 3);
    const CGFloat range[] { 0, 1, 0, 1, 0, 1 };
    EXPECT_EQ(makeFunction(overdo, 3, range)->valuesAt(0), (std::vector<CGFloat> { 1, 0, 0.5 }));
}

TEST(CGFunction, LetsGoOfItsInfoOnce)
{
    releasedShadings = 0;
    {
        const auto function = makeFunction(redden);
        const auto shading = Ref<CGShading>::adopt(
            CGShadingCreateAxial(rgb().get(), {}, { 9, 0 }, function.get(), true, true));
        EXPECT_TRUE(shading);
    }
    EXPECT_EQ(releasedShadings, 1);
}

TEST(CGShading, WithoutAllItNeedsIsNULL)
{
    const auto axial = [](CGColorSpaceRef space, CGFunctionRef function) {
        return Ref<CGShading>::adopt(
            CGShadingCreateAxial(space, {}, { 9, 0 }, function, true, true));
    };
    EXPECT_FALSE(axial(nullptr, makeFunction(redden).get()));
    EXPECT_FALSE(axial(rgb().get(), nullptr));
    EXPECT_FALSE(axial(rgb().get(), makeFunction(overdo, 2).get())) << "too few results";
    EXPECT_TRUE(axial(rgb().get(), makeFunction(overdo, 3).get())) << "opaque";
    const CGFunctionCallbacks none {};
    EXPECT_EQ(CGFunctionCreate(nullptr, 1, nullptr, 4, nullptr, &none), nullptr);
    const CGFunctionCallbacks some { 0, redden, nullptr };
    EXPECT_EQ(CGFunctionCreate(nullptr, 2, nullptr, 4, nullptr, &some), nullptr);
    EXPECT_EQ(CGFunctionCreate(nullptr, 1, nullptr, 4, nullptr, nullptr), nullptr);
    CGContextDrawShading(nullptr, nullptr);
}
