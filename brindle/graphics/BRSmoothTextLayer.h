// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "quartz/layers/CATextLayer.h"

namespace brindle {

/// A text layer that paints its own ground and turns font smoothing on, so that text in a layer looks as in a view.
///
/// `font` is the name of a font; `string` is plain text.
/// Thread: main.
class BRSmoothTextLayer : public CATextLayer {
    BRINDLE_OBJECT(BRSmoothTextLayer, CATextLayer)

public:
    struct Meta : CATextLayer::Meta {
        /// Answers a new layer on a clear ground.
        Ref<BRSmoothTextLayer> layer() const { return send<"layer", Ref<BRSmoothTextLayer>>(); }
    };

    /// Makes the layer as wide as its text is when broken at the present width, and as high; the origin stays. The
    /// width may shrink.
    /// - Nil: without text, and with a `font` that names none (which is logged), the size becomes zero.
    void sizeInWidth() { send<"sizeInWidth">(); }
};

}
