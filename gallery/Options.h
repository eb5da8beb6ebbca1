// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "foundation/NSString.h"
#include "menubar/BRCustomMenubar.h"

namespace gallery {

/// What the gallery remembers from one start to the next: an object whose declared properties are archived into the
/// defaults, without code of its own.
class GalleryOptions : public brindle::NSObject {
    BRINDLE_OBJECT(GalleryOptions, brindle::NSObject)

public:
    brindle::Ref<brindle::NSString> page_; ///< the name in the sidebar; nil before the first one
    bool hasAppearance_ = false; ///< chosen by the user; else it is the desktop's
    bool isDark_ = false;
    bool showsCode_ = false;
    brindle::NSInteger theme_ = brindle::BRMenubarThemeCustom;
    brindle::NSInteger spacing_ = brindle::BRMenubarSpacingNone;
    bool hasShadow_ = false;
};

/// Answers the options in force; they are read from the defaults when they are first asked for.
GalleryOptions& options();
/// Writes the options into the defaults.
void keepOptions();
/// Reads the options anew, as a start does.
void readOptions();

}
