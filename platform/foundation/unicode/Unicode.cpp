// SPDX-License-Identifier: Apache-2.0
#include "Unicode.h"

#include "UnicodeLibrary.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <mutex>

#include <unicode/uchar.h>
#include <unicode/ucol.h>
#include <unicode/uloc.h>
#include <unicode/unorm2.h>
#include <unicode/ustring.h>

namespace brindle::unicode {

namespace {

    /// The functions for letters and forms.
    struct Letters {
        decltype(&::u_strToLower) toLower = nullptr;
        decltype(&::u_strToUpper) toUpper = nullptr;
        decltype(&::u_strToTitle) toTitle = nullptr;
        decltype(&::u_strFoldCase) fold = nullptr;
        decltype(&::u_getCombiningClass) combiningClass = nullptr;
        decltype(&::u_getIntPropertyValue) property = nullptr;
        decltype(&::u_hasBinaryProperty) hasProperty = nullptr;
        decltype(&::u_charType) category = nullptr;
        decltype(&::unorm2_normalize) normalize = nullptr;
        decltype(&::unorm2_getNFCInstance) nfc = nullptr;
        decltype(&::unorm2_getNFDInstance) nfd = nullptr;
        decltype(&::unorm2_getNFKCInstance) nfkc = nullptr;
        decltype(&::unorm2_getNFKDInstance) nfkd = nullptr;
        bool loaded = false;

        Letters()
        {
            void* const library = openLibrary("libicuuc");
            loaded = find(library, BRINDLE_VERSIONED(u_strToLower), toLower)
                && find(library, BRINDLE_VERSIONED(u_strToUpper), toUpper)
                && find(library, BRINDLE_VERSIONED(u_strToTitle), toTitle)
                && find(library, BRINDLE_VERSIONED(u_strFoldCase), fold)
                && find(library, BRINDLE_VERSIONED(u_getCombiningClass), combiningClass)
                && find(library, BRINDLE_VERSIONED(u_getIntPropertyValue), property)
                && find(library, BRINDLE_VERSIONED(u_hasBinaryProperty), hasProperty)
                && find(library, BRINDLE_VERSIONED(u_charType), category)
                && find(library, BRINDLE_VERSIONED(unorm2_normalize), normalize)
                && find(library, BRINDLE_VERSIONED(unorm2_getNFCInstance), nfc)
                && find(library, BRINDLE_VERSIONED(unorm2_getNFDInstance), nfd)
                && find(library, BRINDLE_VERSIONED(unorm2_getNFKCInstance), nfkc)
                && find(library, BRINDLE_VERSIONED(unorm2_getNFKDInstance), nfkd);
        }
    };

    const Letters& letters()
    {
        static const Letters& instance = *new Letters;
        return instance;
    }

    /// The functions for the order of a language.
    struct Orders {
        decltype(&::ucol_open) open = nullptr;
        decltype(&::ucol_setAttribute) setAttribute = nullptr;
        decltype(&::ucol_strcoll) compare = nullptr;
        decltype(&::ucol_getSortKey) sortKey = nullptr;
        decltype(&::uloc_getDefault) language = nullptr;
        bool loaded = false;

        Orders()
        {
            void* const library = openLibrary("libicui18n");
            void* const base = openLibrary("libicuuc");
            loaded = find(library, BRINDLE_VERSIONED(ucol_open), open)
                && find(library, BRINDLE_VERSIONED(ucol_setAttribute), setAttribute)
                && find(library, BRINDLE_VERSIONED(ucol_strcoll), compare)
                && find(library, BRINDLE_VERSIONED(ucol_getSortKey), sortKey)
                && find(base, BRINDLE_VERSIONED(uloc_getDefault), language);
        }
    };

    const Orders& orders()
    {
        static const Orders& instance = *new Orders;
        return instance;
    }

