// SPDX-License-Identifier: Apache-2.0
#include "introspection/NSObject+UniqueObjects.h"

#include "CodingHosts.h"
#include "foundation/NSKeyedArchiver.h"
#include "foundation/NSKeyedUnarchiver.h"
#include "foundation/NSMutableArray.h"
#include "introspection/NSArray+UniqueObjects.h"
#include "introspection/NSCoder+UniqueObjects.h"
#include "introspection/NSObject+AutoCoding.h"
#include "introspection/NSUUID+UniqueObjects.h"
#include "introspection/NSUserDefaults+Archive.h"
#include "runtime/Table.h"
#include "support/DefaultsFolder.h"
#include "support/Figures.h"
#include "support/Strings.h"
#include "support/VirtualClock.h"

namespace brindle {

class UniquePet : public NSObject {
    BRINDLE_OBJECT(UniquePet, NSObject)

public:
    Ref<NSString> name_;
};
template <> struct UniquePet::Methods<struct Declared> {
    static void table(Builder& t)
    {
        t.conformsTo({ "UniqueObjects" });
        t.properties({ property<&UniquePet::name_>("name", copied, nonatomic) });
    }
};
BRINDLE_RECORD(UniquePet, Declared)

/// Refers to others: to one of its own class, to one of another, to several.
class UniquePerson : public NSObject {
    BRINDLE_OBJECT(UniquePerson, NSObject)

public:
    Ref<NSString> name_;
    Ref<UniquePerson> best_;
    Ref<NSArray> friends_;
    Ref<UniquePet> pet_;
    Ref<NSMutableArray> others_;
    int loaded_ = 0;
};
template <> struct UniquePerson::Methods<struct Declared> {
    static Ref<NSArray> UUIDProperties(Class&)
    {
        return NSArray::cls().arrayWithObjects("best"_ns, "friends"_ns, "pet"_ns, "others"_ns);
    }
    static void encode(UniquePerson& self, NSCoder* coder)
    {
        super<UniquePerson, "encodeWithCoder:">(self, coder);
        encodeToUUIDsForPropertiesOf(coder, &self);
    }
    static Ref<NSObject> decode(UniquePerson& self, NSCoder* coder)
    {
        super<UniquePerson, "initWithCoder:", Ref<NSObject>>(self, coder);
        decodeUUIDsForPropertiesOf(coder, &self);
        return &self;
    }
    static void loaded(UniquePerson& self) { ++self.loaded_; }
    static void table(Builder& t)
    {
        t.conformsTo({ "UniqueObjects" });
        t.properties({
            property<&UniquePerson::name_>("name", copied, nonatomic),
            property<&UniquePerson::best_>("best", nonatomic),
            property<&UniquePerson::friends_>("friends", nonatomic),
            property<&UniquePerson::pet_>("pet", nonatomic),
            property<&UniquePerson::others_>("others", nonatomic),
        });
        t.classMethods({ { "UUIDProperties", imp<UUIDProperties> } });
        t.methods({
            { "encodeWithCoder:", imp<encode> },
            { "initWithCoder:", imp<decode> },
            { "UUIDPropertiesLoadedForAllClasses", imp<loaded> },
        });
    }
};
BRINDLE_RECORD(UniquePerson, Declared)

class UniqueStudent : public UniquePerson {
    BRINDLE_OBJECT(UniqueStudent, UniquePerson)
};
template <> struct UniqueStudent::Methods<struct Declared> {
    static void table(Builder&) { }
};
BRINDLE_RECORD(UniqueStudent, Declared)

class UniqueForeigner : public UniquePerson {
    BRINDLE_OBJECT(UniqueForeigner, UniquePerson)
};
template <> struct UniqueForeigner::Methods<struct Declared> {
    static void table(Builder&) { }
};
BRINDLE_RECORD(UniqueForeigner, Declared)

/// Nobody of this class ever gets an identity.
class NeverUnique : public NSObject {
    BRINDLE_OBJECT(NeverUnique, NSObject)
};
template <> struct NeverUnique::Methods<struct Declared> {
    static void table(Builder&) { }
};
BRINDLE_RECORD(NeverUnique, Declared)

namespace {

