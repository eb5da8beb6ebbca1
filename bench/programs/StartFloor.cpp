// SPDX-License-Identifier: Apache-2.0

// The same window with XCB, Cairo, FreeType and fontconfig alone: paints it, sends it to the screen and ends.
// With --memory it paints without a screen.

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string_view>

#include <cairo-ft.h>
#include <cairo.h>
#include <fontconfig/fontconfig.h>
#include <ft2build.h>
#include FT_FREETYPE_H
#include <xcb/xcb.h>

#include "Scene.h"

namespace scene = brindle::bench::scene;

namespace {

using Surface = std::unique_ptr<cairo_surface_t, decltype(&cairo_surface_destroy)>;
using Drawing = std::unique_ptr<cairo_t, decltype(&cairo_destroy)>;
using Connection = std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)>;

/// Answers the face of a family; the process ends before it does.
cairo_font_face_t* faceNamed(const char* family)
{
    FcPattern* const wanted = FcPatternCreate();
    FcPatternAddString(wanted, FC_FAMILY, reinterpret_cast<const FcChar8*>(family));
    FcConfigSubstitute(nullptr, wanted, FcMatchPattern);
    FcDefaultSubstitute(wanted);
    FcResult result {};
    FcPattern* const found = FcFontMatch(nullptr, wanted, &result);
    FcChar8* path = nullptr;
    FcPatternGetString(found, FC_FILE, 0, &path);
    FT_Library library = nullptr;
    FT_Face face = nullptr;
    FT_Init_FreeType(&library);
    FT_New_Face(library, reinterpret_cast<const char*>(path), 0, &face);
    return cairo_ft_font_face_create_for_ft_face(face, FT_LOAD_NO_HINTING);
}

Surface paint()
{
    Surface surface(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, scene::kWidth, scene::kHeight),
        &cairo_surface_destroy);
    const Drawing drawing(cairo_create(surface.get()), &cairo_destroy);
    cairo_set_font_face(drawing.get(), faceNamed(scene::kFontFamily));
    cairo_set_font_size(drawing.get(), scene::kTextSize);
    for (int row = 0; row < scene::kRows; ++row) {
        const double top = row * scene::kRowHeight;
        const double grey = row % 2 ? 1 : scene::kBandGrey;
        cairo_set_source_rgb(drawing.get(), grey, grey, grey);
        cairo_rectangle(drawing.get(), 0, top, scene::kWidth, scene::kRowHeight);
        cairo_fill(drawing.get());
        cairo_set_source_rgb(drawing.get(), 0, 0, 0);
        cairo_move_to(drawing.get(), scene::kTextLeft, top + 14);
        cairo_show_text(drawing.get(), scene::textOf(row).c_str());
    }
    cairo_surface_flush(surface.get());
    return surface;
}

int show()
{
    const Connection connection(xcb_connect(nullptr, nullptr), &xcb_disconnect);
    if (xcb_connection_has_error(connection.get()))
        return 1;
    xcb_screen_t* const screen = xcb_setup_roots_iterator(xcb_get_setup(connection.get())).data;
    const xcb_window_t window = xcb_generate_id(connection.get());
    const std::uint32_t events = XCB_EVENT_MASK_EXPOSURE;
    xcb_create_window(connection.get(), XCB_COPY_FROM_PARENT, window, screen->root, 100, 100,
        scene::kWidth, scene::kHeight, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual,
        XCB_CW_EVENT_MASK, &events);
    xcb_map_window(connection.get(), window);
    xcb_flush(connection.get());
    const Surface surface = paint();
    for (bool exposed = false; !exposed;) {
        const std::unique_ptr<xcb_generic_event_t, decltype(&std::free)> event(
            xcb_wait_for_event(connection.get()), &std::free);
        if (!event)
            return 1;
        exposed = (event->response_type & 0x7F) == XCB_EXPOSE;
    }
    const xcb_gcontext_t context = xcb_generate_id(connection.get());
    xcb_create_gc(connection.get(), context, window, 0, nullptr);
    xcb_put_image(connection.get(), XCB_IMAGE_FORMAT_Z_PIXMAP, window, context, scene::kWidth,
        scene::kHeight, 0, 0, 0, screen->root_depth, scene::kWidth * scene::kHeight * 4,
        cairo_image_surface_get_data(surface.get()));
    std::free(xcb_get_input_focus_reply(
        connection.get(), xcb_get_input_focus(connection.get()), nullptr)); // painted now
    return 0;
}

}

int main(int count, char** arguments)
{
    if (count > 1 && std::string_view(arguments[1]) == "--memory")
        return paint() ? 0 : 1;
    return show();
}
