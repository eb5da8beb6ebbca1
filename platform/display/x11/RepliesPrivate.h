// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "display/Strut.h"
#include "display/Types.h"

namespace brindle::display {

/// Reads what the server sends in lists of varying size. None of these believes a count: bytes may be cut off or nonsense,
/// and `malformed` grows by one when they were. What came before the fault is answered.

/// One direction in which a device scrolls, as the server describes it.
struct ScrollAxis {
    std::uint16_t device = 0;
    std::uint16_t number = 0; ///< of the valuator
    bool vertical = true;
    double increment = 1; ///< the valuator's way for one step of a wheel; not 0
};

/// Finds the scroll axes in a list of input devices.
std::vector<ScrollAxis> parseScrollAxes(
    std::span<const std::byte> bytes, std::size_t devices, std::uint64_t& malformed);

/// The new value of one of a device's axes.
struct Valuator {
    std::uint16_t number = 0;
    double value = 0;
};

/// Reads what follows the fixed part of a pointer event: masks of buttons and axes, then the axes' values.
/// - buttonWords, axisWords: the sizes of the masks, in 32-bit words.
std::vector<Valuator> parseValuators(std::span<const std::byte> bytes, std::size_t buttonWords,
    std::size_t axisWords, std::uint64_t& malformed);

/// One monitor of the desktop.
struct Monitor {
    PixelRect frame; ///< never empty
    std::uint32_t name = 0; ///< an atom
};

/// Finds the monitors that show something, the primary one first.
std::vector<Monitor> parseMonitors(
    std::span<const std::byte> bytes, std::size_t monitors, std::uint64_t& malformed);

/// A whole number among the desktop's settings.
struct NumberSetting {
    std::string_view name; ///< lies in the bytes that were read
    std::int32_t value = 0;
};

/// Finds the whole numbers among the settings that a desktop's settings program publishes, in either order of bytes.
std::vector<NumberSetting> parseSettings(
    std::span<const std::byte> bytes, std::uint64_t& malformed);

/// Answers device pixels for one point: the size that such settings want for windows, times the one for text.
/// - Nil: nothing where they say nothing of either.
std::optional<double> scaleFrom(std::span<const NumberSetting> settings);

/// Answers the part of the desktop that docks have left, of a window manager's list of four numbers a desktop.
/// - Nil: nothing when not even the first four are there.
std::optional<PixelRect> workAreaFrom(
    std::span<const std::uint32_t> areas, std::span<const std::uint32_t> currentDesktop);

/// Answers what a window keeps free along the edges of the whole picture, in its numbers with ranges or else those without.
/// - Nil: nothing when it keeps nothing free.
std::optional<StrutValues> strutFrom(
    std::span<const std::uint32_t> partial, std::span<const std::uint32_t> plain);

/// Answers the part of a monitor that is free. The work area is one rectangle for all monitors: where it ends with a strut, only
/// the monitors beside that strut give room; what no strut explains takes room from all.
/// - picture: the size of the whole desktop.
PixelRect visiblePart(const PixelRect& monitor, PixelSize picture, const PixelRect& area,
    std::span<const StrutValues> struts);

}
