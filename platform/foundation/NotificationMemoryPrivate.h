// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSNotification.h"

namespace brindle {

/// Makes a notification for who posts often and lets go of it then: in place of a retired one, where there is one.
/// Thread: any.
Ref<NSNotification> makeNotification(NSString* name, NSObject* sender, NSDictionary* userInfo);
/// Takes a notification that was posted; it serves again unless somebody keeps it.
void retireNotification(Ref<NSNotification> notification);

}
