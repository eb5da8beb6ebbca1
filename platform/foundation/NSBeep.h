// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "runtime/Block.h"

namespace brindle {

/// Asks for attention by the display's bell. Without one it only counts. Thread: any.
BRINDLE_EXPORT void NSBeep();
/// Sets what rings; an empty closure ends it.
BRINDLE_EXPORT void setBeepHook(const Block<void()>& hook);
/// Answers how often `NSBeep` has been called.
BRINDLE_EXPORT std::uint64_t beepCount();

}
