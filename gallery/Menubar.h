// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "menubar/BRCustomMenubar.h"
#include "menubar/BRCustomMenubarMenuButton.h"

namespace gallery {

/// How the bar is to look; what the command line and the page about the bar choose.
struct MenubarLook {
    brindle::BRMenubarTheme theme = brindle::BRMenubarThemeCustom;
    bool shadow = false;
    brindle::BRMenubarSpacing spacing = brindle::BRMenubarSpacingNone;
    double width = 0; ///< points; 0 is the screen's
};

/// The gallery's menubar: the host's side of `BRCustomMenubar`. It makes the bar, its buttons and their menus, makes them
/// anew when they shall look different, and performs what the menus say where no one else does.
class GalleryMenubar : public brindle::NSObject {
    BRINDLE_OBJECT(GalleryMenubar, brindle::NSObject)

public:
    /// Answers the look that the options and the width chosen since the start say.
    MenubarLook look() const;
    /// Takes note of a look for the next `show`; all but the width is kept in the options.
    void setLook(const MenubarLook& look);
    /// Closes the bar there was and shows another one.
    void show();
    /// Shows on the bar which appearance is in force.
    void showAppearance();
    /// Puts the bar where the screens are now.
    void settle();
    brindle::Ref<brindle::BRCustomMenubar> bar() const { return bar_; }
    /// Answers the window that holds the bar's views.
    brindle::Ref<brindle::NSWindow> viewsWindow() const;
    /// Adds one more button, at an end.
    void addSample(brindle::BRMenubarViewAlignment alignment);

private:
    void close();
    void fill();

    double width_ = 0;
    brindle::Ref<brindle::BRCustomMenubar> bar_;
    brindle::Ref<brindle::BRCustomMenubarMenuButton> moon_;
    int samples_ = 0;
};

/// Answers the gallery's one menubar.
GalleryMenubar& menubar();

}
