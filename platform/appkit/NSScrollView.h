// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSClipView.h"
#include "NSScroller.h"

namespace brindle {

class NSTimer;

enum NSBorderType : NSUInteger {
    NSNoBorder = 0,
    NSLineBorder = 1,
    NSBezelBorder = 2,
    NSGrooveBorder = 3,
};

/// Whether content may be pulled past its end. Content stays inside here; the setting is kept for the host.
enum NSScrollElasticity : NSInteger {
    NSScrollElasticityAutomatic = 0,
    NSScrollElasticityNone = 1,
    NSScrollElasticityAllowed = 2,
};

/// What the user scrolls with wheel, knob, track and keys; the object is the scroll view. Wheels end a little after
/// their last step, knobs and tracks when the button is released.
inline constexpr StringConstant<"NSScrollViewWillStartLiveScrollNotification">
    NSScrollViewWillStartLiveScrollNotification;
inline constexpr StringConstant<"NSScrollViewDidLiveScrollNotification">
    NSScrollViewDidLiveScrollNotification;
inline constexpr StringConstant<"NSScrollViewDidEndLiveScrollNotification">
    NSScrollViewDidEndLiveScrollNotification;

/// Shows a document that is larger than itself: a clip view, scrollers, a border, and a header where the document has one.
///
/// A document that answers `headerView` gets that view above the content; it is scrolled sideways with it.
/// Overlay scrollers lie above the content, show while it is scrolled or the pointer is on them, and fade. The wheel's deltas
/// are points; 10 of them, from a wheel with steps, are a line. With Shift a wheel goes sideways. A wheel that finds nothing to
/// scroll its way goes to the next responder. Page Up, Page Down, Home, End and the arrows scroll where no responder before
/// this one wants them.
/// Thread: main.
class NSScrollView : public NSView {
    BRINDLE_OBJECT(NSScrollView, NSView)

public:
    struct Meta : NSView::Meta {
        /// Answers the frame that leaves room for a content of this size. - horizontal, vertical: classes of scrollers, or nil.
        NSSize frameSizeForContentSize(NSSize content, Class* horizontal, Class* vertical,
            NSBorderType border, NSControlSize size, NSScrollerStyle style) const
        {
            return send<"frameSizeForContentSize:horizontalScrollerClass:verticalScrollerClass:"
                        "borderType:controlSize:scrollerStyle:",
                NSSize>(content, horizontal, vertical, border, size, style);
        }
        NSSize contentSizeForFrameSize(NSSize frame, Class* horizontal, Class* vertical,
            NSBorderType border, NSControlSize size, NSScrollerStyle style) const
        {
            return send<"contentSizeForFrameSize:horizontalScrollerClass:verticalScrollerClass:"
                        "borderType:controlSize:scrollerStyle:",
                NSSize>(frame, horizontal, vertical, border, size, style);
        }
    };

    // ---- content

    Ref<NSView> documentView() const { return send<"documentView", Ref<NSView>>(); }
    /// Takes the view into the clip view, wherever it was. - Nil: none.
    void setDocumentView(NSView* view) { send<"setDocumentView:">(view); }
    Ref<NSClipView> contentView() const { return send<"contentView", Ref<NSClipView>>(); }
    /// Puts another clip view in; its document, if it has one, replaces the present one, which otherwise moves over.
    /// - Nil: ignored. - Raises: `NSInvalidArgumentException` for an object that is no clip view.
    void setContentView(NSClipView* clip) { send<"setContentView:">(clip); }
    NSSize contentSize() const { return send<"contentSize", NSSize>(); }
    /// Answers the part of the document that shows, in the document's coordinates; zero without a document.
    NSRect documentVisibleRect() const { return send<"documentVisibleRect", NSRect>(); }
    /// Lays clip view, scrollers and header out.
    void tile() { send<"tile">(); }
    /// Makes the scrollers show where the clip view stands.
    void reflectScrolledClipView(NSClipView* clip) { send<"reflectScrolledClipView:">(clip); }

    // ---- scrollers

    bool hasVerticalScroller() const { return send<"hasVerticalScroller", bool>(); }
    void setHasVerticalScroller(bool has) { send<"setHasVerticalScroller:">(has); }
    bool hasHorizontalScroller() const { return send<"hasHorizontalScroller", bool>(); }
    void setHasHorizontalScroller(bool has) { send<"setHasHorizontalScroller:">(has); }
    /// - Nil: while there is none.
    Ref<NSScroller> verticalScroller() const { return send<"verticalScroller", Ref<NSScroller>>(); }
    void setVerticalScroller(NSScroller* scroller) { send<"setVerticalScroller:">(scroller); }
    Ref<NSScroller> horizontalScroller() const
    {
        return send<"horizontalScroller", Ref<NSScroller>>();
    }
    void setHorizontalScroller(NSScroller* scroller) { send<"setHorizontalScroller:">(scroller); }
    /// Whether scrollers hide while there is nothing to scroll. NO at first.
    bool autohidesScrollers() const { return send<"autohidesScrollers", bool>(); }
    void setAutohidesScrollers(bool hides) { send<"setAutohidesScrollers:">(hides); }
    NSScrollerStyle scrollerStyle() const { return send<"scrollerStyle", NSScrollerStyle>(); }
    void setScrollerStyle(NSScrollerStyle style) { send<"setScrollerStyle:">(style); }
    NSScrollerKnobStyle scrollerKnobStyle() const
    {
        return send<"scrollerKnobStyle", NSScrollerKnobStyle>();
    }
    void setScrollerKnobStyle(NSScrollerKnobStyle style) { send<"setScrollerKnobStyle:">(style); }
    /// Shows overlay scrollers for a moment.
    void flashScrollers() { send<"flashScrollers">(); }

