// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <span>

#include "CGContext.h"

/// Questions about a context's state, the focus ring and brackets, which the layers above Quartz need.

namespace brindle::quartz {

BRINDLE_EXPORT CGBlendMode blendMode(CGContextRef context);
BRINDLE_EXPORT double alpha(CGContextRef context);
/// Answers the pixels of a point of the base space, in which shadows are told.
BRINDLE_EXPORT double baseScale(CGContextRef context);
BRINDLE_EXPORT bool shouldAntialias(CGContextRef context);

/// Makes the whole canvas, or the present group's, the clip.
BRINDLE_EXPORT void resetClip(CGContextRef context);

/// Clips to every pixel that one of the rectangles touches. A clip of whole pixels costs next to nothing, and what is drawn up
/// to an edge between two pixels is smoothed once only, by itself.
BRINDLE_EXPORT void clipToTouchedPixels(CGContextRef context, std::span<const CGRect> rects);

/// Whether shapes get a ring around them: instead of their own paint, below it or above it.
enum class FocusRing { none, only, below, above };

/// Draws a ring around each shape filled from now on, until the state is restored.
BRINDLE_EXPORT void setFocusRing(CGContextRef context, FocusRing ring, CGColorRef color);

/// Brackets drawing by others: state, path, saved states and groups are as before at the end of the scope, whatever was
/// saved, restored or begun inside. What was saved before cannot be restored inside; a group left open is ended.
class BRINDLE_EXPORT StateScope {
public:
    /// What the scope begins with: the present state, or the one below all that was saved.
    enum class Start { present, bottom };

    /// - context: may be nil; then nothing is done.
    explicit StateScope(CGContextRef context, Start start = Start::present);
    ~StateScope();
    StateScope(const StateScope&) = delete;
    StateScope& operator=(const StateScope&) = delete;

private:
    Ref<CGContext> context_;
    PathData path_;
    std::size_t savedFloor_ = 0;
    std::size_t layersFloor_ = 0;
};

}
