// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>

#include "NSEvent.h"
#include "NSResponder.h"
#include "NSView.h"

namespace brindle {

class NSButton;
class NSButtonCell;
class NSColor;
class NSDate;
class NSGraphicsContext;
class NSText;
class NSScreen;
struct WindowState;

/// What a window has; bits that are added together.
using NSWindowStyleMask = NSUInteger;
enum : NSUInteger {
    NSBorderlessWindowMask = 0,
    NSTitledWindowMask = 1,
    NSClosableWindowMask = 2,
    NSMiniaturizableWindowMask = 4,
    NSResizableWindowMask = 8,
    NSUtilityWindowMask = 16,
    NSDocModalWindowMask = 64,
    NSNonactivatingPanelMask = 128,
    NSTexturedBackgroundWindowMask = 256,
    NSUnifiedTitleAndToolbarWindowMask = 4096,
    NSHUDWindowMask = 8192,
    NSFullScreenWindowMask = 16384,
    NSFullSizeContentViewWindowMask = 32768,
};

enum NSBackingStoreType : NSUInteger {
    NSBackingStoreRetained = 0,
    NSBackingStoreNonretained = 1,
    NSBackingStoreBuffered = 2,
};

enum NSWindowButton : NSUInteger {
    NSWindowCloseButton = 0,
    NSWindowMiniaturizeButton = 1,
    NSWindowZoomButton = 2,
    NSWindowToolbarButton = 3,
    NSWindowDocumentIconButton = 4,
};

/// What modal loops and sheets end with.
using NSModalResponse = NSInteger;
enum : NSInteger {
    NSModalResponseCancel = 0,
    NSModalResponseOK = 1,
    NSModalResponseStop = -1000,
    NSModalResponseAbort = -1001,
    NSModalResponseContinue = -1002,
};

/// Windows of a higher level lie above those of a lower one.
using NSWindowLevel = NSInteger;
enum : NSInteger {
    NSNormalWindowLevel = 0,
    NSFloatingWindowLevel = 3,
    NSModalPanelWindowLevel = 8,
    NSMainMenuWindowLevel = 24,
    NSStatusWindowLevel = 25,
    NSPopUpMenuWindowLevel = 101,
    NSScreenSaverWindowLevel = 1000,
};

inline constexpr StringConstant<"NSWindowDidBecomeKeyNotification">
    NSWindowDidBecomeKeyNotification;
inline constexpr StringConstant<"NSWindowDidResignKeyNotification">
    NSWindowDidResignKeyNotification;
inline constexpr StringConstant<"NSWindowDidBecomeMainNotification">
    NSWindowDidBecomeMainNotification;
inline constexpr StringConstant<"NSWindowDidResignMainNotification">
    NSWindowDidResignMainNotification;
inline constexpr StringConstant<"NSWindowWillMoveNotification"> NSWindowWillMoveNotification;
inline constexpr StringConstant<"NSWindowDidMoveNotification"> NSWindowDidMoveNotification;
inline constexpr StringConstant<"NSWindowDidResizeNotification"> NSWindowDidResizeNotification;
inline constexpr StringConstant<"NSWindowWillStartLiveResizeNotification">
    NSWindowWillStartLiveResizeNotification;
inline constexpr StringConstant<"NSWindowDidEndLiveResizeNotification">
    NSWindowDidEndLiveResizeNotification;
inline constexpr StringConstant<"NSWindowWillCloseNotification"> NSWindowWillCloseNotification;
inline constexpr StringConstant<"NSWindowWillMiniaturizeNotification">
    NSWindowWillMiniaturizeNotification;
inline constexpr StringConstant<"NSWindowDidMiniaturizeNotification">
    NSWindowDidMiniaturizeNotification;
inline constexpr StringConstant<"NSWindowDidDeminiaturizeNotification">
    NSWindowDidDeminiaturizeNotification;
inline constexpr StringConstant<"NSWindowWillEnterFullScreenNotification">
    NSWindowWillEnterFullScreenNotification;
inline constexpr StringConstant<"NSWindowWillExitFullScreenNotification">
    NSWindowWillExitFullScreenNotification;
inline constexpr StringConstant<"NSWindowDidEnterFullScreenNotification">
    NSWindowDidEnterFullScreenNotification;
inline constexpr StringConstant<"NSWindowDidExitFullScreenNotification">
    NSWindowDidExitFullScreenNotification;
inline constexpr StringConstant<"NSWindowWillBeginSheetNotification">
    NSWindowWillBeginSheetNotification;
inline constexpr StringConstant<"NSWindowDidEndSheetNotification"> NSWindowDidEndSheetNotification;
inline constexpr StringConstant<"NSWindowDidExposeNotification"> NSWindowDidExposeNotification;
inline constexpr StringConstant<"NSWindowDidUpdateNotification"> NSWindowDidUpdateNotification;
inline constexpr StringConstant<"NSWindowDidChangeScreenNotification">
    NSWindowDidChangeScreenNotification;
inline constexpr StringConstant<"NSWindowDidChangeBackingPropertiesNotification">
    NSWindowDidChangeBackingPropertiesNotification;

/// A rectangle of the screen that holds views.
///
/// The window draws its own frame: the frame view covers the whole window from (0, 0) and is the content view's
/// superview; that of a titled window draws a title bar 22 points high and three buttons. The native window is made
/// when the window is first shown, so one that is never shown costs little and needs no display.
///
/// The application keeps a window while it is shown, minimised or hidden with the application. Its delegate is asked and told by name:
/// `windowShouldClose:`, `windowShouldZoom:toFrame:`, `windowWillResize:toSize:`, `window:willPositionSheet:usingRect:`,
/// and `windowDidMove:` and the like for each notification.
///
/// A press moves the window where the view under it answers YES to `mouseDownCanMoveWindow`: in the title area, or
/// anywhere with `isMovableByWindowBackground`. The title area is the title bar and, beside it, every view next to the
/// content view whose class overrides that operation to answer YES.
/// Thread: main.
class NSWindow : public NSResponder {
    BRINDLE_OBJECT(NSWindow, NSResponder)

public:
    struct Meta : NSResponder::Meta {
        NSRect frameRectForContentRect_styleMask(NSRect content, NSWindowStyleMask style) const
        {
            return send<"frameRectForContentRect:styleMask:", NSRect>(content, style);
        }
        NSRect contentRectForFrameRect_styleMask(NSRect frame, NSWindowStyleMask style) const
        {
            return send<"contentRectForFrameRect:styleMask:", NSRect>(frame, style);
        }
        /// Forgets the frame that was saved under a name.
        void removeFrameUsingName(NSString* name) const { send<"removeFrameUsingName:">(name); }
        /// Answers a new button that closes, minimises or zooms the window it is put into, a title bar or not. It is
        /// disabled at first. - Nil: for the other kinds, which frames do not have.
        Ref<NSButton> standardWindowButton_forStyleMask(
            NSWindowButton kind, NSWindowStyleMask style) const
        {
            return send<"standardWindowButton:forStyleMask:", Ref<NSButton>>(kind, style);
        }
    };

