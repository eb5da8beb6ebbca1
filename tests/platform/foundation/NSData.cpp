// SPDX-License-Identifier: Apache-2.0
#include "foundation/NSData.h"

#include <atomic>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <thread>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "support/Strings.h"
#include "support/TemporaryFolder.h"

using namespace brindle;

namespace {

Ref<NSData> dataOf(std::string_view text)
{
    return NSData::cls().dataWithBytes_length(text.data(), text.size());
}
Ref<NSMutableData> mutableData(std::string_view text)
{
    return NSMutableData::cls().dataWithBytes_length(text.data(), text.size());
}
std::string textOfData(const Ref<NSData>& data)
{
    if (!data)
        return "(nil)";
    const auto bytes = bytesOf(data.get());
    return std::string(bytes.begin(), bytes.end());
}

/// A folder of its own that goes with its content.
class NSDataFiles : public testing::Test {
protected:
    std::string path(const char* name) const { return (folder_ / name).string(); }
    Ref<NSString> pathString(const char* name) const { return stringFrom(path(name)); }
    std::string content(const char* name) const
    {
        std::ifstream file(path(name), std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(file), {});
    }
    void fill(const char* name, const std::string& text) const
    {
        std::ofstream(path(name), std::ios::binary) << text;
    }
    std::size_t entries() const
    {
        return static_cast<std::size_t>(std::distance(
            std::filesystem::directory_iterator(folder_), std::filesystem::directory_iterator()));
    }

    test::TemporaryFolder temporary_;
    const std::filesystem::path& folder_ = temporary_.path();
};

}

TEST(NSData, CopiesItsBytes)
{
    char text[] = "abc";
    const Ref<NSData> made = NSData::cls().dataWithBytes_length(text, 3);
    text[0] = 'x';
    EXPECT_EQ(textOfData(made), "abc");
    EXPECT_EQ(made->length(), 3u);
}

TEST(NSData, EmptyDataHasNoLength) { EXPECT_EQ(NSData::cls().data()->length(), 0u); }

TEST(NSData, TakesBytesOver)
{
    void* const bytes = std::malloc(3);
    std::memcpy(bytes, "abc", 3);
    const Ref<NSData> made = NSData::cls().dataWithBytesNoCopy_length(bytes, 3);
    EXPECT_EQ(made->bytes(), bytes);
}

TEST(NSData, BorrowedBytesStayTheLenders)
{
    char bytes[] = "abc";
    const Ref<NSData> made = NSData::cls().dataWithBytesNoCopy_length_freeWhenDone(bytes, 3, false);
    EXPECT_EQ(made->bytes(), bytes);
}

TEST(NSData, EqualBytesAreEqualData)
{
    EXPECT_TRUE(dataOf("abc")->isEqual(mutableData("abc").get()));
    EXPECT_EQ(dataOf("abc")->hash(), mutableData("abc")->hash());
    EXPECT_FALSE(dataOf("abc")->isEqual(dataOf("abd").get()));
    EXPECT_FALSE(dataOf("abc")->isEqualToData(nullptr));
    EXPECT_TRUE(dataOf("")->isEqual(NSData::cls().data().get()));
}

TEST(NSData, SubdataIsThatStretch)
{
    EXPECT_EQ(textOfData(dataOf("abcdef")->subdataWithRange({ 2, 3 })), "cde");
}

TEST(NSData, SubdataBeyondTheEndRaises)
{
    EXPECT_EQ(raisedBy([] {
        dataOf("abcd")->subdataWithRange({ 2, 5 });
    }),
        "NSRangeException: *** -[NSData subdataWithRange:]: range {2, 5} exceeds data length 4");
    EXPECT_NE(raisedBy([] { dataOf("abcd")->subdataWithRange({ 5, ~NSUInteger { 0 } }); }), "");
}

TEST(NSData, CopiesBytesOutUpToItsLength)
{
    char buffer[8] = "-------";
    dataOf("abc")->getBytes_length(buffer, 8);
    EXPECT_STREQ(buffer, "abc----");
}

