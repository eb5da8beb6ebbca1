// SPDX-License-Identifier: Apache-2.0
#include "foundation/NSKeyedUnarchiver.h"

#include "KeyedArchiveHosts.h"
#include "foundation/NSData.h"
#include "foundation/NSDate.h"
#include "foundation/NSError.h"
#include "foundation/NSMutableDictionary.h"
#include "foundation/NSNumber.h"
#include "foundation/NSSet.h"
#include "runtime/Runtime.h"
#include "support/Strings.h"

using namespace brindle;

namespace brindle {

/// Comes back as another object, by `awakeAfterUsingCoder:`.
class ArchivedAwakening : public ArchivedNode {
    BRINDLE_OBJECT(ArchivedAwakening, ArchivedNode)
};
template <> struct ArchivedAwakening::Methods<struct Coding> {
    static Ref<NSObject> awake(ArchivedAwakening& self, NSCoder*) { return self.name_; }
    static void table(Builder& t) { t.methods({ { "awakeAfterUsingCoder:", imp<awake> } }); }
};
BRINDLE_RECORD(ArchivedAwakening, Coding)

/// Is decoded as its parent.
class ArchivedRetired : public ArchivedNode {
    BRINDLE_OBJECT(ArchivedRetired, ArchivedNode)
};
template <> struct ArchivedRetired::Methods<struct Coding> {
    static Class* successor(Class&) { return ArchivedNode::cls(); }
    static void table(Builder& t)
    {
        t.classMethods({ { "classForKeyedUnarchiver", imp<successor> } });
    }
};
BRINDLE_RECORD(ArchivedRetired, Coding)

/// Counts how many of it were ever made.
class ArchivedCounted : public NSObject {
    BRINDLE_OBJECT(ArchivedCounted, NSObject)

public:
    static inline int made = 0;
};
template <> struct ArchivedCounted::Methods<struct Coding> {
    static bool isSecure(Class&) { return true; }
    static Ref<NSObject> alloc(Class& self)
    {
        ++ArchivedCounted::made;
        return Ref<NSObject>::adopt(class_createInstance(&self));
    }
    static void encode(ArchivedCounted&, NSCoder*) { }
    static Ref<NSObject> initWithCoder(ArchivedCounted& self, NSCoder*) { return &self; }
    static void table(Builder& t)
    {
        t.classMethods({ { "supportsSecureCoding", imp<isSecure> }, { "alloc", imp<alloc> } });
        t.methods({
            { "encodeWithCoder:", imp<encode> },
            { "initWithCoder:", imp<initWithCoder> },
        });
    }
};
BRINDLE_RECORD(ArchivedCounted, Coding)

/// Finds that what it reads is not usable.
class ArchivedBadly : public NSObject {
    BRINDLE_OBJECT(ArchivedBadly, NSObject)
};
template <> struct ArchivedBadly::Methods<struct Coding> {
    static void encode(ArchivedBadly&, NSCoder*) { }
    static Ref<NSObject> initWithCoder(ArchivedBadly&, NSCoder* coder)
    {
        coder->failWithError(
            NSError::cls().errorWithDomain_code_userInfo("Songs"_ns, 7, nullptr).get());
        return nullptr;
    }
    static void table(Builder& t)
    {
        t.methods({
            { "encodeWithCoder:", imp<encode> },
            { "initWithCoder:", imp<initWithCoder> },
        });
    }
};
BRINDLE_RECORD(ArchivedBadly, Coding)

/// Writes down what an unarchiver tells it, and changes what was decoded.
class UnarchiverListener : public NSObject {
    BRINDLE_OBJECT(UnarchiverListener, NSObject)

public:
    std::string log_;
    Class* substitute_ = nullptr;
};
template <> struct UnarchiverListener::Methods<struct Listening> {
    static Class* cannot(UnarchiverListener& self, NSCoder*, NSString* name, NSArray* chain)
    {
        self.log_ += "cannot " + utf8(name) + " of " + utf8(chain->componentsJoinedByString("<"_ns))
            + "\n";
        return self.substitute_;
    }
    static Ref<NSObject> did(UnarchiverListener& self, NSCoder*, NSObject* object)
    {
        const bool isText = object->isKindOfClass(NSString::cls());
        self.log_ += "did " + (isText ? textOf(object) : "node") + "\n";
        return textOf(object) == "a" ? Ref<NSObject>("A"_ns) : Ref<NSObject>(object);
    }
    static void replace(UnarchiverListener& self, NSCoder*, NSObject* object, NSObject* other)
    {
        self.log_ += "replace " + textOf(object) + " by " + textOf(other) + "\n";
    }
    static void willFinish(UnarchiverListener& self, NSCoder*) { self.log_ += "will finish\n"; }
    static void didFinish(UnarchiverListener& self, NSCoder*) { self.log_ += "did finish\n"; }
    static void table(Builder& t)
    {
        t.methods({
            { "unarchiver:cannotDecodeObjectOfClassName:originalClasses:", imp<cannot> },
            { "unarchiver:didDecodeObject:", imp<did> },
            { "unarchiver:willReplaceObject:withObject:", imp<replace> },
            { "unarchiverWillFinish:", imp<willFinish> },
            { "unarchiverDidFinish:", imp<didFinish> },
        });
    }
};
BRINDLE_RECORD(UnarchiverListener, Listening)

}

