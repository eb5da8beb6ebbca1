// SPDX-License-Identifier: Apache-2.0
#include "ObjectMemory.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <mutex>
#include <utility>

#include <sys/mman.h>

#include "SanitizedPrivate.h"

namespace brindle {

namespace {

    constexpr std::size_t kLargest = isSanitized ? 0 : 256;
    constexpr std::size_t kAlignment = 16;
    constexpr std::size_t kBlockSize = kObjectBlock;
    // All blocks lie in one piece of addresses, so that an object's own says whether it stands in one.
    constexpr std::size_t kMostBlocks = std::size_t { 1 } << 14;
    constexpr std::size_t kSpace = kMostBlocks * kBlockSize;
    constexpr std::size_t kMostSpare = 128; // free blocks that keep their pages
    constexpr std::uint32_t kNone = ~std::uint32_t {};
    // A block from which a run takes counts as so many objects more, which is more than fit.
    constexpr std::intptr_t kOpen = std::intptr_t { 1 } << 40;

    // Of each block, apart from the rest: zeros take no room in the library.
    constinit std::array<std::atomic<std::intptr_t>, kMostBlocks> objectsOf {};
    constinit std::array<std::uint32_t, kMostBlocks> nextOf {}; // while it is free

    class Blocks {
    public:
        /// Answers how far behind the start of the first block an address lies; from `kSpace` on it is elsewhere.
        std::uintptr_t place(const void* memory) const
        {
            return reinterpret_cast<std::uintptr_t>(memory) - base_.load(std::memory_order_relaxed);
        }
        char* start(std::uint32_t block) const
        {
            return reinterpret_cast<char*>(base_.load(std::memory_order_relaxed))
                + block * kBlockSize;
        }
        /// Answers a block that counts as so many objects, or `kNone`.
        std::uint32_t take(std::intptr_t count)
        {
            const std::lock_guard guard(mutex_);
            std::uint32_t block = pop(spare_);
            if (block != kNone)
                spareCount_.fetch_sub(1, std::memory_order_relaxed);
            else if (block = pop(bare_); block == kNone)
                block = add();
            if (block != kNone)
                objectsOf[block].store(count, std::memory_order_relaxed);
            return block;
        }
        bool hasSpare() const { return spareCount_.load(std::memory_order_relaxed) > 1; }
        void trim()
        {
            const std::lock_guard guard(mutex_);
            while (hasSpare()) {
                spareCount_.fetch_sub(1, std::memory_order_relaxed);
                strip(pop(spare_));
            }
        }
        /// Takes objects off a block; the last one frees it.
        void settle(std::uint32_t block, std::intptr_t count)
        {
            if (objectsOf[block].fetch_sub(count, std::memory_order_acq_rel) == count)
                free(block);
        }

    private:
        std::uint32_t pop(std::uint32_t& first)
        {
            const std::uint32_t block = first;
            if (block != kNone)
                first = nextOf[block];
            return block;
        }
        void push(std::uint32_t& first, std::uint32_t block)
        {
            nextOf[block] = std::exchange(first, block);
        }
        std::uint32_t add()
        {
            if (count_ == kMostBlocks)
                return kNone;
            if ((count_ || reserve())
                && ::mprotect(start(count_), kBlockSize, PROT_READ | PROT_WRITE) == 0)
                return count_++;
            count_ = kMostBlocks; // who was refused does not ask again
            return kNone;
        }
        bool reserve()
        {
            constexpr int kOnlyAddresses = MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE;
            void* const space
                = ::mmap(nullptr, kSpace + kBlockSize, PROT_NONE, kOnlyAddresses, -1, 0);
            if (space == MAP_FAILED)
                return false;
            const std::uintptr_t before
                = -reinterpret_cast<std::uintptr_t>(space) & (kBlockSize - 1);
            char* const first = static_cast<char*>(space) + before;
            ::madvise(first, kSpace, MADV_HUGEPAGE); // or as it was
            base_.store(reinterpret_cast<std::uintptr_t>(first), std::memory_order_relaxed);
            return true;
        }
        void free(std::uint32_t block)
        {
            const std::lock_guard guard(mutex_);
            if (spareCount_.load(std::memory_order_relaxed) == kMostSpare)
                return strip(block);
            spareCount_.fetch_add(1, std::memory_order_relaxed);
            push(spare_, block);
        }
        /// Gives a free block's pages back.
        void strip(std::uint32_t block)
        {
            ::madvise(start(block), kBlockSize, MADV_DONTNEED);
            push(bare_, block);
        }

        std::mutex mutex_;
        std::atomic<std::uintptr_t> base_ { ~kSpace }; // no address is near before there is a block
        std::uint32_t count_ = 0;
        std::uint32_t spare_ = kNone; // free blocks with pages, linked by `nextOf`
        std::atomic<std::size_t> spareCount_ { 0 };
        std::uint32_t bare_ = kNone; // and those without
    };
    constinit Blocks blocks;

    /// From where a thread's run takes objects.
    struct Run {
        int depth;
        std::uint32_t block;
        char* next; // the rest of the block
        char* end;
        std::intptr_t cut; // objects that were taken from it

        void close()
        {
            if (next)
                blocks.settle(block, kOpen - cut);
            next = end = nullptr;
            cut = 0;
        }
        [[gnu::noinline]] bool open()
        {
            close();
            block = blocks.take(kOpen);
            if (block == kNone)
                return false;
            next = blocks.start(block);
            end = next + kBlockSize;
            return true;
        }
    };
    [[gnu::tls_model("initial-exec")]] constinit thread_local Run run {};

}

ObjectRun::ObjectRun() { ++run.depth; }

ObjectRun::~ObjectRun()
{
    if (--run.depth == 0)
        run.close();
}

void* takeObjectMemory(std::size_t size)
{
    if (run.depth == 0 || size > kLargest) [[likely]]
        return std::malloc(size);
    const std::size_t length = (size + kAlignment - 1) & ~(kAlignment - 1);
    if (static_cast<std::size_t>(run.end - run.next) < length && !run.open()) [[unlikely]]
        return std::malloc(size);
    ++run.cut;
    return std::exchange(run.next, run.next + length);
}

void* takeObjectBlock()
{
    const std::uint32_t block = isSanitized ? kNone : blocks.take(1);
    return block == kNone ? std::malloc(kBlockSize) : blocks.start(block);
}

void giveObjectMemory(void* memory)
{
    const std::uintptr_t place = blocks.place(memory);
    if (place >= kSpace) [[likely]]
        std::free(memory);
    else
        blocks.settle(static_cast<std::uint32_t>(place / kBlockSize), 1);
}

void trimObjectMemory() { blocks.trim(); }

bool hasSpareObjectMemory() { return blocks.hasSpare(); }

}
