// SPDX-License-Identifier: Apache-2.0
#include "ImageFilesPrivate.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <set>

namespace brindle::quartz {

namespace {

    // Numbers of "TIFF Revision 6.0" (1992).
    enum Tag : unsigned {
        kWidth = 256,
        kHeight = 257,
        kBits = 258,
        kCompression = 259,
        kPhotometric = 262,
        kStripOffsets = 273,
        kSamples = 277,
        kRowsPerStrip = 278,
        kStripCounts = 279,
        kResolutionX = 282,
        kResolutionY = 283,
        kPlanar = 284,
        kResolutionUnit = 296,
        kPredictor = 317,
        kColorMap = 320,
        kExtraSamples = 338,
    };
    enum Compression : unsigned { kPlain = 1, kCodes = 5, kPackBits = 32773 };
    enum Photometric : unsigned { kWhiteIsZero = 0, kBlackIsZero = 1, kRGB = 2, kPalette = 3 };
    enum Type : unsigned { kByte = 1, kShort = 3, kLong = 4, kRational = 5 };

    std::size_t sizeOf(unsigned type)
    {
        constexpr std::size_t kSizes[] = { 0, 1, 1, 2, 4, 8, 1, 1, 2, 4, 8, 4, 8 };
        return type < std::size(kSizes) ? kSizes[type] : 0;
    }

    /// Runs and stretches of single bytes: section 9.
    std::vector<std::uint8_t> unpackBits(std::span<const std::byte> packed, std::size_t count)
    {
        std::vector<std::uint8_t> out;
        for (std::size_t at = 0; at < packed.size() && out.size() < count;) {
            const int control = static_cast<std::int8_t>(packed[at++]);
            const std::size_t left = packed.size() - at;
            if (control >= 0) {
                const std::size_t length = std::min<std::size_t>(control + 1, left);
                for (std::size_t i = 0; i < length; ++i)
                    out.push_back(std::to_integer<std::uint8_t>(packed[at++]));
            } else if (control != -128 && left > 0)
                out.insert(out.end(), static_cast<std::size_t>(1 - control),
                    std::to_integer<std::uint8_t>(packed[at++]));
        }
        if (out.size() > count)
            out.resize(count);
        return out;
    }

    /// One picture of a file: its directory of numbered values, and how to read the pixels.
    class Directory {
    public:
        Directory(const FileBytes& bytes, std::size_t at, bool bigEndian)
            : bytes_(bytes)
            , bigEndian_(bigEndian)
        {
            const std::size_t count = bytes_.half(at);
            for (std::size_t i = 0; i < count && !bytes_.failed(); ++i) {
                const std::size_t entry = at + 2 + 12 * i;
                entries_[bytes_.half(entry)] = entry;
            }
            next_ = bytes_.word(at + 2 + 12 * count);
        }
        std::size_t next() const { return next_; }

        /// - room: how many pixels may be read. - packedLeft: how many bytes may be unpacked.
        ImageFile read(std::size_t room, std::size_t& packedLeft)
        {
            width_ = value(kWidth, 0);
            height_ = value(kHeight, 0);
            bits_ = value(kBits, 1);
            samples_ = value(kSamples, 1);
            photometric_ = value(kPhotometric, kBlackIsZero);
            if (width_ == 0 || height_ == 0 || height_ > room / width_ || !isKnown())
                return {};
            stride_ = (width_ * samples_ * bits_ + 7) / 8;
            std::vector<std::uint32_t> pixels(width_ * height_);
            const std::size_t rows
                = std::clamp<std::size_t>(value(kRowsPerStrip, height_), 1, height_);
            for (std::size_t strip = 0; strip * rows < height_; ++strip) {
                const std::size_t top = strip * rows;
                const std::size_t count = std::min(rows, height_ - top);
                const auto plain = readStrip(strip, count * stride_, packedLeft);
                if (plain.size() < count * stride_ || bytes_.failed())
                    return {};
                for (std::size_t y = 0; y < count; ++y)
                    convert(pixels.data() + (top + y) * width_, plain.data() + y * stride_);
            }
            const bool hasAlpha = alphaKind() != 0;
            if (alphaKind() == 2)
                premultiply(pixels.data(), pixels.size());
            return { imageTaking(std::move(pixels), width_, height_, hasAlpha), dotsPerInch() };
        }

