// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSInvocation.h"

namespace brindle {

/// Forwards a message whose types are known as text only; see `forwardMessage`.
void forwardTypes(const char* types, void* const* arguments, void* result, std::size_t resultSize);

/// What the runtime does with the inside of an invocation.
struct NSInvocation::Frame {
    explicit Frame(NSInvocation& invocation)
        : invocation_(invocation)
    {
    }
    const char* types() const { return invocation_.signature_->types_; }
    /// Takes the arguments of a call of these types, as far as sizes agree.
    void take(const char* types, void* const* arguments);
    /// Hands the answer to a call of these types: an object with one count for the caller, zero where sizes differ.
    void give(const char* types, void* result, std::size_t resultSize);

private:
    NSInvocation& invocation_;
};

}
