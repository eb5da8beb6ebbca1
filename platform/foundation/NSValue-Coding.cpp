// SPDX-License-Identifier: Apache-2.0
#include "CodingTable.h"
#include "Exceptions.h"
#include "GeometryTextPrivate.h"
#include "NSNumber.h"
#include "foundation/archives/KeyedArchivePrivate.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct NSValue::Methods<struct Coding> {

    /// What a value is, as "NS.special" tells it.
    enum Special : int { kPoint = 1, kSize = 2, kRect = 3, kRange = 4 };

    static void encode(NSValue& self, NSCoder* coder)
    {
        const std::string_view type = self.objCType();
        const auto write = [&](Special special, NSString* key, const Ref<NSString>& text) {
            coder->encodeInt_forKey(special, "NS.special"_ns);
            coder->encodeObject_forKey(text.get(), key);
        };
        if (type == encodingOf<NSPoint>.view())
            write(kPoint, "NS.pointval"_ns, geometry::exactText(self.pointValue()));
        else if (type == encodingOf<NSSize>.view())
            write(kSize, "NS.sizeval"_ns, geometry::exactText(self.sizeValue()));
        else if (type == encodingOf<NSRect>.view())
            write(kRect, "NS.rectval"_ns, geometry::exactText(self.rectValue()));
        else if (type == encodingOf<NSRange>.view())
            write(kRange, "NS.rangeval"_ns, NSStringFromRange(self.rangeValue()));
        else
            raise("NSInvalidArgumentException",
                "*** -[NSKeyedArchiver encodeValueOfObjCType:at:]: this archiver cannot encode "
                "structs");
    }

    template <class T> static Ref<NSObject> init(NSValue& self, const T& value)
    {
        return self.initWithBytes_objCType(&value, encodingOf<T>.text);
    }
    static Ref<NSObject> initWithCoder(NSValue& self, NSCoder* coder)
    {
        const auto text = [&](NSString* key) { return decode<NSString>(coder, key); };
        switch (coder->decodeIntForKey("NS.special"_ns)) {
        case kPoint:
            if (const Ref<NSString> point = text("NS.pointval"_ns))
                return init(self, NSPointFromString(point.get()));
            break;
        case kSize:
            if (const Ref<NSString> size = text("NS.sizeval"_ns))
                return init(self, NSSizeFromString(size.get()));
            break;
        case kRect:
            if (const Ref<NSString> rect = text("NS.rectval"_ns))
                return init(self, NSRectFromString(rect.get()));
            break;
        case kRange:
            if (const Ref<NSString> range = text("NS.rangeval"_ns))
                return init(self, NSRangeFromString(range.get()));
            if (coder->containsValueForKey("NS.rangeval.location"_ns))
                return init(self, separateRange(coder));
            break;
        default:
            break;
        }
        archives::refuse(coder, "a value is no point, size, rectangle or range");
        return nullptr;
    }
    /// Others write a range as two numbers.
    static NSRange separateRange(NSCoder* coder)
    {
        return { static_cast<NSUInteger>(coder->decodeIntegerForKey("NS.rangeval.location"_ns)),
            static_cast<NSUInteger>(coder->decodeIntegerForKey("NS.rangeval.length"_ns)) };
    }

    static void table(Builder& t) { declareCoding<encode, initWithCoder>(t); }
};
BRINDLE_RECORD(NSValue, Coding)

// Numbers of the class itself stand in an archive as they are; this is for subclasses.
template <> struct NSNumber::Methods<struct Coding> {

    static void encode(NSNumber& self, NSCoder* coder)
    {
        char value[sizeof(std::int64_t)];
        self.getValue(value);
        const Ref<NSValue> number
            = alloc<NSNumber>()->initWithBytes_objCType(value, self.objCType());
        coder->encodeObject_forKey(number.get(), "NS.number"_ns);
    }
    static Ref<NSObject> initWithCoder(NSNumber& self, NSCoder* coder)
    {
        const Ref<NSNumber> number = decode<NSNumber>(coder, "NS.number"_ns);
        if (!number || number == &self) {
            archives::refuse(coder, "a number has no value");
            return nullptr;
        }
        char value[sizeof(std::int64_t)];
        number->getValue(value);
        return self.initWithBytes_objCType(value, number->objCType());
    }

    static void table(Builder& t)
    {
        t.methods({
            { "encodeWithCoder:", imp<coding<encode>> },
            { "initWithCoder:", imp<coding<initWithCoder>> },
        });
    }
};
BRINDLE_RECORD(NSNumber, Coding)

}
