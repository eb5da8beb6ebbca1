// SPDX-License-Identifier: Apache-2.0
#include "NSObject+EQProperties.h"

#include <cstring>

#include "NSString+EQPropertyKVC.h"
#include "PropertyQueries.h"
#include "foundation/Exceptions.h"

namespace brindle {

namespace {

    objc_property_t propertyNamed(Class& cls, NSString* name)
    {
        return class_getProperty(&cls, maybe(name)->UTF8String());
    }

    /// Answers the default accessor when instances have it, else raises `format` about the class and `subject`.
    SEL defaultAccessor(Class& cls, NSString* accessor, NSString* format, NSString* subject)
    {
        const SEL sel = sel_getUid(accessor->UTF8String());
        if (!cls.send<"instancesRespondToSelector:", bool>(sel))
            raiseFormat(NSInternalInconsistencyException, format, &cls, subject);
        return sel;
    }

    struct EQProperties {

        static bool hasProperties(Class& self)
        {
            unsigned count = 0;
            releaseBuffer(class_copyPropertyList(&self, &count));
            return count > 0;
        }
        static bool hasPropertyNamed(Class& self, NSString* name)
        {
            return propertyNamed(self, name) != nullptr;
        }
        static bool hasPropertyNamedOfType(Class& self, NSString* name, const char* type)
        {
            const char* const own = brindle::typeOfPropertyNamed(self, name);
            return own && type && std::strcmp(own, type) == 0;
        }
        static bool hasPropertyForKVCKey(Class& self, NSString* key)
        {
            return brindle::hasPropertyNamed(self, key)
                || brindle::hasPropertyNamed(self, propertyStyleString(key).get());
        }
        static const char* typeOfPropertyNamed(Class& self, NSString* name)
        {
            return property_getTypeString(propertyNamed(self, name));
        }
        static SEL getterForPropertyNamed(Class& self, NSString* name)
        {
            const objc_property_t property = propertyNamed(self, name);
            if (!property || property_getGetter(property))
                return SEL {};
            return defaultAccessor(self, name,
                "%@ has property '%@' with no custom getter, but does not respond to the default getter"_ns,
                name);
        }
        static SEL setterForPropertyNamed(Class& self, NSString* name)
        {
            const objc_property_t property = propertyNamed(self, name);
            if (!property)
                return SEL {};
            if (const SEL custom = property_getSetter(property))
                return custom;
            const Ref<NSString> first = name->substringToIndex(1)->uppercaseString();
            const Ref<NSString> rest = name->substringFromIndex(1);
            const Ref<NSString> accessor
                = NSString::cls().stringWithFormat("set%@%@"_ns, first.get(), rest.get());
            return defaultAccessor(self, accessor.get(),
                "%@ has property '%@' with no custom setter, but does not respond to the default setter"_ns,
                accessor.get());
        }
        static Ref<NSString> retentionMethodOfPropertyNamed(Class& self, NSString* name)
        {
            const char* const method = property_getRetentionMethod(propertyNamed(self, name));
            if (!method)
                return nullptr;
            Ref<NSString> text = NSString::cls().stringWithUTF8String(method);
            releaseBuffer(const_cast<char*>(method)); // leaves literals alone
            return text;
        }
        static Ref<NSArray> propertyNames(Class& self)
        {
            unsigned count = 0;
            objc_property_t* const list = class_copyPropertyList(&self, &count);
            std::vector<Ref<NSObject>> names;
            for (unsigned i = 0; i < count; ++i)
                names.emplace_back(NSString::cls().stringWithUTF8String(property_getName(list[i])));
            releaseBuffer(list);
            return names.empty() ? nullptr : makeArray(std::move(names));
        }

        /// The instance operation that asks the class.
        template <Text S, class R, class... A> static R askClass(NSObject& self, A... arguments)
        {
            return self.classObject()->send<S, R, A...>(arguments...);
        }

        static void table(Builder& t)
        {
            t.classMethods({
                { "hasProperties", imp<hasProperties> },
                { "hasPropertyNamed:", imp<hasPropertyNamed> },
                { "hasPropertyNamed:ofType:", imp<hasPropertyNamedOfType> },
                { "hasPropertyForKVCKey:", imp<hasPropertyForKVCKey> },
                { "typeOfPropertyNamed:", imp<typeOfPropertyNamed> },
                { "getterForPropertyNamed:", imp<getterForPropertyNamed> },
                { "setterForPropertyNamed:", imp<setterForPropertyNamed> },
                { "retentionMethodOfPropertyNamed:", imp<retentionMethodOfPropertyNamed> },
                { "propertyNames", imp<propertyNames> },
            });
            t.methods({
                { "hasProperties", imp<askClass<"hasProperties", bool>> },
                { "hasPropertyNamed:", imp<askClass<"hasPropertyNamed:", bool, NSString*>> },
                { "hasPropertyNamed:ofType:",
                    imp<askClass<"hasPropertyNamed:ofType:", bool, NSString*, const char*>> },
                { "hasPropertyForKVCKey:",
                    imp<askClass<"hasPropertyForKVCKey:", bool, NSString*>> },
                { "typeOfPropertyNamed:",
                    imp<askClass<"typeOfPropertyNamed:", const char*, NSString*>> },
                { "getterForPropertyNamed:",
                    imp<askClass<"getterForPropertyNamed:", SEL, NSString*>> },
                { "setterForPropertyNamed:",
                    imp<askClass<"setterForPropertyNamed:", SEL, NSString*>> },
                { "retentionMethodOfPropertyNamed:",
                    imp<askClass<"retentionMethodOfPropertyNamed:", Ref<NSString>, NSString*>> },
                { "propertyNames", imp<askClass<"propertyNames", Ref<NSArray>>> },
            });
        }
    };

}
BRINDLE_EXTENSION(NSObject, EQProperties)

}
