// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <cstdarg>
#include <optional>
#include <string>
#include <vector>

#include "HashingPrivate.h"
#include "NSArray.h"
#include "NSDictionary.h"
#include "NSSet.h"
#include "NSString.h"

/// What the collections share: errors, descriptions, sorting, and the way to the elements.

namespace brindle::collections {

using Items = std::vector<Ref<NSObject>>;

/// - Raises: "*** Collection <NSMutableArray: 0x…> was mutated while being enumerated."
[[noreturn]] void raiseMutated(const NSObject* collection);
/// Answers "*** -[NSArray objectAtIndex:]: ".
std::string placeOf(const NSObject* self, const char* operation);
[[noreturn]] void raiseIndex(
    const NSObject* self, const char* operation, NSUInteger index, NSUInteger count);
[[noreturn]] void raiseNil(
    const NSObject* self, const char* operation, const char* what = "object");
/// Raises `NSRangeException` unless the range lies within `count` elements.
void requireRange(const NSObject* self, const char* operation, NSRange range, NSUInteger count);

/// Answers the objects of an argument list that ends in nil, the first one given.
std::vector<NSObject*> untilNil(NSObject* first, va_list& list);

/// Answers how an element is written in a description whose brackets stand `level` levels deep.
std::string describe(NSObject* item, NSUInteger level);
std::string indentation(NSUInteger level);
/// Stands in a function that describes a collection, for as long as it does. Collections that share what they hold
/// repeat its description, and with every level of sharing several times more: past some megabytes of repetition
/// `describe` writes collections as their class and address only.
class Describing {
public:
    Describing();
    ~Describing();
    Describing(const Describing&) = delete;
    Describing& operator=(const Describing&) = delete;
};
/// Deeper than this a collection is written as its class and address: a collection may hold itself.
inline constexpr NSUInteger kDeepest = 100;
/// Answers "(\n    a,\n    b\n)" with other brackets where they are given.
std::string describeList(
    const Items& items, NSUInteger level, const char* open = "(", const char* close = ")");

/// Answers the object's own `copyWithZone:`, which may be nil.
inline Ref<NSObject> copyOf(const NSObject* object)
{
    return object->send<"copyWithZone:", Ref<NSObject>>(static_cast<void*>(nullptr));
}

/// Answers the objects without their counts.
std::vector<NSObject*> lent(const Items& items);

/// Answers a hash by the elements in their order, or by the keys and values in any order. Of long collections not all
/// are asked, and of those inside few: a collection may hold others many times over, and itself.
std::uint64_t hashOf(const NSArray& array);
std::uint64_t hashOf(const NSDictionary& dictionary);
/// Answers a hash by the hashes that a table knows of its keys.
template <class Entry> std::uint64_t hashOfKeys(const OrderedTable<Entry>& table)
{
    std::uint64_t hash = table.count();
    for (std::size_t at = table.skip(0); at < table.places(); at = table.skip(at + 1))
        hash += hashing::ofWord(table.at(at).hash);
    return hash;
}

/// Is sent at the beginning of every comparison of two collections, which may hold themselves.
/// - Raises: `NSGenericException` when little of the thread's stack is left, or a limit is reached.
void countComparison();

/// Stands in a function that compares two collections, for as long as it does. Collections that share what they hold
/// would be compared again with every level of sharing: what one comparison found, those around it remember.
class Comparing {
public:
    /// - Raises: what `countComparison` does.
    Comparing(NSObject& one, NSObject& other);
    ~Comparing();
    Comparing(const Comparing&) = delete;
    Comparing& operator=(const Comparing&) = delete;
    /// Answers what was found before; nothing for what was not compared yet.
    std::optional<bool> known() const;
    /// Remembers and answers what was found.
    bool keep(bool equal);

private:
    NSObject& one_;
    NSObject& other_;
};

/// Answers what `compare` does, once for each two collections in a comparison.
template <class Compare> bool compareOnce(NSObject& one, NSObject& other, Compare&& compare)
{
    Comparing comparing(one, other);
    const std::optional<bool> known = comparing.known();
    return known ? *known : comparing.keep(compare());
}

/// Lets comparisons on this thread count a number down, as long as it lives.
class ComparisonLimit {
public:
    explicit ComparisonLimit(std::size_t* left);
    ~ComparisonLimit();
    ComparisonLimit(const ComparisonLimit&) = delete;
    ComparisonLimit& operator=(const ComparisonLimit&) = delete;

private:
    std::size_t* before_;
};

/// Compares by an operation of the objects, found once for a run of objects of one class.
class SelectorComparison {
public:
    explicit SelectorComparison(SEL selector)
        : selector_(selector)
    {
    }
    NSInteger operator()(NSObject* a, NSObject* b);

private:
    SEL selector_;
    Class* class_ = nullptr;
    IMP imp_ = nullptr;
};

/// Answers the numbers of a set as ranges.
std::vector<NSRange> rangesOf(const NSIndexSet* indexes);

/// Sorts so that equal objects keep their order. The comparison is foreign: whatever it answers, nothing outside
/// the objects is touched, and when it throws each object is still owned or gone.
template <class Compare> void sortItems(Items& items, Compare&& compare)
{
    constexpr std::size_t kRun = 8;
    const std::size_t count = items.size();
    for (std::size_t begin = 0; begin < count; begin += kRun) {
        for (std::size_t i = begin + 1; i < count && i < begin + kRun; ++i) {
            Ref<NSObject> item = std::move(items[i]);
            std::size_t at = i;
            for (; at > begin && compare(items[at - 1].get(), item.get()) > 0; --at)
                items[at] = std::move(items[at - 1]);
            items[at] = std::move(item);
        }
    }
    Items left;
    for (std::size_t width = kRun; width < count; width *= 2) {
        for (std::size_t begin = 0; begin + width < count; begin += 2 * width) {
            const std::size_t middle = begin + width;
            const std::size_t end = std::min(middle + width, count);
            if (compare(items[middle - 1].get(), items[middle].get()) <= 0)
                continue;
            left.assign(std::make_move_iterator(items.begin() + static_cast<std::ptrdiff_t>(begin)),
                std::make_move_iterator(items.begin() + static_cast<std::ptrdiff_t>(middle)));
            std::size_t from = middle;
            std::size_t at = begin;
            for (Ref<NSObject>& item : left) {
                while (from < end && compare(item.get(), items[from].get()) > 0)
                    items[at++] = std::move(items[from++]);
                items[at++] = std::move(item);
            }
        }
    }
}

}

