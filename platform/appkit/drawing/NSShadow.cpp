// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSShadow.h"

#include "appkit/NSColor.h"
#include "appkit/NSGraphicsContext.h"
#include "foundation/CodingTable.h"
#include "foundation/NSString.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct NSShadow::Methods<struct Values> {

    static Ref<NSObject> init(NSShadow& self)
    {
        if (!super<NSShadow, "init", Ref<NSObject>>(self))
            return nullptr;
        self.shadowColor_ = NSColor::cls().colorWithCalibratedWhite_alpha(0, 1.0 / 3);
        return &self;
    }

    static bool isEqual(NSShadow& self, NSObject* object)
    {
        if (!object || !object->isKindOfClass(NSShadow::cls()))
            return false;
        const auto& other = static_cast<const NSShadow&>(*object);
        const auto sameColor = [&] {
            return self.shadowColor_ == other.shadowColor_
                || maybe(self.shadowColor_)->isEqual(other.shadowColor_.get());
        };
        return self.shadowOffset_ == other.shadowOffset_
            && self.shadowBlurRadius_ == other.shadowBlurRadius_ && sameColor();
    }
    static NSUInteger hash(NSShadow& self) { return maybe(self.shadowColor_)->hash(); }

    static Ref<NSObject> copyWithZone(NSShadow& self, void*)
    {
        const Ref<NSShadow> copy = cast<NSShadow>(self.classObject()->send<"new", Ref<NSObject>>());
        copy->shadowOffset_ = self.shadowOffset_;
        copy->shadowBlurRadius_ = self.shadowBlurRadius_;
        copy->shadowColor_ = self.shadowColor_;
        return copy;
    }

    static void set(NSShadow& self)
    {
        const Ref<CGColor> color = maybe(self.shadowColor_)->CGColor();
        CGContextSetShadowWithColor(
            currentCGContext().get(), self.shadowOffset_, self.shadowBlurRadius_, color.get());
    }

    static void table(Builder& t)
    {
        t.conformsTo({ "NSCopying" });
        t.methods({
            { "init", imp<init> },
            { "isEqual:", imp<isEqual> },
            { "hash", imp<hash> },
            { "copyWithZone:", imp<copyWithZone> },
            { "set", imp<set> },
        });
        t.properties({
            property<&NSShadow::shadowOffset_>("shadowOffset", nonatomic),
            property<&NSShadow::shadowBlurRadius_>("shadowBlurRadius", nonatomic),
            property<&NSShadow::shadowColor_>("shadowColor", copied, nonatomic),
        });
    }
};
BRINDLE_RECORD(NSShadow, Values)

// - Shape: "NSShadowHoriz", "NSShadowVert" and "NSShadowBlurRadius" are numbers, "NSShadowColor" is a colour.
template <> struct NSShadow::Methods<struct Coding> {

    static void encode(NSShadow& self, NSCoder* coder)
    {
        coder->encodeDouble_forKey(self.shadowOffset_.width, "NSShadowHoriz"_ns);
        coder->encodeDouble_forKey(self.shadowOffset_.height, "NSShadowVert"_ns);
        coder->encodeDouble_forKey(self.shadowBlurRadius_, "NSShadowBlurRadius"_ns);
        coder->encodeObject_forKey(self.shadowColor_.get(), "NSShadowColor"_ns);
    }
    static Ref<NSObject> initWithCoder(NSShadow& self, NSCoder* coder)
    {
        self.shadowOffset_ = { coder->decodeDoubleForKey("NSShadowHoriz"_ns),
            coder->decodeDoubleForKey("NSShadowVert"_ns) };
        self.shadowBlurRadius_ = coder->decodeDoubleForKey("NSShadowBlurRadius"_ns);
        self.shadowColor_ = decode<NSColor>(coder, "NSShadowColor"_ns);
        return &self;
    }

    static void table(Builder& t) { declareCoding<encode, initWithCoder>(t); }
};
BRINDLE_RECORD(NSShadow, Coding)

}
