// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

namespace brindle {

/// Memory for closures. Queues make and end them by the million, nearly all of them small. Each thread keeps a few ended
/// blocks of every small size for the next closures. What a burst needs beyond them is cut side by side from slabs; a
/// slab is free again as a whole when its last block has come back, from whichever thread. Checkers of memory get a block
/// of the system's for each closure.
///
/// Blocks are aligned to 16 bytes. Ends the process when there is no memory. Thread: any, also one that ends.
void* takeClosureMemory(std::size_t size);
/// - size: what was asked for.
void giveClosureMemory(void* memory, std::size_t size);
/// Gives what a burst has left behind back to the system, but for a megabyte. To map pages and to give them back costs more
/// than the closures do, so a loop does it when it has nothing else to do.
void trimClosureMemory();
/// Answers whether there is something to trim.
bool hasSpareClosureMemory();

}
