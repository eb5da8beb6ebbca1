// SPDX-License-Identifier: Apache-2.0
#include "foundation/NSKeyedArchiver.h"

#include "KeyedArchiveHosts.h"
#include "foundation/NSData.h"
#include "foundation/NSError.h"
#include "foundation/NSKeyedUnarchiver.h"
#include "foundation/NSMutableArray.h"
#include "foundation/NSNumber.h"
#include "foundation/NSPropertyListSerialization.h"
#include "support/Strings.h"
#include "support/TemporaryFolder.h"

using namespace brindle;

namespace brindle {

/// Stands for another object in archives.
class ArchivedStandIn : public NSObject {
    BRINDLE_OBJECT(ArchivedStandIn, NSObject)

public:
    Ref<NSObject> real_;
};
template <> struct ArchivedStandIn::Methods<struct Coding> {
    static Ref<NSObject> replacement(ArchivedStandIn& self, NSCoder*) { return self.real_; }
    static void encode(ArchivedStandIn&, NSCoder*) { }
    static Ref<NSObject> initWithCoder(ArchivedStandIn& self, NSCoder*) { return &self; }
    static void table(Builder& t)
    {
        t.methods({
            { "replacementObjectForKeyedArchiver:", imp<replacement> },
            { "encodeWithCoder:", imp<encode> },
            { "initWithCoder:", imp<initWithCoder> },
        });
    }
};
BRINDLE_RECORD(ArchivedStandIn, Coding)

/// Is archived as its parent, with a hint for those who do not know that one.
class ArchivedAsNode : public ArchivedNode {
    BRINDLE_OBJECT(ArchivedAsNode, ArchivedNode)
};
template <> struct ArchivedAsNode::Methods<struct Coding> {
    static Class* cover(ArchivedAsNode&) { return ArchivedNode::cls(); }
    static void table(Builder& t) { t.methods({ { "classForKeyedArchiver", imp<cover> } }); }
};
BRINDLE_RECORD(ArchivedAsNode, Coding)

/// Names a class that may stand in for it.
class ArchivedWithFallback : public ArchivedNode {
    BRINDLE_OBJECT(ArchivedWithFallback, ArchivedNode)
};
template <> struct ArchivedWithFallback::Methods<struct Coding> {
    static Ref<NSArray> fallbacks(Class&) { return makeArray({ "Nobody"_ns, "ArchivedNode"_ns }); }
    static void table(Builder& t)
    {
        t.classMethods({ { "classFallbacksForKeyedArchiver", imp<fallbacks> } });
    }
};
BRINDLE_RECORD(ArchivedWithFallback, Coding)

/// Uses a key twice, and one that begins with a dollar.
class ArchivedOddly : public NSObject {
    BRINDLE_OBJECT(ArchivedOddly, NSObject)

public:
    std::string read_;
};
template <> struct ArchivedOddly::Methods<struct Coding> {
    static void encode(ArchivedOddly&, NSCoder* coder)
    {
        coder->encodeObject_forKey("first"_ns, "twice"_ns);
        coder->encodeObject_forKey("dollar"_ns, "$class"_ns);
        coder->encodeObject("unkeyed"_ns);
        coder->encodeObject_forKey("last"_ns, "twice"_ns);
        coder->encodeObject("again"_ns);
    }
    static Ref<NSObject> initWithCoder(ArchivedOddly& self, NSCoder* coder)
    {
        self.read_ = textOf(coder->decodeObjectForKey("twice"_ns));
        self.read_ += " " + textOf(coder->decodeObjectForKey("$class"_ns));
        for (int i = 0; i < 3; ++i)
            self.read_ += " " + textOf(coder->decodeObject());
        return &self;
    }
    static void table(Builder& t)
    {
        t.methods({
            { "encodeWithCoder:", imp<encode> },
            { "initWithCoder:", imp<initWithCoder> },
        });
    }
};
BRINDLE_RECORD(ArchivedOddly, Coding)

/// Writes down what an archiver tells it, and changes what is encoded.
class ArchiverListener : public NSObject {
    BRINDLE_OBJECT(ArchiverListener, NSObject)

public:
    std::string log_;
    Ref<NSObject> from_;
    Ref<NSObject> to_;
};
template <> struct ArchiverListener::Methods<struct Listening> {
    static Ref<NSObject> will(ArchiverListener& self, NSCoder*, NSObject* object)
    {
        self.log_ += "will " + textOf(object) + "\n";
        return object == self.from_.get() ? self.to_ : Ref<NSObject>(object);
    }
    static void did(ArchiverListener& self, NSCoder*, NSObject* object)
    {
        self.log_ += "did " + textOf(object) + "\n";
    }
    static void replace(ArchiverListener& self, NSCoder*, NSObject* object, NSObject* other)
    {
        self.log_ += "replace " + textOf(object) + " by " + textOf(other) + "\n";
    }
    static void willFinish(ArchiverListener& self, NSCoder*) { self.log_ += "will finish\n"; }
    static void didFinish(ArchiverListener& self, NSCoder*) { self.log_ += "did finish\n"; }
    static void table(Builder& t)
    {
        t.methods({
            { "archiver:willEncodeObject:", imp<will> },
            { "archiver:didEncodeObject:", imp<did> },
            { "archiver:willReplaceObject:withObject:", imp<replace> },
            { "archiverWillFinish:", imp<willFinish> },
            { "archiverDidFinish:", imp<didFinish> },
        });
    }
};
BRINDLE_RECORD(ArchiverListener, Listening)

}

