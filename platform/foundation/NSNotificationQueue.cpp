// SPDX-License-Identifier: Apache-2.0
#include "NSNotificationQueue.h"

#include <algorithm>
#include <iterator>
#include <vector>

#include "NSArray.h"
#include "NSMutableDictionary.h"
#include "NSNotification.h"
#include "NSRunLoop.h"
#include "NSThread.h"
#include "TimerPrivate.h"
#include "runtime/NSException.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    bool isSame(NSNotification& a, NSNotification& b, NSUInteger mask)
    {
        if (!mask)
            return &a == &b;
        return (!(mask & NSNotificationCoalescingOnName) || a.name()->isEqual(b.name().get()))
            && (!(mask & NSNotificationCoalescingOnSender) || a.object() == b.object());
    }

}

template <> struct NSNotificationQueue::Methods<struct Coalescing> {

    static Ref<NSNotificationQueue> defaultQueue(Class& self)
    {
        const auto own = NSThread::cls().currentThread()->threadDictionary();
        if (auto known = own->objectForKey("NSNotificationQueue"_ns))
            return cast<NSNotificationQueue>(std::move(known));
        auto queue = cast<NSNotificationQueue>(NSObject::Meta { &self }.alloc()->init());
        own->setObject_forKey(queue.get(), "NSNotificationQueue"_ns);
        return queue;
    }
    static Ref<NSObject> init(NSNotificationQueue& self)
    {
        return self.initWithNotificationCenter(nullptr);
    }
    static Ref<NSNotificationQueue> initWithCentre(
        NSNotificationQueue& self, NSNotificationCenter* centre)
    {
        if (!super<NSNotificationQueue, "init", Ref<NSObject>>(self))
            return nullptr;
        self.centre_ = centre ? Ref<NSNotificationCenter>(centre)
                              : NSNotificationCenter::cls().defaultCenter();
        return &self;
    }

    static void enqueue(
        NSNotificationQueue& self, NSNotification* notification, NSPostingStyle style)
    {
        self.enqueueNotification_postingStyle_coalesceMask_forModes(notification, style,
            NSNotificationCoalescingOnName | NSNotificationCoalescingOnSender, nullptr);
    }
    static void enqueueWith(NSNotificationQueue& self, NSNotification* notification,
        NSPostingStyle style, NSUInteger mask, NSArray* modes)
    {
        if (!notification)
            raise("NSInvalidArgumentException",
                "*** -[NSNotificationQueue "
                "enqueueNotification:postingStyle:coalesceMask:forModes:]: "
                "nil notification");
        if (mask)
            self.dequeueNotificationsMatching_coalesceMask(notification, mask);
        if (style == NSPostNow) {
            self.centre_->postNotification(notification);
            return;
        }
        const Ref<NSTimer> timer = NSTimer::cls().timerWithTimeInterval_repeats_block(
            0, false, [queue = &self, isEarly = style == NSPostWhenIdle](NSTimer* due) mutable {
                if (std::exchange(isEarly, false))
                    repeatNextTurn(*due);
                else
                    post(*queue, due);
            });
        timer->restart(0);
        self.waiting_.push_back({ Ref<NSNotification>(notification), timer });
        const auto loop = NSRunLoop::cls().currentRunLoop();
        if (!modes)
            loop->addTimer_forMode(timer.get(), NSDefaultRunLoopMode);
        else
            for (NSObject* const mode : *modes)
                loop->addTimer_forMode(timer.get(), cast<NSString>(mode));
    }
    static void dequeue(NSNotificationQueue& self, NSNotification* notification, NSUInteger mask)
    {
        if (!notification)
            return;
        const auto rest = std::stable_partition(self.waiting_.begin(), self.waiting_.end(),
            [&](const Waiting& each) { return !isSame(*each.notification, *notification, mask); });
        // They end when the queue is in order again: their end may come back here.
        const std::vector<Waiting> gone(
            std::make_move_iterator(rest), std::make_move_iterator(self.waiting_.end()));
        self.waiting_.erase(rest, self.waiting_.end());
        for (const Waiting& each : gone)
            each.timer->invalidate();
    }

    static void post(NSNotificationQueue& self, NSTimer* timer)
    {
        const Ref<NSNotificationQueue> alive(&self);
        const auto due = std::ranges::find(
            self.waiting_, timer, [](const Waiting& each) { return each.timer.get(); });
        const Waiting taken = std::move(*due);
        self.waiting_.erase(due);
        self.centre_->postNotification(taken.notification.get());
    }
    static void dealloc(NSNotificationQueue& self)
    {
        for (const Waiting& each : self.waiting_)
            each.timer->invalidate();
    }

    static void table(Builder& t)
    {
        t.classMethods({ { "defaultQueue", imp<defaultQueue> } });
        t.methods({
            { "init", imp<init> },
            { "initWithNotificationCenter:", imp<initWithCentre> },
            { "enqueueNotification:postingStyle:", imp<enqueue> },
            { "enqueueNotification:postingStyle:coalesceMask:forModes:", imp<enqueueWith> },
            { "dequeueNotificationsMatching:coalesceMask:", imp<dequeue> },
            { "dealloc", imp<dealloc> },
        });
    }
};
BRINDLE_RECORD(NSNotificationQueue, Coalescing)

}
