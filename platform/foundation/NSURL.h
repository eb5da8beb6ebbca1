// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>

#include "NSString.h"
#include "StringConstant.h"
#include "URLText.h"

namespace brindle {

class NSArray;
class NSDictionary;
class NSNumber;

using NSURLResourceKey = NSString*;
// What can be asked of a file. Strings, NSNumbers of YES and NO or of bytes, NSDates, an NSURL for the parent.
inline constexpr StringConstant<"NSURLNameKey"> NSURLNameKey;
inline constexpr StringConstant<"_NSURLPathKey"> NSURLPathKey;
inline constexpr StringConstant<"NSURLIsRegularFileKey"> NSURLIsRegularFileKey;
inline constexpr StringConstant<"NSURLIsDirectoryKey"> NSURLIsDirectoryKey;
inline constexpr StringConstant<"NSURLIsSymbolicLinkKey"> NSURLIsSymbolicLinkKey;
inline constexpr StringConstant<"NSURLIsHiddenKey"> NSURLIsHiddenKey;
inline constexpr StringConstant<"NSURLIsReadableKey"> NSURLIsReadableKey;
inline constexpr StringConstant<"NSURLIsWritableKey"> NSURLIsWritableKey;
inline constexpr StringConstant<"NSURLIsExecutableKey"> NSURLIsExecutableKey;
inline constexpr StringConstant<"NSURLFileSizeKey"> NSURLFileSizeKey;
inline constexpr StringConstant<"NSURLContentAccessDateKey"> NSURLContentAccessDateKey;
inline constexpr StringConstant<"NSURLContentModificationDateKey"> NSURLContentModificationDateKey;
inline constexpr StringConstant<"NSURLAttributeModificationDateKey">
    NSURLAttributeModificationDateKey;
inline constexpr StringConstant<"NSURLParentDirectoryURLKey"> NSURLParentDirectoryURLKey;

/// How a bookmark is made; bits.
using NSURLBookmarkCreationOptions = NSUInteger;
enum : NSUInteger {
    NSURLBookmarkCreationMinimalBookmark = 512,
    NSURLBookmarkCreationSuitableForBookmarkFile = 1024,
    NSURLBookmarkCreationWithSecurityScope = 2048,
    NSURLBookmarkCreationSecurityScopeAllowOnlyReadAccess = 4096,
};
/// How a bookmark is followed; bits.
using NSURLBookmarkResolutionOptions = NSUInteger;
enum : NSUInteger {
    NSURLBookmarkResolutionWithoutUI = 256,
    NSURLBookmarkResolutionWithoutMounting = 512,
    NSURLBookmarkResolutionWithSecurityScope = 1024,
};

namespace urls {

    /// A URL's text with its pieces, which are views of it.
    struct Spelling {
        Ref<NSString> string;
        Parts parts;
    };

}

/// A URL, absolute or relative to a base: a value that does not change.
///
/// Text is taken only when it keeps to RFC 2396: no spaces, quotes, brackets out of place, letters outside ASCII or
/// broken escapes; nothing is repaired. Case stays as it was written. Pieces are of the absolute URL, without escapes
/// unless they say otherwise; a piece that is absent, or whose escapes are not UTF-8, is nil.
/// Thread: any.
class NSURL : public NSObject {
    BRINDLE_OBJECT(NSURL, NSObject)

public:
    struct Meta : NSObject::Meta {
        /// - Nil: for text that is no URL, "" included.
        /// - Raises: `NSInvalidArgumentException` for nil.
        Ref<NSURL> URLWithString(const NSString* string) const
        {
            return send<"URLWithString:", Ref<NSURL>>(string);
        }
        /// - base: nil, or what the text is relative to; not kept when the text has a scheme of its own.
        Ref<NSURL> URLWithString_relativeToURL(const NSString* string, const NSURL* base) const
        {
            return send<"URLWithString:relativeToURL:", Ref<NSURL>>(string, base);
        }
        /// Answers the URL of a file, with a slash at the end where the path is an existing folder or ends in one.
        /// - path: relative ones are behind the working folder.
        /// - Nil: when the path has unpaired surrogates.
        /// - Raises: `NSInvalidArgumentException`, "*** -[NSURL initFileURLWithPath:]: nil string parameter".
        Ref<NSURL> fileURLWithPath(const NSString* path) const
        {
            return send<"fileURLWithPath:", Ref<NSURL>>(path);
        }
        /// Does not look at the disk.
        Ref<NSURL> fileURLWithPath_isDirectory(const NSString* path, bool isDirectory) const
        {
            return send<"fileURLWithPath:isDirectory:", Ref<NSURL>>(path, isDirectory);
        }
        Ref<NSURL> fileURLWithPathComponents(const NSArray* components) const
        {
            return send<"fileURLWithPathComponents:", Ref<NSURL>>(components);
        }
        /// Follows a bookmark; a folder's URL ends in a slash.
        /// - base: what the bookmark was made with.
        /// - isStale: may be null; YES when the file was moved, renamed or replaced and a new bookmark should be kept.
        /// - Nil: when the file is gone, or the data is no bookmark of this user, changed in any bit, or was made with
        ///   another base; `error`, which may be null, says why.
        Ref<NSURL> URLByResolvingBookmarkData_options_relativeToURL_bookmarkDataIsStale_error(
            const NSData* bookmark, NSURLBookmarkResolutionOptions options, const NSURL* base,
            bool* isStale, Ref<NSError>* error) const
        {
            return send<
                "URLByResolvingBookmarkData:options:relativeToURL:bookmarkDataIsStale:error:",
                Ref<NSURL>>(bookmark, options, base, isStale, error);
        }
        /// Answers what a bookmark remembers, without looking at the disk: `NSURLPathKey` and `NSURLNameKey`.
        /// - Nil: for data that is no bookmark of this user.
        Ref<NSDictionary> resourceValuesForKeys_fromBookmarkData(
            const NSArray* keys, const NSData* bookmark) const
        {
            return send<"resourceValuesForKeys:fromBookmarkData:", Ref<NSDictionary>>(
                keys, bookmark);
        }
    };

