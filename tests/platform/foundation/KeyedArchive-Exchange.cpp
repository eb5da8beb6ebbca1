// SPDX-License-Identifier: Apache-2.0
// Archives go to another program, which knows property lists only, and come from it.

#include "KeyedArchiveHosts.h"
#include "foundation/NSData.h"
#include "foundation/NSDate.h"
#include "foundation/NSDictionary.h"
#include "foundation/NSIndexSet.h"
#include "foundation/NSMutableArray.h"
#include "foundation/NSMutableString.h"
#include "foundation/NSNull.h"
#include "foundation/NSNumber.h"
#include "foundation/NSPropertyListSerialization.h"
#include "foundation/NSSet.h"
#include "support/Python.h"
#include "support/Strings.h"

using namespace brindle;
using namespace brindle::test;

namespace {

/// Writes an archive's objects as text, each with its class, references followed.
constexpr const char* kShow = R"(
import plistlib
archive = plistlib.load(open('in', 'rb'))
objects = archive['$objects']
def number(value):
    if isinstance(value, plistlib.UID): return value.data
    if isinstance(value, dict) and list(value) == ['CF$UID']: return value['CF$UID']
    return None
def show(value):
    if number(value) is not None: return show(objects[number(value)]) if number(value) else 'nil'
    if isinstance(value, list): return '[' + ' '.join(map(show, value)) + ']'
    if not isinstance(value, dict): return repr(value)
    name = objects[number(value['$class'])]['$classname']
    fields = [key + '=' + show(value[key]) for key in value if key != '$class']
    return name + '(' + ' '.join(fields) + ')'
out = open('out', 'w')
out.write(str(archive['$version']) + ' ' + archive['$archiver'] + ' ' + objects[0] + '\n')
out.write(show(archive['$top']['root']))
)";

/// Makes an archive in a format; `uid` makes a reference.
std::string maker(const char* format, const char* uid)
{
    return std::string("import plistlib, datetime\nuid = ") + uid + R"(
def cls(*names): return {'$classname': names[0], '$classes': list(names)}
objects = ['$null',
    {'$class': uid(2), 'NS.objects': [uid(n) for n in (3, 4, 5, 7, 9, 11, 13, 3, 15)]},
    cls('NSMutableArray', 'NSArray', 'NSObject'),
    'text', 42,
    {'$class': uid(6), 'NS.keys': [uid(3)], 'NS.objects': [uid(4)]}, cls('NSDictionary', 'NSObject'),
    {'$class': uid(8), 'NS.time': 0.5}, cls('NSDate', 'NSObject'),
    {'$class': uid(10), 'NS.special': 4, 'NS.rangeval.location': 3, 'NS.rangeval.length': 4},
    cls('NSValue', 'NSObject'),
    {'$class': uid(12), 'NS.string': 'changing'}, cls('NSMutableString', 'NSString', 'NSObject'),
    {'$class': uid(14), 'NSRangeCount': 2, 'NSRangeData': b'\x05\x03\xf4\x03\x01'},
    cls('NSIndexSet', 'NSObject'),
    True]
archive = {'$version': 100000, '$archiver': 'NSKeyedArchiver', '$top': {'root': uid(1)}, '$objects': objects}
plistlib.dump(archive, open('out', 'wb'), fmt=plistlib.)"
        + format + ")\n";
}

std::string bytesIn(NSPropertyListFormat format, NSObject* root)
{
    const Ref<NSKeyedArchiver> archiver
        = alloc<NSKeyedArchiver>()->initRequiringSecureCoding(false);
    archiver->setOutputFormat(format);
    archiver->encodeObject_forKey(root, "root"_ns);
    const Ref<NSData> data = archiver->encodedData();
    const auto bytes = bytesOf(data.get());
    return { bytes.begin(), bytes.end() };
}
Ref<NSObject> unarchived(const std::string& bytes)
{
    return NSKeyedUnarchiver::cls().unarchiveObjectWithData(
        NSData::cls().dataWithBytes_length(bytes.data(), bytes.size()).get());
}

