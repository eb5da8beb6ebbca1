// SPDX-License-Identifier: Apache-2.0
#include "Dispatch.h"

#include <atomic>

#include "Clock.h"
#include "DispatchPrivate.h"
#include "RunLoopPrivate.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    constexpr int kDefaultPriority = 1;

    void require(const DispatchQueue* queue, const Block<void()>& block)
    {
        queues::requireClosure(block.get());
        queues::requireQueue(queue);
    }

    /// A closure that waits in the main loop for its moment.
    struct After : Scheduled {
        Block<void()> block;
    };

    void fireAfter(Scheduled* scheduled)
    {
        const std::unique_ptr<After> after(static_cast<After*>(scheduled));
        RunLoopCore::main().enqueue(after->block.leak());
    }

    void dropAfter(Scheduled* scheduled) { delete static_cast<After*>(scheduled); }

    void scheduleOnMain(std::int64_t due, const Block<void()>& block)
    {
        auto* const after = new After;
        after->block = block;
        after->fire = &fireAfter;
        after->drop = &dropAfter;
        RunLoopCore::main().schedule(*after, RunLoopCore::kCommon, due);
    }

    [[gnu::tls_model("initial-exec")]] constinit thread_local queues::Frame* innermost = nullptr;

}

namespace queues {

    Frame::Frame(DispatchQueue* queue)
        : queue_(queue)
        , outer_(std::exchange(innermost, this))
    {
    }
    Frame::~Frame() { innermost = outer_; }
    bool Frame::contains(const DispatchQueue* queue)
    {
        for (const Frame* frame = innermost; frame; frame = frame->outer_) {
            if (frame->queue_ == queue)
                return true;
        }
        return false;
    }

}

// ---- queues of one's own

template <> struct DispatchQueue::Methods<struct Queue> {
    static void table(Builder&) { }
};
BRINDLE_RECORD(DispatchQueue, Queue)

Ref<DispatchQueue> DispatchQueue::create(Kind kind, int priority, const char* label)
{
    auto queue = make<DispatchQueue>();
    queue->kind_ = kind;
    queue->priority_ = priority;
    queue->label_ = label ? label : "";
    return queue;
}

DispatchQueue* DispatchQueue::createShared(Kind kind, int priority, const char* label)
{
    DispatchQueue* const queue = create(kind, priority, label).leak();
    headerOf(queue).count.store(ObjectHeader::kImmortal, std::memory_order_relaxed);
    return queue;
}

void DispatchQueue::add(Block<void()> block, bool alone)
{
    if (kind_ == Kind::global) {
        queues::submit(priority_, std::move(block), this);
        return;
    }
    const std::lock_guard guard(mutex_);
    items_.push_back({ std::move(block), alone || kind_ == Kind::serial });
    startLocked();
}

void DispatchQueue::startLocked()
{
    if (kind_ == Kind::serial) {
        if (running_ == 0 && !items_.empty()) {
            running_ = 1;
            queues::submit(
                priority_, [self = Ref<DispatchQueue>(this)] { self->drainSerial(); }, this);
        }
        return;
    }
    while (!items_.empty() && !alone_ && !(items_.front().alone && running_ > 0)) {
        Item item = std::move(items_.front());
        items_.pop_front();
        ++running_;
        alone_ = item.alone;
        queues::submit(
            priority_,
            [self = Ref<DispatchQueue>(this), item = std::move(item)] { self->runItem(item); },
            this);
    }
}

void DispatchQueue::runItem(const Item& item)
{
    item.block();
    finished(item.alone);
}

void DispatchQueue::finished(bool alone)
{
    const std::lock_guard guard(mutex_);
    --running_;
    if (alone)
        alone_ = false;
    startLocked();
}

void DispatchQueue::drainSerial()
{
    for (int i = 0; i < 64; ++i) { // then others get the thread
        Item item;
        {
            const std::lock_guard guard(mutex_);
            if (items_.empty()) {
                running_ = 0;
                return;
            }
            item = std::move(items_.front());
            items_.pop_front();
        }
        item.block();
    }
    queues::submit(
        priority_, [self = Ref<DispatchQueue>(this)] { self->drainSerial(); }, this);
}

/// Gives the queue on when a closure that ran on its caller's thread has ended.
class DispatchQueue::Turn {
public:
    Turn(DispatchQueue& queue, bool alone)
        : queue_(&queue)
        , alone_(alone)
        , frame_(&queue)
    {
    }
    ~Turn() { queue_->finished(alone_); }
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;

private:
    Ref<DispatchQueue> queue_;
    bool alone_;
    queues::Frame frame_;
};

void DispatchQueue::runHere(const Block<void()>& block, bool alone)
{
    if (kind_ == Kind::global) {
        const queues::Frame frame(this);
        block();
        return;
    }
    alone = alone || kind_ == Kind::serial;
    if (alone && queues::Frame::contains(this))
        fatal("dispatch_sync was called on the queue that it would wait for");
    std::unique_lock lock(mutex_);
    if (items_.empty() && !alone_ && (!alone || running_ == 0)) {
        ++running_;
        alone_ = alone;
        lock.unlock();
        const Turn turn(*this, alone);
        block();
        return;
    }
    lock.unlock();
    queues::runAndWait([&](const Block<void()>& posted) { add(posted, alone); }, block);
}

bool DispatchQueue::isHeldBack()
{
    const std::lock_guard guard(mutex_);
    return alone_ || !items_.empty();
}

// ---- the functions

bool isMainQueue(const DispatchQueue* queue) { return queue->kind() == DispatchQueue::Kind::main; }

