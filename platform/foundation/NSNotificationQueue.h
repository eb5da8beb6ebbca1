// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "NSNotificationCenter.h"

namespace brindle {

class NSArray;
class NSTimer;

enum NSPostingStyle : NSUInteger {
    /// In the loop's second turn from now, when what is due already has run.
    NSPostWhenIdle = 1,
    /// In the loop's next turn.
    NSPostASAP = 2,
    /// At once, like the centre itself, but coalesced with what waits.
    NSPostNow = 3,
};

/// Which notifications count as the same.
enum NSNotificationCoalescing : NSUInteger {
    NSNotificationNoCoalescing = 0,
    NSNotificationCoalescingOnName = 1,
    NSNotificationCoalescingOnSender = 2,
};

/// Posts notifications later from the current thread's loop, and of those that are the same only the last one.
///
/// What waits is posted in the order in which it was added; a notification that replaces another goes to the end.
/// Thread: each has its own.
class NSNotificationQueue : public NSObject {
    BRINDLE_OBJECT(NSNotificationQueue, NSObject)

public:
    struct Meta : NSObject::Meta {
        /// Answers the thread's queue for the default centre.
        Ref<NSNotificationQueue> defaultQueue() const
        {
            return send<"defaultQueue", Ref<NSNotificationQueue>>();
        }
    };

    /// - Nil: a nil centre is the default one.
    Ref<NSNotificationQueue> initWithNotificationCenter(NSNotificationCenter* centre)
    {
        return send<"initWithNotificationCenter:", Ref<NSNotificationQueue>>(centre);
    }
    /// The same with coalescing on name and sender, in the default mode.
    void enqueueNotification_postingStyle(NSNotification* notification, NSPostingStyle style)
    {
        send<"enqueueNotification:postingStyle:">(notification, style);
    }
    /// Adds a notification, and removes those waiting that the mask calls the same.
    /// - coalesceMask: `NSNotificationCoalescing` bits; with both bits name and sender must be the same.
    /// - modes: names of the loop's modes in which it may be posted; nil is the default mode. It does not bind `NSPostNow`.
    /// - Raises: `NSInvalidArgumentException` for a nil notification.
    void enqueueNotification_postingStyle_coalesceMask_forModes(NSNotification* notification,
        NSPostingStyle style, NSUInteger coalesceMask, const NSArray* modes)
    {
        send<"enqueueNotification:postingStyle:coalesceMask:forModes:">(
            notification, style, coalesceMask, modes);
    }
    /// Removes what waits and is the same as this one by the mask; no bits remove only this very notification.
    void dequeueNotificationsMatching_coalesceMask(
        const NSNotification* notification, NSUInteger coalesceMask)
    {
        send<"dequeueNotificationsMatching:coalesceMask:">(notification, coalesceMask);
    }

private:
    struct Waiting {
        Ref<NSNotification> notification;
        Ref<NSTimer> timer;
    };
    std::vector<Waiting> waiting_;
    Ref<NSNotificationCenter> centre_;
};

}
