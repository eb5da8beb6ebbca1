// SPDX-License-Identifier: Apache-2.0
#include "NSObject+AutoCoding.h"

#include <mutex>
#include <unordered_map>

#include "CodableProperties.h"
#include "core/MethodPatching.h"
#include "foundation/Exceptions.h"
#include "foundation/NSArray.h"
#include "foundation/NSMutableDictionary.h"
#include "foundation/NSObject+KeyValueCoding.h"
#include "runtime/NSInvocation.h"
#include "runtime/Runtime.h"

namespace brindle {

namespace {

    // ---- tables

    /// Tables by class; filled once for a class. Its own lock, because classes lock themselves only.
    class Tables {
    public:
        Ref<NSDictionary> find(const Class* cls)
        {
            const std::lock_guard guard(mutex_);
            const auto found = all_.find(cls);
            return found == all_.end() ? nullptr : found->second;
        }
        void keep(const Class* cls, const Ref<NSDictionary>& table)
        {
            const std::lock_guard guard(mutex_);
            all_.emplace(cls, table);
        }

    private:
        std::mutex mutex_;
        std::unordered_map<const Class*, Ref<NSDictionary>> all_;
    };

    Tables& ownTables()
    {
        static Tables& tables = *new Tables;
        return tables;
    }
    Tables& mergedTables()
    {
        static Tables& tables = *new Tables;
        return tables;
    }

    Ref<NSDictionary> makeMergedTable(Class* cls)
    {
        const auto merged = make<NSMutableDictionary>();
        for (; cls && cls != NSObject::cls().object; cls = cls->superclass())
            merged->addEntriesFromDictionary(codableProperties(cls).get());
        return cast<NSDictionary>(merged->copy());
    }

    // ---- decoding

    [[noreturn]] void raiseUnexpected(NSString* name, Class* expected, Class* actual)
    {
        raiseFormat("AutocodingException"_ns, "Expected '%@' to be a %@, but was actually a %@"_ns,
            name, expected, actual);
    }

    /// Decodes one value at a time for one receiver.
    class Decoder {
    public:
        Decoder(NSObject& receiver, NSCoder* coder)
            : coder_(maybe(coder))
            , isSecure_(supportsSecureCoding(receiver.classObject()))
            , isClassAware_(coder_->respondsToSelector(selector<"decodeObjectOfClass:forKey:">))
            , foresees_(coder_->respondsToSelector(selector<"classOfValueForKey:">))
        {
        }

        Ref<NSObject> decode(NSString* name, Class* expected)
        {
            if (!isSecure_)
                return coder_->decodeObjectForKey(name);
            if (foresees_)
                require(name, expected, coder_->classOfValueForKey(name));
            Ref<NSObject> value = isClassAware_ ? coder_->decodeObjectOfClass_forKey(expected, name)
                                                : coder_->decodeObjectForKey(name);
            if (value && !value->isKindOfClass(expected))
                raiseUnexpected(name, expected, value->classObject());
            return value;
        }

    private:
        /// A foreign object is refused before anything of it is built.
        static void require(NSString* name, Class* expected, Class* coming)
        {
            if (coming && !coming->send<"isSubclassOfClass:", bool>(expected))
                raiseUnexpected(name, expected, coming);
        }

        NSCoder* coder_;
        bool isSecure_;
        bool isClassAware_;
        bool foresees_;
    };

    struct AutoCoding {

        static void load(Class& self)
        {
            JU_swizzleInstanceMethod(&self, selector<"methodSignatureForSelector:">,
                selector<"methodSignatureForSelector_JU:">);
            JU_swizzleInstanceMethod(
                &self, selector<"forwardInvocation:">, selector<"forwardInvocation_JU:">);
            JU_swizzleInstanceMethod(
                &self, selector<"respondsToSelector:">, selector<"respondsToSelector_JU:">);
        }

        // ---- what is codable

        static bool supportsSecureCoding(Class&) { return true; }
        static Ref<NSArray> uncodableProperties(Class&) { return nullptr; }