    /// Calls a function that writes into a buffer and says how long the answer is.
    template <class Convert> std::u16string converted(std::u16string_view text, Convert convert)
    {
        constexpr std::size_t kMost = INT32_MAX / 4; // the library counts in 32 bits
        if (text.empty() || text.size() > kMost)
            return std::u16string(text);
        std::u16string out(text.size() + text.size() / 8 + 8, u'\0');
        for (int round = 0; round < 2; ++round) {
            UErrorCode error = U_ZERO_ERROR;
            const std::int32_t length = convert(out.data(), static_cast<std::int32_t>(out.size()),
                text.data(), static_cast<std::int32_t>(text.size()), &error);
            const bool isTooShort = error == U_BUFFER_OVERFLOW_ERROR;
            if (U_FAILURE(error) && !isTooShort)
                break;
            out.resize(static_cast<std::size_t>(length));
            if (!isTooShort)
                return out;
        }
        return std::u16string(text);
    }

    std::u16string asciiMapped(std::u16string_view text, char16_t first, int distance)
    {
        std::u16string out(text);
        for (char16_t& unit : out) {
            if (unit >= first && unit < first + 26)
                unit = static_cast<char16_t>(unit + distance);
        }
        return out;
    }

    const UNormalizer2* normalizer(Form form)
    {
        UErrorCode error = U_ZERO_ERROR;
        const Letters& l = letters();
        switch (form) {
        case Form::composed:
            return l.nfc(&error);
        case Form::decomposed:
            return l.nfd(&error);
        case Form::compatiblyComposed:
            return l.nfkc(&error);
        case Form::compatiblyDecomposed:
            return l.nfkd(&error);
        }
        return nullptr;
    }

}

std::u16string lowercase(std::u16string_view text)
{
    if (!letters().loaded)
        return asciiMapped(text, u'A', 32);
    return converted(text, [](auto* out, auto room, auto* in, auto length, auto* error) {
        return letters().toLower(out, room, in, length, "", error);
    });
}

std::u16string uppercase(std::u16string_view text)
{
    if (!letters().loaded)
        return asciiMapped(text, u'a', -32);
    return converted(text, [](auto* out, auto room, auto* in, auto length, auto* error) {
        return letters().toUpper(out, room, in, length, "", error);
    });
}

std::u16string titlecase(std::u16string_view text)
{
    if (!letters().loaded)
        return std::u16string(text);
    return converted(text, [](auto* out, auto room, auto* in, auto length, auto* error) {
        return letters().toTitle(out, room, in, length, nullptr, "", error);
    });
}

std::u16string foldCase(std::u16string_view text)
{
    if (!letters().loaded)
        return asciiMapped(text, u'A', 32);
    return converted(text, [](auto* out, auto room, auto* in, auto length, auto* error) {
        return letters().fold(out, room, in, length, U_FOLD_CASE_DEFAULT, error);
    });
}

std::u16string normalize(std::u16string_view text, Form form)
{
    const UNormalizer2* const how = letters().loaded ? normalizer(form) : nullptr;
    if (!how)
        return std::u16string(text);
    return converted(text, [how](auto* out, auto room, auto* in, auto length, auto* error) {
        return letters().normalize(how, in, length, out, room, error);
    });
}

bool isCombining(char32_t c)
{
    return c >= 0x300 && letters().loaded && letters().combiningClass(static_cast<UChar32>(c)) != 0;
}

bool extendsLetter(char32_t c)
{
    if (c < 0x300 || !letters().loaded)
        return false;
    const auto kind = letters().property(static_cast<UChar32>(c), UCHAR_GRAPHEME_CLUSTER_BREAK);
    return kind == U_GCB_EXTEND || kind == U_GCB_SPACING_MARK || kind == U_GCB_ZWJ
        || kind == U_GCB_V || kind == U_GCB_T;
}

bool isWhiteSpace(char32_t c)
{
    if (c < 0x80)
        return c == ' ' || (c >= 9 && c <= 13);
    return letters().loaded && letters().hasProperty(static_cast<UChar32>(c), UCHAR_WHITE_SPACE);
}

static_assert(kUppercase == U_GC_LU_MASK && kLowercase == U_GC_LL_MASK && kTitlecase == U_GC_LT_MASK
    && kOtherLetters == (U_GC_LM_MASK | U_GC_LO_MASK) && kMarks == U_GC_M_MASK
    && kDecimalDigits == U_GC_ND_MASK && kOtherNumbers == (U_GC_NL_MASK | U_GC_NO_MASK)
    && kControls == (U_GC_CC_MASK | U_GC_CF_MASK) && kPunctuation == U_GC_P_MASK
    && kSymbols == U_GC_S_MASK && kUnassigned == U_GC_CN_MASK);

namespace {

