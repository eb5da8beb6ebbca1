// SPDX-License-Identifier: Apache-2.0
#include "NSURL.h"

#include <algorithm>
#include <charconv>
#include <unistd.h>
#include <vector>

#include <sys/stat.h>

#include "CodingTable.h"
#include "NSNumber.h"
#include "NSStringPrivate.h"
#include "PercentEscapesPrivate.h"
#include "URLPrivate.h"
#include "runtime/NSException.h"
#include "runtime/Runtime.h"
#include "runtime/Table.h"

namespace brindle {

using strings::Contents;
using urls::Parts;
using urls::Spelling;

namespace {

    /// Takes text apart; the pieces are views of the string that is kept. False for what is no URL.
    bool read(Spelling& spelling, std::string text)
    {
        spelling.string = strings::plain(std::move(text));
        const std::optional<Parts> parts
            = urls::parse(strings::viewOf(strings::Gate::storage(*spelling.string.get())).narrow());
        if (parts)
            spelling.parts = *parts;
        return parts.has_value();
    }

    Ref<NSString> escapedPiece(const Parts::Piece& piece)
    {
        return piece ? stringFrom(*piece) : nullptr;
    }
    Ref<NSString> plainPiece(const Parts::Piece& piece)
    {
        return piece ? escapes::removed(strings::View(*piece)) : nullptr;
    }

    /// Answers a path without escapes and without a slash at the end.
    Ref<NSString> plainPath(const Parts& parts)
    {
        std::string_view path = parts.path.value_or("");
        while (path.size() > 1 && path.ends_with('/'))
            path.remove_suffix(1);
        const Ref<NSString> plain = parts.path ? plainPiece(path) : nullptr;
        const bool hasEnd = plain && utf16Of(plain).find(u'\0') != std::u16string::npos;
        return hasEnd ? nullptr : plain;
    }

