// SPDX-License-Identifier: Apache-2.0
#include "Fixtures.h"

namespace brindle {

template <> struct Animal::Methods<struct Body> {
    static std::int64_t legs(Animal& self) { return self.legs_; }
    static void setLegs(Animal& self, std::int64_t legs) { self.legs_ = legs; }
    static NSRect frame(Animal& self) { return self.frame_; }
    static void setFrame(Animal& self, NSRect frame) { self.frame_ = frame; }
    static const char* sound(Animal&) { return "..."; }
    static Ref<NSObject> friendOfMine(Animal& self) { return self.friend_; }
    static void setFriendOfMine(Animal& self, NSObject* other)
    {
        self.friend_ = Ref<NSObject>(other);
    }
    static void callWhen(Animal&, Closure<bool(NSRect)>*, std::int64_t, Closure<void(NSObject*)>*)
    {
    }
    static Ref<Dog> follow(Animal&, Dog* dog, NSString*, NSObject*) { return dog; }
    static std::int64_t population(Class&) { return 7; }
    static void dealloc(Animal& self)
    {
        if (self.obituary_)
            *self.obituary_ += "dealloc ";
    }

    static void table(Builder& t)
    {
        t.conformsTo({ "Breathing" });
        t.classMethods({ { "population", imp<population> } });
        t.methods({
            { "legs", imp<legs> },
            { "setLegs:", imp<setLegs> },
            { "frame", imp<frame> },
            { "setFrame:", imp<setFrame> },
            { "sound", imp<sound> },
            { "friendOfMine", imp<friendOfMine> },
            { "setFriendOfMine:", imp<setFriendOfMine> },
            { "follow:named:or:", imp<follow> },
            { "callWhen:times:with:", imp<callWhen> },
            { "dealloc", imp<dealloc> },
        });
        t.properties({ property<&Animal::cry_>("cry", copied, nonatomic) });
    }
};
BRINDLE_RECORD(Animal, Body)

template <> struct Dog::Methods<struct Voice> {
    static const char* sound(Dog&) { return "woof"; }
    static std::int64_t population(Class& self)
    {
        return 10 * super<Dog, "population", std::int64_t>(self);
    }
    static void table(Builder& t)
    {
        t.methods({ { "sound", imp<sound> } });
        t.classMethods({ { "population", imp<population> } });
    }
};
BRINDLE_RECORD(Dog, Voice)

template <> struct Puppy::Methods<struct Voice> {
    static std::int64_t legs(Puppy& self) { return 100 + super<Puppy, "legs", std::int64_t>(self); }
    static void table(Builder& t) { t.methods({ { "legs", imp<legs> } }); }
};
BRINDLE_RECORD(Puppy, Voice)

}
