// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSRunningApplication.h"

#include "NSApplicationPrivate.h"
#include "appkit/NSImage.h"
#include "foundation/NSBundle.h"
#include "foundation/NSProcessInfo.h"
#include "foundation/NSURL.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct NSRunningApplication::Methods<struct Record> {

    static Ref<NSRunningApplication> current(Class&)
    {
        static const Ref<NSRunningApplication> current = make<NSRunningApplication>();
        return current;
    }
    static Ref<NSRunningApplication> withProcess(Class&, int process)
    {
        const Ref<NSRunningApplication> current = NSRunningApplication::cls().currentApplication();
        return process == current->processIdentifier() ? current : nullptr;
    }

    // ---- names and places

    static Ref<NSBundle> bundle() { return NSBundle::cls().mainBundle(); }
    static Ref<NSString> textFor(NSString* key)
    {
        const Ref<NSObject> value = bundle()->objectForInfoDictionaryKey(key);
        const bool isText = value && value->isKindOfClass(NSString::cls());
        return isText && static_cast<NSString&>(*value).length() > 0 ? cast<NSString>(value)
                                                                     : Ref<NSString>();
    }
    static Ref<NSString> localizedName(NSRunningApplication&)
    {
        if (Ref<NSString> name = textFor("CFBundleDisplayName"_ns))
            return name;
        if (Ref<NSString> name = textFor("CFBundleName"_ns))
            return name;
        return NSProcessInfo::cls().processInfo()->processName();
    }
    static Ref<NSString> bundleIdentifier(NSRunningApplication&)
    {
        return bundle()->bundleIdentifier();
    }
    static Ref<NSURL> bundleURL(NSRunningApplication&) { return bundle()->bundleURL(); }
    static Ref<NSURL> executableURL(NSRunningApplication&) { return bundle()->executableURL(); }
    static int processIdentifier(NSRunningApplication&)
    {
        return NSProcessInfo::cls().processInfo()->processIdentifier();
    }
    static Ref<NSImage> icon(NSRunningApplication&)
    {
        return NSImage::cls().imageNamed("NSApplicationIcon"_ns);
    }

    // ---- what it is doing

    static bool isActive(NSRunningApplication&) { return ApplicationAccess::state().active; }
    static bool isHidden(NSRunningApplication&) { return ApplicationAccess::state().hidden; }
    static bool isLaunched(NSRunningApplication&) { return ApplicationAccess::state().launched; }
    static bool isTerminated(NSRunningApplication&) { return false; }
    template <class Step> static bool tell(Step&& step)
    {
        const Ref<NSApplication> application = ApplicationAccess::state().object;
        if (application)
            step(*application);
        return application != nullptr;
    }
    static bool activate(NSRunningApplication&, NSApplicationActivationOptions options)
    {
        return tell([options](NSApplication& application) {
            application.activateIgnoringOtherApps(options & NSApplicationActivateIgnoringOtherApps);
        });
    }
    static bool hide(NSRunningApplication&)
    {
        return tell([](NSApplication& application) { application.hide(nullptr); });
    }
    static bool unhide(NSRunningApplication&)
    {
        return tell([](NSApplication& application) { application.unhide(nullptr); });
    }
    static bool terminate(NSRunningApplication&)
    {
        tell([](NSApplication& application) { application.terminate(nullptr); });
        return false; // or nobody would read this
    }

    static void table(Builder& t)
    {
        t.classMethods({
            { "currentApplication", imp<current> },
            { "runningApplicationWithProcessIdentifier:", imp<withProcess> },
        });
        t.methods({
            { "localizedName", imp<localizedName> },
            { "bundleIdentifier", imp<bundleIdentifier> },
            { "bundleURL", imp<bundleURL> },
            { "executableURL", imp<executableURL> },
            { "processIdentifier", imp<processIdentifier> },
            { "icon", imp<icon> },
            { "isActive", imp<isActive> },
            { "isHidden", imp<isHidden> },
            { "isFinishedLaunching", imp<isLaunched> },
            { "isTerminated", imp<isTerminated> },
            { "activateWithOptions:", imp<activate> },
            { "hide", imp<hide> },
            { "unhide", imp<unhide> },
            { "terminate", imp<terminate> },
        });
    }
};
BRINDLE_RECORD(NSRunningApplication, Record)

}
