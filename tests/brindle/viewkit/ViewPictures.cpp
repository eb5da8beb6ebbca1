// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <cmath>

#include "appkit/NSColor.h"
#include "appkit/NSImage.h"
#include "controls/GWBackgroundColorView.h"
#include "support/HeadlessScreen.h"
#include "support/LogSink.h"
#include "support/Pixels.h"
#include "viewkit/NSView+GWExtensions.h"

namespace brindle {
namespace {

    using test::LogSink;
    using test::Rgba;

    Ref<GWBackgroundColorView> redView(NSSize size)
    {
        auto view = cast<GWBackgroundColorView>(
            alloc<GWBackgroundColorView>()->initWithFrame({ {}, size }));
        view->setBackgroundColor(NSColor::cls().redColor().get());
        view->setWantsLayer(true);
        return view;
    }

    TEST(ViewPictures, APictureShowsTheViewAPixelAPoint)
    {
        const HeadlessScreen screen;
        const Ref<GWBackgroundColorView> view = redView({ 30, 20 });
        const Ref<CGImage> picture = makeImageRef(*view);
        ASSERT_NE(picture, nullptr);
        EXPECT_EQ(CGImageGetWidth(picture.get()), 30u);
        EXPECT_EQ(CGImageGetHeight(picture.get()), 20u);
        EXPECT_EQ(test::pixelAt(picture.get(), 15, 10), (Rgba { 255, 0, 0, 255 }));
    }

    TEST(ViewPictures, PartsOfAPointAreCutOff)
    {
        const HeadlessScreen screen;
        const Ref<CGImage> picture = makeImageRef(redView({ 10.9, 5.5 }));
        EXPECT_EQ(CGImageGetWidth(picture.get()), 10u);
        EXPECT_EQ(CGImageGetHeight(picture.get()), 5u);
    }

    TEST(ViewPictures, TheImageHasAsManyPoints)
    {
        const HeadlessScreen screen;
        EXPECT_EQ(image(redView({ 30, 20 }))->size(), NSMakeSize(30, 20));
    }

    TEST(ViewPictures, WithoutALayerThereIsNone)
    {
        const LogSink log;
        const Ref<NSView> view = alloc<NSView>()->initWithFrame(NSMakeRect(0, 0, 10, 10));
        EXPECT_EQ(makeImageRef(*view), nullptr);
        EXPECT_EQ(log.text(), "Failed to create context.\n");
    }

    TEST(ViewPictures, OfNoSizeOfAnImpossibleSizeAndOfAHugeOneThereIsNone)
    {
        const double huge = 1e300;
        for (const NSSize size : { NSSize { 0, 0 }, NSSize { 0.9, 10 }, NSSize { -10, 10 },
                 NSSize { huge, huge }, NSSize { std::nan(""), 10 } }) {
            const LogSink log;
            EXPECT_EQ(makeImageRef(redView(size)), nullptr);
            EXPECT_EQ(image(redView(size)), nullptr);
            EXPECT_EQ(log.text(), "Failed to create context.\nFailed to create context.\n");
        }
    }

}
}
