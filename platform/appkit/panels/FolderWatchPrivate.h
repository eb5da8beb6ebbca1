// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>
#include <string>

#include "foundation/NSRunLoop.h"
#include "foundation/NSTimer.h"

namespace brindle::files {

/// Tells when something comes to a folder, leaves it or changes in it. What happens within a quarter of a second is told once.
///
/// Where the system does not watch, nothing is told. Thread: main.
class FolderWatch {
public:
    using Told = std::function<void()>;

    FolderWatch(const std::string& folder, Told told);
    ~FolderWatch();
    FolderWatch(const FolderWatch&) = delete;
    FolderWatch& operator=(const FolderWatch&) = delete;

private:
    void read();

    Told told_;
    int descriptor_;
    Ref<NSRunLoopSource> source_;
    Ref<NSTimer> due_; // nil while there is nothing to tell
};

}
