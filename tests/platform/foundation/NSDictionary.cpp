// SPDX-License-Identifier: Apache-2.0
#include "foundation/NSDictionary.h"

#include "foundation/NSArray.h"
#include "foundation/NSMutableDictionary.h"
#include "foundation/NSNumber.h"
#include "foundation/NSSet.h"
#include "runtime/Table.h"
#include "support/Strings.h"

using namespace brindle;

namespace brindle {

/// A key whose copies are nil.
class UncopyableKey : public NSObject {
    BRINDLE_OBJECT(UncopyableKey, NSObject)
};
template <> struct UncopyableKey::Methods<struct Copying> {
    static Ref<NSObject> copyWithZone(UncopyableKey&, void*) { return nullptr; }
    static void table(Builder& t) { t.methods({ { "copyWithZone:", imp<copyWithZone> } }); }
};
BRINDLE_RECORD(UncopyableKey, Copying)

/// A key of one hash for all, so that every search compares.
class CollidingKey : public NSObject {
    BRINDLE_OBJECT(CollidingKey, NSObject)

public:
    int value = 0;
};
template <> struct CollidingKey::Methods<struct Comparing> {
    static std::uint64_t hash(CollidingKey&) { return 7; }
    static bool isEqual(CollidingKey& self, NSObject* other)
    {
        return other->isKindOfClass(CollidingKey::cls())
            && static_cast<CollidingKey*>(other)->value == self.value;
    }
    static Ref<NSObject> copyWithZone(CollidingKey& self, void*) { return &self; }
    static void table(Builder& t)
    {
        t.methods({ { "hash", imp<hash> }, { "isEqual:", imp<isEqual> },
            { "copyWithZone:", imp<copyWithZone> } });
    }
};
BRINDLE_RECORD(CollidingKey, Comparing)

/// One entry that is nowhere kept.
class EchoDictionary : public NSDictionary {
    BRINDLE_OBJECT(EchoDictionary, NSDictionary)
};
template <> struct EchoDictionary::Methods<struct Reading> {
    static NSUInteger count(EchoDictionary&) { return 1; }
    static Ref<NSObject> objectForKey(EchoDictionary&, NSObject* key) { return key; }
    static Ref<NSEnumerator> keyEnumerator(EchoDictionary&)
    {
        return makeArray({ "echo"_ns })->objectEnumerator();
    }
    static void table(Builder& t)
    {
        t.methods({ { "count", imp<count> }, { "objectForKey:", imp<objectForKey> },
            { "keyEnumerator", imp<keyEnumerator> } });
    }
};
BRINDLE_RECORD(EchoDictionary, Reading)

}

namespace {

Ref<NSNumber> number(int value) { return NSNumber::cls().numberWithInt(value); }

Ref<NSDictionary> pairs()
{
    return makeDictionary({ { "b"_ns, "2"_ns }, { "a"_ns, "1"_ns }, { "c"_ns, "3"_ns } });
}
Ref<NSMutableDictionary> mutablePairs()
{
    return NSMutableDictionary::cls().dictionaryWithDictionary(pairs().get());
}

std::string joined(const Ref<NSArray>& array)
{
    return utf8(array->componentsJoinedByString(" "_ns));
}

}

TEST(NSDictionary, FindsByEqualKeys)
{
    const Ref<NSString> key = stringFrom(std::string_view("a"));
    EXPECT_EQ(textOf(pairs()->objectForKey(key.get())), "1");
}

TEST(NSDictionary, NilAndUnknownKeysAreNil)
{
    EXPECT_FALSE(pairs()->objectForKey(nullptr));
    EXPECT_FALSE(pairs()->objectForKey("x"_ns));
    EXPECT_FALSE(NSDictionary::cls().dictionary()->objectForKey("x"_ns));
}

TEST(NSDictionary, KeepsTheOrderOfInsertion)
{
    EXPECT_EQ(joined(pairs()->allKeys()), "b a c");
    EXPECT_EQ(joined(pairs()->allValues()), "2 1 3");
    EXPECT_EQ(joined(pairs()->keyEnumerator()->allObjects()), "b a c");
    EXPECT_EQ(joined(pairs()->objectEnumerator()->allObjects()), "2 1 3");
}

TEST(NSDictionary, ANewValueKeepsThePlaceOfItsKey)
{
    const Ref<NSMutableDictionary> dictionary = mutablePairs();
    dictionary->setObject_forKey("9"_ns, "b"_ns);
    EXPECT_EQ(joined(dictionary->allKeys()), "b a c");
    EXPECT_EQ(joined(dictionary->allValues()), "9 1 3");
}