    /// The designated initialiser. `init` makes a titled, closable, resizable window of no particular size.
    /// - content: the content view's rectangle in screen coordinates.
    /// - backing: all windows are buffered. - defer: native windows are made when they are first shown either way.
    Ref<NSWindow> initWithContentRect_styleMask_backing_defer(
        NSRect content, NSWindowStyleMask style, NSBackingStoreType backing, bool defer)
    {
        return send<"initWithContentRect:styleMask:backing:defer:", Ref<NSWindow>>(
            content, style, backing, defer);
    }

    // Geometry. Rectangles are in screen coordinates unless said otherwise.

    NSRect frame() const { return send<"frame", NSRect>(); }
    /// Sets the frame. A titled window is kept reachable on its screen; any other goes where it is told.
    void setFrame_display(NSRect frame, bool display) { send<"setFrame:display:">(frame, display); }
    void setFrame_display_animate(NSRect frame, bool display, bool animate)
    {
        send<"setFrame:display:animate:">(frame, display, animate);
    }
    void setFrameOrigin(NSPoint origin) { send<"setFrameOrigin:">(origin); }
    void setFrameTopLeftPoint(NSPoint point) { send<"setFrameTopLeftPoint:">(point); }
    void setContentSize(NSSize size) { send<"setContentSize:">(size); }
    NSRect contentRectForFrameRect(NSRect frame) const
    {
        return send<"contentRectForFrameRect:", NSRect>(frame);
    }
    NSRect frameRectForContentRect(NSRect content) const
    {
        return send<"frameRectForContentRect:", NSRect>(content);
    }
    NSRect constrainFrameRect_toScreen(NSRect frame, NSScreen* screen) const
    {
        return send<"constrainFrameRect:toScreen:", NSRect>(frame, screen);
    }
    /// Puts the window in the middle of its screen, a little above.
    void center() { send<"center">(); }
    NSSize minSize() const { return send<"minSize", NSSize>(); }
    void setMinSize(NSSize size) { send<"setMinSize:">(size); }
    NSSize maxSize() const { return send<"maxSize", NSSize>(); }
    void setMaxSize(NSSize size) { send<"setMaxSize:">(size); }
    NSSize contentMinSize() const { return send<"contentMinSize", NSSize>(); }
    void setContentMinSize(NSSize size) { send<"setContentMinSize:">(size); }
    NSSize contentMaxSize() const { return send<"contentMaxSize", NSSize>(); }
    void setContentMaxSize(NSSize size) { send<"setContentMaxSize:">(size); }
    /// Puts the top left corner at a point, or leaves the window where it is for the zero point.
    /// - Returns: the point for the next window, below and to the right.
    NSPoint cascadeTopLeftFromPoint(NSPoint point)
    {
        return send<"cascadeTopLeftFromPoint:", NSPoint>(point);
    }
    bool inLiveResize() const { return send<"inLiveResize", bool>(); }
    Ref<NSScreen> screen() const { return send<"screen", Ref<NSScreen>>(); }
    CGFloat backingScaleFactor() const { return send<"backingScaleFactor", CGFloat>(); }
    NSPoint convertBaseToScreen(NSPoint point) const
    {
        return send<"convertBaseToScreen:", NSPoint>(point);
    }
    NSPoint convertScreenToBase(NSPoint point) const
    {
        return send<"convertScreenToBase:", NSPoint>(point);
    }
    NSPoint convertPointToScreen(NSPoint point) const
    {
        return send<"convertPointToScreen:", NSPoint>(point);
    }
    NSPoint convertPointFromScreen(NSPoint point) const
    {
        return send<"convertPointFromScreen:", NSPoint>(point);
    }
    NSRect convertRectToScreen(NSRect rect) const
    {
        return send<"convertRectToScreen:", NSRect>(rect);
    }
    NSRect convertRectFromScreen(NSRect rect) const
    {
        return send<"convertRectFromScreen:", NSRect>(rect);
    }

