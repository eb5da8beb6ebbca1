// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cxxabi.h>

#include "NSException.h"
#include "brindle.h"

namespace brindle::plain {

/// Keeps the exception that is being handled for this thread.
void keepError() noexcept;

/// How many messages of the C interface run on this thread: what is raised inside one is caught there.
/// Reached without a call: the registers of a message stay where they are.
[[gnu::tls_model("initial-exec")]] extern constinit thread_local int sendDepth;

/// Runs code that may raise; answers zero when it did, with the exception kept.
template <class F> auto guarded(F&& code) -> decltype(code())
{
    using R = decltype(code());
    try {
        return code();
    } catch (abi::__forced_unwind&) {
        throw; // the thread is being ended: not ours to stop
    } catch (...) {
        keepError();
    }
    if constexpr (!std::is_void_v<R>)
        return R();
}

inline NSObject* object(brindle_id plain) { return reinterpret_cast<NSObject*>(plain); }
inline brindle_id plainOf(NSObject* object) { return reinterpret_cast<brindle_id>(object); }
inline Class* classOf(brindle_class plain) { return reinterpret_cast<Class*>(plain); }
inline brindle_class plainOf(Class* cls) { return reinterpret_cast<brindle_class>(cls); }

}
