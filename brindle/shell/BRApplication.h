// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSApplication.h"

namespace brindle {

/// The application that asks the menubar first.
///
/// A key press with Command goes to `performKeyEquivalent:` of the shared menubar, which is made (and not shown) when there is
/// none. What it handles goes no further, in contrast to the platform, whose key window is asked first; everything else
/// takes the platform's way.
class BRApplication : public NSApplication {
    BRINDLE_OBJECT(BRApplication, NSApplication)
};

}
