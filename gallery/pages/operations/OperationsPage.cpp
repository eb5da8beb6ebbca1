// SPDX-License-Identifier: Apache-2.0
#include "OperationsPage.h"

#include <cmath>

#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct OperationsPage::Methods<struct Cards> {

    static constexpr double kLower = 208;

    static void addCards(OperationsPage& self)
    {
        self.jobs_ = addCard<JobsCard>(self);
        self.queue_ = addCard<QueueCard>(self);
        self.reports_ = addCard<JobReportsCard>(self);
    }

    // Sent by the cards.
    static void runJobs(OperationsPage& self, NSObject*) { self.jobs_->run(); }
    static void stepJobs(OperationsPage& self, NSObject*) { self.jobs_->step(); }
    static void pauseJobs(OperationsPage& self, NSObject*) { self.jobs_->pause(); }
    static void cancelJobs(OperationsPage& self, NSObject*) { self.jobs_->cancel(); }
    static void takeLimit(OperationsPage& self, NSSlider* slider)
    {
        self.jobs_->setLimit(std::lround(slider->doubleValue()));
    }
    static void jobsChanged(OperationsPage& self, NSObject*)
    {
        if (!self.reports_)
            return;
        self.queue_->show(*self.jobs_);
        self.reports_->show(*self.jobs_);
    }

    static Ref<NSString> pageTitle(OperationsPage&) { return "Operations"_ns; }
    static Ref<NSString> pageCaption(OperationsPage&)
    {
        return "Work in the background that waits for other work, and reports to the main thread"_ns;
    }
    static void layOutIn(OperationsPage& self, NSRect room)
    {
        NSRect lower = takeBottom(room, kLower);
        self.jobs_->setFrame(room);
        self.queue_->setFrame(takeLeft(lower, std::round(lower.size.width * 0.55)));
        self.reports_->setFrame(lower);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "addCards", imp<addCards> },
            { "runJobs:", imp<runJobs> },
            { "stepJobs:", imp<stepJobs> },
            { "pauseJobs:", imp<pauseJobs> },
            { "cancelJobs:", imp<cancelJobs> },
            { "takeLimit:", imp<takeLimit> },
            { "jobsChanged:", imp<jobsChanged> },
            { "pageTitle", imp<pageTitle> },
            { "pageCaption", imp<pageCaption> },
            { "layOutIn:", imp<layOutIn> },
        });
    }
};
BRINDLE_RECORD(OperationsPage, Cards)

}
