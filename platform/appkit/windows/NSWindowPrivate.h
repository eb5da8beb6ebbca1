// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "appkit/NSCursor.h"
#include "appkit/NSGraphicsContext.h"
#include "appkit/NSTrackingArea.h"
#include "appkit/NSWindow.h"
#include "appkit/views/DamagePrivate.h"
#include "display/Surface.h"
#include "foundation/NSArray.h"
#include "quartz/CGBitmapContext.h"
#include "runtime/NSException.h"

namespace brindle {

/// The height of a title bar, in points.
inline constexpr CGFloat kTitleBarHeight = 22;
/// The level of tool tips, above everything that has to do with windows.
inline constexpr NSWindowLevel kToolTipLevel = 102;
/// How far from the edge a press resizes, in points.
inline constexpr CGFloat kResizeEdge = 5;

/// The pixels of a window and the contexts that draw into them.
struct Backing {
    display::PixelSize size;
    double scale = 1;
    std::uint32_t* words = nullptr; // of the context
    Ref<CGContext> context; // owns the pixels: who draws into them keeps them
    Ref<NSGraphicsContext> upright; // y up
    Ref<NSGraphicsContext> flipped; // the same pixels, for views whose y goes down

    display::Pixels pixels() const
    {
        return { words, size.width, size.height, static_cast<std::ptrdiff_t>(size.width) * 4 };
    }
};

/// Where the pointer has a shape of its own.
struct CursorRect {
    NSView* view = nullptr; // bare: a view takes its rectangles with it when it leaves the window
    NSRect rect; // in the view's coordinates
    NSRect visible; // what shows of it, in the window's
    Ref<NSCursor> cursor;
};

/// Everything a window is and has.
struct WindowState {
    NSRect frame;
    NSRect restoredFrame; // before it was zoomed
    NSWindowStyleMask style = 0;
    NSInteger number = 0;
    NSWindowLevel level = NSNormalWindowLevel;
    NSSize minSize { 0, 0 };
    NSSize maxSize { 1e7, 1e7 };
    NSSize proportion { 0, 0 }; // that resizing keeps; none at first
    NSSize steps { 1, 1 }; // of resizing
    bool proportionOfContent = false;
    CGFloat alpha = 1;
    CGFloat reservedHeight = 0; // at the top of the screen
    Ref<NSString> title;
    Ref<NSObject> background; // NSColor; nil is the ordinary one
    WeakRef<NSObject> delegate;
    WeakRef<NSObject> controller; // NSWindowController
    Ref<NSObject> contentController; // NSViewController
    std::optional<NSRect>
        screenFrame; // of the screen it was last seen on; none before it was shown
    CGFloat knownScale = 1; // what its views last drew with

    Ref<NSView> frameView;
    Ref<NSView> contentView;
    Ref<NSResponder> firstResponder; // nil is the window itself
    WeakRef<NSView> initialFirstResponder;
    Ref<NSObject> fieldEditor; // NSText; none before a field asks for it
    Ref<NSObject> undoManager; // NSUndoManager; none before somebody asks for it
    WeakRef<NSObject> defaultButtonCell; // NSButtonCell
    std::array<Ref<NSView>, 3> pressed; // who got the press of the left, right and other buttons
    std::vector<Ref<NSTrackingArea>> inside; // areas the pointer is in
    NSPoint pointer; // where it was last, window coordinates
    bool pointerInside = false;
    std::vector<CursorRect> cursorRects; // in the order in which they were added
    bool cursorRectsValid = false;
    bool cursorRectsEnabled = true;

    std::unique_ptr<display::Surface> surface;
    std::unique_ptr<Backing> backing;
    Damage damage;
    Damage moved; // pixels that were moved by scrolling: to be shown, not drawn

    Ref<NSString> autosaveName; // nil or text
    std::vector<Ref<NSWindow>> sheets; // the first is shown, the others wait
    NSWindow* sheetHost = nullptr; // of a sheet
    Block<void(NSInteger)> sheetCompletion; // of a sheet

