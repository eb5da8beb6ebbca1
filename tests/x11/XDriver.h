// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <sys/types.h>
#include <xcb/xcb.h>

#include "display/Display.h"
#include "foundation/NSTimer.h"

namespace brindle::display {

/// Another client of the same server: it acts for the user and looks at what is really there. Pixels, y down.
class XDriver {
public:
    explicit XDriver(const char* server = nullptr);
    ~XDriver();
    XDriver(const XDriver&) = delete;
    XDriver& operator=(const XDriver&) = delete;

    xcb_connection_t* raw() const { return raw_; }
    xcb_window_t root() const { return screen_->root; }
    /// Waits until the server has done everything asked for.
    void sync();

    // Real input, through the server's test extension. Keys by the server's numbers.
    void movePointer(int x, int y);
    void button(int number, bool down);
    void click(int x, int y, int number = 1);
    void key(std::uint8_t keycode, bool down);
    void tap(std::uint8_t keycode);

    /// Finds a window by its title, wherever the window manager has put it; 0 when there is none.
    xcb_window_t find(const std::string& title);
    /// Answers the children of the root window, the lowest first.
    std::vector<xcb_window_t> stacking();
    /// Answers the window's ancestor right below the root.
    xcb_window_t topLevel(xcb_window_t window);
    std::uint32_t pixel(int x, int y);
    /// Looks again and again, but not for ever, until a pixel has a colour; for what a window manager has to do first.
    bool pixelBecomes(int x, int y, std::uint32_t color);
    xcb_atom_t atom(const std::string& name);
    std::vector<std::uint32_t> property(xcb_window_t window, const std::string& name);
    void setProperty(xcb_window_t window, const std::string& name, const std::string& type,
        std::span<const std::uint32_t> values);
    void sendProtocol(xcb_window_t window, const std::string& protocol);
    std::uint8_t depth(xcb_window_t window);
    /// Takes the keyboard focus for a window of its own that nobody sees.
    void stealFocus();
    void giveFocus(xcb_window_t window);
    bool grabPointer();
    void ungrabPointer();

private:
    xcb_connection_t* raw_;
    xcb_screen_t* screen_;
};

/// A server for one test, which may be killed.
class XServerProcess {
public:
    explicit XServerProcess(const std::vector<const char*>& options = {});
    ~XServerProcess();
    XServerProcess(const XServerProcess&) = delete;
    XServerProcess& operator=(const XServerProcess&) = delete;

    const std::string& name() const { return name_; }
    void kill();

private:
    pid_t process_ = -1;
    std::string name_;
};

/// What an environment holds.
using Variables = std::map<std::string, std::string>;

/// Answers an environment with these variables only.
Environment environmentOf(Variables variables);

/// Opens the display under test on the server of the environment.
std::unique_ptr<Display> openX11();
/// The same on another server, with more variables.
std::unique_ptr<Display> openX11(
    const std::string& server, Variables variables = {}, const Complaint& complain = [](auto) {});
/// Gives the application a display on the server of the environment, or on another one.
Display& installX11();
Display& installX11(const XServerProcess& server, Variables variables = {});

/// Runs the application until something is so, seconds at most.
bool becomes(const std::function<bool()>& condition, int steps = 500);

/// Does things while a menu, a button or a window is followed; what is left ends with it.
class WhileTracking {
public:
    WhileTracking() = default;
    ~WhileTracking();
    WhileTracking(const WhileTracking&) = delete;
    WhileTracking& operator=(const WhileTracking&) = delete;

    void at(double seconds, std::function<void()> step);

private:
    std::vector<Ref<NSTimer>> timers_;
};

/// The display under test on the server of the environment, and a driver beside it.
class X11Test : public testing::Test {
public:
    /// Ends the application's display, whose windows are closed, once the window manager has heard of that. The server gives
    /// their numbers to the next connection, which would get what the manager still says of the old ones.
    static void endInstalled(Display& installed);

protected:
    X11Test();
    ~X11Test() override;

    static bool hasManager();
    /// Opens the display anew with more variables.
    void reopen(Variables variables);

    std::unique_ptr<Surface> shown(SurfaceOptions options);
    /// Waits for an event, seconds at most. Those before it are dropped.
    std::optional<Event> waitFor(Event::Kind kind, const Surface* surface = nullptr);
    /// Takes all events that what was done so far has caused on a server without a manager.
    std::vector<Event> settle();
    xcb_window_t windowOf(const std::string& title) { return driver.find(title); }

    void waitForManager();
    static void retire(std::unique_ptr<Display> old);

    XDriver driver;
    std::unique_ptr<Display> display;
    std::string complaints;
};

/// Waits for an event of a display, seconds at most.
std::optional<Event> waitFor(Display& display, Event::Kind kind, const Surface* surface = nullptr);

}
