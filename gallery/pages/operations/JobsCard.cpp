// SPDX-License-Identifier: Apache-2.0
#include "OperationsCards.h"

#include <algorithm>
#include <cmath>

#include "kit/Drawing.h"
#include "kit/Palette.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct JobsCard::Methods<struct Running> {

    static Ref<NSView> initWithFrame(JobsCard& self, NSRect frame)
    {
        Ref<NSView> made = super<JobsCard, "initWithFrame:", Ref<NSView>>(self, frame);
        self.setHeading("Jobs"_ns);
        self.setCaption(
            "Prime numbers below ten millions; each NSOperation waits for those before it"_ns);
        self.queue_ = brindle::make<NSOperationQueue>();
        self.limit_ = 2;
        makeJobs(self);
        return made;
    }
    static void makeJobs(JobsCard& self)
    {
        const PrimeJobs made = PrimeJobs::make(
            [weak = WeakRef<JobsCard>(&self)](const Ref<PrimeJob>& job, double done) {
                if (const Ref<JobsCard> card = weak.get())
                    reported(*card, job, done);
            });
        for (std::size_t i = 0; i < PrimeJobs::kCount; ++i)
            self.shown_[i] = { made.jobs[i] };
        self.reports_.clear();
    }
    static bool isUnderWay(JobsCard& self) { return self.queue_->operationCount() > 0; }
    /// Gives the jobs to the queue, which is suspended; new ones when these have been there.
    static void addJobs(JobsCard& self)
    {
        if (isUnderWay(self))
            return;
        if (self.shown_.front().hasEnded)
            makeJobs(self);
        self.queue_->setSuspended(true);
        for (const Shown& shown : self.shown_)
            self.queue_->addOperation(shown.job.get());
    }
    static void goOn(JobsCard& self, bool byOne)
    {
        addJobs(self);
        for (const Shown& shown : self.shown_)
            shown.job->isLastForNow_ = byOne;
        self.queue_->setMaxConcurrentOperationCount(byOne ? 1 : self.limit_);
        self.queue_->setSuspended(false);
        changed(self);
    }
    static void run(JobsCard& self) { goOn(self, false); }
    static void step(JobsCard& self)
    {
        if (self.queue_->isSuspended() || !isUnderWay(self))
            goOn(self, true);
    }
    static void pause(JobsCard& self)
    {
        if (self.queue_->isSuspended())
            return goOn(self, false);
        self.queue_->setSuspended(isUnderWay(self));
        changed(self);
    }
    static void cancel(JobsCard& self)
    {
        self.queue_->cancelAllOperations();
        self.queue_->setSuspended(false); // for their ends
        changed(self);
    }
    static void setLimit(JobsCard& self, NSInteger most)
    {
        self.limit_ = most;
        self.queue_->setMaxConcurrentOperationCount(most);
    }
    static void viewWillMoveToWindow(JobsCard& self, NSWindow* window)
    {
        if (!window)
            cancel(self);
    }

    // ---- what is reported

    static void reported(JobsCard& self, const Ref<PrimeJob>& job, double done)
    {
        for (Shown& shown : self.shown_) {
            if (shown.job != job)
                continue;
            shown.done = done;
            shown.hasBegun = true;
            if (job->isFinished() && !shown.hasEnded) {
                shown.hasEnded = true;
                self.reports_.insert(self.reports_.begin(),
                    job->isCancelled() ? job->title_ + " was cancelled"
                                       : job->title_ + ": " + job->result_);
            }
        }
        changed(self);
    }
    static void changed(JobsCard& self)
    {
        self.setNeedsDisplay(true);
        self.tryToPerform_with(selector<"jobsChanged:">, &self);
    }

    static void table(Builder& t)
    {
        t.properties({ property<&JobsCard::queue_>("queue", readonly, nonatomic) });
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "run", imp<run> },
            { "step", imp<step> },
            { "pause", imp<pause> },
            { "cancel", imp<cancel> },
            { "setLimit:", imp<setLimit> },
            { "viewWillMoveToWindow:", imp<viewWillMoveToWindow> },
        });
    }
};
BRINDLE_RECORD(JobsCard, Running)

