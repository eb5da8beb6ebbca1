// SPDX-License-Identifier: Apache-2.0
#include <cmath>
#include <map>
#include <sstream>

#include "support/Measure.h"
#include "support/Programs.h"
#include "support/Topics.h"

namespace brindle::bench {

namespace {

    /// Runs the measurements in Python once and answers what they said of a row; no number without Python.
    Reading saidByPython(const std::string& row)
    {
        static const auto said = [] {
            std::map<std::string, Reading> readings;
            const std::string folder = BRINDLE_SOURCE_FOLDER;
            const Ended ended = runProgram(
                { "env", "PYTHONPATH=" + folder + "/bindings/python", "PYTHONDONTWRITEBYTECODE=1",
                    "BRINDLE_LIBRARY=" BRINDLE_SHARED_LIBRARY, "BRINDLE_DISPLAY=headless",
                    "python3", folder + "/bench/programs/python_calls.py" });
            std::istringstream lines(ended.text);
            for (std::string name; std::getline(lines, name, '\t');) {
                Reading reading;
                lines >> reading.ours >> reading.floor >> std::ws;
                readings[name] = reading;
            }
            return readings;
        }();
        const auto found = said.find(row);
        return found == said.end() ? Reading { std::nan(""), 0 } : found->second;
    }

    void add(Plan& plan, const std::string& what, Budget budget)
    {
        plan.read("Python: " + what + ", beside bare ctypes", "ns", budget,
            [what] { return saidByPython(what); });
    }

}

void addPython(Plan& plan)
{
    for (const char* what : { "no argument", "one number", "one string",
             "one string, never seen before", "one rectangle" })
        add(plan, what, timesFloor(4));
    add(plan, "make and free an object", kNoBudget);
    plan.read("Python: memory growth over 100,000 objects", "bytes", atMost(1 << 20),
        [] { return saidByPython("memory"); });
}

}
