// SPDX-License-Identifier: Apache-2.0
#include "NSURLQueryItem.h"

#include "CodingTable.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct NSURLQueryItem::Methods<struct Item> {

    static Ref<NSURLQueryItem> make(Class& self, NSString* name, NSString* value)
    {
        return cast<NSURLQueryItem>(NSObject::Meta { &self }.alloc())
            ->initWithName_value(name, value);
    }
    static Ref<NSURLQueryItem> init(NSURLQueryItem& self, NSString* name, NSString* value)
    {
        if (!super<NSURLQueryItem, "init", Ref<NSObject>>(self))
            return nullptr;
        self.name_ = name ? cast<NSString>(name->copy()) : Ref<NSString>(""_ns);
        self.value_ = cast<NSString>(maybe(value)->copy());
        return &self;
    }
    static bool isEqual(NSURLQueryItem& self, NSObject* other)
    {
        if (other == &self)
            return true;
        if (!other || !other->isKindOfClass(NSURLQueryItem::cls()))
            return false;
        const auto& item = static_cast<const NSURLQueryItem&>(*other);
        const Ref<NSString> value = item.value();
        const bool haveEqualValues
            = self.value_ ? self.value_->isEqualToString(value.get()) : !value;
        return haveEqualValues && maybe(self.name_)->isEqualToString(item.name().get());
    }
    static std::uint64_t hash(NSURLQueryItem& self)
    {
        return maybe(self.name_)->hash() * 31 + maybe(self.value_)->hash();
    }
    static Ref<NSObject> copyWithZone(NSURLQueryItem& self, void*) { return &self; }
    static Ref<NSString> description(NSURLQueryItem& self)
    {
        return NSString::cls().stringWithFormat("%@=%@"_ns, self.name_, self.value_);
    }

    static void encodeWithCoder(NSURLQueryItem& self, NSCoder* coder)
    {
        coder->encodeObject_forKey(self.name_.get(), "NS.name"_ns);
        coder->encodeObject_forKey(self.value_.get(), "NS.value"_ns);
    }
    static Ref<NSObject> initWithCoder(NSURLQueryItem& self, NSCoder* coder)
    {
        return self.initWithName_value(decode<NSString>(coder, "NS.name"_ns).get(),
            decode<NSString>(coder, "NS.value"_ns).get());
    }

    static void table(Builder& t)
    {
        t.conformsTo({ "NSCopying" });
        declareCoding<encodeWithCoder, initWithCoder>(t);
        t.classMethods({
            { "queryItemWithName:value:", imp<make> },
        });
        t.methods({
            { "initWithName:value:", imp<init> },
            { "isEqual:", imp<isEqual> },
            { "hash", imp<hash> },
            { "copyWithZone:", imp<copyWithZone> },
            { "description", imp<description> },
        });
        t.properties({
            property<&NSURLQueryItem::name_>("name", readonly, copied, nonatomic),
            property<&NSURLQueryItem::value_>("value", readonly, copied, nonatomic),
        });
    }
};
BRINDLE_RECORD(NSURLQueryItem, Item)

}
