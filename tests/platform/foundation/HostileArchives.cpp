// SPDX-License-Identifier: Apache-2.0
#include <functional>
#include <limits>

#include "HostileArchives.h"
#include "foundation/NSDate.h"
#include "foundation/NSError.h"
#include "foundation/NSIndexSet.h"
#include "foundation/NSMutableString.h"
#include "foundation/NSNull.h"
#include "foundation/NSSet.h"
#include "support/Figures.h"
#include "support/Strings.h"

// Archives that nobody made by archiving: a good one, rewritten.

using namespace brindle;

namespace {

Ref<NSNumber> real(double value) { return NSNumber::cls().numberWithDouble(value); }

/// Answers objects of every class that has a form of its own in archives.
Ref<NSArray> everything()
{
    const Ref<NSMutableIndexSet> indexes = make<NSMutableIndexSet>();
    indexes->addIndexesInRange({ 5, 3 });
    indexes->addIndexesInRange({ 500, 300 });
    return makeArray({ makeNode("a"_ns, makeNode("b"_ns).get()).get(),
        makeDictionary({ { "k"_ns, "v"_ns }, { "l"_ns, "w"_ns } }).get(),
        makeSet({ "s"_ns, "t"_ns }).get(), NSMutableString::cls().stringWithString("m"_ns).get(),
        NSMutableData::cls().dataWithBytes_length("abc", 3).get(),
        NSDate::cls().dateWithTimeIntervalSinceReferenceDate(1).get(),
        NSValue::cls().valueWithPoint(NSMakePoint(1, 2)).get(), indexes.get(),
        NSNull::cls().null().get(), whole(3).get() });
}

/// A good archive that can be changed.
class Archive {
public:
    Archive()
        : top_(cast<NSMutableDictionary>(listFormats().propertyListWithData_options_format_error(
            NSKeyedArchiver::cls().archivedDataWithRootObject(everything().get()).get(),
            NSPropertyListMutableContainers, nullptr, nullptr)))
    {
    }

    NSMutableDictionary& top() { return *top_; }
    NSMutableArray& objects() { return *child<NSMutableArray>(*top_, "$objects"_ns); }
    NSMutableDictionary& roots() { return *child<NSMutableDictionary>(*top_, "$top"_ns); }
    NSUInteger count() { return objects().count(); }
    /// Answers the number of the first object of a class, or of the class itself.
    NSUInteger find(std::string_view name, bool isClass = false)
    {
        for (NSUInteger i = 0; i < count(); ++i) {
            if (isClass ? nameIn(i) == name : classOfObject(i) == name)
                return i;
        }
        throw std::logic_error("no object of class " + std::string(name));
    }
    NSMutableDictionary& object(std::string_view name) { return dictionary(find(name)); }
    NSMutableDictionary& cls(std::string_view name) { return dictionary(find(name, true)); }
    NSMutableArray& list(std::string_view name, NSString* key)
    {
        return *child<NSMutableArray>(object(name), key);
    }

    Ref<NSData> data(NSPropertyListFormat format)
    {
        Ref<NSError> error;
        const Ref<NSData> data = listFormats().dataWithPropertyList_format_options_error(
            replaced_ ? replaced_.get() : top_.get(), format, 0, &error);
        EXPECT_TRUE(data) << textOf(error);
        return data;
    }
    void replaceTop(NSObject* other) { replaced_ = other; }

private:
    template <class T> static T* child(NSMutableDictionary& of, NSString* key)
    {
        return static_cast<T*>(of.objectForKey(key).get()); // the dictionary keeps it
    }
    NSMutableDictionary& dictionary(NSUInteger index)
    {
        return *static_cast<NSMutableDictionary*>(objects().objectAtIndex(index).get());
    }
    std::string nameIn(NSUInteger index)
    {
        const Ref<NSObject> object = objects().objectAtIndex(index);
        return object->isKindOfClass(NSDictionary::cls())
            ? textOf(static_cast<NSDictionary*>(object.get())->objectForKey("$classname"_ns))
            : "";
    }
    std::string classOfObject(NSUInteger index)
    {
        const Ref<NSObject> object = objects().objectAtIndex(index);
        if (!object->isKindOfClass(NSDictionary::cls()))
            return "";
        const Ref<NSObject> cls
            = static_cast<NSDictionary*>(object.get())->objectForKey("$class"_ns);
        return cls ? nameIn(static_cast<PropertyListUID*>(cls.get())->unsignedIntegerValue()) : "";
    }

