// SPDX-License-Identifier: Apache-2.0

// The same windows with XCB, Cairo, FreeType and fontconfig alone: paints them, sends them to the screen and ends.
//     bench-start-floor rows|controls memory|screen

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string_view>

#include <xcb/xcb.h>

#include "FloorPictures.h"

namespace scene = brindle::bench::scene;

namespace {

using Connection = std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)>;

xcb_window_t makeWindow(
    xcb_connection_t* connection, const xcb_screen_t& screen, const scene::Picture& picture)
{
    const xcb_window_t window = xcb_generate_id(connection);
    const std::uint32_t events = XCB_EVENT_MASK_EXPOSURE;
    xcb_create_window(connection, XCB_COPY_FROM_PARENT, window, screen.root,
        static_cast<std::int16_t>(picture.left), static_cast<std::int16_t>(picture.top),
        static_cast<std::uint16_t>(picture.width()), static_cast<std::uint16_t>(picture.height()),
        0, XCB_WINDOW_CLASS_INPUT_OUTPUT, screen.root_visual, XCB_CW_EVENT_MASK, &events);
    xcb_map_window(connection, window);
    return window;
}

void put(xcb_connection_t* connection, const xcb_screen_t& screen, xcb_window_t window,
    const scene::Picture& picture)
{
    const xcb_gcontext_t context = xcb_generate_id(connection);
    xcb_create_gc(connection, context, window, 0, nullptr);
    const auto width = static_cast<std::uint16_t>(picture.width());
    const auto height = static_cast<std::uint16_t>(picture.height());
    xcb_put_image(connection, XCB_IMAGE_FORMAT_Z_PIXMAP, window, context, width, height, 0, 0, 0,
        screen.root_depth, std::uint32_t { width } * height * 4,
        cairo_image_surface_get_data(picture.surface.get()));
}

int show(std::vector<scene::Picture> (*paint)())
{
    const Connection connection(xcb_connect(nullptr, nullptr), &xcb_disconnect);
    if (xcb_connection_has_error(connection.get()))
        return 1;
    const xcb_screen_t& screen = *xcb_setup_roots_iterator(xcb_get_setup(connection.get())).data;
    const std::vector<scene::Picture> pictures = paint();
    std::vector<xcb_window_t> windows;
    for (const scene::Picture& picture : pictures)
        windows.push_back(makeWindow(connection.get(), screen, picture));
    xcb_flush(connection.get());
    for (std::size_t exposed = 0; exposed < windows.size();) {
        const std::unique_ptr<xcb_generic_event_t, decltype(&std::free)> event(
            xcb_wait_for_event(connection.get()), &std::free);
        if (!event)
            return 1;
        exposed += (event->response_type & 0x7F) == XCB_EXPOSE;
    }
    for (std::size_t i = 0; i < windows.size(); ++i)
        put(connection.get(), screen, windows[i], pictures[i]);
    std::free(xcb_get_input_focus_reply(
        connection.get(), xcb_get_input_focus(connection.get()), nullptr)); // painted now
    return 0;
}

}

int main(int count, char** arguments)
{
    if (count < 3)
        return 2;
    const auto paint
        = std::string_view(arguments[1]) == "controls" ? scene::paintControls : scene::paintRows;
    if (std::string_view(arguments[2]) == "memory")
        return paint().empty();
    return show(paint);
}
