// SPDX-License-Identifier: Apache-2.0
#include "NSArray.h"

#include <cstdarg>

#include "CollectionsPrivate.h"
#include "NSMutableArray.h"
#include "runtime/NSException.h"
#include "runtime/Table.h"

namespace brindle {

using namespace collections;

// ---- the way to the elements

bool ArrayAccess::isDirect(const NSArray& array)
{
    return array.isa_ == classOf<NSArray>() || array.isa_ == classOf<NSMutableArray>();
}

Items ArrayAccess::copy(const NSArray* array)
{
    if (!array)
        return {};
    if (isDirect(*array))
        return array->items_;
    Items items;
    const NSUInteger count = array->count();
    for (NSUInteger i = 0; i < count; ++i)
        items.push_back(array->objectAtIndex(i));
    return items;
}

ArrayIterator::ArrayIterator(const NSArray* array)
    : array_(array)
    , items_(&array->items_)
    , changes_(array->changes_)
{
    if (ArrayAccess::isDirect(*array))
        return;
    snapshot_ = makeArray(ArrayAccess::copy(array));
    items_ = &snapshot_->items_;
}

void ArrayIterator::raiseChanged() const { raiseMutated(array_); }

Ref<NSArray> makeArray(std::span<NSObject* const> objects)
{
    return NSArray::cls().arrayWithObjects_count(objects.data(), objects.size());
}

Ref<NSArray> makeArray(std::vector<Ref<NSObject>> owners)
{
    Ref<NSArray> array = make<NSArray>();
    ArrayAccess::items(*array) = std::move(owners);
    return array;
}

// ---- making and reading

template <> struct NSArray::Methods<struct Reading> {

    static Ref<NSArray> alloc(Class& self)
    {
        return cast<NSArray>(NSObject::Meta { &self }.alloc());
    }

    static Ref<NSArray> array(Class& self) { return cast<NSArray>(alloc(self)->init()); }
    static Ref<NSArray> arrayWithObject(Class& self, NSObject* object)
    {
        return alloc(self)->initWithObjects_count(&object, 1);
    }
    static Ref<NSArray> arrayWithObjectsCount(
        Class& self, NSObject* const* objects, NSUInteger count)
    {
        return alloc(self)->initWithObjects_count(objects, count);
    }
    static Ref<NSArray> arrayWithArray(Class& self, NSArray* other)
    {
        return alloc(self)->initWithArray(other);
    }
    static NSObject* arrayWithObjects(Class* self, SEL, NSObject* first, ...)
    {
        va_list list;
        va_start(list, first);
        const std::vector<NSObject*> objects = collections::untilNil(first, list);
        va_end(list);
        return alloc(*self)->initWithObjects_count(objects.data(), objects.size()).leak();
    }

    static Ref<NSArray> initWithObjectsCount(
        NSArray& self, NSObject* const* objects, NSUInteger count)
    {
        if (!super<NSArray, "init", Ref<NSObject>>(self))
            return nullptr;
        if (count && !objects)
            raiseNil(&self, "initWithObjects:count:", "objects");
        self.items_.reserve(count);
        for (NSUInteger i = 0; i < count; ++i) {
            if (!objects[i])
                raise("NSInvalidArgumentException",
                    placeOf(&self, "initWithObjects:count:")
                        + "attempt to insert nil object from objects[" + std::to_string(i) + "]");
            self.items_.emplace_back(objects[i]);
        }
        return &self;
    }
    static Ref<NSArray> initWithArray(NSArray& self, NSArray* other)
    {
        if (!super<NSArray, "init", Ref<NSObject>>(self))
            return nullptr;
        self.items_ = ArrayAccess::copy(other);
        return &self;
    }
    static Ref<NSArray> initWithArrayCopyItems(NSArray& self, NSArray* other, bool copyItems)
    {
        const Ref<NSArray> made = initWithArray(self, other);
        if (!made || !copyItems)
            return made;
        for (Ref<NSObject>& item : self.items_) {
            Ref<NSObject> copy = copyOf(item.get());
            if (!copy)
                raiseNil(&self, "initWithArray:copyItems:", "the copy of an object");
            item = std::move(copy);
        }
        return made;
    }

    static NSUInteger count(NSArray& self) { return self.items_.size(); }
    static Ref<NSObject> objectAtIndex(NSArray& self, NSUInteger index)
    {
        if (index >= self.items_.size())
            raiseIndex(&self, "objectAtIndex:", index, self.items_.size());
        return self.items_[index];
    }
    static Ref<NSObject> objectAtIndexedSubscript(NSArray& self, NSUInteger index)
    {
        return self.objectAtIndex(index);
    }
    static Ref<NSObject> firstObject(NSArray& self)
    {
        return self.count() ? self.objectAtIndex(0) : nullptr;
    }
    static Ref<NSObject> lastObject(NSArray& self)
    {
        const NSUInteger count = self.count();
        return count ? self.objectAtIndex(count - 1) : nullptr;
    }
    static void getObjectsRange(NSArray& self, NSObject** objects, NSRange range)
    {
        requireRange(&self, "getObjects:range:", range, self.count());
        for (NSUInteger i = 0; i < range.length; ++i)
            objects[i] = self.objectAtIndex(range.location + i).get();
    }

    static Ref<NSEnumerator> enumerator(NSArray& self, bool reverse)
    {
        const Ref<NSArray> kept(&self);
        return makeEnumerator([kept, reverse, passed = NSUInteger { 0 },
                                  changes = self.changes_]() mutable -> Ref<NSObject> {
            if (kept->changes_ != changes)
                raiseMutated(kept.get());
            const NSUInteger count = kept->count();
            if (passed >= count)
                return nullptr;
            ++passed;
            return kept->objectAtIndex(reverse ? count - passed : passed - 1);
        });
    }
    static Ref<NSEnumerator> objectEnumerator(NSArray& self) { return enumerator(self, false); }
    static Ref<NSEnumerator> reverseObjectEnumerator(NSArray& self)
    {
        return enumerator(self, true);
    }

    // ---- copying, comparing, text

    static Ref<NSObject> copyWithZone(NSArray& self, void*)
    {
        if (self.isKindOfClass(NSMutableArray::cls()))
            return makeArray(ArrayAccess::copy(&self));
        return &self;
    }
    static Ref<NSObject> mutableCopyWithZone(NSArray& self, void*)
    {
        return NSMutableArray::cls().arrayWithArray(&self);
    }

    static bool isEqualToArray(NSArray& self, NSArray* other)
    {
        if (&self == other)
            return true;
        const NSUInteger count = self.count();
        if (!other || other->count() != count)
            return false;
        return compareOnce(self, *other, [&] { return holdsEqual(self, *other); });
    }
    static bool holdsEqual(NSArray& self, NSArray& other)
    {
        if (!ArrayAccess::isDirect(self) || !ArrayAccess::isDirect(other)) {
            const Ref<NSArray> a = makeArray(ArrayAccess::copy(&self));
            const Ref<NSArray> b = makeArray(ArrayAccess::copy(&other));
            return holdsEqual(*a, *b);
        }
        ArrayIterator at(&other);
        for (NSObject* item : self) {
            if (at == std::default_sentinel)
                return false;
            NSObject* const counterpart = *at;
            if (item != counterpart && !item->isEqual(counterpart))
                return false;
            ++at;
        }
        return true;
    }
    static bool isEqual(NSArray& self, NSObject* other)
    {
        return other && other->isKindOfClass(NSArray::cls())
            && self.isEqualToArray(static_cast<NSArray*>(other));
    }
    static std::uint64_t hash(NSArray& self) { return hashOf(self); }

    static Ref<NSString> description(NSArray& self)
    {
        return self.descriptionWithLocale_indent(nullptr, 0);
    }
    static Ref<NSString> descriptionWithLocale(NSArray& self, NSObject* locale)
    {
        return self.descriptionWithLocale_indent(locale, 0);
    }
    static Ref<NSString> descriptionWithLocaleIndent(NSArray& self, NSObject*, NSUInteger level)
    {
        return stringFrom(describeList(ArrayAccess::copy(&self), level));
    }
    static Ref<NSString> componentsJoinedByString(NSArray& self, NSString* separator)
    {
        const std::u16string between = utf16Of(separator);
        std::u16string text;
        bool first = true;
        for (const Ref<NSObject>& item : ArrayAccess::copy(&self)) {
            if (!std::exchange(first, false))
                text += between;
            text += utf16Of(item->description());
        }
        return stringFrom(text);
    }

    static void table(Builder& t)
    {
        t.conformsTo({ "NSCopying", "NSMutableCopying", "NSFastEnumeration" });
        t.classMethods({
            { "array", imp<array> },
            { "arrayWithObject:", imp<arrayWithObject> },
            { "arrayWithObjects:", variadic<arrayWithObjects> },
            { "arrayWithObjects:count:", imp<arrayWithObjectsCount> },
            { "arrayWithArray:", imp<arrayWithArray> },
        });
        t.methods({
            { "initWithObjects:count:", imp<initWithObjectsCount> },
            { "initWithArray:", imp<initWithArray> },
            { "initWithArray:copyItems:", imp<initWithArrayCopyItems> },
            { "count", imp<count> },
            { "objectAtIndex:", imp<objectAtIndex> },
            { "objectAtIndexedSubscript:", imp<objectAtIndexedSubscript> },
            { "firstObject", imp<firstObject> },
            { "lastObject", imp<lastObject> },
            { "getObjects:range:", imp<getObjectsRange> },
            { "objectEnumerator", imp<objectEnumerator> },
            { "reverseObjectEnumerator", imp<reverseObjectEnumerator> },
            { "copyWithZone:", imp<copyWithZone> },
            { "mutableCopyWithZone:", imp<mutableCopyWithZone> },
            { "isEqualToArray:", imp<isEqualToArray> },
            { "isEqual:", imp<isEqual> },
            { "hash", imp<hash> },
            { "description", imp<description> },
            { "descriptionWithLocale:", imp<descriptionWithLocale> },
            { "descriptionWithLocale:indent:", imp<descriptionWithLocaleIndent> },
            { "componentsJoinedByString:", imp<componentsJoinedByString> },
        });
    }
};
BRINDLE_RECORD(NSArray, Reading)

}