    Ref<NSMutableDictionary> top_;
    Ref<NSObject> replaced_;
};

void drop(NSMutableDictionary& dictionary, NSString* key) { dictionary.removeObjectForKey(key); }
void replaceFirst(NSMutableArray& list, const Ref<NSObject>& value)
{
    list.replaceObjectAtIndex_withObject(0, value.get());
}

struct Rewrite {
    const char* name;
    std::function<void(Archive&)> change;
};

const std::vector<Rewrite>& rewrites()
{
    static const double nan = std::numeric_limits<double>::quiet_NaN();
    static const std::vector<Rewrite> all {
        // the frame
        { "no version", [](Archive& a) { drop(a.top(), "$version"_ns); } },
        { "another version", [](Archive& a) { put(a.top(), "$version"_ns, whole(1)); } },
        { "a negative version", [](Archive& a) { put(a.top(), "$version"_ns, whole(-100000)); } },
        { "a real version", [](Archive& a) { put(a.top(), "$version"_ns, real(100000)); } },
        { "a version in words", [](Archive& a) { put(a.top(), "$version"_ns, "100000"_ns); } },
        { "a version near 2^64",
            [](Archive& a) {
                put(a.top(), "$version"_ns, NSNumber::cls().numberWithUnsignedLongLong(~0ull));
            } },
        { "no archiver", [](Archive& a) { drop(a.top(), "$archiver"_ns); } },
        { "another archiver", [](Archive& a) { put(a.top(), "$archiver"_ns, "NSArchiver"_ns); } },
        { "an archiver that is a number",
            [](Archive& a) { put(a.top(), "$archiver"_ns, whole(1)); } },
        { "no top", [](Archive& a) { drop(a.top(), "$top"_ns); } },
        { "a top that is a list", [](Archive& a) { put(a.top(), "$top"_ns, makeArray({})); } },
        { "no objects", [](Archive& a) { drop(a.top(), "$objects"_ns); } },
        { "objects that are a dictionary",
            [](Archive& a) { put(a.top(), "$objects"_ns, makeDictionary({})); } },
        { "no object at all", [](Archive& a) { put(a.top(), "$objects"_ns, makeArray({})); } },
        { "a first object that is not null",
            [](Archive& a) { replaceFirst(a.objects(), Ref<NSObject>("null"_ns)); } },
        { "a first object that is a number",
            [](Archive& a) { replaceFirst(a.objects(), whole(0)); } },
        { "an archive that is a list", [](Archive& a) { a.replaceTop(makeArray({}).get()); } },
        // the root
        { "no root", [](Archive& a) { drop(a.roots(), "root"_ns); } },
        { "a root past the objects",
            [](Archive& a) { put(a.roots(), "root"_ns, uid(a.count())); } },
        { "a root far past the objects",
            [](Archive& a) { put(a.roots(), "root"_ns, uid(0xffffffff)); } },
        { "a root that is a list", [](Archive& a) { put(a.roots(), "root"_ns, makeArray({})); } },
        { "a root that is a class",
            [](Archive& a) { put(a.roots(), "root"_ns, uid(a.find("NSArray", true))); } },
        // classes
        { "no class", [](Archive& a) { drop(a.object("NSArray"), "$class"_ns); } },
        { "a class in words",
            [](Archive& a) { put(a.object("NSArray"), "$class"_ns, "NSArray"_ns); } },
        { "a class that is null",
            [](Archive& a) { put(a.object("NSArray"), "$class"_ns, uid(0)); } },
        { "a class past the objects",
            [](Archive& a) { put(a.object("NSArray"), "$class"_ns, uid(a.count() + 7)); } },
        { "a class that is the object",
            [](Archive& a) { put(a.object("NSArray"), "$class"_ns, uid(a.find("NSArray"))); } },
        { "a class that is a string",
            [](Archive& a) {
                put(a.object("NSArray"), "$class"_ns, uid(a.count()));
                a.objects().addObject("NSArray"_ns);
            } },
        { "a class that is a list",
            [](Archive& a) {
                put(a.object("NSArray"), "$class"_ns, uid(a.count()));
                a.objects().addObject(makeArray({ "NSArray"_ns }).get());
            } },
        { "a class without a name", [](Archive& a) { drop(a.cls("NSArray"), "$classname"_ns); } },
        { "a class whose name is a number",
            [](Archive& a) { put(a.cls("NSArray"), "$classname"_ns, whole(1)); } },
        { "a class whose name is not that of its chain",
            [](Archive& a) { put(a.cls("NSArray"), "$classname"_ns, "NSString"_ns); } },
        { "a class whose chain is another's",
            [](Archive& a) {
                put(a.cls("NSArray"), "$classes"_ns, makeArray({ "NSSet"_ns, "NSObject"_ns }));
            } },
        { "a class without a chain", [](Archive& a) { drop(a.cls("NSArray"), "$classes"_ns); } },
        { "a class with an empty chain",
            [](Archive& a) { put(a.cls("NSArray"), "$classes"_ns, makeArray({})); } },
        { "a class whose chain is a string",
            [](Archive& a) { put(a.cls("NSArray"), "$classes"_ns, "NSArray"_ns); } },
        { "a class whose chain holds a number",
            [](Archive& a) {
                put(a.cls("NSArray"), "$classes"_ns, makeArray({ "NSArray"_ns, whole(1).get() }));
            } },
        { "a class nobody knows",
            [](Archive& a) {
                NSMutableDictionary& record = a.cls("NSArray");
                put(record, "$classname"_ns, "Nobody"_ns);
                put(record, "$classes"_ns, makeArray({ "Nobody"_ns }));
            } },
        { "a class that has no coding",
            [](Archive& a) {
                NSMutableDictionary& record = a.cls("NSArray");
                put(record, "$classname"_ns, "Protocol"_ns);
                put(record, "$classes"_ns, makeArray({ "Protocol"_ns }));
            } },
        // lists
        { "an array without elements",
            [](Archive& a) { drop(a.object("NSArray"), "NS.objects"_ns); } },
        { "an array of a string",
            [](Archive& a) { put(a.object("NSArray"), "NS.objects"_ns, "abc"_ns); } },
        { "an array of a reference",
            [](Archive& a) { put(a.object("NSArray"), "NS.objects"_ns, uid(1)); } },
        { "an element that is no reference",
            [](Archive& a) {
                replaceFirst(a.list("NSArray", "NS.objects"_ns), Ref<NSObject>("x"_ns));
            } },
        { "an element that is null",
            [](Archive& a) { replaceFirst(a.list("NSArray", "NS.objects"_ns), uid(0)); } },
        { "an element past the objects",
            [](Archive& a) { replaceFirst(a.list("NSArray", "NS.objects"_ns), uid(a.count())); } },
        { "an element that is a class",
            [](Archive& a) {
                replaceFirst(a.list("NSArray", "NS.objects"_ns), uid(a.find("NSArray", true)));
            } },
        { "a set with a null",
            [](Archive& a) { replaceFirst(a.list("NSSet", "NS.objects"_ns), uid(0)); } },
        { "a dictionary without keys",
            [](Archive& a) { drop(a.object("NSDictionary"), "NS.keys"_ns); } },
        { "a dictionary without objects",
            [](Archive& a) { drop(a.object("NSDictionary"), "NS.objects"_ns); } },
        { "fewer keys than objects",
            [](Archive& a) { a.list("NSDictionary", "NS.keys"_ns).removeLastObject(); } },
        { "fewer objects than keys",
            [](Archive& a) { a.list("NSDictionary", "NS.objects"_ns).removeLastObject(); } },
        { "a key that is null",
            [](Archive& a) { replaceFirst(a.list("NSDictionary", "NS.keys"_ns), uid(0)); } },
        // values
        { "a string without text",
            [](Archive& a) { drop(a.object("NSMutableString"), "NS.string"_ns); } },
        { "a string that is a number",
            [](Archive& a) { put(a.object("NSMutableString"), "NS.string"_ns, whole(1)); } },
        { "a string that is itself",
            [](Archive& a) {
                put(a.object("NSMutableString"), "NS.string"_ns, uid(a.find("NSMutableString")));
            } },
        { "a string of half a unit",
            [](Archive& a) {
                drop(a.object("NSMutableString"), "NS.string"_ns);
                put(a.object("NSMutableString"), "NS.units"_ns,
                    NSData::cls().dataWithBytes_length("abc", 3));
            } },
        { "data without bytes", [](Archive& a) { drop(a.object("NSMutableData"), "NS.data"_ns); } },
        { "a date without time", [](Archive& a) { drop(a.object("NSDate"), "NS.time"_ns); } },
        { "a date that is a string",
            [](Archive& a) { put(a.object("NSDate"), "NS.time"_ns, "noon"_ns); } },
        { "a date that is no number",
            [](Archive& a) { put(a.object("NSDate"), "NS.time"_ns, real(nan)); } },
        { "a date for ever",
            [](Archive& a) {
                put(a.object("NSDate"), "NS.time"_ns,
                    real(std::numeric_limits<double>::infinity()));
            } },
        { "a value of no kind", [](Archive& a) { drop(a.object("NSValue"), "NS.special"_ns); } },
        { "a value of another kind",
            [](Archive& a) { put(a.object("NSValue"), "NS.special"_ns, whole(99)); } },
        { "a value beyond an int",
            [](Archive& a) {
                put(a.object("NSValue"), "NS.special"_ns, whole(NSInteger { 1 } << 40));
            } },
        { "a value without its text",
            [](Archive& a) { drop(a.object("NSValue"), "NS.pointval"_ns); } },
        { "a count of ranges that lies",
            [](Archive& a) { put(a.object("NSMutableIndexSet"), "NSRangeCount"_ns, whole(3)); } },
        { "a negative count of ranges",
            [](Archive& a) { put(a.object("NSMutableIndexSet"), "NSRangeCount"_ns, whole(-1)); } },
        { "one range of negative length",
            [](Archive& a) {
                put(a.object("NSMutableIndexSet"), "NSRangeCount"_ns, whole(1));
                put(a.object("NSMutableIndexSet"), "NSLocation"_ns, whole(5));
                put(a.object("NSMutableIndexSet"), "NSLength"_ns, whole(-5));
            } },
        { "ranges that end in the middle of a number",
            [](Archive& a) {
                put(a.object("NSMutableIndexSet"), "NSRangeData"_ns,
                    NSData::cls().dataWithBytes_length("\x05\x03\x80", 3));
            } },
        { "ranges that overlap",
            [](Archive& a) {
                put(a.object("NSMutableIndexSet"), "NSRangeData"_ns,
                    NSData::cls().dataWithBytes_length("\x05\x03\x06\x01", 4));
            } },
    };
    return all;
}

Ref<NSSet> expectedClasses()
{
    return makeSet(
        { NSArray::cls(), NSDictionary::cls(), NSSet::cls(), NSString::cls(), NSData::cls(),
            NSDate::cls(), NSValue::cls(), NSIndexSet::cls(), NSNull::cls(), ArchivedNode::cls() });
}

}