TEST(NSData, FindsBytesFromBothEnds)
{
    const Ref<NSData> bytes = dataOf("abcabc");
    EXPECT_EQ(bytes->rangeOfData_options_range(dataOf("bc").get(), 0, { 0, 6 }), NSMakeRange(1, 2));
    EXPECT_EQ(bytes->rangeOfData_options_range(dataOf("bc").get(), NSDataSearchBackwards, { 0, 6 }),
        NSMakeRange(4, 2));
    EXPECT_EQ(
        bytes->rangeOfData_options_range(dataOf("bc").get(), NSDataSearchAnchored, { 0, 6 }).length,
        0u);
    EXPECT_EQ(bytes->rangeOfData_options_range(dataOf("").get(), 0, { 0, 6 }).location,
        static_cast<NSUInteger>(NSNotFound));
}

TEST(NSData, DescribesItselfInGroupsOfFour)
{
    EXPECT_EQ(utf8(dataOf("\x01\x02\x03\x04\xff")->description()), "<01020304 ff>");
    EXPECT_EQ(utf8(NSData::cls().data()->description()), "<>");
}

TEST(NSData, ACopyOfImmutableDataIsItself)
{
    const Ref<NSData> bytes = dataOf("abc");
    EXPECT_EQ(bytes->copy().get(), bytes.get());
}

TEST(NSData, ACopyOfMutableDataIsImmutableAndApart)
{
    const Ref<NSMutableData> bytes = mutableData("abc");
    const Ref<NSObject> copy = bytes->copy();
    bytes->setLength(0);
    EXPECT_TRUE(copy->isMemberOfClass(NSData::cls()));
    EXPECT_EQ(textOfData(cast<NSData>(copy)), "abc");
}

TEST(NSMutableData, AppendsBytesDataAndItself)
{
    const Ref<NSMutableData> bytes = NSMutableData::cls().dataWithCapacity(1);
    bytes->appendBytes_length("ab", 2);
    bytes->appendData(dataOf("c").get());
    for (int i = 0; i < 3; ++i)
        bytes->appendData(bytes.get());
    EXPECT_EQ(textOfData(bytes), "abcabcabcabcabcabcabcabc");
}

TEST(NSMutableData, GrowsByZerosAndShrinks)
{
    const Ref<NSMutableData> bytes = mutableData("abc");
    bytes->setLength(1);
    bytes->increaseLengthBy(2);
    EXPECT_EQ(textOfData(bytes), std::string("a\0\0", 3));
    EXPECT_EQ(textOfData(NSMutableData::cls().dataWithLength(2)), std::string(2, '\0'));
}

TEST(NSMutableData, ALengthThatNoMemoryHasRaises)
{
    EXPECT_NE(raisedBy([] { mutableData("a")->setLength(~NSUInteger { 0 } >> 1); }), "");
    EXPECT_NE(raisedBy([] { mutableData("a")->increaseLengthBy(~NSUInteger { 0 }); }), "");
}

TEST(NSMutableData, ReplacesBytesByMoreOrFewer)
{
    const Ref<NSMutableData> bytes = mutableData("abcdef");
    bytes->replaceBytesInRange_withBytes_length({ 1, 2 }, "XYZ", 3);
    EXPECT_EQ(textOfData(bytes), "aXYZdef");
    bytes->replaceBytesInRange_withBytes_length({ 0, 4 }, "", 0);
    EXPECT_EQ(textOfData(bytes), "def");
}

TEST(NSMutableData, ReplacesBytesByItsOwn)
{
    const Ref<NSMutableData> bytes = mutableData("abc");
    bytes->replaceBytesInRange_withBytes_length({ 0, 1 }, bytes->bytes(), 3);
    EXPECT_EQ(textOfData(bytes), "abcbc");
}

TEST(NSMutableData, ReplacingPastTheEndGrows)
{
    const Ref<NSMutableData> bytes = mutableData("abc");
    bytes->replaceBytesInRange_withBytes({ 2, 3 }, "XYZ");
    EXPECT_EQ(textOfData(bytes), "abXYZ");
}

TEST(NSMutableData, ResetWritesZeros)
{
    const Ref<NSMutableData> bytes = mutableData("abc");
    bytes->resetBytesInRange({ 1, 1 });
    EXPECT_EQ(textOfData(bytes), std::string("a\0c", 3));
}

