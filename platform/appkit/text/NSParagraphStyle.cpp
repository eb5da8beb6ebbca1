// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSParagraphStyle.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "appkit/NSMutableParagraphStyle.h"
#include "appkit/NSTextTab.h"
#include "foundation/CodingTable.h"
#include "foundation/Each.h"
#include "foundation/Exceptions.h"
#include "foundation/NSArray.h"
#include "foundation/NSSet.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    // The customary stops: twelve, a line of text apart.
    constexpr int kCustomaryStops = 12;
    constexpr CGFloat kCustomaryInterval = 28;

    Ref<NSArray> customaryStops()
    {
        std::vector<Ref<NSTextTab>> tabs;
        std::vector<NSObject*> list;
        for (int i = 1; i <= kCustomaryStops; ++i) {
            tabs.push_back(alloc<NSTextTab>()->initWithType_location(
                NSLeftTabStopType, i * kCustomaryInterval));
            list.push_back(tabs.back().get());
        }
        return NSArray::cls().arrayWithObjects_count(list.data(), list.size());
    }

    CGFloat finite(CGFloat value) { return std::isfinite(value) ? value : 0; }
    CGFloat positive(CGFloat value) { return std::isfinite(value) && value > 0 ? value : 0; }

    bool areEqualOrNil(const Ref<NSArray>& a, const Ref<NSArray>& b)
    {
        return a == b || (a && b && a->isEqual(b.get()));
    }

}

template <> struct NSParagraphStyle::Methods<struct Values> {

    static Ref<NSParagraphStyle> defaultStyle(Class&)
    {
        static NSParagraphStyle* const style = make<NSParagraphStyle>().leak();
        return style;
    }
    static NSWritingDirection directionForLanguage(Class&, NSString*)
    {
        return NSWritingDirectionLeftToRight;
    }

    static Ref<NSArray> tabStops(NSParagraphStyle& self)
    {
        static NSArray* const customary = customaryStops().leak();
        return self.tabStops_ ? self.tabStops_ : Ref<NSArray>(customary);
    }

    static bool isEqual(NSParagraphStyle& self, NSObject* object)
    {
        if (object == &self)
            return true;
        if (!object || !object->isKindOfClass(NSParagraphStyle::cls()))
            return false;
        const auto& other = *static_cast<NSParagraphStyle*>(object);
        const auto all = [](const NSParagraphStyle& s) {
            return std::tie(s.alignment_, s.lineBreakMode_, s.baseWritingDirection_, s.lineSpacing_,
                s.paragraphSpacing_, s.paragraphSpacingBefore_, s.lineHeightMultiple_,
                s.minimumLineHeight_, s.maximumLineHeight_, s.firstLineHeadIndent_, s.headIndent_,
                s.tailIndent_, s.defaultTabInterval_, s.hyphenationFactor_,
                s.tighteningFactorForTruncation_, s.allowsDefaultTighteningForTruncation_,
                s.headerLevel_);
        };
        return all(self) == all(other)
            && areEqualOrNil(self.tabStops(), static_cast<NSParagraphStyle*>(object)->tabStops());
    }
    static std::uint64_t hash(NSParagraphStyle& self)
    {
        return self.alignment_ + 8 * self.lineBreakMode_
            + std::hash<double>()(self.headIndent_ + 3 * self.lineSpacing_);
    }

    static void takeOver(NSParagraphStyle& self, const NSParagraphStyle& other)
    {
        self.alignment_ = other.alignment_;
        self.lineBreakMode_ = other.lineBreakMode_;
        self.baseWritingDirection_ = other.baseWritingDirection_;
        self.lineSpacing_ = other.lineSpacing_;
        self.paragraphSpacing_ = other.paragraphSpacing_;
        self.paragraphSpacingBefore_ = other.paragraphSpacingBefore_;
        self.lineHeightMultiple_ = other.lineHeightMultiple_;
        self.minimumLineHeight_ = other.minimumLineHeight_;
        self.maximumLineHeight_ = other.maximumLineHeight_;
        self.firstLineHeadIndent_ = other.firstLineHeadIndent_;
        self.headIndent_ = other.headIndent_;
        self.tailIndent_ = other.tailIndent_;
        self.defaultTabInterval_ = other.defaultTabInterval_;
        self.hyphenationFactor_ = other.hyphenationFactor_;
        self.tighteningFactorForTruncation_ = other.tighteningFactorForTruncation_;
        self.allowsDefaultTighteningForTruncation_ = other.allowsDefaultTighteningForTruncation_;
        self.headerLevel_ = other.headerLevel_;
        self.tabStops_ = other.tabStops_;
    }
    static Ref<NSObject> copyWithZone(NSParagraphStyle& self, void*)
    {
        if (!self.isKindOfClass(NSMutableParagraphStyle::cls()))
            return &self;
        const Ref<NSParagraphStyle> copy = make<NSParagraphStyle>();
        takeOver(*copy, self);
        return copy;
    }
    static Ref<NSObject> mutableCopyWithZone(NSParagraphStyle& self, void*)
    {
        const Ref<NSMutableParagraphStyle> copy = make<NSMutableParagraphStyle>();
        takeOver(*copy, self);
        return copy;
    }

    static void table(Builder& t)
    {
        t.conformsTo({ "NSCopying", "NSMutableCopying" });
        t.classMethods({
            { "defaultParagraphStyle", imp<defaultStyle> },
            { "defaultWritingDirectionForLanguage:", imp<directionForLanguage> },
        });
        using T = NSParagraphStyle;
        t.properties({
            property<&T::alignment_>("alignment", readonly, nonatomic),
            property<&T::lineBreakMode_>("lineBreakMode", readonly, nonatomic),
            property<&T::baseWritingDirection_>("baseWritingDirection", readonly, nonatomic),
            property<&T::lineSpacing_>("lineSpacing", readonly, nonatomic),
            property<&T::paragraphSpacing_>("paragraphSpacing", readonly, nonatomic),
            property<&T::paragraphSpacingBefore_>("paragraphSpacingBefore", readonly, nonatomic),
            property<&T::lineHeightMultiple_>("lineHeightMultiple", readonly, nonatomic),
            property<&T::minimumLineHeight_>("minimumLineHeight", readonly, nonatomic),
            property<&T::maximumLineHeight_>("maximumLineHeight", readonly, nonatomic),
            property<&T::firstLineHeadIndent_>("firstLineHeadIndent", readonly, nonatomic),
            property<&T::headIndent_>("headIndent", readonly, nonatomic),
            property<&T::tailIndent_>("tailIndent", readonly, nonatomic),
            property<&T::tabStops_>("tabStops", readonly, nonatomic),
            property<&T::defaultTabInterval_>("defaultTabInterval", readonly, nonatomic),
            property<&T::hyphenationFactor_>("hyphenationFactor", readonly, nonatomic),
            property<&T::tighteningFactorForTruncation_>(
                "tighteningFactorForTruncation", readonly, nonatomic),
            property<&T::allowsDefaultTighteningForTruncation_>(
                "allowsDefaultTighteningForTruncation", readonly, nonatomic),
            property<&T::headerLevel_>("headerLevel", readonly, nonatomic),
        });
        t.methods({
            { "tabStops", imp<tabStops> },
            { "isEqual:", imp<isEqual> },
            { "hash", imp<hash> },
            { "copyWithZone:", imp<copyWithZone> },
            { "mutableCopyWithZone:", imp<mutableCopyWithZone> },
        });
    }
};
BRINDLE_RECORD(NSParagraphStyle, Values)

