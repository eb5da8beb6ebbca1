// SPDX-License-Identifier: Apache-2.0
#include "NSMutableAttributedString.h"

#include <algorithm>

#include "AttributedStringPrivate.h"
#include "NSMutableDictionary.h"
#include "NSMutableString.h"
#include "runtime/Table.h"

namespace brindle {

using attributes::Gate;

/// The text of an attributed string as a string of its own: every edit edits its owner.
class AttributedText : public NSMutableString {
    BRINDLE_OBJECT(AttributedText, NSMutableString)

public:
    static Ref<AttributedText> of(NSMutableAttributedString& owner)
    {
        Ref<AttributedText> text = make<AttributedText>();
        text->owner_ = &owner;
        return text;
    }

private:
    Ref<NSMutableAttributedString> owner_;
};

template <> struct AttributedText::Methods<struct Forwarding> {

    static NSUInteger length(AttributedText& self)
    {
        return self.owner_ ? self.owner_->length() : 0;
    }
    static unichar characterAtIndex(AttributedText& self, NSUInteger index)
    {
        const Ref<NSString> text = self.owner_ ? self.owner_->string() : Ref<NSString>(""_ns);
        return text->characterAtIndex(index);
    }
    static void getCharacters(AttributedText& self, unichar* buffer, NSRange range)
    {
        const Ref<NSString> text = self.owner_ ? self.owner_->string() : Ref<NSString>(""_ns);
        text->getCharacters_range(buffer, range);
    }
    static void replaceCharacters(AttributedText& self, NSRange range, NSString* text)
    {
        if (self.owner_)
            self.owner_->replaceCharactersInRange_withString(range, text);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "length", imp<length> },
            { "characterAtIndex:", imp<characterAtIndex> },
            { "getCharacters:range:", imp<getCharacters> },
            { "replaceCharactersInRange:withString:", imp<replaceCharacters> },
        });
    }
};
BRINDLE_RECORD(AttributedText, Forwarding)

