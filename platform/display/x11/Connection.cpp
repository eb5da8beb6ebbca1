// SPDX-License-Identifier: Apache-2.0
#include "ConnectionPrivate.h"
#include "LateLibrariesPrivate.h"

#include <algorithm>
#include <bit>
#include <chrono>
#include <csignal>

namespace brindle::display {

namespace {

    xcb_screen_t* screenOf(xcb_connection_t* connection, int number)
    {
        const xcb_setup_t* setup = xcb_get_setup(connection);
        if (!setup)
            return nullptr;
        xcb_screen_iterator_t it = xcb_setup_roots_iterator(setup);
        while (it.rem > 0 && number-- > 0)
            xcb_screen_next(&it);
        return it.rem > 0 ? it.data : nullptr;
    }

    // A write to a server that was killed raises this signal before anybody can see the error.
    void survivePipeSignal()
    {
        struct sigaction present { };
        if (sigaction(SIGPIPE, nullptr, &present) == 0 && present.sa_handler == SIG_DFL) {
            present.sa_handler = SIG_IGN;
            sigaction(SIGPIPE, &present, nullptr);
        }
    }

    bool hasWords(const xcb_setup_t* setup, std::uint8_t depth)
    {
        constexpr auto kOurs = std::endian::native == std::endian::little
            ? XCB_IMAGE_ORDER_LSB_FIRST
            : XCB_IMAGE_ORDER_MSB_FIRST;
        if (setup->image_byte_order != kOurs)
            return false;
        for (auto it = xcb_setup_pixmap_formats_iterator(setup); it.rem; xcb_format_next(&it)) {
            if (it.data->depth == depth)
                return it.data->bits_per_pixel == 32 && it.data->scanline_pad == 32;
        }
        return false;
    }

    bool hasOurMasks(const xcb_visualtype_t& visual)
    {
        return visual._class == XCB_VISUAL_CLASS_TRUE_COLOR && visual.red_mask == 0xFF0000
            && visual.green_mask == 0xFF00 && visual.blue_mask == 0xFF;
    }

    // Never more than what came, whatever the reply says.
    std::size_t sizeOf(const xcb_get_property_reply_t& reply)
    {
        return std::min(
            std::size_t { reply.value_len } * (reply.format / 8), std::size_t { reply.length } * 4);
    }

    std::string textOf(const xcb_get_property_reply_t* reply)
    {
        if (!reply || reply->format != 8)
            return {};
        return { static_cast<const char*>(xcb_get_property_value(reply)), sizeOf(*reply) };
    }

