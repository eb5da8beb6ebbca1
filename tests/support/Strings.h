// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ostream>
#include <string>

#include <gtest/gtest.h>

#include "foundation/NSString.h"
#include "runtime/NSException.h"

// Strings in tests: compared as UTF-8, shown as text when a test fails, exceptions as their text.

namespace brindle {

/// Answers the text as UTF-8; nil reads "(nil)", so that it differs from the empty string.
inline std::string utf8(const NSString* string) { return string ? utf8Of(string) : "(nil)"; }
inline std::string utf8(const Ref<NSString>& string) { return utf8(string.get()); }
/// Answers an object's description.
inline std::string textOf(const Ref<NSObject>& object)
{
    return object ? utf8(object->description()) : "(nil)";
}

inline void PrintTo(const Ref<NSString>& string, std::ostream* out)
{
    *out << '"' << utf8(string) << '"';
}
inline void PrintTo(const NSRange& range, std::ostream* out)
{
    *out << '{' << static_cast<NSInteger>(range.location) << ", " << range.length << '}';
}

/// Runs a body and answers "Name: reason" of what it raised, "" when it raised nothing.
template <class Body> std::string raisedBy(Body body)
{
    try {
        body();
    } catch (const Exception& raised) {
        return raised.what();
    }
    return "";
}

}