void postToMain(ClosureRing::Item item)
{
    RunLoopCore& loop = RunLoopCore::main();
    if (isMainThread())
        loop.enqueue(item);
    else
        loop.inbox()->post(item);
}

dispatch_time_t dispatch_time(dispatch_time_t when, std::int64_t delta)
{
    if (when == DISPATCH_TIME_FOREVER)
        return when;
    if (when == DISPATCH_TIME_NOW)
        when = static_cast<dispatch_time_t>(Clock::now());
    if (delta < 0) {
        const std::uint64_t back = 0 - static_cast<std::uint64_t>(delta);
        return when > back ? when - back : 1; // not 0, which would be read as now again
    }
    const dispatch_time_t sum = when + static_cast<std::uint64_t>(delta);
    return sum >= static_cast<dispatch_time_t>(kNever) ? DISPATCH_TIME_FOREVER : sum;
}

dispatch_queue_t dispatch_get_main_queue()
{
    static DispatchQueue* const queue
        = DispatchQueue::createShared(DispatchQueue::Kind::main, 0, "brindle.main");
    return queue;
}

dispatch_queue_t dispatch_get_global_queue(std::intptr_t priority, std::uintptr_t flags)
{
    using Kind = DispatchQueue::Kind;
    static DispatchQueue* const shared[queues::kPriorities] {
        DispatchQueue::createShared(Kind::global, 0, "brindle.global.high"),
        DispatchQueue::createShared(Kind::global, 1, "brindle.global.default"),
        DispatchQueue::createShared(Kind::global, 2, "brindle.global.low"),
        DispatchQueue::createShared(Kind::global, 3, "brindle.global.background"),
    };
    if (flags)
        return nullptr;
    switch (priority) {
    case DISPATCH_QUEUE_PRIORITY_HIGH:
        return shared[0];
    case DISPATCH_QUEUE_PRIORITY_DEFAULT:
        return shared[1];
    case DISPATCH_QUEUE_PRIORITY_LOW:
        return shared[2];
    case DISPATCH_QUEUE_PRIORITY_BACKGROUND:
        return shared[3];
    default:
        return nullptr;
    }
}

Ref<DispatchQueue> dispatch_queue_create(const char* label, dispatch_queue_attr_t attribute)
{
    const bool concurrent = attribute == DISPATCH_QUEUE_CONCURRENT;
    return DispatchQueue::create(
        concurrent ? DispatchQueue::Kind::concurrent : DispatchQueue::Kind::serial,
        kDefaultPriority, label);
}

const char* dispatch_queue_get_label(dispatch_queue_t queue)
{
    return queue ? queue->label().c_str() : "";
}

void dispatch_async(dispatch_queue_t queue, Block<void()>&& block)
{
    require(queue, block);
    if (isMainQueue(queue))
        postToMain(block.leak());
    else
        queue->add(std::move(block), false);
}

void dispatch_async(dispatch_queue_t queue, const Block<void()>& block)
{
    dispatch_async(queue, Block<void()>(block));
}

void dispatch_sync(dispatch_queue_t queue, const Block<void()>& block)
{
    require(queue, block);
    if (!isMainQueue(queue)) {
        queue->runHere(block, false);
        return;
    }
    if (isMainThread())
        fatal("dispatch_sync was called on the queue that it would wait for");
    queues::runAndWait(
        [](const Block<void()>& posted) { postToMain(Block<void()>(posted).leak()); }, block);
}

void dispatch_barrier_async(dispatch_queue_t queue, const Block<void()>& block)
{
    require(queue, block);
    if (isMainQueue(queue))
        dispatch_async(queue, block);
    else
        queue->add(block, true);
}

void dispatch_barrier_sync(dispatch_queue_t queue, const Block<void()>& block)
{
    require(queue, block);
    if (isMainQueue(queue))
        dispatch_sync(queue, block);
    else
        queue->runHere(block, true);
}

void dispatch_after(dispatch_time_t when, dispatch_queue_t queue, const Block<void()>& block)
{
    require(queue, block);
    if (when == DISPATCH_TIME_FOREVER)
        return;
    // A moment that has passed counts as now, so that such closures keep the order of the calls.
    const std::int64_t now = Clock::now();
    const std::int64_t due = std::max(now,
        when > static_cast<dispatch_time_t>(kNever) ? kNever : static_cast<std::int64_t>(when));
    if (!isMainQueue(queue)) {
        queues::delay(due, queue, block);
        return;
    }
    if (isMainThread())
        scheduleOnMain(due, block);
    else
        RunLoopCore::main().inbox()->postControl([due, block] { scheduleOnMain(due, block); });
}

void dispatch_once(dispatch_once_t* predicate, const Block<void()>& block)
{
    constexpr dispatch_once_t kFresh = 0;
    constexpr dispatch_once_t kRunning = 1;
    constexpr dispatch_once_t kDone = -1;
    queues::requireClosure(block.get());
    std::atomic_ref<dispatch_once_t> state(*predicate);
    for (;;) {
        dispatch_once_t seen = kFresh;
        if (state.compare_exchange_strong(seen, kRunning, std::memory_order_acquire))
            break;
        if (seen == kDone)
            return;
        const queues::Blocked blocked;
        state.wait(kRunning, std::memory_order_acquire);
    }
    struct Running {
        std::atomic_ref<dispatch_once_t>& state;
        dispatch_once_t after;
        ~Running()
        {
            state.store(after, std::memory_order_release);
            state.notify_all();
        }
    } running { state, kFresh };
    block();
    running.after = kDone;
}

}
