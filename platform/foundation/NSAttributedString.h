// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "NSString.h"
#include "runtime/Block.h"

namespace brindle {

class NSAttributedString;
class NSDictionary;

/// How attributes are enumerated; bits that are added together.
using NSAttributedStringEnumerationOptions = NSUInteger;
enum : NSUInteger {
    NSAttributedStringEnumerationReverse = 2,
    /// Stretches may be cut where other attributes change.
    NSAttributedStringEnumerationLongestEffectiveRangeNotRequired = 1 << 20,
};

namespace attributes {

    /// A stretch of text with one set of attributes. It begins where the one before it ends.
    struct Run {
        NSUInteger end = 0;
        Ref<NSDictionary> attributes;
    };

    struct Gate;

}

/// Text with attributes: dictionaries of names and values that hold for stretches of it. Never changes.
///
/// A subclass may keep its text in its own way: it overrides `string` and `attributesAtIndex:effectiveRange:`, and
/// everything else follows. Indexes and ranges count UTF-16 units. Effective ranges may be null pointers.
/// - Raises: `NSRangeException` for an index at or behind the end, and for a range that leaves the text ("*** -[NSAttributedString
///   attributesAtIndex:effectiveRange:]: Out of bounds"); `NSInvalidArgumentException` for a nil string.
/// Thread: any; a string that nobody changes is safe to read from several threads at once.
class NSAttributedString : public NSObject {
    BRINDLE_OBJECT(NSAttributedString, NSObject)

public:
    // ---- making

    Ref<NSAttributedString> initWithString(NSString* string)
    {
        return send<"initWithString:", Ref<NSAttributedString>>(string);
    }
    /// Gives the whole text these attributes; nil means none.
    Ref<NSAttributedString> initWithString_attributes(NSString* string, NSDictionary* attributes)
    {
        return send<"initWithString:attributes:", Ref<NSAttributedString>>(string, attributes);
    }
    Ref<NSAttributedString> initWithAttributedString(NSAttributedString* other)
    {
        return send<"initWithAttributedString:", Ref<NSAttributedString>>(other);
    }

    // ---- text

    /// Answers the text alone. That of a string which changes is good until the next change.
    Ref<NSString> string() const { return send<"string", Ref<NSString>>(); }
    NSUInteger length() const { return send<"length", NSUInteger>(); }
    Ref<NSAttributedString> attributedSubstringFromRange(NSRange range) const
    {
        return send<"attributedSubstringFromRange:", Ref<NSAttributedString>>(range);
    }
    /// Answers whether text and attributes are equal.
    bool isEqualToAttributedString(NSAttributedString* other) const
    {
        return send<"isEqualToAttributedString:", bool>(other);
    }

    // ---- attributes at a place

    /// Answers the attributes of the unit at an index, an empty dictionary where it has none.
    /// - range: receives a stretch with these attributes around the index; it may be longer than that.
    Ref<NSDictionary> attributesAtIndex_effectiveRange(NSUInteger index, NSRange* range) const
    {
        return send<"attributesAtIndex:effectiveRange:", Ref<NSDictionary>>(index, range);
    }
    /// - limit: the range receives the longest stretch that lies in it.
    Ref<NSDictionary> attributesAtIndex_longestEffectiveRange_inRange(
        NSUInteger index, NSRange* range, NSRange limit) const
    {
        return send<"attributesAtIndex:longestEffectiveRange:inRange:", Ref<NSDictionary>>(
            index, range, limit);
    }
    /// - Nil: where the unit does not have this attribute; the range then is one without it.
    Ref<NSObject> attribute_atIndex_effectiveRange(
        NSString* name, NSUInteger index, NSRange* range) const
    {
        return send<"attribute:atIndex:effectiveRange:", Ref<NSObject>>(name, index, range);
    }
    Ref<NSObject> attribute_atIndex_longestEffectiveRange_inRange(
        NSString* name, NSUInteger index, NSRange* range, NSRange limit) const
    {
        return send<"attribute:atIndex:longestEffectiveRange:inRange:", Ref<NSObject>>(
            name, index, range, limit);
    }

    // ---- all stretches of a range, in order: setting `*stop` to true ends the enumeration after that stretch

    using Visitor = Block<void(NSDictionary* attributes, NSRange range, bool* stop)>;
    /// Receives nil for stretches without the attribute.
    using ValueVisitor = Block<void(NSObject* value, NSRange range, bool* stop)>;

    /// The closure may change the string within the stretch it was called with.
    void enumerateAttributesInRange_options_usingBlock(
        NSRange range, NSAttributedStringEnumerationOptions options, const Visitor& block) const
    {
        send<"enumerateAttributesInRange:options:usingBlock:">(range, options, block.get());
    }
    void enumerateAttribute_inRange_options_usingBlock(NSString* name, NSRange range,
        NSAttributedStringEnumerationOptions options, const ValueVisitor& block) const
    {
        send<"enumerateAttribute:inRange:options:usingBlock:">(name, range, options, block.get());
    }

private:
    friend struct attributes::Gate;

    Ref<NSString> text_;
    std::vector<attributes::Run> runs_; // in order, cover the text; neighbours differ
};

}
