// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "appkit/NSWindow.h"

namespace brindle {

class GWLabel;
class NSImageView;
class NSMutableArray;

/// What the bar shows of itself.
enum BRMenubarTheme : std::int32_t {
    BRMenubarThemeOverlay = 0, ///< nothing: only its views, in the left half of the screen
    BRMenubarThemeCustom = 1, ///< a bar with logo and application name
};

/// The gap after the label and between views at the left.
enum BRMenubarSpacing : std::int32_t {
    BRMenubarSpacingStandard = 0, ///< 17 points
    BRMenubarSpacingNone = 1, ///< none, as for every other value
};

enum BRMenubarViewAlignment : std::int32_t {
    BRMenubarViewAlignmentLeft = 0, ///< as every value but the next
    BRMenubarViewAlignmentRight = 1,
};

/// A bar across the top of the screen for menus that the host makes.
///
/// The host chooses theme, spacing, shadow and size, sends `load` once, and adds views, normally `BRCustomMenubarMenuButton`
/// objects with a menu each. They lie in a second window, a child of the bar, which alone takes the mouse. The bar knows
/// nothing of the application's main menu.
///
/// Views are placed when they are added and not again: each has its size by then (buttons size themselves). A bar
/// does not follow the screen; a host sends `setFrame` when screens have changed.
///
/// The bar asks the screen to keep its 22 points free of other windows (`NSWindow+ScreenEdge.h`) and
/// hides while the application is inactive. `BRApplication` brings it the keys with Command.
/// Before `load` everything below can be sent: views are noted and get a place, but no window.
/// Thread: main.
class BRCustomMenubar : public NSWindow {
    BRINDLE_OBJECT(BRCustomMenubar, NSWindow)

public:
    struct Meta : NSWindow::Meta {
        /// Answers the bar that was initialised last, making one when there is none; it is kept.
        Ref<BRCustomMenubar> sharedCustomMenubar() const
        {
            return send<"sharedCustomMenubar", Ref<BRCustomMenubar>>();
        }
    };

    /// Makes an empty bar without a size and shares it.
    Ref<NSObject> init() { return send<"init", Ref<NSObject>>(); }
    Ref<BRCustomMenubar> initWithMenubarTheme(BRMenubarTheme theme)
    {
        return send<"initWithMenubarTheme:", Ref<BRCustomMenubar>>(theme);
    }
    Ref<BRCustomMenubar> initWithMenubarTheme_spacingMode(
        BRMenubarTheme theme, BRMenubarSpacing spacing)
    {
        return send<"initWithMenubarTheme:spacingMode:", Ref<BRCustomMenubar>>(theme, spacing);
    }

    /// Builds what the bar consists of and shows it. To be sent once: a second time adds everything again.
    void load() { send<"load">(); }
    /// Shows it in front, whether or not the application is active.
    void orderFront() { send<"orderFront">(); }
    using NSWindow::orderFront;

    // ---- looks, to be chosen before `load`

    /// Overlay at first.
    BRMenubarTheme menubarTheme() const { return send<"menubarTheme", BRMenubarTheme>(); }
    /// The overlay theme makes the window clear for good; no other theme undoes that.
    void setMenubarTheme(BRMenubarTheme theme) { send<"setMenubarTheme:">(theme); }
    BRMenubarSpacing menubarSpacingMode() const
    {
        return send<"menubarSpacingMode", BRMenubarSpacing>();
    }
    void setMenubarSpacingMode(BRMenubarSpacing mode) { send<"setMenubarSpacingMode:">(mode); }
    /// Whether a shadow hangs below the bar: the application's image "menuShadowGradient.png", which makes the window as much higher
    /// as the image is. NO at first.
    bool menubarShadow() const { return send<"menubarShadow", bool>(); }
    void setMenubarShadow(bool shadow) { send<"setMenubarShadow:">(shadow); }
    /// A rectangle whose width takes the place of the screen's from the next `setFrame` on; the zero rectangle for none.
    NSRect customScreenSize() const { return send<"customScreenSize", NSRect>(); }
    void setCustomScreenSize(NSRect size) { send<"setCustomScreenSize:">(size); }

    // ---- its place

    /// Puts the bar along the top of the main screen and answers its frame: 22 points high and the shadow's height.
    /// With a custom size it also places the views' window and moves views that do not fit.
    NSRect setFrame() { return send<"setFrame", NSRect>(); }
    /// Places the views' window for a frame of the bar.
    void menubarViewsSetFrame(NSRect frame) { send<"menubarViewsSetFrame:">(frame); }
    /// Moves the views that end beyond the views' window to the right end, left of those that are there already.
    void updateMenubarViewsToCustom() { send<"updateMenubarViewsToCustom">(); }

    // ---- views

    /// Every view that was added, in that order.
    Ref<NSMutableArray> menubarViews() const { return send<"menubarViews", Ref<NSMutableArray>>(); }
    void setMenubarViews(NSMutableArray* views) { send<"setMenubarViews:">(views); }
    void addMenubarView(NSView* view) { send<"addMenubarView:">(view); }
    /// Adds a view behind the last one, whichever end that is at, or left of those at the right end. A button becomes
    /// dark when the defaults have a text for "AppleInterfaceStyle" by now.
    /// - Raises: `NSInvalidArgumentException` for nil and for what is no view.
    void addMenubarView_alignment(NSView* view, BRMenubarViewAlignment alignment)
    {
        send<"addMenubarView:alignment:">(view, alignment);
    }

    // ---- keys and menus

    /// Offers a key press to the menus of its buttons, in the order in which they were added. The first that takes it wins.
    bool performKeyEquivalent(NSEvent* event) { return send<"performKeyEquivalent:", bool>(event); }
    /// Do nothing; places for a subclass that is the delegate of menus.
    void menuWillOpen(NSObject* menu) { send<"menuWillOpen:">(menu); }
    void menuDidClose(NSObject* menu) { send<"menuDidClose:">(menu); }
    void menuDidBeginTracking(NSObject* menu) { send<"menuDidBeginTracking:">(menu); }
    void attachMenuToMainWindow(NSObject* menu) { send<"attachMenuToMainWindow:">(menu); }

private:
    Ref<NSImageView> appleImageView_;
    Ref<GWLabel> appMenuLabel_;
    Ref<NSWindow> menubarViewsWindow_;
    double rightAlignOffset_ = 0; // taken at the right end; only ever grows
    bool menubarShadow_ = false;
    std::int32_t menubarTheme_ = BRMenubarThemeOverlay;
    std::int32_t menubarSpacingMode_ = BRMenubarSpacingStandard;
    Ref<NSMutableArray> menubarViews_;
    NSRect customScreenSize_ {};
};

}
