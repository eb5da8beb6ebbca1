// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "foundation/NSGeometry.h"
#include "foundation/NSString.h"
#include "runtime/Block.h"

namespace brindle {

class NSDictionary;
class NSGraphicsContext;
class NSTrackingArea;
class NSWindow;

enum NSEventType : NSUInteger {
    NSLeftMouseDown = 1,
    NSLeftMouseUp = 2,
    NSRightMouseDown = 3,
    NSRightMouseUp = 4,
    NSMouseMoved = 5,
    NSLeftMouseDragged = 6,
    NSRightMouseDragged = 7,
    NSMouseEntered = 8,
    NSMouseExited = 9,
    NSKeyDown = 10,
    NSKeyUp = 11,
    NSFlagsChanged = 12,
    NSAppKitDefined = 13,
    NSSystemDefined = 14,
    NSApplicationDefined = 15,
    NSPeriodic = 16,
    NSCursorUpdate = 17,
    NSScrollWheel = 22,
    NSOtherMouseDown = 25,
    NSOtherMouseUp = 26,
    NSOtherMouseDragged = 27,
};

/// A set of event types: bit n stands for the type n.
using NSEventMask = NSUInteger;
inline constexpr NSEventMask NSAnyEventMask = ~NSEventMask { 0 };
constexpr NSEventMask NSEventMaskFromType(NSEventType type) { return NSEventMask { 1 } << type; }
inline constexpr NSEventMask NSLeftMouseDownMask = NSEventMaskFromType(NSLeftMouseDown);
inline constexpr NSEventMask NSLeftMouseUpMask = NSEventMaskFromType(NSLeftMouseUp);
inline constexpr NSEventMask NSLeftMouseDraggedMask = NSEventMaskFromType(NSLeftMouseDragged);
inline constexpr NSEventMask NSRightMouseDownMask = NSEventMaskFromType(NSRightMouseDown);
inline constexpr NSEventMask NSRightMouseUpMask = NSEventMaskFromType(NSRightMouseUp);
inline constexpr NSEventMask NSRightMouseDraggedMask = NSEventMaskFromType(NSRightMouseDragged);
inline constexpr NSEventMask NSMouseMovedMask = NSEventMaskFromType(NSMouseMoved);
inline constexpr NSEventMask NSMouseEnteredMask = NSEventMaskFromType(NSMouseEntered);
inline constexpr NSEventMask NSMouseExitedMask = NSEventMaskFromType(NSMouseExited);
inline constexpr NSEventMask NSKeyDownMask = NSEventMaskFromType(NSKeyDown);
inline constexpr NSEventMask NSKeyUpMask = NSEventMaskFromType(NSKeyUp);
inline constexpr NSEventMask NSFlagsChangedMask = NSEventMaskFromType(NSFlagsChanged);
inline constexpr NSEventMask NSScrollWheelMask = NSEventMaskFromType(NSScrollWheel);
inline constexpr NSEventMask NSApplicationDefinedMask = NSEventMaskFromType(NSApplicationDefined);
inline constexpr NSEventMask NSPeriodicMask = NSEventMaskFromType(NSPeriodic);

/// Bits of `modifierFlags`.
using NSEventModifierFlags = NSUInteger;
enum : NSUInteger {
    NSAlphaShiftKeyMask = 1u << 16,
    NSShiftKeyMask = 1u << 17,
    NSControlKeyMask = 1u << 18,
    NSAlternateKeyMask = 1u << 19,
    NSCommandKeyMask = 1u << 20,
    NSNumericPadKeyMask = 1u << 21,
    NSHelpKeyMask = 1u << 22,
    NSFunctionKeyMask = 1u << 23,
    NSDeviceIndependentModifierFlagsMask = 0xFFFF0000u,
};

/// Characters of keys that type none.
enum : unichar {
    NSUpArrowFunctionKey = 0xF700,
    NSDownArrowFunctionKey = 0xF701,
    NSLeftArrowFunctionKey = 0xF702,
    NSRightArrowFunctionKey = 0xF703,
    NSF1FunctionKey = 0xF704,
    NSInsertFunctionKey = 0xF727,
    NSDeleteFunctionKey = 0xF728,
    NSHomeFunctionKey = 0xF729,
    NSEndFunctionKey = 0xF72B,
    NSPageUpFunctionKey = 0xF72C,
    NSPageDownFunctionKey = 0xF72D,
};

struct EventAccess;

/// Something that happened: a movement, a press, a key. Does not change once made.
///
/// Asking an event for what its type does not have raises `NSInternalInconsistencyException`: click count, event
/// number and pressure of anything but mouse events, characters of anything but key events.
class NSEvent : public NSObject {
    BRINDLE_OBJECT(NSEvent, NSObject)

public:
    struct Meta : NSObject::Meta {
        /// - location: in the window's coordinates; screen coordinates when the number names no window.
        /// - Raises: `NSInternalInconsistencyException` when the type is no mouse button, movement or drag.
        Ref<NSEvent>
        mouseEventWithType_location_modifierFlags_timestamp_windowNumber_context_eventNumber_clickCount_pressure(
            NSEventType type, NSPoint location, NSEventModifierFlags flags, double time,
            NSInteger windowNumber, NSGraphicsContext* context, NSInteger eventNumber,
            NSInteger clickCount, float pressure) const
        {
            return send<"mouseEventWithType:location:modifierFlags:timestamp:windowNumber:context:"
                        "eventNumber:clickCount:pressure:",
                Ref<NSEvent>>(type, location, flags, time, windowNumber, context, eventNumber,
                clickCount, pressure);
        }
        Ref<NSEvent>
        keyEventWithType_location_modifierFlags_timestamp_windowNumber_context_characters_charactersIgnoringModifiers_isARepeat_keyCode(
            NSEventType type, NSPoint location, NSEventModifierFlags flags, double time,
            NSInteger windowNumber, NSGraphicsContext* context, NSString* characters,
            NSString* unmodified, bool isARepeat, std::uint16_t keyCode) const
        {
            return send<"keyEventWithType:location:modifierFlags:timestamp:windowNumber:context:"
                        "characters:charactersIgnoringModifiers:isARepeat:keyCode:",
                Ref<NSEvent>>(type, location, flags, time, windowNumber, context, characters,
                unmodified, isARepeat, keyCode);
        }
        Ref<NSEvent>
        enterExitEventWithType_location_modifierFlags_timestamp_windowNumber_context_eventNumber_trackingNumber_userData(
            NSEventType type, NSPoint location, NSEventModifierFlags flags, double time,
            NSInteger windowNumber, NSGraphicsContext* context, NSInteger eventNumber,
            NSInteger trackingNumber, void* userData) const
        {
            return send<
                "enterExitEventWithType:location:modifierFlags:timestamp:windowNumber:context:"
                "eventNumber:trackingNumber:userData:",
                Ref<NSEvent>>(type, location, flags, time, windowNumber, context, eventNumber,
                trackingNumber, userData);
        }
        Ref<NSEvent>
        otherEventWithType_location_modifierFlags_timestamp_windowNumber_context_subtype_data1_data2(
            NSEventType type, NSPoint location, NSEventModifierFlags flags, double time,
            NSInteger windowNumber, NSGraphicsContext* context, std::int16_t subtype,
            NSInteger data1, NSInteger data2) const
        {
            return send<"otherEventWithType:location:modifierFlags:timestamp:windowNumber:context:"
                        "subtype:data1:data2:",
                Ref<NSEvent>>(
                type, location, flags, time, windowNumber, context, subtype, data1, data2);
        }
        /// Answers where the pointer is, in screen coordinates; (0, 0) without a display.
        NSPoint mouseLocation() const { return send<"mouseLocation", NSPoint>(); }
        /// Answers the modifiers that are down now.
        NSEventModifierFlags modifierFlags() const
        {
            return send<"modifierFlags", NSEventModifierFlags>();
        }
        /// Puts an `NSPeriodic` event into the queue after a while and then again and again, for loops that track the
        /// pointer. The time runs in the default and the tracking mode.
        /// - delay, period: seconds.
        /// - Raises: `NSInternalInconsistencyException` when such events are being made already.
        void startPeriodicEventsAfterDelay_withPeriod(double delay, double period) const
        {
            send<"startPeriodicEventsAfterDelay:withPeriod:">(delay, period);
        }
        /// Ends them and drops those that wait in the queue.
        void stopPeriodicEvents() const { send<"stopPeriodicEvents">(); }
        /// Answers how far apart in time two presses may be to count as one gesture, in seconds.
        double doubleClickInterval() const { return send<"doubleClickInterval", double>(); }
    };

