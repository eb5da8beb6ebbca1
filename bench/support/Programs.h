// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <sys/types.h>
#include <vector>

namespace brindle::bench {

/// How a program that was started ended.
struct Ended {
    bool started = false;
    int status = 0; ///< 0: well
    std::string text; ///< what it wrote to both outputs
};

/// What a program that was started took.
struct Taken {
    Ended ended;
    double milliseconds = 0; ///< from its start to its end
    double peakBytes = 0; ///< the most memory it had
};

/// Starts a program, found in PATH, and waits for its end.
Ended runProgram(const std::vector<std::string>& arguments);

/// Starts a program from a small one, whose own memory does not count as the program's.
Taken measureProgram(const std::vector<std::string>& arguments);

/// A program that runs beside this one until the object goes.
class Running {
public:
    explicit Running(const std::vector<std::string>& arguments);
    ~Running();
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;

    /// Answers how often its threads gave the processor back and were woken again; negative when it has ended.
    double timesScheduled() const;

private:
    pid_t process_ = 0;
};

/// Answers the path of a program that is built beside this one.
std::string besideThis(const std::string& relativePath);

}
