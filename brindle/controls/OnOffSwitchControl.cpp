// SPDX-License-Identifier: Apache-2.0
#include "OnOffSwitchControl.h"

#include "OnOffSwitchControlCell.h"
#include "foundation/NSBeep.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct OnOffSwitchControl::Methods<struct Basics> {

    static void initialize(Class& self)
    {
        self.send<"setCellClass:">(static_cast<Class*>(OnOffSwitchControlCell::cls()));
    }
    static void awakeFromNib(OnOffSwitchControl& self)
    {
        self.classObject()->send<"setCellClass:">(
            static_cast<Class*>(OnOffSwitchControlCell::cls()));
    }

    // ---- arrow keys: the press is kept, the release moves the thumb

    static unichar keyOf(NSEvent* event)
    {
        const Ref<NSString> typed = maybe(event)->characters();
        return typed && typed->length() > 0 ? typed->characterAtIndex(0) : unichar {};
    }
    static void keyDown(OnOffSwitchControl& self, NSEvent* event)
    {
        const unichar key = keyOf(event);
        if (key != NSLeftArrowFunctionKey && key != NSRightArrowFunctionKey)
            super<OnOffSwitchControl, "keyDown:">(self, event);
    }
    /// - from, to: the ends of the way that the key points along.
    static void move(OnOffSwitchControl& self, NSCellStateValue from, NSCellStateValue to)
    {
        const NSCellStateValue state = self.state();
        if (state == from)
            self.setState(self.allowsMixedState() ? NSMixedState : to);
        else if (state == NSMixedState)
            self.setState(to);
        else if (state == to)
            NSBeep();
    }
    static void keyUp(OnOffSwitchControl& self, NSEvent* event)
    {
        switch (keyOf(event)) {
        case NSRightArrowFunctionKey:
            return move(self, NSOffState, NSOnState);
        case NSLeftArrowFunctionKey:
            return move(self, NSOnState, NSOffState);
        default:
            super<OnOffSwitchControl, "keyUp:">(self, event);
        }
    }

    static void table(Builder& t)
    {
        t.classMethods({ { "initialize", imp<initialize> } });
        t.methods({
            { "awakeFromNib", imp<awakeFromNib> },
            { "keyDown:", imp<keyDown> },
            { "keyUp:", imp<keyUp> },
        });
    }
};
BRINDLE_RECORD(OnOffSwitchControl, Basics)

}
