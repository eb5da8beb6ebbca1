// SPDX-License-Identifier: Apache-2.0
#include "NSURL.h"

#include <cerrno>
#include <sys/stat.h>
#include <unistd.h>

#include "NSArray.h"
#include "NSDate.h"
#include "NSError.h"
#include "NSMutableDictionary.h"
#include "NSNumber.h"
#include "URLPrivate.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    Ref<NSObject> flag(bool value) { return NSNumber::cls().numberWithBool(value); }
    Ref<NSObject> date(timespec moment)
    {
        return NSDate::cls().dateWithTimeIntervalSince1970(
            static_cast<double>(moment.tv_sec) + static_cast<double>(moment.tv_nsec) * 1e-9);
    }
    bool mayAccess(const NSURL& url, int how)
    {
        return ::access(URLAccess::filePath(url).c_str(), how) == 0;
    }

    using Facts = struct stat;
    /// A key and how its value is made of what the system says.
    struct Resource {
        NSString* (*key)();
        Ref<NSObject> (*value)(const NSURL& url, const Facts& facts);
    };
    template <const auto& Key> NSString* keyOf() { return Key; }

    constexpr Resource kResources[] = {
        { keyOf<NSURLNameKey>,
            [](const NSURL& url, const Facts&) -> Ref<NSObject> {
                return url.lastPathComponent();
            } },
        { keyOf<NSURLPathKey>,
            [](const NSURL& url, const Facts&) -> Ref<NSObject> { return url.path(); } },
        { keyOf<NSURLIsRegularFileKey>,
            [](const NSURL&, const Facts& facts) { return flag(S_ISREG(facts.st_mode)); } },
        { keyOf<NSURLIsDirectoryKey>,
            [](const NSURL&, const Facts& facts) { return flag(S_ISDIR(facts.st_mode)); } },
        { keyOf<NSURLIsSymbolicLinkKey>,
            [](const NSURL&, const Facts& facts) { return flag(S_ISLNK(facts.st_mode)); } },
        { keyOf<NSURLIsHiddenKey>,
            [](const NSURL& url, const Facts&) {
                return flag(url.lastPathComponent()->hasPrefix("."_ns));
            } },
        { keyOf<NSURLIsReadableKey>,
            [](const NSURL& url, const Facts&) { return flag(mayAccess(url, R_OK)); } },
        { keyOf<NSURLIsWritableKey>,
            [](const NSURL& url, const Facts&) { return flag(mayAccess(url, W_OK)); } },
        { keyOf<NSURLIsExecutableKey>,
            [](const NSURL& url, const Facts&) { return flag(mayAccess(url, X_OK)); } },
        { keyOf<NSURLFileSizeKey>,
            [](const NSURL&, const Facts& facts) -> Ref<NSObject> {
                return S_ISREG(facts.st_mode) ? NSNumber::cls().numberWithInteger(facts.st_size)
                                              : nullptr;
            } },
        { keyOf<NSURLContentAccessDateKey>,
            [](const NSURL&, const Facts& facts) { return date(facts.st_atim); } },
        { keyOf<NSURLContentModificationDateKey>,
            [](const NSURL&, const Facts& facts) { return date(facts.st_mtim); } },
        { keyOf<NSURLAttributeModificationDateKey>,
            [](const NSURL&, const Facts& facts) { return date(facts.st_ctim); } },
        { keyOf<NSURLParentDirectoryURLKey>,
            [](const NSURL& url, const Facts&) -> Ref<NSObject> {
                const Ref<NSURL> parent = url.URLByDeletingLastPathComponent();
                return parent->isEqual(&url) ? nullptr : parent;
            } },
    };

    Ref<NSObject> valueOf(const NSURL& url, const Facts& facts, NSString* key)
    {
        for (const Resource& resource : kResources) {
            if (resource.key()->isEqualToString(key))
                return resource.value(url, facts);
        }
        return nullptr;
    }

    /// Asks the system about the file itself, links not followed.
    bool look(const NSURL& url, Facts& facts, Ref<NSError>* error)
    {
        const std::string path = URLAccess::filePath(url);
        if (path.empty()) {
            reportError(error, NSFileReadUnsupportedSchemeError,
                { { NSURLErrorKey, const_cast<NSURL*>(&url) } });
            return false;
        }
        if (::lstat(path.c_str(), &facts) == 0)
            return true;
        reportFileError(error, errno, false, url.path().get());
        return false;
    }

}

template <> struct NSURL::Methods<struct URLResources> {

    static bool isReachable(NSURL& self, Ref<NSError>* error)
    {
        Facts facts {};
        return look(self, facts, error);
    }
    static bool value(NSURL& self, Ref<NSObject>* value, NSString* key, Ref<NSError>* error)
    {
        Facts facts {};
        if (!look(self, facts, error))
            return false;
        if (value)
            *value = valueOf(self, facts, key);
        return true;
    }
    static Ref<NSDictionary> values(NSURL& self, NSArray* keys, Ref<NSError>* error)
    {
        Facts facts {};
        if (!look(self, facts, error))
            return nullptr;
        Ref<NSMutableDictionary> out = NSMutableDictionary::cls().dictionary();
        const NSUInteger count = maybe(keys)->count();
        for (NSUInteger i = 0; i < count; ++i) {
            const auto key = cast<NSString>(keys->objectAtIndex(i));
            if (const Ref<NSObject> found = valueOf(self, facts, key.get()))
                out->setObject_forKey(found.get(), key.get());
        }
        return cast<NSDictionary>(out->copy());
    }

    static void table(Builder& t)
    {
        t.methods({
            { "checkResourceIsReachableAndReturnError:", imp<isReachable> },
            { "getResourceValue:forKey:error:", imp<value> },
            { "resourceValuesForKeys:error:", imp<values> },
        });
    }
};
BRINDLE_RECORD(NSURL, URLResources)

}