    Ref<UniquePerson> person(NSString* name = "somebody"_ns)
    {
        const auto made = make<UniquePerson>();
        made->name_ = name;
        UUID(made);
        return made;
    }
    Ref<UniquePet> pet()
    {
        const auto made = make<UniquePet>();
        UUID(made);
        return made;
    }
    /// Answers what an archive of the object makes, as another process would see it before it knows anything of it.
    template <class T> Ref<T> reread(const Ref<T>& object)
    {
        const Ref<NSData> data = NSKeyedArchiver::cls().archivedDataWithRootObject(object.get());
        return cast<T>(NSKeyedUnarchiver::cls().unarchiveObjectWithData(data.get()));
    }
    /// Answers a coder that holds the properties of an object as identities.
    Ref<DictionaryCoder> coderOf(const Ref<UniquePerson>& object)
    {
        auto coder = make<DictionaryCoder>();
        encodeToUUIDsForPropertiesOf(coder, object.get());
        return coder;
    }
    NSUInteger registered(Class* cls) { return maybe(uniqueObjects(cls))->count(); }

}

TEST(UniqueObjects, AnIdentityStays)
{
    const auto object = make<UniquePet>();
    const auto identity = UUID(object);
    EXPECT_TRUE(UUID(object)->isEqual(identity.get()));
    EXPECT_EQ(uniqueObject(identity), object);
}

TEST(UniqueObjects, AnIdentityCanBeGiven)
{
    const auto object = make<UniquePet>();
    const auto identity = NSUUID::cls().UUID();
    setUUID(object, identity.get());
    EXPECT_TRUE(UUID(object)->isEqual(identity.get()));
    EXPECT_EQ(uniqueObject(identity), object);
    EXPECT_FALSE(realObject(object));
}

TEST(UniqueObjects, NoIdentityIsRefusedAndRegistersNothing)
{
    const auto object = make<NeverUnique>();
    EXPECT_EQ(
        raisedBy([&] { setUUID(object, nullptr); }).substr(0, 28), "NSInvalidArgumentException: ");
    EXPECT_FALSE(uniqueObjects(NeverUnique::cls()));
}

TEST(UniqueObjects, ARegisteredObjectIsKept)
{
    WeakRef<UniquePet> weak;
    {
        const auto object = pet();
        weak = object.get();
    }
    EXPECT_TRUE(weak.get());
}

TEST(UniqueObjects, ASecondCopyPointsToTheFirst)
{
    const auto first = pet();
    const auto before = registered(UniquePet::cls());
    const auto second = make<UniquePet>();
    setUUID(second, UUID(first).get());
    EXPECT_EQ(realObject(second), first);
    EXPECT_FALSE(realObject(first));
    EXPECT_EQ(registered(UniquePet::cls()), before);
    EXPECT_EQ(uniqueObject(UUID(first)), first);
}

TEST(UniqueObjects, ADecodedSecondCopyPointsToTheFirst)
{
    const auto first = pet();
    const auto before = registered(UniquePet::cls());
    const auto second = reread(first);
    ASSERT_NE(second, first);
    EXPECT_EQ(realObject(second), first);
    EXPECT_EQ(registered(UniquePet::cls()), before);
}

TEST(UniqueObjects, ASecondCopyGetsAnIdentityOfItsOwnWhenAsked)
{
    const auto first = pet();
    const auto second = make<UniquePet>();
    setUUID(second, UUID(first).get());
    EXPECT_FALSE(UUID(second)->isEqual(UUID(first).get()));
}

TEST(UniqueObjects, OneIdentityMayNameObjectsOfTwoClasses)
{
    const auto one = pet();
    const auto other = make<UniqueStudent>();
    setUUID(other, UUID(one).get());
    EXPECT_FALSE(realObject(other));
    EXPECT_EQ(uniqueObjectOfClass(UUID(one), UniquePet::cls()), one);
    EXPECT_EQ(uniqueObjectOfClass(UUID(one), UniqueStudent::cls()), other);
}

TEST(UniqueObjects, AreFoundByExactlyTheirClass)
{
    const auto student = make<UniqueStudent>();
    EXPECT_FALSE(uniqueObjectOfClass(UUID(student), UniquePerson::cls()));
    EXPECT_EQ(uniqueObjectOfClass(UUID(student), UniqueStudent::cls()), student);
    EXPECT_FALSE(uniqueObjectOfClass(UUID(student), nullptr));
}

TEST(UniqueObjects, AnUnknownIdentityFindsNothing)
{
    EXPECT_FALSE(uniqueObject(NSUUID::cls().UUID()));
    EXPECT_FALSE(uniqueObjectOfClass(NSUUID::cls().UUID(), UniquePet::cls()));
}

TEST(UniqueObjects, AClassThatNeverRegisteredHasNone)
{
    EXPECT_FALSE(uniqueObjects(NeverUnique::cls()));
}

TEST(UniqueObjects, AClassKnowsItsObjects)
{
    const auto object = pet();
    EXPECT_TRUE(uniqueObjects(UniquePet::cls())->containsObject(object.get()));
    EXPECT_FALSE(maybe(uniqueObjects(UniquePerson::cls()))->containsObject(object.get()));
}

TEST(UniqueObjects, APropertyIsWhatAnswersToItsName)
{
    EXPECT_TRUE(hasProperty(person(), "name"_ns));
    EXPECT_FALSE(hasProperty(person(), "absent"_ns));
    EXPECT_FALSE(hasProperty(person(), nullptr));
}

TEST(UniqueObjects, TheRootListsNoReferences) { EXPECT_FALSE(UUIDProperties(NSObject::cls())); }

TEST(UniqueObjects, SetupDoesNothing) { setup(make<NSObject>()); }

TEST(UniqueObjects, RealObjectCanBeSet)
{
    const auto object = make<NSObject>();
    const auto other = make<NSObject>();
    setRealObject(object, other.get());
    EXPECT_EQ(realObject(object), other);
    setRealObject(object, nullptr);
    EXPECT_FALSE(realObject(object));
}

TEST(UniqueObjects, ListsGiveTheirIdentitiesInOrder)
{
    const auto one = make<UniquePet>();
    const auto two = make<UniquePet>();
    const auto all = UUIDs(NSArray::cls().arrayWithObjects(one.get(), two.get()));
    EXPECT_TRUE(all->objectAtIndex(0)->isEqual(UUID(one).get()));
    EXPECT_TRUE(all->objectAtIndex(1)->isEqual(UUID(two).get()));
}

TEST(UniqueObjects, ListsOfIdentitiesGiveTheObjectsInOrder)
{
    const auto one = pet();
    const auto two = pet();
    const auto all
        = uniqueObjectsFromUUIDs(NSArray::cls().arrayWithObjects(UUID(two).get(), UUID(one).get()));
    ASSERT_EQ(all->count(), 2U);
    EXPECT_EQ(all->objectAtIndex(0), two);
    EXPECT_EQ(all->objectAtIndex(1), one);
}

TEST(UniqueObjects, UnknownIdentitiesInAListAreSkipped)
{
    const auto one = pet();
    const auto all = uniqueObjectsFromUUIDs(NSArray::cls().arrayWithObjects(
        NSUUID::cls().UUID().get(), UUID(one).get(), NSUUID::cls().UUID().get()));
    ASSERT_EQ(all->count(), 1U);
    EXPECT_EQ(all->firstObject(), one);
}

TEST(UniqueObjects, AListOfIdentitiesGivesObjectsOfTheClassOfTheFirst)
{
    const auto one = pet();
    const auto stranger = person();
    const auto two = pet();
    const auto all = uniqueObjectsFromUUIDs(NSArray::cls().arrayWithObjects(
        NSUUID::cls().UUID().get(), UUID(one).get(), UUID(stranger).get(), UUID(two).get()));
    ASSERT_EQ(all->count(), 2U);
    EXPECT_EQ(all->objectAtIndex(0), one);
    EXPECT_EQ(all->objectAtIndex(1), two);
}

TEST(UniqueObjects, AListOfOtherThingsGivesNothing)
{
    const auto one = pet();
    const auto all = uniqueObjectsFromUUIDs(NSArray::cls().arrayWithObjects(
        "text"_ns, UUID(one).get(), "more"_ns, UUID(one)->UUIDString().get()));
    EXPECT_EQ(all->count(), 1U);
}

TEST(UniqueObjects, AnElementIsFoundByItsIdentity)
{
    const auto one = pet();
    const auto two = pet();
    const auto list = NSArray::cls().arrayWithObjects(one.get(), two.get());
    EXPECT_EQ(objectWithUUID(list, UUID(two).get()), two);
    EXPECT_FALSE(objectWithUUID(list, NSUUID::cls().UUID().get()));
    EXPECT_FALSE(objectWithUUID(list, nullptr));
}

TEST(UniqueObjects, AnElementIsFoundByTheValueOfAProperty)
{
    const auto anna = person("Anna"_ns);
    const auto berta = person("Berta"_ns);
    const auto list = NSArray::cls().arrayWithObjects("no person"_ns, anna.get(), berta.get());
    EXPECT_EQ(objectWithUUID_inProperty(list, "Berta"_ns, "name"_ns), berta);
    EXPECT_FALSE(objectWithUUID_inProperty(list, "Clara"_ns, "name"_ns));
    EXPECT_FALSE(objectWithUUID_inProperty(list, nullptr, "best"_ns));
}

TEST(UniqueObjectsCoder, WritesTheIdentityOfAnObject)
{
    const auto coder = make<DictionaryCoder>();
    const auto one = pet();
    encodeUUIDOfObject_forKey(coder, one.get(), "key"_ns);
    EXPECT_TRUE(decodeUUIDForKey(coder, "key"_ns)->isEqual(UUID(one).get()));
    EXPECT_EQ(uniqueObjectForKey(coder, "key"_ns), one);
}

TEST(UniqueObjectsCoder, WritesTheIdentitiesOfObjects)
{
    const auto coder = make<DictionaryCoder>();
    const auto one = pet();
    encodeUUIDsFromObjects_forKey(coder, NSArray::cls().arrayWithObject(one.get()).get(), "key"_ns);
    EXPECT_TRUE(UUIDsForKey(coder, "key"_ns)->firstObject()->isEqual(UUID(one).get()));
    EXPECT_EQ(uniqueObjectsForKey(coder, "key"_ns)->firstObject(), one);
}

TEST(UniqueObjectsCoder, AnswersNothingForAnAbsentKey)
{
    const auto coder = make<DictionaryCoder>();
    EXPECT_FALSE(decodeUUIDForKey(coder, "key"_ns));
    EXPECT_FALSE(UUIDsForKey(coder, "key"_ns));
    EXPECT_FALSE(uniqueObjectForKey(coder, "key"_ns));
    EXPECT_FALSE(uniqueObjectsForKey(coder, "key"_ns));
}

TEST(UniqueObjectsCoder, FindsNothingBehindOtherValues)
{
    const auto coder = make<DictionaryCoder>();
    coder->encodeObject_forKey("text"_ns, "key"_ns);
    EXPECT_FALSE(uniqueObjectForKey(coder, "key"_ns));
    EXPECT_FALSE(uniqueObjectsForKey(coder, "key"_ns));
}

TEST(UniqueObjectsCoder, WritesOnlyReferencesThatAreThere)
{
    const auto object = person();
    object->best_ = person();
    const auto coder = coderOf(object);
    EXPECT_TRUE(coder->containsValueForKey("best"_ns));
    EXPECT_FALSE(coder->containsValueForKey("friends"_ns));
    EXPECT_FALSE(coder->containsValueForKey("pet"_ns));
    EXPECT_FALSE(coder->containsValueForKey("name"_ns));
}

TEST(UniqueObjectsCoder, ReadsReferencesAtOnce)
{
    const auto object = person();
    object->best_ = person();
    object->pet_ = pet();
    const Ref<NSArray> friends = NSArray::cls().arrayWithObjects(person().get(), person().get());
    object->friends_ = friends;
    object->others_ = cast<NSMutableArray>(friends->mutableCopy());
    const auto other = make<UniquePerson>();
    decodeFromUUIDsForPropertiesOf(coderOf(object), other.get());
    EXPECT_EQ(other->best_, object->best_);
    EXPECT_EQ(other->pet_, object->pet_);
    EXPECT_TRUE(other->friends_->isEqual(friends.get()));
    EXPECT_FALSE(other->friends_->isKindOfClass(NSMutableArray::cls()));
    EXPECT_TRUE(other->others_->isEqual(friends.get()));
    EXPECT_TRUE(other->others_->isKindOfClass(NSMutableArray::cls()));
}

TEST(UniqueObjectsCoder, LeavesAPropertyAloneWhoseTypeDoesNotNameTheClass)
{
    const auto object = person();
    object->best_ = make<UniqueStudent>();
    const auto other = make<UniquePerson>();
    other->best_ = object;
    decodeFromUUIDsForPropertiesOf(coderOf(object), other.get());
    EXPECT_EQ(other->best_, object);
}

TEST(UniqueObjectsCoder, LeavesAPropertyAloneWhenNothingIsFound)
{
    const auto coder = make<DictionaryCoder>();
    coder->encodeObject_forKey(NSUUID::cls().UUID().get(), "best"_ns);
    const auto other = make<UniquePerson>();
    other->best_ = person();
    const auto before = other->best_;
    decodeFromUUIDsForPropertiesOf(coder, other.get());
    EXPECT_EQ(other->best_, before);
}

TEST(UniqueObjectsCoder, NeverSetsAnEmptyArray)
{
    const auto coder = make<DictionaryCoder>();
    coder->encodeObject_forKey(NSArray::cls().array().get(), "friends"_ns);
    const auto other = make<UniquePerson>();
    decodeFromUUIDsForPropertiesOf(coder, other.get());
    EXPECT_FALSE(other->friends_);
}

TEST(UniqueObjectsCoder, NeverKeepsAnEmptyArrayForLater)
{
    const auto coder = make<DictionaryCoder>();
    coder->encodeObject_forKey(NSArray::cls().array().get(), "friends"_ns);
    const auto other = make<UniquePerson>();
    const auto before = NSArray::cls().arrayWithObject(person().get());
    other->friends_ = before;
    decodeUUIDsForPropertiesOf(coder, other.get());
    loadObjectsForUUIDProperties(other);
    EXPECT_EQ(other->friends_, before);
}

TEST(UniqueObjectsCoder, ReadsReferencesThatAreResolvedLater)
{
    const auto object = person();
    object->best_ = person();
    object->friends_ = NSArray::cls().arrayWithObject(person().get());
    const auto other = make<UniquePerson>();
    decodeUUIDsForPropertiesOf(coderOf(object), other.get());
    EXPECT_FALSE(other->best_);
    EXPECT_FALSE(other->friends_);
    loadObjectsForUUIDProperties(other);
    EXPECT_EQ(other->best_, object->best_);
    EXPECT_TRUE(other->friends_->isEqual(object->friends_.get()));
}

TEST(UniqueObjectsCoder, KeepsIdentitiesAfterTheyWereResolved)
{
    const auto object = person();
    object->best_ = person();
    const auto other = make<UniquePerson>();
    decodeUUIDsForPropertiesOf(coderOf(object), other.get());
    loadObjectsForUUIDProperties(other);
    other->best_ = nullptr;
    loadObjectsForUUIDProperties(other);
    EXPECT_EQ(other->best_, object->best_);
}

TEST(UniqueObjectsCoder, ResolvesWhatIsRegisteredOnlyLater)
{
    const auto identity = NSUUID::cls().UUID();
    const auto coder = make<DictionaryCoder>();
    coder->encodeObject_forKey(identity.get(), "best"_ns);
    const auto object = make<UniquePerson>();
    decodeUUIDsForPropertiesOf(coder, object.get());
    loadObjectsForUUIDProperties(object);
    EXPECT_FALSE(object->best_);
    const auto late = make<UniquePerson>();
    setUUID(late, identity.get());
    loadObjectsForUUIDProperties(object);
    EXPECT_EQ(object->best_, late);
}

TEST(UniqueObjectsCoder, PassesOverOtherValuesThanIdentities)
{
    const auto coder = make<DictionaryCoder>();
    coder->encodeObject_forKey("text"_ns, "best"_ns);
    coder->encodeObject_forKey("text"_ns, "friends"_ns);
    const auto object = make<UniquePerson>();
    decodeUUIDsForPropertiesOf(coder, object.get());
    loadObjectsForUUIDProperties(object);
    decodeFromUUIDsForPropertiesOf(coder, object.get());
    EXPECT_FALSE(object->best_);
    EXPECT_FALSE(object->friends_);
}

TEST(UniqueObjectsSaving, StoresNothingForAClassWithoutObjects)
{
    const test::VirtualClock clock;
    const test::DefaultsFolder folder;
    archiveUniqueObjects(NeverUnique::cls());
    EXPECT_FALSE(NSUserDefaults::cls().standardUserDefaults()->objectForKey("NeverUnique"_ns));
}

TEST(UniqueObjectsSaving, StoresTheObjectsUnderTheirClassName)
{
    const test::VirtualClock clock;
    const test::DefaultsFolder folder;
    const auto one = pet();
    archiveUniqueObjects(UniquePet::cls());
    const auto stored
        = unarchiveObjectForKey(NSUserDefaults::cls().standardUserDefaults(), "UniquePet"_ns);
    EXPECT_EQ(cast<NSArray>(stored)->count(), uniqueObjects(UniquePet::cls())->count());
}

TEST(UniqueObjectsSaving, ReadsObjectsAndTheirReferencesBack)
{
    const test::VirtualClock clock;
    const test::DefaultsFolder folder;
    person(); // the table of this class is searched first
    // An archive of another process: what it holds is not registered here as persons.
    const auto anna = make<UniqueForeigner>();
    const auto berta = make<UniqueForeigner>();
    anna->name_ = "Anna"_ns;
    anna->best_ = berta;
    berta->name_ = "Berta"_ns;
    archiveObject_forKey(NSUserDefaults::cls().standardUserDefaults(),
        NSArray::cls().arrayWithObjects(anna.get(), berta.get()).get(), "UniquePerson"_ns);

    NSKeyedUnarchiver::cls().setClass_forClassName(UniquePerson::cls(), "UniqueForeigner"_ns);
    unarchiveUniqueObjects(UniquePerson::cls());
    NSKeyedUnarchiver::cls().setClass_forClassName(nullptr, "UniqueForeigner"_ns);
    const auto read = cast<UniquePerson>(uniqueObjectOfClass(UUID(anna), UniquePerson::cls()));
    ASSERT_TRUE(read);
    EXPECT_EQ(utf8(read->name_), "Anna");
    EXPECT_FALSE(read->best_);
    loadObjectsForUUIDProperties(UniquePerson::cls());
    ASSERT_TRUE(read->best_);
    EXPECT_EQ(utf8(read->best_->name_), "Berta");
    EXPECT_EQ(read->best_, uniqueObjectOfClass(UUID(berta), UniquePerson::cls()));
    EXPECT_EQ(read->loaded_, 0);
    UUIDPropertiesLoadedForAllClasses(UniquePerson::cls());
    EXPECT_EQ(read->loaded_, 1);
}

TEST(UniqueObjectsSaving, ReadsNothingWhereNothingWasStored)
{
    const test::VirtualClock clock;
    const test::DefaultsFolder folder;
    unarchiveUniqueObjects(NeverUnique::cls());
    EXPECT_FALSE(uniqueObjects(NeverUnique::cls()));
}

TEST(UniqueObjectsSaving, PassesOverAnotherObjectInPlaceOfTheList)
{
    const test::VirtualClock clock;
    const test::DefaultsFolder folder;
    archiveObject_forKey(NSUserDefaults::cls().standardUserDefaults(), "text"_ns, "NeverUnique"_ns);
    unarchiveUniqueObjects(NeverUnique::cls());
    EXPECT_FALSE(uniqueObjects(NeverUnique::cls()));
}

TEST(UniqueObjectsSaving, AnArchiveThatRepeatsAnIdentityRegistersItOnceForAClass)
{
    const auto one = pet();
    const auto coder = make<DictionaryCoder>();
    coder->encodeObject_forKey(UUID(one).get(), "UUID"_ns);
    const auto pets = registered(UniquePet::cls());
    const auto students = registered(UniqueStudent::cls());
    for (int i = 0; i < 500; ++i) {
        initWithCoder(alloc<UniquePet>(), coder.get());
        initWithCoder(alloc<UniqueStudent>(), coder.get());
    }
    EXPECT_EQ(registered(UniquePet::cls()), pets);
    EXPECT_EQ(registered(UniqueStudent::cls()), students + 1);
    EXPECT_EQ(uniqueObjectOfClass(UUID(one), UniquePet::cls()), one);
    test::publish({ "archives that repeat an identity: objects registered beyond the new one", 1000,
        static_cast<double>(registered(UniqueStudent::cls()) - students - 1), "objects", 0 });
}

}
