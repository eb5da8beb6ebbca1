// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSScrollView.h"
#include "appkit/NSTextView.h"
#include "kit/Card.h"
#include "kit/Chip.h"

namespace gallery {

/// A text to be edited, with undo, a menu of its own, and characters of many scripts.
class EditorCard : public GalleryCard {
    BRINDLE_OBJECT(EditorCard, GalleryCard)

private:
    brindle::Ref<brindle::NSScrollView> scroll_;
    brindle::Ref<brindle::NSTextView> text_;
    brindle::Ref<GalleryChip> undo_;
    brindle::Ref<GalleryChip> redo_;
};

/// What lies on the general pasteboard, in which types.
class PasteboardCard : public GalleryCard {
    BRINDLE_OBJECT(PasteboardCard, GalleryCard)

private:
    brindle::Ref<GalleryChip> write_;
    brindle::Ref<GalleryChip> clear_;
};

/// The box of each letter as the layout manager knows it; the letter under the pointer is told.
class LettersCard : public GalleryCard {
    BRINDLE_OBJECT(LettersCard, GalleryCard)

private:
    brindle::Ref<brindle::NSTextView> text_; // shows nothing, lays out
    brindle::NSInteger letter_ = -1; // under the pointer
};

}