    // Saved frames, in the standard defaults.

    /// Saves the frame under this name from now on, whenever it changes, and takes over the one that was saved.
    /// - Nil: nil and "" end that. - Returns: NO when another window has the name; nothing changes then.
    bool setFrameAutosaveName(NSString* name) { return send<"setFrameAutosaveName:", bool>(name); }
    /// Answers "" where frames are not saved.
    Ref<NSString> frameAutosaveName() const { return send<"frameAutosaveName", Ref<NSString>>(); }
    void saveFrameUsingName(NSString* name) { send<"saveFrameUsingName:">(name); }
    /// Takes over a saved frame; a window that cannot be resized only its place.
    /// - Returns: NO when none was saved under the name.
    bool setFrameUsingName(NSString* name) { return send<"setFrameUsingName:", bool>(name); }
    /// - force: the size too, whatever the window's style.
    bool setFrameUsingName_force(NSString* name, bool force)
    {
        return send<"setFrameUsingName:force:", bool>(name, force);
    }
    /// Answers the frame and that of its screen as eight numbers.
    Ref<NSString> stringWithSavedFrame() const
    {
        return send<"stringWithSavedFrame", Ref<NSString>>();
    }
    /// Takes over such a text; any other changes nothing.
    void setFrameFromString(NSString* text) { send<"setFrameFromString:">(text); }

    // What it is.

