// SPDX-License-Identifier: Apache-2.0
#include "CollectionsPrivate.h"

#include <unordered_map>

#include "foundation/archives/KeyedArchivePrivate.h"
#include "runtime/NSException.h"
#include "runtime/Runtime.h"

// Equality and hashes of collections, which may share what they hold and hold themselves.

namespace brindle::collections {

// ---- comparing

namespace {

    using Two = std::pair<const NSObject*, const NSObject*>;

    struct HashOfTwo {
        std::size_t operator()(const Two& two) const
        {
            return hashing::mixed(reinterpret_cast<std::uint64_t>(two.first) ^ hashing::kFactor,
                reinterpret_cast<std::uint64_t>(two.second) | 1);
        }
    };

    /// What this thread has compared since its outermost comparison began.
    struct Compared {
        std::size_t levels = 0;
        std::size_t count = 0;
        std::unordered_map<Two, bool, HashOfTwo> found;
        Items kept; // what was compared, so that no other object takes its place
    };

    Compared& compared()
    {
        thread_local Compared state;
        return state;
    }

    thread_local constinit std::size_t* comparisonsLeft = nullptr;

}

void countComparison()
{
    if (archives::isStackShort() || (comparisonsLeft && *comparisonsLeft == 0))
        raise("NSGenericException",
            "*** Collections are nested too deeply, or too much alike, to be compared.");
    if (comparisonsLeft)
        --*comparisonsLeft;
}

ComparisonLimit::ComparisonLimit(std::size_t* left)
    : before_(std::exchange(comparisonsLeft, left))
{
}

ComparisonLimit::~ComparisonLimit() { comparisonsLeft = before_; }

Comparing::Comparing(NSObject& one, NSObject& other)
    : one_(one)
    , other_(other)
{
    countComparison();
    ++compared().levels;
    ++compared().count;
}

Comparing::~Comparing()
{
    Compared& state = compared();
    if (--state.levels)
        return;
    state.count = 0;
    if (!state.found.empty()) // what ends with it may compare again
        const Compared done = std::exchange(state, Compared());
}

std::optional<bool> Comparing::known() const
{
    const auto& found = compared().found;
    if (found.empty())
        return {};
    const auto at = found.find({ &one_, &other_ });
    return at == found.end() ? std::nullopt : std::optional(at->second);
}

bool Comparing::keep(bool equal)
{
    constexpr std::size_t kFew = 1000; // most comparisons end before they repeat themselves
    Compared& state = compared();
    if (state.count > kFew && state.found.insert({ { &one_, &other_ }, equal }).second) {
        state.kept.emplace_back(&one_);
        state.kept.emplace_back(&other_);
    }
    return equal;
}

// ---- hashes

namespace {

    // That many elements count at each level; deeper, a collection's hash is the number of its elements.
    constexpr std::size_t kWidths[] { 256, 16, 4 };

    std::uint64_t hashOf(const NSArray& array, std::size_t depth);
    std::uint64_t hashOf(const NSDictionary& dictionary, std::size_t depth);

    /// Answers the hash of what a collection holds. A collection of a class with a hash of its own is asked for it.
    std::uint64_t hashOfElement(NSObject* element, std::size_t depth)
    {
        const auto hashesAs = [&](Class* cls) {
            return element->isKindOfClass(cls)
                && element->methodForSelector(selector<"hash">)
                == class_getMethodImplementation(cls, selector<"hash">);
        };
        if (hashesAs(classOf<NSArray>()))
            return hashOf(static_cast<NSArray&>(*element), depth);
        if (hashesAs(classOf<NSDictionary>()))
            return hashOf(static_cast<NSDictionary&>(*element), depth);
        return element->hash();
    }

    std::uint64_t hashOf(const NSArray& array, std::size_t depth)
    {
        if (!ArrayAccess::isDirect(array)) {
            const Ref<NSArray> plain = makeArray(ArrayAccess::copy(&array));
            return hashOf(*plain, depth);
        }
        const Items& items = ArrayAccess::items(array);
        const std::size_t count = items.size();
        std::uint64_t hash = count;
        if (depth == std::size(kWidths))
            return hash;
        const std::size_t step = (count + kWidths[depth] - 1) / kWidths[depth];
        for (std::size_t i = 0; i < items.size(); i += step) {
            const Ref<NSObject> element = items[i];
            hash = hashing::ofWord(hash) + hashOfElement(element.get(), depth + 1);
        }
        return hash;
    }

    std::uint64_t hashOf(const NSDictionary& dictionary, std::size_t depth)
    {
        if (!DictionaryAccess::isDirect(dictionary)) {
            const Ref<NSDictionary> plain
                = NSDictionary::cls().dictionaryWithDictionary(&dictionary);
            return hashOf(*plain, depth);
        }
        const OrderedTable<PairEntry>& table = DictionaryAccess::table(dictionary);
        if (depth == std::size(kWidths) || table.count() > kWidths[depth])
            return depth ? table.count() : hashOfKeys(table);
        std::uint64_t hash = table.count();
        for (std::size_t at = table.skip(0); at < table.places(); at = table.skip(at + 1)) {
            const std::uint64_t key = table.at(at).hash;
            const Ref<NSObject> value = table.at(at).value;
            hash += hashing::ofWord(hashing::ofWord(key) + hashOfElement(value.get(), depth + 1));
        }
        return hash;
    }

}

std::uint64_t hashOf(const NSArray& array)
{
    countComparison();
    return hashOf(array, 0);
}

std::uint64_t hashOf(const NSDictionary& dictionary)
{
    countComparison();
    return hashOf(dictionary, 0);
}

}
