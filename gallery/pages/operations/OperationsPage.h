// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "OperationsCards.h"
#include "pages/Page.h"

namespace gallery {

class Tour;

/// Jobs in a queue that wait for each other, are held back and cancelled, and report to the main thread.
class OperationsPage : public GalleryPage {
    BRINDLE_OBJECT(OperationsPage, GalleryPage)

private:
    brindle::Ref<JobsCard> jobs_;
    brindle::Ref<QueueCard> queue_;
    brindle::Ref<JobReportsCard> reports_;
};

void tourOperations(Tour& tour);

}
