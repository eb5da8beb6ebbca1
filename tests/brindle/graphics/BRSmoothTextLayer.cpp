// SPDX-License-Identifier: Apache-2.0
#include "graphics/BRSmoothTextLayer.h"

#include <gtest/gtest.h>

#include "support/Pixels.h"

namespace brindle {
namespace {

    using test::isNear;
    using test::Picture;
    using test::Rgba;

    TEST(SmoothTextLayer, IsMadeOnAClearGround)
    {
        const Ref<BRSmoothTextLayer> layer = BRSmoothTextLayer::cls().layer();
        ASSERT_NE(layer->backgroundColor(), nullptr);
        EXPECT_EQ(CGColorGetAlpha(layer->backgroundColor().get()), 0);
        EXPECT_TRUE(layer->isMemberOfClass(BRSmoothTextLayer::cls()));
    }

    TEST(SmoothTextLayer, DrawsAClearGroundBeforeItsText)
    {
        const Picture picture(40, 20);
        const Ref<BRSmoothTextLayer> layer = BRSmoothTextLayer::cls().layer();
        layer->setBounds({ { 0, 0 }, { 40, 20 } });
        layer->drawInContext(picture);
        EXPECT_EQ(picture.at(20, 10), Rgba {});
    }

    TEST(SmoothTextLayer, PaintsItsGroundBelowItsText)
    {
        const Picture picture(40, 20);
        const Ref<BRSmoothTextLayer> layer = BRSmoothTextLayer::cls().layer();
        layer->setBounds({ { 0, 0 }, { 40, 20 } });
        layer->setBackgroundColor(Ref<CGColor>::adopt(CGColorCreateSRGB(1, 0, 0, 1)).get());
        layer->setString("HHHH"_ns);
        layer->setFont("Helvetica"_ns);
        layer->setFontSize(16);
        layer->drawInContext(picture);
        EXPECT_EQ(picture.at(39, 19), (Rgba { 255, 0, 0, 255 }));
        const Ref<CGImage> image = picture.image();
        int white = 0;
        for (std::size_t y = 0; y < 20; ++y) {
            for (std::size_t x = 0; x < 40; ++x)
                white += test::pixelAt(image.get(), x, y).green > 200;
        }
        EXPECT_GT(white, 10);
    }

    TEST(SmoothTextLayer, WithoutTextSizesToNothing)
    {
        const Ref<BRSmoothTextLayer> layer = BRSmoothTextLayer::cls().layer();
        layer->setFont("Helvetica"_ns);
        layer->setFrame({ { 5, 6 }, { 100, 100 } });
        layer->sizeInWidth();
        EXPECT_EQ(layer->frame(), CGRectMake(5, 6, 0, 0));
    }

}
}