namespace {

Ref<NSData> archived(NSObject* root)
{
    return NSKeyedArchiver::cls().archivedDataWithRootObject(root);
}

/// Answers an archive as the description of its property list without spaces and quotes, to be compared as text.
std::string structure(NSData* data)
{
    Ref<NSError> error;
    const Ref<NSObject> list
        = NSPropertyListSerialization::cls().propertyListWithData_options_format_error(
            data, NSPropertyListImmutable, nullptr, &error);
    std::string text = textOf(list);
    std::string dense;
    for (const char c : text) {
        if (c != ' ' && c != '\n' && c != '"')
            dense += c;
    }
    return dense;
}
std::string structure(const Ref<NSData>& data) { return structure(data.get()); }

}

TEST(NSKeyedArchiver, WritesTheDocumentedStructure)
{
    EXPECT_EQ(structure(archived(makeNode("a"_ns).get())),
        "{$archiver=NSKeyedArchiver;"
        "$objects=($null,"
        "{$class={value=3};known={value=0};name={value=2};next={value=0};},a,"
        "{$classes=(ArchivedNode,NSObject);$classname=ArchivedNode;});"
        "$top={root={value=1};};$version=100000;}");
}

TEST(NSKeyedArchiver, NilIsReferenceZero)
{
    EXPECT_NE(structure(archived(nullptr)).find("$top={root={value=0};}"), std::string::npos);
}

TEST(NSKeyedArchiver, TheSameObjectsGiveTheSameBytes)
{
    const auto make = [] {
        return archived(makeArray({ makeNode("a"_ns, makeNode("b"_ns).get()).get(),
                                      NSNumber::cls().numberWithInt(3).get() })
                            .get());
    };
    EXPECT_TRUE(make()->isEqualToData(make().get()));
}

TEST(NSKeyedArchiver, AnObjectIsWrittenOnce)
{
    const Ref<ArchivedNode> node = makeNode("a"_ns);
    const Ref<NSArray> back = roundTrip(makeArray({ node.get(), node.get() }));
    EXPECT_EQ(back->objectAtIndex(0), back->objectAtIndex(1));
}

TEST(NSKeyedArchiver, EqualObjectsStayTwo)
{
    const Ref<NSArray> back
        = roundTrip(makeArray({ makeNode("a"_ns).get(), makeNode("a"_ns).get() }));
    EXPECT_NE(back->objectAtIndex(0), back->objectAtIndex(1));
}

