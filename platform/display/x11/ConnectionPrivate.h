// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "AtomsPrivate.h"
#include "XcbPrivate.h"
#include "display/Types.h"

namespace brindle::display {

/// How a window's pixels are stored. Only formats whose words are those of `Pixels` are used.
struct VisualFormat {
    xcb_visualid_t visual = 0;
    std::uint8_t depth = 0;
};

/// Which extensions the server has, by their first event or major code; 0 when it has not.
struct Extensions {
    std::uint8_t randrEvent = 0;
    std::uint8_t inputMajor = 0;
    std::uint8_t xkbEvent = 0;
    std::uint8_t fixesEvent = 0;
    bool sharedMemory = false; ///< with descriptors (version 1.2)
};

/// What an event tells of, whoever sent it.
inline std::uint8_t codeOf(const xcb_generic_event_t& event) { return event.response_type & 0x7F; }

/// The connection to an X server with what never changes while it lasts.
///
/// After the server has gone requests do nothing and replies are null: no caller has to ask first.
class Connection {
public:
    /// Connects with two round trips after the customary first one, before which `found` is called.
    /// - Nil: when there is no server or no usable colour depth.
    static std::unique_ptr<Connection> tryConnect(
        const std::string& server, const std::function<void()>& found);
    ~Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    xcb_connection_t* raw() const { return raw_; }
    xcb_window_t root() const { return screen_->root; }
    const xcb_screen_t& screen() const { return *screen_; }
    xcb_atom_t atom(Atom which) const { return atoms_[which]; }
    const Extensions& extensions() const { return extensions_; }
    /// Answers the X resources of the user as they were when we connected.
    const std::string& resources() const { return resources_; }
    Counters& counters() { return counters_; }
    bool isBroken() const { return xcb_connection_has_error(raw_) != 0; }

    VisualFormat opaqueFormat() const { return opaque_; }
    /// Answers a format with alpha, or the opaque one where the server has none.
    VisualFormat alphaFormat() const { return alpha_; }
    /// Answers the colour map for windows of a format, made when first needed.
    xcb_colormap_t colormap(VisualFormat format);

    /// A property that was asked for; several questions wait for the server together.
    struct Question {
        xcb_get_property_cookie_t cookie;
        xcb_atom_t type;
    };
    /// Asks for the 32-bit values of a property.
    /// - limit: as many values at most.
    Question ask(
        xcb_window_t window, xcb_atom_t property, xcb_atom_t type, std::uint32_t limit = 1024);
    /// Answers the values that were asked for; empty when the property is missing or of another kind.
    std::vector<std::uint32_t> values(Question question);
    std::vector<std::uint32_t> values(
        xcb_window_t window, xcb_atom_t property, xcb_atom_t type, std::uint32_t limit = 1024)
    {
        return values(ask(window, property, type, limit));
    }
    /// Answers the text of a property, whatever its type.
    std::string text(xcb_window_t window, xcb_atom_t property);
    void setValues(xcb_window_t window, xcb_atom_t property, xcb_atom_t type,
        std::span<const std::uint32_t> values);
    void setText(xcb_window_t window, xcb_atom_t property, xcb_atom_t type, std::string_view text);
    void remove(xcb_window_t window, xcb_atom_t property);
    /// Sends a message about a window to the window manager.
    void tellManager(xcb_window_t window, Atom type, std::span<const std::uint32_t> data);

    /// Remembers the server's time of an event, for requests that need the latest.
    void noteTime(xcb_timestamp_t time) { lastTime_ = time; }
    xcb_timestamp_t lastTime() const { return lastTime_; }
    /// Answers the server's time in seconds of our monotonic clock.
    double seconds(xcb_timestamp_t time);
    static double now();

private:
    Connection(xcb_connection_t* raw, xcb_screen_t* screen);

    bool chooseFormats();
    void askAtStart();
    void receiveAtStart();

    xcb_connection_t* raw_;
    xcb_screen_t* screen_;
    Atoms atoms_;
    Extensions extensions_;
    Counters counters_;
    std::string resources_;
    xcb_get_property_cookie_t resourcesCookie_ {};
    VisualFormat opaque_;
    VisualFormat alpha_;
    xcb_colormap_t alphaColormap_ = 0;
    xcb_colormap_t opaqueColormap_ = 0;
    xcb_timestamp_t lastTime_ = XCB_CURRENT_TIME;
    std::optional<std::int64_t> clockOffset_; // milliseconds from the server's time to ours
};

}
