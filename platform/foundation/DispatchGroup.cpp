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
    // Leaves with the closure's end, so also when an exception leaves it.
    struct Member {
        Ref<DispatchGroup> group;
        ~Member() { group->leave(); }
    };
    queues::requireClosure(block.get());
    queues::requireQueue(queue);
    dispatch_group_enter(group);
    auto member = std::shared_ptr<Member>(new Member { Ref<DispatchGroup>(group) });
    dispatch_async(queue, [member = std::move(member), block] { block(); });
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

    struct Sharing {
        Block<void(std::size_t)> block;
        std::size_t count;
        std::atomic<std::size_t> next { 0 };

        void work()
        {
            for (;;) {
                const std::size_t index = next.fetch_add(1, std::memory_order_relaxed);
                if (index >= count)
                    return;
                block(index);
            }
        }
    };

    /// Waits for the helpers, and hands out nothing more when an exception ends the caller's share.
    class AllHelpers {
    public:
        AllHelpers(Sharing& sharing, DispatchGroup& group)
            : sharing_(sharing)
            , group_(group)
        {
        }
        ~AllHelpers()
        {
            sharing_.next.store(sharing_.count, std::memory_order_relaxed);
            group_.wait(DISPATCH_TIME_FOREVER);
        }
        AllHelpers(const AllHelpers&) = delete;
        AllHelpers& operator=(const AllHelpers&) = delete;

    private:
        Sharing& sharing_;
        DispatchGroup& group_;
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
    const auto sharing = std::make_shared<Sharing>();
    sharing->block = block;
    sharing->count = count;
    const Ref<DispatchGroup> group = dispatch_group_create();
    const AllHelpers helpers(*sharing, *group);
    for (std::size_t i = 1; i < std::min(count, queues::width()); ++i)
        dispatch_group_async(group.get(), queue, [sharing] { sharing->work(); });
    const queues::Frame frame(queue);
    sharing->work();
}

}
