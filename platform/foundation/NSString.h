// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>
#include <variant>

#include "NSGeometry.h"
#include "runtime/NSObject.h"

namespace brindle {

class NSArray;
class NSCharacterSet;
class NSData;
class NSDictionary;
class NSError;
class NSLocale;
class NSMutableString;

/// One UTF-16 unit of a string.
using unichar = char16_t;

/// The answer of a comparison: how the receiver stands to the argument.
enum NSComparisonResult : NSInteger {
    NSOrderedAscending = -1,
    NSOrderedSame = 0,
    NSOrderedDescending = 1
};

/// How text is compared and searched; bits that are added together.
using NSStringCompareOptions = NSUInteger;
enum : NSUInteger {
    NSCaseInsensitiveSearch = 1, ///< by full Unicode case folding: "STRASSE" finds "Straße"
    NSLiteralSearch = 2, ///< unit by unit; otherwise composed and decomposed letters are equal
    NSBackwardsSearch = 4,
    NSAnchoredSearch = 8, ///< only at the start, or at the end when searching backwards
    NSNumericSearch = 64, ///< comparisons only: digits count by their value
    NSDiacriticInsensitiveSearch = 128,
    NSWidthInsensitiveSearch = 256, ///< full-width and half-width forms equal the ordinary ones
    NSForcedOrderingSearch = 512, ///< comparisons only: equal when identical, otherwise some order
    NSRegularExpressionSearch = 1024,
};

/// How text is written as bytes.
using NSStringEncoding = NSUInteger;
enum : NSUInteger {
    NSASCIIStringEncoding = 1,
    NSUTF8StringEncoding = 4,
    NSISOLatin1StringEncoding = 5,
    NSUnicodeStringEncoding = 10,
    NSUTF16StringEncoding
    = NSUnicodeStringEncoding, ///< written in this machine's order behind a byte-order mark
    NSUTF16BigEndianStringEncoding = 0x90000100,
    NSUTF16LittleEndianStringEncoding = 0x94000100,
    NSUTF32StringEncoding = 0x8c000100,
    NSUTF32BigEndianStringEncoding = 0x98000100,
    NSUTF32LittleEndianStringEncoding = 0x9c000100,
};

namespace strings {

    struct Gate;

    /// What a string object holds: ASCII as one byte a unit, any other text as UTF-16.
    struct Storage {
        std::variant<std::string, std::u16string> text;
        std::atomic<const char*> utf8 {
            nullptr
        }; // made when somebody asks and the text is not ASCII
        std::atomic<std::uint64_t> hash { 0 };

        Storage() = default;
        Storage(const Storage&) = delete;
        Storage& operator=(const Storage&) = delete;
        ~Storage() { delete[] utf8.load(std::memory_order_acquire); }
    };

    /// Answers the one immortal string of a literal's text.
    BRINDLE_EXPORT NSString* literal(std::string_view utf8);

    /// Answers what a receiver runs for an operation with variable arguments; a nil receiver's answers zero.
    BRINDLE_EXPORT IMP variadicImplementation(const NSObject* receiver, SEL sel);

