// SPDX-License-Identifier: Apache-2.0
#include "NSTableView+BRExtensions.h"

#include "appkit/NSAnimationContext.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    /// A group of changes that show at once.
    class WithoutAnimation {
    public:
        WithoutAnimation()
        {
            context_.beginGrouping();
            context_.currentContext()->setDuration(0);
        }
        ~WithoutAnimation() { context_.endGrouping(); }
        WithoutAnimation(const WithoutAnimation&) = delete;
        WithoutAnimation& operator=(const WithoutAnimation&) = delete;

    private:
        NSAnimationContext::Meta context_ = NSAnimationContext::cls();
    };

    struct TableExtensions {
        static void noteHeights(NSTableView& self, NSIndexSet* rows)
        {
            const WithoutAnimation scope;
            self.noteHeightOfRowsWithIndexesChanged(rows);
        }
        static void table(Builder& t)
        {
            t.methods(
                { { "noteHeightOfRowsWithIndexesChangedWithoutAnimation:", imp<noteHeights> } });
        }
    };

}
BRINDLE_EXTENSION(NSTableView, TableExtensions)

}
