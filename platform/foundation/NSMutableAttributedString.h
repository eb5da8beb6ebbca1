// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSAttributedString.h"

namespace brindle {

class NSMutableString;

/// Text with attributes that can be edited in place.
///
/// A subclass that keeps its text in its own way overrides `replaceCharactersInRange:withString:` and
/// `setAttributes:range:` besides the two operations that `NSAttributedString` names.
/// - Raises: as `NSAttributedString`; `NSInvalidArgumentException` for a nil attribute value or name.
/// Thread: one at a time.
class NSMutableAttributedString : public NSAttributedString {
    BRINDLE_OBJECT(NSMutableAttributedString, NSAttributedString)

public:
    // ---- text

    /// Replaces text. What comes in takes the attributes of the first unit it replaces; where it replaces nothing, those of
    /// the unit before it, or else of the one behind it.
    void replaceCharactersInRange_withString(NSRange range, NSString* text)
    {
        send<"replaceCharactersInRange:withString:">(range, text);
    }
    /// Replaces text; what comes in keeps its own attributes.
    void replaceCharactersInRange_withAttributedString(NSRange range, NSAttributedString* text)
    {
        send<"replaceCharactersInRange:withAttributedString:">(range, text);
    }
    void insertAttributedString_atIndex(NSAttributedString* text, NSUInteger index)
    {
        send<"insertAttributedString:atIndex:">(text, index);
    }
    void appendAttributedString(NSAttributedString* text) { send<"appendAttributedString:">(text); }
    void deleteCharactersInRange(NSRange range) { send<"deleteCharactersInRange:">(range); }
    void setAttributedString(NSAttributedString* text) { send<"setAttributedString:">(text); }
    /// Answers the receiver's text as a string whose edits edit the receiver.
    Ref<NSMutableString> mutableString() { return send<"mutableString", Ref<NSMutableString>>(); }

    // ---- attributes

    /// Replaces all attributes of a range; nil removes them.
    void setAttributes_range(NSDictionary* attributes, NSRange range)
    {
        send<"setAttributes:range:">(attributes, range);
    }
    void addAttribute_value_range(NSString* name, NSObject* value, NSRange range)
    {
        send<"addAttribute:value:range:">(name, value, range);
    }
    /// Adds attributes; they win over those that are there.
    void addAttributes_range(NSDictionary* attributes, NSRange range)
    {
        send<"addAttributes:range:">(attributes, range);
    }
    void removeAttribute_range(NSString* name, NSRange range)
    {
        send<"removeAttribute:range:">(name, range);
    }

    // ---- groups of changes, for subclasses that tell somebody about them; without effect here

    void beginEditing() { send<"beginEditing">(); }
    void endEditing() { send<"endEditing">(); }
};

}
