// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSColor.h"
#include "kit/Card.h"

namespace gallery {

/// A card about one colour of an RGB space.
class ColourCard : public GalleryCard {
    BRINDLE_OBJECT(ColourCard, GalleryCard)

public:
    brindle::Ref<brindle::NSColor> color() const
    {
        return send<"color", brindle::Ref<brindle::NSColor>>();
    }
    void setColor(brindle::NSColor* color) { send<"setColor:">(color); }

private:
    brindle::Ref<brindle::NSColor> color_;
};

/// The colour as text and in numbers.
class HexCard : public ColourCard {
    BRINDLE_OBJECT(HexCard, ColourCard)

public:
    /// What is being typed; nil shows the colour's own text.
    void setEntry(brindle::NSString* entry) { send<"setEntry:">(entry); }

private:
    brindle::Ref<brindle::NSString> entry_;
};

/// What can be written on the colour and on some others.
class GroundsCard : public ColourCard {
    BRINDLE_OBJECT(GroundsCard, ColourCard)
};

/// The colour on its way to others, in steps of a tenth.
class MixturesCard : public ColourCard {
    BRINDLE_OBJECT(MixturesCard, ColourCard)
};

}
