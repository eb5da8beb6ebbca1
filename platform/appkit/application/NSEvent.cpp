// SPDX-License-Identifier: Apache-2.0
#include "NSEventPrivate.h"

#include "NSApplicationPrivate.h"
#include "appkit/NSGraphicsContext.h"
#include "appkit/NSWindow.h"
#include "foundation/NSDictionary.h"
#include "runtime/NSException.h"
#include "runtime/Spare.h"
#include "runtime/Table.h"

namespace brindle {

void EventAccess::set(NSEvent& event, const EventFields& f)
{
    event.type_ = f.type;
    event.flags_ = f.flags;
    event.timestamp_ = f.timestamp;
    event.windowNumber_ = f.windowNumber;
    event.location_ = f.location;
    event.number_ = f.number;
    event.clickCount_ = f.clickCount;
    event.data1_ = f.data1;
    event.data2_ = f.data2;
    event.deltaX_ = f.deltaX;
    event.deltaY_ = f.deltaY;
    event.characters_ = f.characters;
    event.unmodified_ = f.unmodified;
    event.latin_ = f.latin;
    event.area_ = f.area;
    event.context_ = f.context;
    event.userData_ = f.userData;
    event.pressure_ = f.pressure;
    event.subtype_ = f.subtype;
    event.keyCode_ = f.keyCode;
    event.button_ = f.button;
    event.repeat_ = f.repeat;
    event.precise_ = f.precise;
    event.screenLocation_ = f.screenLocation;
    event.hasScreenLocation_ = f.hasScreenLocation;
}

Ref<NSEvent> EventAccess::make(const EventFields& fields)
{
    Ref<NSEvent> event = brindle::make<NSEvent>();
    set(*event, fields);
    return event;
}

std::vector<Ref<NSEvent>>& EventAccess::spares()
{
    static auto* const list = new std::vector<Ref<NSEvent>>; // events come until the process ends
    return *list;
}

Ref<NSEvent> EventAccess::makeAgain(const EventFields& fields)
{
    if (spares().empty())
        return make(fields);
    Ref<NSEvent> event = std::move(spares().back());
    spares().pop_back();
    set(*event, fields);
    return event;
}

void EventAccess::retire(Ref<NSEvent> event)
{
    constexpr std::size_t kMostSpares = 8;
    if (spares().size() >= kMostSpares || !isSpare(event))
        return;
    set(*event, {});
    spares().push_back(std::move(event));
}

NSPoint EventAccess::screenLocation(const NSEvent& event)
{
    if (event.hasScreenLocation_)
        return event.screenLocation_;
    const Ref<NSWindow> window = ApplicationAccess::windowWithNumber(event.windowNumber_);
    return window ? window->convertPointToScreen(event.location_) : event.location_;
}

NSEventType events::typeFor(Phase phase, int button)
{
    static constexpr NSEventType types[3][3] = {
        { NSLeftMouseDown, NSRightMouseDown, NSOtherMouseDown },
        { NSLeftMouseUp, NSRightMouseUp, NSOtherMouseUp },
        { NSLeftMouseDragged, NSRightMouseDragged, NSOtherMouseDragged },
    };
    return types[static_cast<int>(phase)][button == 0 ? 0 : button == 1 ? 1 : 2];
}

template <> struct NSEvent::Methods<struct Making> {

    static std::uint8_t buttonOf(NSEventType type)
    {
        if (events::isIn(type, NSRightMouseDownMask | NSRightMouseUpMask | NSRightMouseDraggedMask))
            return 1;
        return type == NSOtherMouseDown || type == NSOtherMouseUp || type == NSOtherMouseDragged
            ? 2
            : 0;
    }
    static void require(NSEventType type, NSEventMask allowed, const char* maker)
    {
        if (!events::isIn(type, allowed))
            raise("NSInternalInconsistencyException",
                "Invalid parameter not satisfying: the type " + std::to_string(type)
                    + " of +[NSEvent " + maker + "]");
    }

    static Ref<NSEvent> mouse(Class&, NSEventType type, NSPoint location,
        NSEventModifierFlags flags, double time, NSInteger window, NSGraphicsContext* context,
        NSInteger number, NSInteger clicks, float pressure)
    {
        require(type, events::kButtons | NSMouseMovedMask, "mouseEventWithType:...");
        return EventAccess::make({ .type = type,
            .flags = flags,
            .timestamp = time,
            .windowNumber = window,
            .location = location,
            .number = number,
            .clickCount = clicks,
            .context = context,
            .pressure = pressure,
            .button = buttonOf(type) });
    }
    static Ref<NSEvent> key(Class&, NSEventType type, NSPoint location, NSEventModifierFlags flags,
        double time, NSInteger window, NSGraphicsContext* context, NSString* characters,
        NSString* unmodified, bool repeat, std::uint16_t code)
    {
        require(type, events::kKeys | NSFlagsChangedMask, "keyEventWithType:...");
        return EventAccess::make({ .type = type,
            .flags = flags,
            .timestamp = time,
            .windowNumber = window,
            .location = location,
            .characters = characters,
            .unmodified = unmodified,
            .context = context,
            .keyCode = code,
            .repeat = repeat });
    }
    static Ref<NSEvent> crossing(Class&, NSEventType type, NSPoint location,
        NSEventModifierFlags flags, double time, NSInteger window, NSGraphicsContext* context,
        NSInteger, NSInteger tracking, void* userData)
    {
        require(type, events::kCrossings, "enterExitEventWithType:...");
        return EventAccess::make({ .type = type,
            .flags = flags,
            .timestamp = time,
            .windowNumber = window,
            .location = location,
            .number = tracking,
            .context = context,
            .userData = userData });
    }
    static Ref<NSEvent> other(Class&, NSEventType type, NSPoint location,
        NSEventModifierFlags flags, double time, NSInteger window, NSGraphicsContext* context,
        std::int16_t subtype, NSInteger data1, NSInteger data2)
    {
        require(type,
            NSApplicationDefinedMask | NSPeriodicMask | NSEventMaskFromType(NSAppKitDefined)
                | NSEventMaskFromType(NSSystemDefined),
            "otherEventWithType:...");
        return EventAccess::make({ .type = type,
            .flags = flags,
            .timestamp = time,
            .windowNumber = window,
            .location = location,
            .data1 = data1,
            .data2 = data2,
            .context = context,
            .subtype = subtype });
    }
    static NSPoint mouseLocation(Class&) { return ApplicationAccess::pointerLocation(); }
    static NSEventModifierFlags currentModifiers(Class&) { return ApplicationAccess::modifiers(); }
    static double doubleClickInterval(Class&) { return 0.4; }

    static void table(Builder& t)
    {
        t.classMethods({
            { "mouseEventWithType:location:modifierFlags:timestamp:windowNumber:context:"
              "eventNumber:"
              "clickCount:pressure:",
                imp<mouse> },
            { "keyEventWithType:location:modifierFlags:timestamp:windowNumber:context:characters:"
              "charactersIgnoringModifiers:isARepeat:keyCode:",
                imp<key> },
            { "enterExitEventWithType:location:modifierFlags:timestamp:windowNumber:context:"
              "eventNumber:"
              "trackingNumber:userData:",
                imp<crossing> },
            { "otherEventWithType:location:modifierFlags:timestamp:windowNumber:context:subtype:"
              "data1:"
              "data2:",
                imp<other> },
            { "mouseLocation", imp<mouseLocation> },
            { "modifierFlags", imp<currentModifiers> },
            { "doubleClickInterval", imp<doubleClickInterval> },
        });
    }
};
BRINDLE_RECORD(NSEvent, Making)

template <> struct NSEvent::Methods<struct Reading> {

    static void require(NSEvent& self, NSEventMask allowed, const char* operation)
    {
        if (!events::isIn(self.type_, allowed))
            raise("NSInternalInconsistencyException",
                std::string("Invalid message sent to event: -[NSEvent ") + operation + "] of type "
                    + std::to_string(self.type_));
    }

    static NSEventType type(NSEvent& self) { return self.type_; }
    static NSEventModifierFlags flags(NSEvent& self) { return self.flags_; }
    static double timestamp(NSEvent& self) { return self.timestamp_; }
    static NSInteger windowNumber(NSEvent& self) { return self.windowNumber_; }
    static Ref<NSWindow> window(NSEvent& self)
    {
        return ApplicationAccess::windowWithNumber(self.windowNumber_);
    }
    static Ref<NSGraphicsContext> context(NSEvent& self)
    {
        return cast<NSGraphicsContext>(self.context_);
    }
    static NSPoint location(NSEvent& self) { return self.location_; }

    static constexpr NSEventMask kClicks = events::kButtons | NSMouseMovedMask;

    static NSInteger eventNumber(NSEvent& self)
    {
        require(self, kClicks | events::kCrossings, "eventNumber");
        return self.number_;
    }
    static NSInteger clickCount(NSEvent& self)
    {
        require(self, kClicks, "clickCount");
        return self.clickCount_;
    }
    static float pressure(NSEvent& self)
    {
        require(self, kClicks, "pressure");
        return self.pressure_;
    }
    static NSInteger buttonNumber(NSEvent& self) { return self.button_; }
    static CGFloat deltaX(NSEvent& self) { return self.deltaX_; }
    static CGFloat deltaY(NSEvent& self) { return self.deltaY_; }
    static CGFloat deltaZ(NSEvent&) { return 0; }
    static bool isPrecise(NSEvent& self) { return self.precise_; }

    static Ref<NSString> characters(NSEvent& self)
    {
        require(self, events::kKeys, "characters");
        return self.characters_;
    }
    static Ref<NSString> unmodified(NSEvent& self)
    {
        require(self, events::kKeys, "charactersIgnoringModifiers");
        return self.unmodified_;
    }
    static Ref<NSString> latin(NSEvent& self)
    {
        require(self, events::kKeys, "latinCharacters");
        return self.latin_;
    }
    static std::uint16_t keyCode(NSEvent& self)
    {
        require(self, events::kKeys | NSFlagsChangedMask, "keyCode");
        return self.keyCode_;
    }
    static bool isARepeat(NSEvent& self)
    {
        require(self, events::kKeys, "isARepeat");
        return self.repeat_;
    }

    static void* userData(NSEvent& self)
    {
        require(self, events::kCrossings, "userData");
        return self.userData_;
    }
    static Ref<NSTrackingArea> trackingArea(NSEvent& self)
    {
        require(self, events::kCrossings, "trackingArea");
        return cast<NSTrackingArea>(self.area_);
    }
    static NSInteger trackingNumber(NSEvent& self)
    {
        require(self, events::kCrossings, "trackingNumber");
        return self.number_;
    }
    static std::int16_t subtype(NSEvent& self) { return self.subtype_; }
    static NSInteger data1(NSEvent& self) { return self.data1_; }
    static NSInteger data2(NSEvent& self) { return self.data2_; }

    static void table(Builder& t)
    {
        t.methods({
            { "type", imp<type> },
            { "modifierFlags", imp<flags> },
            { "timestamp", imp<timestamp> },
            { "window", imp<window> },
            { "windowNumber", imp<windowNumber> },
            { "context", imp<context> },
            { "locationInWindow", imp<location> },
            { "eventNumber", imp<eventNumber> },
            { "clickCount", imp<clickCount> },
            { "pressure", imp<pressure> },
            { "buttonNumber", imp<buttonNumber> },
            { "deltaX", imp<deltaX> },
            { "deltaY", imp<deltaY> },
            { "deltaZ", imp<deltaZ> },
            { "scrollingDeltaX", imp<deltaX> },
            { "scrollingDeltaY", imp<deltaY> },
            { "hasPreciseScrollingDeltas", imp<isPrecise> },
            { "characters", imp<characters> },
            { "charactersIgnoringModifiers", imp<unmodified> },
            { "latinCharacters", imp<latin> },
            { "keyCode", imp<keyCode> },
            { "isARepeat", imp<isARepeat> },
            { "userData", imp<userData> },
            { "trackingArea", imp<trackingArea> },
            { "trackingNumber", imp<trackingNumber> },
            { "subtype", imp<subtype> },
            { "data1", imp<data1> },
            { "data2", imp<data2> },
        });
    }
};
BRINDLE_RECORD(NSEvent, Reading)

}
