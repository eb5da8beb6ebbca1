// SPDX-License-Identifier: Apache-2.0
#include "NSObject+KeyValueCoding.h"

#include "NSArray.h"
#include "NSMutableDictionary.h"
#include "NSNull.h"
#include "NSSet.h"
#include "foundation/keyvalues/KeyValuePrivate.h"
#include "runtime/Table.h"

namespace brindle {

using namespace keyvalue;

namespace {

    [[noreturn]] void raiseUndefined(const NSObject& self, const char* operation, NSString* key)
    {
        raise("NSUnknownKeyException",
            placeOf(self) + operation
                + "]: this class is not key value coding-compliant for the key "
                + (key ? utf8Of(key) : "(null)") + ".");
    }

    /// Answers whether an object walks a path as the root does. Arrays and sets do, except where an operator stands.
    bool walksLikeTheRoot(const NSObject* object, const NSString* path, NSUInteger from)
    {
        constexpr SEL sel = selector<"valueForKeyPath:">;
        const IMP own = object->methodForSelector(sel);
        const auto walksAs
            = [&](Class* cls) { return own == class_getMethodImplementation(cls, sel); };
        if (walksAs(classOf<NSObject>()))
            return true;
        const bool isOperator = from < path->length() && path->characterAtIndex(from) == u'@';
        return !isOperator && (walksAs(classOf<NSArray>()) || walksAs(classOf<NSSet>()));
    }

    struct KeyValueCoding {

        static bool accessInstanceVariablesDirectly(Class&) { return true; }

        // ---- one key

        static Ref<NSObject> valueForKey(NSObject& self, NSString* key)
        {
            if (const Accessor* const from = find(&self, key, Direction::read))
                return read(self, *from);
            return brindle::valueForUndefinedKey(self, key);
        }
        static void setValueForKey(NSObject& self, NSObject* value, NSString* key)
        {
            const Accessor* const to = find(&self, key, Direction::write);
            if (!to)
                brindle::setValue_forUndefinedKey(self, value, key);
            else if (!value && !takesNil(*to))
                brindle::setNilValueForKey(self, key);
            else
                write(self, *to, value, key);
        }
        static Ref<NSObject> valueForUndefinedKey(NSObject& self, NSString* key)
        {
            raiseUndefined(self, "valueForUndefinedKey:", key);
        }
        static void setValueForUndefinedKey(NSObject& self, NSObject*, NSString* key)
        {
            raiseUndefined(self, "setValue:forUndefinedKey:", key);
        }
        static void setNilValueForKey(NSObject& self, NSString* key)
        {
            raise("NSInvalidArgumentException",
                placeOf(self) + "setNilValueForKey]: could not set nil as the value for the key "
                    + utf8Of(key) + ".");
        }
        static bool validateValue(
            NSObject& self, Ref<NSObject>* value, NSString* key, Ref<NSError>* error)
        {
            const NSUInteger length = maybe(key)->length();
            if (length == 0)
                return true;
            const std::string name = "validate"
                + utf8Of(key->substringToIndex(1)->uppercaseString().get())
                + utf8Of(key->substringFromIndex(1).get()) + ":error:";
            const Method* const method = class_getInstanceMethod(self.isa_, selectorOf(name));
            constexpr auto types = messageEncoding<bool, Ref<NSObject>*, Ref<NSError>*>;
            if (!method || method_getTypeEncoding(method) != types.view())
                return true;
            using Function = bool (*)(NSObject*, SEL, Ref<NSObject>*, Ref<NSError>*);
            return reinterpret_cast<Function>(method_getImplementation(method))(
                &self, method_getName(method), value, error);
        }

        // ---- paths

        /// Walks on without a call for each step, as far as objects walk the way the root does.
        static Ref<NSObject> valueForKeyPath(NSObject& self, NSString* path)
        {
            const NSUInteger length = maybe(path)->length();
            Ref<NSObject> at(&self);
            for (NSUInteger from = 0; at;) {
                if (from > 0 && !walksLikeTheRoot(at.get(), path, from))
                    return brindle::valueForKeyPath(at, path->substringFromIndex(from).get());
                const NSRange point = maybe(path)->rangeOfString_options_range(
                    "."_ns, NSLiteralSearch, { from, length - from });
                if (from == 0 && point.length == 0)
                    return brindle::valueForKey(at, path);
                const NSUInteger end = point.length ? point.location : length;
                at = brindle::valueForKey(at, path->substringWithRange({ from, end - from }).get());
                if (point.length == 0)
                    return at;
                from = end + 1;
            }
            return nullptr;
        }
        static void setValueForKeyPath(NSObject& self, NSObject* value, NSString* path)
        {
            const NSRange point = maybe(path)->rangeOfString_options("."_ns, NSBackwardsSearch);
            if (point.length == 0)
                return brindle::setValue_forKey(self, value, path);
            brindle::setValue_forKey(
                brindle::valueForKeyPath(self, path->substringToIndex(point.location).get()), value,
                path->substringFromIndex(point.location + 1).get());
        }

        // ---- several keys

        static Ref<NSDictionary> dictionaryWithValuesForKeys(NSObject& self, NSArray* keys)
        {
            const auto values = make<NSMutableDictionary>();
            for (NSString* key : each<NSString>(Ref<NSArray>(keys))) {
                const Ref<NSObject> value = brindle::valueForKey(self, key);
                values->setObject_forKey(value ? value.get() : NSNull::cls().null().get(), key);
            }
            return NSDictionary::cls().dictionaryWithDictionary(values.get());
        }
        static void setValuesForKeys(NSObject& self, NSDictionary* values)
        {
            const Ref<NSDictionary> alive(values);
            for (NSString* key : each<NSString>(maybe(values)->allKeys())) {
                const Ref<NSObject> value = values->objectForKey(key);
                const bool isNull = value && value->isKindOfClass(NSNull::cls());
                brindle::setValue_forKey(self, isNull ? nullptr : value.get(), key);
            }
        }

        static void table(Builder& t)
        {
            t.classMethods(
                { { "accessInstanceVariablesDirectly", imp<accessInstanceVariablesDirectly> } });
            t.methods({
                { "valueForKey:", imp<valueForKey> },
                { "setValue:forKey:", imp<setValueForKey> },
                { "valueForUndefinedKey:", imp<valueForUndefinedKey> },
                { "setValue:forUndefinedKey:", imp<setValueForUndefinedKey> },
                { "setNilValueForKey:", imp<setNilValueForKey> },
                { "validateValue:forKey:error:", imp<validateValue> },
                { "valueForKeyPath:", imp<valueForKeyPath> },
                { "setValue:forKeyPath:", imp<setValueForKeyPath> },
                { "dictionaryWithValuesForKeys:", imp<dictionaryWithValuesForKeys> },
                { "setValuesForKeysWithDictionary:", imp<setValuesForKeys> },
            });
        }
    };

}
BRINDLE_EXTENSION(NSObject, KeyValueCoding)

}
