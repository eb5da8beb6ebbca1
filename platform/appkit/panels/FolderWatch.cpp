// SPDX-License-Identifier: Apache-2.0
#include "FolderWatchPrivate.h"

#include <array>
#include <utility>

#include <sys/inotify.h>
#include <unistd.h>

namespace brindle::files {

namespace {

    constexpr double kTogether = 0.25; // seconds
    // A file is told when it has been written, not with every part of it.
    constexpr std::uint32_t kChanges = IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO
        | IN_CLOSE_WRITE | IN_ATTRIB | IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR;

}

FolderWatch::FolderWatch(const std::string& folder, Told told)
    : told_(std::move(told))
    , descriptor_(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC))
{
    if (descriptor_ < 0 || ::inotify_add_watch(descriptor_, folder.c_str(), kChanges) < 0)
        return;
    source_ = NSRunLoopSource::cls().sourceWithFileDescriptor_events_handler(
        descriptor_, NSRunLoopSourceReadable, [this](NSUInteger) { read(); });
    NSRunLoop::cls().mainRunLoop()->addSource_forMode(source_.get(), NSRunLoopCommonModes);
}

FolderWatch::~FolderWatch()
{
    maybe(due_)->invalidate();
    maybe(source_)->invalidate();
    if (descriptor_ >= 0)
        ::close(descriptor_);
}

void FolderWatch::read()
{
    std::array<char, 4096> events; // what they say does not matter: the folder is read anew
    while (::read(descriptor_, events.data(), events.size()) > 0) { }
    if (due_)
        return;
    due_ = NSTimer::cls().timerWithTimeInterval_repeats_block(kTogether, false, [this](NSTimer*) {
        due_ = nullptr;
        const Told told = told_; // which may end the watch
        told();
    });
    NSRunLoop::cls().mainRunLoop()->addTimer_forMode(due_.get(), NSRunLoopCommonModes);
}

}
