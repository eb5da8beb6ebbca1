// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "GWBackgroundColorView.h"

namespace brindle {

class GWOverlayHoverView;
class NSButton;
class NSEvent;
class NSTrackingArea;
class VLImageView;

/// A strip along the top of a window that shows a title area of the framework's own.
///
/// The host makes it, sets its properties and adds it to the window's frame view, which is the content view's superview.
/// There it is as wide as the window, 22 points high or more, and a press on it moves the window. It shows the image
/// "minimalWidgets.png" of the application at the left and lays a zone over the title area that feels the pointer: while
/// the pointer is in it the image fades out and the zone fades in, with a dark band if that is wanted and, in a window
/// without title bar, a close button.
///
/// The zone feels the pointer from the first change of the strip's frame on that is not the user's resizing. Each time
/// the strip is set up an observer is added that lives, and keeps the strip, as long as the process.
/// Each entry of the pointer writes the line "mouseEntered". Setters have no effect but on what follows.
class GWThemeFrameView : public GWBackgroundColorView {
    BRINDLE_OBJECT(GWThemeFrameView, GWBackgroundColorView)

public:
    /// Whether the image is shown and the title area feels the pointer. YES at first.
    bool customWindowWidgets() const { return send<"customWindowWidgets", bool>(); }
    void setCustomWindowWidgets(bool custom) { send<"setCustomWindowWidgets:">(custom); }
    /// The zone; nil before it was set up.
    Ref<GWOverlayHoverView> overlayHoverView() const
    {
        return send<"overlayHoverView", Ref<GWOverlayHoverView>>();
    }
    void setOverlayHoverView(GWOverlayHoverView* view) { send<"setOverlayHoverView:">(view); }
    /// What the strip is higher than 22 points.
    double additionalTitleBarHeight() const { return send<"additionalTitleBarHeight", double>(); }
    void setAdditionalTitleBarHeight(double height)
    {
        send<"setAdditionalTitleBarHeight:">(height);
    }
    /// How far the zone reaches below the strip; 0 becomes almost seven times the strip's height when it comes to a window.
    double additionalTrackY() const { return send<"additionalTrackY", double>(); }
    void setAdditionalTrackY(double height) { send<"setAdditionalTrackY:">(height); }
    /// Whether the zone carries a dark band and begins invisible. NO at first.
    bool titlebarOverlay() const { return send<"titlebarOverlay", bool>(); }
    void setTitlebarOverlay(bool overlay) { send<"setTitlebarOverlay:">(overlay); }
    /// The height of that band.
    double titlebarOverlayHeight() const { return send<"titlebarOverlayHeight", double>(); }
    void setTitlebarOverlayHeight(double height) { send<"setTitlebarOverlayHeight:">(height); }

    /// Answers the view that the strip lies in.
    Ref<NSView> themeFrameView() const { return send<"themeFrameView", Ref<NSView>>(); }
    /// Makes the zone if there is none, brings it to the front and begins to watch the strip's frame.
    void setUpTitleBarOverlayHover() { send<"setUpTitleBarOverlayHover">(); }
    /// Fades for a pointer that has entered or left.
    void fadeIn(bool entering) { send<"fadeIn:">(entering); }

private:
    bool customWindowWidgets_ = false;
    Ref<GWOverlayHoverView> overlayHoverView_;
    double additionalTitleBarHeight_ = 0;
    double additionalTrackY_ = 0;
    bool titlebarOverlay_ = false;
    double titlebarOverlayHeight_ = 0;
    Ref<VLImageView> minimalWidgetsView_;
    Ref<NSTrackingArea> widgetHoverTracking_;
    Ref<NSButton> closeButton_; // only in windows without title bar
};

}
