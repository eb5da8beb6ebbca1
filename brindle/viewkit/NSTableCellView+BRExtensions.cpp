// SPDX-License-Identifier: Apache-2.0
#include "NSTableCellView+BRExtensions.h"

#include "NSView+GWExtensions.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    struct CellExtensions {
        static bool isSelected(NSTableCellView& self)
        {
            const Ref<NSView> row = self.superview();
            return row && row->respondsToSelector(selector<"isSelected">)
                && row->send<"isSelected", bool>();
        }
        static NSBackgroundStyle relevantStyle(NSTableCellView& self)
        {
            return brindle::isSelected(self) ? NSBackgroundStyleDark : NSBackgroundStyleLight;
        }
        static Ref<NSColor> textColor(Class&, NSBackgroundStyle style)
        {
            NSColor::Meta colors = NSColor::cls();
            return style == NSBackgroundStyleDark ? colors.whiteColor() : colors.blackColor();
        }
        static Ref<NSTableView> superTableView(NSTableCellView& self)
        {
            return cast<NSTableView>(superviewOfClass(self, NSTableView::cls()));
        }
        static void table(Builder& t)
        {
            t.methods({
                { "isSelected", imp<isSelected> },
                { "relevantBackgroundStyle", imp<relevantStyle> },
                { "superTableView", imp<superTableView> },
            });
            t.classMethods({ { "textColorForBackgroundStyle:", imp<textColor> } });
        }
    };

}
BRINDLE_EXTENSION(NSTableCellView, CellExtensions)

}
