// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstddef>

#include "ConnectionPrivate.h"

struct xcb_cursor_context_t;

namespace brindle::display {

/// The pointer's shapes from the user's cursor theme. The theme is read when the first shape is wanted.
class Cursors {
public:
    explicit Cursors(Connection& connection)
        : connection_(connection)
    {
    }
    ~Cursors();
    Cursors(const Cursors&) = delete;
    Cursors& operator=(const Cursors&) = delete;

    /// Answers the server's cursor; 0, the one of the window around, when the theme lacks it.
    xcb_cursor_t operator[](Cursor cursor);

private:
    static constexpr std::size_t kCount = static_cast<std::size_t>(Cursor::hidden) + 1;

    xcb_cursor_t load(Cursor cursor);
    xcb_cursor_t makeHidden();

    Connection& connection_;
    xcb_cursor_context_t* context_ = nullptr;
    std::array<xcb_cursor_t, kCount> loaded_ {};
    bool tried_ = false;
};

}
