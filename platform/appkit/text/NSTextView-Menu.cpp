// SPDX-License-Identifier: Apache-2.0
#include <utility>

#include "NSTextViewPrivate.h"
#include "appkit/NSMenu.h"
#include "appkit/NSMenuItem.h"
#include "appkit/NSWindow.h"
#include "appkit/application/PhrasesPrivate.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct NSTextView::Methods<struct EditMenu> {

    /// Answers a new menu; its items go to whatever has the keyboard, and are dimmed where they do nothing.
    static Ref<NSMenu> defaultMenu(Class&)
    {
        const Ref<NSMenu> menu = make<NSMenu>();
        const auto add = [&](NSString* title, SEL action) {
            menu->addItemWithTitle_action_keyEquivalent(phrase(title).get(), action, ""_ns);
        };
        const auto separate = [&] { menu->addItem(NSMenuItem::cls().separatorItem().get()); };
        add("Undo"_ns, selector<"undo:">);
        add("Redo"_ns, selector<"redo:">);
        separate();
        add("Cut"_ns, selector<"cut:">);
        add("Copy"_ns, selector<"copy:">);
        add("Paste"_ns, selector<"paste:">);
        add("Delete"_ns, selector<"delete:">);
        separate();
        add("Select All"_ns, selector<"selectAll:">);
        return menu;
    }
    static Ref<NSMenu> menuForEvent(NSTextView& self, NSEvent* event)
    {
        return self.isSelectable() ? super<NSTextView, "menuForEvent:", Ref<NSMenu>>(self, event)
                                   : self.menu();
    }

    static bool isSelected(NSTextView& self, NSPoint point)
    {
        for (const NSRect& rect : TextViewAccess::rectsOf(self, TextViewAccess::selection(self))) {
            if (NSPointInRect(point, rect))
                return true;
        }
        return false;
    }
    // What the menu is about: the selection where it was pressed on, else the word there.
    static void rightMouseDown(NSTextView& self, NSEvent* event)
    {
        const Ref<NSTextView> alive(&self);
        const Ref<NSEvent> press(event);
        const Ref<NSWindow> window = self.window();
        if (press && window && self.isSelectable()) {
            if (!window->isKeyWindow())
                window->makeKeyWindow(); // or the menu would act on somebody else's text
            if (window->firstResponder() != &self)
                window->makeFirstResponder(&self);
            const NSPoint point = self.convertPoint_fromView(press->locationInWindow(), nullptr);
            if (!isSelected(self, point))
                self.setSelectedRange(self.selectionRangeForProposedRange_granularity(
                    NSMakeRange(TextViewAccess::placeAt(self, point).index, 0), NSSelectByWord));
        }
        super<NSTextView, "rightMouseDown:">(self, event);
    }
    static NSRect anchor(NSTextView& self)
    {
        const NSRange selected = TextViewAccess::selection(self);
        const auto rects = TextViewAccess::rectsOf(self, selected);
        return selected.length && !rects.empty()
            ? rects.back()
            : TextViewAccess::caretRect(self, TextViewAccess::head(self));
    }

    static void table(Builder& t)
    {
        t.classMethods({ { "defaultMenu", imp<defaultMenu> } });
        t.methods({
            { "menuForEvent:", imp<menuForEvent> },
            { "rightMouseDown:", imp<rightMouseDown> },
            { "selectionAnchorRect", imp<anchor> },
        });
    }
};
BRINDLE_RECORD(NSTextView, EditMenu)

}
