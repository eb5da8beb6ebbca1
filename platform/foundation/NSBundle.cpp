// SPDX-License-Identifier: Apache-2.0
#include "NSBundlePrivate.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <climits>
#include <cstdlib>
#include <filesystem>
#include <memory>

#include <dlfcn.h>
#include <sys/stat.h>
#include <unistd.h>

#include "FilesPrivate.h"
#include "NSArray.h"
#include "runtime/Runtime.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    /// The bundles of this process. They are never let go of, so that a bare pointer to one is good for ever.
    struct Registry {
        std::mutex mutex;
        std::vector<NSBundle*>
            opened; // in the order of opening; the framework's and the main one included
    };

    Registry& registry()
    {
        static Registry& instance = *new Registry;
        return instance;
    }

    constinit std::atomic<NSBundle*> mainOne { nullptr };

    NSBundle* knownAt(const std::string& path)
    {
        Registry& r = registry();
        const std::lock_guard guard(r.mutex);
        for (NSBundle* const bundle : r.opened) {
            if (BundleAccess::state(*bundle).path == path)
                return bundle;
        }
        return nullptr;
    }

    /// Answers the bundle of the path that came first when two threads open one at a time.
    NSBundle* enter(Ref<NSBundle> fresh)
    {
        const std::string& path = BundleAccess::state(*fresh.get()).path;
        Registry& r = registry();
        const std::lock_guard guard(r.mutex);
        for (NSBundle* const bundle : r.opened) {
            if (BundleAccess::state(*bundle).path == path)
                return bundle;
        }
        r.opened.push_back(fresh.get());
        return fresh.leak();
    }

    std::vector<NSBundle*> openedBundles()
    {
        Registry& r = registry();
        const std::lock_guard guard(r.mutex);
        return r.opened;
    }

    /// Answers whether a path begins at the root and has no part that leads nowhere or back.
    bool isPlain(const std::string& path)
    {
        return path.starts_with('/') && path.find("//") == path.npos
            && path.find("/.") == path.npos;
    }

    std::string absolute(const std::string& path)
    {
        std::error_code ignored;
        std::string out = isPlain(path)
            ? path
            : std::filesystem::absolute(path, ignored).lexically_normal().string();
        while (out.size() > 1 && out.back() == '/')
            out.pop_back();
        return out;
    }

    NSBundle* openFolder(const std::string& path)
    {
        const std::string place = absolute(path);
        if (NSBundle* const known = knownAt(place))
            return known;
        if (!bundles::isFolder(place))
            return nullptr;
        const Ref<NSBundle> fresh = cast<NSBundle>(NSBundle::cls().alloc()->init());
        BundleAccess::open(*fresh.get(), place);
        return enter(fresh);
    }

    std::string programFolder()
    {
        const std::string program = bundles::programPath();
        const std::string around = bundles::folderAroundContents(program);
        if (!around.empty())
            return around;
        if (program.empty())
            return "/";
        const std::string folder = bundles::folderOf(program);
        const std::string shared
            = bundles::folderOf(folder) + "/share" + program.substr(program.find_last_of('/'));
        const bool isShared
            = !bundles::isFile(folder + "/Info.plist") && bundles::isFile(shared + "/Info.plist");
        return isShared ? shared : folder + '/';
    }

    NSBundle* programBundle()
    {
        if (NSBundle* const bundle = openFolder(programFolder()))
            return bundle;
        // The program's folder went while it ran; the root is always there.
        return openFolder("/");
    }

    NSBundle& mainBundleNow()
    {
        NSBundle* bundle = mainOne.load(std::memory_order_acquire);
        if (!bundle) {
            bundle = programBundle();
            NSBundle* before = nullptr;
            if (!mainOne.compare_exchange_strong(before, bundle))
                bundle = before;
        }
        return *bundle;
    }

}

void setMainBundlePath(NSString* path)
{
    mainOne.store(path ? openFolder(bundles::pathFrom(path)) : nullptr, std::memory_order_release);
}

void BundleAccess::open(NSBundle& bundle, const std::string& path)
{
    bundle.state_ = std::make_shared<BundleState>();
    BundleState& state = *bundle.state_;
    state.path = path;
    state.contents = path;
    state.resources = path;
    if (bundles::isFolder(path + "/Contents")) {
        state.contents = path + "/Contents";
        state.resources = path + "/Contents/Resources";
    } else if (bundles::isFile(path + "/Resources/Info.plist")) {
        state.contents = path + "/Resources";
        state.resources = state.contents;
    }
}

namespace bundles {

    bool isFolder(const std::string& path)
    {
        struct stat status { };
        return ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
    }

