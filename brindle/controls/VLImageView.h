// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "GWBackgroundColorView.h"

namespace brindle {

class NSImage;

/// Shows an image over its background so that it covers the whole view; what does not fit is cut off.
class VLImageView : public GWBackgroundColorView {
    BRINDLE_OBJECT(VLImageView, GWBackgroundColorView)

public:
    Ref<NSImage> image() const { return send<"image", Ref<NSImage>>(); }
    /// Marks the view for drawing unless it is the image that it has.
    void setImage(NSImage* image) { send<"setImage:">(image); }
    /// 0 to 1; 1 at first. It multiplies with the view's own alpha, and setting it does not mark the view.
    double imageAlpha() const { return send<"imageAlpha", double>(); }
    void setImageAlpha(double alpha) { send<"setImageAlpha:">(alpha); }

private:
    Ref<NSImage> image_;
    double imageAlpha_ = 0;
};

}
