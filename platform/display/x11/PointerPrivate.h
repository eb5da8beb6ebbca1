// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <map>
#include <span>
#include <vector>

#include "ConnectionPrivate.h"

namespace brindle::display {

/// One direction in which a device scrolls, as the server describes it.
struct ScrollAxis {
    std::uint16_t device = 0;
    std::uint16_t number = 0; ///< of the valuator
    bool vertical = true;
    double increment = 1; ///< the valuator's way for one step of a wheel
};

/// Finds the scroll axes in a list of input devices.
/// - bytes: the list as the server sends it; may be cut off or nonsense.
/// - malformed: grows by one when it was.
std::vector<ScrollAxis> parseScrollAxes(
    std::span<const std::byte> bytes, std::size_t devices, std::uint64_t& malformed);

/// What the pointer did, before it is known which surface it concerns. Places are in pixels, y down.
struct PointerAction {
    enum class Kind { none, press, release, move, scroll, enter, leave };
    Kind kind = Kind::none;
    xcb_window_t window = XCB_NONE;
    xcb_timestamp_t time = 0;
    double x = 0;
    double y = 0;
    double rootX = 0;
    double rootY = 0;
    std::uint32_t modifiers = 0; ///< the server's mask
    int button = 0; ///< as in `Event`
    double stepsX = 0; ///< of a wheel: to the right
    double stepsY = 0; ///< down
    bool precise = false;
};

/// Reads pointer events: by XInput 2, with smooth scrolling, or the core ones where the server has no more.
class Pointer {
public:
    explicit Pointer(Connection& connection);

    bool usesInput2() const { return major_ != 0; }
    /// Answers the core event mask that a window needs.
    std::uint32_t coreEventMask() const;
    /// Asks for the pointer events of a new window.
    void selectEvents(xcb_window_t window);

    /// Reads an event.
    /// - Returns: kind `none` for an event that is none of ours or changes nothing.
    PointerAction read(const xcb_generic_event_t& event);

    /// Takes all pointer events for a window, or for the window under the pointer where that is ours.
    /// - Returns: a status of the core protocol; 0 is success.
    std::uint8_t tryGrab(xcb_window_t window);
    void ungrab();

private:
    struct AxisState {
        ScrollAxis axis;
        double value = 0;
        bool known = false; // false after somebody else may have scrolled
    };

    PointerAction readInput2(const xcb_generic_event_t& event);
    PointerAction readButton2(const xcb_input_button_press_event_t& event, std::size_t size);
    PointerAction readCrossing2(const xcb_input_enter_event_t& event, std::size_t size);
    PointerAction readCore(const xcb_generic_event_t& event);
    void readScroll(const xcb_input_button_press_event_t& event, PointerAction& action);
    void ensureDevices();
    void forgetScrollValues();

    Connection& connection_;
    std::vector<AxisState> axes_;
    std::uint8_t major_ = 0;
    xcb_input_device_id_t grabbed_ = 0;
    bool devicesKnown_ = false;
};

}
