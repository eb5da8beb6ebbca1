// SPDX-License-Identifier: Apache-2.0
#include "People.h"

#include <algorithm>
#include <array>
#include <numeric>

namespace gallery {

namespace {

    constexpr std::array kFirst { "Ada", "Boris", "Clara", "Dario", "Edith", "Femi", "Greta",
        "Hugo", "Ines", "Jonas", "Kaya", "Lena", "Milo", "Nora", "Otto", "Priya", "Quentin", "Rosa",
        "Sami", "Tilda" };
    constexpr std::array kLast { "Abbot", "Brandt", "Castro", "Duval", "Ekman", "Fischer", "Gruber",
        "Hansen", "Ito", "Jansen", "Kovac", "Lindqvist", "Moreau", "Novak", "Okafor", "Petrov",
        "Quist", "Rossi", "Schmidt", "Tanaka", "Ueda", "Varga", "Weber" };
    constexpr std::array kTowns { "Aarhus", "Bergen", "Coimbra", "Dresden", "Evora", "Freiburg",
        "Ghent", "Haarlem", "Innsbruck", "Jena", "Krakow", "Lund", "Malmo", "Nantes", "Odense",
        "Porto", "Quimper" };

    // Neighbouring numbers give people that have nothing to do with each other.
    std::uint32_t scattered(std::uint32_t number)
    {
        number ^= number >> 16;
        number *= 0x7FEB352DU;
        number ^= number >> 15;
        number *= 0x846CA68BU;
        return number ^ number >> 16;
    }

    char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }
    bool has(const std::string& text, const std::string& wanted)
    {
        return std::search(text.begin(), text.end(), wanted.begin(), wanted.end(),
                   [](char a, char b) { return lower(a) == lower(b); })
            != text.end();
    }

}

People::People()
    : order_(kCount)
{
    all_.reserve(kCount);
    for (std::uint32_t i = 0; i < kCount; ++i) {
        const std::uint32_t dice = scattered(i + 1);
        all_.push_back(
            { std::string(kFirst[dice % kFirst.size()]) + " " + kLast[dice / 32 % kLast.size()],
                kTowns[dice / 1024 % kTowns.size()], static_cast<int>(1940 + dice / 32768 % 70) });
    }
    std::iota(order_.begin(), order_.end(), 0);
    choose();
}

void People::sortBy(PersonKey key, bool ascending)
{
    const auto less = [&](std::uint32_t a, std::uint32_t b) {
        const Person& first = all_[ascending ? a : b];
        const Person& second = all_[ascending ? b : a];
        switch (key) {
        case PersonKey::name:
            return first.name < second.name;
        case PersonKey::town:
            return first.town < second.town;
        default:
            return first.born < second.born;
        }
    };
    std::stable_sort(order_.begin(), order_.end(), less);
    choose();
}

void People::search(const std::string& text)
{
    wanted_ = text;
    choose();
}

void People::choose()
{
    shown_.clear();
    for (const std::uint32_t number : order_) {
        if (wanted_.empty() || has(all_[number].name, wanted_) || has(all_[number].town, wanted_))
            shown_.push_back(number);
    }
}

}
