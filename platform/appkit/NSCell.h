// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>

#include "NSEvent.h"
#include "NSFont.h"
#include "NSParagraphStyle.h"

namespace brindle {

class NSAttributedString;
class NSCoder;
class NSFormatter;
class NSImage;
class NSMenu;
class NSView;
struct CellAttributes;

enum NSCellType : NSUInteger { NSNullCellType = 0, NSTextCellType = 1, NSImageCellType = 2 };

/// States of cells and controls; mixed only where `allowsMixedState`.
using NSCellStateValue = NSInteger;
enum : NSInteger { NSMixedState = -1, NSOffState = 0, NSOnState = 1 };

/// Where a cell's image stands in relation to its title.
enum NSCellImagePosition : NSUInteger {
    NSNoImage = 0,
    NSImageOnly = 1,
    NSImageLeft = 2,
    NSImageRight = 3,
    NSImageBelow = 4,
    NSImageAbove = 5,
    NSImageOverlaps = 6,
    NSImageLeading = 7, ///< drawn as left
    NSImageTrailing = 8, ///< drawn as right
};

enum NSImageScaling : NSUInteger {
    NSImageScaleProportionallyDown = 0,
    NSImageScaleAxesIndependently = 1,
    NSImageScaleNone = 2,
    NSImageScaleProportionallyUpOrDown = 3,
};

enum NSFocusRingType : NSUInteger {
    NSFocusRingTypeDefault = 0,
    NSFocusRingTypeNone = 1,
    NSFocusRingTypeExterior = 2,
};

enum NSBackgroundStyle : NSInteger {
    NSBackgroundStyleLight = 0,
    NSBackgroundStyleDark = 1,
    NSBackgroundStyleRaised = 2,
    NSBackgroundStyleLowered = 3,
};

enum NSControlTint : NSUInteger {
    NSDefaultControlTint = 0,
    NSBlueControlTint = 1,
    NSGraphiteControlTint = 6,
    NSClearControlTint = 7,
};

/// What a point of a cell is; bits that are added together.
using NSCellHitResult = NSUInteger;
enum : NSUInteger {
    NSCellHitNone = 0,
    NSCellHitContentArea = 1,
    NSCellHitEditableTextArea = 2,
    NSCellHitTrackableArea = 4,
};

/// How a cell shows that it is highlighted or on; bits that are added together.
using NSCellStyleMask = NSUInteger;
enum : NSUInteger {
    NSNoCellMask = 0,
    NSContentsCellMask = 1, ///< by its alternate title and image
    NSPushInCellMask = 2, ///< as pushed in
    NSChangeGrayCellMask = 4,
    NSChangeBackgroundCellMask = 8,
};

/// What draws a value in a rectangle of a view and follows the pointer there. A control has one, a table many.
///
/// Three initialisers stand side by side: `init` comes to `initTextCell:`, `initImageCell:` and `initWithCoder:` do not, so
/// that what a subclass adds to each runs once. Whatever a subclass may override is sent as a message.
/// States: 0 off, 1 on, -1 mixed. A cell that allows two goes off, on, off; one that allows three goes on, off, mixed, on.
/// Target, action and tag belong to `NSActionCell`; here they are nil, null and -1.
/// Thread: main.
class NSCell : public NSObject {
    BRINDLE_OBJECT(NSCell, NSObject)

public:
    struct Meta : NSObject::Meta {
        /// Answers whether tracking goes on when the pointer leaves the cell. NO unless overridden.
        bool prefersTrackingUntilMouseUp() const
        {
            return send<"prefersTrackingUntilMouseUp", bool>();
        }
        NSFocusRingType defaultFocusRingType() const
        {
            return send<"defaultFocusRingType", NSFocusRingType>();
        }
        Ref<NSMenu> defaultMenu() const { return send<"defaultMenu", Ref<NSMenu>>(); }
    };

    Ref<NSCell> initTextCell(NSString* text) { return send<"initTextCell:", Ref<NSCell>>(text); }
    Ref<NSCell> initImageCell(NSImage* image) { return send<"initImageCell:", Ref<NSCell>>(image); }
    Ref<NSObject> initWithCoder(NSCoder* coder)
    {
        return send<"initWithCoder:", Ref<NSObject>>(coder);
    }

    // ---- what it is

