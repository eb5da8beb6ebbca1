// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "PathsCards.h"
#include "pages/Page.h"

namespace gallery {

/// What paths are made of, and how they are painted.
class PathsPage : public GalleryPage {
    BRINDLE_OBJECT(PathsPage, GalleryPage)

private:
    brindle::Ref<CornersCard> corners_;
    brindle::Ref<BendsCard> bends_;
    brindle::Ref<TrianglesCard> triangles_;
    brindle::Ref<InsidesCard> insides_;
    brindle::Ref<BlendsCard> blends_;
};

class Tour;
void tourPaths(Tour& tour);

}
