// SPDX-License-Identifier: Apache-2.0
#include "NSProcessInfo.h"

#include <atomic>
#include <cerrno>
#include <mutex>
#include <pwd.h>
#include <sys/utsname.h>
#include <thread>
#include <unistd.h>

#include "FilesPrivate.h"
#include "NSDictionary.h"
#include "NSMutableArray.h"
#include "NSMutableDictionary.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    constinit std::mutex nameMutex;

    std::string contentsOf(const char* path)
    {
        const auto buffer = files::read(path);
        return buffer
            ? std::string(reinterpret_cast<const char*>(buffer->bytes()), buffer->length())
            : std::string();
    }

}

template <> struct NSProcessInfo::Methods<struct Facts> {

    static Ref<NSProcessInfo> processInfo(Class&)
    {
        static NSProcessInfo* const info = make<NSProcessInfo>().leak();
        return info;
    }
    static Ref<NSString> processName(NSProcessInfo& self)
    {
        const std::lock_guard guard(nameMutex);
        if (!self.name_)
            self.name_ = files::textFrom(program_invocation_short_name);
        return self.name_;
    }
    static void setProcessName(NSProcessInfo& self, NSString* name)
    {
        if (!name)
            return;
        Ref<NSString> copy = cast<NSString>(name->copy());
        const std::lock_guard guard(nameMutex);
        self.name_.swap(copy);
    }
    static int processIdentifier(NSProcessInfo&) { return getpid(); }
    static Ref<NSArray> arguments(NSProcessInfo&)
    {
        // The system's own record: it needs no hold on the program's main function.
        const std::string bytes = contentsOf("/proc/self/cmdline");
        const auto all = make<NSMutableArray>();
        for (std::size_t at = 0; at < bytes.size();) {
            const std::string one = bytes.c_str() + at;
            all->addObject(files::textFrom(one).get());
            at += one.size() + 1;
        }
        return cast<NSArray>(all->copy());
    }
    static Ref<NSDictionary> environment(NSProcessInfo&)
    {
        const auto all = make<NSMutableDictionary>();
        for (char** entry = environ; entry && *entry; ++entry) {
            const std::string text = *entry;
            const std::size_t equals = text.find('=');
            if (equals != std::string::npos)
                all->setObject_forKey(files::textFrom(text.substr(equals + 1)).get(),
                    files::textFrom(text.substr(0, equals)).get());
        }
        return cast<NSDictionary>(all->copy());
    }
    static Ref<NSString> hostName(NSProcessInfo&)
    {
        utsname names {};
        return uname(&names) == 0 ? files::textFrom(names.nodename) : Ref<NSString>("localhost"_ns);
    }
    static Ref<NSString> userName(NSProcessInfo&)
    {
        passwd entry {};
        passwd* found = nullptr;
        char room[4096];
        if (getpwuid_r(getuid(), &entry, room, sizeof room, &found) == 0 && found)
            return files::textFrom(found->pw_name);
        return stringFrom(std::to_string(getuid()));
    }
    static Ref<NSString> globallyUniqueString(NSProcessInfo&)
    {
        static std::atomic<std::uint64_t> count { 0 };
        std::string identifier = contentsOf("/proc/sys/kernel/random/uuid");
        while (!identifier.empty() && identifier.back() == '\n')
            identifier.pop_back();
        return stringFrom(
            identifier + '-' + std::to_string(getpid()) + '-' + std::to_string(count.fetch_add(1)));
    }
    static Ref<NSString> operatingSystemVersionString(NSProcessInfo&)
    {
        utsname names {};
        uname(&names);
        return files::textFrom(std::string(names.sysname) + ' ' + names.release);
    }
    static NSUInteger processorCount(NSProcessInfo&)
    {
        return static_cast<NSUInteger>(sysconf(_SC_NPROCESSORS_CONF));
    }
    static NSUInteger activeProcessorCount(NSProcessInfo&)
    {
        return static_cast<NSUInteger>(sysconf(_SC_NPROCESSORS_ONLN));
    }
    static NSUInteger physicalMemory(NSProcessInfo&)
    {
        return static_cast<NSUInteger>(sysconf(_SC_PHYS_PAGES))
            * static_cast<NSUInteger>(sysconf(_SC_PAGESIZE));
    }
    static NSTimeInterval systemUptime(NSProcessInfo&) { return Clock::uptime(); }

    static void table(Builder& t)
    {
        t.classMethods({ { "processInfo", imp<processInfo> } });
        t.methods({
            { "processName", imp<processName> },
            { "setProcessName:", imp<setProcessName> },
            { "processIdentifier", imp<processIdentifier> },
            { "arguments", imp<arguments> },
            { "environment", imp<environment> },
            { "hostName", imp<hostName> },
            { "userName", imp<userName> },
            { "globallyUniqueString", imp<globallyUniqueString> },
            { "operatingSystemVersionString", imp<operatingSystemVersionString> },
            { "processorCount", imp<processorCount> },
            { "activeProcessorCount", imp<activeProcessorCount> },
            { "physicalMemory", imp<physicalMemory> },
            { "systemUptime", imp<systemUptime> },
        });
    }
};
BRINDLE_RECORD(NSProcessInfo, Facts)

}
