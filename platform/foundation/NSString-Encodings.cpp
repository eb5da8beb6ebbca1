// SPDX-License-Identifier: Apache-2.0
#include "NSString.h"

#include <cstring>
#include <unistd.h>

#include "NSData.h"
#include "NSError.h"
#include "NSStringPrivate.h"
#include "runtime/NSException.h"
#include "runtime/Runtime.h"
#include "runtime/Table.h"

namespace brindle {

using strings::Contents;
using strings::View;

namespace strings {

    namespace {

        constexpr char32_t kLast = 0x10ffff;

        bool isSurrogate(char32_t c) { return (c & 0xfffff800) == 0xd800; }

        /// Wide encodings: how many bytes a unit has, whether the first is the highest, whether a mark may lead.
        struct Wide {
            unsigned bytes = 0;
            bool isBig = false;
            bool isMarked = false;
        };

        Wide wideOf(NSStringEncoding encoding)
        {
            switch (encoding) {
            case NSUTF16StringEncoding:
                return { 2, false, true };
            case NSUTF16BigEndianStringEncoding:
                return { 2, true, false };
            case NSUTF16LittleEndianStringEncoding:
                return { 2, false, false };
            case NSUTF32StringEncoding:
                return { 4, false, true };
            case NSUTF32BigEndianStringEncoding:
                return { 4, true, false };
            case NSUTF32LittleEndianStringEncoding:
                return { 4, false, false };
            default:
                return {};
            }
        }

        char32_t readUnit(std::string_view bytes, std::size_t at, Wide wide)
        {
            char32_t value = 0;
            for (unsigned i = 0; i < wide.bytes; ++i) {
                const std::size_t place = at + (wide.isBig ? i : wide.bytes - 1 - i);
                value = value << 8 | static_cast<unsigned char>(bytes[place]);
            }
            return value;
        }

        void writeUnit(std::string& out, char32_t value, Wide wide)
        {
            for (unsigned i = 0; i < wide.bytes; ++i) {
                const unsigned shift = 8 * (wide.isBig ? wide.bytes - 1 - i : i);
                out.push_back(static_cast<char>(value >> shift & 0xff));
            }
        }

        bool decodeWide(Storage& storage, std::string_view bytes, Wide wide)
        {
            if (bytes.size() % wide.bytes != 0)
                return false;
            if (wide.isMarked && !bytes.empty()) {
                const char32_t mark = readUnit(bytes, 0, wide);
                wide.isBig = mark == (wide.bytes == 2 ? 0xfffeu : 0xfffe0000u);
                if (mark == 0xfeff || wide.isBig)
                    bytes.remove_prefix(wide.bytes);
            }
            std::u16string units;
            units.reserve(bytes.size() / wide.bytes);
            for (std::size_t at = 0; at < bytes.size(); at += wide.bytes) {
                const char32_t c = readUnit(bytes, at, wide);
                if (wide.bytes == 4 && (c > kLast || isSurrogate(c)))
                    return false;
                if (c > 0xffff) {
                    units.push_back(static_cast<char16_t>(0xd800 + ((c - 0x10000) >> 10)));
                    units.push_back(static_cast<char16_t>(0xdc00 + ((c - 0x10000) & 0x3ff)));
                } else {
                    units.push_back(static_cast<char16_t>(c));
                }
            }
            assign(storage, View(std::u16string_view(units)));
            return true;
        }

        std::optional<std::string> encodeWide(View text, Wide wide, bool lossy, bool mark)
        {
            std::string out;
            out.reserve((text.size() + 1) * wide.bytes);
            if (mark && wide.isMarked)
                writeUnit(out, 0xfeff, wide);
            std::size_t units = 1;
            for (std::size_t at = 0; at < text.size(); at += units) {
                char32_t c = text[at];
                if (wide.bytes == 4) {
                    c = text.codePoint(at, units);
                    if (isSurrogate(c)) {
                        if (!lossy)
                            return std::nullopt;
                        c = kReplacement;
                    }
                }
                writeUnit(out, c, wide);
            }
            return out;
        }