TEST(NSKeyedArchiver, CyclesAreKept)
{
    const Ref<ArchivedNode> first = makeNode("first"_ns);
    first->next_ = makeNode("second"_ns, first.get());
    const Ref<ArchivedNode> back = roundTrip(first);
    EXPECT_EQ(back->next_->next_, back);
    first->next_->next_ = nullptr;
    back->next_->next_ = nullptr;
}

TEST(NSKeyedArchiver, AnArrayMayHoldItself)
{
    const Ref<NSMutableArray> array = make<NSMutableArray>();
    array->addObject(array.get());
    const Ref<NSMutableArray> back = roundTrip(array);
    EXPECT_EQ(back->objectAtIndex(0), back);
    array->removeAllObjects();
    back->removeAllObjects();
}

TEST(NSKeyedArchiver, AConditionalObjectIsNilUnlessItIsEncodedElsewhere)
{
    const Ref<ArchivedNode> node = makeNode("a"_ns);
    node->known_ = makeNode("b"_ns);
    EXPECT_FALSE(roundTrip(node)->known_);
    node->next_ = cast<ArchivedNode>(node->known_);
    const Ref<ArchivedNode> back = roundTrip(node);
    EXPECT_EQ(back->known_, back->next_);
}

TEST(NSKeyedArchiver, AConditionalObjectMayBeEncodedLater)
{
    const Ref<ArchivedNode> node = makeNode("a"_ns);
    node->known_ = makeNode("b"_ns);
    const Ref<NSArray> back = roundTrip(makeArray({ node.get(), node->known_.get() }));
    EXPECT_EQ(
        static_cast<ArchivedNode*>(back->objectAtIndex(0).get())->known_, back->objectAtIndex(1));
}

TEST(NSKeyedArchiver, ASubstituteIsArchivedInstead)
{
    const Ref<ArchivedStandIn> standIn = make<ArchivedStandIn>();
    standIn->real_ = makeNode("real"_ns);
    const Ref<NSArray> back
        = roundTrip(makeArray({ standIn.get(), standIn->real_.get(), standIn.get() }));
    EXPECT_EQ(back->objectAtIndex(0), back->objectAtIndex(1));
    EXPECT_EQ(back->objectAtIndex(2), back->objectAtIndex(1));
    EXPECT_TRUE(back->objectAtIndex(0)->isMemberOfClass(ArchivedNode::cls()));
}

TEST(NSKeyedArchiver, ASubstituteIsArchivedInsteadAfterAConditionalMention)
{
    const Ref<ArchivedStandIn> standIn = make<ArchivedStandIn>();
    standIn->real_ = makeNode("real"_ns);
    const Ref<ArchivedNode> node = makeNode("first"_ns);
    node->known_ = standIn; // archived only if somebody else does
    const Ref<NSArray> back = roundTrip(makeArray({ node.get(), standIn.get() }));
    EXPECT_TRUE(back->objectAtIndex(1)->isMemberOfClass(ArchivedNode::cls()));
    EXPECT_EQ(
        static_cast<ArchivedNode*>(back->objectAtIndex(0).get())->known_, back->objectAtIndex(1));
}

TEST(NSKeyedArchiver, ANilSubstituteArchivesNil)
{
    EXPECT_FALSE(roundTrip(make<ArchivedStandIn>()));
}

TEST(NSKeyedArchiver, TwoThatStandForEachOtherEnd)
{
    const Ref<ArchivedStandIn> a = make<ArchivedStandIn>();
    const Ref<ArchivedStandIn> b = make<ArchivedStandIn>();
    a->real_ = b;
    b->real_ = a;
    EXPECT_TRUE(roundTrip(a)->isMemberOfClass(ArchivedStandIn::cls()));
    a->real_ = nullptr;
    b->real_ = nullptr;
}

TEST(NSKeyedArchiver, AnObjectMayBeArchivedAsAnotherClass)
{
    const Ref<ArchivedAsNode> node = make<ArchivedAsNode>();
    node->name_ = "a"_ns;
    const Ref<ArchivedAsNode> back = roundTrip(node);
    EXPECT_TRUE(back->isMemberOfClass(ArchivedNode::cls()));
    EXPECT_EQ(utf8(back->name_), "a");
}

