// SPDX-License-Identifier: Apache-2.0
#include "NSUserDefaults+DefaultsFromSettingsBundle.h"

#include "foundation/NSArray.h"
#include "foundation/NSBundle.h"
#include "foundation/NSData.h"
#include "foundation/NSLog.h"
#include "foundation/NSMutableDictionary.h"
#include "foundation/NSNumber.h"
#include "foundation/NSPropertyListSerialization.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    /// Answers the object as a collection of one kind, nil when it is another: files hold what they like.
    template <class T> Ref<T> asKind(Ref<NSObject> object)
    {
        return object && object->isKindOfClass(T::cls()) ? cast<T>(object) : nullptr;
    }

    /// Answers the root dictionary of the settings bundle, or nil.
    Ref<NSDictionary> settingsRoot()
    {
        const Ref<NSString> path
            = NSBundle::cls().mainBundle()->pathForResource_ofType("Settings"_ns, ".bundle"_ns);
        const Ref<NSBundle> bundle = path ? NSBundle::cls().bundleWithPath(path.get()) : nullptr;
        const Ref<NSString> root = maybe(bundle)->pathForResource_ofType("Root"_ns, "plist"_ns);
        const Ref<NSData> data = NSData::cls().dataWithContentsOfFile(root.get());
        return asKind<NSDictionary>(
            NSPropertyListSerialization::cls().propertyListWithData_options_format_error(
                data.get(), NSPropertyListImmutable, nullptr, nullptr));
    }

    struct DefaultsFromSettingsBundle {
        static Ref<NSObject> defaultValue(Class&, NSObject* value)
        {
            if (maybe(value)->isEqual("YES"_ns))
                return NSNumber::cls().numberWithBool(true);
            if (maybe(value)->isEqual("NO"_ns))
                return NSNumber::cls().numberWithBool(false);
            return value;
        }
        static void registerAll(NSUserDefaults& self)
        {
            const Ref<NSDictionary> root = settingsRoot();
            if (!root)
                return;
            const auto values = make<NSMutableDictionary>();
            for (NSObject* item :
                each(asKind<NSArray>(root->objectForKey("PreferenceSpecifiers"_ns)))) {
                const Ref<NSDictionary> specifier = asKind<NSDictionary>(item);
                const Ref<NSObject> value = maybe(specifier)->objectForKey("DefaultValue"_ns);
                if (!value)
                    continue;
                values->setObject_forKey(
                    defaultValueForSettingsBundleDefaultValue(self.classObject(), value.get())
                        .get(),
                    specifier->objectForKey("Key"_ns).get());
            }
            if (values->count()) {
                NSLog("register: %@"_ns, values);
                self.registerDefaults(values.get());
            }
            NSLog("registerDefaults"_ns);
        }
        static void table(Builder& t)
        {
            t.methods({ { "registerDefaultsFromSettingsBundle", imp<registerAll> } });
            t.classMethods({ { "defaultValueForSettingsBundleDefaultValue:", imp<defaultValue> } });
        }
    };

}
BRINDLE_EXTENSION(NSUserDefaults, DefaultsFromSettingsBundle)

}