    /// Turns an argument into what C passes through an ellipsis.
    template <class T> auto passed(const T& argument)
    {
        if constexpr (encoding::Owner<T>)
            return argument.get();
        else if constexpr (std::is_class_v<T> && std::is_convertible_v<const T&, NSString*>)
            return static_cast<NSString*>(argument);
        else if constexpr (std::is_enum_v<T>)
            return static_cast<std::underlying_type_t<T>>(argument);
        else if constexpr (std::is_null_pointer_v<T>)
            return static_cast<void*>(nullptr);
        else {
            static_assert(std::is_scalar_v<T> && !std::is_member_pointer_v<T>,
                "a format takes numbers, pointers and objects");
            return argument;
        }
    }

}

/// Sends a message whose arguments after `format` are the format's own:
/// `sendVariadic<"appendFormat:">(text, "%d"_ns, 3)`.
template <Text S, class R = void, class... A>
R sendVariadic(const NSObject* receiver, NSString* format, A... arguments)
{
    using C = typename Abi<R>::C;
    using Function = C (*)(const NSObject*, SEL, NSString*, ...);
    const auto function
        = reinterpret_cast<Function>(strings::variadicImplementation(receiver, selector<S>));
    if constexpr (encoding::Owner<R>)
        return R::adopt(function(receiver, selector<S>, format, strings::passed(arguments)...));
    else
        return function(receiver, selector<S>, format, strings::passed(arguments)...);
}

/// Text that does not change: a sequence of UTF-16 units, possibly with unpaired surrogates.
///
/// A subclass may keep the text in its own way: it overrides `length` and `characterAtIndex:`, and everything else
/// follows. Indexes and ranges count units.
/// - Raises: `NSRangeException` when an index or range leaves the text ("*** -[NSString substringToIndex:]: Index 1 out
///   of bounds; string length 0"), `NSInvalidArgumentException` where a string argument is nil.
/// Thread: any; a string is safe to read from several threads at once.
/// Cost: ASCII takes a byte a unit; `UTF8String` of other text is made once and kept.
class NSString : public NSObject {
    BRINDLE_OBJECT(NSString, NSObject)

public:
    struct Meta : NSObject::Meta {
        Ref<NSString> string() const { return send<"string", Ref<NSString>>(); }
        Ref<NSString> stringWithString(NSString* string) const
        {
            return send<"stringWithString:", Ref<NSString>>(string);
        }
        /// - Nil: for invalid UTF-8.
        /// - Raises: `NSInvalidArgumentException`, "*** +[NSString stringWithUTF8String:]: NULL cString".
        Ref<NSString> stringWithUTF8String(const char* utf8) const
        {
            return send<"stringWithUTF8String:", Ref<NSString>>(utf8);
        }
        Ref<NSString> stringWithCString_encoding(const char* text, NSStringEncoding encoding) const
        {
            return send<"stringWithCString:encoding:", Ref<NSString>>(text, encoding);
        }
        Ref<NSString> stringWithCharacters_length(const unichar* units, NSUInteger length) const
        {
            return send<"stringWithCharacters:length:", Ref<NSString>>(units, length);
        }
        /// Writes arguments by a format: `%@` takes an object's description, the rest is as in C, with `%C` and `%S` for
        /// UTF-16 units and positions as in `%1$@`. The user's locale changes nothing.
        template <class... A> Ref<NSString> stringWithFormat(NSString* format, A... arguments) const
        {
            return sendVariadic<"stringWithFormat:", Ref<NSString>>(object, format, arguments...);
        }
        template <class... A>
        Ref<NSString> localizedStringWithFormat(NSString* format, A... arguments) const
        {
            return sendVariadic<"localizedStringWithFormat:", Ref<NSString>>(
                object, format, arguments...);
        }
        /// - Nil: when the file cannot be read or is not text in this encoding; `error`, which may be null, says why.
        Ref<NSString> stringWithContentsOfFile_encoding_error(
            NSString* path, NSStringEncoding encoding, Ref<NSError>* error) const
        {
            return send<"stringWithContentsOfFile:encoding:error:", Ref<NSString>>(
                path, encoding, error);
        }
        /// Joins components: "/" first makes the path absolute.
        Ref<NSString> pathWithComponents(NSArray* components) const
        {
            return send<"pathWithComponents:", Ref<NSString>>(components);
        }
    };

