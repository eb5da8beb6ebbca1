// SPDX-License-Identifier: Apache-2.0
#include "VLImageView.h"

#include "graphics/NSImage+ContentMode.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct VLImageView::Methods<struct Picture> {

    static Ref<NSView> initWithFrame(VLImageView& self, NSRect frame)
    {
        if (!super<VLImageView, "initWithFrame:", Ref<NSView>>(self, frame))
            return nullptr;
        self.setImageAlpha(1);
        return &self;
    }
    static void setImage(VLImageView& self, NSImage* image)
    {
        if (self.image_ == image)
            return;
        self.image_ = image;
        self.setNeedsDisplay(true);
    }
    static void drawRect(VLImageView& self, NSRect dirty)
    {
        super<VLImageView, "drawRect:">(self, dirty);
        const NSRect bounds = self.bounds();
        const Ref<NSImage> image = self.image();
        if (image && NSIntersectsRect(dirty, bounds))
            drawInRect_contentMode_alpha(
                image, bounds, BRContentModeScaleAspectFill, self.imageAlpha());
    }
    // A method of its own: what a host exchanges here reaches no other view.
    static void mouseDown(VLImageView& self, NSEvent* event)
    {
        super<VLImageView, "mouseDown:">(self, event);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "setImage:", imp<setImage> },
            { "drawRect:", imp<drawRect> },
            { "mouseDown:", imp<mouseDown> },
        });
        t.properties({
            property<&VLImageView::image_>("image"),
            property<&VLImageView::imageAlpha_>("imageAlpha"),
        });
    }
};
BRINDLE_RECORD(VLImageView, Picture)

}
