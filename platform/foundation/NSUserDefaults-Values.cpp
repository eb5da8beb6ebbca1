// SPDX-License-Identifier: Apache-2.0
// Values of one kind.

#include "NSUserDefaults.h"

#include "NSArray.h"
#include "NSData.h"
#include "NSNumber.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct NSUserDefaults::Methods<struct Values> {

    template <class T> static Ref<T> valueOfKind(NSUserDefaults& self, NSString* key)
    {
        Ref<NSObject> value = self.objectForKey(key);
        return value && value->isKindOfClass(T::cls()) ? cast<T>(value) : nullptr;
    }
    /// Answers a number or string, which both answer numbers under the same selectors; else nil.
    static Ref<NSObject> numeric(NSUserDefaults& self, NSString* key)
    {
        Ref<NSObject> value = self.objectForKey(key);
        const bool isNumeric = value
            && (value->isKindOfClass(NSNumber::cls()) || value->isKindOfClass(NSString::cls()));
        return isNumeric ? value : nullptr;
    }

    static Ref<NSString> stringForKey(NSUserDefaults& self, NSString* key)
    {
        Ref<NSObject> value = numeric(self, key);
        if (value && value->isKindOfClass(NSNumber::cls()))
            return cast<NSNumber>(value.get())->stringValue();
        return cast<NSString>(value);
    }
    static NSInteger integerForKey(NSUserDefaults& self, NSString* key)
    {
        return maybe(numeric(self, key))->send<"integerValue", NSInteger>();
    }
    static float floatForKey(NSUserDefaults& self, NSString* key)
    {
        return maybe(numeric(self, key))->send<"floatValue", float>();
    }
    static double doubleForKey(NSUserDefaults& self, NSString* key)
    {
        return maybe(numeric(self, key))->send<"doubleValue", double>();
    }
    static bool boolForKey(NSUserDefaults& self, NSString* key)
    {
        return maybe(numeric(self, key))->send<"boolValue", bool>();
    }
    static Ref<NSData> dataForKey(NSUserDefaults& self, NSString* key)
    {
        return valueOfKind<NSData>(self, key);
    }
    static Ref<NSArray> arrayForKey(NSUserDefaults& self, NSString* key)
    {
        return valueOfKind<NSArray>(self, key);
    }
    static Ref<NSArray> stringArrayForKey(NSUserDefaults& self, NSString* key)
    {
        Ref<NSArray> array = valueOfKind<NSArray>(self, key);
        for (const NSObject* item : each(array)) {
            if (!item->isKindOfClass(NSString::cls()))
                return nullptr;
        }
        return array;
    }
    static Ref<NSDictionary> dictionaryForKey(NSUserDefaults& self, NSString* key)
    {
        return valueOfKind<NSDictionary>(self, key);
    }

    static void setInteger(NSUserDefaults& self, NSInteger value, NSString* key)
    {
        self.setObject_forKey(NSNumber::cls().numberWithInteger(value).get(), key);
    }
    static void setFloat(NSUserDefaults& self, float value, NSString* key)
    {
        self.setObject_forKey(NSNumber::cls().numberWithFloat(value).get(), key);
    }
    static void setDouble(NSUserDefaults& self, double value, NSString* key)
    {
        self.setObject_forKey(NSNumber::cls().numberWithDouble(value).get(), key);
    }
    static void setBool(NSUserDefaults& self, bool value, NSString* key)
    {
        self.setObject_forKey(NSNumber::cls().numberWithBool(value).get(), key);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "stringForKey:", imp<stringForKey> },
            { "integerForKey:", imp<integerForKey> },
            { "floatForKey:", imp<floatForKey> },
            { "doubleForKey:", imp<doubleForKey> },
            { "boolForKey:", imp<boolForKey> },
            { "dataForKey:", imp<dataForKey> },
            { "arrayForKey:", imp<arrayForKey> },
            { "stringArrayForKey:", imp<stringArrayForKey> },
            { "dictionaryForKey:", imp<dictionaryForKey> },
            { "setInteger:forKey:", imp<setInteger> },
            { "setFloat:forKey:", imp<setFloat> },
            { "setDouble:forKey:", imp<setDouble> },
            { "setBool:forKey:", imp<setBool> },
        });
    }
};
BRINDLE_RECORD(NSUserDefaults, Values)

}
