// SPDX-License-Identifier: Apache-2.0
#include "NSNumber.h"

#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>

#include "HashingPrivate.h"
#include "NSStringPrivate.h"
#include "runtime/Runtime.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    constexpr double kTwoTo64 = 18446744073709551616.0;

    /// A number in a form that can be compared exactly: whole as sign and magnitude, or real.
    struct Exact {
        bool isWhole = true;
        bool isNegative = false;
        std::uint64_t magnitude = 0;
        double real = 0; ///< set where the number is not whole, or beyond 64 bits
    };

    Exact exactOf(std::int64_t value)
    {
        const auto bits = static_cast<std::uint64_t>(value);
        return { true, value < 0, value < 0 ? 0 - bits : bits, 0 };
    }
    Exact exactOf(std::uint64_t value) { return { true, false, value, 0 }; }
    Exact exactOf(double value)
    {
        const double size = std::fabs(value);
        if (size < kTwoTo64 && size == std::trunc(size))
            return { true, value < 0, static_cast<std::uint64_t>(size), 0 };
        return { false, std::signbit(value), 0, value };
    }

    int compareWhole(const Exact& a, const Exact& b)
    {
        if (a.isNegative != b.isNegative)
            return a.isNegative ? -1 : 1;
        const int order = a.magnitude < b.magnitude ? -1 : a.magnitude > b.magnitude ? 1 : 0;
        return a.isNegative ? -order : order;
    }

    /// Compares a number that is whole with one that is not, or lies beyond all whole ones.
    int compareMixed(const Exact& whole, double real)
    {
        if (std::isnan(real))
            return 1;
        if (std::fabs(real) >= kTwoTo64)
            return real > 0 ? -1 : 1;
        const int order = compareWhole(whole, exactOf(std::floor(real)));
        return order == 0 ? -1 : order; // equal to the floor is below the number itself
    }

    int compareReal(double a, double b)
    {
        if (std::isnan(a) || std::isnan(b))
            return std::isnan(a) == std::isnan(b) ? 0 : std::isnan(a) ? -1 : 1;
        return a < b ? -1 : a > b ? 1 : 0;
    }

    int compareExact(const Exact& a, const Exact& b)
    {
        if (a.isWhole && b.isWhole)
            return compareWhole(a, b);
        if (a.isWhole)
            return compareMixed(a, b.real);
        if (b.isWhole)
            return -compareMixed(b, a.real);
        return compareReal(a.real, b.real);
    }

    /// Cuts a double to an integer type without leaving its range.
    template <class T> T saturated(double value)
    {
        using Limits = std::numeric_limits<T>;
        if (std::isnan(value))
            return 0;
        if (value >= std::ldexp(1.0, Limits::digits))
            return Limits::max();
        if (value <= static_cast<double>(Limits::min()))
            return Limits::min();
        return static_cast<T>(value);
    }

    /// Writes the fewest digits that read back as the same value; plainly where that is not too long.
    template <class T> std::string shortest(T value)
    {
        if (std::isnan(value))
            return "nan";
        if (std::isinf(value))
            return value < 0 ? "-inf" : "inf";
        constexpr int kLongestPlain = 16;
        char text[64];
        const auto write = [&](std::chars_format format) {
            return std::string(text, std::to_chars(text, text + sizeof text, value, format).ptr);
        };
        const std::string scientific = write(std::chars_format::scientific);
        const int exponent = std::atoi(scientific.c_str() + scientific.find('e') + 1);
        const bool isPlain = exponent >= -5 && exponent < kLongestPlain;
        return isPlain ? write(std::chars_format::fixed) : scientific;
    }

}