    std::u16string workingFolder()
    {
        std::vector<char> room(4096);
        while (!::getcwd(room.data(), room.size())) {
            if (errno != ERANGE)
                return u"/";
            room.resize(room.size() * 2);
        }
        return strings::fromUtf8(room.data()).value_or(u"/");
    }

}

Ref<NSURL> URLAccess::withPath(const NSURL& url, std::string_view path)
{
    Parts parts = url.own_.parts;
    parts.path = path;
    std::string text = parts.text();
    if (text.empty())
        text = "./"; // the folder it is in; no text at all is no URL
    return NSURL::cls().URLWithString_relativeToURL(
        strings::plain(std::move(text)).get(), url.base_.get());
}

std::string URLAccess::filePath(const NSURL& url)
{
    return url.isFileURL() ? utf8Of(url.path()) : std::string();
}

template <> struct NSURL::Methods<struct Pieces> {

    // ---- making

    static Ref<NSURL> alloc(Class& self) { return cast<NSURL>(NSObject::Meta { &self }.alloc()); }
    static Ref<NSURL> withString(Class& self, NSString* string)
    {
        return alloc(self)->initWithString(string);
    }
    static Ref<NSURL> withStringAndBase(Class& self, NSString* string, NSURL* base)
    {
        return alloc(self)->initWithString_relativeToURL(string, base);
    }
    static Ref<NSURL> withPath(Class& self, NSString* path)
    {
        return alloc(self)->initFileURLWithPath(path);
    }
    static Ref<NSURL> withPathAndKind(Class& self, NSString* path, bool isDirectory)
    {
        return alloc(self)->initFileURLWithPath_isDirectory(path, isDirectory);
    }
    static Ref<NSURL> withComponents(Class& self, NSArray* components)
    {
        return withPath(self, NSString::cls().pathWithComponents(components).get());
    }

    static Ref<NSURL> initWithString(NSURL& self, NSString* string)
    {
        return self.initWithString_relativeToURL(string, nullptr);
    }
    static Ref<NSURL> initWithBase(NSURL& self, NSString* string, NSURL* base)
    {
        if (!string)
            raise("NSInvalidArgumentException",
                "*** -[NSURL initWithString:relativeToURL:]: nil string parameter");
        if (!super<NSURL, "init", Ref<NSObject>>(self))
            return nullptr;
        const Contents text(string);
        const bool isText = text->isNarrow() && (text->size() > 0 || base);
        if (!isText || !read(self.own_, std::string(text->narrow())))
            return nullptr;
        if (base && !self.own_.parts.scheme && !setBase(self, base))
            return nullptr;
        if (self.isFileURL())
            self.filePath_ = plainPath(parts(self));
        return &self;
    }
    static bool setBase(NSURL& self, NSURL* base)
    {
        self.base_ = base->absoluteURL();
        auto absolute = std::make_unique<Spelling>();
        std::string path;
        const Parts& from = URLAccess::absolute(*self.base_.get()).parts;
        std::string text = urls::resolve(from, self.own_.parts, path).text();
        const bool isURL = !text.empty() && read(*absolute, std::move(text));
        self.absolute_ = std::move(absolute);
        return isURL;
    }

    static void checkPath(NSString* path)
    {
        if (!path)
            raise("NSInvalidArgumentException",
                "*** -[NSURL initFileURLWithPath:]: nil string parameter");
    }
    static Ref<NSURL> initWithPathAndKind(NSURL& self, NSString* path, bool isDirectory)
    {
        checkPath(path);
        std::u16string text = utf16Of(path);
        if (!text.starts_with(u'/'))
            text = workingFolder() + u"/" + text;
        while (text.size() > 1 && text.ends_with(u'/')) {
            text.pop_back();
            isDirectory = true;
        }
        if (isDirectory && text != u"/")
            text += u'/';
        const Ref<NSString> escaped = escapes::added(strings::View(text),
            [](char c) { return urls::kPath.contains(static_cast<unsigned char>(c)); });
        return escaped
            ? self.initWithString("file://"_ns->stringByAppendingString(escaped.get()).get())
            : nullptr;
    }
    static Ref<NSURL> initWithPath(NSURL& self, NSString* path)
    {
        checkPath(path);
        struct stat facts { };
        const std::string bytes = utf8Of(path);
        const bool isWhole = bytes.find('\0') == std::string::npos;
        return self.initFileURLWithPath_isDirectory(
            path, isWhole && ::stat(bytes.c_str(), &facts) == 0 && S_ISDIR(facts.st_mode));
    }

    // ---- text and base

    static const Parts& parts(const NSURL& self) { return URLAccess::absolute(self).parts; }

    static Ref<NSString> absoluteString(NSURL& self) { return URLAccess::absolute(self).string; }
    static Ref<NSString> relativeString(NSURL& self) { return self.own_.string; }
    static Ref<NSURL> baseURL(NSURL& self) { return self.base_; }
    static Ref<NSURL> absoluteURL(NSURL& self)
    {
        if (!self.base_)
            return &self;
        return NSURL::cls().URLWithString(self.absoluteString().get());
    }
    static Ref<NSURL> standardizedURL(NSURL& self)
    {
        const Ref<NSURL> whole = self.absoluteURL();
        const std::string_view path = parts(*whole.get()).path.value_or("");
        return path.starts_with('/') ? URLAccess::withPath(*whole.get(), urls::withoutDots(path))
                                     : whole;
    }

    // ---- pieces

    static Ref<NSString> scheme(NSURL& self) { return escapedPiece(parts(self).scheme); }
    static Ref<NSString> resourceSpecifier(NSURL& self)
    {
        const Contents whole(URLAccess::absolute(self).string.get());
        std::string_view text = whole->narrow();
        if (parts(self).scheme)
            text.remove_prefix(parts(self).scheme->size() + 1);
        return stringFrom(text);
    }
    static Ref<NSString> user(NSURL& self) { return plainPiece(parts(self).user); }
    static Ref<NSString> password(NSURL& self) { return plainPiece(parts(self).password); }
    static Ref<NSString> host(NSURL& self)
    {
        std::string_view host = parts(self).host.value_or("");
        if (host.starts_with('['))
            host = host.substr(1, host.size() - 2);
        return host.empty() ? nullptr : plainPiece(host);
    }
    static Ref<NSNumber> port(NSURL& self)
    {
        const std::string_view text = parts(self).port.value_or("");
        std::uint16_t number = 0;
        const auto read = std::from_chars(text.data(), text.data() + text.size(), number);
        if (text.empty() || read.ec != std::errc())
            return nullptr;
        return NSNumber::cls().numberWithInteger(number);
    }
    static Ref<NSString> path(NSURL& self)
    {
        return self.filePath_ ? self.filePath_ : plainPath(parts(self));
    }
    static const char* fileSystemRepresentation(NSURL& self)
    {
        return self.filePath_ ? self.filePath_->UTF8String() : nullptr;
    }
    static Ref<NSString> relativePath(NSURL& self) { return plainPath(self.own_.parts); }
    static Ref<NSString> query(NSURL& self) { return escapedPiece(parts(self).query); }
    static Ref<NSString> fragment(NSURL& self) { return escapedPiece(parts(self).fragment); }

    static bool isFileURL(NSURL& self)
    {
        constexpr std::string_view kFile = "file";
        const std::string_view scheme = parts(self).scheme.value_or("");
        return std::equal(scheme.begin(), scheme.end(), kFile.begin(), kFile.end(),
            [](char a, char b) { return (a | 0x20) == b; });
    }
    static bool hasDirectoryPath(NSURL& self)
    {
        const std::string_view path = parts(self).path.value_or("");
        const std::string_view last = path.substr(path.rfind('/') + 1);
        return path.ends_with('/') || last == "." || last == "..";
    }

    // ---- a value

    static bool isEqual(NSURL& self, NSObject* other)
    {
        if (other == &self)
            return true;
        if (!other || !other->isKindOfClass(NSURL::cls()))
            return false;
        const auto& url = static_cast<const NSURL&>(*other);
        const bool haveEqualBases = self.base_ ? self.base_->isEqual(url.base_.get()) : !url.base_;
        return haveEqualBases && maybe(self.own_.string)->isEqualToString(url.own_.string.get());
    }
    static std::uint64_t hash(NSURL& self) { return maybe(self.own_.string)->hash(); }
    static Ref<NSObject> copyWithZone(NSURL& self, void*) { return &self; }
    static Ref<NSString> description(NSURL& self)
    {
        if (!self.own_.string)
            return super<NSURL, "description", Ref<NSString>>(self);
        if (!self.base_)
            return self.own_.string;
        return NSString::cls().stringWithFormat("%@ -- %@"_ns, self.own_.string, self.base_);
    }

    static void encodeWithCoder(NSURL& self, NSCoder* coder)
    {
        coder->encodeObject_forKey(self.base_.get(), "NS.base"_ns);
        coder->encodeObject_forKey(self.own_.string.get(), "NS.relative"_ns);
    }
    static Ref<NSObject> initWithCoder(NSURL& self, NSCoder* coder)
    {
        const Ref<NSURL> base = decode<NSURL>(coder, "NS.base"_ns);
        const Ref<NSString> text = decode<NSString>(coder, "NS.relative"_ns);
        return text ? self.initWithString_relativeToURL(text.get(), base.get()) : nullptr;
    }

    static void table(Builder& t)
    {
        t.conformsTo({ "NSCopying" });
        declareCoding<encodeWithCoder, initWithCoder>(t);
        t.classMethods({
            { "URLWithString:", imp<withString> },
            { "URLWithString:relativeToURL:", imp<withStringAndBase> },
            { "fileURLWithPath:", imp<withPath> },
            { "fileURLWithPath:isDirectory:", imp<withPathAndKind> },
            { "fileURLWithPathComponents:", imp<withComponents> },
        });
        t.methods({
            { "initWithString:", imp<initWithString> },
            { "initWithString:relativeToURL:", imp<initWithBase> },
            { "initFileURLWithPath:", imp<initWithPath> },
            { "initFileURLWithPath:isDirectory:", imp<initWithPathAndKind> },
            { "absoluteString", imp<absoluteString> },
            { "relativeString", imp<relativeString> },
            { "baseURL", imp<baseURL> },
            { "absoluteURL", imp<absoluteURL> },
            { "standardizedURL", imp<standardizedURL> },
            { "scheme", imp<scheme> },
            { "resourceSpecifier", imp<resourceSpecifier> },
            { "user", imp<user> },
            { "password", imp<password> },
            { "host", imp<host> },
            { "port", imp<port> },
            { "path", imp<path> },
            { "relativePath", imp<relativePath> },
            { "query", imp<query> },
            { "fragment", imp<fragment> },
            { "isFileURL", imp<isFileURL> },
            { "fileSystemRepresentation", imp<fileSystemRepresentation> },
            { "hasDirectoryPath", imp<hasDirectoryPath> },
            { "isEqual:", imp<isEqual> },
            { "hash", imp<hash> },
            { "copyWithZone:", imp<copyWithZone> },
            { "description", imp<description> },
        });
    }
};
BRINDLE_RECORD(NSURL, Pieces)

}
