// SPDX-License-Identifier: Apache-2.0
#include "Report.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

namespace brindle::bench {

namespace {

    std::string number(double value, int digits)
    {
        std::array<char, 64> text {};
        std::snprintf(text.data(), text.size(), "%.*f", digits, value);
        return text.data();
    }

    int digitsFor(double value)
    {
        const double size = std::abs(value);
        return size >= 100 || size == std::floor(size) ? 0 : size >= 10 ? 1 : 2;
    }

    std::string quantity(double value, const std::string& unit)
    {
        if (unit != "ns" || value < 10'000)
            return number(value, digitsFor(value)) + " " + unit;
        if (value < 10'000'000)
            return number(value / 1e3, digitsFor(value / 1e3)) + " µs";
        return number(value / 1e6, digitsFor(value / 1e6)) + " ms";
    }

    /// Characters as a terminal counts them, for the letters used here.
    std::size_t widthOf(const std::string& text)
    {
        return static_cast<std::size_t>(
            std::count_if(text.begin(), text.end(), [](char c) { return (c & '\xC0') != '\x80'; }));
    }

    std::array<std::string, 6> columnsOf(const Line& line)
    {
        return { line.name, line.ours, line.floor, line.ratio, line.budget, line.verdict };
    }

    void printPadded(const std::string& text, std::size_t width, bool left)
    {
        const std::string space(width - widthOf(text), ' ');
        std::printf(
            "%s%s", left ? text.c_str() : space.c_str(), left ? space.c_str() : text.c_str());
    }

    std::string budgetText(const Row& row)
    {
        switch (row.budget.kind) {
        case Budget::Kind::ratio:
            return number(row.budget.limit, 2) + " x";
        case Budget::Kind::most:
            return quantity(row.budget.limit, row.unit);
        case Budget::Kind::none:
            break;
        }
        return "-";
    }

    const char* verdictOf(const Budget& budget, double ours, double ratio)
    {
        if (budget.kind == Budget::Kind::none)
            return "-";
        const double value = budget.kind == Budget::Kind::ratio ? ratio : ours;
        return value <= budget.limit ? "ok" : "over";
    }

}

Line lineFor(const Row& row, double ours, double floor, double ratio)
{
    if (std::isnan(ours))
        return { row.name, "-", "-", "-", budgetText(row), "failed" };
    const bool isMean = !row.cells.empty();
    return { row.name, isMean ? "-" : quantity(ours, row.unit),
        floor > 0 && !isMean ? quantity(floor, row.unit) : "-", ratio > 0 ? number(ratio, 2) : "-",
        budgetText(row), verdictOf(row.budget, ours, ratio) };
}

void printTable(const std::vector<Line>& lines, Format format)
{
    std::vector<Line> all { { "row", "ours", "floor", "ratio", "budget", "" } };
    all.insert(all.end(), lines.begin(), lines.end());
    if (format == Format::markdown) {
        for (std::size_t i = 0; i < all.size(); ++i) {
            for (const std::string& column : columnsOf(all[i]))
                std::printf("| %s ", column.c_str());
            std::printf("|\n%s", i == 0 ? "| --- | ---: | ---: | ---: | ---: | --- |\n" : "");
        }
        return;
    }
    std::array<std::size_t, 6> widths {};
    for (const Line& line : all) {
        const auto columns = columnsOf(line);
        for (std::size_t i = 0; i < columns.size(); ++i)
            widths[i] = std::max(widths[i], widthOf(columns[i]));
    }
    for (const Line& line : all) {
        const auto columns = columnsOf(line);
        for (std::size_t i = 0; i + 1 < columns.size(); ++i) {
            printPadded(columns[i], widths[i], i == 0);
            std::printf("  ");
        }
        std::printf("%s\n", line.verdict.c_str());
    }
}

bool Report::ReportContext(const Context&) { return true; }

void Report::ReportRuns(const std::vector<Run>& runs)
{
    for (const Run& run : runs) {
        if (run.run_type != Run::RT_Iteration || run.error_occurred)
            continue;
        Answers& answers = answers_[run.run_name.function_name];
        answers.ours.push_back(run.counters.at("ours").value);
        answers.floor.push_back(run.counters.at("floor").value);
        answers.ratio.push_back(run.counters.at("ratio").value);
    }
}

void Report::addMean(const Row& row, std::vector<Line>& lines) const
{
    double logarithms = 0;
    for (const std::string& cell : row.cells) {
        const auto found = answers_.find(cell);
        if (found == answers_.end())
            return; // the filter left a cell out
        logarithms += std::log(median(found->second.ratio));
    }
    lines.push_back(
        lineFor(row, 0, 0, std::exp(logarithms / static_cast<double>(row.cells.size()))));
}

void Report::Finalize()
{
    std::vector<Line> lines;
    for (const Row& row : plan_.rows()) {
        if (!row.cells.empty()) {
            addMean(row, lines);
            continue;
        }
        const auto found = answers_.find(row.name);
        if (found != answers_.end())
            lines.push_back(lineFor(row, median(found->second.ours), median(found->second.floor),
                median(found->second.ratio)));
    }
    printTable(lines, format_);
}

}
