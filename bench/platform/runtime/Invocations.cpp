// SPDX-License-Identifier: Apache-2.0
#include "runtime/NSInvocation.h"
#include "runtime/Runtime.h"
#include "support/Hosts.h"
#include "support/Measure.h"
#include "support/Topics.h"

namespace brindle::bench {

namespace {

    // The floor of both is the message itself.
    Pair perform()
    {
        const Ref<Host> host = makeHosts(1)[0];
        return { repeated([host](std::size_t) { host->performSelector(selector<"poke">); }),
            repeated([host](std::size_t) { host->poke(); }) };
    }

    Pair invoke()
    {
        const Ref<Host> host = makeHosts(1)[0];
        const SEL sel = selector<"add:object:">;
        const Ref<NSInvocation> invocation = NSInvocation::cls().invocationWithMethodSignature(
            host->methodSignatureForSelector(sel).get());
        std::int64_t number = 3;
        invocation->setSelector(sel);
        invocation->setTarget(host.get());
        invocation->setArgument_atIndex(&number, 2);
        return { repeated([invocation](std::size_t) { invocation->invoke(); }),
            repeated([host](std::size_t) { keep(host->add(3, nullptr)); }) };
    }

}

void addInvocations(Plan& plan)
{
    plan.time("performSelector: beside the message", kNoBudget, perform);
    plan.time("NSInvocation invoke beside the message, two arguments", kNoBudget, invoke);
}

}
