// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "foundation/NSString.h"

namespace brindle {

/// Answers the text with everything as escapes of its UTF-8 bytes but A-Z a-z 0-9 - _ . ~: "a b&c" gives "a%20b%26c".
/// - Nil: for unpaired surrogates.
inline Ref<NSString> stringByAddingPercentEscapes(To<NSString> text)
{
    return text.send<"stringByAddingPercentEscapes", Ref<NSString>>();
}
/// Answers the text with every escape replaced by what it stands for; "+" stays "+".
/// - Nil: for a malformed escape and for bytes that are not UTF-8.
inline Ref<NSString> stringByReplacingPercentEscapes(To<NSString> text)
{
    return text.send<"stringByReplacingPercentEscapes", Ref<NSString>>();
}

}
