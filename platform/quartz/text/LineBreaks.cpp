// SPDX-License-Identifier: Apache-2.0
#include "LineBreaks.h"

#include <array>
#include <cstdint>

#include "Unicode.h"

namespace brindle::text {

namespace {

    // What stands in plain words. No line may begin before or behind an apostrophe and a sign inside a number or an
    // abbreviation; one may behind the signs that end a sentence.
    enum class Plain : std::uint8_t {
        other,
        letter,
        digit,
        apostrophe,
        infix,
        ending,
        hyphen,
        space
    };

    constexpr std::array<Plain, 0x250> makeClasses()
    {
        std::array<Plain, 0x250> classes {};
        for (std::size_t unit = 0; unit < classes.size(); ++unit) {
            const std::size_t small = unit | 0x20;
            if ((small >= 'a' && small <= 'z' && unit < 0x80)
                || (unit >= 0xC0 && unit != 0xD7 && unit != 0xF7))
                classes[unit] = Plain::letter;
        }
        for (std::size_t unit = '0'; unit <= '9'; ++unit)
            classes[unit] = Plain::digit;
        for (const char unit : { '.', ',', ';', ':' })
            classes[static_cast<std::size_t>(unit)] = Plain::infix;
        classes['!'] = classes['?'] = Plain::ending;
        classes['\''] = Plain::apostrophe;
        classes['-'] = Plain::hyphen;
        classes[' '] = Plain::space;
        return classes;
    }

    constexpr std::array<Plain, 0x250> kClasses = makeClasses();

    Plain classOf(char16_t unit) { return unit < kClasses.size() ? kClasses[unit] : Plain::other; }

    struct WordKind {
        bool isPlain = true;
        bool hasHyphen = false;
    };

    /// Looks at a word: letters and digits with marks behind them, and hyphens between letters.
    WordKind kindOf(std::u16string_view word)
    {
        WordKind kind;
        Plain last = Plain::space;
        for (const char16_t unit : word) {
            const Plain now = classOf(unit);
            switch (now) {
            case Plain::letter:
                kind.isPlain = last != Plain::ending;
                break;
            case Plain::digit:
                kind.isPlain = last != Plain::ending && last != Plain::hyphen;
                break;
            case Plain::apostrophe:
                kind.isPlain = last == Plain::letter;
                break;
            case Plain::infix:
            case Plain::ending:
                kind.isPlain = last != Plain::space && last != Plain::hyphen;
                break;
            case Plain::hyphen:
                kind.isPlain = last == Plain::letter;
                kind.hasHyphen = true;
                break;
            default:
                kind.isPlain = false;
            }
            last = now;
            if (!kind.isPlain)
                return kind;
        }
        kind.isPlain = last != Plain::hyphen;
        return kind;
    }

    std::size_t endOfSpaces(std::u16string_view text, std::size_t at)
    {
        while (at < text.size() && text[at] == u' ')
            ++at;
        return at;
    }
    std::size_t endOfWord(std::u16string_view text, std::size_t at)
    {
        while (at < text.size() && text[at] != u' ')
            ++at;
        return at;
    }

}

LineBreaks::LineBreaks(std::u16string_view text)
    : text_(text)
{
    // A stretch to ask for goes from the word before the first that is not plain to the word behind the last one.
    constexpr std::size_t kNone = ~std::size_t {};
    std::size_t previous = 0;
    std::size_t asked = kNone;
    for (std::size_t at = endOfSpaces(text, 0); at < text.size();) {
        const std::size_t end = endOfWord(text, at);
        const WordKind kind = kindOf(text.substr(at, end - at));
        hasInnerBreaks_ = hasInnerBreaks_ || kind.hasHyphen;
        if (!kind.isPlain && asked == kNone)
            asked = previous;
        if (kind.isPlain && asked != kNone) {
            askForWords(asked, end);
            asked = kNone;
        }
        previous = at;
        at = endOfSpaces(text, end);
    }
    if (asked != kNone)
        askForWords(asked, text.size());
}

bool LineBreaks::isPlainBreak(std::size_t index) const
{
    if (index == 0 || index >= text_.size() || text_[index] == u' ')
        return false;
    return text_[index - 1] == u' '
        || (text_[index - 1] == u'-' && classOf(text_[index]) == Plain::letter && index > 1
            && classOf(text_[index - 2]) == Plain::letter);
}

void LineBreaks::askForWords(std::size_t start, std::size_t end)
{
    hasInnerBreaks_ = true;
    if (bits_.empty()) {
        std::vector<bool> plain(text_.size());
        for (std::size_t i = 1; i < text_.size(); ++i)
            plain[i] = isPlainBreak(i);
        bits_ = std::move(plain);
    }
    for (std::size_t i = start + 1; i < end; ++i)
        bits_[i] = false;
    for (const std::size_t at : lineBoundaries(text_.substr(start, end - start))) {
        if (start + at < end && at > 0)
            bits_[start + at] = true;
    }
}

}
