// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "NSGeometry.h"
#include "runtime/NSObject.h"

namespace brindle {

class NSArray;
class NSError;
class NSSet;

/// What a coder does when decoding fails.
enum NSDecodingFailurePolicy : NSInteger {
    NSDecodingFailurePolicyRaiseException = 0,
    /// The first failure is kept in `error`; from then on every decode answers nil or zero.
    NSDecodingFailurePolicySetErrorAndReturn = 1,
};

/// Writes objects and values under keys, and reads them back; `NSKeyedArchiver` and `NSKeyedUnarchiver` are the ones to use.
///
/// An object takes part by two operations, and says so by the protocol `NSCoding`, or `NSSecureCoding` when it also
/// answers YES to the class operation `supportsSecureCoding`:
///
///     static void encodeWithCoder(Song& self, NSCoder* coder) { coder->encodeObject_forKey(self.title_.get(), "title"_ns); }
///     static Ref<NSObject> initWithCoder(Song& self, NSCoder* coder)
///     {
///         self.title_ = decode<NSString>(coder, "title"_ns);
///         return &self;
///     }
///     { "encodeWithCoder:", imp<encodeWithCoder> }, { "initWithCoder:", imp<initWithCoder> }
///
/// A coder of one's own overrides `encodeObject:forKey:`, `decodeObjectForKey:` and `containsValueForKey:`; all other
/// operations are made of these three: numbers travel as NSNumber, geometry as text such as "{1, 2}".
/// - Nil: a missing key decodes as nil, NO, zero or an empty structure.
/// - Raises: `NSInvalidArgumentException` where one of the three is missing: "*** -decodeObjectForKey: only defined for
///   abstract class.  Define -[MyCoder decodeObjectForKey:]!"
/// Thread: one at a time.
class NSCoder : public NSObject {
    BRINDLE_OBJECT(NSCoder, NSObject)

public:
    bool allowsKeyedCoding() const { return send<"allowsKeyedCoding", bool>(); }
    /// Answers whether a value's class is checked before anything of it is built.
    bool requiresSecureCoding() const { return send<"requiresSecureCoding", bool>(); }
    /// Answers the classes that the decode in progress allows; nil where nothing is checked.
    Ref<NSSet> allowedClasses() const { return send<"allowedClasses", Ref<NSSet>>(); }

    // ---- encoding: keys are not nil; a key that is used twice keeps its last value

    void encodeObject_forKey(NSObject* object, NSString* key)
    {
        send<"encodeObject:forKey:">(object, key);
    }
    /// Writes a reference only: it reads back as nil unless the object is also encoded unconditionally.
    void encodeConditionalObject_forKey(NSObject* object, NSString* key)
    {
        send<"encodeConditionalObject:forKey:">(object, key);
    }
    void encodeBool_forKey(bool value, NSString* key) { send<"encodeBool:forKey:">(value, key); }
    void encodeInt_forKey(int value, NSString* key) { send<"encodeInt:forKey:">(value, key); }
    void encodeInt32_forKey(std::int32_t value, NSString* key)
    {
        send<"encodeInt32:forKey:">(value, key);
    }
    void encodeInt64_forKey(std::int64_t value, NSString* key)
    {
        send<"encodeInt64:forKey:">(value, key);
    }
    void encodeInteger_forKey(NSInteger value, NSString* key)
    {
        send<"encodeInteger:forKey:">(value, key);
    }
    void encodeFloat_forKey(float value, NSString* key) { send<"encodeFloat:forKey:">(value, key); }
    void encodeDouble_forKey(double value, NSString* key)
    {
        send<"encodeDouble:forKey:">(value, key);
    }
    void encodeBytes_length_forKey(const void* bytes, NSUInteger length, NSString* key)
    {
        send<"encodeBytes:length:forKey:">(static_cast<const std::uint8_t*>(bytes), length, key);
    }
    void encodePoint_forKey(NSPoint point, NSString* key)
    {
        send<"encodePoint:forKey:">(point, key);
    }
    void encodeSize_forKey(NSSize size, NSString* key) { send<"encodeSize:forKey:">(size, key); }
    void encodeRect_forKey(NSRect rect, NSString* key) { send<"encodeRect:forKey:">(rect, key); }
    /// Writes the next value that has no key; such values are read back in the same order.
    void encodeObject(NSObject* object) { send<"encodeObject:">(object); }

    // ---- decoding

