// SPDX-License-Identifier: Apache-2.0
#include "support/DisplayLog.h"

#include <algorithm>
#include <array>

namespace brindle::display {

const char* nameOf(Event::Kind kind)
{
    static constexpr std::array<const char*, 21> kNames { "none", "pointerDown", "pointerUp",
        "pointerMoved", "pointerEntered", "pointerLeft", "scroll", "keyDown", "keyUp",
        "modifiersChanged", "focusIn", "focusOut", "frameChanged", "closeRequested", "exposed",
        "stateChanged", "screensChanged", "appearanceChanged", "moveResizeEnded", "grabLost",
        "disconnected" };
    return kNames.at(static_cast<std::size_t>(kind));
}

std::vector<Event> drain(Display& display)
{
    std::vector<Event> events;
    Event event;
    while (display.pollEvent(event))
        events.push_back(event);
    return events;
}

std::string drainToText(Display& display, const std::vector<const Surface*>& surfaces)
{
    std::string text;
    for (const Event& event : drain(display)) {
        const auto found = std::find_if(surfaces.begin(), surfaces.end(),
            [&](const Surface* surface) { return surface->id() == event.surface; });
        const auto number = found == surfaces.end() ? 0 : found - surfaces.begin() + 1;
        text += (text.empty() ? "" : ", ") + std::string(nameOf(event.kind)) + " "
            + std::to_string(number);
    }
    return text;
}

SolidImage::SolidImage(PixelSize size, std::uint32_t color)
    : size_(size)
    , words_(static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height), color)
{
}

Pixels SolidImage::pixels() const
{
    return { words_.data(), size_.width, size_.height,
        static_cast<std::ptrdiff_t>(size_.width) * 4 };
}

void fill(Surface& surface, std::uint32_t color)
{
    const SolidImage image(surface.pixelSize(), color);
    const PixelRect all = image.bounds();
    surface.present(image.pixels(), { &all, 1 });
}

}