namespace {

Ref<NSData> archiveOf(NSObject* root)
{
    return NSKeyedArchiver::cls().archivedDataWithRootObject(root);
}
Ref<NSObject> unarchived(const Ref<NSData>& data)
{
    return NSKeyedUnarchiver::cls().unarchiveObjectWithData(data.get());
}
Ref<NSKeyedUnarchiver> reading(NSObject* root)
{
    return alloc<NSKeyedUnarchiver>()->initForReadingWithData(archiveOf(root).get());
}
Ref<NSData> dataOf(std::string_view text)
{
    return NSData::cls().dataWithBytes_length(text.data(), text.size());
}
/// Answers an archive whose node has the name of another class.
Ref<NSData> archivedAs(NSString* name)
{
    const Ref<NSKeyedArchiver> archiver
        = alloc<NSKeyedArchiver>()->initRequiringSecureCoding(false);
    archiver->setClassName_forClass(name, ArchivedNode::cls());
    archiver->encodeObject_forKey(makeNode("a"_ns).get(), "root"_ns);
    return archiver->encodedData();
}

}

TEST(NSKeyedUnarchiver, NilDataIsNil)
{
    EXPECT_FALSE(unarchived(nullptr));
    EXPECT_FALSE(unarchived(archiveOf(nullptr)));
}

TEST(NSKeyedUnarchiver, RubbishIsIncomprehensible)
{
    EXPECT_EQ(raisedBy([] { unarchived(dataOf("rubbish of some length")); }),
        "NSInvalidArgumentException: *** -[NSKeyedUnarchiver initForReadingWithData:]: "
        "incomprehensible archive (0x72, 0x75, 0x62, 0x62, 0x69, 0x73, 0x68, 0x20)");
    EXPECT_EQ(raisedBy([] { unarchived(dataOf("ab")); }),
        "NSInvalidArgumentException: *** -[NSKeyedUnarchiver initForReadingWithData:]: "
        "incomprehensible archive (0x61, 0x62)");
}

TEST(NSKeyedUnarchiver, EmptyAndAbsentDataAreNoArchiveToRead)
{
    EXPECT_NE(raisedBy([] { unarchived(dataOf("")); }), "");
    EXPECT_NE(raisedBy([] { alloc<NSKeyedUnarchiver>()->initForReadingWithData(nullptr); }), "");
}