namespace brindle {

/// The way to an array's elements for the files of this folder.
struct ArrayAccess {
    /// Whether the elements are where `NSArray` keeps them.
    static bool isDirect(const NSArray& array);
    static collections::Items& items(NSArray& array) { return array.items_; }
    static const collections::Items& items(const NSArray& array) { return array.items_; }
    static NSUInteger changes(const NSArray& array) { return array.changes_; }
    static void noteChange(NSArray& array) { ++array.changes_; }
    /// Answers owners of all elements; none for nil.
    static collections::Items copy(const NSArray* array);
};

struct SetAccess {
    static bool isDirect(const NSSet& set);
    static OrderedTable<TableEntry>& table(NSSet& set) { return set.table_; }
    static const OrderedTable<TableEntry>& table(const NSSet& set) { return set.table_; }
    static collections::Items copy(const NSSet* set);
};

struct DictionaryAccess {
    static bool isDirect(const NSDictionary& dictionary);
    static OrderedTable<PairEntry>& table(NSDictionary& dictionary) { return dictionary.table_; }
    static const OrderedTable<PairEntry>& table(const NSDictionary& dictionary)
    {
        return dictionary.table_;
    }
    /// Adds or replaces an entry as `setObject:forKey:` does.
    static void set(NSDictionary& dictionary, NSObject* object, const NSObject* key);
};

}
