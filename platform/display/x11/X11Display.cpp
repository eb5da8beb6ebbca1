// SPDX-License-Identifier: Apache-2.0
#include "LateLibrariesPrivate.h"
#include "X11DisplayPrivate.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cstring>
#include <string>
#include <string_view>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include "ConnectX11.h"
#include "X11SurfacePrivate.h"
#include "display/SurfaceNumber.h"

namespace brindle::display {

namespace {

    constexpr int kGrabAttempts = 20;
    constexpr int kGrabPauseMilliseconds = 5;

    CommandKey commandKeyFrom(const Environment& environment)
    {
        const char* value = environment("BRINDLE_COMMAND");
        return value && std::strcmp(value, "super") == 0 ? CommandKey::super : CommandKey::control;
    }

    // The kernel says who traces a process, in one of the first lines. Streams would cost a start half a megabyte: they
    // set up what languages need.
    bool isDebugged()
    {
        std::array<char, 1024> status {};
        const int file = ::open("/proc/self/status", O_RDONLY | O_CLOEXEC);
        if (file < 0)
            return false;
        const ssize_t length = ::read(file, status.data(), status.size());
        ::close(file);
        const std::string_view text(
            status.data(), static_cast<std::size_t>(std::max<ssize_t>(length, 0)));
        constexpr std::string_view kTracer = "\nTracerPid:\t";
        const std::size_t place = text.find(kTracer);
        return place != text.npos && text.substr(place + kTracer.size(), 1) != "0";
    }

