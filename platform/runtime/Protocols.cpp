// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <map>

#include "ClassPrivate.h"

namespace brindle {

namespace {

    struct Protocols {
        std::map<std::string, Protocol*, std::less<>> byName;
        std::unordered_map<const Protocol*, std::vector<Protocol*>> adopted;
    };
    Protocols& protocols()
    {
        static Protocols& instance = *new Protocols;
        return instance;
    }

    bool reaches(const Protocol* from, const Protocol* wanted, std::vector<const Protocol*>& seen)
    {
        if (from == wanted)
            return true;
        if (std::find(seen.begin(), seen.end(), from) != seen.end())
            return false; // protocols may adopt one another in a circle
        seen.push_back(from);
        const auto adopted = protocols().adopted.find(from);
        return adopted != protocols().adopted.end()
            && std::any_of(adopted->second.begin(), adopted->second.end(),
                [&](const Protocol* next) { return reaches(next, wanted, seen); });
    }

}

Protocol* objc_getProtocol(const char* name)
{
    if (!name || !*name)
        return nullptr;
    Class* const cls = classOf<Protocol>();
    const std::lock_guard guard(runtimeLock());
    auto& known = protocols().byName;
    if (const auto found = known.find(std::string_view(name)); found != known.end())
        return found->second;
    auto* const protocol = static_cast<Protocol*>(class_createInstance(cls));
    headerOf(protocol).count.store(ObjectHeader::kImmortal, std::memory_order_relaxed);
    protocol->name_ = known.emplace(name, protocol).first->first.c_str();
    return protocol;
}

void protocol_addProtocol(Protocol* protocol, Protocol* other)
{
    if (!protocol || !other)
        return;
    const std::lock_guard guard(runtimeLock());
    protocols().adopted[protocol].push_back(other);
}

bool protocol_conformsToProtocol(const Protocol* protocol, const Protocol* other)
{
    if (!protocol || !other)
        return false;
    const std::lock_guard guard(runtimeLock());
    std::vector<const Protocol*> seen;
    return reaches(protocol, other, seen);
}

bool class_conformsToProtocol(const Class* cls, const Protocol* protocol)
{
    if (!protocol)
        return false;
    const std::lock_guard guard(runtimeLock());
    for (; cls; cls = cls->super_) {
        for (const Protocol* const adopted : cls->data_->protocols) {
            if (protocol_conformsToProtocol(adopted, protocol))
                return true;
        }
    }
    return false;
}

bool class_addProtocol(Class* cls, Protocol* protocol)
{
    if (!cls || !protocol)
        return false;
    const std::lock_guard guard(runtimeLock());
    auto& own = cls->data_->protocols;
    if (std::find(own.begin(), own.end(), protocol) != own.end())
        return false;
    own.push_back(protocol);
    return true;
}

template <> struct Protocol::Methods<struct Names> {

    static const char* name(Protocol& self) { return self.name_; }

    static void table(Builder& t) { t.methods({ { "name", imp<name> } }); }
};
BRINDLE_RECORD(Protocol, Names)

}
