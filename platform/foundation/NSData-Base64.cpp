// SPDX-License-Identifier: Apache-2.0
#include "NSData.h"

#include <array>
#include <string>
#include <vector>

#include "Base64Private.h"
#include "NSString.h"
#include "runtime/Table.h"

namespace brindle {

namespace base64 {

    namespace {

        constexpr char kAlphabet[]
            = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
        constexpr unsigned char kUnknown = 0x80;
        constexpr unsigned char kSpace = 0x81;
        constexpr unsigned char kPadding = 0x82;

        /// What each character stands for: six bits, or one of the above.
        constexpr std::array<unsigned char, 256> kValues = [] {
            std::array<unsigned char, 256> values {};
            values.fill(kUnknown);
            for (unsigned char i = 0; i < 64; ++i)
                values[static_cast<unsigned char>(kAlphabet[i])] = i;
            for (const char space : { ' ', '\t', '\n', '\r' })
                values[static_cast<unsigned char>(space)] = kSpace;
            values['='] = kPadding;
            return values;
        }();

        /// Reads whole groups of four as long as nothing else comes up; answers how many.
        std::size_t decodeGroups(const unsigned char* text, std::size_t groups, unsigned char* to)
        {
            for (std::size_t i = 0; i < groups; ++i, text += 4, to += 3) {
                const unsigned a = kValues[text[0]];
                const unsigned b = kValues[text[1]];
                const unsigned c = kValues[text[2]];
                const unsigned d = kValues[text[3]];
                if ((a | b | c | d) & 0x80)
                    return i;
                to[0] = static_cast<unsigned char>(a << 2 | b >> 4);
                to[1] = static_cast<unsigned char>(b << 4 | c >> 2);
                to[2] = static_cast<unsigned char>(c << 6 | d);
            }
            return groups;
        }

    }

    char* encode(std::span<const unsigned char> bytes, char* to)
    {
        for (std::size_t i = 0; i < bytes.size(); i += 3) {
            const std::size_t left = bytes.size() - i;
            const unsigned bits = static_cast<unsigned>(bytes[i]) << 16
                | (left > 1 ? static_cast<unsigned>(bytes[i + 1]) << 8 : 0u)
                | (left > 2 ? static_cast<unsigned>(bytes[i + 2]) : 0u);
            *to++ = kAlphabet[bits >> 18];
            *to++ = kAlphabet[bits >> 12 & 63];
            *to++ = left > 1 ? kAlphabet[bits >> 6 & 63] : '=';
            *to++ = left > 2 ? kAlphabet[bits & 63] : '=';
        }
        return to;
    }

    std::optional<std::size_t> decode(
        std::span<const unsigned char> text, Unknown unknown, unsigned char* to)
    {
        unsigned char* const start = to;
        unsigned bits = 0;
        unsigned count = 0; // of characters in the group of four
        unsigned padding = 0;
        for (std::size_t i = 0; i < text.size();) {
            if (!count && !padding) {
                const std::size_t groups = decodeGroups(&text[i], (text.size() - i) / 4, to);
                i += 4 * groups;
                to += 3 * groups;
                if (i == text.size())
                    break;
            }
            const unsigned char value = kValues[text[i++]];
            if (value == kPadding) {
                if (++padding > 2)
                    return std::nullopt;
                continue;
            }
            if (value >= kUnknown) {
                if (unknown == Unknown::passedOver
                    || (value == kSpace && unknown == Unknown::spacePassedOver))
                    continue;
                return std::nullopt;
            }
            if (padding)
                return std::nullopt; // something behind the end
            bits = bits << 6 | value;
            if (++count < 4)
                continue;
            *to++ = static_cast<unsigned char>(bits >> 16);
            *to++ = static_cast<unsigned char>(bits >> 8);
            *to++ = static_cast<unsigned char>(bits);
            bits = count = 0;
        }
        if (count == 1 || (count + padding) % 4 != 0)
            return std::nullopt;
        if (count == 2)
            *to++ = static_cast<unsigned char>(bits >> 4);
        if (count == 3) {
            *to++ = static_cast<unsigned char>(bits >> 10);
            *to++ = static_cast<unsigned char>(bits >> 2);
        }
        return static_cast<std::size_t>(to - start);
    }

}

namespace {

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
        std::string text((bytes.size() + 2) / 3 * 4, '\0');
        base64::encode(bytes, text.data());
        if (!line)
            return text;
        const std::string end = lineEnd(options);
        std::string lines;
        for (std::size_t at = 0; at < text.size(); at += line)
            lines += (at ? end : "") + text.substr(at, line);
        return lines;
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
        std::vector<unsigned char> bytes(text.size() / 4 * 3 + 3);
        const std::optional<std::size_t> count = base64::decode(text,
            options & NSDataBase64DecodingIgnoreUnknownCharacters ? base64::Unknown::passedOver
                                                                  : base64::Unknown::refused,
            bytes.data());
        return count ? self.initWithBytes_length(bytes.data(), *count) : nullptr;
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
