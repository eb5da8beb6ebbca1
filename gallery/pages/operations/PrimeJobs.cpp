// SPDX-License-Identifier: Apache-2.0
#include "PrimeJobs.h"

#include <algorithm>

#include "foundation/NSThread.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

namespace {

    constexpr std::size_t kSpan = 2'500'000; // numbers of a range
    constexpr std::size_t kParts = 10;
    constexpr std::size_t kRoot = 3163; // its square is beyond the last range
    constexpr double kPause = 0.07; // seconds after each part: it is to be watched

    /// What the jobs find; each writes its own, and reads that of the jobs that it waits for.
    struct Findings {
        std::vector<std::size_t> small;
        struct Range {
            std::size_t count = 0, first = 0, last = 0, gap = 0;
        };
        std::array<Range, PrimeJobs::kRanges> ranges;
    };

    /// Strikes out the multiples of the small primes in a part, and calls a function with each number that is left.
    template <class Visit>
    void sieve(const std::vector<std::size_t>& small, std::size_t begin, std::size_t end,
        const Visit& visit)
    {
        std::vector<bool> struck(end - begin);
        for (const std::size_t prime : small) {
            const std::size_t first = std::max(prime * prime, (begin + prime - 1) / prime * prime);
            for (std::size_t n = first; n < end; n += prime)
                struck[n - begin] = true;
        }
        for (std::size_t n = std::max<std::size_t>(begin, 2); n < end; ++n) {
            if (!struck[n - begin])
                visit(n);
        }
    }

    std::string findSmall(Findings& findings)
    {
        for (std::size_t n = 2; n < kRoot; ++n) {
            const bool isPrime = std::none_of(findings.small.begin(), findings.small.end(),
                [n](std::size_t prime) { return n % prime == 0; });
            if (isPrime)
                findings.small.push_back(n);
        }
        return std::to_string(findings.small.size());
    }
    std::string countRange(PrimeJob& job, Findings& findings, std::size_t index)
    {
        Findings::Range& range = findings.ranges[index];
        constexpr std::size_t kPart = kSpan / kParts;
        for (std::size_t part = 0; part < kParts; ++part) {
            const std::size_t begin = index * kSpan + part * kPart;
            sieve(findings.small, begin, begin + kPart, [&range](std::size_t prime) {
                if (range.count++ == 0)
                    range.first = prime;
                else
                    range.gap = std::max(range.gap, prime - range.last);
                range.last = prime;
            });
            if (!job.goOn(static_cast<double>(part + 1) / kParts))
                return {};
        }
        return std::to_string(range.count);
    }
    std::string addUp(const Findings& findings)
    {
        std::size_t sum = 0;
        for (const Findings::Range& range : findings.ranges)
            sum += range.count;
        return std::to_string(sum);
    }
    std::string findGap(const Findings& findings)
    {
        std::size_t gap = 0;
        std::size_t last = 2;
        for (const Findings::Range& range : findings.ranges) {
            gap = std::max({ gap, range.gap, range.first - last });
            last = range.last;
        }
        return std::to_string(gap);
    }

}

template <> struct PrimeJob::Methods<struct Working> {

    static void main(PrimeJob& self)
    {
        self.tell(0);
        self.result_ = self.work_(self);
        if (self.isLastForNow_)
            maybe(NSOperationQueue::cls().currentQueue())->setSuspended(true);
    }
    static void table(Builder& t) { t.methods({ { "main", imp<main> } }); }
};
BRINDLE_RECORD(PrimeJob, Working)

void PrimeJob::tell(double done)
{
    NSOperationQueue::cls().mainQueue()->addOperationWithBlock(
        [job = Ref<PrimeJob>(this), done] { job->report_(job, done); });
}

bool PrimeJob::goOn(double done)
{
    tell(done);
    NSThread::cls().sleepForTimeInterval(kPause);
    return !isCancelled();
}

PrimeJobs PrimeJobs::make(const PrimeJob::Report& report)
{
    PrimeJobs made;
    const auto findings = std::make_shared<Findings>();
    const auto add = [&](std::size_t place, std::string title, PrimeJob::Work work) {
        const Ref<PrimeJob> job = brindle::make<PrimeJob>();
        job->title_ = std::move(title);
        job->work_ = std::move(work);
        job->report_ = report;
        // Also those that are cancelled before their turn report their end.
        job->setCompletionBlock([weak = WeakRef<PrimeJob>(job)] {
            if (const Ref<PrimeJob> ended = weak.get())
                NSOperationQueue::cls().mainQueue()->addOperationWithBlock(
                    [ended] { ended->report_(ended, 1); });
        });
        made.jobs[place] = job;
        return job;
    };
    const auto small
        = add(kSmall, "Small primes", [findings](PrimeJob&) { return findSmall(*findings); });
    const auto sum = add(kSum, "All of them", [findings](PrimeJob&) { return addUp(*findings); });
    const auto gap = add(kGap, "Longest gap", [findings](PrimeJob&) { return findGap(*findings); });
    for (std::size_t i = 0; i < kRanges; ++i) {
        const auto range = add(kFirstRange + i, "Range " + std::to_string(i + 1),
            [findings, i](PrimeJob& job) { return countRange(job, *findings, i); });
        range->addDependency(small.get());
        sum->addDependency(range.get());
        gap->addDependency(range.get());
    }
    return made;
}

}
