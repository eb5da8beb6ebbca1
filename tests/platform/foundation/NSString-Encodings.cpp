// SPDX-License-Identifier: Apache-2.0
#include "foundation/NSString.h"

#include <filesystem>
#include <unistd.h>

#include <gtest/gtest.h>

#include "foundation/NSData.h"
#include "support/Strings.h"

namespace brindle {

namespace {

    using namespace std::string_literals;

    Ref<NSString> read(const std::string& bytes, NSStringEncoding encoding)
    {
        return alloc<NSString>()->initWithBytes_length_encoding(
            bytes.data(), bytes.size(), encoding);
    }
    /// Answers the bytes of the data, "(nil)" for none.
    std::string bytesOf(const Ref<NSData>& data)
    {
        return data ? std::string(static_cast<const char*>(data->bytes()), data->length())
                    : "(nil)";
    }

    TEST(NSStringEncodings, AsciiIsBelow128)
    {
        EXPECT_EQ(utf8(read("abc", NSASCIIStringEncoding)), "abc");
        EXPECT_FALSE(read("\xe4", NSASCIIStringEncoding));
    }
    TEST(NSStringEncodings, Latin1IsOneByteALetter)
    {
        EXPECT_EQ(utf8(read("gr\xf6\xdf", NSISOLatin1StringEncoding)), "größ");
    }
    TEST(NSStringEncodings, Utf8IsStrict)
    {
        EXPECT_EQ(utf8(read("ä😀", NSUTF8StringEncoding)), "ä😀");
        EXPECT_FALSE(read("\xed\xa0\x80", NSUTF8StringEncoding));
    }
    TEST(NSStringEncodings, AMarkBeforeUtf8IsNoText)
    {
        EXPECT_EQ(utf8(read("\xef\xbb\xbf"
                            "a",
                      NSUTF8StringEncoding)),
            "a");
    }
    TEST(NSStringEncodings, Utf16ReadsItsMark)
    {
        EXPECT_EQ(utf8(read("\xff\xfe"
                            "a\0"s,
                      NSUTF16StringEncoding)),
            "a");
        EXPECT_EQ(utf8(read("\xfe\xff\0a"s, NSUTF16StringEncoding)), "a");
        EXPECT_EQ(utf8(read("a\0"s, NSUTF16StringEncoding)), "a");
    }
    TEST(NSStringEncodings, Utf16WithAnOrderHasNoMark)
    {
        EXPECT_EQ(utf8(read("\0a"s, NSUTF16BigEndianStringEncoding)), "a");
        EXPECT_EQ(utf8(read("a\0"s, NSUTF16LittleEndianStringEncoding)), "a");
    }
    TEST(NSStringEncodings, HalfAUnitGivesNil)
    {
        EXPECT_FALSE(read("a\0b"s, NSUTF16StringEncoding));
        EXPECT_FALSE(read("abcde", NSUTF32LittleEndianStringEncoding));
    }
    TEST(NSStringEncodings, Utf32IsACodePointEach)
    {
        EXPECT_EQ(utf8(read("\0\x01\xf6\0"s, NSUTF32BigEndianStringEncoding)), "😀");
        EXPECT_FALSE(read("\0\x11\0\0"s, NSUTF32BigEndianStringEncoding));
        EXPECT_FALSE(read("\0\0\xd8\0"s, NSUTF32BigEndianStringEncoding));
    }
    TEST(NSStringEncodings, UnknownEncodingsGiveNil)
    {
        EXPECT_FALSE(read("a", 9999));
        EXPECT_FALSE("a"_ns->canBeConvertedToEncoding(9999));
    }
    TEST(NSStringEncodings, NoBytesAreTheEmptyText)
    {
        EXPECT_EQ(utf8(alloc<NSString>()->initWithBytes_length_encoding(
                      nullptr, 0, NSUTF8StringEncoding)),
            "");
    }
    TEST(NSStringEncodings, TellsWhatCanBeWritten)
    {
        EXPECT_TRUE("é"_ns->canBeConvertedToEncoding(NSISOLatin1StringEncoding));
        EXPECT_FALSE("é"_ns->canBeConvertedToEncoding(NSASCIIStringEncoding));
        EXPECT_FALSE("€"_ns->canBeConvertedToEncoding(NSISOLatin1StringEncoding));
        EXPECT_FALSE(stringFrom(u"\xd800")->canBeConvertedToEncoding(NSUTF8StringEncoding));
    }
    TEST(NSStringEncodings, CountsBytesWithoutAMark)
    {
        EXPECT_EQ("aä"_ns->lengthOfBytesUsingEncoding(NSUTF8StringEncoding), 3u);
        EXPECT_EQ("aä"_ns->lengthOfBytesUsingEncoding(NSUTF16StringEncoding), 4u);
        EXPECT_EQ("ä"_ns->lengthOfBytesUsingEncoding(NSASCIIStringEncoding), 0u);
    }
    TEST(NSStringEncodings, CopiesIntoABufferThatIsLargeEnough)
    {
        char buffer[4] = "xxx";
        EXPECT_FALSE("aäb"_ns->getCString_maxLength_encoding(buffer, 4, NSUTF8StringEncoding));
        EXPECT_TRUE("aä"_ns->getCString_maxLength_encoding(buffer, 4, NSUTF8StringEncoding));
        EXPECT_STREQ(buffer, "aä");
    }
    TEST(NSStringEncodings, WritesData)
    {
        EXPECT_EQ(bytesOf("aä"_ns->dataUsingEncoding(NSUTF8StringEncoding)), "aä");
        EXPECT_EQ(bytesOf("ä"_ns->dataUsingEncoding(NSISOLatin1StringEncoding)), "\xe4");
        EXPECT_EQ(bytesOf("a"_ns->dataUsingEncoding(NSUTF16StringEncoding)),
            "\xff\xfe"
            "a\0"s);
        EXPECT_EQ(bytesOf("a"_ns->dataUsingEncoding(NSUTF16BigEndianStringEncoding)), "\0a"s);
        EXPECT_EQ(
            bytesOf("😀"_ns->dataUsingEncoding(NSUTF32BigEndianStringEncoding)), "\0\x01\xf6\0"s);
    }
    TEST(NSStringEncodings, LossIsRefusedUnlessAllowed)
    {
        EXPECT_FALSE("ä1"_ns->dataUsingEncoding(NSASCIIStringEncoding));
        EXPECT_EQ(
            bytesOf("ä1"_ns->dataUsingEncoding_allowLossyConversion(NSASCIIStringEncoding, true)),
            "?1");
    }
    TEST(NSStringEncodings, ReadsData)
    {
        const Ref<NSData> data = NSData::cls().dataWithBytes_length("ä", 2);
        EXPECT_EQ(
            utf8(alloc<NSString>()->initWithData_encoding(data.get(), NSUTF8StringEncoding)), "ä");
    }
    TEST(NSStringEncodings, FilesComeBackAsTheyWereWritten)
    {
        const std::filesystem::path file
            = std::filesystem::temp_directory_path() / ("brindle-text-" + std::to_string(getpid()));
        const Ref<NSString> path = stringFrom(file.string());
        for (const NSStringEncoding encoding :
            { NSUTF8StringEncoding, NSUTF16StringEncoding, NSISOLatin1StringEncoding }) {
            ASSERT_TRUE("größer"_ns->writeToFile_atomically_encoding_error(
                path.get(), true, encoding, nullptr));
            EXPECT_EQ(utf8(NSString::cls().stringWithContentsOfFile_encoding_error(
                          path.get(), encoding, nullptr)),
                "größer");
        }
        std::filesystem::remove(file);
    }
    TEST(NSStringEncodings, AMissingFileGivesNil)
    {
        EXPECT_FALSE(NSString::cls().stringWithContentsOfFile_encoding_error(
            "/no/such/file"_ns, NSUTF8StringEncoding, nullptr));
    }

}

}
