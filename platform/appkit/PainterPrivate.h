// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <exception>
#include <span>
#include <vector>

#include "NSGraphicsContextPrivate.h"
#include "NSViewPrivate.h"
#include "NSWindowPrivate.h"
#include "quartz/ContextState.h"

namespace brindle {

/// Which view's coordinates the current context has. Drawing passes and `lockFocus` nest.
class Focus {
public:
    static Ref<NSView> current();
    static void lock(NSView& view);
    static void unlock(NSView& view);
    /// Answers what is drawn of a view now, in its coordinates; nothing when it has no focus.
    static std::span<const NSRect> partsOf(const NSView& view);

    /// Focuses a view for a scope: saves the state, clips, sets coordinates and context. The end undoes all of it, and
    /// what the view has left behind: states, groups and focus that it did not give back.
    /// - clip: the parts that show, in window coordinates.
    Focus(NSView& view, const AxisTransform& toWindow, std::span<const NSRect> clip);
    ~Focus();
    Focus(const Focus&) = delete;
    Focus& operator=(const Focus&) = delete;

    /// Answers the rectangle around the parts.
    NSRect box() const;

private:
    static std::vector<Focus*>& stack();
    Focus(NSView& view, const Backing& backing, const AxisTransform& toWindow,
        std::span<const NSRect> clip);

    Ref<NSView> view_;
    Ref<CGContext> context_;
    quartz::StateScope state_;
    CurrentContextScope current_;
    std::vector<NSRect> parts_;
    NSRect clipped_; // window coordinates, around the parts
    bool locked_ = false;
};

/// Draws a tree of views into the pixels of its window. A view that raises does not keep the others from being drawn.
class Painter {
public:
    /// - parts: what is to be drawn, in window coordinates.
    Painter(NSWindow& window, std::vector<NSRect> parts);
    /// Finds the view that hides all before it. Sends `isOpaque`.
    void plan(NSView& root) { first_ = coveringView(root, {}, ViewAccess::frame(root)); }
    /// Draws what `plan` has left, also while some view is locked.
    void paint(NSView& root);
    /// Sends `viewWillDraw` to the marked views among those that will be drawn.
    void announce(NSView& root) { announce(root, {}, ViewAccess::frame(root)); }
    /// Answers the first exception that a view raised; null when none did.
    const std::exception_ptr& raised() const { return raised_; }

private:
    template <class Step> void attempt(Step&& step);
    NSView* coveringView(NSView& view, const AxisTransform& outer, NSRect clip) const;
    void paint(NSView& view, const AxisTransform& outer, NSRect clip);
    void announce(NSView& view, const AxisTransform& outer, NSRect clip);
    void paintVisible(NSView& view, const AxisTransform& toWindow, NSRect visible);
    std::vector<NSRect> partsIn(NSRect visible) const;

    NSWindow& window_;
    std::vector<NSRect> parts_;
    NSRect box_;
    const NSView* first_ = nullptr; // nothing before this view shows; null once it has been reached
    std::exception_ptr raised_;
};

}
