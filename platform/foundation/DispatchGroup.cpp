// SPDX-License-Identifier: Apache-2.0
#include "DispatchPrivate.h"

#include <atomic>

#include "RunLoopPrivate.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct DispatchGroup::Methods<struct Group> {
    static void table(Builder&) { }
};
BRINDLE_RECORD(DispatchGroup, Group)

template <> struct DispatchSemaphore::Methods<struct Semaphore> {
    static void table(Builder&) { }
};
BRINDLE_RECORD(DispatchSemaphore, Semaphore)

// ---- groups

namespace {

    /// Is in a group as long as it lives, so also when an exception ends it.
    class GroupMember {
    public:
        explicit GroupMember(DispatchGroup* group)
            : group_(group)
        {
            group->enter();
        }
        ~GroupMember() { group_->leave(); }
        GroupMember(const GroupMember&) = delete;
        GroupMember& operator=(const GroupMember&) = delete;

    private:
        Ref<DispatchGroup> group_;
    };

}

void DispatchGroup::enter()
{
    const std::lock_guard guard(mutex_);
    ++count_;
}

void DispatchGroup::leave()
{
    std::vector<Notice> notices;
    {
        const std::lock_guard guard(mutex_);
        if (count_ == 0)
            fatal("dispatch_group_leave was called more often than dispatch_group_enter");
        if (--count_ > 0)
            return;
        notices.swap(notices_);
        condition_.notify_all();
    }
    for (Notice& notice : notices)
        dispatch_async(notice.queue.get(), std::move(notice.block));
}

void DispatchGroup::notify(DispatchQueue* queue, const Block<void()>& block)
{
    {
        const std::lock_guard guard(mutex_);
        if (count_ > 0) {
            notices_.push_back({ Ref<DispatchQueue>(queue), block });
            return;
        }
    }
    dispatch_async(queue, block);
}

bool DispatchGroup::wait(dispatch_time_t limit)
{
    std::unique_lock lock(mutex_);
    return queues::waitUntil(condition_, lock, limit, [this] { return count_ == 0; });
}

Ref<DispatchGroup> dispatch_group_create() { return make<DispatchGroup>(); }

void dispatch_group_enter(dispatch_group_t group)
{
    queues::requireGroup(group);
    group->enter();
}
void dispatch_group_leave(dispatch_group_t group)
{
    queues::requireGroup(group);
    group->leave();
}

void dispatch_group_async(
    dispatch_group_t group, dispatch_queue_t queue, const Block<void()>& block)
{
    queues::requireClosure(block.get());
    queues::requireQueue(queue);
    queues::requireGroup(group);
    dispatch_async(queue, [member = std::make_shared<GroupMember>(group), block] { block(); });
}

void dispatch_group_notify(
    dispatch_group_t group, dispatch_queue_t queue, const Block<void()>& block)
{
    queues::requireClosure(block.get());
    queues::requireQueue(queue);
    queues::requireGroup(group);
    group->notify(queue, block);
}

std::intptr_t dispatch_group_wait(dispatch_group_t group, dispatch_time_t limit)
{
    queues::requireGroup(group);
    return group->wait(limit) ? 0 : 1;
}

// ---- semaphores

Ref<DispatchSemaphore> DispatchSemaphore::create(std::intptr_t value)
{
    auto semaphore = make<DispatchSemaphore>();
    semaphore->value_ = value;
    return semaphore;
}

bool DispatchSemaphore::wait(dispatch_time_t limit)
{
    std::unique_lock lock(mutex_);
    ++waiting_;
    const bool taken = queues::waitUntil(condition_, lock, limit, [this] { return value_ > 0; });
    --waiting_;
    if (taken)
        --value_;
    return taken;
}

bool DispatchSemaphore::signal()
{
    const std::lock_guard guard(mutex_);
    ++value_;
    condition_.notify_one();
    return waiting_ > 0;
}

Ref<DispatchSemaphore> dispatch_semaphore_create(std::intptr_t value)
{
    return value < 0 ? nullptr : DispatchSemaphore::create(value);
}

std::intptr_t dispatch_semaphore_wait(dispatch_semaphore_t semaphore, dispatch_time_t limit)
{
    queues::requireSemaphore(semaphore);
    return semaphore->wait(limit) ? 0 : 1;
}

std::intptr_t dispatch_semaphore_signal(dispatch_semaphore_t semaphore)
{
    queues::requireSemaphore(semaphore);
    return semaphore->signal() ? 1 : 0;
}

// ---- many at once

namespace {

    /// Indices that several threads take. A helper whose turn comes when none is left, perhaps long after the caller has gone
    /// on, finds that out without touching the closure.
    struct Sharing {
        const Block<void(std::size_t)>& block; // the caller's
        const std::size_t count;
        const Ref<DispatchGroup> working = dispatch_group_create();
        std::atomic<std::size_t> next { 0 };

        Sharing(const Block<void(std::size_t)>& shared, std::size_t howMany)
            : block(shared)
            , count(howMany)
        {
        }
        void work()
        {
            const GroupMember member(working.get()); // before it takes one: the caller then waits
            for (;;) {
                const std::size_t index = next.fetch_add(1, std::memory_order_acq_rel);
                if (index >= count)
                    return;
                block(index);
            }
        }
        /// Hands out nothing more, and waits for those who have taken something.
        void end()
        {
            next.exchange(count, std::memory_order_acq_rel);
            working->wait(DISPATCH_TIME_FOREVER);
        }
    };

    /// Ends the sharing also when an exception ends the caller's share.
    class SharingEnd {
    public:
        explicit SharingEnd(Sharing& sharing)
            : sharing_(sharing)
        {
        }
        ~SharingEnd() { sharing_.end(); }
        SharingEnd(const SharingEnd&) = delete;
        SharingEnd& operator=(const SharingEnd&) = delete;

    private:
        Sharing& sharing_;
    };

}

void dispatch_apply(
    std::size_t count, dispatch_queue_t queue, const Block<void(std::size_t)>& block)
{
    using Kind = DispatchQueue::Kind;
    queues::requireClosure(block.get());
    queues::requireQueue(queue);
    if (queue->kind() != Kind::global && queue->kind() != Kind::concurrent) {
        for (std::size_t i = 0; i < count; ++i)
            dispatch_sync(queue, [&block, i] { block(i); });
        return;
    }
    const auto sharing = std::make_shared<Sharing>(block, count);
    const SharingEnd end(*sharing);
    // Helpers that a barrier holds back until the caller has ended would only pile up.
    const bool isAlone = queues::Frame::contains(queue) && queue->isHeldBack();
    for (std::size_t i = 1; !isAlone && i < std::min(count, queues::width()); ++i)
        dispatch_async(queue, [sharing] { sharing->work(); });
    const queues::Frame frame(queue);
    sharing->work();
}

}
