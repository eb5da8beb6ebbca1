// SPDX-License-Identifier: Apache-2.0
// Reads UTF-16 as a colour: what is read is bounded, and its text has seven characters.

#include <cstdint>
#include <cstdlib>
#include <string>

#include "foundation/NSString.h"
#include "graphics/NSColor+DKAdditions.h"

using namespace brindle;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::u16string units;
    for (std::size_t i = 0; i + 1 < size; i += 2)
        units += static_cast<char16_t>(data[i] | data[i + 1] << 8);
    const Ref<NSString> text = stringFrom(units);
    const Ref<NSColor> color = colorWithHexString(NSColor::cls(), text.get());
    const bool isExpected = units.size() >= 7 && units[0] == '#';
    if (static_cast<bool>(color) != isExpected)
        std::abort();
    if (!color)
        return 0;
    CGFloat parts[4] {};
    color->getComponents(parts);
    for (const CGFloat part : parts) {
        if (!(part >= 0 && part <= 1))
            std::abort();
    }
    if (hexString(color)->length() != 7)
        std::abort();
    return 0;
}
