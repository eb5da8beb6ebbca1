// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSString.h"
#include "runtime/Block.h"

namespace brindle {

/// What the pieces of an enumeration are, and bits that are added.
using NSStringEnumerationOptions = NSUInteger;
enum : NSUInteger {
    NSStringEnumerationByLines = 0, ///< also cut at U+0085 and U+2028
    NSStringEnumerationByParagraphs = 1, ///< cut at CR, LF, both, U+2029
    NSStringEnumerationByComposedCharacterSequences = 2,
    NSStringEnumerationByWords = 3, ///< what has letters or digits; the rest is passed over
    NSStringEnumerationBySentences = 4,
    NSStringEnumerationReverse = 1 << 8,
    NSStringEnumerationSubstringNotRequired = 1 << 9, ///< the closure gets nil
    NSStringEnumerationLocalized = 1 << 10, ///< without effect: the cuts are Unicode's own
};

using NSSubstringVisitor
    = Block<void(NSString* substring, NSRange range, NSRange enclosing, bool* stop)>;

/// Calls a closure with each piece of a range; setting `*stop` to true ends that.
///
/// The enclosing range adds what stands between this piece and the next: a line's end, the space behind a word; the
/// first piece has what stands before it too.
/// - Raises: `NSRangeException` when the range leaves the text.
inline void enumerateSubstringsInRange_options_usingBlock(To<NSString> text, NSRange range,
    NSStringEnumerationOptions options, const NSSubstringVisitor& block)
{
    text.send<"enumerateSubstringsInRange:options:usingBlock:">(range, options, block.get());
}
/// Calls a closure with each line, without its end.
inline void enumerateLinesUsingBlock(
    To<NSString> text, const Block<void(NSString* line, bool* stop)>& block)
{
    text.send<"enumerateLinesUsingBlock:">(block.get());
}

/// Answers the lines that a range touches, with their ends.
inline NSRange lineRangeForRange(To<NSString> text, NSRange range)
{
    return text.send<"lineRangeForRange:", NSRange>(range);
}
inline NSRange paragraphRangeForRange(To<NSString> text, NSRange range)
{
    return text.send<"paragraphRangeForRange:", NSRange>(range);
}
/// Answers where the lines that a range touches begin, where they end, and where the last one's content ends; any
/// pointer may be null.
inline void getLineStart_end_contentsEnd_forRange(
    To<NSString> text, NSUInteger* start, NSUInteger* end, NSUInteger* contentsEnd, NSRange range)
{
    text.send<"getLineStart:end:contentsEnd:forRange:">(start, end, contentsEnd, range);
}
inline void getParagraphStart_end_contentsEnd_forRange(
    To<NSString> text, NSUInteger* start, NSUInteger* end, NSUInteger* contentsEnd, NSRange range)
{
    text.send<"getParagraphStart:end:contentsEnd:forRange:">(start, end, contentsEnd, range);
}

}
