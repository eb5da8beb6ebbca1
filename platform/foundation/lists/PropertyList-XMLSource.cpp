// SPDX-License-Identifier: Apache-2.0
#include "PropertyListXMLPrivate.h"

#include <array>
#include <charconv>

#include "foundation/NSStringPrivate.h"
#include "foundation/SameBytesPrivate.h"

namespace brindle::lists {

namespace {

    /// By their numbers.
    constexpr std::string_view kNames[] = { "", "plist", "array", "dict", "key", "string",
        "integer", "real", "date", "data", "true", "false" };
    static_assert(std::size(kNames) == static_cast<std::size_t>(Tag::no) + 1);

    constexpr std::string_view nameOf(Tag tag) { return kNames[static_cast<std::size_t>(tag)]; }

    /// Answers up to eight letters as one number, which is quicker to compare; 0 for more.
    constexpr std::uint64_t packed(std::string_view name)
    {
        std::uint64_t word = 0;
        if (name.size() > sizeof word)
            return 0;
        for (const char c : name)
            word = word << 8 | static_cast<unsigned char>(c);
        return word;
    }
    constexpr std::uint64_t packed(Tag tag) { return packed(nameOf(tag)); }

    Tag tagOf(std::string_view name)
    {
        switch (packed(name)) {
        case packed(Tag::plist):
            return Tag::plist;
        case packed(Tag::array):
            return Tag::array;
        case packed(Tag::dict):
            return Tag::dict;
        case packed(Tag::key):
            return Tag::key;
        case packed(Tag::string):
            return Tag::string;
        case packed(Tag::integer):
            return Tag::integer;
        case packed(Tag::real):
            return Tag::real;
        case packed(Tag::date):
            return Tag::date;
        case packed(Tag::data):
            return Tag::data;
        case packed(Tag::yes):
            return Tag::yes;
        case packed(Tag::no):
            return Tag::no;
        default:
            return Tag::none;
        }
    }

    constexpr std::array<bool, 256> kNameParts = [] {
        std::array<bool, 256> parts {};
        for (std::size_t c = 'a'; c <= 'z'; ++c)
            parts[c] = parts[c - 'a' + 'A'] = true;
        for (std::size_t c = '0'; c <= '9'; ++c)
            parts[c] = true;
        for (std::size_t c = 0x80; c < parts.size(); ++c)
            parts[c] = true;
        parts['-'] = parts['_'] = parts['.'] = parts[':'] = true;
        return parts;
    }();

    /// The bytes at which reading text stops to look: markup, the end of a section, line ends to be unified, what XML
    /// does not have, and the byte that U+FFFE and U+FFFF begin with.
    constexpr std::array<bool, 256> kStops = [] {
        std::array<bool, 256> stops {};
        for (std::size_t c = 0; c < 0x20; ++c)
            stops[c] = c != '\t' && c != '\n';
        stops['<'] = stops['&'] = stops['>'] = stops[0xef] = true;
        return stops;
    }();

    /// Answers whether a character begins here that XML does not have.
    bool isForbidden(const char* at)
    {
        const auto first = static_cast<unsigned char>(*at);
        if (first == 0xef)
            return at[1] == '\xbf' && (at[2] == '\xbe' || at[2] == '\xbf');
        return first < 0x20 && !isSpace(*at);
    }

