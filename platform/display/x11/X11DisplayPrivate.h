// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <unordered_map>
#include <vector>

#include "ConnectionPrivate.h"
#include "CursorsPrivate.h"
#include "KeyboardPrivate.h"
#include "PointerPrivate.h"
#include "PresenterPrivate.h"
#include "ScreenEdgePrivate.h"
#include "ScreensPrivate.h"
#include "WindowManagerPrivate.h"
#include "X11ClipboardPrivate.h"
#include "display/Display.h"
#include "foundation/QueuePrivate.h"

namespace brindle::display {

class X11Surface;

/// The display of an X server.
class X11Display final : public Display {
public:
    X11Display(std::unique_ptr<Connection> connection, const Environment& environment);
    ~X11Display() override;

    std::string_view name() const override { return "x11"; }
    bool isConnected() const override { return !toldEnd_ && !connection_->isBroken(); }
    const std::vector<Screen>& screens() const override { return screens_.all(); }
    std::unique_ptr<Surface> createSurface(const SurfaceOptions& options) override;
    bool pollEvent(Event& event) override;
    int fileDescriptor() const override;
    void flush() override;
    double now() const override { return Connection::now(); }
    CGPoint pointerLocation() const override;
    Modifiers modifiers() const override { return modifiers_; }
    bool grab(Surface& surface) override;
    void ungrab() override;
    CommandKey commandKey() const override { return keyboard_.command(); }
    bool blends() const override;
    void setCursor(Cursor cursor) override;
    void beep() override;
    Clipboard* clipboard() override;
    const Counters& counters() const override { return connection_->counters(); }

    // For surfaces.

    Connection& connection() { return *connection_; }
    WindowManager& manager() { return manager_; }
    Pointer& pointer() { return pointer_; }
    Presenter& presenter() { return presenter_; }
    Cursors& cursors() { return cursors_; }
    Keyboard& keyboard() { return keyboard_; }
    const Screens& screenTable() const { return screens_; }
    const PixelMapping& mapping() const { return screens_.mapping(); }
    /// Answers the cursor of surfaces without one; nothing until somebody has set one.
    std::optional<Cursor> cursor() const { return cursor_; }

    Event& post(Event::Kind kind, const X11Surface& surface);
    bool hasQueued(Event::Kind kind, const X11Surface& surface) const;
    void add(X11Surface& surface);
    void remove(X11Surface& surface);
    void addWindow(X11Surface& surface);
    void removeWindow(X11Surface& surface);
    /// Tells the surfaces that belong to this one the name of its window.
    void parentHasWindow(X11Surface& surface);
    /// Ends the grab of a surface that goes out of sight.
    void loseGrab(const X11Surface& surface);
    /// Begins to look for the end of a movement or resize that the window manager leads.
    /// - Returns: false when it is over already.
    bool beginManaged(const X11Surface& surface);

    // The top of the screens, which other programs want too. X11Display-ScreenEdge.cpp.

    ScreenEdge& screenEdge() { return screenEdge_; }
    /// Answers how far down a bar is to be moved.
    /// - rect: where it would stand. - ownBottom: where it ends now, nothing before it is shown.
    int depthBelowPanels(PixelRect rect, std::optional<int> ownBottom);
    /// Moves the surfaces that follow a bar to where it is now.
    void offsetChanged(const X11Surface& surface);

    // The order of our own surfaces: level first, then as they were raised. X11Display-Stacking.cpp.

    void raise(X11Surface& surface);
    void lower(X11Surface& surface);
    void restack(X11Surface& surface, X11Surface& other, bool above);
    void levelChanged(X11Surface& surface);

private:
    /// Reads events of the server until there is one for the program, or none are left.
    void takeEvents();
    /// Takes a step that has to be done before anybody waits.
    /// - Returns: whether there may be more to do.
    bool settle();
    /// Answers whether an event has been read from the server and not been handled.
    bool lookAtQueued();
    void handle(const xcb_generic_event_t& event);
    void noteOwner(const xcb_xfixes_selection_notify_event_t& event);
    void handleWindowEvent(const xcb_generic_event_t& event);
    void handleKey(const xcb_key_press_event_t& event, bool isDown);
    void handleFocus(const xcb_focus_in_event_t& event, bool focused);
    void handleMessage(const xcb_client_message_event_t& event);
    void handleProperty(const xcb_property_notify_event_t& event);
    void handleKeyboard(const xcb_generic_event_t& event);
    void handlePointer(const PointerAction& action);
    void endManaged();
    void scaleMayHaveChanged();
    void setFocused(const X11Surface* surface);
    void setGrabbing(const X11Surface* surface);
    void followKeyboard();
    void noteModifiers(Modifiers flags, std::uint16_t keyCode);
    void refreshScreens();
    std::vector<TopPanel> topPanels();
    void settleScreenEdge();
    bool askForCompositor() const;
    Reply<xcb_generic_event_t> nextEvent();
    X11Surface* surfaceOf(xcb_window_t window) const;

    void sortByLevel();
    void place(X11Surface& surface);

    std::unique_ptr<Connection> connection_;
    WindowManager manager_;
    Screens screens_;
    ScreenEdge screenEdge_;
    Keyboard keyboard_;
    Pointer pointer_;
    Presenter presenter_;
    Cursors cursors_;
    std::unordered_map<xcb_window_t, X11Surface*> windows_;
    std::vector<X11Surface*> order_; // the lowest first
    Queue<Event> events_;
    Reply<xcb_generic_event_t> lookedAt_; // read already, to see whether it is another movement
    const X11Surface* grabbing_ = nullptr;
    const X11Surface* managed_ = nullptr; // moved or resized by the window manager now
    const X11Surface* focused_ = nullptr;
    const X11Surface* underPointer_ = nullptr;
    std::optional<Cursor> cursor_;
    mutable std::optional<bool> blends_; // once somebody asked, where changes are told
    Modifiers modifiers_ = 0;
    CGPoint lastPointer_;
    bool allowsGrabs_;
    bool screensDirty_ = false;
    bool screenEdgeDirty_ = false;
    bool scaleDirty_ = false;
    bool toldEnd_ = false;
    std::unique_ptr<X11Clipboard> clipboard_; // made when somebody asks; ends before all else
};

}
