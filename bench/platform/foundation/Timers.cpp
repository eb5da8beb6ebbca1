// SPDX-License-Identifier: Apache-2.0
#include "foundation/NSTimer.h"

#include <ctime>
#include <map>

#include "foundation/NSRunLoop.h"
#include "support/Measure.h"
#include "support/Memory.h"
#include "support/Topics.h"

namespace brindle::bench {

namespace {

    constexpr std::size_t kTimers = 10'000;

    Ref<NSTimer> makeTimer(double seconds)
    {
        return NSTimer::cls().scheduledTimerWithTimeInterval_repeats_block(
            seconds, false, [](NSTimer*) {});
    }

    Pair restart()
    {
        const std::shared_ptr<Ref<NSTimer>> timer(
            new Ref<NSTimer>(makeTimer(1000)), [](Ref<NSTimer>* owner) {
                (*owner)->invalidate();
                delete owner;
            });
        return { repeated([timer](std::size_t) { (*timer)->restart(0.5); }),
            repeated([](std::size_t) {
                timespec now {};
                clock_gettime(CLOCK_MONOTONIC, &now);
                keep(now.tv_nsec);
            }) };
    }

    Reading growth()
    {
        const Ref<NSTimer> timer = makeTimer(1000);
        for (int i = 0; i < 1000; ++i)
            timer->restart(0.5);
        const double before = heapInUse();
        for (int i = 0; i < 1'000'000; ++i)
            timer->restart(0.5);
        const double after = heapInUse();
        timer->invalidate();
        return { after - before };
    }

    // The floor: a balanced tree of closures by their moments.
    using Tree = std::multimap<double, std::function<void()>>;

    double moment(std::size_t i) { return 1 + static_cast<double>(i * 7919 % kTimers) / 1000; }

    void addAll(std::vector<Ref<NSTimer>>& timers, std::size_t count)
    {
        timers.reserve(count);
        for (std::size_t i = 0; i < count; ++i)
            timers.push_back(makeTimer(moment(i)));
    }

    void addAll(Tree& tree, std::size_t count)
    {
        for (std::size_t i = 0; i < count; ++i)
            tree.emplace(moment(i), [] {});
    }

    double add(std::size_t count)
    {
        std::vector<Ref<NSTimer>> timers;
        const Stopwatch watch;
        addAll(timers, count);
        const double elapsed = watch.elapsed();
        for (const auto& timer : timers)
            timer->invalidate();
        return elapsed;
    }

    double addBare(std::size_t count)
    {
        Tree tree;
        const Stopwatch watch;
        addAll(tree, count);
        return watch.elapsed();
    }

    double fire(std::size_t count)
    {
        Clock::useVirtual();
        std::vector<Ref<NSTimer>> timers;
        addAll(timers, count);
        const Ref<NSRunLoop> loop = NSRunLoop::cls().mainRunLoop();
        const Stopwatch watch;
        loop->advance(100);
        const double elapsed = watch.elapsed();
        Clock::useSystem();
        return elapsed;
    }

    double fireBare(std::size_t count)
    {
        Tree tree;
        addAll(tree, count);
        const Stopwatch watch;
        while (!tree.empty()) {
            const auto first = tree.begin();
            first->second();
            tree.erase(first);
        }
        return watch.elapsed();
    }

    double cancel(std::size_t count)
    {
        std::vector<Ref<NSTimer>> timers;
        addAll(timers, count);
        const Stopwatch watch;
        for (const auto& timer : timers)
            timer->invalidate();
        return watch.elapsed();
    }

    double cancelBare(std::size_t count)
    {
        Tree tree;
        std::vector<Tree::iterator> places;
        for (std::size_t i = 0; i < count; ++i)
            places.push_back(tree.emplace(moment(i), [] {}));
        const Stopwatch watch;
        for (const auto& place : places)
            tree.erase(place);
        return watch.elapsed();
    }

}

void addTimers(Plan& plan)
{
    plan.time("restart of a timer beside one reading of the clock", timesFloor(30.0 / 24), restart);
    plan.read("memory growth over 1,000,000 restarts of a timer", "bytes", atMost(0), growth);
    plan.time("add one of 10,000 timers", kNoBudget, [] {
        return Pair { add, addBare, kTimers, 9 };
    });
    plan.time("fire one of 10,000 timers", kNoBudget, [] {
        return Pair { fire, fireBare, kTimers, 9 };
    });
    plan.time("cancel one of 10,000 timers", kNoBudget, [] {
        return Pair { cancel, cancelBare, kTimers, 9 };
    });
}

}
