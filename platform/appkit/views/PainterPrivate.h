// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <exception>
#include <span>
#include <vector>

#include "NSViewPrivate.h"
#include "ViewLayerPrivate.h"
#include "appkit/drawing/NSGraphicsContextPrivate.h"
#include "appkit/windows/NSWindowPrivate.h"
#include "quartz/ContextState.h"

namespace brindle {

/// The rectangles that a pass draws.
using Parts = Few<NSRect, Damage::kMostRects>;

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
    /// The same in any pixels; `toWindow` and the parts are then in the coordinates of its context.
    Focus(NSView& view, const Backing& backing, const AxisTransform& toWindow,
        std::span<const NSRect> clip);

private:
    static std::vector<Focus*>& stack();

    Ref<NSView> view_;
    Ref<CGContext> context_;
    quartz::StateScope state_;
    CurrentContextScope current_;
    Parts parts_;
    NSRect clipped_; // window coordinates, around the parts
    bool locked_ = false;
};

/// Draws a tree of views into the pixels of its window. A view that raises does not keep the others from being drawn.
class Painter {
public:
    /// - parts: what is to be drawn, in window coordinates.
    Painter(const Backing& backing, const Parts& parts);
    /// Draws into any context, in its present state.
    /// - look: which values layers are drawn with.
    Painter(CGContext* context, NSRect part, quartz::LayerLook look);
    /// Finds the view that hides all before it. Sends `isOpaque`.
    void plan(NSView& root);
    /// Draws what `plan` has left, also while some view is locked.
    void paint(NSView& root);
    /// Draws a view and what is in it by its own coordinates, wherever it is. Its marks stay.
    void paintAlone(NSView& view);
    /// Sends `viewWillDraw` to the marked views among those that will be drawn.
    void announce(NSView& root) { announce(root, {}, ViewAccess::frame(root)); }
    /// Answers the first exception that a view raised; null when none did.
    const std::exception_ptr& raised() const { return raised_; }

private:
    template <class Step> void attempt(Step&& step);
    Ref<NSView> coveringView(NSView& view, const AxisTransform& outer, NSRect clip) const;
    void paint(NSView& view, const AxisTransform& outer, NSRect clip);
    void announce(NSView& view, const AxisTransform& outer, NSRect clip);
    void paintAt(NSView& view, const AxisTransform& toWindow, NSRect clip);
    void paintLayered(NSView& view, ViewLayer& shower, const AxisTransform& toWindow, NSRect clip);
    bool beginView(NSView& view);
    void drawOwn(NSView& view, const AxisTransform& toWindow, NSRect visible);
    void paintSubviews(NSView& view, const AxisTransform& toWindow, NSRect visible);
    NSRect areaOf(NSView& view) const;
    Parts partsIn(NSRect visible) const;
    template <class Step>
    void forTouched(NSView& view, const AxisTransform& toWindow, Step&& step) const;

    Backing backing_; // of a window that may close meanwhile, or around any context
    Parts parts_;
    NSRect box_;
    quartz::LayerLook look_ = quartz::LayerLook::shown;
    bool clearsMarks_ = true;
    Ref<NSView> first_; // nothing before this view shows; null once it has been reached
    std::exception_ptr raised_;
};

}
