// SPDX-License-Identifier: Apache-2.0
#include <functional>
#include <thread>

#include "HostileArchives.h"
#include "foundation/NSObjCRuntime.h"
#include "foundation/NSSet.h"
#include "support/Sanitizers.h"
#include "support/Strings.h"

// Archives of too much: levels, elements, references, and objects inside themselves.

using namespace brindle;

namespace {

/// Runs a body on a thread whose stack is large enough for whatever a sanitizer adds. The thread sanitizer follows 65,536
/// calls, fewer than ten thousand levels make.
void onLargeStack(const std::function<void()>& body)
{
    if constexpr (test::threadsAreWatched)
        return;
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstacksize(&attributes, std::size_t { 512 } << 20);
    pthread_t thread;
    pthread_create(
        &thread, &attributes,
        [](void* of) -> void* {
            (*static_cast<const std::function<void()>*>(of))();
            return nullptr;
        },
        const_cast<std::function<void()>*>(&body));
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
}

Ref<NSMutableArray> nested(std::size_t levels)
{
    Ref<NSMutableArray> outer = make<NSMutableArray>();
    for (std::size_t i = 1; i < levels; ++i)
        outer = NSMutableArray::cls().arrayWithObject(outer.get());
    return outer;
}

/// Answers the begin of an archive's objects: null, and the class of arrays as number 1.
Ref<NSMutableArray> objectsWithArrayClass()
{
    const Ref<NSMutableArray> objects = make<NSMutableArray>();
    objects->addObject("$null"_ns);
    objects->addObject(
        makeDictionary({ { "$classname"_ns, "NSArray"_ns },
                           { "$classes"_ns, makeArray({ "NSArray"_ns, "NSObject"_ns }).get() } })
            .get());
    return objects;
}

Ref<NSData> archiveOf(NSMutableArray& objects, NSUInteger root)
{
    const Ref<NSDictionary> archive = makeDictionary(
        { { "$version"_ns, whole(100000).get() }, { "$archiver"_ns, "NSKeyedArchiver"_ns },
            { "$top"_ns, makeDictionary({ { "root"_ns, uid(root).get() } }).get() },
            { "$objects"_ns, &objects } });
    return listFormats().dataWithPropertyList_format_options_error(
        archive.get(), NSPropertyListBinaryFormat_v1_0, 0, nullptr);
}

/// Adds an array of objects that follow it, all of them one and the same; answers the archive.
Ref<NSData> archiveOfMany(NSMutableArray& objects, NSObject* same, NSUInteger count)
{
    const NSUInteger root = objects.count();
    const Ref<NSMutableArray> items = make<NSMutableArray>();
    objects.addObject(
        makeDictionary({ { "$class"_ns, uid(1).get() }, { "NS.objects"_ns, items.get() } }).get());
    for (NSUInteger i = 0; i < count; ++i) {
        items->addObject(uid(objects.count()).get());
        objects.addObject(same);
    }
    return archiveOf(objects, root);
}

Ref<NSString> repeated(char letter, std::size_t count)
{
    return stringFrom(std::string(count, letter));
}

void expectRefusedAsTooLarge(const Ref<NSData>& data)
{
    EXPECT_LT(data->length(), std::size_t { 3 } << 20);
    EXPECT_EQ(raisedBy([&] { NSKeyedUnarchiver::cls().unarchiveObjectWithData(data.get()); }),
        "NSInvalidUnarchiveOperationException: *** -[NSKeyedUnarchiver decodeObjectForKey:]: the "
        "objects are much larger than the archive they stand in");
}

/// Answers an archive of an object whose value under a key is a set that holds the object.
Ref<NSData> insideItsOwnSet(NSString* name, NSString* key)
{
    const auto cls = [](NSString* called) {
        return makeDictionary({ { "$classname"_ns, called },
            { "$classes"_ns, makeArray({ called, "NSObject"_ns }).get() } });
    };
    const auto object = makeDictionary({ { "$class"_ns, uid(3).get() }, { key, uid(2).get() } });
    const auto set = makeDictionary(
        { { "$class"_ns, uid(4).get() }, { "NS.objects"_ns, makeArray({ uid(1).get() }).get() } });
    const auto objects = makeArray(
        { "$null"_ns, object.get(), set.get(), cls(name).get(), cls("NSSet"_ns).get() });
    const auto top = makeDictionary(
        { { "$version"_ns, whole(100000).get() }, { "$archiver"_ns, "NSKeyedArchiver"_ns },
            { "$top"_ns, makeDictionary({ { "root"_ns, uid(1).get() } }).get() },
            { "$objects"_ns, objects.get() } });
    return listFormats().dataWithPropertyList_format_options_error(
        top.get(), NSPropertyListBinaryFormat_v1_0, 0, nullptr);
}

}

