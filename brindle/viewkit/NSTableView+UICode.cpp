// SPDX-License-Identifier: Apache-2.0
#include "NSTableView+UICode.h"

#include "NSView+MovingAndSizing.h"
#include "foundation/NSLog.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    struct UICode {
        static Ref<NSTableView> initIncScrollView(NSTableView& self, Ref<NSScrollView>* scrollView)
        {
            const Ref<NSTableView> table = cast<NSTableView>(self.init());
            if (!table)
                return nullptr;
            const Ref<NSScrollView> around = make<NSScrollView>();
            around->addSubview(table.get());
            around->setDocumentView(table.get());
            NSLog("scrollView %@ enc: %@"_ns, around, table->enclosingScrollView());
            if (scrollView)
                *scrollView = around;
            table->setAutoresizingMask(NSViewWidthSizable | NSViewHeightSizable);
            const Ref<NSTableColumn> column = alloc<NSTableColumn>()->initWithIdentifier(" "_ns);
            column->setWidth(frameSizeWidth(table));
            table->addTableColumn(column.get());
            return table;
        }
        static void table(Builder& t)
        {
            t.methods({ { "initIncScrollView:", imp<initIncScrollView> } });
        }
    };

}
BRINDLE_EXTENSION(NSTableView, UICode)

}
