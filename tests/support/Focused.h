// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSGraphicsContext.h"
#include "support/Pixels.h"

namespace brindle::test {

/// A picture that is drawn into while it lives.
class Focused : public Picture {
public:
    Focused(int width, int height, bool flipped = false)
        : Picture(width, height)
    {
        NSGraphicsContext::cls().setCurrentContext(
            NSGraphicsContext::cls()
                .graphicsContextWithGraphicsPort_flipped(context(), flipped)
                .get());
    }
    ~Focused() { NSGraphicsContext::cls().setCurrentContext(nullptr); }
    Focused(const Focused&) = delete;
    Focused& operator=(const Focused&) = delete;
};

}
