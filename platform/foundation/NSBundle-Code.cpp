// SPDX-License-Identifier: Apache-2.0
#include "NSBundlePrivate.h"

#include <filesystem>

#include <dlfcn.h>

#include "FilesPrivate.h"
#include "runtime/Runtime.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    std::string nameOfCode(const NSBundle& bundle)
    {
        const auto name = maybe(bundle.infoDictionary())->objectForKey("CFBundleExecutable"_ns);
        if (maybe(name)->isKindOfClass(NSString::cls()))
            return bundles::pathFrom(static_cast<NSString*>(name.get()));
        return std::filesystem::path(BundleAccess::state(bundle).path).stem().string();
    }

    /// Answers where the code of a bundle is; "" for none.
    std::string codeOf(const NSBundle& bundle)
    {
        const BundleState& state = BundleAccess::state(bundle);
        const std::string name = nameOfCode(bundle);
        if (name.empty() || name.find('/') != std::string::npos)
            return "";
        for (const char* const folder : { "/Contents/Linux/", "/Contents/MacOS/", "/" }) {
            for (const char* const ending : { "", ".so" }) {
                const std::string path = state.path + folder + name + ending;
                if (bundles::isFile(path))
                    return path;
            }
        }
        return "";
    }

    bool isMain(const NSBundle& bundle) { return NSBundle::cls().mainBundle() == &bundle; }

}

template <> struct NSBundle::Methods<struct Code> {

    static Ref<NSString> executablePath(NSBundle& self)
    {
        const std::string path = isMain(self) ? bundles::programPath() : codeOf(self);
        return path.empty() ? nullptr : files::textFrom(path);
    }
    static bool isLoaded(NSBundle& self)
    {
        BundleState& state = BundleAccess::state(self);
        if (isMain(self) || &self == bundles::framework())
            return true;
        const std::lock_guard guard(state.mutex);
        return state.image != nullptr;
    }
    static bool loadCode(NSBundle& self)
    {
        if (self.isLoaded())
            return true;
        const std::string path = codeOf(self);
        // Without the lock: initialisers of the code may ask this bundle.
        void* const image = path.empty() ? nullptr : dlopen(path.c_str(), RTLD_NOW | RTLD_NODELETE);
        BundleState& state = BundleAccess::state(self);
        const std::lock_guard guard(state.mutex);
        state.image = image;
        return image != nullptr;
    }
    static Class* classNamed(NSBundle& self, NSString* name)
    {
        self.load();
        return name ? objc_getClass(name->UTF8String()) : nullptr;
    }
    static Class* principalClass(NSBundle& self)
    {
        const auto name = maybe(self.infoDictionary())->objectForKey("NSPrincipalClass"_ns);
        return maybe(name)->isKindOfClass(NSString::cls())
            ? self.classNamed(static_cast<NSString*>(name.get()))
            : nullptr;
    }

    static void table(Builder& t)
    {
        t.methods({
            { "executablePath", imp<executablePath> },
            { "isLoaded", imp<isLoaded> },
            { "load", imp<loadCode> },
            { "classNamed:", imp<classNamed> },
            { "principalClass", imp<principalClass> },
        });
    }
};
BRINDLE_RECORD(NSBundle, Code)

}
