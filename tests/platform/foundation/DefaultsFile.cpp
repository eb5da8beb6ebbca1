// SPDX-License-Identifier: Apache-2.0
#include "foundation/defaults/DefaultsFilePrivate.h"

#include <cerrno>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include "foundation/NSDictionary.h"
#include "foundation/NSMutableDictionary.h"
#include "foundation/NSNumber.h"
#include "support/DefaultsWriters.h"
#include "support/Figures.h"
#include "support/Strings.h"
#include "support/TemporaryFolder.h"

using namespace brindle;
using defaults::File;
namespace fs = std::filesystem;

namespace {

defaults::Deadline soon() { return std::chrono::steady_clock::now() + std::chrono::seconds(20); }

Ref<NSDictionary> with(NSDictionary* values, NSString* key, NSObject* value)
{
    const auto next = NSMutableDictionary::cls().dictionaryWithDictionary(values);
    next->setObject_forKey(value, key);
    return next;
}

bool put(File& file, NSString* key, NSObject* value)
{
    return file.update(soon(), [key, value](NSDictionary* now) { return with(now, key, value); });
}

std::string valueOf(const File& file, NSString* key)
{
    return textOf(file.contents()->objectForKey(key));
}

class DefaultsFileTest : public testing::Test {
protected:
    File fresh() const { return File(folder.path() / "domain"); }
    fs::path path(const char* name = "defaults.plist") const
    {
        return folder.path() / "domain" / name;
    }
    /// Answers what a new process reads.
    std::string read(NSString* key) const
    {
        File file = fresh();
        EXPECT_TRUE(file.refresh());
        return valueOf(file, key);
    }
    std::string bytes() const
    {
        std::ifstream stream(path(), std::ios::binary);
        return { std::istreambuf_iterator<char>(stream), {} };
    }
    void write(const std::string& contents) const
    {
        fs::create_directories(path().parent_path());
        std::ofstream(path(), std::ios::binary | std::ios::trunc) << contents;
    }

    test::TemporaryFolder folder;
};

// The plan of the fault that the hook makes: which call, and what happens to it.
int callsUntilFault = 0;
int faultNumber = 0;

int failOnce(const char* call)
{
    const bool isLength = std::string(call) == "write length";
    if (isLength != (faultNumber == defaults::kShort))
        return 0;
    return --callsUntilFault == 0 ? faultNumber : 0;
}

/// Makes the n-th call fail while it lives.
class FaultAt {
public:
    FaultAt(int n, int number)
    {
        callsUntilFault = n;
        faultNumber = number;
        defaults::fault = failOnce;
    }
    ~FaultAt() { defaults::fault = nullptr; }
    static bool happened() { return callsUntilFault <= 0; }
};

}

TEST_F(DefaultsFileTest, IsEmptyWhereThereIsNone)
{
    File file = fresh();
    EXPECT_TRUE(file.refresh());
    EXPECT_EQ(file.contents()->count(), 0U);
    EXPECT_FALSE(fs::exists(path().parent_path()));
}

TEST_F(DefaultsFileTest, HoldsWhatWasWritten)
{
    File file = fresh();
    EXPECT_TRUE(put(file, "key"_ns, "value"_ns));
    EXPECT_EQ(valueOf(file, "key"_ns), "value");
    EXPECT_EQ(read("key"_ns), "value");
    EXPECT_TRUE(bytes().starts_with("bplist00"));
}

TEST_F(DefaultsFileTest, KeepsWhatOthersWroteMeanwhile)
{
    File one = fresh();
    File other = fresh();
    EXPECT_TRUE(put(one, "a"_ns, "1"_ns));
    EXPECT_TRUE(put(other, "b"_ns, "2"_ns));
    EXPECT_TRUE(put(one, "c"_ns, "3"_ns));
    EXPECT_EQ(read("a"_ns) + read("b"_ns) + read("c"_ns), "123");
}

TEST_F(DefaultsFileTest, SeesEveryReplacementHoweverFastTheyFollow)
{
    File one = fresh();
    File other = fresh();
    for (int i = 0; i < 50; ++i) {
        const Ref<NSString> value = stringFrom(std::to_string(1000 + i));
        ASSERT_TRUE(put(other, "key"_ns, value.get()));
        ASSERT_TRUE(put(other, "even"_ns, value.get()));
        ASSERT_TRUE(one.refresh());
        ASSERT_EQ(valueOf(one, "even"_ns), utf8(value));
    }
}