TEST(NSKeyedUnarchiver, AnUnknownClassIsNamed)
{
    EXPECT_EQ(raisedBy([] { unarchived(archivedAs("Nobody"_ns)); }),
        "NSInvalidUnarchiveOperationException: *** -[NSKeyedUnarchiver decodeObjectForKey:]: "
        "cannot "
        "decode object of class (Nobody) for key (root); the class may be defined in source code "
        "or "
        "a library that is not linked");
}

TEST(NSKeyedUnarchiver, ClassesThatOnlyTheRuntimeMakesAreRefused)
{
    EXPECT_NE(raisedBy([] { unarchived(archivedAs("Protocol"_ns)); }), "");
}

TEST(NSKeyedUnarchiver, AnyClassMayBeNamed)
{
    std::size_t count = 0;
    for (auto* at = tables::__start_brindle_records; at != tables::__stop_brindle_records; ++at) {
        if (!(*at)->parent)
            continue; // an extension
        ++count;
        const Ref<NSString> name = stringFrom(std::string_view((*at)->name));
        // Nothing is asked of what comes back, or of the exception, but that the process goes on.
        static_cast<void>(raisedBy([&] { unarchived(archivedAs(name.get())); }));
    }
    EXPECT_GT(count, 50u);
}

TEST(NSKeyedUnarchiver, ANameMayLeadToAnotherClass)
{
    const Ref<NSKeyedUnarchiver> unarchiver
        = alloc<NSKeyedUnarchiver>()->initForReadingWithData(archivedAs("Knot"_ns).get());
    unarchiver->setClass_forClassName(ArchivedNode::cls(), "Knot"_ns);
    EXPECT_EQ(unarchiver->classForClassName("Knot"_ns), ArchivedNode::cls());
    EXPECT_TRUE(unarchiver->decodeObjectForKey("root"_ns)->isMemberOfClass(ArchivedNode::cls()));
}

TEST(NSKeyedUnarchiver, ANameMayLeadToAnotherClassForEveryUnarchiver)
{
    const auto& unarchivers = NSKeyedUnarchiver::cls();
    unarchivers.setClass_forClassName(ArchivedNode::cls(), "Knot"_ns);
    const Ref<NSObject> node = unarchived(archivedAs("Knot"_ns));
    unarchivers.setClass_forClassName(nullptr, "Knot"_ns);
    EXPECT_TRUE(node->isMemberOfClass(ArchivedNode::cls()));
    EXPECT_EQ(unarchivers.classForClassName("Knot"_ns), nullptr);
}

TEST(NSKeyedUnarchiver, AClassMayNameItsSuccessor)
{
    EXPECT_TRUE(unarchived(archivedAs("ArchivedRetired"_ns))->isMemberOfClass(ArchivedNode::cls()));
}

TEST(NSKeyedUnarchiver, AnObjectMayComeBackAsAnother)
{
    const Ref<NSObject> back = unarchived(archivedAs("ArchivedAwakening"_ns));
    EXPECT_EQ(textOf(back), "a");
}

TEST(NSKeyedUnarchiver, TheListenerHearsOfEveryObjectAndMayChangeIt)
{
    const Ref<UnarchiverListener> listener = make<UnarchiverListener>();
    const Ref<NSKeyedUnarchiver> unarchiver = reading(makeNode("a"_ns).get());
    unarchiver->setDelegate(listener.get());
    const Ref<NSObject> node = unarchiver->decodeObjectForKey("root"_ns);
    unarchiver->finishDecoding();
    EXPECT_EQ(listener->log_, "did a\nreplace a by A\ndid node\nwill finish\ndid finish\n");
    EXPECT_EQ(utf8(static_cast<ArchivedNode*>(node.get())->name_), "A");
}