    bool containsValueForKey(NSString* key) const
    {
        return send<"containsValueForKey:", bool>(key);
    }
    Ref<NSObject> decodeObjectForKey(NSString* key)
    {
        return send<"decodeObjectForKey:", Ref<NSObject>>(key);
    }
    /// Answers the value; its class is checked only when the coder requires secure coding.
    Ref<NSObject> decodeObjectOfClass_forKey(Class* cls, NSString* key)
    {
        return send<"decodeObjectOfClass:forKey:", Ref<NSObject>>(cls, key);
    }
    /// - classes: a set of class objects; what the value itself holds may be of these classes too.
    Ref<NSObject> decodeObjectOfClasses_forKey(NSSet* classes, NSString* key)
    {
        return send<"decodeObjectOfClasses:forKey:", Ref<NSObject>>(classes, key);
    }
    /// Allows strings, numbers, dates, data, arrays and dictionaries.
    Ref<NSObject> decodePropertyListForKey(NSString* key)
    {
        return send<"decodePropertyListForKey:", Ref<NSObject>>(key);
    }
    bool decodeBoolForKey(NSString* key) { return send<"decodeBoolForKey:", bool>(key); }
    int decodeIntForKey(NSString* key) { return send<"decodeIntForKey:", int>(key); }
    std::int32_t decodeInt32ForKey(NSString* key)
    {
        return send<"decodeInt32ForKey:", std::int32_t>(key);
    }
    std::int64_t decodeInt64ForKey(NSString* key)
    {
        return send<"decodeInt64ForKey:", std::int64_t>(key);
    }
    NSInteger decodeIntegerForKey(NSString* key)
    {
        return send<"decodeIntegerForKey:", NSInteger>(key);
    }
    float decodeFloatForKey(NSString* key) { return send<"decodeFloatForKey:", float>(key); }
    double decodeDoubleForKey(NSString* key) { return send<"decodeDoubleForKey:", double>(key); }
    /// Lends the bytes as long as the coder lives; nil and a length of 0 when there are none.
    const std::uint8_t* decodeBytesForKey_returnedLength(NSString* key, NSUInteger* length)
    {
        return send<"decodeBytesForKey:returnedLength:", const std::uint8_t*>(key, length);
    }
    NSPoint decodePointForKey(NSString* key) { return send<"decodePointForKey:", NSPoint>(key); }
    NSSize decodeSizeForKey(NSString* key) { return send<"decodeSizeForKey:", NSSize>(key); }
    NSRect decodeRectForKey(NSString* key) { return send<"decodeRectForKey:", NSRect>(key); }
    Ref<NSObject> decodeObject() { return send<"decodeObject", Ref<NSObject>>(); }
    /// Decodes and hands a failure out as an error instead of raising it.
    Ref<NSObject> decodeTopLevelObjectForKey_error(NSString* key, Ref<NSError>* error)
    {
        return send<"decodeTopLevelObjectForKey:error:", Ref<NSObject>>(key, error);
    }
    Ref<NSObject> decodeTopLevelObjectOfClass_forKey_error(
        Class* cls, NSString* key, Ref<NSError>* error)
    {
        return send<"decodeTopLevelObjectOfClass:forKey:error:", Ref<NSObject>>(cls, key, error);
    }
    Ref<NSObject> decodeTopLevelObjectOfClasses_forKey_error(
        NSSet* classes, NSString* key, Ref<NSError>* error)
    {
        return send<"decodeTopLevelObjectOfClasses:forKey:error:", Ref<NSObject>>(
            classes, key, error);
    }
    /// Answers the class that the value under a key would have, without building anything of it.
    /// - Nil: for a missing key or nil, whenever the coder cannot be sure (substitutes may come), and where it requires secure
    ///   coding, because it refuses foreign classes by itself then. Always in this class.
    Class* classOfValueForKey(NSString* key) { return send<"classOfValueForKey:", Class*>(key); }

    // ---- failing

    NSDecodingFailurePolicy decodingFailurePolicy() const
    {
        return send<"decodingFailurePolicy", NSDecodingFailurePolicy>();
    }
    /// Answers what failed first under `NSDecodingFailurePolicySetErrorAndReturn`, or nil.
    Ref<NSError> error() const { return send<"error", Ref<NSError>>(); }
    /// Says from within `initWithCoder:` that what was read is not usable.
    /// - Raises: `NSInvalidUnarchiveOperationException` with the error's text where the policy is to raise.
    void failWithError(NSError* error) { send<"failWithError:">(error); }

private:
    friend struct CoderAccess;

    Ref<NSError> error_;
    std::vector<Ref<NSObject>> lent_; // owners of bytes that were handed out
};

/// Answers the value of a class under a key: a typed `decodeObjectOfClass:forKey:`. Without secure coding whatever was
/// archived comes back, so the class is looked at here: another kind of object reads nil.
template <class T> Ref<T> decode(NSCoder* coder, NSString* key)
{
    Ref<NSObject> value = coder->decodeObjectOfClass_forKey(classOf<T>(), key);
    return value && value->isKindOfClass(classOf<T>()) ? cast<T>(std::move(value)) : nullptr;
}

// What every object answers to coders; classes override these.

/// Answers the class under which the receiver is archived; its own.
inline Class* classForCoder(To<NSObject> object) { return object.send<"classForCoder", Class*>(); }
/// Answers `classForCoder`.
inline Class* classForKeyedArchiver(To<NSObject> object)
{
    return object.send<"classForKeyedArchiver", Class*>();
}
/// Answers what is archived in the receiver's place; the receiver. Nil archives nil.
inline Ref<NSObject> replacementObjectForKeyedArchiver(To<NSObject> object, NSCoder* archiver)
{
    return object.send<"replacementObjectForKeyedArchiver:", Ref<NSObject>>(archiver);
}
/// Answers what takes the receiver's place after `initWithCoder:`; the receiver.
inline Ref<NSObject> awakeAfterUsingCoder(To<NSObject> object, NSCoder* coder)
{
    return object.send<"awakeAfterUsingCoder:", Ref<NSObject>>(coder);
}
/// Answers the class that is decoded where the receiver's name was archived; the receiver.
inline Class* classForKeyedUnarchiver(To<Class> cls)
{
    return cls.send<"classForKeyedUnarchiver", Class*>();
}
/// Answers names of classes that may stand in for the receiver where nobody knows it, best first; nil.
inline Ref<NSArray> classFallbacksForKeyedArchiver(To<Class> cls)
{
    return cls.send<"classFallbacksForKeyedArchiver", Ref<NSArray>>();
}

/// Makes a function an implementation of `encodeWithCoder:` or `initWithCoder:`: a nil coder answers nothing.
///
///     { "encodeWithCoder:", imp<coding<encodeWithCoder>> }
template <auto Function> inline constexpr auto coding = nullptr;
template <class R, class Self, R (*Function)(Self&, NSCoder*)>
inline constexpr auto coding<Function>
    = +[](Self& self, NSCoder* coder) -> R { return Function(self, maybe(coder)); };

}
