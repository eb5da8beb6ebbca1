// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSCursor.h"
#include "display/Types.h"

namespace brindle {

/// What the files of this folder do with cursors beside sending messages.
struct CursorAccess {
    static display::Cursor shape(const NSCursor& cursor)
    {
        return static_cast<display::Cursor>(cursor.shape_);
    }
    /// Answers the cursor of one of the display's shapes.
    static Ref<NSCursor> standard(display::Cursor shape);
    static bool isUsable(NSInteger shape);
    /// Gives the pointer the shape of a place, or the arrow where a place ends: nil. A place that it is in already
    /// changes nothing, so that a host may set another shape there.
    static void enter(NSCursor* cursor);
    /// Shows the pointer that was hidden until it moves.
    static void pointerMoved();
    /// Tells a display that came in place of another.
    static void displayChanged();
};

}
