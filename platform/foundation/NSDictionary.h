// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <initializer_list>
#include <utility>

#include "Each.h"
#include "NSEnumerator.h"
#include "NSGeometry.h"
#include "OrderedTable.h"

namespace brindle {

class NSArray;
class NSDictionary;
class NSSet;
enum NSComparisonResult : NSInteger;

/// Stands at a key of a dictionary, which is lent until the next step.
class BRINDLE_EXPORT DictionaryIterator {
public:
    DictionaryIterator() = default;
    explicit DictionaryIterator(const NSDictionary* dictionary);

    NSObject* operator*() const;
    /// The value that belongs to the key, lent as well.
    NSObject* value() const;
    DictionaryIterator& operator++();
    /// - Raises: `NSGenericException` when the dictionary was changed since the loop began.
    bool operator==(std::default_sentinel_t) const;

private:
    Ref<NSDictionary> snapshot_; // only of a subclass that keeps its entries in its own way
    const NSDictionary* dictionary_ = nullptr;
    std::size_t place_ = 0;
    std::uint64_t changes_ = 0;
};

/// Values found by keys. Keys are copied; entries stand in the order in which their keys came first.
///
/// A subclass may keep its entries in its own way: it overrides `count`, `objectForKey:` and `keyEnumerator`, and
/// everything else follows. A C++ loop runs over the keys: `for (NSObject* key : *dictionary)`.
/// - Raises: `NSInvalidArgumentException`: "*** setObjectForKey: object cannot be nil (key: x)" and
///   "*** setObjectForKey: key cannot be nil", the latter also for a key whose copy is nil.
/// Thread: any; a dictionary that nobody changes is safe to read from several threads at once.
/// Cost: a lookup allocates nothing; up to eight entries need no table.
class NSDictionary : public NSObject {
    BRINDLE_OBJECT(NSDictionary, NSObject)

public:
    using Element = NSObject;

    struct Meta : NSObject::Meta {
        Ref<NSDictionary> dictionary() const { return send<"dictionary", Ref<NSDictionary>>(); }
        Ref<NSDictionary> dictionaryWithObject_forKey(NSObject* item, NSObject* key) const
        {
            return send<"dictionaryWithObject:forKey:", Ref<NSDictionary>>(item, key);
        }
        /// Equal keys: the last one's object stays.
        Ref<NSDictionary> dictionaryWithObjects_forKeys(
            const NSArray* objects, const NSArray* keys) const
        {
            return send<"dictionaryWithObjects:forKeys:", Ref<NSDictionary>>(objects, keys);
        }
        Ref<NSDictionary> dictionaryWithObjects_forKeys_count(
            NSObject* const* objects, NSObject* const* keys, NSUInteger count) const
        {
            return send<"dictionaryWithObjects:forKeys:count:", Ref<NSDictionary>>(
                objects, keys, count);
        }
        /// The arguments are item, key, item, key …; the first nil ends the list.
        template <class... A> Ref<NSDictionary> dictionaryWithObjectsAndKeys(A... pairs) const;
        Ref<NSDictionary> dictionaryWithContentsOfFile(const NSString* path) const
        {
            return send<"dictionaryWithContentsOfFile:", Ref<NSDictionary>>(path);
        }
        Ref<NSDictionary> dictionaryWithDictionary(const NSDictionary* other) const
        {
            return send<"dictionaryWithDictionary:", Ref<NSDictionary>>(other);
        }
    };

    // ---- making

    Ref<NSDictionary> initWithObjects_forKeys(const NSArray* objects, const NSArray* keys)
    {
        return send<"initWithObjects:forKeys:", Ref<NSDictionary>>(objects, keys);
    }
    Ref<NSDictionary> initWithObjects_forKeys_count(
        NSObject* const* objects, NSObject* const* keys, NSUInteger count)
    {
        return send<"initWithObjects:forKeys:count:", Ref<NSDictionary>>(objects, keys, count);
    }
    Ref<NSDictionary> initWithDictionary(const NSDictionary* other)
    {
        return send<"initWithDictionary:", Ref<NSDictionary>>(other);
    }
    /// Copies every value when `copyItems` is true.
    Ref<NSDictionary> initWithDictionary_copyItems(const NSDictionary* other, bool copyItems)
    {
        return send<"initWithDictionary:copyItems:", Ref<NSDictionary>>(other, copyItems);
    }
    /// Reads a property list of any format.
    /// - Nil: when the file cannot be read, or holds anything but a dictionary.
    Ref<NSDictionary> initWithContentsOfFile(const NSString* path)
    {
        return send<"initWithContentsOfFile:", Ref<NSDictionary>>(path);
    }

