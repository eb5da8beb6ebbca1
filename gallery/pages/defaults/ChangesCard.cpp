// SPDX-License-Identifier: Apache-2.0
#include "ChangesCard.h"

#include "foundation/NSNotificationCenter.h"
#include "foundation/NSUserDefaults.h"
#include "kit/Figure.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct ChangesCard::Methods<struct Counting> {

    static Ref<NSView> initWithFrame(ChangesCard& self, NSRect frame)
    {
        self.setHeading("Changes"_ns);
        self.setCaption("NSUserDefaultsDidChangeNotification"_ns);
        self.toggleChip_
            = addChip(&self, "Change the cell"_ns, "c"_ns, sending<"changeCell">(&self));
        NSNotificationCenter::cls().defaultCenter()->addObserver_selector_name_object(
            &self, selector<"defaultsChanged">, NSUserDefaultsDidChangeNotification, nullptr);
        return super<ChangesCard, "initWithFrame:", Ref<NSView>>(self, frame);
    }

    static void setFrameSize(ChangesCard& self, NSSize size)
    {
        super<ChangesCard, "setFrameSize:">(self, size);
        layOutChips({ self.toggleChip_.get() }, { 16, size.height - 44 });
    }

    static void defaultsChanged(ChangesCard& self)
    {
        ++self.changes_;
        self.setNeedsDisplay(true);
    }

    static void changeCell(ChangesCard& self) { maybe(self.superview())->send<"changeCell">(); }

    static void drawBody(ChangesCard& self, NSRect body)
    {
        const auto figure = NSString::cls().stringWithFormat(
            self.changes_ == 1 ? "%ld change"_ns : "%ld changes"_ns, self.changes_);
        drawFigure(figure.get(), "noticed since the page opened"_ns, body);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "setFrameSize:", imp<setFrameSize> },
            { "defaultsChanged", imp<defaultsChanged> },
            { "changeCell", imp<changeCell> },
            { "drawBody:", imp<drawBody> },
        });
    }
};
BRINDLE_RECORD(ChangesCard, Counting)

}
