// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

#include "appkit/NSGraphicsContext.h"

namespace brindle {

/// Makes a context current for a scope of drawing by others. At the end current is what was before, and what was
/// remembered inside and not taken back is forgotten; what was remembered before cannot be taken back inside.
class CurrentContextScope {
public:
    explicit CurrentContextScope(NSGraphicsContext* context);
    ~CurrentContextScope();
    CurrentContextScope(const CurrentContextScope&) = delete;
    CurrentContextScope& operator=(const CurrentContextScope&) = delete;

private:
    Ref<NSGraphicsContext> previous_;
    std::size_t floor_;
};

}
