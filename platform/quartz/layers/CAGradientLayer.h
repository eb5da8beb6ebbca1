// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "CALayer.h"

namespace brindle {

inline constexpr StringConstant<"axial"> kCAGradientLayerAxial;
inline constexpr StringConstant<"radial"> kCAGradientLayerRadial;

/// A layer that paints a gradient over its ground. The colours at both ends go on to the edges.
///
/// Parts of the colours that lie between two are mixed before they are multiplied by their alpha.
class CAGradientLayer : public CALayer {
    BRINDLE_OBJECT(CAGradientLayer, CALayer)

public:
    /// Answers the colours, from the start to the end.
    /// - Shape: elements are `CGColor`.
    Ref<NSArray> colors() const { return send<"colors", Ref<NSArray>>(); }
    void setColors(NSArray* colors) { send<"setColors:">(colors); }
    /// Answers where the colours lie between start and end.
    /// - Shape: elements are NSNumber, 0 to 1, rising.
    /// - Nil: nil spreads them evenly. With fewer places than colours the others lie evenly from the last place to 1.
    Ref<NSArray> locations() const { return send<"locations", Ref<NSArray>>(); }
    void setLocations(NSArray* locations) { send<"setLocations:">(locations); }
    /// In parts of the bounds, (0.5, 0) at first: the middle of the bottom of an unflipped layer.
    CGPoint startPoint() const { return send<"startPoint", CGPoint>(); }
    void setStartPoint(CGPoint point) { send<"setStartPoint:">(point); }
    /// (0.5, 1) at first.
    CGPoint endPoint() const { return send<"endPoint", CGPoint>(); }
    void setEndPoint(CGPoint point) { send<"setEndPoint:">(point); }
    /// Axial at first. A radial gradient goes from the start point out to an ellipse that the end point is a corner of.
    Ref<NSString> type() const { return send<"type", Ref<NSString>>(); }
    void setType(NSString* type) { send<"setType:">(type); }

private:
    Ref<NSArray> colors_;
    Ref<NSArray> locations_;
    Ref<NSString> type_ = kCAGradientLayerAxial.get();
    CGPoint startPoint_ { 0.5, 0 };
    CGPoint endPoint_ { 0.5, 1 };
};

}
