// SPDX-License-Identifier: Apache-2.0

// Methods are entries of a table that can be changed while the program runs: exchanged, aliased, added to classes of
// others. Every caller notices at once.

#include <cstdio>

#include "core/MethodPatching.h"
#include "core/NSObject+HXAssociatedObjects.h"
#include "core/NSObject+Inheritance.h"
#include "foundation/NSString.h"
#include "runtime/Table.h"

using namespace brindle;

namespace {

class Greeter : public NSObject {
    BRINDLE_OBJECT(Greeter, NSObject)

public:
    Ref<NSString> greeting() const { return send<"greeting", Ref<NSString>>(); }
};

class LateGreeter : public Greeter {
    BRINDLE_OBJECT(LateGreeter, Greeter)
};

}

template <> struct Greeter::Methods<struct Words> {
    static Ref<NSString> greeting(Greeter&) { return "Good morning"_ns; }
    static Ref<NSString> farewell(Greeter&) { return "Good night"_ns; }
    static void table(Builder& t)
    {
        t.methods({ { "greeting", imp<greeting> }, { "farewell", imp<farewell> } });
    }
};
BRINDLE_RECORD(Greeter, Words)

template <> struct LateGreeter::Methods<struct Words> {
    static void table(Builder&) { }
};
BRINDLE_RECORD(LateGreeter, Words)

namespace {

/// An extension: from now on every object of the program answers `shout`.
struct Shouting {
    static Ref<NSString> shout(NSObject& self)
    {
        return NSString::cls().stringWithFormat(
            "%@!"_ns, self.description()->uppercaseString().get());
    }
    static void table(Builder& t) { t.methods({ { "shout", imp<shout> } }); }
};

void say(const char* what, const Ref<NSString>& words)
{
    std::printf("%s: %s\n", what, words->UTF8String());
}

}
BRINDLE_EXTENSION(NSObject, Shouting)

int main()
{
    const auto greeter = make<Greeter>();
    const auto late = make<LateGreeter>();
    say("at first", greeter->greeting());

    // The subclass gets methods of its own before they are exchanged, so its parent keeps its own.
    XUISwizzleMethod(LateGreeter::cls(), '-', selector<"greeting">, selector<"farewell">);
    say("the late one, exchanged", late->greeting());
    say("its parent, untouched", greeter->greeting());
    std::printf("the late one overrides greeting: %s\n",
        isMethodOverridden(late, selector<"greeting">) ? "yes" : "no");

    XUIAliasMethod(Greeter::cls(), '-', selector<"greeting">, selector<"salutation">);
    say("by another name", greeter->send<"salutation", Ref<NSString>>());

    static const char key = 0;
    associateValue_withKey(greeter, "a value that hangs on it"_ns, &key);
    say("carrying", cast<NSString>(associatedValueForKey(greeter, &key)));

    say("an operation added to every class", ("quietly"_ns)->send<"shout", Ref<NSString>>());
    return 0;
}
