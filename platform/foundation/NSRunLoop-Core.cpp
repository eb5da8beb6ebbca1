// SPDX-License-Identifier: Apache-2.0
#include "RunLoopPrivate.h"

#include <algorithm>
#include <cerrno>
#include <ctime>
#include <poll.h>
#include <sys/epoll.h>
#include <unistd.h>

#include "DispatchPrivate.h"
#include "ShortVector.h"
#include "ThreadPrivate.h"
#include "runtime/ClosureMemory.h"
#include "runtime/NSException.h"
#include "runtime/ObjectMemory.h"

namespace brindle {

namespace {

    [[gnu::tls_model("initial-exec")]] constinit thread_local RunLoopCore* ownCore = nullptr;

    short pollEvents(NSUInteger events)
    {
        return static_cast<short>((events & NSRunLoopSourceReadable ? POLLIN : 0)
            | (events & NSRunLoopSourceWritable ? POLLOUT : 0));
    }

    NSUInteger sourceEvents(short events)
    {
        NSUInteger all = 0;
        if (events & POLLIN)
            all |= NSRunLoopSourceReadable;
        if (events & POLLOUT)
            all |= NSRunLoopSourceWritable;
        if (events & (POLLHUP | POLLERR | POLLNVAL))
            all |= NSRunLoopSourceClosed;
        return all;
    }

}

/// Names the mode that runs; the one outside comes back at its end, exceptions included. After the outermost run whoever
/// writes wakes another program's loop again.
class RunLoopCore::Running {
public:
    Running(RunLoopCore& loop, NSString* name)
        : loop_(loop)
        , before_(std::exchange(loop.currentMode_, Ref<NSString>(name)))
        , dueBefore_(loop.nextDue(kDefault))
    {
        ++loop_.depth_;
        if (std::exchange(loop_.outside_, false))
            loop_.inbox_->endSleep();
    }
    ~Running()
    {
        loop_.currentMode_ = before_;
        if (--loop_.depth_ == 0 && loop_.embedding_ >= 0)
            loop_.goOutside(loop_.nextDue(kDefault) < dueBefore_);
    }
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;

private:
    RunLoopCore& loop_;
    Ref<NSString> before_;
    std::int64_t dueBefore_; // when another program's loop may mean to step
};

RunLoopCore::RunLoopCore(bool isMain)
    : isMain_(isMain)
    , inbox_(std::make_shared<Inbox>())
    , modeNames_ { Ref<NSString>(NSDefaultRunLoopMode.get()),
        Ref<NSString>(NSEventTrackingRunLoopMode.get()),
        Ref<NSString>(NSModalPanelRunLoopMode.get()) }
{
}

RunLoopCore::~RunLoopCore()
{
    if (embedding_ >= 0)
        ::close(embedding_);
}

void RunLoopCore::close()
{
    for (std::size_t i = 0; i < lanes_.size(); ++i) {
        while (Scheduled* const entry = lanes_[i]->first()) {
            lanes_[i]->remove(*entry);
            entry->drop(entry);
        }
    }
    for (const auto& source : std::exchange(sources_, {}))
        source->loop_ = nullptr;
    for (const auto& observer : std::exchange(observers_, {}))
        observer->loop_ = nullptr;
    inbox_->close();
    items_.clear();
    if (ownCore == this)
        ownCore = nullptr;
}

constinit std::atomic<RunLoopCore*> RunLoopCore::mainCore { nullptr };

RunLoopCore& RunLoopCore::makeMain()
{
    static RunLoopCore* const core = &of(*ThreadState::main().ensureLoop().leak()); // for ever
    mainCore.store(core, std::memory_order_release);
    return *core;
}

RunLoopCore& RunLoopCore::current()
{
    if (!ownCore) [[unlikely]] {
        const Ref<NSRunLoop> loop = ThreadState::current().ensureLoop(); // the state keeps it
        ownCore = isMainThread() ? &main() : &of(*loop);
    }
    return *ownCore;
}

void RunLoopCore::refuseUnmade()
{
    raise("NSInternalInconsistencyException",
        "*** NSRunLoop: threads make their run loops; ask for the current one");
}

Ref<NSRunLoop> RunLoopCore::makeLoop(bool isMain)
{
    Ref<NSRunLoop> loop = alloc<NSRunLoop>();
    loop->core_ = std::make_shared<RunLoopCore>(isMain);
    return loop;
}

bool RunLoopCore::isOwnThread() const { return ownCore == this || (isMain_ && isMainThread()); }

RunLoopCore::Modes RunLoopCore::modesNamed(NSString* mode)
{
    if (!mode)
        return kDefault;
    for (std::size_t i = 0; i < modeNames_.size(); ++i) {
        if (modeNames_[i].get() == mode)
            return Modes { 1 } << i;
    }
    if (mode->isEqual(NSRunLoopCommonModes))
        return kCommon;
    for (std::size_t i = 0; i < modeNames_.size(); ++i) {
        if (modeNames_[i]->isEqual(mode))
            return Modes { 1 } << i;
    }
    if (modeNames_.size() == 64)
        raise("NSInvalidArgumentException", "a run loop has at most 64 modes");
    modeNames_.push_back(cast<NSString>(mode->copy()));
    return Modes { 1 } << (modeNames_.size() - 1);
}

// ---- a turn

bool RunLoopCore::runControls()
{
    if (inbox_->hasControls()) {
        for (auto& control : inbox_->takeControls())
            controls_.push_back(std::move(control));
    }
    bool any = false;
    while (!controls_.empty()) { // an exception leaves the rest for the next turn
        const Block<void()> control = std::move(controls_.front());
        controls_.pop_front();
        control();
        any = true;
    }
    return any;
}

void RunLoopCore::enqueueSlowly(ClosureRing::Item item)
{
    if (inbox_->hasItems())
        inbox_->takeItems(items_); // what others posted before comes first
    items_.push(item);
    if (outside_)
        inbox_->wake(Inbox::Wake::look);
}

bool RunLoopCore::drainItems(Modes mode)
{
    if (!(mode & kCommon))
        return false;
    if (inbox_->hasItems())
        inbox_->takeItems(items_);
    const std::uint64_t end = items_.tail();
    const bool any = !items_.empty();
    // A loop that an item runs goes on where this one stands, so the head may overtake the end.
    while (items_.head() < end) {
        const auto item = Block<void()>::adopt(items_.pop());
        item();
    }
    return any;
}

void RunLoopCore::collect(Modes mode, std::vector<pollfd>& polled) const
{
    for (const auto& source : sources_) {
        if (source->modes_ & mode)
            polled.push_back({ source->descriptor_, pollEvents(source->events_), 0 });
    }
}

NSUInteger RunLoopCore::eventsNow(const NSRunLoopSource& source)
{
    pollfd polled { source.descriptor_, pollEvents(source.events_), 0 };
    return ::poll(&polled, 1, 0) > 0 ? sourceEvents(polled.revents) : 0;
}

bool RunLoopCore::pollSources(Modes mode)
{
    std::vector<pollfd> polled;
    collect(mode, polled);
    if (polled.empty() || ::poll(polled.data(), polled.size(), 0) <= 0)
        return false;
    std::vector<std::pair<Ref<NSRunLoopSource>, NSUInteger>> ready;
    std::size_t i = 0;
    for (const auto& source : sources_) {
        if (!(source->modes_ & mode))
            continue;
        if (const NSUInteger events = sourceEvents(polled[i++].revents))
            ready.emplace_back(source, events);
    }
    const std::uint64_t turn = turns_;
    for (const auto& [source, seen] : ready) {
        if (!(source->modes_ & mode)) // an earlier handler took it out
            continue;
        // A handler that ran the loop may have had this one's events handled.
        if (const NSUInteger events = turns_ == turn ? seen : eventsNow(*source)) {
            const Block<void(NSUInteger)> handler = source->handler_;
            handler(events);
        }
    }
    return !ready.empty();
}

void RunLoopCore::callObservers(Modes mode)
{
    if (observers_.empty())
        return;
    const ShortVector<Ref<NSRunLoopObserver>, 8> snapshot(observers_.begin(), observers_.end());
    for (const auto& observer : snapshot) {
        if (observer->modes_ & mode) {
            const Block<void()> handler = observer->handler_;
            handler();
        }
    }
}

RunLoopCore::Done RunLoopCore::turn(Modes mode, std::uint64_t since)
{
    ++turns_;
    const bool controls = runControls();
    if (isMain_ && Clock::isVirtual())
        queues::fireDelayed(Clock::now());
    Done done = fireDue(mode, since);
    done.sources = drainItems(mode) || controls;
    if (!sources_.empty())
        done.sources |= pollSources(mode);
    done.anything |= done.sources;
    callObservers(mode);
    return done;
}

// ---- waiting

bool RunLoopCore::hasAnything(Modes mode) const
{
    if ((isMain_ && mode & kCommon) || inbox_->hasControls() || !controls_.empty())
        return true;
    if (mode & kCommon && (!items_.empty() || inbox_->hasItems()))
        return true;
    for (const auto& lane : lanes_) {
        if (lane->modes & mode && lane->first())
            return true;
    }
    return std::any_of(sources_.begin(), sources_.end(),
        [mode](const auto& source) { return (source->modes_ & mode) != 0; });
}

namespace {