// - Shape: "NSAlignment", "NSLineBreakMode", "NSWritingDirection", "NSTabStops" and a number for every measure that is not 0.
template <> struct NSParagraphStyle::Methods<struct Coding> {

    struct Measure {
        const char* key;
        CGFloat NSParagraphStyle::*field;
        bool mayBeNegative;
    };
    static constexpr Measure kMeasures[] = {
        { "NSLineSpacing", &NSParagraphStyle::lineSpacing_, false },
        { "NSParagraphSpacing", &NSParagraphStyle::paragraphSpacing_, false },
        { "NSParagraphSpacingBefore", &NSParagraphStyle::paragraphSpacingBefore_, false },
        { "NSLineHeightMultiple", &NSParagraphStyle::lineHeightMultiple_, false },
        { "NSMinLineHeight", &NSParagraphStyle::minimumLineHeight_, false },
        { "NSMaxLineHeight", &NSParagraphStyle::maximumLineHeight_, false },
        { "NSFirstLineHeadIndent", &NSParagraphStyle::firstLineHeadIndent_, true },
        { "NSHeadIndent", &NSParagraphStyle::headIndent_, true },
        { "NSTailIndent", &NSParagraphStyle::tailIndent_, true },
        { "NSDefaultTabInterval", &NSParagraphStyle::defaultTabInterval_, false },
    };

    static Ref<NSString> keyOf(const Measure& measure)
    {
        return stringFrom(std::string_view(measure.key));
    }

    static void encode(NSParagraphStyle& self, NSCoder* coder)
    {
        const auto number
            = [coder](NSInteger value, NSString* key) { coder->encodeInteger_forKey(value, key); };
        number(static_cast<NSInteger>(self.alignment_), "NSAlignment"_ns);
        number(static_cast<NSInteger>(self.lineBreakMode_), "NSLineBreakMode"_ns);
        number(self.baseWritingDirection_, "NSWritingDirection"_ns);
        number(self.headerLevel_, "NSHeaderLevel"_ns);
        for (const Measure& measure : kMeasures) {
            if (self.*measure.field != 0)
                coder->encodeDouble_forKey(self.*measure.field, keyOf(measure).get());
        }
        coder->encodeFloat_forKey(self.hyphenationFactor_, "NSHyphenationFactor"_ns);
        coder->encodeFloat_forKey(self.tighteningFactorForTruncation_, "NSTighteningFactor"_ns);
        coder->encodeBool_forKey(
            self.allowsDefaultTighteningForTruncation_, "NSAllowsTightening"_ns);
        coder->encodeObject_forKey(self.tabStops_.get(), "NSTabStops"_ns);
    }
    static Ref<NSArray> decodedTabStops(NSCoder* coder)
    {
        NSObject* const classes[] = { NSArray::cls(), NSTextTab::cls() };
        const Ref<NSObject> tabs = coder->decodeObjectOfClasses_forKey(
            NSSet::cls().setWithObjects_count(classes, 2).get(), "NSTabStops"_ns);
        if (!tabs || !tabs->isKindOfClass(NSArray::cls()))
            return nullptr;
        for (NSObject* tab : static_cast<NSArray&>(*tabs)) {
            if (!tab->isKindOfClass(NSTextTab::cls()))
                return nullptr;
        }
        return cast<NSArray>(tabs);
    }
    static Ref<NSObject> initWithCoder(NSParagraphStyle& self, NSCoder* coder)
    {
        const auto number = [coder](NSString* key, NSInteger most, NSInteger otherwise) {
            const NSInteger value = coder->decodeIntegerForKey(key);
            return coder->containsValueForKey(key) && value <= most && value >= -1 ? value
                                                                                   : otherwise;
        };
        const NSInteger alignment
            = number("NSAlignment"_ns, NSTextAlignmentNatural, NSTextAlignmentNatural);
        const NSInteger mode = number("NSLineBreakMode"_ns, NSLineBreakByTruncatingMiddle, 0);
        self.alignment_ = static_cast<NSTextAlignment>(
            alignment < 0 ? NSInteger { NSTextAlignmentNatural } : alignment);
        self.lineBreakMode_ = static_cast<NSLineBreakMode>(std::max<NSInteger>(mode, 0));
        self.baseWritingDirection_ = static_cast<NSWritingDirection>(
            number("NSWritingDirection"_ns, 1, NSWritingDirectionNatural));
        self.headerLevel_ = coder->decodeIntegerForKey("NSHeaderLevel"_ns);
        for (const Measure& measure : kMeasures) {
            const double value = coder->decodeDoubleForKey(keyOf(measure).get());
            self.*measure.field = measure.mayBeNegative ? finite(value) : positive(value);
        }
        self.hyphenationFactor_ = coder->decodeFloatForKey("NSHyphenationFactor"_ns);
        if (coder->containsValueForKey("NSTighteningFactor"_ns))
            self.tighteningFactorForTruncation_ = coder->decodeFloatForKey("NSTighteningFactor"_ns);
        if (coder->containsValueForKey("NSAllowsTightening"_ns))
            self.allowsDefaultTighteningForTruncation_
                = coder->decodeBoolForKey("NSAllowsTightening"_ns);
        self.tabStops_ = decodedTabStops(coder);
        return &self;
    }

    static void table(Builder& t) { declareCoding<encode, initWithCoder>(t); }
};
BRINDLE_RECORD(NSParagraphStyle, Coding)

