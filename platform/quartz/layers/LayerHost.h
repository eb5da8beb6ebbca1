// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "CALayer.h"

/// What stands between layers and those who show them.

namespace brindle::quartz {

/// Which values are drawn: those that were set, or those that are seen while something moves.
enum class LayerLook { model, shown };

/// Shows a tree of layers: a view for its own layer.
class LayerHost {
public:
    virtual ~LayerHost() = default;
    /// Told after each change in the tree that may be seen, and for each step of a movement.
    virtual void layersChanged() = 0;
    /// Draws the whole of what the layer belongs to, in the layer's coordinates.
    virtual void render(CGContextRef context, LayerLook look) = 0;
};

/// - host: outlives the layer, or is taken back by nullptr.
BRINDLE_EXPORT void setLayerHost(CALayer& layer, LayerHost* host);

/// Draws a layer in its superlayer's coordinates with all that is in it.
BRINDLE_EXPORT void drawLayer(CALayer& layer, CGContextRef context, LayerLook look);

/// Draws the layer of a host in steps, so that the host can draw between them. The context has the layer's coordinates,
/// flipped already where they are. The end of the block closes what was begun.
class BRINDLE_EXPORT HostedDrawing {
public:
    /// Begins the fading, shadow and mask, and draws ground and contents.
    HostedDrawing(CALayer& layer, CGContextRef context, LayerLook look);
    /// Draws the border and lays the mask over all.
    /// - Throws: what the mask's delegate raises.
    ~HostedDrawing() noexcept(false);
    HostedDrawing(const HostedDrawing&) = delete;
    HostedDrawing& operator=(const HostedDrawing&) = delete;
    void drawSublayers();
    /// Answers false for a layer that is hidden or wholly transparent: then nothing was begun.
    bool isVisible() const { return parts_ != nullptr; }

private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

/// Answers the rectangle around all that a layer and those in it may paint, shadows included, in its own coordinates.
BRINDLE_EXPORT CGRect layerExtent(CALayer& layer, LayerLook look);

}
