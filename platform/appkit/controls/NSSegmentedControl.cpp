// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSSegmentedControl.h"

#include "appkit/NSApplication.h"
#include "appkit/NSEvent.h"
#include "appkit/NSImage.h"
#include "foundation/Exceptions.h"
#include "foundation/NSArray.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct NSSegmentedControl::Methods<struct Basics> {

    static void initialize(Class& self)
    {
        if (&self == static_cast<Class*>(NSSegmentedControl::cls()))
            NSSegmentedControl::cls().setCellClass(NSSegmentedCell::cls());
    }
    static Ref<NSSegmentedControl> withLabels(
        Class& self, NSArray* labels, NSSegmentSwitchTracking mode, NSObject* target, SEL action)
    {
        const Ref<NSSegmentedControl> made
            = cast<NSSegmentedControl>(NSObject::Meta { &self }.alloc()->init());
        made->setSegmentCount(static_cast<NSInteger>(maybe(labels)->count()));
        NSInteger index = 0;
        for (NSString* label : each<NSString>(Ref<NSArray>(labels)))
            made->setLabel_forSegment(label, index++);
        made->setTrackingMode(mode);
        made->setTarget(target);
        made->setAction(action);
        made->sizeToFit();
        return made;
    }

    // ---- what the cell does

    template <Text S, class R> static R ask(NSSegmentedControl& self)
    {
        return maybe(self.cell())->send<S, R>();
    }
    template <Text S, class R> static R askAt(NSSegmentedControl& self, NSInteger index)
    {
        return maybe(self.cell())->send<S, R>(index);
    }
    template <Text S, class T> static void tell(NSSegmentedControl& self, T value)
    {
        maybe(self.cell())->send<S>(value);
        resetTips(self);
        self.setNeedsDisplay(true);
    }
    template <Text S, class T>
    static void tellAt(NSSegmentedControl& self, T value, NSInteger index)
    {
        maybe(self.cell())->send<S>(value, index);
        resetTips(self);
        self.setNeedsDisplay(true);
    }
    static bool selectTag(NSSegmentedControl& self, NSInteger tag)
    {
        return askAt<"selectSegmentWithTag:", bool>(self, tag);
    }
    static Ref<NSSegmentedCell> segments(NSSegmentedControl& self)
    {
        const Ref<NSCell> cell = self.cell();
        return cell && cell->isKindOfClass(NSSegmentedCell::cls()) ? cast<NSSegmentedCell>(cell)
                                                                   : nullptr;
    }

    // ---- tips lie where the segments do

    static void resetTips(NSSegmentedControl& self)
    {
        for (const NSToolTipTag tag : std::exchange(self.tips_, {}))
            removeToolTip(self, tag);
        const Ref<NSSegmentedCell> cell = segments(self);
        for (NSInteger i = 0; i < maybe(cell)->segmentCount(); ++i) {
            if (const Ref<NSString> tip = self.toolTipForSegment(i))
                self.tips_.push_back(addToolTipRect_owner_userData(
                    self, cell->rectOfSegment_inFrame(i, self.bounds()), tip.get(), nullptr));
        }
    }
    // What is read from an archive has none yet.
    static void didMoveToWindow(NSSegmentedControl& self)
    {
        super<NSSegmentedControl, "viewDidMoveToWindow">(self);
        resetTips(self);
    }
    static void setFrameSize(NSSegmentedControl& self, NSSize size)
    {
        super<NSSegmentedControl, "setFrameSize:">(self, size);
        resetTips(self);
    }

    // ---- the keyboard

    static bool becomeFirstResponder(NSSegmentedControl& self)
    {
        const Ref<NSEvent> cause = NSApplication::cls().sharedApplication()->currentEvent();
        self.focusedByPointer_ = cause && cause->type() == NSLeftMouseDown;
        if (const Ref<NSSegmentedCell> cell = segments(self)) {
            const NSInteger chosen = cell->selectedSegment();
            cell->setKeySegment(self.focusedByPointer_ ? -1 : chosen < 0 ? 0 : chosen);
        }
        return super<NSSegmentedControl, "becomeFirstResponder", bool>(self);
    }
    static void press(NSSegmentedControl& self, NSSegmentedCell& cell)
    {
        const NSInteger key = cell.keySegment();
        if (key < 0 || !self.isEnabledForSegment(key))
            return;
        const Ref<NSSegmentedControl> alive(&self);
        cell.pressSegment(key);
        self.sendAction_to(self.action(), self.target().get());
    }
    static void move(NSSegmentedControl& self, NSSegmentedCell& cell, bool forward)
    {
        if (cell.keySegment() < 0)
            cell.setKeySegment(cell.selectedSegment());
        const NSInteger before = cell.keySegment();
        if (forward)
            cell.makeNextSegmentKey();
        else
            cell.makePreviousSegmentKey();
        if (cell.keySegment() != before && self.trackingMode() == NSSegmentSwitchTrackingSelectOne)
            press(self, cell);
    }
    static void keyDown(NSSegmentedControl& self, NSEvent* event)
    {
        const Ref<NSSegmentedCell> cell = segments(self);
        const Ref<NSString> typed = maybe(event)->charactersIgnoringModifiers();
        const unichar key = maybe(typed)->length() ? typed->characterAtIndex(0) : unichar {};
        if (!cell || !self.isEnabled())
            return super<NSSegmentedControl, "keyDown:">(self, event);
        switch (key) {
        case NSLeftArrowFunctionKey:
            return move(self, *cell, false);
        case NSRightArrowFunctionKey:
            return move(self, *cell, true);
        case u' ':
            return press(self, *cell);
        default:
            super<NSSegmentedControl, "keyDown:">(self, event);
        }
    }
    static bool yes(NSSegmentedControl&, NSEvent*) { return true; }

    static void table(Builder& t)
    {
        using Mode = NSSegmentSwitchTracking;
        t.classMethods({
            { "initialize", imp<initialize> },
            { "segmentedControlWithLabels:trackingMode:target:action:", imp<withLabels> },
        });
        t.methods({
            { "segmentCount", imp<ask<"segmentCount", NSInteger>> },
            { "setSegmentCount:", imp<tell<"setSegmentCount:", NSInteger>> },
            { "trackingMode", imp<ask<"trackingMode", Mode>> },
            { "setTrackingMode:", imp<tell<"setTrackingMode:", Mode>> },
            { "selectedSegment", imp<ask<"selectedSegment", NSInteger>> },
            { "setSelectedSegment:", imp<tell<"setSelectedSegment:", NSInteger>> },
            { "selectSegmentWithTag:", imp<selectTag> },
            { "isSelectedForSegment:", imp<askAt<"isSelectedForSegment:", bool>> },
            { "setSelected:forSegment:", imp<tellAt<"setSelected:forSegment:", bool>> },
            { "labelForSegment:", imp<askAt<"labelForSegment:", Ref<NSString>>> },
            { "setLabel:forSegment:", imp<tellAt<"setLabel:forSegment:", NSString*>> },
            { "imageForSegment:", imp<askAt<"imageForSegment:", Ref<NSImage>>> },
            { "setImage:forSegment:", imp<tellAt<"setImage:forSegment:", NSImage*>> },
            { "widthForSegment:", imp<askAt<"widthForSegment:", CGFloat>> },
            { "setWidth:forSegment:", imp<tellAt<"setWidth:forSegment:", CGFloat>> },
            { "isEnabledForSegment:", imp<askAt<"isEnabledForSegment:", bool>> },
            { "setEnabled:forSegment:", imp<tellAt<"setEnabled:forSegment:", bool>> },
            { "tagForSegment:", imp<askAt<"tagForSegment:", NSInteger>> },
            { "setTag:forSegment:", imp<tellAt<"setTag:forSegment:", NSInteger>> },
            { "toolTipForSegment:", imp<askAt<"toolTipForSegment:", Ref<NSString>>> },
            { "setToolTip:forSegment:", imp<tellAt<"setToolTip:forSegment:", NSString*>> },
            { "viewDidMoveToWindow", imp<didMoveToWindow> },
            { "setFrameSize:", imp<setFrameSize> },
            { "becomeFirstResponder", imp<becomeFirstResponder> },
            { "keyDown:", imp<keyDown> },
            { "acceptsFirstMouse:", imp<yes> },
        });
    }
};
BRINDLE_RECORD(NSSegmentedControl, Basics)

}