    /// Waits for descriptors until a moment of the clock. - Returns: whether one is ready.
    bool poll(std::vector<pollfd>& polled, std::int64_t until)
    {
        timespec left {};
        if (until != kNever) {
            const std::int64_t nanoseconds = std::max<std::int64_t>(until - Clock::now(), 0);
            left = { nanoseconds / 1'000'000'000, nanoseconds % 1'000'000'000 };
        }
        return ::ppoll(polled.data(), polled.size(), until == kNever ? nullptr : &left, nullptr)
            > 0;
    }

}

void RunLoopCore::sleep(Modes mode, std::int64_t until)
{
    constexpr std::int64_t kRest = 50'000'000; // nanoseconds; by then a burst of closures is over
    std::vector<pollfd> polled { { inbox_->descriptor(), POLLIN, 0 } };
    collect(mode, polled);
    bool isReady = false;
    const bool hasSpare = items_.isRoomy() || hasSpareClosureMemory() || hasSpareObjectMemory();
    if (hasSpare && !Clock::isVirtual()) {
        isReady = poll(polled, std::min(until, Clock::now() + kRest));
        if (!isReady) {
            items_.shrink();
            trimClosureMemory();
            trimObjectMemory();
        }
    }
    if (!isReady)
        poll(polled, until);
    ++wakes_;
}

void RunLoopCore::wait(Modes mode, std::int64_t limit)
{
    if (!controls_.empty() || (mode & kCommon && !items_.empty()))
        return;
    if (!inbox_->beginSleep((mode & kCommon) != 0))
        return;
    // Only now: a change of the clock and the end of background work wake who has begun to sleep.
    std::int64_t until = std::min(limit, nextDue(mode));
    const bool isVirtual = Clock::isVirtual();
    if (isVirtual && isMain_)
        until = std::min(until, queues::nextDelayed());
    if (until == kNever || until > Clock::now()) {
        if (isVirtual && isMain_ && until != kNever && !queues::isBusy())
            Clock::advanceTo(until);
        else
            sleep(mode, isVirtual ? kNever : until);
    }
    inbox_->endSleep();
}

bool RunLoopCore::run(Modes mode, NSString* name, std::int64_t limit)
{
    if (!hasAnything(mode))
        return false;
    const Running running(*this, name);
    for (;;) {
        const Done done = turn(mode);
        if (inbox_->takeStop() || done.sources || !hasAnything(mode))
            return true;
        if (limit != kNever && Clock::now() >= limit)
            return true;
        if (!done.anything)
            wait(mode, limit);
    }
}

bool RunLoopCore::runUntilIdle(Modes mode, NSString* name)
{
    const Running running(*this, name);
    bool any = false;
    std::uint64_t since = order_;
    for (;;) {
        const Done done = turn(mode, since);
        any |= done.anything;
        if (done.sources)
            since = order_;
        else if (!done.earlier) // nothing, or only timers that timers have set up meanwhile
            return any;
    }
}

/// Runs what is due, and waits for what queues' threads are doing.
bool RunLoopCore::settle(Modes mode)
{
    bool any = false;
    for (;;) {
        while (turn(mode).anything)
            any = true;
        if (!isMain_ || !queues::isBusy())
            return any;
        if (inbox_->beginSleep(true)) {
            if (queues::isBusy()) // else the wake-up for that may have come before the sleep began
                sleep(mode, kNever);
            inbox_->endSleep();
        }
    }
}

void RunLoopCore::advance(double seconds)
{
    if (!Clock::isVirtual()) {
        const std::int64_t limit = momentAfter(Clock::now(), seconds);
        do
            run(kDefault, NSDefaultRunLoopMode, limit);
        while (Clock::now() < limit && hasAnything(kDefault));
        return;
    }
    const Running running(*this, NSDefaultRunLoopMode);
    const std::int64_t end = momentAfter(Clock::now(), seconds);
    settle(kDefault);
    for (;;) {
        std::int64_t due = nextDue(kDefault);
        if (isMain_)
            due = std::min(due, queues::nextDelayed());
        if (due > end)
            break;
        Clock::advanceTo(due);
        settle(kDefault);
    }
    Clock::advanceTo(end);
    settle(kDefault);
}

// ---- inside another program's loop

int RunLoopCore::embeddingDescriptor()
{
    if (embedding_ < 0) {
        embedding_ = epoll_create1(EPOLL_CLOEXEC);
        epoll_event event {};
        event.events = EPOLLIN;
        epoll_ctl(embedding_, EPOLL_CTL_ADD, inbox_->descriptor(), &event);
        for (const auto& source : sources_)
            watch(source->descriptor_);
        if (depth_ == 0)
            goOutside(false);
    }
    return embedding_;
}

void RunLoopCore::goOutside(bool isEarlier)
{
    outside_ = true;
    inbox_->beginSleepOutside(isEarlier || !items_.empty() || !controls_.empty());
}

double RunLoopCore::embeddingTimeout() const
{
    if (!items_.empty() || inbox_->hasItems() || !controls_.empty() || inbox_->hasControls())
        return 0;
    if (inbox_->hasStop() || !unwatched_.empty())
        return 0;
    const std::int64_t due = nextDue(kDefault);
    if (due == kNever)
        return -1;
    return static_cast<double>(std::max<std::int64_t>(due - Clock::now(), 0)) / 1e9;
}

void RunLoopCore::embeddingStep()
{
    embeddingDescriptor();
    const Running running(*this, NSDefaultRunLoopMode);
    turn(kDefault);
    inbox_->takeStop();
}

void RunLoopCore::watch(int descriptor)
{
    if (embedding_ < 0)
        return;
    epoll_ctl(embedding_, EPOLL_CTL_DEL, descriptor, nullptr);
    std::erase(unwatched_, descriptor);
    bool isWanted = false;
    NSUInteger events = 0;
    for (const auto& source : sources_) {
        if (source->descriptor_ == descriptor && source->modes_ & kDefault) {
            isWanted = true;
            events |= source->events_;
        }
    }
    if (!isWanted)
        return;
    epoll_event event {};
    event.events = (events & NSRunLoopSourceReadable ? EPOLLIN : 0u)
        | (events & NSRunLoopSourceWritable ? EPOLLOUT : 0u);
    if (epoll_ctl(embedding_, EPOLL_CTL_ADD, descriptor, &event) < 0 && events)
        unwatched_.push_back(descriptor);
}

// ---- sources and observers

void RunLoopCore::addSource(NSRunLoopSource& source, Modes modes)
{
    if (!source.isValid() || (source.loop_ && source.loop_ != this))
        return;
    if (!source.loop_)
        sources_.emplace_back(&source);
    source.loop_ = this;
    source.modes_ |= modes;
    watch(source.descriptor_);
}

void RunLoopCore::removeSource(NSRunLoopSource& source, Modes modes)
{
    if (source.loop_ != this)
        return;
    source.modes_ &= ~modes;
    watch(source.descriptor_);
    if (source.modes_)
        return;
    source.loop_ = nullptr;
    const Ref<NSRunLoopSource> alive(&source);
    std::erase_if(sources_, [&](const auto& each) { return each == &source; });
}

void RunLoopCore::sourceChanged(NSRunLoopSource& source) { watch(source.descriptor_); }

void RunLoopCore::addObserver(NSRunLoopObserver& observer, Modes modes)
{
    if (!observer.isValid() || (observer.loop_ && observer.loop_ != this))
        return;
    observer.modes_ |= modes;
    if (std::exchange(observer.loop_, this))
        return;
    const auto place = std::find_if(observers_.begin(), observers_.end(),
        [&](const auto& each) { return each->order_ > observer.order_; });
    observers_.insert(place, Ref<NSRunLoopObserver>(&observer));
}

void RunLoopCore::removeObserver(NSRunLoopObserver& observer, Modes modes)
{
    if (observer.loop_ != this)
        return;
    observer.modes_ &= ~modes;
    if (observer.modes_)
        return;
    observer.loop_ = nullptr;
    const Ref<NSRunLoopObserver> alive(&observer);
    std::erase_if(observers_, [&](const auto& each) { return each == &observer; });
}

}