    /// Setting the text type gives a cell without a text "Cell", setting the image type drops the text.
    NSCellType type() const { return send<"type", NSCellType>(); }
    void setType(NSCellType type) { send<"setType:">(type); }
    /// The view it is drawn in; not kept, nil once that is gone.
    Ref<NSView> controlView() const { return send<"controlView", Ref<NSView>>(); }
    void setControlView(NSView* view) { send<"setControlView:">(view); }
    Ref<NSObject> representedObject() const { return send<"representedObject", Ref<NSObject>>(); }
    void setRepresentedObject(NSObject* object) { send<"setRepresentedObject:">(object); }
    bool isEnabled() const { return send<"isEnabled", bool>(); }
    void setEnabled(bool enabled) { send<"setEnabled:">(enabled); }
    bool isOpaque() const { return send<"isOpaque", bool>(); }
    NSControlSize controlSize() const { return send<"controlSize", NSControlSize>(); }
    void setControlSize(NSControlSize size) { send<"setControlSize:">(size); }
    NSControlTint controlTint() const { return send<"controlTint", NSControlTint>(); }
    void setControlTint(NSControlTint tint) { send<"setControlTint:">(tint); }
    /// What lies behind the cell, so that its text can be read there.
    NSBackgroundStyle backgroundStyle() const
    {
        return send<"backgroundStyle", NSBackgroundStyle>();
    }
    void setBackgroundStyle(NSBackgroundStyle style) { send<"setBackgroundStyle:">(style); }
    NSBackgroundStyle interiorBackgroundStyle() const
    {
        return send<"interiorBackgroundStyle", NSBackgroundStyle>();
    }
    Ref<NSMenu> menu() const { return send<"menu", Ref<NSMenu>>(); }
    void setMenu(NSMenu* menu) { send<"setMenu:">(menu); }
    Ref<NSMenu> menuForEvent_inRect_ofView(NSEvent* event, NSRect frame, NSView* view) const
    {
        return send<"menuForEvent:inRect:ofView:", Ref<NSMenu>>(event, frame, view);
    }

    // ---- state

    NSCellStateValue state() const { return send<"state", NSCellStateValue>(); }
    /// Without mixed state anything but 0 becomes 1; with it positive numbers become 1, negative ones -1.
    void setState(NSCellStateValue state) { send<"setState:">(state); }
    bool allowsMixedState() const { return send<"allowsMixedState", bool>(); }
    /// Taking it away turns a mixed state on.
    void setAllowsMixedState(bool allows) { send<"setAllowsMixedState:">(allows); }
    NSCellStateValue nextState() const { return send<"nextState", NSCellStateValue>(); }
    void setNextState() { send<"setNextState">(); }
    bool isHighlighted() const { return send<"isHighlighted", bool>(); }
    void setHighlighted(bool highlighted) { send<"setHighlighted:">(highlighted); }
    /// Sets whether it is highlighted and marks its place in the view.
    void highlight_withFrame_inView(bool highlight, NSRect frame, NSView* view)
    {
        send<"highlight:withFrame:inView:">(highlight, frame, view);
    }

    // ---- value

    /// Answers a copy's original: strings as they are, other objects as the formatter or their description writes them.
    Ref<NSObject> objectValue() const { return send<"objectValue", Ref<NSObject>>(); }
    /// - object: copied where it can be.
    void setObjectValue(NSObject* object) { send<"setObjectValue:">(object); }
    bool hasValidObjectValue() const { return send<"hasValidObjectValue", bool>(); }
    Ref<NSString> stringValue() const { return send<"stringValue", Ref<NSString>>(); }
    /// - Raises: `NSInvalidArgumentException` for nil. A formatter that cannot read the text leaves no valid object.
    void setStringValue(NSString* text) { send<"setStringValue:">(text); }
    /// Answers the text with font, colour and paragraph style.
    Ref<NSAttributedString> attributedStringValue() const
    {
        return send<"attributedStringValue", Ref<NSAttributedString>>();
    }
    void setAttributedStringValue(NSAttributedString* text)
    {
        send<"setAttributedStringValue:">(text);
    }
    int intValue() const { return send<"intValue", int>(); }
    void setIntValue(int value) { send<"setIntValue:">(value); }
    NSInteger integerValue() const { return send<"integerValue", NSInteger>(); }
    void setIntegerValue(NSInteger value) { send<"setIntegerValue:">(value); }
    float floatValue() const { return send<"floatValue", float>(); }
    void setFloatValue(float value) { send<"setFloatValue:">(value); }
    double doubleValue() const { return send<"doubleValue", double>(); }
    void setDoubleValue(double value) { send<"setDoubleValue:">(value); }
    // Take the value of another cell or control.
    void takeObjectValueFrom(NSObject* sender) { send<"takeObjectValueFrom:">(sender); }
    void takeStringValueFrom(NSObject* sender) { send<"takeStringValueFrom:">(sender); }
    void takeIntValueFrom(NSObject* sender) { send<"takeIntValueFrom:">(sender); }
    void takeIntegerValueFrom(NSObject* sender) { send<"takeIntegerValueFrom:">(sender); }
    void takeFloatValueFrom(NSObject* sender) { send<"takeFloatValueFrom:">(sender); }
    void takeDoubleValueFrom(NSObject* sender) { send<"takeDoubleValueFrom:">(sender); }
    Ref<NSFormatter> formatter() const { return send<"formatter", Ref<NSFormatter>>(); }
    /// - Raises: `NSInvalidArgumentException` for an object that is no formatter.
    void setFormatter(NSFormatter* formatter) { send<"setFormatter:">(formatter); }
    Ref<NSImage> image() const { return send<"image", Ref<NSImage>>(); }
    /// Makes it an image cell. - Nil: no image, and no cell of that type.
    void setImage(NSImage* image) { send<"setImage:">(image); }
    Ref<NSString> title() const { return send<"title", Ref<NSString>>(); }
    void setTitle(NSString* title) { send<"setTitle:">(title); }