    Ref<NSWindow> kept; // the window itself, while it is shown
    NSWindow* parent = nullptr;
    WeakRef<NSObject> anchor; // NSWindow that a menu opened from, and is shown with
    std::vector<Ref<NSWindow>> children; // back to front; those below the window first
    std::vector<bool> childBelow;

    bool opaque = true;
    bool shadow = true;
    bool ignoresMouse = false;
    bool acceptsMoved = false;
    bool movable = true;
    bool movableByBackground = false;
    bool hidesOnDeactivate = false;
    bool releasedWhenClosed = true;
    bool edited = false;
    bool visible = false; // ordered in
    bool waitsForActivation = false; // would be visible if the application were active
    bool wasShown = false; // listed among the application's windows
    bool liveResize = false;
    bool miniaturized = false;
    bool zoomed = false;
    bool fullScreen = false;
    bool viewsMoved = false; // tracking areas must be made anew before the next event
    bool drawing = false;
    bool showsSheet = false;
    bool reservesEdge = false; // did at some time
    bool closed = false;
    bool isReady = false; // it was initialised
    std::size_t focusings = 0; // counts first responders
    int resignings = 0; // first responders that are being asked
    bool isResigning = false; // the present one is
};

/// What the files of this folder do with windows beside sending messages.
struct WindowAccess {
    /// Answers the state; a window without `init` gets an empty one.
    static WindowState& state(const NSWindow& window)
    {
        if (!window.state_) [[unlikely]]
            const_cast<NSWindow&>(window).state_ = std::make_shared<WindowState>();
        return *window.state_;
    }
    static void install(NSWindow& window, std::shared_ptr<WindowState> state)
    {
        window.state_ = std::move(state);
    }
    /// Answers the view that holds all others; raises where there is none since the window was not initialised.
    static NSView& frameView(const NSWindow& window)
    {
        NSView* const views = state(window).frameView.get();
        if (!views) [[unlikely]]
            raise("NSInternalInconsistencyException", "*** -[NSWindow init] was not sent");
        return *views;
    }
    static bool isReady(const NSWindow& window) { return window.state_ && window.state_->isReady; }
    /// Parts the window from its views, children and sheets, the screen and the application.
    static void end(NSWindow& window);

    /// Answers who has the keyboard; for an editor it is the field that it was lent to. NSWindow-KeyViews.cpp.
    static Ref<NSResponder> focused(NSWindow& window);

    // Told by views.
    static void forgetView(NSWindow& window, NSView& view);
    /// Asks the first responder to resign when it is a view or inside it, which hides or leaves the window.
    static void resignInside(NSWindow& window, NSView& view);
    static void viewMoved(NSWindow& window, NSView& view);
    static void addDamage(NSWindow& window, NSRect rect);

    /// Answers whether a press, or the loss of another key window, may make it key: not what lets the pointer
    /// through, and no bars and menus, which would take the keyboard from what they are for.
    static bool becomesKeyUnasked(const NSWindow& window)
    {
        const WindowState& s = state(window);
        return !s.ignoresMouse
            && (s.level < NSMainMenuWindowLevel || s.level >= NSScreenSaverWindowLevel)
            && window.canBecomeKeyWindow();
    }

    /// Closes a window when it or its delegate agrees; NSWindow-Closing.cpp.
    static void closeIfAgreed(NSWindow& window);
    /// Marks the controls of a window, which look different in the key window.
    static void keyLookChanged(NSWindow& window);

    // Tracking; NSWindow-Tracking.cpp.
    static void trackingAreaAdded(NSWindow& window, NSView& view, NSTrackingArea& area);
    /// Tells owners what a movement of the pointer means. - dragging: a button is down.
    static void trackPointer(NSWindow& window, NSEvent& event, bool dragging);
    /// Sends the exits of everything the pointer was in.
    static void pointerLeft(NSWindow& window, NSEvent* event);
    /// Sends `updateTrackingAreas` when views have moved since the last time.
    static void settleTracking(NSWindow& window);

    // Cursors; NSWindow-Cursors.cpp.
    /// Gives the pointer the shape that belongs to a point of the window.
    static void updateCursor(NSWindow& window, NSPoint point);

