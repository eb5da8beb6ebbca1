// SPDX-License-Identifier: Apache-2.0
#include <cstdio>
#include <cstdlib>

#include "Programs.h"
#include "Steps.h"

namespace brindle::bench {

namespace {

    constexpr long kFewer = 1'000;
    constexpr long kMore = 101'000;

    /// Answers the instructions of a whole run; negative when they could not be counted.
    double instructionsOf(const char* what, long times)
    {
        const Ended ended
            = runProgram({ "valgrind", "--tool=callgrind", "--callgrind-out-file=/dev/null",
                besideThis("bench-message-loop"), what, std::to_string(times) });
        const std::string mark = "Collected : ";
        const std::size_t found = ended.text.find(mark);
        if (!ended.started || ended.status != 0 || found == std::string::npos)
            return -1;
        return std::strtod(ended.text.c_str() + found + mark.size(), nullptr);
    }

    /// Answers the instructions of one turn of the loop, whatever the program does before and after.
    double perTurn(const char* what)
    {
        const double fewer = instructionsOf(what, kFewer);
        const double more = instructionsOf(what, kMore);
        return fewer < 0 || more < 0 ? -1 : (more - fewer) / static_cast<double>(kMore - kFewer);
    }

}

int countInstructions(Format format)
{
    const double nothing = perTurn("nothing");
    if (nothing < 0) {
        std::puts("instructions: left out, valgrind is not installed");
        return 0;
    }
    const double send = perTurn("send") - nothing;
    const double call = perTurn("call") - nothing;
    const Row row { "a message that hits, callee included", "instr.", kNoBudget, {}, {}, {} };
    printTable({ lineFor(row, send, call, send / call) }, format);
    return 0;
}

}
