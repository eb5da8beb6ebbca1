// SPDX-License-Identifier: Apache-2.0
#include "KeyValueHosts.h"

#include "foundation/NSError.h"
#include "foundation/NSNumber.h"
#include "support/Strings.h"

namespace brindle {

template <> struct KeyHost::Methods<struct Keys> {

    static NSInteger getFirst(KeyHost&) { return 1; }
    static NSInteger first(KeyHost&) { return 2; }
    static NSInteger second(KeyHost&) { return 2; }
    static bool isSecond(KeyHost&) { return true; }
    static bool isThird(KeyHost&) { return true; }
    static NSInteger underscored(KeyHost&) { return 4; }
    static void nothing(KeyHost&) { }
    static Ref<NSString> UUID(KeyHost&) { return "identity"_ns; }
    static void setUUID(KeyHost& self, NSString* text) { self.log_ += "setUUID " + utf8Of(text); }
    static void setSecretly(KeyHost& self, NSInteger value)
    {
        self.log_ += "_setSecret " + std::to_string(value);
    }
    static void setIsThird(KeyHost& self, bool value)
    {
        self.log_ += value ? "setIsThird" : "setIsThird NO";
    }
    static bool validateNumber(KeyHost&, Ref<NSObject>* value, Ref<NSError>* error)
    {
        if (cast<NSNumber>(*value)->intValue() < 0) {
            if (error)
                *error = NSError::cls().errorWithDomain_code_userInfo("Numbers"_ns, 3, nullptr);
            return false;
        }
        *value = NSNumber::cls().numberWithInt(1);
        return true;
    }

    static void table(Builder& t)
    {
        t.properties({
            property<&KeyHost::flag_>("flag", nonatomic),
            property<&KeyHost::letter_>("letter", nonatomic),
            property<&KeyHost::byte_>("byte", nonatomic),
            property<&KeyHost::small_>("small", nonatomic),
            property<&KeyHost::smallNatural_>("smallNatural", nonatomic),
            property<&KeyHost::number_>("number", nonatomic),
            property<&KeyHost::natural_>("natural", nonatomic),
            property<&KeyHost::large_>("large", nonatomic),
            property<&KeyHost::largeNatural_>("largeNatural", nonatomic),
            property<&KeyHost::single_>("single", nonatomic),
            property<&KeyHost::real_>("real"),
            property<&KeyHost::point_>("point", nonatomic),
            property<&KeyHost::size_>("size", nonatomic),
            property<&KeyHost::rect_>("rect"),
            property<&KeyHost::range_>("range", nonatomic),
            property<&KeyHost::tint_>("tint", nonatomic),
            property<&KeyHost::kind_>("kind", nonatomic),
            property<&KeyHost::letters_>("letters", nonatomic, readonly),
            property<&KeyHost::name_>("name", copied, nonatomic),
            property<&KeyHost::friend_>("friend", nonatomic),
            property<&KeyHost::code_>("code", copied, nonatomic),
            property<&KeyHost::kept_>("kept", readonly, nonatomic),
        });
        t.ivars({
            ivar<&KeyHost::hidden_>("_hidden"),
            ivar<&KeyHost::isOpen_>("_isOpen"),
            ivar<&KeyHost::bare_>("bare"),
            ivar<&KeyHost::isWide_>("isWide"),
        });
        t.methods({
            { "getFirst", imp<getFirst> },
            { "first", imp<first> },
            { "second", imp<second> },
            { "isSecond", imp<isSecond> },
            { "isThird", imp<isThird> },
            { "_fourth", imp<underscored> },
            { "nothing", imp<nothing> },
            { "UUID", imp<UUID> },
            { "setUUID:", imp<setUUID> },
            { "_setSecret:", imp<setSecretly> },
            { "setIsThird:", imp<setIsThird> },
            { "validateNumber:error:", imp<validateNumber> },
        });
    }
};
BRINDLE_RECORD(KeyHost, Keys)

template <> struct OwnKeyHost::Methods<struct Keys> {
    static Ref<NSObject> valueForKey(OwnKeyHost& self, NSString* key)
    {
        if (key->isEqualToString("real"_ns))
            return NSNumber::cls().numberWithInt(11);
        return super<OwnKeyHost, "valueForKey:", Ref<NSObject>>(self, key);
    }
    static Ref<NSObject> undefined(OwnKeyHost&, NSString*) { return "undefined"_ns; }
    static void setUndefined(OwnKeyHost& self, NSObject*, NSString* key)
    {
        self.log_ += "undefined " + utf8Of(key);
    }
    static void setNil(OwnKeyHost& self, NSString* key) { self.log_ += "nil " + utf8Of(key); }
    static void table(Builder& t)
    {
        t.methods({
            { "valueForKey:", imp<valueForKey> },
            { "valueForUndefinedKey:", imp<undefined> },
            { "setValue:forUndefinedKey:", imp<setUndefined> },
            { "setNilValueForKey:", imp<setNil> },
        });
    }
};
BRINDLE_RECORD(OwnKeyHost, Keys)

template <> struct ShyHost::Methods<struct Keys> {
    static bool direct(Class&) { return false; }
    static void table(Builder& t)
    {
        t.classMethods({ { "accessInstanceVariablesDirectly", imp<direct> } });
    }
};
BRINDLE_RECORD(ShyHost, Keys)

}
