// SPDX-License-Identifier: Apache-2.0
#include <random>

#include "runtime/Runtime.h"
#include "support/Hosts.h"
#include "support/Measure.h"
#include "support/Topics.h"

namespace brindle::bench {

namespace {

    constexpr std::size_t kPlaces = 4096; // long enough that no processor learns it by heart

    enum class Order { inTurn, random };

    std::vector<std::uint8_t> places(Order order)
    {
        std::vector<std::uint8_t> out(kPlaces);
        std::mt19937 random(20); // the same numbers in every run
        for (std::size_t i = 0; i < kPlaces; ++i)
            out[i] = static_cast<std::uint8_t>((order == Order::inTurn ? i : random()) % kObjects);
        return out;
    }

    /// Bare pointers in an order; the objects are kept beside them, so that both loops read the same way.
    template <class T, class Owners> std::vector<T*> inOrder(const Owners& owners, Order order)
    {
        std::vector<T*> out;
        for (const std::uint8_t place : places(order))
            out.push_back(owners[place].get());
        return out;
    }

    template <class T, class Owners> Sample pokeAll(Owners owners, Order order)
    {
        const auto alive = std::make_shared<Owners>(std::move(owners));
        return repeated([alive, objects = inOrder<T>(*alive, order)](
                            std::size_t i) { objects[i % kPlaces]->poke(); });
    }

    Pair sendPair(std::size_t classes, Order order)
    {
        return { pokeAll<Host>(makeHosts(classes), order),
            pokeAll<VirtualHost>(makeVirtualHosts(classes), order) };
    }

    Pair objectAnswer()
    {
        const auto hosts = makeHosts(1);
        hosts[0]->setPartner(hosts[1].get());
        auto virtualHosts = makeVirtualHosts(1);
        virtualHosts[0]->object = hosts[1].get();
        return { repeated([host = hosts[0]](std::size_t) { keep(host->partner().get()); }),
            repeated([host = std::shared_ptr<VirtualHost>(std::move(virtualHosts[0]))](
                         std::size_t) { keep(host->partner().get()); }) };
    }

    Pair superSend()
    {
        return { repeated([host = make<PoliteHost>()](std::size_t) { host->poke(); }),
            repeated([host = std::shared_ptr<VirtualHost>(makePoliteVirtualHost())](
                         std::size_t) { host->poke(); }) };
    }

    Pair sendToNil()
    {
        Ref<Host> nobody;
        keep(&nobody);
        return { repeated([nobody](std::size_t) { keep(maybe(nobody)->count()); }),
            repeated([host = std::shared_ptr<VirtualHost>(std::move(makeVirtualHosts(1)[0]))](
                         std::size_t) { keep(host->count()); }) };
    }

    double firstSends(std::size_t count)
    {
        std::vector<Ref<NSObject>> objects;
        for (std::size_t i = 0; i < count; ++i) {
            objects.push_back(Ref<NSObject>::adopt(class_createInstance(freshClass(Host::cls()))));
            objects.back()->hash(); // makes the class ready; its table still lacks `poke`
        }
        const Stopwatch watch;
        for (const Ref<NSObject>& object : objects)
            static_cast<Host*>(object.get())->poke();
        return watch.elapsed();
    }

}

void addMessages(Plan& plan)
{
    std::vector<std::string> cells;
    for (const std::size_t classes : { 1, 8, 64 }) {
        for (const Order order : { Order::inTurn, Order::random }) {
            const std::string name = "message: " + std::to_string(classes)
                + (classes == 1 ? " class, " : " classes, ")
                + (order == Order::inTurn ? "in order" : "at random");
            cells.push_back(name);
            plan.time(name, timesFloor(1.45), [=] { return sendPair(classes, order); });
        }
    }
    plan.mean("message: geometric mean of the six", timesFloor(1.25), cells);
    plan.time("message that answers an object", timesFloor(1.45), objectAnswer);
    plan.time("message to super", kNoBudget, superSend);
    plan.time("message to nil", kNoBudget, sendToNil);
    plan.time("first message of a selector to a class", kNoBudget, [] {
        return Pair { firstSends, {}, 256, 9 };
    });
}

}
