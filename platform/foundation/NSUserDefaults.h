// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSDictionary.h"
#include "StringConstant.h"

namespace brindle {

class NSData;
class NSURL;

namespace defaults {
    class Store;
}

/// The domain of what all applications share.
inline constexpr StringConstant<"NSGlobalDomain"> NSGlobalDomain;
/// The volatile domain of the command line: `-Key value`.
inline constexpr StringConstant<"NSArgumentDomain"> NSArgumentDomain;
/// The volatile domain of what `registerDefaults:` was given.
inline constexpr StringConstant<"NSRegistrationDomain"> NSRegistrationDomain;
/// Posted by the object through which values were changed, on the thread that changed them.
inline constexpr StringConstant<"NSUserDefaultsDidChangeNotification">
    NSUserDefaultsDidChangeNotification;

/// The user's settings, found under keys.
///
/// A value is a property list: string, number, boolean, data, date, array, dictionary. A key is looked for in these
/// domains, and the first value counts:
///
/// 1. the command line: `-Key value`, the value a property list as text or any text;
/// 2. the application's own domain, named by its bundle's identifier or else its process name: what `setObject:forKey:` sets;
/// 3. suites that were added, the last one first;
/// 4. the global domain, which also holds "AppleInterfaceStyle" = "Dark" where the desktop's settings prefer dark;
/// 5. the language domain: "AppleLanguages" and "AppleLocale" of the session;
/// 6. registered values, which are never written.
///
/// A domain is the binary property list `$XDG_CONFIG_HOME/<domain>/defaults.plist` (`~/.config` without that variable; with
/// neither nothing is kept). Changes are written a moment later in the background, all changes of that moment in one
/// replacement of the file, and at the normal end of the process; `synchronize` writes at once. Only changed keys are
/// written over what other processes wrote meanwhile. At each moment the file is an old or a new one, whatever
/// happens to the process or the machine, and what `synchronize` answered YES for is in it. A file that is damaged, or no
/// file at all, counts as empty and is kept beside the new one as `defaults.plist.damaged`. What other processes
/// write is noticed by `synchronize`, and by reading when the last look is a second old.
///
/// Values are copied when they are set, and what is read never changes. Unpaired surrogates in a text become U+FFFD.
/// - Raises: `NSInvalidArgumentException` for a value that is no property list, "Attempt to insert non-property list
///   object <X: 0x…> for key k", and for a key that is no string.
/// Thread: any. Cost: reading takes one short lock and, once a second, asks the system for the files' dates.
class NSUserDefaults : public NSObject {
    BRINDLE_OBJECT(NSUserDefaults, NSObject)

public:
    struct Meta : NSObject::Meta {
        /// Answers the one object of the application's settings.
        Ref<NSUserDefaults> standardUserDefaults() const
        {
            return send<"standardUserDefaults", Ref<NSUserDefaults>>();
        }
        /// Writes what is to be written; the next `standardUserDefaults` is another object.
        void resetStandardUserDefaults() const { send<"resetStandardUserDefaults">(); }
    };

    /// Answers another object with the application's own domain; suites added to it are its own.
    Ref<NSUserDefaults> init() { return send<"init", Ref<NSUserDefaults>>(); }
    /// Answers an object whose own domain is the suite, shared by applications that use its name. Nil: as `init`.
    /// - Nil: for "" and the global domain.
    Ref<NSUserDefaults> initWithSuiteName(NSString* name)
    {
        return send<"initWithSuiteName:", Ref<NSUserDefaults>>(name);
    }

    // ---- reading: nil, 0 or NO where there is no value, or one of another kind

    Ref<NSObject> objectForKey(NSString* key) const
    {
        return send<"objectForKey:", Ref<NSObject>>(key);
    }
    /// Answers a string, or the text of a number.
    Ref<NSString> stringForKey(NSString* key) const
    {
        return send<"stringForKey:", Ref<NSString>>(key);
    }
    /// Numbers are also read out of strings: "42", "YES".
    NSInteger integerForKey(NSString* key) const { return send<"integerForKey:", NSInteger>(key); }
    float floatForKey(NSString* key) const { return send<"floatForKey:", float>(key); }
    double doubleForKey(NSString* key) const { return send<"doubleForKey:", double>(key); }
    bool boolForKey(NSString* key) const { return send<"boolForKey:", bool>(key); }
    Ref<NSData> dataForKey(NSString* key) const { return send<"dataForKey:", Ref<NSData>>(key); }
    Ref<NSArray> arrayForKey(NSString* key) const
    {
        return send<"arrayForKey:", Ref<NSArray>>(key);
    }
    /// - Nil: also when one element is no string.
    Ref<NSArray> stringArrayForKey(NSString* key) const
    {
        return send<"stringArrayForKey:", Ref<NSArray>>(key);
    }
    Ref<NSDictionary> dictionaryForKey(NSString* key) const
    {
        return send<"dictionaryForKey:", Ref<NSDictionary>>(key);
    }
    /// Answers what `setURL:forKey:` stored, or a file URL of a string, which is a path, perhaps with a tilde.
    Ref<NSURL> URLForKey(NSString* key) const { return send<"URLForKey:", Ref<NSURL>>(key); }
    /// Answers all keys with the values that count.
    Ref<NSDictionary> dictionaryRepresentation() const
    {
        return send<"dictionaryRepresentation", Ref<NSDictionary>>();
    }

