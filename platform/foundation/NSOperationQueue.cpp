// SPDX-License-Identifier: Apache-2.0
#include "NSOperationQueue.h"

#include "DispatchPrivate.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct NSOperationQueue::Methods<struct Operations> {

    static Ref<NSOperationQueue> mainQueue(Class&)
    {
        static NSOperationQueue* const queue = [] {
            auto made = make<NSOperationQueue>();
            made->queue_ = Ref<DispatchQueue>(dispatch_get_main_queue());
            return made.leak();
        }();
        return queue;
    }
    static Ref<NSObject> init(NSOperationQueue& self)
    {
        if (!super<NSOperationQueue, "init", Ref<NSObject>>(self))
            return nullptr;
        self.queue_ = dispatch_queue_create("brindle.operations", DISPATCH_QUEUE_CONCURRENT);
        self.group_ = dispatch_group_create();
        return &self;
    }
    static void addOperationWithBlock(NSOperationQueue& self, Closure<void()>* block)
    {
        if (!block)
            fatal("a null closure was handed to a queue");
        dispatch_group_async(self.group_.get(), self.queue_.get(), Block<void()>(block));
    }
    static void waitUntilAllOperationsAreFinished(NSOperationQueue& self)
    {
        const Ref<NSOperationQueue> alive(&self);
        dispatch_group_wait(self.group_.get(), DISPATCH_TIME_FOREVER);
    }
    static Ref<DispatchQueue> underlyingQueue(NSOperationQueue& self) { return self.queue_; }

    static void table(Builder& t)
    {
        t.classMethods({ { "mainQueue", imp<mainQueue> } });
        t.methods({
            { "init", imp<init> },
            { "addOperationWithBlock:", imp<addOperationWithBlock> },
            { "waitUntilAllOperationsAreFinished", imp<waitUntilAllOperationsAreFinished> },
            { "underlyingQueue", imp<underlyingQueue> },
        });
    }
};
BRINDLE_RECORD(NSOperationQueue, Operations)

}
