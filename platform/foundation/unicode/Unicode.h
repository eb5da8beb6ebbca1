// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// What text needs to know of Unicode. The library behind it is loaded by the first call of one of these; ASCII text
/// never makes one. Without the library every function answers what it would for ASCII and leaves the rest as it is.
///
/// Thread: any.
namespace brindle::unicode {

/// Answers the full default mapping, without any language's own rules; the length may change.
std::u16string lowercase(std::u16string_view text);
std::u16string uppercase(std::u16string_view text);
/// Answers every word with a capital and small letters behind it.
std::u16string titlecase(std::u16string_view text);
/// Answers the full case folding.
std::u16string foldCase(std::u16string_view text);

/// The four ways of writing composed letters.
enum class Form : std::uint8_t { composed, decomposed, compatiblyComposed, compatiblyDecomposed };
std::u16string normalize(std::u16string_view text, Form form);

/// Answers whether a letter joins the one before it when text is compared: combining marks.
bool isCombining(char32_t c);
/// Answers whether text may be cut before this character as far as a reader sees it.
bool extendsLetter(char32_t c);
/// Answers whether a letter is white space.
bool isWhiteSpace(char32_t c);

/// The general categories of letters, as bits.
enum Category : std::uint32_t {
    kUnassigned = 1u << 0,
    kUppercase = 1u << 1,
    kLowercase = 1u << 2,
    kTitlecase = 1u << 3,
    kOtherLetters = 3u << 4,
    kMarks = 7u << 6,
    kDecimalDigits = 1u << 9,
    kOtherNumbers = 3u << 10,
    kControls = 3u << 15, // formatting characters too
    kPunctuation = (31u << 19) | (3u << 28),
    kSymbols = 15u << 24,
    kAllCategories = (1u << 30) - 1,
};
/// Answers the one bit of a letter's category. Without the library all but ASCII is unassigned.
std::uint32_t category(char32_t c);
/// Answers whether a letter is written otherwise in the decomposed form.
bool decomposes(char32_t c);

/// How collation treats case and digits.
struct Collation {
    bool ignoresCase = false;
    bool readsNumbers = false;
};
/// Answers -1, 0 or 1, by the order of the user's language; the order of units without the library.
int collate(std::u16string_view a, std::u16string_view b, Collation collation);
/// Answers bytes that compare as the texts do: cheaper than `collate` where one text meets many.
std::string collationKey(std::u16string_view text, Collation collation);

}