    std::uint32_t asciiCategory(char32_t c)
    {
        if (c < 0x20 || c == 0x7f)
            return U_GC_CC_MASK;
        if (c == ' ')
            return U_GC_ZS_MASK;
        if (c >= '0' && c <= '9')
            return kDecimalDigits;
        if (c >= 'A' && c <= 'Z')
            return kUppercase;
        if (c >= 'a' && c <= 'z')
            return kLowercase;
        constexpr std::string_view symbols = "$+<=>^`|~";
        const bool isSymbol = symbols.find(static_cast<char>(c)) != std::string_view::npos;
        return isSymbol ? U_GC_SM_MASK : U_GC_PO_MASK;
    }

}

std::uint32_t category(char32_t c)
{
    if (c < 0x80)
        return asciiCategory(c);
    return letters().loaded ? U_MASK(letters().category(static_cast<UChar32>(c))) : kUnassigned;
}

bool decomposes(char32_t c)
{
    return c >= 0x80 && letters().loaded
        && letters().property(static_cast<UChar32>(c), UCHAR_NFD_QUICK_CHECK) == UNORM_NO;
}

// ---- order

namespace {

    /// Opens a collator for the user's language. The "C" language orders as Unicode does by default, not by code.
    const UCollator* makeCollator(Collation collation)
    {
        const Orders& o = orders();
        const char* language = o.language();
        if (std::strncmp(language, "en_US_POSIX", 11) == 0)
            language = "";
        UErrorCode error = U_ZERO_ERROR;
        UCollator* const collator = o.open(language, &error);
        if (U_FAILURE(error))
            return nullptr;
        if (collation.ignoresCase)
            o.setAttribute(collator, UCOL_STRENGTH, UCOL_SECONDARY, &error);
        if (collation.readsNumbers)
            o.setAttribute(collator, UCOL_NUMERIC_COLLATION, UCOL_ON, &error);
        return collator;
    }

    const UCollator* collator(Collation collation)
    {
        static std::mutex& mutex = *new std::mutex;
        static const UCollator* kept[4] {};
        const std::lock_guard guard(mutex);
        const UCollator*& place
            = kept[(collation.ignoresCase ? 1 : 0) + (collation.readsNumbers ? 2 : 0)];
        if (!place)
            place = makeCollator(collation);
        return place;
    }

}

int collate(std::u16string_view a, std::u16string_view b, Collation collation)
{
    const UCollator* const by = orders().loaded ? collator(collation) : nullptr;
    if (!by)
        return std::clamp(a.compare(b), -1, 1);
    return static_cast<int>(orders().compare(by, a.data(), static_cast<std::int32_t>(a.size()),
        b.data(), static_cast<std::int32_t>(b.size())));
}

std::string collationKey(std::u16string_view text, Collation collation)
{
    std::string key(text.size() * 4 + 16, '\0');
    const UCollator* const by = orders().loaded ? collator(collation) : nullptr;
    if (!by) { // the order of units
        key.clear();
        for (const char16_t unit : text)
            key.append({ static_cast<char>(unit >> 8), static_cast<char>(unit) });
        return key;
    }
    const auto write = [&] {
        return static_cast<std::size_t>(orders().sortKey(by, text.data(),
            static_cast<std::int32_t>(text.size()), reinterpret_cast<std::uint8_t*>(key.data()),
            static_cast<std::int32_t>(key.size())));
    };
    const std::size_t length = write();
    const bool isTooShort = length > key.size();
    key.resize(length);
    if (isTooShort)
        write();
    return key;
}

}
