// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSTextTab.h"

#include <cmath>

#include "foundation/CodingTable.h"
#include "foundation/NSDictionary.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct NSTextTab::Methods<struct Values> {

    static Ref<NSTextTab> initWithAlignment(
        NSTextTab& self, NSTextAlignment alignment, CGFloat location, NSDictionary* options)
    {
        if (!super<NSTextTab, "init", Ref<NSObject>>(self))
            return nullptr;
        self.alignment_ = alignment > NSTextAlignmentNatural ? NSTextAlignmentNatural : alignment;
        self.location_ = std::isfinite(location) && location > 0 ? location : 0;
        self.options_ = options ? cast<NSDictionary>(options->copy()) : nullptr;
        return &self;
    }
    static Ref<NSTextTab> initWithType(NSTextTab& self, NSTextTabType type, CGFloat location)
    {
        // Decimal stops stand like right ones: numbers end at the same place.
        const NSTextAlignment alignment = type == NSCenterTabStopType ? NSTextAlignmentCenter
            : type == NSLeftTabStopType                               ? NSTextAlignmentLeft
                                                                      : NSTextAlignmentRight;
        return self.initWithTextAlignment_location_options(alignment, location, nullptr);
    }

    static NSTextTabType tabStopType(NSTextTab& self)
    {
        switch (self.alignment_) {
        case NSTextAlignmentRight:
            return NSRightTabStopType;
        case NSTextAlignmentCenter:
            return NSCenterTabStopType;
        default:
            return NSLeftTabStopType;
        }
    }

    static bool isEqual(NSTextTab& self, NSObject* object)
    {
        if (!object || !object->isKindOfClass(NSTextTab::cls()))
            return false;
        const auto& other = *static_cast<NSTextTab*>(object);
        return self.alignment_ == other.alignment_ && self.location_ == other.location_;
    }
    static std::uint64_t hash(NSTextTab& self) { return std::hash<double>()(self.location_); }
    static Ref<NSObject> copyWithZone(NSTextTab& self, void*) { return &self; }

    static void encode(NSTextTab& self, NSCoder* coder)
    {
        coder->encodeInteger_forKey(static_cast<NSInteger>(self.alignment_), "NSAlignment"_ns);
        coder->encodeDouble_forKey(self.location_, "NSLocation"_ns);
    }
    static Ref<NSObject> initWithCoder(NSTextTab& self, NSCoder* coder)
    {
        const auto alignment
            = static_cast<NSTextAlignment>(coder->decodeIntegerForKey("NSAlignment"_ns));
        return self.initWithTextAlignment_location_options(
            alignment, coder->decodeDoubleForKey("NSLocation"_ns), nullptr);
    }

    static void table(Builder& t)
    {
        t.conformsTo({ "NSCopying" });
        declareCoding<encode, initWithCoder>(t);
        t.properties({
            property<&NSTextTab::alignment_>("alignment", readonly, nonatomic),
            property<&NSTextTab::location_>("location", readonly, nonatomic),
            property<&NSTextTab::options_>("options", readonly, nonatomic),
        });
        t.methods({
            { "initWithTextAlignment:location:options:", imp<initWithAlignment> },
            { "initWithType:location:", imp<initWithType> },
            { "tabStopType", imp<tabStopType> },
            { "isEqual:", imp<isEqual> },
            { "hash", imp<hash> },
            { "copyWithZone:", imp<copyWithZone> },
        });
    }
};
BRINDLE_RECORD(NSTextTab, Values)

}