TEST(NSKeyedUnarchiver, TheListenerMayKnowAClass)
{
    const Ref<UnarchiverListener> listener = make<UnarchiverListener>();
    listener->substitute_ = ArchivedNode::cls();
    const Ref<NSKeyedUnarchiver> unarchiver
        = alloc<NSKeyedUnarchiver>()->initForReadingWithData(archivedAs("Nobody"_ns).get());
    unarchiver->setDelegate(listener.get());
    EXPECT_TRUE(unarchiver->decodeObjectForKey("root"_ns));
    EXPECT_EQ(listener->log_.substr(0, 27), "cannot Nobody of Nobody<NSO");
}

TEST(NSKeyedUnarchiver, MissingKeysAreNil)
{
    const Ref<NSKeyedUnarchiver> unarchiver = reading("a"_ns);
    EXPECT_TRUE(unarchiver->containsValueForKey("root"_ns));
    EXPECT_FALSE(unarchiver->containsValueForKey("none"_ns));
    EXPECT_FALSE(unarchiver->decodeObjectForKey("none"_ns));
    EXPECT_FALSE(unarchiver->decodeObjectForKey(nullptr));
    EXPECT_EQ(unarchiver->decodeIntForKey("none"_ns), 0);
}

TEST(NSKeyedUnarchiver, ManyKeysAreFoundInAnyOrder)
{
    constexpr int kCount = 1000;
    const auto key = [](int i) {
        constexpr const char* kKinds[] = { "key ", "$key ", "Schl\u00fcssel ", "\u9375 " };
        return stringFrom(kKinds[i % 4] + std::to_string(i));
    };
    const Ref<NSKeyedArchiver> archiver
        = alloc<NSKeyedArchiver>()->initRequiringSecureCoding(false);
    for (int i = 0; i < kCount; ++i)
        archiver->encodeInteger_forKey(i, key(i).get());
    const Ref<NSKeyedUnarchiver> unarchiver
        = alloc<NSKeyedUnarchiver>()->initForReadingWithData(archiver->encodedData().get());
    for (int i = kCount; i-- > 0;)
        EXPECT_EQ(unarchiver->decodeIntegerForKey(key(i).get()), i);
    EXPECT_FALSE(unarchiver->containsValueForKey(key(kCount).get()));
}

TEST(NSKeyedUnarchiver, AnArchiveWithoutARootIsRefused)
{
    const Ref<NSKeyedArchiver> archiver
        = alloc<NSKeyedArchiver>()->initRequiringSecureCoding(false);
    archiver->encodeObject_forKey("a"_ns, "other"_ns);
    EXPECT_EQ(raisedBy([&] { unarchived(archiver->encodedData()); }),
        "NSInvalidUnarchiveOperationException: *** -[NSKeyedUnarchiver decodeObjectForKey:]: the "
        "archive has no value for key (root)");
}

TEST(NSKeyedUnarchiver, NothingIsDecodedAfterTheEnd)
{
    const Ref<NSKeyedUnarchiver> unarchiver = reading("a"_ns);
    unarchiver->finishDecoding();
    EXPECT_NE(raisedBy([&] { unarchiver->decodeObjectForKey("root"_ns); }), "");
}

