// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <span>
#include <vector>

#include "NSViewPrivate.h"
#include "NSWindowPrivate.h"

namespace brindle {

/// Which view's coordinates the current context has. Drawing passes and `lockFocus` nest.
class Focus {
public:
    static Ref<NSView> current();
    static void lock(NSView& view);
    static void unlock(NSView& view);
    /// Answers what is drawn of a view now, in its coordinates; nothing when it has no focus.
    static std::span<const NSRect> partsOf(const NSView& view);

    /// Focuses a view for a scope: saves the state, clips, sets coordinates and context; the end undoes all of it.
    /// - clip: the parts that show, in window coordinates.
    Focus(NSView& view, const AxisTransform& toWindow, std::span<const NSRect> clip);
    ~Focus();
    Focus(const Focus&) = delete;
    Focus& operator=(const Focus&) = delete;

    /// Answers the rectangle around the parts.
    NSRect box() const;

private:
    static std::vector<Focus*>& stack();

    Ref<NSView> view_;
    Ref<CGContext> context_;
    Ref<NSGraphicsContext> previous_;
    std::vector<NSRect> parts_;
    NSRect clipped_; // window coordinates, around the parts
    bool locked_ = false;
};

/// Draws a tree of views into the pixels of its window.
class Painter {
public:
    /// - parts: what is to be drawn, in window coordinates.
    Painter(NSWindow& window, std::vector<NSRect> parts);
    void paint(NSView& root);
    /// Sends `viewWillDraw` to the marked views among those that will be drawn.
    void announce(NSView& root) { announce(root, {}, ViewAccess::frame(root)); }

private:
    NSView* coveringView(NSView& view, const AxisTransform& outer, NSRect clip) const;
    void paint(NSView& view, const AxisTransform& outer, NSRect clip);
    void announce(NSView& view, const AxisTransform& outer, NSRect clip);
    void paintVisible(NSView& view, const AxisTransform& toWindow, NSRect visible);
    std::vector<NSRect> partsIn(NSRect visible) const;

    NSWindow& window_;
    std::vector<NSRect> parts_;
    NSRect box_;
    const NSView* first_ = nullptr; // nothing before this view shows; null once it has been reached
};

}
