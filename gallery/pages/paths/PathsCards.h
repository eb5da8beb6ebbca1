// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "kit/Card.h"

namespace gallery {

/// A rounded rectangle for every choice of corners.
class CornersCard : public GalleryCard {
    BRINDLE_OBJECT(CornersCard, GalleryCard)

public:
    /// Rounds the corners more or less, by so many steps.
    void changeRadius(brindle::NSInteger steps) { send<"changeRadius:">(steps); }

private:
    double radius_ = 0;
};

/// A curve of one control point, what becomes of it, and arcs both ways round.
class BendsCard : public GalleryCard {
    BRINDLE_OBJECT(BendsCard, GalleryCard)
};

/// Triangles in their rectangles, and one shape turned about a point.
class TrianglesCard : public GalleryCard {
    BRINDLE_OBJECT(TrianglesCard, GalleryCard)
};

/// What counts as inside, and the open line that its Quartz form closes.
class InsidesCard : public GalleryCard {
    BRINDLE_OBJECT(InsidesCard, GalleryCard)
};

/// Discs filled over each other in several modes, and one stroked.
class BlendsCard : public GalleryCard {
    BRINDLE_OBJECT(BlendsCard, GalleryCard)
};

}
