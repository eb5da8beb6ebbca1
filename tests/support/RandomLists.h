// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cmath>
#include <random>
#include <string>
#include <vector>

#include "foundation/NSDate.h"
#include "foundation/NSMutableDictionary.h"
#include "support/PropertyLists.h"

namespace brindle::test {

/// Makes property lists of all kinds of values, the same for the same seed.
class RandomLists {
public:
    /// XML keeps whole seconds only.
    enum class Dates { whole, any };

    RandomLists(unsigned seed, Dates dates)
        : engine_(seed)
        , dates_(dates)
    {
    }

    /// Answers an array or dictionary.
    Ref<NSObject> list() { return container(0, 8 + below(4)); }
    unsigned below(unsigned bound) { return static_cast<unsigned>(engine_() % bound); }

private:
    static constexpr int kDeepest = 5;

    Ref<NSObject> value(int depth)
    {
        switch (below(depth < kDeepest ? 12 : 8)) {
        case 0:
            return NSNumber::cls().numberWithBool(below(2) == 1);
        case 1:
            return NSNumber::cls().numberWithInteger(
                static_cast<NSInteger>(engine_()) >> below(64));
        case 2:
            return NSNumber::cls().numberWithUnsignedInteger(engine_() | 1ull << 63);
        case 3:
            return NSNumber::cls().numberWithDouble(
                std::ldexp(static_cast<double>(engine_()), static_cast<int>(below(300)) - 200));
        case 4: {
            const double seconds = static_cast<double>(below(4000000000)) - 2e9;
            return NSDate::cls().dateWithTimeIntervalSinceReferenceDate(
                dates_ == Dates::whole ? seconds : seconds / 7);
        }
        case 5: {
            std::string bytes;
            for (unsigned i = below(100); i > 0; --i)
                bytes += static_cast<char>(engine_());
            return dataOf(bytes);
        }
        case 6:
        case 7:
            return text();
        default:
            return container(depth, below(6));
        }
    }

    Ref<NSObject> container(int depth, unsigned count)
    {
        if (below(2)) {
            std::vector<Ref<NSObject>> items;
            for (; count > 0; --count)
                items.push_back(value(depth + 1));
            return makeArray(std::move(items));
        }
        const Ref<NSMutableDictionary> entries = make<NSMutableDictionary>();
        for (; count > 0; --count)
            entries->setObject_forKey(value(depth + 1).get(), text().get());
        return NSDictionary::cls().dictionaryWithDictionary(entries.get());
    }

    Ref<NSString> text()
    {
        static constexpr const char* kLetters[]
            = { "a", "b", "Z", "0", " ", "<", "&", ">", "\"", "\n", "\t", "ä", "€", "\U0001f600" };
        std::string text;
        for (unsigned i = below(20); i > 0; --i)
            text += kLetters[below(std::size(kLetters))];
        return stringFrom(text);
    }

    std::mt19937_64 engine_;
    Dates dates_;
};

}
