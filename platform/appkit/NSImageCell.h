// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSCell.h"

namespace brindle {

class NSColor;

/// Where an image stands in its place.
enum NSImageAlignment : NSUInteger {
    NSImageAlignCenter = 0,
    NSImageAlignTop = 1,
    NSImageAlignTopLeft = 2,
    NSImageAlignTopRight = 3,
    NSImageAlignLeft = 4,
    NSImageAlignBottom = 5,
    NSImageAlignBottomLeft = 6,
    NSImageAlignBottomRight = 7,
    NSImageAlignRight = 8,
};

/// What stands around an image.
enum NSImageFrameStyle : NSUInteger {
    NSImageFrameNone = 0,
    NSImageFramePhoto = 1, ///< a white margin with a shadow
    NSImageFrameGrayBezel = 2, ///< a sunken ground
    NSImageFrameGroove = 3, ///< a line
    NSImageFrameButton = 4, ///< a button's body
};

/// Draws an image, scaled and placed. Its value is the image.
///
/// Images are upright in flipped views too. A template takes the tint, or the colour of text there; a disabled cell draws
/// faintly. Thread: main.
class NSImageCell : public NSCell {
    BRINDLE_OBJECT(NSImageCell, NSCell)

public:
    NSImageScaling imageScaling() const { return send<"imageScaling", NSImageScaling>(); }
    /// `NSImageScaleProportionallyDown` at first; unknown values are ignored, here and below.
    void setImageScaling(NSImageScaling scaling) { send<"setImageScaling:">(scaling); }
    NSImageAlignment imageAlignment() const { return send<"imageAlignment", NSImageAlignment>(); }
    void setImageAlignment(NSImageAlignment place) { send<"setImageAlignment:">(place); }
    NSImageFrameStyle imageFrameStyle() const
    {
        return send<"imageFrameStyle", NSImageFrameStyle>();
    }
    void setImageFrameStyle(NSImageFrameStyle style) { send<"setImageFrameStyle:">(style); }
    /// The colour of templates. - Nil: that of text.
    Ref<NSColor> contentTintColor() const { return send<"contentTintColor", Ref<NSColor>>(); }
    void setContentTintColor(NSColor* color) { send<"setContentTintColor:">(color); }

private:
    NSImageScaling scaling_ = NSImageScaleProportionallyDown;
    NSImageAlignment alignment_ = NSImageAlignCenter;
    NSImageFrameStyle frameStyle_ = NSImageFrameNone;
    Ref<NSColor> tint_;
};

}
