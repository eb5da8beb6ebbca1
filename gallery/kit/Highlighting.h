// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

#include "foundation/NSMutableAttributedString.h"

namespace gallery {

/// Answers C++ source as text in the font of code: comments, words of the language, literals and names of classes in
/// colours of the appearance in force.
brindle::Ref<brindle::NSMutableAttributedString> highlighted(std::string_view source);

}
