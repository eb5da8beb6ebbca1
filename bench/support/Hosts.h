// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <vector>

#include "foundation/NSGeometry.h"
#include "runtime/NSObject.h"

// The receivers of the measured messages, and the same things with C++ virtual functions. The loops that call
// them are in other files, so no compiler knows what a call will reach.

namespace brindle::bench {

constexpr std::size_t kObjects = 64;

/// Receives messages. Classes derived from it answer `poke` each in its own way.
class Host : public NSObject {
    BRINDLE_OBJECT(Host, NSObject)

public:
    void poke() { send<"poke">(); }
    std::int64_t add(std::int64_t number, NSObject* object)
    {
        return send<"add:object:", std::int64_t>(number, object);
    }
    Ref<NSObject> partner() const { return send<"partner", Ref<NSObject>>(); }
    Ref<NSObject> guarded() const { return send<"guarded", Ref<NSObject>>(); }
    std::int64_t count() const { return send<"count", std::int64_t>(); }
    NSRect frame() const { return send<"frame", NSRect>(); }
    void setPartner(NSObject* object) { send<"setPartner:">(object); }
    void setGuarded(NSObject* object) { send<"setGuarded:">(object); }

    std::int64_t count_ = 0;
    Ref<NSObject> partner_;
    Ref<NSObject> guarded_;
    NSRect frame_ {};
};

/// Overrides `poke` and sends it on to its parent.
class PoliteHost : public Host {
    BRINDLE_OBJECT(PoliteHost, Host)
};

/// Has one word of its own, like `VirtualSmall`.
class SmallHost : public NSObject {
    BRINDLE_OBJECT(SmallHost, NSObject)

public:
    std::int64_t word_ = 0;
};

/// Answers one of 64 classes that override `poke`. - index: 0 to 63.
Class* hostClass(std::size_t index);

/// Answers a new class derived from another, under a name that nobody has had.
Class* freshClass(Class* parent);

/// Answers 64 objects of the first so many classes, in turn.
std::vector<Ref<Host>> makeHosts(std::size_t classes);

/// The floor of `Host`.
struct VirtualHost {
    virtual ~VirtualHost() = default;
    virtual void poke();
    virtual std::int64_t add(std::int64_t number, NSObject* object);
    virtual Ref<NSObject> partner() const;
    virtual Ref<NSObject> guarded() const;
    virtual std::int64_t count() const;
    virtual NSRect frame() const;

    std::int64_t number = 0;
    Ref<NSObject> object;
    NSRect rectangle {};
    mutable std::atomic<bool> locked { false };
};

struct VirtualSmall {
    virtual ~VirtualSmall() = default;
    std::int64_t word = 0;
    std::int64_t header[2] {}; // an object's count and its extras word
};

std::unique_ptr<VirtualSmall> makeVirtualSmall();

/// Overrides `poke` and calls its parent's.
std::unique_ptr<VirtualHost> makePoliteVirtualHost();

std::vector<std::unique_ptr<VirtualHost>> makeVirtualHosts(std::size_t classes);

}
