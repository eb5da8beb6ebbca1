// SPDX-License-Identifier: Apache-2.0
#include <cstring>
#include <string_view>

#include "CALayerPrivate.h"
#include "TransformPartsPrivate.h"
#include "foundation/NSNumber.h"
#include "foundation/NSObject+KeyValueCoding.h"
#include "runtime/NSInvocation.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    /// Answers the place of a part of a structure in it; -1 for other names.
    int placeIn(std::string_view type, std::string_view part)
    {
        const struct {
            std::string_view type;
            std::string_view part;
            int place;
        } rows[] {
            { encodingOf<CGPoint>.view(), "x", 0 },
            { encodingOf<CGPoint>.view(), "y", 1 },
            { encodingOf<CGSize>.view(), "width", 0 },
            { encodingOf<CGSize>.view(), "height", 1 },
            { encodingOf<CGRect>.view(), "origin.x", 0 },
            { encodingOf<CGRect>.view(), "origin.y", 1 },
            { encodingOf<CGRect>.view(), "size.width", 2 },
            { encodingOf<CGRect>.view(), "size.height", 3 },
        };
        for (const auto& row : rows) {
            if (row.type == type && row.part == part)
                return row.place;
        }
        return -1;
    }

    std::string_view typeOf(const NSObject* value)
    {
        return value && value->isKindOfClass(NSValue::cls())
            ? std::string_view(static_cast<const NSValue*>(value)->objCType())
            : std::string_view();
    }
    double numberIn(NSObject* value)
    {
        return value && value->respondsToSelector(selector<"doubleValue">)
            ? value->send<"doubleValue", double>()
            : 0;
    }

    /// A value of a layer and the part of it that a path names.
    struct PartOfValue {
        std::string key;
        std::string part;
        Ref<NSObject> whole;

        PartOfValue(CALayer& layer, NSString* path)
        {
            const std::string text = path ? utf8Of(path) : std::string();
            const std::size_t dot = text.find('.');
            if (dot == std::string::npos || dot == 0)
                return;
            key = text.substr(0, dot);
            part = text.substr(dot + 1);
            whole = valueForKey(layer, stringFrom(key).get());
        }
        bool isTransform() const { return typeOf(whole.get()) == encodingOf<CATransform3D>.view(); }
        int place() const { return placeIn(typeOf(whole.get()), part); }

        CATransform3D transform() const { return CATransform3DValue(cast<NSValue>(whole)); }
        /// Answers the number; nil when the path names no part.
        Ref<NSObject> read() const
        {
            if (isTransform()) {
                quartz::TransformParts parts(transform());
                const CGFloat* const found = parts.named(part.c_str());
                if (part == "translation")
                    return NSValue::cls().valueWithSize({ parts.moveX, parts.moveY });
                return found ? NSNumber::cls().numberWithDouble(*found) : Ref<NSNumber>();
            }
            if (place() < 0)
                return nullptr;
            double numbers[4] {};
            cast<NSValue>(whole)->getValue(numbers);
            return NSNumber::cls().numberWithDouble(numbers[place()]);
        }
        /// Answers the whole with a new part; nil when the path names none.
        Ref<NSObject> with(NSObject* value) const
        {
            if (isTransform()) {
                quartz::TransformParts parts(transform());
                if (part == "translation" && typeOf(value) == encodingOf<CGSize>.view()) {
                    const CGSize move = static_cast<NSValue*>(value)->sizeValue();
                    parts.moveX = move.width;
                    parts.moveY = move.height;
                } else if (CGFloat* const found = parts.named(part.c_str())) {
                    *found = numberIn(value);
                    if (part == "scale")
                        parts.scaleY = *found;
                } else
                    return nullptr;
                return valueWithCATransform3D(NSValue::cls(), parts.transform());
            }
            if (place() < 0)
                return nullptr;
            double numbers[4] {};
            const Ref<NSValue> box = cast<NSValue>(whole);
            box->getValue(numbers);
            numbers[place()] = numberIn(value);
            return NSValue::cls().valueWithBytes_objCType(numbers, box->objCType());
        }
    };

    /// Answers the operation of a name when its only value is a Quartz object, as `objectAt` says; else none.
    IMP quartzAccessor(CALayer& layer, SEL sel, NSUInteger argument)
    {
        if (!layer.respondsToSelector(sel))
            return nullptr;
        const Ref<NSMethodSignature> signature = layer.methodSignatureForSelector(sel);
        const char* const type = argument == 0 ? maybe(signature)->methodReturnType()
                                               : maybe(signature)->getArgumentTypeAtIndex(argument);
        return type && std::strncmp(type, "^{CG", 4) == 0 ? layer.methodForSelector(sel) : nullptr;
    }

}

