// SPDX-License-Identifier: Apache-2.0
#include "introspection/NSObject+AutoCoding.h"

#include <mutex>
#include <string>
#include <unordered_map>

#include "foundation/NSDictionary.h"
#include "support/Hosts.h"
#include "support/Measure.h"
#include "support/Topics.h"

namespace brindle::bench {

namespace {

    /// The least that finds a table by a class's name, one thread at a time.
    struct Tables {
        std::recursive_mutex mutex;
        std::unordered_map<std::string, Ref<NSObject>> all;

        Ref<NSObject> find(const std::string& name)
        {
            const std::lock_guard guard(mutex);
            return all.find(name)->second;
        }
    };

}

void addAutoCoding(Plan& plan)
{
    plan.time("codable properties of an object, again", kNoBudget, [] {
        const auto host = makeHosts(1)[0];
        const auto tables = std::make_shared<Tables>();
        tables->all["Host"] = codableProperties(host);
        return Pair { repeated([host](std::size_t) { keep(codableProperties(host).get()); }),
            repeated([tables, name = std::string("Host")](
                         std::size_t) { keep(tables->find(name).get()); }) };
    });
}

}