TEST(HostileArchives, ObjectsMayBeAskedForTheirHashBeforeTheyAreMade)
{
    const std::pair<NSString*, NSString*> objects[] {
        { "NSOrderedSet"_ns, "NS.objects"_ns },
        { "NSMutableOrderedSet"_ns, "NS.objects"_ns },
        { "NSAttributedString"_ns, "NSString"_ns },
        { "NSMutableAttributedString"_ns, "NSString"_ns },
        { "NSCalendar"_ns, "NS.identifier"_ns },
        { "NSURL"_ns, "NS.relative"_ns },
        { "NSTimeZone"_ns, "NS.name"_ns },
    };
    for (const auto& [name, key] : objects) {
        const Ref<NSData> data = insideItsOwnSet(name, key);
        ASSERT_TRUE(data);
        Ref<NSObject> made;
        const std::string raised = raisedBy(
            [&] { made = NSKeyedUnarchiver::cls().unarchiveObjectWithData(data.get()); });
        EXPECT_TRUE(!raised.empty() || !made || made->isKindOfClass(NSClassFromString(name)))
            << utf8Of(name);
    }
}

TEST(HostileArchives, GraphsTenThousandDeepAreKept)
{
    onLargeStack([] {
        const Ref<NSMutableArray> deep = nested(10000);
        const Ref<NSData> data = NSKeyedArchiver::cls().archivedDataWithRootObject(deep.get());
        Ref<NSObject> level = NSKeyedUnarchiver::cls().unarchiveObjectWithData(data.get());
        std::size_t levels = 0;
        for (; level; ++levels)
            level = static_cast<NSArray*>(level.get())->firstObject();
        EXPECT_EQ(levels, 10000u);
    });
}

TEST(HostileArchives, DeeperGraphsAreRefusedWhenWritten)
{
    onLargeStack([] {
        EXPECT_EQ(raisedBy([] {
            NSKeyedArchiver::cls().archivedDataWithRootObject(nested(10001).get());
        }),
            "NSInvalidArchiveOperationException: *** -[NSKeyedArchiver encodeObject:forKey:]: "
            "objects are nested more than 10000 deep");
    });
}

TEST(HostileArchives, DeeperGraphsAreRefusedWhenRead)
{
    // Arrays that each hold the next one, written without any recursion.
    const Ref<NSMutableArray> objects = objectsWithArrayClass();
    constexpr NSUInteger kLevels = 200000;
    for (NSUInteger i = 0; i < kLevels; ++i) {
        const Ref<NSArray> items
            = i + 1 < kLevels ? makeArray({ uid(i + 3).get() }) : makeArray({});
        objects->addObject(
            makeDictionary({ { "$class"_ns, uid(1).get() }, { "NS.objects"_ns, items.get() } })
                .get());
    }
    const Ref<NSData> data = archiveOf(*objects, 2);
    const auto read = [&] {
        return raisedBy([&] { NSKeyedUnarchiver::cls().unarchiveObjectWithData(data.get()); });
    };
    EXPECT_NE(read(), ""); // on this thread, whose stack may be too short for that many
    onLargeStack([&] {
        EXPECT_EQ(read(),
            "NSInvalidUnarchiveOperationException: *** -[NSKeyedUnarchiver decodeObjectForKey:]: "
            "objects are nested more than 10000 deep");
    });
}

TEST(HostileArchives, MembersThatAreAlikeInMostOfTheirPartsAreNotComparedForEver)
{
    // Two towers of arrays, each level holding the one below twice: 2^40 pairs of parts.
    const auto tower = [] {
        Ref<NSArray> level = makeArray({ "x"_ns });
        for (int i = 0; i < 40; ++i)
            level = makeArray({ level.get(), level.get() });
        return level;
    };
    const Ref<NSArray> towers = makeArray({ tower().get(), tower().get() });
    const Ref<NSKeyedArchiver> archiver
        = alloc<NSKeyedArchiver>()->initRequiringSecureCoding(false);
    archiver->setClassName_forClass(
        "NSSet"_ns, NSMutableArray::cls()); // the outer list reads as a set
    archiver->encodeObject_forKey(towers->mutableCopy().get(), "root"_ns);
    const Ref<NSObject> set
        = NSKeyedUnarchiver::cls().unarchiveObjectWithData(archiver->encodedData().get());
    ASSERT_TRUE(set && set->isKindOfClass(NSSet::cls()));
    EXPECT_EQ(static_cast<NSSet*>(set.get())->count(), 1u);
}

