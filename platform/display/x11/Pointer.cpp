// SPDX-License-Identifier: Apache-2.0
#include "LateLibrariesPrivate.h"
#include "PointerPrivate.h"

#include <bit>
#include <cmath>
#include <utility>

namespace brindle::display {

namespace {

    constexpr std::uint32_t kEvents = XCB_INPUT_XI_EVENT_MASK_BUTTON_PRESS
        | XCB_INPUT_XI_EVENT_MASK_BUTTON_RELEASE | XCB_INPUT_XI_EVENT_MASK_MOTION
        | XCB_INPUT_XI_EVENT_MASK_ENTER | XCB_INPUT_XI_EVENT_MASK_LEAVE;

    constexpr std::uint32_t kLeftButton = 1;
    constexpr std::uint8_t kNotGranted = XCB_GRAB_STATUS_NOT_VIEWABLE;
    constexpr xcb_input_device_id_t kFirstPointer = 2; // of every server

    constexpr std::uint32_t kCoreEvents = XCB_EVENT_MASK_BUTTON_PRESS
        | XCB_EVENT_MASK_BUTTON_RELEASE | XCB_EVENT_MASK_POINTER_MOTION
        | XCB_EVENT_MASK_ENTER_WINDOW | XCB_EVENT_MASK_LEAVE_WINDOW;

    double number(xcb_input_fp1616_t fixed) { return fixed / 65536.0; }

    bool isScrollButton(std::uint32_t detail) { return detail >= 4 && detail <= 7; }

    // 2 is the middle button to the server.
    int buttonOf(std::uint32_t detail)
    {
        if (detail <= 3)
            return detail == 1 ? 0 : detail == 3 ? 1 : 2;
        return static_cast<int>(detail) - 5;
    }