    // ---- making

    Ref<NSURL> initWithString(const NSString* string)
    {
        return send<"initWithString:", Ref<NSURL>>(string);
    }
    Ref<NSURL> initWithString_relativeToURL(const NSString* string, const NSURL* base)
    {
        return send<"initWithString:relativeToURL:", Ref<NSURL>>(string, base);
    }
    Ref<NSURL> initFileURLWithPath(const NSString* path)
    {
        return send<"initFileURLWithPath:", Ref<NSURL>>(path);
    }
    Ref<NSURL> initFileURLWithPath_isDirectory(const NSString* path, bool isDirectory)
    {
        return send<"initFileURLWithPath:isDirectory:", Ref<NSURL>>(path, isDirectory);
    }

    // ---- text and base

    Ref<NSString> absoluteString() const { return send<"absoluteString", Ref<NSString>>(); }
    /// Answers the text as it was given; for a URL without base the absolute one.
    Ref<NSString> relativeString() const { return send<"relativeString", Ref<NSString>>(); }
    Ref<NSURL> baseURL() const { return send<"baseURL", Ref<NSURL>>(); }
    /// Answers the same place without a base.
    Ref<NSURL> absoluteURL() const { return send<"absoluteURL", Ref<NSURL>>(); }
    /// Answers the absolute URL with "." and ".." taken out of its path, when that begins with a slash.
    Ref<NSURL> standardizedURL() const { return send<"standardizedURL", Ref<NSURL>>(); }

    // ---- pieces

    Ref<NSString> scheme() const { return send<"scheme", Ref<NSString>>(); }
    /// Answers everything behind the scheme's colon, with its escapes.
    Ref<NSString> resourceSpecifier() const { return send<"resourceSpecifier", Ref<NSString>>(); }
    Ref<NSString> user() const { return send<"user", Ref<NSString>>(); }
    Ref<NSString> password() const { return send<"password", Ref<NSString>>(); }
    /// Answers the host without user, port and brackets; nil for an empty one.
    Ref<NSString> host() const { return send<"host", Ref<NSString>>(); }
    /// - Nil: also above 65535.
    Ref<NSNumber> port() const { return send<"port", Ref<NSNumber>>(); }
    /// Answers the path without a slash at the end, unless it is "/".
    /// - Nil: for opaque URLs ("mailto:a@b"), and for a path with an end of text in it.
    Ref<NSString> path() const { return send<"path", Ref<NSString>>(); }
    /// Answers the path of the text as it was given.
    Ref<NSString> relativePath() const { return send<"relativePath", Ref<NSString>>(); }
    /// Answers the query with its escapes.
    Ref<NSString> query() const { return send<"query", Ref<NSString>>(); }
    /// Answers the fragment with its escapes.
    Ref<NSString> fragment() const { return send<"fragment", Ref<NSString>>(); }

    bool isFileURL() const { return send<"isFileURL", bool>(); }
    /// Answers whether the path ends in a slash, "." or "..".
    bool hasDirectoryPath() const { return send<"hasDirectoryPath", bool>(); }
    /// Answers the path for system calls, UTF-8, good while the URL lives; null for all but file URLs.
    const char* fileSystemRepresentation() const
    {
        return send<"fileSystemRepresentation", const char*>();
    }

