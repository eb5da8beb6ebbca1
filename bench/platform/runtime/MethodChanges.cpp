// SPDX-License-Identifier: Apache-2.0
#include "runtime/Runtime.h"
#include "support/Hosts.h"
#include "support/Measure.h"
#include "support/Topics.h"

namespace brindle::bench {

namespace {

    void doNothing(NSObject*, SEL) { }

    double addMethods(std::size_t count)
    {
        std::vector<SEL> selectors;
        for (std::size_t i = 0; i < count; ++i)
            selectors.push_back(sel_registerName(("operation" + std::to_string(i)).c_str()));
        Class* const cls = freshClass(Host::cls());
        const Stopwatch watch;
        for (const SEL sel : selectors)
            class_addMethod(cls, sel, reinterpret_cast<IMP>(&doNothing), "v@:");
        return watch.elapsed();
    }

    /// A class with two operations, and ten classes under it that have sent both.
    Pair exchange()
    {
        Class* const top = freshClass(Host::cls());
        class_addMethod(top, selector<"poke">, reinterpret_cast<IMP>(&doNothing), "v@:");
        class_addMethod(top, selector<"prod">, reinterpret_cast<IMP>(&doNothing), "v@:");
        for (int i = 0; i < 10; ++i) {
            const auto object = Ref<NSObject>::adopt(class_createInstance(freshClass(top)));
            object->send<"poke">();
            object->send<"prod">();
        }
        Method* const poke = class_getInstanceMethod(top, selector<"poke">);
        Method* const prod = class_getInstanceMethod(top, selector<"prod">);
        return { repeated([=](std::size_t) { method_exchangeImplementations(poke, prod); }), {} };
    }

}

void addMethodChanges(Plan& plan)
{
    plan.time("class_addMethod", kNoBudget, [] { return Pair { addMethods, {}, 256, 9 }; });
    plan.time("method_exchangeImplementations, 10 descendant classes", kNoBudget, exchange);
}

}
