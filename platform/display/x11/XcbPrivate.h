// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdlib>
#include <memory>

#include <xcb/randr.h>
#include <xcb/shm.h>
#include <xcb/xcb.h>
#include <xcb/xfixes.h>
#include <xcb/xinput.h>

// A field of this header is called `explicit`.
#ifdef __clang__
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wkeyword-macro"
#endif
#define explicit explicitField
#include <xcb/xkb.h>
#undef explicit
#ifdef __clang__
#pragma clang diagnostic pop
#endif

namespace brindle::display {

struct Free {
    void operator()(void* memory) const { std::free(memory); }
};

/// What the server sent; null when it sent an error or is gone.
template <typename T> using Reply = std::unique_ptr<T, Free>;

template <typename T> Reply<T> owned(T* reply) { return Reply<T>(reply); }

}
