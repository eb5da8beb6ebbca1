// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "GWView.h"

namespace brindle {

class NSColor;

/// Edges of a bordered view; bits that are added together. Top is the maximal y.
enum BRBorderEdge : std::int32_t {
    BRBorderEdgeLeft = 1,
    BRBorderEdgeTop = 2,
    BRBorderEdgeRight = 4,
    BRBorderEdgeBottom = 8,
};

/// Draws lines one point wide along chosen edges and can keep a child within them.
///
/// No setter draws or lays out anything by itself. Each frame change of a view with a child to keep writes the line
/// "_viewKeptWithinBorderBounds.frame" and the child's description, whether the child moves or not.
class BRBorderedView : public GWView {
    BRINDLE_OBJECT(BRBorderedView, GWView)

public:
    /// None at first; bits that name no edge are ignored. The lines begin at (0, 0), wherever the bounds do.
    std::int32_t borderEdges() const { return send<"borderEdges", std::int32_t>(); }
    void setBorderEdges(std::int32_t edges) { send<"setBorderEdges:">(edges); }
    /// Nil until the view is first drawn, which sets a grey.
    Ref<NSColor> borderColor() const { return send<"borderColor", Ref<NSColor>>(); }
    void setBorderColor(NSColor* color) { send<"setBorderColor:">(color); }
    /// The child whose frame follows this view's; it need not be a subview.
    Ref<NSView> viewKeptWithinBorderBounds() const
    {
        return send<"viewKeptWithinBorderBounds", Ref<NSView>>();
    }
    void setViewKeptWithinBorderBounds(NSView* view)
    {
        send<"setViewKeptWithinBorderBounds:">(view);
    }
    /// Whether the child is really moved. NO at first.
    ///
    /// Its frame is the bounds without the edges: a left or bottom edge takes one point at its side and two of the
    /// size, a right or top edge one of the size.
    bool autosizeView() const { return send<"autosizeView", bool>(); }
    void setAutosizeView(bool autosize) { send<"setAutosizeView:">(autosize); }

private:
    std::int32_t borderEdges_ = 0;
    Ref<NSColor> borderColor_;
    Ref<NSView> viewKeptWithinBorderBounds_;
    bool autosizeView_ = false;
};

}
