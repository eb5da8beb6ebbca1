// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "AnswerCard.h"
#include "TimelineCard.h"
#include "UsesCard.h"
#include "pages/Page.h"

namespace gallery {

/// The request for a review: counted uses, the sheets that ask, what is remembered.
class ReviewPage : public GalleryPage {
    BRINDLE_OBJECT(ReviewPage, GalleryPage)

private:
    brindle::Ref<UsesCard> uses_;
    brindle::Ref<AnswerCard> answer_;
    brindle::Ref<TimelineCard> timeline_;
};

class Tour;
void tourReview(Tour& tour);

}
