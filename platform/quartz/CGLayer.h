// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "CGContext.h"

namespace brindle {

class NSDictionary;

/// A picture that is drawn once and laid down many times, as sharp as the context it was made for.
///
/// What is drawn into its context later shows from then on. Thread: one at a time.
class CGLayer : public NSObject {
    BRINDLE_OBJECT(CGLayer, NSObject)

public:
    CGSize size() const { return size_; }
    /// Answers the context that draws into the layer: y up, points, transparent at first.
    CGContext* context() const { return context_.get(); }

private:
    friend struct LayerPictures;
    CGSize size_ {};
    Ref<CGContext> context_;
};

/// - size: points. - auxiliaryInfo: not used.
/// - Nil: NULL without a context, for an empty size, and over 32,767 pixels a side.
BRINDLE_EXPORT CGLayerRef CGLayerCreateWithContext(
    CGContextRef context, CGSize size, NSDictionary* auxiliaryInfo);
BRINDLE_EXPORT CGLayerRef CGLayerRetain(CGLayerRef layer);
BRINDLE_EXPORT void CGLayerRelease(CGLayerRef layer);
BRINDLE_EXPORT CGSize CGLayerGetSize(CGLayerRef layer);
/// Answers the layer's context, lent.
BRINDLE_EXPORT CGContextRef CGLayerGetContext(CGLayerRef layer);

/// Draws the layer stretched over a rectangle.
BRINDLE_EXPORT void CGContextDrawLayerInRect(CGContextRef context, CGRect rect, CGLayerRef layer);
/// Draws the layer at its size. - point: of its lower left corner.
BRINDLE_EXPORT void CGContextDrawLayerAtPoint(
    CGContextRef context, CGPoint point, CGLayerRef layer);

}
