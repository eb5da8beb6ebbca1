// SPDX-License-Identifier: Apache-2.0
#include "StringFormat.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <iterator>
#include <locale.h>

#include "StringFormatPrivate.h"
#include "runtime/Table.h"

namespace brindle {

using namespace formatting;
using strings::Contents;
using strings::TextBuilder;
using strings::View;

namespace {

    /// The user's locale must not change a number: this thread writes as C does meanwhile.
    class PlainNumbers {
    public:
        PlainNumbers()
            : before_(uselocale(plain()))
        {
        }
        ~PlainNumbers() { uselocale(before_); }
        PlainNumbers(const PlainNumbers&) = delete;
        PlainNumbers& operator=(const PlainNumbers&) = delete;

    private:
        static locale_t plain()
        {
            static const locale_t locale = newlocale(LC_ALL_MASK, "C", nullptr);
            return locale;
        }
        locale_t before_;
    };

    /// Writes conversions one after the other.
    class Writer {
    public:
        Writer(TextBuilder& out, const std::vector<Argument>& arguments)
            : out_(out)
            , arguments_(arguments)
        {
        }
        void write(Conversion conversion);

    private:
        const Argument* argument(int place, Kind kind) const;
        int starValue(int place) const;
        void resolveStars(Conversion& c) const;
        std::string pattern(const Conversion& c, const char* length) const;
        void writeInteger(const Conversion& c);
        void writeReal(const Conversion& c);
        void writePointer(Conversion c);
        void writeObject(const Conversion& c);
        void writeBytes(const Conversion& c);
        void writeUnits(const Conversion& c);
        void writePadded(const Conversion& c, View text);
        template <class T> void print(const std::string& pattern, T value);

        TextBuilder& out_;
        const std::vector<Argument>& arguments_;
    };

    bool has(const Conversion& c, char flag) { return c.flags.find(flag) != std::string::npos; }

    /// Answers the argument when it is of the kind that is wanted; a position may be used for two kinds, and the first
    /// one decided how it was read.
    const Argument* Writer::argument(int place, Kind kind) const
    {
        if (place < 0 || static_cast<std::size_t>(place) >= arguments_.size())
            return nullptr;
        const Argument& a = arguments_[static_cast<std::size_t>(place)];
        const auto isWhole = [](Kind k) { return k == Kind::word || k == Kind::longWord; };
        const auto isReal = [](Kind k) { return k == Kind::real || k == Kind::longReal; };
        if (a.kind == kind || (isWhole(a.kind) && isWhole(kind))
            || (isReal(a.kind) && isReal(kind)))
            return &a;
        return nullptr;
    }

    int Writer::starValue(int place) const
    {
        const Argument* const a = argument(place, Kind::word);
        const std::int64_t value = a ? a->integer : 0;
        return static_cast<int>(std::clamp<std::int64_t>(value, -kWidest, kWidest));
    }

    void Writer::resolveStars(Conversion& c) const
    {
        if (c.widthArgument != kUnset) {
            c.width = starValue(c.widthArgument);
            if (c.width < 0) {
                c.width = -c.width;
                c.flags.push_back('-');
            }
        }
        if (c.precisionArgument != kUnset)
            c.precision = std::max(starValue(c.precisionArgument), kUnset);
    }

    std::string Writer::pattern(const Conversion& c, const char* length) const
    {
        std::string text = "%" + c.flags;
        if (c.width != kUnset)
            text += std::to_string(c.width);
        if (c.precision != kUnset)
            text += "." + std::to_string(c.precision);
        return text + length + static_cast<char>(c.letter);
    }

    template <class T> void Writer::print(const std::string& pattern, T value)
    {
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
        const PlainNumbers guard;
        char small[128];
        const int length = std::snprintf(small, sizeof small, pattern.c_str(), value);
        if (length < 0)
            return;
        const auto size = static_cast<std::size_t>(length);
        if (size < sizeof small) {
            out_.add(std::string_view(small, size));
            return;
        }
        std::string large(size, '\0');
        std::snprintf(large.data(), size + 1, pattern.c_str(), value);
        out_.add(std::string_view(large));
#pragma GCC diagnostic pop
    }

