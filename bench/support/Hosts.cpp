// SPDX-License-Identifier: Apache-2.0
#include "Hosts.h"

#include <string>
#include <utility>

#include "runtime/Runtime.h"

namespace brindle::bench {

template <> struct Host::Methods<struct Everything> {

    static void poke(Host& self) { self.count_ += 1; }
    static std::int64_t add(Host& self, std::int64_t number, NSObject*)
    {
        return self.count_ += number;
    }

    static void table(Builder& t)
    {
        t.methods({
            { "poke", imp<poke> },
            { "add:object:", imp<add> },
        });
        t.properties({
            property<&Host::count_>("count", nonatomic),
            property<&Host::partner_>("partner", nonatomic),
            property<&Host::guarded_>("guarded"),
            property<&Host::frame_>("frame"),
        });
    }
};
BRINDLE_RECORD(Host, Everything)

template <> struct PoliteHost::Methods<struct Manners> {

    static void poke(PoliteHost& self) { super<PoliteHost, "poke">(self); }
    static void table(Builder& t) { t.methods({ { "poke", imp<poke> } }); }
};
BRINDLE_RECORD(PoliteHost, Manners)

template <> struct SmallHost::Methods<struct Word> {

    static void table(Builder& t) { t.ivars({ ivar<&SmallHost::word_>("_word") }); }
};
BRINDLE_RECORD(SmallHost, Word)

namespace {

    template <std::size_t Index> void pokeAs(Host* self, SEL)
    {
        self->count_ += static_cast<std::int64_t>(Index) + 2;
    }

    template <std::size_t Index> struct VirtualHostOf : VirtualHost {
        void poke() override { number += static_cast<std::int64_t>(Index) + 2; }
    };

    struct PoliteVirtualHost : VirtualHost {
        void poke() override { VirtualHost::poke(); }
    };

    template <std::size_t... Index> std::vector<IMP> makePokes(std::index_sequence<Index...>)
    {
        return { reinterpret_cast<IMP>(&pokeAs<Index>)... };
    }

    template <std::size_t Index> std::unique_ptr<VirtualHost> makeVirtualHost()
    {
        return std::make_unique<VirtualHostOf<Index>>();
    }

    using VirtualMaker = std::unique_ptr<VirtualHost> (*)();
    template <std::size_t... Index>
    std::vector<VirtualMaker> makeVirtualMakers(std::index_sequence<Index...>)
    {
        return { &makeVirtualHost<Index>... };
    }

    constexpr std::make_index_sequence<kObjects> kIndexes;

    class SpinLock {
    public:
        explicit SpinLock(std::atomic<bool>& flag)
            : flag_(flag)
        {
            while (flag_.exchange(true, std::memory_order_acquire)) { }
        }
        ~SpinLock() { flag_.store(false, std::memory_order_release); }
        SpinLock(const SpinLock&) = delete;
        SpinLock& operator=(const SpinLock&) = delete;

    private:
        std::atomic<bool>& flag_;
    };

}

Class* hostClass(std::size_t index)
{
    static const auto classes = [] {
        const std::vector<IMP> pokes = makePokes(kIndexes);
        std::vector<Class*> made;
        for (const IMP poke : pokes) {
            Class* const cls = freshClass(Host::cls());
            class_addMethod(cls, selector<"poke">, poke, "v@:");
            made.push_back(cls);
        }
        return made;
    }();
    return classes[index];
}

Class* freshClass(Class* parent)
{
    static std::size_t number = 0;
    const std::string name = std::string(class_getName(parent)) + std::to_string(++number);
    Class* const cls = objc_allocateClassPair(parent, name.c_str(), 0);
    objc_registerClassPair(cls);
    return cls;
}

std::vector<Ref<Host>> makeHosts(std::size_t classes)
{
    std::vector<Ref<Host>> hosts;
    for (std::size_t i = 0; i < kObjects; ++i)
        hosts.push_back(
            cast<Host>(Ref<NSObject>::adopt(class_createInstance(hostClass(i % classes)))));
    return hosts;
}

void VirtualHost::poke() { number += 1; }
std::int64_t VirtualHost::add(std::int64_t value, NSObject*) { return number += value; }
Ref<NSObject> VirtualHost::partner() const { return object; }
Ref<NSObject> VirtualHost::guarded() const
{
    const SpinLock lock(locked);
    return object;
}
std::int64_t VirtualHost::count() const { return number; }
NSRect VirtualHost::frame() const
{
    const SpinLock lock(locked);
    return rectangle;
}

std::unique_ptr<VirtualSmall> makeVirtualSmall() { return std::make_unique<VirtualSmall>(); }

std::unique_ptr<VirtualHost> makePoliteVirtualHost()
{
    return std::make_unique<PoliteVirtualHost>();
}

std::vector<std::unique_ptr<VirtualHost>> makeVirtualHosts(std::size_t classes)
{
    static const std::vector<VirtualMaker> makers = makeVirtualMakers(kIndexes);
    std::vector<std::unique_ptr<VirtualHost>> hosts;
    for (std::size_t i = 0; i < kObjects; ++i)
        hosts.push_back(makers[i % classes]());
    return hosts;
}

}
