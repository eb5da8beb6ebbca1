// SPDX-License-Identifier: Apache-2.0
#include "quartz/CGPattern.h"

#include "quartz/TextDrawing.h"
#include "support/Numbers.h"
#include "support/Pixels.h"

#include <limits>

using namespace brindle;
using test::Picture;
using test::Rgba;

namespace {

using test::kBlue;
using test::kRed;

int released = 0;

/// A cell of 4 by 2: red at the left, blue at the right.
void drawCell(void*, CGContextRef context)
{
    CGContextSetRGBFillColor(context, 1, 0, 0, 1);
    CGContextFillRect(context, CGRectMake(0, 0, 2, 2));
    CGContextSetRGBFillColor(context, 0, 0, 1, 1);
    CGContextFillRect(context, CGRectMake(2, 0, 2, 2));
}
/// A dot in whatever colour is set.
void drawDot(void*, CGContextRef context) { CGContextFillRect(context, CGRectMake(0, 0, 1, 1)); }

Ref<CGPattern> makePattern(void (*draw)(void*, CGContextRef), bool colored,
    CGAffineTransform matrix = CGAffineTransformIdentity)
{
    const CGPatternCallbacks callbacks { 0, draw, [](void*) { ++released; } };
    return Ref<CGPattern>::adopt(CGPatternCreate(nullptr, CGRectMake(0, 0, 4, 2), matrix, 4, 2,
        kCGPatternTilingConstantSpacing, colored, &callbacks));
}

void setPattern(CGContextRef context, const Ref<CGPattern>& pattern, CGFloat alpha = 1)
{
    CGContextSetFillPattern(context, pattern.get(), &alpha);
}

}

TEST(CGPattern, RepeatsItsCellFromTheOriginOfTheBaseSpace)
{
    const Picture picture(20, 20);
    setPattern(picture, makePattern(drawCell, true));
    CGContextTranslateCTM(picture, 3, 0); // does not move the cells
    CGContextFillRect(picture, CGRectMake(0, 0, 12, 12));
    EXPECT_EQ(picture.at(2, 15).alpha, 0);
    EXPECT_EQ(picture.at(3, 15), kBlue);
    EXPECT_EQ(picture.at(4, 15), kRed);
    EXPECT_EQ(picture.at(5, 10), kRed);
    EXPECT_EQ(picture.at(6, 10), kBlue);
}

TEST(CGPattern, ACellMayChangeTheColourOfWhatItFills)
{
    const Picture picture(8, 8);
    const CGPatternCallbacks callbacks { 0,
        [](void* info, CGContextRef context) {
            CGContextSetRGBFillColor(static_cast<CGContextRef>(info), 0, 0, 1, 1);
            drawCell(nullptr, context);
        },
        nullptr };
    {
        const auto pattern = Ref<CGPattern>::adopt(CGPatternCreate(
            static_cast<CGContextRef>(picture), CGRectMake(0, 0, 4, 2), CGAffineTransformIdentity,
            4, 2, kCGPatternTilingConstantSpacing, true, &callbacks));
        setPattern(picture, pattern);
    }
    CGContextFillRect(picture, CGRectMake(0, 0, 8, 8));
    EXPECT_EQ(picture.at(0, 0), kRed);
    EXPECT_EQ(picture.at(3, 0), kBlue);
}

TEST(CGPattern, PhaseMovesTheCells)
{
    const Picture picture(20, 20);
    setPattern(picture, makePattern(drawCell, true));
    CGContextSetPatternPhase(picture, { 2, 0 });
    CGContextFillRect(picture, CGRectMake(0, 0, 12, 12));
    EXPECT_EQ(picture.at(0, 15), kBlue);
    EXPECT_EQ(picture.at(2, 15), kRed);
}

TEST(CGPattern, CellsGrowWithTheScaleOfTheBaseSpace)
{
    const Picture picture(20, 20, 2);
    setPattern(picture, makePattern(drawCell, true));
    CGContextFillRect(picture, CGRectMake(0, 0, 10, 10));
    EXPECT_EQ(picture.at(3, 15), kRed);
    EXPECT_EQ(picture.at(4, 15), kBlue);
}

TEST(CGPattern, FillsPathsAndLines)
{
    const Picture picture(20, 20);
    const auto pattern = makePattern(drawCell, true);
    const CGFloat alpha = 1;
    CGContextSetStrokePattern(picture, pattern.get(), &alpha);
    CGContextSetLineWidth(picture, 2);
    CGContextMoveToPoint(picture, 0, 10);
    CGContextAddLineToPoint(picture, 20, 10);
    CGContextStrokePath(picture);
    EXPECT_EQ(picture.at(4, 10), kRed);
    EXPECT_EQ(picture.at(6, 9), kBlue);
    setPattern(picture, pattern);
    CGContextFillEllipseInRect(picture, CGRectMake(0, 0, 20, 20));
    EXPECT_EQ(picture.at(8, 5), kRed);
    EXPECT_EQ(picture.at(0, 0).alpha, 0);
}

