// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

#include "foundation/NSArray.h"
#include "foundation/NSData.h"
#include "foundation/NSDate.h"
#include "foundation/NSDictionary.h"
#include "foundation/NSError.h"
#include "foundation/NSNumber.h"
#include "foundation/NSPropertyListSerialization.h"
#include "support/Strings.h"

// Property lists in tests: read and written in one word, with failures as text.

namespace brindle::test {

inline constexpr NSPropertyListFormat kBinary = NSPropertyListBinaryFormat_v1_0;
inline constexpr NSPropertyListFormat kXML = NSPropertyListXMLFormat_v1_0;

inline Ref<NSData> dataOf(std::string_view bytes)
{
    return NSData::cls().dataWithBytes_length(bytes.data(), bytes.size());
}

inline std::string bytesIn(const Ref<NSData>& data)
{
    return data ? std::string(static_cast<const char*>(data->bytes()), data->length()) : "(nil)";
}

inline Ref<NSObject> readList(std::string_view bytes, NSPropertyListReadOptions options = 0)
{
    return NSPropertyListSerialization::cls().propertyListWithData_options_format_error(
        dataOf(bytes).get(), options, nullptr, nullptr);
}

/// Answers "code: text" of the failure, "accepted" when there is none.
inline std::string readFailure(std::string_view bytes)
{
    Ref<NSError> error;
    if (NSPropertyListSerialization::cls().propertyListWithData_options_format_error(
            dataOf(bytes).get(), 0, nullptr, &error))
        return "accepted";
    if (!error)
        return "no error";
    return std::to_string(error->code()) + ": "
        + textOf(error->userInfo()->objectForKey(NSDebugDescriptionErrorKey));
}

inline std::string writeList(const Ref<NSObject>& list, NSPropertyListFormat format)
{
    return bytesIn(NSPropertyListSerialization::cls().dataWithPropertyList_format_options_error(
        list.get(), format, 0, nullptr));
}

/// Answers "code: text" of the failure, "written" when there is none.
inline std::string writeFailure(const Ref<NSObject>& list, NSPropertyListFormat format)
{
    Ref<NSError> error;
    if (NSPropertyListSerialization::cls().dataWithPropertyList_format_options_error(
            list.get(), format, 0, &error))
        return "written";
    return std::to_string(error->code()) + ": "
        + textOf(error->userInfo()->objectForKey(NSDebugDescriptionErrorKey));
}

inline Ref<NSObject> string(std::string_view utf8) { return stringFrom(utf8); }
inline Ref<NSObject> date(double seconds)
{
    return NSDate::cls().dateWithTimeIntervalSinceReferenceDate(seconds);
}
inline Ref<NSObject> number(NSInteger value) { return NSNumber::cls().numberWithInteger(value); }

/// Writes a binary list byte by byte. Objects are given as their bytes; references have one byte.
inline std::string binaryList(std::initializer_list<std::string_view> objects, unsigned top = 0,
    std::string_view header = "bplist00")
{
    std::string out(header);
    std::string table;
    for (const std::string_view object : objects) {
        table += static_cast<char>(out.size() >> 8);
        table += static_cast<char>(out.size());
        out += object;
    }
    const std::size_t start = out.size();
    const auto word = [](std::size_t value) {
        std::string text;
        for (int shift = 56; shift >= 0; shift -= 8)
            text += static_cast<char>(value >> shift);
        return text;
    };
    return out + table + std::string("\0\0\0\0\0\0\2\1", 8) + word(objects.size()) + word(top)
        + word(start);
}

/// Answers arrays nested so deep, the innermost empty.
inline Ref<NSObject> nestedArrays(int depth)
{
    Ref<NSObject> list = NSArray::cls().array();
    for (int i = 1; i < depth; ++i)
        list = makeArray({ list.get() });
    return list;
}

}
