// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSEvent.h"
#include "foundation/NSGeometry.h"

namespace brindle {

class NSData;
class NSString;

/// A screen in memory with a user's hands: what tests and programs in other languages drive an application with.
/// They reach the screen that `openScreen` opened, and one that the environment chose by BRINDLE_DISPLAY=headless.
///
/// Places are in points from the bottom left of the primary screen. What the hands do is only queued; `NSApplication`'s
/// `processEvents` and every run of its loop send it. Without such a screen the functions do nothing. Thread: main.
namespace headless {

    /// Shows the application on a new screen in memory, in place of whatever it had. Windows stay and move to it.
    /// The clock becomes virtual.
    /// - width, height: points. - scale: pixels a point.
    BRINDLE_EXPORT void openScreen(CGFloat width, CGFloat height, CGFloat scale);
    /// Takes the screen away; the application then has none.
    BRINDLE_EXPORT void closeScreen();
    BRINDLE_EXPORT bool isScreenOpen();

    BRINDLE_EXPORT void movePointer(NSPoint place);
    BRINDLE_EXPORT void pressButton(NSInteger button);
    BRINDLE_EXPORT void releaseButton(NSInteger button);
    /// Moves, presses and releases, so many times.
    BRINDLE_EXPORT void click(NSPoint place, NSInteger count, NSInteger button);
    /// Presses at one place, moves in equal steps, releases at the other.
    BRINDLE_EXPORT void drag(NSPoint from, NSPoint to, NSInteger steps, NSInteger button);
    BRINDLE_EXPORT void scroll(CGFloat x, CGFloat y, bool precise);
    /// Presses and releases a key for each character.
    BRINDLE_EXPORT void typeText(NSString* text);
    /// Presses and releases one key while modifiers are down.
    BRINDLE_EXPORT void pressKey(NSString* characters, NSEventModifierFlags modifiers);

    /// Lets somebody at the application who does anything: moves, clicks, drags, turns the wheel, types and presses keys, so
    /// many times. Unlike the other hands these do not only queue it: each thing is sent and drawn before the next.
    /// - seed: the same one does the same.
    BRINDLE_EXPORT void doAnything(std::uint32_t seed, NSInteger times);

    /// Answers what a screen shows as a PNG file's contents; nil without one. Draws nothing anew.
    BRINDLE_EXPORT Ref<NSData> screenshot();
    /// Answers one pixel, counted from the top left, as 0xAARRGGBB; 0 outside.
    BRINDLE_EXPORT std::uint32_t pixelAt(NSInteger x, NSInteger y);

}

}