    void Writer::writeInteger(const Conversion& conversion)
    {
        Conversion c = conversion;
        if (c.letter == u'D' || c.letter == u'U' || c.letter == u'O') {
            c.letter = static_cast<char16_t>(c.letter + 32);
            c.length = 'l';
        }
        const Argument* const a = argument(c.argument, Kind::longWord);
        const std::int64_t value = a ? a->integer : 0;
        const bool isSigned = c.letter == u'd' || c.letter == u'i';
        const bool isPlain = (isSigned || c.letter == u'u') && c.flags.empty() && c.width == kUnset
            && c.precision == kUnset;
        const auto print64 = [&](auto cut) {
            using T = decltype(cut);
            const auto narrowed = static_cast<T>(value);
            if (isPlain) {
                char digits[24];
                const char* const end = std::to_chars(digits, std::end(digits), narrowed).ptr;
                return out_.add(std::string_view(digits, end));
            }
            print(pattern(c, "ll"),
                static_cast<std::conditional_t<std::is_signed_v<T>, long long, unsigned long long>>(
                    narrowed));
        };
        switch (c.length) {
        case 'H':
            return isSigned ? print64(static_cast<signed char>(0))
                            : print64(static_cast<unsigned char>(0));
        case 'h':
            return isSigned ? print64(static_cast<short>(0))
                            : print64(static_cast<unsigned short>(0));
        case 0:
            return isSigned ? print64(0) : print64(0u);
        default:
            return isSigned ? print64(0ll) : print64(0ull);
        }
    }

    void Writer::writeReal(const Conversion& c)
    {
        const Argument* const a = argument(c.argument, Kind::real);
        if (c.length == 'L')
            print(pattern(c, "L"), a ? a->real : 0.0L);
        else
            print(pattern(c, ""), a ? static_cast<double>(a->real) : 0.0);
    }

    void Writer::writePointer(Conversion c)
    {
        const Argument* const a = argument(c.argument, Kind::pointer);
        char text[32];
        std::snprintf(
            text, sizeof text, "0x%zx", reinterpret_cast<std::size_t>(a ? a->pointer : nullptr));
        c.precision = kUnset;
        writePadded(c, View(std::string_view(text)));
    }

    void Writer::writePadded(const Conversion& c, View text)
    {
        if (c.precision != kUnset && text.size() > static_cast<std::size_t>(c.precision))
            text = text.part(0, static_cast<std::size_t>(c.precision));
        const auto width = static_cast<std::size_t>(std::max(c.width, 0));
        const std::size_t missing = width > text.size() ? width - text.size() : 0;
        if (!has(c, '-'))
            out_.add(missing, u' ');
        out_.add(text);
        if (has(c, '-'))
            out_.add(missing, u' ');
    }

    void Writer::writeObject(const Conversion& c)
    {
        const Argument* const a = argument(c.argument, Kind::pointer);
        auto* const object = static_cast<NSObject*>(a ? a->pointer : nullptr);
        const Ref<NSString> text = object ? object->description() : nullptr;
        if (text)
            writePadded(c, Contents(text.get()));
        else
            writePadded(c, View(std::string_view("(null)")));
    }

    void Writer::writeBytes(const Conversion& c)
    {
        const Argument* const a = argument(c.argument, Kind::pointer);
        const auto* const bytes = static_cast<const char*>(a ? a->pointer : nullptr);
        if (!bytes)
            return writePadded(c, View(std::string_view("(null)")));
        // With a precision the text need not end: no byte beyond it is touched.
        const std::size_t length = c.precision == kUnset
            ? std::char_traits<char>::length(bytes)
            : strnlen(bytes, static_cast<std::size_t>(c.precision));
        TextBuilder text;
        text.addUtf8({ bytes, length });
        writePadded(c, Contents(text.string().get()));
    }

    void Writer::writeUnits(const Conversion& c)
    {
        const Argument* const a = argument(c.argument, Kind::pointer);
        const auto* const units = static_cast<const char16_t*>(a ? a->pointer : nullptr);
        if (!units)
            return writePadded(c, View(std::string_view("(null)")));
        const auto most = c.precision == kUnset ? SIZE_MAX : static_cast<std::size_t>(c.precision);
        std::size_t length = 0;
        while (length < most && units[length])
            ++length;
        writePadded(c, View(std::u16string_view(units, length)));
    }

