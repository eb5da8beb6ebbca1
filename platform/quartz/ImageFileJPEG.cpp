// SPDX-License-Identifier: Apache-2.0
#include "ImageFilesPrivate.h"

#include <algorithm>
#include <cmath>
#include <csetjmp>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include <jpeglib.h>

#include "foundation/LateLibrary.h"

namespace brindle::quartz {

namespace {

    /// Answers the library; nullptr where the machine has none, or one of old that does not write to memory.
    void* library()
    {
        static void* const opened = [] {
            // From 70 on the headers count in tenths.
            constexpr int kNumber
                = JPEG_LIB_VERSION < 70 ? JPEG_LIB_VERSION : JPEG_LIB_VERSION / 10;
            void* const found = late::openLibrary("libjpeg.so." + std::to_string(kNumber));
            return late::findFunction(found, "jpeg_mem_dest") ? found : nullptr;
        }();
        return opened;
    }

#define JPEG(name) BRINDLE_LATE(library(), name)

    /// What the library calls when it gives up: it must not return, so it jumps back.
    struct Failure {
        jpeg_error_mgr manager {};
        std::jmp_buf back;

        Failure()
        {
            JPEG(jpeg_std_error)(&manager);
            manager.error_exit = [](j_common_ptr info) {
                std::longjmp(reinterpret_cast<Failure*>(info->err)->back, 1);
            };
            manager.output_message = [](j_common_ptr) {};
            // A warning (below zero) says that bytes are missing or wrong, and that grey will stand in for them.
            manager.emit_message = [](j_common_ptr info, int level) {
                if (level < 0)
                    info->err->error_exit(info);
            };
        }
    };

    // The two steps below hold no objects that a jump would forget to end: everything lives in the reader.
    struct Decompressor {
        // Each pass over a progressive picture costs time for all of it; real ones have about ten.
        static constexpr int kMostPasses = 64;

        Failure failure;
        jpeg_progress_mgr progress {};
        jpeg_decompress_struct info {};
        std::vector<std::uint32_t> pixels;

        Decompressor() { info.err = &failure.manager; }
        ~Decompressor() { JPEG(jpeg_destroy_decompress)(&info); }
        Decompressor(const Decompressor&) = delete;
        Decompressor& operator=(const Decompressor&) = delete;

        bool begin(std::span<const std::byte> bytes)
        {
            if (setjmp(failure.back))
                return false;
            const auto* data = reinterpret_cast<const unsigned char*>(bytes.data());
            JPEG(jpeg_CreateDecompress)(&info, JPEG_LIB_VERSION, sizeof info);
            JPEG(jpeg_mem_src)(&info, data, bytes.size());
            JPEG(jpeg_read_header)(&info, TRUE);
            info.out_color_space = JCS_EXT_BGRA;
            info.progress = &progress;
            progress.progress_monitor = [](j_common_ptr common) {
                if (reinterpret_cast<j_decompress_ptr>(common)->input_scan_number > kMostPasses)
                    common->err->error_exit(common);
            };
            // A block of 64 pixels takes some bits even where nothing changes.
            constexpr std::size_t kMostPixelsAByte = 4096;
            const std::size_t width = info.image_width;
            const std::size_t most = std::min(kMostPixels, bytes.size() * kMostPixelsAByte);
            return width > 0 && info.image_height > 0 && info.image_height <= most / width
                && JPEG(jpeg_start_decompress)(&info);
        }

        bool read()
        {
            if (setjmp(failure.back))
                return false;
            while (info.output_scanline < info.output_height) {
                auto* row = reinterpret_cast<JSAMPROW>(
                    pixels.data() + std::size_t { info.output_scanline } * info.output_width);
                JPEG(jpeg_read_scanlines)(&info, &row, 1);
            }
            JPEG(jpeg_finish_decompress)(&info); // reads what is left up to the end mark
            return true;
        }

        double dotsPerInch() const
        {
            if (info.X_density == 0 || info.density_unit == 0)
                return 72;
            return info.density_unit == 2 ? info.X_density * 2.54 : info.X_density;
        }
    };

    struct JPEGWriter {
        Failure failure;
        jpeg_compress_struct info {};
        unsigned char* bytes = nullptr;
        unsigned long size = 0;

        JPEGWriter() { info.err = &failure.manager; }
        ~JPEGWriter()
        {
            JPEG(jpeg_destroy_compress)(&info);
            std::free(bytes);
        }
        JPEGWriter(const JPEGWriter&) = delete;
        JPEGWriter& operator=(const JPEGWriter&) = delete;

        bool write(const std::vector<std::uint32_t>& pixels, unsigned width, unsigned height,
            int quality, double dotsPerInch)
        {
            if (setjmp(failure.back))
                return false;
            JPEG(jpeg_CreateCompress)(&info, JPEG_LIB_VERSION, sizeof info);
            JPEG(jpeg_mem_dest)(&info, &bytes, &size);
            info.image_width = width;
            info.image_height = height;
            info.input_components = 4;
            info.in_color_space = JCS_EXT_BGRX;
            JPEG(jpeg_set_defaults)(&info);
            JPEG(jpeg_set_quality)(&info, quality, TRUE);
            info.density_unit = 1; // the inch
            info.X_density = info.Y_density = static_cast<UINT16>(
                std::clamp(std::lround(std::min(dotsPerInch, 65535.0)), 1L, 65535L));
            JPEG(jpeg_start_compress)(&info, TRUE);
            while (info.next_scanline < height) {
                auto* row = reinterpret_cast<JSAMPROW>(const_cast<std::uint32_t*>(pixels.data())
                    + std::size_t { info.next_scanline } * width);
                JPEG(jpeg_write_scanlines)(&info, &row, 1);
            }
            JPEG(jpeg_finish_compress)(&info);
            return true;
        }
    };

}

ImageFile decodeJPEG(std::span<const std::byte> bytes)
{
    if (!library())
        return {};
    Decompressor reader;
    if (!reader.begin(bytes))
        return {};
    const std::size_t width = reader.info.output_width;
    const std::size_t height = reader.info.output_height;
    reader.pixels.resize(width * height);
    if (!reader.read())
        return {};
    return { imageTaking(std::move(reader.pixels), width, height, false), reader.dotsPerInch() };
}

std::string encodeJPEG(const CGImage* image, double quality, double dotsPerInch)
{
    if (!library() || !image || image->width() > JPEG_MAX_DIMENSION
        || image->height() > JPEG_MAX_DIMENSION)
        return {};
    const std::size_t count = image->width() * image->height();
    std::vector<std::uint32_t> pixels(image->pixels(), image->pixels() + count);
    for (std::uint32_t& pixel : pixels)
        pixel += (255 - (pixel >> 24)) * 0x010101u; // white shines through
    JPEGWriter writer;
    const double bounded = quality > 0 ? (quality < 1 ? quality : 1) : 0;
    if (!writer.write(pixels, static_cast<unsigned>(image->width()),
            static_cast<unsigned>(image->height()), static_cast<int>(bounded * 99) + 1,
            dotsPerInch))
        return {};
    return { reinterpret_cast<const char*>(writer.bytes), writer.size };
}

}
