// SPDX-License-Identifier: Apache-2.0
#include "foundation/NSMutableArray.h"
#include "foundation/NSMutableDictionary.h"
#include "foundation/NSNull.h"
#include "foundation/NSNumber.h"
#include "foundation/NSObject+KeyValueCoding.h"
#include "foundation/NSSet.h"
#include "runtime/Runtime.h"
#include "support/Strings.h"

namespace brindle {

/// Stands in a tree: a name, a size, what is inside.
class PathHost : public NSObject {
    BRINDLE_OBJECT(PathHost, NSObject)

public:
    Ref<NSString> name_;
    double size_ = 0;
    Ref<PathHost> inner_;
    Ref<NSArray> rooms_;
};

/// Changes its array by operations of its own.
class RoomyHost : public PathHost {
    BRINDLE_OBJECT(RoomyHost, PathHost)

public:
    std::string log_;
};

template <> struct PathHost::Methods<struct Paths> {
    static void table(Builder& t)
    {
        t.properties({
            property<&PathHost::name_>("name", copied, nonatomic),
            property<&PathHost::size_>("size", nonatomic),
            property<&PathHost::inner_>("inner", nonatomic),
            property<&PathHost::rooms_>("rooms", nonatomic),
        });
    }
};
BRINDLE_RECORD(PathHost, Paths)

template <> struct RoomyHost::Methods<struct Paths> {
    static void insert(RoomyHost& self, NSObject* room, NSUInteger index)
    {
        self.log_ += "insert " + textOf(room) + " at " + std::to_string(index) + ", ";
    }
    static void remove(RoomyHost& self, NSUInteger index)
    {
        self.log_ += "remove " + std::to_string(index) + ", ";
    }
    static void table(Builder& t)
    {
        t.methods({
            { "insertObject:inRoomsAtIndex:", imp<insert> },
            { "removeObjectFromRoomsAtIndex:", imp<remove> },
        });
    }
};
BRINDLE_RECORD(RoomyHost, Paths)

namespace {

    Ref<PathHost> room(NSString* name, double size)
    {
        const auto made = make<PathHost>();
        made->name_ = name;
        made->size_ = size;
        return made;
    }

    /// A house with three rooms, two of one name.
    Ref<PathHost> house()
    {
        const auto made = room("house"_ns, 100);
        made->inner_ = room("hall"_ns, 10);
        made->rooms_ = makeArray(
            { room("bath"_ns, 4).get(), room("bed"_ns, 16).get(), room("bath"_ns, 7).get() });
        return made;
    }

