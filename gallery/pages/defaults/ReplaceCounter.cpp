// SPDX-License-Identifier: Apache-2.0
#include "ReplaceCounter.h"

#include <sys/inotify.h>
#include <unistd.h>

namespace gallery {

ReplaceCounter::ReplaceCounter(const std::string& folder)
    : queue_(inotify_init1(IN_NONBLOCK | IN_CLOEXEC))
{
    inotify_add_watch(queue_, folder.c_str(), IN_MOVED_TO);
}

ReplaceCounter::~ReplaceCounter()
{
    if (queue_ >= 0)
        close(queue_);
}

int ReplaceCounter::count(const std::string& name)
{
    alignas(inotify_event) char buffer[4096];
    int found = 0;
    for (ssize_t size; (size = read(queue_, buffer, sizeof buffer)) > 0;) {
        for (const char* at = buffer; at < buffer + size;) {
            const auto* const event = reinterpret_cast<const inotify_event*>(at);
            found += event->len > 0 && name == event->name ? 1 : 0;
            at += sizeof *event + event->len;
        }
    }
    return found;
}

}
