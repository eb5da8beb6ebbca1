// SPDX-License-Identifier: Apache-2.0
#include "NSURL.h"

#include <sys/stat.h>

#include "NSArray.h"
#include "NSMutableArray.h"
#include "NSStringPrivate.h"
#include "PercentEscapesPrivate.h"
#include "URLPrivate.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    using Path = std::string_view;

    /// Answers the path without slashes at its end; "/" stays.
    Path withoutTail(Path path)
    {
        while (path.size() > 1 && path.ends_with('/'))
            path.remove_suffix(1);
        return path;
    }
    Path lastPiece(Path path) { return path.substr(path.rfind('/') + 1); }

    bool isFolder(const NSURL& url)
    {
        const std::string path = URLAccess::filePath(url);
        struct stat facts { };
        return !path.empty() && ::stat(path.c_str(), &facts) == 0 && S_ISDIR(facts.st_mode);
    }

}

// The path of the text as it was given is what changes: a relative URL stays one.
template <> struct NSURL::Methods<struct URLPaths> {

    static Path ownPath(const NSURL& self) { return URLAccess::own(self).parts.path.value_or(""); }

    static Ref<NSArray> pathComponents(NSURL& self)
    {
        const Ref<NSString> path = self.path();
        return maybe(path)->pathComponents();
    }
    static Ref<NSString> lastPathComponent(NSURL& self)
    {
        const Ref<NSString> path = self.path();
        return maybe(path)->lastPathComponent();
    }
    static Ref<NSString> pathExtension(NSURL& self)
    {
        const Ref<NSString> path = self.path();
        return maybe(path)->pathExtension();
    }
    static Ref<NSURL> deletingLast(NSURL& self)
    {
        std::string path(ownPath(self));
        // What ".." means must be known before anything is cut off.
        if (const Path last = lastPiece(withoutTail(path)); last == "." || last == "..") {
            if (self.baseURL())
                return self.absoluteURL()->URLByDeletingLastPathComponent();
            path = urls::withoutDots(path + "/");
        }
        const Path bare = withoutTail(path);
        if (bare.empty() || bare == "/")
            return path == ownPath(self) ? Ref<NSURL>(&self) : URLAccess::withPath(self, path);
        const std::size_t slash = bare.rfind('/');
        return URLAccess::withPath(
            self, slash == Path::npos ? Path("./") : bare.substr(0, slash + 1));
    }

    static Ref<NSURL> appendingKind(NSURL& self, NSString* component, bool isDirectory)
    {
        strings::checkArgument(self, "URLByAppendingPathComponent:isDirectory:", component);
        const urls::Parts& parts = URLAccess::own(self).parts;
        if (!parts.path)
            return &self;
        const Ref<NSString> escaped = escapes::added(strings::Contents(component),
            [](char c) { return urls::kPath.contains(static_cast<unsigned char>(c)); });
        if (!escaped)
            return nullptr;
        const std::string text = utf8Of(escaped);
        Path tail = text;
        while (tail.starts_with('/'))
            tail.remove_prefix(1);
        std::string path(*parts.path);
        if (!path.ends_with('/') && (!path.empty() || parts.host))
            path += '/';
        path += tail;
        if (isDirectory && !path.ends_with('/'))
            path += '/';
        return URLAccess::withPath(self, path);
    }
    static Ref<NSURL> appending(NSURL& self, NSString* component)
    {
        Ref<NSURL> url = self.URLByAppendingPathComponent_isDirectory(component, false);
        if (!url || url->hasDirectoryPath() || !isFolder(*url.get()))
            return url;
        return self.URLByAppendingPathComponent_isDirectory(component, true);
    }

    /// Answers the URL with the same ending slash behind another path.
    static Ref<NSURL> withBarePath(NSURL& self, std::string path)
    {
        if (ownPath(self).ends_with('/') && !path.ends_with('/'))
            path += '/';
        return URLAccess::withPath(self, path);
    }
    static Ref<NSURL> deletingExtension(NSURL& self)
    {
        const Path path = withoutTail(ownPath(self));
        const Path last = lastPiece(path);
        const std::size_t dot = last.rfind('.');
        if (dot == Path::npos || dot == 0 || dot + 1 == last.size())
            return &self;
        return withBarePath(self, std::string(path.substr(0, path.size() - last.size() + dot)));
    }
    static Ref<NSURL> appendingExtension(NSURL& self, NSString* extension)
    {
        strings::checkArgument(self, "URLByAppendingPathExtension:", extension);
        const Path path = withoutTail(ownPath(self));
        const Ref<NSString> escaped = escapes::added(strings::Contents(extension),
            [](char c) { return urls::kPath.contains(static_cast<unsigned char>(c)); });
        const std::string text = utf8Of(escaped);
        if (lastPiece(path).empty() || text.empty() || text.find('/') != std::string::npos)
            return &self;
        return withBarePath(self, std::string(path).append(".").append(text));
    }

    /// Answers a file's URL with the path that an operation of strings makes of it.
    template <Text Operation> static Ref<NSURL> changed(NSURL& self)
    {
        const Ref<NSString> path = self.isFileURL() ? self.path() : nullptr;
        if (!path)
            return &self;
        return NSURL::cls().fileURLWithPath_isDirectory(
            path->send<Operation, Ref<NSString>>().get(), self.hasDirectoryPath());
    }

    static void table(Builder& t)
    {
        t.methods({
            { "pathComponents", imp<pathComponents> },
            { "lastPathComponent", imp<lastPathComponent> },
            { "pathExtension", imp<pathExtension> },
            { "URLByDeletingLastPathComponent", imp<deletingLast> },
            { "URLByAppendingPathComponent:", imp<appending> },
            { "URLByAppendingPathComponent:isDirectory:", imp<appendingKind> },
            { "URLByDeletingPathExtension", imp<deletingExtension> },
            { "URLByAppendingPathExtension:", imp<appendingExtension> },
            { "URLByStandardizingPath", imp<changed<"stringByStandardizingPath">> },
            { "URLByResolvingSymlinksInPath", imp<changed<"stringByResolvingSymlinksInPath">> },
        });
    }
};
BRINDLE_RECORD(NSURL, URLPaths)

}