// All changes go through replaceCharactersInRange:withString: and setAttributes:range:, which a subclass may override.
template <> struct NSMutableAttributedString::Methods<struct Editing> {

    /// Strings are shared until the first edit.
    static NSMutableString& ownText(NSMutableAttributedString& self)
    {
        Ref<NSString>& text = Gate::text(self);
        if (!text || !text->isKindOfClass(NSMutableString::cls()))
            text = text ? cast<NSString>(text->mutableCopy())
                        : Ref<NSString>(make<NSMutableString>());
        return static_cast<NSMutableString&>(*text);
    }

    static void replaceString(NSMutableAttributedString& self, NSRange range, NSString* text)
    {
        constexpr const char* kOperation = "replaceCharactersInRange:withString:";
        attributes::require(self, kOperation, text, NSString::cls());
        attributes::requireRange(self, kOperation, range);
        const NSUInteger length = text->length();
        ownText(self).replaceCharactersInRange_withString(range, text);
        attributes::resize(Gate::runs(self), range, length);
    }
    static void setAttributes(
        NSMutableAttributedString& self, NSDictionary* attributes, NSRange range)
    {
        constexpr const char* kOperation = "setAttributes:range:";
        if (attributes)
            attributes::require(self, kOperation, attributes, NSDictionary::cls());
        attributes::requireRange(self, kOperation, range);
        const Ref<NSDictionary> copy
            = attributes ? cast<NSDictionary>(attributes->copy()) : make<NSDictionary>();
        attributes::assign(Gate::runs(self), range, copy.get());
    }

    /// Replaces the attributes of every stretch by what `change` makes of them.
    template <class Change>
    static void changeAttributes(
        NSMutableAttributedString& self, NSRange range, const Change& change)
    {
        self.beginEditing();
        Ref<NSDictionary> last;
        Ref<NSMutableDictionary> changed;
        for (NSUInteger at = range.location; at < NSMaxRange(range);) {
            NSRange found {};
            const Ref<NSDictionary> attributes = self.attributesAtIndex_effectiveRange(at, &found);
            const NSUInteger end = std::clamp(NSMaxRange(found), at + 1, NSMaxRange(range));
            if (attributes != last) {
                changed = cast<NSMutableDictionary>(attributes->mutableCopy());
                change(*changed);
                last = attributes;
            }
            self.setAttributes_range(changed.get(), NSMakeRange(at, end - at));
            at = end;
        }
        self.endEditing();
    }
    static void addAttribute(
        NSMutableAttributedString& self, NSString* name, NSObject* value, NSRange range)
    {
        constexpr const char* kOperation = "addAttribute:value:range:";
        attributes::require(self, kOperation, name, NSString::cls());
        attributes::require(self, kOperation, value, NSObject::cls());
        attributes::requireRange(self, kOperation, range);
        changeAttributes(self, range,
            [&](NSMutableDictionary& attributes) { attributes.setObject_forKey(value, name); });
    }
    static void addAttributes(NSMutableAttributedString& self, NSDictionary* added, NSRange range)
    {
        constexpr const char* kOperation = "addAttributes:range:";
        attributes::require(self, kOperation, added, NSDictionary::cls());
        attributes::requireRange(self, kOperation, range);
        changeAttributes(self, range,
            [&](NSMutableDictionary& attributes) { attributes.addEntriesFromDictionary(added); });
    }
    static void removeAttribute(NSMutableAttributedString& self, NSString* name, NSRange range)
    {
        constexpr const char* kOperation = "removeAttribute:range:";
        attributes::require(self, kOperation, name, NSString::cls());
        attributes::requireRange(self, kOperation, range);
        changeAttributes(self, range,
            [&](NSMutableDictionary& attributes) { attributes.removeObjectForKey(name); });
    }

    static void replaceAttributed(
        NSMutableAttributedString& self, NSRange range, NSAttributedString* text)
    {
        constexpr const char* kOperation = "replaceCharactersInRange:withAttributedString:";
        attributes::require(self, kOperation, text, NSAttributedString::cls());
        attributes::requireRange(self, kOperation, range);
        // The text may be the receiver itself.
        const Ref<NSAttributedString> source = cast<NSAttributedString>(text->copy());
        const NSUInteger length = source->length();
        self.beginEditing();
        self.replaceCharactersInRange_withString(range, source->string().get());
        for (NSUInteger at = 0; at < length;) {
            NSRange found {};
            const Ref<NSDictionary> attributes
                = source->attributesAtIndex_effectiveRange(at, &found);
            const NSUInteger end = std::clamp(NSMaxRange(found), at + 1, length);
            self.setAttributes_range(attributes.get(), NSMakeRange(range.location + at, end - at));
            at = end;
        }
        self.endEditing();
    }
    static void insert(NSMutableAttributedString& self, NSAttributedString* text, NSUInteger index)
    {
        self.replaceCharactersInRange_withAttributedString(NSMakeRange(index, 0), text);
    }
    static void append(NSMutableAttributedString& self, NSAttributedString* text)
    {
        self.replaceCharactersInRange_withAttributedString(NSMakeRange(self.length(), 0), text);
    }
    static void deleteCharacters(NSMutableAttributedString& self, NSRange range)
    {
        self.replaceCharactersInRange_withString(range, ""_ns);
    }
    static void setAttributedString(NSMutableAttributedString& self, NSAttributedString* text)
    {
        self.replaceCharactersInRange_withAttributedString(NSMakeRange(0, self.length()), text);
    }
    static Ref<NSMutableString> mutableString(NSMutableAttributedString& self)
    {
        return AttributedText::of(self);
    }
    static void nothing(NSMutableAttributedString&) { }

    static void table(Builder& t)
    {
        t.methods({
            { "replaceCharactersInRange:withString:", imp<replaceString> },
            { "setAttributes:range:", imp<setAttributes> },
            { "addAttribute:value:range:", imp<addAttribute> },
            { "addAttributes:range:", imp<addAttributes> },
            { "removeAttribute:range:", imp<removeAttribute> },
            { "replaceCharactersInRange:withAttributedString:", imp<replaceAttributed> },
            { "insertAttributedString:atIndex:", imp<insert> },
            { "appendAttributedString:", imp<append> },
            { "deleteCharactersInRange:", imp<deleteCharacters> },
            { "setAttributedString:", imp<setAttributedString> },
            { "mutableString", imp<mutableString> },
            { "beginEditing", imp<nothing> },
            { "endEditing", imp<nothing> },
        });
    }
};
BRINDLE_RECORD(NSMutableAttributedString, Editing)

}
