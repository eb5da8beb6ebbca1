// SPDX-License-Identifier: Apache-2.0
#include <array>

#include "KeyValuePrivate.h"
#include "foundation/CollectionsPrivate.h"
#include "foundation/NSNull.h"
#include "foundation/NSNumber.h"
#include "foundation/NSObject+KeyValueCoding.h"
#include "runtime/Table.h"

// Arrays and sets answer a key for their elements; behind an "@" stand operators.

namespace brindle {

using namespace collections;
using keyvalue::placeOf;

namespace {

    NSObject* withoutNull(const Ref<NSObject>& value)
    {
        return value && value->isKindOfClass(NSNull::cls()) ? nullptr : value.get();
    }

    Items elementsOf(const NSObject* collection)
    {
        if (collection && collection->isKindOfClass(NSArray::cls()))
            return ArrayAccess::copy(static_cast<const NSArray*>(collection));
        if (collection && collection->isKindOfClass(NSSet::cls()))
            return SetAccess::copy(static_cast<const NSSet*>(collection));
        return {};
    }

    /// Counts how deep collections are asked within collections, because one may hold itself.
    class Level {
    public:
        explicit Level(const NSObject& collection)
        {
            if (depth_ >= kDeepestAsked)
                raise("NSInvalidArgumentException",
                    placeOf(collection) + "valueForKey:]: collections are nested too deep.");
            ++depth_;
        }
        ~Level() { --depth_; }
        Level(const Level&) = delete;
        Level& operator=(const Level&) = delete;

    private:
        static constexpr int kDeepestAsked = 512;
        static inline constinit thread_local int depth_ = 0;
    };

    /// The elements' values for a path, the elements themselves for no path; nil and null are left out.
    Items valuesOf(const Items& elements, NSString* path)
    {
        Items values;
        for (const Ref<NSObject>& element : elements) {
            const Ref<NSObject> value = path ? valueForKeyPath(element, path) : element;
            if (NSObject* const found = withoutNull(value))
                values.emplace_back(found);
        }
        return values;
    }

    /// The elements of the values, which are collections themselves.
    Items flattened(const Items& values)
    {
        Items all;
        for (const Ref<NSObject>& value : values) {
            for (Ref<NSObject>& item : elementsOf(value.get()))
                all.push_back(std::move(item));
        }
        return all;
    }

    Ref<NSObject> distinct(const Items& values)
    {
        const auto set = NSSet::cls().setWithArray(makeArray(values).get());
        return makeArray(SetAccess::copy(set.get()));
    }

    // ---- the operators

    double total(const Items& values)
    {
        double sum = 0;
        for (const Ref<NSObject>& value : values)
            sum += value->send<"doubleValue", double>();
        return sum;
    }
    Ref<NSObject> sum(const Items& values)
    {
        return NSNumber::cls().numberWithDouble(total(values));
    }
    Ref<NSObject> average(const Items& values)
    {
        const auto count = static_cast<double>(values.size());
        return NSNumber::cls().numberWithDouble(values.empty() ? 0 : total(values) / count);
    }
    Ref<NSObject> outermost(const Items& values, NSComparisonResult wanted)
    {
        Ref<NSObject> found;
        for (const Ref<NSObject>& value : values) {
            if (!found || value->send<"compare:", NSComparisonResult>(found.get()) == wanted)
                found = value;
        }
        return found;
    }
    Ref<NSObject> smallest(const Items& values) { return outermost(values, NSOrderedAscending); }
    Ref<NSObject> largest(const Items& values) { return outermost(values, NSOrderedDescending); }
    Ref<NSObject> all(const Items& values) { return makeArray(values); }
    Ref<NSObject> allOfEach(const Items& values) { return makeArray(flattened(values)); }
    Ref<NSObject> distinctOfEach(const Items& values) { return distinct(flattened(values)); }
    Ref<NSObject> distinctInSets(const Items& values)
    {
        return NSSet::cls().setWithArray(makeArray(flattened(values)).get());
    }

    struct Operator {
        std::string_view name;
        Ref<NSObject> (*answer)(const Items& values);
    };
    constexpr std::array kOperators {
        Operator { "sum", sum },
        Operator { "avg", average },
        Operator { "min", smallest },
        Operator { "max", largest },
        Operator { "unionOfObjects", all },
        Operator { "distinctUnionOfObjects", distinct },
        Operator { "unionOfArrays", allOfEach },
        Operator { "distinctUnionOfArrays", distinctOfEach },
        Operator { "distinctUnionOfSets", distinctInSets },
    };

    /// Answers "@operator.path".
    Ref<NSObject> operate(NSObject& self, NSString* path)
    {
        const Level level(self);
        const NSRange point = path->rangeOfString("."_ns);
        const std::string name = utf8Of(
            (point.length ? path->substringToIndex(point.location) : Ref<NSString>(path)).get());
        const Ref<NSString> rest
            = point.length ? path->substringFromIndex(point.location + 1) : nullptr;
        if (name == "@count")
            return NSNumber::cls().numberWithUnsignedInteger(self.send<"count", NSUInteger>());
        for (const Operator& each : kOperators) {
            if (name.substr(1) == each.name)
                return each.answer(valuesOf(elementsOf(&self), rest.get()));
        }
        raise("NSInvalidArgumentException",
            placeOf(self) + "valueForKeyPath:]: this class does not implement the " + name.substr(1)
                + " operation.");
    }

    bool isOperator(const NSString* key) { return maybe(key)->hasPrefix("@"_ns); }

    /// What arrays and sets share.
    template <class Collection> struct Elements {

        static Ref<NSObject> valueForKeyPath(Collection& self, NSString* path)
        {
            if (isOperator(path))
                return operate(self, path);
            return super<Collection, "valueForKeyPath:", Ref<NSObject>>(self, path);
        }
        static void setValueForKey(Collection& self, NSObject* value, NSString* key)
        {
            const Level level(self);
            for (const Ref<NSObject>& element : elementsOf(&self))
                brindle::setValue_forKey(element, value, key);
        }
        static Items values(Collection& self, NSString* key)
        {
            const Level level(self);
            Items found = elementsOf(&self);
            for (Ref<NSObject>& element : found)
                element = brindle::valueForKey(element, key);
            return found;
        }
        static void rows(Builder& t)
        {
            t.methods({
                { "valueForKeyPath:", imp<valueForKeyPath> },
                { "setValue:forKey:", imp<setValueForKey> },
            });
        }
    };

    struct ArrayKeyValueCoding : Elements<NSArray> {
        static Ref<NSObject> valueForKey(NSArray& self, NSString* key)
        {
            if (isOperator(key))
                return operate(self, key);
            Items found = values(self, key);
            for (Ref<NSObject>& value : found) {
                if (!value)
                    value = NSNull::cls().null();
            }
            return makeArray(std::move(found));
        }
        static void table(Builder& t)
        {
            rows(t);
            t.methods({ { "valueForKey:", imp<valueForKey> } });
        }
    };

    struct SetKeyValueCoding : Elements<NSSet> {
        static Ref<NSObject> valueForKey(NSSet& self, NSString* key)
        {
            if (isOperator(key))
                return operate(self, key);
            Items found = values(self, key);
            std::erase(found, nullptr);
            return NSSet::cls().setWithArray(makeArray(std::move(found)).get());
        }
        static void table(Builder& t)
        {
            rows(t);
            t.methods({ { "valueForKey:", imp<valueForKey> } });
        }
    };

}
BRINDLE_EXTENSION(NSArray, ArrayKeyValueCoding)
BRINDLE_EXTENSION(NSSet, SetKeyValueCoding)

}