    NSEventType type() const { return send<"type", NSEventType>(); }
    NSEventModifierFlags modifierFlags() const
    {
        return send<"modifierFlags", NSEventModifierFlags>();
    }
    /// Answers when it happened, in seconds on the display's clock.
    double timestamp() const { return send<"timestamp", double>(); }
    /// Answers the window it belongs to, or nil.
    Ref<NSWindow> window() const { return send<"window", Ref<NSWindow>>(); }
    NSInteger windowNumber() const { return send<"windowNumber", NSInteger>(); }
    Ref<NSGraphicsContext> context() const { return send<"context", Ref<NSGraphicsContext>>(); }
    /// Answers the place in the window's coordinates; in screen coordinates without a window.
    NSPoint locationInWindow() const { return send<"locationInWindow", NSPoint>(); }

    // Mouse events.

    NSInteger eventNumber() const { return send<"eventNumber", NSInteger>(); }
    NSInteger clickCount() const { return send<"clickCount", NSInteger>(); }
    float pressure() const { return send<"pressure", float>(); }
    NSInteger buttonNumber() const { return send<"buttonNumber", NSInteger>(); }
    /// Answers how far content shall move, in points: positive is to the right, and down. For drags and movements, how
    /// far the pointer went since the event before.
    CGFloat deltaX() const { return send<"deltaX", CGFloat>(); }
    CGFloat deltaY() const { return send<"deltaY", CGFloat>(); }
    CGFloat deltaZ() const { return send<"deltaZ", CGFloat>(); }
    CGFloat scrollingDeltaX() const { return send<"scrollingDeltaX", CGFloat>(); }
    CGFloat scrollingDeltaY() const { return send<"scrollingDeltaY", CGFloat>(); }
    bool hasPreciseScrollingDeltas() const { return send<"hasPreciseScrollingDeltas", bool>(); }

