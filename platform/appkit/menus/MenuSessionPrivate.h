// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "MenuLayoutPrivate.h"
#include "appkit/NSWindow.h"
#include "foundation/NSRunLoop.h"
#include "foundation/NSTimer.h"

namespace brindle {

class MenuPanel;
class MenuSession;

/// Shows a panel's rows in its window.
class NSMenuView : public NSView {
    BRINDLE_OBJECT(NSMenuView, NSView)

public:
    MenuPanel* panel_ = nullptr; // none once it is closed
};

/// One open menu: its window, the rows in it, which of them is highlighted and how far they are scrolled.
class MenuPanel {
public:
    /// - screen: what it must lie in. - minimumWidth: points.
    MenuPanel(NSMenu& menu, NSFont* font, NSEventModifierFlags modifiers, NSRect screen,
        CGFloat minimumWidth);
    ~MenuPanel();
    MenuPanel(const MenuPanel&) = delete;
    MenuPanel& operator=(const MenuPanel&) = delete;

    NSMenu& menu() const { return *menu_; }
    const MenuLayout& layout() const { return layout_; }
    NSSize size() const { return layout_.size; }
    NSWindow& window() const { return *window_; }
    /// Answers the rectangle of the menu itself on the screen, without the shadow around it.
    NSRect frame() const { return frame_; }
    bool contains(NSPoint place) const { return NSPointInRect(place, frame_); }

    /// - anchor: the window that it opens from; may be nil.
    void show(NSRect frame, CGFloat scroll, NSWindowLevel level, NSWindow* anchor);
    /// Lays it out anew after a change of the items or the modifiers; its top left corner stays.
    void layOutAnew(NSEventModifierFlags modifiers);

    /// Answers the row under a point of the screen, or -1.
    NSInteger rowAt(NSPoint place) const;
    /// Answers where a row lies on the screen, as far as it is scrolled.
    NSRect rectOfRow(NSInteger row) const;
    NSMenuItem* itemAt(NSInteger row) const;
    /// Answers whether a row can be chosen or opened.
    bool isLive(NSInteger row) const;
    /// Answers the next live row in a direction, from the end when there is none; -1 without any.
    NSInteger liveRowFrom(NSInteger row, int direction, bool wraps = true) const;

    NSInteger highlighted() const { return highlighted_; }
    void setHighlighted(NSInteger row);
    void reveal(NSInteger row);
    /// Answers -1 or 1 where a point lies on the arrow for scrolling up or down, or beyond it, else 0.
    int scrollsAt(NSPoint place) const;
    /// - Returns: whether there was anything left to scroll.
    bool scrollBy(CGFloat points);
    CGFloat pageHeight() const { return frame_.size.height - 2 * menus::kScrollStrip; }

    void draw(NSRect dirty) const;

private:
    NSRect rectInView(NSInteger row) const;
    CGFloat mostScroll() const;
    bool showsStrip(int direction) const;
    void setFrame(NSRect frame);
    void placeViews();
    void placeToolTips();
    void markRow(NSInteger row);
    void drawBody(NSRect dirty) const;
    void drawRow(const MenuRow& row, NSRect rect, bool highlighted) const;
    void drawStrips() const;

    Ref<NSMenu> menu_;
    MenuLayout layout_;
    Ref<NSWindow> window_;
    Ref<NSMenuView> view_;
    NSRect screen_;
    NSRect frame_;
    CGFloat minimumWidth_;
    CGFloat scroll_ = 0;
    CGFloat margin_ = 0; // around the menu, for its shadow
    NSInteger highlighted_ = -1;
};

/// How a menu is to be opened.
struct MenuOpening {
    Ref<NSMenu> menu;
    Ref<NSMenuItem> positioned; ///< comes to lie at the location; may be nil
    NSPoint location; ///< on the screen
    bool alignsTitle = false; ///< the location is where the title begins, halfway up its row
    Ref<NSView> view; ///< whose menu it is; may be nil
    Ref<NSEvent> event; ///< what opens it; may be nil
    Ref<NSFont> font; ///< nil is the menu's own
    CGFloat minimumWidth = 0;
};

/// Calls something once, or again and again, while pointers are tracked; ends with its life.
class MenuTimer {
public:
    MenuTimer() = default;
    ~MenuTimer() { stop(); }
    MenuTimer(const MenuTimer&) = delete;
    MenuTimer& operator=(const MenuTimer&) = delete;

