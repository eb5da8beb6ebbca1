// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <vector>

#include "NSString.h"

// What the sources of strings share: reading units whatever the storage, building text, the ways of failing.

namespace brindle::strings {

/// What stands for units and bytes that are no character.
inline constexpr char32_t kReplacement = 0xfffd;

/// The units of some text that lives elsewhere: ASCII bytes or UTF-16.
class View {
public:
    View() = default;
    View(std::string_view ascii)
        : narrow_(ascii.data())
        , length_(ascii.size())
    {
    }
    View(std::u16string_view units)
        : wide_(units.data())
        , length_(units.size())
    {
    }

    bool isNarrow() const { return !wide_; }
    std::size_t size() const { return length_; }
    char16_t operator[](std::size_t index) const
    {
        return wide_ ? wide_[index] : static_cast<unsigned char>(narrow_[index]);
    }
    View part(std::size_t from, std::size_t length) const
    {
        return wide_ ? View(wide().substr(from, length)) : View(narrow().substr(from, length));
    }
    View part(NSRange range) const { return part(range.location, range.length); }
    std::string_view narrow() const { return { narrow_, length_ }; }
    std::u16string_view wide() const { return { wide_, length_ }; }
    std::u16string units() const
    {
        return wide_ ? std::u16string(wide()) : std::u16string(narrow().begin(), narrow().end());
    }
    /// Answers the code point that begins at an index, and how many units it has. An unpaired surrogate is itself.
    char32_t codePoint(std::size_t index, std::size_t& units) const;

private:
    const char* narrow_ = "";
    const char16_t* wide_ = nullptr;
    std::size_t length_ = 0;
};

/// The way from the string's sources to its storage.
struct Gate {
    static Storage& storage(const NSString& string)
    {
        return const_cast<NSString&>(string).storage_;
    }
    /// Forgets what was kept of a text that is about to change.
    static void forget(NSString& string);
};

/// The units of a string object, gathered by messages when its class keeps them in its own way.
///
/// Good until the string changes or ends. Nil has no units.
class Contents {
public:
    Contents(const NSString* string);
    Contents(const Contents&) = delete;
    Contents& operator=(const Contents&) = delete;
    const View& view() const { return view_; }
    operator View() const { return view_; }
    const View* operator->() const { return &view_; }
    /// Answers whether the units are the object's own storage.
    bool isStored() const { return isStored_; }

private:
    std::u16string gathered_;
    View view_;
    bool isStored_ = false;
};

/// Text in the making: ASCII as long as possible.
class TextBuilder {
public:
    void reserve(std::size_t units) { narrow_.reserve(units); }
    void add(View text);
    void add(char16_t unit);
    void add(std::string_view ascii) { add(View(ascii)); }
    /// Takes UTF-8; what is no UTF-8 reads U+FFFD.
    void addUtf8(std::string_view utf8);
    void add(std::size_t times, char16_t unit);
    std::size_t size() const { return isWide_ ? wide_.size() : narrow_.size(); }
    /// Gives the text away.
    void moveTo(Storage& storage);
    Ref<NSString> string();

private:
    void widen();

    std::string narrow_;
    std::u16string wide_;
    bool isWide_ = false;
};

// ---- making strings

/// Answers a string of the plain class.
Ref<NSString> plain(View text);
Ref<NSString> plain(std::string&& ascii);
Ref<NSString> plain(std::u16string&& units);
/// Replaces what a storage holds; false, and nothing changes, for invalid UTF-8.
bool assignUtf8(Storage& storage, std::string_view utf8);
void assign(Storage& storage, View text);
View viewOf(const Storage& storage);

bool isAscii(std::string_view bytes);
bool isAscii(std::u16string_view units);
/// Answers whether an object is a string of whatever class.
bool isString(const NSObject* object);
bool equal(View a, View b);
/// Answers a hash by the units, however they are kept; never 0.
std::uint64_t hashOf(View text);
std::uint64_t hashOf(View text, std::uint64_t seed);
/// Answers UTF-8; unpaired surrogates read U+FFFD.
std::string toUtf8(View text);
/// Adds a code point, no surrogate, as UTF-8.
void addUtf8(std::string& out, char32_t c);
/// Answers how many bytes there are before the first that is not UTF-8.
std::size_t validUtf8(std::string_view bytes);
/// Answers units; nothing for invalid UTF-8.
std::optional<std::u16string> fromUtf8(std::string_view utf8);

constexpr bool isHigh(char16_t unit) { return (unit & 0xfc00) == 0xd800; }
constexpr bool isLow(char16_t unit) { return (unit & 0xfc00) == 0xdc00; }
constexpr NSRange notFound() { return { static_cast<NSUInteger>(NSNotFound), 0 }; }

// ---- failing

/// Answers "*** -[Class selector]: ".
std::string place(const NSObject& self, const char* selector);
/// Raises unless the index is below `end`; the text names the string's length.
void checkIndex(const NSObject& self, const char* selector, NSUInteger index, NSUInteger end,
    NSUInteger length);
void checkRange(const NSObject& self, const char* selector, NSRange range, NSUInteger length);
/// Raises when an argument is nil that must not be.
void checkArgument(const NSObject& self, const char* selector, const void* argument);

// ---- bytes

/// Reads bytes into a storage; false when they are no text in the encoding, or the encoding is unknown.
bool decode(Storage& storage, std::string_view bytes, NSStringEncoding encoding);
/// Writes text as bytes, with the byte-order mark that the encoding calls for when `mark` says so.
/// - Returns: nothing when the encoding lacks a letter and `lossy` is not set, or is unknown.
std::optional<std::string> encode(View text, NSStringEncoding encoding, bool lossy, bool mark);

// ---- comparing

/// Finds text in a range; not found where `wanted` is empty.
NSRange find(View text, View wanted, NSStringCompareOptions options, NSRange range);
NSComparisonResult compare(View a, View b, NSStringCompareOptions options);
/// Answers the text as comparisons with these options see it: decomposed unless they are literal, and folded.
std::u16string canonical(View text, NSStringCompareOptions options);
/// Answers the text as the insensitive options see it.
std::u16string fold(View text, NSStringCompareOptions options);
/// Finds all that do not overlap, from the start; an anchored search finds one at most.
std::vector<NSRange> findAll(View text, View wanted, NSStringCompareOptions options, NSRange range);
/// Answers the text with every match replaced, and how many there were.
Ref<NSString> replace(View text, View target, View replacement, NSStringCompareOptions options,
    NSRange range, NSUInteger& count);

}
