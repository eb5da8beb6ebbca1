// SPDX-License-Identifier: Apache-2.0
#include "quartz/ImageFiles.h"

#include <gtest/gtest.h>

#include <cstring>

#include "support/Figures.h"
#include "support/Pixels.h"

namespace brindle::test {

namespace {

    std::span<const std::byte> bytesOf(const std::string& text)
    {
        return std::as_bytes(std::span(text.data(), text.size()));
    }
    Ref<CGImage> read(const std::string& bytes)
    {
        return quartz::decodeImage(bytesOf(bytes)).image;
    }
    /// A picture in which every pixel differs; alpha falls from the left to the right.
    Ref<CGImage> gradient(std::size_t width, std::size_t height)
    {
        std::vector<std::uint32_t> pixels;
        for (std::size_t y = 0; y < height; ++y) {
            for (std::size_t x = 0; x < width; ++x) {
                const auto alpha = static_cast<std::uint32_t>(255 - x * 255 / width);
                const auto red = static_cast<std::uint32_t>(y * alpha / height);
                pixels.push_back(alpha << 24 | red << 16 | (alpha / 2) << 8 | alpha / 3);
            }
        }
        return quartz::imageTaking(std::move(pixels), width, height, true);
    }
    std::string littleEndian(std::uint64_t value, int bytes)
    {
        std::string text;
        for (int i = 0; i < bytes; ++i)
            text.push_back(static_cast<char>(value >> 8 * i));
        return text;
    }
    /// A GIF of 2 by 2 pixels, red, green, blue, white.
    std::string gif(const std::string& before = "", const std::string& behind = ";")
    {
        using namespace std::string_literals;
        const std::string frame = ",\0\0\0\0\2\0\2\0\0\2\3\104\64\5\0"s;
        return "GIF89a\2\0\2\0\x81\0\0\xFF\0\0\0\xFF\0\0\0\xFF\xFF\xFF\xFF"s + before + frame
            + behind;
    }
    /// A bitmap file of 2 by 2 pixels, top row red, green.
    std::string bmp(std::int32_t height, std::uint32_t offset = 54)
    {
        using namespace std::string_literals;
        return "BM"s + littleEndian(70, 4) + littleEndian(0, 4) + littleEndian(offset, 4)
            + littleEndian(40, 4) + littleEndian(2, 4)
            + littleEndian(static_cast<std::uint32_t>(height), 4) + littleEndian(1, 2)
            + littleEndian(24, 2) + littleEndian(0, 4) + littleEndian(16, 4) + littleEndian(5669, 4)
            + littleEndian(5669, 4) + littleEndian(0, 8)
            + "\xFF\0\0\xFF\xFF\xFF\0\0\0\0\xFF\0\xFF\0\0\0"s;
    }
    struct TIFFEntry {
        unsigned tag;
        unsigned type;
        std::uint32_t count;
        std::uint32_t value;
    };
    /// A TIFF of one directory; the data lies behind its eight first bytes.
    std::string tiff(const std::string& data, const std::vector<TIFFEntry>& entries)
    {
        using namespace std::string_literals;
        std::string bytes = "II\x2A\0"s + littleEndian(8 + data.size(), 4) + data
            + littleEndian(entries.size(), 2);
        for (const TIFFEntry& entry : entries)
            bytes += littleEndian(entry.tag, 2) + littleEndian(entry.type, 2)
                + littleEndian(entry.count, 4) + littleEndian(entry.value, 4);
        return bytes + littleEndian(0, 4);
    }
    constexpr std::uint32_t kRedWord = 0xFFFF0000;
    constexpr std::uint32_t kGreenWord = 0xFF00FF00;
    constexpr std::uint32_t kBlueWord = 0xFF0000FF;
    constexpr std::uint32_t kWhiteWord = 0xFFFFFFFF;

