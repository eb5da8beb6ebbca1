// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSButton.h"

namespace brindle {

class NSShadow;

/// The button that stands for one menu in the menubar.
///
/// A press of the left button opens `menu` just below it; without a menu it is a button like any other. It sizes itself to its
/// title, 22 points high, whenever it is put into a window or taken out. The host sets title or image, gives
/// it a menu and hands it to `BRCustomMenubar`.
/// Thread: main.
class BRCustomMenubarMenuButton : public NSButton {
    BRINDLE_OBJECT(BRCustomMenubarMenuButton, NSButton)

public:
    struct Meta : NSButton::Meta {
        /// Answers the light round everything that is drawn as on: the accent colour, as it was when the class was first used.
        Ref<NSShadow> onGlowShadow() const { return send<"onGlowShadow", Ref<NSShadow>>(); }
    };

    /// Makes an empty button that has the title "Button", as every button at first.
    Ref<NSObject> init() { return send<"init", Ref<NSObject>>(); }
    /// Sets the size: 54 points more than the title is wide, or 37 without a title; 22 high.
    void sizeToFit() { send<"sizeToFit">(); }
    /// Lets the menu perform a key press, and looks pressed for 0.24 seconds when it did.
    /// - Returns: whether it did; NO without a menu.
    bool menuKeyEquivalent(NSEvent* event) { return send<"menuKeyEquivalent:", bool>(event); }

    /// Answers the button with a menu that a point of the screen lies on, itself included, of those beside it. While a
    /// menu is open the pointer moves to another one so. - Nil: for none.
    Ref<NSView> menuNeighbourAtPoint(NSPoint place) const
    {
        return send<"menuNeighbourAtPoint:", Ref<NSView>>(place);
    }
    /// Answers the next button with a menu to the left (-1) or right (1), round the ends; itself when it is the only one.
    Ref<NSView> menuNeighbourInDirection(NSInteger direction) const
    {
        return send<"menuNeighbourInDirection:", Ref<NSView>>(direction);
    }

    /// Whether the state 1 is drawn in the accent colour, with a glow. NO at first.
    bool toggleButton() const { return send<"toggleButton", bool>(); }
    void setToggleButton(bool toggles) { send<"setToggleButton:">(toggles); }
    /// Whether title and image are drawn white. NO at first; the menubar sets it where the desktop is dark.
    bool darkMode() const { return send<"darkMode", bool>(); }
    void setDarkMode(bool dark) { send<"setDarkMode:">(dark); }
    /// The image in white, made when it is first drawn so. It does not follow later images; nil has it made anew.
    Ref<NSImage> invertedImage() const { return send<"invertedImage", Ref<NSImage>>(); }
    void setInvertedImage(NSImage* image) { send<"setInvertedImage:">(image); }
    /// The image in the accent colour, likewise.
    Ref<NSImage> onImage() const { return send<"onImage", Ref<NSImage>>(); }
    void setOnImage(NSImage* image) { send<"setOnImage:">(image); }

private:
    bool toggleButton_ = false;
    bool darkMode_ = false;
    Ref<NSImage> invertedImage_;
    Ref<NSImage> onImage_;
};

}