        /// One byte a letter: the letters below `limit`.
        std::optional<std::string> encodeBytes(View text, char32_t limit, bool lossy)
        {
            std::string out;
            out.reserve(text.size());
            std::size_t units = 0;
            for (std::size_t at = 0; at < text.size(); at += units) {
                const char32_t c = text.codePoint(at, units);
                if (c >= limit && !lossy)
                    return std::nullopt;
                out.push_back(c < limit ? static_cast<char>(c) : '?');
            }
            return out;
        }

        bool hasUnpaired(View text)
        {
            if (text.isNarrow())
                return false;
            std::size_t units = 0;
            for (std::size_t at = 0; at < text.size(); at += units) {
                if (isSurrogate(text.codePoint(at, units)))
                    return true;
            }
            return false;
        }

    }

    bool decode(Storage& storage, std::string_view bytes, NSStringEncoding encoding)
    {
        if (const Wide wide = wideOf(encoding); wide.bytes)
            return decodeWide(storage, bytes, wide);
        switch (encoding) {
        case NSASCIIStringEncoding:
            return isAscii(bytes) && assignUtf8(storage, bytes);
        case NSUTF8StringEncoding:
            if (bytes.starts_with("\xef\xbb\xbf"))
                bytes.remove_prefix(3);
            return assignUtf8(storage, bytes);
        case NSISOLatin1StringEncoding: {
            std::u16string units;
            for (const char byte : bytes)
                units.push_back(static_cast<unsigned char>(byte));
            assign(storage, View(std::u16string_view(units)));
            return true;
        }
        default:
            return false;
        }
    }

