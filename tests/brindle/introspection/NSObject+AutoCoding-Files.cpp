// SPDX-License-Identifier: Apache-2.0
#include "CodingHosts.h"
#include "foundation/NSKeyedArchiver.h"
#include "foundation/NSKeyedUnarchiver.h"
#include "foundation/NSPropertyListSerialization.h"
#include "introspection/NSObject+AutoCoding.h"
#include "support/Strings.h"
#include "support/TemporaryFolder.h"

namespace brindle {

namespace {

    class AutoCodingFiles : public ::testing::Test {
    protected:
        Ref<NSString> path() const { return stringFrom((folder_.path() / "file").string()); }
        Ref<NSObject> read() const
        {
            return objectWithContentsOfFile(CodingHost::cls(), path().get());
        }
        void write(std::string_view bytes) const
        {
            NSData::cls()
                .dataWithBytes_length(bytes.data(), bytes.size())
                ->writeToFile_atomically(path().get(), false);
        }

    private:
        test::TemporaryFolder folder_;
    };

}

TEST_F(AutoCodingFiles, ObjectIsWrittenAndRead)
{
    const auto host = filledHost<CodingHost>();
    ASSERT_TRUE(writeToFile_atomically(host, path().get(), true));
    const auto back = cast<CodingHost>(read());
    ASSERT_TRUE(back && back->isKindOfClass(CodingHost::cls()));
    EXPECT_EQ(utf8(back->inner_->text_), "inner");
    const auto expected = cast<NSMutableDictionary>(dictionaryRepresentation(host)->mutableCopy());
    const auto found = cast<NSMutableDictionary>(dictionaryRepresentation(back)->mutableCopy());
    expected->removeObjectForKey("inner"_ns); // equal by its values only
    found->removeObjectForKey("inner"_ns);
    EXPECT_TRUE(found->isEqual(expected.get()));
}
TEST_F(AutoCodingFiles, CyclesSurvive)
{
    const auto host = filledHost<CodingHost>();
    host->inner_->inner_ = host;
    ASSERT_TRUE(writeToFile_atomically(host, path().get(), false));
    host->inner_->inner_ = nullptr;
    const auto back = cast<CodingHost>(read());
    EXPECT_EQ(back->inner_->inner_, back.get());
    back->inner_->inner_ = nullptr;
}
TEST_F(AutoCodingFiles, MissingFileIsNil) { EXPECT_FALSE(read()); }
TEST_F(AutoCodingFiles, UnwritablePathIsNo)
{
    EXPECT_FALSE(writeToFile_atomically(
        make<CodingHost>(), path()->stringByAppendingPathComponent("x"_ns).get(), true));
}
TEST_F(AutoCodingFiles, PropertyListIsAnswered)
{
    write("<?xml version=\"1.0\" encoding=\"UTF-8\"?><plist version=\"1.0\"><dict><key>a</key>"
          "<string>b</string></dict></plist>");
    EXPECT_EQ(textOf(cast<NSDictionary>(read())->objectForKey("a"_ns)), "b");
}
TEST_F(AutoCodingFiles, PropertyListThatIsNoDictionaryIsAnswered)
{
    write("<plist version=\"1.0\"><array><string>b</string></array></plist>");
    EXPECT_EQ(textOf(read()), "(\n    b\n)");
}
TEST_F(AutoCodingFiles, AnArchiveIsAnsweredAsItsRootOfWhateverClass)
{
    NSKeyedArchiver::cls()
        .archivedDataWithRootObject(makeArray({ "a"_ns, "b"_ns }).get())
        ->writeToFile_atomically(path().get(), false);
    EXPECT_EQ(textOf(read()), "(\n    a,\n    b\n)");
}
TEST_F(AutoCodingFiles, ADictionaryThatOnlyClaimsToBeAnArchiveIsRefused)
{
    write("<plist version=\"1.0\"><dict><key>$archiver</key><string>x</string></dict></plist>");
    EXPECT_TRUE(raisedBy([&] { read(); })
                    .starts_with("NSInvalidArgumentException: *** -[NSKeyedUnarchiver "
                                 "initForReadingWithData:]: incomprehensible archive ("));
}
TEST_F(AutoCodingFiles, OneBareWordIsText)
{
    write("word");
    EXPECT_EQ(textOf(read()), "word");
    EXPECT_TRUE(read()->isKindOfClass(NSString::cls()));
}
TEST_F(AutoCodingFiles, SeveralPlainWordsAndNothingAreBytes)
{
    write("several plain words");
    EXPECT_EQ(cast<NSData>(read())->length(), 19u);
    write("");
    ASSERT_TRUE(read());
    EXPECT_TRUE(read()->isKindOfClass(NSData::cls()));
}
TEST_F(AutoCodingFiles, AnythingElseIsAnsweredAsItsBytes)
{
    write("\x01\x02{{{");
    const auto data = read();
    ASSERT_TRUE(data && data->isKindOfClass(NSData::cls()));
    EXPECT_EQ(cast<NSData>(data)->length(), 5u);
}
TEST_F(AutoCodingFiles, ClassesWithAWayOfTheirOwnKeepIt)
{
    "text"_ns->send<"writeToFile:atomically:", bool>(path().get(), true);
    const auto data = NSData::cls().dataWithContentsOfFile(path().get());
    EXPECT_EQ(data->length(), 4u);
}

}
