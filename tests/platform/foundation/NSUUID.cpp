// SPDX-License-Identifier: Apache-2.0
#include "foundation/NSUUID.h"

#include <algorithm>
#include <set>
#include <string>

#include "foundation/NSCoder.h"
#include "foundation/NSData.h"
#include "foundation/NSMutableDictionary.h"
#include "runtime/Table.h"
#include "support/Strings.h"

namespace brindle {

/// A coder that keeps everything in a table.
class UUIDTableCoder : public NSCoder {
    BRINDLE_OBJECT(UUIDTableCoder, NSCoder)

public:
    Ref<NSMutableDictionary> values = make<NSMutableDictionary>();
};

template <> struct UUIDTableCoder::Methods<struct Coding> {
    static void encode(UUIDTableCoder& self, NSObject* object, NSString* key)
    {
        self.values->setObject_forKey(object, key);
    }
    static Ref<NSObject> decode(UUIDTableCoder& self, NSString* key)
    {
        return self.values->objectForKey(key);
    }
    static bool contains(UUIDTableCoder& self, NSString* key)
    {
        return self.values->objectForKey(key) != nullptr;
    }
    static void table(Builder& t)
    {
        t.methods({
            { "encodeObject:forKey:", imp<encode> },
            { "decodeObjectForKey:", imp<decode> },
            { "containsValueForKey:", imp<contains> },
        });
    }
};
BRINDLE_RECORD(UUIDTableCoder, Coding)

}

using namespace brindle;

namespace {

constexpr NSUUID::Bytes kBytes { 0xe6, 0x21, 0xe1, 0xf8, 0xc3, 0x6c, 0x49, 0x5a, 0x93, 0xfc, 0x0c,
    0x24, 0x7a, 0x3e, 0x6e, 0x5f };
constexpr const char* kText = "E621E1F8-C36C-495A-93FC-0C247A3E6E5F";

Ref<NSUUID> fromText(const std::string& text)
{
    return alloc<NSUUID>()->initWithUUIDString(stringFrom(text).get());
}
Ref<NSUUID> fromBytes(const NSUUID::Bytes& bytes)
{
    return alloc<NSUUID>()->initWithUUIDBytes(bytes.data());
}

}

TEST(UUID, IsWrittenInCapitals) { EXPECT_EQ(utf8(fromBytes(kBytes)->UUIDString()), kText); }

TEST(UUID, DescribesItselfByItsText) { EXPECT_EQ(textOf(fromBytes(kBytes)), kText); }

TEST(UUID, ReadsWhatItWrites)
{
    NSUUID::Bytes bytes {};
    fromText(kText)->getUUIDBytes(bytes.data());
    EXPECT_EQ(bytes, kBytes);
}

TEST(UUID, ReadsSmallLetters)
{
    EXPECT_EQ(utf8(fromText("e621e1f8-c36c-495a-93fc-0c247a3e6e5f")->UUIDString()), kText);
}

TEST(UUID, IsNilForNoText) { EXPECT_FALSE(alloc<NSUUID>()->initWithUUIDString(nullptr)); }

TEST(UUID, IsNilForEveryTextThatIsNotExactlyOne)
{
    const std::string good = kText;
    for (std::size_t length = 0; length < good.size(); ++length)
        EXPECT_FALSE(fromText(good.substr(0, length))) << length;
    for (std::size_t place = 0; place < good.size(); ++place) {
        for (const char wrong : { 'G', 'g', '@', '`', '/', ':', ' ', '\0' }) {
            std::string text = good;
            text[place] = wrong;
            EXPECT_FALSE(fromText(text)) << text;
        }
    }
    EXPECT_FALSE(fromText(good + "0"));
    EXPECT_FALSE(fromText(" " + good));
    EXPECT_FALSE(fromText("{" + good + "}"));
    EXPECT_FALSE(fromText("E621E1F8C36C495A93FC0C247A3E6E5F"));
    EXPECT_FALSE(fromText("E621E1F8-C36C495A-93FC-0C24-7A3E6E5F"));
}

TEST(UUID, TakesZerosForNoBytes)
{
    EXPECT_EQ(utf8(alloc<NSUUID>()->initWithUUIDBytes(nullptr)->UUIDString()),
        "00000000-0000-0000-0000-000000000000");
}

