// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <vector>

#include "NSResponder.h"
#include "foundation/StringConstant.h"

namespace brindle {

class CALayer;
class NSGraphicsContext;
class NSTrackingArea;
class NSView;
class NSWindow;
class TrackingIndex;
class ViewLayer;
namespace quartz {
    class ResizeSeries;
}

/// Where something is put among its siblings. `relativeTo:` nil means: above or below all of them.
enum NSWindowOrderingMode : NSInteger { NSWindowBelow = -1, NSWindowOut = 0, NSWindowAbove = 1 };

/// Which parts of a view's frame follow the size of its superview; bits that are added together.
using NSAutoresizingMaskOptions = NSUInteger;
enum : NSUInteger {
    NSViewNotSizable = 0,
    NSViewMinXMargin = 1,
    NSViewWidthSizable = 2,
    NSViewMaxXMargin = 4,
    NSViewMinYMargin = 8,
    NSViewHeightSizable = 16,
    NSViewMaxYMargin = 32,
};

/// When the contents of a view's layer are drawn anew.
enum NSViewLayerContentsRedrawPolicy : NSInteger {
    NSViewLayerContentsRedrawNever = 0,
    NSViewLayerContentsRedrawOnSetNeedsDisplay = 1,
    NSViewLayerContentsRedrawDuringViewResize = 2,
    NSViewLayerContentsRedrawBeforeViewResize = 3,
};

inline constexpr StringConstant<"NSViewFrameDidChangeNotification">
    NSViewFrameDidChangeNotification;
inline constexpr StringConstant<"NSViewBoundsDidChangeNotification">
    NSViewBoundsDidChangeNotification;
inline constexpr StringConstant<"NSViewDidUpdateTrackingAreasNotification">
    NSViewDidUpdateTrackingAreasNotification;

/// Compares two subviews for `sortSubviewsUsingFunction:context:`.
using NSViewComparator = NSInteger (*)(NSView* first, NSView* second, void* context);

/// A rectangle of a window that draws itself and answers events.
///
/// `frame` is in the superview's coordinates, `bounds` in the view's own. y goes up unless `isFlipped` says otherwise.
/// A view owns its subviews; superview and window are not owned.
/// Thread: main.
class NSView : public NSResponder {
    BRINDLE_OBJECT(NSView, NSResponder)

public:
    struct Meta : NSResponder::Meta {
        /// Answers the view whose `drawRect:` or focus is in force, or nil.
        Ref<NSView> focusView() const { return send<"focusView", Ref<NSView>>(); }
    };

    /// Makes the view with this frame; `init` is the same with a zero frame.
    Ref<NSView> initWithFrame(NSRect frame) { return send<"initWithFrame:", Ref<NSView>>(frame); }

    // Hierarchy.

    Ref<NSWindow> window() const { return send<"window", Ref<NSWindow>>(); }
    Ref<NSView> superview() const { return send<"superview", Ref<NSView>>(); }
    /// Answers the subviews as they are now, back to front.
    Ref<NSArray> subviews() const { return send<"subviews", Ref<NSArray>>(); }
    void setSubviews(NSArray* views) { send<"setSubviews:">(views); }
    /// Puts the view in front of all others. One that is a subview already moves to the front.
    /// - Nil: ignored.
    /// - Raises: `NSInvalidArgumentException` when the view is the receiver or contains it.
    void addSubview(NSView* view) { send<"addSubview:">(view); }
    void addSubview_positioned_relativeTo(NSView* view, NSWindowOrderingMode place, NSView* other)
    {
        send<"addSubview:positioned:relativeTo:">(view, place, other);
    }
    void removeFromSuperview() { send<"removeFromSuperview">(); }
    void removeFromSuperviewWithoutNeedingDisplay()
    {
        send<"removeFromSuperviewWithoutNeedingDisplay">();
    }
    /// Puts a view in another one's place. Nothing happens unless `old` is a subview; nil removes it.
    void replaceSubview_with(NSView* old, NSView* fresh)
    {
        send<"replaceSubview:with:">(old, fresh);
    }
    void sortSubviewsUsingFunction_context(NSViewComparator compare, void* context)
    {
        send<"sortSubviewsUsingFunction:context:">(compare, context);
    }
    /// Answers whether the view is the other one or lies in it.
    bool isDescendantOf(NSView* other) const { return send<"isDescendantOf:", bool>(other); }
    Ref<NSView> ancestorSharedWithView(NSView* other) const
    {
        return send<"ancestorSharedWithView:", Ref<NSView>>(other);
    }
    Ref<NSView> opaqueAncestor() const { return send<"opaqueAncestor", Ref<NSView>>(); }
    /// Answers the nearest scroll view that contains it, or nil.
    Ref<NSView> enclosingScrollView() const { return send<"enclosingScrollView", Ref<NSView>>(); }
    /// Answers -1 unless overridden.
    NSInteger tag() const { return send<"tag", NSInteger>(); }
    /// Answers the view itself or the first view in it with that tag, or nil.
    Ref<NSView> viewWithTag(NSInteger tag) const { return send<"viewWithTag:", Ref<NSView>>(tag); }