    // Key events.

    Ref<NSString> characters() const { return send<"characters", Ref<NSString>>(); }
    Ref<NSString> charactersIgnoringModifiers() const
    {
        return send<"charactersIgnoringModifiers", Ref<NSString>>();
    }
    std::uint16_t keyCode() const { return send<"keyCode", std::uint16_t>(); }
    bool isARepeat() const { return send<"isARepeat", bool>(); }
    /// Answers the character for key equivalents on the keyboard's first layout with Latin letters; nil when there is none.
    Ref<NSString> latinCharacters() const { return send<"latinCharacters", Ref<NSString>>(); }

    // Crossing and cursor events.

    /// Answers the tracking area's `userInfo` itself; null when it has none.
    void* userData() const { return send<"userData", void*>(); }
    Ref<NSTrackingArea> trackingArea() const { return send<"trackingArea", Ref<NSTrackingArea>>(); }
    NSInteger trackingNumber() const { return send<"trackingNumber", NSInteger>(); }

    // Program-defined events.

    std::int16_t subtype() const { return send<"subtype", std::int16_t>(); }
    NSInteger data1() const { return send<"data1", NSInteger>(); }
    NSInteger data2() const { return send<"data2", NSInteger>(); }

private:
    friend struct EventAccess;

    NSEventType type_ {};
    NSEventModifierFlags flags_ = 0;
    double timestamp_ = 0;
    NSInteger windowNumber_ = 0;
    NSPoint location_;
    NSPoint screenLocation_;
    NSInteger number_ = 0; // event number or tracking number
    NSInteger clickCount_ = 0;
    NSInteger data1_ = 0;
    NSInteger data2_ = 0;
    double deltaX_ = 0;
    double deltaY_ = 0;
    Ref<NSString> characters_;
    Ref<NSString> unmodified_;
    Ref<NSString> latin_;
    Ref<NSObject> area_; // NSTrackingArea
    Ref<NSObject> context_; // NSGraphicsContext
    void* userData_ = nullptr;
    float pressure_ = 0;
    std::int16_t subtype_ = 0;
    std::uint16_t keyCode_ = 0;
    std::uint8_t button_ = 0;
    bool repeat_ = false;
    bool precise_ = false;
    bool hasScreenLocation_ = false;
};

}
