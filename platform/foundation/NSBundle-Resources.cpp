// SPDX-License-Identifier: Apache-2.0
#include "NSBundlePrivate.h"

#include <algorithm>
#include <filesystem>

#include <sys/stat.h>

#include "FilesPrivate.h"
#include "NSArray.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    /// What `NSImage` reads, best first.
    constexpr const char* kImageTypes[] { "png", "jpg", "jpeg", "gif", "bmp", "tiff", "tif" };
    constexpr const char* kVariants[] { "", "@2x", "@3x" };

    std::string withType(std::string name, const NSString* type)
    {
        const std::string extension = bundles::pathFrom(type);
        if (!extension.empty())
            name += extension.front() == '.' ? extension : '.' + extension;
        return name;
    }

    std::vector<std::string> filesOfType(const std::string& folder, const NSString* type)
    {
        std::vector<std::string> found;
        std::error_code ignored;
        const std::string ending = withType("", type);
        for (const auto& entry : std::filesystem::directory_iterator(folder, ignored)) {
            const std::string name = entry.path().filename().string();
            const bool fits = name.size() > ending.size() && name.ends_with(ending);
            if (fits && (!ending.empty() || !name.ends_with(".lproj")))
                found.push_back(entry.path().string());
        }
        std::sort(found.begin(), found.end());
        return found;
    }

    bool exists(const std::string& path)
    {
        struct stat status { };
        return ::stat(path.c_str(), &status) == 0;
    }

    /// Answers the first of some file names that a folder has; "" for none.
    std::string findFirst(const std::vector<std::string>& folders, const std::string& name)
    {
        for (const std::string& folder : folders) {
            if (exists(folder + '/' + name))
                return folder + '/' + name;
        }
        return "";
    }

    Ref<NSString> textOrNil(const std::string& path)
    {
        return path.empty() ? nullptr : files::textFrom(path);
    }

    /// The names an image may have that is called `name`, best first.
    std::vector<std::string> imageNames(const std::string& name)
    {
        const std::size_t dot = name.rfind('.');
        const bool hasType = dot != std::string::npos && dot > 0
            && std::find(std::begin(kImageTypes), std::end(kImageTypes), name.substr(dot + 1))
                != std::end(kImageTypes);
        std::vector<std::string> names { name };
        for (const char* const variant : kVariants) {
            if (hasType) {
                names.push_back(name.substr(0, dot) + variant + name.substr(dot));
                continue;
            }
            for (const char* const type : kImageTypes)
                names.push_back(name + variant + '.' + type);
        }
        return names;
    }

}

namespace bundles {

    std::vector<std::string> searchFolders(
        const NSBundle& bundle, const NSString* localization, const NSString* folder)
    {
        const std::string& resources = BundleAccess::state(bundle).resources;
        const std::string inner = pathFrom(folder);
        const std::string below = inner.empty() ? inner : '/' + inner;
        std::vector<std::string> folders { resources + below };
        std::vector<std::string> languages;
        if (localization) {
            languages.push_back(pathFrom(localization));
        } else {
            languages = preferredLocalizations(bundle);
            languages.push_back(developmentLocalization(bundle));
            languages.emplace_back("Base");
        }
        for (const std::string& language : languages)
            folders.push_back(resources + '/' + language + ".lproj" + below);
        return folders;
    }

}

template <> struct NSBundle::Methods<struct Resources> {

    static Ref<NSString> pathIn(
        NSBundle& self, NSString* name, NSString* type, NSString* folder, NSString* localization)
    {
        const auto folders = bundles::searchFolders(self, localization, folder);
        const std::string plain = bundles::pathFrom(name);
        if (!plain.empty())
            return textOrNil(findFirst(folders, withType(plain, type)));
        if (name || !type)
            return nullptr;
        for (const std::string& place : folders) {
            const auto found = filesOfType(place, type);
            if (!found.empty())
                return textOrNil(found.front());
        }
        return nullptr;
    }
    static Ref<NSString> pathInFolder(
        NSBundle& self, NSString* name, NSString* type, NSString* folder)
    {
        return pathIn(self, name, type, folder, nullptr);
    }
    static Ref<NSString> path(NSBundle& self, NSString* name, NSString* type)
    {
        return self.pathForResource_ofType_inDirectory(name, type, nullptr);
    }
    static Ref<NSArray> pathsOfType(NSBundle& self, NSString* type, NSString* folder)
    {
        std::vector<std::string> searched;
        std::vector<Ref<NSObject>> all;
        for (const std::string& place : bundles::searchFolders(self, nullptr, folder)) {
            if (std::find(searched.begin(), searched.end(), place) != searched.end())
                continue;
            searched.push_back(place);
            for (const std::string& file : filesOfType(place, type))
                all.emplace_back(files::textFrom(file));
        }
        return makeArray(std::move(all));
    }
    static Ref<NSString> imagePath(NSBundle& self, NSString* name)
    {
        const std::string plain = bundles::pathFrom(name);
        if (plain.empty())
            return nullptr;
        const auto folders = bundles::searchFolders(self, nullptr, nullptr);
        for (const std::string& file : imageNames(plain)) {
            const std::string found = findFirst(folders, file);
            if (bundles::isFile(found))
                return textOrNil(found);
        }
        return nullptr;
    }

    static void table(Builder& t)
    {
        t.methods({
            { "pathForResource:ofType:", imp<path> },
            { "pathForResource:ofType:inDirectory:", imp<pathInFolder> },
            { "pathForResource:ofType:inDirectory:forLocalization:", imp<pathIn> },
            { "pathsForResourcesOfType:inDirectory:", imp<pathsOfType> },
            { "pathForImageResource:", imp<imagePath> },
        });
    }
};
BRINDLE_RECORD(NSBundle, Resources)

}