TEST(UUID, IsRandomOfVersionFour)
{
    for (int i = 0; i < 100; ++i) {
        const std::string text = utf8(NSUUID::cls().UUID()->UUIDString());
        ASSERT_EQ(text.size(), 36U);
        EXPECT_EQ(text[14], '4');
        EXPECT_NE(std::string("89AB").find(text[19]), std::string::npos) << text;
    }
}

TEST(UUID, IsNeverMadeTwice)
{
    std::set<std::string> seen;
    for (int i = 0; i < 1000; ++i)
        seen.insert(utf8(NSUUID::cls().UUID()->UUIDString()));
    EXPECT_EQ(seen.size(), 1000U);
}

TEST(UUID, IsRandomWhenMadeByInit) { EXPECT_FALSE(make<NSUUID>()->isEqual(make<NSUUID>().get())); }

TEST(UUID, IsEqualByItsBytes)
{
    EXPECT_TRUE(fromText(kText)->isEqual(fromBytes(kBytes).get()));
    EXPECT_EQ(fromText(kText)->hash(), fromBytes(kBytes)->hash());
    EXPECT_FALSE(fromText(kText)->isEqual(nullptr));
    EXPECT_FALSE(fromText(kText)->isEqual(stringFrom(kText).get()));
}

TEST(UUID, DiffersInEveryByte)
{
    for (std::size_t i = 0; i < kBytes.size(); ++i) {
        NSUUID::Bytes other = kBytes;
        other[i] ^= 1;
        EXPECT_FALSE(fromBytes(kBytes)->isEqual(fromBytes(other).get())) << i;
        EXPECT_NE(fromBytes(kBytes)->hash(), fromBytes(other)->hash()) << i;
    }
}

TEST(UUID, IsItsOwnCopy)
{
    const Ref<NSUUID> one = NSUUID::cls().UUID();
    EXPECT_EQ(one->copy(), one);
}

TEST(UUID, FindsAValueByAnEqualKey)
{
    const auto table = NSMutableDictionary::cls().dictionary();
    table->setObject_forKey("found"_ns, fromText(kText).get());
    EXPECT_EQ(textOf(table->objectForKey(fromBytes(kBytes).get())), "found");
}

TEST(UUID, IsOrderedByItsBytes)
{
    NSUUID::Bytes later = kBytes;
    later[15] = 0xff;
    EXPECT_EQ(fromBytes(kBytes)->compare(fromBytes(later).get()), NSOrderedAscending);
    EXPECT_EQ(fromBytes(later)->compare(fromBytes(kBytes).get()), NSOrderedDescending);
    EXPECT_EQ(fromBytes(kBytes)->compare(fromText(kText).get()), NSOrderedSame);
    EXPECT_EQ(raisedBy([] { fromBytes(kBytes)->compare(nullptr); }),
        "NSInvalidArgumentException: *** -[NSUUID compare:]: nil argument");
}

TEST(UUID, IsCodedAsSixteenBytes)
{
    const auto coder = make<UUIDTableCoder>();
    fromBytes(kBytes)->send<"encodeWithCoder:">(static_cast<NSCoder*>(coder.get()));
    const auto data = cast<NSData>(coder->values->objectForKey("NS.uuidbytes"_ns));
    ASSERT_TRUE(data);
    EXPECT_TRUE(std::ranges::equal(bytesOf(data.get()), kBytes));
}

TEST(UUID, IsDecodedFromSixteenBytesOnly)
{
    const auto coder = make<UUIDTableCoder>();
    const auto decoded = [&coder](std::size_t length) {
        coder->values->setObject_forKey(
            dataFrom({ kBytes.data(), length }).get(), "NS.uuidbytes"_ns);
        return alloc<NSUUID>()->send<"initWithCoder:", Ref<NSObject>>(
            static_cast<NSCoder*>(coder.get()));
    };
    EXPECT_EQ(textOf(decoded(16)), kText);
    EXPECT_FALSE(decoded(15));
    EXPECT_FALSE(decoded(0));
}

TEST(UUID, IsNilFromAnArchiveWithoutBytes)
{
    const auto coder = make<UUIDTableCoder>();
    const Ref<NSObject> decoded = alloc<NSUUID>()->send<"initWithCoder:", Ref<NSObject>>(
        static_cast<NSCoder*>(coder.get()));
    EXPECT_FALSE(decoded);
}
