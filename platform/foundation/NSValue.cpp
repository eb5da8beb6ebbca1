// SPDX-License-Identifier: Apache-2.0
#include "NSValue.h"

#include <cstring>

#include "HashingPrivate.h"
#include "NSStringPrivate.h"
#include "StringFormat.h"
#include "runtime/NSException.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct NSValue::Methods<struct Boxes> {

    static Ref<NSValue> valueWithBytes(Class& self, const void* bytes, const char* type)
    {
        return cast<NSValue>(Meta { { &self } }.alloc())->initWithBytes_objCType(bytes, type);
    }
    template <class T> static Ref<NSValue> boxed(Class& self, T value)
    {
        return Meta { { &self } }.valueWithBytes_objCType(&value, encodingOf<T>.text);
    }
    static Ref<NSValue> withPointer(Class& self, const void* pointer)
    {
        return boxed(self, const_cast<void*>(pointer));
    }
    static Ref<NSValue> withObject(Class& self, NSObject* object) { return boxed(self, object); }

    static std::size_t sizeOf(NSValue& self, const char* type, const char* selector)
    {
        std::size_t size = 0;
        std::size_t alignment = 0;
        if (!type || !encodingSizeAndAlignment(type, &size, &alignment))
            raise("NSInvalidArgumentException",
                strings::place(self, selector) + "'" + (type ? type : "(null)")
                    + "' is no type of known size");
        return size;
    }
    static Ref<NSValue> initWithBytes(NSValue& self, const void* bytes, const char* type)
    {
        constexpr const char* kSelector = "initWithBytes:objCType:";
        const std::size_t size = sizeOf(self, type, kSelector);
        if (size > 0)
            strings::checkArgument(self, kSelector, bytes);
        auto box = std::make_unique<values::Box>();
        box->type = type;
        box->size = size;
        box->bytes = std::make_unique<char[]>(size);
        if (size > 0)
            std::memcpy(box->bytes.get(), bytes, size);
        self.box_ = std::move(box);
        return &self;
    }

    static const char* objCType(NSValue& self) { return self.box_ ? self.box_->type.c_str() : "v"; }
    static void getValue(NSValue& self, void* buffer)
    {
        if (!self.box_ || self.box_->size == 0)
            return;
        strings::checkArgument(self, "getValue:", buffer);
        std::memcpy(buffer, self.box_->bytes.get(), self.box_->size);
    }
    static void getValueSize(NSValue& self, void* buffer, NSUInteger size)
    {
        const std::size_t own = sizeOf(self, self.objCType(), "getValue:size:");
        if (own != size)
            raise("NSInvalidArgumentException",
                strings::place(self, "getValue:size:") + "Cannot get value with size "
                    + std::to_string(size) + ". The type encoded as " + self.objCType()
                    + " is expected to be " + std::to_string(own) + " bytes");
        self.getValue(buffer);
    }

    template <class T> static T read(NSValue& self)
    {
        T value {};
        if (self.box_ && self.box_->type == encodingOf<T>.view())
            std::memcpy(&value, self.box_->bytes.get(), sizeof value);
        return value;
    }
    static void* pointerValue(NSValue& self)
    {
        void* pointer = nullptr; // every kind of pointer may be read as one
        if (self.box_ && self.box_->size == sizeof pointer
            && std::strchr("^@*#:?", self.box_->type[0]))
            std::memcpy(&pointer, self.box_->bytes.get(), sizeof pointer);
        return pointer;
    }
    static Ref<NSObject> objectValue(NSValue& self)
    {
        return static_cast<NSObject*>(pointerValue(self));
    }

    static bool isEqualToValue(NSValue& self, NSValue* other)
    {
        if (&self == other)
            return true;
        if (!other || !self.box_ || !other->box_)
            return false;
        const values::Box& a = *self.box_;
        const values::Box& b = *other->box_;
        return a.type == b.type && a.size == b.size
            && std::equal(a.bytes.get(), a.bytes.get() + a.size, b.bytes.get());
    }
    static bool isEqual(NSValue& self, NSObject* other)
    {
        if (&self == other)
            return true;
        return maybe(other)->isKindOfClass(classOf<NSValue>())
            && self.isEqualToValue(static_cast<NSValue*>(other));
    }
    static NSUInteger hash(NSValue& self)
    {
        if (!self.box_)
            return 0;
        return hashing::ofBytes(
            reinterpret_cast<const unsigned char*>(self.box_->bytes.get()), self.box_->size);
    }

    static Ref<NSString> numbers(const char* kind, std::initializer_list<double> parts)
    {
        std::string format = std::string(kind) + ": {";
        if (parts.size() == 4)
            format += "{%g, %g}, {%g, %g}}";
        else
            format += "%g, %g}";
        const auto at = [&](std::size_t i) { return i < parts.size() ? parts.begin()[i] : 0.0; };
        return NSString::cls().stringWithFormat(
            stringFrom(format).get(), at(0), at(1), at(2), at(3));
    }
    static Ref<NSString> description(NSValue& self)
    {
        if (!self.box_)
            return ""_ns;
        const std::string& type = self.box_->type;
        if (type == encodingOf<NSPoint>.view()) {
            const auto p = read<NSPoint>(self);
            return numbers("NSPoint", { p.x, p.y });
        }
        if (type == encodingOf<NSSize>.view()) {
            const auto s = read<NSSize>(self);
            return numbers("NSSize", { s.width, s.height });
        }
        if (type == encodingOf<NSRect>.view()) {
            const auto r = read<NSRect>(self);
            return numbers("NSRect", { r.origin.x, r.origin.y, r.size.width, r.size.height });
        }
        if (type == encodingOf<NSRange>.view()) {
            const auto r = read<NSRange>(self);
            return NSString::cls().stringWithFormat("NSRange: {%lu, %lu}"_ns, r.location, r.length);
        }
        return bytesText(*self.box_);
    }
    /// Answers "<01020304 0506>".
    static Ref<NSString> bytesText(const values::Box& box)
    {
        constexpr const char* kDigits = "0123456789abcdef";
        std::string text = "<";
        for (std::size_t i = 0; i < box.size; ++i) {
            if (i > 0 && i % 4 == 0)
                text += ' ';
            const auto byte = static_cast<unsigned char>(box.bytes[i]);
            text += kDigits[byte >> 4];
            text += kDigits[byte & 15];
        }
        return stringFrom(text + ">");
    }
    static Ref<NSObject> copyWithZone(NSValue& self, void*) { return &self; }

    static void table(Builder& t)
    {
        t.conformsTo({ "NSCopying" });
        t.classMethods({
            { "valueWithBytes:objCType:", imp<valueWithBytes> },
            { "value:withObjCType:", imp<valueWithBytes> },
            { "valueWithPoint:", imp<boxed<NSPoint>> },
            { "valueWithSize:", imp<boxed<NSSize>> },
            { "valueWithRect:", imp<boxed<NSRect>> },
            { "valueWithRange:", imp<boxed<NSRange>> },
            { "valueWithPointer:", imp<withPointer> },
            { "valueWithNonretainedObject:", imp<withObject> },
        });
        t.methods({
            { "initWithBytes:objCType:", imp<initWithBytes> },
            { "objCType", imp<objCType> },
            { "getValue:", imp<getValue> },
            { "getValue:size:", imp<getValueSize> },
            { "pointValue", imp<read<NSPoint>> },
            { "sizeValue", imp<read<NSSize>> },
            { "rectValue", imp<read<NSRect>> },
            { "rangeValue", imp<read<NSRange>> },
            { "pointerValue", imp<pointerValue> },
            { "nonretainedObjectValue", imp<objectValue> },
            { "isEqualToValue:", imp<isEqualToValue> },
            { "isEqual:", imp<isEqual> },
            { "hash", imp<hash> },
            { "description", imp<description> },
            { "copyWithZone:", imp<copyWithZone> },
        });
    }
};
BRINDLE_RECORD(NSValue, Boxes)

}
