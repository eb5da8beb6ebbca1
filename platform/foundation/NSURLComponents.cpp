// SPDX-License-Identifier: Apache-2.0
#include "NSURLComponents.h"

#include "NSMutableArray.h"
#include "NSNumber.h"
#include "NSStringPrivate.h"
#include "NSURLQueryItem.h"
#include "PercentEscapesPrivate.h"
#include "URLPrivate.h"
#include "runtime/NSException.h"
#include "runtime/Table.h"

namespace brindle {

using characters::AsciiSet;
using strings::Contents;
using urls::OwnParts;
using urls::Parts;

namespace {

    using Piece = std::optional<std::string>;

    constexpr AsciiSet kItemName = urls::kQuery.without(AsciiSet("&="));
    constexpr AsciiSet kPathOrParameters = urls::kPath | AsciiSet(";");
    constexpr AsciiSet kItemValue = urls::kQuery.without(AsciiSet("&"));

    Piece owned(const Parts::Piece& piece)
    {
        return piece ? Piece(std::string(*piece)) : std::nullopt;
    }
    Parts::Piece lent(const Piece& piece) { return piece ? Parts::Piece(*piece) : std::nullopt; }

    OwnParts owned(const Parts& parts)
    {
        OwnParts out { owned(parts.scheme), owned(parts.user), owned(parts.password),
            owned(parts.host), owned(parts.port), owned(parts.path), owned(parts.query),
            owned(parts.fragment) };
        if (parts.opaque) {
            const std::size_t mark = parts.opaque->find('?');
            out.path = parts.opaque->substr(0, mark);
            if (mark != std::string_view::npos)
                out.query = parts.opaque->substr(mark + 1);
        }
        return out;
    }
    Parts lent(const OwnParts& parts)
    {
        Parts out;
        out.scheme = lent(parts.scheme);
        out.user = lent(parts.user);
        out.password = lent(parts.password);
        out.host = lent(parts.host);
        out.port = lent(parts.port);
        out.path = parts.path ? *parts.path : std::string_view("");
        out.query = lent(parts.query);
        out.fragment = lent(parts.fragment);
        return out;
    }

    Ref<NSString> escapedText(const Piece& piece) { return piece ? stringFrom(*piece) : nullptr; }
    Ref<NSString> plainText(const Piece& piece)
    {
        return piece ? escapes::removed(strings::View(std::string_view(*piece))) : nullptr;
    }

    [[noreturn]] void raiseBad(const NSObject& self, const char* selector)
    {
        raise("NSInvalidArgumentException",
            strings::place(self, selector) + "invalid characters in argument");
    }

    /// Answers a text with escapes for what is not allowed; raises for unpaired surrogates.
    std::string withEscapes(
        const NSObject& self, const char* selector, const NSString* text, AsciiSet allowed)
    {
        const Ref<NSString> escaped = escapes::added(Contents(text),
            [allowed](char c) { return allowed.contains(static_cast<unsigned char>(c)); });
        if (!escaped)
            raiseBad(self, selector);
        return utf8Of(escaped);
    }

    /// Cuts a text at every mark.
    std::vector<std::string_view> cut(std::string_view text, char mark)
    {
        std::vector<std::string_view> pieces;
        std::size_t begin = 0;
        for (std::size_t at = 0; (at = text.find(mark, begin)) != std::string_view::npos;
             begin = at + 1)
            pieces.push_back(text.substr(begin, at - begin));
        pieces.push_back(text.substr(begin));
        return pieces;
    }

