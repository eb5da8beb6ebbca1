// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSSearchField.h"

#include "appkit/NSEvent.h"
#include "appkit/NSText.h"
#include "foundation/NSNotification.h"
#include "foundation/NSRunLoop.h"
#include "foundation/NSTimer.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct NSSearchField::Methods<struct Searching> {

    static constexpr double kRest = 1.0 / 3;

    static void initialize(Class& self)
    {
        if (&self == static_cast<Class*>(NSSearchField::cls()))
            NSSearchField::cls().setCellClass(NSSearchFieldCell::cls());
    }
    static Ref<NSSearchFieldCell> searchCell(NSSearchField& self)
    {
        const Ref<NSCell> cell = self.cell();
        return cell && cell->isKindOfClass(NSSearchFieldCell::cls()) ? cast<NSSearchFieldCell>(cell)
                                                                     : nullptr;
    }
    template <Text S, class R> static R ask(NSSearchField& self)
    {
        return maybe(searchCell(self))->send<S, R>();
    }
    template <Text S, class T> static void tell(NSSearchField& self, T value)
    {
        maybe(searchCell(self))->send<S>(value);
    }

    // ---- sending

    static void stopRest(NSSearchField& self)
    {
        if (const Ref<NSTimer> rest = std::exchange(self.rest_, nullptr))
            rest->invalidate();
    }
    static void search(NSSearchField& self)
    {
        stopRest(self);
        const Ref<NSSearchField> alive(&self);
        self.sendAction_to(self.action(), self.target().get());
    }
    static void startRest(NSSearchField& self)
    {
        if (self.rest_)
            return self.rest_->restart(kRest);
        const WeakRef<NSSearchField> weak(&self);
        self.rest_
            = NSTimer::cls().timerWithTimeInterval_repeats_block(kRest, false, [weak](NSTimer*) {
                  if (const Ref<NSSearchField> field = weak.get())
                      search(*field);
              });
        NSRunLoop::cls().mainRunLoop()->addTimer_forMode(self.rest_.get(), NSRunLoopCommonModes);
    }
    static void didChange(NSSearchField& self, NSNotification* notification)
    {
        const Ref<NSSearchField> alive(&self);
        super<NSSearchField, "textDidChange:">(self, notification);
        self.setNeedsDisplay(true);
        if (self.sendsWholeSearchString())
            return;
        if (self.sendsSearchStringImmediately())
            search(self);
        else
            startRest(self);
    }
    static void didEnd(NSSearchField& self, NSNotification* notification)
    {
        stopRest(self);
        if (const Ref<NSSearchFieldCell> cell = searchCell(self))
            cell->addRecentSearch(self.stringValue().get());
        super<NSSearchField, "textDidEndEditing:">(self, notification);
    }
    static void dealloc(NSSearchField& self)
    {
        stopRest(self);
        super<NSSearchField, "dealloc">(self);
    }

    // ---- clearing

    static void clear(NSSearchField& self)
    {
        self.setStringValue(""_ns);
        self.setNeedsDisplay(true);
        search(self);
    }
    static bool cancel(NSSearchField& self, NSText* editor)
    {
        if (self.stringValue()->length() == 0)
            return super<NSSearchField, "cancelEditing:", bool>(self, editor);
        clear(self);
        return true;
    }
    static void mouseDown(NSSearchField& self, NSEvent* press)
    {
        const Ref<NSSearchFieldCell> cell = searchCell(self);
        const NSPoint point = self.convertPoint_fromView(maybe(press)->locationInWindow(), nullptr);
        const bool clears = press && cell && self.isEnabled() && self.isEditable()
            && NSPointInRect(point, cell->cancelButtonRectForBounds(self.bounds()));
        if (clears)
            clear(self);
        else
            super<NSSearchField, "mouseDown:">(self, press);
    }

    static void table(Builder& t)
    {
        t.classMethods({ { "initialize", imp<initialize> } });
        t.methods({
            { "dealloc", imp<dealloc> },
            { "textDidChange:", imp<didChange> },
            { "textDidEndEditing:", imp<didEnd> },
            { "cancelEditing:", imp<cancel> },
            { "mouseDown:", imp<mouseDown> },
            { "recentSearches", imp<ask<"recentSearches", Ref<NSArray>>> },
            { "setRecentSearches:", imp<tell<"setRecentSearches:", NSArray*>> },
            { "maximumRecents", imp<ask<"maximumRecents", NSInteger>> },
            { "setMaximumRecents:", imp<tell<"setMaximumRecents:", NSInteger>> },
            { "recentsAutosaveName", imp<ask<"recentsAutosaveName", Ref<NSString>>> },
            { "setRecentsAutosaveName:", imp<tell<"setRecentsAutosaveName:", NSString*>> },
            { "sendsWholeSearchString", imp<ask<"sendsWholeSearchString", bool>> },
            { "setSendsWholeSearchString:", imp<tell<"setSendsWholeSearchString:", bool>> },
            { "sendsSearchStringImmediately", imp<ask<"sendsSearchStringImmediately", bool>> },
            { "setSendsSearchStringImmediately:",
                imp<tell<"setSendsSearchStringImmediately:", bool>> },
        });
    }
};
BRINDLE_RECORD(NSSearchField, Searching)

}