TEST_F(DefaultsFileTest, ReadsNothingAgainThatDidNotChange)
{
    File file = fresh();
    put(file, "key"_ns, "value"_ns);
    const std::uint64_t before = file.readings();
    EXPECT_TRUE(file.refresh());
    EXPECT_EQ(file.readings(), before);
}

TEST_F(DefaultsFileTest, IsNotReplacedWhenNothingDiffers)
{
    File file = fresh();
    put(file, "key"_ns, "value"_ns);
    const auto before = fs::last_write_time(path());
    EXPECT_TRUE(file.update(soon(), [](NSDictionary*) { return nullptr; }));
    EXPECT_EQ(fs::last_write_time(path()), before);
}

TEST_F(DefaultsFileTest, AnswersNoWhileAnotherHoldsTheLockTooLong)
{
    File file = fresh();
    put(file, "key"_ns, "old"_ns);
    const int lock = ::open(path("defaults.lock").c_str(), O_RDWR | O_CLOEXEC);
    ASSERT_EQ(::flock(lock, LOCK_EX), 0);
    const auto now = std::chrono::steady_clock::now();
    EXPECT_FALSE(file.update(now, [](NSDictionary* v) { return with(v, "key"_ns, "new"_ns); }));
    EXPECT_EQ(read("key"_ns), "old");
    ::close(lock);
    EXPECT_TRUE(put(file, "key"_ns, "new"_ns));
}

TEST_F(DefaultsFileTest, TakesOverWhatAKilledWriterLeft)
{
    File file = fresh();
    put(file, "key"_ns, "value"_ns);
    std::ofstream(path("defaults.plist.new")) << "half";
    EXPECT_TRUE(put(file, "key"_ns, "other"_ns));
    EXPECT_FALSE(fs::exists(path("defaults.plist.new")));
    EXPECT_EQ(read("key"_ns), "other");
}

TEST_F(DefaultsFileTest, SweepsWhatAKilledWriterLeftAtTheNextStart)
{
    File file = fresh();
    put(file, "key"_ns, "value"_ns);
    std::ofstream(path("defaults.plist.new")) << "half";
    EXPECT_EQ(read("key"_ns), "value");
    EXPECT_FALSE(fs::exists(path("defaults.plist.new")));
}

TEST_F(DefaultsFileTest, LeavesTheNewFileOfALivingWriterAlone)
{
    File file = fresh();
    put(file, "key"_ns, "value"_ns);
    const int lock = ::open(path("defaults.lock").c_str(), O_RDWR | O_CLOEXEC);
    ASSERT_EQ(::flock(lock, LOCK_EX), 0);
    std::ofstream(path("defaults.plist.new")) << "half";
    EXPECT_EQ(read("key"_ns), "value");
    EXPECT_TRUE(fs::exists(path("defaults.plist.new")));
    ::close(lock);
}

TEST_F(DefaultsFileTest, IsOldOrNewAfterAnyFaultAndSaysSo)
{
    long faults = 0;
    for (const int number : { ENOSPC, EIO, ENOMEM, EINTR, EDQUOT, defaults::kShort }) {
        bool happened = true;
        for (int n = 1; happened; ++n) {
            SCOPED_TRACE(std::to_string(number) + " at call " + std::to_string(n));
            fs::remove_all(path().parent_path());
            File file = fresh();
            ASSERT_TRUE(put(file, "key"_ns, "old"_ns));
            bool isSafe = false;
            {
                const FaultAt here(n, number);
                isSafe = put(file, "key"_ns, "new"_ns);
                happened = FaultAt::happened();
            }
            faults += happened;
            const std::string found = read("key"_ns);
            ASSERT_TRUE(found == "new" || (found == "old" && !isSafe)) << found;
            ASSERT_TRUE(isSafe || happened);
            ASSERT_TRUE(isSafe || (number != EINTR && number != defaults::kShort));
            ASSERT_FALSE(fs::exists(path("defaults.plist.new")));
            ASSERT_FALSE(fs::exists(path("defaults.plist.damaged")));
            ASSERT_TRUE(put(file, "key"_ns, "newer"_ns));
            ASSERT_EQ(read("key"_ns), "newer");
            ASSERT_LT(n, 100);
        }
    }
    test::publish({ "a fault at each system call of a commit: files neither old nor new", faults, 0,
        "files", 0 });
}

