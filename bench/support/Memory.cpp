// SPDX-License-Identifier: Apache-2.0
#include "Memory.h"

#include <fstream>
#include <string>

namespace {

// Plain data, so that it can be counted before the thread has anything else.
constinit thread_local std::size_t allocations = 0;

}

// The program's own names of these three go first; what they do is left to the C library. Both sides of a
// comparison pay for the counting alike.
extern "C" {

void* __libc_malloc(std::size_t size); // NOLINT: the C library's names
void* __libc_calloc(std::size_t count, std::size_t size); // NOLINT
void* __libc_realloc(void* memory, std::size_t size); // NOLINT

[[gnu::visibility("default")]] void* malloc(std::size_t size) noexcept
{
    ++allocations;
    return __libc_malloc(size);
}

[[gnu::visibility("default")]] void* calloc(std::size_t count, std::size_t size) noexcept
{
    ++allocations;
    return __libc_calloc(count, size);
}

[[gnu::visibility("default")]] void* realloc(void* memory, std::size_t size) noexcept
{
    ++allocations;
    return __libc_realloc(memory, size);
}
}

namespace brindle::bench {

std::size_t allocationsMade() { return allocations; }

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
