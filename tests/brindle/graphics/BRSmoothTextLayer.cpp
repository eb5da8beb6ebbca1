// SPDX-License-Identifier: Apache-2.0
#include "graphics/BRSmoothTextLayer.h"

#include <gtest/gtest.h>

#include <limits>

#include "appkit/NSFont.h"
#include "support/LogSink.h"
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

    Ref<BRSmoothTextLayer> sizedLayer(NSString* text, double width)
    {
        Ref<BRSmoothTextLayer> layer = BRSmoothTextLayer::cls().layer();
        layer->setString(text);
        layer->setFont("Helvetica"_ns);
        layer->setFontSize(12);
        layer->setFrame({ { 5, 6 }, { width, 7 } });
        return layer;
    }

    TEST(SmoothTextLayer, SizesToOneLineThatFits)
    {
        const Ref<BRSmoothTextLayer> layer = sizedLayer("word"_ns, 100);
        layer->sizeInWidth();
        const CGRect frame = layer->frame();
        EXPECT_NEAR(frame.origin.x, 5, 1e-9);
        EXPECT_NEAR(frame.origin.y, 6, 1e-9);
        EXPECT_GT(frame.size.width, 10);
        EXPECT_LT(frame.size.width, 60);
        EXPECT_GT(frame.size.height, 10);
        EXPECT_LT(frame.size.height, 20);
    }

    TEST(SmoothTextLayer, GrowsByTheLinesOfItsText)
    {
        const Ref<BRSmoothTextLayer> one = sizedLayer("word"_ns, 100);
        const Ref<BRSmoothTextLayer> more = sizedLayer("word word word word word word"_ns, 100);
        one->sizeInWidth();
        more->sizeInWidth();
        EXPECT_GE(more->frame().size.height, one->frame().size.height * 2);
        EXPECT_LE(more->frame().size.width, 100);
    }

    TEST(SmoothTextLayer, MeasuresAtItsWidthInSinglePrecision)
    {
        const Ref<BRSmoothTextLayer> layer = sizedLayer("word"_ns, 100.1);
        const NSSize expected = layer->string()->send<"sizeForWidth:height:font:", NSSize>(100.1F,
            std::numeric_limits<float>::max(),
            NSFont::cls().fontWithName_size("Helvetica"_ns, 12).get());
        layer->sizeInWidth();
        EXPECT_EQ(layer->frame().size, expected);
    }

    TEST(SmoothTextLayer, CollapsesAndLogsWithoutAFontOfThatName)
    {
        const test::LogSink log;
        const Ref<BRSmoothTextLayer> layer = sizedLayer("word"_ns, 100);
        layer->setFont("No Such Font"_ns);
        layer->sizeInWidth();
        EXPECT_EQ(layer->frame().size, CGSizeZero);
        EXPECT_NE(log.text().find("sizeForWidth:height:font:]: Internal Error 561-3810: Nil font"),
            std::string::npos);
    }

    TEST(SmoothTextLayer, CollapsesWithAFontObjectInPlaceOfAName)
    {
        const test::LogSink log;
        const Ref<BRSmoothTextLayer> layer = sizedLayer("word"_ns, 100);
        layer->setFont(NSFont::cls().fontWithName_size("Helvetica"_ns, 12).get());
        layer->sizeInWidth();
        EXPECT_EQ(layer->frame().size, CGSizeZero);
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
