// SPDX-License-Identifier: Apache-2.0
#include "NSSortDescriptor.h"

#include "CodingTable.h"
#include "CollectionsPrivate.h"
#include "NSError.h"
#include "NSMutableArray.h"
#include "runtime/NSException.h"
#include "runtime/Runtime.h"
#include "runtime/Table.h"

namespace brindle {

using namespace collections;

namespace {

    /// What an archive may name: whatever else it says is not sent to anybody.
    constexpr std::string_view kArchived[] = { "compare:", "caseInsensitiveCompare:",
        "localizedCompare:", "localizedCaseInsensitiveCompare:", "localizedStandardCompare:" };

}

template <> struct NSSortDescriptor::Methods<struct Rule> {

    static Ref<NSSortDescriptor> alloc(Class& self)
    {
        return cast<NSSortDescriptor>(NSObject::Meta { &self }.alloc());
    }
    static Ref<NSSortDescriptor> make(Class& self, NSString* key, bool ascending)
    {
        return alloc(self)->initWithKey_ascending(key, ascending);
    }
    static Ref<NSSortDescriptor> makeSelector(
        Class& self, NSString* key, bool ascending, SEL selector)
    {
        return alloc(self)->initWithKey_ascending_selector(key, ascending, selector);
    }
    static Ref<NSSortDescriptor> makeComparator(
        Class& self, NSString* key, bool ascending, NSComparator::Owned* comparator)
    {
        return alloc(self)->initWithKey_ascending_comparator(
            key, ascending, NSComparator(comparator));
    }

    static Ref<NSSortDescriptor> init(NSSortDescriptor& self, NSString* key, bool ascending)
    {
        return self.initWithKey_ascending_selector(key, ascending, brindle::selector<"compare:">);
    }
    static Ref<NSSortDescriptor> initSelector(
        NSSortDescriptor& self, NSString* key, bool ascending, SEL selector)
    {
        if (!selector)
            raise("NSInvalidArgumentException",
                placeOf(&self, "initWithKey:ascending:selector:") + "null selector");
        self.key_ = key ? cast<NSString>(key->copy()) : nullptr;
        self.ascending_ = ascending;
        self.selector_ = selector;
        return &self;
    }
    static Ref<NSSortDescriptor> initComparator(
        NSSortDescriptor& self, NSString* key, bool ascending, NSComparator::Owned* comparator)
    {
        if (!comparator)
            raise("NSInvalidArgumentException",
                placeOf(&self, "initWithKey:ascending:comparator:") + "nil comparator");
        self.key_ = key ? cast<NSString>(key->copy()) : nullptr;
        self.ascending_ = ascending;
        self.comparator_ = NSComparator(comparator);
        return &self;
    }

    static Ref<NSString> key(NSSortDescriptor& self) { return self.key_; }
    static bool ascending(NSSortDescriptor& self) { return self.ascending_; }
    static SEL comparing(NSSortDescriptor& self) { return self.selector_; }
    static NSComparator comparator(NSSortDescriptor& self) { return self.comparator_; }

    static Ref<NSObject> valueOf(NSSortDescriptor& self, NSObject* object)
    {
        if (!self.key_ || !object)
            return Ref<NSObject>(object);
        return object->send<"valueForKeyPath:", Ref<NSObject>>(self.key_.get());
    }
    static NSComparisonResult inOrder(NSSortDescriptor& self, NSObject* a, NSObject* b)
    {
        if (!a || !b)
            return static_cast<NSComparisonResult>((a != nullptr) - (b != nullptr));
        if (self.comparator_)
            return self.comparator_(a, b);
        return static_cast<NSComparisonResult>(SelectorComparison(self.selector_)(a, b));
    }
    static NSComparisonResult compare(NSSortDescriptor& self, NSObject* a, NSObject* b)
    {
        const Ref<NSObject> one = valueOf(self, a);
        const Ref<NSObject> other = valueOf(self, b);
        return self.ascending_ ? inOrder(self, one.get(), other.get())
                               : inOrder(self, other.get(), one.get());
    }
    static Ref<NSSortDescriptor> reversed(NSSortDescriptor& self)
    {
        auto other = cast<NSSortDescriptor>(NSObject::Meta { self.isa_ }.alloc());
        return self.comparator_ ? other->initWithKey_ascending_comparator(
                   self.key_.get(), !self.ascending_, self.comparator_)
                                : other->initWithKey_ascending_selector(
                                    self.key_.get(), !self.ascending_, self.selector_);
    }

    static bool isEqual(NSSortDescriptor& self, NSObject* object)
    {
        if (!object || !object->isKindOfClass(NSSortDescriptor::cls()))
            return false;
        auto* const other = cast<NSSortDescriptor>(object);
        const bool isKeyEqual = self.key_ ? self.key_->isEqual(other->key_.get()) : !other->key_;
        return isKeyEqual && self.ascending_ == other->ascending_
            && self.selector_ == other->selector_ && self.comparator_ == other->comparator_;
    }
    static std::uint64_t hash(NSSortDescriptor& self)
    {
        return maybe(self.key_)->hash() + self.ascending_;
    }
    static Ref<NSObject> copyWithZone(NSSortDescriptor& self, void*) { return &self; }

    static void encodeWithCoder(NSSortDescriptor& self, NSCoder* coder)
    {
        if (self.comparator_)
            raise("NSInvalidArgumentException",
                placeOf(&self, "encodeWithCoder:") + "a block cannot be encoded");
        coder->encodeObject_forKey(self.key_.get(), "NSKey"_ns);
        coder->encodeBool_forKey(self.ascending_, "NSAscending"_ns);
        if (const char* const name = sel_getName(self.selector_))
            coder->encodeObject_forKey(stringFrom(name).get(), "NSSelector"_ns);
    }
    static Ref<NSObject> initWithCoder(NSSortDescriptor& self, NSCoder* coder)
    {
        const std::string name = utf8Of(decode<NSString>(coder, "NSSelector"_ns).get());
        if (std::find(std::begin(kArchived), std::end(kArchived), name) == std::end(kArchived)) {
            Ref<NSError> error;
            reportError(&error, NSCoderReadCorruptError,
                { { NSDebugDescriptionErrorKey, "not an operation that orders values"_ns } });
            coder->failWithError(error.get());
            return nullptr;
        }
        return self.initWithKey_ascending_selector(decode<NSString>(coder, "NSKey"_ns).get(),
            coder->decodeBoolForKey("NSAscending"_ns), sel_registerName(name.c_str()));
    }

    static void table(Builder& t)
    {
        t.conformsTo({ "NSCopying" });
        declareCoding<encodeWithCoder, initWithCoder>(t);
        t.classMethods({
            { "sortDescriptorWithKey:ascending:", imp<make> },
            { "sortDescriptorWithKey:ascending:selector:", imp<makeSelector> },
            { "sortDescriptorWithKey:ascending:comparator:", imp<makeComparator> },
        });
        t.methods({
            { "initWithKey:ascending:", imp<init> },
            { "initWithKey:ascending:selector:", imp<initSelector> },
            { "initWithKey:ascending:comparator:", imp<initComparator> },
            { "key", imp<key> },
            { "ascending", imp<ascending> },
            { "selector", imp<comparing> },
            { "comparator", imp<comparator> },
            { "compareObject:toObject:", imp<compare> },
            { "reversedSortDescriptor", imp<reversed> },
            { "isEqual:", imp<isEqual> },
            { "hash", imp<hash> },
            { "copyWithZone:", imp<copyWithZone> },
        });
    }
};
BRINDLE_RECORD(NSSortDescriptor, Rule)

namespace {

