// SPDX-License-Identifier: Apache-2.0

// Property lists of every format: checked, shown, converted.
//
//   brindle-plist lint FILE                        one line, "accept" or "reject POSITION REASON"; the position is a byte
//                                                  of a binary list, a line of any other; ends with 1 for a refusal
//   brindle-plist print FILE                       all values, much as JSON writes them
//   brindle-plist convert FILE [xml|binary [OUT]]  to the other format, or that one, on standard output or in a file

#include <cstdio>
#include <string>

#include "foundation/NSArray.h"
#include "foundation/NSData.h"
#include "foundation/NSDate.h"
#include "foundation/NSDictionary.h"
#include "foundation/NSError.h"
#include "foundation/NSNumber.h"
#include "foundation/NSPropertyListSerialization.h"
#include "foundation/NSString.h"
#include "foundation/PropertyListUID.h"

using namespace brindle;

namespace {

struct List {
    Ref<NSObject> value; ///< nil when the file holds none
    NSPropertyListFormat format {};
    Ref<NSError> error;
};

List read(const char* path)
{
    List list;
    list.value = NSPropertyListSerialization::cls().propertyListWithData_options_format_error(
        NSData::cls().dataWithContentsOfFile(stringFrom(path).get()).get(), NSPropertyListImmutable,
        &list.format, &list.error);
    return list;
}

std::string quoted(const NSString* string)
{
    std::string out = "\"";
    for (const char c : utf8Of(string)) {
        if (c == '"' || c == '\\')
            out += '\\';
        if (static_cast<unsigned char>(c) >= 0x20) {
            out += c;
            continue;
        }
        char escape[8];
        std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(c));
        out += escape;
    }
    return out + '"';
}

std::string hexadecimal(const NSData* data)
{
    std::string out = "<";
    for (const unsigned char byte : bytesOf(data)) {
        char digits[4];
        std::snprintf(digits, sizeof digits, "%02x", static_cast<unsigned>(byte));
        out += digits;
    }
    return out + '>';
}

/// Writes values to standard output until there is too much of it: a few hundred bytes of list, whose containers are
/// all shared, can stand for more values than anybody will read.
class Printer {
public:
    /// - Returns: whether everything was written.
    bool print(NSObject* value)
    {
        put(value, "");
        write("\n");
        return left_ > 0;
    }

private:
    void write(const std::string& text)
    {
        if (text.size() >= left_) {
            left_ = 0;
            return;
        }
        left_ -= text.size();
        std::fwrite(text.data(), 1, text.size(), stdout);
    }

    // The readers refuse what is nested more than 512 deep, so that going down here is safe.
    void putAll(NSArray* array, const std::string& margin)
    {
        const char* separator = "\n";
        write("[");
        for (NSObject* const item : *array) {
            if (left_ == 0)
                return;
            write(separator + margin + "  ");
            put(item, margin + "  ");
            separator = ",\n";
        }
        write(array->count() ? "\n" + margin + "]" : "]");
    }
    void putAll(NSDictionary* dictionary, const std::string& margin)
    {
        const char* separator = "\n";
        write("{");
        for (NSObject* const key : *dictionary) {
            if (left_ == 0)
                return;
            write(separator + margin + "  " + quoted(static_cast<NSString*>(key)) + ": ");
            put(dictionary->objectForKey(key).get(), margin + "  ");
            separator = ",\n";
        }
        write(dictionary->count() ? "\n" + margin + "}" : "}");
    }
    void put(NSObject* value, const std::string& margin)
    {
        if (value->isKindOfClass(NSArray::cls()))
            putAll(static_cast<NSArray*>(value), margin);
        else if (value->isKindOfClass(NSDictionary::cls()))
            putAll(static_cast<NSDictionary*>(value), margin);
        else
            write(textOf(value));
    }
    static std::string textOf(NSObject* value)
    {
        if (value->isKindOfClass(NSString::cls()))
            return quoted(static_cast<NSString*>(value));
        if (value->isKindOfClass(NSData::cls()))
            return hexadecimal(static_cast<NSData*>(value));
        if (value->isKindOfClass(PropertyListUID::cls()))
            return "UID("
                + std::to_string(static_cast<PropertyListUID*>(value)->unsignedIntegerValue())
                + ")";
        if (value->isKindOfClass(NSNumber::cls())
            && *static_cast<NSNumber*>(value)->objCType() == 'B')
            return static_cast<NSNumber*>(value)->boolValue() ? "true" : "false";
        return utf8Of(value->description());
    }

    std::size_t left_ = std::size_t { 64 } << 20; // bytes
};

/// Errors say "line 3: reason" or "byte 8: reason".
int refuse(const NSError* error)
{
    const Ref<NSObject> why = error->userInfo()->objectForKey(NSDebugDescriptionErrorKey);
    const std::string text = utf8Of(why->description());
    const std::size_t colon = text.find(": ");
    const std::size_t space = text.find(' ');
    if (colon == std::string::npos || space > colon)
        std::printf("reject 0 %s\n", text.c_str());
    else
        std::printf("reject %s %s\n", text.substr(space + 1, colon - space - 1).c_str(),
            text.substr(colon + 2).c_str());
    return 1;
}

int convert(const List& list, std::string format, const char* path)
{
    if (format.empty())
        format = list.format == NSPropertyListXMLFormat_v1_0 ? "binary" : "xml";
    Ref<NSError> error;
    const Ref<NSData> data
        = NSPropertyListSerialization::cls().dataWithPropertyList_format_options_error(
            list.value.get(),
            format == "binary" ? NSPropertyListBinaryFormat_v1_0 : NSPropertyListXMLFormat_v1_0, 0,
            &error);
    if (!data)
        return refuse(error.get());
    if (path)
        return data->writeToFile_atomically(stringFrom(path).get(), true) ? 0 : 1;
    return std::fwrite(data->bytes(), 1, data->length(), stdout) == data->length() ? 0 : 1;
}

int usage()
{
    std::fprintf(
        stderr, "brindle-plist lint FILE | print FILE | convert FILE [xml|binary [OUT]]\n");
    return 2;
}

}

int main(int count, char** arguments)
{
    const std::string verb = count > 2 ? arguments[1] : "";
    const std::string format = count > 3 ? arguments[3] : "";
    const bool isConvert = verb == "convert" && count <= 5
        && (format.empty() || format == "xml" || format == "binary");
    if (!isConvert && !((verb == "lint" || verb == "print") && count == 3))
        return usage();
    const List list = read(arguments[2]);
    if (!list.value)
        return refuse(list.error.get());
    if (isConvert)
        return convert(list, format, count > 4 ? arguments[4] : nullptr);
    if (verb == "lint") {
        std::printf("accept\n");
        return 0;
    }
    if (!Printer().print(list.value.get())) {
        std::fprintf(stderr, "brindle-plist: more than 64 MB of values, left out\n");
        return 1;
    }
    return 0;
}
