// SPDX-License-Identifier: Apache-2.0
#include "Search.h"

#include <algorithm>

#include "foundation/Each.h"
#include "foundation/NSArray.h"

namespace gallery {

using namespace brindle;

void Search::run()
{
    constexpr NSUInteger kMost = 20'000; // it is searched anew with every letter
    const NSRange range = NSMakeRange(0, std::min(text->length(), kMost));
    matches.clear();
    error = nullptr;
    replaced = nullptr;
    expression = NSRegularExpression::cls().regularExpressionWithPattern_options_error(
        pattern.get(), options, &error);
    if (!expression)
        return;
    const Ref<NSArray> found
        = expression->matchesInString_options_range(text.get(), NSMatchingOptions {}, range);
    for (NSTextCheckingResult* match : each<NSTextCheckingResult>(found))
        matches.emplace_back(match);
    replaced = expression->stringByReplacingMatchesInString_options_range_withTemplate(
        text.get(), NSMatchingOptions {}, range, replacement.get());
}

}
