// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSRegularExpression.h"
#include "NSStringPrivate.h"
#include "foundation/unicode/UnicodePatterns.h"

namespace brindle {

/// The way to what an expression was understood as.
struct PatternAccess {
    static const unicode::Pattern* pattern(const NSRegularExpression& expression)
    {
        return expression.compiled_.get();
    }
    /// Answers the number of a named group; 0 when there is none.
    static std::size_t groupNamed(const NSRegularExpression& expression, const NSString* name)
    {
        const unicode::Pattern* const pattern = expression.compiled_.get();
        return pattern && name ? pattern->groupNamed(utf16Of(name)) : 0;
    }
};

namespace patterns {

    /// What searches of strings do when their options ask for a regular expression; a bad one is not found.
    NSRange find(
        strings::View text, strings::View pattern, NSStringCompareOptions options, NSRange range);
    Ref<NSString> replace(strings::View text, strings::View pattern, strings::View replacement,
        NSStringCompareOptions options, NSRange range, NSUInteger& count);

    /// Writes a template for a match: `$1` to `$99` are groups, a backslash takes the next character as it is.
    /// - group: answers the text of a group, nothing for one that took no part.
    template <class Group>
    void expand(strings::View text, std::size_t groups, strings::TextBuilder& out, Group group)
    {
        const auto isDigit = [&](std::size_t at) {
            return at < text.size() && text[at] >= u'0' && text[at] <= u'9';
        };
        for (std::size_t at = 0; at < text.size(); ++at) {
            if (text[at] == u'\\' && at + 1 < text.size()) {
                out.add(text[++at]);
            } else if (text[at] == u'$' && isDigit(at + 1)) {
                std::size_t number = text[++at] - u'0';
                // A second digit belongs to the number only when there is such a group.
                if (isDigit(at + 1) && number * 10 + (text[at + 1] - u'0') <= groups)
                    number = number * 10 + (text[++at] - u'0');
                if (number <= groups)
                    out.add(group(number));
            } else {
                out.add(text[at]);
            }
        }
    }

}

}