    void start(double seconds, bool repeats, std::function<void()> call);
    void stop();
    bool isRunning() const { return timer_ != nullptr; }

private:
    Ref<NSTimer> timer_;
};

/// Follows pointer and keyboard from the opening of a menu to its end.
class MenuSession {
public:
    /// Opens a menu and answers what was chosen when it is closed, or nil. Nothing for a menu that is open already.
    static Ref<NSMenuItem> run(MenuOpening opening);

    /// Told by menus and items.
    static void menuChanged(NSMenu& menu);
    static void menuGone(NSMenu& menu);
    static Ref<NSMenuItem> highlightedItem(NSMenu& menu);
    static void cancel(NSMenu& menu);
    /// Ends those whose screen has gone, or is another now.
    static void screensChanged();

private:
    explicit MenuSession(MenuOpening opening);
    ~MenuSession();

    // MenuSession.cpp
    void openRoot();
    void openSubmenu(std::size_t level, bool highlightsFirst);
    void closeFrom(std::size_t level);
    void loop();
    void handle(NSEvent& event);
    void handleNews(NSEvent& event);
    void end() { done_ = true; }
    void wake();
    void settle();
    void grab();
    void watchIdle();
    void choose(NSMenuItem& item);
    void switchTo(NSView& neighbour);
    std::size_t levelOf(const NSMenu& menu) const; // as many as there are when it is not open
    MenuPanel& deepest() { return *panels_.back(); }
    NSRect screenAround(NSPoint place) const;

    // MenuSession-Pointer.cpp
    void pointerAt(NSPoint place);
    void pointerInPanel(std::size_t level, NSPoint place);
    void pointerOutside(NSPoint place);
    void highlight(std::size_t level, NSInteger row);
    void press(NSEvent& event);
    void release(NSEvent& event);
    bool opensByShortClick(NSEvent& event, NSPoint place);
    void wheel(NSEvent& event);
    void followStrip(std::size_t level, NSPoint place);
    bool forwardToView(NSEvent& event, NSPoint place);
    std::size_t panelAt(NSPoint place) const; // as many as there are outside of all
    Ref<NSView> neighbourAt(NSPoint place) const;
    Ref<NSView> neighbourToward(NSInteger direction) const;

    // MenuSession-Keys.cpp
    void key(NSEvent& event);
    void move(int direction);
    void moveTo(NSInteger row);
    void movePage(int direction);
    void goRight();
    void goLeft();
    void activate();
    bool typeSelect(NSEvent& event);
    NSInteger rowWithPrefix(const std::u16string& prefix, NSInteger from);

    static MenuSession* current_; // the innermost

    MenuSession* outer_;
    MenuOpening opening_;
    display::Screen screen_; // that it opened on
    std::vector<std::unique_ptr<MenuPanel>> panels_; // the root first
    std::vector<Ref<NSObject>> told_; // menus whose delegates were told that they opened
    Ref<NSMenuItem> chosen_;
    Ref<NSView> next_; // takes over
    Ref<NSEvent> waking_; // posted so that the loop sees its end
    Ref<NSRunLoopObserver> observer_;
    MenuTimer hover_; // opens a submenu
    MenuTimer grace_; // ends the patience with a pointer on its way to a submenu
    MenuTimer scrolling_;
    MenuTimer idle_;
    NSPoint pointer_; // where it was last
    NSPoint apex_; // where it left the row of the open submenu
    NSPoint pressPlace_;
    double pressTime_ = 0;
    std::u16string typed_;
    double typedTime_ = -1e9;
    NSEventModifierFlags modifiers_ = 0;
    bool held_ = false; // a button is down
    bool isFirstPress_ = false; // it is the press that opened the menu
    bool wasActive_ = false;
    bool anchorWasVisible_ = false;
    bool grabbed_ = false;
    bool restsIdle_ = false; // the grab was given back because nobody touched the menu
    bool changed_ = false; // panels must be laid out anew
    bool done_ = false;
};

}
