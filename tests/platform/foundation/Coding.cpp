// SPDX-License-Identifier: Apache-2.0
#include "foundation/NSCoder.h"

#include "KeyedArchiveHosts.h"
#include "foundation/NSData.h"
#include "foundation/NSDate.h"
#include "foundation/NSError.h"
#include "foundation/NSIndexSet.h"
#include "foundation/NSMutableArray.h"
#include "foundation/NSMutableDictionary.h"
#include "foundation/NSMutableString.h"
#include "foundation/NSNull.h"
#include "foundation/NSNumber.h"
#include "foundation/NSSet.h"
#include "support/Strings.h"

// How the foundation's classes come back from an archive.

using namespace brindle;

namespace brindle {

class ArchivedList : public NSMutableArray {
    BRINDLE_OBJECT(ArchivedList, NSMutableArray)
};
template <> struct ArchivedList::Methods<struct Nothing> {
    static void table(Builder&) { }
};
BRINDLE_RECORD(ArchivedList, Nothing)

/// Keeps strings and numbers as other coders do that know only objects.
class ListlessCoder : public NSCoder {
    BRINDLE_OBJECT(ListlessCoder, NSCoder)

public:
    Ref<NSMutableDictionary> values_ = make<NSMutableDictionary>();
};
template <> struct ListlessCoder::Methods<struct Coding> {
    static void encode(ListlessCoder& self, NSObject* object, NSString* key)
    {
        self.values_->setObject_forKey(object, key);
    }
    static Ref<NSObject> decode(ListlessCoder& self, NSString* key)
    {
        return self.values_->objectForKey(key);
    }
    static bool contains(ListlessCoder& self, NSString* key)
    {
        return static_cast<bool>(self.values_->objectForKey(key));
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
BRINDLE_RECORD(ListlessCoder, Coding)

}

namespace {

/// Expects an object to come back equal and of the same class.
void expectRoundTrip(NSObject* object)
{
    const Ref<NSObject> back = roundTrip(object);
    ASSERT_TRUE(back);
    EXPECT_TRUE(back->isEqual(object)) << textOf(object) << " came back as " << textOf(back);
    EXPECT_EQ(back->classObject(), object->classObject());
}

}

TEST(Coding, Strings)
{
    expectRoundTrip(""_ns);
    expectRoundTrip("plain"_ns);
    expectRoundTrip("grün \U0001F600"_ns);
    expectRoundTrip("$null"_ns);
    expectRoundTrip(stringFrom(std::string_view("a\0b", 3)).get());
    expectRoundTrip(NSMutableString::cls().stringWithString("mutable"_ns).get());
}

TEST(Coding, StringsThatNoPropertyListCanHold)
{
    expectRoundTrip(stringFrom(std::u16string_view(u"a\xd800z")).get());
    expectRoundTrip(NSMutableString::cls()
                        .stringWithString(stringFrom(std::u16string_view(u"\xdc00")).get())
                        .get());
}

TEST(Coding, AMutableStringThatIsEqualToAnotherStaysAlone)
{
    const Ref<NSMutableString> text = NSMutableString::cls().stringWithCapacity(0);
    text->setString("a"_ns);
    const Ref<NSArray> back = roundTrip(makeArray({ text.get(), "a"_ns }));
    cast<NSMutableString>(back->objectAtIndex(0))->appendString("b"_ns);
    EXPECT_EQ(textOf(back->objectAtIndex(1)), "a");
}

TEST(Coding, NumbersKeepTheirValuesAndTheirKind)
{
    const auto& numbers = NSNumber::cls();
    for (const Ref<NSNumber>& number : { numbers.numberWithInt(0), numbers.numberWithInt(-1),
             numbers.numberWithLongLong(std::numeric_limits<long long>::min()),
             numbers.numberWithUnsignedLongLong(~0ull), numbers.numberWithDouble(0.1),
             numbers.numberWithDouble(std::numeric_limits<double>::infinity()),
             numbers.numberWithFloat(0.1f) }) {
        expectRoundTrip(number.get());
        const Ref<NSNumber> back = roundTrip(number);
        const bool wasReal = std::strchr("fd", *number->objCType()) != nullptr;
        EXPECT_EQ(std::strchr("fd", *back->objCType()) != nullptr, wasReal);
    }
    EXPECT_STREQ(roundTrip(numbers.numberWithFloat(0.1f))->objCType(), "f");
}

TEST(Coding, BooleansStayBooleans)
{
    EXPECT_EQ(
        roundTrip(NSNumber::cls().numberWithBool(true)), NSNumber::cls().numberWithBool(true));
    EXPECT_EQ(
        roundTrip(NSNumber::cls().numberWithBool(false)), NSNumber::cls().numberWithBool(false));
}

TEST(Coding, DataDatesAndNull)
{
    expectRoundTrip(NSData::cls().data().get());
    expectRoundTrip(NSData::cls().dataWithBytes_length("abc", 3).get());
    expectRoundTrip(NSMutableData::cls().dataWithBytes_length("abc", 3).get());
    expectRoundTrip(NSMutableData::cls().data().get());
    expectRoundTrip(NSDate::cls().dateWithTimeIntervalSinceReferenceDate(0).get());
    expectRoundTrip(NSDate::cls().dateWithTimeIntervalSinceReferenceDate(-1e9 + 0.125).get());
    EXPECT_EQ(roundTrip(NSNull::cls().null()), NSNull::cls().null());
}

TEST(Coding, Collections)
{
    expectRoundTrip(makeArray({}).get());
    expectRoundTrip(makeArray({ "a"_ns, NSNull::cls().null().get() }).get());
    expectRoundTrip(NSMutableArray::cls().arrayWithObject("a"_ns).get());
    expectRoundTrip(makeSet({ "b"_ns, "a"_ns }).get());
    expectRoundTrip(NSMutableSet::cls().setWithObject("a"_ns).get());
    expectRoundTrip(
        makeDictionary({ { "k"_ns, "v"_ns }, { NSNumber::cls().numberWithInt(1).get(), "w"_ns } })
            .get());
    expectRoundTrip(NSMutableDictionary::cls().dictionaryWithObject_forKey("v"_ns, "k"_ns).get());
}

TEST(Coding, MutableCollectionsCanBeChangedAgain)
{
    const Ref<NSMutableArray> array = roundTrip(make<NSMutableArray>());
    array->addObject("a"_ns);
    const Ref<NSMutableDictionary> dictionary = roundTrip(make<NSMutableDictionary>());
    dictionary->setObject_forKey("v"_ns, "k"_ns);
    const Ref<NSMutableSet> set = roundTrip(make<NSMutableSet>());
    set->addObject("a"_ns);
    EXPECT_EQ(array->count() + dictionary->count() + set->count(), 3u);
}

TEST(Coding, SubclassesOfCollectionsComeBackAsThemselves)
{
    const Ref<ArchivedList> list = make<ArchivedList>();
    list->addObject("a"_ns);
    const Ref<ArchivedList> back = roundTrip(list);
    EXPECT_TRUE(back->isMemberOfClass(ArchivedList::cls()));
    EXPECT_EQ(textOf(back->firstObject()), "a");
}

TEST(Coding, IndexSets)
{
    const Ref<NSMutableIndexSet> set = make<NSMutableIndexSet>();
    expectRoundTrip(set.get());
    set->addIndexesInRange({ 5, 3 });
    expectRoundTrip(set.get());
    set->addIndex(200);
    set->addIndexesInRange({ 100000, 70000 });
    expectRoundTrip(set.get());
    expectRoundTrip(NSIndexSet::cls().indexSetWithIndex(0).get());
}

TEST(Coding, ValuesOfGeometry)
{
    const auto& values = NSValue::cls();
    expectRoundTrip(values.valueWithPoint(NSMakePoint(1.5, -2)).get());
    expectRoundTrip(values.valueWithSize(NSMakeSize(3, 4)).get());
    expectRoundTrip(values.valueWithRect(NSMakeRect(0, 0, 1, 1)).get());
    expectRoundTrip(values.valueWithRange({ 7, 9 }).get());
}

TEST(Coding, Errors)
{
    expectRoundTrip(NSError::cls()
                        .errorWithDomain_code_userInfo("Songs"_ns, -3,
                            makeDictionary({ { NSLocalizedDescriptionKey, "too loud"_ns } }).get())
                        .get());
    expectRoundTrip(NSError::cls().errorWithDomain_code_userInfo("Songs"_ns, 0, nullptr).get());
}

TEST(Coding, OtherStructuresAreRefused)
{
    EXPECT_EQ(raisedBy([] { roundTrip(NSValue::cls().valueWithPointer(nullptr)); }),
        "NSInvalidArgumentException: *** -[NSKeyedArchiver encodeValueOfObjCType:at:]: this "
        "archiver "
        "cannot encode structs");
}

TEST(Coding, CollectionsUseOneKeyForEachObjectWhereACoderKnowsNoLists)
{
    const Ref<ListlessCoder> coder = make<ListlessCoder>();
    const Ref<NSDictionary> dictionary = makeDictionary({ { "k"_ns, "v"_ns }, { "l"_ns, "w"_ns } });
    dictionary->send<"encodeWithCoder:">(static_cast<NSCoder*>(coder.get()));
    EXPECT_EQ(utf8(coder->values_->allKeys()->componentsJoinedByString(" "_ns)),
        "NS.key.0 NS.key.1 NS.object.0 NS.object.1");
    const Ref<NSObject> back = alloc<NSDictionary>()->send<"initWithCoder:", Ref<NSObject>>(
        static_cast<NSCoder*>(coder.get()));
    EXPECT_TRUE(back->isEqual(dictionary.get()));
}

TEST(Coding, CollectionsThatHoldThemselvesAreNotComparedForEver)
{
    const Ref<NSMutableArray> a = make<NSMutableArray>();
    const Ref<NSMutableArray> b = make<NSMutableArray>();
    a->addObject(a.get());
    b->addObject(b.get());
    EXPECT_EQ(raisedBy([&] { a->isEqual(b.get()); }),
        "NSGenericException: *** Collections are nested too deeply, or too much alike, to be "
        "compared.");
    a->removeAllObjects();
    b->removeAllObjects();
}
