// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSString.h"

namespace brindle {

/// Turns objects into text for people, and their text back into objects. The base of formatters; a subclass overrides
/// `stringForObjectValue:` and, where text can be read, `getObjectValue:forString:errorDescription:`.
class NSFormatter : public NSObject {
    BRINDLE_OBJECT(NSFormatter, NSObject)

public:
    /// - Nil: for an object that the formatter does not write.
    Ref<NSString> stringForObjectValue(NSObject* object) const
    {
        return send<"stringForObjectValue:", Ref<NSString>>(object);
    }
    /// Answers the text that a user edits: the same, unless a subclass knows better.
    Ref<NSString> editingStringForObjectValue(NSObject* object) const
    {
        return send<"editingStringForObjectValue:", Ref<NSString>>(object);
    }
    /// Reads a text: YES and the object, or NO and a line for the user. Both places may be nullptr.
    bool getObjectValue_forString_errorDescription(
        Ref<NSObject>* object, NSString* string, Ref<NSString>* error) const
    {
        return send<"getObjectValue:forString:errorDescription:", bool>(object, string, error);
    }
};

/// Hands out what a text was read as, or says that it could not be.
BRINDLE_EXPORT bool reportReading(
    const Ref<NSObject>& read, Ref<NSObject>* object, Ref<NSString>* error);

}