TEST(NSMutableData, ItsBytesCanBeWritten)
{
    const Ref<NSMutableData> bytes = mutableData("abc");
    static_cast<char*>(bytes->mutableBytes())[1] = 'X';
    EXPECT_EQ(textOfData(bytes), "aXc");
}

TEST(NSMutableData, WritingLeavesBorrowedBytesAlone)
{
    char lent[] = "abc";
    const Ref<NSMutableData> bytes = cast<NSMutableData>(
        alloc<NSMutableData>()->initWithBytesNoCopy_length_freeWhenDone(lent, 3, false));
    static_cast<char*>(bytes->mutableBytes())[1] = 'X';
    EXPECT_STREQ(lent, "abc");
}

TEST(NSData, WritesBase64WithPadding)
{
    EXPECT_EQ(utf8(dataOf("")->base64EncodedStringWithOptions(0)), "");
    EXPECT_EQ(utf8(dataOf("f")->base64EncodedStringWithOptions(0)), "Zg==");
    EXPECT_EQ(utf8(dataOf("fo")->base64EncodedStringWithOptions(0)), "Zm8=");
    EXPECT_EQ(utf8(dataOf("foobar")->base64EncodedStringWithOptions(0)), "Zm9vYmFy");
}

TEST(NSData, BreaksBase64IntoLines)
{
    const std::string bytes(60, 'a');
    const std::string text = utf8(dataOf(bytes)->base64EncodedStringWithOptions(
        NSDataBase64Encoding64CharacterLineLength | NSDataBase64EncodingEndLineWithLineFeed));
    EXPECT_EQ(text.find('\n'), 64u);
    EXPECT_EQ(text.size(), 81u);
}

TEST(NSData, ReadsBase64Back)
{
    for (const char* text : { "", "f", "fo", "foo", "foob", "fooba" }) {
        const Ref<NSString> coded = dataOf(text)->base64EncodedStringWithOptions(0);
        EXPECT_EQ(
            textOfData(alloc<NSData>()->initWithBase64EncodedString_options(coded.get(), 0)), text);
    }
}

TEST(NSData, WhatIsNotBase64IsNil)
{
    for (NSString* text :
        { "Zg="_ns, "Zg"_ns, "Z"_ns, "Z==="_ns, "Zg==Zg=="_ns, "Zm 8="_ns, "Zm\n8="_ns })
        EXPECT_FALSE(alloc<NSData>()->initWithBase64EncodedString_options(text, 0)) << utf8(text);
}

TEST(NSData, UnknownCharactersOfBase64CanBePassedOver)
{
    EXPECT_EQ(textOfData(alloc<NSData>()->initWithBase64EncodedString_options(
                  "Zm9v\r\nYm Fy"_ns, NSDataBase64DecodingIgnoreUnknownCharacters)),
        "foobar");
}

TEST_F(NSDataFiles, AFileReadsBackWhatWasWritten)
{
    const std::string bytes(100000, 'x');
    EXPECT_TRUE(dataOf(bytes)->writeToFile_atomically(pathString("a").get(), true));
    EXPECT_EQ(textOfData(NSData::cls().dataWithContentsOfFile(pathString("a").get())), bytes);
    EXPECT_EQ(textOfData(NSData::cls().dataWithContentsOfMappedFile(pathString("a").get())), bytes);
}

TEST_F(NSDataFiles, AnEmptyFileIsEmptyData)
{
    fill("empty", "");
    EXPECT_EQ(textOfData(NSData::cls().dataWithContentsOfFile(pathString("empty").get())), "");
    EXPECT_EQ(
        textOfData(NSData::cls().dataWithContentsOfMappedFile(pathString("empty").get())), "");
}

TEST_F(NSDataFiles, WhatCannotBeReadIsNil)
{
    EXPECT_FALSE(NSData::cls().dataWithContentsOfFile(pathString("missing").get()));
    EXPECT_FALSE(NSData::cls().dataWithContentsOfFile(stringFrom(folder_.string()).get()));
    EXPECT_FALSE(NSData::cls().dataWithContentsOfFile(nullptr));
    EXPECT_FALSE(NSData::cls().dataWithContentsOfFile(""_ns));
}

