// SPDX-License-Identifier: Apache-2.0
#include "NSAttributedString.h"

#include <algorithm>

#include "AttributedStringPrivate.h"
#include "runtime/Table.h"

namespace brindle {

using attributes::Gate;
using attributes::Run;

namespace {

    Ref<NSDictionary> copyOf(NSDictionary* attributes)
    {
        return attributes ? cast<NSDictionary>(attributes->copy()) : make<NSDictionary>();
    }

    bool areEqualOrNil(const Ref<NSObject>& a, const Ref<NSObject>& b)
    {
        return a == b || (a && b && a->isEqual(b.get()));
    }

    /// Walks stretch by stretch; what makes a stretch is the answer of `valueAt(index, range)`.
    template <class ValueAt>
    NSRange longest(NSUInteger index, NSRange limit, const ValueAt& valueAt)
    {
        NSRange found {};
        const auto value = valueAt(index, found);
        NSUInteger start = found.location;
        NSUInteger end = NSMaxRange(found);
        while (start > limit.location && areEqualOrNil(valueAt(start - 1, found), value))
            start = found.location;
        while (end < NSMaxRange(limit) && areEqualOrNil(valueAt(end, found), value))
            end = NSMaxRange(found);
        return NSIntersectionRange(NSMakeRange(start, end - start), limit);
    }

