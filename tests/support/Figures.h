// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <fstream>
#include <string>

#include <gtest/gtest.h>

#include "support/Memory.h"
#include "support/Rounds.h"

// What a test of endurance measured, for the table of docs/reliability.md.

namespace brindle::test {

/// How much longer something may take when it shares the machine or is watched.
inline constexpr double kSharedMachine = 20;

/// One row.
struct Figure {
    std::string what;
    long rounds = 0;
    double measured = 0;
    std::string unit; ///< "ms", "s" and "MB", or what is counted
    double bar = 0; ///< the most that is right, in the same unit
};

/// Answers a number as short as it still says something.
inline std::string shortly(double number)
{
    char text[32];
    std::snprintf(text, sizeof text, number == std::trunc(number) ? "%.0f" : "%.2g", number);
    return number < 100 ? text : std::to_string(std::lround(number));
}

/// Tells a figure, keeps it for the table where BRINDLE_FIGURES names a file, and fails past the bar. Bars of time are held
/// only when all rounds are made; other runs get longer.
inline void publish(const Figure& figure)
{
    const std::string measured = shortly(figure.measured);
    std::printf("%s: %s %s in %ld\n", figure.what.c_str(), measured.c_str(), figure.unit.c_str(),
        figure.rounds);
    if (const char* const path = std::getenv("BRINDLE_FIGURES"))
        std::ofstream(path, std::ios::app) << figure.what + '\t' + std::to_string(figure.rounds)
                + '\t' + measured + '\t' + figure.unit + '\t' + shortly(figure.bar) + '\n';
    const bool isTime = figure.unit == "ms" || figure.unit == "s";
    const double slack = isTime && !allRounds() ? kSharedMachine : 1;
    EXPECT_LE(figure.measured, figure.bar * slack) << figure.what;
}

/// The slowest of many rounds.
class Slowest {
public:
    template <class Body> void of(const Body& body)
    {
        const auto start = std::chrono::steady_clock::now();
        body();
        add(std::chrono::steady_clock::now() - start);
    }
    /// Counts the processor's time only, where nothing is waited for: that of a busy machine is not in it.
    template <class Body> void ofProcessor(const Body& body)
    {
        const std::chrono::duration<double> before = processorTime();
        body();
        add(processorTime() - before);
    }
    void add(std::chrono::duration<double> taken)
    {
        ++rounds_;
        most_ = std::max(most_, taken.count());
    }

    long rounds() const { return rounds_; }
    double milliseconds() const { return most_ * 1e3; }

private:
    static std::chrono::duration<double> processorTime()
    {
        return std::chrono::duration<double>(static_cast<double>(std::clock()) / CLOCKS_PER_SEC);
    }

    long rounds_ = 0;
    double most_ = 0; // seconds
};

/// What each of many hostile inputs costs: the slowest one, and how far the memory rose over all of them.
class Cost {
public:
    Cost()
    {
        forgetPeak();
        before_ = peakBytes();
    }
    template <class Body> void of(const Body& body) { slowest_.of(body); }
    /// - milliseconds, megabytes: the most that one may take.
    void publish(const std::string& what, double milliseconds, double megabytes) const
    {
        test::publish(
            { what + ", time", slowest_.rounds(), slowest_.milliseconds(), "ms", milliseconds });
        if (!growthCanBeMeasured())
            return;
        const double risen
            = (static_cast<double>(peakBytes()) - static_cast<double>(before_)) / (1 << 20);
        test::publish(
            { what + ", memory", slowest_.rounds(), std::max(risen, 0.0), "MB", megabytes });
    }

private:
    Slowest slowest_;
    std::size_t before_;
};

}
