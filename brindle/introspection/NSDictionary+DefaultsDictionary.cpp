// SPDX-License-Identifier: Apache-2.0
#include "NSDictionary+DefaultsDictionary.h"

#include "foundation/NSArray.h"
#include "foundation/NSNumber.h"
#include "foundation/NSString.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    struct DefaultsDictionary {
        static NSInteger integerForKey(NSDictionary& self, NSString* key)
        {
            return maybe(self.objectForKey(key))->send<"integerValue", NSInteger>();
        }
        static float floatForKey(NSDictionary& self, NSString* key)
        {
            return maybe(self.objectForKey(key))->send<"floatValue", float>();
        }
        static bool boolForKey(NSDictionary& self, NSString* key)
        {
            return maybe(self.objectForKey(key))->send<"boolValue", bool>();
        }
        static Ref<NSString> stringForKey(NSDictionary& self, NSString* key)
        {
            return cast<NSString>(self.objectForKey(key));
        }
        static Ref<NSArray> arrayForKey(NSDictionary& self, NSString* key)
        {
            return cast<NSArray>(self.objectForKey(key));
        }
        static void table(Builder& t)
        {
            t.methods({
                { "integerForKey:", imp<integerForKey> },
                { "floatForKey:", imp<floatForKey> },
                { "boolForKey:", imp<boolForKey> },
                { "stringForKey:", imp<stringForKey> },
                { "arrayForKey:", imp<arrayForKey> },
            });
        }
    };

    struct MutableDefaultsDictionary {
        static void setInteger(NSMutableDictionary& self, NSInteger value, NSString* key)
        {
            self.setObject_forKey(NSNumber::cls().numberWithInteger(value).get(), key);
        }
        static void setFloat(NSMutableDictionary& self, float value, NSString* key)
        {
            self.setObject_forKey(NSNumber::cls().numberWithFloat(value).get(), key);
        }
        static void setBool(NSMutableDictionary& self, bool value, NSString* key)
        {
            self.setObject_forKey(NSNumber::cls().numberWithBool(value).get(), key);
        }
        static void table(Builder& t)
        {
            t.methods({
                { "setInteger:forKey:", imp<setInteger> },
                { "setFloat:forKey:", imp<setFloat> },
                { "setBool:forKey:", imp<setBool> },
            });
        }
    };

}
BRINDLE_EXTENSION(NSDictionary, DefaultsDictionary)
BRINDLE_EXTENSION(NSMutableDictionary, MutableDefaultsDictionary)

}
