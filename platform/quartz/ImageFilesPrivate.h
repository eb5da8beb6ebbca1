// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "CGImage.h"

namespace brindle::quartz {

ImageFile decodePNG(std::span<const std::byte> bytes);
ImageFile decodeJPEG(std::span<const std::byte> bytes);

/// Multiplies the colours of pixels by their alpha, as drawing wants them.
void premultiply(std::uint32_t* pixels, std::size_t count);

}