    std::int64_t monotonicMilliseconds()
    {
        using namespace std::chrono;
        return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
    }

}

std::unique_ptr<Connection> Connection::tryConnect(
    const std::string& server, const std::function<void()>& found)
{
    int number = 0;
    xcb_connection_t* raw = xcb_connect(server.c_str(), &number);
    xcb_screen_t* screen = xcb_connection_has_error(raw) ? nullptr : screenOf(raw, number);
    if (!screen) {
        xcb_disconnect(raw);
        return nullptr;
    }
    std::unique_ptr<Connection> connection(new Connection(raw, screen));
    if (!connection->chooseFormats())
        return nullptr;
    found();
    survivePipeSignal();
    connection->askAtStart();
    connection->receiveAtStart();
    if (connection->isBroken())
        return nullptr;
    return connection;
}

Connection::Connection(xcb_connection_t* raw, xcb_screen_t* screen)
    : raw_(raw)
    , screen_(screen)
{
}

Connection::~Connection() { xcb_disconnect(raw_); }

bool Connection::chooseFormats()
{
    const xcb_setup_t* setup = xcb_get_setup(raw_);
    for (auto depth = xcb_screen_allowed_depths_iterator(screen_); depth.rem;
         xcb_depth_next(&depth)) {
        if (!hasWords(setup, depth.data->depth))
            continue;
        for (auto it = xcb_depth_visuals_iterator(depth.data); it.rem; xcb_visualtype_next(&it)) {
            if (!hasOurMasks(*it.data))
                continue;
            const VisualFormat format { it.data->visual_id, depth.data->depth };
            if (format.visual == screen_->root_visual || (format.depth == 24 && !opaque_.visual))
                opaque_ = format;
            if (format.depth == 32 && !alpha_.visual)
                alpha_ = format;
        }
    }
    if (!opaque_.visual)
        opaque_ = alpha_;
    if (!alpha_.visual)
        alpha_ = opaque_;
    return opaque_.visual != 0;
}

void Connection::askAtStart()
{
    for (xcb_extension_t* const id : { RANDR(xcb_randr_id), XINPUT(xcb_input_id), &xcb_shm_id,
             XFIXES(xcb_xfixes_id), KEYBOARD(xcb_xkb_id) }) {
        if (id)
            xcb_prefetch_extension_data(raw_, id);
    }
    atoms_.ask(raw_);
    resourcesCookie_ = xcb_get_property(
        raw_, 0, screen_->root, XCB_ATOM_RESOURCE_MANAGER, XCB_ATOM_STRING, 0, 1 << 16);
    const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(raw_, screen_->root, XCB_CW_EVENT_MASK, &mask);
}

void Connection::receiveAtStart()
{
    const auto extension = [this](xcb_extension_t* id) {
        const xcb_query_extension_reply_t* found = id ? xcb_get_extension_data(raw_, id) : nullptr;
        return found && found->present ? found : nullptr;
    };
    xcb_input_xi_query_version_cookie_t inputCookie {};
    xcb_shm_query_version_cookie_t memoryCookie {};
    const auto* input = extension(XINPUT(xcb_input_id));
    if (input)
        inputCookie = XINPUT(xcb_input_xi_query_version)(raw_, 2, 2);
    const auto* memory = extension(&xcb_shm_id);
    if (memory)
        memoryCookie = xcb_shm_query_version(raw_);
    // These two want to be told which version we speak; their answers change nothing for us.
    if (const auto* fixes = extension(XFIXES(xcb_xfixes_id))) {
        extensions_.fixesEvent = fixes->first_event;
        xcb_discard_reply(raw_, XFIXES(xcb_xfixes_query_version)(raw_, 5, 0).sequence);
    }
    if (const auto* randr = extension(RANDR(xcb_randr_id))) {
        extensions_.randrEvent = randr->first_event;
        xcb_discard_reply(raw_, RANDR(xcb_randr_query_version)(raw_, 1, 5).sequence);
    }
    xcb_xkb_use_extension_cookie_t keyboardCookie {};
    const auto* keyboard = extension(KEYBOARD(xcb_xkb_id));
    if (keyboard)
        keyboardCookie = KEYBOARD(xcb_xkb_use_extension)(raw_, 1, 0);

    atoms_.receive(raw_);
    const auto resources = owned(xcb_get_property_reply(raw_, resourcesCookie_, nullptr));
    resources_ = textOf(resources.get());
    if (input) {
        const auto reply
            = owned(XINPUT(xcb_input_xi_query_version_reply)(raw_, inputCookie, nullptr));
        if (reply && reply->major_version >= 2
            && (reply->major_version > 2 || reply->minor_version >= 1))
            extensions_.inputMajor = input->major_opcode;
    }
    if (keyboard) {
        const auto reply
            = owned(KEYBOARD(xcb_xkb_use_extension_reply)(raw_, keyboardCookie, nullptr));
        if (reply && reply->supported)
            extensions_.xkbEvent = keyboard->first_event;
    }
    if (memory) {
        const auto reply = owned(xcb_shm_query_version_reply(raw_, memoryCookie, nullptr));
        extensions_.sharedMemory = reply
            && (reply->major_version > 1
                || (reply->major_version == 1 && reply->minor_version >= 2));
    }
}

xcb_colormap_t Connection::colormap(VisualFormat format)
{
    if (format.visual == screen_->root_visual)
        return screen_->default_colormap;
    xcb_colormap_t& map = format.visual == alpha_.visual ? alphaColormap_ : opaqueColormap_;
    if (!map) {
        map = xcb_generate_id(raw_);
        xcb_create_colormap(raw_, XCB_COLORMAP_ALLOC_NONE, map, screen_->root, format.visual);
    }
    return map;
}

Connection::Question Connection::ask(
    xcb_window_t window, xcb_atom_t property, xcb_atom_t type, std::uint32_t limit)
{
    return { xcb_get_property(raw_, 0, window, property, type, 0, limit), type };
}

std::vector<std::uint32_t> Connection::values(Question question)
{
    const auto reply = owned(xcb_get_property_reply(raw_, question.cookie, nullptr));
    if (!reply || reply->type == XCB_ATOM_NONE)
        return {};
    if (reply->format != 32 || reply->type != question.type) {
        ++counters_.malformed;
        return {};
    }
    const auto* first = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
    return { first, first + sizeOf(*reply) / 4 };
}

std::string Connection::text(xcb_window_t window, xcb_atom_t property)
{
    const auto reply = owned(xcb_get_property_reply(raw_,
        xcb_get_property(raw_, 0, window, property, XCB_GET_PROPERTY_TYPE_ANY, 0, 1 << 16),
        nullptr));
    return textOf(reply.get());
}

void Connection::setValues(xcb_window_t window, xcb_atom_t property, xcb_atom_t type,
    std::span<const std::uint32_t> values)
{
    xcb_change_property(raw_, XCB_PROP_MODE_REPLACE, window, property, type, 32,
        static_cast<std::uint32_t>(values.size()), values.data());
}

void Connection::setText(
    xcb_window_t window, xcb_atom_t property, xcb_atom_t type, std::string_view text)
{
    xcb_change_property(raw_, XCB_PROP_MODE_REPLACE, window, property, type, 8,
        static_cast<std::uint32_t>(text.size()), text.data());
}

void Connection::remove(xcb_window_t window, xcb_atom_t property)
{
    xcb_delete_property(raw_, window, property);
}

void Connection::tellManager(xcb_window_t window, Atom type, std::span<const std::uint32_t> data)
{
    xcb_client_message_event_t message {};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = atom(type);
    for (std::size_t i = 0; i < data.size() && i < 5; ++i)
        message.data.data32[i] = data[i];
    xcb_send_event(raw_, 0, root(),
        XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
        reinterpret_cast<const char*>(&message));
}

double Connection::now()
{
    using namespace std::chrono;
    return duration<double>(steady_clock::now().time_since_epoch()).count();
}

double Connection::seconds(xcb_timestamp_t time)
{
    if (time == XCB_CURRENT_TIME)
        return now();
    // The server's clock counts milliseconds in 32 bits from a moment of its own. The smallest distance seen is the
    // one with the least delay on the way.
    const std::int64_t ours = monotonicMilliseconds();
    const auto distance = [&] {
        const std::int64_t server = clockOffset_ ? ours - *clockOffset_ : ours;
        const auto behind = static_cast<std::int32_t>(static_cast<std::uint32_t>(server) - time);
        return static_cast<std::int64_t>(behind);
    };
    if (!clockOffset_)
        clockOffset_ = distance();
    const std::int64_t behind = distance();
    if (behind < 0)
        *clockOffset_ += behind;
    return static_cast<double>(ours - std::max<std::int64_t>(behind, 0)) / 1000;
}

}
