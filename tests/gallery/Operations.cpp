// SPDX-License-Identifier: Apache-2.0
#include "pages/operations/OperationsPage.h"

#include <gtest/gtest.h>

#include "PageParts.h"
#include "foundation/NSRunLoop.h"

namespace gallery {

using namespace brindle;

namespace {

    class OpenOperations : public OpenGallery {
    public:
        OpenOperations()
        {
            showPage("Operations");
            jobs = part<JobsCard>(*this);
        }
        /// Presses a chip and lets the jobs and their reports happen.
        void pressAndWait(const char* chip)
        {
            gallery::press(*this, chip);
            NSRunLoop::cls().mainRunLoop()->advance(0.1);
        }

        Ref<JobsCard> jobs;
    };

}

TEST(GalleryOperations, RunEachJobAfterThoseThatItWaitsFor)
{
    OpenOperations page;
    page.pressAndWait("Run");
    EXPECT_EQ(page.jobs->ended(), PrimeJobs::kCount);
    EXPECT_EQ(page.jobs->resultOf(PrimeJobs::kSum), "664579");
    EXPECT_EQ(page.jobs->resultOf(PrimeJobs::kGap), "154");
}
TEST(GalleryOperations, RunOneMoreAndPause)
{
    OpenOperations page;
    page.pressAndWait("One more");
    EXPECT_EQ(page.jobs->ended(), 1u);
    page.pressAndWait("One more");
    EXPECT_EQ(page.jobs->ended(), 2u);
    EXPECT_TRUE(page.jobs->queue()->isSuspended());
    page.pressAndWait("Pause"); // goes on
    EXPECT_EQ(page.jobs->ended(), PrimeJobs::kCount);
}
TEST(GalleryOperations, EndWithoutResultsWhenTheyAreCancelled)
{
    OpenOperations page;
    page.pressAndWait("One more");
    page.pressAndWait("Cancel");
    EXPECT_EQ(page.jobs->ended(), PrimeJobs::kCount);
    EXPECT_NE(page.jobs->resultOf(PrimeJobs::kSmall), "");
    EXPECT_EQ(page.jobs->resultOf(PrimeJobs::kSum), "");
}
TEST(GalleryOperations, RunAnewAfterTheyHaveEnded)
{
    OpenOperations page;
    page.pressAndWait("One more");
    page.pressAndWait("Cancel");
    page.pressAndWait("Run");
    EXPECT_EQ(page.jobs->resultOf(PrimeJobs::kSum), "664579");
}
TEST(GalleryOperations, AreCancelledWhenThePageIsLeft)
{
    OpenOperations page;
    page.pressAndWait("One more");
    const Ref<NSOperationQueue> queue = page.jobs->queue();
    page.jobs = nullptr;
    page.showPage("Tables");
    queue->waitUntilAllOperationsAreFinished();
    EXPECT_EQ(queue->operationCount(), 0u);
}

}