    /// Answers the size that a pull at an edge leads to when proportion and steps are kept; NSWindow-Proportions.cpp.
    static NSSize proportioned(
        const NSWindow& window, NSSize start, NSSize pulled, display::ResizeEdge edge);
    static bool keepsProportions(const NSWindow& window);
    /// Tells the desktop, which resizes windows too, what sizes there may be.
    static void tellSizes(NSWindow& window);

    // Drawing; NSWindow-Drawing.cpp.
    static Backing& backing(NSWindow& window);
    static void damageAll(NSWindow& window);
    static void drawIfVisible(NSWindow& window);
    static void present(NSWindow& window, std::span<const display::PixelRect> rects);
    /// Moves what a view has drawn in the window's pixels and marks what comes into view, before the view's bounds move.
    /// - by: how far the content goes, in the view's coordinates. - Returns: NO where all must be drawn anew instead.
    static bool copyForScrolling(NSView& view, NSSize by);

    // The native window; NSWindow-Order.cpp.
    static display::Surface& surface(NSWindow& window);
    static void dropSurface(NSWindow& window);
    /// Lets a window that is not shown yet stand where another one really is, as menus do. Nil is none.
    static void setAnchor(NSWindow& window, NSWindow* anchor) { state(window).anchor = anchor; }
    static void orderIn(
        NSWindow& window, NSWindowOrderingMode place, NSWindow* other, bool regardless);
    static void orderOut(NSWindow& window);
    /// Tells the display how much of the screen's top edge the window reserves.
    static void settleScreenEdge(NSWindow& window);
    static void applicationActivated(NSWindow& window);
    static void applicationDeactivated(NSWindow& window);

    // Told by the display.
    static void frameChangedByDesktop(NSWindow& window, NSRect frame);
    static void stateChangedByDesktop(NSWindow& window, display::SurfaceState state);
    /// Tells window and views that they are on another screen or have another scale than when it was last looked.
    static void settleScreen(NSWindow& window);

    // Geometry.
    static void applyFrame(NSWindow& window, NSRect frame, bool tellSurface);
    static void beginLiveResize(NSWindow& window);
    static void endLiveResize(NSWindow& window);
    static bool isTitled(const WindowState& state)
    {
        return (state.style & NSTitledWindowMask) != 0;
    }
    /// Answers whether a style shows a title bar: sheets and full screens do not.
    static bool hasBar(NSWindowStyleMask style)
    {
        return (style & NSTitledWindowMask)
            && !(style & (NSFullScreenWindowMask | NSDocModalWindowMask));
    }
    static NSSize limited(const NSWindow& window, NSSize size);
    /// Writes the frame to the defaults where it is to be saved.
    static void autosaveFrame(NSWindow& window);

    // Sheets; NSWindow-Sheets.cpp.
    /// Answers the sheet that keeps events from a window, or null.
    static NSWindow* attachedSheet(const NSWindow& window)
    {
        const WindowState& s = state(window);
        return s.showsSheet ? s.sheets.front().get() : nullptr;
    }
    static void placeSheet(NSWindow& host);
    /// Ends the window's sheets, and the window itself where it is one.
    static void abortSheets(NSWindow& window);

    // The user's hand; NSWindow-Dragging.cpp.
    static void dragWindow(NSWindow& window, NSEvent& press);
    static void resizeWindow(NSWindow& window, display::ResizeEdge edge, NSEvent& press);
    /// Answers whether a press at a point of the window resizes it, and how.
    static bool resizeEdgeAt(const NSWindow& window, NSPoint point, display::ResizeEdge& edge);

    /// Posts one of the window's notifications and tells the delegate.
    static void notify(NSWindow& window, NSString* name, const char* delegateSelector);
};

/// Makes the frame view of a window: it draws the frame and holds the content view.
Ref<NSView> makeFrameView(NSWindow& window, NSRect frame);
/// Marks what a frame view draws differently for key windows and others.
void frameLookChanged(NSWindow& window);
/// Answers a button of a frame, or nil.
Ref<NSButton> frameButton(NSWindow& window, NSWindowButton kind);
/// Makes a button that closes, minimises or zooms the window that it sits in.
Ref<NSButton> makeFrameButton(NSWindowButton kind);

}
