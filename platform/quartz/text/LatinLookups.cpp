// SPDX-License-Identifier: Apache-2.0
#include "LatinLookups.h"

#include <algorithm>

namespace brindle::text {

namespace {

    /// Finds an entry by its tag in a list of tags and places; answers the place, 0 without one.
    std::size_t placeOf(CheckedNumbers& numbers, std::size_t list, FontTag tag)
    {
        const std::size_t count = numbers.word(list);
        for (std::size_t i = 0; i < count && !numbers.isBroken(); ++i) {
            if (numbers.longWord(list + 2 + 6 * i) == tag.value)
                return numbers.word(list + 6 + 6 * i);
        }
        return 0;
    }

    /// Answers where a table lists its features for Latin text of no certain language; 0 where it has none for it.
    std::size_t latinSystem(CheckedNumbers& numbers)
    {
        const std::size_t scripts = numbers.word(4);
        for (const FontTag tag : { FontTag("latn"), FontTag("DFLT"), FontTag("dflt") }) {
            const std::size_t place = placeOf(numbers, scripts, tag);
            if (!place)
                continue;
            const std::size_t script = scripts + place;
            const std::size_t named = placeOf(numbers, script + 2, "dflt");
            const std::size_t system = named ? named : numbers.word(script);
            return system ? script + system : 0;
        }
        return 0;
    }

    /// Answers whether shaping uses a feature for Latin text by itself. Those of fractions wait for a fraction slash.
    bool isInUse(std::size_t feature)
    {
        constexpr FontTag kUsed[] = { "abvm", "blwm", "calt", "ccmp", "clig", "curs", "dist",
            "kern", "liga", "locl", "ltra", "ltrm", "mark", "mkmk", "rand", "rclt", "rlig", "rvrn",
            "Harf", "HARF", "Buzz", "BUZZ" };
        return std::ranges::find(kUsed, feature, &FontTag::value) != std::end(kUsed);
    }

}

LatinLookups latinLookups(CheckedNumbers& numbers)
{
    LatinLookups lookups;
    const std::size_t system = latinSystem(numbers);
    if (!system)
        return lookups;
    const std::size_t list = numbers.word(6);
    const auto addFeature = [&](std::size_t index, bool isRequired) {
        const std::size_t entry = list + 2 + 6 * index;
        const std::size_t tag = numbers.longWord(entry);
        if (!isRequired && !isInUse(tag))
            return;
        lookups.haveKerning |= !isRequired && tag == FontTag("kern").value;
        const std::size_t feature = list + numbers.word(entry + 4);
        const std::size_t count = numbers.word(feature + 2);
        for (std::size_t i = 0; i < count && !numbers.isBroken(); ++i)
            lookups.used.push_back(numbers.word(feature + 4 + 2 * i));
    };
    constexpr std::size_t kNone = 0xFFFF;
    if (const std::size_t required = numbers.word(system + 2); required != kNone)
        addFeature(required, true);
    const std::size_t count = numbers.word(system + 4);
    for (std::size_t i = 0; i < count && !numbers.isBroken(); ++i)
        addFeature(numbers.word(system + 6 + 2 * i), false);
    std::ranges::sort(lookups.used);
    lookups.used.erase(std::unique(lookups.used.begin(), lookups.used.end()), lookups.used.end());
    return lookups;
}

}
