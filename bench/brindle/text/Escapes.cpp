// SPDX-License-Identifier: Apache-2.0
#include "text/NSString+PercentEscapes.h"

#include <array>
#include <string>
#include <unordered_map>

#include "support/Measure.h"
#include "support/Topics.h"
#include "text/NSURL+ParameterDictionary.h"

namespace brindle::bench {

namespace {

    constexpr std::size_t kBytes = 4096;

    // The floors: plain loops over the same bytes.
    constexpr std::array<bool, 256> unreserved()
    {
        std::array<bool, 256> out {};
        for (const char* c = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_.~";
             *c; ++c)
            out[static_cast<unsigned char>(*c)] = true;
        return out;
    }
    constexpr std::array<bool, 256> kUnreserved = unreserved();

    std::string escape(const std::string& text)
    {
        std::string out(text.size() * 3, '\0');
        char* to = out.data();
        for (const char c : text) {
            const auto byte = static_cast<unsigned char>(c);
            if (kUnreserved[byte]) {
                *to++ = c;
            } else {
                *to++ = '%';
                *to++ = "0123456789ABCDEF"[byte >> 4];
                *to++ = "0123456789ABCDEF"[byte & 15];
            }
        }
        out.resize(static_cast<std::size_t>(to - out.data()));
        return out;
    }
    int digit(char c) { return c <= '9' ? c - '0' : (c & 0x5f) - 'A' + 10; }
    std::string unescape(std::string_view text)
    {
        std::string out(text.size(), '\0');
        char* to = out.data();
        for (std::size_t i = 0; i < text.size(); ++i) {
            if (text[i] == '%' && i + 2 < text.size()) {
                *to++ = static_cast<char>(digit(text[i + 1]) << 4 | digit(text[i + 2]));
                i += 2;
            } else {
                *to++ = text[i];
            }
        }
        out.resize(static_cast<std::size_t>(to - out.data()));
        return out;
    }
    std::unordered_map<std::string, std::string> parameters(std::string_view query)
    {
        std::unordered_map<std::string, std::string> out;
        while (!query.empty()) {
            const std::size_t end = std::min(query.find('&'), query.size());
            const std::string_view piece = query.substr(0, end);
            if (const std::size_t mark = piece.find('='); mark != std::string_view::npos)
                out[std::string(piece.substr(0, mark))] = unescape(piece.substr(mark + 1));
            query.remove_prefix(std::min(end + 1, query.size()));
        }
        return out;
    }

    // Words with a space and a reserved character now and then: one byte in eight is escaped.
    std::string plainText()
    {
        std::string out;
        while (out.size() < kBytes)
            out += "Lorem ipsum=dolor sit";
        out.resize(kBytes);
        return out;
    }
    std::string queryText()
    {
        std::string out;
        for (int i = 0; out.size() < kBytes; ++i)
            out += (i ? "&name" : "name") + std::to_string(i) + "=some%20value%26more";
        return out;
    }

    Pair adding()
    {
        const std::string text = plainText();
        const Ref<NSString> string = stringFrom(std::string_view(text));
        return { repeated(
                     [string](std::size_t) { keep(stringByAddingPercentEscapes(string).get()); }),
            repeated([text](std::size_t) { keep(escape(text).data()); }) };
    }
    Pair removing()
    {
        const std::string text = escape(plainText());
        const Ref<NSString> string = stringFrom(std::string_view(text));
        return { repeated([string](std::size_t) {
                    keep(stringByReplacingPercentEscapes(string).get());
                }),
            repeated([text](std::size_t) { keep(unescape(text).data()); }) };
    }
    Pair reading()
    {
        const std::string text = "http://user@one.two.three:8080/a/path/of/four?q=1&r=%20#top";
        const Ref<NSString> string = stringFrom(std::string_view(text));
        return { repeated([string](std::size_t) {
                    keep(NSURL::cls().URLWithString(string.get()).get());
                }),
            repeated([text](std::size_t) {
                const std::string copy = text;
                bool isGood = true;
                for (const char c : copy)
                    isGood &= kUnreserved[static_cast<unsigned char>(c)] || c != ' ';
                keep(isGood);
            }) };
    }
    Pair parameters()
    {
        const std::string query = queryText();
        const Ref<NSURL> url = NSURL::cls().URLWithString(stringFrom("http://h/?" + query).get());
        return { repeated([url](std::size_t) { keep(parameterDictionary(url).get()); }),
            repeated([query](std::size_t) { keep(parameters(query).size()); }) };
    }

}

void addEscapes(Plan& plan)
{
    plan.time("percent escapes: add to 4 kB", kNoBudget, adding);
    plan.time("percent escapes: take from 4 kB with escapes", kNoBudget, removing);
    plan.time("URL: read 60 characters beside a copy and a loop", kNoBudget, reading);
    plan.time("URL: parameters of a 4 kB query", kNoBudget, [] { return parameters(); });
}

}