template <> struct NSMutableParagraphStyle::Methods<struct Changing> {

    using Base = NSParagraphStyle;
    template <CGFloat Base::*Field>
    static void setSize(NSMutableParagraphStyle& self, CGFloat points)
    {
        self.*Field = positive(points);
    }
    template <CGFloat Base::*Field>
    static void setIndent(NSMutableParagraphStyle& self, CGFloat points)
    {
        self.*Field = finite(points);
    }
    template <float Base::*Field> static void setFactor(NSMutableParagraphStyle& self, float factor)
    {
        self.*Field = static_cast<float>(finite(factor));
    }

    // Values that no constant has read as the natural ones.
    static void setAlignment(NSMutableParagraphStyle& self, NSTextAlignment alignment)
    {
        self.alignment_ = alignment > NSTextAlignmentNatural ? NSTextAlignmentNatural : alignment;
    }
    static void setLineBreakMode(NSMutableParagraphStyle& self, NSLineBreakMode mode)
    {
        self.lineBreakMode_
            = mode > NSLineBreakByTruncatingMiddle ? NSLineBreakByWordWrapping : mode;
    }
    static void setDirection(NSMutableParagraphStyle& self, NSWritingDirection direction)
    {
        const bool known = direction == NSWritingDirectionLeftToRight
            || direction == NSWritingDirectionRightToLeft;
        self.baseWritingDirection_ = known ? direction : NSWritingDirectionNatural;
    }
    static void setTightening(NSMutableParagraphStyle& self, bool allowed)
    {
        self.allowsDefaultTighteningForTruncation_ = allowed;
    }
    static void setHeaderLevel(NSMutableParagraphStyle& self, NSInteger level)
    {
        self.headerLevel_ = level;
    }

    static void setTabStops(NSMutableParagraphStyle& self, NSArray* tabStops)
    {
        if (!tabStops) {
            self.tabStops_ = nullptr;
            return;
        }
        std::vector<NSObject*> tabs;
        for (NSObject* tab : *tabStops) {
            requireElement(tab, NSTextTab::cls());
            tabs.push_back(tab);
        }
        std::ranges::stable_sort(
            tabs, {}, [](NSObject* tab) { return static_cast<NSTextTab*>(tab)->location(); });
        self.tabStops_ = NSArray::cls().arrayWithObjects_count(tabs.data(), tabs.size());
    }
    static void addTabStop(NSMutableParagraphStyle& self, NSTextTab* tab)
    {
        if (tab)
            self.setTabStops(self.tabStops()->arrayByAddingObject(tab).get());
    }
    static void removeTabStop(NSMutableParagraphStyle& self, NSTextTab* removed)
    {
        std::vector<NSObject*> tabs;
        const Ref<NSArray> now = self.tabStops();
        for (NSObject* tab : *now) {
            if (!tab->isEqual(removed))
                tabs.push_back(tab);
        }
        self.setTabStops(NSArray::cls().arrayWithObjects_count(tabs.data(), tabs.size()).get());
    }

    static void setParagraphStyle(NSMutableParagraphStyle& self, NSParagraphStyle* style)
    {
        if (!style || !style->isKindOfClass(NSParagraphStyle::cls()))
            return;
        NSParagraphStyle::Methods<struct Values>::takeOver(self, *style);
    }

    static void table(Builder& t)
    {
        using T = NSMutableParagraphStyle;
        t.methods({
            { "setAlignment:", imp<setAlignment> },
            { "setLineBreakMode:", imp<setLineBreakMode> },
            { "setBaseWritingDirection:", imp<setDirection> },
            { "setLineSpacing:", imp<setSize<&T::lineSpacing_>> },
            { "setParagraphSpacing:", imp<setSize<&T::paragraphSpacing_>> },
            { "setParagraphSpacingBefore:", imp<setSize<&T::paragraphSpacingBefore_>> },
            { "setLineHeightMultiple:", imp<setSize<&T::lineHeightMultiple_>> },
            { "setMinimumLineHeight:", imp<setSize<&T::minimumLineHeight_>> },
            { "setMaximumLineHeight:", imp<setSize<&T::maximumLineHeight_>> },
            { "setFirstLineHeadIndent:", imp<setIndent<&T::firstLineHeadIndent_>> },
            { "setHeadIndent:", imp<setIndent<&T::headIndent_>> },
            { "setTailIndent:", imp<setIndent<&T::tailIndent_>> },
            { "setDefaultTabInterval:", imp<setSize<&T::defaultTabInterval_>> },
            { "setHyphenationFactor:", imp<setFactor<&T::hyphenationFactor_>> },
            { "setTighteningFactorForTruncation:",
                imp<setFactor<&T::tighteningFactorForTruncation_>> },
            { "setAllowsDefaultTighteningForTruncation:", imp<setTightening> },
            { "setHeaderLevel:", imp<setHeaderLevel> },
            { "setTabStops:", imp<setTabStops> },
            { "addTabStop:", imp<addTabStop> },
            { "removeTabStop:", imp<removeTabStop> },
            { "setParagraphStyle:", imp<setParagraphStyle> },
        });
    }
};
BRINDLE_RECORD(NSMutableParagraphStyle, Changing)

}
