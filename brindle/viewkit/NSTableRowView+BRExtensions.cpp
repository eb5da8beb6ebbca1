// SPDX-License-Identifier: Apache-2.0
#include "NSTableRowView+BRExtensions.h"

#include "NSView+GWExtensions.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    struct RowExtensions {
        static Ref<NSTableView> superTableView(NSTableRowView& self)
        {
            return cast<NSTableView>(superviewOfClass(self, NSTableView::cls()));
        }
        static void table(Builder& t) { t.methods({ { "superTableView", imp<superTableView> } }); }
    };

}
BRINDLE_EXTENSION(NSTableRowView, RowExtensions)

}
