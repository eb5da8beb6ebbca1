// SPDX-License-Identifier: Apache-2.0
#include "ClosureMemory.h"

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <mutex>
#include <new>
#include <sys/mman.h>
#include <utility>

#include "Block.h"
#include "SanitizedPrivate.h"

namespace brindle {

namespace {

    constexpr std::size_t kLargestSmall = isSanitized ? 0 : 128; // eleven captured words fit
    constexpr std::size_t kAlignment = 16;
    constexpr std::size_t kSizes = kLargestSmall / kAlignment + 1;
    constexpr std::uint32_t kMostKept = 64; // of each size
    // A slab's size is its alignment too, so that a block finds its slab.
    constexpr std::size_t kSlabSize = 64 * 1024;
    constexpr std::size_t kSlabsOfBurst = 16;

    struct Slab {
        /// Blocks that are out. A slab that is still cut from counts as `kOpen` more.
        std::atomic<std::intptr_t> out;
        Slab* next;
    };
    constexpr std::intptr_t kOpen = std::intptr_t { 1 } << 40;

    Slab* slabOf(void* memory)
    {
        return reinterpret_cast<Slab*>(reinterpret_cast<std::uintptr_t>(memory) & ~(kSlabSize - 1));
    }

    /// Answers slabs that lie side by side. Pages come one by one as they are touched or, in a burst, all at once, which
    /// costs a third.
    char* mapSlabs(std::size_t count, int populate)
    {
        constexpr int kFresh = MAP_PRIVATE | MAP_ANONYMOUS;
        const std::size_t size = count * kSlabSize;
        void* const room = ::mmap(nullptr, size + kSlabSize, PROT_NONE, kFresh, -1, 0);
        if (room == MAP_FAILED)
            fatal("out of memory");
        auto* const start = static_cast<char*>(room);
        const std::size_t before = -reinterpret_cast<std::uintptr_t>(start) & (kSlabSize - 1);
        char* const slabs = start + before;
        if (before)
            ::munmap(start, before);
        ::munmap(slabs + size, kSlabSize - before);
        constexpr int kUsable = PROT_READ | PROT_WRITE;
        if (::mmap(slabs, size, kUsable, kFresh | MAP_FIXED | populate, -1, 0) == MAP_FAILED)
            fatal("out of memory");
        return slabs;
    }

    /// Empty slabs that wait for the next burst.
    class Spares {
    public:
        Slab* take()
        {
            const std::lock_guard guard(mutex_);
            if (!first_)
                return nullptr;
            count_.fetch_sub(1, std::memory_order_relaxed);
            return std::exchange(first_, first_->next);
        }
        void add(Slab* slab)
        {
            const std::lock_guard guard(mutex_);
            count_.fetch_add(1, std::memory_order_relaxed);
            slab->next = std::exchange(first_, slab);
        }
        bool isMoreThan(std::size_t count) const
        {
            return count_.load(std::memory_order_relaxed) > count;
        }

    private:
        std::mutex mutex_;
        Slab* first_ = nullptr;
        std::atomic<std::size_t> count_ { 0 };
    };
    constinit Spares spares;

    Slab* takeSlab(bool isBurst)
    {
        Slab* slab = spares.take();
        if (!slab) {
            const std::size_t count = isBurst ? kSlabsOfBurst : 1;
            char* const slabs = mapSlabs(count, isBurst ? MAP_POPULATE : 0);
            slab = ::new (slabs) Slab {};
            for (std::size_t i = 1; i < count; ++i)
                spares.add(::new (slabs + i * kSlabSize) Slab {});
        }
        slab->out.store(kOpen, std::memory_order_relaxed);
        return slab;
    }

    /// Counts blocks that came back, or an open slab that is closed; the last one frees it.
    void settle(Slab* slab, std::intptr_t count)
    {
        if (slab->out.fetch_sub(count, std::memory_order_acq_rel) == count)
            spares.add(slab);
    }

    struct KeptBlock {
        KeptBlock* next;
    };

