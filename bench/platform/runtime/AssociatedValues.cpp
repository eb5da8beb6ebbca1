// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cstdlib>
#include <random>

#include "runtime/Runtime.h"
#include "support/Hosts.h"
#include "support/Measure.h"
#include "support/Memory.h"
#include "support/Topics.h"

namespace brindle::bench {

namespace {

    constexpr std::size_t kMany = 1'000'000;
    // 12 ns where a bare read takes 1.2 and a spin lock round a retain 7.1.
    constexpr double kOwnedLimit = 12.0 / (1.2 + 7.1);
    constexpr objc_AssociationPolicy kAssign = OBJC_ASSOCIATION_ASSIGN;
    constexpr objc_AssociationPolicy kAtomic = OBJC_ASSOCIATION_RETAIN;

    const void* key()
    {
        static const char address = 0;
        return &address;
    }

    /// What keeps one value beside an object with the least: a block that hangs on the object, put there in one
    /// step because another thread may be doing the same.
    struct Block {
        const void* key;
        NSObject* value;
        Block* next;
    };
    struct Bare {
        std::atomic<Block*> first { nullptr };
        std::atomic<bool> locked { false };
        std::int64_t words[2] {}; // as large as the object it stands for
    };

    void attach(Bare& bare, NSObject* value)
    {
        auto* const block = static_cast<Block*>(std::malloc(sizeof(Block)));
        *block = { key(), value, bare.first.load(std::memory_order_relaxed) };
        while (!bare.first.compare_exchange_weak(block->next, block, std::memory_order_release)) { }
    }

    // Behind a call, as anything is that a library answers.
    [[gnu::noinline]] NSObject* find(const Bare& bare)
    {
        const Block* block = bare.first.load(std::memory_order_acquire);
        while (block && block->key != key())
            block = block->next;
        return block ? block->value : nullptr;
    }

    [[gnu::noinline]] Ref<NSObject> findOwned(Bare& bare)
    {
        while (bare.locked.exchange(true, std::memory_order_acquire)) { }
        Ref<NSObject> value(find(bare));
        bare.locked.store(false, std::memory_order_release);
        return value;
    }

    struct BareObjects {
        explicit BareObjects(std::size_t count)
        {
            for (std::size_t i = 0; i < count; ++i)
                objects.push_back(std::make_unique<Bare>());
        }
        ~BareObjects()
        {
            for (const auto& object : objects)
                std::free(object->first.load());
        }
        BareObjects(const BareObjects&) = delete;
        BareObjects& operator=(const BareObjects&) = delete;

        std::vector<std::unique_ptr<Bare>> objects;
    };

    std::vector<Ref<SmallHost>> makeSmallHosts(std::size_t count)
    {
        std::vector<Ref<SmallHost>> objects(count);
        for (Ref<SmallHost>& object : objects)
            object = make<SmallHost>();
        return objects;
    }

    Pair firstSet(objc_AssociationPolicy policy)
    {
        const Ref<NSObject> value = make<NSObject>();
        const bool retains = policy != kAssign;
        const auto ours = [=](std::size_t count) {
            const auto objects = makeSmallHosts(count);
            const Stopwatch watch;
            for (const auto& object : objects)
                objc_setAssociatedObject(object.get(), key(), value.get(), policy);
            return watch.elapsed();
        };
        const auto floor = [=](std::size_t count) {
            const BareObjects bare(count);
            const Stopwatch watch;
            for (const auto& object : bare.objects) {
                if (retains)
                    retain(value.get());
                attach(*object, value.get());
            }
            const double elapsed = watch.elapsed();
            for (std::size_t i = 0; retains && i < count; ++i)
                release(value.get());
            return elapsed;
        };
        return { ours, floor, 20'000 };
    }

    struct Readers {
        Ref<NSObject> value = make<NSObject>();
        std::vector<Ref<SmallHost>> objects;
        BareObjects bare;
        std::vector<std::uint32_t> order;

        Readers(std::size_t count, objc_AssociationPolicy policy)
            : objects(makeSmallHosts(count))
            , bare(count)
        {
            for (std::size_t i = 0; i < count; ++i) {
                objc_setAssociatedObject(objects[i].get(), key(), value.get(), policy);
                attach(*bare.objects[i], value.get());
                order.push_back(static_cast<std::uint32_t>(i));
            }
            std::mt19937 random(20);
            std::shuffle(order.begin(), order.end(), random);
        }
        std::size_t at(std::size_t i) const { return order.size() == 1 ? 0 : order[i % kMany]; }
    };

    Pair readUnretained(std::size_t count)
    {
        const auto all = std::make_shared<Readers>(count, kAssign);
        return { repeated([all](std::size_t i) {
                    keep(objc_borrowAssociatedObject(all->objects[all->at(i)].get(), key()));
                }),
            repeated([all](std::size_t i) { keep(find(*all->bare.objects[all->at(i)])); }) };
    }

    Pair readOwned(std::size_t count)
    {
        const auto all = std::make_shared<Readers>(count, kAtomic);
        return { repeated([all](std::size_t i) {
                    keep(objc_getAssociatedObject(all->objects[all->at(i)].get(), key()).get());
                }),
            repeated(
                [all](std::size_t i) { keep(findOwned(*all->bare.objects[all->at(i)]).get()); }) };
    }

    Reading memory()
    {
        const Ref<NSObject> value = make<NSObject>();
        const auto objects = makeSmallHosts(kMany);
        const BareObjects bare(kMany);
        const double before = heapInUse();
        for (const auto& object : objects)
            objc_setAssociatedObject(object.get(), key(), value.get(), kAtomic);
        const double between = heapInUse();
        for (const auto& object : bare.objects)
            attach(*object, value.get());
        const double after = heapInUse();
        constexpr auto kCount = static_cast<double>(kMany);
        return { (between - before) / kCount, (after - between) / kCount };
    }

}

void addAssociatedValues(Plan& plan)
{
    plan.time("associated value: first set, not retained", timesFloor(24.0 / 18),
        [] { return firstSet(kAssign); });
    plan.time("associated value: first set, retained (769)", timesFloor(24.0 / 18),
        [] { return firstSet(kAtomic); });
    for (const std::size_t count : { std::size_t { 1 }, kMany }) {
        const std::string live = count == 1 ? ", 1 object" : ", 1,000,000 objects";
        constexpr double kLimit = 3.0 / 1.2;
        plan.time("associated value: read unretained" + live, timesFloor(kLimit),
            [=] { return readUnretained(count); });
        plan.time("associated value: read owned (769)" + live,
            timesFloor(count == 1 ? kOwnedLimit : kLimit), [=] { return readOwned(count); });
    }
    plan.read("associated value: memory", "bytes", atMost(36), memory);
}

}
