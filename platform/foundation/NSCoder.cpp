// SPDX-License-Identifier: Apache-2.0
#include "NSCoder.h"

#include "Exceptions.h"
#include "GeometryTextPrivate.h"
#include "NSArray.h"
#include "NSData.h"
#include "NSDate.h"
#include "NSDictionary.h"
#include "NSError.h"
#include "NSNumber.h"
#include "NSSet.h"
#include "NSString.h"
#include "runtime/Runtime.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct NSCoder::Methods<struct Encoding> {

    static void encodeObject(NSCoder& self, NSObject*, NSString*)
    {
        raiseAbstract(self, "encodeObject:forKey:");
    }
    static void encodeUnkeyed(NSCoder& self, NSObject*) { raiseAbstract(self, "encodeObject:"); }
    [[noreturn]] static void raiseAbstract(NSCoder& self, const char* selector)
    {
        raise("NSInvalidArgumentException",
            std::string("*** -") + selector + " only defined for abstract class.  Define -["
                + class_getName(self.classObject()) + " " + selector + "]!");
    }
    static bool allowsKeyedCoding(NSCoder&) { return true; }

    static void encodeConditional(NSCoder& self, NSObject* object, NSString* key)
    {
        self.encodeObject_forKey(object, key);
    }
    template <class T> static void encodeNumber(NSCoder& self, T value, NSString* key)
    {
        const auto& numbers = NSNumber::cls();
        Ref<NSNumber> number;
        if constexpr (std::is_same_v<T, bool>)
            number = numbers.numberWithBool(value);
        else if constexpr (std::is_same_v<T, float>)
            number = numbers.numberWithFloat(value);
        else if constexpr (std::is_same_v<T, double>)
            number = numbers.numberWithDouble(value);
        else
            number = numbers.numberWithLongLong(value);
        self.encodeObject_forKey(number.get(), key);
    }
    static void encodeBytes(
        NSCoder& self, const std::uint8_t* bytes, NSUInteger length, NSString* key)
    {
        self.encodeObject_forKey(NSData::cls().dataWithBytes_length(bytes, length).get(), key);
    }
    static void encodePoint(NSCoder& self, NSPoint point, NSString* key)
    {
        self.encodeObject_forKey(geometry::exactText(point).get(), key);
    }
    static void encodeSize(NSCoder& self, NSSize size, NSString* key)
    {
        self.encodeObject_forKey(geometry::exactText(size).get(), key);
    }
    static void encodeRect(NSCoder& self, NSRect rect, NSString* key)
    {
        self.encodeObject_forKey(geometry::exactText(rect).get(), key);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "allowsKeyedCoding", imp<allowsKeyedCoding> },
            { "encodeObject:forKey:", imp<encodeObject> },
            { "encodeConditionalObject:forKey:", imp<encodeConditional> },
            { "encodeObject:", imp<encodeUnkeyed> },
            { "encodeBool:forKey:", imp<encodeNumber<bool>> },
            { "encodeInt:forKey:", imp<encodeNumber<int>> },
            { "encodeInt32:forKey:", imp<encodeNumber<std::int32_t>> },
            { "encodeInt64:forKey:", imp<encodeNumber<std::int64_t>> },
            { "encodeInteger:forKey:", imp<encodeNumber<NSInteger>> },
            { "encodeFloat:forKey:", imp<encodeNumber<float>> },
            { "encodeDouble:forKey:", imp<encodeNumber<double>> },
            { "encodeBytes:length:forKey:", imp<encodeBytes> },
            { "encodePoint:forKey:", imp<encodePoint> },
            { "encodeSize:forKey:", imp<encodeSize> },
            { "encodeRect:forKey:", imp<encodeRect> },
        });
    }
};
BRINDLE_RECORD(NSCoder, Encoding)

