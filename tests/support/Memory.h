// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <malloc.h>
#include <unistd.h>

#include "support/Sanitizers.h"

// How much memory this process holds, for tests of growth.

namespace brindle::test {

/// Answers whether growth says anything. The sanitizers and valgrind keep what was freed for a while and find what is lost
/// by themselves.
inline bool growthCanBeMeasured()
{
    static const char* const preloaded = std::getenv("LD_PRELOAD");
    static const bool isUnderValgrind = preloaded && std::strstr(preloaded, "vgpreload");
    return !addressesAreWatched && !threadsAreWatched && !isUnderValgrind;
}

inline std::size_t residentBytes()
{
    long pages = 0;
    long resident = 0;
    std::FILE* const file = std::fopen("/proc/self/statm", "r");
    if (!file || std::fscanf(file, "%ld %ld", &pages, &resident) != 2)
        resident = 0;
    if (file)
        std::fclose(file);
    return static_cast<std::size_t>(resident) * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

/// Lets the peak begin anew at what is resident now.
inline void forgetPeak()
{
    if (std::FILE* const file = std::fopen("/proc/self/clear_refs", "w")) {
        std::fputs("5", file);
        std::fclose(file);
    }
}

/// Answers how much the process held at most since the peak was forgotten.
inline std::size_t peakBytes()
{
    unsigned long kilobytes = 0;
    if (std::FILE* const file = std::fopen("/proc/self/status", "r")) {
        char line[256];
        while (std::fgets(line, sizeof line, file)
            && std::sscanf(line, "VmHWM: %lu", &kilobytes) != 1) { }
        std::fclose(file);
    }
    return std::size_t { kilobytes } * 1024;
}

/// Answers how many bytes the program has asked for and not given back, as far as the allocator of the system knows.
inline std::size_t allocatedBytes() { return mallinfo2().uordblks; }

/// Answers by how much the process holds more than before; 0 where that says nothing.
inline std::size_t grownSince(std::size_t before)
{
    const std::size_t now = residentBytes();
    return growthCanBeMeasured() && now > before ? now - before : 0;
}

}