    // Hooks, empty here. On adding: willMoveToWindow (whole subtree, only when the window changes), willMoveToSuperview,
    // didMoveToWindow (whole subtree), didMoveToSuperview, the parent's didAddSubview. On removal the parent's
    // willRemoveSubview comes first, and the others get nil.

    void viewWillMoveToWindow(NSWindow* window) { send<"viewWillMoveToWindow:">(window); }
    void viewDidMoveToWindow() { send<"viewDidMoveToWindow">(); }
    void viewWillMoveToSuperview(NSView* view) { send<"viewWillMoveToSuperview:">(view); }
    void viewDidMoveToSuperview() { send<"viewDidMoveToSuperview">(); }
    void didAddSubview(NSView* view) { send<"didAddSubview:">(view); }
    void willRemoveSubview(NSView* view) { send<"willRemoveSubview:">(view); }
    void viewWillStartLiveResize() { send<"viewWillStartLiveResize">(); }
    void viewDidEndLiveResize() { send<"viewDidEndLiveResize">(); }
    void viewDidHide() { send<"viewDidHide">(); }
    void viewDidUnhide() { send<"viewDidUnhide">(); }
    void viewDidChangeBackingProperties() { send<"viewDidChangeBackingProperties">(); }
    void viewWillDraw() { send<"viewWillDraw">(); }

    // Geometry.

    NSRect frame() const { return send<"frame", NSRect>(); }
    /// Sends `setFrameOrigin:` and `setFrameSize:`, and posts one notification when something changed.
    void setFrame(NSRect frame) { send<"setFrame:">(frame); }
    void setFrameOrigin(NSPoint origin) { send<"setFrameOrigin:">(origin); }
    void setFrameSize(NSSize size) { send<"setFrameSize:">(size); }
    NSRect bounds() const { return send<"bounds", NSRect>(); }
    /// Sets the own coordinates of the view's rectangle; a size other than the frame's scales what is in the view.
    void setBounds(NSRect bounds) { send<"setBounds:">(bounds); }
    void setBoundsOrigin(NSPoint origin) { send<"setBoundsOrigin:">(origin); }
    void setBoundsSize(NSSize size) { send<"setBoundsSize:">(size); }
    void translateOriginToPoint(NSPoint point) { send<"translateOriginToPoint:">(point); }
    void scaleUnitSquareToSize(NSSize unit) { send<"scaleUnitSquareToSize:">(unit); }
    /// Answers whether y grows downward. NO unless overridden.
    bool isFlipped() const { return send<"isFlipped", bool>(); }
    bool postsFrameChangedNotifications() const
    {
        return send<"postsFrameChangedNotifications", bool>();
    }
    void setPostsFrameChangedNotifications(bool posts)
    {
        send<"setPostsFrameChangedNotifications:">(posts);
    }
    bool postsBoundsChangedNotifications() const
    {
        return send<"postsBoundsChangedNotifications", bool>();
    }
    void setPostsBoundsChangedNotifications(bool posts)
    {
        send<"setPostsBoundsChangedNotifications:">(posts);
    }

    NSAutoresizingMaskOptions autoresizingMask() const
    {
        return send<"autoresizingMask", NSAutoresizingMaskOptions>();
    }
    void setAutoresizingMask(NSAutoresizingMaskOptions mask) { send<"setAutoresizingMask:">(mask); }
    bool autoresizesSubviews() const { return send<"autoresizesSubviews", bool>(); }
    void setAutoresizesSubviews(bool resizes) { send<"setAutoresizesSubviews:">(resizes); }
    void resizeSubviewsWithOldSize(NSSize size) { send<"resizeSubviewsWithOldSize:">(size); }
    void resizeWithOldSuperviewSize(NSSize size) { send<"resizeWithOldSuperviewSize:">(size); }
    /// Answers whether the user resizes the window just now.
    bool inLiveResize() const { return send<"inLiveResize", bool>(); }

    // Conversion. A nil view stands for the window's coordinates.

