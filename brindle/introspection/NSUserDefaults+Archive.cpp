// SPDX-License-Identifier: Apache-2.0
#include "NSUserDefaults+Archive.h"

#include "foundation/Exceptions.h"
#include "foundation/NSData.h"
#include "foundation/NSKeyedArchiver.h"
#include "foundation/NSKeyedUnarchiver.h"
#include "foundation/NSObjCRuntime.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    template <class Store> void archive(Store& self, NSObject* object, NSString* key)
    {
        if (!object)
            return;
        const Ref<NSData> data = NSKeyedArchiver::cls().archivedDataWithRootObject(object);
        self.setObject_forKey(data.get(), key);
    }
    template <class Store> Ref<NSObject> unarchive(Store& self, NSString* key)
    {
        const Ref<NSObject> value = self.objectForKey(key);
        if (!value)
            return nullptr;
        if (!value->isKindOfClass(NSData::cls()))
            raiseFormat(NSInvalidArgumentException,
                "*** -[NSKeyedUnarchiver initForReadingWithData:]: incomprehensible archive (%@)"_ns,
                NSStringFromClass(value->classObject()).get());
        return NSKeyedUnarchiver::cls().unarchiveObjectWithData(cast<NSData>(value.get()));
    }

    struct DefaultsArchive {
        static void table(Builder& t)
        {
            t.methods({
                { "archiveObject:forKey:", imp<archive<NSUserDefaults>> },
                { "unarchiveObjectForKey:", imp<unarchive<NSUserDefaults>> },
            });
        }
    };
    struct DictionaryArchive {
        static void table(Builder& t)
        {
            t.methods({ { "unarchiveObjectForKey:", imp<unarchive<NSDictionary>> } });
        }
    };
    struct MutableDictionaryArchive {
        static void table(Builder& t)
        {
            t.methods({ { "archiveObject:forKey:", imp<archive<NSMutableDictionary>> } });
        }
    };

}
BRINDLE_EXTENSION(NSUserDefaults, DefaultsArchive)
BRINDLE_EXTENSION(NSDictionary, DictionaryArchive)
BRINDLE_EXTENSION(NSMutableDictionary, MutableDictionaryArchive)

}
