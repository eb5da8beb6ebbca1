// SPDX-License-Identifier: Apache-2.0
#include "X11DisplayPrivate.h"

#include <utility>

#include "X11SurfacePrivate.h"

namespace brindle::display {

namespace {

    constexpr double kPointsPerWheelStep = 40;

    bool isMovement(const Event& event) { return event.kind == Event::Kind::pointerMoved; }

    Event::Kind kindOf(PointerAction::Kind kind)
    {
        switch (kind) {
        case PointerAction::Kind::press:
            return Event::Kind::pointerDown;
        case PointerAction::Kind::release:
            return Event::Kind::pointerUp;
        case PointerAction::Kind::move:
            return Event::Kind::pointerMoved;
        case PointerAction::Kind::scroll:
            return Event::Kind::scroll;
        case PointerAction::Kind::enter:
            return Event::Kind::pointerEntered;
        case PointerAction::Kind::leave:
            return Event::Kind::pointerLeft;
        case PointerAction::Kind::releaseAnywhere:
        case PointerAction::Kind::none:
            break;
        }
        return Event::Kind::none;
    }

}

Reply<xcb_generic_event_t> X11Display::nextEvent()
{
    if (lookedAt_)
        return std::move(lookedAt_);
    return owned(xcb_poll_for_event(connection_->raw()));
}

void X11Display::takeEvents()
{
    while (events_.empty()) {
        const auto next = nextEvent();
        if (!next)
            return;
        handle(*next);
    }
    // Of many movements that wait already only the last one counts.
    while (events_.size() == 1 && isMovement(events_.front())) {
        if (!lookAtQueued() || codeOf(*lookedAt_) != XCB_GE_GENERIC)
            break;
        handle(*nextEvent());
        if (events_.size() == 2 && isMovement(events_.back())
            && events_.front().surface == events_.back().surface)
            events_.pop_front();
    }
}

bool X11Display::lookAtQueued()
{
    if (!lookedAt_)
        lookedAt_ = owned(xcb_poll_for_queued_event(connection_->raw()));
    return lookedAt_ != nullptr;
}

bool X11Display::settle()
{
    if (screensDirty_)
        refreshScreens();
    else if (screenEdgeDirty_)
        settleScreenEdge();
    else {
        // Whoever waits next must not wait for an answer to a request that was never sent.
        flush();
        return lookAtQueued();
    }
    return true;
}

bool X11Display::pollEvent(Event& event)
{
    // Waiting for answers and sending requests read events too, and nobody is woken for those once they lie in the queue.
    do {
        takeEvents();
    } while (events_.empty() && settle());
    if (events_.empty() && !toldEnd_ && connection_->isBroken()) {
        toldEnd_ = true;
        Event& last = events_.emplace_back();
        last.kind = Event::Kind::disconnected;
        last.time = now();
    }
    if (events_.empty())
        return false;
    event = std::move(events_.front());
    events_.pop_front();
    return true;
}

void X11Display::handle(const xcb_generic_event_t& event)
{
    presenter_.serverHasRead(event.full_sequence);
    const Extensions& extensions = connection_->extensions();
    if (extensions.fixesEvent && codeOf(event) == extensions.fixesEvent)
        noteOwner(reinterpret_cast<const xcb_xfixes_selection_notify_event_t&>(event));
    if (clipboard_ && clipboard_->handle(event))
        return;
    switch (codeOf(event)) {
    case 0:
        ++connection_->counters().errors;
        return;
    case XCB_KEY_PRESS:
    case XCB_KEY_RELEASE:
        handleKey(
            reinterpret_cast<const xcb_key_press_event_t&>(event), codeOf(event) == XCB_KEY_PRESS);
        return;
    case XCB_FOCUS_IN:
    case XCB_FOCUS_OUT:
        handleFocus(
            reinterpret_cast<const xcb_focus_in_event_t&>(event), codeOf(event) == XCB_FOCUS_IN);
        return;
    case XCB_CLIENT_MESSAGE:
        handleMessage(reinterpret_cast<const xcb_client_message_event_t&>(event));
        return;
    case XCB_PROPERTY_NOTIFY:
        handleProperty(reinterpret_cast<const xcb_property_notify_event_t&>(event));
        return;
    case XCB_EXPOSE:
    case XCB_CONFIGURE_NOTIFY:
    case XCB_REPARENT_NOTIFY:
    case XCB_MAP_NOTIFY:
    case XCB_UNMAP_NOTIFY:
    case XCB_DESTROY_NOTIFY:
        handleWindowEvent(event);
        return;
    default:
        break;
    }
    if (extensions.xkbEvent && codeOf(event) == extensions.xkbEvent) {
        handleKeyboard(event);
    } else if (extensions.randrEvent
        && (codeOf(event) == extensions.randrEvent || codeOf(event) == extensions.randrEvent + 1)) {
        screensDirty_ = true;
    } else {
        handlePointer(pointer_.read(event));
    }
}

void X11Display::noteOwner(const xcb_xfixes_selection_notify_event_t& event)
{
    if (blends_ && event.selection == connection_->atom(Atom::netWmCompositor))
        blends_ = event.owner != XCB_NONE;
}

void X11Display::handleWindowEvent(const xcb_generic_event_t& event)
{
    // All of them but one name their window in the same place.
    const auto& common = reinterpret_cast<const xcb_map_notify_event_t&>(event);
    if (codeOf(event) == XCB_EXPOSE) {
        const auto& expose = reinterpret_cast<const xcb_expose_event_t&>(event);
        if (X11Surface* surface = surfaceOf(expose.window))
            surface->exposed(expose);
        return;
    }
    if (codeOf(event) == XCB_DESTROY_NOTIFY && manager_.windowDestroyed(common.window)) {
        screensDirty_ = true;
        return;
    }
    if (codeOf(event) == XCB_DESTROY_NOTIFY && screens_.settings().windowDestroyed(common.window))
        return scaleMayHaveChanged();
    if (codeOf(event) == XCB_CONFIGURE_NOTIFY && common.window == connection_->root()) {
        screensDirty_ = true;
        return;
    }
    if (codeOf(event) == XCB_CONFIGURE_NOTIFY) {
        for (X11Surface* surface : order_) {
            if (surface->followedFrame() == common.window)
                return surface->frameMoved();
        }
    }
    X11Surface* surface = surfaceOf(common.window);
    if (!surface)
        return;
    switch (codeOf(event)) {
    case XCB_CONFIGURE_NOTIFY:
        surface->configured(reinterpret_cast<const xcb_configure_notify_event_t&>(event));
        break;
    case XCB_REPARENT_NOTIFY:
        surface->reparented(reinterpret_cast<const xcb_reparent_notify_event_t&>(event).parent);
        break;
    case XCB_MAP_NOTIFY:
        surface->mapped();
        break;
    case XCB_UNMAP_NOTIFY:
        surface->unmapped();
        break;
    case XCB_DESTROY_NOTIFY:
        // Another program has done it, for the user who wanted to be rid of the window.
        surface->destroyed();
        post(Event::Kind::closeRequested, *surface);
        break;
    default:
        break;
    }
}

void X11Display::handleProperty(const xcb_property_notify_event_t& event)
{
    connection_->noteTime(event.time);
    if (event.window != connection_->root()) {
        if (X11Surface* surface = surfaceOf(event.window))
            surface->propertyChanged(event.atom);
        else if (screens_.settings().propertyChanged(event))
            scaleMayHaveChanged();
        return;
    }
    if (manager_.propertyChanged(event.atom))
        screensDirty_ = true;
    if (event.atom == connection_->atom(Atom::netClientList)) {
        screenEdgeDirty_ = true;
        // The struts of windows say which monitors give room; some managers tell of the work area first.
        screensDirty_ = screensDirty_ || screens_.all().size() > 1;
    }
    if (event.atom == XCB_ATOM_RESOURCE_MANAGER)
        scaleMayHaveChanged();
}

void X11Display::scaleMayHaveChanged()
{
    screensDirty_ = true;
    scaleDirty_ = true;
}

void X11Display::handleMessage(const xcb_client_message_event_t& event)
{
    if (screens_.settings().isAnnounced(event))
        return scaleMayHaveChanged();
    X11Surface* surface = surfaceOf(event.window);
    if (!surface || event.format != 32 || event.type != connection_->atom(Atom::wmProtocols))
        return;
    const xcb_atom_t protocol = event.data.data32[0];
    if (protocol == connection_->atom(Atom::wmDeleteWindow)) {
        post(Event::Kind::closeRequested, *surface);
    } else if (protocol == connection_->atom(Atom::wmTakeFocus)) {
        connection_->noteTime(event.data.data32[1]);
        surface->takeFocus();
    } else if (protocol == connection_->atom(Atom::netWmPing)) {
        xcb_client_message_event_t answer = event;
        answer.response_type = XCB_CLIENT_MESSAGE;
        answer.window = connection_->root();
        xcb_send_event(connection_->raw(), 0, connection_->root(),
            XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
            reinterpret_cast<const char*>(&answer));
    }
}

// --- focus and keyboard ------------------------------------------------------------------------------------

void X11Display::handleFocus(const xcb_focus_in_event_t& event, bool focused)
{
    const bool isGrab = event.mode == XCB_NOTIFY_MODE_GRAB || event.mode == XCB_NOTIFY_MODE_UNGRAB;
    const bool isPointer = event.detail == XCB_NOTIFY_DETAIL_POINTER
        || event.detail == XCB_NOTIFY_DETAIL_POINTER_ROOT
        || event.detail == XCB_NOTIFY_DETAIL_INFERIOR;
    X11Surface* surface = surfaceOf(event.event);
    if (!surface || isGrab || isPointer || (focused_ == surface) == focused)
        return;
    if (!focused)
        keyboard_.reset();
    // A focus may be given before it is taken from another surface of ours; then both are told in order.
    if (focused && focused_)
        post(Event::Kind::focusOut, *focused_);
    post(focused ? Event::Kind::focusIn : Event::Kind::focusOut, *surface);
    setFocused(focused ? surface : nullptr);
}

void X11Display::setFocused(const X11Surface* surface)
{
    focused_ = surface;
    followKeyboard();
}

void X11Display::setGrabbing(const X11Surface* surface)
{
    grabbing_ = surface;
    followKeyboard();
}

// What was pressed while the keyboard was somebody else's is learnt at once.
void X11Display::followKeyboard()
{
    if (const auto mask = keyboard_.follow(focused_ || grabbing_))
        noteModifiers(keyboard_.flags(*mask), Keyboard::keyCode(0));
}

void X11Display::handleKey(const xcb_key_press_event_t& key, bool isDown)
{
    connection_->noteTime(key.time);
    const X11Surface* surface = surfaceOf(key.event);
    if (!surface)
        return;
    Event& event = post(isDown ? Event::Kind::keyDown : Event::Kind::keyUp, *surface);
    event.time = connection_->seconds(key.time);
    event.screenLocation = mapping().points(key.root_x, key.root_y - surface->offset());
    keyboard_.translate(event, key.detail, key.state, isDown);
    // Modifier keys are told by the change of modifiers only.
    if (event.characters.empty() && event.charactersIgnoringModifiers.empty()
        && keyboard_.isModifier(key.detail))
        events_.pop_back();
}

void X11Display::handleKeyboard(const xcb_generic_event_t& event)
{
    std::uint32_t mask = 0;
    std::uint8_t keycode = 0;
    if (keyboard_.handle(event, mask, keycode))
        noteModifiers(keyboard_.flags(mask), keyboard_.keyCode(keycode));
}

void X11Display::noteModifiers(Modifiers flags, std::uint16_t keyCode)
{
    if (flags == modifiers_)
        return;
    modifiers_ = flags;
    const X11Surface* surface = focused_ ? focused_ : grabbing_;
    if (surface)
        post(Event::Kind::modifiersChanged, *surface).keyCode = keyCode;
}

// --- pointer -------------------------------------------------------------------------------------------------

bool X11Display::beginManaged(const X11Surface& surface)
{
    pointer_.watchRelease(true);
    managed_ = &surface;
    if (pointer_.isLeftDown())
        return true;
    managed_ = nullptr;
    pointer_.watchRelease(false);
    return false;
}

void X11Display::endManaged()
{
    pointer_.watchRelease(false);
    post(Event::Kind::moveResizeEnded, *std::exchange(managed_, nullptr));
}

void X11Display::handlePointer(const PointerAction& action)
{
    if (managed_ && action.kind == PointerAction::Kind::releaseAnywhere) {
        managed_->cancelManaged(); // it may have taken the pointer too late to see the release
        return endManaged();
    }
    const X11Surface* surface = surfaceOf(action.window);
    if (action.kind == PointerAction::Kind::none || !surface)
        return;
    if (managed_ && !pointer_.usesInput2())
        endManaged(); // the window manager has given the pointer back
    if (action.kind == PointerAction::Kind::enter)
        underPointer_ = surface;
    else if (action.kind == PointerAction::Kind::leave && underPointer_ == surface)
        underPointer_ = nullptr;
    const CGPoint place = mapping().points(action.rootX, action.rootY - surface->offset());
    const bool moved = std::exchange(lastPointer_, place) != place;
    if (action.kind == PointerAction::Kind::scroll && moved) {
        PointerAction movement = action;
        movement.kind = PointerAction::Kind::move;
        handlePointer(movement);
    }
    const Modifiers flags = keyboard_.flags(action.modifiers);
    if (!focused_)
        modifiers_ = flags; // otherwise the keyboard tells it
    Event& event = post(kindOf(action.kind), *surface);
    event.time = connection_->seconds(action.time);
    event.modifiers = flags;
    event.screenLocation = lastPointer_;
    event.location = { action.x / mapping().scale,
        (surface->pixelRect().height() - action.y) / mapping().scale };
    event.button = action.button;
    if (action.kind == PointerAction::Kind::scroll) {
        event.scrollX = -action.stepsX * kPointsPerWheelStep;
        event.scrollY = -action.stepsY * kPointsPerWheelStep;
        event.preciseScroll = action.precise;
    }
}

}
