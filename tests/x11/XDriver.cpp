// SPDX-License-Identifier: Apache-2.0
#include "XDriver.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <stdexcept>

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <xcb/xtest.h>

#include "appkit/NSApplication.h"
#include "foundation/NSDate.h"
#include "foundation/NSRunLoop.h"
#include "support/DisplayLog.h"

namespace brindle::display {

namespace {

    constexpr int kPatienceMilliseconds = 10000; // only ever used up by a test that fails

    template <typename T> std::unique_ptr<T, void (*)(void*)> held(T* reply)
    {
        return { reply, std::free };
    }

    bool hasInput(int descriptor, int milliseconds)
    {
        pollfd wanted { descriptor, POLLIN, 0 };
        return poll(&wanted, 1, milliseconds) != 0;
    }

    void waitForInput(int descriptor)
    {
        if (!hasInput(descriptor, kPatienceMilliseconds))
            throw std::runtime_error("nothing came from the server");
    }

}

// --- the driver --------------------------------------------------------------------------------------------

XDriver::XDriver(const char* server)
    : raw_(xcb_connect(server, nullptr))
    , screen_(xcb_setup_roots_iterator(xcb_get_setup(raw_)).data)
{
}

XDriver::~XDriver() { xcb_disconnect(raw_); }

void XDriver::sync() { held(xcb_get_input_focus_reply(raw_, xcb_get_input_focus(raw_), nullptr)); }

void XDriver::movePointer(int x, int y)
{
    xcb_test_fake_input(raw_, XCB_MOTION_NOTIFY, 0, XCB_CURRENT_TIME, root(),
        static_cast<std::int16_t>(x), static_cast<std::int16_t>(y), 0);
    sync();
}

void XDriver::button(int number, bool down)
{
    xcb_test_fake_input(raw_, down ? XCB_BUTTON_PRESS : XCB_BUTTON_RELEASE,
        static_cast<std::uint8_t>(number), XCB_CURRENT_TIME, root(), 0, 0, 0);
    sync();
}

void XDriver::click(int x, int y, int number)
{
    movePointer(x, y);
    button(number, true);
    button(number, false);
}

void XDriver::key(std::uint8_t keycode, bool down)
{
    xcb_test_fake_input(
        raw_, down ? XCB_KEY_PRESS : XCB_KEY_RELEASE, keycode, XCB_CURRENT_TIME, root(), 0, 0, 0);
    sync();
}

void XDriver::tap(std::uint8_t keycode)
{
    key(keycode, true);
    key(keycode, false);
}

xcb_window_t XDriver::find(const std::string& title)
{
    const xcb_atom_t name = atom("_NET_WM_NAME");
    std::vector<xcb_window_t> left { root() };
    while (!left.empty()) {
        const xcb_window_t window = left.back();
        left.pop_back();
        const auto text = held(xcb_get_property_reply(
            raw_, xcb_get_property(raw_, 0, window, name, XCB_ATOM_ANY, 0, 64), nullptr));
        if (text && text->format == 8
            && title
                == std::string(static_cast<const char*>(xcb_get_property_value(text.get())),
                    static_cast<std::size_t>(xcb_get_property_value_length(text.get()))))
            return window;
        const auto tree = held(xcb_query_tree_reply(raw_, xcb_query_tree(raw_, window), nullptr));
        if (tree) {
            const xcb_window_t* first = xcb_query_tree_children(tree.get());
            left.insert(left.end(), first, first + xcb_query_tree_children_length(tree.get()));
        }
    }
    return XCB_NONE;
}

std::vector<xcb_window_t> XDriver::stacking()
{
    const auto tree = held(xcb_query_tree_reply(raw_, xcb_query_tree(raw_, root()), nullptr));
    const xcb_window_t* first = xcb_query_tree_children(tree.get());
    return { first, first + xcb_query_tree_children_length(tree.get()) };
}

xcb_window_t XDriver::topLevel(xcb_window_t window)
{
    for (;;) {
        const auto tree = held(xcb_query_tree_reply(raw_, xcb_query_tree(raw_, window), nullptr));
        if (!tree || tree->parent == root() || tree->parent == XCB_NONE)
            return window;
        window = tree->parent;
    }
}

std::uint32_t XDriver::pixel(int x, int y)
{
    const auto image = held(xcb_get_image_reply(raw_,
        xcb_get_image(raw_, XCB_IMAGE_FORMAT_Z_PIXMAP, root(), static_cast<std::int16_t>(x),
            static_cast<std::int16_t>(y), 1, 1, ~0U),
        nullptr));
    if (!image || xcb_get_image_data_length(image.get()) < 4)
        return 0;
    return *reinterpret_cast<const std::uint32_t*>(xcb_get_image_data(image.get())) & 0xFFFFFF;
}

bool XDriver::pixelBecomes(int x, int y, std::uint32_t color)
{
    constexpr int kLooks = 100000;
    for (int i = 0; i < kLooks; ++i) {
        if (pixel(x, y) == color)
            return true;
    }
    return false;
}

xcb_atom_t XDriver::atom(const std::string& name)
{
    const auto reply = held(xcb_intern_atom_reply(raw_,
        xcb_intern_atom(raw_, 0, static_cast<std::uint16_t>(name.size()), name.data()), nullptr));
    return reply->atom;
}

std::vector<std::uint32_t> XDriver::property(xcb_window_t window, const std::string& name)
{
    const auto reply = held(xcb_get_property_reply(
        raw_, xcb_get_property(raw_, 0, window, atom(name), XCB_ATOM_ANY, 0, 1024), nullptr));
    if (!reply || reply->format != 32)
        return {};
    const auto* first = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
    return { first, first + xcb_get_property_value_length(reply.get()) / 4 };
}

void XDriver::setProperty(xcb_window_t window, const std::string& name, const std::string& type,
    std::span<const std::uint32_t> values)
{
    xcb_change_property(raw_, XCB_PROP_MODE_REPLACE, window, atom(name), atom(type), 32,
        static_cast<std::uint32_t>(values.size()), values.data());
    sync();
}

void XDriver::sendProtocol(xcb_window_t window, const std::string& protocol)
{
    xcb_client_message_event_t message {};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = atom("WM_PROTOCOLS");
    message.data.data32[0] = atom(protocol);
    message.data.data32[2] = window;
    xcb_send_event(
        raw_, 0, window, XCB_EVENT_MASK_NO_EVENT, reinterpret_cast<const char*>(&message));
    sync();
}

std::uint8_t XDriver::depth(xcb_window_t window)
{
    const auto reply = held(xcb_get_geometry_reply(raw_, xcb_get_geometry(raw_, window), nullptr));
    return reply ? reply->depth : 0;
}

void XDriver::stealFocus()
{
    const xcb_window_t window = xcb_generate_id(raw_);
    const std::uint32_t unmanaged = 1;
    xcb_create_window(raw_, 0, window, root(), -10, -10, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
        XCB_COPY_FROM_PARENT, XCB_CW_OVERRIDE_REDIRECT, &unmanaged);
    xcb_map_window(raw_, window);
    giveFocus(window);
}

void XDriver::giveFocus(xcb_window_t window)
{
    xcb_set_input_focus(raw_, XCB_INPUT_FOCUS_POINTER_ROOT, window, XCB_CURRENT_TIME);
    sync();
}

bool XDriver::grabPointer()
{
    const auto reply = held(xcb_grab_pointer_reply(raw_,
        xcb_grab_pointer(raw_, 0, root(), XCB_EVENT_MASK_BUTTON_PRESS, XCB_GRAB_MODE_ASYNC,
            XCB_GRAB_MODE_ASYNC, XCB_NONE, XCB_NONE, XCB_CURRENT_TIME),
        nullptr));
    return reply && reply->status == XCB_GRAB_STATUS_SUCCESS;
}

void XDriver::ungrabPointer()
{
    xcb_ungrab_pointer(raw_, XCB_CURRENT_TIME);
    sync();
}

// --- the server --------------------------------------------------------------------------------------------

XServerProcess::XServerProcess(const std::vector<const char*>& options)
{
    int ends[2];
    if (pipe(ends) != 0)
        throw std::runtime_error("no pipe");
    process_ = fork();
    if (process_ == 0) {
        close(ends[0]);
        const std::string descriptor = std::to_string(ends[1]);
        const int nothing = open("/dev/null", O_WRONLY);
        dup2(nothing, STDOUT_FILENO);
        dup2(nothing, STDERR_FILENO);
        prctl(PR_SET_PDEATHSIG, SIGTERM); // a test that ends badly leaves no server behind
        std::vector<const char*> words { "Xvfb", "-displayfd", descriptor.c_str(), "-screen", "0",
            "640x480x24", "-nolisten", "tcp", "-noreset" };
        words.insert(words.end(), options.begin(), options.end());
        words.push_back(nullptr);
        execvp(words[0], const_cast<char* const*>(words.data()));
        _exit(127);
    }
    close(ends[1]);
    char digit = 0;
    name_ = ":";
    while (read(ends[0], &digit, 1) == 1 && digit != '\n')
        name_ += digit;
    close(ends[0]);
}

XServerProcess::~XServerProcess() { kill(); }

void XServerProcess::kill()
{
    if (process_ <= 0)
        return;
    ::kill(process_, SIGTERM); // for a client the same as a crash, but nothing is left behind
    waitpid(process_, nullptr, 0);
    process_ = -1;
}

// --- the tests' ground ---------------------------------------------------------------------------------------

Environment environmentOf(Variables variables)
{
    return [variables = std::move(variables)](const char* name) -> const char* {
        const auto found = variables.find(name);
        return found == variables.end() ? nullptr : found->second.c_str();
    };
}

std::unique_ptr<Display> openX11()
{
    return openDisplay(Choice::x11, processEnvironment(), [](auto) {});
}

std::unique_ptr<Display> openX11(
    const std::string& server, Variables variables, const Complaint& complain)
{
    variables["DISPLAY"] = server;
    return openDisplay(Choice::x11, environmentOf(std::move(variables)), complain);
}

Display& installX11() { return *installDisplay(openX11()); }

Display& installX11(const XServerProcess& server, Variables variables)
{
    return *installDisplay(openX11(server.name(), std::move(variables)));
}

bool becomes(const std::function<bool()>& condition, int steps)
{
    const Ref<NSApplication> application = NSApplication::cls().sharedApplication();
    for (int i = 0; i < steps && !condition(); ++i) {
        NSRunLoop::cls().mainRunLoop()->runUntilDate(
            NSDate::cls().dateWithTimeIntervalSinceNow(0.01).get());
        application->processEvents();
    }
    return condition();
}

WhileTracking::~WhileTracking()
{
    for (const Ref<NSTimer>& timer : timers_)
        timer->invalidate();
}

void WhileTracking::at(double seconds, std::function<void()> step)
{
    timers_.push_back(NSTimer::cls().timerWithTimeInterval_repeats_block(
        seconds, false, [step = std::move(step)](NSTimer*) { step(); }));
    NSRunLoop::cls().mainRunLoop()->addTimer_forMode(
        timers_.back().get(), NSEventTrackingRunLoopMode);
}

std::optional<Event> waitFor(Display& display, Event::Kind kind, const Surface* surface)
{
    for (;;) {
        Event event;
        while (display.pollEvent(event)) {
            if (event.kind == kind && (!surface || event.surface == surface->id()))
                return event;
        }
        if (display.fileDescriptor() < 0)
            return std::nullopt;
        waitForInput(display.fileDescriptor());
    }
}

X11Test::X11Test()
{
    reopen({});
    driver.movePointer(1279, 799);
    static bool managerIsReady = !hasManager();
    if (!managerIsReady) {
        waitForManager();
        managerIsReady = true;
    }
}

void X11Test::waitForManager()
{
    // A manager announces itself before it listens, and what is asked for in between is lost. So a window is shown again
    // and again until something is seen of it.
    const auto first = display->createSurface({ .frame = { { 0, 0 }, { 10, 10 } } });
    for (int attempt = 0; attempt < 100; ++attempt) {
        first->show();
        bool exposed = false;
        do {
            for (const Event& event : drain(*display))
                exposed = exposed || event.kind == Event::Kind::exposed;
        } while (!exposed && hasInput(display->fileDescriptor(), 100));
        first->hide();
        if (exposed)
            return;
    }
    throw std::runtime_error("the window manager does not start");
}

X11Test::~X11Test() { retire(std::move(display)); }

void X11Test::retire(std::unique_ptr<Display> old)
{
    // The server would give the numbers of its windows to the next connection, while the window manager still speaks of
    // the old ones.
    static std::vector<std::unique_ptr<Display>> retired;
    if (old)
        old->flush();
    retired.push_back(std::move(old));
}

void X11Test::endInstalled(Display& installed)
{
    installed.pointerLocation(); // an answer: the server has taken the windows away
    if (hasManager()) {
        auto other = openX11();
        const auto surface = other->createSurface({ .frame = { { 0, 0 }, { 10, 10 } } });
        surface->show();
        display::waitFor(*other, Event::Kind::exposed); // the manager has come as far as this
        retire(std::move(other));
    }
    installDisplay(nullptr);
}

bool X11Test::hasManager()
{
    const char* manager = std::getenv("BRINDLE_TEST_WM");
    return manager && std::string(manager) != "none";
}

void X11Test::reopen(Variables variables)
{
    retire(std::move(display));
    display = openX11(std::getenv("DISPLAY"), std::move(variables),
        [this](std::string_view line) { complaints += line; });
}

std::unique_ptr<Surface> X11Test::shown(SurfaceOptions options)
{
    auto surface = display->createSurface(options);
    surface->show();
    waitFor(Event::Kind::exposed, surface.get());
    return surface;
}

std::optional<Event> X11Test::waitFor(Event::Kind kind, const Surface* surface)
{
    return display::waitFor(*display, kind, surface);
}

std::vector<Event> X11Test::settle()
{
    std::vector<Event> events = drain(*display); // and sends what waits
    driver.sync();
    display->pointerLocation(); // an answer, and all events before it
    for (Event& event : drain(*display))
        events.push_back(std::move(event));
    return events;
}

}
