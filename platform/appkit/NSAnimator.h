// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "runtime/NSObject.h"

namespace brindle {

/// Stands for a view or a window and turns its setters into movements; all else goes to the object itself.
/// Answered by `animator`; a bare `init` stands for nothing and answers nil.
/// Thread: main.
class NSAnimator : public NSObject {
    BRINDLE_OBJECT(NSAnimator, NSObject)

private:
    friend struct Animators;
    Ref<NSObject> target_;
};

}
