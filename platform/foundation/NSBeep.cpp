// SPDX-License-Identifier: Apache-2.0
#include "NSBeep.h"

#include <atomic>
#include <mutex>

namespace brindle {

namespace {

    constinit std::atomic<std::uint64_t> beeps { 0 };

    struct Hook {
        std::mutex mutex;
        Block<void()> closure;
    };

    Hook& hookPlace()
    {
        static Hook* const place = new Hook; // somebody may beep while the process ends
        return *place;
    }

}

void NSBeep()
{
    beeps.fetch_add(1);
    Block<void()> closure;
    {
        const std::lock_guard guard(hookPlace().mutex);
        closure = hookPlace().closure;
    }
    if (closure)
        closure();
}

void setBeepHook(const Block<void()>& hook)
{
    Block<void()> before = hook;
    const std::lock_guard guard(hookPlace().mutex);
    hookPlace().closure.swap(before);
}

std::uint64_t beepCount() { return beeps.load(); }

}