    NSWindowStyleMask styleMask() const { return send<"styleMask", NSWindowStyleMask>(); }
    void setStyleMask(NSWindowStyleMask style) { send<"setStyleMask:">(style); }
    /// Answers whether the style mask has the titled bit.
    bool hasTitleBar() const { return send<"hasTitleBar", bool>(); }
    Ref<NSString> title() const { return send<"title", Ref<NSString>>(); }
    void setTitle(NSString* title) { send<"setTitle:">(title); }
    /// Answers a positive number that no other window of the process ever has.
    NSInteger windowNumber() const { return send<"windowNumber", NSInteger>(); }
    NSWindowLevel level() const { return send<"level", NSWindowLevel>(); }
    void setLevel(NSWindowLevel level) { send<"setLevel:">(level); }
    bool isOpaque() const { return send<"isOpaque", bool>(); }
    void setOpaque(bool opaque) { send<"setOpaque:">(opaque); }
    bool hasShadow() const { return send<"hasShadow", bool>(); }
    void setHasShadow(bool shadow) { send<"setHasShadow:">(shadow); }
    CGFloat alphaValue() const { return send<"alphaValue", CGFloat>(); }
    void setAlphaValue(CGFloat alpha) { send<"setAlphaValue:">(alpha); }
    Ref<NSColor> backgroundColor() const { return send<"backgroundColor", Ref<NSColor>>(); }
    /// - Nil: the ordinary window background.
    void setBackgroundColor(NSColor* color) { send<"setBackgroundColor:">(color); }
    /// A window that ignores mouse events lets them through to what lies below, other programs included.
    bool ignoresMouseEvents() const { return send<"ignoresMouseEvents", bool>(); }
    void setIgnoresMouseEvents(bool ignores) { send<"setIgnoresMouseEvents:">(ignores); }
    bool acceptsMouseMovedEvents() const { return send<"acceptsMouseMovedEvents", bool>(); }
    void setAcceptsMouseMovedEvents(bool accepts) { send<"setAcceptsMouseMovedEvents:">(accepts); }
    bool isMovable() const { return send<"isMovable", bool>(); }
    void setMovable(bool movable) { send<"setMovable:">(movable); }
    bool isMovableByWindowBackground() const { return send<"isMovableByWindowBackground", bool>(); }
    void setMovableByWindowBackground(bool movable)
    {
        send<"setMovableByWindowBackground:">(movable);
    }
    bool hidesOnDeactivate() const { return send<"hidesOnDeactivate", bool>(); }
    void setHidesOnDeactivate(bool hides) { send<"setHidesOnDeactivate:">(hides); }
    bool isReleasedWhenClosed() const { return send<"isReleasedWhenClosed", bool>(); }
    /// Says only what was set: the application lets go of every closed window, and owners elsewhere keep it.
    void setReleasedWhenClosed(bool released) { send<"setReleasedWhenClosed:">(released); }
    bool isDocumentEdited() const { return send<"isDocumentEdited", bool>(); }
    void setDocumentEdited(bool edited) { send<"setDocumentEdited:">(edited); }
    Ref<NSObject> delegate() const { return send<"delegate", Ref<NSObject>>(); }
    /// Not kept.
    void setDelegate(NSObject* delegate) { send<"setDelegate:">(delegate); }

    // Views.

    /// Never nil.
    Ref<NSView> contentView() const { return send<"contentView", Ref<NSView>>(); }
    /// - Nil: an empty view.
    void setContentView(NSView* view) { send<"setContentView:">(view); }
    Ref<NSResponder> firstResponder() const { return send<"firstResponder", Ref<NSResponder>>(); }
    /// Moves the keyboard focus.
    /// - Nil: the window itself.
    /// - Returns: NO when the present first responder keeps it, or who hears of its end chooses another one; also when
    ///   the new one refuses or has left the window meanwhile (the window then is it).
    bool makeFirstResponder(NSResponder* responder)
    {
        return send<"makeFirstResponder:", bool>(responder);
    }
    Ref<NSView> initialFirstResponder() const
    {
        return send<"initialFirstResponder", Ref<NSView>>();
    }
    void setInitialFirstResponder(NSView* view) { send<"setInitialFirstResponder:">(view); }
    /// Answers the editor that all fields of the window share, or the one that the delegate answers to
    /// `windowWillReturnFieldEditor:toObject:`.
    /// - create: makes the shared one when it is not there yet. - client: who wants to use it.
    Ref<NSText> fieldEditor_forObject(bool create, NSObject* client)
    {
        return send<"fieldEditor:forObject:", Ref<NSText>>(create, client);
    }
    /// Ends the editing of a field, or of whatever is edited for nil, even where somebody does not agree.
    void endEditingFor(NSObject* client) { send<"endEditingFor:">(client); }
    void selectNextKeyView(NSObject* sender) { send<"selectNextKeyView:">(sender); }
    void selectPreviousKeyView(NSObject* sender) { send<"selectPreviousKeyView:">(sender); }
    void recalculateKeyViewLoop() { send<"recalculateKeyViewLoop">(); }

