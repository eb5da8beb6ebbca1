// SPDX-License-Identifier: Apache-2.0
#include "NSNotificationCenter.h"

#include <algorithm>
#include <map>
#include <mutex>
#include <unordered_map>
#include <vector>

#include "NSOperationQueue.h"
#include "NotificationMemoryPrivate.h"
#include "RunLoopPrivate.h"
#include "ShortVector.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    /// One observer's wish. Its end is a flag, so that a posting under way sees it.
    struct Observation {
        std::uint64_t order = 0;
        const NSObject* observerAddress = nullptr;
        WeakRef<NSObject> observer; // by selector: not kept
        SEL selector;
        Ref<NSObject> token; // by closure: kept
        Block<void(NSNotification*)> block;
        Ref<NSOperationQueue> queue;
        Ref<NSString> name;
        const NSObject* object = nullptr;
        WeakRef<NSObject> life; // of the object: another one may come to lie where it lay
        std::atomic<bool> ended { false };
    };
    using Shared = std::shared_ptr<Observation>;
    using Addressees = ShortVector<Shared, 16>;

    struct Key {
        Ref<NSString> name;
        const NSObject* object;
        bool operator==(const Key& other) const
        {
            return object == other.object
                && (name == other.name || (name && other.name && name->isEqual(other.name.get())));
        }
    };
    struct KeyHash {
        std::size_t operator()(const Key& key) const
        {
            const std::size_t name = key.name ? key.name->hash() : 0;
            return name ^ (reinterpret_cast<std::uintptr_t>(key.object) * 0x9E3779B97F4A7C15u);
        }
    };

    /// What ends outside the lock: ending it may come back here.
    struct Leavings {
        std::vector<Shared> observations;
        std::vector<Ref<NSObject>> objects;
    };

    /// Answers whether there may be something to tell, and somebody to tell it to.
    bool isLive(const Observation& each, Leavings& leavings)
    {
        const auto lives = [&leavings](const WeakRef<NSObject>& weak) {
            Ref<NSObject> object = weak.get();
            if (!object)
                return false;
            leavings.objects.push_back(std::move(object)); // ours may be the last count by now
            return true;
        };
        return (!each.object || lives(each.life)) && (each.block || lives(each.observer));
    }

    void deliver(const Observation& each, NSNotification* notification)
    {
        if (each.ended.load(std::memory_order_acquire) || (each.object && !each.life.get()))
            return;
        if (!each.block) {
            if (const Ref<NSObject> observer = each.observer.get())
                performNow(observer.get(), each.selector, notification);
            return;
        }
        const Block<void(NSNotification*)> block = each.block;
        const bool isMainQueue = each.queue && each.queue == NSOperationQueue::cls().mainQueue();
        if (!each.queue || (isMainQueue && isMainThread()))
            block(notification);
        else
            each.queue->addOperationWithBlock(
                [block, kept = Ref<NSNotification>(notification)] { block(kept.get()); });
    }

}

struct NSNotificationCenter::Registry {
    std::mutex mutex;
    std::unordered_map<Key, std::vector<Shared>, KeyHash> byKey;
    std::unordered_map<const NSObject*, std::vector<Shared>> byObserver;
    std::uint64_t order = 0;
    std::size_t count = 0;
    std::size_t sweepAt = 64;

    void add(const Shared& each, Leavings& leavings)
    {
        const std::lock_guard guard(mutex);
        if (count >= sweepAt) {
            sweepLocked(leavings);
            sweepAt = std::max<std::size_t>(64, count * 2);
        }
        each->order = ++order;
        byKey[{ each->name, each->object }].push_back(each);
        byObserver[each->observerAddress].push_back(each);
        ++count;
    }

    template <class Table, class Gone> static void thin(Table& table, Gone gone)
    {
        for (auto place = table.begin(); place != table.end();) {
            std::erase_if(place->second, gone);
            place = place->second.empty() ? table.erase(place) : std::next(place);
        }
    }

    /// Takes out what belongs to observers and objects that have died.
    void sweepLocked(Leavings& leavings)
    {
        thin(byObserver, [&](const Shared& each) {
            if (isLive(*each, leavings))
                return false;
            each->ended.store(true, std::memory_order_release);
            leavings.observations.push_back(each);
            --count;
            return true;
        });
        thin(byKey, [](const Shared& each) { return each->ended.load(std::memory_order_relaxed); });
    }

    void unkeyLocked(const Shared& each)
    {
        each->ended.store(true, std::memory_order_release);
        const auto place = byKey.find({ each->name, each->object });
        std::erase(place->second, each);
        if (place->second.empty())
            byKey.erase(place);
        --count;
    }

    template <class Wanted> void remove(const NSObject* observer, Leavings& leavings, Wanted wanted)
    {
        const std::lock_guard guard(mutex);
        const auto place = byObserver.find(observer);
        if (place == byObserver.end())
            return;
        std::erase_if(place->second, [&](const Shared& each) {
            if (!wanted(*each))
                return false;
            leavings.observations.push_back(each);
            unkeyLocked(each);
            return true;
        });
        if (place->second.empty())
            byObserver.erase(place);
    }

