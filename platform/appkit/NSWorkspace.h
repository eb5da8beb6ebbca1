// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "foundation/StringConstant.h"
#include "runtime/NSObject.h"

namespace brindle {

class NSArray;
class NSImage;
class NSNotificationCenter;
class NSURL;

inline constexpr StringConstant<"NSWorkspaceWillLaunchApplicationNotification">
    NSWorkspaceWillLaunchApplicationNotification;
inline constexpr StringConstant<"NSWorkspaceDidLaunchApplicationNotification">
    NSWorkspaceDidLaunchApplicationNotification;

/// Posted by the default centre, on the main thread and without an object, when the look has changed, the desktop's or the
/// one that the host has chosen, and system colours with it. Windows are drawn anew by themselves; whoever keeps what it
/// made of such colours makes it again.
inline constexpr StringConstant<"NSSystemColorsDidChangeNotification">
    NSSystemColorsDidChangeNotification;

namespace appkit {
    /// Lets the look be the desktop's again after `setAppearance`, as it is at the start: on a real screen it is dark while
    /// the defaults have a text for "AppleInterfaceStyle", and windows are drawn anew when the desktop changes it.
    BRINDLE_EXPORT void followDesktopAppearance();
}

/// The desktop around the program: it opens files and URLs with the programs that the user has chosen for them.
///
/// What is opened is handed to the desktop's opener as a process of its own; nothing here waits for it, so YES says that
/// it was handed over, not that it is shown. Without a desktop everything answers NO.
///
/// `launchApplication:` and what rests on it post the notifications above in `notificationCenter`, with "NSApplicationName"
/// and, afterwards, "NSApplicationProcessIdentifier".
/// Thread: any; notifications on the caller's.
class NSWorkspace : public NSObject {
    BRINDLE_OBJECT(NSWorkspace, NSObject)

public:
    struct Meta : NSObject::Meta {
        Ref<NSWorkspace> sharedWorkspace() const
        {
            return send<"sharedWorkspace", Ref<NSWorkspace>>();
        }
    };

    /// Answers the centre of the notifications above; it is not the default one.
    Ref<NSNotificationCenter> notificationCenter() const
    {
        return send<"notificationCenter", Ref<NSNotificationCenter>>();
    }

    /// Opens a URL.
    /// - Returns: NO for nil, for a URL without scheme, for a file that is not there, and when no program is registered for
    ///   the scheme.
    bool openURL(NSURL* url) { return send<"openURL:", bool>(url); }
    /// Opens a file or folder by `openURL:`. - path: with or without a tilde.
    bool openFile(NSString* path) { return send<"openFile:", bool>(path); }
    /// Opens a file with a program of the search path. - Nil: without a name it is `openFile:`.
    bool openFile_withApplication(NSString* path, NSString* name)
    {
        return send<"openFile:withApplication:", bool>(path, name);
    }
    /// Starts a program of the search path.
    bool launchApplication(NSString* name) { return send<"launchApplication:", bool>(name); }
    /// Shows the folder that a file is in; with a nil path the root folder.
    bool selectFile_inFileViewerRootedAtPath(NSString* path, NSString* root)
    {
        return send<"selectFile:inFileViewerRootedAtPath:", bool>(path, root);
    }
    /// Shows the folders that files are in, each once.
    void activateFileViewerSelectingURLs(NSArray* urls)
    {
        send<"activateFileViewerSelectingURLs:">(urls);
    }

    /// Answers a picture of what a file is, 32 points wide and sharp at any size; never nil.
    Ref<NSImage> iconForFile(NSString* path) const
    {
        return send<"iconForFile:", Ref<NSImage>>(path);
    }
    /// - type: an extension without its dot. - Nil: a plain document.
    Ref<NSImage> iconForFileType(NSString* type) const
    {
        return send<"iconForFileType:", Ref<NSImage>>(type);
    }

private:
    Ref<NSNotificationCenter> center_;
};

}
