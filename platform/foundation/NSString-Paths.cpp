// SPDX-License-Identifier: Apache-2.0
#include "NSString.h"

#include <cstdlib>
#include <filesystem>
#include <pwd.h>
#include <system_error>
#include <unistd.h>

#include "NSMutableArray.h"
#include "NSStringPrivate.h"
#include "runtime/Table.h"

namespace brindle {

using strings::Contents;

namespace {

    using Path = std::u16string;
    using PathView = std::u16string_view;

    /// Answers the path without slashes at its end; "/" stays.
    PathView withoutTail(PathView path)
    {
        while (path.size() > 1 && path.back() == u'/')
            path.remove_suffix(1);
        return path;
    }

    /// Answers the path with one slash where several stand, and none at the end.
    Path collapsed(PathView path)
    {
        Path out;
        for (const char16_t unit : withoutTail(path)) {
            if (unit != u'/' || out.empty() || out.back() != u'/')
                out.push_back(unit);
        }
        return out;
    }

    /// Answers where the last component begins; the path has no slash at its end.
    std::size_t lastBegin(PathView path)
    {
        const std::size_t slash = path.rfind(u'/');
        return slash == PathView::npos || path.size() == 1 ? 0 : slash + 1;
    }

    /// Answers where the full stop of the extension is, or npos: neither a name that begins with its only full stop
    /// nor one that ends with it has an extension.
    std::size_t extensionDot(PathView path)
    {
        const std::size_t begin = lastBegin(path);
        const std::size_t dot = path.rfind(u'.');
        const bool isInside = dot != PathView::npos && dot > begin && dot + 1 < path.size();
        return isInside ? dot : PathView::npos;
    }

    Path join(PathView head, PathView tail)
    {
        Path out(head);
        if (!out.empty())
            out.push_back(u'/');
        out += tail;
        return collapsed(out);
    }

    std::vector<Path> componentsOf(PathView path)
    {
        std::vector<Path> out;
        if (path.starts_with(u'/'))
            out.emplace_back(u"/");
        Path piece;
        for (const char16_t unit : path) {
            if (unit != u'/') {
                piece.push_back(unit);
            } else if (!piece.empty()) {
                out.push_back(std::move(piece));
                piece.clear();
            }
        }
        if (!piece.empty())
            out.push_back(piece);
        else if (out.size() > (path.starts_with(u'/') ? 1u : 0u) && path.ends_with(u'/'))
            out.emplace_back(u"/");
        return out;
    }

    Path unitsOf(const char* utf8)
    {
        strings::TextBuilder out;
        out.addUtf8(utf8);
        return utf16Of(out.string());
    }

    /// Answers the home folder of a user, of this one for "", or nothing.
    Path homeOf(const std::string& user)
    {
        const char* const home = user.empty() ? std::getenv("HOME") : nullptr;
        if (home && *home)
            return unitsOf(home);
        char memory[4096];
        passwd entry {};
        passwd* found = nullptr;
        if (user.empty())
            ::getpwuid_r(::getuid(), &entry, memory, sizeof memory, &found);
        else
            ::getpwnam_r(user.c_str(), &entry, memory, sizeof memory, &found);
        return found && found->pw_dir ? unitsOf(found->pw_dir) : Path();
    }

    Path expanded(PathView path)
    {
        if (!path.starts_with(u'~'))
            return Path(path);
        const std::size_t slash = std::min(path.find(u'/'), path.size());
        const Path home = homeOf(strings::toUtf8(strings::View(path.substr(1, slash - 1))));
        return home.empty() ? Path(path) : home + Path(path.substr(slash));
    }

    /// Takes "." out, and ".." together with what stands before it where the path is absolute.
    Path standardized(PathView path)
    {
        const bool isAbsolute = path.starts_with(u'/');
        std::vector<Path> kept;
        for (Path& piece : componentsOf(path)) {
            if (piece == u"/" || piece == u".")
                continue;
            if (piece != u".." || !isAbsolute)
                kept.push_back(std::move(piece));
            else if (!kept.empty())
                kept.pop_back();
        }
        Path out(isAbsolute ? u"/" : u"");
        for (const Path& piece : kept) {
            if (!out.empty() && out.back() != u'/')
                out.push_back(u'/');
            out += piece;
        }
        return out;
    }

    /// Follows links as far as the path exists. Nothing is asked of the disk for a path that no call can take.
    Path resolved(PathView path)
    {
        const std::string bytes = strings::toUtf8(strings::View(path));
        if (!path.starts_with(u'/') || bytes.find('\0') != std::string::npos)
            return standardized(path);
        std::error_code error;
        const std::filesystem::path real = std::filesystem::weakly_canonical(bytes, error);
        if (error || !strings::fromUtf8(real.native()))
            return standardized(path);
        return standardized(unitsOf(real.c_str()));
    }

