// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSSegmentedCell.h"

#include <algorithm>
#include <cmath>

#include "NSCellPrivate.h"
#include "appkit/NSApplication.h"
#include "appkit/NSEvent.h"
#include "appkit/NSImage.h"
#include "appkit/NSView.h"
#include "appkit/views/CodingPrivate.h"
#include "foundation/Exceptions.h"
#include "foundation/NSDate.h"
#include "foundation/NSRunLoop.h"

namespace brindle {

template <> struct NSSegmentedCell::Methods<struct Segments> {

    static constexpr NSInteger kMost = 1000;

    static NSInteger count(NSSegmentedCell& self)
    {
        return static_cast<NSInteger>(self.segments_.size());
    }
    static void setCount(NSSegmentedCell& self, NSInteger wanted)
    {
        self.segments_.resize(static_cast<std::size_t>(std::clamp(wanted, NSInteger { 0 }, kMost)));
        for (NSInteger* const index : { &self.last_, &self.key_, &self.pressed_ })
            *index = *index < count(self) ? *index : -1;
        CellAccess::changed(self);
    }
    static Segment& at(NSSegmentedCell& self, NSInteger index)
    {
        if (index < 0 || index >= count(self))
            raise("NSRangeException",
                "*** -[NSSegmentedCell]: segment " + std::to_string(index) + " out of bounds");
        return self.segments_[static_cast<std::size_t>(index)];
    }
    template <auto Field> static auto get(NSSegmentedCell& self, NSInteger index)
    {
        return at(self, index).*Field;
    }
    template <auto Field, class T> static void set(NSSegmentedCell& self, T value, NSInteger index)
    {
        at(self, index).*Field = value;
        CellAccess::changed(self);
    }
    template <auto Field>
    static void setText(NSSegmentedCell& self, NSString* text, NSInteger index)
    {
        if (text && !text->isKindOfClass(NSString::cls()))
            raise("NSInvalidArgumentException", "*** -[NSSegmentedCell]: not a string");
        at(self, index).*Field = cast<NSString>(maybe(text)->copy());
        CellAccess::changed(self);
    }
    static Ref<NSString> label(NSSegmentedCell& self, NSInteger index)
    {
        const Ref<NSString> label = at(self, index).label;
        return label ? label : Ref<NSString>(""_ns);
    }
    static void setImage(NSSegmentedCell& self, NSImage* image, NSInteger index)
    {
        if (image && !image->isKindOfClass(NSImage::cls()))
            raise("NSInvalidArgumentException", "*** -[NSSegmentedCell]: not an image");
        set<&Segment::image, NSImage*>(self, image, index);
    }
    static void setWidth(NSSegmentedCell& self, CGFloat width, NSInteger index)
    {
        set<&Segment::width, CGFloat>(self, std::isfinite(width) ? std::max(width, 0.0) : 0, index);
    }

    // ---- what is chosen

    static NSSegmentSwitchTracking mode(NSSegmentedCell& self) { return self.mode_; }
    static void setMode(NSSegmentedCell& self, NSSegmentSwitchTracking mode)
    {
        if (mode <= NSSegmentSwitchTrackingMomentary)
            self.mode_ = mode;
        CellAccess::changed(self);
    }
    static NSInteger selected(NSSegmentedCell& self) { return self.last_; }
    static void setSelected(NSSegmentedCell& self, NSInteger index)
    {
        if (index == -1) {
            for (Segment& segment : self.segments_)
                segment.selected = false;
            self.last_ = -1;
            return CellAccess::changed(self);
        }
        choose(self, true, index);
    }
    static void choose(NSSegmentedCell& self, bool selected, NSInteger index)
    {
        Segment& chosen = at(self, index);
        if (selected && self.mode_ == NSSegmentSwitchTrackingSelectOne) {
            for (Segment& segment : self.segments_)
                segment.selected = false;
        }
        chosen.selected = selected;
        if (selected)
            self.last_ = index;
        else if (self.last_ == index)
            self.last_ = -1;
        CellAccess::changed(self);
    }
    static bool selectTag(NSSegmentedCell& self, NSInteger tag)
    {
        for (NSInteger i = 0; i < count(self); ++i) {
            if (at(self, i).tag == tag)
                return setSelected(self, i), true;
        }
        return false;
    }
    static void press(NSSegmentedCell& self, NSInteger index)
    {
        if (!at(self, index).enabled)
            return;
        if (self.mode_ == NSSegmentSwitchTrackingMomentary)
            self.last_ = index;
        else
            choose(self,
                self.mode_ == NSSegmentSwitchTrackingSelectOne || !at(self, index).selected, index);
    }

    // ---- the keyboard

    static NSInteger key(NSSegmentedCell& self) { return self.key_; }
    static void setKey(NSSegmentedCell& self, NSInteger index)
    {
        self.key_ = index >= 0 && index < count(self) ? index : -1;
        CellAccess::changed(self);
    }
    static void moveKey(NSSegmentedCell& self, NSInteger step)
    {
        NSInteger index = self.key_ < 0 ? (step > 0 ? -1 : count(self)) : self.key_;
        do {
            index += step;
        } while (index >= 0 && index < count(self) && !at(self, index).enabled);
        if (index >= 0 && index < count(self))
            setKey(self, index);
    }
    static void nextKey(NSSegmentedCell& self) { moveKey(self, 1); }
    static void previousKey(NSSegmentedCell& self) { moveKey(self, -1); }

    // ---- the pointer: a segment is pressed where the button comes up on it again

    static bool prefersTrackingUntilMouseUp(Class&) { return true; }
    static void show(NSSegmentedCell& self, NSInteger pressed)
    {
        if (std::exchange(self.pressed_, pressed) != pressed)
            CellAccess::changed(self);
    }
    static bool track(NSSegmentedCell& self, NSEvent* press, NSRect frame, NSView* view, bool)
    {
        if (!press || !view)
            return false;
        const Ref<NSSegmentedCell> alive(&self);
        const auto segmentAt = [&](NSEvent& event) {
            return self.segmentAtPoint_inFrame(
                view->convertPoint_fromView(event.locationInWindow(), nullptr), frame);
        };
        const NSInteger start = segmentAt(*press);
        const bool presses = start >= 0 && at(self, start).enabled;
        NSInteger under = start;
        show(self, presses ? start : -1);
        for (;;) {
            const Ref<NSEvent> next
                = NSApplication::cls()
                      .sharedApplication()
                      ->nextEventMatchingMask_untilDate_inMode_dequeue(
                          NSLeftMouseDraggedMask | NSLeftMouseUpMask,
                          NSDate::cls().distantFuture().get(), NSEventTrackingRunLoopMode, true);
            under = next ? segmentAt(*next) : -1;
            if (!next || next->type() == NSLeftMouseUp)
                break;
            show(self, presses && under == start ? start : -1);
        }
        show(self, -1);
        if (!presses || under != start || start >= count(self))
            return true;
        self.pressSegment(start);
        CellAccess::sendAction(self, view);
        return true;
    }

    // ---- copies and archives

    static Ref<NSObject> copyWithZone(NSSegmentedCell& self, void* zone)
    {
        const Ref<NSSegmentedCell> copy = cast<NSSegmentedCell>(
            super<NSSegmentedCell, "copyWithZone:", Ref<NSObject>>(self, zone));
        if (!copy)
            return nullptr;
        copy->segments_ = self.segments_;
        copy->mode_ = self.mode_;
        copy->last_ = self.last_;
        return copy;
    }
    /// Writes or reads a value of a segment under a key of its own.
    static Ref<NSString> keyOf(const char* name, std::size_t index)
    {
        return stringFrom("NSSegment" + std::to_string(index) + name);
    }
    static void code(const NumberCoding& number, Segment& segment, std::size_t i)
    {
        number(keyOf("Width", i).get(), segment.width);
        number(keyOf("Tag", i).get(), segment.tag);
        number(keyOf("Enabled", i).get(), segment.enabled);
        number(keyOf("Selected", i).get(), segment.selected);
    }
    static void encode(NSSegmentedCell& self, NSCoder* coder)
    {
        super<NSSegmentedCell, "encodeWithCoder:">(self, coder);
        coder->encodeInteger_forKey(count(self), "NSSegmentCount"_ns);
        coder->encodeInteger_forKey(static_cast<NSInteger>(self.mode_), "NSTrackingMode"_ns);
        coder->encodeInteger_forKey(self.last_, "NSSelectedSegment"_ns);
        for (std::size_t i = 0; i < self.segments_.size(); ++i) {
            Segment& segment = self.segments_[i];
            coder->encodeObject_forKey(segment.label.get(), keyOf("Label", i).get());
            coder->encodeObject_forKey(segment.image.get(), keyOf("Image", i).get());
            coder->encodeObject_forKey(segment.toolTip.get(), keyOf("ToolTip", i).get());
            code({ coder, false }, segment, i);
        }
    }
    static Ref<NSObject> initWithCoder(NSSegmentedCell& self, NSCoder* coder)
    {
        Ref<NSObject> made = super<NSSegmentedCell, "initWithCoder:", Ref<NSObject>>(self, coder);
        setCount(self, coder->decodeIntegerForKey("NSSegmentCount"_ns));
        setMode(self,
            static_cast<NSSegmentSwitchTracking>(coder->decodeIntegerForKey("NSTrackingMode"_ns)));
        const NSInteger last = coder->decodeIntegerForKey("NSSelectedSegment"_ns);
        self.last_ = last >= 0 && last < count(self) ? last : -1;
        for (std::size_t i = 0; i < self.segments_.size(); ++i) {
            Segment& segment = self.segments_[i];
            segment.label = decode<NSString>(coder, keyOf("Label", i).get());
            segment.image = decode<NSImage>(coder, keyOf("Image", i).get());
            segment.toolTip = decode<NSString>(coder, keyOf("ToolTip", i).get());
            code({ coder, true }, segment, i);
        }
        return made;
    }

    static void table(Builder& t)
    {
        using S = Segment;
        t.classMethods({ { "prefersTrackingUntilMouseUp", imp<prefersTrackingUntilMouseUp> } });
        t.methods({
            { "copyWithZone:", imp<copyWithZone> },
            { "segmentCount", imp<count> },
            { "setSegmentCount:", imp<setCount> },
            { "trackingMode", imp<mode> },
            { "setTrackingMode:", imp<setMode> },
            { "selectedSegment", imp<selected> },
            { "setSelectedSegment:", imp<setSelected> },
            { "selectSegmentWithTag:", imp<selectTag> },
            { "pressSegment:", imp<press> },
            { "isSelectedForSegment:", imp<get<&S::selected>> },
            { "setSelected:forSegment:", imp<choose> },
            { "labelForSegment:", imp<label> },
            { "setLabel:forSegment:", imp<setText<&S::label>> },
            { "imageForSegment:", imp<get<&S::image>> },
            { "setImage:forSegment:", imp<setImage> },
            { "toolTipForSegment:", imp<get<&S::toolTip>> },
            { "setToolTip:forSegment:", imp<setText<&S::toolTip>> },
            { "widthForSegment:", imp<get<&S::width>> },
            { "setWidth:forSegment:", imp<setWidth> },
            { "tagForSegment:", imp<get<&S::tag>> },
            { "setTag:forSegment:", imp<set<&S::tag, NSInteger>> },
            { "isEnabledForSegment:", imp<get<&S::enabled>> },
            { "setEnabled:forSegment:", imp<set<&S::enabled, bool>> },
            { "keySegment", imp<key> },
            { "setKeySegment:", imp<setKey> },
            { "makeNextSegmentKey", imp<nextKey> },
            { "makePreviousSegmentKey", imp<previousKey> },
            { "trackMouse:inRect:ofView:untilMouseUp:", imp<track> },
        });
        extendCoding<encode, initWithCoder>(t);
    }
};
BRINDLE_RECORD(NSSegmentedCell, Segments)

}
