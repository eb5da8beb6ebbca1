// SPDX-License-Identifier: Apache-2.0
// Damaged archives, made from a good one: nothing may crash, take long or eat memory.

#include <random>

#include <gtest/gtest.h>

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
#include "support/Strings.h"

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

/// Reads a damaged archive in both ways, and writes again what still comes back.
void expectAnObjectOrAnException(const std::string& bytes)
{
    const Ref<NSData> data = NSData::cls().dataWithBytes_length(bytes.data(), bytes.size());
    const std::string raised = raisedBy([&] {
        const Ref<NSObject> root = NSKeyedUnarchiver::cls().unarchiveObjectWithData(data.get());
        NSKeyedArchiver::cls().archivedDataWithRootObject(root.get());
    });
    EXPECT_TRUE(raised.empty() || raised.starts_with("NS")) << raised;
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
