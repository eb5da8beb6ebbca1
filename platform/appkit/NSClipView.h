// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSView.h"

namespace brindle {

class NSColor;
class NSNotification;

/// Shows a part of its document view. The origin of its bounds is the scroll position.
///
/// It is flipped when its document is. However the position is set, it stays inside the document: what lies outside is
/// moved to the nearest place inside, parts that are no number stay as they were. Each step posts
/// `NSViewBoundsDidChangeNotification` once, a step that leads nowhere posts nothing. An observer may scroll in turn;
/// past 32 steps in one another scrolling is ignored. What was drawn already is moved and not drawn anew where nothing
/// but an opaque content lies there.
/// Thread: main. Cost: a step allocates nothing but its notification.
class NSClipView : public NSView {
    BRINDLE_OBJECT(NSClipView, NSView)

public:
    Ref<NSView> documentView() const { return send<"documentView", Ref<NSView>>(); }
    /// Takes the view into the clip view, wherever it was. - Nil: none.
    void setDocumentView(NSView* view) { send<"setDocumentView:">(view); }
    /// Answers the document's frame, grown to the clip view's size where it is smaller.
    NSRect documentRect() const { return send<"documentRect", NSRect>(); }
    /// Answers the part of the document that shows, in the document's coordinates; zero without a document.
    NSRect documentVisibleRect() const { return send<"documentVisibleRect", NSRect>(); }

    /// Scrolls to a point, given in the clip view's coordinates. Moves by degrees through its `animator`'s `setBoundsOrigin:`.
    void scrollToPoint(NSPoint point) { send<"scrollToPoint:">(point); }
    /// Answers where `scrollToPoint:` would lead.
    NSPoint constrainScrollPoint(NSPoint point) const
    {
        return send<"constrainScrollPoint:", NSPoint>(point);
    }
    /// Answers the bounds that are taken for the wanted ones; a hook for clip views that centre, or leave room.
    NSRect constrainBoundsRect(NSRect bounds) const
    {
        return send<"constrainBoundsRect:", NSRect>(bounds);
    }

    bool drawsBackground() const { return send<"drawsBackground", bool>(); }
    void setDrawsBackground(bool draws) { send<"setDrawsBackground:">(draws); }
    /// The ground that shows where the document does not paint; `controlBackgroundColor` at first.
    Ref<NSColor> backgroundColor() const { return send<"backgroundColor", Ref<NSColor>>(); }
    void setBackgroundColor(NSColor* color) { send<"setBackgroundColor:">(color); }
    /// Whether what is drawn may be moved by scrolling. YES at first; NO for content that depends on what is visible.
    bool copiesOnScroll() const { return send<"copiesOnScroll", bool>(); }
    void setCopiesOnScroll(bool copies) { send<"setCopiesOnScroll:">(copies); }

    /// Sent when the document has another frame, or other bounds.
    void viewFrameChanged(NSNotification* note) { send<"viewFrameChanged:">(note); }
    void viewBoundsChanged(NSNotification* note) { send<"viewBoundsChanged:">(note); }

private:
    Ref<NSView> documentView_;
    Ref<NSColor> backgroundColor_; // nil is the ordinary one
    unsigned steps_ = 0; // scrolling in progress, one in another
    bool drawsBackground_ = true;
    bool copiesOnScroll_ = true;
};

// Operations of every view. They do nothing, and answer NO, without a clip view around the view.

/// Scrolls so that the point lies at the origin of the visible rectangle, as far as the document goes.
inline void scrollPoint(To<NSView> view, NSPoint point) { view.send<"scrollPoint:">(point); }
/// Scrolls as little as is needed to show a rectangle, or its beginning where it is larger than what shows.
/// - Returns: whether anything moved.
inline bool scrollRectToVisible(To<NSView> view, NSRect rect)
{
    return view.send<"scrollRectToVisible:", bool>(rect);
}
/// Scrolls towards the pointer of a drag that has left the clip view. - Returns: whether anything moved.
inline bool autoscroll(To<NSView> view, NSEvent* event)
{
    return view.send<"autoscroll:", bool>(event);
}
/// Hook: answers the visible rectangle that is taken for the proposed one when the user scrolls.
inline NSRect adjustScroll(To<NSView> view, NSRect proposed)
{
    return view.send<"adjustScroll:", NSRect>(proposed);
}

}
