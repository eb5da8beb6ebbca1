// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSView.h"

namespace brindle {

class NSColor;

/// A view that fills itself with one colour.
///
/// It fills what is to be drawn, not its bounds. No setter marks the view for drawing.
class GWBackgroundColorView : public NSView {
    BRINDLE_OBJECT(GWBackgroundColorView, NSView)

public:
    /// White at first. - Nil: nothing is drawn.
    Ref<NSColor> backgroundColor() const { return send<"backgroundColor", Ref<NSColor>>(); }
    void setBackgroundColor(NSColor* color) { send<"setBackgroundColor:">(color); }
    /// YES at first.
    bool drawsBackground() const { return send<"drawsBackground", bool>(); }
    void setDrawsBackground(bool draws) { send<"setDrawsBackground:">(draws); }
    /// Whether the colour takes the place of what lies behind, its alpha included, and the view answers YES to
    /// `isOpaque`. NO at first: the colour is blended.
    bool opaqueBackground() const { return send<"opaqueBackground", bool>(); }
    void setOpaqueBackground(bool opaque) { send<"setOpaqueBackground:">(opaque); }

private:
    Ref<NSColor> backgroundColor_;
    bool drawsBackground_ = false;
    bool opaqueBackground_ = false;
};

}
