// SPDX-License-Identifier: Apache-2.0
#include "CATransaction.h"

#include <utility>

#include "AllServedPrivate.h"
#include "Transactions.h"
#include "foundation/NSNumber.h"
#include "foundation/NSRunLoop.h"
#include "foundation/NSThread.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    /// The open transactions of a thread, outermost first. The first one belongs to nobody.
    struct Stack {
        std::vector<std::shared_ptr<TransactionGroup>> groups;
        bool waits = false; // for the end of the turn
    };

    Stack& stack()
    {
        static thread_local Stack open;
        return open;
    }

    void end(const std::shared_ptr<TransactionGroup>& group)
    {
        group->committed = true;
        group->settle();
    }

    void endOutermost()
    {
        auto& groups = stack().groups;
        if (groups.empty() || groups.size() > 1)
            return; // one that is open keeps it
        const std::shared_ptr<TransactionGroup> group = groups.front();
        groups.clear();
        end(group);
    }

    void endWithTheTurn()
    {
        if (!NSThread::cls().isMainThread() || std::exchange(stack().waits, true))
            return;
        NSRunLoop::cls().mainRunLoop()->performBlock([] {
            stack().waits = false;
            endOutermost();
        });
    }

    void ensureOutermost()
    {
        auto& groups = stack().groups;
        if (!groups.empty())
            return;
        groups.push_back(std::make_shared<TransactionGroup>());
        endWithTheTurn();
    }

}

void TransactionGroup::settle()
{
    if (!committed || pending > 0)
        return;
    const Block<void()> block = std::exchange(completion, {});
    if (block)
        block();
}

std::shared_ptr<TransactionGroup> Transactions::shared()
{
    ensureOutermost();
    return stack().groups.back();
}

std::vector<std::shared_ptr<TransactionGroup>> Transactions::enter()
{
    ensureOutermost();
    for (const auto& group : stack().groups)
        ++group->pending;
    return stack().groups;
}

void Transactions::leave(std::vector<std::shared_ptr<TransactionGroup>>& groups)
{
    const auto left = std::exchange(groups, {});
    AllServed all;
    for (const auto& group : left) {
        --group->pending;
        all.serve([&] { group->settle(); });
    }
    all.end();
}

template <> struct CATransaction::Methods<struct Groups> {

    static void begin(Class&)
    {
        const TransactionGroup& outer = Transactions::current();
        auto group = std::make_shared<TransactionGroup>();
        group->duration = outer.duration;
        group->function = outer.function;
        group->disablesActions = outer.disablesActions;
        if (outer.others)
            group->others = cast<NSMutableDictionary>(outer.others->mutableCopy());
        stack().groups.push_back(std::move(group));
    }
    static void commit(Class&)
    {
        auto& groups = stack().groups;
        if (groups.size() < 2)
            return;
        const std::shared_ptr<TransactionGroup> group = groups.back();
        groups.pop_back();
        if (groups.size() == 1)
            endWithTheTurn();
        end(group);
    }
    static void flush(Class&) { endOutermost(); }

    static NSTimeInterval duration(Class&) { return Transactions::current().duration; }
    static void setDuration(Class&, NSTimeInterval seconds)
    {
        Transactions::current().duration = seconds > 0 ? seconds : 0;
    }
    static Ref<CAMediaTimingFunction> function(Class&) { return Transactions::current().function; }
    static void setFunction(Class&, CAMediaTimingFunction* function)
    {
        Transactions::current().function = function;
    }
    static bool disableActions(Class&) { return Transactions::current().disablesActions; }
    static void setDisableActions(Class&, bool disables)
    {
        Transactions::current().disablesActions = disables;
    }
    static Block<void()> completion(Class&) { return Transactions::current().completion; }
    static void setCompletion(Class&, Closure<void()>* block)
    {
        Transactions::current().completion = block;
    }

    static Ref<NSObject> valueForKey(Class&, NSString* key)
    {
        TransactionGroup& group = Transactions::current();
        if (!key)
            return nullptr;
        if (key->isEqual(kCATransactionAnimationDuration))
            return NSNumber::cls().numberWithDouble(group.duration);
        if (key->isEqual(kCATransactionDisableActions))
            return NSNumber::cls().numberWithBool(group.disablesActions);
        if (key->isEqual(kCATransactionAnimationTimingFunction))
            return group.function;
        if (key->isEqual(kCATransactionCompletionBlock))
            return group.completion;
        return maybe(group.others)->objectForKey(key);
    }
    template <class T> static T* as(NSObject* value)
    {
        return value && value->isKindOfClass(T::cls()) ? static_cast<T*>(value) : nullptr;
    }
    static void setValueForKey(Class& self, NSObject* value, NSString* key)
    {
        TransactionGroup& group = Transactions::current();
        if (!key)
            return;
        if (key->isEqual(kCATransactionAnimationDuration))
            setDuration(self, maybe(as<NSNumber>(value))->send<"doubleValue", double>());
        else if (key->isEqual(kCATransactionDisableActions))
            group.disablesActions = maybe(as<NSNumber>(value))->send<"boolValue", bool>();
        else if (key->isEqual(kCATransactionAnimationTimingFunction))
            group.function = as<CAMediaTimingFunction>(value);
        else if (key->isEqual(kCATransactionCompletionBlock))
            group.completion = value && value->isKindOfClass(closureClass())
                ? static_cast<Closure<void()>*>(static_cast<ClosureBase*>(value))
                : nullptr;
        else {
            if (!group.others)
                group.others = make<NSMutableDictionary>();
            if (value)
                group.others->setObject_forKey(value, key);
            else
                group.others->removeObjectForKey(key);
        }
    }

    static void table(Builder& t)
    {
        t.classMethods({
            { "begin", imp<begin> },
            { "commit", imp<commit> },
            { "flush", imp<flush> },
            { "animationDuration", imp<duration> },
            { "setAnimationDuration:", imp<setDuration> },
            { "animationTimingFunction", imp<function> },
            { "setAnimationTimingFunction:", imp<setFunction> },
            { "disableActions", imp<disableActions> },
            { "setDisableActions:", imp<setDisableActions> },
            { "completionBlock", imp<completion> },
            { "setCompletionBlock:", imp<setCompletion> },
            { "valueForKey:", imp<valueForKey> },
            { "setValue:forKey:", imp<setValueForKey> },
        });
    }
};
BRINDLE_RECORD(CATransaction, Groups)

}