template <> struct NSCoder::Methods<struct Decoding> {

    static Ref<NSObject> decodeObject(NSCoder& self, NSString*)
    {
        raiseAbstract(self, "decodeObjectForKey:");
    }
    static Ref<NSObject> decodeUnkeyed(NSCoder& self) { raiseAbstract(self, "decodeObject"); }
    static bool containsValue(NSCoder& self, NSString*)
    {
        raiseAbstract(self, "containsValueForKey:");
    }
    [[noreturn]] static void raiseAbstract(NSCoder& self, const char* selector)
    {
        Methods<Encoding>::raiseAbstract(self, selector);
    }
    static bool requiresSecureCoding(NSCoder&) { return false; }
    static Ref<NSSet> allowedClasses(NSCoder&) { return nullptr; }
    static Class* classOfValue(NSCoder&, NSString*) { return nullptr; }

    static Ref<NSObject> decodeOfClass(NSCoder& self, Class* cls, NSString* key)
    {
        if (!self.requiresSecureCoding())
            return self.decodeObjectForKey(key);
        return self.decodeObjectOfClasses_forKey(NSSet::cls().setWithObject(cls).get(), key);
    }
    static Ref<NSObject> decodeOfClasses(NSCoder& self, NSSet*, NSString* key)
    {
        return self.decodeObjectForKey(key);
    }
    static Ref<NSObject> decodePropertyList(NSCoder& self, NSString* key)
    {
        const Ref<NSSet> classes = makeSet({ NSString::cls(), NSNumber::cls(), NSDate::cls(),
            NSData::cls(), NSArray::cls(), NSDictionary::cls() });
        return self.decodeObjectOfClasses_forKey(classes.get(), key);
    }

    template <class T> static Ref<T> valueOf(NSCoder& self, NSString* key)
    {
        return brindle::decode<T>(&self, key);
    }
    template <class T> static T decodeNumber(NSCoder& self, NSString* key)
    {
        const Ref<NSNumber> number = valueOf<NSNumber>(self, key);
        if (!number)
            return T();
        if constexpr (std::is_same_v<T, bool>)
            return number->boolValue();
        else if constexpr (std::is_same_v<T, float>)
            return number->floatValue();
        else if constexpr (std::is_same_v<T, double>)
            return number->doubleValue();
        else if constexpr (sizeof(T) == 4)
            return number->intValue();
        else
            return number->longLongValue();
    }
    static const std::uint8_t* decodeBytes(NSCoder& self, NSString* key, NSUInteger* length)
    {
        const Ref<NSData> data = valueOf<NSData>(self, key);
        const std::span<const unsigned char> bytes = bytesOf(data.get());
        if (length)
            *length = bytes.size();
        if (data)
            self.lent_.emplace_back(data);
        return bytes.data();
    }
    static NSPoint decodePoint(NSCoder& self, NSString* key)
    {
        return NSPointFromString(valueOf<NSString>(self, key).get());
    }
    static NSSize decodeSize(NSCoder& self, NSString* key)
    {
        return NSSizeFromString(valueOf<NSString>(self, key).get());
    }
    static NSRect decodeRect(NSCoder& self, NSString* key)
    {
        return NSRectFromString(valueOf<NSString>(self, key).get());
    }

    static void table(Builder& t)
    {
        t.methods({
            { "requiresSecureCoding", imp<requiresSecureCoding> },
            { "allowedClasses", imp<allowedClasses> },
            { "containsValueForKey:", imp<containsValue> },
            { "classOfValueForKey:", imp<classOfValue> },
            { "decodeObjectForKey:", imp<decodeObject> },
            { "decodeObject", imp<decodeUnkeyed> },
            { "decodeObjectOfClass:forKey:", imp<decodeOfClass> },
            { "decodeObjectOfClasses:forKey:", imp<decodeOfClasses> },
            { "decodePropertyListForKey:", imp<decodePropertyList> },
            { "decodeBoolForKey:", imp<decodeNumber<bool>> },
            { "decodeIntForKey:", imp<decodeNumber<int>> },
            { "decodeInt32ForKey:", imp<decodeNumber<std::int32_t>> },
            { "decodeInt64ForKey:", imp<decodeNumber<std::int64_t>> },
            { "decodeIntegerForKey:", imp<decodeNumber<NSInteger>> },
            { "decodeFloatForKey:", imp<decodeNumber<float>> },
            { "decodeDoubleForKey:", imp<decodeNumber<double>> },
            { "decodeBytesForKey:returnedLength:", imp<decodeBytes> },
            { "decodePointForKey:", imp<decodePoint> },
            { "decodeSizeForKey:", imp<decodeSize> },
            { "decodeRectForKey:", imp<decodeRect> },
        });
    }
};
BRINDLE_RECORD(NSCoder, Decoding)

