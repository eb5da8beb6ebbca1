// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSView.h"

namespace brindle {

/// The transparent zone over a window's title area that a `GWThemeFrameView` tracks the pointer in.
///
/// With `titlebarOverlay` it carries a dark band along its top edge, made each time the view is put into a superview or
/// taken out of one: a view that is moved again has one band more. A band keeps its height; its width follows the view.
class GWOverlayHoverView : public NSView {
    BRINDLE_OBJECT(GWOverlayHoverView, NSView)

public:
    /// NO at first. What is set after the view was moved counts for the next band.
    bool titlebarOverlay() const { return send<"titlebarOverlay", bool>(); }
    void setTitlebarOverlay(bool overlay) { send<"setTitlebarOverlay:">(overlay); }
    /// The height of the band, points from the top.
    double titlebarOverlayHeight() const { return send<"titlebarOverlayHeight", double>(); }
    void setTitlebarOverlayHeight(double height) { send<"setTitlebarOverlayHeight:">(height); }
    /// Answers how far down the band is dark enough to carry a control, points.
    double opaqueHeight() const { return send<"opaqueHeight", double>(); }

private:
    bool titlebarOverlay_ = false;
    double titlebarOverlayHeight_ = 0;
};

}
