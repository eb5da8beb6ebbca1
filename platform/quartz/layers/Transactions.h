// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <vector>

#include "CATransaction.h"
#include "foundation/NSMutableDictionary.h"

/// The inside of transactions, for what moves without being a layer.

namespace brindle {

/// One transaction, as long as anything waits for it.
struct BRINDLE_EXPORT TransactionGroup {
    double duration = 0.25;
    Ref<CAMediaTimingFunction> function;
    bool disablesActions = false;
    Block<void()> completion;
    Ref<NSMutableDictionary> others;
    std::size_t pending = 0; // movements that have not ended
    bool committed = false;

    /// Tells the host when nothing is left to wait for.
    void settle();
};

struct BRINDLE_EXPORT Transactions {
    /// Answers the innermost transaction of this thread.
    static TransactionGroup& current() { return *shared(); }
    static std::shared_ptr<TransactionGroup> shared();
    /// Counts a movement in all open transactions and answers them.
    static std::vector<std::shared_ptr<TransactionGroup>> enter();
    static void leave(std::vector<std::shared_ptr<TransactionGroup>>& groups);
};

}
