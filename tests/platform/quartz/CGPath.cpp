// SPDX-License-Identifier: Apache-2.0
#include "quartz/CGPath.h"

#include <gtest/gtest.h>

#include <string>

namespace brindle {

namespace {

    Ref<CGPath> newPath() { return Ref<CGPath>::adopt(CGPathCreateMutable()); }

    std::string steps(CGPath* path)
    {
        std::string text;
        CGPathApply(path, &text, [](void* info, const CGPathElement* element) {
            *static_cast<std::string*>(info) += "mlqcz"[element->type];
        });
        return text;
    }

}

TEST(CGPath, KeepsItsElementsAsTheyWereAdded)
{
    const Ref<CGPath> path = newPath();
    CGPathMoveToPoint(path.get(), nullptr, 1, 2);
    CGPathAddLineToPoint(path.get(), nullptr, 3, 4);
    CGPathAddQuadCurveToPoint(path.get(), nullptr, 5, 6, 7, 8);
    CGPathAddCurveToPoint(path.get(), nullptr, 1, 1, 2, 2, 3, 3);
    CGPathCloseSubpath(path.get());
    EXPECT_EQ(steps(path.get()), "mlqcz");
    EXPECT_EQ(CGPathGetCurrentPoint(path.get()), CGPointMake(1, 2));
}

TEST(CGPath, NothingAndNULLAreEmpty)
{
    EXPECT_TRUE(CGPathIsEmpty(nullptr));
    const Ref<CGPath> path = newPath();
    CGPathCloseSubpath(path.get());
    CGPathAddLineToPoint(path.get(), nullptr, 1, 1);
    EXPECT_TRUE(CGPathIsEmpty(path.get()));
}

TEST(CGPath, TransformMovesWhatIsAdded)
{
    const Ref<CGPath> path = newPath();
    const CGAffineTransform twice = CGAffineTransformMakeScale(2, 2);
    CGPathAddRect(path.get(), &twice, CGRectMake(1, 1, 2, 2));
    EXPECT_EQ(CGPathGetBoundingBox(path.get()), CGRectMake(2, 2, 4, 4));
}

TEST(CGPath, BoxOfACurveIsTighterThanThatOfItsControls)
{
    const Ref<CGPath> path = newPath();
    CGPathMoveToPoint(path.get(), nullptr, 0, 0);
    CGPathAddCurveToPoint(path.get(), nullptr, 0, 10, 10, 10, 10, 0);
    EXPECT_EQ(CGPathGetBoundingBox(path.get()), CGRectMake(0, 0, 10, 10));
    EXPECT_EQ(CGPathGetPathBoundingBox(path.get()), CGRectMake(0, 0, 10, 7.5));
}

TEST(CGPath, ContainsByEitherRule)
{
    const Ref<CGPath> path = newPath();
    CGPathAddRect(path.get(), nullptr, CGRectMake(0, 0, 10, 10));
    CGPathAddRect(path.get(), nullptr, CGRectMake(2, 2, 6, 6));
    EXPECT_TRUE(CGPathContainsPoint(path.get(), nullptr, { 5, 5 }, false));
    EXPECT_FALSE(CGPathContainsPoint(path.get(), nullptr, { 5, 5 }, true));
    EXPECT_FALSE(CGPathContainsPoint(path.get(), nullptr, { 11, 5 }, false));
}

TEST(CGPath, CopyIsEqualAndIndependent)
{
    const Ref<CGPath> path = newPath();
    CGPathAddEllipseInRect(path.get(), nullptr, CGRectMake(0, 0, 4, 4));
    const auto copy = Ref<CGPath>::adopt(CGPathCreateMutableCopy(path.get()));
    EXPECT_TRUE(CGPathEqualToPath(path.get(), copy.get()));
    CGPathAddLineToPoint(copy.get(), nullptr, 9, 9);
    EXPECT_FALSE(CGPathEqualToPath(path.get(), copy.get()));
}

}
