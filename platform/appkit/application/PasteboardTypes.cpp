// SPDX-License-Identifier: Apache-2.0
#include "PasteboardTypesPrivate.h"

#include <algorithm>

#include "foundation/Each.h"
#include "foundation/NSArray.h"
#include "foundation/NSMutableArray.h"
#include "foundation/NSPropertyListSerialization.h"
#include "foundation/NSURL.h"

namespace brindle::pasteboards {

namespace {

    struct Pair {
        const char* type;
        const char* desktop;
    };

    constexpr Pair kPairs[] = {
        { "public.utf8-plain-text", "UTF8_STRING" },
        { "public.utf8-plain-text", "text/plain;charset=utf-8" },
        { "public.utf8-plain-text", "STRING" },
        { "public.utf8-plain-text", "text/plain" },
        { "public.html", "text/html" },
        { "public.rtf", "text/rtf" },
        { "public.rtf", "application/rtf" },
        { "public.png", "image/png" },
        { "public.tiff", "image/tiff" },
        { "public.file-url", "text/uri-list" },
        { "NSFilenamesPboardType", "text/uri-list" },
        { "public.url", "text/uri-list" },
    };
    constexpr std::string_view kUriList = "text/uri-list";
    constexpr std::string_view kLatin = "STRING";

    bool is(NSString& type, NSString* other) { return type.isEqual(other); }

    Ref<NSData> dataOf(const std::string& bytes)
    {
        return NSData::cls().dataWithBytes_length(bytes.data(), bytes.size());
    }
    std::string bytesOf(NSData& data)
    {
        return { static_cast<const char*>(data.bytes()), data.length() };
    }

    // Text of one byte a character: ISO 8859-1.
    std::string utf8FromLatin(const std::string& bytes)
    {
        std::u16string units;
        for (const char c : bytes)
            units += static_cast<unsigned char>(c);
        return utf8Of(stringFrom(units).get());
    }
    std::string latinFromUtf8(const std::string& bytes)
    {
        std::string latin;
        for (const char16_t c : utf16Of(stringFrom(std::string_view(bytes))))
            latin += c < 0x100 ? static_cast<char>(c) : '?';
        return latin;
    }

    std::vector<std::string> urisIn(const std::string& list)
    {
        std::vector<std::string> uris;
        for (std::size_t at = 0; at < list.size();) {
            const std::size_t end = std::min(list.find_first_of("\r\n", at), list.size());
            if (end > at && list[at] != '#')
                uris.push_back(list.substr(at, end - at));
            at = end + 1;
        }
        return uris;
    }
    Ref<NSData> pathsFrom(const std::vector<std::string>& uris)
    {
        const Ref<NSMutableArray> paths = make<NSMutableArray>();
        for (const std::string& uri : uris) {
            const Ref<NSURL> url
                = NSURL::cls().URLWithString(stringFrom(std::string_view(uri)).get());
            if (url && url->isFileURL() && url->path())
                paths->addObject(url->path().get());
        }
        if (!paths->count())
            return nullptr;
        return NSPropertyListSerialization::cls().dataWithPropertyList_format_options_error(
            paths.get(), NSPropertyListXMLFormat_v1_0, 0, nullptr);
    }
    std::string urisFrom(NSData& pathList)
    {
        std::string uris;
        const Ref<NSObject> list
            = NSPropertyListSerialization::cls().propertyListWithData_options_format_error(
                &pathList, NSPropertyListImmutable, nullptr, nullptr);
        if (!list || !list->isKindOfClass(NSArray::cls()))
            return uris;
        const Ref<NSArray> paths = cast<NSArray>(list);
        for (NSObject* path : *paths) {
            if (!path->isKindOfClass(NSString::cls()))
                continue;
            const Ref<NSURL> url = NSURL::cls().fileURLWithPath(static_cast<NSString*>(path));
            uris += utf8Of(url->absoluteString().get()) + "\r\n";
        }
        return uris;
    }

}

Ref<NSString> canonical(NSString& type)
{
    return is(type, NSStringPboardType) ? Ref<NSString>(NSPasteboardTypeString) : &type;
}

std::vector<std::string> desktopNames(NSString& type)
{
    const std::string name = utf8Of(canonical(type).get());
    std::vector<std::string> names;
    for (const Pair& pair : kPairs) {
        if (name == pair.type)
            names.emplace_back(pair.desktop);
    }
    if (names.empty() && !name.empty())
        names.push_back(name);
    return names;
}

std::vector<Ref<NSString>> typesOf(std::string_view desktopName)
{
    std::vector<Ref<NSString>> types;
    for (const Pair& pair : kPairs) {
        if (desktopName == pair.desktop)
            types.push_back(stringFrom(std::string_view(pair.type)));
    }
    if (types.empty())
        types.push_back(stringFrom(desktopName));
    return types;
}

std::string toDesktop(NSString& type, NSData& data, std::string_view desktopName)
{
    if (desktopName == kLatin)
        return latinFromUtf8(bytesOf(data));
    if (is(type, NSFilenamesPboardType))
        return urisFrom(data);
    if (desktopName == kUriList)
        return bytesOf(data) + "\r\n";
    return bytesOf(data);
}

Ref<NSData> fromDesktop(NSString& type, const std::string& bytes, std::string_view desktopName)
{
    if (desktopName == kLatin)
        return dataOf(utf8FromLatin(bytes));
    if (desktopName != kUriList)
        return dataOf(bytes);
    const std::vector<std::string> uris = urisIn(bytes);
    if (is(type, NSFilenamesPboardType))
        return pathsFrom(uris);
    return uris.empty() ? nullptr : dataOf(uris.front());
}

}