    NSPoint convertPoint_fromView(NSPoint point, NSView* view) const
    {
        return send<"convertPoint:fromView:", NSPoint>(point, view);
    }
    NSPoint convertPoint_toView(NSPoint point, NSView* view) const
    {
        return send<"convertPoint:toView:", NSPoint>(point, view);
    }
    NSSize convertSize_fromView(NSSize size, NSView* view) const
    {
        return send<"convertSize:fromView:", NSSize>(size, view);
    }
    NSSize convertSize_toView(NSSize size, NSView* view) const
    {
        return send<"convertSize:toView:", NSSize>(size, view);
    }
    NSRect convertRect_fromView(NSRect rect, NSView* view) const
    {
        return send<"convertRect:fromView:", NSRect>(rect, view);
    }
    NSRect convertRect_toView(NSRect rect, NSView* view) const
    {
        return send<"convertRect:toView:", NSRect>(rect, view);
    }
    /// Answers the rectangle moved and grown to whole device pixels.
    NSRect centerScanRect(NSRect rect) const { return send<"centerScanRect:", NSRect>(rect); }

    // Showing.

    bool isHidden() const { return send<"isHidden", bool>(); }
    void setHidden(bool hidden) { send<"setHidden:">(hidden); }
    bool isHiddenOrHasHiddenAncestor() const { return send<"isHiddenOrHasHiddenAncestor", bool>(); }
    /// 0 to 1; fades the view and all that is in it as one picture.
    CGFloat alphaValue() const { return send<"alphaValue", CGFloat>(); }
    void setAlphaValue(CGFloat alpha) { send<"setAlphaValue:">(alpha); }
    /// Answers whether the view paints all of its bounds; what lies behind is then not drawn. NO unless overridden.
    bool isOpaque() const { return send<"isOpaque", bool>(); }
    /// Answers the part of the bounds that no ancestor cuts off; empty for a hidden view.
    NSRect visibleRect() const { return send<"visibleRect", NSRect>(); }

    // Drawing.

    /// Draws a part of the view. The context is focused on the view and clipped to what is drawn.
    void drawRect(NSRect rect) { send<"drawRect:">(rect); }
    bool needsDisplay() const { return send<"needsDisplay", bool>(); }
    /// Marks the view for the next drawing pass.
    void setNeedsDisplay(bool needs) { send<"setNeedsDisplay:">(needs); }
    void setNeedsDisplayInRect(NSRect rect) { send<"setNeedsDisplayInRect:">(rect); }
    /// Draws now, whether marked or not.
    void display() { send<"display">(); }
    void displayRect(NSRect rect) { send<"displayRect:">(rect); }
    /// Draws now what is marked.
    void displayIfNeeded() { send<"displayIfNeeded">(); }
    bool canDraw() const { return send<"canDraw", bool>(); }
    /// Makes the view's coordinates and clip those of the current context until `unlockFocus`.
    /// - Raises: `NSInternalInconsistencyException` when the view is in no window.
    void lockFocus() { send<"lockFocus">(); }
    void unlockFocus() { send<"unlockFocus">(); }
    /// Lends the rectangles that are drawn now, in the view's coordinates, until `drawRect:` ends.
    void getRectsBeingDrawn_count(const NSRect** rects, NSInteger* count) const
    {
        send<"getRectsBeingDrawn:count:">(rects, count);
    }
    bool needsToDrawRect(NSRect rect) const { return send<"needsToDrawRect:", bool>(rect); }

    // Layers.

    /// Answers whether the view asks for a layer. NO at first.
    bool wantsLayer() const { return send<"wantsLayer", bool>(); }
    /// YES makes the layer at once; NO takes away the one that was made here.
    void setWantsLayer(bool wants) { send<"setWantsLayer:">(wants); }
    /// Answers the view's layer, or nil. Its bounds are the view's, its delegate is the view; changes do not move by degrees.
    /// Ground, shadow and sublayers that are set on it are drawn with the view: the sublayers above what the view
    /// draws itself and below its subviews, the border above all. Its transform is not applied.
    Ref<CALayer> layer() const { return send<"layer", Ref<CALayer>>(); }
    /// Gives the view a layer of the host's own, which stays when no layer is wanted any longer.
    void setLayer(CALayer* layer) { send<"setLayer:">(layer); }
    /// Answers a new layer for the view; a plain one unless overridden.
    Ref<CALayer> makeBackingLayer() const { return send<"makeBackingLayer", Ref<CALayer>>(); }
    /// Answers whether `updateLayer` takes the place of `drawRect:`. NO unless overridden.
    bool wantsUpdateLayer() const { return send<"wantsUpdateLayer", bool>(); }
    /// Sets what the layer shows; sent before drawing when the view needs display.
    void updateLayer() { send<"updateLayer">(); }
    /// Kept for the host: a view is drawn anew whenever its part of the window is.
    NSViewLayerContentsRedrawPolicy layerContentsRedrawPolicy() const
    {
        return send<"layerContentsRedrawPolicy", NSViewLayerContentsRedrawPolicy>();
    }
    void setLayerContentsRedrawPolicy(NSViewLayerContentsRedrawPolicy policy)
    {
        send<"setLayerContentsRedrawPolicy:">(policy);
    }
    /// Answers what stands for the view and changes it by degrees, as the current animation context says.
    Ref<NSView> animator() const { return send<"animator", Ref<NSView>>(); }

