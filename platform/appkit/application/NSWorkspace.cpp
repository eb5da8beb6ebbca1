// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSWorkspace.h"

#include <algorithm>
#include <filesystem>

#include <unistd.h>

#include "DesktopPrivate.h"
#include "ScriptedAnswersPrivate.h"
#include "appkit/NSImage.h"
#include "appkit/panels/FilePicturesPrivate.h"
#include "foundation/Each.h"
#include "foundation/NSArray.h"
#include "foundation/NSDictionary.h"
#include "foundation/NSFileManager.h"
#include "foundation/NSNotificationCenter.h"
#include "foundation/NSNumber.h"
#include "foundation/NSURL.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct NSWorkspace::Methods<struct Opening> {

    static Ref<NSWorkspace> shared(Class& self)
    {
        static auto* const workspace
            = new Ref<NSWorkspace>(cast<NSWorkspace>(NSObject::Meta { &self }.alloc()->init()));
        return *workspace;
    }
    static Ref<NSObject> init(NSWorkspace& self)
    {
        if (!super<NSWorkspace, "init", Ref<NSObject>>(self))
            return nullptr;
        self.center_ = make<NSNotificationCenter>();
        return &self;
    }
    static Ref<NSNotificationCenter> center(NSWorkspace& self) { return self.center_; }

    // ---- URLs and files

    static bool openURL(NSWorkspace&, NSURL* url)
    {
        const Ref<NSString> scheme = maybe(url)->scheme();
        if (!scheme)
            return false;
        if (url->isFileURL() && !url->checkResourceIsReachableAndReturnError(nullptr))
            return false;
        if (const Block<bool(NSURL*)> desktop = scripted::desktop())
            return desktop(url);
        const Ref<NSString> name = scheme->lowercaseString();
        const Ref<NSString> text = url->absoluteString();
        return desktop::open(utf8Of(text), utf8Of(name));
    }
    static Ref<NSURL> existing(NSString* path)
    {
        const Ref<NSString> whole = maybe(path)->stringByExpandingTildeInPath();
        if (!NSFileManager::cls().defaultManager()->fileExistsAtPath(whole.get()))
            return nullptr;
        return NSURL::cls().fileURLWithPath(whole.get());
    }
    static bool openFile(NSWorkspace& self, NSString* path)
    {
        return self.openURL(existing(path).get());
    }
    static bool openFileWith(NSWorkspace& self, NSString* path, NSString* name)
    {
        if (!maybe(name)->length())
            return self.openFile(path);
        const Ref<NSURL> url = existing(path);
        return url && start(self, name, url.get());
    }
    static bool showFile(NSWorkspace& self, NSString* path, NSString*)
    {
        const Ref<NSURL> url = path ? existing(path) : existing("/"_ns);
        return self.openURL(maybe(url)->URLByDeletingLastPathComponent().get());
    }
    static void showFiles(NSWorkspace& self, NSArray* urls)
    {
        std::vector<Ref<NSURL>> folders;
        for (NSURL* url : each<NSURL>(Ref<NSArray>(urls))) {
            const Ref<NSURL> folder = url->URLByDeletingLastPathComponent();
            const bool isKnown = std::any_of(folders.begin(), folders.end(),
                [&](const Ref<NSURL>& known) { return known->isEqual(folder.get()); });
            if (!isKnown)
                folders.push_back(folder);
        }
        for (const Ref<NSURL>& folder : folders)
            self.openURL(folder.get());
    }

    // ---- programs

    static bool start(NSWorkspace& self, NSString* name, NSURL* file)
    {
        const auto tell = [&](NSString* what, NSDictionary* facts) {
            maybe(self.center_)->postNotificationName_object_userInfo(what, &self, facts);
        };
        tell(NSWorkspaceWillLaunchApplicationNotification,
            NSDictionary::cls().dictionaryWithObject_forKey(name, "NSApplicationName"_ns).get());
        std::vector<std::string> command { utf8Of(name) };
        if (file)
            command.push_back(utf8Of(file->path()));
        const int process = desktop::launch(command);
        if (process == 0)
            return false;
        tell(NSWorkspaceDidLaunchApplicationNotification,
            NSDictionary::cls()
                .dictionaryWithObjectsAndKeys(name, "NSApplicationName"_ns,
                    NSNumber::cls().numberWithInt(process).get(),
                    "NSApplicationProcessIdentifier"_ns)
                .get());
        return true;
    }
    static bool launch(NSWorkspace& self, NSString* name)
    {
        return maybe(name)->length() && start(self, name, nullptr);
    }

    // ---- pictures

    static Ref<NSImage> icon(NSWorkspace&, NSString* path)
    {
        const std::string name = utf8Of(path);
        std::error_code ignored;
        const bool isFolder = std::filesystem::is_directory(name, ignored);
        return files::pictureOf(files::kindOf(name, isFolder, ::access(name.c_str(), X_OK) == 0));
    }
    static Ref<NSImage> iconForType(NSWorkspace&, NSString* type)
    {
        std::string extension = utf8Of(type);
        if (extension.starts_with('.'))
            extension.erase(0, 1);
        return files::pictureOf(files::kindForExtension(extension));
    }

    static void table(Builder& t)
    {
        t.classMethods({ { "sharedWorkspace", imp<shared> } });
        t.methods({
            { "init", imp<init> },
            { "notificationCenter", imp<center> },
            { "openURL:", imp<openURL> },
            { "openFile:", imp<openFile> },
            { "openFile:withApplication:", imp<openFileWith> },
            { "launchApplication:", imp<launch> },
            { "selectFile:inFileViewerRootedAtPath:", imp<showFile> },
            { "activateFileViewerSelectingURLs:", imp<showFiles> },
            { "iconForFile:", imp<icon> },
            { "iconForFileType:", imp<iconForType> },
        });
    }
};
BRINDLE_RECORD(NSWorkspace, Opening)

}
