// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <exception>
#include <string_view>

#include "appkit/NSAnimationContext.h"

namespace brindle {

/// The numbers of a value that moves: an alpha, a point, a rectangle.
using MovingNumbers = std::array<double, 4>;

/// The name under which the place of a view's content moves.
inline constexpr const char* kMovingBoundsOrigin = "boundsOrigin";

/// A property of a view or a window that can move by degrees.
struct MovingProperty {
    const char* name; // movements of one name take each other's place
    MovingNumbers (*read)(NSObject& object);
    void (*write)(NSObject& object, const MovingNumbers& numbers);
};

/// Movements of properties that are no layer's, as the current transaction says.
struct PropertyMovements {
    /// Moves a property from what it is to a value, or sets it at once when the transaction has no duration.
    static void move(NSObject& object, const MovingProperty& property, const MovingNumbers& to);
    /// Ends the movement of a property that goes by a name, if there is one, and one that who waits for its end
    /// begins; it stays where it is.
    static void stop(NSObject& object, std::string_view name);
    /// Keeps new movements from starting until the outermost hold is let go.
    static void hold();
    /// Answers NO when nothing was held.
    static bool letGo();
};

/// Makes changes in a group of animations, which ends also when they raise.
template <class Changes> void inAnimationGroup(Changes&& changes)
{
    const NSAnimationContext::Meta contexts = NSAnimationContext::cls();
    contexts.beginGrouping();
    try {
        const Ref<NSAnimationContext> context = contexts.currentContext();
        changes(*context);
    } catch (...) {
        const std::exception_ptr raised = std::current_exception();
        try {
            contexts.endGrouping(); // tells who waits for its end
        } catch (...) { // NOLINT(bugprone-empty-catch): the first one counts
        }
        std::rethrow_exception(raised);
    }
    contexts.endGrouping();
}

}