TEST(NSKeyedArchiver, FallbacksAreWritten)
{
    EXPECT_NE(structure(archived(make<ArchivedWithFallback>().get()))
                  .find("$classhints=(Nobody,ArchivedNode);"),
        std::string::npos);
}

TEST(NSKeyedArchiver, KeysThatBeginWithADollarAreEscapedAndTheLastOfTwoStays)
{
    const Ref<ArchivedOddly> odd = make<ArchivedOddly>();
    EXPECT_NE(structure(archived(odd.get())).find("$$class="), std::string::npos);
    EXPECT_EQ(roundTrip(odd)->read_, "last dollar unkeyed again (nil)");
}

TEST(NSKeyedArchiver, TheLastOfTwoStaysAmongFewAndManyKeys)
{
    for (const int count : { 1, 2, 100, 128, 129, 400 }) {
        const Ref<NSKeyedArchiver> archiver
            = alloc<NSKeyedArchiver>()->initRequiringSecureCoding(true);
        const auto key = [](int i) { return stringFrom("key" + std::to_string(i)); };
        for (int i = 0; i < count; ++i)
            archiver->encodeInt_forKey(i, key(i).get());
        archiver->encodeInt_forKey(-1, key(count / 2).get());
        const Ref<NSKeyedUnarchiver> back
            = alloc<NSKeyedUnarchiver>()->initForReadingWithData(archiver->encodedData().get());
        for (int i = 0; i < count; ++i)
            EXPECT_EQ(back->decodeIntForKey(key(i).get()), i == count / 2 ? -1 : i) << count;
    }
}

TEST(NSKeyedArchiver, ScalarsComeBack)
{
    const Ref<ArchivedScalars> scalars = make<ArchivedScalars>();
    scalars->yes_ = true;
    scalars->whole_ = -7;
    scalars->small_ = 1 << 30;
    scalars->large_ = std::int64_t { -1 } << 62;
    scalars->single_ = 0.1f;
    scalars->real_ = 0.1;
    scalars->bytes_ = std::string("a\0b", 3);
    scalars->rect_ = NSMakeRect(1.5, 2, -3, 4e10);
    const Ref<ArchivedScalars> back = roundTrip(scalars);
    EXPECT_TRUE(back->yes_);
    EXPECT_EQ(back->whole_, -7);
    EXPECT_EQ(back->small_, 1 << 30);
    EXPECT_EQ(back->large_, std::int64_t { -1 } << 62);
    EXPECT_EQ(back->single_, 0.1f);
    EXPECT_EQ(back->real_, 0.1);
    EXPECT_EQ(back->bytes_, scalars->bytes_);
    EXPECT_TRUE(NSEqualRects(back->rect_, scalars->rect_));
}

TEST(NSKeyedArchiver, GeometryComesBackToTheLastBit)
{
    const NSRect rect = NSMakeRect(1.0 / 3, 1234567.89, 1e300 / 7, -5e-324);
    const Ref<ArchivedScalars> scalars = make<ArchivedScalars>();
    scalars->rect_ = rect;
    EXPECT_TRUE(NSEqualRects(roundTrip(scalars)->rect_, rect));
    const auto& values = NSValue::cls();
    EXPECT_TRUE(NSEqualRects(roundTrip(values.valueWithRect(rect))->rectValue(), rect));
    EXPECT_TRUE(NSEqualSizes(roundTrip(values.valueWithSize(rect.size))->sizeValue(), rect.size));
    EXPECT_TRUE(
        NSEqualPoints(roundTrip(values.valueWithPoint(rect.origin))->pointValue(), rect.origin));
}

