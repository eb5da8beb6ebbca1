// SPDX-License-Identifier: Apache-2.0
#include "foundation/NSNumber.h"
#include "foundation/NSObject+KeyValueCoding.h"
#include "support/Hosts.h"
#include "support/Measure.h"
#include "support/Topics.h"

namespace brindle::bench {

namespace {

    /// An object whose properties are reached by name, and the same behind virtual functions.
    struct Named {
        Ref<Host> host = makeHosts(1)[0];
        Ref<NSObject> value = makeHosts(1)[1];
        Ref<NSNumber> number = NSNumber::cls().numberWithInteger(1);
        std::shared_ptr<VirtualHost> floor = std::move(makeVirtualHosts(1)[0]);

        Named()
        {
            host->setPartner(value.get());
            floor->object = value;
        }
    };

    template <class Ours, class Floor> Pair named(Ours ours, Floor floor)
    {
        const auto all = std::make_shared<Named>();
        return { repeated([all, ours](std::size_t i) { ours(*all, i); }),
            repeated([all, floor](std::size_t i) { floor(*all, i); }) };
    }

    void readFloor(const Named& all, std::size_t) { bench::keep(all.floor->count()); }

}

void addKeyValueCoding(Plan& plan)
{
    plan.time("key-value read: scalar, typed", atMost(20), [] {
        return named(
            [](Named& all, std::size_t) {
                keep(valueForKeyAs<std::int64_t>(all.host.get(), "count"_ns));
            },
            readFloor);
    });
    plan.time("key-value read: scalar, boxed", atMost(50), [] {
        return named([](Named& all, std::size_t) { keep(valueForKey(all.host, "count"_ns).get()); },
            readFloor);
    });
    plan.time("key-value read: object", kNoBudget, [] {
        return named(
            [](Named& all, std::size_t) { keep(valueForKey(all.host, "partner"_ns).get()); },
            [](Named& all, std::size_t) { keep(all.floor->partner().get()); });
    });
    plan.time("key-value write: scalar", kNoBudget, [] {
        return named([](Named& all,
                         std::size_t) { setValue_forKey(all.host, all.number.get(), "count"_ns); },
            [](Named& all, std::size_t i) {
                keep(all.floor->add(static_cast<std::int64_t>(i), nullptr));
            });
    });
    plan.time("key-value write: object", kNoBudget, [] {
        return named([](Named& all,
                         std::size_t) { setValue_forKey(all.host, all.value.get(), "partner"_ns); },
            [](Named& all, std::size_t) {
                Ref<NSObject> fresh = all.value;
                fresh.swap(all.floor->object);
                keep(all.floor->count());
            });
    });
}

}