    // ---- making
    Ref<NSString> initWithString(NSString* string)
    {
        return send<"initWithString:", Ref<NSString>>(string);
    }
    Ref<NSString> initWithUTF8String(const char* utf8)
    {
        return send<"initWithUTF8String:", Ref<NSString>>(utf8);
    }
    Ref<NSString> initWithCString_encoding(const char* text, NSStringEncoding encoding)
    {
        return send<"initWithCString:encoding:", Ref<NSString>>(text, encoding);
    }
    Ref<NSString> initWithCharacters_length(const unichar* units, NSUInteger length)
    {
        return send<"initWithCharacters:length:", Ref<NSString>>(units, length);
    }
    /// - Nil: for bytes that are no text in this encoding, and for encodings that are not listed above.
    Ref<NSString> initWithBytes_length_encoding(
        const void* bytes, NSUInteger length, NSStringEncoding encoding)
    {
        return send<"initWithBytes:length:encoding:", Ref<NSString>>(bytes, length, encoding);
    }
    Ref<NSString> initWithData_encoding(NSData* data, NSStringEncoding encoding)
    {
        return send<"initWithData:encoding:", Ref<NSString>>(data, encoding);
    }
    template <class... A> Ref<NSString> initWithFormat(NSString* format, A... arguments)
    {
        return sendVariadic<"initWithFormat:", Ref<NSString>>(this, format, arguments...);
    }
    Ref<NSString> initWithContentsOfFile_encoding_error(
        NSString* path, NSStringEncoding encoding, Ref<NSError>* error)
    {
        return send<"initWithContentsOfFile:encoding:error:", Ref<NSString>>(path, encoding, error);
    }

    // ---- units and parts
    NSUInteger length() const { return send<"length", NSUInteger>(); }
    unichar characterAtIndex(NSUInteger index) const
    {
        return send<"characterAtIndex:", unichar>(index);
    }
    void getCharacters_range(unichar* buffer, NSRange range) const
    {
        send<"getCharacters:range:">(buffer, range);
    }
    Ref<NSString> substringToIndex(NSUInteger index) const
    {
        return send<"substringToIndex:", Ref<NSString>>(index);
    }
    Ref<NSString> substringFromIndex(NSUInteger index) const
    {
        return send<"substringFromIndex:", Ref<NSString>>(index);
    }
    Ref<NSString> substringWithRange(NSRange range) const
    {
        return send<"substringWithRange:", Ref<NSString>>(range);
    }
    /// Answers the units of the letter that covers an index: surrogates and combining marks stay together.
    NSRange rangeOfComposedCharacterSequenceAtIndex(NSUInteger index) const
    {
        return send<"rangeOfComposedCharacterSequenceAtIndex:", NSRange>(index);
    }
    NSRange rangeOfComposedCharacterSequencesForRange(NSRange range) const
    {
        return send<"rangeOfComposedCharacterSequencesForRange:", NSRange>(range);
    }

    // ---- bytes
    /// Answers the text as UTF-8 with a NUL behind it, good while the string lives unchanged; unpaired surrogates
    /// read U+FFFD.
    const char* UTF8String() const { return send<"UTF8String", const char*>(); }
    /// - Nil: when the text cannot be written in the encoding without loss.
    Ref<NSData> dataUsingEncoding(NSStringEncoding encoding) const
    {
        return send<"dataUsingEncoding:", Ref<NSData>>(encoding);
    }
    /// - lossy: YES writes "?" for what the encoding does not have.
    Ref<NSData> dataUsingEncoding_allowLossyConversion(NSStringEncoding encoding, bool lossy) const
    {
        return send<"dataUsingEncoding:allowLossyConversion:", Ref<NSData>>(encoding, lossy);
    }
    /// Writes the text and a NUL into a buffer of `maximum` bytes; NO when it does not fit or cannot be written.
    bool getCString_maxLength_encoding(
        char* buffer, NSUInteger maximum, NSStringEncoding encoding) const
    {
        return send<"getCString:maxLength:encoding:", bool>(buffer, maximum, encoding);
    }
    bool canBeConvertedToEncoding(NSStringEncoding encoding) const
    {
        return send<"canBeConvertedToEncoding:", bool>(encoding);
    }
    /// Answers the number of bytes without a NUL or byte-order mark; 0 when the text cannot be written.
    NSUInteger lengthOfBytesUsingEncoding(NSStringEncoding encoding) const
    {
        return send<"lengthOfBytesUsingEncoding:", NSUInteger>(encoding);
    }
    bool writeToFile_atomically(NSString* path, bool atomically) const
    {
        return send<"writeToFile:atomically:", bool>(path, atomically);
    }
    bool writeToFile_atomically_encoding_error(
        NSString* path, bool atomically, NSStringEncoding encoding, Ref<NSError>* error) const
    {
        return send<"writeToFile:atomically:encoding:error:", bool>(
            path, atomically, encoding, error);
    }

