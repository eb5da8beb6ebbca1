// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "foundation/NSError.h"
#include "foundation/NSRegularExpression.h"

namespace gallery {

/// What is looked for and where, and what came of it.
struct Search {
    brindle::Ref<brindle::NSString> pattern, text, replacement;
    brindle::NSRegularExpressionOptions options = 0;

    brindle::Ref<brindle::NSRegularExpression> expression; ///< nil for what is no pattern
    brindle::Ref<brindle::NSError> error; ///< why it is none
    std::vector<brindle::Ref<brindle::NSTextCheckingResult>> matches;
    brindle::Ref<brindle::NSString> replaced;

    /// Searches the text, or the beginning of a very long one.
    void run();
};

}
