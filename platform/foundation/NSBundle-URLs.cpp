// SPDX-License-Identifier: Apache-2.0
#include "NSBundlePrivate.h"

#include "NSArray.h"
#include "NSURL.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    Ref<NSURL> fileURL(const Ref<NSString>& path)
    {
        return path ? NSURL::cls().fileURLWithPath(path.get()) : nullptr;
    }

}

template <> struct NSBundle::Methods<struct URLs> {

    static Ref<NSBundle> bundleWithURL(Class&, NSURL* url)
    {
        return NSBundle::cls().bundleWithPath(maybe(url)->path().get());
    }
    static Ref<NSBundle> initWithURL(NSBundle& self, NSURL* url)
    {
        return self.initWithPath(maybe(url)->path().get());
    }
    static Ref<NSURL> bundleURL(NSBundle& self) { return fileURL(self.bundlePath()); }
    static Ref<NSURL> resourceURL(NSBundle& self) { return fileURL(self.resourcePath()); }
    static Ref<NSURL> executableURL(NSBundle& self) { return fileURL(self.executablePath()); }
    static Ref<NSURL> resource(NSBundle& self, NSString* name, NSString* type)
    {
        return fileURL(self.pathForResource_ofType(name, type));
    }
    static Ref<NSURL> resourceIn(NSBundle& self, NSString* name, NSString* type, NSString* folder)
    {
        return fileURL(self.pathForResource_ofType_inDirectory(name, type, folder));
    }
    static Ref<NSArray> resourcesIn(NSBundle& self, NSString* type, NSString* folder)
    {
        std::vector<Ref<NSObject>> all;
        for (NSString* const path :
            each<NSString>(self.pathsForResourcesOfType_inDirectory(type, folder)))
            all.emplace_back(fileURL(path));
        return makeArray(std::move(all));
    }

    static void table(Builder& t)
    {
        t.classMethods({ { "bundleWithURL:", imp<bundleWithURL> } });
        t.methods({
            { "initWithURL:", imp<initWithURL> },
            { "bundleURL", imp<bundleURL> },
            { "resourceURL", imp<resourceURL> },
            { "executableURL", imp<executableURL> },
            { "URLForResource:withExtension:", imp<resource> },
            { "URLForResource:withExtension:subdirectory:", imp<resourceIn> },
            { "URLsForResourcesWithExtension:subdirectory:", imp<resourcesIn> },
        });
    }
};
BRINDLE_RECORD(NSBundle, URLs)

}
