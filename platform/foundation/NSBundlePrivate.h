// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <mutex>
#include <string>
#include <vector>

#include "NSBundle.h"
#include "NSDictionary.h"
#include "NSMutableDictionary.h"

namespace brindle {

/// What a bundle keeps. The paths never change; the rest is read when somebody asks, under the lock.
struct BundleState {
    std::string path; // absolute, no slash at its end
    std::string contents; // where the Info.plist is
    std::string resources;

    std::mutex mutex;
    Ref<NSDictionary> info;
    void* image = nullptr; // of the loaded code
    std::uint64_t generation = 0; // of the user's languages that the rest is for
    std::vector<std::string> preferred;
    Ref<NSMutableDictionary> tables; // by name
};

/// The way to a bundle's state for the files of this folder.
struct BundleAccess {
    /// Answers the state; one that was never opened has that of no folder.
    static BundleState& state(const NSBundle& bundle)
    {
        static BundleState* const none = new BundleState;
        return bundle.state_ ? *bundle.state_ : *none;
    }
    static void open(NSBundle& bundle, const std::string& path);
};

namespace bundles {

    bool isFolder(const std::string& path);
    bool isFile(const std::string& path);
    /// Answers a path of the host as bytes; "" for nil and for what no file can be called.
    std::string pathFrom(const NSString* path);

    /// Answers the file that is running.
    std::string programPath();
    /// Answers what stands before the last slash of a path: "" for what lies in the root.
    std::string folderOf(const std::string& path);
    /// Answers the folder of the bundle that a program or library lies in: the one round its `Contents`, else "".
    std::string folderAroundContents(const std::string& image);
    /// Answers the file that holds an address of code; "" for none.
    std::string imageOf(const void* address);
    /// Answers the framework's bundle; nil when its folder is nowhere.
    NSBundle* framework();
    /// Whether a class belongs to the framework, for the program is what holds it when it is linked statically.
    bool isFrameworkImage(const std::string& image);

    /// Answers what a property list in a file holds; nil when it is missing or no list.
    Ref<NSDictionary> dictionaryIn(const std::string& path);

    /// Answers which of the languages fit the wanted ones, best first: "de-CH" is met by "de-CH", "de", then another "de-…".
    std::vector<std::string> matching(
        const std::vector<std::string>& available, const std::vector<std::string>& wanted);
    /// Answers the folders that are searched for a resource, in order.
    /// - localization: the only language; nullptr for the user's.
    std::vector<std::string> searchFolders(
        const NSBundle& bundle, const NSString* localization, const NSString* folder);
    /// Answers the bundle's languages for this user, best first.
    std::vector<std::string> preferredLocalizations(const NSBundle& bundle);
    std::vector<std::string> localizations(const NSBundle& bundle);
    std::string developmentLocalization(const NSBundle& bundle);

}

}
