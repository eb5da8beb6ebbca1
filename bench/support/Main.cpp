// SPDX-License-Identifier: Apache-2.0

// Measures everything, or what --benchmark_filter chooses, and ends with one table on standard output.

#include <cstdio>
#include <cstring>

#include "Report.h"
#include "Steps.h"
#include "Topics.h"

namespace brindle::bench {

namespace {

    /// Takes a word out of the arguments; answers whether it was there.
    bool take(const char* word, int& count, char** arguments)
    {
        for (int i = 1; i < count; ++i) {
            if (std::strcmp(arguments[i], word) != 0)
                continue;
            std::memmove(arguments + i, arguments + i + 1,
                static_cast<std::size_t>(count - i) * sizeof *arguments);
            --count;
            return true;
        }
        return false;
    }

    Plan makePlan()
    {
        Plan plan;
        addMessages(plan);
        addMethodChanges(plan);
        addInvocations(plan);
        addCInterface(plan);
        addObjects(plan);
        addAssociatedValues(plan);
        addProperties(plan);
        addKeyValueCoding(plan);
        addAutoCoding(plan);
        addDispatch(plan);
        addTimers(plan);
        addDefaults(plan);
        addPropertyLists(plan);
        addTimeouts(plan);
        addArchives(plan);
        addEscapes(plan);
        addUniqueObjects(plan);
        addPaths(plan);
        addImages(plan);
        addPanels(plan);
        addFileAccess(plan);
        addText(plan);
        addTextMeasures(plan);
        addIntervals(plan);
        addColours(plan);
        addRaster(plan);
        addContexts(plan);
        addDrawing(plan);
        addMenus(plan);
        addViews(plan);
        addTables(plan);
        addLists(plan);
        addPython(plan);
        addBars(plan);
        return plan;
    }

    int run(int count, char** arguments)
    {
        const Format format
            = take("--markdown", count, arguments) ? Format::markdown : Format::text;
        if (take("--instructions", count, arguments))
            return countInstructions(format);
        if (take("--start", count, arguments))
            return measureStart(format, arguments[0]);
        benchmark::Initialize(&count, arguments);
        if (benchmark::ReportUnrecognizedArguments(count, arguments))
            return 2;
        const Plan plan = makePlan();
        plan.registerRows();
        Report report(plan, format);
        benchmark::RunSpecifiedBenchmarks(&report);
        return 0;
    }

}

}

int main(int count, char** arguments) { return brindle::bench::run(count, arguments); }
