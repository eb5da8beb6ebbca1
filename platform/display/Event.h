// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>

#include "Types.h"

namespace brindle::display {

/// Something that happened on the display. A field that its kind does not mention reads zero or empty.
struct Event {
    enum class Kind : std::uint8_t {
        none,
        pointerDown, ///< `button`; drags are `pointerMoved` between down and up, sent to the same surface
        pointerUp, ///< `button`
        pointerMoved,
        pointerEntered, ///< not sent for grabs that begin or end
        pointerLeft, ///< likewise
        scroll, ///< `scrollX`, `scrollY`, `preciseScroll`
        keyDown, ///< `keyCode` to `repeat`
        keyUp, ///< as keyDown
        modifiersChanged, ///< `modifiers` after the change; `keyCode` when a key caused it
        focusIn,
        focusOut,
        frameChanged, ///< `frame`; the surface answers it already. Not sent for one's own `setFrame`
        closeRequested, ///< the surface is still there; whoever agrees hides or destroys it
        exposed, ///< the surface has lost pixels or has a new size: present it again, whole
        stateChanged, ///< `state`; the surface answers it already
        screensChanged, ///< no surface; the display answers the new screens already
        appearanceChanged, ///< no surface; the desktop's colours changed
        moveResizeEnded, ///< what `beginMove` or `beginResize` has handed over is over: the button was let go
        grabLost, ///< the grab of `surface` ended without `Display::ungrab`
        disconnected, ///< no surface; the last event of this display
    };

    Kind kind = Kind::none;
    SurfaceId surface = 0;
    double time = 0; ///< seconds on the display's monotonic clock
    CGPoint location; ///< points from the surface's bottom-left corner, y up
    CGPoint screenLocation; ///< the same place in screen coordinates
    Modifiers modifiers = 0;

    int button = 0; ///< 0 left, 1 right, 2 middle, 3 and more the others

    /// Points that the content shall move: positive is to the right, and down.
    double scrollX = 0;
    double scrollY = 0;
    bool preciseScroll = false; ///< from a device that is finer than a wheel with steps

    /// The place of the key on a keyboard, whatever its layout; 0xFFFF for keys that have no number.
    std::uint16_t keyCode = 0;
    /// What the key types. Keys without a character have one from 0xF700 on. Empty in the middle of a
    /// composition (after a dead key).
    std::u16string characters;
    /// What the key would type if no modifier but Shift were down.
    std::u16string charactersIgnoringModifiers;
    /// The character for key equivalents on the first layout that has Latin letters; 0 when there is none.
    char32_t latinCharacter = 0;
    bool repeat = false; ///< sent because the key is held down

    CGRect frame;
    SurfaceState state;
};

}
