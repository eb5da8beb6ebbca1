// SPDX-License-Identifier: Apache-2.0
#include "RunLoopPrivate.h"

#include <mutex>
#include <sys/eventfd.h>
#include <unistd.h>

namespace brindle {

namespace {

    /// The inboxes of all loops, for a change of the clock.
    struct Inboxes {
        std::mutex mutex;
        std::vector<Inbox*> all;
    };

    Inboxes& inboxes()
    {
        static Inboxes* const all = new Inboxes; // threads may end after main has returned
        return *all;
    }

    void pauseShortly()
    {
#if defined(__x86_64__)
        __builtin_ia32_pause();
#endif
    }

}

void wakeEveryLoop()
{
    const std::lock_guard guard(inboxes().mutex);
    for (Inbox* const inbox : inboxes().all)
        inbox->wake(Inbox::Wake::look);
}

void ShortLock::wait()
{
    for (int i = 0; i < 100; ++i) {
        int free = 0;
        if (state_.load(std::memory_order_relaxed) == 0
            && state_.compare_exchange_weak(free, 1, std::memory_order_acquire))
            return;
        pauseShortly();
    }
    while (state_.exchange(2, std::memory_order_acquire) != 0)
        state_.wait(2, std::memory_order_relaxed);
}

void ClosureRing::resize(std::size_t size)
{
    std::vector<Item> larger(size);
    for (std::uint64_t i = head_; i < tail_; ++i)
        larger[i & (size - 1)] = items_[i & (room_ - 1)];
    items_.swap(larger);
    room_ = size;
}

void ClosureRing::clear()
{
    while (!empty())
        release(pop());
}

Inbox::Inbox()
    : descriptor_(eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC))
{
    if (descriptor_ < 0)
        fatal("no file descriptor is left for a run loop");
    const std::lock_guard guard(inboxes().mutex);
    inboxes().all.push_back(this);
}

Inbox::~Inbox()
{
    {
        const std::lock_guard guard(inboxes().mutex);
        std::erase(inboxes().all, this);
    }
    for (const ClosureRing::Item item : items_)
        release(item);
    ::close(descriptor_);
}

void Inbox::signalLocked()
{
    if (!sleeping_ || signalled_)
        return;
    signalled_ = true;
    const std::uint64_t one = 1;
    [[maybe_unused]] const ssize_t written = ::write(descriptor_, &one, sizeof one);
}

void Inbox::post(ClosureRing::Item item)
{
    {
        const std::lock_guard guard(lock_);
        if (!closed_) {
            items_.push_back(item);
            itemCount_.store(items_.size(), std::memory_order_release);
            signalLocked();
            return;
        }
    }
    release(item);
}

void Inbox::postControl(const Block<void()>& block)
{
    const std::lock_guard guard(lock_);
    if (closed_)
        return;
    controls_.push_back(block);
    hasControls_.store(true, std::memory_order_release);
    signalLocked();
}

void Inbox::wake(Wake kind)
{
    const std::lock_guard guard(lock_);
    if (kind == Wake::stop)
        stop_.store(true);
    signalLocked();
}

void Inbox::takeItems(ClosureRing& ring)
{
    {
        const std::lock_guard guard(lock_);
        items_.swap(spare_);
        itemCount_.store(0, std::memory_order_release);
    }
    for (const ClosureRing::Item item : spare_)
        ring.push(item);
    constexpr std::size_t kKept = 16384;
    if (spare_.capacity() > kKept)
        spare_ = std::vector<ClosureRing::Item>();
    else
        spare_.clear();
}

std::vector<Block<void()>> Inbox::takeControls()
{
    const std::lock_guard guard(lock_);
    hasControls_.store(false, std::memory_order_release);
    return std::exchange(controls_, {});
}

bool Inbox::hasAnythingLocked(bool itemsCount) const
{
    return !controls_.empty() || stop_.load() || (itemsCount && !items_.empty());
}

bool Inbox::beginSleep(bool itemsCount)
{
    const std::lock_guard guard(lock_);
    if (hasAnythingLocked(itemsCount))
        return false;
    sleeping_ = true;
    return true;
}

void Inbox::beginSleepOutside(bool wakes)
{
    const std::lock_guard guard(lock_);
    sleeping_ = true;
    if (wakes || hasAnythingLocked(true))
        signalLocked();
}

void Inbox::endSleep()
{
    const std::lock_guard guard(lock_);
    sleeping_ = false;
    if (!std::exchange(signalled_, false))
        return;
    std::uint64_t count = 0;
    [[maybe_unused]] const ssize_t got = ::read(descriptor_, &count, sizeof count);
}

void Inbox::close()
{
    std::vector<ClosureRing::Item> items;
    std::vector<Block<void()>> controls;
    {
        const std::lock_guard guard(lock_);
        closed_ = true;
        items.swap(items_);
        controls.swap(controls_);
        itemCount_.store(0, std::memory_order_release);
        hasControls_.store(false, std::memory_order_release);
    }
    for (const ClosureRing::Item item : items)
        release(item);
}

}