TEST(NSKeyedArchiver, GeometryIsWrittenShortlyWhereThatTellsAll)
{
    const Ref<ArchivedScalars> scalars = make<ArchivedScalars>();
    scalars->rect_ = NSMakeRect(100000, 1e6, 0.1, -2.5);
    const Ref<NSData> data = NSKeyedArchiver::cls().archivedDataWithRootObject(scalars.get());
    const auto bytes = bytesOf(data.get());
    EXPECT_NE(std::string(bytes.begin(), bytes.end()).find("{{100000, 1e+06}, {0.1, -2.5}}"),
        std::string::npos);
}

TEST(NSKeyedArchiver, ClassesMayBeRenamed)
{
    const Ref<NSKeyedArchiver> archiver
        = alloc<NSKeyedArchiver>()->initRequiringSecureCoding(false);
    archiver->setClassName_forClass("Knot"_ns, ArchivedNode::cls());
    EXPECT_EQ(utf8(archiver->classNameForClass(ArchivedNode::cls())), "Knot");
    archiver->encodeObject_forKey(makeNode("a"_ns).get(), "root"_ns);
    EXPECT_NE(
        structure(archiver->encodedData()).find("{$classes=(Knot,NSObject);$classname=Knot;}"),
        std::string::npos);
}

TEST(NSKeyedArchiver, ClassesMayBeRenamedForEveryArchiver)
{
    const auto& archivers = NSKeyedArchiver::cls();
    archivers.setClassName_forClass("Knot"_ns, ArchivedNode::cls());
    const std::string text = structure(archived(makeNode("a"_ns).get()));
    EXPECT_EQ(utf8(archivers.classNameForClass(ArchivedNode::cls())), "Knot");
    archivers.setClassName_forClass(nullptr, ArchivedNode::cls());
    EXPECT_NE(text.find("$classname=Knot"), std::string::npos);
    EXPECT_FALSE(archivers.classNameForClass(ArchivedNode::cls()));
}

TEST(NSKeyedArchiver, TheListenerHearsOfEveryObjectAndMayChangeIt)
{
    const Ref<ArchiverListener> listener = make<ArchiverListener>();
    listener->from_ = "a"_ns;
    listener->to_ = "b"_ns;
    const Ref<NSKeyedArchiver> archiver
        = alloc<NSKeyedArchiver>()->initRequiringSecureCoding(false);
    archiver->setDelegate(listener.get());
    EXPECT_EQ(archiver->delegate(), listener);
    archiver->encodeObject_forKey("a"_ns, "root"_ns);
    archiver->encodeObject_forKey("a"_ns, "again"_ns);
    const Ref<NSData> data = archiver->encodedData();
    EXPECT_EQ(listener->log_, "will a\nreplace a by b\ndid b\nwill finish\ndid finish\n");
    EXPECT_EQ(textOf(NSKeyedUnarchiver::cls().unarchiveObjectWithData(data.get())), "b");
}

TEST(NSKeyedArchiver, TheListenerMayLeaveAnObjectOut)
{
    const Ref<ArchiverListener> listener = make<ArchiverListener>();
    listener->from_ = "a"_ns;
    const Ref<NSKeyedArchiver> archiver
        = alloc<NSKeyedArchiver>()->initRequiringSecureCoding(false);
    archiver->setDelegate(listener.get());
    archiver->encodeObject_forKey("a"_ns, "root"_ns);
    EXPECT_FALSE(NSKeyedUnarchiver::cls().unarchiveObjectWithData(archiver->encodedData().get()));
}

TEST(NSKeyedArchiver, WritesXmlWhenAsked)
{
    const Ref<NSMutableData> data = make<NSMutableData>();
    const Ref<NSKeyedArchiver> archiver
        = alloc<NSKeyedArchiver>()->initForWritingWithMutableData(data.get());
    archiver->setOutputFormat(NSPropertyListXMLFormat_v1_0);
    archiver->encodeObject_forKey(makeNode("a"_ns, makeNode("b"_ns).get()).get(), "root"_ns);
    EXPECT_EQ(data->length(), 0u);
    archiver->finishEncoding();
    const auto bytes = bytesOf(data.get());
    const std::string text(bytes.begin(), bytes.end());
    EXPECT_EQ(text.substr(0, 5), "<?xml");
    EXPECT_NE(text.find("<key>CF$UID</key>"), std::string::npos);
    const Ref<NSObject> back = NSKeyedUnarchiver::cls().unarchiveObjectWithData(data.get());
    EXPECT_EQ(utf8(static_cast<ArchivedNode*>(back.get())->next_->name_), "b");
}

