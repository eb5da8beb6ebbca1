// SPDX-License-Identifier: Apache-2.0
#include <cmath>
#include <string>

#include "UserDefaultsTest.h"
#include "foundation/NSArray.h"
#include "foundation/NSData.h"
#include "foundation/NSDate.h"
#include "foundation/NSKeyedArchiver.h"
#include "foundation/NSMutableArray.h"
#include "foundation/NSMutableString.h"
#include "foundation/NSNull.h"
#include "foundation/NSSet.h"
#include "foundation/NSURL.h"

using namespace brindle;

namespace {

Ref<NSArray> nested(int depth)
{
    Ref<NSArray> list = NSArray::cls().array();
    for (int i = 1; i < depth; ++i)
        list = NSArray::cls().arrayWithObject(list.get());
    return list;
}

}

TEST_F(UserDefaults, ReadNumbersOutOfStrings)
{
    defaults()->setObject_forKey("42"_ns, "key"_ns);
    EXPECT_EQ(defaults()->integerForKey("key"_ns), 42);
    EXPECT_EQ(defaults()->doubleForKey("key"_ns), 42);
    EXPECT_EQ(defaults()->floatForKey("key"_ns), 42);
    defaults()->setObject_forKey("YES"_ns, "key"_ns);
    EXPECT_TRUE(defaults()->boolForKey("key"_ns));
    defaults()->setObject_forKey("NO"_ns, "key"_ns);
    EXPECT_FALSE(defaults()->boolForKey("key"_ns));
}

TEST_F(UserDefaults, ReadNoNumberOutOfOtherValues)
{
    defaults()->setObject_forKey(NSArray::cls().arrayWithObject("1"_ns).get(), "key"_ns);
    EXPECT_EQ(defaults()->integerForKey("key"_ns), 0);
    EXPECT_FALSE(defaults()->boolForKey("key"_ns));
    EXPECT_EQ(defaults()->doubleForKey("key"_ns), 0);
    EXPECT_FALSE(defaults()->stringForKey("key"_ns));
}

TEST_F(UserDefaults, AnswerTheTextOfANumber)
{
    defaults()->setInteger_forKey(7, "key"_ns);
    EXPECT_EQ(utf8(defaults()->stringForKey("key"_ns)), "7");
}

TEST_F(UserDefaults, KeepAllOfALargeInteger)
{
    EXPECT_EQ(cast<NSNumber>(kept(number(INT64_MIN).get()))->integerValue(), INT64_MIN);
    EXPECT_EQ(cast<NSNumber>(kept(number(INT64_MAX).get()))->integerValue(), INT64_MAX);
}

TEST_F(UserDefaults, KeepSinglePrecision)
{
    defaults()->setFloat_forKey(0.1F, "key"_ns);
    folder.restart();
    EXPECT_EQ(defaults()->floatForKey("key"_ns), 0.1F);
    EXPECT_EQ(defaults()->doubleForKey("key"_ns), 0.10000000149011612);
}

TEST_F(UserDefaults, KeepDoublePrecision)
{
    defaults()->setDouble_forKey(0.1, "key"_ns);
    folder.restart();
    EXPECT_EQ(defaults()->doubleForKey("key"_ns), 0.1);
}

TEST_F(UserDefaults, KeepABooleanAsOne)
{
    defaults()->setBool_forKey(true, "key"_ns);
    folder.restart();
    EXPECT_TRUE(defaults()->boolForKey("key"_ns));
    EXPECT_STREQ(cast<NSNumber>(defaults()->objectForKey("key"_ns))->objCType(), "B");
}

TEST_F(UserDefaults, WriteABooleanOverAnEqualNumber)
{
    defaults()->setInteger_forKey(1, "key"_ns);
    folder.restart();
    defaults()->setBool_forKey(true, "key"_ns);
    folder.restart();
    EXPECT_STREQ(cast<NSNumber>(defaults()->objectForKey("key"_ns))->objCType(), "B");
}