TEST(NSDictionary, ANilObjectRaisesWithTheKey)
{
    EXPECT_EQ(raisedBy([] { mutablePairs()->setObject_forKey(nullptr, "x"_ns); }),
        "NSInvalidArgumentException: *** setObjectForKey: object cannot be nil (key: x)");
}

TEST(NSDictionary, ANilKeyRaises)
{
    EXPECT_EQ(raisedBy([] { mutablePairs()->setObject_forKey("x"_ns, nullptr); }),
        "NSInvalidArgumentException: *** setObjectForKey: key cannot be nil");
}

TEST(NSDictionary, AKeyWhoseCopyIsNilRaisesLikeANilKey)
{
    const Ref<UncopyableKey> key = make<UncopyableKey>();
    const Ref<NSMutableDictionary> dictionary = mutablePairs();
    EXPECT_EQ(raisedBy([&] { dictionary->setObject_forKey("x"_ns, key.get()); }),
        "NSInvalidArgumentException: *** setObjectForKey: key cannot be nil");
    EXPECT_EQ(dictionary->count(), 3u);
}

TEST(NSDictionary, KeysAreCopied)
{
    const Ref<NSObject> key = cast<NSObject>("k"_ns->mutableCopy());
    const Ref<NSMutableDictionary> dictionary = make<NSMutableDictionary>();
    dictionary->setObject_forKey("x"_ns, key.get());
    EXPECT_NE(dictionary->allKeys()->firstObject().get(), key.get());
}

TEST(NSDictionary, RemovesEntries)
{
    const Ref<NSMutableDictionary> dictionary = mutablePairs();
    dictionary->removeObjectForKey("a"_ns);
    dictionary->removeObjectForKey("x"_ns);
    EXPECT_EQ(joined(dictionary->allKeys()), "b c");
    dictionary->removeObjectsForKeys(makeArray({ "b"_ns }).get());
    EXPECT_EQ(dictionary->count(), 1u);
    dictionary->removeAllObjects();
    EXPECT_EQ(dictionary->count(), 0u);
}

TEST(NSDictionary, RemovingANilKeyRaises)
{
    EXPECT_EQ(raisedBy([] { mutablePairs()->removeObjectForKey(nullptr); }),
        "NSInvalidArgumentException: *** -[NSMutableDictionary removeObjectForKey:]: key cannot be "
        "nil");
}

TEST(NSDictionary, ASubscriptWithNilRemoves)
{
    const Ref<NSMutableDictionary> dictionary = mutablePairs();
    dictionary->setObject_forKeyedSubscript(nullptr, "a"_ns);
    EXPECT_EQ(joined(dictionary->allKeys()), "b c");
}

TEST(NSDictionary, AddedEntriesReplaceTheOwnOnes)
{
    const Ref<NSMutableDictionary> dictionary = mutablePairs();
    dictionary->addEntriesFromDictionary(
        makeDictionary({ { "a"_ns, "9"_ns }, { "d"_ns, "4"_ns } }).get());
    EXPECT_EQ(joined(dictionary->allKeys()), "b a c d");
    EXPECT_EQ(joined(dictionary->allValues()), "2 9 3 4");
}

TEST(NSDictionary, ObjectsAndKeysComeInPairs)
{
    EXPECT_EQ(joined(NSDictionary::cls()
                         .dictionaryWithObjectsAndKeys("1"_ns, "a"_ns, "2"_ns, "b"_ns, nullptr)
                         ->allKeys()),
        "a b");
}

TEST(NSDictionary, UnequalNumbersOfObjectsAndKeysRaise)
{
    EXPECT_EQ(raisedBy([] {
        NSDictionary::cls().dictionaryWithObjects_forKeys(
            makeArray({ "1"_ns }).get(), makeArray({ "a"_ns, "b"_ns }).get());
    }),
        "NSInvalidArgumentException: *** -[NSDictionary initWithObjects:forKeys:]: count of "
        "objects (1) differs "
        "from count of keys (2)");
}

TEST(NSDictionary, TheLastOfEqualKeysWins)
{
    const Ref<NSDictionary> dictionary = makeDictionary({ { "a"_ns, "1"_ns }, { "a"_ns, "2"_ns } });
    EXPECT_EQ(dictionary->count(), 1u);
    EXPECT_EQ(textOf(dictionary->objectForKey("a"_ns)), "2");
}