    std::string at(NSString* path) { return textOf(valueForKeyPath(house(), path)); }
    std::string listAt(NSString* path)
    {
        std::string text;
        for (NSObject* item : each<NSObject>(cast<NSArray>(valueForKeyPath(house(), path))))
            text += textOf(item) + " ";
        return text;
    }

}

TEST(KeyPaths, OneKeyIsAPath) { EXPECT_EQ(at("name"_ns), "house"); }
TEST(KeyPaths, PointsLeadOn) { EXPECT_EQ(at("inner.name"_ns), "hall"); }
TEST(KeyPaths, NilOnTheWayAnswersNil) { EXPECT_EQ(at("inner.inner.inner.name"_ns), "(nil)"); }
TEST(KeyPaths, UnknownKeyOnTheWayIsRefused)
{
    EXPECT_THROW(valueForKeyPath(house(), "inner.nobody.name"_ns), Exception);
}
TEST(KeyPaths, LastKeyIsWritten)
{
    const auto object = house();
    setValue_forKeyPath(object, "den"_ns, "inner.name"_ns);
    EXPECT_EQ(utf8(object->inner_->name_), "den");
}
TEST(KeyPaths, WritingBehindNilDoesNothing)
{
    const auto object = house();
    setValue_forKeyPath(object, "den"_ns, "inner.inner.name"_ns);
    EXPECT_FALSE(object->inner_->inner_);
}
TEST(KeyPaths, LongPathTakesNoStack)
{
    const auto object = room("ring"_ns, 1);
    object->inner_ = object;
    std::string path;
    for (int i = 0; i < 100'000; ++i)
        path += "inner.";
    EXPECT_EQ(textOf(valueForKeyPath(object, stringFrom(path + "name").get())), "ring");
    object->inner_ = nullptr;
}
TEST(KeyPaths, DictionariesLeadOn)
{
    const auto inside = NSDictionary::cls().dictionaryWithObject_forKey("deep"_ns, "b"_ns);
    const auto outside = NSDictionary::cls().dictionaryWithObject_forKey(inside.get(), "a"_ns);
    EXPECT_EQ(textOf(valueForKeyPath(outside, "a.b"_ns)), "deep");
    EXPECT_EQ(textOf(valueForKeyPath(outside, "a.c"_ns)), "(nil)");
    EXPECT_EQ(textOf(valueForKeyPath(outside, "a.@count"_ns)), "1");
}

TEST(ArrayKeys, AnswerForEachElement) { EXPECT_EQ(listAt("rooms.name"_ns), "bath bed bath "); }
TEST(ArrayKeys, NullStandsForNil)
{
    const auto values = cast<NSArray>(valueForKeyPath(house(), "rooms.inner"_ns));
    EXPECT_EQ(values->objectAtIndex(0), NSNull::cls().null());
}
TEST(ArrayKeys, AreWrittenToEachElement)
{
    const auto object = house();
    setValue_forKeyPath(object, "attic"_ns, "rooms.name"_ns);
    EXPECT_EQ(textOf(valueForKeyPath(object, "rooms.@distinctUnionOfObjects.name"_ns)),
        "(\n    attic\n)");
}
TEST(ArrayKeys, LongPathsTakeNoStack)
{
    const Ref<NSArray> words = makeArray({ "word"_ns });
    std::string path = "description";
    for (int i = 0; i < 100'000; ++i)
        path += ".description";
    EXPECT_TRUE(valueForKeyPath(words, stringFrom(path).get())->isEqual(words.get()));
    EXPECT_EQ(textOf(valueForKeyPath(words, stringFrom(path + ".@count").get())), "1");
}
TEST(ArrayKeys, OfAnArrayThatHoldsItselfAreRefused)
{
    const auto ring = NSMutableArray::cls().array();
    ring->addObject(ring.get());
    EXPECT_THROW(valueForKey(ring, "name"_ns), Exception);
    EXPECT_THROW(setValue_forKey(ring, "x"_ns, "name"_ns), Exception);
    EXPECT_THROW(valueForKeyPath(ring, "@unionOfObjects.name"_ns), Exception);
    ring->removeAllObjects();
    EXPECT_EQ(textOf(valueForKey(ring, "name"_ns)), "(\n)");
}
TEST(SetKeys, AnswerForEachElementWithoutNil)
{
    const auto set = NSSet::cls().setWithArray(house()->rooms_.get());
    EXPECT_EQ(cast<NSSet>(valueForKey(set, "name"_ns))->count(), 2u);
    EXPECT_EQ(cast<NSSet>(valueForKey(set, "inner"_ns))->count(), 0u);
    EXPECT_EQ(textOf(valueForKeyPath(set, "@sum.size"_ns)), "27");
}

TEST(KeyOperators, CountElements) { EXPECT_EQ(at("rooms.@count"_ns), "3"); }
TEST(KeyOperators, CountAsAKey)
{
    EXPECT_EQ(textOf(valueForKey(house()->rooms_, "@count"_ns)), "3");
}
TEST(KeyOperators, Sum) { EXPECT_EQ(at("rooms.@sum.size"_ns), "27"); }
TEST(KeyOperators, Average) { EXPECT_EQ(at("rooms.@avg.size"_ns), "9"); }
TEST(KeyOperators, Smallest) { EXPECT_EQ(at("rooms.@min.size"_ns), "4"); }
TEST(KeyOperators, Largest) { EXPECT_EQ(at("rooms.@max.size"_ns), "16"); }
TEST(KeyOperators, LargestText) { EXPECT_EQ(at("rooms.@max.name"_ns), "bed"); }
TEST(KeyOperators, NothingSumsToZero)
{
    const auto none = NSArray::cls().array();
    EXPECT_EQ(textOf(valueForKeyPath(none, "@sum.size"_ns)), "0");
    EXPECT_EQ(textOf(valueForKeyPath(none, "@avg.size"_ns)), "0");
}
TEST(KeyOperators, NothingHasNoSmallest)
{
    EXPECT_FALSE(valueForKeyPath(NSArray::cls().array(), "@min.size"_ns));
}
TEST(KeyOperators, UnionKeepsEqualOnes)
{
    EXPECT_EQ(listAt("rooms.@unionOfObjects.name"_ns), "bath bed bath ");
}
TEST(KeyOperators, UnionLeavesNilOut) { EXPECT_EQ(listAt("rooms.@unionOfObjects.inner"_ns), ""); }
TEST(KeyOperators, DistinctUnionDropsEqualOnes)
{
    EXPECT_EQ(listAt("rooms.@distinctUnionOfObjects.name"_ns), "bath bed ");
}
TEST(KeyOperators, UnionOfArraysIsFlat)
{
    const auto list = makeArray({ house().get(), house().get() });
    const auto names = valueForKeyPath(list, "@unionOfArrays.rooms.name"_ns);
    EXPECT_EQ(cast<NSArray>(names)->count(), 6u);
    const auto distinct = valueForKeyPath(list, "@distinctUnionOfArrays.rooms.name"_ns);
    EXPECT_EQ(cast<NSArray>(distinct)->count(), 2u);
}
TEST(KeyOperators, UnionOfSetsIsASet)
{
    const auto one = NSSet::cls().setWithObjects("a"_ns, "b"_ns);
    const auto two = NSSet::cls().setWithObjects("b"_ns, "c"_ns);
    const auto sets = NSSet::cls().setWithObjects(one.get(), two.get());
    EXPECT_EQ(cast<NSSet>(valueForKeyPath(sets, "@distinctUnionOfSets"_ns))->count(), 3u);
}
TEST(KeyOperators, UnknownOneIsRefused)
{
    const std::string text = raisedBy([] { valueForKeyPath(house(), "rooms.@product.size"_ns); });
    EXPECT_TRUE(
        text.ends_with("valueForKeyPath:]: this class does not implement the product operation."))
        << text;
}

TEST(KeyValueArrays, ReadWhatTheKeyHoldsNow)
{
    const auto object = house();
    const auto rooms = mutableArrayValueForKey(object, "rooms"_ns);
    EXPECT_EQ(rooms->count(), 3u);
    object->rooms_ = nullptr;
    EXPECT_EQ(rooms->count(), 0u);
    EXPECT_THROW(rooms->objectAtIndex(0), Exception);
}
TEST(KeyValueArrays, ChangesReachTheObject)
{
    const auto object = house();
    const auto rooms = mutableArrayValueForKey(object, "rooms"_ns);
    rooms->addObject(room("loft"_ns, 1).get());
    rooms->removeObjectAtIndex(0);
    rooms->replaceObjectAtIndex_withObject(0, room("den"_ns, 2).get());
    EXPECT_EQ(
        textOf(valueForKeyPath(object, "rooms.name"_ns)), "(\n    den,\n    bath,\n    loft\n)");
}
TEST(KeyValueArrays, BeginWithNothingWhereTheKeyHoldsNil)
{
    const auto object = make<PathHost>();
    mutableArrayValueForKey(object, "rooms"_ns)->addObject("x"_ns);
    EXPECT_EQ(object->rooms_->count(), 1u);
}
TEST(KeyValueArrays, UseTheObjectsOwnOperations)
{
    const auto object = make<RoomyHost>();
    const auto rooms = mutableArrayValueForKey(object, "rooms"_ns);
    rooms->addObject("x"_ns);
    rooms->replaceObjectAtIndex_withObject(0, "y"_ns);
    EXPECT_EQ(object->log_, "insert x at 0, remove 0, insert y at 0, ");
}

}
