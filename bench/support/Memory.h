// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <malloc.h>

#include "support/Allocations.h"

namespace brindle::bench {

/// Answers the bytes of the heap that are in use now, the allocator's own share of each block included.
inline double heapInUse()
{
    const struct mallinfo2 info = mallinfo2();
    return static_cast<double>(info.uordblks) + static_cast<double>(info.hblkhd);
}

// One count for tests and measurements; both sides of a comparison pay for it alike.
using test::allocationsMade;

/// Counts from now on the most memory that the process has in use at a time, in pages that are really there.
class PeakMemory {
public:
    PeakMemory();
    /// Answers how many bytes more than at the start were in use at most.
    double bytes() const;

private:
    double before_;
};

}
