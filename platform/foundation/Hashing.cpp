// SPDX-License-Identifier: Apache-2.0
#include "HashingPrivate.h"

#include <sys/random.h>

namespace brindle::hashing {

constinit std::atomic<std::uint64_t> seedOfProcess { 0 };

std::uint64_t makeSeed()
{
    // Early after the system's start there may be no random bytes yet; where the process lies in memory is known to few.
    auto fresh = reinterpret_cast<std::uint64_t>(&seedOfProcess);
    static_cast<void>(::getrandom(&fresh, sizeof fresh, GRND_NONBLOCK));
    std::uint64_t known = 0;
    fresh |= 1; // not 0
    return seedOfProcess.compare_exchange_strong(known, fresh, std::memory_order_relaxed) ? fresh
                                                                                          : known;
}

}
