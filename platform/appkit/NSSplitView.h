// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSView.h"

namespace brindle {

class NSColor;
class NSNotification;

enum NSSplitViewDividerStyle : NSInteger {
    NSSplitViewDividerStyleThick = 1, ///< 9 points with a dimple
    NSSplitViewDividerStyleThin = 2, ///< a line
    NSSplitViewDividerStylePaneSplitter = 3, ///< 10 points with a dimple and lines at its sides
};

inline constexpr StringConstant<"NSSplitViewWillResizeSubviewsNotification">
    NSSplitViewWillResizeSubviewsNotification;
inline constexpr StringConstant<"NSSplitViewDidResizeSubviewsNotification">
    NSSplitViewDidResizeSubviewsNotification;

/// Lays its subviews out beside each other or one above the other, with dividers that the user moves.
///
/// Views stand from the top down, or from left to right with `isVertical`; hidden ones take no room. When the split view
/// grows or shrinks all share the difference in proportion to their sizes, those of the lowest holding priority alone
/// where priorities differ. A double click on a divider collapses a view beside it or shows it again, where the delegate
/// agrees. The delegate, which is not kept, is asked and told by name:
/// `splitView:constrainMinCoordinate:ofSubviewAt:`, `splitView:constrainMaxCoordinate:ofSubviewAt:`,
/// `splitView:constrainSplitPosition:ofSubviewAt:`, `splitView:canCollapseSubview:`,
/// `splitView:shouldCollapseSubview:forDoubleClickOnDividerAtIndex:`, `splitView:shouldAdjustSizeOfSubview:`,
/// `splitView:resizeSubviewsWithOldSize:`, `splitView:effectiveRect:forDrawnRect:ofDividerAtIndex:`,
/// `splitViewWillResizeSubviews:` and `splitViewDidResizeSubviews:`.
/// Thread: main.
class NSSplitView : public NSView {
    BRINDLE_OBJECT(NSSplitView, NSView)

public:
    /// Answers whether the dividers stand upright. NO at first.
    bool isVertical() const { return send<"isVertical", bool>(); }
    void setVertical(bool vertical) { send<"setVertical:">(vertical); }
    NSSplitViewDividerStyle dividerStyle() const
    {
        return send<"dividerStyle", NSSplitViewDividerStyle>();
    }
    /// Thick at first; unknown values are ignored.
    void setDividerStyle(NSSplitViewDividerStyle style) { send<"setDividerStyle:">(style); }
    CGFloat dividerThickness() const { return send<"dividerThickness", CGFloat>(); }
    Ref<NSColor> dividerColor() const { return send<"dividerColor", Ref<NSColor>>(); }
    /// Hook: draws a divider.
    void drawDividerInRect(NSRect rect) { send<"drawDividerInRect:">(rect); }

    Ref<NSObject> delegate() const { return send<"delegate", Ref<NSObject>>(); }
    void setDelegate(NSObject* delegate) { send<"setDelegate:">(delegate); }

    /// Gives the subviews the whole room, in proportion to their sizes.
    void adjustSubviews() { send<"adjustSubviews">(); }
    bool isSubviewCollapsed(NSView* view) const { return send<"isSubviewCollapsed:", bool>(view); }
    /// Answers the least place of a divider, and the greatest, without the delegate's word: from the left or top.
    CGFloat minPossiblePositionOfDividerAtIndex(NSInteger index) const
    {
        return send<"minPossiblePositionOfDividerAtIndex:", CGFloat>(index);
    }
    CGFloat maxPossiblePositionOfDividerAtIndex(NSInteger index) const
    {
        return send<"maxPossiblePositionOfDividerAtIndex:", CGFloat>(index);
    }
    /// Moves a divider as the user would, with the delegate's constraints. A divider that is not there is ignored; so is NaN.
    void setPosition_ofDividerAtIndex(CGFloat position, NSInteger index)
    {
        send<"setPosition:ofDividerAtIndex:">(position, index);
    }
    /// How strongly a view keeps its size; 250 at first. - index: of the subview.
    float holdingPriorityForSubviewAtIndex(NSInteger index) const
    {
        return send<"holdingPriorityForSubviewAtIndex:", float>(index);
    }
    void setHoldingPriority_forSubviewAtIndex(float priority, NSInteger index)
    {
        send<"setHoldingPriority:forSubviewAtIndex:">(priority, index);
    }
    /// The name under which the sizes are saved in the standard defaults; setting it takes saved ones over.
    Ref<NSString> autosaveName() const { return send<"autosaveName", Ref<NSString>>(); }
    void setAutosaveName(NSString* name) { send<"setAutosaveName:">(name); }

private:
    WeakRef<NSObject> delegate_;
    Ref<NSString> autosaveName_;
    std::vector<std::pair<NSView*, float>> priorities_; // of present subviews, where they were set
    std::vector<std::pair<NSView*, CGFloat>> collapsed_; // present subviews and what they measured
    NSSplitViewDividerStyle style_ = NSSplitViewDividerStyleThick;
    bool vertical_ = false;
    bool adjusting_ = false;
};

}