    std::optional<std::string> encode(View text, NSStringEncoding encoding, bool lossy, bool mark)
    {
        if (const Wide wide = wideOf(encoding); wide.bytes)
            return encodeWide(text, wide, lossy, mark);
        switch (encoding) {
        case NSASCIIStringEncoding:
            return encodeBytes(text, 0x80, lossy);
        case NSISOLatin1StringEncoding:
            return encodeBytes(text, 0x100, lossy);
        case NSUTF8StringEncoding:
            if (!lossy && hasUnpaired(text))
                return std::nullopt;
            return toUtf8(text);
        default:
            return std::nullopt;
        }
    }

}

template <> struct NSString::Methods<struct StringBytes> {

    static Ref<NSString> initWithBytes(
        NSString& self, const void* bytes, NSUInteger length, NSStringEncoding encoding)
    {
        if (length > 0)
            strings::checkArgument(self, "initWithBytes:length:encoding:", bytes);
        const std::string_view text(length ? static_cast<const char*>(bytes) : "", length);
        if (!strings::decode(self.storage_, text, encoding))
            return nullptr;
        return &self;
    }
    static Ref<NSString> initWithData(NSString& self, NSData* data, NSStringEncoding encoding)
    {
        const auto* const from = maybe(data);
        return self.initWithBytes_length_encoding(from->bytes(), from->length(), encoding);
    }
    static Ref<NSString> initWithCString(
        NSString& self, const char* text, NSStringEncoding encoding)
    {
        if (!text)
            raise("NSInvalidArgumentException",
                strings::place(self, "initWithCString:encoding:") + "NULL cString");
        return self.initWithBytes_length_encoding(text, std::strlen(text), encoding);
    }
    static Ref<NSString> stringWithCString(Class& self, const char* text, NSStringEncoding encoding)
    {
        return cast<NSString>(Meta { { &self } }.alloc())->initWithCString_encoding(text, encoding);
    }

    static Ref<NSData> dataLossy(NSString& self, NSStringEncoding encoding, bool lossy)
    {
        const std::optional<std::string> bytes
            = strings::encode(Contents(&self), encoding, lossy, true);
        return bytes ? NSData::cls().dataWithBytes_length(bytes->data(), bytes->size()) : nullptr;
    }
    static Ref<NSData> data(NSString& self, NSStringEncoding encoding)
    {
        return self.dataUsingEncoding_allowLossyConversion(encoding, false);
    }
    static std::optional<std::string> unmarked(NSString& self, NSStringEncoding encoding)
    {
        return strings::encode(Contents(&self), encoding, false, false);
    }
    static bool canBeConverted(NSString& self, NSStringEncoding encoding)
    {
        return unmarked(self, encoding).has_value();
    }
    static NSUInteger lengthOfBytes(NSString& self, NSStringEncoding encoding)
    {
        const std::optional<std::string> bytes = unmarked(self, encoding);
        return bytes ? bytes->size() : 0;
    }
    static bool getCString(
        NSString& self, char* buffer, NSUInteger maximum, NSStringEncoding encoding)
    {
        const std::optional<std::string> bytes = unmarked(self, encoding);
        if (!bytes || !buffer || bytes->size() >= maximum)
            return false;
        std::memcpy(buffer, bytes->c_str(), bytes->size() + 1);
        return true;
    }

    // ---- files

    static Ref<NSString> initWithFile(
        NSString& self, NSString* path, NSStringEncoding encoding, Ref<NSError>* error)
    {
        const Ref<NSData> data = NSData::cls().dataWithContentsOfFile(path);
        if (!data) {
            const bool isThere = path && ::access(path->fileSystemRepresentation(), F_OK) == 0;
            reportError(error, isThere ? NSFileReadUnknownError : NSFileReadNoSuchFileError,
                { { NSFilePathErrorKey, path } });
            return nullptr;
        }
        Ref<NSString> text = self.initWithData_encoding(data.get(), encoding);
        if (!text)
            reportError(
                error, NSFileReadInapplicableStringEncodingError, { { NSFilePathErrorKey, path } });
        return text;
    }
    static Ref<NSString> stringWithFile(
        Class& self, NSString* path, NSStringEncoding encoding, Ref<NSError>* error)
    {
        return cast<NSString>(Meta { { &self } }.alloc())
            ->initWithContentsOfFile_encoding_error(path, encoding, error);
    }
    static bool writeEncoded(NSString& self, NSString* path, bool atomically,
        NSStringEncoding encoding, Ref<NSError>* error)
    {
        const Ref<NSData> data = self.dataUsingEncoding(encoding);
        if (!data) {
            reportError(error, NSFileWriteInapplicableStringEncodingError);
            return false;
        }
        const bool isWritten = path && data->writeToFile_atomically(path, atomically);
        if (!isWritten)
            reportError(error, NSFileWriteUnknownError, { { NSFilePathErrorKey, path } });
        return isWritten;
    }
    static bool write(NSString& self, NSString* path, bool atomically)
    {
        return self.writeToFile_atomically_encoding_error(
            path, atomically, NSUTF8StringEncoding, nullptr);
    }

    static void table(Builder& t)
    {
        t.classMethods({
            { "stringWithCString:encoding:", imp<stringWithCString> },
            { "stringWithContentsOfFile:encoding:error:", imp<stringWithFile> },
        });
        t.methods({
            { "initWithBytes:length:encoding:", imp<initWithBytes> },
            { "initWithData:encoding:", imp<initWithData> },
            { "initWithCString:encoding:", imp<initWithCString> },
            { "initWithContentsOfFile:encoding:error:", imp<initWithFile> },
            { "dataUsingEncoding:", imp<data> },
            { "dataUsingEncoding:allowLossyConversion:", imp<dataLossy> },
            { "canBeConvertedToEncoding:", imp<canBeConverted> },
            { "lengthOfBytesUsingEncoding:", imp<lengthOfBytes> },
            { "getCString:maxLength:encoding:", imp<getCString> },
            { "writeToFile:atomically:", imp<write> },
            { "writeToFile:atomically:encoding:error:", imp<writeEncoded> },
        });
    }
};
BRINDLE_RECORD(NSString, StringBytes)

}
