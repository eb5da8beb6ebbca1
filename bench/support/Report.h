// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <map>
#include <string>

#include <benchmark/benchmark.h>

#include "Measure.h"

namespace brindle::bench {

enum class Format { text, markdown };

/// One line of the table, ready to be written.
struct Line {
    std::string name;
    std::string ours;
    std::string floor;
    std::string ratio;
    std::string budget;
    std::string verdict;
};

/// Answers a row's line; `ratio` 0 stands for a row without a floor, no number for one that could not be measured.
Line lineFor(const Row& row, double ours, double floor, double ratio);

/// Writes the lines with their heads to standard output.
void printTable(const std::vector<Line>& lines, Format format);

/// Gathers what the rows answer, several times with `--benchmark_repetitions`, and writes one table at the end.
class Report : public benchmark::BenchmarkReporter {
public:
    Report(const Plan& plan, Format format)
        : plan_(plan)
        , format_(format)
    {
    }

    bool ReportContext(const Context& context) override;
    void ReportRuns(const std::vector<Run>& runs) override;
    void Finalize() override;

private:
    struct Answers {
        std::vector<double> ours;
        std::vector<double> floor;
        std::vector<double> ratio;
    };
    void addMean(const Row& row, std::vector<Line>& lines) const;

    const Plan& plan_;
    Format format_;
    std::map<std::string, Answers> answers_;
};

}