    Ref<NSString> plainOrAsItIs(std::string_view text)
    {
        const Ref<NSString> plain = escapes::removed(strings::View(text));
        return plain ? plain : stringFrom(text);
    }

}

template <> struct NSURLComponents::Methods<struct Components> {

    // ---- making

    static Ref<NSURLComponents> alloc(Class& self)
    {
        return cast<NSURLComponents>(NSObject::Meta { &self }.alloc());
    }
    static Ref<NSURLComponents> withString(Class& self, NSString* text)
    {
        return alloc(self)->initWithString(text);
    }
    static Ref<NSURLComponents> withURL(Class& self, NSURL* url, bool resolving)
    {
        return alloc(self)->initWithURL_resolvingAgainstBaseURL(url, resolving);
    }
    static Ref<NSURLComponents> initWithString(NSURLComponents& self, NSString* text)
    {
        const Ref<NSObject> owner = super<NSURLComponents, "init", Ref<NSObject>>(self);
        const Contents contents(text);
        const std::optional<Parts> parts
            = text && contents->isNarrow() ? urls::parse(contents->narrow()) : std::nullopt;
        if (!owner || !parts)
            return nullptr;
        self.parts_ = owned(*parts);
        return &self;
    }
    static Ref<NSURLComponents> initWithURL(NSURLComponents& self, NSURL* url, bool resolving)
    {
        const Ref<NSString> text
            = resolving ? maybe(url)->absoluteString() : maybe(url)->relativeString();
        return self.initWithString(text.get());
    }

    // ---- what the pieces make

    static Ref<NSString> string(NSURLComponents& self)
    {
        const Parts parts = lent(self.parts_);
        const std::string_view path = *parts.path;
        const bool hasHost = parts.host || parts.user || parts.password || parts.port;
        if (hasHost ? !path.empty() && !path.starts_with('/') : path.starts_with("//"))
            return nullptr;
        if (!parts.scheme && !hasHost && path.substr(0, path.find('/')).find(':') != path.npos)
            return nullptr;
        Parts whole = parts;
        if (hasHost && !whole.host)
            whole.host = "";
        return stringFrom(whole.text());
    }
    static Ref<NSURL> URL(NSURLComponents& self) { return self.URLRelativeToURL(nullptr); }
    static Ref<NSURL> relativeURL(NSURLComponents& self, NSURL* base)
    {
        const Ref<NSString> text = self.string();
        return text ? NSURL::cls().URLWithString_relativeToURL(text.get(), base) : nullptr;
    }

    // ---- pieces

    template <Piece OwnParts::*Field> static Ref<NSString> plain(NSURLComponents& self)
    {
        return plainText(self.parts_.*Field);
    }
    template <Piece OwnParts::*Field> static Ref<NSString> encoded(NSURLComponents& self)
    {
        return escapedText(self.parts_.*Field);
    }
    template <Piece OwnParts::*Field, const AsciiSet& Allowed, Text Selector>
    static void setPlain(NSURLComponents& self, NSString* text)
    {
        self.parts_.*Field
            = text ? Piece(withEscapes(self, Selector.characters, text, Allowed)) : std::nullopt;
    }
    template <Piece OwnParts::*Field, const AsciiSet& Allowed, Text Selector>
    static void setEncoded(NSURLComponents& self, NSString* text)
    {
        const std::string bytes = utf8Of(text);
        if (!urls::isEscaped(bytes, Allowed))
            raiseBad(self, Selector.characters);
        self.parts_.*Field = text ? Piece(bytes) : std::nullopt;
    }

    static Ref<NSString> path(NSURLComponents& self)
    {
        return plainText(self.parts_.path ? self.parts_.path : Piece(""));
    }
    static Ref<NSString> encodedPath(NSURLComponents& self)
    {
        return stringFrom(self.parts_.path.value_or(""));
    }
    static void setScheme(NSURLComponents& self, NSString* text)
    {
        const std::string bytes = utf8Of(text);
        if (text && !urls::isScheme(bytes))
            raiseBad(self, "setScheme:");
        self.parts_.scheme = text ? Piece(bytes) : std::nullopt;
    }

    static Ref<NSString> host(NSURLComponents& self)
    {
        const Ref<NSString> host = plainText(self.parts_.host);
        const bool isAddress = host && host->hasPrefix("["_ns) && host->hasSuffix("]"_ns);
        return isAddress ? host->substringWithRange({ 1, host->length() - 2 }) : host;
    }
    static void setHost(NSURLComponents& self, NSString* text)
    {
        Piece host;
        if (text) {
            // What has colons is a numeric address, which stands in brackets.
            const std::string bytes = utf8Of(text);
            const bool isAddress = bytes.find(':') != std::string::npos;
            const bool isBracketed = bytes.starts_with('[') && bytes.ends_with(']');
            host = isAddress ? (isBracketed ? bytes : "[" + bytes + "]")
                             : withEscapes(self, "setHost:", text, urls::kUser);
            if (!urls::isHost(*host))
                raiseBad(self, "setHost:");
        }
        self.parts_.host = host;
    }
    static void setEncodedHost(NSURLComponents& self, NSString* text)
    {
        const std::string bytes = utf8Of(text);
        if (!urls::isHost(bytes))
            raiseBad(self, "setPercentEncodedHost:");
        self.parts_.host = text ? Piece(bytes) : std::nullopt;
    }

    static Ref<NSNumber> port(NSURLComponents& self)
    {
        if (!self.parts_.port || self.parts_.port->empty())
            return nullptr;
        return NSNumber::cls().numberWithInteger(stringFrom(*self.parts_.port)->integerValue());
    }
    static void setPort(NSURLComponents& self, NSNumber* port)
    {
        const NSInteger number = maybe(port)->integerValue();
        if (number < 0)
            raise("NSInvalidArgumentException",
                strings::place(self, "setPort:") + "the port is negative");
        self.parts_.port = port ? Piece(std::to_string(number)) : std::nullopt;
    }

    // ---- parameters

    static Ref<NSArray> queryItems(NSURLComponents& self)
    {
        if (!self.parts_.query)
            return nullptr;
        const Ref<NSMutableArray> items = NSMutableArray::cls().array();
        if (self.parts_.query->empty())
            return cast<NSArray>(items->copy());
        for (const std::string_view piece : cut(*self.parts_.query, '&')) {
            const std::size_t mark = piece.find('=');
            const Ref<NSString> name = plainOrAsItIs(piece.substr(0, mark));
            const Ref<NSString> value
                = mark == std::string_view::npos ? nullptr : plainOrAsItIs(piece.substr(mark + 1));
            items->addObject(
                NSURLQueryItem::cls().queryItemWithName_value(name.get(), value.get()).get());
        }
        return cast<NSArray>(items->copy());
    }
    static void setQueryItems(NSURLComponents& self, NSArray* items)
    {
        Piece query = items ? Piece("") : std::nullopt;
        const NSUInteger count = maybe(items)->count();
        for (NSUInteger i = 0; i < count; ++i) {
            const auto item = cast<NSURLQueryItem>(items->objectAtIndex(i));
            if (i > 0)
                *query += '&';
            *query += withEscapes(self, "setQueryItems:", item->name().get(), kItemName);
            if (const Ref<NSString> value = item->value())
                *query += '=' + withEscapes(self, "setQueryItems:", value.get(), kItemValue);
        }
        self.parts_.query = query;
    }

    // ---- a value

    static bool isEqual(NSURLComponents& self, NSObject* other)
    {
        return other && other->isKindOfClass(NSURLComponents::cls())
            && static_cast<NSURLComponents*>(other)->parts_ == self.parts_;
    }
    static std::uint64_t hash(NSURLComponents& self)
    {
        return stringFrom(lent(self.parts_).text())->hash();
    }
    static Ref<NSObject> copyWithZone(NSURLComponents& self, void*)
    {
        const auto copy = cast<NSURLComponents>(self.classObject()->send<"new", Ref<NSObject>>());
        copy->parts_ = self.parts_;
        return copy;
    }

    static void table(Builder& t)
    {
        using namespace urls;
        t.conformsTo({ "NSCopying" });
        t.classMethods({
            { "componentsWithString:", imp<withString> },
            { "componentsWithURL:resolvingAgainstBaseURL:", imp<withURL> },
        });
        t.methods({
            { "initWithString:", imp<initWithString> },
            { "initWithURL:resolvingAgainstBaseURL:", imp<initWithURL> },
            { "string", imp<string> },
            { "URL", imp<URL> },
            { "URLRelativeToURL:", imp<relativeURL> },
            { "scheme", imp<plain<&OwnParts::scheme>> },
            { "setScheme:", imp<setScheme> },
            { "user", imp<plain<&OwnParts::user>> },
            { "setUser:", imp<setPlain<&OwnParts::user, kUser, "setUser:">> },
            { "password", imp<plain<&OwnParts::password>> },
            { "setPassword:", imp<setPlain<&OwnParts::password, kUser, "setPassword:">> },
            { "host", imp<host> },
            { "setHost:", imp<setHost> },
            { "port", imp<port> },
            { "setPort:", imp<setPort> },
            { "path", imp<path> },
            { "setPath:", imp<setPlain<&OwnParts::path, kPath, "setPath:">> },
            { "query", imp<plain<&OwnParts::query>> },
            { "setQuery:", imp<setPlain<&OwnParts::query, kQuery, "setQuery:">> },
            { "fragment", imp<plain<&OwnParts::fragment>> },
            { "setFragment:", imp<setPlain<&OwnParts::fragment, kQuery, "setFragment:">> },
            { "percentEncodedUser", imp<encoded<&OwnParts::user>> },
            { "setPercentEncodedUser:",
                imp<setEncoded<&OwnParts::user, kUser, "setPercentEncodedUser:">> },
            { "percentEncodedPassword", imp<encoded<&OwnParts::password>> },
            { "setPercentEncodedPassword:",
                imp<setEncoded<&OwnParts::password, kUser, "setPercentEncodedPassword:">> },
            { "percentEncodedHost", imp<encoded<&OwnParts::host>> },
            { "setPercentEncodedHost:", imp<setEncodedHost> },
            { "percentEncodedPath", imp<encodedPath> },
            { "setPercentEncodedPath:",
                imp<setEncoded<&OwnParts::path, kPathOrParameters, "setPercentEncodedPath:">> },
            { "percentEncodedQuery", imp<encoded<&OwnParts::query>> },
            { "setPercentEncodedQuery:",
                imp<setEncoded<&OwnParts::query, kQuery, "setPercentEncodedQuery:">> },
            { "percentEncodedFragment", imp<encoded<&OwnParts::fragment>> },
            { "setPercentEncodedFragment:",
                imp<setEncoded<&OwnParts::fragment, kQuery, "setPercentEncodedFragment:">> },
            { "queryItems", imp<queryItems> },
            { "setQueryItems:", imp<setQueryItems> },
            { "isEqual:", imp<isEqual> },
            { "hash", imp<hash> },
            { "copyWithZone:", imp<copyWithZone> },
        });
    }
};
BRINDLE_RECORD(NSURLComponents, Components)

}