Ref<NSArray> everything()
{
    const auto& values = NSValue::cls();
    return makeArray({ makeNode("a"_ns, makeNode("grün"_ns).get()).get(),
        makeDictionary({ { "k"_ns, NSNumber::cls().numberWithBool(true).get() } }).get(),
        makeSet({ "s"_ns }).get(), NSMutableString::cls().stringWithString("m"_ns).get(),
        NSMutableData::cls().dataWithBytes_length("abc", 3).get(),
        NSData::cls().dataWithBytes_length("abc", 3).get(),
        NSDate::cls().dateWithTimeIntervalSinceReferenceDate(1.5).get(),
        values.valueWithRect(NSMakeRect(0, 0, 1, 1)).get(), values.valueWithRange({ 1, 2 }).get(),
        NSIndexSet::cls().indexSetWithIndexesInRange({ 5, 3 }).get(), NSNull::cls().null().get() });
}

constexpr const char* kShown
    = "100000 NSKeyedArchiver $null\n"
      "NSArray(NS.objects=[ArchivedNode(name='a' next=ArchivedNode(name='grün' next=nil known=nil) "
      "known=nil) NSDictionary(NS.keys=['k'] NS.objects=[True]) NSSet(NS.objects=['s']) "
      "NSMutableString(NS.string='m') NSMutableData(NS.data=b'abc') b'abc' NSDate(NS.time=1.5) "
      "NSValue(NS.special=3 NS.rectval='{{0, 0}, {1, 1}}') NSValue(NS.special=4 "
      "NS.rangeval='{1, 2}') NSIndexSet(NSRangeCount=1 NSLocation=5 NSLength=3) NSNull()])";

void expectWhatTheOtherMade(const Ref<NSObject>& root)
{
    ASSERT_TRUE(root);
    EXPECT_TRUE(root->isMemberOfClass(NSMutableArray::cls()));
    const auto* array = static_cast<NSArray*>(root.get());
    ASSERT_EQ(array->count(), 9u);
    EXPECT_EQ(textOf(array->objectAtIndex(0)), "text");
    EXPECT_EQ(textOf(array->objectAtIndex(1)), "42");
    EXPECT_TRUE(array->objectAtIndex(2)->isEqual(
        makeDictionary({ { "text"_ns, NSNumber::cls().numberWithInt(42).get() } }).get()));
    EXPECT_EQ(cast<NSDate>(array->objectAtIndex(3))->timeIntervalSinceReferenceDate(), 0.5);
    EXPECT_TRUE(NSEqualRanges(cast<NSValue>(array->objectAtIndex(4))->rangeValue(), { 3, 4 }));
    EXPECT_TRUE(array->objectAtIndex(5)->isMemberOfClass(NSMutableString::cls()));
    EXPECT_TRUE(cast<NSIndexSet>(array->objectAtIndex(6))->containsIndex(500));
    EXPECT_EQ(array->objectAtIndex(7), array->objectAtIndex(0));
    EXPECT_EQ(array->objectAtIndex(8), NSNumber::cls().numberWithBool(true));
}

}

TEST(KeyedArchiveExchange, AnotherProgramReadsBinaryArchives)
{
    const std::string bytes = bytesIn(NSPropertyListBinaryFormat_v1_0, everything().get());
    EXPECT_EQ(Python().run(kShow, bytes), kShown);
}

TEST(KeyedArchiveExchange, AnotherProgramReadsXmlArchives)
{
    const std::string bytes = bytesIn(NSPropertyListXMLFormat_v1_0, everything().get());
    EXPECT_EQ(Python().run(kShow, bytes), kShown);
}

TEST(KeyedArchiveExchange, BinaryArchivesOfAnotherProgramAreRead)
{
    expectWhatTheOtherMade(unarchived(Python().run(maker("FMT_BINARY", "plistlib.UID"), "")));
}

TEST(KeyedArchiveExchange, XmlArchivesOfAnotherProgramAreRead)
{
    expectWhatTheOtherMade(
        unarchived(Python().run(maker("FMT_XML", "lambda n: {'CF$UID': n}"), "")));
}

TEST(KeyedArchiveExchange, XmlArchivesComeBackEqual)
{
    const Ref<NSArray> list = makeArray({ "a"_ns, NSNumber::cls().numberWithFloat(0.1f).get(),
        NSNumber::cls().numberWithDouble(0.1).get(), NSNumber::cls().numberWithBool(false).get(),
        NSData::cls().dataWithBytes_length("abc", 3).get(),
        NSDate::cls().dateWithTimeIntervalSinceReferenceDate(1.25).get() });
    EXPECT_TRUE(unarchived(bytesIn(NSPropertyListXMLFormat_v1_0, list.get()))->isEqual(list.get()));
}
