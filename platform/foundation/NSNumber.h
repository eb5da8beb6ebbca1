// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSValue.h"

namespace brindle {

class NSLocale;
class NSString;
enum NSComparisonResult : NSInteger;

/// A number or a boolean as an object.
///
/// Numbers are equal, and have equal hashes, when their values are, whatever made them: int 3, 3.0 and an unsigned 3; YES and 1.
/// Comparisons are exact, also between large integers and doubles. NaN equals NaN and stands before all numbers.
/// Reading another type than was stored is a C cast, except that doubles out of the type's range give its largest or
/// smallest value and NaN gives 0. A number made of a float keeps single precision: 0.1f reads 0.10000000149011612 as double.
/// Booleans are two shared objects; their `objCType` is "B", which nothing else has.
/// Thread: any.
class NSNumber : public NSValue {
    BRINDLE_OBJECT(NSNumber, NSValue)

public:
    struct Meta : NSValue::Meta {
        Ref<NSNumber> numberWithBool(bool value) const
        {
            return send<"numberWithBool:", Ref<NSNumber>>(value);
        }
        Ref<NSNumber> numberWithChar(char value) const
        {
            return send<"numberWithChar:", Ref<NSNumber>>(value);
        }
        Ref<NSNumber> numberWithUnsignedChar(unsigned char value) const
        {
            return send<"numberWithUnsignedChar:", Ref<NSNumber>>(value);
        }
        Ref<NSNumber> numberWithShort(short value) const
        {
            return send<"numberWithShort:", Ref<NSNumber>>(value);
        }
        Ref<NSNumber> numberWithUnsignedShort(unsigned short value) const
        {
            return send<"numberWithUnsignedShort:", Ref<NSNumber>>(value);
        }
        Ref<NSNumber> numberWithInt(int value) const
        {
            return send<"numberWithInt:", Ref<NSNumber>>(value);
        }
        Ref<NSNumber> numberWithUnsignedInt(unsigned value) const
        {
            return send<"numberWithUnsignedInt:", Ref<NSNumber>>(value);
        }
        Ref<NSNumber> numberWithLong(long value) const
        {
            return send<"numberWithLong:", Ref<NSNumber>>(value);
        }
        Ref<NSNumber> numberWithUnsignedLong(unsigned long value) const
        {
            return send<"numberWithUnsignedLong:", Ref<NSNumber>>(value);
        }
        Ref<NSNumber> numberWithLongLong(long long value) const
        {
            return send<"numberWithLongLong:", Ref<NSNumber>>(value);
        }
        Ref<NSNumber> numberWithUnsignedLongLong(unsigned long long value) const
        {
            return send<"numberWithUnsignedLongLong:", Ref<NSNumber>>(value);
        }
        Ref<NSNumber> numberWithFloat(float value) const
        {
            return send<"numberWithFloat:", Ref<NSNumber>>(value);
        }
        Ref<NSNumber> numberWithDouble(double value) const
        {
            return send<"numberWithDouble:", Ref<NSNumber>>(value);
        }
        Ref<NSNumber> numberWithInteger(NSInteger value) const
        {
            return send<"numberWithInteger:", Ref<NSNumber>>(value);
        }
        Ref<NSNumber> numberWithUnsignedInteger(NSUInteger value) const
        {
            return send<"numberWithUnsignedInteger:", Ref<NSNumber>>(value);
        }
    };