    /// Reads the text as a property list, XML or old-style: "( a, { b = c; } )".
    /// - Nil: when it is none.
    Ref<NSObject> propertyList() const { return send<"propertyList", Ref<NSObject>>(); }
    /// Reads the text of a strings file, lines of `"key" = "value";`.
    /// - Nil: when it is none; a text without entries gives an empty dictionary.
    Ref<NSDictionary> propertyListFromStringsFileFormat() const
    {
        return send<"propertyListFromStringsFileFormat", Ref<NSDictionary>>();
    }

    // ---- comparing
    /// Answers whether both have the same units; nothing is normalised. A nil argument gives NO.
    bool isEqualToString(const NSString* other) const
    {
        return send<"isEqualToString:", bool>(other);
    }
    NSComparisonResult compare(const NSString* other) const
    {
        return send<"compare:", NSComparisonResult>(other);
    }
    NSComparisonResult compare_options(const NSString* other, NSStringCompareOptions options) const
    {
        return send<"compare:options:", NSComparisonResult>(other, options);
    }
    /// - range: the part of the receiver that is compared.
    NSComparisonResult compare_options_range(
        const NSString* other, NSStringCompareOptions options, NSRange range) const
    {
        return send<"compare:options:range:", NSComparisonResult>(other, options, range);
    }
    NSComparisonResult caseInsensitiveCompare(const NSString* other) const
    {
        return send<"caseInsensitiveCompare:", NSComparisonResult>(other);
    }
    /// Compares as a dictionary of the user's language would.
    NSComparisonResult localizedCompare(const NSString* other) const
    {
        return send<"localizedCompare:", NSComparisonResult>(other);
    }
    NSComparisonResult localizedCaseInsensitiveCompare(const NSString* other) const
    {
        return send<"localizedCaseInsensitiveCompare:", NSComparisonResult>(other);
    }
    /// Compares as a list of files does: digits count by their value.
    NSComparisonResult localizedStandardCompare(const NSString* other) const
    {
        return send<"localizedStandardCompare:", NSComparisonResult>(other);
    }
    /// Case counts. An empty argument gives NO.
    bool hasPrefix(const NSString* prefix) const { return send<"hasPrefix:", bool>(prefix); }
    bool hasSuffix(const NSString* suffix) const { return send<"hasSuffix:", bool>(suffix); }
    Ref<NSString> commonPrefixWithString_options(
        const NSString* other, NSStringCompareOptions options) const
    {
        return send<"commonPrefixWithString:options:", Ref<NSString>>(other, options);
    }

    // ---- searching
    /// Answers where `text` stands first, or a location of `NSNotFound` and a length of 0. "" is never found.
    NSRange rangeOfString(const NSString* text) const
    {
        return send<"rangeOfString:", NSRange>(text);
    }
    NSRange rangeOfString_options(const NSString* text, NSStringCompareOptions options) const
    {
        return send<"rangeOfString:options:", NSRange>(text, options);
    }
    NSRange rangeOfString_options_range(
        const NSString* text, NSStringCompareOptions options, NSRange range) const
    {
        return send<"rangeOfString:options:range:", NSRange>(text, options, range);
    }
    bool containsString(const NSString* text) const { return send<"containsString:", bool>(text); }
    /// Ignores case only.
    bool localizedCaseInsensitiveContainsString(const NSString* text) const
    {
        return send<"localizedCaseInsensitiveContainsString:", bool>(text);
    }
    /// Ignores case and accents, as people search.
    bool localizedStandardContainsString(const NSString* text) const
    {
        return send<"localizedStandardContainsString:", bool>(text);
    }
    NSRange rangeOfCharacterFromSet(NSCharacterSet* set) const
    {
        return send<"rangeOfCharacterFromSet:", NSRange>(set);
    }
    NSRange rangeOfCharacterFromSet_options(
        NSCharacterSet* set, NSStringCompareOptions options) const
    {
        return send<"rangeOfCharacterFromSet:options:", NSRange>(set, options);
    }

