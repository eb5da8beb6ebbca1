// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>
#include <string>

#include "Gallery.h"
#include "Surroundings.h"

namespace gallery {

/// Walks the pages on a headless display with a scripted hand and writes a PNG of each state.
///
/// Time is turned by hand, language and time zone are fixed, and settings lie in a folder that goes with the tour:
/// every run draws the same pictures and leaves the user's settings alone.
class Tour {
public:
    /// - folder: made when it is missing. - scale: device pixels a point.
    Tour(std::string folder, double scale);

    /// Opens the gallery and plays the tour of each page.
    /// - Returns: false when a picture could not be written, or something to be pressed was not there.
    bool play();

    // ---- what a page's tour says

    /// Clicks the chip or button of this title on the present page.
    void press(const char* chip);
    /// Moves the pointer to a place of a card, counted from its top left.
    void moveTo(const char* card, double x, double y);
    /// Clicks a place of a card.
    void click(const char* card, double x, double y);
    /// Turns the wheel over a card; positive shows what is above.
    void scroll(const char* card, double lines);
    void type(std::u16string_view text);
    /// Lets time pass and everything that is due happen.
    void settle(double seconds = 0);
    void picture(const std::string& name);
    /// Opens the menu of the bar's button of this title, presses keys in it, and writes what that shows.
    void menuPicture(const char* button, std::u16string_view keys, const std::string& name);
    /// Opens the menu of a place of a card by the right button and writes what that shows, in both appearances.
    void contextMenuPicture(const char* card, double x, double y, const std::string& name);
    /// Writes the present state in a window of its least size.
    void leastPicture(const std::string& name);
    /// Writes the present state in the dark appearance.
    void darkPicture(const std::string& name);

    brindle::display::HeadlessDisplay& display() { return surroundings_.display(); }
    brindle::Ref<brindle::NSWindow> window() const { return controller_->window(); }

private:
    brindle::Ref<brindle::NSView> find(const char* text);
    brindle::NSPoint onScreen(const char* text, double x, double y);
    /// Presses keys in the menu that opens next, writes what that shows, and closes it.
    void followMenu(std::u16string_view keys, const std::string& name);
    /// Does something a moment later, while a menu is followed.
    void later(double seconds, std::function<void()> step);
    void fail(const std::string& what);

    std::string folder_;
    Surroundings surroundings_;
    brindle::Ref<GalleryController> controller_;
    bool succeeded_ = true;
};

}
