// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSAffineTransform.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>

#include "appkit/NSBezierPath.h"
#include "appkit/NSGraphicsContext.h"
#include "foundation/NSData.h"
#include "foundation/NSKeyedArchiver.h"
#include "foundation/NSKeyedUnarchiver.h"
#include "runtime/Runtime.h"
#include "support/Pixels.h"

namespace brindle {

namespace {

    Ref<NSAffineTransform> newTransform() { return NSAffineTransform::cls().transform(); }

}

TEST(NSAffineTransform, ChangesNothingAtFirst)
{
    EXPECT_EQ(newTransform()->transformStruct(), NSAffineTransformStruct {});
    EXPECT_EQ(newTransform()->transformPoint({ 3, 4 }), NSMakePoint(3, 4));
}

TEST(NSAffineTransform, TakesItsNumbersAsTheyAre)
{
    const auto transform = newTransform();
    transform->setTransformStruct({ 1, 2, 3, 4, 5, 6 });
    EXPECT_EQ(transform->transformStruct(), (NSAffineTransformStruct { 1, 2, 3, 4, 5, 6 }));
    EXPECT_EQ(transform->transformPoint({ 10, 100 }), NSMakePoint(315, 426));
    EXPECT_EQ(transform->transformSize({ 10, 100 }), NSMakeSize(310, 420));
}

TEST(NSAffineTransform, LaterStepsWorkFirst)
{
    const auto transform = newTransform();
    transform->translateXBy_yBy(10, 20);
    transform->scaleXBy_yBy(2, 3);
    EXPECT_EQ(transform->transformPoint({ 1, 1 }), NSMakePoint(12, 23));
    transform->scaleBy(2);
    EXPECT_EQ(transform->transformPoint({ 1, 1 }), NSMakePoint(14, 26));
}

TEST(NSAffineTransform, QuarterTurnsAreExact)
{
    const NSPoint places[] = { { 0, 1 }, { -1, 0 }, { 0, -1 }, { 1, 0 } };
    for (int i = 0; i < 4; ++i) {
        const auto transform = newTransform();
        transform->rotateByDegrees(90 * (i + 1));
        EXPECT_EQ(transform->transformPoint({ 1, 0 }), places[i]);
        const auto back = newTransform();
        back->rotateByDegrees(90 * (i + 1) - 720);
        EXPECT_EQ(back->transformPoint({ 1, 0 }), places[i]);
    }
}

TEST(NSAffineTransform, DegreesAndRadiansTurnAlike)
{
    const auto degrees = newTransform();
    degrees->rotateByDegrees(30);
    const auto radians = newTransform();
    radians->rotateByRadians(std::numbers::pi / 6);
    const NSPoint a = degrees->transformPoint({ 2, 0 });
    const NSPoint b = radians->transformPoint({ 2, 0 });
    EXPECT_NEAR(a.x, std::sqrt(3), 1e-15);
    EXPECT_NEAR(a.y, 1, 1e-15);
    EXPECT_NEAR(a.x, b.x, 1e-15);
    EXPECT_NEAR(a.y, b.y, 1e-15);
}

TEST(NSAffineTransform, AppendedWorksAfterAndPrependedBefore)
{
    const auto twice = newTransform();
    twice->scaleBy(2);
    const auto after = newTransform();
    after->translateXBy_yBy(1, 0);
    after->appendTransform(twice.get());
    EXPECT_EQ(after->transformPoint({ 0, 0 }), NSMakePoint(2, 0));
    const auto before = newTransform();
    before->translateXBy_yBy(1, 0);
    before->prependTransform(twice.get());
    EXPECT_EQ(before->transformPoint({ 1, 0 }), NSMakePoint(3, 0));
}

TEST(NSAffineTransform, NilIsNoStep)
{
    const auto transform = newTransform();
    transform->appendTransform(nullptr);
    transform->prependTransform(nullptr);
    EXPECT_EQ(transform->transformStruct(), NSAffineTransformStruct {});
    EXPECT_FALSE(transform->transformBezierPath(nullptr));
    EXPECT_TRUE(
        alloc<NSAffineTransform>()->initWithTransform(nullptr)->isEqual(newTransform().get()));
}

TEST(NSAffineTransform, InvertUndoes)
{
    const auto transform = newTransform();
    transform->setTransformStruct({ 2, 0, 0, 4, 6, 8 });
    transform->invert();
    EXPECT_EQ(transform->transformPoint({ 8, 12 }), NSMakePoint(1, 1));
}

TEST(NSAffineTransform, WhatCannotBeUndoneStaysAsItIs)
{
    const auto transform = newTransform();
    transform->scaleXBy_yBy(0, 1);
    const NSAffineTransformStruct flat = transform->transformStruct();
    transform->invert();
    EXPECT_EQ(transform->transformStruct(), flat);
}

TEST(NSAffineTransform, TransformsACopyOfAPath)
{
    const auto path = NSBezierPath::cls().bezierPathWithRect(NSMakeRect(0, 0, 2, 3));
    const auto transform = newTransform();
    transform->translateXBy_yBy(5, 5);
    EXPECT_EQ(transform->transformBezierPath(path.get())->bounds(), NSMakeRect(5, 5, 2, 3));
    EXPECT_EQ(path->bounds(), NSMakeRect(0, 0, 2, 3));
}

TEST(NSAffineTransform, CopyIsEqualAndIndependent)
{
    const auto transform = newTransform();
    transform->translateXBy_yBy(1, 2);
    const auto copy = cast<NSAffineTransform>(transform->copy());
    EXPECT_TRUE(copy->isEqual(transform.get()));
    EXPECT_EQ(copy->hash(), transform->hash());
    copy->scaleBy(2);
    EXPECT_FALSE(copy->isEqual(transform.get()));
    EXPECT_FALSE(copy->isEqual(nullptr));
}

TEST(NSAffineTransform, SurvivesAnArchive)
{
    const auto transform = newTransform();
    transform->setTransformStruct({ 1, 2, 3, 4, 0.1, -6 });
    const auto data = NSKeyedArchiver::cls().archivedDataWithRootObject(transform.get());
    const auto back = NSKeyedUnarchiver::cls().unarchiveObjectWithData(data.get());
    EXPECT_TRUE(transform->isEqual(back.get()));
}

TEST(NSAffineTransform, SetReplacesAndConcatAddsToTheContextsTransform)
{
    const test::Picture picture(8, 8);
    NSGraphicsContext::cls().setCurrentContext(
        NSGraphicsContext::cls().graphicsContextWithGraphicsPort_flipped(picture, false).get());
    CGContextTranslateCTM(picture, 1, 1);
    const auto transform = newTransform();
    transform->scaleBy(2);
    transform->concat();
    EXPECT_EQ(CGContextGetCTM(picture), (CGAffineTransform { 2, 0, 0, 2, 1, 1 }));
    transform->set();
    EXPECT_EQ(CGContextGetCTM(picture), (CGAffineTransform { 2, 0, 0, 2, 0, 0 }));
    NSGraphicsContext::cls().setCurrentContext(nullptr);
    transform->set();
    transform->concat();
}

TEST(NSAffineTransform, CarriesNumbersThatMakeNoSense)
{
    const auto transform = newTransform();
    transform->rotateByDegrees(std::numeric_limits<double>::quiet_NaN());
    EXPECT_TRUE(std::isnan(transform->transformPoint({ 1, 1 }).x));
    const auto far = newTransform();
    far->rotateByDegrees(std::numeric_limits<double>::infinity());
    EXPECT_TRUE(std::isnan(far->transformPoint({ 1, 1 }).x));
    far->invert();
}

TEST(NSAffineTransform, ItsStructureHasNoNameInEncodings)
{
    const auto method
        = class_getInstanceMethod(NSAffineTransform::cls(), sel_registerName("transformStruct"));
    EXPECT_STREQ(method_getTypeEncoding(method), "{?=dddddd}@:");
}

}
