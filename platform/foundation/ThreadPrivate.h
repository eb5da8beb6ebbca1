// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <atomic>
#include <memory>
#include <mutex>

#include "NSRunLoop.h"
#include "NSThread.h"

namespace brindle {

/// What belongs to one thread: its loop and its object, both made when they are first asked for.
struct ThreadState : std::enable_shared_from_this<ThreadState> {
    std::mutex mutex;
    Ref<NSRunLoop> loop;
    Ref<NSThread> object; ///< kept while the thread runs
    Ref<NSString> name;
    std::atomic<bool> started { false };
    std::atomic<bool> cancelled { false };
    std::atomic<bool> executing { false };
    std::atomic<bool> finished { false };
    std::size_t stackSize = 0;
    bool isMain = false;

    static ThreadState& current();
    static ThreadState& main();
    /// Makes this state the calling thread's own; the thread's end takes it back.
    static void adopt(const std::shared_ptr<ThreadState>& state);
    /// Answers the loop of a thread, running or not, for handing something to it.
    static Ref<NSRunLoop> loopOf(NSThread& thread) { return of(thread).ensureLoop(); }
    Ref<NSRunLoop> ensureLoop();
    Ref<NSThread> ensureObject();
    void end();
    /// Answers the state of a thread; one without `init` gets a fresh one.
    static ThreadState& of(NSThread& thread);
};

}