    // ---- paths; query and fragment stay

    /// "/" stands first; a slash at the end is no component.
    Ref<NSArray> pathComponents() const { return send<"pathComponents", Ref<NSArray>>(); }
    Ref<NSString> lastPathComponent() const { return send<"lastPathComponent", Ref<NSString>>(); }
    Ref<NSString> pathExtension() const { return send<"pathExtension", Ref<NSString>>(); }
    /// Answers the folder above, with a slash at the end. Every walk upward ends: at the root, or for text without a
    /// base at "./".
    Ref<NSURL> URLByDeletingLastPathComponent() const
    {
        return send<"URLByDeletingLastPathComponent", Ref<NSURL>>();
    }
    /// - component: plain text; a file URL gets a slash at the end where it is an existing folder.
    /// - Nil: when the component has unpaired surrogates.
    Ref<NSURL> URLByAppendingPathComponent(const NSString* component) const
    {
        return send<"URLByAppendingPathComponent:", Ref<NSURL>>(component);
    }
    Ref<NSURL> URLByAppendingPathComponent_isDirectory(
        const NSString* component, bool isDirectory) const
    {
        return send<"URLByAppendingPathComponent:isDirectory:", Ref<NSURL>>(component, isDirectory);
    }
    Ref<NSURL> URLByDeletingPathExtension() const
    {
        return send<"URLByDeletingPathExtension", Ref<NSURL>>();
    }
    /// An extension that is empty or has a slash changes nothing.
    Ref<NSURL> URLByAppendingPathExtension(const NSString* extension) const
    {
        return send<"URLByAppendingPathExtension:", Ref<NSURL>>(extension);
    }
    /// Takes repeated slashes, "." and ".." out of a file URL's path; other URLs stay.
    Ref<NSURL> URLByStandardizingPath() const
    {
        return send<"URLByStandardizingPath", Ref<NSURL>>();
    }
    /// Follows the links in a file URL's path as far as it exists; other URLs stay.
    Ref<NSURL> URLByResolvingSymlinksInPath() const
    {
        return send<"URLByResolvingSymlinksInPath", Ref<NSURL>>();
    }

    // ---- files

    /// Answers whether a file is there; NO with an error for other URLs.
    bool checkResourceIsReachableAndReturnError(Ref<NSError>* error) const
    {
        return send<"checkResourceIsReachableAndReturnError:", bool>(error);
    }
    /// Looks one fact up; symbolic links are not followed. YES with a nil value for a key nobody knows.
    bool getResourceValue_forKey_error(
        Ref<NSObject>* value, NSURLResourceKey key, Ref<NSError>* error) const
    {
        return send<"getResourceValue:forKey:error:", bool>(value, key, error);
    }
    /// - Nil: when there is no such file.
    Ref<NSDictionary> resourceValuesForKeys_error(const NSArray* keys, Ref<NSError>* error) const
    {
        return send<"resourceValuesForKeys:error:", Ref<NSDictionary>>(keys, error);
    }

    // ---- bookmarks and access

    /// Answers data that leads back to an existing file or folder, even when it is renamed or moved nearby.
    /// - keys, base: may be nil. The base, when given, is needed again to follow the bookmark.
    /// - Nil: when there is no such file, or this user's key for bookmarks can be neither read nor made.
    Ref<NSData> bookmarkDataWithOptions_includingResourceValuesForKeys_relativeToURL_error(
        NSURLBookmarkCreationOptions options, const NSArray* keys, const NSURL* base,
        Ref<NSError>* error) const
    {
        return send<"bookmarkDataWithOptions:includingResourceValuesForKeys:relativeToURL:error:",
            Ref<NSData>>(options, keys, base, error);
    }
    /// Begins access to what the user granted: YES for URLs of scoped bookmarks and of panels. Each YES wants one
    /// `stopAccessingSecurityScopedResource`.
    bool startAccessingSecurityScopedResource()
    {
        return send<"startAccessingSecurityScopedResource", bool>();
    }
    void stopAccessingSecurityScopedResource() { send<"stopAccessingSecurityScopedResource">(); }

private:
    friend struct URLAccess;

    urls::Spelling own_;
    std::unique_ptr<const urls::Spelling> absolute_; // only with a base
    Ref<NSURL> base_; // absolute as far as it can be
    Ref<NSString> filePath_; // only of file URLs
    bool isScoped_ = false;
    std::atomic<std::intptr_t> accesses_ { 0 };
};

}
