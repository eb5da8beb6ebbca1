// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "EditingCards.h"
#include "pages/Page.h"

namespace gallery {

/// Text as the user works on it: an editor with undo, the pasteboard, and the boxes of its letters.
class EditingPage : public GalleryPage {
    BRINDLE_OBJECT(EditingPage, GalleryPage)

private:
    brindle::Ref<EditorCard> editor_;
    brindle::Ref<PasteboardCard> board_;
    brindle::Ref<LettersCard> letters_;
};

class Tour;
void tourEditing(Tour& tour);

}
