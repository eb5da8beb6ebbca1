// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include <gtest/gtest.h>

#include "foundation/NSGeometry.h"
#include "runtime/Block.h"
#include "runtime/NSException.h"
#include "runtime/Runtime.h"

namespace brindle {

/// A class with a field and operations of every common shape, for the tests of messages.
class Animal : public NSObject {
    BRINDLE_OBJECT(Animal, NSObject)

public:
    struct Meta : NSObject::Meta {
        std::int64_t population() const { return send<"population", std::int64_t>(); }
    };

    std::int64_t legs() const { return send<"legs", std::int64_t>(); }
    void setLegs(std::int64_t legs) { send<"setLegs:">(legs); }
    NSRect frame() const { return send<"frame", NSRect>(); }
    void setFrame(NSRect frame) { send<"setFrame:">(frame); }
    const char* sound() const { return send<"sound", const char*>(); }
    Ref<NSObject> friendOfMine() const { return send<"friendOfMine", Ref<NSObject>>(); }
    void setFriendOfMine(NSObject* other) { send<"setFriendOfMine:">(other); }

    std::int64_t legs_ = 0;
    NSRect frame_ {};
    Ref<NSObject> friend_;
    Block<const char*(std::int64_t)> cry_;
    std::string* obituary_ = nullptr; ///< receives "dealloc" and "fields"
};

/// Overrides `sound`; inherits everything else.
class Dog : public Animal {
    BRINDLE_OBJECT(Dog, Animal)
};

/// Inherits everything.
class Puppy : public Dog {
    BRINDLE_OBJECT(Puppy, Dog)
};

/// Answers the text of the exception that a piece of code raises, or "nothing raised".
template <class F> std::string raisedBy(F&& code)
{
    try {
        code();
    } catch (const Exception& exception) {
        return exception.what();
    }
    return "nothing raised";
}

}
