// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSApplication.h"

namespace brindle {

class NSDictionary;

/// Shows what this program is: icon, name, version, credits and copyright. There is one panel; it is the key window when this
/// returns, whether or not the application is active. Shown again, it keeps its views, their fonts and its title, and
/// only texts that are different change.
///
/// - Shape: all keys may be missing and are then answered by the Info.plist. "ApplicationName": NSString ("CFBundleName", else
///   the program's name). "ApplicationVersion": NSString ("CFBundleShortVersionString") and "Version": NSString
///   ("CFBundleVersion") make "Version 1.2 (34)". "ApplicationIcon": NSImage. "Credits": NSAttributedString or NSString (the
///   resource "Credits.txt"). "Copyright": NSString ("NSHumanReadableCopyright"). An empty text shows nothing in its place;
///   a value of another kind counts as missing.
/// - Nil: as an empty dictionary.
inline void orderFrontStandardAboutPanelWithOptions(
    To<NSApplication> application, NSDictionary* options)
{
    application.send<"orderFrontStandardAboutPanelWithOptions:">(options);
}
/// The same without options.
inline void orderFrontStandardAboutPanel(To<NSApplication> application, NSObject* sender)
{
    application.send<"orderFrontStandardAboutPanel:">(sender);
}

}
