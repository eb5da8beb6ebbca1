// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSPopUpButton.h"

#include "appkit/NSEvent.h"
#include "appkit/NSMenu.h"
#include "foundation/NSArray.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct NSPopUpButton::Methods<struct Basics> {

    static void initialize(Class& self)
    {
        if (&self == static_cast<Class*>(NSPopUpButton::cls()))
            NSPopUpButton::cls().setCellClass(NSPopUpButtonCell::cls());
    }
    static Ref<NSPopUpButton> initPullsDown(NSPopUpButton& self, NSRect frame, bool pullsDown)
    {
        const Ref<NSView> made = self.initWithFrame(frame);
        if (made)
            self.setPullsDown(pullsDown);
        return made ? &self : nullptr;
    }

    // ---- what the cell does

    template <Text S, class R, class... A> static R ask(NSPopUpButton& self, A... arguments)
    {
        return maybe(self.cell())->send<S, R>(arguments...);
    }
    template <Text S, class... A> static void tell(NSPopUpButton& self, A... arguments)
    {
        maybe(self.cell())->send<S>(arguments...);
        self.setNeedsDisplay(true);
    }
    static NSInteger selectedTag(NSPopUpButton& self)
    {
        const Ref<NSMenuItem> item = self.selectedItem();
        return item ? item->tag() : -1;
    }

    static void keyDown(NSPopUpButton& self, NSEvent* event)
    {
        const Ref<NSString> typed = maybe(event)->charactersIgnoringModifiers();
        const unichar key = maybe(typed)->length() ? typed->characterAtIndex(0) : unichar {};
        if (key == NSUpArrowFunctionKey || key == NSDownArrowFunctionKey)
            self.performClick(&self);
        else
            super<NSPopUpButton, "keyDown:">(self, event);
    }

    static void table(Builder& t)
    {
        t.classMethods({ { "initialize", imp<initialize> } });
        t.methods({
            { "initWithFrame:pullsDown:", imp<initPullsDown> },
            { "keyDown:", imp<keyDown> },
            { "menu", imp<ask<"menu", Ref<NSMenu>>> },
            { "setMenu:", imp<tell<"setMenu:", NSMenu*>> },
            { "pullsDown", imp<ask<"pullsDown", bool>> },
            { "setPullsDown:", imp<tell<"setPullsDown:", bool>> },
            { "autoenablesItems", imp<ask<"autoenablesItems", bool>> },
            { "setAutoenablesItems:", imp<tell<"setAutoenablesItems:", bool>> },
            { "preferredEdge", imp<ask<"preferredEdge", NSRectEdge>> },
            { "setPreferredEdge:", imp<tell<"setPreferredEdge:", NSRectEdge>> },
            { "addItemWithTitle:", imp<tell<"addItemWithTitle:", NSString*>> },
            { "addItemsWithTitles:", imp<tell<"addItemsWithTitles:", NSArray*>> },
            { "insertItemWithTitle:atIndex:",
                imp<tell<"insertItemWithTitle:atIndex:", NSString*, NSInteger>> },
            { "removeItemWithTitle:", imp<tell<"removeItemWithTitle:", NSString*>> },
            { "removeItemAtIndex:", imp<tell<"removeItemAtIndex:", NSInteger>> },
            { "removeAllItems", imp<tell<"removeAllItems">> },
        });
        t.methods({
            { "itemArray", imp<ask<"itemArray", Ref<NSArray>>> },
            { "numberOfItems", imp<ask<"numberOfItems", NSInteger>> },
            { "itemTitles", imp<ask<"itemTitles", Ref<NSArray>>> },
            { "itemTitleAtIndex:", imp<ask<"itemTitleAtIndex:", Ref<NSString>, NSInteger>> },
            { "itemAtIndex:", imp<ask<"itemAtIndex:", Ref<NSMenuItem>, NSInteger>> },
            { "itemWithTitle:", imp<ask<"itemWithTitle:", Ref<NSMenuItem>, NSString*>> },
            { "lastItem", imp<ask<"lastItem", Ref<NSMenuItem>>> },
            { "indexOfItem:", imp<ask<"indexOfItem:", NSInteger, NSMenuItem*>> },
            { "indexOfItemWithTitle:", imp<ask<"indexOfItemWithTitle:", NSInteger, NSString*>> },
            { "indexOfItemWithTag:", imp<ask<"indexOfItemWithTag:", NSInteger, NSInteger>> },
            { "indexOfItemWithRepresentedObject:",
                imp<ask<"indexOfItemWithRepresentedObject:", NSInteger, NSObject*>> },
            { "indexOfItemWithTarget:andAction:",
                imp<ask<"indexOfItemWithTarget:andAction:", NSInteger, NSObject*, SEL>> },
            { "selectItem:", imp<tell<"selectItem:", NSMenuItem*>> },
            { "selectItemAtIndex:", imp<tell<"selectItemAtIndex:", NSInteger>> },
            { "selectItemWithTitle:", imp<tell<"selectItemWithTitle:", NSString*>> },
            { "selectItemWithTag:", imp<ask<"selectItemWithTag:", bool, NSInteger>> },
            { "selectedItem", imp<ask<"selectedItem", Ref<NSMenuItem>>> },
            { "indexOfSelectedItem", imp<ask<"indexOfSelectedItem", NSInteger>> },
            { "selectedTag", imp<selectedTag> },
            { "titleOfSelectedItem", imp<ask<"titleOfSelectedItem", Ref<NSString>>> },
            { "synchronizeTitleAndSelectedItem", imp<tell<"synchronizeTitleAndSelectedItem">> },
        });
    }
};
BRINDLE_RECORD(NSPopUpButton, Basics)

}
