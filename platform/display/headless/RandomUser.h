// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <random>

#include "display/Display.h"

namespace brindle::display {

class HeadlessDisplay;

/// A user who does anything: moves, clicks, drags, turns the wheel, types and presses keys, at places all over the screen
/// and just outside it. The same seed does the same. For tests that look whether an application survives its users.
///
/// What it does is only queued, as with the display's own hands.
class BRINDLE_EXPORT RandomUser {
public:
    /// - display: outlives the user.
    RandomUser(HeadlessDisplay& display, std::uint32_t seed);

    /// Does one thing.
    void act();
    /// Lets go of button and modifiers, and presses Escape.
    void giveUp();

private:
    CGPoint place();
    double amount();
    Modifiers someModifiers();
    void typeAKey();

    HeadlessDisplay& display_;
    std::mt19937 random_;
};

}
