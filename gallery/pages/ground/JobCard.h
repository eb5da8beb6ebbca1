// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "core/BRBlock.h"
#include "kit/Card.h"
#include "kit/Chip.h"

namespace gallery {

/// A job that counts primes in the background and reports back on the main queue.
class JobCard : public GalleryCard {
    BRINDLE_OBJECT(JobCard, GalleryCard)

public:
    /// Starts the job, unless it is running.
    void run() { send<"run">(); }

private:
    brindle::Ref<GalleryChip> chip_;
    brindle::NSInteger primes_ = -1; // before the first run
    brindle::NSInteger runs_ = 0;
    bool running_ = false;
};

}
