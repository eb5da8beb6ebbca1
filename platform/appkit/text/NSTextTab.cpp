// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSTextTab.h"

#include <cmath>

#include "TextStylePrivate.h"
#include "foundation/CodingTable.h"
#include "foundation/NSCharacterSet.h"
#include "foundation/NSDictionary.h"
#include "foundation/NSLocale.h"
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
        const NSTextAlignment alignment = type == NSCenterTabStopType ? NSTextAlignmentCenter
            : type == NSLeftTabStopType                               ? NSTextAlignmentLeft
                                                                      : NSTextAlignmentRight;
        Ref<NSDictionary> options;
        if (type == NSDecimalTabStopType)
            options = optionsWithTerminators(
                NSTextTab::cls().columnTerminatorsForLocale(nullptr).get());
        return self.initWithTextAlignment_location_options(alignment, location, options.get());
    }

    static Ref<NSCharacterSet> columnTerminatorsForLocale(Class&, NSLocale* locale)
    {
        const Ref<NSLocale> asked
            = locale ? Ref<NSLocale>(locale) : NSLocale::cls().currentLocale();
        return NSCharacterSet::cls().characterSetWithCharactersInString(
            asked->decimalSeparator().get());
    }
    static Ref<NSDictionary> optionsWithTerminators(NSObject* terminators)
    {
        if (!terminators || !terminators->isKindOfClass(NSCharacterSet::cls()))
            return nullptr;
        return NSDictionary::cls().dictionaryWithObject_forKey(
            terminators, NSTabColumnTerminatorsAttributeName);
    }
    static Ref<NSCharacterSet> terminators(const NSTextTab& self)
    {
        return layouts::attribute<NSCharacterSet>(
            self.options().get(), NSTabColumnTerminatorsAttributeName);
    }

    static NSTextTabType tabStopType(NSTextTab& self)
    {
        switch (self.alignment_) {
        case NSTextAlignmentRight:
            return terminators(self) ? NSDecimalTabStopType : NSRightTabStopType;
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
        return self.alignment_ == other.alignment_ && self.location_ == other.location_
            && (self.options_ == other.options_
                || maybe(self.options_)->isEqual(other.options_.get()));
    }
    static std::uint64_t hash(NSTextTab& self) { return std::hash<double>()(self.location_); }
    static Ref<NSObject> copyWithZone(NSTextTab& self, void*) { return &self; }

    static void encode(NSTextTab& self, NSCoder* coder)
    {
        coder->encodeInteger_forKey(static_cast<NSInteger>(self.alignment_), "NSAlignment"_ns);
        coder->encodeDouble_forKey(self.location_, "NSLocation"_ns);
        if (const Ref<NSCharacterSet> ends = terminators(self))
            coder->encodeObject_forKey(ends.get(), "NSColumnTerminators"_ns);
    }
    static Ref<NSObject> initWithCoder(NSTextTab& self, NSCoder* coder)
    {
        const auto alignment
            = static_cast<NSTextAlignment>(coder->decodeIntegerForKey("NSAlignment"_ns));
        const Ref<NSObject> ends
            = coder->decodeObjectOfClass_forKey(NSCharacterSet::cls(), "NSColumnTerminators"_ns);
        return self.initWithTextAlignment_location_options(alignment,
            coder->decodeDoubleForKey("NSLocation"_ns), optionsWithTerminators(ends.get()).get());
    }

    static void table(Builder& t)
    {
        t.classMethods({ { "columnTerminatorsForLocale:", imp<columnTerminatorsForLocale> } });
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
