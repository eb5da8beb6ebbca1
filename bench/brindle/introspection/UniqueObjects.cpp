// SPDX-License-Identifier: Apache-2.0
#include <cstring>
#include <unordered_map>
#include <vector>

#include "introspection/NSObject+UniqueObjects.h"
#include "introspection/NSUUID+UniqueObjects.h"
#include "support/Hosts.h"
#include "support/Measure.h"
#include "support/Topics.h"

namespace brindle::bench {

namespace {

    constexpr std::size_t kObjects = 1'000'000;
    constexpr std::size_t kStep
        = 7'919; // looked up in an order in which no neighbours follow each other

    struct BytesHash {
        std::size_t operator()(const NSUUID::Bytes& bytes) const
        {
            std::size_t half;
            std::memcpy(&half, bytes.data(), sizeof half);
            return half;
        }
    };

    /// A million registered objects; the registry keeps them, so they are made once for all rows.
    struct Registered {
        std::vector<Ref<NSUUID>> identities;
        std::unordered_map<NSUUID::Bytes, NSObject*, BytesHash> floor;
        std::vector<NSUUID::Bytes> keys;

        Registered()
        {
            for (std::size_t i = 0; i < kObjects; ++i) {
                const auto object = make<NSObject>();
                identities.push_back(UUID(object));
                NSUUID::Bytes bytes {};
                identities.back()->getUUIDBytes(bytes.data());
                floor[bytes] = object.get();
                keys.push_back(bytes);
            }
        }
        static const Registered& all()
        {
            static const Registered registered;
            return registered;
        }
    };

    Pair lookUp()
    {
        const Registered& all = Registered::all();
        return { repeated([&all, at = std::size_t { 0 }](std::size_t) mutable {
                    keep(uniqueObject(all.identities[at]).get());
                    at = (at + kStep) % kObjects;
                }),
            repeated([&all, at = std::size_t { 0 }](std::size_t) mutable {
                keep(all.floor.find(all.keys[at])->second);
                at = (at + kStep) % kObjects;
            }) };
    }

}

void addUniqueObjects(Plan& plan)
{
    plan.time("object found by its UUID among 1,000,000", kNoBudget, lookUp);
}

}
