// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "foundation/NSUserDefaults.h"

namespace brindle {

/// Registers the default values that the application ships: the "PreferenceSpecifiers" of the property list "Root" in the
/// bundle "Settings.bundle" among the main bundle's resources. Without them nothing happens.
///
/// Logs "register: %@" with the values unless there are none, and then "registerDefaults".
/// - Shape: an array of dictionaries; those with a "DefaultValue" also have a "Key". Of two with one key the later counts.
/// - Raises: `NSInvalidArgumentException` for a "DefaultValue" without a "Key".
inline void registerDefaultsFromSettingsBundle(To<NSUserDefaults> defaults)
{
    defaults.send<"registerDefaultsFromSettingsBundle">();
}
/// Answers what is registered for a specifier's default value: booleans for exactly "YES" and "NO", all else as it is.
inline Ref<NSObject> defaultValueForSettingsBundleDefaultValue(To<Class> defaults, NSObject* value)
{
    return defaults.send<"defaultValueForSettingsBundleDefaultValue:", Ref<NSObject>>(value);
}

}
