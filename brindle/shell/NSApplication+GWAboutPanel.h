// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSApplication.h"

namespace brindle {

class NSDictionary;
class NSRunningApplication;

/// Shows the platform's about panel without its copyright line and in the framework's look: larger texts, the name in a
/// medium weight, everything in the middle, above all other windows. A panel that looks so already is only shown.
inline void showAbout(To<NSApplication> application, NSObject* sender)
{
    application.send<"showAbout:">(sender);
}
/// Answers the platform's record of this process.
inline Ref<NSRunningApplication> thisRunningApp(To<NSApplication> application)
{
    return application.send<"thisRunningApp", Ref<NSRunningApplication>>();
}
/// Answers the Info.plist of the host's bundle. - Nil: without a bundle identifier.
inline Ref<NSDictionary> infoDictionary(To<NSApplication> application)
{
    return application.send<"infoDictionary", Ref<NSDictionary>>();
}
/// Answers the name that the user reads.
inline Ref<NSString> appName(To<NSApplication> application)
{
    return application.send<"appName", Ref<NSString>>();
}
/// - Nil: when the Info.plist names none.
inline Ref<NSString> bundleIdentifier(To<NSApplication> application)
{
    return application.send<"bundleIdentifier", Ref<NSString>>();
}

}
