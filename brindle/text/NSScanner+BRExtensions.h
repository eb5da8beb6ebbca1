// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "foundation/NSScanner.h"

namespace brindle {

/// `scanUpToString:intoString:` without the text.
inline bool scanUpToString(To<NSScanner> scanner, const NSString* string)
{
    return scanner.send<"scanUpToString:", bool>(string);
}
/// `scanString:intoString:` without the text.
inline bool scanString(To<NSScanner> scanner, const NSString* string)
{
    return scanner.send<"scanString:", bool>(string);
}
/// Moves behind the next occurrence of a string; NO at the end of the scanned text when there is none.
inline bool scanUpToAndPastString(To<NSScanner> scanner, const NSString* string)
{
    return scanner.send<"scanUpToAndPastString:", bool>(string);
}
/// Moves back by steps of the string's length until the string, case and all, stands at the location; so it finds
/// only what begins a whole number of such lengths before. NO, at location 0, when the steps end there, whatever
/// stands there.
/// - Nil: NO, and nothing moves.
/// - Raises: `NSRangeException` when a step would leave the text: fewer letters are left than the string has.
inline bool scanBackToString(To<NSScanner> scanner, const NSString* string)
{
    return scanner.send<"scanBackToString:", bool>(string);
}

}
