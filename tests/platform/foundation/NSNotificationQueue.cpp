// SPDX-License-Identifier: Apache-2.0
#include "foundation/NSNotificationQueue.h"

#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

#include "foundation/NSArray.h"
#include "foundation/NSNotification.h"
#include "foundation/NSRunLoop.h"
#include "runtime/NSException.h"
#include "support/Strings.h"
#include "support/VirtualClock.h"

using namespace brindle;

namespace {

class NotificationQueue : public testing::Test {
protected:
    NotificationQueue()
    {
        token_ = centre_->addObserverForName_object_queue_usingBlock(
            nullptr, nullptr, nullptr, [this](NSNotification* notification) {
                heard_.push_back(utf8Of(notification->name()));
            });
    }
    ~NotificationQueue() override { centre_->removeObserver(token_.get()); }

    Ref<NSNotification> notification(NSString* name, NSObject* sender = nullptr) const
    {
        return NSNotification::cls().notificationWithName_object(name, sender);
    }
    void turn(NSString* mode = NSDefaultRunLoopMode)
    {
        NSRunLoop::cls().currentRunLoop()->runMode_beforeDate(mode, nullptr);
    }

    test::VirtualClock clock_;
    Ref<NSNotificationCenter> centre_
        = cast<NSNotificationCenter>(alloc<NSNotificationCenter>()->init());
    Ref<NSNotificationQueue> queue_
        = alloc<NSNotificationQueue>()->initWithNotificationCenter(centre_.get());
    Ref<NSObject> token_;
    std::vector<std::string> heard_;
};

using Names = std::vector<std::string>;

/// Takes its own notifications back when it ends.
struct Leaver {
    NSNotificationQueue* queue;
    int* ends;
    ~Leaver()
    {
        ++*ends;
        queue->dequeueNotificationsMatching_coalesceMask(
            NSNotification::cls().notificationWithName_object("other"_ns, nullptr).get(),
            NSNotificationCoalescingOnName);
    }
};

TEST_F(NotificationQueue, ObjectsThatGoWithTakenBackNotificationsMayTakeOthersBack)
{
    int ends = 0;
    for (int i = 0; i < 10; ++i) {
        const Block<void()> owner
            = [leaver = std::shared_ptr<Leaver>(new Leaver { queue_.get(), &ends })] {};
        const auto info = NSNotification::cls().notificationWithName_object("a"_ns, owner.get());
        queue_->enqueueNotification_postingStyle_coalesceMask_forModes(
            info.get(), NSPostASAP, 0, nullptr);
        queue_->enqueueNotification_postingStyle_coalesceMask_forModes(
            notification("other"_ns).get(), NSPostASAP, 0, nullptr);
    }
    queue_->dequeueNotificationsMatching_coalesceMask(
        notification("a"_ns).get(), NSNotificationCoalescingOnName);
    EXPECT_EQ(ends, 10);
    turn();
    EXPECT_EQ(heard_, Names());
}

TEST_F(NotificationQueue, PostsSoonInTheNextTurn)
{
    queue_->enqueueNotification_postingStyle(notification("a"_ns).get(), NSPostASAP);
    EXPECT_EQ(heard_, Names());
    turn();
    EXPECT_EQ(heard_, Names({ "a" }));
}

TEST_F(NotificationQueue, PostsWhenIdleBeforeTheLoopIsIdle)
{
    queue_->enqueueNotification_postingStyle(notification("idle"_ns).get(), NSPostWhenIdle);
    NSRunLoop::cls().currentRunLoop()->runUntilIdle(NSDefaultRunLoopMode);
    EXPECT_EQ(heard_, Names({ "idle" }));
}

TEST_F(NotificationQueue, PostsWhenIdleAfterWhatIsDueAlready)
{
    queue_->enqueueNotification_postingStyle(notification("idle"_ns).get(), NSPostWhenIdle);
    queue_->enqueueNotification_postingStyle(notification("soon"_ns).get(), NSPostASAP);
    turn();
    EXPECT_EQ(heard_, Names({ "soon" }));
    turn();
    EXPECT_EQ(heard_, Names({ "soon", "idle" }));
}

TEST_F(NotificationQueue, PostsAtOnceWhenToldSo)
{
    queue_->enqueueNotification_postingStyle(notification("a"_ns).get(), NSPostNow);
    EXPECT_EQ(heard_, Names({ "a" }));
}

TEST_F(NotificationQueue, PostsOnlyTheLastOfTheSameNameAndSender)
{
    for (int i = 0; i < 5; ++i)
        queue_->enqueueNotification_postingStyle(notification("a"_ns, "one"_ns).get(), NSPostASAP);
    queue_->enqueueNotification_postingStyle(notification("a"_ns, "other"_ns).get(), NSPostASAP);
    turn();
    EXPECT_EQ(heard_, Names({ "a", "a" }));
}

TEST_F(NotificationQueue, CoalescesOnTheNameAlone)
{
    for (NSObject* const sender : { "one"_ns, "other"_ns })
        queue_->enqueueNotification_postingStyle_coalesceMask_forModes(
            notification("a"_ns, sender).get(), NSPostASAP, NSNotificationCoalescingOnName,
            nullptr);
    turn();
    EXPECT_EQ(heard_, Names({ "a" }));
}

TEST_F(NotificationQueue, CoalescesOnTheSenderAlone)
{
    for (NSString* const name : { "a"_ns, "b"_ns })
        queue_->enqueueNotification_postingStyle_coalesceMask_forModes(
            notification(name, "one"_ns).get(), NSPostASAP, NSNotificationCoalescingOnSender,
            nullptr);
    turn();
    EXPECT_EQ(heard_, Names({ "b" }));
}

TEST_F(NotificationQueue, KeepsEveryOneWithoutCoalescing)
{
    for (int i = 0; i < 3; ++i)
        queue_->enqueueNotification_postingStyle_coalesceMask_forModes(
            notification("a"_ns).get(), NSPostASAP, NSNotificationNoCoalescing, nullptr);
    turn();
    EXPECT_EQ(heard_, Names({ "a", "a", "a" }));
}

TEST_F(NotificationQueue, ReplacesWhatWaitsByOnePostedAtOnce)
{
    queue_->enqueueNotification_postingStyle(notification("a"_ns).get(), NSPostASAP);
    queue_->enqueueNotification_postingStyle(notification("a"_ns).get(), NSPostNow);
    turn();
    EXPECT_EQ(heard_, Names({ "a" }));
}

TEST_F(NotificationQueue, WaitsForItsMode)
{
    queue_->enqueueNotification_postingStyle_coalesceMask_forModes(notification("a"_ns).get(),
        NSPostASAP, NSNotificationNoCoalescing, makeArray({ NSModalPanelRunLoopMode.get() }).get());
    turn();
    EXPECT_EQ(heard_, Names());
    turn(NSModalPanelRunLoopMode);
    EXPECT_EQ(heard_, Names({ "a" }));
}

TEST_F(NotificationQueue, TakesBackWhatMatches)
{
    queue_->enqueueNotification_postingStyle(notification("a"_ns).get(), NSPostASAP);
    queue_->enqueueNotification_postingStyle(notification("b"_ns).get(), NSPostASAP);
    queue_->dequeueNotificationsMatching_coalesceMask(
        notification("a"_ns).get(), NSNotificationCoalescingOnName);
    turn();
    EXPECT_EQ(heard_, Names({ "b" }));
}

TEST_F(NotificationQueue, PostsTheRestAfterAnObserverThrew)
{
    const auto thrower = centre_->addObserverForName_object_queue_usingBlock(
        "a"_ns, nullptr, nullptr, [](NSNotification*) { raise("NSGenericException", "no"); });
    queue_->enqueueNotification_postingStyle(notification("a"_ns).get(), NSPostASAP);
    queue_->enqueueNotification_postingStyle(notification("b"_ns).get(), NSPostASAP);
    EXPECT_THROW(turn(), Exception);
    turn();
    EXPECT_EQ(heard_, Names({ "a", "b" }));
    centre_->removeObserver(thrower.get());
}

TEST_F(NotificationQueue, PostsNothingOnceItIsGone)
{
    queue_->enqueueNotification_postingStyle(notification("a"_ns).get(), NSPostASAP);
    queue_ = nullptr;
    turn();
    EXPECT_EQ(heard_, Names());
}

TEST_F(NotificationQueue, RefusesNil)
{
    EXPECT_THROW(queue_->enqueueNotification_postingStyle(nullptr, NSPostASAP), Exception);
}

TEST_F(NotificationQueue, IsOneForEachThreadsDefaultCentre)
{
    EXPECT_EQ(NSNotificationQueue::cls().defaultQueue(), NSNotificationQueue::cls().defaultQueue());
}

}
