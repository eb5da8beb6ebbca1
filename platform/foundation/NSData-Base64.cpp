// SPDX-License-Identifier: Apache-2.0
#include "NSData.h"

#include <optional>
#include <string>

#include "NSString.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    constexpr char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

    int valueOf(unsigned char c)
    {
        if (c >= 'A' && c <= 'Z')
            return c - 'A';
        if (c >= 'a' && c <= 'z')
            return c - 'a' + 26;
        if (c >= '0' && c <= '9')
            return c - '0' + 52;
        return c == '+' ? 62 : c == '/' ? 63 : -1;
    }

    std::string lineEnd(NSDataBase64EncodingOptions options)
    {
        std::string end;
        if (options & NSDataBase64EncodingEndLineWithCarriageReturn)
            end += '\r';
        if (options & NSDataBase64EncodingEndLineWithLineFeed)
            end += '\n';
        return end.empty() ? "\r\n" : end;
    }

    std::string encode(std::span<const unsigned char> bytes, NSDataBase64EncodingOptions options)
    {
        const std::size_t line = options & NSDataBase64Encoding64CharacterLineLength ? 64
            : options & NSDataBase64Encoding76CharacterLineLength                    ? 76
                                                                                     : 0;
        const std::string end = lineEnd(options);
        std::string text;
        text.reserve(bytes.size() / 3 * 4 + 4);
        std::size_t column = 0;
        for (std::size_t i = 0; i < bytes.size(); i += 3) {
            if (line && column == line) {
                text += end;
                column = 0;
            }
            const std::size_t left = bytes.size() - i;
            const unsigned bits = static_cast<unsigned>(bytes[i]) << 16
                | (left > 1 ? static_cast<unsigned>(bytes[i + 1]) << 8 : 0u)
                | (left > 2 ? static_cast<unsigned>(bytes[i + 2]) : 0u);
            text += kAlphabet[bits >> 18];
            text += kAlphabet[bits >> 12 & 63];
            text += left > 1 ? kAlphabet[bits >> 6 & 63] : '=';
            text += left > 2 ? kAlphabet[bits & 63] : '=';
            column += 4;
        }
        return text;
    }

    std::optional<std::string> decode(std::span<const unsigned char> text, bool passOver)
    {
        std::string bytes;
        unsigned bits = 0;
        unsigned count = 0; // of characters in the group of four
        unsigned padding = 0;
        for (const unsigned char c : text) {
            if (c == '=') {
                if (++padding > 2)
                    return std::nullopt;
                continue;
            }
            const int value = valueOf(c);
            if (value < 0) {
                if (passOver)
                    continue;
                return std::nullopt;
            }
            if (padding)
                return std::nullopt; // something behind the end
            bits = bits << 6 | static_cast<unsigned>(value);
            if (++count % 4 == 0) {
                bytes += static_cast<char>(bits >> 16 & 255);
                bytes += static_cast<char>(bits >> 8 & 255);
                bytes += static_cast<char>(bits & 255);
                bits = 0;
            }
        }
        const unsigned rest = count % 4;
        if (rest == 1 || (rest + padding) % 4 != 0)
            return std::nullopt;
        if (rest == 2)
            bytes += static_cast<char>(bits >> 4 & 255);
        if (rest == 3) {
            bytes += static_cast<char>(bits >> 10 & 255);
            bytes += static_cast<char>(bits >> 2 & 255);
        }
        return bytes;
    }

    std::span<const unsigned char> spanOf(const std::string& text)
    {
        return { reinterpret_cast<const unsigned char*>(text.data()), text.size() };
    }

}

template <> struct NSData::Methods<struct Base64> {

    static Ref<NSData> initWithText(
        NSData& self, std::span<const unsigned char> text, NSDataBase64DecodingOptions options)
    {
        const std::optional<std::string> bytes
            = decode(text, options & NSDataBase64DecodingIgnoreUnknownCharacters);
        return bytes ? self.initWithBytes_length(bytes->data(), bytes->size()) : nullptr;
    }
    static Ref<NSData> initWithString(
        NSData& self, NSString* text, NSDataBase64DecodingOptions options)
    {
        return text ? initWithText(self, spanOf(utf8Of(text)), options) : nullptr;
    }
    static Ref<NSData> initWithData(NSData& self, NSData* text, NSDataBase64DecodingOptions options)
    {
        return text ? initWithText(self, bytesOf(text), options) : nullptr;
    }
    static Ref<NSString> string(NSData& self, NSDataBase64EncodingOptions options)
    {
        return stringFrom(encode(bytesOf(&self), options));
    }
    static Ref<NSData> data(NSData& self, NSDataBase64EncodingOptions options)
    {
        return dataFrom(spanOf(encode(bytesOf(&self), options)));
    }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithBase64EncodedString:options:", imp<initWithString> },
            { "initWithBase64EncodedData:options:", imp<initWithData> },
            { "base64EncodedStringWithOptions:", imp<string> },
            { "base64EncodedDataWithOptions:", imp<data> },
        });
    }
};
BRINDLE_RECORD(NSData, Base64)

}
