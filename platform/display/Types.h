// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "foundation/NSGeometry.h"

namespace brindle::display {

/// Names one surface for the life of the process: positive, never given twice.
using SurfaceId = std::uint32_t;

/// The modifier keys and states of an event, with the bit positions that events have everywhere.
using Modifiers = std::uint64_t;
inline constexpr Modifiers kCapsLock = Modifiers { 1 } << 16;
inline constexpr Modifiers kShift = Modifiers { 1 } << 17;
inline constexpr Modifiers kControl = Modifiers { 1 } << 18;
inline constexpr Modifiers kOption = Modifiers { 1 } << 19;
inline constexpr Modifiers kCommand = Modifiers { 1 } << 20;
inline constexpr Modifiers kKeypad = Modifiers { 1 } << 21; ///< key of the keypad, or an arrow
inline constexpr Modifiers kFunction = Modifiers { 1 } << 23; ///< key without a printable character

/// A rectangle of whole device pixels: `left` and `top` inside, `right` and `bottom` just outside. y down.
struct PixelRect {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;

    constexpr int width() const { return right - left; }
    constexpr int height() const { return bottom - top; }
    constexpr bool isEmpty() const { return left >= right || top >= bottom; }
    friend bool operator==(const PixelRect&, const PixelRect&) = default;
};

/// The part that two rectangles share; empty when they share none.
constexpr PixelRect intersection(PixelRect a, PixelRect b)
{
    return { a.left > b.left ? a.left : b.left, a.top > b.top ? a.top : b.top,
        a.right < b.right ? a.right : b.right, a.bottom < b.bottom ? a.bottom : b.bottom };
}

/// An extent in device pixels.
struct PixelSize {
    int width = 0;
    int height = 0;
    friend bool operator==(const PixelSize&, const PixelSize&) = default;
};

/// A lent image in memory; its owner outlives it.
/// - Shape: `height` rows, top row first, `stride` bytes apart; a pixel is a native 32-bit word with alpha in the
///   top byte, then red, green, blue, each multiplied by alpha.
struct Pixels {
    const std::uint32_t* data = nullptr;
    int width = 0; ///< device pixels
    int height = 0; ///< device pixels
    std::ptrdiff_t stride = 0; ///< bytes, a multiple of 4

    const std::uint32_t* row(int y) const
    {
        return reinterpret_cast<const std::uint32_t*>(
            reinterpret_cast<const std::byte*>(data) + y * stride);
    }
};

/// Which physical key carries the Command flag; the Control flag sits on the other one.
enum class CommandKey { control, super };

/// One screen. Rectangles are in points, y up, (0, 0) at the bottom-left of the primary screen.
struct Screen {
    CGRect frame;
    CGRect visibleFrame; ///< `frame` without what panels and docks have reserved
    double scale = 1; ///< device pixels for one point; need not be whole
    std::string name;
    bool primary = false;
    friend bool operator==(const Screen&, const Screen&) = default;
};

/// What a surface is to the desktop; decides its decoration, focus and place among others.
enum class SurfaceKind { normal, utility, dialog, modal, dock, popup, tooltip };

/// What the desktop has done to a surface.
struct SurfaceState {
    bool minimised = false;
    bool zoomed = false;
    bool fullScreen = false;
    friend bool operator==(const SurfaceState&, const SurfaceState&) = default;
};

/// The side or corner that a resize pulls at.
enum class ResizeEdge { top, topRight, right, bottomRight, bottom, bottomLeft, left, topLeft };

/// The shapes a pointer can have.
enum class Cursor {
    arrow,
    iBeam,
    pointingHand,
    openHand,
    closedHand,
    crosshair,
    resizeLeftRight,
    resizeUpDown,
    resizeTopLeftBottomRight,
    resizeTopRightBottomLeft,
    notAllowed,
    wait,
    hidden,
};

/// The part of the screen's edge that a dock keeps free of other windows.
struct Strut {
    enum class Edge { top, bottom, left, right };
    Edge edge = Edge::top;
    double thickness = 0; ///< points, measured from the edge of the surface's screen
    double start = 0; ///< points along the edge, in screen coordinates
    double end = 0; ///< points along the edge, just outside
    friend bool operator==(const Strut&, const Strut&) = default;
};

/// How a surface stands to the screen edge that it wants to keep free.
enum class StrutStanding {
    none, ///< nothing is reserved: no strut, not shown, or not at the edge
    atEdge,
    belowPanel, ///< moved in from the edge, which something else had before
    screenBeyond, ///< another screen lies beyond the edge, so nothing can be reserved
    noManager, ///< nobody keeps other windows away
};

/// What a display has done so far; for tests and measurements.
struct Counters {
    std::uint64_t presents = 0; ///< calls of `Surface::present` that had something to show
    std::uint64_t presentedPixels = 0;
    std::uint64_t beeps = 0;
    std::uint64_t errors = 0; ///< errors the display server reported for our requests
    std::uint64_t malformed
        = 0; ///< replies, events and properties that were too short or made no sense
};

}
