// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>

#include "appkit/NSWindow.h"

namespace brindle::inspector {

/// A frame round a rectangle of the screen: four thin windows, so that nothing need be see-through and the windows below
/// know nothing of it.
class Frame {
public:
    ~Frame();
    /// Shows it round a rectangle in screen coordinates; an empty one hides it.
    void show(NSRect rect);
    bool has(const NSWindow& window) const;

private:
    void make();

    NSRect shown_ {};
    std::array<Ref<NSWindow>, 4> edges_;
};

}
