// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "foundation/NSUserDefaults.h"

/// Counts the uses of an application and asks the user, from the eighth on, to rate it in the store.
///
/// The store's identifier of the application is what the host attaches to the defaults under `JUAppStoreID`:
///
///     associateValue_withKey(defaults, "1234567890"_ns, JUAppStoreID);
///
/// Kept in the defaults: "JUAppUses", the count; "JUAppUsesResponse", 0 for no answer yet, 1 for rated (3 counts as
/// that), 2 for later; "JUAppRespondedAt", the count at the answer.
/// Thread: main.

namespace brindle {

/// The key under which the defaults carry the identifier; its value is an address of the framework's own.
extern "C" BRINDLE_EXPORT const void* const JUAppStoreID;

/// Counts one use and asks when it is time: from the eighth use on at every use without an answer, after "Rate Later" from
/// the eleventh use on behind that answer, after "Rate App" never again. The request is a sheet of the main window, or a
/// window of its own where there is none.
/// - identifier: not used.
inline void updateAppUsesForReviewRequestWithAppID(
    To<NSUserDefaults> defaults, NSString* identifier)
{
    defaults.send<"updateAppUsesForReviewRequestWithAppID:">(identifier);
}
/// Opens the store's page for a review of the application.
inline void openReviewURL(To<NSUserDefaults> defaults) { defaults.send<"openReviewURL">(); }

}
