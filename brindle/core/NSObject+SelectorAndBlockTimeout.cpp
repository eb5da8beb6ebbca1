// SPDX-License-Identifier: Apache-2.0
#include "NSObject+SelectorAndBlockTimeout.h"

#include "foundation/NSObject+DelayedPerforming.h"
#include "runtime/Runtime.h"

namespace brindle {

namespace {

    struct SelectorAndBlockTimeout {

        static constexpr SEL kTimeout = selector<"blockTimeout">;

        static void timeoutToSelector(NSObject& self, SEL sel, double delay)
        {
            cancelPreviousPerformRequestsWithTarget_selector_object(
                self.classObject(), &self, sel, nullptr);
            performSelector_withObject_afterDelay(self, sel, nullptr, delay);
        }

        static void timeoutToBlock(NSObject& self, Closure<void()>* code, double delay)
        {
            const Ref<NSObject> copy = maybe(code)->copy();
            objc_setAssociatedObject(
                &self, kTimeout.key(), copy.get(), OBJC_ASSOCIATION_RETAIN_NONATOMIC);
            timeoutToSelector(self, kTimeout, delay);
        }

        static void blockTimeout(NSObject& self)
        {
            const Ref<NSObject> code = objc_getAssociatedObject(&self, kTimeout.key());
            call(static_cast<Closure<void()>*>(code.get()));
        }

        static void table(Builder& t)
        {
            t.methods({
                { "timeoutToSelector:afterDelay:", imp<timeoutToSelector> },
                { "timeoutToBlock:afterDelay:", imp<timeoutToBlock> },
                { "blockTimeout", imp<blockTimeout> },
            });
        }
    };

}
BRINDLE_EXTENSION(NSObject, SelectorAndBlockTimeout)

}
