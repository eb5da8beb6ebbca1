// SPDX-License-Identifier: Apache-2.0
#include "NSTimer.h"

#include <cmath>

#include "NSDate.h"
#include "TimerPrivate.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    constexpr double kShortestInterval = 0.0001; // seconds
    constexpr double kShortestDelay = 0.000001;

    thread_local int firings = 0; // under way on this thread

    /// Answers how early a timer may come that a handler sets: a chain of those that are due at once would never end.
    std::int64_t afterHandler() { return firings ? momentAfter(Clock::now(), kShortestDelay) : 0; }

    double atLeast(double shortest, double seconds)
    {
        return seconds > shortest ? seconds : shortest; // also for what is no number
    }

    std::int64_t momentOf(NSDate* date)
    {
        if (!date)
            return Clock::now();
        const double delta = date->timeIntervalSinceReferenceDate() - Clock::wall();
        const std::int64_t now = Clock::now();
        return delta < 0 ? now - (momentAfter(now, -delta) - now) : momentAfter(now, delta);
    }

    void letGo(NSTimer::Entry& entry)
    {
        if (std::exchange(entry.loop, nullptr))
            release(entry.timer);
    }

    /// Answers the first moment of a series after now: those that were missed are left out.
    std::int64_t nextMoment(std::int64_t moment, std::int64_t step)
    {
        const std::int64_t now = Clock::now();
        std::int64_t next = 0;
        if (moment > now - step)
            return __builtin_add_overflow(moment, step, &next) ? kNever : next;
        return moment + ((now - moment) / step + 1) * step;
    }

    /// Puts a timer that has fired back in its place or ends it, also when an exception left it.
    class AfterFiring {
    public:
        explicit AfterFiring(NSTimer::Entry& entry)
            : entry_(entry)
            , alive_(entry.timer)
        {
            entry.firing = true;
            entry.moved = false;
            ++firings;
        }
        ~AfterFiring()
        {
            --firings;
            entry_.firing = false;
            if (!alive_->isValid())
                return;
            if (entry_.step && !entry_.moved)
                entry_.moment = nextMoment(entry_.moment, entry_.step);
            if (!entry_.step && !entry_.moved)
                alive_->invalidate();
            else if (entry_.loop)
                entry_.loop->schedule(entry_, entry_.modes, entry_.next());
        }
        AfterFiring(const AfterFiring&) = delete;
        AfterFiring& operator=(const AfterFiring&) = delete;

    private:
        NSTimer::Entry& entry_;
        Ref<NSTimer> alive_;
    };

    void fireEntry(Scheduled* scheduled)
    {
        auto& entry = *static_cast<NSTimer::Entry*>(scheduled);
        const AfterFiring after(entry);
        entry.timer->send<"_call">();
    }

    void dropEntry(Scheduled* scheduled) { letGo(*static_cast<NSTimer::Entry*>(scheduled)); }

}

void addTimer(RunLoopCore& loop, NSTimer& timer, RunLoopCore::Modes modes)
{
    if (!timer.isValid())
        return;
    NSTimer::Entry& entry = *timer.entry_;
    if (entry.loop && entry.loop != &loop)
        return;
    entry.modes |= modes;
    if (!entry.loop) {
        entry.loop = &loop;
        retain(&timer);
    }
    if (entry.firing)
        return; // goes back by itself
    loop.unschedule(entry);
    loop.schedule(entry, entry.modes, entry.next());
}

void repeatNextTurn(NSTimer& timer)
{
    timer.entry_->moment = Clock::now();
    timer.entry_->earliest = 0;
    timer.entry_->moved = true;
}