    // ---- reading

    NSUInteger count() const { return send<"count", NSUInteger>(); }
    /// - Nil: for a nil key and for one that is not there.
    Ref<NSObject> objectForKey(const NSObject* key) const
    {
        return send<"objectForKey:", Ref<NSObject>>(key);
    }
    Ref<NSObject> objectForKeyedSubscript(const NSObject* key) const
    {
        return send<"objectForKeyedSubscript:", Ref<NSObject>>(key);
    }
    Ref<NSArray> allKeys() const { return send<"allKeys", Ref<NSArray>>(); }
    Ref<NSArray> allValues() const { return send<"allValues", Ref<NSArray>>(); }
    /// Answers the keys whose values are equal to the object.
    Ref<NSArray> allKeysForObject(const NSObject* object) const
    {
        return send<"allKeysForObject:", Ref<NSArray>>(object);
    }
    /// Answers the value of each key, or the marker where there is none.
    Ref<NSArray> objectsForKeys_notFoundMarker(const NSArray* keys, NSObject* marker) const
    {
        return send<"objectsForKeys:notFoundMarker:", Ref<NSArray>>(keys, marker);
    }
    Ref<NSEnumerator> keyEnumerator() const { return send<"keyEnumerator", Ref<NSEnumerator>>(); }
    /// Hands out the values.
    Ref<NSEnumerator> objectEnumerator() const
    {
        return send<"objectEnumerator", Ref<NSEnumerator>>();
    }
    DictionaryIterator begin() const { return DictionaryIterator(this); }
    std::default_sentinel_t end() const { return {}; }
    bool isEqualToDictionary(const NSDictionary* other) const
    {
        return send<"isEqualToDictionary:", bool>(other);
    }

    // ---- blocks and sorting: setting `*stop` to true ends the enumeration after that entry

    using Visitor = Block<void(NSObject* key, NSObject* value, bool* stop)>;
    using Test = Block<bool(NSObject* key, NSObject* value, bool* stop)>;
    using Comparator = Block<NSComparisonResult(NSObject*, NSObject*)>;

    void enumerateKeysAndObjectsUsingBlock(const Visitor& block) const
    {
        send<"enumerateKeysAndObjectsUsingBlock:">(block.get());
    }
    Ref<NSSet> keysOfEntriesPassingTest(const Test& test) const
    {
        return send<"keysOfEntriesPassingTest:", Ref<NSSet>>(test.get());
    }
    /// Answers the keys, ordered by their values.
    Ref<NSArray> keysSortedByValueUsingComparator(const Comparator& comparator) const
    {
        return send<"keysSortedByValueUsingComparator:", Ref<NSArray>>(comparator.get());
    }
    Ref<NSArray> keysSortedByValueUsingSelector(SEL comparator) const
    {
        return send<"keysSortedByValueUsingSelector:", Ref<NSArray>>(comparator);
    }
    /// Answers "{\n    key = value;\n}", indented by four spaces a level, sorted when all keys are strings.
    Ref<NSString> descriptionWithLocale_indent(NSObject* locale, NSUInteger level) const
    {
        return send<"descriptionWithLocale:indent:", Ref<NSString>>(locale, level);
    }
    /// Writes an XML property list; NO when keys and values are not all of its kinds, or the file cannot be written.
    bool writeToFile_atomically(const NSString* path, bool atomically) const
    {
        return send<"writeToFile:atomically:", bool>(path, atomically);
    }

private:
    friend class DictionaryIterator;
    friend class NSMutableDictionary;
    friend struct DictionaryAccess;

    OrderedTable<PairEntry> table_;
};

/// Answers a dictionary of these entries: `makeDictionary({ { "width"_ns, width.get() }, … })`. Equal keys: the last
/// one's object stays.
/// - Raises: `NSInvalidArgumentException` when a key or an object is nil.
BRINDLE_EXPORT Ref<NSDictionary> makeDictionary(
    std::initializer_list<std::pair<NSObject*, NSObject*>> keysAndValues);

template <class... A>
Ref<NSDictionary> NSDictionary::Meta::dictionaryWithObjectsAndKeys(A... pairs) const
{
    NSObject* const list[] = { pairs..., nullptr, nullptr };
    NSObject* objects[sizeof...(pairs) + 1] {};
    NSObject* keys[sizeof...(pairs) + 1] {};
    NSUInteger count = 0;
    for (; list[2 * count]; ++count) {
        objects[count] = list[2 * count];
        keys[count] = list[2 * count + 1];
    }
    return dictionaryWithObjects_forKeys_count(objects, keys, count);
}

}
