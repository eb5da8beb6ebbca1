// SPDX-License-Identifier: Apache-2.0
#include "StringFormatPrivate.h"

#include <algorithm>

namespace brindle::formatting {

static bool isDigit(char16_t unit) { return unit >= u'0' && unit <= u'9'; }

int Format::readNumber(std::size_t& place) const
{
    int number = 0;
    for (; isDigit(at(place)); ++place)
        number = std::min(number * 10 + (at(place) - u'0'), kWidest);
    return number;
}

/// Reads `*` or `*3$` and answers the argument's place.
int Format::readStar(std::size_t& place)
{
    std::size_t after = ++place;
    const int number = readNumber(after);
    if (number > 0 && at(after) == u'$') {
        place = after + 1;
        return number - 1;
    }
    return nextArgument();
}

void Format::readWidth(std::size_t& place, int& value, int& argument)
{
    if (at(place) == u'*') {
        argument = readStar(place);
        want(argument, Kind::word);
    } else if (isDigit(at(place))) {
        value = readNumber(place);
    }
}

char Format::readLength(std::size_t& place) const
{
    switch (at(place)) {
    case u'h':
        if (at(++place) != u'h')
            return 'h';
        ++place;
        return 'H';
    case u'l':
        if (at(++place) == u'l')
            ++place;
        return 'l';
    case u'q':
    case u'j':
    case u'z':
    case u't':
        ++place;
        return 'l';
    case u'L':
        ++place;
        return 'L';
    default:
        return 0;
    }
}

Kind Format::kindOf(const Conversion& conversion) const
{
    switch (conversion.letter) {
    case u'd':
    case u'i':
    case u'u':
    case u'x':
    case u'X':
    case u'o':
        return conversion.length == 'l' || conversion.length == 'L' ? Kind::longWord : Kind::word;
    case u'D':
    case u'U':
    case u'O':
        return Kind::longWord;
    case u'c':
    case u'C':
        return Kind::word;
    case u'f':
    case u'F':
    case u'e':
    case u'E':
    case u'g':
    case u'G':
    case u'a':
    case u'A':
        return conversion.length == 'L' ? Kind::longReal : Kind::real;
    case u'@':
    case u's':
    case u'S':
    case u'p':
    case u'n':
        return Kind::pointer;
    default:
        return Kind::unused;
    }
}

void Format::want(int argument, Kind kind)
{
    const auto place = static_cast<unsigned>(argument);
    if (place >= kMostArguments)
        return;
    if (place >= kinds_.size())
        kinds_.resize(place + 1, Kind::unused);
    if (kinds_[place] == Kind::unused)
        kinds_[place] = kind;
}

std::size_t Format::readConversion(std::size_t begin)
{
    Conversion c;
    c.begin = begin;
    std::size_t place = begin + 1;

    std::size_t afterNumber = place;
    const int number = readNumber(afterNumber);
    int position = kUnset;
    if (number > 0 && at(afterNumber) == u'$') {
        position = number - 1;
        place = afterNumber + 1;
    }
    for (; place < text_.size()
         && std::u16string_view(u"-+ #0'").find(at(place)) != std::u16string_view::npos;
         ++place) {
        if (c.flags.find(static_cast<char>(at(place))) == std::string::npos)
            c.flags.push_back(static_cast<char>(at(place)));
    }
    readWidth(place, c.width, c.widthArgument);
    if (at(place) == u'.') {
        ++place;
        c.precision = 0;
        readWidth(place, c.precision, c.precisionArgument);
    }
    c.length = readLength(place);
    c.letter = at(place);
    const Kind kind = kindOf(c);
    if (kind != Kind::unused) {
        c.argument = position != kUnset ? position : nextArgument();
        want(c.argument, kind);
    } else if (c.letter != u'%') {
        c.letter = 0;
    }
    c.end = std::min(place + 1, text_.size());
    conversions_.push_back(c);
    return c.end;
}

bool Format::fits(const Format& other) const
{
    const auto isSafe = [&](const Conversion& c) {
        return kindOf(c) != Kind::pointer
            || std::any_of(
                other.conversions_.begin(), other.conversions_.end(), [&](const Conversion& o) {
                    return o.argument == c.argument && o.letter == c.letter && o.length == c.length;
                });
    };
    return kinds_.size() <= other.kinds_.size()
        && std::equal(kinds_.begin(), kinds_.end(), other.kinds_.begin())
        && std::all_of(conversions_.begin(), conversions_.end(), isSafe);
}

std::vector<Argument> Format::takeArguments(va_list list) const
{
    std::vector<Argument> arguments(kinds_.size());
    for (std::size_t i = 0; i < kinds_.size(); ++i) {
        Argument& a = arguments[i];
        a.kind = kinds_[i];
        switch (a.kind) {
        case Kind::word:
            a.integer = va_arg(list, int);
            break;
        case Kind::unused: // a position that the format leaves out takes a word
        case Kind::longWord:
            a.integer = va_arg(list, std::int64_t);
            break;
        case Kind::real:
            a.real = va_arg(list, double);
            break;
        case Kind::longReal:
            a.real = va_arg(list, long double);
            break;
        case Kind::pointer:
            a.pointer = va_arg(list, void*);
            break;
        }
    }
    return arguments;
}

}