    Path abbreviated(PathView path)
    {
        const Path home = collapsed(homeOf(""));
        const Path plain = collapsed(path);
        const bool isInside = home.size() > 1 && plain.starts_with(home)
            && (plain.size() == home.size() || plain[home.size()] == u'/');
        return isInside ? u"~" + plain.substr(home.size()) : plain;
    }

}

template <> struct NSString::Methods<struct StringPaths> {

    static Ref<NSString> made(Path text) { return strings::plain(std::move(text)); }

    static bool isAbsolutePath(NSString& self)
    {
        const Contents text(&self);
        return text->size() > 0 && (text.view()[0] == u'/' || text.view()[0] == u'~');
    }
    static Ref<NSArray> pathComponents(NSString& self)
    {
        Ref<NSMutableArray> out = NSMutableArray::cls().array();
        for (Path& piece : componentsOf(utf16Of(&self)))
            out->addObject(made(std::move(piece)).get());
        return cast<NSArray>(out->copy());
    }
    static Ref<NSString> pathWithComponents(Class&, NSArray* components)
    {
        Path out;
        const NSUInteger count = maybe(components)->count();
        for (NSUInteger i = 0; i < count; ++i)
            out = join(out, utf16Of(cast<NSString>(components->objectAtIndex(i))));
        return made(std::move(out));
    }
    static Ref<NSString> lastPathComponent(NSString& self)
    {
        const Path path = utf16Of(&self);
        const PathView bare = withoutTail(path);
        return made(Path(bare.substr(lastBegin(bare))));
    }
    static Ref<NSString> deletingLast(NSString& self)
    {
        const Path path = collapsed(utf16Of(&self));
        const std::size_t begin = lastBegin(path);
        if (begin == 0)
            return made(path == u"/" ? u"/" : u"");
        return made(Path(withoutTail(PathView(path).substr(0, begin))));
    }
    static Ref<NSString> pathExtension(NSString& self)
    {
        const Path path = utf16Of(&self);
        const PathView bare = withoutTail(path);
        const std::size_t dot = extensionDot(bare);
        return made(dot == PathView::npos ? Path() : Path(bare.substr(dot + 1)));
    }
    static Ref<NSString> deletingExtension(NSString& self)
    {
        Path path = collapsed(utf16Of(&self));
        if (const std::size_t dot = extensionDot(path); dot != Path::npos)
            path.resize(dot);
        return made(std::move(path));
    }
    static Ref<NSString> appendingComponent(NSString& self, NSString* component)
    {
        strings::checkArgument(self, "stringByAppendingPathComponent:", component);
        return made(join(utf16Of(&self), utf16Of(component)));
    }
    static Ref<NSString> appendingExtension(NSString& self, NSString* extension)
    {
        strings::checkArgument(self, "stringByAppendingPathExtension:", extension);
        return made(collapsed(utf16Of(&self)) + u"." + utf16Of(extension));
    }
    static Ref<NSString> standardizing(NSString& self)
    {
        return made(standardized(expanded(utf16Of(&self))));
    }
    static Ref<NSString> resolving(NSString& self)
    {
        return made(resolved(expanded(utf16Of(&self))));
    }
    static Ref<NSString> expandingTilde(NSString& self)
    {
        return made(Path(withoutTail(expanded(utf16Of(&self)))));
    }
    static Ref<NSString> abbreviating(NSString& self) { return made(abbreviated(utf16Of(&self))); }
    static const char* fileSystemRepresentation(NSString& self) { return self.UTF8String(); }

    static void table(Builder& t)
    {
        t.classMethods({ { "pathWithComponents:", imp<pathWithComponents> } });
        t.methods({
            { "isAbsolutePath", imp<isAbsolutePath> },
            { "pathComponents", imp<pathComponents> },
            { "lastPathComponent", imp<lastPathComponent> },
            { "stringByDeletingLastPathComponent", imp<deletingLast> },
            { "pathExtension", imp<pathExtension> },
            { "stringByDeletingPathExtension", imp<deletingExtension> },
            { "stringByAppendingPathComponent:", imp<appendingComponent> },
            { "stringByAppendingPathExtension:", imp<appendingExtension> },
            { "stringByStandardizingPath", imp<standardizing> },
            { "stringByResolvingSymlinksInPath", imp<resolving> },
            { "stringByExpandingTildeInPath", imp<expandingTilde> },
            { "stringByAbbreviatingWithTildeInPath", imp<abbreviating> },
            { "fileSystemRepresentation", imp<fileSystemRepresentation> },
        });
    }
};
BRINDLE_RECORD(NSString, StringPaths)

}
