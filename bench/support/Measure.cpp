// SPDX-License-Identifier: Apache-2.0
#include "Measure.h"

#include <algorithm>
#include <ctime>

#include <benchmark/benchmark.h>

namespace brindle::bench {

namespace {

    constexpr double kBlockNanoseconds = 1.5e6;

    std::size_t countFor(const Sample& sample)
    {
        sample(1); // fills caches, makes classes
        for (std::size_t count = 1;; count *= 2) {
            const double elapsed = sample(count);
            if (elapsed * 2 >= kBlockNanoseconds)
                return count;
        }
    }

    struct Medians {
        double ours = 0;
        double floor = 0;
        double ratio = 0;
    };

    Medians measure(const Pair& pair)
    {
        const std::size_t oursCount = pair.count ? pair.count : countFor(pair.ours);
        const std::size_t floorCount = !pair.floor ? 0
            : pair.count                           ? pair.count
                                                   : countFor(pair.floor);
        std::vector<double> ours;
        std::vector<double> floors;
        std::vector<double> ratios;
        for (int block = 0; block < pair.blocks; ++block) {
            ours.push_back(pair.ours(oursCount) / static_cast<double>(oursCount));
            if (!floorCount)
                continue;
            floors.push_back(pair.floor(floorCount) / static_cast<double>(floorCount));
            ratios.push_back(ours.back() / floors.back());
        }
        return { median(ours), median(floors), median(ratios) };
    }

    void run(benchmark::State& state, const Row& row)
    {
        Medians medians;
        for ([[maybe_unused]] const auto& turn : state) {
            if (row.pair) {
                medians = measure(row.pair());
            } else {
                const Reading reading = row.reading();
                medians.ours = reading.ours;
                medians.floor = reading.floor;
                medians.ratio = reading.floor > 0 ? reading.ours / reading.floor : 0;
            }
            state.SetIterationTime(medians.ours / 1e9);
        }
        state.counters["ours"] = medians.ours;
        state.counters["floor"] = medians.floor;
        state.counters["ratio"] = medians.ratio;
    }

}

double Stopwatch::now(Kind kind)
{
    timespec time {};
    clock_gettime(kind == Kind::thread ? CLOCK_THREAD_CPUTIME_ID : CLOCK_MONOTONIC, &time);
    return static_cast<double>(time.tv_sec) * 1e9 + static_cast<double>(time.tv_nsec);
}

void Plan::time(std::string name, Budget budget, std::function<Pair()> pair)
{
    rows_.push_back({ std::move(name), "ns", budget, std::move(pair), {}, {} });
}

void Plan::read(std::string name, std::string unit, Budget budget, std::function<Reading()> reading)
{
    rows_.push_back({ std::move(name), std::move(unit), budget, {}, std::move(reading), {} });
}

void Plan::mean(std::string name, Budget budget, std::vector<std::string> cells)
{
    rows_.push_back({ std::move(name), "", budget, {}, {}, std::move(cells) });
}

void Plan::registerRows() const
{
    for (const Row& row : rows_) {
        if (row.cells.empty())
            benchmark::RegisterBenchmark(
                row.name.c_str(), [&row](benchmark::State& state) { run(state, row); })
                ->Iterations(1)
                ->UseManualTime();
    }
}

double median(std::vector<double> values)
{
    if (values.empty())
        return 0;
    std::sort(values.begin(), values.end());
    const std::size_t middle = values.size() / 2;
    return values.size() % 2 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

}
