// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "ColourCards.h"
#include "pages/Page.h"

namespace gallery {

/// A colour as text and numbers, as a ground, and mixed with another.
///
/// Keys: # begins a colour of six more characters, which no other key sees; Left and Right choose one of a few.
class ColourPage : public GalleryPage {
    BRINDLE_OBJECT(ColourPage, GalleryPage)

public:
    void setColor(brindle::NSColor* color) { send<"setColor:">(color); }
    void setEntry(brindle::NSString* entry) { send<"setEntry:">(entry); }

private:
    brindle::Ref<HexCard> hex_;
    brindle::Ref<GroundsCard> grounds_;
    brindle::Ref<MixturesCard> mixtures_;
    brindle::Ref<brindle::NSString> entry_; // nil while nothing is typed
    brindle::NSInteger choice_ = 0;
};

class Tour;
void tourColour(Tour& tour);

}
