// SPDX-License-Identifier: Apache-2.0
#include "CodingHosts.h"

namespace brindle {

template <> struct CodingHost::Methods<struct Declared> {
    static void table(Builder& t)
    {
        t.properties({
            property<&CodingHost::flag_>("flag", nonatomic),
            property<&CodingHost::letter_>("letter", nonatomic),
            property<&CodingHost::byte_>("byte", nonatomic),
            property<&CodingHost::small_>("small", nonatomic),
            property<&CodingHost::smallNatural_>("smallNatural", nonatomic),
            property<&CodingHost::number_>("number", nonatomic),
            property<&CodingHost::natural_>("natural", nonatomic),
            property<&CodingHost::large_>("large", nonatomic),
            property<&CodingHost::single_>("single", nonatomic),
            property<&CodingHost::real_>("real", nonatomic),
            property<&CodingHost::point_>("point", nonatomic),
            property<&CodingHost::size_>("size", nonatomic),
            property<&CodingHost::rect_>("rect", nonatomic),
            property<&CodingHost::range_>("range", nonatomic),
            property<&CodingHost::text_>("text", copied, nonatomic),
            property<&CodingHost::count_>("count", nonatomic),
            property<&CodingHost::date_>("date", nonatomic),
            property<&CodingHost::data_>("data", nonatomic),
            property<&CodingHost::list_>("list", nonatomic),
            property<&CodingHost::table_>("table", nonatomic),
            property<&CodingHost::inner_>("inner", nonatomic),
        });
    }
};
BRINDLE_RECORD(CodingHost, Declared)

template <> struct PartlyCodingHost::Methods<struct Declared> {
    static Ref<NSArray> uncodable(Class&) { return makeArray({ "left"_ns }); }
    static double sum(PartlyCodingHost&) { return 1; }
    static void table(Builder& t)
    {
        t.properties({
            property<&PartlyCodingHost::natural_>("natural", nonatomic),
            property<&PartlyCodingHost::anything_>("anything", nonatomic),
            property<&PartlyCodingHost::code_>("code", copied, nonatomic),
            property<&PartlyCodingHost::kind_>("kind", nonatomic),
            property<&PartlyCodingHost::letters_>("letters", nonatomic),
            property<&PartlyCodingHost::kept_>("kept", readonly, nonatomic),
            property<&PartlyCodingHost::elsewhere_>(
                "elsewhere", readonly, nonatomic, ivarName("_hiddenElsewhere")),
            property<&PartlyCodingHost::renamed_>("renamed", nonatomic, ivarName("_otherName")),
            property<&PartlyCodingHost::copying_>(
                "copying", nonatomic, typed("@\"NSObject<NSCopying>\"")),
            property<&PartlyCodingHost::unknown_>(
                "unknown", nonatomic, typed("@\"NobodyDeclaredThisClass\"")),
            property<&PartlyCodingHost::left_>("left", nonatomic),
            computed<double>("sum", readonly, nonatomic),
        });
        t.methods({ { "sum", imp<sum> } });
        t.classMethods({ { "uncodableProperties", imp<uncodable> } });
    }
};
BRINDLE_RECORD(PartlyCodingHost, Declared)

template <> struct NamesakeCodingHost::Methods<struct Declared> {
    static void table(Builder& t)
    {
        t.properties({
            property<&NamesakeCodingHost::own_>("own", nonatomic),
            property<&NamesakeCodingHost::otherText_>("text", nonatomic),
        });
    }
};
BRINDLE_RECORD(NamesakeCodingHost, Declared)

template <> struct TrustingCodingHost::Methods<struct Declared> {
    static bool secure(Class&) { return false; }
    static void table(Builder& t) { t.classMethods({ { "supportsSecureCoding", imp<secure> } }); }
};
BRINDLE_RECORD(TrustingCodingHost, Declared)

template <> struct OwnCodingHost::Methods<struct Declared> {
    static Ref<NSDictionary> codable(OwnCodingHost&)
    {
        return NSDictionary::cls().dictionaryWithObject_forKey(NSString::cls().object, "only"_ns);
    }
    static Ref<NSObject> valueForKey(OwnCodingHost&, NSString* key)
    {
        return key->stringByAppendingString("!"_ns);
    }
    static void setValue(OwnCodingHost& self, NSObject* value, NSString* key)
    {
        self.log_ += utf8Of(key) + "=" + utf8Of(static_cast<NSString*>(value));
    }
    static void table(Builder& t)
    {
        t.methods({
            { "codableProperties", imp<codable> },
            { "valueForKey:", imp<valueForKey> },
            { "setValue:forKey:", imp<setValue> },
        });
    }
};
BRINDLE_RECORD(OwnCodingHost, Declared)

template <> struct DictionaryCoder::Methods<struct Coding> {
    static void encode(DictionaryCoder& self, NSObject* value, NSString* key)
    {
        self.values_->setObject_forKey(value, key);
    }
    static Ref<NSObject> decode(DictionaryCoder& self, NSString* key)
    {
        self.log_ += utf8Of(key) + " ";
        return self.values_->objectForKey(key);
    }
    static bool contains(DictionaryCoder& self, NSString* key)
    {
        return static_cast<bool>(self.values_->objectForKey(key));
    }
    static void table(Builder& t)
    {
        t.methods({
            { "encodeObject:forKey:", imp<encode> },
            { "decodeObjectForKey:", imp<decode> },
            { "containsValueForKey:", imp<contains> },
        });
    }
};
BRINDLE_RECORD(DictionaryCoder, Coding)

template <> struct ForeseeingCoder::Methods<struct Coding> {
    static Class* classOfValue(ForeseeingCoder& self, NSString* key)
    {
        const auto value = self.values_->objectForKey(key);
        return value ? value->classObject() : nullptr;
    }
    static void table(Builder& t) { t.methods({ { "classOfValueForKey:", imp<classOfValue> } }); }
};
BRINDLE_RECORD(ForeseeingCoder, Coding)

template <> struct PlainCoder::Methods<struct Coding> {
    static Ref<NSObject> decode(PlainCoder& self, NSString* key)
    {
        return self.values_->objectForKey(key);
    }
    static void table(Builder& t) { t.methods({ { "decodeObjectForKey:", imp<decode> } }); }
};
BRINDLE_RECORD(PlainCoder, Coding)

}
