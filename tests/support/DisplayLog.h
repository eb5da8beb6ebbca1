// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "display/Display.h"

namespace brindle::display {

/// Answers the name of an event's kind.
const char* nameOf(Event::Kind kind);

/// Takes all events that wait.
std::vector<Event> drain(Display& display);

/// Takes all events that wait and writes them as "kind surface, kind surface", surfaces as 1, 2, 3 in the order of
/// `surfaces`, 0 for none of them.
std::string drainToText(Display& display, const std::vector<const Surface*>& surfaces);

/// An image of one colour, to present.
class SolidImage {
public:
    SolidImage(PixelSize size, std::uint32_t color);
    Pixels pixels() const;
    PixelRect bounds() const { return { 0, 0, size_.width, size_.height }; }

private:
    PixelSize size_;
    std::vector<std::uint32_t> words_;
};

/// Presents one colour over a whole surface.
void fill(Surface& surface, std::uint32_t color);

}
