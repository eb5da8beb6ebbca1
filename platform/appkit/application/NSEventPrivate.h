// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "appkit/NSEvent.h"
#include "appkit/NSTrackingArea.h"

namespace brindle {

/// What an event says, for whoever makes one.
struct EventFields {
    NSEventType type {};
    NSEventModifierFlags flags = 0;
    double timestamp = 0;
    NSInteger windowNumber = 0;
    NSPoint location;
    NSPoint screenLocation {};
    NSInteger number = 0;
    NSInteger clickCount = 0;
    NSInteger data1 = 0;
    NSInteger data2 = 0;
    double deltaX = 0;
    double deltaY = 0;
    Ref<NSString> characters {};
    Ref<NSString> unmodified {};
    Ref<NSString> latin {};
    NSTrackingArea* area = nullptr;
    NSObject* context = nullptr;
    void* userData = nullptr;
    float pressure = 0;
    std::int16_t subtype = 0;
    std::uint16_t keyCode = 0;
    std::uint8_t button = 0;
    bool repeat = false;
    bool precise = false;
    bool hasScreenLocation = false;
};

struct EventAccess {
    static Ref<NSEvent> make(const EventFields& fields);
    /// The same, in place of a retired event where there is one. Thread: main.
    static Ref<NSEvent> makeAgain(const EventFields& fields);
    /// Takes an event that is over; it serves again unless somebody else keeps it. Thread: main.
    static void retire(Ref<NSEvent> event);
    /// Answers where it happened on the screen; what the display said, else by where the window is now.
    static NSPoint screenLocation(const NSEvent& event);
    /// Answers one of the events that carry news of native windows.
    static bool isNews(const NSEvent& event, std::int16_t kind)
    {
        return event.type_ == NSAppKitDefined && event.subtype_ == kind;
    }

private:
    static void set(NSEvent& event, const EventFields& fields);
    static std::vector<Ref<NSEvent>>& spares();
};

namespace events {

    /// Answers the type for a button: 0 left, 1 right, others.
    enum class Phase { down, up, dragged };
    NSEventType typeFor(Phase phase, int button);

    constexpr NSEventMask kDowns
        = NSLeftMouseDownMask | NSRightMouseDownMask | NSEventMaskFromType(NSOtherMouseDown);
    constexpr NSEventMask kUps
        = NSLeftMouseUpMask | NSRightMouseUpMask | NSEventMaskFromType(NSOtherMouseUp);
    constexpr NSEventMask kDrags = NSLeftMouseDraggedMask | NSRightMouseDraggedMask
        | NSEventMaskFromType(NSOtherMouseDragged);
    constexpr NSEventMask kButtons = kDowns | kUps | kDrags;
    constexpr NSEventMask kPointer = kButtons | NSMouseMovedMask | NSScrollWheelMask;
    constexpr NSEventMask kCrossings
        = NSMouseEnteredMask | NSMouseExitedMask | NSEventMaskFromType(NSCursorUpdate);
    constexpr NSEventMask kKeys = NSKeyDownMask | NSKeyUpMask;

    inline bool isIn(NSEventType type, NSEventMask mask)
    {
        return type < 64 && (mask & NSEventMaskFromType(type));
    }

}

}
