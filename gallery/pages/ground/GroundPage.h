// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "ExchangeCard.h"
#include "GridCard.h"
#include "JobCard.h"
#include "RowsCard.h"
#include "StrokesCard.h"
#include "pages/Page.h"

namespace gallery {

/// The first page: screen rows, a snapped grid, a job in the background, a debounced redraw, an exchanged method.
///
/// Keys: Up and Down change the standard row height; the other letters are those of the chips.
class GroundPage : public GalleryPage {
    BRINDLE_OBJECT(GroundPage, GalleryPage)

private:
    brindle::Ref<RowsCard> rows_;
    brindle::Ref<GridCard> grid_;
    brindle::Ref<JobCard> job_;
    brindle::Ref<StrokesCard> strokes_;
    brindle::Ref<ExchangeCard> exchange_;
    double standardHeight_ = 22;
};

class Tour;
void tourGround(Tour& tour);

}
