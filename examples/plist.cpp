// SPDX-License-Identifier: Apache-2.0

// Property lists of every format: checked, shown, converted.
//
//   plist lint FILE               one line, "accept FORMAT" or "reject PLACE: REASON"; ends with 1 for a refusal
//   plist print FILE              all values, much as JSON writes them
//   plist convert FORMAT IN OUT   to "xml" or "binary"

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

const char* nameOf(NSPropertyListFormat format)
{
    return format == NSPropertyListBinaryFormat_v1_0 ? "binary"
        : format == NSPropertyListXMLFormat_v1_0     ? "xml"
                                                     : "text";
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

void print(NSObject* value, const std::string& margin);

// The readers refuse what is nested more than 512 deep, so that going down here is safe.
void printAll(NSArray* array, const std::string& margin)
{
    const char* separator = "\n";
    std::printf("[");
    for (NSObject* item : *array) {
        std::printf("%s%s  ", separator, margin.c_str());
        print(item, margin + "  ");
        separator = ",\n";
    }
    std::printf(array->count() ? "\n%s]" : "]", margin.c_str());
}

void printAll(NSDictionary* dictionary, const std::string& margin)
{
    const char* separator = "\n";
    std::printf("{");
    for (NSObject* key : *dictionary) {
        std::printf(
            "%s%s  %s: ", separator, margin.c_str(), quoted(static_cast<NSString*>(key)).c_str());
        print(dictionary->objectForKey(key).get(), margin + "  ");
        separator = ",\n";
    }
    std::printf(dictionary->count() ? "\n%s}" : "}", margin.c_str());
}

void print(NSObject* value, const std::string& margin)
{
    if (value->isKindOfClass(NSArray::cls()))
        printAll(static_cast<NSArray*>(value), margin);
    else if (value->isKindOfClass(NSDictionary::cls()))
        printAll(static_cast<NSDictionary*>(value), margin);
    else if (value->isKindOfClass(NSString::cls()))
        std::printf("%s", quoted(static_cast<NSString*>(value)).c_str());
    else if (value->isKindOfClass(NSData::cls()))
        std::printf("%s", hexadecimal(static_cast<NSData*>(value)).c_str());
    else if (value->isKindOfClass(PropertyListUID::cls()))
        std::printf("UID(%lu)",
            static_cast<unsigned long>(
                static_cast<PropertyListUID*>(value)->unsignedIntegerValue()));
    else if (value->isKindOfClass(NSNumber::cls())
        && *static_cast<NSNumber*>(value)->objCType() == 'B')
        std::printf("%s", static_cast<NSNumber*>(value)->boolValue() ? "true" : "false");
    else
        std::printf("%s", utf8Of(value->description()).c_str());
}

int refuse(const NSError* error)
{
    const Ref<NSObject> why = error->userInfo()->objectForKey(NSDebugDescriptionErrorKey);
    std::printf("reject %s\n", utf8Of(why->description()).c_str());
    return 1;
}

int convert(const List& list, const std::string& format, const char* path)
{
    Ref<NSError> error;
    const Ref<NSData> data
        = NSPropertyListSerialization::cls().dataWithPropertyList_format_options_error(
            list.value.get(),
            format == "binary" ? NSPropertyListBinaryFormat_v1_0 : NSPropertyListXMLFormat_v1_0, 0,
            &error);
    if (!data)
        return refuse(error.get());
    return data->writeToFile_atomically(stringFrom(path).get(), true) ? 0 : 1;
}

}

int main(int count, char** arguments)
{
    const std::string verb = count > 2 ? arguments[1] : "";
    if (verb == "convert" ? count != 5 : count != 3) {
        std::fprintf(stderr, "plist lint FILE | print FILE | convert xml|binary IN OUT\n");
        return 2;
    }
    const List list = read(arguments[verb == "convert" ? 3 : 2]);
    if (!list.value)
        return refuse(list.error.get());
    if (verb == "convert")
        return convert(list, arguments[2], arguments[4]);
    if (verb == "lint") {
        std::printf("accept %s\n", nameOf(list.format));
        return 0;
    }
    print(list.value.get(), "");
    std::printf("\n");
    return 0;
}
