// SPDX-License-Identifier: Apache-2.0
#include "GWLabel.h"

#include "appkit/NSParagraphStyle.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct GWLabel::Methods<struct Look> {

    static Ref<NSView> initWithFrame(GWLabel& self, NSRect frame)
    {
        if (!super<GWLabel, "initWithFrame:", Ref<NSView>>(self, frame))
            return nullptr;
        self.send<"_setup">();
        return &self;
    }
    static void awakeFromNib(GWLabel& self) { self.send<"_setup">(); }
    static void setup(GWLabel& self)
    {
        self.setBordered(false);
        self.setBezeled(false);
        self.setEditable(false);
        self.setSelectable(false);
        const Ref<NSCell> cell = self.cell();
        maybe(cell)->setScrollable(false);
        maybe(cell)->setUsesSingleLineMode(false);
        maybe(cell)->setLineBreakMode(NSLineBreakByWordWrapping);
        maybe(cell)->setWraps(true);
        maybe(cell)->setTruncatesLastVisibleLine(true);
    }
    static Ref<NSView> hitTest(GWLabel&, NSPoint) { return nullptr; }
    static bool isOpaque(GWLabel&) { return true; }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "awakeFromNib", imp<awakeFromNib> },
            { "_setup", imp<setup> },
            { "hitTest:", imp<hitTest> },
            { "isOpaque", imp<isOpaque> },
        });
    }
};
BRINDLE_RECORD(GWLabel, Look)

}
