// SPDX-License-Identifier: Apache-2.0
#include "Programs.h"

#include <array>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <spawn.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

namespace brindle::bench {

namespace {

    /// The words as `posix_spawn` wants them; they stay the caller's.
    std::vector<char*> wordsOf(const std::vector<std::string>& arguments)
    {
        std::vector<char*> words;
        for (const std::string& word : arguments)
            words.push_back(const_cast<char*>(word.c_str()));
        words.push_back(nullptr);
        return words;
    }

}

Ended runProgram(const std::vector<std::string>& arguments)
{
    const std::vector<char*> words = wordsOf(arguments);
    std::array<int, 2> pipe {};
    Ended ended;
    if (::pipe(pipe.data()) != 0)
        return ended;
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, pipe[1], STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, pipe[1], STDERR_FILENO);
    posix_spawn_file_actions_addclose(&actions, pipe[0]);
    posix_spawn_file_actions_addclose(&actions, pipe[1]);
    pid_t child = 0;
    ended.started = posix_spawnp(&child, words[0], &actions, nullptr, words.data(), environ) == 0;
    posix_spawn_file_actions_destroy(&actions);
    close(pipe[1]);
    if (ended.started) {
        std::array<char, 4096> buffer {};
        for (ssize_t got = 0; (got = read(pipe[0], buffer.data(), buffer.size())) > 0;)
            ended.text.append(buffer.data(), static_cast<std::size_t>(got));
        int status = 0;
        waitpid(child, &status, 0);
        ended.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128;
    }
    close(pipe[0]);
    return ended;
}

Taken measureProgram(const std::vector<std::string>& arguments)
{
    std::vector<std::string> words { besideThis("bench-launch") };
    words.insert(words.end(), arguments.begin(), arguments.end());
    Taken taken { runProgram(words) };
    std::string& text = taken.ended.text;
    if (text.ends_with('\n'))
        text.pop_back();
    const std::size_t line = text.rfind('\n');
    if (line == text.npos
        || std::sscanf(&text[line], "%lf %lf", &taken.milliseconds, &taken.peakBytes) != 2)
        taken.ended.started = false;
    else
        text.erase(line);
    return taken;
}

Running::Running(const std::vector<std::string>& arguments)
{
    const std::vector<char*> words = wordsOf(arguments);
    if (posix_spawnp(&process_, words[0], nullptr, nullptr, words.data(), environ) != 0)
        process_ = 0;
}

Running::~Running()
{
    if (process_ == 0)
        return;
    kill(process_, SIGTERM);
    waitpid(process_, nullptr, 0);
}

double Running::timesScheduled() const
{
    double times = 0;
    std::error_code none;
    const auto threads = std::filesystem::path("/proc") / std::to_string(process_) / "task";
    if (process_ == 0 || waitpid(process_, nullptr, WNOHANG) != 0)
        return -1;
    for (const auto& thread : std::filesystem::directory_iterator(threads, none)) {
        std::ifstream status(thread.path() / "status");
        for (std::string word; status >> word;) {
            double count = 0;
            if (word == "voluntary_ctxt_switches:" && status >> count)
                times += count;
        }
    }
    return times;
}

std::string besideThis(const std::string& relativePath)
{
    return std::filesystem::read_symlink("/proc/self/exe").parent_path() / relativePath;
}

}