    // Drawing.

    bool viewsNeedDisplay() const { return send<"viewsNeedDisplay", bool>(); }
    void setViewsNeedDisplay(bool needs) { send<"setViewsNeedDisplay:">(needs); }
    void display() { send<"display">(); }
    void displayIfNeeded() { send<"displayIfNeeded">(); }
    /// Shows on the screen what has been drawn.
    void flushWindow() { send<"flushWindow">(); }
    /// Answers the context that draws into the window's pixels, in window coordinates.
    Ref<NSGraphicsContext> graphicsContext() const
    {
        return send<"graphicsContext", Ref<NSGraphicsContext>>();
    }

    // Order.

    bool isVisible() const { return send<"isVisible", bool>(); }
    void orderFront(NSObject* sender) { send<"orderFront:">(sender); }
    void orderBack(NSObject* sender) { send<"orderBack:">(sender); }
    void orderOut(NSObject* sender) { send<"orderOut:">(sender); }
    /// Orders the window to the front even while the application is not active.
    void orderFrontRegardless() { send<"orderFrontRegardless">(); }
    void orderWindow_relativeTo(NSWindowOrderingMode place, NSInteger windowNumber)
    {
        send<"orderWindow:relativeTo:">(place, windowNumber);
    }
    void makeKeyAndOrderFront(NSObject* sender) { send<"makeKeyAndOrderFront:">(sender); }
    /// Adds a window that moves, is ordered and hidden with this one. One that is there already is only ordered anew.
    void addChildWindow_ordered(NSWindow* child, NSWindowOrderingMode place)
    {
        send<"addChildWindow:ordered:">(child, place);
    }
    void removeChildWindow(NSWindow* child) { send<"removeChildWindow:">(child); }
    Ref<NSArray> childWindows() const { return send<"childWindows", Ref<NSArray>>(); }
    Ref<NSWindow> parentWindow() const { return send<"parentWindow", Ref<NSWindow>>(); }

    // Sheets: windows that lie below the title bar of another, their host, and keep its events from it.

    /// Shows a window as a sheet, after those that this one has already. The host may be moved meanwhile, no more.
    /// - completion: run after the sheet has gone; may be nil.
    /// - Raises: `NSInvalidArgumentException` for nil, for the window itself and for one that is a sheet already.
    void beginSheet_completionHandler(
        NSWindow* sheet, const Block<void(NSModalResponse)>& completion)
    {
        send<"beginSheet:completionHandler:">(sheet, completion.get());
    }
    /// Shows it before the sheets that wait.
    void beginCriticalSheet_completionHandler(
        NSWindow* sheet, const Block<void(NSModalResponse)>& completion)
    {
        send<"beginCriticalSheet:completionHandler:">(sheet, completion.get());
    }
    /// The same with `NSModalResponseStop`.
    void endSheet(NSWindow* sheet) { send<"endSheet:">(sheet); }
    /// Takes a sheet away. What is no sheet of this window is left alone. Closing host or sheet ends it with
    /// `NSModalResponseAbort`.
    void endSheet_returnCode(NSWindow* sheet, NSModalResponse code)
    {
        send<"endSheet:returnCode:">(sheet, code);
    }
    /// Answers the sheet that is shown, or nil.
    Ref<NSWindow> attachedSheet() const { return send<"attachedSheet", Ref<NSWindow>>(); }
    /// Answers the sheet that is shown and those that wait.
    Ref<NSArray> sheets() const { return send<"sheets", Ref<NSArray>>(); }
    bool isSheet() const { return send<"isSheet", bool>(); }
    Ref<NSWindow> sheetParent() const { return send<"sheetParent", Ref<NSWindow>>(); }

    // Key and main.