    void Writer::write(Conversion c)
    {
        resolveStars(c);
        switch (c.letter) {
        case u'%':
            return out_.add(u'%');
        case u'n':
            return;
        case u'@':
            return writeObject(c);
        case u's':
            return c.length == 'l' ? writeUnits(c) : writeBytes(c);
        case u'S':
            return writeUnits(c);
        case u'p':
            return writePointer(c);
        case u'c':
        case u'C': {
            const Argument* const a = argument(c.argument, Kind::word);
            const std::int64_t value = a ? a->integer : 0;
            const bool isByte = c.letter == u'c' && c.length != 'l';
            const char16_t unit = static_cast<char16_t>(isByte ? value & 0xff : value & 0xffff);
            c.precision = kUnset;
            return writePadded(c, View(std::u16string_view(&unit, 1)));
        }
        case u'f':
        case u'F':
        case u'e':
        case u'E':
        case u'g':
        case u'G':
        case u'a':
        case u'A':
            return writeReal(c);
        default:
            return writeInteger(c);
        }
    }

}

Ref<NSString> stringFromFormat(NSString* format, va_list arguments)
{
    if (!format)
        return nullptr;
    const Ref<NSString> alive(format);
    const Contents text(format);
    const Format parsed(text);
    const std::vector<Argument> taken = parsed.takeArguments(arguments);
    TextBuilder out;
    Writer writer(out, taken);
    std::size_t done = 0;
    for (const Conversion& conversion : parsed.conversions()) {
        out.add(text->part(done, conversion.begin - done));
        if (conversion.letter)
            writer.write(conversion);
        else
            out.add(text->part(conversion.begin, conversion.end - conversion.begin));
        done = conversion.end;
    }
    out.add(text->part(done, text->size() - done));
    return out.string();
}

NSString* fittingFormat(NSString* translated, NSString* original)
{
    if (!translated || !original)
        return original;
    const Contents text(translated);
    const Contents known(original);
    if (strings::equal(text, known))
        return translated;
    return Format(text).fits(Format(known)) ? translated : original;
}

// The operations with variable arguments; they are C functions as the caller's ellipsis wants them.
template <> struct NSString::Methods<struct StringFormats> {

    static NSString* stringWithFormat(Class* self, SEL, NSString* format, ...)
    {
        strings::checkArgument(*self, "stringWithFormat:", format);
        va_list arguments;
        va_start(arguments, format);
        const strings::ArgumentsEnd end(arguments);
        Ref<NSString> text = stringFromFormat(format, arguments);
        if (self == classOf<NSString>())
            return text.leak();
        return cast<NSString>(Meta { { self } }.alloc())->initWithString(text.get()).leak();
    }
    static NSString* initWithFormat(NSString* self, SEL, NSString* format, ...)
    {
        strings::checkArgument(*self, "initWithFormat:", format);
        va_list arguments;
        va_start(arguments, format);
        const strings::ArgumentsEnd end(arguments);
        return self->initWithString(stringFromFormat(format, arguments).get()).leak();
    }
    static NSString* stringByAppendingFormat(NSString* self, SEL, NSString* format, ...)
    {
        strings::checkArgument(*self, "stringByAppendingFormat:", format);
        va_list arguments;
        va_start(arguments, format);
        const strings::ArgumentsEnd end(arguments);
        return self->stringByAppendingString(stringFromFormat(format, arguments).get()).leak();
    }

    static void table(Builder& t)
    {
        t.classMethods({
            { "stringWithFormat:", variadic<stringWithFormat> },
            { "localizedStringWithFormat:", variadic<stringWithFormat> },
        });
        t.methods({
            { "initWithFormat:", variadic<initWithFormat> },
            { "stringByAppendingFormat:", variadic<stringByAppendingFormat> },
        });
    }
};
BRINDLE_RECORD(NSString, StringFormats)

}
