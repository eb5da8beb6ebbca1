// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSString.h"

namespace brindle {

/// Text that can be edited in place.
///
/// A subclass that keeps the text in its own way overrides `replaceCharactersInRange:withString:` besides the two
/// operations that `NSString` names.
/// - Raises: as `NSString`.
/// Thread: one at a time.
class NSMutableString : public NSString {
    BRINDLE_OBJECT(NSMutableString, NSString)

public:
    struct Meta : NSString::Meta {
        /// - capacity: a hint, in units.
        Ref<NSMutableString> stringWithCapacity(NSUInteger capacity) const
        {
            return send<"stringWithCapacity:", Ref<NSMutableString>>(capacity);
        }
    };

    Ref<NSMutableString> initWithCapacity(NSUInteger capacity)
    {
        return send<"initWithCapacity:", Ref<NSMutableString>>(capacity);
    }
    void appendString(const NSString* text) { send<"appendString:">(text); }
    template <class... A> void appendFormat(NSString* format, A... arguments)
    {
        sendVariadic<"appendFormat:">(this, format, arguments...);
    }
    void insertString_atIndex(const NSString* text, NSUInteger index)
    {
        send<"insertString:atIndex:">(text, index);
    }
    void deleteCharactersInRange(NSRange range) { send<"deleteCharactersInRange:">(range); }
    void replaceCharactersInRange_withString(NSRange range, const NSString* text)
    {
        send<"replaceCharactersInRange:withString:">(range, text);
    }
    /// Replaces inside a range and answers how often.
    NSUInteger replaceOccurrencesOfString_withString_options_range(const NSString* target,
        const NSString* replacement, NSStringCompareOptions options, NSRange range)
    {
        return send<"replaceOccurrencesOfString:withString:options:range:", NSUInteger>(
            target, replacement, options, range);
    }
    void setString(const NSString* text) { send<"setString:">(text); }
};

}