TEST(HostileArchives, TheArchiveThatIsRewrittenIsAGoodOne)
{
    EXPECT_GE(rewrites().size(), 60u);
    const Ref<NSData> data = Archive().data(NSPropertyListBinaryFormat_v1_0);
    const Ref<NSObject> back = NSKeyedUnarchiver::cls().unarchiveObjectWithData(data.get());
    EXPECT_EQ(cast<NSArray>(back)->count(), everything()->count());
    Ref<NSError> error;
    EXPECT_TRUE(NSKeyedUnarchiver::cls().unarchivedObjectOfClasses_fromData_error(
        expectedClasses().get(), data.get(), &error))
        << textOf(error);
}

TEST(HostileArchives, EveryRewriteIsRefused)
{
    int accepted = 0;
    for (const Rewrite& rewrite : rewrites()) {
        Archive archive;
        rewrite.change(archive);
        const Ref<NSData> data = archive.data(NSPropertyListBinaryFormat_v1_0);
        const std::string raised
            = raisedBy([&] { NSKeyedUnarchiver::cls().unarchiveObjectWithData(data.get()); });
        EXPECT_NE(raised, "") << rewrite.name;
        accepted += raised.empty();
    }
    test::publish({ "rewrites of a good archive: not refused", static_cast<long>(rewrites().size()),
        0.0 + accepted, "archives", 0 });
}