    private:
        std::size_t countOf(unsigned tag) const
        {
            const auto found = entries_.find(tag);
            return found == entries_.end() ? 0 : bytes_.word(found->second + 4);
        }
        /// Answers where a tag's values lie.
        std::size_t placeOf(std::size_t entry) const
        {
            const std::size_t size = sizeOf(bytes_.half(entry + 2)) * bytes_.word(entry + 4);
            return size <= 4 ? entry + 8 : bytes_.word(entry + 8);
        }
        std::size_t value(unsigned tag, std::size_t otherwise, std::size_t index = 0) const
        {
            const auto found = entries_.find(tag);
            if (found == entries_.end() || index >= bytes_.word(found->second + 4))
                return otherwise;
            const unsigned type = bytes_.half(found->second + 2);
            const std::size_t at = placeOf(found->second) + index * sizeOf(type);
            switch (type) {
            case kByte:
                return bytes_.byte(at);
            case kShort:
                return bytes_.half(at);
            case kLong:
                return bytes_.word(at);
            default:
                return otherwise;
            }
        }
        /// 0: no alpha; 1: colours are multiplied by it; 2: they are not.
        std::size_t alphaKind() const
        {
            const std::size_t colors = photometric_ == kRGB ? 3 : 1;
            if (samples_ != colors + 1)
                return 0;
            const std::size_t kind = value(kExtraSamples, 0);
            return kind <= 2 ? kind : 0;
        }
        bool isKnown() const
        {
            const std::size_t compression = value(kCompression, kPlain);
            const bool whole = bits_ == 8 || bits_ == 16;
            const bool packs
                = compression == kPlain || compression == kCodes || compression == kPackBits;
            const bool predicts = value(kPredictor, 1) == 2;
            const bool layout = value(kPlanar, 1) == 1 && (!predicts || bits_ == 8);
            if (samples_ > 4)
                return false;
            for (std::size_t i = 1; i < countOf(kBits) && i < samples_; ++i) {
                if (value(kBits, 0, i) != bits_)
                    return false;
            }
            if (photometric_ == kRGB)
                return packs && layout && whole && (samples_ == 3 || samples_ == 4);
            const bool small = bits_ == 1 || bits_ == 2 || bits_ == 4 || bits_ == 8;
            if (photometric_ == kPalette)
                return packs && layout && small && samples_ == 1
                    && countOf(kColorMap) >= std::size_t { 3 } << bits_;
            return photometric_ <= kBlackIsZero && packs && layout
                && ((samples_ == 1 && (small || whole)) || (samples_ == 2 && whole));
        }
        std::vector<std::uint8_t> readStrip(
            std::size_t strip, std::size_t size, std::size_t& packedLeft) const
        {
            const std::size_t compression = value(kCompression, kPlain);
            const std::size_t at = value(kStripOffsets, 0, strip);
            const std::size_t told = value(kStripCounts, compression == kPlain ? size : 0, strip);
            const auto packed = bytes_.part(at, told);
            std::vector<std::uint8_t> plain;
            if (compression != kPlain) {
                if (packed.size() > packedLeft)
                    return plain;
                packedLeft -= packed.size();
            }
            if (compression == kPlain) {
                const auto* bytes = reinterpret_cast<const std::uint8_t*>(packed.data());
                plain.assign(bytes, bytes + std::min(size, packed.size()));
            } else if (compression == kPackBits)
                plain = unpackBits(packed, size);
            else
                plain = unpackCodes(packed, 8, CodeOrder::highBitsFirst, size);
            if (value(kPredictor, 1) == 2) {
                for (std::size_t i = 0; i < plain.size(); ++i) {
                    if (i % stride_ >= samples_)
                        plain[i] = static_cast<std::uint8_t>(plain[i] + plain[i - samples_]);
                }
            }
            return plain;
        }
        /// Answers a sample of a row as 0 to 255, of palettes as its index.
        std::uint32_t sample(const std::uint8_t* row, std::size_t index) const
        {
            if (bits_ == 8)
                return row[index];
            if (bits_ == 16)
                return row[index * 2 + (bigEndian_ ? 0 : 1)]; // the upper half
            const std::size_t bit = index * bits_;
            const std::uint32_t greatest = (1u << bits_) - 1;
            const std::uint32_t raw = row[bit / 8] >> (8 - bits_ - bit % 8) & greatest;
            return photometric_ == kPalette ? raw : raw * 255 / greatest;
        }
        void convert(std::uint32_t* out, const std::uint8_t* row)
        {
            if (photometric_ == kPalette && palette_.empty())
                readPalette();
            const std::size_t kind = alphaKind();
            for (std::size_t x = 0; x < width_; ++x) {
                const std::size_t at = x * samples_;
                if (photometric_ == kPalette) {
                    out[x] = palette_[sample(row, at)];
                    continue;
                }
                const std::uint32_t alpha = kind ? sample(row, at + samples_ - 1) : 255;
                const std::uint32_t most = kind == 1 ? alpha : 255; // no colour exceeds its alpha
                const auto part = [&](std::size_t i) {
                    const std::uint32_t level = sample(row, at + i);
                    return std::min(most, photometric_ == kWhiteIsZero ? 255 - level : level);
                };
                out[x] = photometric_ == kRGB ? plainPixel(part(0), part(1), part(2), alpha)
                                              : plainPixel(part(0), part(0), part(0), alpha);
            }
        }
        void readPalette()
        {
            const std::size_t count = std::size_t { 1 } << bits_;
            for (std::size_t i = 0; i < count; ++i) {
                const auto part = [&](std::size_t plane) {
                    return static_cast<std::uint32_t>(
                        value(kColorMap, 0, plane * count + i) >> 8 & 0xFF);
                };
                palette_.push_back(plainPixel(part(0), part(1), part(2), 255));
            }
        }
        double dotsPerInch() const
        {
            const auto found = entries_.find(kResolutionX);
            if (found == entries_.end() || bytes_.half(found->second + 2) != kRational)
                return 72;
            const std::size_t at = bytes_.word(found->second + 8);
            const double number = bytes_.word(at);
            const double over = bytes_.word(at + 4);
            const double unit = value(kResolutionUnit, 2) == 3 ? 2.54 : 1;
            const double dots = over > 0 ? number / over * unit : 0;
            return value(kResolutionUnit, 2) == 1 || !(dots >= 1) || dots > 1e6 ? 72 : dots;
        }