    bool isCharacter(std::uint32_t c)
    {
        return c == '\t' || c == '\n' || c == '\r' || (c >= 0x20 && c < 0xd800)
            || (c >= 0xe000 && c < 0xfffe) || (c >= 0x10000 && c <= 0x10ffff);
    }

}

bool XMLSource::refuse(std::string reason)
{
    return failInLine(
        failure_, text_.substr(0, static_cast<std::size_t>(at_ - text_.data())), std::move(reason));
}

void XMLSource::skipSpace()
{
    while (at_ < end_ && isSpace(*at_))
        ++at_;
}

std::string_view XMLSource::name()
{
    const char* const start = at_;
    while (at_ < end_ && kNameParts[static_cast<unsigned char>(*at_)])
        ++at_;
    return { start, static_cast<std::size_t>(at_ - start) };
}

bool XMLSource::skipTo(std::string_view end, const char* reason)
{
    const std::size_t place = rest().find(end);
    if (place == std::string_view::npos)
        return refuse(reason);
    at_ += place + end.size();
    return true;
}

// ---- around the list

bool XMLSource::skipMisc(bool& isSkipped)
{
    isSkipped = true;
    if (take("<!--"))
        return skipTo("--", "a comment does not end")
            && (take(">") || refuse("two hyphens stand in a comment"));
    if (take("<?")) {
        const bool isDeclaration = at_ == text_.data() + 2;
        const std::string_view target = name();
        if (target.empty() || (target == "xml") != isDeclaration)
            return refuse("an instruction stands where none may be");
        return skipTo("?>", "an instruction does not end");
    }
    isSkipped = false;
    return true;
}

bool XMLSource::skip()
{
    for (bool isSkipped = true; isSkipped;) {
        skipSpace();
        if (at_ == end_)
            return refuse("the text ends in the middle of the list");
        if (!skipMisc(isSkipped))
            return false;
    }
    return *at_ == '<' || refuse("text stands where a tag belongs");
}

bool XMLSource::literal(std::string_view& value)
{
    skipSpace();
    if (at_ == end_ || (*at_ != '"' && *at_ != '\''))
        return refuse("a quoted text is missing");
    const char quote = *at_++;
    const std::size_t length = rest().find(quote);
    if (length == std::string_view::npos)
        return refuse("a quoted text does not end");
    value = rest().substr(0, length);
    at_ += length + 1;
    return true;
}

/// Lets the document type of property lists pass, by its name alone or with its usual identifiers.
bool XMLSource::documentType()
{
    skipSpace();
    if (name() != "plist")
        return refuse("the document type is not that of a property list");
    skipSpace();
    if (take("PUBLIC")) {
        std::string_view type;
        std::string_view place;
        if (!literal(type) || !literal(place))
            return false;
        if (type.find("//DTD PLIST 1.0//") == std::string_view::npos
            || !place.ends_with("/PropertyList-1.0.dtd"))
            return refuse("the document type is not that of a property list");
        skipSpace();
    }
    return take(">") || refuse("a document type of its own is not read");
}

bool XMLSource::prolog()
{
    Element element;
    if (!skip())
        return false;
    if (take("<!DOCTYPE") && (!documentType() || !skip()))
        return false;
    if (!open(element))
        return false;
    if (element.tag != Tag::plist)
        return refuse("the list does not begin with its tag");
    return !element.isEmpty || refuse("the list is empty");
}

bool XMLSource::epilog()
{
    for (bool isSkipped = true; isSkipped;) {
        skipSpace();
        if (at_ == end_)
            return true;
        if (!skipMisc(isSkipped))
            return false;
    }
    return refuse("text stands behind the list");
}

// ---- tags

bool XMLSource::attributes()
{
    for (;;) {
        skipSpace();
        if (name().empty())
            return true;
        skipSpace();
        std::string_view value;
        if (!take("="))
            return refuse("an attribute has no value");
        if (!literal(value))
            return false;
        if (value.find_first_of("<&") != std::string_view::npos)
            return refuse("an attribute holds markup");
    }
}

bool XMLSource::open(Element& element)
{
    if (!take("<"))
        return refuse("a tag is missing");
    const std::string_view tag = name();
    element.tag = tagOf(tag);
    if (element.tag == Tag::none)
        return refuse("the tag <" + std::string(tag.substr(0, 40)) + "> is not known");
    if (element.tag == Tag::plist && !attributes())
        return false;
    skipSpace();
    element.isEmpty = take("/");
    return take(">") || refuse("a tag does not end");
}

bool XMLSource::close(Tag tag)
{
    const std::string_view known = nameOf(tag);
    if (take("</") && left() >= known.size() && sameBytes(at_, known.data(), known.size())) {
        at_ += known.size();
        skipSpace();
        if (take(">"))
            return true;
    }
    return refuse("the end of <" + std::string(known) + "> is missing");
}

// ---- text

bool XMLSource::text(Tag tag, Text& text)
{
    const char* const start = at_;
    const char* run = start; // what follows stands in the source as it is
    bool isAsItIs = true;
    unsigned seen = 0;
    buffer_.clear();
    for (;;) {
        while (end_ - at_ >= kBlock && isPlainBlock(at_))
            at_ += kBlock;
        while (at_ < end_ && !kStops[static_cast<unsigned char>(*at_)])
            seen |= static_cast<unsigned char>(*at_++);
        if (at_ == end_)
            return refuse("the text ends in the middle of the list");
        const auto stop = static_cast<unsigned char>(*at_);
        if (stop == 0xef) {
            if (isForbidden(at_))
                return refuse("a character is not allowed in XML");
            seen |= stop;
            at_ += 3;
        } else if (stop == '>') {
            if (at_ - run >= 2 && at_[-1] == ']' && at_[-2] == ']')
                return refuse("the end of a section stands without its begin");
            ++at_;
        } else if (isAtEndTag()) {
            break;
        } else {
            isAsItIs = false;
            if (!special(run))
                return false;
            run = at_;
        }
    }
    if (!isAsItIs)
        buffer_.append(run, at_);
    text.isInSource = isAsItIs;
    text.bytes = isAsItIs ? std::string_view { start, static_cast<std::size_t>(at_ - start) }
                          : std::string_view(buffer_);
    text.isAscii = isAsItIs && seen < 0x80;
    return close(tag);
}

/// Adds a run of ordinary text to the buffer, and what stands behind it: a reference, a section, a line end.
bool XMLSource::special(const char* run)
{
    buffer_.append(run, at_);
    if (take("&"))
        return entity();
    if (take("\r")) {
        take("\n");
        buffer_ += '\n';
        return true;
    }
    if (take("<![CDATA[")) {
        const char* const start = at_;
        if (!skipTo("]]>", "a section does not end"))
            return false;
        for (const char* c = start; c < at_ - 3; ++c) {
            if (isForbidden(c))
                return refuse("a character is not allowed in XML");
            if (*c == '\r' && c[1] == '\n')
                ++c;
            buffer_ += *c == '\r' ? '\n' : *c;
        }
        return true;
    }
    if (*at_ != '<')
        return refuse("a character is not allowed in XML");
    bool isSkipped = false;
    if (!skipMisc(isSkipped))
        return false;
    return isSkipped || refuse("a tag stands in a text");
}

bool XMLSource::entity()
{
    constexpr std::size_t kLongest = 16;
    const std::size_t length = rest().substr(0, kLongest).find(';');
    if (length == std::string_view::npos)
        return refuse("an ampersand stands alone");
    const std::string_view named = rest().substr(0, length);
    constexpr std::pair<std::string_view, char> kEntities[]
        = { { "lt", '<' }, { "gt", '>' }, { "amp", '&' }, { "quot", '"' }, { "apos", '\'' } };
    for (const auto& [known, character] : kEntities) {
        if (named == known) {
            buffer_ += character;
            at_ += length + 1;
            return true;
        }
    }
    if (!named.starts_with('#') || !addNumber(named.substr(1)))
        return refuse("the entity &" + std::string(named) + "; is not known");
    at_ += length + 1;
    return true;
}

/// Adds the character of a number, as in "65" and "x41".
bool XMLSource::addNumber(std::string_view digits)
{
    const bool isHexadecimal = digits.starts_with('x');
    if (isHexadecimal)
        digits.remove_prefix(1);
    std::uint32_t c = 0;
    const auto [end, error]
        = std::from_chars(digits.data(), digits.data() + digits.size(), c, isHexadecimal ? 16 : 10);
    if (error != std::errc() || end != digits.data() + digits.size() || !isCharacter(c))
        return false;
    strings::addUtf8(buffer_, c);
    return true;
}

}
