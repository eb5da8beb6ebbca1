// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "foundation/NSURL.h"
#include "runtime/Block.h"

namespace brindle {

/// Lets an application work with a file that the user grants it.
///
/// A bookmark in the standard defaults, of the file or of a folder above it, is enough; without one the user is asked, in an
/// open panel in which only the file and the folders above it can be chosen.
///
///     AppSandboxFileAccess::cls().fileAccess()->accessFilePath_withBlock_persistPermission(
///         path, [&] { read(path); }, true);
///
/// Thread: any. The panel runs on the main thread, and a caller on another thread waits for it, so the main
/// thread must not wait for that caller. The closure runs on the caller's thread.
class AppSandboxFileAccess : public NSObject {
    BRINDLE_OBJECT(AppSandboxFileAccess, NSObject)

public:
    struct Meta : NSObject::Meta {
        Ref<AppSandboxFileAccess> fileAccess() const
        {
            return send<"fileAccess", Ref<AppSandboxFileAccess>>();
        }
    };

    // ---- what the panel says

    /// "Allow Access" at first.
    Ref<NSString> title() const { return send<"title", Ref<NSString>>(); }
    void setTitle(NSString* title) { send<"setTitle:">(title); }
    /// "NAME needs to access this path to continue. Click Allow to continue." at first, with the application's name.
    Ref<NSString> message() const { return send<"message", Ref<NSString>>(); }
    void setMessage(NSString* message) { send<"setMessage:">(message); }
    /// The label of the confirming button, "Allow" at first.
    Ref<NSString> prompt() const { return send<"prompt", Ref<NSString>>(); }
    void setPrompt(NSString* prompt) { send<"setPrompt:">(prompt); }

    // ---- access

    /// Runs a closure with access to a file.
    /// - path: of a file or folder; it need not exist yet. - Nil: NO.
    /// - persist: keeps a bookmark of what the user grants.
    /// - Returns: whether access was obtained; otherwise the closure did not run.
    /// - Raises: what the closure raises, after the access has ended.
    bool accessFilePath_withBlock_persistPermission(
        NSString* path, const Block<void()>& block, bool persist)
    {
        return send<"accessFilePath:withBlock:persistPermission:", bool>(
            path, block.get(), persist);
    }
    bool accessFileURL_withBlock_persistPermission(
        NSURL* url, const Block<void()>& block, bool persist)
    {
        return send<"accessFileURL:withBlock:persistPermission:", bool>(url, block.get(), persist);
    }
    /// Keeps a bookmark of a file that is accessible now; nothing happens where none can be made.
    void persistPermissionPath(NSString* path) { send<"persistPermissionPath:">(path); }
    void persistPermissionURL(NSURL* url) { send<"persistPermissionURL:">(url); }
    /// Asks the user for a file. - Returns: what was chosen, the file or a folder above it; nil when it was cancelled.
    Ref<NSURL> askPermissionForUrl(NSURL* url)
    {
        return send<"askPermissionForUrl:", Ref<NSURL>>(url);
    }

private:
    Ref<NSString> title_;
    Ref<NSString> message_;
    Ref<NSString> prompt_;
};

}
