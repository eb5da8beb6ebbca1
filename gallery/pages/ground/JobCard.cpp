// SPDX-License-Identifier: Apache-2.0
#include "JobCard.h"

#include <memory>
#include <vector>

#include "foundation/NSString.h"
#include "kit/Figure.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

namespace {

    constexpr NSInteger kLimit = 2'000'000;

    NSInteger countPrimes()
    {
        std::vector<bool> composite(kLimit);
        NSInteger primes = 0;
        for (std::size_t n = 2; n < composite.size(); ++n) {
            if (composite[n])
                continue;
            ++primes;
            for (std::size_t multiple = n * n; multiple < composite.size(); multiple += n)
                composite[multiple] = true;
        }
        return primes;
    }

}

template <> struct JobCard::Methods<struct Job> {

    static Ref<NSView> initWithFrame(JobCard& self, NSRect frame)
    {
        self.setHeading("Background job"_ns);
        self.setCaption("BRBlock, there and back again"_ns);
        self.primes_ = -1;
        self.chip_ = addChip(&self, "Count primes"_ns, "j"_ns, sending<"run">(&self));
        return super<JobCard, "initWithFrame:", Ref<NSView>>(self, frame);
    }

    static void setFrameSize(JobCard& self, NSSize size)
    {
        super<JobCard, "setFrameSize:">(self, size);
        layOutChips({ self.chip_.get() }, { 16, size.height - 44 });
    }

    static void run(JobCard& self)
    {
        if (std::exchange(self.running_, true))
            return;
        self.setNeedsDisplay(true);
        const auto found = std::make_shared<NSInteger>(0);
        const auto job = make<BRBlock>();
        job->setCode([found] { *found = countPrimes(); });
        job->setCompletion([found, card = Ref<JobCard>(&self)] {
            card->primes_ = *found;
            card->running_ = false;
            ++card->runs_;
            card->setNeedsDisplay(true);
        });
        job->execute();
    }

    static void drawBody(JobCard& self, NSRect body)
    {
        const auto figure = self.running_ ? Ref<NSString>("Counting..."_ns)
            : self.primes_ < 0            ? Ref<NSString>("Ready"_ns)
                               : NSString::cls().stringWithFormat("%ld primes"_ns, self.primes_);
        const auto note = self.runs_ == 0 ? Ref<NSString>("below 2,000,000"_ns)
                                          : NSString::cls().stringWithFormat(self.runs_ == 1
                                                  ? "below 2,000,000, counted once"_ns
                                                  : "below 2,000,000, counted %ld times"_ns,
                                              self.runs_);
        drawFigure(figure.get(), note.get(), body);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "setFrameSize:", imp<setFrameSize> },
            { "run", imp<run> },
            { "drawBody:", imp<drawBody> },
        });
    }
};
BRINDLE_RECORD(JobCard, Job)

}
