// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <atomic>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "foundation/NSOperation.h"
#include "foundation/NSOperationQueue.h"

namespace gallery {

/// A job of a queue: it works in parts, and reports on the main queue after each and at its end.
class PrimeJob : public brindle::NSOperation {
    BRINDLE_OBJECT(PrimeJob, brindle::NSOperation)

public:
    using Work = std::function<std::string(PrimeJob& job)>;
    /// - done: of its work, 0 to 1.
    using Report = std::function<void(const brindle::Ref<PrimeJob>& job, double done)>;

    /// Reports, and answers whether to go on; sent by the work after each part.
    bool goOn(double done);

    std::string title_;
    Work work_;
    Report report_; // called on the main thread
    std::string result_; // to be read once it has ended
    std::atomic<bool> isLastForNow_ { false }; // suspends its queue before it ends

private:
    void tell(double done);
};

/// Jobs that count the prime numbers below ten millions: the small ones first, then four ranges by them, then what the ranges
/// come to together.
struct PrimeJobs {
    static constexpr std::size_t kRanges = 4;
    static constexpr std::size_t kCount = kRanges + 3;
    static constexpr std::size_t kSmall = 0; // places among the jobs
    static constexpr std::size_t kFirstRange = 1;
    static constexpr std::size_t kSum = kFirstRange + kRanges;
    static constexpr std::size_t kGap = kSum + 1;

    std::array<brindle::Ref<PrimeJob>, kCount> jobs;

    /// Makes jobs that wait for each other as they must; they are in no queue yet.
    static PrimeJobs make(const PrimeJob::Report& report);
};

}
