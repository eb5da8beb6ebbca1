// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSView.h"
#include "quartz/layers/LayerHost.h"

namespace brindle {

/// A view's layer and what keeps both in step.
class ViewLayer : public quartz::LayerHost, public std::enable_shared_from_this<ViewLayer> {
public:
    /// - made: the layer was made for the view, which lets go of it when it wants none.
    ViewLayer(NSView& view, CALayer* layer, bool made);
    ~ViewLayer() override { leave(); }
    ViewLayer(const ViewLayer&) = delete;
    ViewLayer& operator=(const ViewLayer&) = delete;

    const Ref<CALayer>& layer() const { return layer_; }
    bool wasMade() const { return made_; }
    /// Lets go of the layer; who paints it now may finish.
    void leave();
    /// Gives the layer the view's geometry and alpha.
    void followView();
    /// Answers the rectangle around all that is painted, in the view's coordinates.
    NSRect extent(quartz::LayerLook look) const;
    /// Marks what the layer covers now, after changes.
    void settle();
    /// Sends `updateLayer`; what it changes is drawn in the same pass.
    void update();
    void wasPainted();

    void layersChanged() override;
    void render(CGContextRef context, quartz::LayerLook look) override;

    bool wanted = false;
    NSViewLayerContentsRedrawPolicy policy = NSViewLayerContentsRedrawDuringViewResize;

private:
    void mark(NSRect rect);

    NSView& view_;
    Ref<CALayer> layer_;
    NSRect painted_ {}; // where it was seen last
    bool made_;
    bool left_ = false;
    bool changed_ = false; // marked, but perhaps not all of it
    bool quiet_ = false;
};

}
