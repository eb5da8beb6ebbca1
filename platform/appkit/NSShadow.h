// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "foundation/NSGeometry.h"
#include "runtime/NSObject.h"

namespace brindle {

class NSColor;

/// The shadow that drawing casts: how far away, how soft, in which colour.
///
/// A new one lies straight below in black at a third, with sharp edges. Two shadows are equal when their values are.
/// Thread: one at a time.
class NSShadow : public NSObject {
    BRINDLE_OBJECT(NSShadow, NSObject)

public:
    /// Answers how far the shadow lies from what casts it: points, y up also where the drawing's y is down.
    NSSize shadowOffset() const { return send<"shadowOffset", NSSize>(); }
    void setShadowOffset(NSSize offset) { send<"setShadowOffset:">(offset); }
    /// Answers how soft the shadow is: a Gaussian of half this many points. 0 and less make sharp edges.
    CGFloat shadowBlurRadius() const { return send<"shadowBlurRadius", CGFloat>(); }
    void setShadowBlurRadius(CGFloat radius) { send<"setShadowBlurRadius:">(radius); }
    /// - Nil: nil casts no shadow.
    Ref<NSColor> shadowColor() const { return send<"shadowColor", Ref<NSColor>>(); }
    void setShadowColor(NSColor* color) { send<"setShadowColor:">(color); }

    /// Lets everything that is drawn into the current context cast this shadow, until its state is restored. Later changes
    /// of the receiver do not show.
    void set() { send<"set">(); }

private:
    NSSize shadowOffset_ {};
    CGFloat shadowBlurRadius_ = 0;
    Ref<NSColor> shadowColor_;
};

}