    std::vector<std::uint32_t> wordsOf(const Ref<CGImage>& image)
    {
        return image
            ? std::vector(image->pixels(), image->pixels() + image->width() * image->height())
            : std::vector<std::uint32_t>();
    }

}

// ---- formats

TEST(ImageFiles, TIFFKeepsEveryPixel)
{
    const auto picture = gradient(19, 7);
    for (const bool packs : { false, true }) {
        const quartz::ImageFile file { picture, 144, 0 };
        const auto again = quartz::decodeImage(bytesOf(quartz::encodeTIFF({ &file, 1 }, packs)));
        EXPECT_TRUE(areAlike(again.image.get(), picture.get(), 0, "tiff"));
        EXPECT_NEAR(again.dotsPerInch, 144, 0.01);
    }
}

TEST(ImageFiles, TIFFHoldsSeveralPictures)
{
    const quartz::ImageFile files[] = { { gradient(3, 3), 72, 0 }, { gradient(6, 6), 144, 0 } };
    const auto again = quartz::decodeImages(bytesOf(quartz::encodeTIFF(files, false)));
    ASSERT_EQ(again.pictures.size(), 2u);
    EXPECT_FALSE(again.isAnimation);
    EXPECT_EQ(again.pictures[1].image->width(), 6u);
}

TEST(ImageFiles, TIFFOfNothingIsEmpty) { EXPECT_EQ(quartz::encodeTIFF({}, false), ""); }

TEST(ImageFiles, TIFFThatWouldTakeMoreThanItCanCountIsNone)
{
    const std::vector<quartz::ImageFile> files(1100, { gradient(1000, 1000), 72, 0 });
    EXPECT_EQ(quartz::encodeTIFF(files, false), "");
}

TEST(ImageFiles, BMPKeepsColoursAndAlpha)
{
    const auto picture = gradient(9, 4);
    const auto again = quartz::decodeImage(bytesOf(quartz::encodeBMP({ picture, 72, 0 })));
    EXPECT_TRUE(areAlike(again.image.get(), picture.get(), 1, "bmp"));
    EXPECT_NEAR(again.dotsPerInch, 72, 0.1);
}

TEST(ImageFiles, BMPBeginsWithItsLastRow)
{
    EXPECT_EQ(wordsOf(read(bmp(2))), (std::vector { kRedWord, kGreenWord, kBlueWord, kWhiteWord }));
    EXPECT_NEAR(quartz::decodeImage(bytesOf(bmp(2))).dotsPerInch, 144, 0.1);
}

TEST(ImageFiles, BMPWithANegativeHeightBeginsWithItsFirstRow)
{
    EXPECT_EQ(
        wordsOf(read(bmp(-2))), (std::vector { kBlueWord, kWhiteWord, kRedWord, kGreenWord }));
}

TEST(ImageFiles, GIFIsRead)
{
    EXPECT_EQ(wordsOf(read(gif())), (std::vector { kRedWord, kGreenWord, kBlueWord, kWhiteWord }));
}

TEST(ImageFiles, GIFTellsItsFrames)
{
    using namespace std::string_literals;
    const std::string control
        = "!\xF9\4\t\x32\0\0\0"s; // cleared afterwards, half a second, red is nothing
    const std::string loops = "!\xFF\vNETSCAPE2.0\3\1\5\0\0"s;
    const std::string frame = ",\0\0\0\0\2\0\2\0\0\2\3\104\64\5\0"s;
    const auto files = quartz::decodeImages(bytesOf(gif(loops + control, frame + ";")));
    ASSERT_EQ(files.pictures.size(), 2u);
    EXPECT_TRUE(files.isAnimation);
    EXPECT_EQ(files.loops, 5);
    EXPECT_EQ(files.pictures[0].seconds, 0.5);
    EXPECT_EQ(files.pictures[1].seconds, 0);
    EXPECT_EQ(
        wordsOf(files.pictures[0].image), (std::vector { 0u, kGreenWord, kBlueWord, kWhiteWord }));
    EXPECT_EQ(wordsOf(files.pictures[1].image),
        (std::vector { kRedWord, kGreenWord, kBlueWord, kWhiteWord }));
}

TEST(ImageFiles, AGIFAsLargeAsPicturesMayBeHasOneFrame)
{
    using namespace std::string_literals;
    const std::string frame = ",\0\0\0\0\2\0\2\0\0\2\3\104\64\5\0"s;
    const auto large = [](std::string file) {
        file.replace(6, 4, littleEndian(8192, 2) + littleEndian(6144, 2));
        return quartz::decodeImages(bytesOf(file));
    };
    const auto one = large(gif());
    ASSERT_EQ(one.pictures.size(), 1u);
    EXPECT_EQ(one.pictures[0].image->width(), 8192u);
    EXPECT_EQ(
        large(gif(frame)).pictures.size(), 0u); // two, and the canvas between them, are too much
}

TEST(ImageFiles, PNGTellsItsResolution)
{
    const auto again = quartz::decodeImage(bytesOf(quartz::encodePNG(gradient(4, 4).get(), 144)));
    EXPECT_NEAR(again.dotsPerInch, 144, 0.05);
}

TEST(ImageFiles, JPEGTellsItsResolution)
{
    const auto again
        = quartz::decodeImage(bytesOf(quartz::encodeJPEG(gradient(4, 4).get(), 0.9, 144)));
    EXPECT_EQ(again.dotsPerInch, 144);
}

TEST(ImageFiles, OnlyPicturesWithAlphaSaySo)
{
    const auto alphaOf
        = [](const std::string& bytes) { return CGImageGetAlphaInfo(read(bytes).get()); };
    const auto picture = gradient(4, 4);
    EXPECT_EQ(alphaOf(quartz::encodePNG(picture.get())), kCGImageAlphaPremultipliedFirst);
    EXPECT_EQ(alphaOf(quartz::encodeJPEG(picture.get(), 1)), kCGImageAlphaNoneSkipFirst);
    EXPECT_EQ(alphaOf(bmp(2)), kCGImageAlphaNoneSkipFirst);
}

// ---- what is broken

TEST(ImageFiles, TruncatedFilesAreNone)
{
    const auto picture = gradient(24, 24);
    const quartz::ImageFile file { picture, 72, 0 };
    const std::string files[]
        = { quartz::encodePNG(picture.get()), quartz::encodeJPEG(picture.get(), 0.9),
              quartz::encodeTIFF({ &file, 1 }, false), quartz::encodeBMP(file), gif("", "") };
    for (const std::string& whole : files) {
        ASSERT_TRUE(read(whole));
        for (std::size_t length = 0; length + 2 < whole.size(); length += 1 + length / 16)
            EXPECT_FALSE(read(whole.substr(0, length))) << whole.substr(0, 3) << " " << length;
    }
}

TEST(ImageFiles, BytesOfNoFormatAreNone)
{
    EXPECT_FALSE(read(""));
    EXPECT_FALSE(read("no picture at all"));
    EXPECT_FALSE(quartz::isImage(bytesOf("no picture")));
    EXPECT_TRUE(quartz::isImage(bytesOf(gif())));
}

TEST(ImageFiles, APNGOfTenThousandMillionPixelsIsRefused)
{
    std::string bytes = quartz::encodePNG(gradient(4, 4).get());
    const char side[] = { 0, 1, '\x86', '\xA0' }; // 100,000
    std::memcpy(bytes.data() + 16, side, 4);
    std::memcpy(bytes.data() + 20, side, 4);
    EXPECT_FALSE(read(bytes));
}

TEST(ImageFiles, AHeadThatPromisesMoreThanTheFileCanHoldIsRefused)
{
    std::string jpeg = quartz::encodeJPEG(gradient(16, 16).get(), 0.5);
    const std::size_t frame = jpeg.find("\xFF\xC0");
    ASSERT_NE(frame, std::string::npos);
    jpeg.replace(frame + 5, 4, "\x1F\x40\x17\x70"); // 8,000 by 6,000
    EXPECT_FALSE(read(jpeg));
}

TEST(ImageFiles, ABitmapThatPointsOutOfTheFileIsRefused)
{
    EXPECT_FALSE(read(bmp(2, 0xFFFFFFF0)));
    EXPECT_FALSE(read(bmp(INT32_MIN)));
    EXPECT_FALSE(read(bmp(0)));
}

TEST(ImageFiles, ATIFFWhoseDirectoriesFormALoopIsReadOnce)
{
    const quartz::ImageFile file { gradient(2, 2), 72, 0 };
    std::string bytes = quartz::encodeTIFF({ &file, 1 }, false);
    const std::string first = bytes.substr(4, 4);
    bytes.replace(bytes.size() - 4, 4, first); // the next one is the first
    EXPECT_EQ(quartz::decodeImages(bytesOf(bytes)).pictures.size(), 1u);
}

TEST(ImageFiles, ATIFFOfFourThousandMillionSamplesIsRefused)
{
    constexpr std::uint32_t kMost = 0xFFFFFFFF;
    EXPECT_FALSE(read(tiff("",
        { { 256, 4, 1, 1 }, { 257, 4, 1, 1 }, { 258, 3, kMost, kMost }, { 277, 4, 1, kMost } })));
}

TEST(ImageFiles, ATIFFWhoseStripsAllUnpackTheSameBytesIsRefused)
{
    constexpr std::uint32_t kStrips = 64;
    constexpr std::uint32_t kLength = 65536;
    const auto file = [](std::uint32_t strips) {
        std::string data(kLength - 2, '\x80'); // stands for nothing
        data += std::string("\0\xFF", 2); // one white pixel
        for (std::uint32_t i = 0; i < strips; ++i)
            data += littleEndian(8, 4);
        for (std::uint32_t i = 0; i < strips; ++i)
            data += littleEndian(kLength, 4);
        const bool isOne = strips == 1; // then the value stands in the entry
        return tiff(data,
            { { 256, 4, 1, 1 }, { 257, 4, 1, strips }, { 258, 3, 1, 8 }, { 259, 3, 1, 32773 },
                { 262, 3, 1, 1 }, { 273, 4, strips, isOne ? 8 : 8 + kLength }, { 277, 3, 1, 1 },
                { 278, 4, 1, 1 }, { 279, 4, strips, isOne ? kLength : 8 + kLength + 4 * strips } });
    };
    EXPECT_EQ(wordsOf(read(file(1))), std::vector { kWhiteWord });
    EXPECT_EQ(wordsOf(read(file(2))), (std::vector { kWhiteWord, kWhiteWord }));
    EXPECT_FALSE(read(file(kStrips)));
}

TEST(ImageFiles, RandomDamageNeverMakesWrongPixels)
{
    const auto picture = gradient(16, 16);
    const quartz::ImageFile file { picture, 72, 0 };
    std::uint32_t seed = 1;
    test::Cost cost;
    for (const std::string& whole :
        { quartz::encodePNG(picture.get()), quartz::encodeJPEG(picture.get(), 0.9),
            quartz::encodeTIFF({ &file, 1 }, true), quartz::encodeBMP(file), gif() }) {
        for (int round = 0; round < 300; ++round) {
            std::string damaged = whole;
            for (int i = 0; i < 4; ++i) {
                seed = seed * 1664525 + 1013904223;
                damaged[seed % damaged.size()] = static_cast<char>(seed >> 24);
            }
            std::vector<std::uint32_t> words;
            cost.of([&] { words = wordsOf(read(damaged)); });
            for (const std::uint32_t word : words) {
                const std::uint32_t alpha = word >> 24;
                ASSERT_LE(word >> 16 & 0xFF, alpha);
                ASSERT_LE(word >> 8 & 0xFF, alpha);
                ASSERT_LE(word & 0xFF, alpha);
            }
        }
    }
    cost.publish("damaged images", 1000, 256);
}

}