TEST(NSDictionary, EqualEntriesAreEqualInAnyOrder)
{
    const Ref<NSDictionary> other
        = makeDictionary({ { "a"_ns, "1"_ns }, { "b"_ns, "2"_ns }, { "c"_ns, "3"_ns } });
    EXPECT_TRUE(pairs()->isEqual(other.get()));
    EXPECT_TRUE(pairs()->isEqualToDictionary(mutablePairs().get()));
}

TEST(NSDictionary, OtherValuesKeysOrCountsDiffer)
{
    const Ref<NSMutableDictionary> other = mutablePairs();
    other->setObject_forKey("9"_ns, "a"_ns);
    EXPECT_FALSE(pairs()->isEqualToDictionary(other.get()));
    other->removeObjectForKey("a"_ns);
    EXPECT_FALSE(pairs()->isEqualToDictionary(other.get()));
    other->setObject_forKey("1"_ns, "z"_ns);
    EXPECT_FALSE(pairs()->isEqualToDictionary(other.get()));
    EXPECT_FALSE(pairs()->isEqualToDictionary(nullptr));
}

TEST(NSDictionary, ACopyIsImmutable)
{
    const Ref<NSMutableDictionary> dictionary = mutablePairs();
    const Ref<NSObject> copy = dictionary->copy();
    dictionary->removeAllObjects();
    EXPECT_TRUE(copy->isMemberOfClass(NSDictionary::cls()));
    EXPECT_EQ(cast<NSDictionary>(copy)->count(), 3u);
    EXPECT_EQ(copy->copy().get(), copy.get());
}

TEST(NSDictionary, AMutableCopyIsApart)
{
    const Ref<NSDictionary> dictionary = pairs();
    cast<NSMutableDictionary>(dictionary->mutableCopy())->removeAllObjects();
    EXPECT_EQ(dictionary->count(), 3u);
}

TEST(NSDictionary, DescribesItselfWithSortedKeys)
{
    EXPECT_EQ(utf8(pairs()->description()), "{\n    a = 1;\n    b = 2;\n    c = 3;\n}");
}

TEST(NSDictionary, DescribesNothingAsEmptyBraces)
{
    EXPECT_EQ(utf8(NSDictionary::cls().dictionary()->description()), "{\n}");
}

TEST(NSDictionary, QuotesKeysAndValuesThatAreNotAlphanumeric)
{
    const Ref<NSDictionary> dictionary = makeDictionary({ { "a key"_ns, "1.5"_ns } });
    EXPECT_EQ(utf8(dictionary->description()), "{\n    \"a key\" = \"1.5\";\n}");
}

TEST(NSDictionary, IndentsWhatIsInside)
{
    const Ref<NSDictionary> inner = makeDictionary({ { "x"_ns, "1"_ns } });
    const Ref<NSDictionary> outer
        = makeDictionary({ { "d"_ns, inner.get() }, { "a"_ns, makeArray({ "y"_ns }).get() } });
    EXPECT_EQ(utf8(outer->description()),
        "{\n    a = (\n        y\n    );\n    d = {\n        x = 1;\n    };\n}");
}

TEST(NSDictionary, KeysThatAreNotAllStringsStayInOrder)
{
    const Ref<NSDictionary> dictionary
        = makeDictionary({ { number(2).get(), "b"_ns }, { number(1).get(), "a"_ns } });
    EXPECT_EQ(utf8(dictionary->description()), "{\n    2 = b;\n    1 = a;\n}");
}

TEST(NSDictionary, ALoopVisitsTheKeys)
{
    std::string text;
    const Ref<NSDictionary> dictionary = pairs();
    for (NSObject* key : *dictionary)
        text += textOf(key);
    EXPECT_EQ(text, "bac");
}

TEST(NSDictionary, AChangeDuringALoopRaises)
{
    const Ref<NSMutableDictionary> dictionary = mutablePairs();
    const std::string text = raisedBy([&] {
        for (NSObject* key : *dictionary)
            dictionary->setObject_forKey("x"_ns, key);
    });
    EXPECT_NE(text.find("NSGenericException: *** Collection <NSMutableDictionary: 0x"),
        std::string::npos);
}

TEST(NSDictionary, AChangeRaisesFromTheEnumerator)
{
    const Ref<NSMutableDictionary> dictionary = mutablePairs();
    const Ref<NSEnumerator> keys = dictionary->keyEnumerator();
    keys->nextObject();
    dictionary->removeObjectForKey("c"_ns);
    EXPECT_NE(raisedBy([&] { keys->nextObject(); }), "");
}

