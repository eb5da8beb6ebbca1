// SPDX-License-Identifier: Apache-2.0
#include "TextPlacesPrivate.h"

#include <algorithm>

#include "foundation/NSGeometry.h"
#include "foundation/NSString+Enumeration.h"

namespace brindle::places {

namespace {

    constexpr NSUInteger kSurroundings = 512; // units looked at first, on either side

    bool isSpace(unichar c) { return c == ' ' || c == '\t' || c == 0xA0 || c == 0x3000; }

    NSUInteger clamped(NSString& text, NSUInteger index) { return std::min(index, text.length()); }

    /// Answers the first word of a range, or the last one; nothing has the location `NSNotFound`.
    NSRange word(NSString& text, NSUInteger start, NSUInteger end, bool last)
    {
        NSRange found { NSNotFound, 0 };
        const NSStringEnumerationOptions options = NSStringEnumerationByWords
            | NSStringEnumerationSubstringNotRequired
            | (last ? NSStringEnumerationReverse : NSStringEnumerationOptions {});
        enumerateSubstringsInRange_options_usingBlock(text, NSMakeRange(start, end - start),
            options, [&found](NSString*, NSRange range, NSRange, bool* stop) {
                found = range;
                *stop = true;
            });
        return found;
    }

    NSRange whole(NSString& text, NSUInteger start, NSUInteger end)
    {
        return wholeCharacters(text, NSMakeRange(start, end - start));
    }

}

NSUInteger nextCharacter(NSString& text, NSUInteger index)
{
    if (index >= text.length())
        return text.length();
    return NSMaxRange(text.rangeOfComposedCharacterSequenceAtIndex(index));
}

NSUInteger previousCharacter(NSString& text, NSUInteger index)
{
    index = clamped(text, index);
    return index ? text.rangeOfComposedCharacterSequenceAtIndex(index - 1).location : 0;
}

NSUInteger wordEnd(NSString& text, NSUInteger index)
{
    const NSUInteger length = text.length();
    index = clamped(text, index);
    for (NSUInteger reach = kSurroundings;; reach *= 4) {
        const NSRange room = whole(text, index, std::min(index + reach, length));
        const NSRange found = word(text, index, NSMaxRange(room), false);
        const bool isCut = found.location == NSNotFound || NSMaxRange(found) == NSMaxRange(room);
        if (!isCut || NSMaxRange(room) == length)
            return found.location == NSNotFound ? length : NSMaxRange(found);
    }
}

NSUInteger wordStart(NSString& text, NSUInteger index)
{
    index = clamped(text, index);
    for (NSUInteger reach = kSurroundings;; reach *= 4) {
        const NSRange room = whole(text, index - std::min(index, reach), index);
        const NSRange found = word(text, room.location, index, true);
        const bool isCut = found.location == NSNotFound || found.location == room.location;
        if (!isCut || room.location == 0)
            return found.location == NSNotFound ? 0 : found.location;
    }
}

NSRange wordAt(NSString& text, NSUInteger index)
{
    const NSUInteger length = text.length();
    if (!length)
        return {};
    index = std::min(index, length - 1);
    const NSUInteger end = wordEnd(text, index);
    const NSUInteger start = wordStart(text, end);
    if (start <= index && index < end)
        return NSMakeRange(start, end - start);
    if (!isSpace(text.characterAtIndex(index)))
        return text.rangeOfComposedCharacterSequenceAtIndex(index);
    NSUInteger first = index;
    NSUInteger last = index + 1;
    while (first > 0 && isSpace(text.characterAtIndex(first - 1)))
        --first;
    while (last < length && isSpace(text.characterAtIndex(last)))
        ++last;
    return NSMakeRange(first, last - first);
}

NSRange paragraphAt(NSString& text, NSUInteger index)
{
    return paragraphRangeForRange(text, NSMakeRange(clamped(text, index), 0));
}

NSRange paragraphContentsAt(NSString& text, NSUInteger index)
{
    NSUInteger start = 0;
    NSUInteger contentsEnd = 0;
    getParagraphStart_end_contentsEnd_forRange(
        text, &start, nullptr, &contentsEnd, NSMakeRange(clamped(text, index), 0));
    return NSMakeRange(start, contentsEnd - start);
}

NSRange wholeCharacters(NSString& text, NSRange range)
{
    const NSUInteger length = text.length();
    range.location = std::min(range.location, length);
    range.length = std::min(range.length, length - range.location);
    NSUInteger start = range.location;
    NSUInteger end = NSMaxRange(range);
    if (start < length)
        start = text.rangeOfComposedCharacterSequenceAtIndex(start).location;
    if (!range.length)
        return NSMakeRange(start, 0);
    if (end < length) {
        const NSRange last = text.rangeOfComposedCharacterSequenceAtIndex(end);
        if (last.location < end)
            end = NSMaxRange(last);
    }
    return NSMakeRange(start, end - start);
}

Ref<NSString> cleaned(NSString& text, bool singleLine)
{
    const std::u16string units = utf16Of(&text);
    std::u16string kept;
    kept.reserve(units.size());
    for (std::size_t i = 0; i < units.size(); ++i) {
        const char16_t c = units[i];
        const bool isBreak = c == '\n' || c == '\r' || c == 0x85 || c == 0x2028 || c == 0x2029;
        const bool isHigh = (c & 0xFC00) == 0xD800;
        if (isHigh && i + 1 < units.size() && (units[i + 1] & 0xFC00) == 0xDC00) {
            kept += c;
            kept += units[++i];
        } else if ((c & 0xF800) == 0xD800) {
            kept += u'\xFFFD';
        } else if (c == '\r' && i + 1 < units.size() && units[i + 1] == '\n') {
            continue; // the line feed behind it stands for both
        } else if (isBreak || c == '\t') {
            kept += singleLine ? u' ' : c == '\t' ? c : u'\n';
        } else if (c >= 0x20 && c != 0x7F && (c < 0x80 || c > 0x9F)) {
            kept += c;
        }
    }
    return stringFrom(kept);
}

Ref<NSString> bullets(NSString& text)
{
    std::u16string shown;
    for (NSUInteger i = 0, length = text.length(); i < length;) {
        const NSUInteger next = nextCharacter(text, i);
        shown += u'\x2022';
        shown.append(next - i - 1, u'\x200B'); // takes no room
        i = next;
    }
    return stringFrom(shown);
}

}
