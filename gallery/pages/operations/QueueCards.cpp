// SPDX-License-Identifier: Apache-2.0
#include "OperationsCards.h"

#include <algorithm>
#include <cmath>

#include "kit/Drawing.h"
#include "kit/Figure.h"
#include "kit/Palette.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct QueueCard::Methods<struct Controls> {

    static constexpr double kMost = 4; // jobs at a time
    static constexpr double kSlider = 150;

    template <Text S> static Block<void()> forPage(QueueCard& self)
    {
        return [weak = WeakRef<QueueCard>(&self)] {
            if (const Ref<QueueCard> card = weak.get())
                card->tryToPerform_with(selector<S>, card.get());
        };
    }
    static Ref<NSView> initWithFrame(QueueCard& self, NSRect frame)
    {
        Ref<NSView> made = super<QueueCard, "initWithFrame:", Ref<NSView>>(self, frame);
        self.setHeading("Their queue"_ns);
        self.setCaption("NSOperationQueue: how many at a time, suspended, cancelled"_ns);
        self.run_ = addChip(&self, "Run"_ns, "r"_ns, forPage<"runJobs:">(self));
        self.step_ = addChip(&self, "One more"_ns, "o"_ns, forPage<"stepJobs:">(self));
        self.pause_ = addChip(&self, "Pause"_ns, "p"_ns, forPage<"pauseJobs:">(self));
        self.cancel_ = addChip(&self, "Cancel"_ns, "c"_ns, forPage<"cancelJobs:">(self));
        self.slider_ = NSSlider::cls().sliderWithValue_minValue_maxValue_target_action(
            2, 1, kMost, &self, selector<"limitChanged:">);
        self.slider_->setNumberOfTickMarks(static_cast<NSInteger>(kMost));
        self.slider_->setAllowsTickMarkValuesOnly(true);
        self.addSubview(self.slider_.get());
        return made;
    }
    static void limitChanged(QueueCard& self, NSObject*)
    {
        self.setNeedsDisplay(true);
        self.tryToPerform_with(selector<"takeLimit:">, self.slider_.get());
    }
    static void setFrameSize(QueueCard& self, NSSize size)
    {
        super<QueueCard, "setFrameSize:">(self, size);
        if (!self.slider_)
            return;
        NSRect body = self.bodyRect();
        layOutChips({ self.run_.get(), self.step_.get(), self.pause_.get(), self.cancel_.get() },
            takeBottom(body, kChipHeight).origin);
        self.slider_->setFrameSize({ kSlider, 10 });
        self.slider_->sizeToFit();
        self.slider_->setFrameOrigin({ NSMaxX(body) - kSlider, body.origin.y });
    }
    static void drawBody(QueueCard& self, NSRect body)
    {
        const Ref<NSString> figure
            = NSString::cls().stringWithFormat("%lu of %lu"_ns, self.ended_, PrimeJobs::kCount);
        NSRect left = body;
        left.size.width -= kSlider + kCardGap;
        drawFigure(figure.get(), "jobs have ended"_ns, left);
        const Ref<NSString> most = NSString::cls().stringWithFormat(
            "%g at the same time"_ns, self.slider_->doubleValue());
        drawText(most.get(), { NSMaxX(body) - kSlider + 4, body.origin.y + 28 }, Style::caption,
            palette().quietText.get());
    }

    static void table(Builder& t)
    {
        t.properties({ property<&QueueCard::slider_>("slider", readonly, nonatomic) });
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "limitChanged:", imp<limitChanged> },
            { "setFrameSize:", imp<setFrameSize> },
            { "drawBody:", imp<drawBody> },
        });
    }
};
BRINDLE_RECORD(QueueCard, Controls)

void QueueCard::show(const JobsCard& jobs)
{
    ended_ = jobs.ended();
    pause_->setOn(jobs.queue()->isSuspended());
    setNeedsDisplay(true);
}

template <> struct JobReportsCard::Methods<struct List> {

    static constexpr double kRow = 18;

    static Ref<NSView> initWithFrame(JobReportsCard& self, NSRect frame)
    {
        Ref<NSView> made = super<JobReportsCard, "initWithFrame:", Ref<NSView>>(self, frame);
        self.setHeading("Reports"_ns);
        self.setCaption("Told on the main queue, the last in front"_ns);
        return made;
    }
    static void drawBody(JobReportsCard& self, NSRect body)
    {
        const Palette& colors = palette();
        double y = body.origin.y;
        if (self.lines_.empty())
            drawText(
                "Nothing yet"_ns, { body.origin.x, y }, Style::caption, colors.quietText.get());
        for (const std::string& line : self.lines_) {
            if (y + kRow > NSMaxY(body) + 4)
                return;
            drawFitted(stringFrom(line).get(), { body.origin.x, y }, body.size.width, Style::body,
                colors.text.get());
            y += kRow;
        }
    }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "drawBody:", imp<drawBody> },
        });
    }
};
BRINDLE_RECORD(JobReportsCard, List)

void JobReportsCard::show(const JobsCard& jobs)
{
    lines_ = jobs.reports();
    setNeedsDisplay(true);
}

}
