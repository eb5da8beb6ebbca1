// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSString.h"

namespace brindle {

/// Reads a string from front to back: numbers, given strings, stretches of letters of a set.
///
/// Every scan first passes over the characters to be skipped. It answers NO and stays where it was when what it
/// looks for is not there; otherwise it moves behind what it read and stores that, unless the pointer is null.
/// Numbers are written as in C whatever the locale; those too large for their type give its largest or smallest value.
/// - Raises: `NSInvalidArgumentException` where a string or a set is nil that must not be.
/// Thread: one at a time. Cost: a scan takes time for what it passes over, not for the rest of the string.
class NSScanner : public NSObject {
    BRINDLE_OBJECT(NSScanner, NSObject)

public:
    struct Meta : NSObject::Meta {
        Ref<NSScanner> scannerWithString(const NSString* string) const
        {
            return send<"scannerWithString:", Ref<NSScanner>>(string);
        }
    };

    /// Begins at the start of a copy of the string, skipping white space and newlines, case not counting.
    Ref<NSScanner> initWithString(const NSString* string)
    {
        return send<"initWithString:", Ref<NSScanner>>(string);
    }

    Ref<NSString> string() const { return send<"string", Ref<NSString>>(); }
    NSUInteger scanLocation() const { return send<"scanLocation", NSUInteger>(); }
    /// - Raises: `NSRangeException` beyond the string's length,
    ///   "*** -[NSScanner setScanLocation:]: Range or index out of bounds".
    void setScanLocation(NSUInteger location) { send<"setScanLocation:">(location); }
    Ref<NSCharacterSet> charactersToBeSkipped() const
    {
        return send<"charactersToBeSkipped", Ref<NSCharacterSet>>();
    }
    /// - set: nil skips nothing.
    void setCharactersToBeSkipped(const NSCharacterSet* set)
    {
        send<"setCharactersToBeSkipped:">(set);
    }
    /// Whether case counts when a string is looked for.
    bool caseSensitive() const { return send<"caseSensitive", bool>(); }
    void setCaseSensitive(bool caseSensitive) { send<"setCaseSensitive:">(caseSensitive); }
    /// Kept for who set it; reading does not depend on it.
    Ref<NSObject> locale() const { return send<"locale", Ref<NSObject>>(); }
    void setLocale(NSObject* locale) { send<"setLocale:">(locale); }
    /// Answers whether nothing but characters to be skipped is left.
    bool isAtEnd() const { return send<"isAtEnd", bool>(); }

    // ---- text

    /// Reads this very string; "" is never there.
    bool scanString_intoString(const NSString* string, Ref<NSString>* out)
    {
        return send<"scanString:intoString:", bool>(string, out);
    }
    /// Reads what stands before the string, all of the rest when it is not there; NO when that is nothing.
    bool scanUpToString_intoString(const NSString* string, Ref<NSString>* out)
    {
        return send<"scanUpToString:intoString:", bool>(string, out);
    }
    bool scanCharactersFromSet_intoString(const NSCharacterSet* set, Ref<NSString>* out)
    {
        return send<"scanCharactersFromSet:intoString:", bool>(set, out);
    }
    bool scanUpToCharactersFromSet_intoString(const NSCharacterSet* set, Ref<NSString>* out)
    {
        return send<"scanUpToCharactersFromSet:intoString:", bool>(set, out);
    }

    // ---- numbers

    bool scanInt(std::int32_t* out) { return send<"scanInt:", bool>(out); }
    bool scanInteger(NSInteger* out) { return send<"scanInteger:", bool>(out); }
    bool scanLongLong(std::int64_t* out) { return send<"scanLongLong:", bool>(out); }
    /// A negative number is read as 0.
    bool scanUnsignedLongLong(std::uint64_t* out)
    {
        return send<"scanUnsignedLongLong:", bool>(out);
    }
    bool scanFloat(float* out) { return send<"scanFloat:", bool>(out); }
    bool scanDouble(double* out) { return send<"scanDouble:", bool>(out); }
    /// Hexadecimal digits, with or without "0x".
    bool scanHexInt(std::uint32_t* out) { return send<"scanHexInt:", bool>(out); }
    bool scanHexLongLong(std::uint64_t* out) { return send<"scanHexLongLong:", bool>(out); }
    /// "0x", hexadecimal digits and an exponent of two, as C's `%a` writes them.
    bool scanHexFloat(float* out) { return send<"scanHexFloat:", bool>(out); }
    bool scanHexDouble(double* out) { return send<"scanHexDouble:", bool>(out); }

private:
    Ref<NSString> string_;
    Ref<NSCharacterSet> charactersToBeSkipped_;
    Ref<NSObject> locale_;
    NSUInteger scanLocation_ = 0;
    bool caseSensitive_ = false;
};

}