    Ref<NSNumber> initWithBool(bool value) { return send<"initWithBool:", Ref<NSNumber>>(value); }
    Ref<NSNumber> initWithChar(char value) { return send<"initWithChar:", Ref<NSNumber>>(value); }
    Ref<NSNumber> initWithUnsignedChar(unsigned char value)
    {
        return send<"initWithUnsignedChar:", Ref<NSNumber>>(value);
    }
    Ref<NSNumber> initWithShort(short value)
    {
        return send<"initWithShort:", Ref<NSNumber>>(value);
    }
    Ref<NSNumber> initWithUnsignedShort(unsigned short value)
    {
        return send<"initWithUnsignedShort:", Ref<NSNumber>>(value);
    }
    Ref<NSNumber> initWithInt(int value) { return send<"initWithInt:", Ref<NSNumber>>(value); }
    Ref<NSNumber> initWithUnsignedInt(unsigned value)
    {
        return send<"initWithUnsignedInt:", Ref<NSNumber>>(value);
    }
    Ref<NSNumber> initWithLong(long value) { return send<"initWithLong:", Ref<NSNumber>>(value); }
    Ref<NSNumber> initWithUnsignedLong(unsigned long value)
    {
        return send<"initWithUnsignedLong:", Ref<NSNumber>>(value);
    }
    Ref<NSNumber> initWithLongLong(long long value)
    {
        return send<"initWithLongLong:", Ref<NSNumber>>(value);
    }
    Ref<NSNumber> initWithUnsignedLongLong(unsigned long long value)
    {
        return send<"initWithUnsignedLongLong:", Ref<NSNumber>>(value);
    }
    Ref<NSNumber> initWithFloat(float value)
    {
        return send<"initWithFloat:", Ref<NSNumber>>(value);
    }
    Ref<NSNumber> initWithDouble(double value)
    {
        return send<"initWithDouble:", Ref<NSNumber>>(value);
    }
    Ref<NSNumber> initWithInteger(NSInteger value)
    {
        return send<"initWithInteger:", Ref<NSNumber>>(value);
    }
    Ref<NSNumber> initWithUnsignedInteger(NSUInteger value)
    {
        return send<"initWithUnsignedInteger:", Ref<NSNumber>>(value);
    }

    bool boolValue() const { return send<"boolValue", bool>(); }
    char charValue() const { return send<"charValue", char>(); }
    unsigned char unsignedCharValue() const { return send<"unsignedCharValue", unsigned char>(); }
    short shortValue() const { return send<"shortValue", short>(); }
    unsigned short unsignedShortValue() const
    {
        return send<"unsignedShortValue", unsigned short>();
    }
    int intValue() const { return send<"intValue", int>(); }
    unsigned unsignedIntValue() const { return send<"unsignedIntValue", unsigned>(); }
    long longValue() const { return send<"longValue", long>(); }
    unsigned long unsignedLongValue() const { return send<"unsignedLongValue", unsigned long>(); }
    long long longLongValue() const { return send<"longLongValue", long long>(); }
    unsigned long long unsignedLongLongValue() const
    {
        return send<"unsignedLongLongValue", unsigned long long>();
    }
    float floatValue() const { return send<"floatValue", float>(); }
    double doubleValue() const { return send<"doubleValue", double>(); }
    NSInteger integerValue() const { return send<"integerValue", NSInteger>(); }
    NSUInteger unsignedIntegerValue() const { return send<"unsignedIntegerValue", NSUInteger>(); }
    /// Answers "1" and "0" for booleans, and for floats and doubles the shortest text that reads back as the same value.
    /// It is the answer of `description` too.
    Ref<NSString> stringValue() const { return send<"stringValue", Ref<NSString>>(); }
    Ref<NSString> descriptionWithLocale(NSLocale* locale) const
    {
        return send<"descriptionWithLocale:", Ref<NSString>>(locale);
    }
    /// - Raises: `NSInvalidArgumentException` when the argument is nil.
    NSComparisonResult compare(const NSNumber* other) const
    {
        return send<"compare:", NSComparisonResult>(other);
    }
    bool isEqualToNumber(const NSNumber* other) const
    {
        return send<"isEqualToNumber:", bool>(other);
    }

private:
    union Value {
        std::int64_t whole = 0;
        std::uint64_t natural;
        double real;
    };

    Value value_;
    char type_[2] {
        'i', 0
    }; // also says which member of the value is the one: Q natural, f and d real, others whole
};

}
