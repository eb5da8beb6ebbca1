// SPDX-License-Identifier: Apache-2.0
#include "KeyValuePrivate.h"
#include "foundation/CollectionsPrivate.h"
#include "foundation/NSMutableArray.h"
#include "foundation/NSObject+KeyValueCoding.h"
#include "runtime/Table.h"

namespace brindle {

/// The array behind a key of an object: it keeps nothing itself.
class KeyValueArray : public NSMutableArray {
    BRINDLE_OBJECT(KeyValueArray, NSMutableArray)

    Ref<NSObject> owner_;
    Ref<NSString> key_;
    SEL insert_; // both or none
    SEL remove_;
};

template <> struct KeyValueArray::Methods<struct Proxy> {

    using Insert = void (*)(NSObject*, SEL, NSObject*, NSUInteger);
    using Remove = void (*)(NSObject*, SEL, NSUInteger);

    static SEL answered(const NSObject* owner, const std::string& name, std::string_view types)
    {
        const Method* const method = class_getInstanceMethod(owner->isa_, selectorOf(name));
        return method && method_getTypeEncoding(method) == types ? method_getName(method) : SEL {};
    }
    static Ref<NSMutableArray> make(NSObject& owner, NSString* key)
    {
        const auto array = brindle::make<KeyValueArray>();
        array->owner_ = &owner;
        array->key_ = cast<NSString>(key->copy());
        const std::string large = utf8Of(key->substringToIndex(1)->uppercaseString().get())
            + utf8Of(key->substringFromIndex(1).get());
        array->insert_ = answered(&owner, "insertObject:in" + large + "AtIndex:",
            messageEncoding<void, NSObject*, NSUInteger>.view());
        array->remove_ = answered(&owner,
            "removeObjectFrom" + large + "AtIndex:", messageEncoding<void, NSUInteger>.view());
        if (!array->insert_ || !array->remove_)
            array->insert_ = array->remove_ = SEL {};
        return array;
    }

    static Ref<NSArray> contents(KeyValueArray& self)
    {
        return cast<NSArray>(valueForKey(self.owner_, self.key_.get()));
    }
    /// Changes a copy and makes it the key's value.
    template <class Change> static void change(KeyValueArray& self, Change apply)
    {
        const Ref<NSArray> now = contents(self);
        const auto next = now ? NSMutableArray::cls().arrayWithArray(now.get())
                              : brindle::make<NSMutableArray>();
        apply(*next);
        setValue_forKey(self.owner_, next.get(), self.key_.get());
    }

    static NSUInteger count(KeyValueArray& self) { return maybe(contents(self))->count(); }
    static Ref<NSObject> objectAtIndex(KeyValueArray& self, NSUInteger index)
    {
        if (index >= count(self))
            collections::raiseIndex(&self, "objectAtIndex:", index, count(self));
        return contents(self)->objectAtIndex(index);
    }
    static void insert(KeyValueArray& self, NSObject* object, NSUInteger index)
    {
        if (!object)
            collections::raiseNil(&self, "insertObject:atIndex:");
        if (!self.insert_)
            return change(
                self, [&](NSMutableArray& next) { next.insertObject_atIndex(object, index); });
        const IMP imp = self.owner_->methodForSelector(self.insert_);
        reinterpret_cast<Insert>(imp)(self.owner_.get(), self.insert_, object, index);
    }
    static void removeAtIndex(KeyValueArray& self, NSUInteger index)
    {
        if (!self.remove_)
            return change(self, [&](NSMutableArray& next) { next.removeObjectAtIndex(index); });
        const IMP imp = self.owner_->methodForSelector(self.remove_);
        reinterpret_cast<Remove>(imp)(self.owner_.get(), self.remove_, index);
    }
    static void replaceAtIndex(KeyValueArray& self, NSUInteger index, NSObject* object)
    {
        if (!self.insert_)
            return change(self,
                [&](NSMutableArray& next) { next.replaceObjectAtIndex_withObject(index, object); });
        if (!object)
            collections::raiseNil(&self, "replaceObjectAtIndex:withObject:");
        self.removeObjectAtIndex(index);
        self.insertObject_atIndex(object, index);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "count", imp<count> },
            { "objectAtIndex:", imp<objectAtIndex> },
            { "insertObject:atIndex:", imp<insert> },
            { "removeObjectAtIndex:", imp<removeAtIndex> },
            { "replaceObjectAtIndex:withObject:", imp<replaceAtIndex> },
        });
    }
};
BRINDLE_RECORD(KeyValueArray, Proxy)

namespace {

    struct MutableArrays {
        static Ref<NSMutableArray> mutableArrayValueForKey(NSObject& self, NSString* key)
        {
            if (maybe(key)->length() == 0)
                return cast<NSMutableArray>(valueForUndefinedKey(self, key));
            return KeyValueArray::Methods<struct Proxy>::make(self, key);
        }
        static void table(Builder& t)
        {
            t.methods({ { "mutableArrayValueForKey:", imp<mutableArrayValueForKey> } });
        }
    };

}
BRINDLE_EXTENSION(NSObject, MutableArrays)

}
