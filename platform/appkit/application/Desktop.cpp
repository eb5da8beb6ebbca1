// SPDX-License-Identifier: Apache-2.0
#include "DesktopPrivate.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string_view>
#include <thread>

#include <csignal>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include "foundation/NSString.h"

namespace brindle::desktop {

namespace {

    std::string variable(const char* name)
    {
        const char* const value = std::getenv(name);
        return value ? value : "";
    }
    std::vector<std::string> pieces(std::string_view list)
    {
        std::vector<std::string> out;
        while (!list.empty()) {
            const std::size_t end = std::min(list.find(':'), list.size());
            if (end > 0)
                out.emplace_back(list.substr(0, end));
            list.remove_prefix(std::min(end + 1, list.size()));
        }
        return out;
    }
    std::string folderOf(const char* name, NSString* otherwise)
    {
        const std::string value = variable(name);
        return value.starts_with('/') ? value : utf8Of(otherwise->stringByExpandingTildeInPath());
    }
    std::string listOf(const char* name, const char* otherwise)
    {
        const std::string value = variable(name);
        return value.empty() ? otherwise : value;
    }

    bool isProgram(const std::string& name)
    {
        const std::vector<std::string> folders = pieces(variable("PATH"));
        return std::any_of(folders.begin(), folders.end(), [&](const std::string& folder) {
            std::error_code ignored;
            const std::string path = folder + "/" + name;
            return std::filesystem::is_regular_file(path, ignored)
                && ::access(path.c_str(), X_OK) == 0;
        });
    }

    /// The files in which desktops write down what opens what.
    std::vector<std::string> handlerLists()
    {
        std::vector<std::string> out;
        std::vector<std::string> settings = pieces(listOf("XDG_CONFIG_DIRS", "/etc/xdg"));
        settings.insert(settings.begin(), folderOf("XDG_CONFIG_HOME", "~/.config"_ns));
        for (const std::string& folder : settings)
            out.push_back(folder + "/mimeapps.list");
        std::vector<std::string> data
            = pieces(listOf("XDG_DATA_DIRS", "/usr/local/share:/usr/share"));
        data.insert(data.begin(), folderOf("XDG_DATA_HOME", "~/.local/share"_ns));
        for (const std::string& folder : data) {
            out.push_back(folder + "/applications/mimeapps.list");
            out.push_back(folder + "/applications/mimeinfo.cache");
        }
        return out;
    }
    bool names(const std::string& file, const std::string& key)
    {
        std::error_code ignored;
        if (!std::filesystem::is_regular_file(file, ignored))
            return false;
        std::ifstream lines(file);
        bool removes = false;
        for (std::string line; std::getline(lines, line);) {
            if (line.starts_with('['))
                removes = line.starts_with("[Removed Associations]");
            else if (!removes && line.starts_with(key) && line.size() > key.size())
                return true;
        }
        return false;
    }

    /// Waits for a process on a thread of its own, or it would stay in the system's list for ever.
    void reap(pid_t process)
    {
        std::thread([process] {
            while (::waitpid(process, nullptr, 0) < 0 && errno == EINTR) { }
        }).detach();
    }

    /// What a new process begins with: no streams, no files, no signals kept back, a session of its own.
    class Birth {
    public:
        Birth()
        {
            ::posix_spawn_file_actions_init(&actions_);
            ::posix_spawn_file_actions_addopen(&actions_, 0, "/dev/null", O_RDONLY, 0);
            ::posix_spawn_file_actions_addopen(&actions_, 1, "/dev/null", O_WRONLY, 0);
            ::posix_spawn_file_actions_addopen(&actions_, 2, "/dev/null", O_WRONLY, 0);
            ::posix_spawn_file_actions_addclosefrom_np(&actions_, 3);
            ::posix_spawnattr_init(&attributes_);
            sigset_t signals;
            ::sigemptyset(&signals);
            ::posix_spawnattr_setsigmask(&attributes_, &signals);
            ::sigfillset(&signals);
            ::posix_spawnattr_setsigdefault(&attributes_, &signals);
            ::posix_spawnattr_setflags(
                &attributes_, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSID);
        }
        ~Birth()
        {
            ::posix_spawn_file_actions_destroy(&actions_);
            ::posix_spawnattr_destroy(&attributes_);
        }
        Birth(const Birth&) = delete;
        Birth& operator=(const Birth&) = delete;

        pid_t of(const std::vector<std::string>& command) const
        {
            std::vector<char*> arguments;
            for (const std::string& word : command)
                arguments.push_back(const_cast<char*>(word.c_str()));
            arguments.push_back(nullptr);
            pid_t process = 0;
            const int failure = ::posix_spawnp(
                &process, arguments[0], &actions_, &attributes_, arguments.data(), environ);
            return failure == 0 ? process : 0;
        }

    private:
        posix_spawn_file_actions_t actions_ {};
        posix_spawnattr_t attributes_ {};
    };

}

bool hasHandler(const std::string& scheme)
{
    std::string key = "x-scheme-handler/" + scheme + "=";
    std::transform(key.begin(), key.end(), key.begin(),
        [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    const std::vector<std::string> lists = handlerLists();
    return std::any_of(
        lists.begin(), lists.end(), [&](const std::string& file) { return names(file, key); });
}

int launch(const std::vector<std::string>& command)
{
    if (command.empty() || command.front().empty())
        return 0;
    const pid_t process = Birth().of(command);
    if (process > 0)
        reap(process);
    return process;
}

bool open(const std::string& url, const std::string& scheme)
{
    if (variable("DISPLAY").empty() && variable("WAYLAND_DISPLAY").empty())
        return false;
    // Every opener knows what to do with these, whatever the lists say.
    constexpr std::array kOrdinary { "file", "http", "https", "ftp", "mailto" };
    if (std::find(kOrdinary.begin(), kOrdinary.end(), scheme) == kOrdinary.end()
        && !hasHandler(scheme))
        return false;
    if (isProgram("xdg-open"))
        return launch({ "xdg-open", url }) > 0;
    return isProgram("gio") && launch({ "gio", "open", url }) > 0;
}

}