    // ---- look

    NSBorderType borderType() const { return send<"borderType", NSBorderType>(); }
    void setBorderType(NSBorderType type) { send<"setBorderType:">(type); }
    /// As the content view has them.
    bool drawsBackground() const { return send<"drawsBackground", bool>(); }
    void setDrawsBackground(bool draws) { send<"setDrawsBackground:">(draws); }
    Ref<NSColor> backgroundColor() const { return send<"backgroundColor", Ref<NSColor>>(); }
    void setBackgroundColor(NSColor* color) { send<"setBackgroundColor:">(color); }

    // ---- feel

    /// The points of a line, 10 at first. Setting one sets both directions; the getter answers the vertical one.
    CGFloat lineScroll() const { return send<"lineScroll", CGFloat>(); }
    void setLineScroll(CGFloat points) { send<"setLineScroll:">(points); }
    CGFloat verticalLineScroll() const { return send<"verticalLineScroll", CGFloat>(); }
    void setVerticalLineScroll(CGFloat points) { send<"setVerticalLineScroll:">(points); }
    CGFloat horizontalLineScroll() const { return send<"horizontalLineScroll", CGFloat>(); }
    void setHorizontalLineScroll(CGFloat points) { send<"setHorizontalLineScroll:">(points); }
    /// The points that stay visible when a page is turned, 10 at first.
    CGFloat pageScroll() const { return send<"pageScroll", CGFloat>(); }
    void setPageScroll(CGFloat points) { send<"setPageScroll:">(points); }
    CGFloat verticalPageScroll() const { return send<"verticalPageScroll", CGFloat>(); }
    void setVerticalPageScroll(CGFloat points) { send<"setVerticalPageScroll:">(points); }
    CGFloat horizontalPageScroll() const { return send<"horizontalPageScroll", CGFloat>(); }
    void setHorizontalPageScroll(CGFloat points) { send<"setHorizontalPageScroll:">(points); }
    NSScrollElasticity horizontalScrollElasticity() const
    {
        return send<"horizontalScrollElasticity", NSScrollElasticity>();
    }
    void setHorizontalScrollElasticity(NSScrollElasticity elasticity)
    {
        send<"setHorizontalScrollElasticity:">(elasticity);
    }
    NSScrollElasticity verticalScrollElasticity() const
    {
        return send<"verticalScrollElasticity", NSScrollElasticity>();
    }
    void setVerticalScrollElasticity(NSScrollElasticity elasticity)
    {
        send<"setVerticalScrollElasticity:">(elasticity);
    }
    /// Whether a wheel that goes askew moves only the way it goes most. YES at first.
    bool usesPredominantAxisScrolling() const
    {
        return send<"usesPredominantAxisScrolling", bool>();
    }
    void setUsesPredominantAxisScrolling(bool uses)
    {
        send<"setUsesPredominantAxisScrolling:">(uses);
    }
    /// Whether content moves while the knob is dragged, or only when it is released. YES at first.
    bool scrollsDynamically() const { return send<"scrollsDynamically", bool>(); }
    void setScrollsDynamically(bool dynamically) { send<"setScrollsDynamically:">(dynamically); }

private:
    Ref<NSClipView> contentView_;
    Ref<NSClipView> headerClip_; // nil while the document has no header
    Ref<NSScroller> verticalScroller_;
    Ref<NSScroller> horizontalScroller_;
    Ref<NSTimer> fade_; // hides overlay scrollers
    Ref<NSTimer> settle_; // ends a wheel's scrolling
    NSBorderType borderType_ = NSNoBorder;
    NSScrollerStyle scrollerStyle_ = NSScrollerStyleOverlay;
    NSScrollerKnobStyle knobStyle_ = NSScrollerKnobStyleDefault;
    NSScrollElasticity horizontalElasticity_ = NSScrollElasticityAutomatic;
    NSScrollElasticity verticalElasticity_ = NSScrollElasticityAutomatic;
    CGFloat verticalLine_ = 10;
    CGFloat horizontalLine_ = 10;
    CGFloat verticalPage_ = 10;
    CGFloat horizontalPage_ = 10;
    NSSize carry_ {}; // parts of a pixel that a wheel went and the content did not
    bool autohides_ = false;
    bool predominantAxis_ = true;
    bool dynamic_ = true;
    bool live_ = false; // the user scrolls
    bool tracking_ = false; // with the button of the mouse down
    bool tiling_ = false;
    bool faded_ = false; // overlay scrollers are hidden, or on their way
};

}
