// SPDX-License-Identifier: Apache-2.0
#include "Fill.h"
#include "Rows.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace brindle::raster {

namespace {

    /// Answers a gradient's pixels along its axis. Colours are mixed before they are multiplied by
    /// alpha.
    class GradientRamp {
    public:
        explicit GradientRamp(const Gradient& gradient)
            : stops_(gradient.stops)
            , start_(gradient.start)
            , scale_(1 / (gradient.end - gradient.start))
        {
        }

        /// - pixel: measured at its middle.
        Pixel at(int pixel)
        {
            const double offset = (pixel + 0.5 - start_) * scale_;
            if (!(offset >= low_ && offset < high_))
                enter(offset);
            const double way = (offset - low_) * segmentScale_;
            const auto part = [way](double from, double step) { return from + step * way; };
            const double alpha = part(from_.alpha, step_.alpha);
            return packPixel(alpha, part(from_.red, step_.red) * alpha,
                part(from_.green, step_.green) * alpha, part(from_.blue, step_.blue) * alpha);
        }

    private:
        /// Finds the two stops around an offset.
        void enter(double offset)
        {
            const auto after = std::ranges::upper_bound(stops_, offset, {}, &GradientStop::offset);
            const bool isFirst = after == stops_.begin();
            const bool isLast = after == stops_.end();
            const GradientStop& low = isFirst ? *after : after[-1];
            const GradientStop& high = isLast ? low : *after;
            low_ = isFirst ? -kBeyond : low.offset;
            high_ = isLast ? kBeyond : high.offset;
            from_ = clamped(low.color);
            const Color to = clamped(high.color);
            step_ = { to.red - from_.red, to.green - from_.green, to.blue - from_.blue,
                to.alpha - from_.alpha };
            segmentScale_ = 1;
            if (isFirst || isLast) {
                step_ = { 0, 0, 0, 0 };
            } else {
                segmentScale_ = 1 / (high.offset - low.offset);
            }
        }

        // Stands for "beyond every stop" and stays finite, because it is multiplied by a step of
        // zero.
        static constexpr double kBeyond = 1e12;

        std::span<const GradientStop> stops_;
        double start_ = 0;
        double scale_ = 1;
        double low_ = 1; // an empty stretch: the first question finds its own
        double high_ = 0;
        double segmentScale_ = 1;
        Color from_;
        Color step_ { 0, 0, 0, 0 };
    };

    /// Blends a row of different pixels that is covered evenly.
    void blendPixels(Pixel* row, const Pixel* source, int count, Pixel coverage, Blend blend)
    {
        if (blend == Blend::over) {
            overSpan(row, count, source, coverage);
            return;
        }
        for (int i = 0; i < count; ++i)
            row[i] = scaled(source[i], coverage) + scaled(row[i], 255 - coverage);
    }

    /// Fills columns that differ, a stretch at a time, so that each colour is worked out only once.
    void fillColumns(const Bitmap& bitmap, const ClippedRect& rect, GradientRamp& ramp, Blend blend)
    {
        constexpr int kStretch = 256;
        std::array<Pixel, kStretch> colors;
        const auto fill = [&](int left, int right, int across) {
            for (int i = left; i < right; ++i)
                colors[static_cast<std::size_t>(i - left)] = ramp.at(i);
            for (int y = rect.touched.top; y < rect.touched.bottom; ++y)
                blendPixels(bitmap.row(y) + left, colors.data(), right - left,
                    coverageByte(across, rect.down.partAt(y)), blend);
        };
        fill(rect.touched.left, rect.fullLeft, rect.across.firstPart);
        for (int left = rect.fullLeft; left < rect.fullRight; left += kStretch)
            fill(left, std::min(left + kStretch, rect.fullRight), EdgeCoverage::kFull);
        fill(rect.fullRight, rect.touched.right, rect.across.lastPart);
    }

}

void fillGradient(const Bitmap& bitmap, const DeviceRect& rect, PixelRect clip,
    const Gradient& gradient, Blend blend)
{
    const ClippedRect clipped(bitmap, rect, clip);
    const double length = gradient.end - gradient.start;
    if (clipped.isEmpty() || gradient.stops.empty() || !std::isfinite(length)
        || !std::isfinite(1 / length))
        return;
    GradientRamp ramp(gradient);
    if (gradient.axis == GradientAxis::horizontal) {
        fillColumns(bitmap, clipped, ramp, blend);
        return;
    }
    for (int y = clipped.touched.top; y < clipped.touched.bottom; ++y)
        blendRow(bitmap.row(y), clipped, clipped.down.partAt(y), ramp.at(y), blend);
}

}
