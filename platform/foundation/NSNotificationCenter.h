// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>

#include "NSNotification.h"
#include "runtime/Block.h"

namespace brindle {

class NSOperationQueue;

/// Tells observers what happens, by name and sender.
///
/// A posting calls the observers of that moment, in the order in which they were added, on the posting thread, and
/// returns when all have answered. One that is removed meanwhile is not called any more. A nil name or object
/// in an observation stands for any. Senders are compared by identity and not kept; an
/// observation that names one ends with it.
/// Thread: any. Cost: a posting looks only at observations that fit its name and sender.
class NSNotificationCenter : public NSObject {
    BRINDLE_OBJECT(NSNotificationCenter, NSObject)

public:
    struct Meta : NSObject::Meta {
        Ref<NSNotificationCenter> defaultCenter() const
        {
            return send<"defaultCenter", Ref<NSNotificationCenter>>();
        }
    };

    /// Adds an observer, which is not kept: its observations end when it does. Adding it twice calls it twice.
    /// - selector: takes the notification or nothing.
    void addObserver_selector_name_object(
        NSObject* observer, SEL selector, NSString* name, NSObject* object)
    {
        send<"addObserver:selector:name:object:">(observer, selector, name, object);
    }
    /// Adds a closure. The centre keeps it, and what it holds, until the answered token is removed.
    /// - queue: nil runs it on the posting thread before the posting returns; so does the main queue on the main
    ///   thread. From other threads it is added to the queue, without the object where that posts in its dealloc.
    Ref<NSObject> addObserverForName_object_queue_usingBlock(NSString* name, NSObject* object,
        NSOperationQueue* queue, const Block<void(NSNotification*)>& block)
    {
        return send<"addObserverForName:object:queue:usingBlock:", Ref<NSObject>>(
            name, object, queue, block.get());
    }
    void postNotification(NSNotification* notification) { send<"postNotification:">(notification); }
    void postNotificationName_object(NSString* name, NSObject* object)
    {
        send<"postNotificationName:object:">(name, object);
    }
    void postNotificationName_object_userInfo(
        NSString* name, NSObject* object, NSDictionary* userInfo)
    {
        send<"postNotificationName:object:userInfo:">(name, object, userInfo);
    }
    /// Ends all observations of an observer or token.
    void removeObserver(NSObject* observer) { send<"removeObserver:">(observer); }
    /// Ends the observations of an observer that were made for this name and this object; nil stands for any.
    void removeObserver_name_object(NSObject* observer, NSString* name, NSObject* object)
    {
        send<"removeObserver:name:object:">(observer, name, object);
    }

private:
    struct Registry;
    std::shared_ptr<Registry> registry_;
};

}