    void setWheelStep(PointerAction& action, std::uint32_t detail)
    {
        action.kind = PointerAction::Kind::scroll;
        action.stepsY = detail == 4 ? -1 : detail == 5 ? 1 : 0;
        action.stepsX = detail == 6 ? -1 : detail == 7 ? 1 : 0;
    }

}

Pointer::Pointer(Connection& connection)
    : connection_(connection)
    , major_(connection.extensions().inputMajor)
{
    if (!usesInput2())
        return;
    struct {
        xcb_input_event_mask_t head { XCB_INPUT_DEVICE_ALL, 1 };
        std::uint32_t mask
            = XCB_INPUT_XI_EVENT_MASK_HIERARCHY | XCB_INPUT_XI_EVENT_MASK_DEVICE_CHANGED;
    } request;
    XINPUT(xcb_input_xi_select_events)(connection_.raw(), connection_.root(), 1, &request.head);
}

std::uint32_t Pointer::coreEventMask() const { return usesInput2() ? 0 : kCoreEvents; }

void Pointer::select(xcb_window_t window, std::uint32_t events)
{
    if (!usesInput2())
        return;
    struct {
        xcb_input_event_mask_t head { XCB_INPUT_DEVICE_ALL_MASTER, 1 };
        std::uint32_t mask = 0;
    } request;
    request.mask = events;
    XINPUT(xcb_input_xi_select_events)(connection_.raw(), window, 1, &request.head);
}

void Pointer::selectEvents(xcb_window_t window) { select(window, kEvents); }

void Pointer::watchRelease(bool watch)
{
    select(connection_.root(), watch ? XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_RELEASE : 0);
}

bool Pointer::isLeftDown() const
{
    xcb_connection_t* raw = connection_.raw();
    const auto reply
        = owned(xcb_query_pointer_reply(raw, xcb_query_pointer(raw, connection_.root()), nullptr));
    return reply && (reply->mask & XCB_BUTTON_MASK_1);
}

void Pointer::ensureDevices()
{
    if (devicesKnown_)
        return;
    devicesKnown_ = true;
    axes_.clear();
    xcb_connection_t* raw = connection_.raw();
    const auto reply = owned(XINPUT(xcb_input_xi_query_device_reply)(
        raw, XINPUT(xcb_input_xi_query_device)(raw, XCB_INPUT_DEVICE_ALL), nullptr));
    if (!reply)
        return;
    const auto* first = reinterpret_cast<const std::byte*>(reply.get()) + sizeof *reply;
    const std::span<const std::byte> bytes { first, std::size_t { reply->length } * 4 };
    for (const ScrollAxis& axis :
        parseScrollAxes(bytes, reply->num_infos, connection_.counters().malformed))
        axes_.push_back({ axis });
}

void Pointer::forgetScrollValues()
{
    for (AxisState& state : axes_)
        state.known = false;
}

PointerAction Pointer::read(const xcb_generic_event_t& event)
{
    if (codeOf(event) == XCB_GE_GENERIC)
        return readInput2(event);
    return usesInput2() ? PointerAction {} : readCore(event);
}

PointerAction Pointer::readInput2(const xcb_generic_event_t& event)
{
    const auto& generic = reinterpret_cast<const xcb_ge_generic_event_t&>(event);
    if (!usesInput2() || generic.extension != major_)
        return {};
    // The library has put its own word between the 32 bytes of every event and the rest.
    const std::size_t size = 36 + std::size_t { generic.length } * 4;
    switch (generic.event_type) {
    case XCB_INPUT_BUTTON_PRESS:
    case XCB_INPUT_BUTTON_RELEASE:
    case XCB_INPUT_MOTION:
        return readButton2(reinterpret_cast<const xcb_input_button_press_event_t&>(event), size);
    case XCB_INPUT_ENTER:
    case XCB_INPUT_LEAVE:
        return readCrossing2(reinterpret_cast<const xcb_input_enter_event_t&>(event), size);
    case XCB_INPUT_RAW_BUTTON_RELEASE:
        return readRaw2(reinterpret_cast<const xcb_input_raw_button_press_event_t&>(event), size);
    case XCB_INPUT_HIERARCHY:
    case XCB_INPUT_DEVICE_CHANGED:
        devicesKnown_ = false;
        ours_.reset();
        return {};
    default:
        return {};
    }
}

PointerAction Pointer::readButton2(const xcb_input_button_press_event_t& event, std::size_t size)
{
    if (size < sizeof event) {
        ++connection_.counters().malformed;
        return {};
    }
    connection_.noteTime(event.time);
    PointerAction action;
    action.window = event.event;
    action.time = event.time;
    action.x = number(event.event_x);
    action.y = number(event.event_y);
    action.rootX = number(event.root_x);
    action.rootY = number(event.root_y);
    action.modifiers = event.mods.effective;
    if (event.event_type == XCB_INPUT_MOTION) {
        action.kind = PointerAction::Kind::move;
        readScroll(event, size, action);
        return action;
    }
    const bool isPress = event.event_type == XCB_INPUT_BUTTON_PRESS;
    if (!isScrollButton(event.detail)) {
        action.kind = isPress ? PointerAction::Kind::press : PointerAction::Kind::release;
        action.button = buttonOf(event.detail);
    } else if (isPress && !(event.flags & XCB_INPUT_POINTER_EVENT_FLAGS_POINTER_EMULATED)) {
        // A wheel without smooth axes; of the others the server sends such presses only for old programs.
        setWheelStep(action, event.detail);
    }
    return action;
}

void Pointer::readScroll(
    const xcb_input_button_press_event_t& event, std::size_t size, PointerAction& action)
{
    ensureDevices();
    const auto* const bytes = reinterpret_cast<const std::byte*>(&event);
    for (const Valuator& valuator : parseValuators({ bytes + sizeof event, size - sizeof event },
             event.buttons_len, event.valuators_len, connection_.counters().malformed)) {
        for (AxisState& state : axes_) {
            if (state.axis.device != event.sourceid || state.axis.number != valuator.number)
                continue;
            const double steps = (valuator.value - state.value) / state.axis.increment;
            state.value = valuator.value;
            if (std::exchange(state.known, true) && steps != 0) {
                (state.axis.vertical ? action.stepsY : action.stepsX) += steps;
                action.precise = action.precise || steps != std::round(steps);
                action.kind = PointerAction::Kind::scroll;
            }
        }
    }
}

PointerAction Pointer::readRaw2(const xcb_input_raw_button_press_event_t& event, std::size_t size)
{
    if (size < sizeof event) {
        ++connection_.counters().malformed;
        return {};
    }
    PointerAction action;
    if (event.detail != kLeftButton)
        return action;
    action.kind = PointerAction::Kind::releaseAnywhere;
    action.time = event.time;
    return action;
}

PointerAction Pointer::readCrossing2(const xcb_input_enter_event_t& event, std::size_t size)
{
    if (size < sizeof event) {
        ++connection_.counters().malformed;
        return {};
    }
    forgetScrollValues();
    PointerAction action;
    if (event.mode != XCB_INPUT_NOTIFY_MODE_NORMAL
        || event.detail == XCB_INPUT_NOTIFY_DETAIL_INFERIOR)
        return action;
    action.kind = event.event_type == XCB_INPUT_ENTER ? PointerAction::Kind::enter
                                                      : PointerAction::Kind::leave;
    action.window = event.event;
    action.time = event.time;
    action.x = number(event.event_x);
    action.y = number(event.event_y);
    action.rootX = number(event.root_x);
    action.rootY = number(event.root_y);
    action.modifiers = event.mods.effective;
    return action;
}

PointerAction Pointer::readCore(const xcb_generic_event_t& event)
{
    using Kind = PointerAction::Kind;
    // Presses, movements and crossings have their fields in the same places.
    const auto& press = reinterpret_cast<const xcb_button_press_event_t&>(event);
    PointerAction action;
    action.window = press.event;
    action.time = press.time;
    action.x = press.event_x;
    action.y = press.event_y;
    action.rootX = press.root_x;
    action.rootY = press.root_y;
    action.modifiers = press.state & 0xFFU;
    const bool scrolls = isScrollButton(press.detail);
    switch (codeOf(event)) {
    case XCB_BUTTON_PRESS:
        action.kind = Kind::press;
        action.button = buttonOf(press.detail);
        if (scrolls)
            setWheelStep(action, press.detail);
        break;
    case XCB_BUTTON_RELEASE:
        action.kind = scrolls ? Kind::none : Kind::release;
        action.button = buttonOf(press.detail);
        break;
    case XCB_MOTION_NOTIFY:
        action.kind = Kind::move;
        break;
    case XCB_ENTER_NOTIFY:
    case XCB_LEAVE_NOTIFY: {
        const auto& crossing = reinterpret_cast<const xcb_enter_notify_event_t&>(event);
        if (crossing.mode != XCB_NOTIFY_MODE_NORMAL
            || crossing.detail == XCB_NOTIFY_DETAIL_INFERIOR)
            return {};
        action.kind = codeOf(event) == XCB_ENTER_NOTIFY ? Kind::enter : Kind::leave;
        break;
    }
    default:
        return {};
    }
    connection_.noteTime(press.time);
    return action;
}

std::uint8_t Pointer::tryGrab(xcb_window_t window)
{
    xcb_connection_t* raw = connection_.raw();
    if (!usesInput2()) {
        const auto reply = owned(xcb_grab_pointer_reply(raw,
            xcb_grab_pointer(raw, 1, window, static_cast<std::uint16_t>(kCoreEvents),
                XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC, XCB_NONE, XCB_NONE, XCB_CURRENT_TIME),
            nullptr));
        return reply ? reply->status : kNotGranted;
    }
    if (!ours_) {
        const auto client = owned(XINPUT(xcb_input_xi_get_client_pointer_reply)(
            raw, XINPUT(xcb_input_xi_get_client_pointer)(raw, XCB_NONE), nullptr));
        if (!client)
            return kNotGranted;
        ours_ = client->deviceid;
    }
    const auto reply = owned(XINPUT(xcb_input_xi_grab_device_reply)(raw,
        XINPUT(xcb_input_xi_grab_device)(raw, window, XCB_CURRENT_TIME, XCB_NONE, *ours_,
            XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC, XCB_INPUT_GRAB_OWNER_OWNER, 1, &kEvents),
        nullptr));
    if (reply)
        return reply->status;
    ours_.reset(); // it has gone
    return kNotGranted;
}

void Pointer::ungrab()
{
    if (!usesInput2())
        xcb_ungrab_pointer(connection_.raw(), XCB_CURRENT_TIME);
    else {
        const auto ungrabDevice = XINPUT(xcb_input_xi_ungrab_device);
        ungrabDevice(connection_.raw(), XCB_CURRENT_TIME, ours_.value_or(kFirstPointer));
    }
}

}