    /// Calls `visit` with each stretch of a range, as it is when its turn comes.
    template <class RangeAt, class Visit>
    void forEachStretch(const NSAttributedString& string, NSRange range, bool isReverse,
        const RangeAt& rangeAt, const Visit& visit)
    {
        NSRange rest = range;
        while (rest.length > 0) {
            const NSUInteger lengthBefore = string.length();
            const NSUInteger index = isReverse ? NSMaxRange(rest) - 1 : rest.location;
            const NSRange stretch = NSIntersectionRange(rangeAt(index, rest), rest);
            if (!stretch.length || !visit(index, stretch))
                return;
            // The visitor may have made the text longer or shorter.
            const NSUInteger length = string.length();
            const NSUInteger oldEnd = NSMaxRange(rest);
            if (isReverse) {
                rest.length = stretch.location - rest.location;
            } else {
                const NSUInteger next = NSMaxRange(stretch) + length - lengthBefore;
                const NSUInteger end = std::min(oldEnd + length - lengthBefore, length);
                rest = next < end ? NSMakeRange(next, end - next) : NSMakeRange(end, 0);
            }
        }
    }

}

template <> struct NSAttributedString::Methods<struct Making> {

    static Ref<NSAttributedString> init(NSAttributedString& self)
    {
        return self.initWithString_attributes(""_ns, nullptr);
    }
    static Ref<NSAttributedString> initWithString(NSAttributedString& self, NSString* string)
    {
        return self.initWithString_attributes(string, nullptr);
    }
    static Ref<NSAttributedString> initWithStringAttributes(
        NSAttributedString& self, NSString* string, NSDictionary* attributes)
    {
        constexpr const char* kOperation = "initWithString:attributes:";
        attributes::require(self, kOperation, string, NSString::cls());
        if (attributes)
            attributes::require(self, kOperation, attributes, NSDictionary::cls());
        if (!super<NSAttributedString, "init", Ref<NSObject>>(self))
            return nullptr;
        self.text_ = cast<NSString>(string->copy());
        self.runs_.clear();
        if (const NSUInteger length = self.text_->length())
            self.runs_.push_back({ length, copyOf(attributes) });
        return &self;
    }
    static Ref<NSAttributedString> initWithAttributedString(
        NSAttributedString& self, NSAttributedString* other)
    {
        attributes::require(self, "initWithAttributedString:", other, NSAttributedString::cls());
        if (!super<NSAttributedString, "init", Ref<NSObject>>(self))
            return nullptr;
        const Ref<NSString> text = other->string();
        self.text_ = text ? cast<NSString>(text->copy()) : Ref<NSString>(""_ns);
        self.runs_.clear();
        const NSUInteger length = self.text_->length();
        for (NSUInteger at = 0; at < length;) {
            NSRange range {};
            Ref<NSDictionary> attributes = other->attributesAtIndex_effectiveRange(at, &range);
            // A subclass that answers nonsense must not keep this loop going.
            at = std::clamp(NSMaxRange(range), at + 1, length);
            self.runs_.push_back({ at, copyOf(attributes.get()) });
        }
        return &self;
    }

    static Ref<NSObject> copyWithZone(NSAttributedString& self, void*)
    {
        if (self.isKindOfClass(NSMutableAttributedString::cls()))
            return alloc<NSAttributedString>()->initWithAttributedString(&self);
        return &self;
    }
    static Ref<NSObject> mutableCopyWithZone(NSAttributedString& self, void*)
    {
        return alloc<NSMutableAttributedString>()->initWithAttributedString(&self);
    }

    static void table(Builder& t)
    {
        t.conformsTo({ "NSCopying", "NSMutableCopying" });
        t.methods({
            { "init", imp<init> },
            { "initWithString:", imp<initWithString> },
            { "initWithString:attributes:", imp<initWithStringAttributes> },
            { "initWithAttributedString:", imp<initWithAttributedString> },
            { "copyWithZone:", imp<copyWithZone> },
            { "mutableCopyWithZone:", imp<mutableCopyWithZone> },
        });
    }
};
BRINDLE_RECORD(NSAttributedString, Making)

template <> struct NSAttributedString::Methods<struct Reading> {

    static Ref<NSString> string(NSAttributedString& self) { return self.text_; }
    static NSUInteger length(NSAttributedString& self) { return maybe(self.string())->length(); }

    static Ref<NSDictionary> attributesAtIndex(
        NSAttributedString& self, NSUInteger index, NSRange* range)
    {
        const std::size_t at = attributes::runAt(self.runs_, index);
        if (at == self.runs_.size())
            attributes::requireIndex(self, "attributesAtIndex:effectiveRange:", self.length());
        const NSUInteger start = attributes::startOf(self.runs_, at);
        if (range)
            *range = NSMakeRange(start, self.runs_[at].end - start);
        return self.runs_[at].attributes;
    }
    static Ref<NSDictionary> longestAttributes(
        NSAttributedString& self, NSUInteger index, NSRange* range, NSRange limit)
    {
        constexpr const char* kOperation = "attributesAtIndex:longestEffectiveRange:inRange:";
        attributes::requireRange(self, kOperation, limit);
        attributes::requireIndex(self, kOperation, index);
        if (range)
            *range = longest(index, limit, [&self](NSUInteger at, NSRange& found) -> Ref<NSObject> {
                return self.attributesAtIndex_effectiveRange(at, &found);
            });
        return self.attributesAtIndex_effectiveRange(index, nullptr);
    }
    static Ref<NSObject> attribute(
        NSAttributedString& self, NSString* name, NSUInteger index, NSRange* range)
    {
        return self.attributesAtIndex_effectiveRange(index, range)->objectForKey(name);
    }
    static Ref<NSObject> longestAttribute(
        NSAttributedString& self, NSString* name, NSUInteger index, NSRange* range, NSRange limit)
    {
        constexpr const char* kOperation = "attribute:atIndex:longestEffectiveRange:inRange:";
        attributes::requireRange(self, kOperation, limit);
        attributes::requireIndex(self, kOperation, index);
        if (range)
            *range = longest(index, limit, [&](NSUInteger at, NSRange& found) {
                return self.attribute_atIndex_effectiveRange(name, at, &found);
            });
        return self.attribute_atIndex_effectiveRange(name, index, nullptr);
    }

    static Ref<NSAttributedString> substring(NSAttributedString& self, NSRange range)
    {
        attributes::requireRange(self, "attributedSubstringFromRange:", range);
        Ref<NSAttributedString> part = alloc<NSAttributedString>();
        const Ref<NSString> text = self.string()->substringWithRange(range);
        part = part->initWithString(text.get());
        std::vector<Run>& runs = Gate::runs(*part);
        runs.clear();
        for (NSUInteger at = range.location; at < NSMaxRange(range);) {
            NSRange found {};
            Ref<NSDictionary> attributes = self.attributesAtIndex_effectiveRange(at, &found);
            at = std::clamp(NSMaxRange(found), at + 1, NSMaxRange(range));
            runs.push_back({ at - range.location, std::move(attributes) });
        }
        return part;
    }

    static bool isEqualToAttributedString(NSAttributedString& self, NSAttributedString* other)
    {
        if (other == &self)
            return true;
        if (!other || !maybe(self.string())->isEqualToString(other->string().get()))
            return false;
        const NSUInteger length = self.length();
        for (NSUInteger at = 0; at < length;) {
            NSRange a {};
            NSRange b {};
            const Ref<NSDictionary> mine = self.attributesAtIndex_effectiveRange(at, &a);
            const Ref<NSDictionary> others = other->attributesAtIndex_effectiveRange(at, &b);
            if (!areEqualOrNil(mine, others))
                return false;
            at = std::max(at + 1, std::min(NSMaxRange(a), NSMaxRange(b)));
        }
        return true;
    }
    static bool isEqual(NSAttributedString& self, NSObject* other)
    {
        return other && other->isKindOfClass(NSAttributedString::cls())
            && self.isEqualToAttributedString(static_cast<NSAttributedString*>(other));
    }
    static std::uint64_t hash(NSAttributedString& self) { return maybe(self.string())->hash(); }

    static Ref<NSString> description(NSAttributedString& self)
    {
        std::string text;
        const Ref<NSString> whole = self.string();
        self.enumerateAttributesInRange_options_usingBlock(
            NSMakeRange(0, self.length()), 0, [&](NSDictionary* attributes, NSRange range, bool*) {
                text
                    += utf8Of(whole->substringWithRange(range)) + utf8Of(attributes->description());
            });
        return stringFrom(text);
    }

    static void enumerate(NSAttributedString& self, NSRange range,
        NSAttributedStringEnumerationOptions options,
        Closure<void(NSDictionary*, NSRange, bool*)>* closure)
    {
        attributes::requireRange(self, "enumerateAttributesInRange:options:usingBlock:", range);
        const Visitor block(closure);
        forEachStretch(
            self, range, options & NSAttributedStringEnumerationReverse,
            [&](NSUInteger index, NSRange) {
                NSRange found {};
                self.attributesAtIndex_effectiveRange(index, &found);
                return found;
            },
            [&](NSUInteger index, NSRange stretch) {
                bool stop = false;
                block(self.attributesAtIndex_effectiveRange(index, nullptr).get(), stretch, &stop);
                return !stop;
            });
    }
    static void enumerateAttribute(NSAttributedString& self, NSString* name, NSRange range,
        NSAttributedStringEnumerationOptions options,
        Closure<void(NSObject*, NSRange, bool*)>* closure)
    {
        attributes::requireRange(self, "enumerateAttribute:inRange:options:usingBlock:", range);
        const ValueVisitor block(closure);
        const bool mayCut = options & NSAttributedStringEnumerationLongestEffectiveRangeNotRequired;
        forEachStretch(
            self, range, options & NSAttributedStringEnumerationReverse,
            [&](NSUInteger index, NSRange rest) {
                NSRange found {};
                if (mayCut)
                    self.attribute_atIndex_effectiveRange(name, index, &found);
                else
                    self.attribute_atIndex_longestEffectiveRange_inRange(name, index, &found, rest);
                return found;
            },
            [&](NSUInteger index, NSRange stretch) {
                bool stop = false;
                block(self.attribute_atIndex_effectiveRange(name, index, nullptr).get(), stretch,
                    &stop);
                return !stop;
            });
    }

    static void table(Builder& t)
    {
        t.methods({
            { "string", imp<string> },
            { "length", imp<length> },
            { "attributesAtIndex:effectiveRange:", imp<attributesAtIndex> },
            { "attributesAtIndex:longestEffectiveRange:inRange:", imp<longestAttributes> },
            { "attribute:atIndex:effectiveRange:", imp<attribute> },
            { "attribute:atIndex:longestEffectiveRange:inRange:", imp<longestAttribute> },
            { "attributedSubstringFromRange:", imp<substring> },
            { "isEqualToAttributedString:", imp<isEqualToAttributedString> },
            { "isEqual:", imp<isEqual> },
            { "hash", imp<hash> },
            { "description", imp<description> },
            { "enumerateAttributesInRange:options:usingBlock:", imp<enumerate> },
            { "enumerateAttribute:inRange:options:usingBlock:", imp<enumerateAttribute> },
        });
    }
};
BRINDLE_RECORD(NSAttributedString, Reading)

}
