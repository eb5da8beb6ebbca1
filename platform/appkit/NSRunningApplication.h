// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "foundation/NSString.h"

namespace brindle {

class NSImage;
class NSURL;

enum NSApplicationActivationOptions : NSUInteger {
    NSApplicationActivateAllWindows = 1,
    NSApplicationActivateIgnoringOtherApps = 2,
};

/// What is known of a program that runs: of this one.
///
/// The desktop keeps no record of the others, so there is one object, and `new` answers another description of the same.
/// Thread: any for names and places, main for the rest.
class NSRunningApplication : public NSObject {
    BRINDLE_OBJECT(NSRunningApplication, NSObject)

public:
    struct Meta : NSObject::Meta {
        Ref<NSRunningApplication> currentApplication() const
        {
            return send<"currentApplication", Ref<NSRunningApplication>>();
        }
        /// - Nil: for every process but this one.
        Ref<NSRunningApplication> runningApplicationWithProcessIdentifier(int process) const
        {
            return send<"runningApplicationWithProcessIdentifier:", Ref<NSRunningApplication>>(
                process);
        }
    };

    /// Answers "CFBundleDisplayName", else "CFBundleName", both in the user's language, else the program's name.
    Ref<NSString> localizedName() const { return send<"localizedName", Ref<NSString>>(); }
    /// - Nil: when the Info.plist names none.
    Ref<NSString> bundleIdentifier() const { return send<"bundleIdentifier", Ref<NSString>>(); }
    Ref<NSURL> bundleURL() const { return send<"bundleURL", Ref<NSURL>>(); }
    Ref<NSURL> executableURL() const { return send<"executableURL", Ref<NSURL>>(); }
    int processIdentifier() const { return send<"processIdentifier", int>(); }
    /// Answers the application's icon, never nil.
    Ref<NSImage> icon() const { return send<"icon", Ref<NSImage>>(); }

    bool isActive() const { return send<"isActive", bool>(); }
    bool isHidden() const { return send<"isHidden", bool>(); }
    bool isFinishedLaunching() const { return send<"isFinishedLaunching", bool>(); }
    bool isTerminated() const { return send<"isTerminated", bool>(); }
    /// - Returns: NO before there is an application object, as the three below.
    bool activateWithOptions(NSApplicationActivationOptions options)
    {
        return send<"activateWithOptions:", bool>(options);
    }
    bool hide() { return send<"hide", bool>(); }
    bool unhide() { return send<"unhide", bool>(); }
    /// Asks the application to end, as its menu would. - Returns: NO when it did not, if at all.
    bool terminate() { return send<"terminate", bool>(); }
};

}
