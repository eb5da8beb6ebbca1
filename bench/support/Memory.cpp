// SPDX-License-Identifier: Apache-2.0
#include "Memory.h"

#include <fstream>
#include <string>

namespace brindle::bench {

namespace {

    /// Answers a line of the process's state, in bytes.
    double stateOf(const std::string& name)
    {
        std::ifstream state("/proc/self/status");
        for (std::string line; std::getline(state, line);) {
            if (line.starts_with(name))
                return std::stod(line.substr(name.size())) * 1024;
        }
        return 0;
    }

}

PeakMemory::PeakMemory()
{
    malloc_trim(0); // what is free is not counted as there already
    std::ofstream("/proc/self/clear_refs") << "5"; // the peak begins anew
    before_ = stateOf("VmRSS:");
}

double PeakMemory::bytes() const { return stateOf("VmHWM:") - before_; }

}
