// SPDX-License-Identifier: Apache-2.0
// Reads a pattern up to a newline and searches the rest with it: no pattern hangs or leaves the text.

#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "foundation/NSArray.h"
#include "foundation/NSRegularExpression.h"

using namespace brindle;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size < 2)
        return 0;
    const NSUInteger options = data[0];
    const std::string_view bytes(reinterpret_cast<const char*>(data) + 1, size - 1);
    const std::size_t line = bytes.find('\n');
    if (line == bytes.npos)
        return 0;
    const Ref<NSString> pattern = stringFrom(bytes.substr(0, line));
    const Ref<NSString> text = stringFrom(bytes.substr(line + 1));
    if (!pattern || !text)
        return 0;
    const auto expression = NSRegularExpression::cls().regularExpressionWithPattern_options_error(
        pattern.get(), options & 127, nullptr);
    if (!expression)
        return 0;
    const NSRange all { 0, text->length() };
    expression->enumerateMatchesInString_options_range_usingBlock(
        text.get(), 0, all, [&](NSTextCheckingResult* result, NSMatchingFlags, bool*) {
            for (NSUInteger i = 0; result && i < result->numberOfRanges(); ++i) {
                const NSRange range = result->rangeAtIndex(i);
                const bool isAbsent = range.location == static_cast<NSUInteger>(NSNotFound);
                if (!isAbsent && NSMaxRange(range) > all.length)
                    std::abort();
            }
        });
    const NSUInteger count = expression->numberOfMatchesInString_options_range(text.get(), 0, all);
    if (count != expression->matchesInString_options_range(text.get(), 0, all)->count()
        || (count > 0)
            != static_cast<bool>(expression->firstMatchInString_options_range(text.get(), 0, all)))
        std::abort();
    NSRegularExpression::cls().escapedPatternForString(text.get());
    NSRegularExpression::cls().escapedTemplateForString(text.get());
    expression->stringByReplacingMatchesInString_options_range_withTemplate(
        text.get(), 0, all, pattern.get());
    return 0;
}
