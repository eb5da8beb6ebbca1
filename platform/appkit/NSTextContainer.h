// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSParagraphStyle.h"
#include "foundation/NSGeometry.h"

namespace brindle {

class NSArray;
class NSLayoutManager;

/// A rectangle that a layout manager fills with lines of text. y grows downward from its top.
///
/// A dimension that is not positive, or as large as 3.4028235e38, is unbounded.
/// Thread: one at a time, with its layout manager.
class NSTextContainer : public NSObject {
    BRINDLE_OBJECT(NSTextContainer, NSObject)

public:
    Ref<NSTextContainer> initWithContainerSize(NSSize size)
    {
        return send<"initWithContainerSize:", Ref<NSTextContainer>>(size);
    }
    /// The same.
    Ref<NSTextContainer> initWithSize(NSSize size)
    {
        return send<"initWithSize:", Ref<NSTextContainer>>(size);
    }

    NSSize containerSize() const { return send<"containerSize", NSSize>(); }
    void setContainerSize(NSSize size) { send<"setContainerSize:">(size); }
    NSSize size() const { return send<"size", NSSize>(); }
    void setSize(NSSize size) { send<"setSize:">(size); }

    /// The room at both ends of every line, points; 5 unless set. It counts in used rectangles.
    CGFloat lineFragmentPadding() const { return send<"lineFragmentPadding", CGFloat>(); }
    void setLineFragmentPadding(CGFloat points) { send<"setLineFragmentPadding:">(points); }

    /// 0 for any number.
    NSUInteger maximumNumberOfLines() const { return send<"maximumNumberOfLines", NSUInteger>(); }
    void setMaximumNumberOfLines(NSUInteger lines) { send<"setMaximumNumberOfLines:">(lines); }
    /// A truncating mode lets an ellipsis stand for what finds no place behind the last line.
    NSLineBreakMode lineBreakMode() const { return send<"lineBreakMode", NSLineBreakMode>(); }
    void setLineBreakMode(NSLineBreakMode mode) { send<"setLineBreakMode:">(mode); }

    /// Whether the container follows the size of the view that shows it; kept for that view.
    bool widthTracksTextView() const { return send<"widthTracksTextView", bool>(); }
    void setWidthTracksTextView(bool tracks) { send<"setWidthTracksTextView:">(tracks); }
    bool heightTracksTextView() const { return send<"heightTracksTextView", bool>(); }
    void setHeightTracksTextView(bool tracks) { send<"setHeightTracksTextView:">(tracks); }
    /// The view that shows the container; not kept.
    Ref<NSObject> textView() const { return send<"textView", Ref<NSObject>>(); }
    void setTextView(NSObject* view) { send<"setTextView:">(view); }

    /// The layout manager that fills the container; not kept.
    Ref<NSLayoutManager> layoutManager() const
    {
        return send<"layoutManager", Ref<NSLayoutManager>>();
    }
    /// Sent by the layout manager; does not add the container to one.
    void setLayoutManager(NSLayoutManager* manager) { send<"setLayoutManager:">(manager); }

    /// Areas that text keeps out of, NSBezierPath in the container's coordinates; none unless set. They are copied, and
    /// what is no path is passed over.
    ///
    /// A row of text goes on behind such an area: it has a line in each stretch that is left free, from left to right, or
    /// the other way in paragraphs that run so. A word that a stretch has no room for goes to the next one.
    Ref<NSArray> exclusionPaths() const { return send<"exclusionPaths", Ref<NSArray>>(); }
    void setExclusionPaths(NSArray* paths) { send<"setExclusionPaths:">(paths); }

    /// Answers whether nothing is kept out of.
    bool isSimpleRectangularTextContainer() const
    {
        return send<"isSimpleRectangularTextContainer", bool>();
    }
    /// Answers whether text may stand at a point.
    bool containsPoint(NSPoint point) const { return send<"containsPoint:", bool>(point); }

private:
    NSSize size_ {};
    CGFloat lineFragmentPadding_ = 5;
    NSUInteger maximumNumberOfLines_ = 0;
    NSLineBreakMode lineBreakMode_ = NSLineBreakByWordWrapping;
    bool widthTracksTextView_ = false;
    bool heightTracksTextView_ = false;
    Ref<NSArray> exclusionPaths_; // nil for none
    WeakRef<NSObject> textView_;
    NSLayoutManager* layoutManager_
        = nullptr; // bare: the manager owns this container and clears it
};

}
