// SPDX-License-Identifier: Apache-2.0
// Damaged archives, made from a good one: nothing may crash, take long or eat memory.

#include <algorithm>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "foundation/Each.h"
#include "foundation/NSData.h"
#include "foundation/NSDate.h"
#include "foundation/NSDictionary.h"
#include "foundation/NSIndexSet.h"
#include "foundation/NSKeyedArchiver.h"
#include "foundation/NSKeyedUnarchiver.h"
#include "foundation/NSMutableArray.h"
#include "foundation/NSMutableString.h"
#include "foundation/NSNull.h"
#include "foundation/NSNumber.h"
#include "foundation/NSPropertyListSerialization.h"
#include "foundation/NSSet.h"
#include "hardening/DamagedInputs.h"
#include "runtime/Table.h"
#include "support/Strings.h"

namespace brindle {

/// Knows the containers that came out of an archive.
class ContainerWatcher : public NSObject {
    BRINDLE_OBJECT(ContainerWatcher, NSObject)

public:
    std::vector<WeakRef<NSObject>> containers_;
};

template <> struct ContainerWatcher::Methods<struct Watching> {
    static Ref<NSObject> see(ContainerWatcher& self, NSKeyedUnarchiver*, NSObject* object)
    {
        for (Class* cls :
            std::initializer_list<Class*> { NSArray::cls(), NSSet::cls(), NSDictionary::cls() }) {
            if (object->isKindOfClass(cls))
                self.containers_.emplace_back(object);
        }
        return object;
    }
    static void table(Builder& t) { t.methods({ { "unarchiver:didDecodeObject:", imp<see> } }); }
};
BRINDLE_RECORD(ContainerWatcher, Watching)

}

using namespace brindle;

namespace {

std::string goodArchive(NSPropertyListFormat format)
{
    const auto& values = NSValue::cls();
    const Ref<NSMutableIndexSet> indexes = make<NSMutableIndexSet>();
    indexes->addIndexesInRange({ 5, 3 });
    indexes->addIndexesInRange({ 500, 300 });
    const Ref<NSArray> root = makeArray({
        makeDictionary({ { "k"_ns, "grün"_ns }, { "l"_ns, NSNull::cls().null().get() } }).get(),
        makeSet({ makeArray({ "s"_ns }).get(), makeArray({ "t"_ns }).get() }).get(),
        NSMutableString::cls().stringWithString("m"_ns).get(),
        NSMutableData::cls().dataWithBytes_length("abc", 3).get(),
        NSDate::cls().dateWithTimeIntervalSinceReferenceDate(1).get(),
        values.valueWithRect(NSMakeRect(0, 0, 1, 1)).get(),
        indexes.get(),
        NSNumber::cls().numberWithBool(true).get(),
        NSNumber::cls().numberWithDouble(0.1).get(),
    });
    const Ref<NSKeyedArchiver> archiver = alloc<NSKeyedArchiver>()->initRequiringSecureCoding(true);
    archiver->setOutputFormat(format);
    archiver->encodeObject_forKey(root.get(), "root"_ns);
    const Ref<NSData> data = archiver->encodedData();
    const auto bytes = bytesOf(data.get());
    return { bytes.begin(), bytes.end() };
}

Ref<NSArray> held(NSObject& container)
{
    if (container.isKindOfClass(NSArray::cls()))
        return &static_cast<NSArray&>(container);
    if (container.isKindOfClass(NSSet::cls()))
        return static_cast<NSSet&>(container).allObjects();
    if (!container.isKindOfClass(NSDictionary::cls()))
        return nullptr;
    const auto& dictionary = static_cast<NSDictionary&>(container);
    return dictionary.allKeys()->arrayByAddingObjectsFromArray(dictionary.allValues().get());
}

/// Answers whether a container holds itself or one that does.
/// - above: the containers that hold it.
bool holdsItself(NSObject& container, std::vector<NSObject*>& above)
{
    if (std::ranges::find(above, &container) != above.end())
        return true;
    above.push_back(&container);
    bool found = false;
    for (NSObject* below : each<NSObject>(held(container)))
        found = found || holdsItself(*below, above);
    above.pop_back();
    return found;
}

/// An archive may describe containers that hold one another, which nothing ever lets go. Whoever looks for lost memory
/// finds them here, and nothing but them.
void keepRings(const std::vector<WeakRef<NSObject>>& containers)
{
    static auto& rings = *new std::vector<Ref<NSObject>>; // looked for when the process ends
    std::vector<Ref<NSObject>> left;
    for (const WeakRef<NSObject>& container : containers) {
        const Ref<NSObject> object = container.get();
        if (object && maybe(held(*object))->count())
            left.push_back(object);
    }
    std::vector<NSObject*> above;
    EXPECT_TRUE(left.empty() || std::ranges::any_of(left, [&](const Ref<NSObject>& object) {
        return holdsItself(*object, above);
    }));
    rings.insert(rings.end(), left.begin(), left.end());
}

/// Reads a damaged archive in both ways, and writes again what still comes back.
void expectAnObjectOrAnException(const std::string& bytes)
{
    const Ref<NSData> data = NSData::cls().dataWithBytes_length(bytes.data(), bytes.size());
    const Ref<ContainerWatcher> watcher = make<ContainerWatcher>();
    const std::string raised = raisedBy([&] {
        const Ref<NSKeyedUnarchiver> unarchiver
            = alloc<NSKeyedUnarchiver>()->initForReadingWithData(data.get());
        unarchiver->setDelegate(watcher.get());
        const Ref<NSObject> root = unarchiver->decodeObjectForKey("root"_ns);
        NSKeyedArchiver::cls().archivedDataWithRootObject(root.get());
    });
    EXPECT_TRUE(raised.empty() || raised.starts_with("NS")) << raised;
    keepRings(watcher->containers_);
    NSKeyedUnarchiver::cls().unarchivedObjectOfClass_fromData_error(
        NSArray::cls(), data.get(), nullptr);
}

const std::vector<std::string>& goodArchives()
{
    static const std::vector<std::string> archives { goodArchive(NSPropertyListBinaryFormat_v1_0),
        goodArchive(NSPropertyListXMLFormat_v1_0) };
    return archives;
}

class DamagedArchives : public test::DamagedInputs {
protected:
    DamagedArchives()
        : DamagedInputs("damaged archives", expectAnObjectOrAnException)
    {
    }
};

}

TEST_F(DamagedArchives, EveryTruncation)
{
    for (const std::string& archive : goodArchives()) {
        for (std::size_t length = 0; length < archive.size(); ++length)
            expect(archive.substr(0, length));
    }
    publish("every truncation");
}

TEST_F(DamagedArchives, TenThousandFlippedBits)
{
    std::mt19937 random(1);
    for (int i = 0; i < 10000; ++i) {
        std::string archive = goodArchives()[random() % goodArchives().size()];
        archive[random() % archive.size()] ^= static_cast<char>(1u << random() % 8);
        expect(archive);
    }
    publish("flipped bits");
}

TEST_F(DamagedArchives, EveryByteInEveryPlace)
{
    const std::string& good = goodArchives()[0];
    for (std::size_t at = 0; at < good.size(); ++at) {
        for (int byte = 0; byte < 256; byte += 3) {
            std::string archive = good;
            archive[at] = static_cast<char>(byte);
            expect(archive);
        }
    }
    publish("every third byte in every place");
}