    void collectLocked(const Key& key, Addressees& out)
    {
        if (const auto place = byKey.find(key); place != byKey.end())
            out.insert(out.end(), place->second.begin(), place->second.end());
    }

    /// Finds whom a notification is for, in the order in which they asked.
    void find(const Ref<NSString>& name, const NSObject* object, Addressees& all)
    {
        {
            const std::lock_guard guard(mutex);
            if (count == 0)
                return;
            collectLocked({ name, object }, all);
            collectLocked({ nullptr, object }, all);
            if (object) {
                collectLocked({ name, nullptr }, all);
                collectLocked({ nullptr, nullptr }, all);
            }
        }
        std::sort(all.begin(), all.end(),
            [](const Shared& a, const Shared& b) { return a->order < b->order; });
    }
};

template <> struct NSNotificationCenter::Methods<struct Posting> {

    static Ref<NSNotificationCenter> defaultCenter(Class&)
    {
        static NSNotificationCenter* const center = make<NSNotificationCenter>().leak();
        return center;
    }
    static Ref<NSObject> init(NSNotificationCenter& self)
    {
        if (!super<NSNotificationCenter, "init", Ref<NSObject>>(self))
            return nullptr;
        self.registry_ = std::make_shared<Registry>();
        return &self;
    }

    static Shared observation(NSString* name, NSObject* object)
    {
        auto each = std::make_shared<Observation>();
        if (name)
            each->name = cast<NSString>(name->copy());
        each->object = object;
        each->life = WeakRef<NSObject>(object);
        return each;
    }
    static void addObserver(NSNotificationCenter& self, NSObject* observer, SEL selector,
        NSString* name, NSObject* object)
    {
        if (!observer || !selector)
            return;
        const Shared each = observation(name, object);
        each->observerAddress = observer;
        each->observer = WeakRef<NSObject>(observer);
        each->selector = selector;
        Leavings leavings;
        self.registry_->add(each, leavings);
    }
    static Ref<NSObject> addBlock(NSNotificationCenter& self, NSString* name, NSObject* object,
        NSOperationQueue* queue, Closure<void(NSNotification*)>* block)
    {
        if (!block)
            fatal("a null closure was handed to a notification center");
        const Shared each = observation(name, object);
        each->token = make<NSObject>();
        each->observerAddress = each->token.get();
        each->block = Block<void(NSNotification*)>(block);
        each->queue = Ref<NSOperationQueue>(queue);
        Leavings leavings;
        self.registry_->add(each, leavings);
        return each->token;
    }

    static void post(NSNotificationCenter& self, NSNotification* notification)
    {
        if (!notification)
            return;
        const Ref<NSNotificationCenter> alive(&self);
        const Ref<NSNotification> kept(notification);
        const Ref<NSObject> sender = notification->object();
        Addressees all;
        self.registry_->find(notification->name(), sender.get(), all);
        for (const Shared& each : all)
            deliver(*each, notification);
    }
    static void postName(NSNotificationCenter& self, NSString* name, NSObject* object)
    {
        postInfo(self, name, object, nullptr);
    }
    static void postInfo(
        NSNotificationCenter& self, NSString* name, NSObject* object, NSDictionary* userInfo)
    {
        Addressees all;
        self.registry_->find(Ref<NSString>(name), object, all);
        if (all.empty() && name)
            return; // most notifications have nobody to read them
        const Ref<NSNotificationCenter> alive(&self);
        Ref<NSNotification> notification = makeNotification(name, object, userInfo);
        for (const Shared& each : all)
            deliver(*each, notification.get());
        retireNotification(std::move(notification));
    }

    static void removeObserver(NSNotificationCenter& self, NSObject* observer)
    {
        Leavings leavings;
        self.registry_->remove(observer, leavings, [](const Observation&) { return true; });
    }
    static void removeSome(
        NSNotificationCenter& self, NSObject* observer, NSString* name, NSObject* object)
    {
        Leavings leavings;
        self.registry_->remove(observer, leavings, [&](const Observation& each) {
            const bool sameName = !name || (each.name && each.name->isEqual(name));
            return sameName && (!object || each.object == object);
        });
    }

    static void table(Builder& t)
    {
        t.classMethods({ { "defaultCenter", imp<defaultCenter> } });
        t.methods({
            { "init", imp<init> },
            { "addObserver:selector:name:object:", imp<addObserver> },
            { "addObserverForName:object:queue:usingBlock:", imp<addBlock> },
            { "postNotification:", imp<post> },
            { "postNotificationName:object:", imp<postName> },
            { "postNotificationName:object:userInfo:", imp<postInfo> },
            { "removeObserver:", imp<removeObserver> },
            { "removeObserver:name:object:", imp<removeSome> },
        });
    }
};
BRINDLE_RECORD(NSNotificationCenter, Posting)

}