    // ---- text

    Ref<NSFont> font() const { return send<"font", Ref<NSFont>>(); }
    /// - Nil: the system font of the control's size.
    void setFont(NSFont* font) { send<"setFont:">(font); }
    NSTextAlignment alignment() const { return send<"alignment", NSTextAlignment>(); }
    void setAlignment(NSTextAlignment alignment) { send<"setAlignment:">(alignment); }
    NSWritingDirection baseWritingDirection() const
    {
        return send<"baseWritingDirection", NSWritingDirection>();
    }
    void setBaseWritingDirection(NSWritingDirection direction)
    {
        send<"setBaseWritingDirection:">(direction);
    }
    bool wraps() const { return send<"wraps", bool>(); }
    /// YES breaks lines between words and ends scrolling; NO clips.
    void setWraps(bool wraps) { send<"setWraps:">(wraps); }
    bool isScrollable() const { return send<"isScrollable", bool>(); }
    /// YES ends wrapping.
    void setScrollable(bool scrollable) { send<"setScrollable:">(scrollable); }
    NSLineBreakMode lineBreakMode() const { return send<"lineBreakMode", NSLineBreakMode>(); }
    void setLineBreakMode(NSLineBreakMode mode) { send<"setLineBreakMode:">(mode); }
    bool truncatesLastVisibleLine() const { return send<"truncatesLastVisibleLine", bool>(); }
    void setTruncatesLastVisibleLine(bool truncates)
    {
        send<"setTruncatesLastVisibleLine:">(truncates);
    }
    bool usesSingleLineMode() const { return send<"usesSingleLineMode", bool>(); }
    void setUsesSingleLineMode(bool single) { send<"setUsesSingleLineMode:">(single); }
    bool isEditable() const { return send<"isEditable", bool>(); }
    /// YES makes it selectable too.
    void setEditable(bool editable) { send<"setEditable:">(editable); }
    bool isSelectable() const { return send<"isSelectable", bool>(); }
    /// NO makes it not editable either.
    void setSelectable(bool selectable) { send<"setSelectable:">(selectable); }
    bool allowsUndo() const { return send<"allowsUndo", bool>(); }
    void setAllowsUndo(bool allows) { send<"setAllowsUndo:">(allows); }
    bool isBordered() const { return send<"isBordered", bool>(); }
    /// YES takes a bezel away, and the other way round.
    void setBordered(bool bordered) { send<"setBordered:">(bordered); }
    bool isBezeled() const { return send<"isBezeled", bool>(); }
    void setBezeled(bool bezeled) { send<"setBezeled:">(bezeled); }

    // ---- target and action

    Ref<NSObject> target() const { return send<"target", Ref<NSObject>>(); }
    /// - Raises: `NSInternalInconsistencyException`; so do `setAction:` and `setTag:`. Action cells keep them.
    void setTarget(NSObject* target) { send<"setTarget:">(target); }
    SEL action() const { return send<"action", SEL>(); }
    void setAction(SEL action) { send<"setAction:">(action); }
    NSInteger tag() const { return send<"tag", NSInteger>(); }
    void setTag(NSInteger tag) { send<"setTag:">(tag); }
    /// Sets which events send the action.
    /// - mask: the release of the button, drags, presses, periodic events. - Returns: what it was.
    NSInteger sendActionOn(NSEventMask mask) { return send<"sendActionOn:", NSInteger>(mask); }
    /// Answers whether the action is sent again and again while the button is down.
    bool isContinuous() const { return send<"isContinuous", bool>(); }
    void setContinuous(bool continuous) { send<"setContinuous:">(continuous); }
    /// Answers how long a continuous cell waits before it repeats and between repetitions, in seconds.
    void getPeriodicDelay_interval(float* delay, float* interval) const
    {
        send<"getPeriodicDelay:interval:">(delay, interval);
    }
    /// Does what a press and release would do; nothing while disabled.
    void performClick(NSObject* sender) { send<"performClick:">(sender); }

