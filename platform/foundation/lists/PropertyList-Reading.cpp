// SPDX-License-Identifier: Apache-2.0
#include "BinaryListReaderPrivate.h"
#include "PropertyListPrivate.h"
#include "foundation/NSStringPrivate.h"

namespace brindle::lists {

namespace {

    struct Sign {
        std::string_view begin;
        NSStringEncoding encoding;
        bool isMark; // to be left out
    };

    // The longer signs first: a mark of UTF-32 begins like one of UTF-16.
    constexpr Sign kSigns[] = {
        { { "\xff\xfe\0\0", 4 }, NSUTF32LittleEndianStringEncoding, true },
        { { "\0\0\xfe\xff", 4 }, NSUTF32BigEndianStringEncoding, true },
        { { "<\0\0\0", 4 }, NSUTF32LittleEndianStringEncoding, false },
        { { "\0\0\0<", 4 }, NSUTF32BigEndianStringEncoding, false },
        { { "\xff\xfe", 2 }, NSUTF16LittleEndianStringEncoding, true },
        { { "\xfe\xff", 2 }, NSUTF16BigEndianStringEncoding, true },
        { { "<\0", 2 }, NSUTF16LittleEndianStringEncoding, false },
        { { "\0<", 2 }, NSUTF16BigEndianStringEncoding, false },
        { { "\xef\xbb\xbf", 3 }, NSUTF8StringEncoding, true },
    };

    char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; }

    /// Answers the name behind `encoding=` in an XML declaration, in small letters; "" when there is none.
    std::string declaredEncoding(std::string_view text)
    {
        if (!text.starts_with("<?xml"))
            return "";
        const std::string_view declaration = text.substr(0, text.find("?>"));
        constexpr std::string_view kWord = "encoding";
        std::size_t at = declaration.find(kWord);
        if (at == std::string_view::npos)
            return "";
        at = declaration.find_first_of("\"'", at + kWord.size());
        if (at == std::string_view::npos)
            return "";
        std::string name(declaration.substr(at + 1));
        name.resize(std::min(name.find(declaration[at]), name.size()));
        std::transform(name.begin(), name.end(), name.begin(), lower);
        return name;
    }

    bool convert(
        std::string_view bytes, NSStringEncoding encoding, std::string& converted, Failure& failure)
    {
        strings::Storage storage;
        if (!strings::decode(storage, bytes, encoding))
            return fail(failure, 0, "the text is not in the encoding that it begins with");
        const strings::View text = strings::viewOf(storage);
        if (!text.isNarrow()
            && !isPaired(text.size(), [&](std::size_t i) { return text.wide()[i]; }))
            return fail(failure, 0, "the text has a surrogate without its partner");
        converted = strings::toUtf8(text);
        return true;
    }

    /// Finds the text in bytes of UTF-8, UTF-16 or UTF-32, with and without a byte-order mark, or of what an XML
    /// declaration names.
    /// - converted: keeps the text where it is not among the bytes.
    bool findText(std::span<const unsigned char> bytes, std::string& converted,
        std::string_view& utf8, Failure& failure)
    {
        std::string_view all(reinterpret_cast<const char*>(bytes.data()), bytes.size());
        for (const Sign& sign : kSigns) {
            if (!all.starts_with(sign.begin))
                continue;
            if (sign.isMark)
                all.remove_prefix(sign.begin.size());
            if (sign.encoding == NSUTF8StringEncoding)
                break;
            if (!convert(all, sign.encoding, converted, failure))
                return false;
            utf8 = converted;
            return true;
        }
        const std::string declared = declaredEncoding(all);
        if (declared == "iso-8859-1") {
            if (!convert(all, NSISOLatin1StringEncoding, converted, failure))
                return false;
            utf8 = converted;
            return true;
        }
        if (!declared.empty() && declared != "utf-8" && declared != "utf8"
            && declared != "us-ascii")
            return failInLine(failure, "", "the declared encoding is not known");
        const std::size_t valid = strings::validUtf8(all);
        if (valid < all.size())
            return failInLine(failure, all.substr(0, valid), "the text is not UTF-8");
        utf8 = all;
        return true;
    }

    /// Answers whether text is meant to be XML.
    bool isXML(std::string_view utf8)
    {
        const std::size_t start = utf8.find_first_not_of(" \t\r\n");
        if (start == std::string_view::npos)
            return false;
        const std::string_view text = utf8.substr(start);
        return text.starts_with("<?") || text.starts_with("<!") || text.starts_with("<plist");
    }

}

Ref<NSObject> readAnyText(
    std::string_view utf8, Mutability mutability, NSPropertyListFormat& format, Failure& failure)
{
    format = isXML(utf8) ? NSPropertyListXMLFormat_v1_0 : NSPropertyListOpenStepFormat;
    return format == NSPropertyListXMLFormat_v1_0 ? readXML(utf8, mutability, failure)
                                                  : readText(utf8, mutability, failure);
}

Ref<NSObject> read(std::span<const unsigned char> bytes, Mutability mutability,
    NSPropertyListFormat& format, Failure& failure)
{
    if (BinaryListReader::isBinary(bytes)) {
        format = NSPropertyListBinaryFormat_v1_0;
        return readBinary(bytes, mutability, failure);
    }
    std::string converted;
    std::string_view utf8;
    if (!findText(bytes, converted, utf8, failure))
        return nullptr;
    return readAnyText(utf8, mutability, format, failure);
}

}
