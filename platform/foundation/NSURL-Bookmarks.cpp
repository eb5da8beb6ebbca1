// SPDX-License-Identifier: Apache-2.0
#include "NSURL.h"

#include "Bookmark.h"
#include "NSArray.h"
#include "NSData.h"
#include "NSError.h"
#include "NSMutableDictionary.h"
#include "URLPrivate.h"
#include "runtime/Table.h"

namespace brindle {

using bookmarks::Key;
using bookmarks::Trace;

void URLAccess::grant(NSURL& url) { url.isScoped_ = true; }

template <> struct NSURL::Methods<struct URLBookmarks> {

    static std::string textOf(NSURL* base)
    {
        const Ref<NSString> text = maybe(base)->absoluteString();
        return utf8Of(text);
    }

    static Ref<NSData> bookmark(NSURL& self, NSURLBookmarkCreationOptions options, NSArray*,
        NSURL* base, Ref<NSError>* error)
    {
        const Ref<NSString> path = self.isFileURL() ? self.path() : nullptr;
        if (!path) {
            reportError(error, NSFileReadUnsupportedSchemeError, { { NSURLErrorKey, &self } });
            return nullptr;
        }
        int systemError = 0;
        std::optional<Trace> trace = bookmarks::describe(utf8Of(path), systemError);
        if (!trace) {
            reportFileError(error, systemError, false, path.get());
            return nullptr;
        }
        const std::optional<Key> key = bookmarks::userKey();
        if (!key) {
            reportError(error, NSFileWriteUnknownError, { { NSURLErrorKey, &self } });
            return nullptr;
        }
        if (options & NSURLBookmarkCreationWithSecurityScope)
            trace->flags |= Trace::kScoped;
        if (options & NSURLBookmarkCreationSecurityScopeAllowOnlyReadAccess)
            trace->flags |= Trace::kReadOnly;
        return dataFrom(bookmarks::write(*trace, textOf(base), *key));
    }

    static std::optional<Trace> recordOf(NSData* data, NSURL* base)
    {
        const std::optional<Key> key = bookmarks::userKey();
        return key ? bookmarks::read(bytesOf(data), textOf(base), *key) : std::nullopt;
    }

    static Ref<NSURL> resolving(Class& self, NSData* data, NSURLBookmarkResolutionOptions options,
        NSURL* base, bool* isStale, Ref<NSError>* error)
    {
        const std::optional<Trace> trace = recordOf(data, base);
        if (!trace) {
            reportError(error, NSFileReadCorruptFileError);
            return nullptr;
        }
        const std::optional<bookmarks::Place> place = bookmarks::locate(*trace);
        const Ref<NSString> path = place ? stringFrom(place->path) : nullptr;
        if (!path) {
            reportError(error, NSFileNoSuchFileError,
                { { NSFilePathErrorKey, stringFrom(trace->path).get() } });
            return nullptr;
        }
        if (isStale)
            *isStale = place->isStale;
        Ref<NSURL> url
            = NSURL::Meta { { &self } }.fileURLWithPath_isDirectory(path.get(), place->isFolder);
        url->isScoped_
            = options & NSURLBookmarkResolutionWithSecurityScope && trace->flags & Trace::kScoped;
        return url;
    }

    static Ref<NSDictionary> remembered(Class&, NSArray* keys, NSData* data)
    {
        const std::optional<Trace> trace = recordOf(data, nullptr);
        const Ref<NSString> path = trace ? stringFrom(trace->path) : nullptr;
        if (!path)
            return nullptr;
        Ref<NSMutableDictionary> out = NSMutableDictionary::cls().dictionary();
        if (maybe(keys)->containsObject(NSURLPathKey))
            out->setObject_forKey(path.get(), NSURLPathKey);
        if (maybe(keys)->containsObject(NSURLNameKey))
            out->setObject_forKey(path->lastPathComponent().get(), NSURLNameKey);
        return cast<NSDictionary>(out->copy());
    }

    // ---- access

    static bool start(NSURL& self)
    {
        if (self.isScoped_)
            self.accesses_.fetch_add(1, std::memory_order_relaxed);
        return self.isScoped_;
    }
    /// Without a start that it belongs to a stop changes nothing.
    static void stop(NSURL& self)
    {
        std::intptr_t count = self.accesses_.load(std::memory_order_relaxed);
        while (count > 0 && !self.accesses_.compare_exchange_weak(count, count - 1)) { }
    }

    static void table(Builder& t)
    {
        t.classMethods({
            { "URLByResolvingBookmarkData:options:relativeToURL:bookmarkDataIsStale:error:",
                imp<resolving> },
            { "resourceValuesForKeys:fromBookmarkData:", imp<remembered> },
        });
        t.methods({
            { "bookmarkDataWithOptions:includingResourceValuesForKeys:relativeToURL:error:",
                imp<bookmark> },
            { "startAccessingSecurityScopedResource", imp<start> },
            { "stopAccessingSecurityScopedResource", imp<stop> },
        });
    }
};
BRINDLE_RECORD(NSURL, URLBookmarks)

}
