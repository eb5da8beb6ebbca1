// SPDX-License-Identifier: Apache-2.0
// Lists in replies and events of the X server: devices, valuators, monitors, the work area, settings. The first byte chooses
// the list, the second a count that the list claims, the third another; the rest is what came.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <span>
#include <vector>

#include "display/x11/RepliesPrivate.h"

using namespace brindle::display;

namespace {

/// Reads what other programs keep free of a screen, and what is left of it: 1 for a strut.
std::size_t freePartFrom(const std::vector<std::uint32_t>& words, unsigned width, unsigned height)
{
    const std::uint32_t desktop[] = { 0 };
    const PixelSize picture { static_cast<int>(width) * 64, static_cast<int>(height) * 64 };
    const PixelRect monitor { 0, 0, picture.width, picture.height };
    const std::optional<PixelRect> area = workAreaFrom(words, desktop);
    const auto half = std::span(words).subspan(words.size() / 2);
    std::optional<StrutValues> strut = strutFrom(half, {});
    if (!strut)
        strut = strutFrom({}, words);
    const std::span<const StrutValues> struts(strut ? &*strut : nullptr, strut ? 1 : 0);
    const PixelRect visible = visiblePart(monitor, picture, area.value_or(monitor), struts);
    if (!monitor.isEmpty() && visible.isEmpty())
        std::abort(); // something is always left
    return strut ? 1 : 0;
}

}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    constexpr std::size_t kHead = 3;
    if (size < kHead)
        return 0;
    // A copy of its own size: reading past the end is seen.
    const std::vector<std::byte> bytes(reinterpret_cast<const std::byte*>(data) + kHead,
        reinterpret_cast<const std::byte*>(data) + size);
    std::vector<std::uint32_t> words(bytes.size() / 4);
    if (!words.empty())
        std::memcpy(words.data(), bytes.data(), words.size() * 4);

    std::uint64_t malformed = 0;
    std::size_t found = 0;
    switch (data[0] % 6) {
    case 0:
        found = parseScrollAxes(bytes, data[1], malformed).size();
        break;
    case 1:
        found = parseMonitors(bytes, data[1], malformed).size();
        break;
    case 2:
        found = parseValuators(bytes, data[1], data[2], malformed).size();
        break;
    case 3: {
        const std::uint32_t desktop[] = { data[1] };
        found = workAreaFrom(words, desktop).has_value() ? 1 : 0;
        break;
    }
    case 4:
        found = freePartFrom(words, data[1], data[2]);
        break;
    default: {
        const std::vector<NumberSetting> settings = parseSettings(bytes, malformed);
        found = settings.size();
        if (const auto scale = scaleFrom(settings); scale && !(*scale > 0))
            std::abort();
        break;
    }
    }
    // Nothing can be found that did not take room in what came.
    if (found > bytes.size() || malformed > 1)
        std::abort();
    return 0;
}