        const FileBytes& bytes_;
        bool bigEndian_;
        std::map<unsigned, std::size_t> entries_; // where in the file
        std::size_t next_ = 0;
        std::size_t width_ = 0;
        std::size_t height_ = 0;
        std::size_t bits_ = 0;
        std::size_t samples_ = 0;
        std::size_t photometric_ = 0;
        std::size_t stride_ = 0;
        std::vector<std::uint32_t> palette_;
    };

    // ---- writing

    /// Packs a row: runs of three and more as runs, everything else as it is.
    void packBits(std::string& out, std::string_view row)
    {
        constexpr std::size_t kLongest = 128;
        const auto runAt = [&](std::size_t at) {
            std::size_t length = 1;
            while (at + length < row.size() && length < kLongest && row[at + length] == row[at])
                ++length;
            return length;
        };
        for (std::size_t at = 0; at < row.size();) {
            if (const std::size_t run = runAt(at); run >= 3) {
                out.push_back(static_cast<char>(1 - static_cast<int>(run)));
                out.push_back(row[at]);
                at += run;
                continue;
            }
            std::size_t length = 0;
            while (at + length < row.size() && length < kLongest && runAt(at + length) < 3)
                ++length;
            out.push_back(static_cast<char>(length - 1));
            out += row.substr(at, length);
            at += length;
        }
    }

    constexpr std::size_t kMostBytes
        = std::numeric_limits<std::uint32_t>::max(); // places have 32 bits

    /// Answers how many bytes the pixels of pictures have that are not packed.
    std::size_t plainLength(std::span<const ImageFile> pictures)
    {
        std::size_t length = 0;
        for (const ImageFile& picture : pictures)
            length += picture.image->width() * picture.image->height() * 4;
        return length;
    }