template <> struct NSNumber::Methods<struct Numbers> {

    // ---- storing

    template <class T> static void store(NSNumber& self, T value)
    {
        self.type_[0] = encodingOf<T>.text[0];
        if constexpr (std::is_floating_point_v<T>)
            self.value_.real = static_cast<double>(value);
        else if constexpr (std::is_unsigned_v<T> && sizeof(T) == 8)
            self.value_.natural = static_cast<std::uint64_t>(value);
        else
            self.value_.whole = +value; // a char is a small number here
    }
    static NSNumber* fresh()
    {
        return static_cast<NSNumber*>(class_createInstance(classOf<NSNumber>()));
    }
    static NSNumber* shared(bool value)
    {
        const auto forever = [](bool of) {
            NSNumber* const number = fresh();
            store(*number, of);
            headerOf(number).count.store(ObjectHeader::kImmortal, std::memory_order_relaxed);
            return number;
        };
        static NSNumber* const yes = forever(true);
        static NSNumber* const no = forever(false);
        return value ? yes : no;
    }
    template <class T> static Ref<NSNumber> make(Class& self, T value)
    {
        if constexpr (std::is_same_v<T, bool>) {
            if (&self == classOf<NSNumber>())
                return shared(value);
        }
        Ref<NSNumber> number = &self == classOf<NSNumber>()
            ? Ref<NSNumber>::adopt(fresh())
            : cast<NSNumber>(Meta { { { &self } } }.alloc()->init());
        return init(*number, value);
    }
    template <class T> static Ref<NSNumber> init(NSNumber& self, T value)
    {
        if constexpr (std::is_same_v<T, bool>) {
            if (self.isa_ == classOf<NSNumber>())
                return shared(value);
        }
        store(self, value);
        return &self;
    }
    template <class T> static Ref<NSValue> initFrom(NSNumber& self, const void* bytes)
    {
        T value {};
        std::memcpy(&value, bytes, sizeof value);
        return init(self, value);
    }
    static Ref<NSValue> initWithBytes(NSNumber& self, const void* bytes, const char* type)
    {
        constexpr const char* kSelector = "initWithBytes:objCType:";
        strings::checkArgument(self, kSelector, bytes);
        strings::checkArgument(self, kSelector, type);
        switch (*type) {
        case 'B':
            return initFrom<bool>(self, bytes);
        case 'c':
            return initFrom<char>(self, bytes);
        case 'C':
            return initFrom<unsigned char>(self, bytes);
        case 's':
            return initFrom<short>(self, bytes);
        case 'S':
            return initFrom<unsigned short>(self, bytes);
        case 'i':
            return initFrom<int>(self, bytes);
        case 'I':
            return initFrom<unsigned>(self, bytes);
        case 'q':
            return initFrom<NSInteger>(self, bytes);
        case 'Q':
            return initFrom<NSUInteger>(self, bytes);
        case 'f':
            return initFrom<float>(self, bytes);
        case 'd':
            return initFrom<double>(self, bytes);
        default:
            return nullptr;
        }
    }

    // ---- reading

    static bool isReal(const NSNumber& self)
    {
        return self.type_[0] == 'f' || self.type_[0] == 'd';
    }
    static bool isNatural(const NSNumber& self) { return self.type_[0] == 'Q'; }

    template <class T> static T read(NSNumber& self)
    {
        if constexpr (std::is_same_v<T, bool>)
            return isReal(self) ? self.value_.real != 0 : self.value_.whole != 0;
        else if constexpr (std::is_integral_v<T>) {
            if (isReal(self))
                return saturated<T>(self.value_.real);
        }
        if (isReal(self))
            return static_cast<T>(self.value_.real);
        return isNatural(self) ? static_cast<T>(self.value_.natural)
                               : static_cast<T>(self.value_.whole);
    }
    static const char* objCType(NSNumber& self) { return self.type_; }
    template <class T> static void copyTo(NSNumber& self, void* buffer)
    {
        const T value = read<T>(self);
        std::memcpy(buffer, &value, sizeof value);
    }
    static void getValue(NSNumber& self, void* buffer)
    {
        strings::checkArgument(self, "getValue:", buffer);
        switch (self.type_[0]) {
        case 'B':
        case 'c':
        case 'C':
            return copyTo<char>(self, buffer);
        case 's':
        case 'S':
            return copyTo<short>(self, buffer);
        case 'i':
        case 'I':
            return copyTo<int>(self, buffer);
        case 'f':
            return copyTo<float>(self, buffer);
        case 'd':
            return copyTo<double>(self, buffer);
        default:
            return copyTo<NSInteger>(self, buffer);
        }
    }

    // ---- equality and order

    static Exact exact(const NSNumber& self)
    {
        if (isReal(self))
            return exactOf(self.value_.real);
        return isNatural(self) ? exactOf(self.value_.natural) : exactOf(self.value_.whole);
    }
    static NSComparisonResult compare(NSNumber& self, NSNumber* other)
    {
        strings::checkArgument(self, "compare:", other);
        const int order = compareExact(exact(self), exact(*other));
        return order < 0 ? NSOrderedAscending : order > 0 ? NSOrderedDescending : NSOrderedSame;
    }
    static bool isEqualToNumber(NSNumber& self, NSNumber* other)
    {
        return other && (&self == other || compareExact(exact(self), exact(*other)) == 0);
    }
    static bool isEqual(NSNumber& self, NSObject* other)
    {
        if (&self == other)
            return true;
        return other && other->isKindOfClass(classOf<NSNumber>())
            && isEqualToNumber(self, static_cast<NSNumber*>(other));
    }
    static bool isEqualToValue(NSNumber& self, NSValue* other) { return isEqual(self, other); }
    static NSUInteger hash(NSNumber& self)
    {
        const Exact value = exact(self);
        if (value.isWhole)
            return hashing::ofWord(value.isNegative ? ~value.magnitude : value.magnitude);
        if (std::isnan(value.real))
            return 1;
        std::uint64_t bits = 0;
        std::memcpy(&bits, &value.real, sizeof bits);
        return hashing::ofWord(bits);
    }

    // ---- text

    static Ref<NSString> description(NSNumber& self)
    {
        switch (self.type_[0]) {
        case 'f':
            return stringFrom(shortest(static_cast<float>(self.value_.real)));
        case 'd':
            return stringFrom(shortest(self.value_.real));
        case 'Q':
            return stringFrom(std::to_string(self.value_.natural));
        default:
            return stringFrom(std::to_string(self.value_.whole));
        }
    }
    static Ref<NSString> descriptionWithLocale(NSNumber& self, NSLocale*)
    {
        return self.description();
    }

    static void table(Builder& t)
    {
        t.classMethods({
            { "numberWithBool:", imp<make<bool>> },
            { "numberWithChar:", imp<make<char>> },
            { "numberWithUnsignedChar:", imp<make<unsigned char>> },
            { "numberWithShort:", imp<make<short>> },
            { "numberWithUnsignedShort:", imp<make<unsigned short>> },
            { "numberWithInt:", imp<make<int>> },
            { "numberWithUnsignedInt:", imp<make<unsigned>> },
            { "numberWithLong:", imp<make<long>> },
            { "numberWithUnsignedLong:", imp<make<unsigned long>> },
            { "numberWithLongLong:", imp<make<long long>> },
            { "numberWithUnsignedLongLong:", imp<make<unsigned long long>> },
            { "numberWithFloat:", imp<make<float>> },
            { "numberWithDouble:", imp<make<double>> },
            { "numberWithInteger:", imp<make<NSInteger>> },
            { "numberWithUnsignedInteger:", imp<make<NSUInteger>> },
        });
        t.methods({
            { "initWithBool:", imp<init<bool>> },
            { "initWithChar:", imp<init<char>> },
            { "initWithUnsignedChar:", imp<init<unsigned char>> },
            { "initWithShort:", imp<init<short>> },
            { "initWithUnsignedShort:", imp<init<unsigned short>> },
            { "initWithInt:", imp<init<int>> },
            { "initWithUnsignedInt:", imp<init<unsigned>> },
            { "initWithLong:", imp<init<long>> },
            { "initWithUnsignedLong:", imp<init<unsigned long>> },
            { "initWithLongLong:", imp<init<long long>> },
            { "initWithUnsignedLongLong:", imp<init<unsigned long long>> },
            { "initWithFloat:", imp<init<float>> },
            { "initWithDouble:", imp<init<double>> },
            { "initWithInteger:", imp<init<NSInteger>> },
            { "initWithUnsignedInteger:", imp<init<NSUInteger>> },
            { "boolValue", imp<read<bool>> },
            { "charValue", imp<read<char>> },
            { "unsignedCharValue", imp<read<unsigned char>> },
            { "shortValue", imp<read<short>> },
            { "unsignedShortValue", imp<read<unsigned short>> },
            { "intValue", imp<read<int>> },
            { "unsignedIntValue", imp<read<unsigned>> },
            { "longValue", imp<read<long>> },
            { "unsignedLongValue", imp<read<unsigned long>> },
            { "longLongValue", imp<read<long long>> },
            { "unsignedLongLongValue", imp<read<unsigned long long>> },
            { "floatValue", imp<read<float>> },
            { "doubleValue", imp<read<double>> },
            { "integerValue", imp<read<NSInteger>> },
            { "unsignedIntegerValue", imp<read<NSUInteger>> },
            { "initWithBytes:objCType:", imp<initWithBytes> },
            { "objCType", imp<objCType> },
            { "getValue:", imp<getValue> },
            { "compare:", imp<compare> },
            { "isEqualToNumber:", imp<isEqualToNumber> },
            { "isEqualToValue:", imp<isEqualToValue> },
            { "isEqual:", imp<isEqual> },
            { "hash", imp<hash> },
            { "description", imp<description> },
            { "stringValue", imp<description> },
            { "descriptionWithLocale:", imp<descriptionWithLocale> },
        });
    }
};
BRINDLE_RECORD(NSNumber, Numbers)

}
