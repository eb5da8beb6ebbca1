// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "AgesCard.h"
#include "ScannerCard.h"
#include "URLCard.h"
#include "pages/Page.h"

namespace gallery {

/// Dates in words, addresses in pieces, a scanner that goes back.
///
/// Keys: Left and Right choose an address; the letters are those of the chips.
class TextPage : public GalleryPage {
    BRINDLE_OBJECT(TextPage, GalleryPage)

private:
    brindle::Ref<AgesCard> ages_;
    brindle::Ref<URLCard> urls_;
    brindle::Ref<ScannerCard> scanner_;
};

class Tour;
void tourText(Tour& tour);

}
