// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "PropertyListPrivate.h"
#include "foundation/CollectionsPrivate.h"
#include "foundation/NSMutableArray.h"
#include "foundation/NSMutableDictionary.h"
#include "runtime/Runtime.h"

// How readers of property lists make the objects.

namespace brindle::lists {

template <class T> Ref<T> fresh()
{
    return Ref<T>::adopt(static_cast<T*>(class_createInstance(classOf<T>())));
}

inline Ref<NSArray> makeList(collections::Items items, Mutability mutability)
{
    Ref<NSArray> array
        = mutability == Mutability::none ? fresh<NSArray>() : Ref<NSArray>(fresh<NSMutableArray>());
    ArrayAccess::items(*array) = std::move(items);
    return array;
}

inline Ref<NSDictionary> makeTable(std::size_t count, Mutability mutability)
{
    Ref<NSDictionary> dictionary = mutability == Mutability::none
        ? fresh<NSDictionary>()
        : Ref<NSDictionary>(fresh<NSMutableDictionary>());
    DictionaryAccess::table(*dictionary).reserve(count);
    return dictionary;
}

/// Adds an entry whose key is not in the dictionary yet.
/// - key: of the plain class, so that it needs no copy. - hash: the key's.
inline void appendEntry(
    NSDictionary& dictionary, Ref<NSObject> key, std::uint64_t hash, Ref<NSObject> value)
{
    PairEntry entry;
    entry.hash = hash;
    entry.key = std::move(key);
    entry.value = std::move(value);
    DictionaryAccess::table(dictionary).append(std::move(entry));
}

/// Adds an entry to a dictionary in the making; of equal keys the last one's value stays.
/// - key: keeps its object when there was an equal one; `value` owns what was replaced then.
inline void addEntry(NSDictionary& dictionary, Ref<NSObject>&& key, Ref<NSObject>&& value)
{
    OrderedTable<PairEntry>& table = DictionaryAccess::table(dictionary);
    const std::uint64_t hash = key->hash();
    const std::size_t place = table.find(key.get(), hash);
    if (place != OrderedTable<PairEntry>::kNowhere)
        table.at(place).value.swap(value);
    else
        appendEntry(dictionary, std::move(key), hash, std::move(value));
}

/// Answers what stands in the list for a string or data that was read.
inline Ref<NSObject> asLeaf(Ref<NSObject> leaf, Mutability mutability)
{
    return mutability == Mutability::leaves ? leaf->mutableCopy() : leaf;
}

}
