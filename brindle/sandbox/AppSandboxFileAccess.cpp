// SPDX-License-Identifier: Apache-2.0
#include "AppSandboxFileAccess.h"

#include <exception>

#include "AppSandboxFileAccessOpenSavePanelDelegate.h"
#include "AppSandboxFileAccessPersist.h"
#include "appkit/NSApplication.h"
#include "appkit/NSOpenPanel.h"
#include "foundation/Dispatch.h"
#include "foundation/NSBundle.h"
#include "foundation/NSData.h"
#include "foundation/NSDictionary.h"
#include "foundation/NSFileManager.h"
#include "foundation/NSThread.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct AppSandboxFileAccess::Methods<struct Texts> {

    static Ref<AppSandboxFileAccess> fileAccess(Class& self)
    {
        return cast<AppSandboxFileAccess>(NSObject::Meta { &self }.alloc()->init());
    }
    static Ref<NSObject> applicationName()
    {
        const Ref<NSBundle> bundle = NSBundle::cls().mainBundle();
        const Ref<NSObject> shown = bundle->objectForInfoDictionaryKey("CFBundleDisplayName"_ns);
        return shown ? shown : bundle->objectForInfoDictionaryKey("CFBundleName"_ns);
    }
    static Ref<NSObject> init(AppSandboxFileAccess& self)
    {
        if (!super<AppSandboxFileAccess, "init", Ref<NSObject>>(self))
            return nullptr;
        self.setTitle("Allow Access"_ns);
        self.setMessage(
            NSString::cls()
                .stringWithFormat(
                    "%@ needs to access this path to continue. Click Allow to continue."_ns,
                    applicationName())
                .get());
        self.setPrompt("Allow"_ns);
        return &self;
    }

    static void table(Builder& t)
    {
        t.classMethods({ { "fileAccess", imp<fileAccess> } });
        t.methods({ { "init", imp<init> } });
        t.properties({
            property<&AppSandboxFileAccess::title_>("title"),
            property<&AppSandboxFileAccess::message_>("message"),
            property<&AppSandboxFileAccess::prompt_>("prompt"),
        });
    }
};
BRINDLE_RECORD(AppSandboxFileAccess, Texts)

