// SPDX-License-Identifier: Apache-2.0
// Archives of any kind, once as data of one's own and once as data of unknown origin.

#include <cstddef>
#include <cstdint>
#include <vector>

#include "foundation/NSData.h"
#include "foundation/NSDate.h"
#include "foundation/NSIndexSet.h"
#include "foundation/NSKeyedArchiver.h"
#include "foundation/NSKeyedUnarchiver.h"
#include "foundation/NSMutableArray.h"
#include "foundation/NSMutableDictionary.h"
#include "foundation/NSNull.h"
#include "foundation/NSNumber.h"
#include "foundation/NSSet.h"
#include "foundation/NSString.h"
#include "runtime/NSException.h"
#include "runtime/Table.h"

namespace brindle {

/// Empties all collections that were read, in the end: an archive may bring some that hold themselves.
class CollectionGatherer : public NSObject {
    BRINDLE_OBJECT(CollectionGatherer, NSObject)

public:
    std::vector<Ref<NSObject>> gathered_;

    void empty()
    {
        for (const Ref<NSObject>& object : gathered_) {
            if (object->isKindOfClass(NSMutableArray::cls()))
                static_cast<NSMutableArray*>(object.get())->removeAllObjects();
            if (object->isKindOfClass(NSMutableDictionary::cls()))
                static_cast<NSMutableDictionary*>(object.get())->removeAllObjects();
            if (object->isKindOfClass(NSMutableSet::cls()))
                static_cast<NSMutableSet*>(object.get())->removeAllObjects();
        }
    }
};

template <> struct CollectionGatherer::Methods<struct Gathering> {
    static Ref<NSObject> didDecode(CollectionGatherer& self, NSCoder*, NSObject* object)
    {
        self.gathered_.emplace_back(object);
        return object;
    }
    static void table(Builder& t)
    {
        t.methods({ { "unarchiver:didDecodeObject:", imp<didDecode> } });
    }
};
BRINDLE_RECORD(CollectionGatherer, Gathering)

}

using namespace brindle;

namespace {

template <class Decode> void read(const NSData* data, bool isSecure, Decode decode)
{
    const Ref<CollectionGatherer> gatherer = make<CollectionGatherer>();
    try {
        const Ref<NSKeyedUnarchiver> unarchiver
            = alloc<NSKeyedUnarchiver>()->initForReadingWithData(data);
        unarchiver->setDelegate(gatherer.get());
        unarchiver->setRequiresSecureCoding(isSecure);
        unarchiver->setClass_forClassName(NSMutableArray::cls(), "NSArray"_ns);
        unarchiver->setClass_forClassName(NSMutableDictionary::cls(), "NSDictionary"_ns);
        unarchiver->setClass_forClassName(NSMutableSet::cls(), "NSSet"_ns);
        decode(*unarchiver);
    } catch (const Exception&) { // the documented answer
    }
    gatherer->empty();
}

/// What was read is archived again, so that it is looked at as a whole.
void readFreely(NSKeyedUnarchiver& unarchiver)
{
    if (const Ref<NSObject> root = unarchiver.decodeObjectForKey("root"_ns))
        NSKeyedArchiver::cls().archivedDataWithRootObject(root.get());
}

void readCarefully(NSKeyedUnarchiver& unarchiver)
{
    const Ref<NSSet> classes
        = makeSet({ NSArray::cls(), NSDictionary::cls(), NSSet::cls(), NSString::cls(),
            NSData::cls(), NSDate::cls(), NSValue::cls(), NSIndexSet::cls(), NSNull::cls() });
    unarchiver.decodeObjectOfClasses_forKey(classes.get(), "root"_ns);
}

}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    const Ref<NSData> data = NSData::cls().dataWithBytes_length(bytes, size);
    read(data.get(), false, readFreely);
    read(data.get(), true, readCarefully);
    return 0;
}