TEST(NSKeyedUnarchiver, NumbersAreReadAsOtherTypesWhenTheyFit)
{
    const Ref<NSKeyedArchiver> archiver
        = alloc<NSKeyedArchiver>()->initRequiringSecureCoding(false);
    archiver->encodeInt64_forKey(5000000000, "large"_ns);
    archiver->encodeDouble_forKey(2.75, "real"_ns);
    archiver->encodeBool_forKey(true, "yes"_ns);
    archiver->encodeObject_forKey(NSNumber::cls().numberWithInt(3).get(), "object"_ns);
    archiver->encodeObject_forKey("a"_ns, "text"_ns);
    const Ref<NSKeyedUnarchiver> unarchiver
        = alloc<NSKeyedUnarchiver>()->initForReadingWithData(archiver->encodedData().get());
    EXPECT_EQ(unarchiver->decodeInt64ForKey("large"_ns), 5000000000);
    EXPECT_EQ(unarchiver->decodeDoubleForKey("large"_ns), 5e9);
    EXPECT_EQ(raisedBy([&] { unarchiver->decodeInt32ForKey("large"_ns); }),
        "NSRangeException: *** -[NSKeyedUnarchiver decodeInt32ForKey:]: value (5000000000) for key "
        "(large) too large to fit in a 32-bit integer");
    EXPECT_EQ(unarchiver->decodeIntForKey("real"_ns), 2);
    EXPECT_EQ(unarchiver->decodeIntForKey("yes"_ns), 1);
    EXPECT_EQ(unarchiver->decodeIntForKey("object"_ns), 3);
    EXPECT_TRUE(unarchiver->decodeBoolForKey("real"_ns));
    EXPECT_EQ(raisedBy([&] { unarchiver->decodeBoolForKey("text"_ns); }),
        "NSInvalidUnarchiveOperationException: *** -[NSKeyedUnarchiver decodeObjectForKey:]: value "
        "for key (text) is not a boolean");
    EXPECT_EQ(textOf(unarchiver->decodeObjectForKey("large"_ns)), "5000000000");
}

// ---- secure coding

TEST(NSKeyedUnarchiver, AClassIsIgnoredUnlessSecureCodingIsRequired)
{
    EXPECT_EQ(textOf(reading("a"_ns)->decodeObjectOfClass_forKey(NSNumber::cls(), "root"_ns)), "a");
}

TEST(NSKeyedUnarchiver, AClassThatIsNotAllowedIsRefused)
{
    const Ref<NSKeyedUnarchiver> unarchiver = reading("a"_ns);
    unarchiver->setRequiresSecureCoding(true);
    EXPECT_TRUE(unarchiver->requiresSecureCoding());
    EXPECT_EQ(raisedBy([&] { unarchiver->decodeObjectOfClass_forKey(NSNumber::cls(), "root"_ns); }),
        "NSInvalidUnarchiveOperationException: *** -[NSKeyedUnarchiver decodeObjectForKey:]: value "
        "for key (root) was of unexpected class 'NSString'; allowed classes are: 'NSNumber'");
    EXPECT_EQ(textOf(unarchiver->decodeObjectOfClass_forKey(NSString::cls(), "root"_ns)), "a");
}

TEST(NSKeyedUnarchiver, NothingOfAForeignClassIsBuilt)
{
    const Ref<NSData> data = archiveOf(make<ArchivedCounted>().get());
    ArchivedCounted::made = 0;
    Ref<NSError> error;
    EXPECT_FALSE(NSKeyedUnarchiver::cls().unarchivedObjectOfClass_fromData_error(
        NSString::cls(), data.get(), &error));
    EXPECT_EQ(ArchivedCounted::made, 0);
    EXPECT_EQ(error->code(), NSCoderReadCorruptError);
    EXPECT_TRUE(NSKeyedUnarchiver::cls().unarchivedObjectOfClass_fromData_error(
        ArchivedCounted::cls(), data.get(), &error));
    EXPECT_EQ(ArchivedCounted::made, 1);
}

TEST(NSKeyedUnarchiver, TheClassOfAValueIsToldBeforeAnythingIsBuilt)
{
    const Ref<NSData> data = archiveOf(make<ArchivedCounted>().get());
    ArchivedCounted::made = 0;
    const Ref<NSKeyedUnarchiver> unarchiver
        = alloc<NSKeyedUnarchiver>()->initForReadingWithData(data.get());
    EXPECT_EQ(unarchiver->classOfValueForKey("root"_ns), ArchivedCounted::cls());
    EXPECT_EQ(unarchiver->classOfValueForKey("none"_ns), nullptr);
    EXPECT_EQ(ArchivedCounted::made, 0);
    EXPECT_EQ(reading("a"_ns)->classOfValueForKey("root"_ns), NSString::cls());
    EXPECT_EQ(reading(NSNumber::cls().numberWithBool(true).get())->classOfValueForKey("root"_ns),
        NSNumber::cls());
    EXPECT_EQ(reading(make<NSMutableDictionary>().get())->classOfValueForKey("root"_ns),
        NSMutableDictionary::cls());
    EXPECT_EQ(reading(nullptr)->classOfValueForKey("root"_ns), nullptr);
}