template <> struct AppSandboxFileAccess::Methods<struct Access> {

    using Store = AppSandboxFileAccessPersist;

    // ---- bookmarks

    /// Answers whether a bookmark was made of a URL or of a folder above it. One that lies under another's key is not
    /// what the user granted there.
    static bool covers(NSData* bookmark, NSURL* url)
    {
        const Ref<NSDictionary> facts = NSURL::cls().resourceValuesForKeys_fromBookmarkData(
            NSArray::cls().arrayWithObjects(static_cast<NSString*>(NSURLPathKey)).get(), bookmark);
        const Ref<NSObject> path = maybe(facts)->objectForKey(NSURLPathKey);
        if (!path)
            return false;
        const auto rule = alloc<AppSandboxFileAccessOpenSavePanelDelegate>()->initWithFileURL(url);
        const Ref<NSURL> marked
            = NSURL::cls().fileURLWithPath_isDirectory(cast<NSString>(path).get(), false);
        return rule->panel_shouldEnableURL(nullptr, marked.get());
    }
    /// - isStale: set where the bookmark should be made anew. - Nil: when it leads nowhere.
    static Ref<NSURL> resolved(NSData* bookmark, NSURL* url, bool& isStale)
    {
        if (!covers(bookmark, url))
            return nullptr;
        constexpr NSURLBookmarkResolutionOptions kOptions
            = NSURLBookmarkResolutionWithSecurityScope | NSURLBookmarkResolutionWithoutUI;
        return NSURL::cls()
            .URLByResolvingBookmarkData_options_relativeToURL_bookmarkDataIsStale_error(
                bookmark, kOptions, nullptr, &isStale, nullptr);
    }
    static void persistURL(AppSandboxFileAccess&, NSURL* url)
    {
        const Ref<NSData> bookmark
            = maybe(url)
                  ->bookmarkDataWithOptions_includingResourceValuesForKeys_relativeToURL_error(
                      NSURLBookmarkCreationWithSecurityScope, nullptr, nullptr, nullptr);
        if (bookmark)
            Store::cls().setBookmarkData_forURL(bookmark.get(), url);
    }
    static void persistPath(AppSandboxFileAccess& self, NSString* path)
    {
        if (path)
            self.persistPermissionURL(NSURL::cls().fileURLWithPath(path).get());
    }

    // ---- access

    static bool accessPath(
        AppSandboxFileAccess& self, NSString* path, Closure<void()>* block, bool persist)
    {
        const Ref<NSURL> url = path ? NSURL::cls().fileURLWithPath(path) : nullptr;
        return self.accessFileURL_withBlock_persistPermission(url.get(), block, persist);
    }
    static bool accessURL(
        AppSandboxFileAccess& self, NSURL* wanted, Closure<void()>* block, bool persist)
    {
        const Ref<NSURL> url
            = maybe(maybe(wanted)->URLByStandardizingPath())->URLByResolvingSymlinksInPath();
        if (!url)
            return false;
        Ref<NSData> bookmark = Store::cls().bookmarkDataForURL(url.get());
        bool isStale = false;
        Ref<NSURL> granted = bookmark ? resolved(bookmark.get(), url.get(), isStale) : nullptr;
        if (isStale)
            bookmark = nullptr;
        if (!granted)
            granted = self.askPermissionForUrl(url.get());
        if (!granted)
            return false;
        if (persist && !bookmark)
            self.persistPermissionURL(granted.get());
        run(block, *granted);
        return true;
    }
    static void run(const Block<void()>& block, NSURL& granted)
    {
        granted.startAccessingSecurityScopedResource();
        try {
            block();
        } catch (...) {
            granted.stopAccessingSecurityScopedResource();
            throw;
        }
        granted.stopAccessingSecurityScopedResource();
    }

    // ---- asking

    static Ref<NSURL> existingPlace(NSURL* url)
    {
        const Ref<NSFileManager> manager = NSFileManager::cls().defaultManager();
        Ref<NSString> path = maybe(url)->path();
        bool isFolder = false;
        while (maybe(path)->length() >= 2
            && !manager->fileExistsAtPath_isDirectory(path.get(), &isFolder))
            path = path->stringByDeletingLastPathComponent();
        return path ? NSURL::cls().fileURLWithPath(path.get()) : nullptr;
    }
    static Ref<NSURL> runPanel(AppSandboxFileAccess& self, NSURL* folder, NSObject* delegate)
    {
        const Ref<NSOpenPanel> panel = NSOpenPanel::cls().openPanel();
        panel->setMessage(self.message().get());
        panel->setCanCreateDirectories(false);
        panel->setCanChooseFiles(true);
        panel->setCanChooseDirectories(true);
        panel->setAllowsMultipleSelection(false);
        panel->setPrompt(self.prompt().get());
        panel->setTitle(self.title().get());
        panel->setShowsHiddenFiles(false);
        panel->setExtensionHidden(false);
        panel->setDirectoryURL(folder);
        panel->setDelegate(delegate);
        NSApplication::cls().sharedApplication()->activateIgnoringOtherApps(true);
        return panel->runModal() == NSModalResponseOK ? panel->URL() : nullptr;
    }
    static Ref<NSURL> ask(AppSandboxFileAccess& self, NSURL* url)
    {
        const auto rule = alloc<AppSandboxFileAccessOpenSavePanelDelegate>()->initWithFileURL(url);
        const Ref<NSURL> folder = existingPlace(url);
        if (NSThread::cls().isMainThread())
            return runPanel(self, folder.get(), rule.get());
        Ref<NSURL> chosen;
        std::exception_ptr raised; // it belongs to the caller, not to the main thread's loop
        dispatch_sync(dispatch_get_main_queue(), [&] {
            try {
                chosen = runPanel(self, folder.get(), rule.get());
            } catch (...) {
                raised = std::current_exception();
            }
        });
        if (raised)
            std::rethrow_exception(raised);
        return chosen;
    }

    static void table(Builder& t)
    {
        t.methods({
            { "accessFilePath:withBlock:persistPermission:", imp<accessPath> },
            { "accessFileURL:withBlock:persistPermission:", imp<accessURL> },
            { "persistPermissionPath:", imp<persistPath> },
            { "persistPermissionURL:", imp<persistURL> },
            { "askPermissionForUrl:", imp<ask> },
        });
    }
};
BRINDLE_RECORD(AppSandboxFileAccess, Access)

}
