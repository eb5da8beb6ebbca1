// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "NSObject.h"

namespace brindle {

/// Strings are a class of a folder above: the runtime makes and reads them by message only.
inline Ref<NSString> makeString(const std::string& utf8)
{
    return requireClass("NSString")
        ->send<"stringWithUTF8String:", Ref<NSString>>(static_cast<const char*>(utf8.c_str()));
}

/// Answers a string's text as UTF-8; "(null)" for nil.
inline std::string textOf(NSString* string)
{
    if (!string)
        return "(null)";
    const char* const text = reinterpret_cast<NSObject*>(string)->send<"UTF8String", const char*>();
    return text ? text : "";
}

}