TEST(HostileArchives, ManyObjectsOfTheSameBytesDoNotFillTheMemory)
{
    // One piece of data under thousands of mutable ones: written once, and asked for again and again.
    const std::string megabyte(1 << 20, 'x');
    const Ref<NSMutableArray> many = make<NSMutableArray>();
    for (int i = 0; i < 300; ++i)
        many->addObject(
            NSMutableData::cls().dataWithBytes_length(megabyte.data(), megabyte.size()).get());
    const Ref<NSData> data = NSKeyedArchiver::cls().archivedDataWithRootObject(many.get());
    expectRefusedAsTooLarge(data);
}

TEST(HostileArchives, ManyReferencesToOneStringDoNotFillTheMemory)
{
    const Ref<NSMutableArray> objects = objectsWithArrayClass();
    expectRefusedAsTooLarge(archiveOfMany(*objects, repeated('x', 1 << 20).get(), 300));
}

TEST(HostileArchives, ManyObjectsOfOneLongRecordDoNotTakeForEver)
{
    const Ref<NSMutableArray> objects = objectsWithArrayClass();
    const Ref<NSMutableDictionary> record = make<NSMutableDictionary>();
    for (NSInteger i = 0; i < 20000; ++i)
        put(*record, stringFrom(std::to_string(i)).get(), whole(0));
    put(*record, "$class"_ns, uid(1));
    put(*record, "NS.objects"_ns, makeArray({}));
    expectRefusedAsTooLarge(archiveOfMany(*objects, record.get(), 20000));
}

TEST(HostileArchives, AClassWithManyLongParentsDoesNotTakeForEver)
{
    const Ref<NSMutableArray> objects = objectsWithArrayClass();
    const Ref<NSString> name = repeated('x', 1 << 20);
    const Ref<NSMutableArray> chain = make<NSMutableArray>();
    for (int i = 0; i < 300; ++i)
        chain->addObject(name.get());
    objects->addObject(
        makeDictionary({ { "$classname"_ns, name.get() }, { "$classes"_ns, chain.get() } }).get());
    objects->addObject(makeDictionary({ { "$class"_ns, uid(2).get() } }).get());
    expectRefusedAsTooLarge(archiveOf(*objects, 3));
}

TEST(HostileArchives, AClassWithManyLongHintsDoesNotTakeForEver)
{
    const Ref<NSMutableArray> objects = objectsWithArrayClass();
    const Ref<NSMutableArray> hints = make<NSMutableArray>();
    for (int i = 0; i < 300; ++i)
        hints->addObject(repeated('x', 1 << 20).get());
    objects->addObject(makeDictionary(
        { { "$classname"_ns, "Nobody"_ns }, { "$classes"_ns, makeArray({ "Nobody"_ns }).get() },
            { "$classhints"_ns, hints.get() } })
                           .get());
    objects->addObject(makeDictionary({ { "$class"_ns, uid(2).get() } }).get());
    expectRefusedAsTooLarge(archiveOf(*objects, 3));
}

TEST(HostileArchives, AHundredThousandElementsWithAKeyEachAreRead)
{
    // Comparing all keys for each element would take minutes.
    constexpr int kCount = 100000;
    const Ref<NSMutableArray> objects = objectsWithArrayClass();
    const Ref<NSMutableDictionary> record = make<NSMutableDictionary>();
    for (int i = kCount; i-- > 0;)
        put(*record, stringFrom("NS.object." + std::to_string(i)).get(), uid(3));
    put(*record, "$class"_ns, uid(1));
    objects->addObject(record.get());
    objects->addObject("x"_ns);
    const Ref<NSData> data = archiveOf(*objects, 2);
    const Ref<NSObject> back = NSKeyedUnarchiver::cls().unarchiveObjectWithData(data.get());
    EXPECT_EQ(cast<NSArray>(back)->count(), NSUInteger { kCount });
}
