// SPDX-License-Identifier: Apache-2.0
#include "DesktopSettingsPrivate.h"

#include "RepliesPrivate.h"

namespace brindle::display {

std::optional<double> DesktopSettings::readScale()
{
    xcb_connection_t* raw = connection_.raw();
    const xcb_atom_t selection = connection_.atom(Atom::settingsProgram);
    const auto owner = owned(
        xcb_get_selection_owner_reply(raw, xcb_get_selection_owner(raw, selection), nullptr));
    window_ = owner ? owner->owner : XCB_NONE;
    if (!window_)
        return std::nullopt;
    // The events are asked for first: what is said after the answer is then heard.
    const std::uint32_t mask = XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(raw, window_, XCB_CW_EVENT_MASK, &mask);
    const std::string text = connection_.text(window_, connection_.atom(Atom::settings));
    return scaleFrom(
        parseSettings(std::as_bytes(std::span(text)), connection_.counters().malformed));
}

bool DesktopSettings::propertyChanged(const xcb_property_notify_event_t& event) const
{
    return event.window == window_ && event.atom == connection_.atom(Atom::settings);
}

bool DesktopSettings::windowDestroyed(xcb_window_t window) const
{
    return window != XCB_NONE && window == window_;
}

bool DesktopSettings::isAnnounced(const xcb_client_message_event_t& message) const
{
    return message.format == 32 && message.type == connection_.atom(Atom::manager)
        && message.data.data32[1] == connection_.atom(Atom::settingsProgram);
}

}
