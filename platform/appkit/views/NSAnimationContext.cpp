// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSAnimationContext.h"

#include "PropertyMovementPrivate.h"
#include "foundation/NSNumber.h"
#include "quartz/layers/Transactions.h"
#include "runtime/NSException.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    NSString* allowsKey() { return "allowsImplicitAnimation"_ns; }

}

template <> struct NSAnimationContext::Methods<struct Groups> {

    static TransactionGroup& of(NSAnimationContext& self)
    {
        return self.group_ ? *self.group_ : Transactions::current();
    }

    static void beginGrouping(Class&)
    {
        CATransaction::cls().begin();
        PropertyMovements::hold();
    }
    // The movements start before the group ends, so that it waits for them.
    static void endGrouping(Class&)
    {
        if (PropertyMovements::letGo())
            CATransaction::cls().commit();
    }
    static Ref<NSAnimationContext> currentContext(Class&)
    {
        Ref<NSAnimationContext> context = make<NSAnimationContext>();
        context->group_ = Transactions::shared();
        return context;
    }
    static void run(Class& self, Closure<void(NSAnimationContext*)>* changes)
    {
        runWith(self, changes, nullptr);
    }
    static void runWith(
        Class&, Closure<void(NSAnimationContext*)>* changes, Closure<void()>* completion)
    {
        if (!changes)
            raise("NSInvalidArgumentException",
                "+[NSAnimationContext runAnimationGroup:completionHandler:]: the closure is nil");
        inAnimationGroup([&](NSAnimationContext& context) {
            context.group_->completion = completion;
            call(changes, &context);
        });
    }

    static NSTimeInterval duration(NSAnimationContext& self) { return of(self).duration; }
    static void setDuration(NSAnimationContext& self, NSTimeInterval seconds)
    {
        of(self).duration = seconds > 0 ? seconds : 0;
    }
    static Ref<CAMediaTimingFunction> function(NSAnimationContext& self)
    {
        return of(self).function;
    }
    static void setFunction(NSAnimationContext& self, CAMediaTimingFunction* function)
    {
        of(self).function = function;
    }
    static Block<void()> completion(NSAnimationContext& self) { return of(self).completion; }
    static void setCompletion(NSAnimationContext& self, Closure<void()>* handler)
    {
        of(self).completion = handler;
    }
    static bool allowsImplicit(NSAnimationContext& self)
    {
        return maybe(maybe(of(self).others)->objectForKey(allowsKey()))->send<"boolValue", bool>();
    }
    static void setAllowsImplicit(NSAnimationContext& self, bool allows)
    {
        TransactionGroup& group = of(self);
        if (!group.others)
            group.others = make<NSMutableDictionary>();
        group.others->setObject_forKey(NSNumber::cls().numberWithBool(allows).get(), allowsKey());
    }

    static void table(Builder& t)
    {
        t.classMethods({
            { "beginGrouping", imp<beginGrouping> },
            { "endGrouping", imp<endGrouping> },
            { "currentContext", imp<currentContext> },
            { "runAnimationGroup:", imp<run> },
            { "runAnimationGroup:completionHandler:", imp<runWith> },
        });
        t.methods({
            { "duration", imp<duration> },
            { "setDuration:", imp<setDuration> },
            { "timingFunction", imp<function> },
            { "setTimingFunction:", imp<setFunction> },
            { "completionHandler", imp<completion> },
            { "setCompletionHandler:", imp<setCompletion> },
            { "allowsImplicitAnimation", imp<allowsImplicit> },
            { "setAllowsImplicitAnimation:", imp<setAllowsImplicit> },
        });
    }
};
BRINDLE_RECORD(NSAnimationContext, Groups)

}
