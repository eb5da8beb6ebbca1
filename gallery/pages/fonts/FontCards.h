// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSFont.h"
#include "appkit/NSFontManager.h"
#include "appkit/NSSlider.h"
#include "appkit/NSTextField.h"
#include "kit/Card.h"
#include "kit/Chip.h"

namespace gallery {

/// A line to be edited, in a font that chips convert.
class FontSampleCard : public GalleryCard {
    BRINDLE_OBJECT(FontSampleCard, GalleryCard)

public:
    brindle::Ref<brindle::NSFont> font() const
    {
        return send<"font", brindle::Ref<brindle::NSFont>>();
    }
    /// Shows a font and tells the page.
    void setFont(brindle::NSFont* font) { send<"setFont:">(font); }
    /// Answers what the last conversion came to in words; nil after one that found a face.
    brindle::Ref<brindle::NSString> note() const
    {
        return send<"note", brindle::Ref<brindle::NSString>>();
    }

private:
    brindle::Ref<brindle::NSTextField> line_;
    brindle::Ref<brindle::NSFont> font_;
    brindle::Ref<brindle::NSString> note_;
    brindle::Ref<GalleryChip> bold_, italic_, heavier_, lighter_;
    brindle::Ref<brindle::NSSlider> size_;
};

/// Words of many scripts, and the font that each is shown in where the chosen one lacks it.
class FallbackCard : public GalleryCard {
    BRINDLE_OBJECT(FallbackCard, GalleryCard)

public:
    void show(brindle::NSFont* font);

private:
    brindle::Ref<brindle::NSFont> font_;
};

}
