// SPDX-License-Identifier: Apache-2.0
#include "CodableProperties.h"

#include <string_view>

#include "NSObject+AutoCoding.h"
#include "UniqueObjects.h"
#include "foundation/NSArray.h"
#include "foundation/NSLog.h"
#include "foundation/NSMutableDictionary.h"
#include "foundation/NSNumber.h"
#include "foundation/NSUUID.h"
#include "runtime/Runtime.h"

namespace brindle {

namespace {

    /// One attribute of a property; absent ones read false.
    class Attribute {
    public:
        Attribute(objc_property_t property, const char* letter)
            : value_(property_copyAttributeValue(property, letter))
        {
        }
        ~Attribute() { releaseBuffer(value_); }
        Attribute(const Attribute&) = delete;
        Attribute& operator=(const Attribute&) = delete;

        explicit operator bool() const { return value_ != nullptr; }
        std::string_view text() const { return value_ ? value_ : ""; }

    private:
        char* value_;
    };

    /// The class named in `@"Name"` or `@"Name<Protocol>"`; the root where nobody declared it.
    Class* namedClass(std::string_view type)
    {
        const std::string_view quoted = type.substr(2, type.rfind('"') - 2);
        Class* const cls = objc_getClass(std::string(quoted.substr(0, quoted.find('<'))).c_str());
        return cls ? cls : NSObject::cls().object;
    }

    /// What a decoded value of a type must be; nil for types that are not codable.
    Class* valueClass(std::string_view type)
    {
        constexpr std::string_view kNumbers = "BCIScdfilqs"; // "L" and "Q" stay out
        if (type.empty())
            return nullptr;
        if (kNumbers.find(type[0]) != kNumbers.npos)
            return NSNumber::cls();
        if (type[0] == '{')
            return NSValue::cls();
        return type.size() >= 3 && type.starts_with("@\"") ? namedClass(type) : nullptr;
    }

    /// Whether what the property is stored in can be found again by its name.
    bool isStored(objc_property_t property)
    {
        const Attribute field(property, "V");
        const std::string_view name = property_getName(property);
        if (!field || !Attribute(property, "R"))
            return static_cast<bool>(field);
        const std::string_view text = field.text();
        return text == name || (text.starts_with('_') && text.substr(1) == name);
    }

    void warnAboutOldMethods(Class& cls)
    {
        const auto answers = [&](SEL sel) {
            return cls.respondsToSelector(sel)
                || cls.send<"instancesRespondToSelector:", bool>(sel);
        };
        if (answers(selector<"codableKeys">))
            NSLog("AutoCoding Warning: codableKeys method is no longer supported. "
                  "Use codableProperties instead."_ns);
        if (answers(selector<"uncodableKeys">))
            NSLog("AutoCoding Warning: uncodableKeys method is no longer supported. "
                  "Use uncodableProperties instead."_ns);
    }

}

Ref<NSDictionary> makeCodableProperties(Class& cls)
{
    warnAboutOldMethods(cls);
    const auto table = make<NSMutableDictionary>();
    if (cls.send<"conformsToProtocol:", bool>(uniqueObjectsProtocol()))
        table->setObject_forKey(NSUUID::cls().object, "UUID"_ns);
    const Ref<NSArray> uncodable = uncodableProperties(cls);
    const Ref<NSArray> identities = UUIDProperties(cls);
    unsigned count = 0;
    objc_property_t* const list = class_copyPropertyList(&cls, &count);
    for (unsigned i = 0; i < count; ++i) {
        const auto name = NSString::cls().stringWithUTF8String(property_getName(list[i]));
        if (maybe(uncodable)->containsObject(name.get())
            || maybe(identities)->containsObject(name.get()))
            continue;
        Class* const value = valueClass(Attribute(list[i], "T").text());
        if (value && isStored(list[i]))
            table->setObject_forKey(value, name.get());
    }
    releaseBuffer(list);
    return cast<NSDictionary>(table->copy());
}

}