TEST_F(UserDefaults, KeepDataDatesAndCollections)
{
    const unsigned char bytes[] { 0, 1, 255 };
    const Ref<NSData> data = dataFrom(bytes);
    EXPECT_TRUE(kept(data.get())->isEqual(data.get()));
    const Ref<NSDate> date = NSDate::cls().dateWithTimeIntervalSinceReferenceDate(12.5);
    EXPECT_TRUE(kept(date.get())->isEqual(date.get()));
    const Ref<NSDictionary> list = makeDictionary(
        { { "list"_ns, NSArray::cls().arrayWithObjects("a"_ns, number(2).get()).get() },
            { "date"_ns, date.get() } });
    EXPECT_TRUE(kept(list.get())->isEqual(list.get()));
}

TEST_F(UserDefaults, AnswerDataOnlyForData)
{
    defaults()->setObject_forKey("text"_ns, "key"_ns);
    EXPECT_FALSE(defaults()->dataForKey("key"_ns));
    defaults()->setObject_forKey(NSData::cls().data().get(), "key"_ns);
    EXPECT_TRUE(defaults()->dataForKey("key"_ns));
    EXPECT_FALSE(defaults()->stringForKey("key"_ns));
}

TEST_F(UserDefaults, AnswerAnArrayOfStringsOnlyForOne)
{
    defaults()->setObject_forKey(NSArray::cls().arrayWithObjects("a"_ns, "b"_ns).get(), "key"_ns);
    EXPECT_EQ(defaults()->stringArrayForKey("key"_ns)->count(), 2U);
    defaults()->setObject_forKey(
        NSArray::cls().arrayWithObjects("a"_ns, number(1).get()).get(), "key"_ns);
    EXPECT_FALSE(defaults()->stringArrayForKey("key"_ns));
    EXPECT_TRUE(defaults()->arrayForKey("key"_ns));
}

TEST_F(UserDefaults, KeepTheURLOfAFile)
{
    const auto url = NSURL::cls().fileURLWithPath("/no/such file"_ns);
    defaults()->setURL_forKey(url.get(), "key"_ns);
    EXPECT_EQ(utf8(defaults()->stringForKey("key"_ns)), "/no/such file");
    folder.restart();
    EXPECT_TRUE(defaults()->URLForKey("key"_ns)->isEqual(url.get()));
}

TEST_F(UserDefaults, KeepThePathOfAFileRelativeToTheHomeFolder)
{
    const Ref<NSString> path = "~/no such file"_ns->stringByExpandingTildeInPath();
    const auto url = NSURL::cls().fileURLWithPath(path.get());
    defaults()->setURL_forKey(url.get(), "key"_ns);
    EXPECT_EQ(utf8(defaults()->stringForKey("key"_ns)), "~/no such file");
    EXPECT_TRUE(defaults()->URLForKey("key"_ns)->isEqual(url.get()));
}

TEST_F(UserDefaults, KeepAnyURL)
{
    const auto url = NSURL::cls().URLWithString("https://one.example/two?three#four"_ns);
    defaults()->setURL_forKey(url.get(), "key"_ns);
    folder.restart();
    EXPECT_TRUE(defaults()->URLForKey("key"_ns)->isEqual(url.get()));
}

TEST_F(UserDefaults, ForgetAURLThatIsSetToNil)
{
    defaults()->setURL_forKey(NSURL::cls().fileURLWithPath("/a"_ns).get(), "key"_ns);
    defaults()->setURL_forKey(nullptr, "key"_ns);
    EXPECT_FALSE(defaults()->URLForKey("key"_ns));
}

TEST_F(UserDefaults, AnswerNoURLForOtherValues)
{
    defaults()->setInteger_forKey(1, "number"_ns);
    defaults()->setObject_forKey(""_ns, "empty"_ns);
    const unsigned char rubbish[] { 1, 2, 3 };
    defaults()->setObject_forKey(dataFrom(rubbish).get(), "data"_ns);
    defaults()->setObject_forKey(
        NSKeyedArchiver::cls().archivedDataWithRootObject("text"_ns).get(), "other"_ns);
    for (NSString* key : { "number"_ns, "empty"_ns, "data"_ns, "other"_ns })
        EXPECT_FALSE(defaults()->URLForKey(key)) << utf8(key);
}

TEST_F(UserDefaults, DoNotChangeWithTheStringThatWasSet)
{
    const auto text = cast<NSMutableString>("one"_ns->mutableCopy());
    defaults()->setObject_forKey(text.get(), "key"_ns);
    text->appendString("two"_ns);
    EXPECT_EQ(utf8(defaults()->stringForKey("key"_ns)), "one");
}

