// SPDX-License-Identifier: Apache-2.0
#include "NSObject+AutoCoding.h"

#include "foundation/NSData.h"
#include "foundation/NSKeyedArchiver.h"
#include "foundation/NSKeyedUnarchiver.h"
#include "foundation/NSPropertyListSerialization.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    bool isArchive(NSObject* list)
    {
        return list->respondsToSelector(selector<"objectForKey:">)
            && list->send<"objectForKey:", Ref<NSObject>>(static_cast<NSObject*>("$archiver"_ns));
    }

    struct AutoCodingFiles {
        static Ref<NSObject> objectWithContentsOfFile(Class&, NSString* path)
        {
            const Ref<NSData> data = NSData::cls().dataWithContentsOfFile(path);
            if (!data)
                return nullptr;
            Ref<NSObject> list
                = NSPropertyListSerialization::cls().propertyListWithData_options_format_error(
                    data.get(), NSPropertyListImmutable, nullptr, nullptr);
            if (!list)
                return data;
            return isArchive(list.get())
                ? NSKeyedUnarchiver::cls().unarchiveObjectWithData(data.get())
                : list;
        }
        static bool writeToFile(NSObject& self, NSString* path, bool atomically)
        {
            return maybe(NSKeyedArchiver::cls().archivedDataWithRootObject(&self))
                ->writeToFile_atomically(path, atomically);
        }
        static void table(Builder& t)
        {
            t.classMethods({ { "objectWithContentsOfFile:", imp<objectWithContentsOfFile> } });
            t.methods({ { "writeToFile:atomically:", imp<writeToFile> } });
        }
    };

}
BRINDLE_EXTENSION(NSObject, AutoCodingFiles)

}
