// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSControl.h"
#include "NSImageCell.h"

namespace brindle {

/// Shows an image. Nil shows nothing.
///
/// Where the user may change it, `setEditable:`, it takes the keyboard: `copy:`, `cut:`, `paste:` and the Delete key work on
/// the image, and a change sends the action. Otherwise presses go on along the responder chain.
/// Thread: main.
class NSImageView : public NSControl {
    BRINDLE_OBJECT(NSImageView, NSControl)

public:
    struct Meta : NSControl::Meta {
        /// Answers a view as large as the image. - Nil: an empty view without size.
        Ref<NSImageView> imageViewWithImage(NSImage* image) const
        {
            return send<"imageViewWithImage:", Ref<NSImageView>>(image);
        }
    };

    Ref<NSImage> image() const { return send<"image", Ref<NSImage>>(); }
    /// - Raises: `NSInvalidArgumentException` for an object that is no image.
    void setImage(NSImage* image) { send<"setImage:">(image); }
    NSImageScaling imageScaling() const { return send<"imageScaling", NSImageScaling>(); }
    void setImageScaling(NSImageScaling scaling) { send<"setImageScaling:">(scaling); }
    NSImageAlignment imageAlignment() const { return send<"imageAlignment", NSImageAlignment>(); }
    void setImageAlignment(NSImageAlignment place) { send<"setImageAlignment:">(place); }
    NSImageFrameStyle imageFrameStyle() const
    {
        return send<"imageFrameStyle", NSImageFrameStyle>();
    }
    void setImageFrameStyle(NSImageFrameStyle style) { send<"setImageFrameStyle:">(style); }
    Ref<NSColor> contentTintColor() const { return send<"contentTintColor", Ref<NSColor>>(); }
    void setContentTintColor(NSColor* color) { send<"setContentTintColor:">(color); }
    bool isEditable() const { return send<"isEditable", bool>(); }
    void setEditable(bool editable) { send<"setEditable:">(editable); }
    /// Whether an editable view takes part in cutting, copying and pasting; YES at first.
    bool allowsCutCopyPaste() const { return send<"allowsCutCopyPaste", bool>(); }
    void setAllowsCutCopyPaste(bool allows) { send<"setAllowsCutCopyPaste:">(allows); }
    /// Kept for the host: the first picture of an animation is shown.
    bool animates() const { return send<"animates", bool>(); }
    void setAnimates(bool animates) { send<"setAnimates:">(animates); }

private:
    WeakRef<NSObject> target_; // cells of images keep none
    SEL action_ {};
    bool cutsAndPastes_ = true;
    bool animates_ = false;
};

}
