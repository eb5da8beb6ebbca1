// SPDX-License-Identifier: Apache-2.0
#include "runtime/brindle.h"
#include "support/Hosts.h"
#include "support/Measure.h"
#include "support/Topics.h"

namespace brindle::bench {

namespace {

    // The floor of all is the message itself, as C++ sends it.
    Pair prepared()
    {
        const Ref<Host> host = makeHosts(1)[0];
        brindle_call* const call = brindle_makeCall("poke", "v@:", nullptr);
        const auto send = reinterpret_cast<void (*)(brindle_id, brindle_call*)>(call->code);
        return { repeated([host, send, call](std::size_t) {
                    send(reinterpret_cast<brindle_id>(host.get()), call);
                }),
            repeated([host](std::size_t) { host->poke(); }) };
    }

    Pair packed()
    {
        const Ref<Host> host = makeHosts(1)[0];
        const brindle_selector poke = brindle_selectorNamed("poke");
        return { repeated([host, poke](std::size_t) {
                    brindle_send(
                        reinterpret_cast<brindle_id>(host.get()), poke, "v@:", nullptr, nullptr);
                }),
            repeated([host](std::size_t) { host->poke(); }) };
    }

    void nothing(brindle_id, brindle_frame*) { }

    Pair body()
    {
        const brindle_class cls = brindle_makeClass(
            brindle_classOf(reinterpret_cast<brindle_id>(makeHosts(1)[0].get())), "HostInC");
        brindle_registerClass(cls);
        brindle_addMethod(cls, "poke", "v@:", reinterpret_cast<brindle_code>(&nothing), nullptr);
        const Ref<Host> inC
            = cast<Host>(reinterpret_cast<Class*>(cls)->send<"new", Ref<NSObject>>());
        const Ref<Host> host = makeHosts(1)[0];
        return { repeated([inC](std::size_t) { inC->poke(); }),
            repeated([host](std::size_t) { host->poke(); }) };
    }

}

void addCInterface(Plan& plan)
{
    plan.time("message out of C, prepared, beside the message", kNoBudget, prepared);
    plan.time("message out of C, packed, beside the message", kNoBudget, packed);
    plan.time("message to a method written in C, beside the message", kNoBudget, body);
}

}
