// SPDX-License-Identifier: Apache-2.0
#include "HeadlessDisplay.h"

#include <algorithm>

#include "HeadlessSurfacePrivate.h"
#include "display/PixelMapping.h"

namespace brindle::display {

namespace {

    std::uint32_t timesByte(std::uint32_t channel, std::uint32_t factor)
    {
        const std::uint32_t product = channel * factor + 128;
        return (product + (product >> 8)) >> 8;
    }

    std::uint32_t timesByteEach(std::uint32_t pixel, std::uint32_t factor)
    {
        std::uint32_t result = 0;
        for (unsigned shift = 0; shift < 32; shift += 8)
            result |= timesByte((pixel >> shift) & 0xFF, factor) << shift;
        return result;
    }

    std::uint32_t over(std::uint32_t above, std::uint32_t below)
    {
        const std::uint32_t rest = 255 - (above >> 24);
        if (rest == 0)
            return above;
        // Colours above their alpha are kept from running over into the next channel.
        const std::uint32_t faded = timesByteEach(below, rest);
        std::uint32_t result = 0;
        for (unsigned shift = 0; shift < 32; shift += 8) {
            const std::uint32_t sum = ((above >> shift) & 0xFF) + ((faded >> shift) & 0xFF);
            result |= std::min<std::uint32_t>(sum, 255) << shift;
        }
        return result;
    }

    struct Layer {
        const Snapshot& contents;
        PixelRect place; // on the screen
        double ratio; // pixels of the contents for one of the screen
        std::uint32_t alpha;
        bool opaque;
    };

    void compose(Snapshot& screen, const Layer& layer)
    {
        const PixelRect visible = intersection(layer.place, { 0, 0, screen.width, screen.height });
        for (int y = visible.top; y < visible.bottom; ++y) {
            const int fromY = static_cast<int>((y - layer.place.top + 0.5) * layer.ratio);
            for (int x = visible.left; x < visible.right; ++x) {
                const int fromX = static_cast<int>((x - layer.place.left + 0.5) * layer.ratio);
                if (fromX >= layer.contents.width || fromY >= layer.contents.height)
                    continue;
                std::uint32_t pixel = layer.contents.at(fromX, fromY);
                if (layer.opaque)
                    pixel |= 0xFF000000;
                if (layer.alpha != 255)
                    pixel = timesByteEach(pixel, layer.alpha);
                std::uint32_t& word = screen.words[static_cast<std::size_t>(y)
                        * static_cast<std::size_t>(screen.width)
                    + static_cast<std::size_t>(x)];
                word = over(pixel, word);
            }
        }
    }

}

Snapshot HeadlessDisplay::snapshot(std::size_t index) const
{
    if (index >= screens_.size())
        return {};
    const Screen& screen = screens_[index];
    const PixelSize size = pixelSizeOf(screen.frame.size, screen.scale);
    Snapshot image { size.width, size.height, {} };
    image.words.assign(
        static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height), background_);

    const PixelMapping mapping { screen.scale,
        saturatedPixel(-screen.frame.origin.x * screen.scale),
        saturatedPixel(NSMaxY(screen.frame) * screen.scale) };
    for (const HeadlessSurface* surface : surfaces_) {
        if (!surface->isVisible() || surface->contents_.words.empty())
            continue;
        compose(image,
            { surface->contents_, mapping.pixels(surface->shownFrame()),
                surface->contentsScale_ / screen.scale,
                static_cast<std::uint32_t>(surface->alpha_ * 255 + 0.5), surface->opaque_ });
    }
    return image;
}

Snapshot HeadlessDisplay::snapshot(const Surface& surface) const
{
    return static_cast<const HeadlessSurface&>(surface).contents_;
}

}
