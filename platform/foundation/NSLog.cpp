// SPDX-License-Identifier: Apache-2.0
#include "NSLog.h"

#include <cerrno>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <mutex>
#include <unistd.h>

#include "Clock.h"
#include "NSProcessInfo.h"
#include "StringFormat.h"

namespace brindle {

namespace {

    struct Sink {
        std::mutex mutex;
        Block<void(NSString*)> closure;
    };

    Sink& sink()
    {
        static Sink* const shared = new Sink; // lines may come while the process ends
        return *shared;
    }

    /// Answers "2026-01-31 12:34:56.789" in the local time zone.
    std::string stamp(double wall)
    {
        constexpr double kReferenceDate = 978307200;
        const double milliseconds = std::floor((wall + kReferenceDate) * 1000);
        const double seconds = std::floor(milliseconds / 1000);
        const auto time = static_cast<std::time_t>(seconds);
        std::tm parts {};
        localtime_r(&time, &parts);
        char text[64];
        const std::size_t length = std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &parts);
        std::snprintf(text + length, sizeof text - length, ".%03d",
            static_cast<int>(milliseconds - seconds * 1000));
        return text;
    }

    void writeLine(const std::string& line)
    {
        const char* at = line.data();
        std::size_t left = line.size();
        while (left > 0) { // one round, unless the other end is full
            const ssize_t written = ::write(STDERR_FILENO, at, left);
            if (written < 0 && errno != EINTR)
                return;
            if (written > 0) {
                at += written;
                left -= static_cast<std::size_t>(written);
            }
        }
    }

    void logText(NSString* text)
    {
        Block<void(NSString*)> closure;
        {
            const std::lock_guard guard(sink().mutex);
            closure = sink().closure;
        }
        if (closure) {
            closure(text);
            return;
        }
        const Ref<NSString> process = NSProcessInfo::cls().processInfo()->processName();
        writeLine(stamp(Clock::wall()) + ' ' + utf8Of(process.get()) + '['
            + std::to_string(getpid()) + ':' + std::to_string(gettid()) + "] " + utf8Of(text)
            + '\n');
    }

}

void NSLogv(NSString* format, va_list arguments)
{
    logText(stringFromFormat(format, arguments).get());
}

void logFormat(NSString* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    const strings::ArgumentsEnd end(arguments);
    NSLogv(format, arguments);
}

void setLogSink(const Block<void(NSString*)>& closure)
{
    Block<void(NSString*)> before = closure;
    const std::lock_guard guard(sink().mutex);
    sink().closure.swap(before);
}

}
