// SPDX-License-Identifier: Apache-2.0
#include "CursorsPrivate.h"

#include <xcb/xcb_cursor.h>

#include "foundation/LateLibrary.h"

namespace brindle::display {

namespace {

    // It brings two more libraries along.
    void* library()
    {
        static void* const opened = late::openLibrary("libxcb-cursor.so.0");
        return opened;
    }

#define THEME(name) BRINDLE_LATE(library(), name)

    // The customary name first, then what older themes call it.
    struct Names {
        const char* first;
        const char* second;
    };

    Names namesOf(Cursor cursor)
    {
        switch (cursor) {
        case Cursor::arrow:
            return { "default", "left_ptr" };
        case Cursor::iBeam:
            return { "text", "xterm" };
        case Cursor::pointingHand:
            return { "pointer", "hand2" };
        case Cursor::openHand:
            return { "grab", "hand1" };
        case Cursor::closedHand:
            return { "grabbing", "fleur" };
        case Cursor::crosshair:
            return { "crosshair", "cross" };
        case Cursor::resizeLeftRight:
            return { "ew-resize", "sb_h_double_arrow" };
        case Cursor::resizeUpDown:
            return { "ns-resize", "sb_v_double_arrow" };
        case Cursor::resizeTopLeftBottomRight:
            return { "nwse-resize", "bottom_right_corner" };
        case Cursor::resizeTopRightBottomLeft:
            return { "nesw-resize", "bottom_left_corner" };
        case Cursor::notAllowed:
            return { "not-allowed", "crossed_circle" };
        case Cursor::wait:
            return { "wait", "watch" };
        case Cursor::hidden:
            break;
        }
        return { "default", "left_ptr" };
    }

}

Cursors::~Cursors()
{
    if (context_)
        THEME(xcb_cursor_context_free)(context_);
}

xcb_cursor_t Cursors::operator[](Cursor cursor)
{
    xcb_cursor_t& known = loaded_[static_cast<std::size_t>(cursor)];
    if (!known)
        known = cursor == Cursor::hidden ? makeHidden() : load(cursor);
    return known;
}

xcb_cursor_t Cursors::load(Cursor cursor)
{
    if (!tried_) {
        tried_ = true;
        auto* screen = const_cast<xcb_screen_t*>(&connection_.screen());
        if (connection_.isBroken() || !library()
            || THEME(xcb_cursor_context_new)(connection_.raw(), screen, &context_) < 0)
            context_ = nullptr;
    }
    if (!context_)
        return XCB_NONE;
    const Names names = namesOf(cursor);
    const xcb_cursor_t found = THEME(xcb_cursor_load_cursor)(context_, names.first);
    return found ? found : THEME(xcb_cursor_load_cursor)(context_, names.second);
}

xcb_cursor_t Cursors::makeHidden()
{
    xcb_connection_t* raw = connection_.raw();
    const xcb_pixmap_t mask = xcb_generate_id(raw);
    const xcb_gcontext_t context = xcb_generate_id(raw);
    const xcb_cursor_t cursor = xcb_generate_id(raw);
    const xcb_rectangle_t all { 0, 0, 1, 1 };
    xcb_create_pixmap(raw, 1, mask, connection_.root(), 1, 1);
    const std::uint32_t none = 0;
    xcb_create_gc(raw, context, mask, XCB_GC_FOREGROUND, &none);
    xcb_poly_fill_rectangle(raw, mask, context, 1, &all);
    xcb_create_cursor(raw, cursor, mask, mask, 0, 0, 0, 0, 0, 0, 0, 0);
    xcb_free_gc(raw, context);
    xcb_free_pixmap(raw, mask);
    return cursor;
}

}
