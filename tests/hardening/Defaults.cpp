// SPDX-License-Identifier: Apache-2.0
#include <fstream>
#include <iterator>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "foundation/NSUserDefaults.h"
#include "support/DefaultsFolder.h"
#include "support/DefaultsWriters.h"
#include "support/Figures.h"
#include "support/Strings.h"

using namespace brindle;

namespace {

constexpr int kProcesses = 8;
constexpr int kWriters = 4;
constexpr int kWrites = 1000; // of a process
constexpr int kKeys = 25; // of a thread

Ref<NSUserDefaults> standard() { return NSUserDefaults::cls().standardUserDefaults(); }

Ref<NSString> keyOf(int process, int thread, int number)
{
    return stringFrom(std::to_string(process) + "." + std::to_string(thread) + "."
        + std::to_string(number % kKeys));
}

void writeOwnAndShared(int process, int thread)
{
    for (int i = 0; i < kWrites / kWriters; ++i) {
        standard()->setInteger_forKey(i, keyOf(process, thread, i).get());
        standard()->setInteger_forKey(i, "shared"_ns);
        if (i % kKeys == 0)
            standard()->synchronize();
    }
    if (!standard()->synchronize())
        ::_exit(1);
}

void writeFromThreads(int process)
{
    std::vector<std::thread> threads;
    for (int thread = 0; thread < kWriters; ++thread)
        threads.emplace_back(writeOwnAndShared, process, thread);
    for (std::thread& thread : threads)
        thread.join();
}

}

TEST(DefaultsHardening, KilledWritersLoseNothing)
{
    const test::TemporaryFolder folder;
    test::WriterKiller killer(folder.path() / "domain", 7);
    const int rounds = test::rounds(1000);
    for (int i = 0; i < rounds; ++i)
        killer.round();
    test::publish({ "killed writers: values lost or torn", rounds,
        static_cast<double>(killer.lost + killer.torn), "values", 0 });
    test::publish({ "killed writers: the next first read and commit", rounds, killer.slowest * 1e3,
        "ms", 50 });
}

TEST(DefaultsHardening, EightProcessesOfFourThreadsLoseNothingOfTheirOwn)
{
    test::DefaultsFolder folder;
    const auto start = std::chrono::steady_clock::now();
    std::vector<pid_t> children;
    for (int process = 0; process < kProcesses; ++process)
        children.push_back(test::startChild([process] { writeFromThreads(process); }));
    for (const pid_t child : children)
        EXPECT_TRUE(test::endedWell(child));
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
    test::publish({ "8 processes of 4 threads write their own keys and a shared one",
        kProcesses * kWrites, taken.count(), "s", 10 });
    folder.restart();
    for (int process = 0; process < kProcesses; ++process) {
        for (int thread = 0; thread < kWriters; ++thread) {
            for (int i = kWrites / kWriters - kKeys; i < kWrites / kWriters; ++i)
                EXPECT_EQ(standard()->integerForKey(keyOf(process, thread, i).get()), i);
        }
    }
}

TEST(DefaultsHardening, TwoThousandFlippedBitsEndInAStart)
{
    test::DefaultsFolder folder;
    standard()->setObject_forKey("value"_ns, "key"_ns);
    standard()->synchronize();
    std::ifstream stream(folder.file(), std::ios::binary);
    const std::string good { std::istreambuf_iterator<char>(stream), {} };
    std::mt19937 random(3);
    test::Slowest start;
    for (int i = 0; i < 2000; ++i) {
        std::string bad = good;
        bad[random() % bad.size()] ^= static_cast<char>(1 << random() % 8);
        std::ofstream(folder.file(), std::ios::binary | std::ios::trunc) << bad;
        folder.restart();
        start.of([] {
            standard()->registerDefaults(makeDictionary({ { "registered"_ns, "there"_ns } }).get());
            ASSERT_EQ(utf8(standard()->stringForKey("registered"_ns)), "there");
        });
    }
    test::publish({ "settings with a flipped bit: a start", start.rounds(), start.milliseconds(),
        "ms", 500 });
}