TEST_F(NSDataFiles, APipeWithoutAWriterDoesNotBlock)
{
    ASSERT_EQ(::mkfifo(path("pipe").c_str(), 0600), 0);
    EXPECT_EQ(textOfData(NSData::cls().dataWithContentsOfFile(pathString("pipe").get())), "");
}

TEST_F(NSDataFiles, APipeWithoutAReaderIsNotWrittenInto)
{
    ASSERT_EQ(::mkfifo(path("pipe").c_str(), 0600), 0);
    EXPECT_FALSE(dataOf("x")->writeToFile_atomically(pathString("pipe").get(), false));
}

TEST_F(NSDataFiles, APipeWithAReaderIsWrittenIntoAsFarAsItTakes)
{
    constexpr std::size_t kMoreThanAPipeHolds = 1 << 20;
    ASSERT_EQ(::mkfifo(path("pipe").c_str(), 0600), 0);
    std::size_t taken = 0;
    std::atomic<bool> failed { false };
    const int end = ::open(path("pipe").c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    ASSERT_EQ(::fcntl(end, F_SETFL, 0), 0);
    std::thread reader([&] {
        char piece[4096];
        while (taken < kMoreThanAPipeHolds && !failed) {
            const ssize_t count = ::read(end, piece, sizeof piece);
            if (count > 0)
                taken += static_cast<std::size_t>(count);
            else
                std::this_thread::yield(); // nobody writes yet
        }
    });
    const std::string text(kMoreThanAPipeHolds, 'x');
    failed = !dataOf(text)->writeToFile_atomically(pathString("pipe").get(), false);
    reader.join();
    ::close(end);
    EXPECT_FALSE(failed);
    EXPECT_EQ(taken, kMoreThanAPipeHolds);
}

TEST_F(NSDataFiles, WritingDirectlyReplacesTheContent)
{
    fill("a", "longer than before");
    EXPECT_TRUE(dataOf("new")->writeToFile_atomically(pathString("a").get(), false));
    EXPECT_EQ(content("a"), "new");
}

TEST_F(NSDataFiles, WritingIntoAMissingFolderAnswersNo)
{
    EXPECT_FALSE(dataOf("x")->writeToFile_atomically(pathString("missing/a").get(), true));
    EXPECT_FALSE(dataOf("x")->writeToFile_atomically(pathString("missing/a").get(), false));
    EXPECT_FALSE(dataOf("x")->writeToFile_atomically(nullptr, true));
}

TEST_F(NSDataFiles, AtomicWritingLeavesNoNeighbour)
{
    fill("a", "old");
    EXPECT_TRUE(dataOf("new")->writeToFile_atomically(pathString("a").get(), true));
    EXPECT_EQ(content("a"), "new");
    EXPECT_EQ(entries(), 1u);
}

TEST_F(NSDataFiles, AFailedAtomicWriteLeavesNoNeighbour)
{
    std::filesystem::create_directory(folder_ / "a");
    EXPECT_FALSE(dataOf("new")->writeToFile_atomically(pathString("a").get(), true));
    EXPECT_EQ(entries(), 1u);
}

TEST_F(NSDataFiles, AtomicWritingGivesTheFileANewNode)
{
    fill("a", "old");
    std::filesystem::create_hard_link(path("a"), path("other"));
    EXPECT_TRUE(dataOf("new")->writeToFile_atomically(pathString("a").get(), true));
    EXPECT_EQ(content("other"), "old");
}

TEST_F(NSDataFiles, AtomicWritingKeepsThePermissions)
{
    fill("a", "old");
    ASSERT_EQ(::chmod(path("a").c_str(), 0600), 0);
    EXPECT_TRUE(dataOf("new")->writeToFile_atomically(pathString("a").get(), true));
    struct stat status { };
    ASSERT_EQ(::stat(path("a").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0600u);
}

TEST_F(NSDataFiles, AtomicWritingGoesThroughASymbolicLink)
{
    fill("a", "old");
    std::filesystem::create_symlink(path("a"), path("link"));
    EXPECT_TRUE(dataOf("new")->writeToFile_atomically(pathString("link").get(), true));
    EXPECT_TRUE(std::filesystem::is_symlink(path("link")));
    EXPECT_EQ(content("a"), "new");
}
