// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <string>

#include "NSGeometry.h"
#include "runtime/NSObject.h"

namespace brindle {

namespace values {

    /// Bytes and what they are.
    struct Box {
        std::string type;
        std::unique_ptr<char[]> bytes;
        std::size_t size = 0;
    };

}

/// A plain C value as an object: a point, a range, any structure that has an encoding.
///
/// Two values are equal when their encodings and their bytes are. Reading a value as another type than its own
/// answers zeros.
/// Thread: any; a value does not change.
class NSValue : public NSObject {
    BRINDLE_OBJECT(NSValue, NSObject)

public:
    struct Meta : NSObject::Meta {
        /// Copies the bytes that the type stands for.
        /// - Raises: `NSInvalidArgumentException` for a type that is nil or malformed.
        Ref<NSValue> valueWithBytes_objCType(const void* bytes, const char* type) const
        {
            return send<"valueWithBytes:objCType:", Ref<NSValue>>(bytes, type);
        }
        Ref<NSValue> valueWithPoint(NSPoint point) const
        {
            return send<"valueWithPoint:", Ref<NSValue>>(point);
        }
        Ref<NSValue> valueWithSize(NSSize size) const
        {
            return send<"valueWithSize:", Ref<NSValue>>(size);
        }
        Ref<NSValue> valueWithRect(NSRect rect) const
        {
            return send<"valueWithRect:", Ref<NSValue>>(rect);
        }
        Ref<NSValue> valueWithRange(NSRange range) const
        {
            return send<"valueWithRange:", Ref<NSValue>>(range);
        }
        Ref<NSValue> valueWithPointer(const void* pointer) const
        {
            return send<"valueWithPointer:", Ref<NSValue>>(pointer);
        }
        /// Keeps the address only: the object may end meanwhile.
        Ref<NSValue> valueWithNonretainedObject(NSObject* target) const
        {
            return send<"valueWithNonretainedObject:", Ref<NSValue>>(target);
        }
        /// Boxes any type that has an encoding.
        template <class T> Ref<NSValue> valueOf(const T& value) const
        {
            return valueWithBytes_objCType(&value, encodingOf<T>.text);
        }
    };

    Ref<NSValue> initWithBytes_objCType(const void* bytes, const char* type)
    {
        return send<"initWithBytes:objCType:", Ref<NSValue>>(bytes, type);
    }
    const char* objCType() const { return send<"objCType", const char*>(); }
    /// Copies the value into a buffer that is large enough for its type.
    void getValue(void* buffer) const { send<"getValue:">(buffer); }
    /// - Raises: `NSInvalidArgumentException` unless `size` is the value's own size.
    void getValue_size(void* buffer, NSUInteger size) const
    {
        send<"getValue:size:">(buffer, size);
    }
    NSPoint pointValue() const { return send<"pointValue", NSPoint>(); }
    NSSize sizeValue() const { return send<"sizeValue", NSSize>(); }
    NSRect rectValue() const { return send<"rectValue", NSRect>(); }
    NSRange rangeValue() const { return send<"rangeValue", NSRange>(); }
    void* pointerValue() const { return send<"pointerValue", void*>(); }
    Ref<NSObject> nonretainedObjectValue() const
    {
        return send<"nonretainedObjectValue", Ref<NSObject>>();
    }
    bool isEqualToValue(const NSValue* other) const { return send<"isEqualToValue:", bool>(other); }

private:
    std::unique_ptr<values::Box> box_; // none in numbers
};

}