TEST(NSDictionary, ABlockVisitsEntriesAndStops)
{
    std::string text;
    pairs()->enumerateKeysAndObjectsUsingBlock([&](NSObject* key, NSObject* value, bool* stop) {
        text += textOf(key) + textOf(value);
        *stop = key->isEqual("a"_ns);
    });
    EXPECT_EQ(text, "b2a1");
}

TEST(NSDictionary, ChoosesKeysByABlock)
{
    const Ref<NSSet> keys = pairs()->keysOfEntriesPassingTest(
        [](NSObject*, NSObject* value, bool*) { return !value->isEqual("1"_ns); });
    EXPECT_EQ(joined(keys->allObjects()), "b c");
}

TEST(NSDictionary, SortsKeysByTheirValues)
{
    EXPECT_EQ(joined(pairs()->keysSortedByValueUsingSelector(selector<"compare:">)), "a b c");
}

TEST(NSDictionary, FindsTheKeysOfAValue)
{
    const Ref<NSDictionary> dictionary
        = makeDictionary({ { "a"_ns, "1"_ns }, { "b"_ns, "2"_ns }, { "c"_ns, "1"_ns } });
    EXPECT_EQ(joined(dictionary->allKeysForObject("1"_ns)), "a c");
}

TEST(NSDictionary, ReadsSeveralKeysWithAMarkerForTheMissing)
{
    EXPECT_EQ(
        joined(pairs()->objectsForKeys_notFoundMarker(makeArray({ "c"_ns, "x"_ns }).get(), "-"_ns)),
        "3 -");
}

TEST(NSDictionary, KeyValueAccessReadsAndWritesEntries)
{
    const Ref<NSMutableDictionary> dictionary = mutablePairs();
    dictionary->send<"setValue:forKey:">("9"_ns, "a"_ns);
    EXPECT_EQ(textOf(dictionary->send<"valueForKey:", Ref<NSObject>>("a"_ns)), "9");
}

TEST(NSDictionary, KeysOfOneHashAreToldApart)
{
    const Ref<NSMutableDictionary> dictionary = make<NSMutableDictionary>();
    std::vector<Ref<CollidingKey>> keys;
    for (int i = 0; i < 40; ++i) {
        keys.push_back(make<CollidingKey>());
        keys.back()->value = i;
        dictionary->setObject_forKey(number(i).get(), keys.back().get());
    }
    for (int i = 0; i < 40; i += 2)
        dictionary->removeObjectForKey(keys[static_cast<std::size_t>(i)].get());
    for (int i = 0; i < 40; ++i) {
        const Ref<NSObject> found
            = dictionary->objectForKey(keys[static_cast<std::size_t>(i)].get());
        ASSERT_EQ(found ? cast<NSNumber>(found)->intValue() : -1, i % 2 ? i : -1);
    }
}

TEST(NSDictionary, HoldsManyEntriesThroughManyChanges)
{
    const Ref<NSMutableDictionary> dictionary = make<NSMutableDictionary>();
    for (int i = 0; i < 3000; ++i)
        dictionary->setObject_forKey(number(-i).get(), number(i).get());
    for (int i = 0; i < 3000; i += 2)
        dictionary->removeObjectForKey(number(i).get());
    for (int i = 0; i < 3000; ++i)
        ASSERT_EQ(dictionary->objectForKey(number(i).get()) != nullptr, i % 2 == 1) << i;
}

TEST(NSDictionary, ASubclassNeedsOnlyItsThreeOperations)
{
    const Ref<NSDictionary> dictionary = make<EchoDictionary>();
    EXPECT_EQ(utf8(dictionary->description()), "{\n    echo = echo;\n}");
    EXPECT_EQ(joined(dictionary->allValues()), "echo");
    EXPECT_TRUE(makeDictionary({ { "echo"_ns, "echo"_ns } })->isEqual(dictionary.get()));
}

TEST(NSDictionary, OnlyDictionariesAnswerObjectForKey)
{
    EXPECT_TRUE(pairs()->respondsToSelector(selector<"objectForKey:">));
    EXPECT_FALSE(makeArray({})->respondsToSelector(selector<"objectForKey:">));
    EXPECT_FALSE(makeSet({})->respondsToSelector(selector<"objectForKey:">));
}