    bool allowsGrabs(const Environment& environment)
    {
        const char* value = environment("BRINDLE_NO_GRAB");
        return value && *value ? std::strcmp(value, "0") == 0 : !isDebugged();
    }

}

std::unique_ptr<Display> connectX11(
    const std::string& server, const Environment& environment, const Found& found)
{
    auto connection = Connection::tryConnect(server, found);
    if (!connection)
        return nullptr;
    return std::make_unique<X11Display>(std::move(connection), environment);
}

X11Display::X11Display(std::unique_ptr<Connection> connection, const Environment& environment)
    : connection_(std::move(connection))
    , manager_(*connection_)
    , screens_(*connection_, manager_, environment)
    , keyboard_(*connection_, commandKeyFrom(environment))
    , pointer_(*connection_)
    , presenter_(*connection_)
    , cursors_(*connection_)
    , allowsGrabs_(allowsGrabs(environment))
{
}

X11Display::~X11Display()
{
    assert(order_.empty());
    if (clipboard_)
        clipboard_->handOver();
}

Clipboard* X11Display::clipboard()
{
    if (!clipboard_)
        clipboard_ = std::make_unique<X11Clipboard>(
            *connection_, [this](const xcb_generic_event_t& event) { handle(event); });
    return clipboard_.get();
}

std::unique_ptr<Surface> X11Display::createSurface(const SurfaceOptions& options)
{
    return std::make_unique<X11Surface>(*this, nextSurfaceNumber(), options);
}

void X11Display::add(X11Surface& surface)
{
    order_.push_back(&surface);
    sortByLevel();
}

void X11Display::remove(X11Surface& surface)
{
    std::erase(order_, &surface);
    for (X11Surface* other : order_) {
        if (other->parent() == &surface)
            other->parentGone();
    }
    events_.eraseIf([&surface](const Event& e) { return e.surface == surface.id(); });
}

void X11Display::addWindow(X11Surface& surface) { windows_[surface.window()] = &surface; }

void X11Display::removeWindow(X11Surface& surface)
{
    // What the server has to say about the window cannot be delivered any more.
    windows_.erase(surface.window());
    if (underPointer_ == &surface) {
        underPointer_ = nullptr;
        post(Event::Kind::pointerLeft, surface);
    }
    if (managed_ == &surface)
        endManaged();
    if (focused_ == &surface) {
        setFocused(nullptr);
        keyboard_.reset();
        post(Event::Kind::focusOut, surface);
    }
}

void X11Display::parentHasWindow(X11Surface& surface)
{
    for (X11Surface* other : order_) {
        if (other->parent() == &surface)
            other->writeTransientFor();
    }
}

X11Surface* X11Display::surfaceOf(xcb_window_t window) const
{
    const auto found = windows_.find(window);
    return found == windows_.end() ? nullptr : found->second;
}

Event& X11Display::post(Event::Kind kind, const X11Surface& surface)
{
    Event& event = events_.emplace_back();
    event.kind = kind;
    event.surface = surface.id();
    event.time = now();
    event.modifiers = modifiers_;
    return event;
}

bool X11Display::hasQueued(Event::Kind kind, const X11Surface& surface) const
{
    return std::any_of(events_.begin(), events_.end(),
        [&](const Event& event) { return event.kind == kind && event.surface == surface.id(); });
}

int X11Display::fileDescriptor() const
{
    return toldEnd_ ? -1 : xcb_get_file_descriptor(connection_->raw());
}

void X11Display::flush() { xcb_flush(connection_->raw()); }

CGPoint X11Display::pointerLocation() const
{
    xcb_connection_t* raw = connection_->raw();
    const auto reply
        = owned(xcb_query_pointer_reply(raw, xcb_query_pointer(raw, connection_->root()), nullptr));
    if (!reply)
        return lastPointer_;
    return mapping().points(
        reply->root_x, reply->root_y - (underPointer_ ? underPointer_->offset() : 0));
}

bool X11Display::grab(Surface& surface)
{
    const auto& wanted = static_cast<const X11Surface&>(surface);
    if (!allowsGrabs_ || !wanted.window() || !wanted.isShown())
        return false;
    xcb_connection_t* raw = connection_->raw();
    std::uint8_t status = XCB_GRAB_STATUS_SUCCESS;
    for (int attempt = 0; attempt < kGrabAttempts && isConnected(); ++attempt) {
        status = pointer_.tryGrab(wanted.window());
        // Somebody who is just letting go (a window manager's key) is waited for; anything else stays as it is.
        if (status != XCB_GRAB_STATUS_ALREADY_GRABBED && status != XCB_GRAB_STATUS_FROZEN)
            break;
        poll(nullptr, 0, kGrabPauseMilliseconds);
    }
    if (status != XCB_GRAB_STATUS_SUCCESS || !isConnected())
        return false;
    setGrabbing(&wanted);
    // Menus work without the keyboard of other programs; so the answer is not waited for.
    xcb_discard_reply(raw,
        xcb_grab_keyboard(
            raw, 1, wanted.window(), XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC)
            .sequence);
    return true;
}

bool X11Display::blends() const
{
    if (!connection_->extensions().fixesEvent)
        return askForCompositor();
    if (!blends_) {
        const auto select = XFIXES(xcb_xfixes_select_selection_input);
        select(connection_->raw(), connection_->root(), connection_->atom(Atom::netWmCompositor),
            XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER
                | XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY
                | XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
        blends_ = askForCompositor();
    }
    return *blends_;
}

bool X11Display::askForCompositor() const
{
    const auto owner = owned(xcb_get_selection_owner_reply(connection_->raw(),
        xcb_get_selection_owner(connection_->raw(), connection_->atom(Atom::netWmCompositor)),
        nullptr));
    return owner && owner->owner != XCB_NONE;
}

void X11Display::ungrab()
{
    if (!grabbing_)
        return;
    setGrabbing(nullptr);
    pointer_.ungrab();
    xcb_ungrab_keyboard(connection_->raw(), XCB_CURRENT_TIME);
    flush(); // nobody else can click until the server has read this
}

void X11Display::loseGrab(const X11Surface& surface)
{
    if (grabbing_ != &surface)
        return;
    ungrab();
    post(Event::Kind::grabLost, surface);
}

void X11Display::setCursor(Cursor cursor)
{
    if (cursor_ == cursor || (!cursor_ && cursor == Cursor::arrow))
        return;
    cursor_ = cursor;
    for (X11Surface* surface : order_)
        surface->applyCursor();
}

void X11Display::beep()
{
    xcb_bell(connection_->raw(), 0);
    ++connection_->counters().beeps;
}

void X11Display::refreshScreens()
{
    const double scaleBefore = mapping().scale;
    if (std::exchange(scaleDirty_, false))
        screens_.readScale(connection_->text(connection_->root(), XCB_ATOM_RESOURCE_MANAGER));
    screensDirty_ = false;
    screenEdgeDirty_ = true;
    const bool changed = screens_.refresh();
    if (!changed || connection_->isBroken())
        return;
    // Whoever is told of the screens finds windows where they are now, and draws them anew only after that.
    const bool isScaled = mapping().scale != scaleBefore;
    if (!isScaled) {
        for (X11Surface* surface : order_)
            surface->screensMoved();
    }
    Event& event = events_.emplace_back();
    event.kind = Event::Kind::screensChanged;
    event.time = now();
    if (isScaled) {
        for (X11Surface* surface : order_)
            surface->scaleChanged();
    }
}

}