    // ---- changing the own domain

    /// Nil removes the value.
    void setObject_forKey(NSObject* object, NSString* key)
    {
        send<"setObject:forKey:">(object, key);
    }
    void setInteger_forKey(NSInteger value, NSString* key)
    {
        send<"setInteger:forKey:">(value, key);
    }
    void setFloat_forKey(float value, NSString* key) { send<"setFloat:forKey:">(value, key); }
    void setDouble_forKey(double value, NSString* key) { send<"setDouble:forKey:">(value, key); }
    void setBool_forKey(bool value, NSString* key) { send<"setBool:forKey:">(value, key); }
    /// A file URL is stored as its path, with a tilde for the home folder; any other as an archive.
    void setURL_forKey(NSURL* url, NSString* key) { send<"setURL:forKey:">(url, key); }
    /// Values of the other domains show again.
    void removeObjectForKey(NSString* key) { send<"removeObjectForKey:">(key); }
    /// Adds values that count where no other domain has one; later ones replace earlier ones.
    void registerDefaults(NSDictionary* values) { send<"registerDefaults:">(values); }
    /// Writes what is to be written, and takes in what others wrote.
    /// - Returns: whether all changes are safe on the disk. It waits for other processes, but never for ever.
    bool synchronize() const { return send<"synchronize", bool>(); }
    /// Answers NO: nobody but the user decides here.
    bool objectIsForcedForKey(NSString* key) const
    {
        return send<"objectIsForcedForKey:", bool>(key);
    }
    bool objectIsForcedForKey_inDomain(NSString* key, NSString* domain) const
    {
        return send<"objectIsForcedForKey:inDomain:", bool>(key, domain);
    }

    // ---- domains

    void addSuiteNamed(NSString* name) { send<"addSuiteNamed:">(name); }
    void removeSuiteNamed(NSString* name) { send<"removeSuiteNamed:">(name); }
    /// - Nil: for a domain without values.
    Ref<NSDictionary> persistentDomainForName(NSString* name) const
    {
        return send<"persistentDomainForName:", Ref<NSDictionary>>(name);
    }
    /// Replaces all values of a domain.
    void setPersistentDomain_forName(NSDictionary* values, NSString* name)
    {
        send<"setPersistentDomain:forName:">(values, name);
    }
    void removePersistentDomainForName(NSString* name)
    {
        send<"removePersistentDomainForName:">(name);
    }
    /// Answers the names of the domains that no file keeps.
    Ref<NSArray> volatileDomainNames() const { return send<"volatileDomainNames", Ref<NSArray>>(); }
    /// - Nil: when there is no such domain.
    Ref<NSDictionary> volatileDomainForName(NSString* name) const
    {
        return send<"volatileDomainForName:", Ref<NSDictionary>>(name);
    }
    /// Adds a domain. Only those of the command line and of registered values are searched.
    /// - Raises: `NSInvalidArgumentException` when there is one of that name, "a volatile domain named X already exists".
    void setVolatileDomain_forName(NSDictionary* values, NSString* name)
    {
        send<"setVolatileDomain:forName:">(values, name);
    }
    void removeVolatileDomainForName(NSString* name) { send<"removeVolatileDomainForName:">(name); }

private:
    defaults::Store* own_ = nullptr; // lives for ever, as all of them
    std::vector<defaults::Store*> suites_; // guarded as the stores are
};

/// Keeps all defaults below another folder and begins anew with what is there: changes so far are written to where
/// they belong, volatile domains are as at the start. For tests. Nil: the folder that the environment names.
BRINDLE_EXPORT void setDefaultsFolder(const char* path);

}
