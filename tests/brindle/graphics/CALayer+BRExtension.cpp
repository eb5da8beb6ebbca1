// SPDX-License-Identifier: Apache-2.0
#include "graphics/CALayer+BRExtension.h"

#include <gtest/gtest.h>

#include <string>

#include "runtime/Table.h"

namespace brindle {

/// Writes down each frame that it is given.
class FrameLog : public CALayer {
    BRINDLE_OBJECT(FrameLog, CALayer)

public:
    int frames = 0;
};

template <> struct FrameLog::Methods<struct Frames> {
    static void setFrame(FrameLog& self, CGRect frame)
    {
        ++self.frames;
        super<FrameLog, "setFrame:">(self, frame);
    }
    static void table(Builder& t) { t.methods({ { "setFrame:", imp<setFrame> } }); }
};
BRINDLE_RECORD(FrameLog, Frames)

namespace {

    Ref<FrameLog> layer()
    {
        Ref<FrameLog> fresh = make<FrameLog>();
        fresh->setFrame({ { 10, 20 }, { 30, 40 } });
        fresh->frames = 0;
        return fresh;
    }

    TEST(LayerFrameParts, AreRead)
    {
        const Ref<FrameLog> one = layer();
        EXPECT_EQ(frameOrigin(one), CGPointMake(10, 20));
        EXPECT_EQ(frameSize(one), CGSizeMake(30, 40));
        EXPECT_EQ(frameOriginX(one), 10);
        EXPECT_EQ(frameOriginY(one), 20);
        EXPECT_EQ(frameSizeWidth(one), 30);
        EXPECT_EQ(frameSizeHeight(one), 40);
    }

    TEST(LayerFrameParts, SettingTheOriginKeepsTheSize)
    {
        const Ref<FrameLog> one = layer();
        setFrameOrigin(one, { 1, 2 });
        EXPECT_EQ(one->frame(), CGRectMake(1, 2, 30, 40));
    }

    TEST(LayerFrameParts, SettingTheSizeKeepsTheOrigin)
    {
        const Ref<FrameLog> one = layer();
        setFrameSize(one, { 3, 4 });
        EXPECT_EQ(one->frame(), CGRectMake(10, 20, 3, 4));
    }

    TEST(LayerFrameParts, SettingXKeepsTheOthers)
    {
        const Ref<FrameLog> one = layer();
        setFrameOriginX(one, 1);
        EXPECT_EQ(one->frame(), CGRectMake(1, 20, 30, 40));
    }

    TEST(LayerFrameParts, SettingYKeepsTheOthers)
    {
        const Ref<FrameLog> one = layer();
        setFrameOriginY(one, 2);
        EXPECT_EQ(one->frame(), CGRectMake(10, 2, 30, 40));
    }

    TEST(LayerFrameParts, SettingTheWidthKeepsTheOthers)
    {
        const Ref<FrameLog> one = layer();
        setFrameSizeWidth(one, 3);
        EXPECT_EQ(one->frame(), CGRectMake(10, 20, 3, 40));
    }

    TEST(LayerFrameParts, SettingTheHeightKeepsTheOthers)
    {
        const Ref<FrameLog> one = layer();
        setFrameSizeHeight(one, 4);
        EXPECT_EQ(one->frame(), CGRectMake(10, 20, 30, 4));
    }

    TEST(LayerFrameParts, GoThroughTheFrameOfTheLayer)
    {
        const Ref<FrameLog> one = layer();
        setFrameOriginX(one, 1);
        setFrameOriginY(one, 1);
        setFrameSizeWidth(one, 1);
        setFrameSizeHeight(one, 1);
        EXPECT_EQ(one->frames, 4);
    }

    TEST(LayerFrameParts, CountTheAnchorPoint)
    {
        const Ref<FrameLog> one = layer();
        one->setAnchorPoint({ 0, 0 });
        setFrameSizeWidth(one, 100);
        EXPECT_EQ(one->position(), CGPointMake(25, 40));
        EXPECT_EQ(one->frame(), CGRectMake(25, 40, 100, 40));
    }

    TEST(LayerFrameParts, CountTheTransform)
    {
        const Ref<FrameLog> one = layer();
        one->setTransform(CATransform3DMakeScale(2, 2, 1));
        setFrameSizeWidth(one, 100);
        EXPECT_EQ(one->frame(), CGRectMake(-5, 0, 100, 80));
        EXPECT_EQ(one->bounds().size.width, 50);
    }

    TEST(LayerFrameParts, OfAnAbsentLayerAreZero)
    {
        CALayer* const none = nullptr;
        EXPECT_EQ(frameSizeWidth(none), 0);
        EXPECT_EQ(frameOrigin(none), CGPointZero);
        setFrameOriginX(none, 1);
    }

}
}