TEST_F(UserDefaults, AnswerImmutableValuesAllTheWayDown)
{
    const auto inner = make<NSMutableArray>();
    const auto outer = make<NSMutableDictionary>();
    outer->setObject_forKey(inner.get(), "inner"_ns);
    defaults()->setObject_forKey(outer.get(), "key"_ns);
    inner->addObject("late"_ns);
    const Ref<NSDictionary> read = defaults()->dictionaryForKey("key"_ns);
    EXPECT_FALSE(read->isKindOfClass(NSMutableDictionary::cls()));
    const auto list = cast<NSArray>(read->objectForKey("inner"_ns));
    EXPECT_FALSE(list->isKindOfClass(NSMutableArray::cls()));
    EXPECT_EQ(list->count(), 0U);
}

TEST_F(UserDefaults, RefuseWhatIsNoPropertyList)
{
    EXPECT_TRUE(refusal(make<NSObject>().get())
                    .starts_with("NSInvalidArgumentException: Attempt to insert non-property list "
                                 "object <NSObject: 0x"))
        << refusal(make<NSObject>().get());
    EXPECT_EQ(refusal(NSNull::cls().null().get()),
        "NSInvalidArgumentException: Attempt to insert non-property list object <null> for key "
        "key");
    EXPECT_NE(refusal(NSSet::cls().set().get()), "");
    EXPECT_NE(refusal(NSArray::cls().arrayWithObject(NSNull::cls().null().get()).get()), "");
    EXPECT_FALSE(defaults()->objectForKey("key"_ns));
}

TEST_F(UserDefaults, RefuseDictionariesWithOtherKeysThanStrings)
{
    EXPECT_NE(refusal(makeDictionary({ { number(1).get(), "one"_ns } }).get()), "");
}

TEST_F(UserDefaults, RefuseDatesThatNoFileHolds)
{
    EXPECT_NE(refusal(NSDate::cls().dateWithTimeIntervalSinceReferenceDate(NAN).get()), "");
    EXPECT_NE(refusal(NSDate::cls().dateWithTimeIntervalSinceReferenceDate(INFINITY).get()), "");
}

TEST_F(UserDefaults, RefuseAContainerWithinItself)
{
    const auto list = make<NSMutableArray>();
    list->addObject(list.get());
    list->addObject(list.get());
    EXPECT_NE(refusal(list.get()), "");
    list->removeAllObjects();
}

TEST_F(UserDefaults, KeepTheDeepestListThatCanBeWrittenAndRefuseADeeperOne)
{
    EXPECT_TRUE(kept(nested(511).get())->isEqual(nested(511).get()));
    EXPECT_NE(refusal(nested(512).get()), "");
}

TEST_F(UserDefaults, KeepSharedChildrenWithoutGrowing)
{
    Ref<NSArray> list = NSArray::cls().arrayWithObject("leaf"_ns);
    for (int i = 0; i < 40; ++i)
        list = NSArray::cls().arrayWithObjects(list.get(), list.get());
    Ref<NSObject> read = kept(list.get());
    for (int i = 0; i < 40; ++i)
        read = cast<NSArray>(read)->lastObject();
    EXPECT_EQ(textOf(cast<NSArray>(read)->firstObject()), "leaf");
}

TEST_F(UserDefaults, KeepTextWithAnUnpairedSurrogateReadable)
{
    const std::u16string text { u'a', 0xd800, u'b' };
    defaults()->setObject_forKey("other"_ns, "other"_ns);
    EXPECT_EQ(textOf(kept(stringFrom(text).get())),
        "a\xef\xbf\xbd"
        "b");
    EXPECT_EQ(utf8(defaults()->stringForKey("other"_ns)), "other");
}

TEST_F(UserDefaults, KeepTextWithAnEndInside)
{
    EXPECT_EQ(textOf(kept(stringFrom(std::string_view("a\0b", 3)).get())), std::string("a\0b", 3));
}

TEST_F(UserDefaults, RefuseAKeyThatIsNoString)
{
    EXPECT_EQ(raisedBy([] { defaults()->setObject_forKey("value"_ns, nullptr); }),
        "NSInvalidArgumentException: Key of a user default is no string: (null)");
    EXPECT_NE(raisedBy([] {
        defaults()->setObject_forKey("value"_ns, cast<NSString>(cast<NSObject>(number(1).get())));
    }),
        "");
}
