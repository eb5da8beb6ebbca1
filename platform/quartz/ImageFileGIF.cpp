// SPDX-License-Identifier: Apache-2.0
#include "ImageFilesPrivate.h"

#include <array>
#include <cstring>

namespace brindle::quartz {

namespace {

    constexpr std::uint32_t kClear = 0;

    /// What stands before a frame: how it is shown.
    struct Control {
        unsigned disposal = 0;
        double seconds = 0;
        int transparent = -1;
    };

    struct Frame {
        std::size_t left = 0;
        std::size_t top = 0;
        std::size_t width = 0;
        std::size_t height = 0;
        bool interlaced = false;
        std::array<std::uint32_t, 256> palette {};
    };

    /// Reads "Graphics Interchange Format, Version 89a" (1990).
    class GIFReader {
    public:
        explicit GIFReader(std::span<const std::byte> bytes)
            : bytes_(bytes)
        {
        }

        ImageFiles read()
        {
            width_ = bytes_.half(6);
            height_ = bytes_.half(8);
            if (width_ == 0 || height_ == 0 || height_ > kMostPixels / width_)
                return {};
            const std::uint32_t packed = bytes_.byte(10);
            at_ = 13;
            if (packed & 0x80)
                readPalette(global_, packed & 7);
            canvas_.assign(width_ * height_, kClear);
            while (!bytes_.failed() && readBlock()) { }
            files_.isAnimation = files_.pictures.size() > 1;
            return std::move(files_);
        }

    private:
        void readPalette(std::array<std::uint32_t, 256>& palette, unsigned sizeBits)
        {
            const std::size_t count = std::size_t { 2 } << sizeBits;
            for (std::size_t i = 0; i < count; ++i, at_ += 3)
                palette[i]
                    = plainPixel(bytes_.byte(at_), bytes_.byte(at_ + 1), bytes_.byte(at_ + 2), 255);
        }
        /// Answers the bytes of the blocks that follow, put together.
        std::vector<std::byte> readBlocks()
        {
            std::vector<std::byte> all;
            while (const std::uint32_t length = bytes_.byte(at_++)) {
                const auto part = bytes_.part(at_, length);
                all.insert(all.end(), part.begin(), part.end());
                at_ += length;
                if (bytes_.failed())
                    break;
            }
            return all;
        }
        bool readBlock()
        {
            if (at_ >= bytes_.size())
                return false; // without the mark of the end
            switch (bytes_.byte(at_++)) {
            case 0x21:
                readExtension();
                return true;
            case 0x2C:
                return readFrame();
            default:
                return false;
            }
        }
        void readExtension()
        {
            const std::uint32_t label = bytes_.byte(at_++);
            const std::vector<std::byte> content = readBlocks();
            const FileBytes numbers { content };
            if (label == 0xF9 && content.size() >= 4) {
                const std::uint32_t packed = numbers.byte(0);
                control_.disposal = packed >> 2 & 7;
                control_.seconds = numbers.half(1) / 100.0;
                control_.transparent = packed & 1 ? static_cast<int>(numbers.byte(3)) : -1;
            } else if (label == 0xFF && content.size() >= 14
                && std::memcmp(content.data(), "NETSCAPE2.0\1", 12) == 0)
                files_.loops = static_cast<int>(numbers.half(12));
        }
        bool readFrame()
        {
            Frame frame { bytes_.half(at_), bytes_.half(at_ + 2), bytes_.half(at_ + 4),
                bytes_.half(at_ + 6), false, global_ };
            const std::uint32_t packed = bytes_.byte(at_ + 8);
            frame.interlaced = packed & 0x40;
            at_ += 9;
            if (packed & 0x80)
                readPalette(frame.palette, packed & 7);
            const std::uint32_t bits = bytes_.byte(at_++);
            const std::vector<std::byte> codes = readBlocks();
            if (bytes_.failed() || bits < 1 || bits > 8 || frame.left + frame.width > width_
                || frame.top + frame.height > height_
                || (files_.pictures.size() + 1 + spareCanvases()) * width_ * height_ > kMostPixels)
                return false;
            const std::size_t count = frame.width * frame.height;
            const auto indices = unpackCodes(codes, bits, CodeOrder::lowBitsFirst, count);
            if (indices.size() < count)
                return false;
            show(frame, indices);
            return true;
        }
        /// Answers whether nothing stands behind the frame that was just read.
        bool isLast() const
        {
            constexpr std::byte kEnd { 0x3B };
            return at_ >= bytes_.size() || bytes_.part(at_, 1)[0] == kEnd;
        }
        /// How many pictures are in memory beside the one that a frame becomes.
        std::size_t spareCanvases() const
        {
            if (isLast())
                return 0; // it takes the canvas
            return control_.disposal == 3 ? 2 : 1;
        }
        /// Paints a frame, keeps what is to be seen, and leaves what the next frame is painted on.
        void show(const Frame& frame, const std::vector<std::uint8_t>& indices)
        {
            std::vector<std::uint32_t> before;
            const bool isLast = this->isLast();
            if (control_.disposal == 3 && !isLast)
                before = canvas_;
            std::size_t from = 0;
            for (std::size_t i = 0; i < frame.height; ++i) {
                const std::size_t y = frame.interlaced ? interlacedRow(i, frame.height) : i;
                std::uint32_t* out = canvas_.data() + (frame.top + y) * width_ + frame.left;
                for (std::size_t x = 0; x < frame.width; ++x, ++from, ++out) {
                    if (indices[from] != control_.transparent)
                        *out = frame.palette[indices[from]];
                }
            }
            std::vector<std::uint32_t> shown = isLast ? std::move(canvas_) : canvas_;
            files_.pictures.push_back(
                { imageTaking(std::move(shown), width_, height_, true), 72, control_.seconds });
            if (isLast)
                return;
            if (control_.disposal == 3)
                canvas_ = std::move(before);
            else if (control_.disposal == 2) {
                for (std::size_t y = 0; y < frame.height; ++y)
                    std::fill_n(canvas_.begin()
                            + static_cast<std::ptrdiff_t>((frame.top + y) * width_ + frame.left),
                        frame.width, kClear);
            }
            control_ = {};
        }
        /// Rows come in four passes: every eighth, every eighth between them, every fourth, every second.
        static std::size_t interlacedRow(std::size_t index, std::size_t height)
        {
            constexpr std::size_t kFirst[] = { 0, 4, 2, 1 };
            constexpr std::size_t kStep[] = { 8, 8, 4, 2 };
            for (int pass = 0; pass < 4; ++pass) {
                const std::size_t rows = height > kFirst[pass]
                    ? (height - kFirst[pass] + kStep[pass] - 1) / kStep[pass]
                    : 0;
                if (index < rows)
                    return kFirst[pass] + index * kStep[pass];
                index -= rows;
            }
            return 0;
        }

        FileBytes bytes_;
        std::size_t at_ = 0;
        std::size_t width_ = 0;
        std::size_t height_ = 0;
        std::array<std::uint32_t, 256> global_ {};
        std::vector<std::uint32_t> canvas_;
        Control control_;
        ImageFiles files_;
    };

}

ImageFiles decodeGIF(std::span<const std::byte> bytes) { return GIFReader(bytes).read(); }

}