    void sortBy(Items& items, NSArray* descriptors)
    {
        const Items rules = ArrayAccess::copy(descriptors);
        sortItems(items, [&](NSObject* a, NSObject* b) -> NSInteger {
            for (const Ref<NSObject>& rule : rules) {
                const auto order = cast<NSSortDescriptor>(rule.get())->compareObject_toObject(a, b);
                if (order != NSOrderedSame)
                    return order;
            }
            return NSOrderedSame;
        });
    }

    struct SortingArrays {
        static Ref<NSArray> sorted(NSArray& self, NSArray* descriptors)
        {
            Items items = ArrayAccess::copy(&self);
            sortBy(items, descriptors);
            return makeArray(std::move(items));
        }
        static void table(Builder& t)
        {
            t.methods({ { "sortedArrayUsingDescriptors:", imp<sorted> } });
        }
    };

    struct SortingInPlace {
        static void sort(NSMutableArray& self, NSArray* descriptors)
        {
            const Ref<NSMutableArray> alive(&self);
            self.setArray(sortedArrayUsingDescriptors(&self, descriptors).get());
        }
        static void table(Builder& t) { t.methods({ { "sortUsingDescriptors:", imp<sort> } }); }
    };

    struct SortingSets {
        static Ref<NSArray> sorted(NSSet& self, NSArray* descriptors)
        {
            Items items = SetAccess::copy(&self);
            sortBy(items, descriptors);
            return makeArray(std::move(items));
        }
        static void table(Builder& t)
        {
            t.methods({ { "sortedArrayUsingDescriptors:", imp<sorted> } });
        }
    };

}
BRINDLE_EXTENSION(NSArray, SortingArrays)
BRINDLE_EXTENSION(NSMutableArray, SortingInPlace)
BRINDLE_EXTENSION(NSSet, SortingSets)

}