    /// Answers whether it may have the keyboard: with a title bar or a resizable frame, unless overridden.
    bool canBecomeKeyWindow() const { return send<"canBecomeKeyWindow", bool>(); }
    bool canBecomeMainWindow() const { return send<"canBecomeMainWindow", bool>(); }
    bool isKeyWindow() const { return send<"isKeyWindow", bool>(); }
    bool isMainWindow() const { return send<"isMainWindow", bool>(); }
    void makeKeyWindow() { send<"makeKeyWindow">(); }
    void makeMainWindow() { send<"makeMainWindow">(); }
    /// Told when it has become or is no longer what the name says. Overrides call super.
    void becomeKeyWindow() { send<"becomeKeyWindow">(); }
    void resignKeyWindow() { send<"resignKeyWindow">(); }
    void becomeMainWindow() { send<"becomeMainWindow">(); }
    void resignMainWindow() { send<"resignMainWindow">(); }
    bool worksWhenModal() const { return send<"worksWhenModal", bool>(); }

    /// Answers a button of the window's own frame; nil where it has none.
    Ref<NSButton> standardWindowButton(NSWindowButton kind) const
    {
        return send<"standardWindowButton:", Ref<NSButton>>(kind);
    }
    /// Answers the cell of the button that Return presses, or nil.
    Ref<NSButtonCell> defaultButtonCell() const
    {
        return send<"defaultButtonCell", Ref<NSButtonCell>>();
    }
    /// Gives a cell the key equivalent Return and takes it from the one before.
    void setDefaultButtonCell(NSButtonCell* cell) { send<"setDefaultButtonCell:">(cell); }
    void enableKeyEquivalentForDefaultButtonCell()
    {
        send<"enableKeyEquivalentForDefaultButtonCell">();
    }
    void disableKeyEquivalentForDefaultButtonCell()
    {
        send<"disableKeyEquivalentForDefaultButtonCell">();
    }

    // What the user does.

    void close() { send<"close">(); }
    /// Closes the window when the delegate (or the window) agrees by `windowShouldClose:`.
    void performClose(NSObject* sender) { send<"performClose:">(sender); }
    void miniaturize(NSObject* sender) { send<"miniaturize:">(sender); }
    void deminiaturize(NSObject* sender) { send<"deminiaturize:">(sender); }
    void performMiniaturize(NSObject* sender) { send<"performMiniaturize:">(sender); }
    bool isMiniaturized() const { return send<"isMiniaturized", bool>(); }
    void zoom(NSObject* sender) { send<"zoom:">(sender); }
    void performZoom(NSObject* sender) { send<"performZoom:">(sender); }
    bool isZoomed() const { return send<"isZoomed", bool>(); }
    void toggleFullScreen(NSObject* sender) { send<"toggleFullScreen:">(sender); }
    /// Moves the window with the pointer that the event pressed, until its release.
    void performWindowDragWithEvent(NSEvent* event) { send<"performWindowDragWithEvent:">(event); }

    // Events.

    /// Posts `NSWindowDidUpdateNotification`; sent by `updateWindows` of the application.
    void update() { send<"update">(); }
    /// Hands an event of this window to the view it is for.
    void sendEvent(NSEvent* event) { send<"sendEvent:">(event); }
    Ref<NSEvent> currentEvent() const { return send<"currentEvent", Ref<NSEvent>>(); }
    Ref<NSEvent> nextEventMatchingMask(NSEventMask mask)
    {
        return send<"nextEventMatchingMask:", Ref<NSEvent>>(mask);
    }
    Ref<NSEvent> nextEventMatchingMask_untilDate_inMode_dequeue(
        NSEventMask mask, NSDate* date, NSString* mode, bool dequeue)
    {
        return send<"nextEventMatchingMask:untilDate:inMode:dequeue:", Ref<NSEvent>>(
            mask, date, mode, dequeue);
    }
    void postEvent_atStart(NSEvent* event, bool atStart)
    {
        send<"postEvent:atStart:">(event, atStart);
    }
    NSPoint mouseLocationOutsideOfEventStream() const
    {
        return send<"mouseLocationOutsideOfEventStream", NSPoint>();
    }

protected:
    /// Ends what a `dealloc` of the host's has kept from ending.
    BRINDLE_EXPORT ~NSWindow();

private:
    friend struct WindowAccess;

    std::shared_ptr<WindowState> state_;
};

}