    // ---- case and forms
    /// Answers the full default mapping of Unicode, the same in every language; the length may change.
    Ref<NSString> lowercaseString() const { return send<"lowercaseString", Ref<NSString>>(); }
    Ref<NSString> uppercaseString() const { return send<"uppercaseString", Ref<NSString>>(); }
    /// Answers every word with a capital and small letters behind it.
    Ref<NSString> capitalizedString() const { return send<"capitalizedString", Ref<NSString>>(); }
    /// Answers what the insensitive options compare; the locale is not used.
    Ref<NSString> stringByFoldingWithOptions_locale(
        NSStringCompareOptions options, NSLocale* locale) const
    {
        return send<"stringByFoldingWithOptions:locale:", Ref<NSString>>(options, locale);
    }
    Ref<NSString> decomposedStringWithCanonicalMapping() const
    {
        return send<"decomposedStringWithCanonicalMapping", Ref<NSString>>();
    }
    Ref<NSString> precomposedStringWithCanonicalMapping() const
    {
        return send<"precomposedStringWithCanonicalMapping", Ref<NSString>>();
    }
    Ref<NSString> decomposedStringWithCompatibilityMapping() const
    {
        return send<"decomposedStringWithCompatibilityMapping", Ref<NSString>>();
    }
    Ref<NSString> precomposedStringWithCompatibilityMapping() const
    {
        return send<"precomposedStringWithCompatibilityMapping", Ref<NSString>>();
    }

    // ---- building
    Ref<NSString> stringByAppendingString(const NSString* tail) const
    {
        return send<"stringByAppendingString:", Ref<NSString>>(tail);
    }
    template <class... A>
    Ref<NSString> stringByAppendingFormat(NSString* format, A... arguments) const
    {
        return sendVariadic<"stringByAppendingFormat:", Ref<NSString>>(this, format, arguments...);
    }
    Ref<NSString> stringByReplacingOccurrencesOfString_withString(
        const NSString* target, const NSString* replacement) const
    {
        return send<"stringByReplacingOccurrencesOfString:withString:", Ref<NSString>>(
            target, replacement);
    }
    Ref<NSString> stringByReplacingOccurrencesOfString_withString_options_range(
        const NSString* target, const NSString* replacement, NSStringCompareOptions options,
        NSRange range) const
    {
        return send<"stringByReplacingOccurrencesOfString:withString:options:range:",
            Ref<NSString>>(target, replacement, options, range);
    }
    Ref<NSString> stringByReplacingCharactersInRange_withString(
        NSRange range, const NSString* replacement) const
    {
        return send<"stringByReplacingCharactersInRange:withString:", Ref<NSString>>(
            range, replacement);
    }
    /// Cuts the text to a length or fills it up with `pad`, which begins at its unit `index`.
    Ref<NSString> stringByPaddingToLength_withString_startingAtIndex(
        NSUInteger length, const NSString* pad, NSUInteger index) const
    {
        return send<"stringByPaddingToLength:withString:startingAtIndex:", Ref<NSString>>(
            length, pad, index);
    }
    Ref<NSString> stringByTrimmingCharactersInSet(NSCharacterSet* set) const
    {
        return send<"stringByTrimmingCharactersInSet:", Ref<NSString>>(set);
    }
    /// Answers the pieces between separators, empty ones included; the whole text where there is none.
    Ref<NSArray> componentsSeparatedByString(const NSString* separator) const
    {
        return send<"componentsSeparatedByString:", Ref<NSArray>>(separator);
    }
    Ref<NSArray> componentsSeparatedByCharactersInSet(NSCharacterSet* set) const
    {
        return send<"componentsSeparatedByCharactersInSet:", Ref<NSArray>>(set);
    }

