// SPDX-License-Identifier: Apache-2.0
#include "foundation/NSUserDefaults.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "UserDefaultsTest.h"
#include "foundation/NSArray.h"
#include "foundation/NSData.h"
#include "foundation/NSNotificationCenter.h"
#include "foundation/NSNull.h"
#include "foundation/NSProcessInfo.h"
#include "support/BundleFolder.h"

using namespace brindle;

namespace {

/// Counts notifications of one object while it lives.
class ChangeCounter {
public:
    explicit ChangeCounter(NSUserDefaults* object)
        : token_(
            NSNotificationCenter::cls().defaultCenter()->addObserverForName_object_queue_usingBlock(
                NSUserDefaultsDidChangeNotification, object, nullptr,
                [this](NSNotification*) { ++count; }))
    {
    }
    ~ChangeCounter() { NSNotificationCenter::cls().defaultCenter()->removeObserver(token_.get()); }

    int count = 0;

private:
    Ref<NSObject> token_;
};

int replacements = 0;

int countReplacements(const char* call)
{
    replacements += std::string(call) == "renameat";
    return 0;
}

}

TEST_F(UserDefaults, AreOneObject) { EXPECT_EQ(defaults(), defaults()); }

TEST_F(UserDefaults, AnswerNothingForAnAbsentKey)
{
    EXPECT_FALSE(defaults()->objectForKey("absent"_ns));
    EXPECT_EQ(defaults()->integerForKey("absent"_ns), 0);
    EXPECT_EQ(defaults()->floatForKey("absent"_ns), 0);
    EXPECT_EQ(defaults()->doubleForKey("absent"_ns), 0);
    EXPECT_FALSE(defaults()->boolForKey("absent"_ns));
    EXPECT_FALSE(defaults()->stringForKey("absent"_ns));
    EXPECT_FALSE(defaults()->dataForKey("absent"_ns));
    EXPECT_FALSE(defaults()->arrayForKey("absent"_ns));
    EXPECT_FALSE(defaults()->stringArrayForKey("absent"_ns));
    EXPECT_FALSE(defaults()->dictionaryForKey("absent"_ns));
}

TEST_F(UserDefaults, AnswerNothingForNoKey) { EXPECT_FALSE(defaults()->objectForKey(nullptr)); }

TEST_F(UserDefaults, AnswerWhatWasSet)
{
    defaults()->setObject_forKey("value"_ns, "key"_ns);
    EXPECT_EQ(utf8(defaults()->stringForKey("key"_ns)), "value");
}

TEST_F(UserDefaults, ForgetAValueThatIsSetToNil)
{
    defaults()->setObject_forKey("value"_ns, "key"_ns);
    defaults()->setObject_forKey(nullptr, "key"_ns);
    EXPECT_FALSE(defaults()->objectForKey("key"_ns));
}

TEST_F(UserDefaults, ShowTheRegisteredValueAgainAfterARemoval)
{
    registerOne("registered"_ns, "key"_ns);
    defaults()->setObject_forKey("value"_ns, "key"_ns);
    defaults()->removeObjectForKey("key"_ns);
    EXPECT_EQ(utf8(defaults()->stringForKey("key"_ns)), "registered");
}

TEST_F(UserDefaults, AnswerUnderTheSelectorsOfKeyValueCoding)
{
    defaults()->send<"setValue:forKey:">(static_cast<NSObject*>("value"_ns), "key"_ns);
    EXPECT_EQ(textOf(defaults()->send<"valueForKey:", Ref<NSObject>>("key"_ns)), "value");
}

TEST_F(UserDefaults, AreWrittenWhenSynchronized)
{
    defaults()->setObject_forKey("value"_ns, "key"_ns);
    EXPECT_FALSE(std::filesystem::exists(folder.file()));
    EXPECT_TRUE(defaults()->synchronize());
    EXPECT_TRUE(std::filesystem::exists(folder.file()));
}

TEST_F(UserDefaults, AreReadableForTheUserAlone)
{
    defaults()->setObject_forKey("value"_ns, "key"_ns);
    defaults()->synchronize();
    using std::filesystem::perms;
    EXPECT_EQ(std::filesystem::status(folder.file()).permissions(),
        perms::owner_read | perms::owner_write);
    EXPECT_EQ(std::filesystem::status(folder.file().parent_path()).permissions(), perms::owner_all);
}

