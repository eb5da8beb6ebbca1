// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdarg>
#include <string>
#include <vector>

#include "NSStringPrivate.h"

// A format taken apart: StringFormat-Parsing.cpp reads it and takes the arguments, StringFormat.cpp writes them.

namespace brindle::formatting {

inline constexpr int kWidest = 65535;
inline constexpr unsigned kMostArguments = 64;
inline constexpr int kUnset = -1;

/// What is taken from the variable arguments for a conversion.
enum class Kind : std::uint8_t { unused, word, longWord, real, longReal, pointer };

struct Argument {
    Kind kind = Kind::unused;
    std::int64_t integer = 0;
    long double real = 0;
    void* pointer = nullptr;
};

/// One conversion of a format. Positions count from 0; `kUnset` where there is none.
struct Conversion {
    std::size_t begin = 0;
    std::size_t end = 0;
    std::string flags;
    int width = kUnset;
    int precision = kUnset;
    int widthArgument = kUnset;
    int precisionArgument = kUnset;
    int argument = kUnset;
    char length = 0; ///< h, H for hh, l, L for long double, otherwise 0
    char16_t letter = 0; ///< 0: not understood, copied as it stands
};

/// Reads a format, once, and knows which argument is of which kind.
class Format {
public:
    explicit Format(strings::View text)
        : text_(text)
    {
        for (std::size_t at = 0; at < text.size();) {
            if (text[at] == u'%')
                at = readConversion(at);
            else
                ++at;
        }
    }
    const std::vector<Conversion>& conversions() const { return conversions_; }
    std::vector<Argument> takeArguments(va_list list) const;
    /// Answers whether this format takes the arguments of another one, or the first of them, for what they are.
    bool fits(const Format& other) const;

private:
    char16_t at(std::size_t index) const { return index < text_.size() ? text_[index] : u'\0'; }
    std::size_t readConversion(std::size_t at);
    int readNumber(std::size_t& at) const;
    int readStar(std::size_t& at);
    void readWidth(std::size_t& at, int& value, int& argument);
    char readLength(std::size_t& at) const;
    void want(int argument, Kind kind);
    Kind kindOf(const Conversion& conversion) const;
    int nextArgument() { return static_cast<int>(next_++); }

    strings::View text_;
    std::vector<Conversion> conversions_;
    std::vector<Kind> kinds_;
    unsigned next_ = 0;
};

}
