// SPDX-License-Identifier: Apache-2.0
#include "LateLibrariesPrivate.h"
#include "X11ClipboardPrivate.h"

#include <algorithm>
#include <utility>

#include <poll.h>

namespace brindle::display {

namespace {

    constexpr double kPatienceSeconds = 1; // for each step of another program
    constexpr std::size_t kPiece = 64 * 1024;
    constexpr std::size_t kMostBytes = std::size_t { 256 } << 20;
    constexpr std::size_t kMostTypes = 1024; // that another program may name
    constexpr std::size_t kMostNames = 4 * kMostTypes; // that are remembered
    constexpr std::size_t kMostTransfers = 64; // of programs that have not fetched everything

    std::vector<xcb_atom_t> atomsIn(const std::string& bytes)
    {
        std::vector<xcb_atom_t> atoms(bytes.size() / sizeof(xcb_atom_t));
        std::copy_n(
            bytes.data(), atoms.size() * sizeof(xcb_atom_t), reinterpret_cast<char*>(atoms.data()));
        return atoms;
    }

}

X11Clipboard::X11Clipboard(
    Connection& connection, std::function<void(const xcb_generic_event_t&)> handleOther)
    : connection_(connection)
    , handleOther_(std::move(handleOther))
    , window_(xcb_generate_id(connection.raw()))
{
    xcb_connection_t* const raw = connection_.raw();
    const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(raw, 0, window_, connection_.root(), -1, -1, 1, 1, 0,
        XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &mask);
    held(Selection::clipboard).atom = atom("CLIPBOARD");
    held(Selection::primary).atom = XCB_ATOM_PRIMARY;
    ownerEvent_ = connection_.extensions().fixesEvent;
    if (!ownerEvent_)
        return;
    const auto select = XFIXES(xcb_xfixes_select_selection_input);
    for (const Held& each : held_)
        select(raw, window_, each.atom,
            XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER
                | XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY
                | XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
}

X11Clipboard::~X11Clipboard()
{
    xcb_destroy_window(connection_.raw(), window_);
    xcb_flush(connection_.raw());
}

xcb_atom_t X11Clipboard::atom(const std::string& name)
{
    xcb_atom_t& known = atoms_[name];
    if (!known) {
        const auto reply = owned(xcb_intern_atom_reply(connection_.raw(),
            xcb_intern_atom(
                connection_.raw(), 0, static_cast<std::uint16_t>(name.size()), name.data()),
            nullptr));
        known = reply ? reply->atom : 0;
    }
    return known;
}

/// Asks for all names that are not known yet, and waits once.
void X11Clipboard::learnNames(std::span<const xcb_atom_t> atoms)
{
    xcb_connection_t* const raw = connection_.raw();
    if (names_.size() > kMostNames)
        names_.clear();
    std::vector<std::pair<xcb_atom_t, xcb_get_atom_name_cookie_t>> asked;
    for (const xcb_atom_t atom : atoms) {
        if (names_.try_emplace(atom).second)
            asked.emplace_back(atom, xcb_get_atom_name(raw, atom));
    }
    for (const auto& [atom, cookie] : asked) {
        if (const auto reply = owned(xcb_get_atom_name_reply(raw, cookie, nullptr)))
            names_[atom].assign(xcb_get_atom_name_name(reply.get()),
                static_cast<std::size_t>(xcb_get_atom_name_name_length(reply.get())));
        else
            names_.erase(atom); // it may be given a name later
    }
}

/// Answers the name of an atom; empty for one without.
std::string X11Clipboard::nameOf(xcb_atom_t atom)
{
    learnNames(std::span(&atom, 1));
    return knownName(atom);
}

std::string X11Clipboard::knownName(xcb_atom_t atom) const
{
    const auto known = names_.find(atom);
    return known == names_.end() ? std::string() : known->second;
}

X11Clipboard::Held* X11Clipboard::heldBy(xcb_atom_t atom)
{
    const auto found = std::find_if(
        held_.begin(), held_.end(), [atom](const Held& each) { return each.atom == atom; });
    return found == held_.end() ? nullptr : &*found;
}

// ---- giving

void X11Clipboard::offer(Selection selection, Offer offer)
{
    Held& now = held(selection);
    now.offer = std::move(offer);
    now.ours = true;
    now.since
        = xcb_set_selection_owner(connection_.raw(), window_, now.atom, XCB_CURRENT_TIME).sequence;
    xcb_flush(connection_.raw());
}

void X11Clipboard::lose(Held& held)
{
    ++held.changes;
    if (!std::exchange(held.ours, false))
        return;
    const Offer gone = std::exchange(held.offer, {});
    if (gone.lost)
        gone.lost();
}

bool X11Clipboard::put(xcb_window_t window, xcb_atom_t property, xcb_atom_t type, std::string data)
{
    xcb_connection_t* const raw = connection_.raw();
    std::erase_if(transfers_, [=](const Transfer& each) { // who asks anew has given up on it
        return each.window == window && each.property == property;
    });
    if (data.size() <= kPiece) {
        xcb_change_property(raw, XCB_PROP_MODE_REPLACE, window, property, type, 8,
            static_cast<std::uint32_t>(data.size()), data.data());
        return true;
    }
    const std::uint32_t mask
        = XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY; // it may go meanwhile
    if (owned(xcb_request_check(
            raw, xcb_change_window_attributes_checked(raw, window, XCB_CW_EVENT_MASK, &mask))))
        return false; // it has gone already
    if (transfers_.size() >= kMostTransfers)
        transfers_.erase(transfers_.begin());
    const auto size = static_cast<std::uint32_t>(data.size());
    connection_.setValues(window, property, atom("INCR"), std::span(&size, 1));
    transfers_.push_back({ window, property, type, std::move(data) });
    return true;
}

// The other program has taken a piece away and waits for the next; an empty one ends it.
void X11Clipboard::sendNext(xcb_window_t window, xcb_atom_t property)
{
    const auto found = std::find_if(transfers_.begin(), transfers_.end(),
        [=](const Transfer& each) { return each.window == window && each.property == property; });
    if (found == transfers_.end())
        return;
    const std::size_t length = std::min(kPiece, found->data.size() - found->sent);
    xcb_change_property(connection_.raw(), XCB_PROP_MODE_REPLACE, window, property, found->type, 8,
        static_cast<std::uint32_t>(length), found->data.data() + found->sent);
    found->sent += length;
    if (!length)
        transfers_.erase(found);
    xcb_flush(connection_.raw());
}

bool X11Clipboard::convert(Held& held, xcb_window_t window, xcb_atom_t target, xcb_atom_t property)
{
    if (!held.ours || !held.offer.types)
        return false;
    const Offer offer = held.offer; // whoever is asked may offer something else
    const std::vector<std::string> names = offer.types();
    if (target == atom("TARGETS")) {
        std::vector<std::uint32_t> targets { target, atom("MULTIPLE"), atom("SAVE_TARGETS") };
        for (const std::string& name : names)
            targets.push_back(atom(name));
        connection_.setValues(window, property, XCB_ATOM_ATOM, targets);
        return true;
    }
    if (target == atom("MULTIPLE"))
        return convertSeveral(held, window, property);
    if (target == atom("SAVE_TARGETS"))
        return put(window, property, atom("NULL"), {});
    const std::string name = nameOf(target);
    if (std::find(names.begin(), names.end(), name) == names.end() || !offer.provide)
        return false;
    return put(window, property, target, offer.provide(name));
}

bool X11Clipboard::convertSeveral(Held& held, xcb_window_t window, xcb_atom_t property)
{
    const xcb_atom_t multiple = atom("MULTIPLE");
    std::vector<std::uint32_t> pairs = connection_.values(window, property, atom("ATOM_PAIR"));
    for (std::size_t i = 0; i + 1 < pairs.size(); i += 2) {
        if (pairs[i] == multiple || !convert(held, window, pairs[i], pairs[i + 1]))
            pairs[i + 1] = XCB_ATOM_NONE;
    }
    connection_.setValues(window, property, atom("ATOM_PAIR"), pairs);
    return true;
}

void X11Clipboard::answer(const xcb_selection_request_event_t& request)
{
    Held* const held = heldBy(request.selection);
    const xcb_atom_t property = request.property ? request.property : request.target;
    const bool done = held && convert(*held, request.requestor, request.target, property);
    xcb_selection_notify_event_t told {};
    told.response_type = XCB_SELECTION_NOTIFY;
    told.time = request.time;
    told.requestor = request.requestor;
    told.selection = request.selection;
    told.target = request.target;
    told.property = done ? property : xcb_atom_t { XCB_ATOM_NONE };
    xcb_send_event(connection_.raw(), 0, request.requestor, XCB_EVENT_MASK_NO_EVENT,
        reinterpret_cast<const char*>(&told));
    xcb_flush(connection_.raw());
}

bool X11Clipboard::handle(const xcb_generic_event_t& event)
{
    if (codeOf(event) == XCB_SELECTION_REQUEST) {
        answer(reinterpret_cast<const xcb_selection_request_event_t&>(event));
        return true;
    }
    if (codeOf(event) == XCB_SELECTION_CLEAR) {
        const auto& cleared = reinterpret_cast<const xcb_selection_clear_event_t&>(event);
        Held* const held = heldBy(cleared.selection);
        if (held && !ownerEvent_)
            lose(*held);
        return true;
    }
    if (codeOf(event) == XCB_SELECTION_NOTIFY)
        return true; // too late for anybody who waited
    if (ownerEvent_ && codeOf(event) == ownerEvent_) {
        const auto& changed = reinterpret_cast<const xcb_xfixes_selection_notify_event_t&>(event);
        Held* const held = heldBy(changed.selection);
        if (!held || changed.owner == window_)
            return true;
        if (held->ours && static_cast<std::int32_t>(event.full_sequence - held->since) < 0)
            ++held->changes; // it was so before we took it over
        else
            lose(*held);
        return true;
    }
    if (codeOf(event) == XCB_DESTROY_NOTIFY) {
        const auto& gone = reinterpret_cast<const xcb_destroy_notify_event_t&>(event);
        std::erase_if(transfers_, [&](const Transfer& each) { return each.window == gone.window; });
    }
    if (codeOf(event) != XCB_PROPERTY_NOTIFY)
        return false;
    const auto& property = reinterpret_cast<const xcb_property_notify_event_t&>(event);
    if (property.state == XCB_PROPERTY_DELETE)
        sendNext(property.window, property.atom);
    return property.window == window_;
}

// ---- asking

bool X11Clipboard::wait(const std::function<bool(const xcb_generic_event_t&)>& isAwaited)
{
    xcb_connection_t* const raw = connection_.raw();
    xcb_flush(raw);
    const double end = Connection::now() + kPatienceSeconds;
    while (!connection_.isBroken()) {
        while (const auto event = owned(xcb_poll_for_event(raw))) {
            if (isAwaited(*event))
                return true;
            handleOther_(*event);
        }
        const double left = end - Connection::now();
        if (left <= 0)
            return false;
        pollfd ready { xcb_get_file_descriptor(raw), POLLIN, 0 };
        poll(&ready, 1, std::max(1, static_cast<int>(left * 1000)));
    }
    return false;
}

bool X11Clipboard::request(xcb_atom_t selection, xcb_atom_t target)
{
    const xcb_atom_t property = atom("_BRINDLE_CLIPBOARD");
    xcb_delete_property(connection_.raw(), window_, property);
    xcb_convert_selection(
        connection_.raw(), window_, selection, target, property, XCB_CURRENT_TIME);
    bool given = false;
    const bool answered = wait([&](const xcb_generic_event_t& event) {
        if (codeOf(event) != XCB_SELECTION_NOTIFY)
            return false;
        const auto& told = reinterpret_cast<const xcb_selection_notify_event_t&>(event);
        if (told.selection != selection || told.target != target)
            return false;
        given = told.property != XCB_ATOM_NONE;
        return true;
    });
    return answered && given;
}

std::optional<std::string> X11Clipboard::received(xcb_atom_t* type, std::size_t most)
{
    const auto reply = owned(xcb_get_property_reply(connection_.raw(),
        xcb_get_property(connection_.raw(), 1, window_, atom("_BRINDLE_CLIPBOARD"),
            XCB_GET_PROPERTY_TYPE_ANY, 0, static_cast<std::uint32_t>(most / 4)),
        nullptr));
    if (!reply || !reply->type)
        return {};
    if (type)
        *type = reply->type;
    return std::string(static_cast<const char*>(xcb_get_property_value(reply.get())),
        static_cast<std::size_t>(xcb_get_property_value_length(reply.get())));
}

std::optional<std::string> X11Clipboard::receivedInPieces()
{
    const xcb_atom_t property = atom("_BRINDLE_CLIPBOARD");
    std::string all;
    while (all.size() <= kMostBytes) {
        const bool came = wait([&](const xcb_generic_event_t& event) {
            if (codeOf(event) != XCB_PROPERTY_NOTIFY)
                return false;
            const auto& changed = reinterpret_cast<const xcb_property_notify_event_t&>(event);
            return changed.window == window_ && changed.atom == property
                && changed.state == XCB_PROPERTY_NEW_VALUE;
        });
        const std::optional<std::string> piece
            = came ? received(nullptr, kMostBytes) : std::nullopt;
        if (!piece)
            return {};
        if (piece->empty())
            return all;
        all += *piece;
    }
    return {};
}

std::optional<std::string> X11Clipboard::read(Selection selection, const std::string& type)
{
    if (!request(held(selection).atom, atom(type)))
        return {};
    xcb_atom_t kind = 0;
    std::optional<std::string> data = received(&kind, kMostBytes);
    if (data && kind == atom("INCR"))
        return receivedInPieces();
    return data;
}

std::vector<std::string> X11Clipboard::types(Selection selection)
{
    std::vector<std::string> names;
    if (!request(held(selection).atom, atom("TARGETS")))
        return names;
    const std::optional<std::string> list = received(nullptr, kMostTypes * sizeof(xcb_atom_t));
    const std::vector<xcb_atom_t> targets = atomsIn(list.value_or(std::string()));
    learnNames(targets);
    for (const xcb_atom_t target : targets) {
        if (std::string name = knownName(target); !name.empty())
            names.push_back(std::move(name));
    }
    return names;
}

// Asks the clipboard manager, where there is one, to keep what is there.
void X11Clipboard::handOver()
{
    if (!held(Selection::clipboard).ours || connection_.isBroken())
        return;
    const xcb_atom_t manager = atom("CLIPBOARD_MANAGER");
    const auto owner = owned(xcb_get_selection_owner_reply(
        connection_.raw(), xcb_get_selection_owner(connection_.raw(), manager), nullptr));
    if (owner && owner->owner)
        request(manager, atom("SAVE_TARGETS"));
}

}
