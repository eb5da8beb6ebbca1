// SPDX-License-Identifier: Apache-2.0
#include "foundation/NSPropertyListSerialization.h"

#include <fstream>

#include "foundation/NSMutableArray.h"
#include "foundation/NSMutableDictionary.h"
#include "foundation/NSNull.h"
#include "foundation/PropertyListUID.h"
#include "support/PropertyLists.h"
#include "support/TemporaryFolder.h"

using namespace brindle;
using namespace brindle::test;

namespace {

constexpr NSPropertyListFormat kFormats[]
    = { NSPropertyListXMLFormat_v1_0, NSPropertyListBinaryFormat_v1_0 };

bool isValid(const Ref<NSObject>& list, NSPropertyListFormat format)
{
    return NSPropertyListSerialization::cls().propertyList_isValidForFormat(list.get(), format);
}

class Folder : public testing::Test {
protected:
    Ref<NSString> path(const char* name) const
    {
        return stringFrom((folder_.path() / name).string());
    }
    Ref<NSString> file(const char* name, std::string_view bytes) const
    {
        std::ofstream(folder_.path() / name, std::ios::binary) << bytes;
        return path(name);
    }

private:
    TemporaryFolder folder_;
};

}

TEST(NSPropertyListSerialization, NilDataGivesNilAndAnError)
{
    Ref<NSError> error;
    EXPECT_FALSE(NSPropertyListSerialization::cls().propertyListWithData_options_format_error(
        nullptr, 0, nullptr, &error));
    EXPECT_EQ(error->code(), 3840);
    EXPECT_EQ(utf8(error->domain()), "NSCocoaErrorDomain");
}

TEST(NSPropertyListSerialization, ANilListIsNotWritten)
{
    for (const NSPropertyListFormat format : kFormats)
        EXPECT_EQ(writeFailure(nullptr, format), "3851: there is no list");
}

TEST(NSPropertyListSerialization, AnErrorNeedNotBeWanted)
{
    EXPECT_FALSE(readList("( a"));
    EXPECT_EQ(writeList(NSNull::cls().null(), NSPropertyListBinaryFormat_v1_0), "(nil)");
}

TEST(NSPropertyListSerialization, ErrorsAreLeftAloneWhenAllIsWell)
{
    Ref<NSError> error;
    NSPropertyListSerialization::cls().propertyListWithData_options_format_error(
        dataOf("x").get(), 0, nullptr, &error);
    EXPECT_FALSE(error);
}

TEST(NSPropertyListSerialization, TheFormatIsLeftAloneOnFailure)
{
    auto format = NSPropertyListFormat { 7 };
    NSPropertyListSerialization::cls().propertyListWithData_options_format_error(
        dataOf("( a").get(), 0, &format, nullptr);
    EXPECT_EQ(format, 7u);
}

TEST(NSPropertyListSerialization, TheOlderOperationsTellTheReasonAsText)
{
    Ref<NSString> error;
    NSPropertyListFormat format {};
    const auto serialization = NSPropertyListSerialization::cls();
    EXPECT_FALSE(serialization.propertyListFromData_mutabilityOption_format_errorDescription(
        dataOf("( a").get(), 0, &format, &error));
    EXPECT_EQ(utf8(error), "line 1: a comma or parenthesis is missing");
    const Ref<NSObject> list
        = serialization.propertyListFromData_mutabilityOption_format_errorDescription(
            dataOf("( a )").get(), NSPropertyListMutableContainers, &format, nullptr);
    EXPECT_TRUE(list->isKindOfClass(NSMutableArray::cls()));
    EXPECT_EQ(format, NSPropertyListOpenStepFormat);

    EXPECT_FALSE(serialization.dataFromPropertyList_format_errorDescription(
        NSNull::cls().null().get(), NSPropertyListXMLFormat_v1_0, &error));
    EXPECT_EQ(utf8(error), "an object of class NSNull has no place in a list");
    EXPECT_EQ(bytesIn(serialization.dataFromPropertyList_format_errorDescription(
                  list.get(), NSPropertyListBinaryFormat_v1_0, nullptr)),
        writeList(list, NSPropertyListBinaryFormat_v1_0));
}

TEST(NSPropertyListSerialization, KnowsWhatCouldBeWritten)
{
    for (const NSPropertyListFormat format : kFormats) {
        EXPECT_TRUE(isValid(makeArray({ number(1).get() }), format));
        EXPECT_FALSE(isValid(makeArray({ NSNull::cls().null().get() }), format));
        EXPECT_FALSE(isValid(nullptr, format));
    }
    EXPECT_TRUE(isValid(string("\x01"), NSPropertyListBinaryFormat_v1_0));
    EXPECT_FALSE(isValid(string("\x01"), NSPropertyListXMLFormat_v1_0));
    EXPECT_FALSE(isValid(string("x"), NSPropertyListFormat { 5 }));
}

