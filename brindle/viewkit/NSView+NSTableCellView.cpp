// SPDX-License-Identifier: Apache-2.0
#include "NSView+NSTableCellView.h"

#include "NSView+GWExtensions.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    struct TableCellView {
        static Ref<NSView> tableCellView(NSView& self)
        {
            return superviewOfClass(self, objc_getClass("NSTableCellView"));
        }
        static void table(Builder& t) { t.methods({ { "tableCellView", imp<tableCellView> } }); }
    };

}
BRINDLE_EXTENSION(NSView, TableCellView)

}
