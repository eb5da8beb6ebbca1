// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>

#include <hb.h>

#include "foundation/LateLibrary.h"

namespace brindle::text {

/// Answers the shaping library, opened when a text first needs it; plain letters never do. Thread: any.
/// - Nil: null where it is missing. Characters then stand as they are, one behind the other.
void* harfBuzz();

/// A function of it.
#define BRINDLE_HARFBUZZ(name) BRINDLE_LATE(::brindle::text::harfBuzz(), name)

struct HarfBuzzDeleter {
    void operator()(hb_font_t* font) const { BRINDLE_HARFBUZZ(hb_font_destroy)(font); }
    void operator()(hb_face_t* face) const { BRINDLE_HARFBUZZ(hb_face_destroy)(face); }
    void operator()(hb_blob_t* blob) const { BRINDLE_HARFBUZZ(hb_blob_destroy)(blob); }
    void operator()(hb_buffer_t* buffer) const { BRINDLE_HARFBUZZ(hb_buffer_destroy)(buffer); }
};

template <typename T> using HarfBuzz = std::unique_ptr<T, HarfBuzzDeleter>;

}
