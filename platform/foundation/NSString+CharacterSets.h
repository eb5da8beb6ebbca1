// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSCharacterSet.h"

namespace brindle {

/// Answers the first letter of the set in a range, the last one when searching backwards; anchored, only at that end.
/// - Raises: `NSRangeException` when the range leaves the text.
inline NSRange rangeOfCharacterFromSet_options_range(
    To<NSString> text, const NSCharacterSet* set, NSStringCompareOptions options, NSRange range)
{
    return text.send<"rangeOfCharacterFromSet:options:range:", NSRange>(set, options, range);
}

/// Answers the text with everything but the allowed ASCII characters as escapes of its UTF-8 bytes: "%C3%A4".
/// - Nil: for unpaired surrogates.
inline Ref<NSString> stringByAddingPercentEncodingWithAllowedCharacters(
    To<NSString> text, const NSCharacterSet* allowed)
{
    return text.send<"stringByAddingPercentEncodingWithAllowedCharacters:", Ref<NSString>>(allowed);
}
/// Answers the text with every escape replaced by what it stands for.
/// - Nil: for an escape without two hexadecimal digits and for bytes that are no UTF-8.
inline Ref<NSString> stringByRemovingPercentEncoding(To<NSString> text)
{
    return text.send<"stringByRemovingPercentEncoding", Ref<NSString>>();
}

}