        // A table that is there is found without the class's lock, which belongs to the making.
        static Ref<NSDictionary> codablePropertiesOfClass(Class& self)
        {
            if (Ref<NSDictionary> table = ownTables().find(&self))
                return table;
            const Synchronized lock(&self);
            if (Ref<NSDictionary> table = ownTables().find(&self))
                return table;
            Ref<NSDictionary> table = makeCodableProperties(self);
            ownTables().keep(&self, table);
            return table;
        }
        static Ref<NSDictionary> codableProperties(NSObject& self)
        {
            Class* const cls = self.classObject();
            if (Ref<NSDictionary> table = mergedTables().find(cls))
                return table;
            const Synchronized lock(NSObject::cls());
            if (Ref<NSDictionary> table = mergedTables().find(cls))
                return table;
            Ref<NSDictionary> table = makeMergedTable(cls);
            mergedTables().keep(cls, table);
            return table;
        }
        static Ref<NSDictionary> dictionaryRepresentation(NSObject& self)
        {
            return dictionaryWithValuesForKeys(
                self, brindle::codableProperties(self)->allKeys().get());
        }

        // ---- coding

        static void setWithCoder(NSObject& self, NSCoder* coder)
        {
            const Ref<NSDictionary> table = brindle::codableProperties(self);
            Decoder decoder(self, coder);
            for (DictionaryIterator at(table.get()); !(at == std::default_sentinel); ++at) {
                auto* const name = static_cast<NSString*>(*at);
                const auto value = decoder.decode(name, static_cast<Class*>(at.value()));
                if (value)
                    setValue_forKey(self, value.get(), name);
            }
        }
        static Ref<NSObject> initWithCoder(NSObject& self, NSCoder* coder)
        {
            brindle::setWithCoder(self, coder);
            return &self;
        }
        static void encodeWithCoder(NSObject& self, NSCoder* coder)
        {
            const Ref<NSDictionary> table = brindle::codableProperties(self);
            for (NSObject* key : *table) {
                auto* const name = static_cast<NSString*>(key);
                if (const Ref<NSObject> value = valueForKey(self, name))
                    maybe(coder)->encodeObject_forKey(value.get(), name);
            }
        }

        // ---- copying on every object; each of these reaches what it replaced by its own selector

        static bool respondsToSelector(NSObject& self, SEL sel)
        {
            return sel == selector<"copyWithZone:">
                || self.send<"respondsToSelector_JU:", bool>(sel);
        }
        static Ref<NSMethodSignature> methodSignatureForSelector(NSObject& self, SEL sel)
        {
            const Synchronized lock(self.classObject());
            auto signature
                = self.send<"methodSignatureForSelector_JU:", Ref<NSMethodSignature>>(sel);
            if (!signature && sel == selector<"copyWithZone:">)
                signature = NSMethodSignature::cls().signatureWithObjCTypes("@@:@");
            return signature;
        }
        static void forwardInvocation(NSObject& self, NSInvocation* invocation)
        {
            if (maybe(invocation)->selector() != selector<"copyWithZone:">)
                self.send<"forwardInvocation_JU:">(invocation);
        }

        static void table(Builder& t)
        {
            t.classMethods({
                { "supportsSecureCoding", imp<supportsSecureCoding> },
                { "uncodableProperties", imp<uncodableProperties> },
                { "codableProperties", imp<codablePropertiesOfClass> },
            });
            t.methods({
                { "codableProperties", imp<codableProperties> },
                { "dictionaryRepresentation", imp<dictionaryRepresentation> },
                { "setWithCoder:", imp<setWithCoder> },
                { "initWithCoder:", imp<initWithCoder> },
                { "encodeWithCoder:", imp<encodeWithCoder> },
                { "respondsToSelector_JU:", imp<respondsToSelector> },
                { "methodSignatureForSelector_JU:", imp<methodSignatureForSelector> },
                { "forwardInvocation_JU:", imp<forwardInvocation> },
            });
        }
    };

}
BRINDLE_EXTENSION(NSObject, AutoCoding)

}
