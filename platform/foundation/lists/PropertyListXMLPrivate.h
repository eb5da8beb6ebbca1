// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstring>

#include "PropertyListPrivate.h"

// The XML of property lists as tags and text.

namespace brindle::lists {

inline constexpr std::ptrdiff_t kBlock = 16;

constexpr bool isSpace(char c) { return c == ' ' || c == '\n' || c == '\t' || c == '\r'; }

/// Answers whether `kBlock` bytes are ASCII that stands in XML as it is. Other bytes may do so too.
inline bool isPlainBlock(const char* at)
{
    unsigned char special = 0;
    for (std::ptrdiff_t i = 0; i < kBlock; ++i) {
        const auto c = static_cast<unsigned char>(at[i]);
        special |= static_cast<unsigned char>(c < 0x20) | static_cast<unsigned char>(c >= 0x80)
            | static_cast<unsigned char>(c == '<') | static_cast<unsigned char>(c == '>')
            | static_cast<unsigned char>(c == '&');
    }
    return !special;
}

enum class Tag : unsigned char {
    none,
    plist,
    array,
    dict,
    key,
    string,
    integer,
    real,
    date,
    data,
    yes,
    no
};

struct Element {
    Tag tag = Tag::none;
    bool isEmpty = false; ///< ends in its own tag
};

struct Text {
    std::string_view bytes; ///< UTF-8, good until the next text is read
    bool isAscii = true;
    bool isInSource = false; ///< good as long as the source
};

/// Reads the little of XML that property lists need, strictly, and refuses the rest: no document type of their own, no
/// entities but the five and numbers. Nothing that a document names is opened.
///
/// Operations answer false after saying why in the failure.
class XMLSource {
public:
    /// - text: valid UTF-8.
    XMLSource(std::string_view text, Failure& failure)
        : text_(text)
        , at_(text.data())
        , end_(text.data() + text.size())
        , failure_(failure)
    {
    }

    /// Reads everything up to the start tag of the list, and that.
    bool prolog();
    /// Makes sure that nothing stands behind the list.
    bool epilog();
    /// Goes on to the next tag, over spaces, comments and instructions.
    bool skip();
    bool isAtEndTag() const { return left() > 1 && at_[0] == '<' && at_[1] == '/'; }
    /// Reads a start tag.
    bool open(Element& element);
    /// Reads the end tag of an element.
    bool close(Tag tag);
    /// Reads an element's text and its end tag.
    bool text(Tag tag, Text& text);

    /// Says that something is wrong here.
    bool refuse(std::string reason);

private:
    std::size_t left() const { return static_cast<std::size_t>(end_ - at_); }
    std::string_view rest() const { return { at_, left() }; }
    template <std::size_t Size> bool take(const char (&word)[Size])
    {
        constexpr std::size_t kLength = Size - 1;
        if (left() < kLength || std::memcmp(at_, word, kLength) != 0)
            return false;
        at_ += kLength;
        return true;
    }
    void skipSpace();
    bool skipMisc(bool& isSkipped);
    bool skipTo(std::string_view end, const char* reason);
    bool documentType();
    bool literal(std::string_view& value);
    bool attributes();
    std::string_view name();
    bool special(const char* run);
    bool entity();
    bool addNumber(std::string_view digits);

    std::string_view text_;
    const char* at_;
    const char* end_;
    Failure& failure_;
    std::string buffer_; // of a text that does not stand in the source as it is
};

}