TEST_F(UserDefaults, LeaveNothingButTheFileAndItsLock)
{
    defaults()->setObject_forKey("value"_ns, "key"_ns);
    defaults()->synchronize();
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder.file().parent_path()))
        names.push_back(entry.path().filename());
    std::ranges::sort(names);
    EXPECT_EQ(names, (std::vector<std::string> { "defaults.lock", "defaults.plist" }));
}

TEST_F(UserDefaults, AreWrittenAMomentAfterTheChange)
{
    defaults()->setObject_forKey("value"_ns, "key"_ns);
    pass(0.1);
    EXPECT_FALSE(std::filesystem::exists(folder.file()));
    pass(0.2);
    EXPECT_TRUE(std::filesystem::exists(folder.file()));
}

TEST_F(UserDefaults, ReplaceTheFileOnceForABurstOfChanges)
{
    replacements = 0;
    defaults::fault = countReplacements;
    for (int i = 0; i < 1000; ++i)
        defaults()->setInteger_forKey(i, "key"_ns);
    pass(1);
    defaults::fault = nullptr;
    EXPECT_EQ(replacements, 1);
    folder.restart();
    EXPECT_EQ(defaults()->integerForKey("key"_ns), 999);
}

TEST_F(UserDefaults, LeaveTheFileAloneWhenAValueIsSetAgain)
{
    defaults()->setObject_forKey("value"_ns, "key"_ns);
    defaults()->synchronize();
    replacements = 0;
    defaults::fault = countReplacements;
    defaults()->setObject_forKey("value"_ns, "key"_ns);
    EXPECT_TRUE(defaults()->synchronize());
    defaults::fault = nullptr;
    EXPECT_EQ(replacements, 0);
}

TEST_F(UserDefaults, SynchronizeWithNothingToWriteMakesNoFile)
{
    EXPECT_TRUE(defaults()->synchronize());
    EXPECT_FALSE(std::filesystem::exists(folder.file()));
}

TEST_F(UserDefaults, KeepARemovalAfterARestart)
{
    defaults()->setObject_forKey("value"_ns, "key"_ns);
    folder.restart();
    defaults()->removeObjectForKey("key"_ns);
    folder.restart();
    EXPECT_FALSE(defaults()->objectForKey("key"_ns));
}

TEST_F(UserDefaults, NeverWriteRegisteredValues)
{
    registerOne("registered"_ns, "key"_ns);
    defaults()->setObject_forKey("value"_ns, "other"_ns);
    folder.restart();
    EXPECT_FALSE(defaults()->objectForKey("key"_ns));
}

TEST_F(UserDefaults, ReplaceEarlierRegisteredValuesAndKeepOthers)
{
    defaults()->registerDefaults(makeDictionary({ { "a"_ns, "1"_ns }, { "b"_ns, "1"_ns } }).get());
    registerOne("2"_ns, "b"_ns);
    EXPECT_EQ(defaults()->integerForKey("a"_ns), 1);
    EXPECT_EQ(defaults()->integerForKey("b"_ns), 2);
}

TEST_F(UserDefaults, RefuseToRegisterWhatIsNoPropertyList)
{
    EXPECT_NE(raisedBy([] { registerOne(NSNull::cls().null().get(), "key"_ns); }), "");
    EXPECT_FALSE(defaults()->objectForKey("key"_ns));
}

TEST_F(UserDefaults, PostAChangeOnce)
{
    ChangeCounter changes(defaults().get());
    defaults()->setObject_forKey("value"_ns, "key"_ns);
    EXPECT_EQ(changes.count, 1);
}

TEST_F(UserDefaults, PostNothingForAnEqualValue)
{
    defaults()->setObject_forKey("value"_ns, "key"_ns);
    ChangeCounter changes(defaults().get());
    defaults()->setObject_forKey("value"_ns, "key"_ns);
    defaults()->removeObjectForKey("absent"_ns);
    EXPECT_EQ(changes.count, 0);
}

TEST_F(UserDefaults, CanBeReadAndChangedInAnObserver)
{
    int rounds = 0;
    const Ref<NSObject> token
        = NSNotificationCenter::cls().defaultCenter()->addObserverForName_object_queue_usingBlock(
            NSUserDefaultsDidChangeNotification, nullptr, nullptr, [&rounds](NSNotification*) {
                if (++rounds < 5)
                    defaults()->setInteger_forKey(defaults()->integerForKey("n"_ns) + 1, "n"_ns);
            });
    defaults()->setInteger_forKey(1, "n"_ns);
    NSNotificationCenter::cls().defaultCenter()->removeObserver(token.get());
    EXPECT_EQ(defaults()->integerForKey("n"_ns), 5);
}

