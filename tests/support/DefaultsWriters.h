// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>
#include <csignal>
#include <filesystem>
#include <functional>
#include <optional>
#include <random>
#include <string>

#include <sys/wait.h>
#include <unistd.h>

#include "foundation/NSMutableDictionary.h"
#include "foundation/NSNumber.h"
#include "foundation/NSString.h"
#include "foundation/defaults/DefaultsFilePrivate.h"
#include "support/AheadOfOthers.h"

namespace brindle::test {

/// Runs a body in a child process, whose end it is.
inline pid_t startChild(const std::function<void()>& body)
{
    const pid_t child = ::fork();
    if (child == 0) {
        body();
        ::_exit(0);
    }
    return child;
}

/// Lets a child go on for a moment.
inline void spin(std::chrono::microseconds time)
{
    const auto end = std::chrono::steady_clock::now() + time;
    while (std::chrono::steady_clock::now() < end) { }
}

/// Answers whether the child ended by itself and well.
inline bool endedWell(pid_t child)
{
    int status = 0;
    return ::waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

inline defaults::Deadline inSeconds(int seconds)
{
    return std::chrono::steady_clock::now() + std::chrono::seconds(seconds);
}

/// Kills writers of one file at random moments and looks at what they leave.
///
/// A writer commits the numbers 1, 2, 3 …, each twice and with a text of a length that belongs to it, and tells a number
/// when its commit has returned.
class WriterKiller {
public:
    WriterKiller(std::filesystem::path folder, unsigned seed)
        : folder_(std::move(folder))
        , random_(seed)
    {
    }

    int lost = 0; ///< numbers that had been told and are not in the file
    int torn = 0; ///< files whose values do not belong together
    double slowest = 0; ///< seconds from a kill to the next process's first commit

    void round()
    {
        int channel[2];
        if (::pipe(channel) != 0)
            return;
        const pid_t child = startChild([&] {
            ::close(channel[0]);
            write(channel[1]);
        });
        ::close(channel[1]);
        int told = committed_;
        const int wanted = static_cast<int>(random_() % 3);
        for (int i = 0; i < wanted && ::read(channel[0], &told, sizeof told) == sizeof told; ++i) {
        }
        spin(std::chrono::microseconds(random_() % 12000));
        ::kill(child, SIGKILL);
        ::waitpid(child, nullptr, 0);
        while (::read(channel[0], &told, sizeof told) == sizeof told) { }
        ::close(channel[0]);
        check(told);
    }

private:
    static std::string textFor(int number)
    {
        return std::string(static_cast<std::size_t>(number * 37 % 5000), 'x');
    }
    static bool commit(defaults::File& file, int number)
    {
        return file.update(inSeconds(20), [number](NSDictionary* now) -> Ref<NSDictionary> {
            const auto next = NSMutableDictionary::cls().dictionaryWithDictionary(now);
            const auto value = NSNumber::cls().numberWithInt(number);
            next->setObject_forKey(value.get(), "number"_ns);
            next->setObject_forKey(value.get(), "again"_ns);
            next->setObject_forKey(stringFrom(textFor(number)).get(), "text"_ns);
            return next;
        });
    }
    static int numberIn(const defaults::File& file, NSString* key)
    {
        return maybe(cast<NSNumber>(file.contents()->objectForKey(key)))->intValue();
    }

    void write(int channel) const
    {
        defaults::File file(folder_);
        for (int number = committed_ + 1;; ++number) {
            if (!commit(file, number) || ::write(channel, &number, sizeof number) != sizeof number)
                ::_exit(1);
        }
    }
    void check(int told)
    {
        const AheadOfOthers ahead;
        const auto start = std::chrono::steady_clock::now();
        defaults::File file(folder_);
        file.refresh();
        const int found = numberIn(file, "number"_ns);
        const bool isWhole = numberIn(file, "again"_ns) == found
            && (found == 0
                || utf8Of(cast<NSString>(file.contents()->objectForKey("text"_ns)))
                    == textFor(found));
        lost += found < told || found > told + 1;
        torn += !isWhole;
        committed_ = found + 1;
        lost += !commit(file, committed_);
        const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
        slowest = std::max(slowest, taken.count());
    }

    std::filesystem::path folder_;
    std::mt19937 random_;
    int committed_ = 0;
};

}
