// SPDX-License-Identifier: Apache-2.0

// Starts a program and waits for its end. Behind what that wrote stands a line with the milliseconds it took and the most
// bytes it had; the status is the program's.
//     bench-launch program [argument]...
//
// The kernel counts what a process had before it became another program. So whoever starts what is measured is small.

#include <chrono>
#include <cstdio>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

int main(int count, char** arguments)
{
    using Clock = std::chrono::steady_clock;
    constexpr int kNotStarted = 127;
    if (count < 2)
        return kNotStarted;
    const Clock::time_point start = Clock::now();
    pid_t child = 0;
    if (posix_spawnp(&child, arguments[1], nullptr, nullptr, arguments + 1, environ) != 0)
        return kNotStarted;
    rusage usage {};
    int status = 0;
    if (wait4(child, &status, 0, &usage) != child)
        return kNotStarted;
    const std::chrono::duration<double, std::milli> elapsed = Clock::now() - start;
    std::printf("\n%.6f %ld\n", elapsed.count(), usage.ru_maxrss * 1024);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128;
}