    // ---- keyboard

    bool acceptsFirstResponder() const { return send<"acceptsFirstResponder", bool>(); }
    bool refusesFirstResponder() const { return send<"refusesFirstResponder", bool>(); }
    void setRefusesFirstResponder(bool refuses) { send<"setRefusesFirstResponder:">(refuses); }
    /// Set by the control while it is the first responder of the key window.
    bool showsFirstResponder() const { return send<"showsFirstResponder", bool>(); }
    void setShowsFirstResponder(bool shows) { send<"setShowsFirstResponder:">(shows); }
    NSFocusRingType focusRingType() const { return send<"focusRingType", NSFocusRingType>(); }
    void setFocusRingType(NSFocusRingType type) { send<"setFocusRingType:">(type); }
    /// Answers "" unless a subclass has one.
    Ref<NSString> keyEquivalent() const { return send<"keyEquivalent", Ref<NSString>>(); }

    // ---- drawing and measuring; rectangles are in the view's coordinates

    void drawWithFrame_inView(NSRect frame, NSView* view)
    {
        send<"drawWithFrame:inView:">(frame, view);
    }
    void drawInteriorWithFrame_inView(NSRect frame, NSView* view)
    {
        send<"drawInteriorWithFrame:inView:">(frame, view);
    }
    void drawFocusRingMaskWithFrame_inView(NSRect frame, NSView* view)
    {
        send<"drawFocusRingMaskWithFrame:inView:">(frame, view);
    }
    NSRect focusRingMaskBoundsForFrame_inView(NSRect frame, NSView* view) const
    {
        return send<"focusRingMaskBoundsForFrame:inView:", NSRect>(frame, view);
    }
    /// Answers the smallest size that shows everything.
    NSSize cellSize() const { return send<"cellSize", NSSize>(); }
    /// The same within bounds, which a text that wraps is as wide as at most.
    NSSize cellSizeForBounds(NSRect bounds) const
    {
        return send<"cellSizeForBounds:", NSSize>(bounds);
    }
    NSRect drawingRectForBounds(NSRect bounds) const
    {
        return send<"drawingRectForBounds:", NSRect>(bounds);
    }
    NSRect imageRectForBounds(NSRect bounds) const
    {
        return send<"imageRectForBounds:", NSRect>(bounds);
    }
    NSRect titleRectForBounds(NSRect bounds) const
    {
        return send<"titleRectForBounds:", NSRect>(bounds);
    }
    /// Told when its size or what it shows has changed so that layouts must be made anew.
    void calcDrawInfo(NSRect bounds) { send<"calcDrawInfo:">(bounds); }

    // ---- the pointer

    /// Follows the pointer from a press to its release, or until it leaves the rectangle.
    ///
    /// Sends `startTrackingAt:inView:`, then `continueTracking:at:inView:` for each drag as long as the last of these
    /// answered YES, then `stopTracking:at:inView:mouseIsUp:`. A release inside (or anywhere with `untilMouseUp`) goes on to the
    /// next state and sends the action. Windows are drawn and the main queue runs meanwhile.
    /// - Returns: NO when the pointer left the rectangle, or was released outside.
    bool trackMouse_inRect_ofView_untilMouseUp(
        NSEvent* press, NSRect frame, NSView* view, bool untilMouseUp)
    {
        return send<"trackMouse:inRect:ofView:untilMouseUp:", bool>(
            press, frame, view, untilMouseUp);
    }
    /// Answers whether drags are of interest: YES here only for cells that send their action all the time.
    bool startTrackingAt_inView(NSPoint point, NSView* view)
    {
        return send<"startTrackingAt:inView:", bool>(point, view);
    }
    bool continueTracking_at_inView(NSPoint last, NSPoint point, NSView* view)
    {
        return send<"continueTracking:at:inView:", bool>(last, point, view);
    }
    void stopTracking_at_inView_mouseIsUp(NSPoint last, NSPoint point, NSView* view, bool mouseIsUp)
    {
        send<"stopTracking:at:inView:mouseIsUp:">(last, point, view, mouseIsUp);
    }
    NSCellHitResult hitTestForEvent_inRect_ofView(NSEvent* event, NSRect frame, NSView* view) const
    {
        return send<"hitTestForEvent:inRect:ofView:", NSCellHitResult>(event, frame, view);
    }
    /// Answers which events send the action.
    NSInteger mouseDownFlags() const { return send<"mouseDownFlags", NSInteger>(); }

private:
    friend struct CellAccess;

    std::shared_ptr<CellAttributes> attributes_; // made when first needed
    WeakRef<NSView> controlView_;
};

}
