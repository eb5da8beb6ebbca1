// SPDX-License-Identifier: Apache-2.0
#include "NSString.h"

#include <algorithm>
#include <limits>
#include <locale.h>
#include <stdlib.h>

#include "NSStringPrivate.h"
#include "Unicode.h"
#include "runtime/Table.h"

namespace brindle {

using strings::Contents;
using strings::View;

namespace {

    bool isDigit(char16_t unit) { return unit >= u'0' && unit <= u'9'; }
    bool isSign(char16_t unit) { return unit == u'-' || unit == u'+'; }

    /// Reads the units of a text one after the other; behind the end there are zeros.
    class Cursor {
    public:
        explicit Cursor(View text)
            : text_(text)
        {
            while (at_ < text_.size() && unicode::isWhiteSpace(text_[at_]))
                ++at_;
        }
        char16_t peek(std::size_t ahead = 0) const
        {
            return at_ + ahead < text_.size() ? text_[at_ + ahead] : u'\0';
        }
        char16_t take()
        {
            const char16_t unit = peek();
            ++at_;
            return unit;
        }
        void takeDigits(std::string& out)
        {
            while (isDigit(peek()))
                out.push_back(static_cast<char>(take()));
        }

    private:
        View text_;
        std::size_t at_ = 0;
    };

    std::int64_t readInteger(View text)
    {
        Cursor cursor(text);
        const bool isNegative = isSign(cursor.peek()) && cursor.take() == u'-';
        const auto most = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max())
            + (isNegative ? 1 : 0);
        std::uint64_t value = 0;
        while (isDigit(cursor.peek())) {
            const auto digit = static_cast<std::uint64_t>(cursor.take() - u'0');
            if (value > (most - digit) / 10) {
                value = most;
                break;
            }
            value = value * 10 + digit;
        }
        return static_cast<std::int64_t>(isNegative ? 0 - value : value);
    }

    /// Answers the part of a text that is a decimal number: sign, digits, point, exponent.
    std::string numberIn(View text)
    {
        Cursor cursor(text);
        std::string out;
        if (isSign(cursor.peek()))
            out.push_back(static_cast<char>(cursor.take()));
        cursor.takeDigits(out);
        if (cursor.peek() == u'.') {
            out.push_back(static_cast<char>(cursor.take()));
            cursor.takeDigits(out);
        }
        const bool isExponent = cursor.peek() == u'e' || cursor.peek() == u'E';
        if (isExponent && isDigit(cursor.peek(isSign(cursor.peek(1)) ? 2 : 1))) {
            out.push_back(static_cast<char>(cursor.take()));
            out.push_back(static_cast<char>(cursor.take()));
            cursor.takeDigits(out);
        }
        return out;
    }

    locale_t plainLocale()
    {
        static const locale_t locale = newlocale(LC_ALL_MASK, "C", nullptr);
        return locale;
    }

}

template <> struct NSString::Methods<struct StringNumbers> {

    static NSInteger integerValue(NSString& self) { return readInteger(Contents(&self)); }
    static std::int32_t intValue(NSString& self)
    {
        using Limits = std::numeric_limits<std::int32_t>;
        return static_cast<std::int32_t>(
            std::clamp<std::int64_t>(readInteger(Contents(&self)), Limits::min(), Limits::max()));
    }
    static double doubleValue(NSString& self)
    {
        return strtod_l(numberIn(Contents(&self)).c_str(), nullptr, plainLocale());
    }
    static float floatValue(NSString& self)
    {
        return strtof_l(numberIn(Contents(&self)).c_str(), nullptr, plainLocale());
    }
    static bool boolValue(NSString& self)
    {
        const Contents text(&self);
        Cursor cursor(text);
        if (isSign(cursor.peek()))
            cursor.take();
        while (cursor.peek() == u'0')
            cursor.take();
        const char16_t unit = cursor.peek();
        return isDigit(unit) || unit == u'Y' || unit == u'y' || unit == u'T' || unit == u't';
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