    // Events.

    /// Answers the front-most view at a point of the superview's coordinates, or nil. An override that answers nil hides
    /// the view and all that is in it from the pointer.
    Ref<NSView> hitTest(NSPoint point) const { return send<"hitTest:", Ref<NSView>>(point); }
    bool mouse_inRect(NSPoint point, NSRect rect) const
    {
        return send<"mouse:inRect:", bool>(point, rect);
    }
    /// Answers whether the press that makes the window key is also handled. NO unless overridden.
    bool acceptsFirstMouse(NSEvent* event) const { return send<"acceptsFirstMouse:", bool>(event); }
    /// Answers whether a press here moves the window. YES for views that are not opaque, unless overridden.
    bool mouseDownCanMoveWindow() const { return send<"mouseDownCanMoveWindow", bool>(); }
    /// Answers the menu for a press of the right button; the view's `menu` unless overridden.
    Ref<NSMenu> menuForEvent(NSEvent* event) const
    {
        return send<"menuForEvent:", Ref<NSMenu>>(event);
    }

    Ref<NSArray> trackingAreas() const { return send<"trackingAreas", Ref<NSArray>>(); }
    /// - Nil: nil, and an area of another view, have no effect; the same for removing.
    void addTrackingArea(NSTrackingArea* area) { send<"addTrackingArea:">(area); }
    void removeTrackingArea(NSTrackingArea* area) { send<"removeTrackingArea:">(area); }
    /// Sent after the view's place, size or visibility changed, once before the next event is handled.
    void updateTrackingAreas() { send<"updateTrackingAreas">(); }

    // The order in which Tab goes through the views.

    Ref<NSView> nextKeyView() const { return send<"nextKeyView", Ref<NSView>>(); }
    Ref<NSView> previousKeyView() const { return send<"previousKeyView", Ref<NSView>>(); }
    void setNextKeyView(NSView* view) { send<"setNextKeyView:">(view); }
    Ref<NSView> nextValidKeyView() const { return send<"nextValidKeyView", Ref<NSView>>(); }
    Ref<NSView> previousValidKeyView() const { return send<"previousValidKeyView", Ref<NSView>>(); }
    bool canBecomeKeyView() const { return send<"canBecomeKeyView", bool>(); }

    Ref<NSString> toolTip() const { return send<"toolTip", Ref<NSString>>(); }
    void setToolTip(NSString* text) { send<"setToolTip:">(text); }

protected:
    /// What knows the view bare forgets it here, so that no `dealloc` can keep it from that.
    BRINDLE_EXPORT ~NSView();

private:
    friend struct ViewAccess;

    // What passes over many siblings ask stands together: most views are passed over.
    NSRect frame_ {};
    bool hidden_ = false;
    bool needsDisplay_ = false;
    bool scaled_ = false; // the bounds' size was set apart from the frame's
    bool autoresizesSubviews_ = true;
    bool postsFrameChanges_ = true;
    bool postsBoundsChanges_ = true;
    std::shared_ptr<ViewLayer> layer_; // none until a layer is wanted
    NSView* superview_ = nullptr; // bare: the superview owns this view
    NSWindow* window_ = nullptr; // bare: the window owns the frame view
    std::vector<Ref<NSView>> subviews_;
    NSRect bounds_ {};
    NSRect dirty_ {}; // own coordinates; means something while needsDisplay_ is set
    CGFloat alpha_ = 1;
    std::shared_ptr<quartz::ResizeSeries> resizing_; // where autoresizing started from
    std::shared_ptr<TrackingIndex> tracking_;
    std::uint64_t trackedViews_ = 0; // views with tracking areas in this subtree, itself included
    NSView* nextKeyView_ = nullptr;
    NSView* previousKeyView_ = nullptr;
    Ref<NSString> toolTip_;
    NSAutoresizingMaskOptions autoresizingMask_ = 0;
    unsigned frameChanges_ = 0; // `setFrame:` calls in progress
};

}
