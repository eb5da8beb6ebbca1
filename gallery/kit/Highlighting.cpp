// SPDX-License-Identifier: Apache-2.0
#include "Highlighting.h"

#include <algorithm>
#include <array>

#include "Drawing.h"
#include "Palette.h"
#include "appkit/NSStringDrawing.h"
#include "foundation/NSDictionary.h"

namespace gallery {

using namespace brindle;

namespace {

    constexpr std::array<std::string_view, 56> kWords { "alignas", "auto", "bool", "break", "case",
        "catch", "char", "char16_t", "class", "const", "constexpr", "constinit", "continue",
        "decltype", "default", "delete", "do", "double", "else", "enum", "explicit", "false",
        "float", "for", "friend", "if", "inline", "int", "long", "mutable", "namespace", "new",
        "noexcept", "nullptr", "operator", "private", "protected", "public", "return", "short",
        "sizeof", "static", "static_cast", "struct", "switch", "template", "this", "throw", "true",
        "try", "typename", "union", "unsigned", "using", "void", "while" };

    bool isDigit(char c) { return c >= '0' && c <= '9'; }
    bool isCapital(char c) { return c >= 'A' && c <= 'Z'; }
    bool isOfName(char c)
    {
        return (c >= 'a' && c <= 'z') || isCapital(c) || isDigit(c) || c == '_' || (c & 0x80);
    }

    /// Answers where what begins here ends, and its colour, or nil for that of the text.
    class Reader {
    public:
        explicit Reader(std::string_view text)
            : text_(text)
        {
        }
        std::pair<std::size_t, NSColor*> partAt(std::size_t at) const
        {
            const Palette& colors = palette();
            const char c = text_[at];
            if (text_.substr(at, 2) == "//")
                return { lineEnd(at), colors.quietText.get() };
            if (c == '#')
                return { lineEnd(at), colors.codeClass.get() };
            if (c == '"' || c == '\'')
                return { literalEnd(at), colors.codeText.get() };
            if (!isOfName(c))
                return { at + 1, nullptr };
            const std::size_t end = static_cast<std::size_t>(
                std::find_if_not(
                    text_.begin() + static_cast<std::ptrdiff_t>(at), text_.end(), isOfName)
                - text_.begin());
            return { end, colorOf(text_.substr(at, end - at)) };
        }

    private:
        static NSColor* colorOf(std::string_view name)
        {
            const Palette& colors = palette();
            if (isDigit(name[0]))
                return colors.codeText.get();
            if (isCapital(name[0]))
                return colors.codeClass.get();
            return std::binary_search(kWords.begin(), kWords.end(), name) ? colors.accent.get()
                                                                          : nullptr;
        }
        std::size_t lineEnd(std::size_t at) const
        {
            return std::min(text_.find('\n', at), text_.size());
        }
        std::size_t literalEnd(std::size_t at) const
        {
            const char quote = text_[at];
            for (++at; at < text_.size() && text_[at] != quote && text_[at] != '\n'; ++at)
                at += text_[at] == '\\';
            return std::min(at + 1, text_.size());
        }

        std::string_view text_;
    };

    /// Answers how many UTF-16 units UTF-8 text has.
    NSUInteger unitsOf(std::string_view text)
    {
        NSUInteger units = 0;
        for (const char c : text) {
            const auto byte = static_cast<unsigned char>(c);
            units += (byte & 0xC0) != 0x80;
            units += byte >= 0xF0;
        }
        return units;
    }

}

Ref<NSMutableAttributedString> highlighted(std::string_view source)
{
    const Ref<NSDictionary> plain = NSDictionary::cls().dictionaryWithObjectsAndKeys(
        fontOf(Style::code).get(), static_cast<NSString*>(NSFontAttributeName),
        palette().text.get(), static_cast<NSString*>(NSForegroundColorAttributeName));
    const auto text = cast<NSMutableAttributedString>(
        alloc<NSMutableAttributedString>()->initWithString_attributes(
            stringFrom(std::string(source)).get(), plain.get()));
    const Reader reader(source);
    NSUInteger place = 0;
    for (std::size_t at = 0; at < source.size();) {
        const auto [end, color] = reader.partAt(at);
        const NSUInteger length = unitsOf(source.substr(at, end - at));
        if (color)
            text->addAttribute_value_range(
                NSForegroundColorAttributeName, color, NSMakeRange(place, length));
        place += length;
        at = end;
    }
    return text;
}

}
