// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <functional>
#include <map>
#include <span>
#include <vector>

#include "ConnectionPrivate.h"
#include "display/Clipboard.h"

namespace brindle::display {

/// The selections of an X server. Large data goes and comes in pieces; a clipboard manager keeps what is there at the end.
class X11Clipboard final : public Clipboard {
public:
    /// - handleOther: takes the events that come while another program is waited for.
    X11Clipboard(
        Connection& connection, std::function<void(const xcb_generic_event_t&)> handleOther);
    ~X11Clipboard() override;

    void offer(Selection selection, Offer offer) override;
    bool isOurs(Selection selection) const override { return held(selection).ours; }
    std::uint64_t changes(Selection selection) override { return held(selection).changes; }
    std::vector<std::string> types(Selection selection) override;
    std::optional<std::string> read(Selection selection, const std::string& type) override;
    void handOver() override;

    /// Answers whether the event was one of a selection.
    bool handle(const xcb_generic_event_t& event);

private:
    struct Held {
        xcb_atom_t atom = 0;
        Offer offer;
        bool ours = false;
        std::uint32_t since = 0; // the request that took it over
        std::uint64_t changes = 0;
    };
    /// Data on its way to another program, in pieces.
    struct Transfer {
        xcb_window_t window;
        xcb_atom_t property;
        xcb_atom_t type;
        std::string data;
        std::size_t sent = 0;
    };

    Held& held(Selection selection) { return held_[static_cast<std::size_t>(selection)]; }
    const Held& held(Selection selection) const
    {
        return held_[static_cast<std::size_t>(selection)];
    }
    Held* heldBy(xcb_atom_t atom);
    xcb_atom_t atom(const std::string& name);
    void learnNames(std::span<const xcb_atom_t> atoms);
    std::string nameOf(xcb_atom_t atom);
    std::string knownName(xcb_atom_t atom) const;

    void answer(const xcb_selection_request_event_t& request);
    bool convert(Held& held, xcb_window_t window, xcb_atom_t target, xcb_atom_t property);
    bool convertSeveral(Held& held, xcb_window_t window, xcb_atom_t property);
    bool put(xcb_window_t window, xcb_atom_t property, xcb_atom_t type, std::string data);
    void sendNext(xcb_window_t window, xcb_atom_t property);
    void lose(Held& held);

    bool wait(const std::function<bool(const xcb_generic_event_t&)>& isAwaited);
    bool request(xcb_atom_t selection, xcb_atom_t target);
    std::optional<std::string> received(xcb_atom_t* type, std::size_t most);
    std::optional<std::string> receivedInPieces();

    Connection& connection_;
    std::function<void(const xcb_generic_event_t&)> handleOther_;
    xcb_window_t window_;
    std::uint8_t ownerEvent_ = 0; // of the extension that tells of new owners; 0 without
    std::array<Held, 2> held_;
    std::vector<Transfer> transfers_;
    std::map<std::string, xcb_atom_t> atoms_;
    std::map<xcb_atom_t, std::string> names_;
};

}