    /// What a thread takes blocks from and gives them back to. Plain words, so that a thread can still post while its other
    /// variables end.
    struct Blocks {
        struct Kept {
            KeptBlock* first;
            std::uint32_t count;
        } kept[kSizes];
        std::uint32_t
            mostKept; // of each size; none before the thread's end is known, nor while it ends
        char* next; // the rest of the open slab
        char* end;
        std::intptr_t cut; // blocks of the open slab that were taken
        Slab* returned; // some blocks of it have come back here, not yet settled
        std::intptr_t returnedCount;
        bool isEnding;

        void closeSlab()
        {
            if (next)
                settle(slabOf(end - 1), kOpen - cut);
            next = end = nullptr;
            cut = 0;
        }
        void keep(Kept& place, void* memory)
        {
            place.first = ::new (memory) KeptBlock { place.first };
            ++place.count;
        }
        void giveBack(void* memory)
        {
            if (slabOf(memory) != returned) {
                settleReturned();
                returned = slabOf(memory);
            }
            ++returnedCount;
        }
        void settleReturned()
        {
            if (returnedCount)
                settle(returned, returnedCount);
            returned = nullptr;
            returnedCount = 0;
        }
        void finish()
        {
            isEnding = true;
            mostKept = 0;
            for (Kept& each : kept) {
                while (KeptBlock* const block = each.first) {
                    each.first = block->next;
                    giveBack(block);
                }
            }
            settleReturned();
            closeSlab();
        }
    };
    [[gnu::tls_model("initial-exec")]] constinit thread_local Blocks ownBlocks {};

    struct BlocksEnd {
        bool known = true;

        ~BlocksEnd() { ownBlocks.finish(); }
    };
    thread_local BlocksEnd blocksEnd;

    /// From now on the thread ends what it keeps, so it may keep some.
    void expectEnd()
    {
        blocksEnd.known = true;
        ownBlocks.mostKept = kMostKept;
    }

    constexpr std::size_t rounded(std::size_t size)
    {
        return (size + kAlignment - 1) & ~(kAlignment - 1);
    }

    [[gnu::noinline]] void* takeFromNewSlab(std::size_t length)
    {
        Blocks& own = ownBlocks;
        const bool isBurst = own.next;
        own.closeSlab();
        auto* const slab = reinterpret_cast<char*>(takeSlab(isBurst));
        char* const memory = slab + rounded(sizeof(Slab));
        own.next = memory + length;
        own.end = slab + kSlabSize;
        own.cut = 1;
        if (own.isEnding)
            own.closeSlab();
        else
            expectEnd();
        return memory;
    }

    /// The first block of this thread, one of another slab than the last, or one after the end.
    [[gnu::noinline]] void giveRarely(Blocks::Kept& place, void* memory)
    {
        Blocks& own = ownBlocks;
        if (own.mostKept == 0 && !own.isEnding) {
            expectEnd();
            return own.keep(place, memory);
        }
        own.giveBack(memory);
        if (own.isEnding)
            own.settleReturned();
    }

}

void* takeClosureMemory(std::size_t size)
{
    if (size > kLargestSmall) {
        void* const memory = std::malloc(size);
        if (!memory)
            fatal("out of memory");
        return memory;
    }
    Blocks& own = ownBlocks;
    const std::size_t length = rounded(size);
    Blocks::Kept& kept = own.kept[length / kAlignment];
    if (KeptBlock* const block = kept.first) {
        kept.first = block->next;
        --kept.count;
        return block;
    }
    if (static_cast<std::size_t>(own.end - own.next) < length) [[unlikely]]
        return takeFromNewSlab(length);
    ++own.cut;
    return std::exchange(own.next, own.next + length);
}

void giveClosureMemory(void* memory, std::size_t size)
{
    if (size > kLargestSmall) {
        std::free(memory);
        return;
    }
    Blocks& own = ownBlocks;
    Blocks::Kept& place = own.kept[rounded(size) / kAlignment];
    if (place.count < own.mostKept)
        own.keep(place, memory);
    else if (slabOf(memory) == own.returned)
        ++own.returnedCount;
    else
        giveRarely(place, memory);
}

bool hasSpareClosureMemory() { return spares.isMoreThan(kSlabsOfBurst); }

void trimClosureMemory()
{
    while (hasSpareClosureMemory()) {
        if (Slab* const slab = spares.take())
            ::munmap(slab, kSlabSize);
    }
}

}
