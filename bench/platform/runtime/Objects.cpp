// SPDX-License-Identifier: Apache-2.0
#include "support/Hosts.h"
#include "support/Measure.h"
#include "support/Topics.h"

namespace brindle::bench {

namespace {

    Pair retainRelease()
    {
        const auto count = std::make_shared<std::atomic<std::intptr_t>>(1);
        return { repeated([host = make<Host>()](std::size_t) {
                    retain(host.get());
                    release(host.get());
                }),
            repeated([count](std::size_t) {
                count->fetch_add(1, std::memory_order_relaxed);
                if (count->fetch_sub(1, std::memory_order_acq_rel) == 1)
                    keep(count.get());
            }) };
    }

    Pair makeAndFree()
    {
        return { repeated([](std::size_t) { keep(make<SmallHost>().get()); }),
            repeated([](std::size_t) { keep(makeVirtualSmall().get()); }) };
    }

}

void addObjects(Plan& plan)
{
    plan.time("retain and release", timesFloor(1.1), retainRelease);
    plan.time("make and free an object", kNoBudget, makeAndFree);
}

}
