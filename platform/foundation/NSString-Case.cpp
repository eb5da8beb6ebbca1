// SPDX-License-Identifier: Apache-2.0
#include "NSString.h"

#include "NSStringPrivate.h"
#include "foundation/unicode/Unicode.h"
#include "runtime/Table.h"

namespace brindle {

using strings::Contents;
using strings::View;

namespace {

    bool isSmall(char c) { return c >= 'a' && c <= 'z'; }
    bool isCapital(char c) { return c >= 'A' && c <= 'Z'; }
    bool isWordUnit(char c)
    {
        return isSmall(c) || isCapital(c) || (c >= '0' && c <= '9') || c == '_';
    }

    std::string asciiLowercase(std::string_view text)
    {
        std::string out(text);
        for (char& c : out) {
            if (isCapital(c))
                c = static_cast<char>(c + 32);
        }
        return out;
    }

    std::string asciiUppercase(std::string_view text)
    {
        std::string out(text);
        for (char& c : out) {
            if (isSmall(c))
                c = static_cast<char>(c - 32);
        }
        return out;
    }

    /// Answers whether a word goes on at an index. An apostrophe or full stop between letters does not end it.
    bool goesOn(std::string_view text, std::size_t at)
    {
        if (at == 0)
            return false;
        if (isWordUnit(text[at - 1]))
            return true;
        const bool isBetween = text[at - 1] == '\'' || text[at - 1] == '.';
        return isBetween && at >= 2 && (isSmall(text[at - 2]) || isCapital(text[at - 2]));
    }

    std::string asciiCapitalized(std::string_view text)
    {
        std::string out = asciiLowercase(text);
        for (std::size_t i = 0; i < out.size(); ++i) {
            if (isSmall(out[i]) && !goesOn(out, i))
                out[i] = static_cast<char>(out[i] - 32);
        }
        return out;
    }

}

template <> struct NSString::Methods<struct StringCase> {

    static Ref<NSString> mapped(NSString& self, std::string (*ascii)(std::string_view),
        std::u16string (*full)(std::u16string_view))
    {
        const Contents text(&self);
        return text->isNarrow() ? strings::plain(ascii(text->narrow()))
                                : strings::plain(full(text->wide()));
    }
    static Ref<NSString> lowercase(NSString& self)
    {
        return mapped(self, asciiLowercase, unicode::lowercase);
    }
    static Ref<NSString> uppercase(NSString& self)
    {
        return mapped(self, asciiUppercase, unicode::uppercase);
    }
    static Ref<NSString> capitalized(NSString& self)
    {
        return mapped(self, asciiCapitalized, unicode::titlecase);
    }
    static Ref<NSString> folding(NSString& self, NSStringCompareOptions options, NSLocale*)
    {
        return strings::plain(strings::fold(Contents(&self), options));
    }

    static Ref<NSString> inForm(NSString& self, unicode::Form form)
    {
        const Contents text(&self);
        if (text->isNarrow())
            return strings::plain(text);
        return strings::plain(unicode::normalize(text->wide(), form));
    }
    static Ref<NSString> decomposed(NSString& self)
    {
        return inForm(self, unicode::Form::decomposed);
    }
    static Ref<NSString> composed(NSString& self) { return inForm(self, unicode::Form::composed); }
    static Ref<NSString> compatiblyDecomposed(NSString& self)
    {
        return inForm(self, unicode::Form::compatiblyDecomposed);
    }
    static Ref<NSString> compatiblyComposed(NSString& self)
    {
        return inForm(self, unicode::Form::compatiblyComposed);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "lowercaseString", imp<lowercase> },
            { "uppercaseString", imp<uppercase> },
            { "capitalizedString", imp<capitalized> },
            { "stringByFoldingWithOptions:locale:", imp<folding> },
            { "decomposedStringWithCanonicalMapping", imp<decomposed> },
            { "precomposedStringWithCanonicalMapping", imp<composed> },
            { "decomposedStringWithCompatibilityMapping", imp<compatiblyDecomposed> },
            { "precomposedStringWithCompatibilityMapping", imp<compatiblyComposed> },
        });
    }
};
BRINDLE_RECORD(NSString, StringCase)

}
