// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>

namespace brindle::desktop {

/// What a person prefers for all programs.
enum class ColorScheme { noPreference, dark, light };

/// Takes a preference into the defaults, where "AppleInterfaceStyle" is "Dark" for dark and absent for light; without
/// a preference the desktop's files decide as before. Posts `NSUserDefaultsDidChangeNotification` where that changes.
void setColorScheme(ColorScheme scheme);

/// Answers whether the desktop's own files ask for dark, as the defaults say as long as nobody says anything else. Only
/// regular files are read.
bool filesPreferDark();

/// Lets the defaults follow the settings portal of the session's bus from now on, and calls a closure after each change.
///
/// Never waits. Without a bus, its library or a portal, and for answers that make no sense, nothing happens, ever.
/// Once it has begun, further calls are ignored. Thread: main.
void followColorScheme(std::function<void()> changed);

}
