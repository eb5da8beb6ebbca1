// SPDX-License-Identifier: Apache-2.0
// Suites, persistent and volatile domains by their names.

#include "NSUserDefaults.h"

#include <algorithm>

#include "Exceptions.h"
#include "NSMutableArray.h"
#include "foundation/defaults/DefaultsDomainsPrivate.h"
#include "runtime/Table.h"

namespace brindle {

using defaults::Domains;
using defaults::Store;
using defaults::VolatileDomain;

template <> struct NSUserDefaults::Methods<struct DomainsByName> {

    static Ref<NSDictionary> frozen(NSDictionary* values)
    {
        Ref<NSObject> copy = defaults::frozen(values);
        if (values && !copy)
            raise("NSInvalidArgumentException",
                "Attempt to insert a dictionary that is no property list as a domain");
        return cast<NSDictionary>(copy);
    }
    /// - Nil: for no name.
    static Store* storeNamed(NSString* name)
    {
        return name && name->length() ? &Store::named(utf8Of(name)) : nullptr;
    }

    static void addSuiteNamed(NSUserDefaults& self, NSString* name)
    {
        Store* const suite = storeNamed(name);
        if (!suite || suite == self.own_)
            return;
        removeSuiteNamed(self, name);
        const std::lock_guard guard(defaults::memory);
        self.suites_.insert(self.suites_.begin(), suite);
    }
    static void removeSuiteNamed(NSUserDefaults& self, NSString* name)
    {
        const std::lock_guard guard(defaults::memory);
        std::erase(self.suites_, storeNamed(name));
    }

    static Ref<NSDictionary> persistentDomainForName(NSUserDefaults&, NSString* name)
    {
        Store* const store = storeNamed(name);
        if (!store)
            return nullptr;
        Domains::shared().look();
        Ref<NSDictionary> values = store->snapshot();
        return values->count() ? values : nullptr;
    }
    static void setPersistentDomain(NSUserDefaults& self, NSDictionary* values, NSString* name)
    {
        const Ref<NSDictionary> copy = frozen(values);
        Store* const store = storeNamed(name);
        if (!store)
            return;
        store->replaceAll(copy.get());
        defaults::postChange(self);
    }
    static void removePersistentDomain(NSUserDefaults& self, NSString* name)
    {
        self.setPersistentDomain_forName(nullptr, name);
    }

    static Ref<NSArray> volatileDomainNames(NSUserDefaults&)
    {
        Domains& domains = Domains::shared();
        const auto names = make<NSMutableArray>();
        const std::lock_guard guard(defaults::memory);
        for (const VolatileDomain& domain : domains.volatileDomains())
            names->addObject(domain.name.get());
        return cast<NSArray>(names->copy());
    }
    static Ref<NSDictionary> volatileDomainForName(NSUserDefaults&, NSString* name)
    {
        Domains& domains = Domains::shared();
        const std::lock_guard guard(defaults::memory);
        const VolatileDomain* const domain = domains.volatileDomain(name);
        return domain ? domain->values : nullptr;
    }
    /// The domains that are searched are always there: empty ones can be set.
    static bool add(const Ref<NSDictionary>& values, const Ref<NSString>& name)
    {
        Domains& domains = Domains::shared();
        const std::lock_guard guard(defaults::memory);
        VolatileDomain* const domain = domains.volatileDomain(name.get());
        if (domain && domain->values->count())
            return false;
        if (domain)
            domain->values = values;
        else
            domains.volatileDomains().push_back({ name, values });
        return true;
    }
    static void setVolatileDomain(NSUserDefaults& self, NSDictionary* values, NSString* name)
    {
        if (!name || !values)
            return;
        if (!add(frozen(values), cast<NSString>(name->copy())))
            raiseFormat(
                NSInvalidArgumentException, "a volatile domain named %@ already exists"_ns, name);
        defaults::postChange(self);
    }
    static void removeVolatileDomain(NSUserDefaults& self, NSString* name)
    {
        Domains& domains = Domains::shared();
        {
            const std::lock_guard guard(defaults::memory);
            VolatileDomain* const domain = domains.volatileDomain(name);
            if (!domain)
                return;
            if (domain - domains.volatileDomains().data() < Domains::kSearched)
                domain->values = NSDictionary::cls().dictionary();
            else
                domains.volatileDomains().erase(domains.volatileDomains().begin()
                    + (domain - domains.volatileDomains().data()));
        }
        defaults::postChange(self);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "addSuiteNamed:", imp<addSuiteNamed> },
            { "removeSuiteNamed:", imp<removeSuiteNamed> },
            { "persistentDomainForName:", imp<persistentDomainForName> },
            { "setPersistentDomain:forName:", imp<setPersistentDomain> },
            { "removePersistentDomainForName:", imp<removePersistentDomain> },
            { "volatileDomainNames", imp<volatileDomainNames> },
            { "volatileDomainForName:", imp<volatileDomainForName> },
            { "setVolatileDomain:forName:", imp<setVolatileDomain> },
            { "removeVolatileDomainForName:", imp<removeVolatileDomain> },
        });
    }
};
BRINDLE_RECORD(NSUserDefaults, DomainsByName)

}