TEST(NSKeyedUnarchiver, ASecureCoderLeavesNothingToItsCallers)
{
    const Ref<NSKeyedUnarchiver> unarchiver = reading("a"_ns);
    unarchiver->setRequiresSecureCoding(true);
    EXPECT_EQ(unarchiver->classOfValueForKey("root"_ns), nullptr);
}

TEST(NSKeyedUnarchiver, TheClassOfAValueThatIsReplacedIsNotTold)
{
    const Ref<NSKeyedUnarchiver> unarchiver = alloc<NSKeyedUnarchiver>()->initForReadingWithData(
        archivedAs("ArchivedAwakening"_ns).get());
    EXPECT_EQ(unarchiver->classOfValueForKey("root"_ns), nullptr);
}

TEST(NSKeyedUnarchiver, ElementsMustBeAllowedToo)
{
    const Ref<NSData> data = archiveOf(makeArray({ "a"_ns }).get());
    const auto& unarchivers = NSKeyedUnarchiver::cls();
    EXPECT_FALSE(
        unarchivers.unarchivedObjectOfClass_fromData_error(NSArray::cls(), data.get(), nullptr));
    const Ref<NSSet> classes = makeSet({ NSArray::cls(), NSString::cls() });
    EXPECT_TRUE(
        unarchivers.unarchivedObjectOfClasses_fromData_error(classes.get(), data.get(), nullptr));
}

TEST(NSKeyedUnarchiver, AmongAllowedClassesANameIsAnError)
{
    const Ref<NSData> data = archiveOf(NSDate::cls().date().get());
    Ref<NSError> error;
    EXPECT_FALSE(NSKeyedUnarchiver::cls().unarchivedObjectOfClasses_fromData_error(
        makeSet({ "NSString"_ns }).get(), data.get(), &error));
    EXPECT_NE(textOf(error).find("NSString is no class"), std::string::npos) << textOf(error);
}

TEST(NSKeyedUnarchiver, AnObjectAllowsTheClassesItAsksForItself)
{
    const Ref<NSData> data = archiveOf(makeNode("a"_ns, makeNode("b"_ns).get()).get());
    EXPECT_TRUE(NSKeyedUnarchiver::cls().unarchivedObjectOfClass_fromData_error(
        ArchivedNode::cls(), data.get(), nullptr));
}

TEST(NSKeyedUnarchiver, AClassWithoutSecureCodingIsRefused)
{
    const Ref<NSData> data = archiveOf(make<ArchivedPlainly>().get());
    Ref<NSError> error;
    EXPECT_FALSE(NSKeyedUnarchiver::cls().unarchivedObjectOfClass_fromData_error(
        ArchivedPlainly::cls(), data.get(), &error));
    EXPECT_TRUE(unarchived(data));
}

TEST(NSKeyedUnarchiver, ASharedObjectIsCheckedEachTime)
{
    const Ref<NSKeyedArchiver> archiver = alloc<NSKeyedArchiver>()->initRequiringSecureCoding(true);
    const Ref<ArchivedNode> node = makeNode("a"_ns);
    archiver->encodeObject_forKey(node.get(), "one"_ns);
    archiver->encodeObject_forKey(node.get(), "two"_ns);
    const Ref<NSKeyedUnarchiver> unarchiver
        = alloc<NSKeyedUnarchiver>()->initForReadingWithData(archiver->encodedData().get());
    unarchiver->setRequiresSecureCoding(true);
    EXPECT_TRUE(unarchiver->decodeObjectOfClass_forKey(ArchivedNode::cls(), "one"_ns));
    EXPECT_NE(
        raisedBy([&] { unarchiver->decodeObjectOfClass_forKey(NSString::cls(), "two"_ns); }), "");
}

