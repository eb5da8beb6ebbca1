// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "AttachmentsCard.h"
#include "ShadowsCard.h"
#include "TabsCard.h"
#include "pages/Page.h"

namespace gallery {

class Tour;

/// Text with pictures among its letters, columns made by tabs, and shadows.
class StyledPage : public GalleryPage {
    BRINDLE_OBJECT(StyledPage, GalleryPage)

private:
    brindle::Ref<AttachmentsCard> attachments_;
    brindle::Ref<ShadowsCard> shadows_;
    brindle::Ref<TabsCard> tabs_;
};

void tourStyled(Tour& tour);

}
