// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace brindle::bench {

/// Keeps the compiler from leaving a value out.
template <class T> inline void keep(const T& value)
{
    asm volatile("" : : "r,m"(value) : "memory");
}

/// Nanoseconds since it was made.
class Stopwatch {
public:
    /// The time this thread was on a processor, which other programs do not lengthen; or the time
    /// that went by, for work of several threads.
    enum class Kind { thread, wall };

    explicit Stopwatch(Kind kind = Kind::thread)
        : kind_(kind)
        , start_(now(kind))
    {
    }
    double elapsed() const { return now(kind_) - start_; }

private:
    static double now(Kind kind);

    Kind kind_;
    double start_;
};

/// Does an operation `count` times and answers how many nanoseconds that took, preparations not counted.
using Sample = std::function<double(std::size_t count)>;

/// A sample of an operation that needs no preparation; it receives the numbers 0, 1, 2, ...
template <class F> Sample repeated(F operation)
{
    return [operation](std::size_t count) mutable {
        const Stopwatch watch;
        for (std::size_t i = 0; i < count; ++i)
            operation(i);
        return watch.elapsed();
    };
}

/// What is measured and what it is held against. The two take turns, block by block.
struct Pair {
    Sample ours;
    Sample floor; ///< may be empty
    std::size_t count = 0; ///< operations in a block; 0: as many as take a good millisecond
    int blocks = 31;
};

/// A number that is not a time.
struct Reading {
    double ours = 0; ///< no number: it could not be measured
    double floor = 0; ///< 0: there is none
};

/// What a row may cost.
struct Budget {
    enum class Kind { none, ratio, most };
    Kind kind = Kind::none;
    double limit = 0;
};
/// At most so many times the floor of the same run.
constexpr Budget timesFloor(double ratio) { return { Budget::Kind::ratio, ratio }; }
/// At most so much, in the row's unit.
constexpr Budget atMost(double limit) { return { Budget::Kind::most, limit }; }
constexpr Budget kNoBudget {};

/// A row of the table. Exactly one of `pair`, `reading` and `cells` is there.
struct Row {
    std::string name;
    std::string unit; ///< "ns", "bytes", ...
    Budget budget;
    std::function<Pair()> pair; ///< makes what it needs when the row's turn comes
    std::function<Reading()> reading;
    std::vector<std::string> cells; ///< rows whose ratios are averaged geometrically
};

/// The rows in the order of the table.
class Plan {
public:
    void time(std::string name, Budget budget, std::function<Pair()> pair);
    void read(std::string name, std::string unit, Budget budget, std::function<Reading()> reading);
    void mean(std::string name, Budget budget, std::vector<std::string> cells);

    const std::vector<Row>& rows() const { return rows_; }
    /// Makes every row known to Google Benchmark. The plan must outlive the run.
    void registerRows() const;

private:
    std::vector<Row> rows_;
};

/// Answers the middle one, or the mean of the two in the middle; 0 for none.
double median(std::vector<double> values);

}