TEST(NSKeyedUnarchiver, PropertyListsAreDecodedSecurely)
{
    const Ref<NSDictionary> list = makeDictionary({ { "k"_ns, makeArray({ "a"_ns }).get() } });
    const Ref<NSKeyedUnarchiver> unarchiver = reading(list.get());
    unarchiver->setRequiresSecureCoding(true);
    EXPECT_TRUE(unarchiver->decodePropertyListForKey("root"_ns)->isEqual(list.get()));
    EXPECT_NE(raisedBy([] {
        const Ref<NSKeyedUnarchiver> other = reading(makeNode("a"_ns).get());
        other->setRequiresSecureCoding(true);
        other->decodePropertyListForKey("root"_ns);
    }),
        "");
}

TEST(NSKeyedUnarchiver, TheAllowedClassesCanBeAskedFor)
{
    const Ref<NSKeyedUnarchiver> unarchiver = reading("a"_ns);
    EXPECT_FALSE(unarchiver->allowedClasses());
    unarchiver->setRequiresSecureCoding(true);
    EXPECT_EQ(unarchiver->allowedClasses()->count(), 0u);
}

// ---- errors instead of exceptions

TEST(NSKeyedUnarchiver, TheNewerBeginningIsSecureAndKeepsErrors)
{
    Ref<NSError> error;
    EXPECT_FALSE(
        alloc<NSKeyedUnarchiver>()->initForReadingFromData_error(dataOf("x").get(), &error));
    EXPECT_EQ(error->code(), NSCoderReadCorruptError);
    const Ref<NSKeyedUnarchiver> unarchiver
        = alloc<NSKeyedUnarchiver>()->initForReadingFromData_error(archiveOf("a"_ns).get(), &error);
    EXPECT_TRUE(unarchiver->requiresSecureCoding());
    EXPECT_EQ(unarchiver->decodingFailurePolicy(), NSDecodingFailurePolicySetErrorAndReturn);
    EXPECT_FALSE(unarchiver->decodeObjectOfClass_forKey(NSNumber::cls(), "root"_ns));
    EXPECT_TRUE(unarchiver->error());
    EXPECT_FALSE(unarchiver->decodeObjectOfClass_forKey(NSString::cls(), "root"_ns));
}

TEST(NSKeyedUnarchiver, ATopLevelObjectComesWithAnError)
{
    Ref<NSError> error;
    const auto& unarchivers = NSKeyedUnarchiver::cls();
    EXPECT_FALSE(
        unarchivers.unarchiveTopLevelObjectWithData_error(dataOf("rubbish").get(), &error));
    EXPECT_EQ(error->code(), NSCoderReadCorruptError);
    EXPECT_EQ(
        textOf(unarchivers.unarchiveTopLevelObjectWithData_error(archiveOf("a"_ns).get(), nullptr)),
        "a");
}

TEST(NSKeyedUnarchiver, AnObjectMayRefuseWhatItReads)
{
    const Ref<NSData> data = archiveOf(make<ArchivedBadly>().get());
    EXPECT_NE(raisedBy([&] { unarchived(data); }), "");
    const Ref<NSKeyedUnarchiver> unarchiver
        = alloc<NSKeyedUnarchiver>()->initForReadingWithData(data.get());
    unarchiver->setDecodingFailurePolicy(NSDecodingFailurePolicySetErrorAndReturn);
    EXPECT_FALSE(unarchiver->decodeObjectForKey("root"_ns));
    EXPECT_EQ(utf8(unarchiver->error()->domain()), "Songs");
}
