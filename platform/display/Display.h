// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>
#include <memory>
#include <string_view>
#include <vector>

#include "Event.h"
#include "Surface.h"
#include "Types.h"
#include "runtime/Export.h"

namespace brindle::display {

class Clipboard;

/// A connection to something that shows surfaces and sends events. Surfaces go before their display.
///
/// To wait for events: call `pollEvent` until it answers false, and only then wait for `fileDescriptor()` to become
/// readable. Any other call may have read events off the descriptor, so poll again before each wait.
/// Thread: main. When the display server goes, one `disconnected` event comes and everything else does nothing.
class BRINDLE_EXPORT Display {
public:
    virtual ~Display();
    Display(const Display&) = delete;
    Display& operator=(const Display&) = delete;

    /// Answers "headless", "x11" or "none".
    virtual std::string_view name() const = 0;
    /// Answers false once the display server has gone.
    virtual bool isConnected() const = 0;
    /// Answers the screens, the primary one first; empty without a display.
    virtual const std::vector<Screen>& screens() const = 0;

    /// Makes a surface that is not shown yet. Never null.
    virtual std::unique_ptr<Surface> createSurface(const SurfaceOptions& options) = 0;

    /// Takes the next event. Never waits.
    /// - Returns: false when there is none; the event is then unchanged.
    virtual bool pollEvent(Event& event) = 0;
    /// Answers the descriptor to wait for, -1 when events come from this process only.
    virtual int fileDescriptor() const = 0;
    /// Hands every request over to the display server.
    virtual void flush() = 0;

    /// Answers the time on the clock that events carry, in seconds.
    virtual double now() const = 0;
    /// Answers where the pointer is, in screen coordinates.
    virtual CGPoint pointerLocation() const = 0;
    /// Answers the modifiers that are down now, as far as events have told.
    virtual Modifiers modifiers() const = 0;

    /// Sends all pointer and keyboard input of the desktop to this program until `ungrab`, for an open menu: to
    /// the surface under the pointer where it is one of ours, else to this one. Tried for a moment, then given up.
    /// - Returns: whether it was granted. A menu works without, but does not see clicks on other programs.
    ///   Always false when BRINDLE_NO_GRAB is set and not "0", and for a program in a debugger unless it is "0":
    ///   a program that is stopped would keep the whole desktop.
    virtual bool grab(Surface& surface) = 0;
    virtual void ungrab() = 0;

    /// Answers which key carries the Command flag; Control where nothing says otherwise.
    virtual CommandKey commandKey() const;
    /// Answers whether what lies below is seen through a surface that is not opaque.
    virtual bool blends() const;

    /// Sets the pointer's shape over surfaces that have not set their own.
    virtual void setCursor(Cursor cursor) = 0;
    virtual void beep() = 0;

    /// - Nil: null where programs have nothing in common that they could hand each other.
    virtual Clipboard* clipboard();

    virtual const Counters& counters() const = 0;

protected:
    Display() = default;
};

/// The backends, and `automatic`: x11 when there is a server, else none.
enum class Choice { automatic, headless, x11, none };

/// Answers the value of an environment variable, or null.
using Environment = std::function<const char*(const char* name)>;

/// Answers the process's environment.
BRINDLE_EXPORT Environment processEnvironment();

/// Receives one line of text, without its end.
using Complaint = std::function<void(std::string_view line)>;

/// Answers what BRINDLE_DISPLAY says: `automatic` when it is unset or empty, `none` and a complaint when it is
/// none of the known words.
BRINDLE_EXPORT Choice choiceFromEnvironment(
    const Environment& environment, const Complaint& complain);

/// Opens a display. The only function that knows every backend.
/// - Returns: never null. A server that cannot be reached gives one complaint and the display `none`: the headless one
///   without a screen, on which everything can be made and nothing is seen.
BRINDLE_EXPORT std::unique_ptr<Display> openDisplay(
    Choice choice, const Environment& environment, const Complaint& complain);

/// The same with the process's environment, complaints as lines on standard error.
BRINDLE_EXPORT std::unique_ptr<Display> openDisplay();

}
