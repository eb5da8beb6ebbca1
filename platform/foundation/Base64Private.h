// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <optional>
#include <span>

namespace brindle::base64 {

/// What happens to characters that have no place in base64.
enum class Unknown { refused, spacePassedOver, passedOver };

/// Writes the text of some bytes, without lines, and answers where it ends. Three bytes take four characters.
char* encode(std::span<const unsigned char> bytes, char* to);

/// Writes the bytes of a text and answers how many there are; nothing for what is not base64.
/// - to: room for three bytes for each four characters that were begun.
std::optional<std::size_t> decode(
    std::span<const unsigned char> text, Unknown unknown, unsigned char* to);

}