template <> struct NSCoder::Methods<struct Failing> {

    static NSDecodingFailurePolicy policy(NSCoder&)
    {
        return NSDecodingFailurePolicyRaiseException;
    }
    static Ref<NSError> error(NSCoder& self) { return self.error_; }
    static void failWithError(NSCoder& self, NSError* error)
    {
        if (self.decodingFailurePolicy() == NSDecodingFailurePolicyRaiseException)
            raise("NSInvalidUnarchiveOperationException", textOf(error));
        if (!self.error_)
            self.error_ = error;
    }
    static std::string textOf(NSError* error)
    {
        const Ref<NSObject> reason
            = maybe(maybe(error)->userInfo())->objectForKey(NSDebugDescriptionErrorKey);
        return utf8Of(reason ? reason->description() : maybe(error)->localizedDescription());
    }

    /// Runs a decode whose failure, raised or kept, ends up in `error`.
    template <class Decode>
    static Ref<NSObject> guarded(NSCoder& self, NSString* key, Ref<NSError>* error, Decode decode)
    {
        try {
            if (!self.containsValueForKey(key)) {
                reportError(error, NSCoderValueNotFoundError,
                    { { NSDebugDescriptionErrorKey, "No value was archived under the key."_ns } });
                return nullptr;
            }
            Ref<NSObject> value = decode();
            const Ref<NSError> kept = self.error();
            if (!kept)
                return value;
            if (error)
                *error = kept;
        } catch (const Exception& raised) {
            reportError(error, NSCoderReadCorruptError,
                { { NSDebugDescriptionErrorKey, raised->reason().get() } });
        }
        return nullptr;
    }
    static Ref<NSObject> topLevel(NSCoder& self, NSString* key, Ref<NSError>* error)
    {
        return guarded(self, key, error, [&] { return self.decodeObjectForKey(key); });
    }
    static Ref<NSObject> topLevelOfClass(
        NSCoder& self, Class* cls, NSString* key, Ref<NSError>* error)
    {
        return guarded(self, key, error, [&] { return self.decodeObjectOfClass_forKey(cls, key); });
    }
    static Ref<NSObject> topLevelOfClasses(
        NSCoder& self, NSSet* classes, NSString* key, Ref<NSError>* error)
    {
        return guarded(
            self, key, error, [&] { return self.decodeObjectOfClasses_forKey(classes, key); });
    }

    static void table(Builder& t)
    {
        t.methods({
            { "decodingFailurePolicy", imp<policy> },
            { "error", imp<error> },
            { "failWithError:", imp<failWithError> },
            { "decodeTopLevelObjectForKey:error:", imp<topLevel> },
            { "decodeTopLevelObjectOfClass:forKey:error:", imp<topLevelOfClass> },
            { "decodeTopLevelObjectOfClasses:forKey:error:", imp<topLevelOfClasses> },
        });
    }
};
BRINDLE_RECORD(NSCoder, Failing)

namespace {

    /// What objects and classes that know nothing of coding answer.
    struct Archived {
        static Class* classForCoder(NSObject& self) { return self.classObject(); }
        static Class* classForKeyedArchiver(NSObject& self) { return brindle::classForCoder(self); }
        static Ref<NSObject> replacementForCoder(NSObject& self, NSCoder*) { return &self; }
        static Ref<NSObject> replacementForKeyedArchiver(NSObject& self, NSCoder* archiver)
        {
            return self.send<"replacementObjectForCoder:", Ref<NSObject>>(archiver);
        }
        static Ref<NSObject> awakeAfterUsingCoder(NSObject& self, NSCoder*) { return &self; }
        static Class* classForKeyedUnarchiver(Class& self) { return &self; }
        static Ref<NSArray> classFallbacks(Class&) { return nullptr; }

        static void table(Builder& t)
        {
            t.methods({
                { "classForCoder", imp<classForCoder> },
                { "classForKeyedArchiver", imp<classForKeyedArchiver> },
                { "replacementObjectForCoder:", imp<replacementForCoder> },
                { "replacementObjectForKeyedArchiver:", imp<replacementForKeyedArchiver> },
                { "awakeAfterUsingCoder:", imp<awakeAfterUsingCoder> },
            });
            t.classMethods({
                { "classForKeyedUnarchiver", imp<classForKeyedUnarchiver> },
                { "classFallbacksForKeyedArchiver", imp<classFallbacks> },
            });
        }
    };
}
BRINDLE_EXTENSION(NSObject, Archived)

}
