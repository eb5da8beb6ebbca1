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

    /// What may stand in front of each class within plain words; a word begins and ends with a space.
    constexpr std::array<std::uint8_t, 8> makePredecessors()
    {
        const auto bits = [](auto... classes) {
            return static_cast<std::uint8_t>((0u | ... | (1u << static_cast<unsigned>(classes))));
        };
        using enum Plain;
        std::array<std::uint8_t, 8> before {};
        const auto set = [&](Plain plain, std::uint8_t mask) {
            before[static_cast<std::size_t>(plain)] = mask;
        };
        set(letter, bits(letter, digit, apostrophe, infix, hyphen, space));
        set(digit, bits(letter, digit, apostrophe, infix, space));
        set(apostrophe, bits(letter));
        set(infix, bits(letter, digit, apostrophe, infix, ending));
        set(ending, bits(letter, digit, apostrophe, infix, ending));
        set(hyphen, bits(letter));
        set(space, bits(letter, digit, apostrophe, infix, ending, space));
        return before;
    }

    /// A unit's class as a bit, and the bits of those that may stand in front of it.
    struct Step {
        std::uint8_t own = 0;
        std::uint8_t before = 0;
    };

    constexpr Step stepFor(Plain plain)
    {
        constexpr std::array<std::uint8_t, 8> predecessors = makePredecessors();
        const auto place = static_cast<std::size_t>(plain);
        return { static_cast<std::uint8_t>(1u << place), predecessors[place] };
    }

    constexpr std::array<Step, kClasses.size()> makeSteps()
    {
        std::array<Step, kClasses.size()> steps {};
        for (std::size_t unit = 0; unit < steps.size(); ++unit)
            steps[unit] = stepFor(kClasses[unit]);
        return steps;
    }

    constexpr std::array<Step, kClasses.size()> kPlainSteps = makeSteps();
    constexpr Step kOther = stepFor(Plain::other);
    constexpr Step kLetter = stepFor(Plain::letter);
    constexpr Step kSpaceStep = stepFor(Plain::space);
    constexpr Step kHyphen = stepFor(Plain::hyphen);

}

LineBreaks::LineBreaks(std::u16string_view text)
    : text_(text)
{
    // A stretch to ask for goes from the word before the first that is not plain to the word behind the last one.
    constexpr std::size_t kNone = ~std::size_t {};
    std::size_t asked = kNone;
    std::size_t previous = 0;
    std::size_t start = 0; // of the word
    bool isPlain = true;
    unsigned seen = 0;
    unsigned last = kSpaceStep.own;
    const auto take = [&](Step now) {
        isPlain &= (now.before & last) != 0;
        last = now.own;
        seen |= last;
    };
    const auto endWord = [&](std::size_t end) {
        if (end == start)
            return;
        if (!isPlain && asked == kNone)
            asked = previous;
        if (isPlain && asked != kNone) {
            askForWords(asked, end);
            asked = kNone;
        }
        previous = start;
        isPlain = true;
    };
    for (std::size_t at = 0; at < text.size(); ++at) {
        take(text[at] < kPlainSteps.size() ? kPlainSteps[text[at]] : kOther);
        if (last == kLetter.own) {
            while (at + 1 < text.size() && classOf(text[at + 1]) == Plain::letter)
                ++at; // one letter may always follow the other
        }
        if (last != kSpaceStep.own)
            continue;
        endWord(at);
        start = at + 1;
    }
    take(kSpaceStep);
    endWord(text.size());
    if (asked != kNone)
        askForWords(asked, text.size());
    hasInnerBreaks_ = hasInnerBreaks_ || (seen & kHyphen.own) != 0;
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