    bool isFile(const std::string& path)
    {
        struct stat status { };
        return ::stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode);
    }

    std::string pathFrom(const NSString* path)
    {
        std::string bytes = utf8Of(path);
        return bytes.find('\0') == std::string::npos ? bytes : std::string();
    }

    std::string folderOf(const std::string& path)
    {
        const std::size_t slash = path.find_last_of('/');
        return slash == path.npos ? "" : path.substr(0, slash);
    }

    std::string programPath()
    {
        std::array<char, PATH_MAX> path {};
        const ssize_t length = ::readlink("/proc/self/exe", path.data(), path.size());
        return { path.data(), static_cast<std::size_t>(std::max<ssize_t>(length, 0)) };
    }

    std::string folderAroundContents(const std::string& image)
    {
        const std::string contents = folderOf(folderOf(image));
        return contents.ends_with("/Contents") ? folderOf(contents) : "";
    }

    std::string imageOf(const void* address)
    {
        Dl_info info {};
        if (!address || !dladdr(address, &info) || !info.dli_fname)
            return "";
        const std::unique_ptr<char, decltype(&std::free)> real(
            ::realpath(info.dli_fname, nullptr), &std::free);
        // The program calls itself by what its command line says.
        return real ? real.get() : programPath();
    }

    bool isFrameworkImage(const std::string& image)
    {
        static const std::string& own
            = *new std::string(imageOf(reinterpret_cast<const void*>(&isFrameworkImage)));
        return image == own && own != programPath();
    }

    NSBundle* framework()
    {
        // A static library lies in the program, in whatever folder of the same tree.
        static NSBundle* const bundle = []() -> NSBundle* {
            constexpr int kHighest = 4;
            std::string folder
                = folderOf(imageOf(reinterpret_cast<const void*>(&isFrameworkImage)));
            for (int level = 0; level < kHighest; ++level) {
                const std::string place = folder + "/share/brindle";
                if (isFile(place + "/Info.plist"))
                    return openFolder(place);
                folder = folderOf(folder);
            }
            return isFile(BRINDLE_RESOURCES "/Info.plist") ? openFolder(BRINDLE_RESOURCES)
                                                           : nullptr;
        }();
        return bundle;
    }

}

template <> struct NSBundle::Methods<struct Making> {

    static Ref<NSBundle> mainBundle(Class&) { return &mainBundleNow(); }
    static Ref<NSBundle> bundleWithPath(Class&, NSString* path)
    {
        const std::string place = bundles::pathFrom(path);
        return place.empty() ? nullptr : openFolder(place);
    }
    static Ref<NSBundle> initWithPath(NSBundle&, NSString* path)
    {
        return NSBundle::cls().bundleWithPath(path);
    }
    /// Without a path there is nothing that a bundle could be.
    static Ref<NSBundle> init(NSBundle& self)
    {
        if (!super<NSBundle, "init", Ref<NSObject>>(self))
            return nullptr;
        self.state_ = std::make_shared<BundleState>();
        return &self;
    }

    static Ref<NSBundle> bundleWithIdentifier(Class&, NSString* identifier)
    {
        if (!identifier)
            return nullptr;
        std::vector<NSBundle*> all { bundles::framework() };
        for (NSBundle* const bundle : openedBundles())
            all.push_back(bundle);
        all.push_back(&mainBundleNow());
        for (std::size_t i = all.size(); i-- > 0;) {
            if (maybe(maybe(all[i])->bundleIdentifier())->isEqualToString(identifier))
                return all[i];
        }
        return nullptr;
    }

    static Ref<NSBundle> bundleForClass(Class&, Class* cls)
    {
        unsigned count = 0;
        const std::unique_ptr<Method*, decltype(&releaseBuffer)> methods(
            class_copyMethodList(cls, &count), &releaseBuffer);
        const std::string image = count ? bundles::imageOf(reinterpret_cast<const void*>(
                                      method_getImplementation(methods.get()[0])))
                                        : std::string();
        if (bundles::isFrameworkImage(image) && bundles::framework())
            return bundles::framework();
        const std::string folder = bundles::folderAroundContents(image);
        NSBundle* const around
            = folder.empty() || image == bundles::programPath() ? nullptr : openFolder(folder);
        return around ? around : &mainBundleNow();
    }

    static Ref<NSArray> allBundles(Class&)
    {
        NSBundle* const first = &mainBundleNow();
        std::vector<Ref<NSObject>> all { first };
        for (NSBundle* const bundle : openedBundles()) {
            if (bundle != first && bundle != bundles::framework())
                all.emplace_back(bundle);
        }
        return makeArray(std::move(all));
    }
    static Ref<NSArray> allFrameworks(Class&)
    {
        NSObject* const framework = bundles::framework();
        return framework ? makeArray({ framework }) : makeArray({});
    }

    static Ref<NSString> bundlePath(NSBundle& self)
    {
        return files::textFrom(BundleAccess::state(self).path);
    }
    static Ref<NSString> resourcePath(NSBundle& self)
    {
        return files::textFrom(BundleAccess::state(self).resources);
    }
    static Ref<NSString> description(NSBundle& self)
    {
        return NSString::cls().stringWithFormat(
            "%s <%@>"_ns, class_getName(self.classObject()), self.bundlePath());
    }

    static void table(Builder& t)
    {
        t.classMethods({
            { "mainBundle", imp<mainBundle> },
            { "bundleWithPath:", imp<bundleWithPath> },
            { "bundleWithIdentifier:", imp<bundleWithIdentifier> },
            { "bundleForClass:", imp<bundleForClass> },
            { "allBundles", imp<allBundles> },
            { "allFrameworks", imp<allFrameworks> },
        });
        t.methods({
            { "init", imp<init> },
            { "initWithPath:", imp<initWithPath> },
            { "bundlePath", imp<bundlePath> },
            { "resourcePath", imp<resourcePath> },
            { "description", imp<description> },
        });
    }
};
BRINDLE_RECORD(NSBundle, Making)

}