template <> struct JobsCard::Methods<struct Graph> {

    static constexpr double kColumnGap = 56;
    static constexpr double kRowGap = 10;
    static constexpr double kMostHeight = 58;

    /// Answers where a job stands: three columns, each in the middle of the height.
    static NSRect boxOf(std::size_t job, NSRect body)
    {
        const std::size_t column = job == PrimeJobs::kSmall ? 0 : job < PrimeJobs::kSum ? 1 : 2;
        constexpr std::size_t kRows[] = { 1, PrimeJobs::kRanges, 2 };
        constexpr std::size_t kFirst[]
            = { PrimeJobs::kSmall, PrimeJobs::kFirstRange, PrimeJobs::kSum };
        const double width = std::floor((body.size.width - 2 * kColumnGap) / 3);
        const double most = (body.size.height - (PrimeJobs::kRanges - 1) * kRowGap)
            / static_cast<double>(PrimeJobs::kRanges);
        const double height = std::floor(std::min(most, kMostHeight));
        const auto rows = static_cast<double>(kRows[column]);
        const double all = rows * height + (rows - 1) * kRowGap;
        const auto row = static_cast<double>(job - kFirst[column]);
        return NSMakeRect(body.origin.x + static_cast<double>(column) * (width + kColumnGap),
            std::floor(NSMidY(body) - all / 2) + row * (height + kRowGap), width, height);
    }
    static std::string stateOf(const Shown& shown)
    {
        if (shown.hasEnded)
            return shown.job->isCancelled() ? "cancelled" : "ended";
        if (shown.hasBegun)
            return "running, " + std::to_string(std::lround(shown.done * 100)) + " %";
        return shown.job->isReady() ? "ready" : "waits";
    }
    static void drawJob(const Shown& shown, NSRect box)
    {
        const Palette& colors = palette();
        const bool runs = shown.hasBegun && !shown.hasEnded;
        const bool isDone = shown.hasEnded && !shown.job->isCancelled();
        fillRounded(box, 8, colors.window.get());
        if (const double done = shown.hasEnded ? (isDone ? 1 : 0) : shown.done; done > 0) {
            NSRect part = box;
            part.size.width = std::max(16.0, box.size.width * done);
            fillRounded(part, 8, colors.soft.get());
        }
        strokeRounded(box, 8, (runs ? colors.accent : colors.border).get());
        const double top = box.origin.y + std::max(2.0, (box.size.height - 36) / 2);
        const double left = box.origin.x + 12;
        const std::string result = isDone ? shown.job->result_ : "";
        const Ref<NSString> figure = stringFrom(result);
        const double width = sizeOf(figure.get(), Style::heading).width;
        drawText(
            figure.get(), { NSMaxX(box) - 12 - width, top }, Style::heading, colors.accent.get());
        drawFitted(stringFrom(shown.job->title_).get(), { left, top }, box.size.width - 36 - width,
            Style::heading, colors.text.get());
        drawText(stringFrom(stateOf(shown)).get(), { left, top + 20 }, Style::caption,
            colors.quietText.get());
    }
    static void drawWay(NSRect from, NSRect to)
    {
        drawArrow({ NSMaxX(from) + 5, NSMidY(from) }, { to.origin.x - 5, NSMidY(to) },
            palette().quietText.get());
    }
    static void drawBody(JobsCard& self, NSRect body)
    {
        for (std::size_t i = 0; i < PrimeJobs::kRanges; ++i) {
            const NSRect range = boxOf(PrimeJobs::kFirstRange + i, body);
            drawWay(boxOf(PrimeJobs::kSmall, body), range);
            drawWay(range, boxOf(PrimeJobs::kSum, body));
            drawWay(range, boxOf(PrimeJobs::kGap, body));
        }
        for (std::size_t i = 0; i < PrimeJobs::kCount; ++i)
            drawJob(self.shown_[i], boxOf(i, body));
    }

    static void table(Builder& t) { t.methods({ { "drawBody:", imp<drawBody> } }); }
};
BRINDLE_RECORD(JobsCard, Graph)

std::size_t JobsCard::ended() const
{
    return static_cast<std::size_t>(std::count_if(
        shown_.begin(), shown_.end(), [](const Shown& shown) { return shown.hasEnded; }));
}

std::string JobsCard::resultOf(std::size_t job) const
{
    return shown_[job].hasEnded ? shown_[job].job->result_ : "";
}

}
