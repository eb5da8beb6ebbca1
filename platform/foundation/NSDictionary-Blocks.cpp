// SPDX-License-Identifier: Apache-2.0
#include "NSDictionary.h"

#include "CollectionsPrivate.h"
#include "runtime/Table.h"

namespace brindle {

using namespace collections;

// Comparing, blocks, sorting, text.
template <> struct NSDictionary::Methods<struct Visiting> {

    /// Runs over the entries until the visitor answers false.
    template <class Visit> static void visit(NSDictionary& self, Visit each)
    {
        const Ref<NSDictionary> alive(&self);
        for (DictionaryIterator at(&self); !(at == std::default_sentinel); ++at) {
            if (!each(*at, at.value()))
                return;
        }
    }

    static bool isEqualToDictionary(NSDictionary& self, NSDictionary* other)
    {
        if (&self == other)
            return true;
        if (!other || other->count() != self.count())
            return false;
        return compareOnce(self, *other, [&] { return holdsEqual(self, *other); });
    }
    static bool holdsEqual(NSDictionary& self, NSDictionary& other)
    {
        bool equal = true;
        visit(self, [&](NSObject* key, NSObject* value) {
            const Ref<NSObject> counterpart = other.objectForKey(key);
            equal = counterpart && (counterpart == value || value->isEqual(counterpart.get()));
            return equal;
        });
        return equal;
    }
    static bool isEqual(NSDictionary& self, NSObject* other)
    {
        return other && other->isKindOfClass(NSDictionary::cls())
            && self.isEqualToDictionary(static_cast<NSDictionary*>(other));
    }
    static std::uint64_t hash(NSDictionary& self) { return hashOf(self); }

    static Ref<NSArray> allKeysForObject(NSDictionary& self, NSObject* object)
    {
        Items keys;
        visit(self, [&](NSObject* key, NSObject* value) {
            if (object && (value == object || value->isEqual(object)))
                keys.emplace_back(key);
            return true;
        });
        return makeArray(std::move(keys));
    }

    static void enumerate(NSDictionary& self, Visitor::Owned* lent)
    {
        const Visitor block(lent);
        bool stop = false;
        visit(self, [&](NSObject* key, NSObject* value) {
            block(key, value, &stop);
            return !stop;
        });
    }
    static Ref<NSSet> keysPassing(NSDictionary& self, Test::Owned* lent)
    {
        const Test test(lent);
        Items keys;
        bool stop = false;
        visit(self, [&](NSObject* key, NSObject* value) {
            Ref<NSObject> owner(key);
            if (test(key, value, &stop))
                keys.push_back(std::move(owner));
            return !stop;
        });
        return NSSet::cls().setWithArray(makeArray(std::move(keys)).get());
    }

    template <class Compare> static Ref<NSArray> keysSorted(NSDictionary& self, Compare&& compare)
    {
        Items keys = ArrayAccess::copy(self.allKeys().get());
        sortItems(keys, [&](NSObject* a, NSObject* b) {
            return static_cast<NSInteger>(
                compare(self.objectForKey(a).get(), self.objectForKey(b).get()));
        });
        return makeArray(std::move(keys));
    }
    static Ref<NSArray> keysSortedByComparator(NSDictionary& self, Comparator::Owned* lent)
    {
        return keysSorted(self, Comparator(lent));
    }
    static Ref<NSArray> keysSortedBySelector(NSDictionary& self, SEL selector)
    {
        return keysSorted(self, SelectorComparison(selector));
    }

    static Ref<NSString> description(NSDictionary& self)
    {
        return self.descriptionWithLocale_indent(nullptr, 0);
    }
    static Ref<NSString> descriptionWithLocale(NSDictionary& self, NSObject* locale)
    {
        return self.descriptionWithLocale_indent(locale, 0);
    }
    static Ref<NSString> descriptionWithLocaleIndent(
        NSDictionary& self, NSObject*, NSUInteger level)
    {
        const Describing describing;
        Items keys = ArrayAccess::copy(self.allKeys().get());
        Class* const text = NSString::cls();
        if (std::all_of(keys.begin(), keys.end(),
                [text](const auto& key) { return key->isKindOfClass(text); }))
            sortItems(keys, SelectorComparison(selector<"compare:">));
        std::string out = "{\n";
        for (const Ref<NSObject>& key : keys) {
            const Ref<NSObject> value = self.objectForKey(key.get());
            out += indentation(level + 1) + describe(key.get(), level + 1) + " = "
                + (value ? describe(value.get(), level + 1) : "(null)") + ";\n";
        }
        return stringFrom(out + indentation(level) + "}");
    }

    static void table(Builder& t)
    {
        t.methods({
            { "isEqualToDictionary:", imp<isEqualToDictionary> },
            { "isEqual:", imp<isEqual> },
            { "hash", imp<hash> },
            { "allKeysForObject:", imp<allKeysForObject> },
            { "enumerateKeysAndObjectsUsingBlock:", imp<enumerate> },
            { "keysOfEntriesPassingTest:", imp<keysPassing> },
            { "keysSortedByValueUsingComparator:", imp<keysSortedByComparator> },
            { "keysSortedByValueUsingSelector:", imp<keysSortedBySelector> },
            { "description", imp<description> },
            { "descriptionWithLocale:", imp<descriptionWithLocale> },
            { "descriptionWithLocale:indent:", imp<descriptionWithLocaleIndent> },
        });
    }
};
BRINDLE_RECORD(NSDictionary, Visiting)

}