template <> struct CALayer::Methods<struct Keys> {

    // Quartz objects are objects; key-value coding takes what stands behind other references for bare addresses.
    static Ref<NSObject> valueForKey(CALayer& self, NSString* key)
    {
        if (key && key->hasSuffix("Color"_ns)) {
            const SEL sel = sel_registerName(utf8Of(key).c_str());
            if (const IMP imp = quartzAccessor(self, sel, 0))
                return Ref<NSObject>::adopt(
                    reinterpret_cast<NSObject* (*)(NSObject*, SEL)>(imp)(&self, sel));
        }
        return super<CALayer, "valueForKey:", Ref<NSObject>>(self, key);
    }
    static void setValueForKey(CALayer& self, NSObject* value, NSString* key)
    {
        if (key && key->length() > 0 && key->hasSuffix("Color"_ns)) {
            std::string name = utf8Of(key);
            name[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(name[0])));
            const SEL sel = sel_registerName(("set" + name + ":").c_str());
            if (const IMP imp = quartzAccessor(self, sel, 2)) {
                Ref<NSObject> color(value);
                if (value && !value->isKindOfClass(CGColor::cls()))
                    color = value->respondsToSelector(selector<"CGColor">)
                        ? Ref<NSObject>(value->send<"CGColor", Ref<CGColor>>())
                        : Ref<NSObject>();
                reinterpret_cast<void (*)(NSObject*, SEL, NSObject*)>(imp)(&self, sel, color.get());
                return;
            }
        }
        super<CALayer, "setValue:forKey:">(self, value, key);
    }

    static Ref<NSObject> valueForKeyPath(CALayer& self, NSString* path)
    {
        if (const Ref<NSObject> part = PartOfValue(self, path).read())
            return part;
        return super<CALayer, "valueForKeyPath:", Ref<NSObject>>(self, path);
    }
    static void setValueForKeyPath(CALayer& self, NSObject* value, NSString* path)
    {
        const PartOfValue part(self, path);
        if (const Ref<NSObject> whole = part.with(value))
            brindle::setValue_forKey(self, whole.get(), stringFrom(part.key).get());
        else
            super<CALayer, "setValue:forKeyPath:">(self, value, path);
    }

    static Ref<NSObject> valueForUndefinedKey(CALayer& self, NSString* key)
    {
        return maybe(LayerAccess::state(self).others)->objectForKey(key);
    }
    static void setValueForUndefinedKey(CALayer& self, NSObject* value, NSString* key)
    {
        const Ref<NSMutableDictionary>& others = LayerAccess::state(self).others;
        if (!others)
            LayerAccess::state(self).others = make<NSMutableDictionary>();
        LayerAccess::change(self, key, [&] {
            if (value)
                others->setObject_forKey(value, key);
            else
                others->removeObjectForKey(key);
        });
    }

    static void table(Builder& t)
    {
        t.methods({
            { "valueForKey:", imp<valueForKey> },
            { "setValue:forKey:", imp<setValueForKey> },
            { "valueForKeyPath:", imp<valueForKeyPath> },
            { "setValue:forKeyPath:", imp<setValueForKeyPath> },
            { "valueForUndefinedKey:", imp<valueForUndefinedKey> },
            { "setValue:forUndefinedKey:", imp<setValueForUndefinedKey> },
        });
    }
};
BRINDLE_RECORD(CALayer, Keys)

}