TEST(NSKeyedArchiver, OtherFormatsAreRefused)
{
    const Ref<NSKeyedArchiver> archiver
        = alloc<NSKeyedArchiver>()->initRequiringSecureCoding(false);
    EXPECT_EQ(archiver->outputFormat(), NSPropertyListBinaryFormat_v1_0);
    EXPECT_EQ(raisedBy([&] { archiver->setOutputFormat(NSPropertyListOpenStepFormat); }),
        "NSInvalidArgumentException: *** -[NSKeyedArchiver setOutputFormat:]: unknown format 1");
}

TEST(NSKeyedArchiver, NothingFollowsTheEnd)
{
    const Ref<NSKeyedArchiver> archiver
        = alloc<NSKeyedArchiver>()->initRequiringSecureCoding(false);
    archiver->finishEncoding();
    archiver->finishEncoding();
    EXPECT_EQ(raisedBy([&] { archiver->encodeInt_forKey(1, "k"_ns); }),
        "NSInvalidArchiveOperationException: *** -[NSKeyedArchiver encodeObject:forKey:]: archive "
        "already finished, cannot encode anything more");
}

TEST(NSKeyedArchiver, ANilKeyIsRefused)
{
    const Ref<NSKeyedArchiver> archiver
        = alloc<NSKeyedArchiver>()->initRequiringSecureCoding(false);
    EXPECT_NE(raisedBy([&] { archiver->encodeObject_forKey("a"_ns, nullptr); }), "");
}

TEST(NSKeyedArchiver, SecureCodingCanBeRequired)
{
    Ref<NSError> error;
    const auto& archivers = NSKeyedArchiver::cls();
    EXPECT_TRUE(archivers.archivedDataWithRootObject_requiringSecureCoding_error(
        makeNode("a"_ns).get(), true, &error));
    EXPECT_FALSE(archivers.archivedDataWithRootObject_requiringSecureCoding_error(
        make<ArchivedPlainly>().get(), true, &error));
    EXPECT_EQ(error->code(), NSCoderInvalidValueError);
    EXPECT_TRUE(archivers.archivedDataWithRootObject_requiringSecureCoding_error(
        make<ArchivedPlainly>().get(), false, nullptr));
}

TEST(NSKeyedArchiver, AFileIsWrittenAndReadBack)
{
    const test::TemporaryFolder folder;
    const Ref<NSString> path = stringFrom((folder.path() / "node.archive").string());
    EXPECT_TRUE(
        NSKeyedArchiver::cls().archiveRootObject_toFile(makeNode("a"_ns).get(), path.get()));
    const Ref<NSObject> back = NSKeyedUnarchiver::cls().unarchiveObjectWithFile(path.get());
    EXPECT_EQ(utf8(static_cast<ArchivedNode*>(back.get())->name_), "a");
    EXPECT_FALSE(NSKeyedUnarchiver::cls().unarchiveObjectWithFile("/nowhere/at/all"_ns));
}

TEST(NSKeyedArchiver, AnObjectThatRaisesLeavesTheArchiverUsable)
{
    const Ref<NSKeyedArchiver> archiver
        = alloc<NSKeyedArchiver>()->initRequiringSecureCoding(false);
    EXPECT_NE(raisedBy([&] {
        archiver->encodeObject_forKey(
            makeArray({ "a"_ns, NSValue::cls().valueOf(NSNotFound).get() }).get(), "bad"_ns);
    }),
        "");
    archiver->encodeObject_forKey("a"_ns, "root"_ns);
    EXPECT_EQ(
        textOf(NSKeyedUnarchiver::cls().unarchiveObjectWithData(archiver->encodedData().get())),
        "a");
}
