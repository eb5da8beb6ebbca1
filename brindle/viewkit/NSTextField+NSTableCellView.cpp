// SPDX-License-Identifier: Apache-2.0
#include "NSTextField+NSTableCellView.h"

#include "runtime/Table.h"

namespace brindle {

namespace {

    struct TableCellView {

        static Ref<NSTextFieldCell> textFieldCell(NSTextField& self)
        {
            return cast<NSTextFieldCell>(self.cell());
        }
        static NSBackgroundStyle backgroundStyle(NSTextField& self)
        {
            return maybe(brindle::textFieldCell(self))->backgroundStyle();
        }
        static void setBackgroundStyle(NSTextField& self, NSBackgroundStyle style)
        {
            maybe(brindle::textFieldCell(self))->setBackgroundStyle(style);
        }

        static void table(Builder& t)
        {
            t.methods({
                { "textFieldCell", imp<textFieldCell> },
                { "backgroundStyle", imp<backgroundStyle> },
                { "setBackgroundStyle:", imp<setBackgroundStyle> },
            });
        }
    };

}
BRINDLE_EXTENSION(NSTextField, TableCellView)

}
