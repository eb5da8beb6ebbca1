// SPDX-License-Identifier: Apache-2.0
#include "runtime/Runtime.h"
#include "support/Hosts.h"
#include "support/Measure.h"
#include "support/Topics.h"

namespace brindle::bench {

namespace {

    /// Reads a property of an object, and the virtual function that does the same.
    template <class Read> Pair read(Read reader)
    {
        const auto hosts = makeHosts(1);
        hosts[0]->setPartner(hosts[1].get());
        hosts[0]->setGuarded(hosts[1].get());
        const std::shared_ptr<VirtualHost> floor = std::move(makeVirtualHosts(1)[0]);
        floor->object = hosts[1].get();
        return { repeated([host = hosts[0], reader](std::size_t) { reader(*host); }),
            repeated([floor, reader](std::size_t) { reader(*floor); }) };
    }

}

void addProperties(Plan& plan)
{
    plan.time("property get: scalar, nonatomic", timesFloor(1.45),
        [] { return read([](const auto& host) { keep(host.count()); }); });
    plan.time("property get: object, atomic", kNoBudget,
        [] { return read([](const auto& host) { keep(host.guarded().get()); }); });
    plan.time("property get: rectangle, atomic", kNoBudget,
        [] { return read([](const auto& host) { keep(host.frame().size.width); }); });
    plan.time("property found by name", kNoBudget, [] {
        return Pair { repeated([cls = hostClass(0)](
                                   std::size_t) { keep(class_getProperty(cls, "count")); }),
            {} };
    });
}

}