    /// Builds a little-endian file with one strip a picture.
    class TIFFWriter {
    public:
        void add(const ImageFile& picture, bool packs)
        {
            const CGImage& image = *picture.image;
            const std::size_t strip = out_.size();
            addPixels(image, packs);
            const std::size_t length = out_.size() - strip;
            align();
            const std::size_t extras = out_.size();
            for (int i = 0; i < 4; ++i)
                addNumber(8, 2);
            for (int i = 0; i < 2; ++i) {
                addNumber(static_cast<std::uint32_t>(
                              std::lround(std::clamp(picture.dotsPerInch, 1.0, 1e6) * 1000)),
                    4);
                addNumber(1000, 4);
            }
            patch(link_, out_.size());
            const std::uint32_t entries[][4] = {
                { kWidth, kLong, 1, narrow(image.width()) },
                { kHeight, kLong, 1, narrow(image.height()) }, { kBits, kShort, 4, narrow(extras) },
                { kCompression, kShort, 1, packs ? kPackBits : kPlain },
                { kPhotometric, kShort, 1, kRGB }, { kStripOffsets, kLong, 1, narrow(strip) },
                { kSamples, kShort, 1, 4 }, { kRowsPerStrip, kLong, 1, narrow(image.height()) },
                { kStripCounts, kLong, 1, narrow(length) },
                { kResolutionX, kRational, 1, narrow(extras + 8) },
                { kResolutionY, kRational, 1, narrow(extras + 16) }, { kPlanar, kShort, 1, 1 },
                { kResolutionUnit, kShort, 1, 2 },
                { kExtraSamples, kShort, 1, 1 }, // alpha, colours multiplied by it
            };
            addNumber(static_cast<std::uint32_t>(std::size(entries)), 2);
            for (const auto& [tag, type, count, value] : entries) {
                addNumber(tag, 2);
                addNumber(type, 2);
                addNumber(count, 4);
                addNumber(value, 4);
            }
            link_ = out_.size();
            addNumber(0, 4);
        }
        std::size_t length() const { return out_.size(); }
        std::string take() { return std::move(out_); }

    private:
        static std::uint32_t narrow(std::size_t number)
        {
            return static_cast<std::uint32_t>(number);
        }
        void addNumber(std::uint32_t value, int bytes)
        {
            for (int i = 0; i < bytes; ++i)
                out_.push_back(static_cast<char>(value >> 8 * i));
        }
        void patch(std::size_t at, std::size_t value)
        {
            for (std::size_t i = 0; i < 4; ++i)
                out_[at + i] = static_cast<char>(value >> 8 * i);
        }
        void align()
        {
            if (out_.size() % 2)
                out_.push_back(0);
        }
        void addPixels(const CGImage& image, bool packs)
        {
            std::string row(image.width() * 4, 0);
            for (std::size_t y = 0; y < image.height(); ++y) {
                const std::uint32_t* const pixels = image.pixels() + y * image.width();
                for (std::size_t x = 0; x < image.width(); ++x) {
                    const std::uint32_t p = pixels[x];
                    for (int i = 0; i < 4; ++i)
                        row[x * 4 + static_cast<std::size_t>(i)]
                            = static_cast<char>(p >> (i == 3 ? 24 : 16 - 8 * i));
                }
                if (packs)
                    packBits(out_, row);
                else
                    out_ += row;
            }
        }

        std::string out_ { "II\x2A\0\0\0\0\0", 8 };
        std::size_t link_ = 4; // where the place of the next directory goes
    };

}

ImageFiles decodeTIFF(std::span<const std::byte> bytes)
{
    constexpr std::size_t kMostPictures = 256;
    constexpr std::size_t kMostReadings = 4; // of a byte: strips may share some, not all of them
    const bool bigEndian = bytes[0] == std::byte { 'M' };
    const FileBytes file { bytes, bigEndian };
    ImageFiles files;
    std::size_t used = 0;
    std::size_t packedLeft = kMostReadings * bytes.size();
    std::size_t at = file.word(4);
    std::set<std::size_t> seen; // each directory is read once
    while (at != 0 && files.pictures.size() < kMostPictures && seen.insert(at).second) {
        Directory directory(file, at, bigEndian);
        ImageFile picture = directory.read(kMostPixels - used, packedLeft);
        if (file.failed() || !picture.image)
            break;
        used += picture.image->width() * picture.image->height();
        files.pictures.push_back(std::move(picture));
        at = directory.next();
    }
    return files;
}

std::string encodeTIFF(std::span<const ImageFile> pictures, bool packs)
{
    if (pictures.empty() || (!packs && plainLength(pictures) > kMostBytes))
        return {};
    TIFFWriter writer;
    for (const ImageFile& picture : pictures) {
        writer.add(picture, packs);
        if (writer.length() > kMostBytes)
            return {};
    }
    return writer.take();
}

}