TEST(CGPattern, AlphaFadesTheCells)
{
    const Picture picture(20, 20);
    setPattern(picture, makePattern(drawCell, true), 0.5);
    CGContextSetAlpha(picture, 0.5);
    CGContextFillRect(picture, CGRectMake(0, 0, 12, 12));
    EXPECT_NEAR(picture.at(0, 15).alpha, 64, 1);
}

TEST(CGPattern, WithoutColoursOfItsOwnItIsDrawnInThatOfTheColour)
{
    const Picture picture(20, 20);
    const CGFloat blue[] = { 0, 0, 1, 1 };
    const auto pattern = makePattern(drawDot, false);
    CGContextSetFillPattern(picture, pattern.get(), blue);
    CGContextFillRect(picture, CGRectMake(0, 0, 12, 12));
    EXPECT_EQ(picture.at(4, 19), kBlue);
    EXPECT_EQ(picture.at(5, 19).alpha, 0);
}

TEST(CGPattern, LetsGoOfItsInfoWithTheLastColour)
{
    released = 0;
    {
        const Picture picture(4, 4);
        setPattern(picture, makePattern(drawCell, true));
        EXPECT_EQ(released, 0);
    }
    EXPECT_EQ(released, 1);
}

TEST(CGPattern, WhatMakesNoCellIsNULL)
{
    const CGPatternCallbacks callbacks { 0, drawCell, nullptr };
    const auto make = [&](CGRect bounds, CGFloat step, const CGPatternCallbacks* how) {
        return Ref<CGPattern>::adopt(CGPatternCreate(nullptr, bounds, CGAffineTransformIdentity,
            step, step, kCGPatternTilingConstantSpacing, true, how));
    };
    EXPECT_FALSE(make(CGRectMake(0, 0, 4, 4), 4, nullptr));
    EXPECT_FALSE(make(CGRectMake(0, 0, 0, 4), 4, &callbacks));
    EXPECT_FALSE(make(CGRectMake(0, 0, 4, 4), 0, &callbacks));
    EXPECT_FALSE(make(CGRectMake(0, kNaN, 4, 4), 4, &callbacks));
    EXPECT_TRUE(make(CGRectMake(0, 0, 4, 4), -4, &callbacks));
}

TEST(CGPattern, MatrixThatMakesNoSensePaintsNothing)
{
    for (const CGAffineTransform matrix : { CGAffineTransform {}, { 1, 0, 0, kNaN, 0, 0 },
             { 1e300, 0, 0, 1e300, 0, 0 }, { 1e-300, 0, 0, 1, 0, 0 } }) {
        const Picture picture(8, 8);
        setPattern(picture, makePattern(drawCell, true, matrix));
        CGContextFillRect(picture, CGRectMake(0, 0, 8, 8));
        EXPECT_EQ(picture.at(4, 4).alpha, 0);
    }
}

TEST(CGPattern, HugeCellsAreDrawnCoarsely)
{
    const Picture picture(8, 8);
    setPattern(picture, makePattern(drawCell, true, { 1e5, 0, 0, 1e5, 0, 0 }));
    CGContextFillRect(picture, CGRectMake(0, 0, 8, 8));
    EXPECT_EQ(picture.at(4, 4).alpha, 255);
}

TEST(CGPattern, ColoursTellTheirPatternsApart)
{
    const auto pattern = makePattern(drawCell, true);
    const auto space = Ref<CGColorSpace>::adopt(CGColorSpaceCreatePattern(nullptr));
    const CGFloat alpha = 0.5;
    const auto color = [&](const Ref<CGPattern>& of) {
        return Ref<CGColor>::adopt(CGColorCreateWithPattern(space.get(), of.get(), &alpha));
    };
    EXPECT_EQ(CGColorGetPattern(color(pattern).get()), pattern.get());
    EXPECT_EQ(CGColorGetAlpha(color(pattern).get()), 0.5);
    EXPECT_TRUE(CGColorEqualToColor(color(pattern).get(), color(pattern).get()));
    EXPECT_FALSE(
        CGColorEqualToColor(color(pattern).get(), color(makePattern(drawCell, true)).get()));
    EXPECT_EQ(CGColorSpaceGetModel(space.get()), kCGColorSpaceModelPattern);
}

TEST(CGPattern, FillsText)
{
    const auto pattern = makePattern(drawCell, true);
    const auto space = Ref<CGColorSpace>::adopt(CGColorSpaceCreatePattern(nullptr));
    const CGFloat alpha = 1;
    const auto color
        = Ref<CGColor>::adopt(CGColorCreateWithPattern(space.get(), pattern.get(), &alpha));
    const text::Line bar
        = text::shapeLine(u"|||", { text::FontFace::named("LiberationSans-Bold"), 40 });
    const Picture picture(60, 50);
    quartz::drawTextLine(picture, bar, { 4, 10 }, color.get());
    int red = 0;
    int blue = 0;
    int other = 0;
    for (int x = 0; x < 60; ++x) {
        const Rgba pixel = picture.at(x, 25);
        red += pixel == kRed;
        blue += pixel == kBlue;
        other += pixel.alpha == 255 && pixel != kRed && pixel != kBlue;
    }
    EXPECT_GT(red, 2);
    EXPECT_GT(blue, 2);
    EXPECT_EQ(other, 0);
}
