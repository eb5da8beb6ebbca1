// SPDX-License-Identifier: Apache-2.0
#include "NSString.h"

#include <algorithm>
#include <limits>

#include "NSStringPrivate.h"
#include "NumeralsPrivate.h"
#include "foundation/unicode/Unicode.h"
#include "runtime/Table.h"

namespace brindle {

using strings::Contents;
using strings::View;

namespace {

    std::size_t spacesIn(View text)
    {
        std::size_t at = 0;
        while (at < text.size() && unicode::isWhiteSpace(text[at]))
            ++at;
        return at;
    }

    std::int64_t integerIn(View text)
    {
        std::int64_t value = 0;
        numerals::readInteger(text, spacesIn(text), value);
        return value;
    }

    std::string numberIn(View text)
    {
        std::string number;
        numerals::readDecimal(text, spacesIn(text), number);
        return number;
    }

}

template <> struct NSString::Methods<struct StringNumbers> {

    static NSInteger integerValue(NSString& self) { return integerIn(Contents(&self)); }
    static std::int32_t intValue(NSString& self)
    {
        using Limits = std::numeric_limits<std::int32_t>;
        return static_cast<std::int32_t>(
            std::clamp<std::int64_t>(integerIn(Contents(&self)), Limits::min(), Limits::max()));
    }
    static double doubleValue(NSString& self)
    {
        return numerals::doubleOf(numberIn(Contents(&self)));
    }
    static float floatValue(NSString& self) { return numerals::floatOf(numberIn(Contents(&self))); }
    static bool boolValue(NSString& self)
    {
        const Contents text(&self);
        std::size_t at = spacesIn(text);
        const auto peek = [&] { return at < text->size() ? text.view()[at] : u'\0'; };
        if (peek() == u'-' || peek() == u'+')
            ++at;
        while (peek() == u'0')
            ++at;
        const char16_t unit = peek();
        return (unit >= u'1' && unit <= u'9') || unit == u'Y' || unit == u'y' || unit == u'T'
            || unit == u't';
    }

    static void table(Builder& t)
    {
        t.methods({
            { "integerValue", imp<integerValue> },
            { "longLongValue", imp<integerValue> },
            { "intValue", imp<intValue> },
            { "doubleValue", imp<doubleValue> },
            { "floatValue", imp<floatValue> },
            { "boolValue", imp<boolValue> },
        });
    }
};
BRINDLE_RECORD(NSString, StringNumbers)

}
