// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <string>
#include <vector>

#include "PrimeJobs.h"
#include "appkit/NSSlider.h"
#include "kit/Card.h"
#include "kit/Chip.h"

namespace gallery {

/// Jobs that wait for each other, drawn with what each is doing; has the queue that runs them.
class JobsCard : public GalleryCard {
    BRINDLE_OBJECT(JobsCard, GalleryCard)

public:
    /// Begins anew when nothing is under way; else goes on after a pause.
    void run() { send<"run">(); }
    /// Runs one job and pauses.
    void step() { send<"step">(); }
    /// Begins no further job, or goes on.
    void pause() { send<"pause">(); }
    void cancel() { send<"cancel">(); }
    /// - most: how many jobs run at the same time.
    void setLimit(brindle::NSInteger most) { send<"setLimit:">(most); }
    brindle::Ref<brindle::NSOperationQueue> queue() const
    {
        return send<"queue", brindle::Ref<brindle::NSOperationQueue>>();
    }

    std::size_t ended() const; ///< how many jobs of this run have ended
    std::string resultOf(std::size_t job) const; ///< empty before its end
    const std::vector<std::string>& reports() const { return reports_; }

private:
    struct Shown {
        brindle::Ref<PrimeJob> job;
        double done = 0;
        bool hasBegun = false;
        bool hasEnded = false;
    };

    brindle::Ref<brindle::NSOperationQueue> queue_;
    brindle::NSInteger limit_ = 0; // of jobs at the same time
    std::array<Shown, PrimeJobs::kCount> shown_;
    std::vector<std::string> reports_; // the last in front
};

/// Runs, pauses and cancels, and says how many jobs run at the same time.
class QueueCard : public GalleryCard {
    BRINDLE_OBJECT(QueueCard, GalleryCard)

public:
    void show(const JobsCard& jobs);
    brindle::Ref<brindle::NSSlider> slider() const
    {
        return send<"slider", brindle::Ref<brindle::NSSlider>>();
    }

private:
    brindle::Ref<GalleryChip> run_, step_, pause_, cancel_;
    brindle::Ref<brindle::NSSlider> slider_;
    std::size_t ended_ = 0;
};

/// What was reported on the main queue, the last in front.
class JobReportsCard : public GalleryCard {
    BRINDLE_OBJECT(JobReportsCard, GalleryCard)

public:
    void show(const JobsCard& jobs);

private:
    std::vector<std::string> lines_;
};

}
