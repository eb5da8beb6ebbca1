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
    using Leavings = std::vector<Shared>;

    /// Answers whether there may be something to tell, and somebody to tell it to.
    bool isLive(const Observation& each)
    {
        return !(each.object && each.life.isGone()) && (each.block || !each.observer.isGone());
    }

    /// Those who asked for the same, in the order in which they asked.
    class Audience {
    public:
        void add(const Shared& each) { places_.emplace_back(each->order, each); }
        /// Leaves the place of one empty, and closes up once half of the places are.
        void leave(const Observation& one)
        {
            const auto place = std::lower_bound(places_.begin(), places_.end(), one.order,
                [](const Place& each, std::uint64_t order) { return each.first < order; });
            place->second = nullptr;
            if (++empty_ * 2 > places_.size())
                closeUp();
        }
        void leaveEnded()
        {
            for (auto& [order, each] : places_) {
                if (each && each->ended.load(std::memory_order_relaxed))
                    each = nullptr;
            }
            closeUp();
        }
        bool isEmpty() const { return places_.empty(); }
        void collect(Addressees& out) const
        {
            for (const auto& [order, each] : places_) {
                if (each)
                    out.push_back(each);
            }
        }

    private:
        using Place = std::pair<std::uint64_t, Shared>;

        void closeUp()
        {
            std::erase_if(places_, [](const Place& each) { return !each.second; });
            empty_ = 0;
        }

        std::vector<Place> places_;
        std::size_t empty_ = 0;
    };

    /// Answers whether the object that an observation names has gone and another one lies in its place. What posts in
    /// its own dealloc has not.
    bool isOfAnother(const Observation& each)
    {
        return each.object && each.life.isGone()
            && !WeakRef<NSObject>(const_cast<NSObject*>(each.object)).isGone();
    }

    void deliver(const Observation& each, NSNotification* notification)
    {
        if (each.ended.load(std::memory_order_acquire) || isOfAnother(each))
            return;
        if (!each.block) {
            if (const Ref<NSObject> observer = each.observer.get())
                performNow(observer.get(), each.selector, notification);
            return;
        }
        const Block<void(NSNotification*)> block = each.block;
        const bool isMainQueue = each.queue && each.queue == NSOperationQueue::cls().mainQueue();
        if (!each.queue || (isMainQueue && isMainThread()))
            return block(notification);
        Ref<NSNotification> kept(notification);
        const Ref<NSObject> sender = notification->object();
        if (sender && WeakRef<NSObject>(sender).isGone()) // it posts in its dealloc
            kept = makeNotification(
                notification->name().get(), nullptr, notification->userInfo().get());
        each.queue->addOperationWithBlock([block, kept] { block(kept.get()); });
    }

}

struct NSNotificationCenter::Registry {
    std::mutex mutex;
    std::unordered_map<Key, Audience, KeyHash> byKey;
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
        byKey[{ each->name, each->object }].add(each);
        byObserver[each->observerAddress].push_back(each);
        ++count;
    }

    /// Takes out what belongs to observers and objects that have died.
    void sweepLocked(Leavings& leavings)
    {
        for (auto place = byObserver.begin(); place != byObserver.end();) {
            std::erase_if(place->second, [&](const Shared& each) {
                if (isLive(*each))
                    return false;
                each->ended.store(true, std::memory_order_release);
                leavings.push_back(each);
                --count;
                return true;
            });
            place = place->second.empty() ? byObserver.erase(place) : std::next(place);
        }
        for (auto place = byKey.begin(); place != byKey.end();) {
            place->second.leaveEnded();
            place = place->second.isEmpty() ? byKey.erase(place) : std::next(place);
        }
    }

    void unkeyLocked(const Shared& each)
    {
        each->ended.store(true, std::memory_order_release);
        const auto place = byKey.find({ each->name, each->object });
        place->second.leave(*each);
        if (place->second.isEmpty())
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
            leavings.push_back(each);
            unkeyLocked(each);
            return true;
        });
        if (place->second.empty())
            byObserver.erase(place);
    }

    void collectLocked(const Key& key, Addressees& out)
    {
        if (const auto place = byKey.find(key); place != byKey.end())
            place->second.collect(out);
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
        registry(self);
        return &self;
    }

    /// Answers what a center knows; one that comes from `alloc` alone begins with nothing as well.
    static Registry& registry(NSNotificationCenter& self)
    {
        if (!self.registry_) [[unlikely]]
            self.registry_ = std::make_shared<Registry>();
        return *self.registry_;
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
        registry(self).add(each, leavings);
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
        registry(self).add(each, leavings);
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
        registry(self).find(notification->name(), sender.get(), all);
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
        registry(self).find(Ref<NSString>(name), object, all);
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
        registry(self).remove(observer, leavings, [](const Observation&) { return true; });
    }
    static void removeSome(
        NSNotificationCenter& self, NSObject* observer, NSString* name, NSObject* object)
    {
        Leavings leavings;
        registry(self).remove(observer, leavings, [&](const Observation& each) {
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
