// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>

#include "NSString.h"
#include "NSTextCheckingResult.h"
#include "runtime/Block.h"

namespace brindle {

namespace unicode {
    class Pattern;
}

using NSRegularExpressionOptions = NSUInteger;
enum : NSUInteger {
    NSRegularExpressionCaseInsensitive = 1,
    NSRegularExpressionAllowCommentsAndWhitespace = 2,
    NSRegularExpressionIgnoreMetacharacters = 4, ///< the pattern is plain text
    NSRegularExpressionDotMatchesLineSeparators = 8,
    NSRegularExpressionAnchorsMatchLines = 16,
    NSRegularExpressionUseUnixLineSeparators = 32,
    NSRegularExpressionUseUnicodeWordBoundaries = 64,
};
using NSMatchingOptions = NSUInteger;
enum : NSUInteger {
    NSMatchingReportProgress = 1, ///< searches are short: nothing is reported
    NSMatchingReportCompletion = 2, ///< calls the closure once more at the end, with nil
    NSMatchingAnchored = 4, ///< at the start of the range only
    NSMatchingWithTransparentBounds = 8,
    NSMatchingWithoutAnchoringBounds = 16,
};
using NSMatchingFlags = NSUInteger;
enum : NSUInteger {
    NSMatchingProgress = 1,
    NSMatchingCompleted = 2,
    NSMatchingHitEnd = 4,
    NSMatchingRequiredEnd = 8,
    NSMatchingInternalError = 16, ///< the search took too long and was given up
};

/// A regular expression in the notation of the Unicode library.
///
/// A search that takes too long, because a pattern tries the same in exponentially many ways, is given up: half a
/// second and a microsecond for each unit of the text. What was found until then is the answer.
/// - Raises: `NSInvalidArgumentException` for a nil string, `NSRangeException` for a range that leaves it.
/// Thread: any.
class NSRegularExpression : public NSObject {
    BRINDLE_OBJECT(NSRegularExpression, NSObject)

public:
    struct Meta : NSObject::Meta {
        /// - Nil: for a pattern that cannot be read; `error`, which may be null, has the reason and the place.
        Ref<NSRegularExpression> regularExpressionWithPattern_options_error(
            const NSString* pattern, NSRegularExpressionOptions options, Ref<NSError>* error) const
        {
            return send<"regularExpressionWithPattern:options:error:", Ref<NSRegularExpression>>(
                pattern, options, error);
        }
        /// Answers a pattern that matches this text.
        Ref<NSString> escapedPatternForString(const NSString* string) const
        {
            return send<"escapedPatternForString:", Ref<NSString>>(string);
        }
        /// Answers a template that stands for this text.
        Ref<NSString> escapedTemplateForString(const NSString* string) const
        {
            return send<"escapedTemplateForString:", Ref<NSString>>(string);
        }
    };

    Ref<NSRegularExpression> initWithPattern_options_error(
        const NSString* pattern, NSRegularExpressionOptions options, Ref<NSError>* error)
    {
        return send<"initWithPattern:options:error:", Ref<NSRegularExpression>>(
            pattern, options, error);
    }
    Ref<NSString> pattern() const { return send<"pattern", Ref<NSString>>(); }
    NSRegularExpressionOptions options() const
    {
        return send<"options", NSRegularExpressionOptions>();
    }
    NSUInteger numberOfCaptureGroups() const { return send<"numberOfCaptureGroups", NSUInteger>(); }

    // ---- searching

    using Visitor = Block<void(NSTextCheckingResult* result, NSMatchingFlags flags, bool* stop)>;

    /// Calls a closure with each match in its order; setting `*stop` to true ends that.
    void enumerateMatchesInString_options_range_usingBlock(const NSString* string,
        NSMatchingOptions options, NSRange range, const Visitor& block) const
    {
        send<"enumerateMatchesInString:options:range:usingBlock:">(
            string, options, range, block.get());
    }
    Ref<NSArray> matchesInString_options_range(
        const NSString* string, NSMatchingOptions options, NSRange range) const
    {
        return send<"matchesInString:options:range:", Ref<NSArray>>(string, options, range);
    }
    NSUInteger numberOfMatchesInString_options_range(
        const NSString* string, NSMatchingOptions options, NSRange range) const
    {
        return send<"numberOfMatchesInString:options:range:", NSUInteger>(string, options, range);
    }
    Ref<NSTextCheckingResult> firstMatchInString_options_range(
        const NSString* string, NSMatchingOptions options, NSRange range) const
    {
        return send<"firstMatchInString:options:range:", Ref<NSTextCheckingResult>>(
            string, options, range);
    }
    NSRange rangeOfFirstMatchInString_options_range(
        const NSString* string, NSMatchingOptions options, NSRange range) const
    {
        return send<"rangeOfFirstMatchInString:options:range:", NSRange>(string, options, range);
    }

    // ---- replacing

    /// Answers the text with each match replaced by the template: `$0` is the match, `$1` to `$99` are groups, a
    /// backslash takes the next character as it is.
    Ref<NSString> stringByReplacingMatchesInString_options_range_withTemplate(
        const NSString* string, NSMatchingOptions options, NSRange range,
        const NSString* replacement) const
    {
        return send<"stringByReplacingMatchesInString:options:range:withTemplate:", Ref<NSString>>(
            string, options, range, replacement);
    }
    /// The same in place.
    /// - Returns: how many matches were replaced.
    NSUInteger replaceMatchesInString_options_range_withTemplate(NSMutableString* string,
        NSMatchingOptions options, NSRange range, const NSString* replacement) const
    {
        return send<"replaceMatchesInString:options:range:withTemplate:", NSUInteger>(
            string, options, range, replacement);
    }
    /// Answers what takes a match's place.
    /// - offset: how far the string was moved since the result was found.
    Ref<NSString> replacementStringForResult_inString_offset_template(
        const NSTextCheckingResult* result, const NSString* string, NSInteger offset,
        const NSString* replacement) const
    {
        return send<"replacementStringForResult:inString:offset:template:", Ref<NSString>>(
            result, string, offset, replacement);
    }

private:
    friend struct PatternAccess;

    Ref<NSString> pattern_;
    NSRegularExpressionOptions options_ = 0;
    std::shared_ptr<const unicode::Pattern> compiled_;
};

}