TEST_F(UserDefaults, AnswerAllKeysWithTheValuesThatCount)
{
    defaults()->registerDefaults(makeDictionary({ { "a"_ns, "1"_ns }, { "b"_ns, "1"_ns } }).get());
    defaults()->setObject_forKey("2"_ns, "b"_ns);
    const Ref<NSDictionary> all = defaults()->dictionaryRepresentation();
    EXPECT_EQ(textOf(all->objectForKey("a"_ns)), "1");
    EXPECT_EQ(textOf(all->objectForKey("b"_ns)), "2");
}

TEST_F(UserDefaults, ForceNothing)
{
    defaults()->setObject_forKey("value"_ns, "key"_ns);
    EXPECT_FALSE(defaults()->objectIsForcedForKey("key"_ns));
    EXPECT_FALSE(defaults()->objectIsForcedForKey_inDomain("key"_ns, NSGlobalDomain));
}

TEST_F(UserDefaults, AreAnotherObjectAfterAReset)
{
    const Ref<NSUserDefaults> before = defaults();
    before->setObject_forKey("value"_ns, "key"_ns);
    NSUserDefaults::cls().resetStandardUserDefaults();
    EXPECT_NE(defaults(), before);
    EXPECT_EQ(utf8(defaults()->stringForKey("key"_ns)), "value");
    EXPECT_TRUE(std::filesystem::exists(folder.file()));
}