TEST(NSPropertyListSerialization, OldStyleTextHasStringsAndDataOnly)
{
    EXPECT_TRUE(isValid(makeDictionary({ { "a"_ns, makeArray({ dataOf("x").get() }).get() } }),
        NSPropertyListOpenStepFormat));
    EXPECT_FALSE(isValid(makeArray({ number(1).get() }), NSPropertyListOpenStepFormat));
}

TEST(NSPropertyListSerialization, EqualReferencesAreEqualObjects)
{
    EXPECT_TRUE(makeUID(3)->isEqual(makeUID(3).get()));
    EXPECT_FALSE(makeUID(3)->isEqual(makeUID(4).get()));
    EXPECT_FALSE(makeUID(3)->isEqual(number(3).get()));
    EXPECT_EQ(makeUID(3)->hash(), makeUID(3)->hash());
    EXPECT_EQ(textOf(makeUID(3)), "{value = 3}");
    const Ref<PropertyListUID> uid = makeUID(3);
    EXPECT_EQ(uid->copy().get(), uid.get());
}

// ---- files

using PropertyListFiles = Folder;

TEST_F(PropertyListFiles, ADictionaryComesBackFromAFile)
{
    const Ref<NSDictionary> list = makeDictionary({ { "a"_ns, number(1).get() } });
    ASSERT_TRUE(list->writeToFile_atomically(path("a").get(), true));
    const Ref<NSDictionary> back
        = NSDictionary::cls().dictionaryWithContentsOfFile(path("a").get());
    EXPECT_TRUE(back->isEqual(list.get()));
    EXPECT_FALSE(NSArray::cls().arrayWithContentsOfFile(path("a").get()));
}

TEST_F(PropertyListFiles, AnArrayComesBackFromAFile)
{
    const Ref<NSArray> list = makeArray({ "x"_ns });
    ASSERT_TRUE(list->writeToFile_atomically(path("a").get(), false));
    EXPECT_TRUE(NSArray::cls().arrayWithContentsOfFile(path("a").get())->isEqual(list.get()));
    EXPECT_FALSE(NSDictionary::cls().dictionaryWithContentsOfFile(path("a").get()));
}

TEST_F(PropertyListFiles, FilesAreXML)
{
    makeArray({ "x"_ns })->writeToFile_atomically(path("a").get(), true);
    EXPECT_EQ(bytesIn(NSData::cls().dataWithContentsOfFile(path("a").get())),
        writeList(makeArray({ "x"_ns }), NSPropertyListXMLFormat_v1_0));
}

TEST_F(PropertyListFiles, AFileMayHaveAnyFormat)
{
    const Ref<NSDictionary> list = makeDictionary({ { "a"_ns, "b"_ns } });
    const auto read = [&](std::string_view bytes) {
        return textOf(NSDictionary::cls().dictionaryWithContentsOfFile(file("f", bytes).get()));
    };
    EXPECT_EQ(read("{ a = b; }"), textOf(list));
    EXPECT_EQ(read("a = b;"), textOf(list));
    EXPECT_EQ(read(writeList(list, NSPropertyListBinaryFormat_v1_0)), textOf(list));
    EXPECT_EQ(read("rub bish"), "(nil)");
}

TEST_F(PropertyListFiles, AMutableClassMakesMutableCollections)
{
    const Ref<NSDictionary> list
        = NSMutableDictionary::cls().dictionaryWithContentsOfFile(file("f", "{ a = b; }").get());
    ASSERT_TRUE(list->isKindOfClass(NSMutableDictionary::cls()));
    const Ref<NSArray> array
        = NSMutableArray::cls().arrayWithContentsOfFile(file("f", "( a )").get());
    EXPECT_TRUE(array->isKindOfClass(NSMutableArray::cls()));
}

TEST_F(PropertyListFiles, AMissingFileGivesNil)
{
    EXPECT_FALSE(NSDictionary::cls().dictionaryWithContentsOfFile(path("none").get()));
    EXPECT_FALSE(NSDictionary::cls().dictionaryWithContentsOfFile(nullptr));
}

TEST_F(PropertyListFiles, OtherObjectsAreNotWritten)
{
    EXPECT_FALSE(
        makeArray({ NSNull::cls().null().get() })->writeToFile_atomically(path("a").get(), true));
    EXPECT_FALSE(NSData::cls().dataWithContentsOfFile(path("a").get()));
    EXPECT_FALSE(makeArray({ "x"_ns })->writeToFile_atomically(path("no/folder").get(), true));
}