TEST_F(DefaultsFileTest, IsNotTakenForEmptyWhenItCannotBeRead)
{
    File writer = fresh();
    put(writer, "key"_ns, "value"_ns);
    bool happened = true;
    for (int n = 1; happened; ++n) {
        File file = fresh();
        bool isRead = false;
        {
            const FaultAt here(n, EIO);
            isRead = file.refresh();
            happened = FaultAt::happened();
        }
        EXPECT_EQ(isRead ? valueOf(file, "key"_ns) : "value", "value") << n;
        ASSERT_TRUE(put(file, "other"_ns, "value"_ns));
        ASSERT_EQ(read("key"_ns), "value") << n;
        ASSERT_LT(n, 100);
    }
}

TEST_F(DefaultsFileTest, IsEmptyOrAListWhereverItIsCutOff)
{
    File writer = fresh();
    put(writer, "key"_ns, "value"_ns);
    put(writer, "other"_ns, NSNumber::cls().numberWithInteger(7).get());
    const std::string good = bytes();
    for (std::size_t length = 0; length < good.size(); ++length) {
        write(good.substr(0, length));
        File file = fresh();
        EXPECT_TRUE(file.refresh());
        EXPECT_EQ(file.contents()->count(), 0U) << length;
    }
    test::publish({ "settings cut off at each byte: starts that fail",
        static_cast<long>(good.size()), 0, "starts", 0 });
}

TEST_F(DefaultsFileTest, SurvivesFlippedBits)
{
    File writer = fresh();
    put(writer, "key"_ns, "value"_ns);
    const std::string good = bytes();
    std::mt19937 random(1);
    for (int i = 0; i < 300; ++i) {
        std::string bad = good;
        bad[random() % bad.size()] ^= static_cast<char>(1 << random() % 8);
        write(bad);
        File file = fresh();
        ASSERT_TRUE(file.refresh());
        ASSERT_LE(file.contents()->count(), 2U);
    }
}

TEST_F(DefaultsFileTest, IsKeptAsideWhenItIsDamaged)
{
    write("rubbish, \"not a list");
    File file = fresh();
    EXPECT_TRUE(file.refresh());
    EXPECT_EQ(file.contents()->count(), 0U);
    EXPECT_TRUE(fs::exists(path()));
    EXPECT_TRUE(put(file, "key"_ns, "value"_ns));
    EXPECT_EQ(read("key"_ns), "value");
    EXPECT_EQ(fs::file_size(path("defaults.plist.damaged")), 20U);
}

TEST_F(DefaultsFileTest, IsKeptAsideOnce)
{
    write("first damage {");
    {
        File file = fresh();
        EXPECT_TRUE(put(file, "key"_ns, "value"_ns));
    }
    write("another damage {");
    File file = fresh();
    EXPECT_TRUE(put(file, "key"_ns, "value"_ns));
    EXPECT_EQ(read("key"_ns), "value");
    EXPECT_EQ(fs::file_size(path("defaults.plist.damaged")), 14U);
}

TEST_F(DefaultsFileTest, IsDamagedWhenItIsAListOfAnotherKind)
{
    write("( a, b )");
    File file = fresh();
    EXPECT_TRUE(file.refresh());
    EXPECT_EQ(file.contents()->count(), 0U);
    EXPECT_TRUE(put(file, "key"_ns, "value"_ns));
    EXPECT_TRUE(fs::exists(path("defaults.plist.damaged")));
}

TEST_F(DefaultsFileTest, ReadsAListThatWasWrittenByHand)
{
    write("{ key = \"by hand\"; }");
    EXPECT_EQ(read("key"_ns), "by hand");
}

TEST_F(DefaultsFileTest, IsEmptyWhereAFolderStands)
{
    fs::create_directories(path() / "inside");
    File file = fresh();
    EXPECT_TRUE(file.refresh());
    EXPECT_EQ(file.contents()->count(), 0U);
    EXPECT_TRUE(put(file, "key"_ns, "value"_ns));
    EXPECT_EQ(read("key"_ns), "value");
    EXPECT_TRUE(fs::exists(path("defaults.plist.damaged") / "inside"));
}

