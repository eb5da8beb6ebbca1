// SPDX-License-Identifier: Apache-2.0
#include "NSUserDefaults.h"

#include <cstdio>

#include "Exceptions.h"
#include "NSArray.h"
#include "foundation/defaults/DefaultsDomainsPrivate.h"
#include "runtime/Runtime.h"
#include "runtime/Table.h"

namespace brindle {

using defaults::Domains;
using defaults::Store;

template <> struct NSUserDefaults::Methods<struct Search> {

    static constexpr std::chrono::seconds kPatience { 10 }; // with other processes

    static Store& global()
    {
        static Store& store = Store::named(utf8Of(NSGlobalDomain));
        return store;
    }

    // Guarded by `defaults::memory`.
    static Ref<NSUserDefaults>& standard()
    {
        static auto* const object = new Ref<NSUserDefaults>;
        return *object;
    }

    static Ref<NSUserDefaults> standardUserDefaults(Class& self)
    {
        {
            const std::lock_guard guard(defaults::memory);
            if (standard())
                return standard();
        }
        Ref<NSUserDefaults> made = cast<NSUserDefaults>(self.send<"new", Ref<NSObject>>());
        const std::lock_guard guard(defaults::memory);
        if (!standard())
            standard() = made;
        return standard();
    }
    static void resetStandardUserDefaults(Class&)
    {
        Ref<NSUserDefaults> old;
        {
            const std::lock_guard guard(defaults::memory);
            old.swap(standard());
        }
        maybe(old)->synchronize();
    }

    static Ref<NSUserDefaults> initWithStore(NSUserDefaults& self, const std::string& name)
    {
        if (!super<NSUserDefaults, "init", Ref<NSObject>>(self))
            return nullptr;
        self.own_ = &Store::named(name);
        return &self;
    }
    static Ref<NSUserDefaults> init(NSUserDefaults& self)
    {
        return initWithStore(self, defaults::applicationName());
    }
    static Ref<NSUserDefaults> initWithSuiteName(NSUserDefaults& self, NSString* name)
    {
        if (!name)
            return cast<NSUserDefaults>(self.init());
        if (!name->length() || name->isEqualToString(NSGlobalDomain))
            return nullptr;
        return initWithStore(self, utf8Of(name));
    }

    /// Answers the stores in which the object looks, first the one that counts most. Under `defaults::memory`.
    static std::vector<Store*> storesOf(const NSUserDefaults& self)
    {
        std::vector<Store*> all;
        if (self.own_)
            all.push_back(self.own_);
        all.insert(all.end(), self.suites_.begin(), self.suites_.end());
        all.push_back(&global());
        return all;
    }
    static std::vector<Store*> loadedStoresOf(const NSUserDefaults& self)
    {
        std::vector<Store*> all;
        {
            const std::lock_guard guard(defaults::memory);
            all = storesOf(self);
        }
        for (Store* const store : all)
            store->load();
        return all;
    }

    /// Answers the value that counts. Where a store was not read yet, `unread` is set and the answer is none.
    static Ref<NSObject> search(const NSUserDefaults& self, NSString* key, Store*& unread)
    {
        const Domains& domains = Domains::shared();
        if (Ref<NSObject> value = domains.arguments()->objectForKey(key))
            return value;
        const auto in = [key, &unread](Store& store) -> Ref<NSObject> {
            if (store.values())
                return store.values()->objectForKey(key);
            unread = &store;
            return nullptr;
        };
        Ref<NSObject> value = self.own_ ? in(*self.own_) : nullptr;
        for (Store* const suite : self.suites_) {
            if (value || unread)
                return value;
            value = in(*suite);
        }
        if (!value && !unread)
            value = in(global());
        if (value || unread)
            return value;
        for (const NSDictionary* domain :
            { domains.desktop(), domains.language(), domains.registration() }) {
            if ((value = domain->objectForKey(key)))
                return value;
        }
        return nullptr;
    }
    static Ref<NSObject> objectForKey(NSUserDefaults& self, NSString* key)
    {
        if (!key)
            return nullptr;
        Domains::shared().look();
        for (;;) {
            Store* unread = nullptr;
            {
                const std::lock_guard guard(defaults::memory);
                Ref<NSObject> value = search(self, key, unread);
                if (!unread)
                    return value;
            }
            unread->load();
        }
    }
    static Ref<NSDictionary> dictionaryRepresentation(NSUserDefaults& self)
    {
        Domains& domains = Domains::shared();
        domains.look();
        const std::vector<Store*> stores = loadedStoresOf(self);
        const auto all = make<NSMutableDictionary>();
        const std::lock_guard guard(defaults::memory);
        for (const NSDictionary* domain :
            { domains.registration(), domains.language(), domains.desktop() })
            all->addEntriesFromDictionary(domain);
        for (auto store = stores.rbegin(); store != stores.rend(); ++store)
            all->addEntriesFromDictionary((*store)->values());
        all->addEntriesFromDictionary(domains.arguments());
        return cast<NSDictionary>(all->copy());
    }

    static Ref<NSObject> validKey(NSString* key)
    {
        Ref<NSObject> copy
            = key && key->isKindOfClass(NSString::cls()) ? defaults::frozen(key) : nullptr;
        if (!copy)
            raiseFormat(
                NSInvalidArgumentException, "Key of a user default is no string: %@"_ns, key);
        return copy;
    }
    /// Answers how an object is named in an error. A container that is no list may hold itself: its class must do.
    static std::string nameOf(NSObject* value)
    {
        const bool isContainer
            = value->isKindOfClass(NSArray::cls()) || value->isKindOfClass(NSDictionary::cls());
        if (!isContainer)
            return utf8Of(value->description());
        char address[24];
        std::snprintf(address, sizeof address, ": %p>", static_cast<void*>(value));
        return std::string("<") + class_getName(value->classObject()) + address;
    }
    static Ref<NSObject> validValue(NSObject* value, NSObject* key)
    {
        Ref<NSObject> copy = defaults::frozen(value);
        if (value && !copy)
            raise("NSInvalidArgumentException",
                "Attempt to insert non-property list object " + nameOf(value) + " for key "
                    + utf8Of(key->description()));
        return copy;
    }
    static Ref<NSDictionary> validValues(NSDictionary* values)
    {
        const auto all = make<NSMutableDictionary>();
        for (NSObject* key : *values) {
            const Ref<NSObject> name = validKey(cast<NSString>(key));
            all->setObject_forKey(
                validValue(values->objectForKey(key).get(), name.get()).get(), name.get());
        }
        return cast<NSDictionary>(all->copy());
    }

    static void setObject(NSUserDefaults& self, NSObject* object, NSString* key)
    {
        const Ref<NSObject> name = validKey(key);
        const Ref<NSObject> value = validValue(object, name.get());
        if (self.own_ && self.own_->set(name.get(), value.get()))
            defaults::postChange(self);
    }
    static void removeObjectForKey(NSUserDefaults& self, NSString* key)
    {
        self.setObject_forKey(nullptr, key);
    }
    static void registerDefaults(NSUserDefaults& self, NSDictionary* values)
    {
        if (!values || !values->count())
            return;
        const Ref<NSDictionary> valid = validValues(values);
        const auto all = make<NSMutableDictionary>();
        Domains& domains = Domains::shared();
        {
            const std::lock_guard guard(defaults::memory);
            all->addEntriesFromDictionary(domains.registration());
            all->addEntriesFromDictionary(valid.get());
            domains.setRegistration(cast<NSDictionary>(all->copy()));
        }
        defaults::postChange(self);
    }
    static bool synchronize(NSUserDefaults& self)
    {
        bool areSafe = true;
        bool differ = false;
        const defaults::Deadline deadline = std::chrono::steady_clock::now() + kPatience;
        for (Store* const store : loadedStoresOf(self)) {
            bool differs = false;
            areSafe &= store->flush(deadline, &differs);
            differ |= differs;
        }
        if (differ)
            defaults::postChange(self);
        return areSafe;
    }
    static bool objectIsForcedForKey(NSUserDefaults&, NSString*) { return false; }
    static bool objectIsForcedForKeyInDomain(NSUserDefaults&, NSString*, NSString*)
    {
        return false;
    }

    static void table(Builder& t)
    {
        t.classMethods({
            { "standardUserDefaults", imp<standardUserDefaults> },
            { "resetStandardUserDefaults", imp<resetStandardUserDefaults> },
        });
        t.methods({
            { "init", imp<init> },
            { "initWithSuiteName:", imp<initWithSuiteName> },
            { "objectForKey:", imp<objectForKey> },
            { "valueForKey:", imp<objectForKey> },
            { "dictionaryRepresentation", imp<dictionaryRepresentation> },
            { "setObject:forKey:", imp<setObject> },
            { "setValue:forKey:", imp<setObject> },
            { "removeObjectForKey:", imp<removeObjectForKey> },
            { "registerDefaults:", imp<registerDefaults> },
            { "synchronize", imp<synchronize> },
            { "objectIsForcedForKey:", imp<objectIsForcedForKey> },
            { "objectIsForcedForKey:inDomain:", imp<objectIsForcedForKeyInDomain> },
        });
    }
};
BRINDLE_RECORD(NSUserDefaults, Search)

void setDefaultsFolder(const char* path)
{
    Store::moveAll(path);
    Domains::shared().reset();
}

}
