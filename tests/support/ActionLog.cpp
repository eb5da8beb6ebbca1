// SPDX-License-Identifier: Apache-2.0
#include "support/ActionLog.h"

#include "runtime/Table.h"

namespace brindle {

void ActionLog::setReaction(std::function<void(NSObject*)> reaction)
{
    reaction_ = std::move(reaction);
}

template <> struct ActionLog::Methods<struct Actions> {
    static void act(ActionLog& self, NSObject* sender)
    {
        ++self.count_;
        self.sender_ = sender;
        if (self.reaction_)
            self.reaction_(sender);
    }
    static void table(Builder& t) { t.methods({ { "act:", imp<act> } }); }
};
BRINDLE_RECORD(ActionLog, Actions)

}