template <> struct NSTimer::Methods<struct Scheduling> {

    // A bare init leaves a timer without an entry: it was never valid.
    static bool isValid(NSTimer& self) { return self.entry_ && !self.invalid_; }

    static Ref<NSTimer> begin(NSTimer& self, std::int64_t moment, double seconds, bool repeats)
    {
        if (!super<NSTimer, "init", Ref<NSObject>>(self))
            return nullptr;
        if (!self.entry_)
            self.entry_ = std::make_shared<Entry>();
        Entry& entry = *self.entry_;
        if (entry.loop) { // initialised once more: the loop forgets what it was
            entry.loop->unschedule(entry);
            letGo(entry);
        }
        self.invalid_ = false;
        entry.modes = 0;
        entry.step = 0;
        self.interval_ = 0;
        entry.moved = true; // what is firing now does not move it
        entry.fire = &fireEntry;
        entry.drop = &dropEntry;
        entry.timer = &self;
        entry.moment = moment;
        entry.earliest = afterHandler();
        if (repeats) {
            self.interval_ = atLeast(kShortestInterval, seconds);
            entry.step = momentAfter(0, self.interval_);
        }
        return &self;
    }
    static void beginIn(NSTimer& self, double seconds)
    {
        const double delay = std::max(self.interval_, atLeast(kShortestDelay, seconds));
        self.entry_->moment = momentAfter(Clock::now(), delay);
    }

    static Ref<NSTimer> initTarget(NSTimer& self, NSDate* date, double seconds, NSObject* target,
        SEL selector, NSObject* userInfo, bool repeats)
    {
        self.target_ = Ref<NSObject>(target);
        self.selector_ = selector;
        self.userInfo_ = Ref<NSObject>(userInfo);
        return begin(self, momentOf(date), seconds, repeats);
    }
    static Ref<NSTimer> initBlock(
        NSTimer& self, NSDate* date, double seconds, bool repeats, Closure<void(NSTimer*)>* block)
    {
        self.block_ = Block<void(NSTimer*)>(block);
        return begin(self, momentOf(date), seconds, repeats);
    }

    static Ref<NSTimer> timerTarget(Class& self, double seconds, NSObject* target, SEL selector,
        NSObject* userInfo, bool repeats)
    {
        auto timer = cast<NSTimer>(self.send<"alloc", Ref<NSObject>>());
        timer->initWithFireDate_interval_target_selector_userInfo_repeats(
            nullptr, seconds, target, selector, userInfo, repeats);
        beginIn(*timer, seconds);
        return timer;
    }
    static Ref<NSTimer> timerBlock(
        Class& self, double seconds, bool repeats, Closure<void(NSTimer*)>* block)
    {
        auto timer = cast<NSTimer>(self.send<"alloc", Ref<NSObject>>());
        timer->initWithFireDate_interval_repeats_block(
            nullptr, seconds, repeats, Block<void(NSTimer*)>(block));
        beginIn(*timer, seconds);
        return timer;
    }
    static Ref<NSTimer> scheduledTarget(Class& self, double seconds, NSObject* target, SEL selector,
        NSObject* userInfo, bool repeats)
    {
        Ref<NSTimer> timer = timerTarget(self, seconds, target, selector, userInfo, repeats);
        addTimer(RunLoopCore::current(), *timer, RunLoopCore::kDefault);
        return timer;
    }
    static Ref<NSTimer> scheduledBlock(
        Class& self, double seconds, bool repeats, Closure<void(NSTimer*)>* block)
    {
        Ref<NSTimer> timer = timerBlock(self, seconds, repeats, block);
        addTimer(RunLoopCore::current(), *timer, RunLoopCore::kDefault);
        return timer;
    }

    static void call(NSTimer& self)
    {
        if (self.block_) {
            const Block<void(NSTimer*)> block = self.block_;
            block(&self);
        } else if (self.target_) {
            const Ref<NSObject> target = self.target_;
            performNow(target.get(), self.selector_, &self);
        }
    }
    static void fire(NSTimer& self)
    {
        if (!isValid(self))
            return;
        const Ref<NSTimer> alive(&self);
        call(self);
        if (!self.entry_->step)
            self.invalidate();
    }
    static Ref<NSDate> fireDate(NSTimer& self)
    {
        if (!self.entry_)
            return nullptr;
        return NSDate::cls().dateWithTimeIntervalSinceReferenceDate(
            Clock::wall() + static_cast<double>(self.entry_->moment - Clock::now()) / 1e9);
    }
    static void moveTo(NSTimer& self, std::int64_t moment)
    {
        if (!isValid(self))
            return;
        Entry& entry = *self.entry_;
        entry.moment = moment;
        entry.earliest = entry.firing ? afterHandler() : 0;
        entry.moved = true;
        if (entry.lane)
            entry.loop->reschedule(entry, moment);
    }
    static void setFireDate(NSTimer& self, NSDate* date)
    {
        const std::int64_t moment = momentOf(date);
        moveTo(self, std::max(moment, Clock::now()));
    }
    static void restart(NSTimer& self, double seconds)
    {
        moveTo(self, momentAfter(Clock::now(), seconds));
    }
    static NSTimeInterval timeInterval(NSTimer& self) { return self.interval_; }
    static NSTimeInterval tolerance(NSTimer& self) { return self.tolerance_; }
    static void setTolerance(NSTimer& self, NSTimeInterval seconds)
    {
        self.tolerance_ = seconds > 0 ? seconds : 0;
    }
    static Ref<NSObject> userInfo(NSTimer& self) { return self.userInfo_; }
    static void invalidate(NSTimer& self)
    {
        if (!isValid(self))
            return;
        self.invalid_ = true;
        const Ref<NSTimer> alive(&self);
        Entry& entry = *self.entry_;
        if (entry.loop)
            entry.loop->unschedule(entry);
        letGo(entry);
        self.target_ = nullptr;
        self.userInfo_ = nullptr;
        self.block_ = nullptr;
    }

    static void table(Builder& t)
    {
        t.classMethods({
            { "timerWithTimeInterval:target:selector:userInfo:repeats:", imp<timerTarget> },
            { "timerWithTimeInterval:repeats:block:", imp<timerBlock> },
            { "scheduledTimerWithTimeInterval:target:selector:userInfo:repeats:",
                imp<scheduledTarget> },
            { "scheduledTimerWithTimeInterval:repeats:block:", imp<scheduledBlock> },
        });
        t.methods({
            { "initWithFireDate:interval:target:selector:userInfo:repeats:", imp<initTarget> },
            { "initWithFireDate:interval:repeats:block:", imp<initBlock> },
            { "_call", imp<call> },
            { "fire", imp<fire> },
            { "fireDate", imp<fireDate> },
            { "setFireDate:", imp<setFireDate> },
            { "restart:", imp<restart> },
            { "timeInterval", imp<timeInterval> },
            { "tolerance", imp<tolerance> },
            { "setTolerance:", imp<setTolerance> },
            { "userInfo", imp<userInfo> },
            { "invalidate", imp<invalidate> },
            { "isValid", imp<isValid> },
        });
    }
};
BRINDLE_RECORD(NSTimer, Scheduling)

}
