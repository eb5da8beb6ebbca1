// SPDX-License-Identifier: Apache-2.0
#include <cstdio>
#include <cstdlib>
#include <unistd.h>

#include "Programs.h"
#include "Steps.h"

namespace brindle::bench {

namespace {

    constexpr int kRuns = 20;
    constexpr double kMebibyte = 1024 * 1024;
    constexpr int kIdleSeconds = 5;

    struct Side {
        std::vector<std::string> arguments;
        std::vector<double> milliseconds;
        std::vector<double> mebibytes;

        bool run()
        {
            const Taken taken = measureProgram(arguments);
            const Ended& ended = taken.ended;
            if (!ended.started || ended.status != 0) {
                std::fprintf(stderr, "brindle-bench: %s ended with status %d\n%s",
                    arguments[0].c_str(), ended.status, ended.text.c_str());
                return false;
            }
            milliseconds.push_back(taken.milliseconds);
            mebibytes.push_back(taken.peakBytes / kMebibyte);
            return true;
        }
    };

    /// What is started: a scene, and how the rows call it.
    struct Scene {
        const char* name;
        std::vector<std::string> program;
        const char* floor;
    };

    /// Where a scene is drawn.
    struct Place {
        const char* name;
        const char* floor; // as its floor calls it
        Budget memory;
    };
    // Without a screen a program also holds what a server holds otherwise: the windows once more.
    constexpr Place kInMemory { ", in memory", "memory", kNoBudget };
    constexpr Place kOnScreen { ", on a screen", "screen", atMost(13) };

    /// Starts both programs in turn and adds two lines; false when one of them failed.
    bool compare(const Scene& scene, const Place& place, std::vector<Line>& lines)
    {
        Side ours { scene.program, {}, {} };
        Side floor { { besideThis("bench-start-floor"), scene.floor, place.floor }, {}, {} };
        for (int i = -1; i < kRuns; ++i) {
            if (!ours.run() || !floor.run())
                return false;
            if (i < 0) { // the first of each reads its files from the disk
                ours = { ours.arguments, {}, {} };
                floor = { floor.arguments, {}, {} };
            }
        }
        const std::string start = std::string("process start to ") + scene.name + place.name;
        const auto add = [&](const char* what, const char* unit, Budget budget,
                             const std::vector<double>& our, const std::vector<double>& their) {
            const Row row { start + what, unit, budget, {}, {}, {} };
            const double ourMedian = median(our);
            const double theirMedian = median(their);
            lines.push_back(lineFor(row, ourMedian, theirMedian, ourMedian / theirMedian));
        };
        add("", "ms", timesFloor(1.4), ours.milliseconds, floor.milliseconds);
        add(": peak memory", "MiB", place.memory, ours.mebibytes, floor.mebibytes);
        return true;
    }

    /// Compares both scenes on the display that the environment names.
    bool compareAll(const Place& place, std::vector<Line>& lines)
    {
        const Scene controls { "menubar, controls and table",
            { besideThis("bench-start-controls"), "--once" }, "controls" };
        const Scene rows { "a window of text", { besideThis("bench-start-rows") }, "rows" };
        return compare(controls, place, lines) && compare(rows, place, lines);
    }

    /// Counts how often any thread of an idle application is put on a processor; false when it has ended.
    bool watchIdle(std::vector<Line>& lines)
    {
        const Running application({ besideThis("bench-start-controls") });
        sleep(2); // it has started, and is idle
        const double before = application.timesScheduled();
        sleep(kIdleSeconds);
        const double after = application.timesScheduled();
        if (before < 0 || after < 0) {
            std::fputs("brindle-bench: the idle application has ended\n", stderr);
            return false;
        }
        const Row row { "idle application, five seconds", "wake-ups", atMost(0), {}, {}, {} };
        lines.push_back(lineFor(row, after - before, 0, 0));
        return true;
    }

}

int measureStart(Format format, char* program)
{
    const bool hasServer = std::getenv("BRINDLE_TEST_WM"); // with-xvfb's mark
    if (!hasServer) {
        const std::string script = BRINDLE_SOURCE_FOLDER "/tools/with-xvfb";
        const char* const markdown = format == Format::markdown ? "--markdown" : nullptr;
        execl(script.c_str(), script.c_str(), program, "--start", markdown, nullptr);
        std::fprintf(stderr, "brindle-bench: cannot run %s\n", script.c_str());
        return 1;
    }
    std::vector<Line> lines;
    setenv("BRINDLE_DISPLAY", "headless", 1);
    bool all = compareAll(kInMemory, lines);
    setenv("BRINDLE_DISPLAY", "x11", 1);
    all = all && compareAll(kOnScreen, lines);
    all = all && watchIdle(lines);
    if (all)
        measureMenusOnScreen(lines);
    printTable(lines, format);
    return all ? 0 : 1;
}

}