    // ---- numbers
    /// Read after white space; a number too large for the type gives its largest or smallest value, no number 0.
    NSInteger integerValue() const { return send<"integerValue", NSInteger>(); }
    std::int32_t intValue() const { return send<"intValue", std::int32_t>(); }
    std::int64_t longLongValue() const { return send<"longLongValue", std::int64_t>(); }
    double doubleValue() const { return send<"doubleValue", double>(); }
    float floatValue() const { return send<"floatValue", float>(); }
    /// YES for Y, y, T, t or a digit from 1 to 9 after white space, a sign and zeros.
    bool boolValue() const { return send<"boolValue", bool>(); }

    // ---- paths
    bool isAbsolutePath() const { return send<"isAbsolutePath", bool>(); }
    /// "/" stands first for an absolute path; a trailing "/" is a component of its own.
    Ref<NSArray> pathComponents() const { return send<"pathComponents", Ref<NSArray>>(); }
    Ref<NSString> lastPathComponent() const { return send<"lastPathComponent", Ref<NSString>>(); }
    Ref<NSString> pathExtension() const { return send<"pathExtension", Ref<NSString>>(); }
    Ref<NSString> stringByDeletingLastPathComponent() const
    {
        return send<"stringByDeletingLastPathComponent", Ref<NSString>>();
    }
    Ref<NSString> stringByDeletingPathExtension() const
    {
        return send<"stringByDeletingPathExtension", Ref<NSString>>();
    }
    Ref<NSString> stringByAppendingPathComponent(const NSString* component) const
    {
        return send<"stringByAppendingPathComponent:", Ref<NSString>>(component);
    }
    Ref<NSString> stringByAppendingPathExtension(const NSString* extension) const
    {
        return send<"stringByAppendingPathExtension:", Ref<NSString>>(extension);
    }
    /// Expands "~", drops "." and repeated slashes, and resolves ".." of absolute paths without asking the disk.
    Ref<NSString> stringByStandardizingPath() const
    {
        return send<"stringByStandardizingPath", Ref<NSString>>();
    }
    /// Also follows the symbolic links of an absolute path, as far as it exists.
    Ref<NSString> stringByResolvingSymlinksInPath() const
    {
        return send<"stringByResolvingSymlinksInPath", Ref<NSString>>();
    }
    Ref<NSString> stringByExpandingTildeInPath() const
    {
        return send<"stringByExpandingTildeInPath", Ref<NSString>>();
    }
    Ref<NSString> stringByAbbreviatingWithTildeInPath() const
    {
        return send<"stringByAbbreviatingWithTildeInPath", Ref<NSString>>();
    }
    /// Answers the path for system calls, UTF-8.
    const char* fileSystemRepresentation() const
    {
        return send<"fileSystemRepresentation", const char*>();
    }

private:
    friend struct strings::Gate;

    strings::Storage storage_;
};

/// Answers a string of UTF-8 text, which may hold NULs; nil when it is not valid UTF-8.
BRINDLE_EXPORT Ref<NSString> stringFrom(std::string_view utf8);
/// Answers a string of these units.
BRINDLE_EXPORT Ref<NSString> stringFrom(std::u16string_view units);
/// Answers the text as UTF-8, "" for nil; unpaired surrogates read U+FFFD.
BRINDLE_EXPORT std::string utf8Of(const NSString* string);
inline std::string utf8Of(const Ref<NSString>& string) { return utf8Of(string.get()); }
/// Answers the units, none for nil.
BRINDLE_EXPORT std::u16string utf16Of(const NSString* string);
inline std::u16string utf16Of(const Ref<NSString>& string) { return utf16Of(string.get()); }

/// A string for ever: `"Open"_ns`. Equal literals are one object, made on first use.
template <Text Literal> NSString* operator""_ns()
{
    static NSString* const string = strings::literal(Literal.view());
    return string;
}

}
