// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "foundation/NSString.h"

namespace gallery {

/// Shows URLs that are to be opened on the page instead of handing them to the desktop; for the tour.
void keepOpenedURLs();
/// Answers the URL that was opened last in that way; nil before.
brindle::Ref<brindle::NSString> lastOpenedURL();

}
