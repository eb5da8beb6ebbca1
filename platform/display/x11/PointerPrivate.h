// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <vector>

#include "ConnectionPrivate.h"
#include "RepliesPrivate.h"

namespace brindle::display {

/// What the pointer did, before it is known which surface it concerns. Places are in pixels, y down.
struct PointerAction {
    enum class Kind { none, press, release, move, scroll, enter, leave, releaseAnywhere };
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

    /// Asks to be told of the left button's release wherever it happens and whoever has the pointer, as `releaseAnywhere`.
    /// The core events know nothing of that.
    void watchRelease(bool watch);
    /// Asks the server whether the left button is down.
    bool isLeftDown() const;

private:
    struct AxisState {
        ScrollAxis axis;
        double value = 0;
        bool known = false; // false after somebody else may have scrolled
    };

    void select(xcb_window_t window, std::uint32_t events);
    PointerAction readInput2(const xcb_generic_event_t& event);
    PointerAction readButton2(const xcb_input_button_press_event_t& event, std::size_t size);
    PointerAction readRaw2(const xcb_input_raw_button_press_event_t& event, std::size_t size);
    PointerAction readCrossing2(const xcb_input_enter_event_t& event, std::size_t size);
    PointerAction readCore(const xcb_generic_event_t& event);
    void readScroll(
        const xcb_input_button_press_event_t& event, std::size_t size, PointerAction& action);
    void ensureDevices();
    void forgetScrollValues();

    Connection& connection_;
    std::vector<AxisState> axes_;
    std::uint8_t major_ = 0;
    std::optional<xcb_input_device_id_t> ours_; // the pointer that a grab takes
    bool devicesKnown_ = false;
};

}