TEST_F(UserDefaults, AreSharedByTheThreadsOfTheProcess)
{
    std::vector<std::thread> threads;
    for (int t = 0; t < 8; ++t) {
        threads.emplace_back([t] {
            const Ref<NSString> own = stringFrom("own" + std::to_string(t));
            for (int i = 0; i < 500; ++i) {
                defaults()->setInteger_forKey(i, own.get());
                defaults()->setInteger_forKey(i, "shared"_ns);
                EXPECT_EQ(defaults()->integerForKey(own.get()), i);
                if (i % 100 == t)
                    defaults()->synchronize();
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    folder.restart();
    for (int t = 0; t < 8; ++t)
        EXPECT_EQ(defaults()->integerForKey(stringFrom("own" + std::to_string(t)).get()), 499);
    EXPECT_EQ(defaults()->integerForKey("shared"_ns), 499);
}

TEST_F(UserDefaults, LieUnderTheIdentifierOfTheMainBundle)
{
    const test::BundleFolder bundle;
    bundle.add("Info.plist", "{ CFBundleIdentifier = \"org.example.App\"; }");
    const test::MainBundle main(bundle);
    folder.restart();
    const auto own = alloc<NSUserDefaults>()->init();
    own->setObject_forKey("value"_ns, "key"_ns);
    EXPECT_TRUE(own->synchronize());
    EXPECT_TRUE(std::filesystem::exists(folder.file("org.example.App")));
    EXPECT_TRUE(own->persistentDomainForName("org.example.App"_ns));
}

TEST_F(UserDefaults, LieUnderTheNameOfTheProcessWithoutAnIdentifier)
{
    const test::BundleFolder bundle;
    bundle.add("Info.plist", "{ CFBundleIdentifier = \"\"; }");
    const test::MainBundle main(bundle);
    EXPECT_EQ(defaults::applicationName(), utf8(NSProcessInfo::cls().processInfo()->processName()));
}

TEST(DefaultsAtExit, AreWritten)
{
    constexpr const char* kVariable = "BRINDLE_TEST_DEFAULTS_FOLDER";
    // The process that ends begins anew with this test, and learns here where to write.
    std::optional<test::TemporaryFolder> own;
    if (!std::getenv(kVariable))
        ::setenv(kVariable, own.emplace().path().c_str(), 1);
    const std::string folder = std::getenv(kVariable);
    const auto end = [&folder] {
        setDefaultsFolder(folder.c_str());
        NSUserDefaults::cls().standardUserDefaults()->setInteger_forKey(7, "key"_ns);
        std::exit(0);
    };
    EXPECT_EXIT(end(), testing::ExitedWithCode(0), "");
    ::unsetenv(kVariable);
    // The other process may go by another name than this one, which tests before have given new ones.
    const std::filesystem::directory_iterator domain(folder);
    ASSERT_NE(domain, std::filesystem::directory_iterator());
    defaults::File file(domain->path());
    EXPECT_TRUE(file.refresh());
    EXPECT_EQ(textOf(file.contents()->objectForKey("key"_ns)), "7");
}

TEST_F(UserDefaults, SeeWhatAnotherProcessWroteAfterASecond)
{
    EXPECT_FALSE(defaults()->objectForKey("key"_ns));
    otherProcessSets("key"_ns, "value"_ns);
    EXPECT_FALSE(defaults()->objectForKey("key"_ns));
    clock.advance(1);
    EXPECT_EQ(utf8(defaults()->stringForKey("key"_ns)), "value");
}

TEST_F(UserDefaults, SeeWhatAnotherProcessWroteWhenSynchronizedAndPostIt)
{
    defaults()->setObject_forKey("mine"_ns, "own"_ns);
    defaults()->synchronize();
    otherProcessSets("key"_ns, "value"_ns);
    ChangeCounter changes(defaults().get());
    EXPECT_TRUE(defaults()->synchronize());
    EXPECT_EQ(utf8(defaults()->stringForKey("key"_ns)), "value");
    EXPECT_EQ(utf8(defaults()->stringForKey("own"_ns)), "mine");
    EXPECT_EQ(changes.count, 1);
}

TEST_F(UserDefaults, AreComparedThoughTheirPartsAreShared)
{
    // Each level holds the one below twice: two towers hold 2^60 pairs of parts.
    const auto writeTower = [&](NSString* ground) {
        Ref<NSArray> tower = makeArray({ ground });
        for (int i = 0; i < 60; ++i)
            tower = makeArray({ tower.get(), tower.get() });
        otherProcessSets("tower"_ns, tower.get());
        EXPECT_TRUE(defaults()->synchronize());
    };
    writeTower("x"_ns);
    ChangeCounter changes(defaults().get());
    writeTower("x"_ns);
    EXPECT_EQ(changes.count, 0);
    writeTower("y"_ns);
    EXPECT_EQ(changes.count, 1);
}

TEST_F(UserDefaults, WriteOnlyTheirOwnChangesOverThoseOfOthers)
{
    defaults()->setObject_forKey("1"_ns, "a"_ns);
    defaults()->setObject_forKey("1"_ns, "b"_ns);
    defaults()->synchronize();
    defaults()->setObject_forKey("2"_ns, "a"_ns);
    otherProcessSets("b"_ns, "3"_ns);
    EXPECT_TRUE(defaults()->synchronize());
    EXPECT_EQ(utf8(defaults()->stringForKey("a"_ns)), "2");
    EXPECT_EQ(utf8(defaults()->stringForKey("b"_ns)), "3");
}

TEST_F(UserDefaults, StartWithRegisteredValuesWhenTheFileIsDamaged)
{
    defaults()->setObject_forKey("value"_ns, "key"_ns);
    defaults()->synchronize();
    std::ofstream(folder.file()) << "{ damaged";
    folder.restart();
    registerOne("registered"_ns, "key"_ns);
    EXPECT_EQ(utf8(defaults()->stringForKey("key"_ns)), "registered");
    defaults()->setObject_forKey("again"_ns, "key"_ns);
    EXPECT_TRUE(defaults()->synchronize());
    EXPECT_TRUE(std::filesystem::exists(folder.file().string() + ".damaged"));
}

TEST_F(UserDefaults, KeepChangesThatCouldNotBeWritten)
{
    defaults()->setObject_forKey("value"_ns, "key"_ns);
    defaults::fault = [](const char*) { return ENOSPC; };
    EXPECT_FALSE(defaults()->synchronize());
    defaults()->setObject_forKey("late"_ns, "other"_ns);
    defaults::fault = nullptr;
    EXPECT_EQ(utf8(defaults()->stringForKey("key"_ns)), "value");
    EXPECT_TRUE(defaults()->synchronize());
    folder.restart();
    EXPECT_EQ(utf8(defaults()->stringForKey("key"_ns)), "value");
    EXPECT_EQ(utf8(defaults()->stringForKey("other"_ns)), "late");
}