TEST_F(DefaultsFileTest, NeverWaitsForAPipe)
{
    fs::create_directories(path().parent_path());
    ASSERT_EQ(::mkfifo(path().c_str(), 0600), 0);
    File file = fresh();
    EXPECT_TRUE(file.refresh());
    EXPECT_EQ(file.contents()->count(), 0U);
    EXPECT_TRUE(put(file, "key"_ns, "value"_ns));
    EXPECT_EQ(read("key"_ns), "value");
}

TEST_F(DefaultsFileTest, NeverFollowsALink)
{
    const fs::path target = folder.path() / "target";
    {
        File file = fresh();
        put(file, "key"_ns, "foreign"_ns);
        fs::rename(path(), target);
    }
    const auto size = fs::file_size(target);
    fs::create_symlink(target, path());
    EXPECT_EQ(read("key"_ns), "(nil)");
    File file = fresh();
    EXPECT_TRUE(put(file, "own"_ns, "value"_ns));
    EXPECT_EQ(fs::file_size(target), size);
    EXPECT_FALSE(fs::is_symlink(path()));
    EXPECT_EQ(read("own"_ns) + read("key"_ns), "value(nil)");
}

TEST_F(DefaultsFileTest, NeverWritesThroughALinkInPlaceOfTheNewFile)
{
    const fs::path target = folder.path() / "target";
    std::ofstream(target) << "precious";
    File file = fresh();
    put(file, "key"_ns, "old"_ns);
    fs::create_symlink(target, path("defaults.plist.new"));
    EXPECT_TRUE(put(file, "key"_ns, "new"_ns));
    EXPECT_EQ(fs::file_size(target), 8U);
}

TEST_F(DefaultsFileTest, IsEmptyWhereAFileStandsInPlaceOfTheFolder)
{
    std::ofstream(folder.path() / "domain") << "a file";
    File file = fresh();
    EXPECT_TRUE(file.refresh());
    EXPECT_EQ(file.contents()->count(), 0U);
    EXPECT_FALSE(put(file, "key"_ns, "value"_ns));
}

TEST_F(DefaultsFileTest, IsReadWhereNothingCanBeWritten)
{
    File writer = fresh();
    put(writer, "key"_ns, "value"_ns);
    fs::permissions(path().parent_path(), fs::perms::owner_read | fs::perms::owner_exec);
    EXPECT_EQ(read("key"_ns), "value");
    if (::geteuid() != 0) {
        File file = fresh();
        EXPECT_FALSE(put(file, "key"_ns, "other"_ns));
    }
    fs::permissions(path().parent_path(), fs::perms::owner_all);
    EXPECT_EQ(read("key"_ns), "value");
}

TEST_F(DefaultsFileTest, IsDamagedWhenItIsLongerThanAnySettings)
{
    write("{ key = value; }");
    fs::resize_file(path(), std::uintmax_t { 1 } << 40);
    File file = fresh();
    EXPECT_TRUE(file.refresh());
    EXPECT_EQ(file.contents()->count(), 0U);
}

TEST_F(DefaultsFileTest, KeepsNothingWithoutAFolder)
{
    File file("");
    EXPECT_TRUE(file.refresh());
    EXPECT_FALSE(put(file, "key"_ns, "value"_ns));
}

TEST_F(DefaultsFileTest, LosesNothingThatAKilledWriterCommitted)
{
    test::WriterKiller killer(path().parent_path(), 1);
    for (int i = 0; i < 20; ++i)
        killer.round();
    EXPECT_EQ(killer.lost, 0);
    EXPECT_EQ(killer.torn, 0);
    EXPECT_FALSE(fs::exists(path("defaults.plist.new")));
    EXPECT_FALSE(fs::exists(path("defaults.plist.damaged")));
}

TEST_F(DefaultsFileTest, LosesNothingOfSeveralProcesses)
{
    std::vector<pid_t> children;
    for (int process = 0; process < 4; ++process) {
        children.push_back(test::startChild([this, process] {
            File file = fresh();
            for (int i = 0; i < 20; ++i) {
                const auto own = stringFrom(std::to_string(process) + "." + std::to_string(i));
                const bool isSafe
                    = put(file, own.get(), "value"_ns) && put(file, "shared"_ns, own.get());
                if (!isSafe)
                    ::_exit(1);
            }
        }));
    }
    for (const pid_t child : children)
        EXPECT_TRUE(test::endedWell(child));
    File file = fresh();
    EXPECT_TRUE(file.refresh());
    EXPECT_EQ(file.contents()->count(), 4U * 20 + 1);
}