TEST(HostileArchives, EveryRewriteIsAnErrorUnderSecureCoding)
{
    for (const Rewrite& rewrite : rewrites()) {
        Archive archive;
        rewrite.change(archive);
        const Ref<NSData> data = archive.data(NSPropertyListBinaryFormat_v1_0);
        Ref<NSError> error;
        EXPECT_FALSE(NSKeyedUnarchiver::cls().unarchivedObjectOfClasses_fromData_error(
            expectedClasses().get(), data.get(), &error))
            << rewrite.name;
        EXPECT_TRUE(error) << rewrite.name;
    }
}

TEST(HostileArchives, EveryRewriteEndsQuietlyWhereErrorsAreKept)
{
    for (const Rewrite& rewrite : rewrites()) {
        Archive archive;
        rewrite.change(archive);
        const Ref<NSData> data = archive.data(NSPropertyListBinaryFormat_v1_0);
        const std::string raised = raisedBy([&] {
            const Ref<NSKeyedUnarchiver> unarchiver
                = alloc<NSKeyedUnarchiver>()->initForReadingFromData_error(data.get(), nullptr);
            maybe(unarchiver)->decodeObjectOfClasses_forKey(expectedClasses().get(), "root"_ns);
        });
        // A number that does not fit is raised whatever the policy.
        EXPECT_TRUE(raised.empty() || raised.starts_with("NSRangeException"))
            << rewrite.name << raised;
    }
}
