// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSBitmapImageRep.h"

#include <gtest/gtest.h>

#include "appkit/NSColor.h"
#include "foundation/NSArray.h"
#include "foundation/NSData.h"
#include "foundation/NSDictionary.h"
#include "foundation/NSNumber.h"
#include "quartz/ImageFiles.h"
#include "support/Colors.h"
#include "support/Focused.h"
#include "support/Pictures.h"
#include "support/Strings.h"

namespace brindle::test {

namespace {

    struct Wish {
        NSInteger width = 4;
        NSInteger height = 2;
        NSInteger bits = 8;
        NSInteger samples = 4;
        bool alpha = true;
        bool planar = false;
        NSInteger bytesPerRow = 0;
        NSInteger bitsPerPixel = 0;
    };
    Ref<NSBitmapImageRep> made(const Wish& w, NSString* space = NSDeviceRGBColorSpace,
        unsigned char** planes = nullptr, NSUInteger format = 0)
    {
        return alloc<NSBitmapImageRep>()
            ->initWithBitmapDataPlanes_pixelsWide_pixelsHigh_bitsPerSample_samplesPerPixel_hasAlpha_isPlanar_colorSpaceName_bitmapFormat_bytesPerRow_bitsPerPixel(
                planes, w.width, w.height, w.bits, w.samples, w.alpha, w.planar, space,
                static_cast<NSBitmapFormat>(format), w.bytesPerRow, w.bitsPerPixel);
    }
    Ref<NSData> dataFromText(const std::string& bytes)
    {
        return NSData::cls().dataWithBytes_length(bytes.data(), bytes.size());
    }

}

TEST(NSBitmapImageRep, BeginsAsZeroedMemory)
{
    const auto rep = made({});
    EXPECT_EQ(rep->bytesPerRow(), 16);
    EXPECT_EQ(rep->bitsPerPixel(), 32);
    EXPECT_EQ(rep->bytesPerPlane(), 32);
    EXPECT_EQ(rep->numberOfPlanes(), 1);
    EXPECT_EQ(rep->size(), NSMakeSize(4, 2));
    for (int i = 0; i < 32; ++i)
        EXPECT_EQ(rep->bitmapData()[i], 0);
}

TEST(NSBitmapImageRep, ImpossibleCombinationsAreNil)
{
    EXPECT_FALSE(made({ .width = 0 }));
    EXPECT_FALSE(made({ .height = -1 }));
    EXPECT_FALSE(made({ .bits = 3 }));
    EXPECT_FALSE(made({ .samples = 3 }));
    EXPECT_FALSE(made({ .samples = 5 }));
    EXPECT_FALSE(made({ .samples = 4, .alpha = false }));
    EXPECT_FALSE(made({ .bytesPerRow = 15 }));
    EXPECT_FALSE(made({ .bytesPerRow = -16 }));
    EXPECT_FALSE(made({ .bitsPerPixel = 24 }));
    EXPECT_FALSE(made({ .width = 100000, .height = 100000 }));
    EXPECT_FALSE(made({}, NSDeviceWhiteColorSpace));
    EXPECT_FALSE(made({}, "NSDeviceCMYKColorSpace"_ns));
    EXPECT_FALSE(made({}, nullptr));
}

TEST(NSBitmapImageRep, UsesLentMemoryWhereItLies)
{
    unsigned char bytes[32] = { 255, 0, 0, 255 };
    unsigned char* planes[] = { bytes, nullptr, nullptr, nullptr, nullptr };
    const auto rep = made({}, NSDeviceRGBColorSpace, planes);
    EXPECT_EQ(rep->bitmapData(), bytes);
    EXPECT_EQ(shape(rep->CGImage().get()), "r.../....");
    bytes[4 + 2] = bytes[4 + 3] = 255;
    EXPECT_EQ(shape(rep->CGImage().get()), "rb../....");
}

TEST(NSBitmapImageRep, PlanesHoldASampleEach)
{
    const auto rep = made({ .samples = 3, .alpha = false, .planar = true });
    EXPECT_EQ(rep->numberOfPlanes(), 3);
    EXPECT_EQ(rep->bytesPerRow(), 4);
    unsigned char* planes[5];
    rep->getBitmapDataPlanes(planes);
    planes[1][0] = 255;
    planes[2][5] = 255;
    EXPECT_EQ(planes[3], nullptr);
    EXPECT_EQ(shape(rep->CGImage().get()), "gkkk/kbkk");
}

TEST(NSBitmapImageRep, SmallSamplesShareBytes)
{
    const auto rep = made({ .width = 8, .height = 1, .bits = 1, .samples = 1, .alpha = false },
        NSDeviceWhiteColorSpace);
    EXPECT_EQ(rep->bytesPerRow(), 1);
    rep->bitmapData()[0] = 0xA1;
    EXPECT_EQ(shape(rep->CGImage().get()), "wkwkkkkw");
    const NSUInteger one = 1;
    rep->setPixel_atX_y(&one, 1, 0);
    EXPECT_EQ(rep->bitmapData()[0], 0xE1);
}

TEST(NSBitmapImageRep, WideSamplesAreRead)
{
    const auto rep = made({ .width = 1, .height = 1, .bits = 16 });
    const NSUInteger samples[] = { 0x8000, 0, 0, 0x8000 };
    rep->setPixel_atX_y(samples, 0, 0);
    EXPECT_NEAR(rep->colorAtX_y(0, 0)->alphaComponent(), 0.5, 1e-4);
    EXPECT_EQ(rep->colorAtX_y(0, 0)->redComponent(), 1);
}

TEST(NSBitmapImageRep, FormatsPlaceAndWeighAlpha)
{
    const auto rep = made({ .width = 1, .height = 1 }, NSDeviceRGBColorSpace, nullptr,
        NSAlphaFirstBitmapFormat | NSAlphaNonpremultipliedBitmapFormat);
    const NSUInteger samples[] = { 255, 0, 0, 128 };
    rep->setPixel_atX_y(samples, 0, 0);
    EXPECT_EQ(rep->bitmapData()[0], 128);
    EXPECT_EQ(rep->bitmapData()[1], 255);
    EXPECT_EQ(rep->CGImage()->pixels()[0], 0x80800000u);
    EXPECT_EQ(rgbaText(rep->colorAtX_y(0, 0)), "1 0 0 0.5019607843137255");
}

// ---- single pixels

TEST(NSBitmapImageRep, AnswersColoursNotMultipliedByAlpha)
{
    const auto rep
        = alloc<NSBitmapImageRep>()->initWithCGImage(plainPicture(2, 2, 0x80402000).get());
    const auto color = rep->colorAtX_y(1, 1);
    EXPECT_EQ(color->redComponent(), 0x40 / 128.0);
    EXPECT_EQ(color->greenComponent(), 0x20 / 128.0);
    EXPECT_EQ(color->alphaComponent(), 128 / 255.0);
}

TEST(NSBitmapImageRep, CountsRowsFromTheTop)
{
    const auto rep = alloc<NSBitmapImageRep>()->initWithCGImage(quarters().get());
    EXPECT_EQ(rgbaText(rep->colorAtX_y(0, 0)), "1 0 0 1");
    EXPECT_EQ(rgbaText(rep->colorAtX_y(3, 0)), "0 1 0 1");
    EXPECT_EQ(rgbaText(rep->colorAtX_y(0, 3)), "0 0 1 1");
}

TEST(NSBitmapImageRep, HasNoColourOutside)
{
    const auto rep = alloc<NSBitmapImageRep>()->initWithCGImage(quarters().get());
    for (const auto& [x, y] : { std::pair { -1, 0 }, { 0, -1 }, { 4, 0 }, { 0, 4 } })
        EXPECT_FALSE(rep->colorAtX_y(x, y));
    rep->setColor_atX_y(NSColor::cls().blackColor().get(), 4, 4);
    EXPECT_EQ(shape(rep->CGImage().get()), "rrgg/rrgg/bbww/bbww");
}

TEST(NSBitmapImageRep, SetsColours)
{
    const auto rep = alloc<NSBitmapImageRep>()->initWithCGImage(quarters().get());
    rep->setColor_atX_y(NSColor::cls().blackColor().get(), 1, 0);
    rep->setColor_atX_y(nullptr, 2, 0);
    EXPECT_EQ(shape(rep->CGImage().get()), "rkgg/rrgg/bbww/bbww");
    NSUInteger samples[4] {};
    rep->getPixel_atX_y(samples, 2, 2);
    EXPECT_EQ(samples[0] + samples[1] + samples[2] + samples[3], 4u * 255);
}

TEST(NSBitmapImageRep, BytesOfAPictureAreRedGreenBlueAlpha)
{
    const auto rep
        = alloc<NSBitmapImageRep>()->initWithCGImage(plainPicture(1, 1, 0xFF112233).get());
    const unsigned char* const bytes = rep->bitmapData();
    EXPECT_EQ(bytes[0], 0x11);
    EXPECT_EQ(bytes[1], 0x22);
    EXPECT_EQ(bytes[2], 0x33);
    EXPECT_EQ(bytes[3], 0xFF);
}

TEST(NSBitmapImageRep, IsDrawnFromTheBytesOfNow)
{
    const auto rep = alloc<NSBitmapImageRep>()->initWithCGImage(quarters().get());
    unsigned char* const bytes = rep->bitmapData();
    bytes[0] = 0;
    const Focused target(4, 4);
    rep->draw();
    EXPECT_EQ(shape(target), "krgg/rrgg/bbww/bbww");
}

TEST(NSBitmapImageRep, ACopyHasPixelsOfItsOwn)
{
    for (const bool asBytes : { false, true }) {
        const auto rep = alloc<NSBitmapImageRep>()->initWithCGImage(quarters().get());
        if (asBytes)
            rep->bitmapData();
        const auto copy = cast<NSBitmapImageRep>(rep->copy());
        copy->bitmapData()[0] = 0;
        EXPECT_EQ(shape(rep->CGImage().get()), "rrgg/rrgg/bbww/bbww");
        EXPECT_EQ(shape(copy->CGImage().get()), "krgg/rrgg/bbww/bbww");
    }
}

TEST(NSBitmapImageRep, WithoutAnInitialiserIsEmpty)
{
    const auto rep = make<NSBitmapImageRep>();
    EXPECT_EQ(rep->pixelsWide(), 0);
    EXPECT_FALSE(rep->CGImage());
    EXPECT_FALSE(rep->colorAtX_y(0, 0));
    EXPECT_EQ(rep->bitmapData(), nullptr);
    EXPECT_FALSE(rep->TIFFRepresentation());
    EXPECT_TRUE(rep->copy());
}

TEST(NSBitmapImageRep, TakesWhatTheContextShows)
{
    const Focused target(4, 4);
    quartersImage()->drawInRect(NSMakeRect(0, 0, 4, 4));
    const auto rep = alloc<NSBitmapImageRep>()->initWithFocusedViewRect(NSMakeRect(1, 2, 2, 2));
    EXPECT_EQ(shape(rep->CGImage().get()), "rg/rg");
    EXPECT_FALSE(alloc<NSBitmapImageRep>()->initWithFocusedViewRect(NSMakeRect(9, 9, 2, 2)));
}

// ---- files

TEST(NSBitmapImageRep, SurvivesEveryFormatItIsWrittenIn)
{
    const auto rep = alloc<NSBitmapImageRep>()->initWithCGImage(quarters().get());
    for (const auto type : { NSTIFFFileType, NSBMPFileType, NSPNGFileType }) {
        const auto data = rep->representationUsingType_properties(type, nullptr);
        const auto again = NSBitmapImageRep::cls().imageRepWithData(data.get());
        EXPECT_EQ(shape(again->CGImage().get()), "rrgg/rrgg/bbww/bbww") << type;
    }
    EXPECT_TRUE(rep->representationUsingType_properties(NSJPEGFileType, nullptr));
    EXPECT_FALSE(rep->representationUsingType_properties(NSGIFFileType, nullptr));
    EXPECT_FALSE(
        rep->representationUsingType_properties(static_cast<NSBitmapImageFileType>(9), nullptr));
}

TEST(NSBitmapImageRep, KeepsItsSizeInFiles)
{
    const auto rep = alloc<NSBitmapImageRep>()->initWithCGImage(quarters().get());
    rep->setSize(NSMakeSize(2, 2));
    for (const auto type : { NSTIFFFileType, NSBMPFileType, NSPNGFileType, NSJPEGFileType }) {
        const auto data = rep->representationUsingType_properties(type, nullptr);
        EXPECT_NEAR(NSBitmapImageRep::cls().imageRepWithData(data.get())->size().width, 2, 0.01);
    }
}

TEST(NSBitmapImageRep, CompressionMakesJPEGSmaller)
{
    const auto rep
        = alloc<NSBitmapImageRep>()->initWithCGImage(plainPicture(64, 64, 0xFF123456).get());
    rep->setColor_atX_y(NSColor::cls().whiteColor().get(), 30, 30);
    const auto length = [&](double factor) {
        const auto properties = NSDictionary::cls().dictionaryWithObject_forKey(
            NSNumber::cls().numberWithDouble(factor).get(), NSImageCompressionFactor);
        return rep->representationUsingType_properties(NSJPEGFileType, properties.get())->length();
    };
    EXPECT_LT(length(0.1), length(1));
}

TEST(NSBitmapImageRep, BrokenDataIsNil)
{
    EXPECT_FALSE(alloc<NSBitmapImageRep>()->initWithData(dataFromText("no picture").get()));
    EXPECT_FALSE(alloc<NSBitmapImageRep>()->initWithData(nullptr));
    EXPECT_EQ(NSBitmapImageRep::cls().imageRepsWithData(nullptr)->count(), 0u);
}

}
