// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSScrollView.h"

namespace brindle {

class NSFont;

enum NSBoxType : NSUInteger {
    NSBoxPrimary = 0, ///< a ground with rounded corners, for things that belong together
    NSBoxSecondary = 1, ///< the same
    NSBoxSeparator = 2, ///< one line along the longer side, in the middle of the other
    NSBoxOldStyle = 3, ///< a border as `borderType` says
    NSBoxCustom = 4, ///< border and ground as the box's own settings say
};

enum NSTitlePosition : NSUInteger {
    NSNoTitle = 0,
    NSAboveTop = 1,
    NSAtTop = 2, ///< on the border, which is broken there where the box draws no ground
    NSBelowTop = 3,
    NSAboveBottom = 4,
    NSAtBottom = 5,
    NSBelowBottom = 6,
};

/// Holds views together by a ground or a border and a title.
///
/// What it holds are the subviews of its content view, which fills the box within border, title and margins. A new box
/// is a primary one, titled "Box", with margins of 5 points. A press goes on along the responder chain.
/// Thread: main.
class NSBox : public NSView {
    BRINDLE_OBJECT(NSBox, NSView)

public:
    NSBoxType boxType() const { return send<"boxType", NSBoxType>(); }
    /// Unknown values are ignored, here and below.
    void setBoxType(NSBoxType type) { send<"setBoxType:">(type); }
    NSBorderType borderType() const { return send<"borderType", NSBorderType>(); }
    void setBorderType(NSBorderType type) { send<"setBorderType:">(type); }
    NSTitlePosition titlePosition() const { return send<"titlePosition", NSTitlePosition>(); }
    void setTitlePosition(NSTitlePosition place) { send<"setTitlePosition:">(place); }

    Ref<NSString> title() const { return send<"title", Ref<NSString>>(); }
    /// - Nil: "".
    void setTitle(NSString* title) { send<"setTitle:">(title); }
    /// The font of the title: the system's at the small size at first. - Nil: that.
    Ref<NSFont> titleFont() const { return send<"titleFont", Ref<NSFont>>(); }
    void setTitleFont(NSFont* font) { send<"setTitleFont:">(font); }
    /// Answers the cell that draws the title.
    Ref<NSCell> titleCell() const { return send<"titleCell", Ref<NSCell>>(); }
    /// Answers where the title is drawn; empty without one.
    NSRect titleRect() const { return send<"titleRect", NSRect>(); }
    NSRect borderRect() const { return send<"borderRect", NSRect>(); }

    Ref<NSView> contentView() const { return send<"contentView", Ref<NSView>>(); }
    /// Puts another view in the content view's place. - Nil: an empty one.
    void setContentView(NSView* view) { send<"setContentView:">(view); }
    NSSize contentViewMargins() const { return send<"contentViewMargins", NSSize>(); }
    /// - margins: points; what is negative or no number counts as 0.
    void setContentViewMargins(NSSize margins) { send<"setContentViewMargins:">(margins); }
    /// Gives the box the size that holds all subviews of its content view; its origin stays.
    void sizeToFit() { send<"sizeToFit">(); }
    /// Gives the box the frame around a content view's frame, in the superview's coordinates.
    void setFrameFromContentFrame(NSRect content) { send<"setFrameFromContentFrame:">(content); }

    // ---- custom boxes

    Ref<NSColor> borderColor() const { return send<"borderColor", Ref<NSColor>>(); }
    /// - Nil: the ordinary one.
    void setBorderColor(NSColor* color) { send<"setBorderColor:">(color); }
    /// The ground; clear at first.
    Ref<NSColor> fillColor() const { return send<"fillColor", Ref<NSColor>>(); }
    void setFillColor(NSColor* color) { send<"setFillColor:">(color); }
    CGFloat borderWidth() const { return send<"borderWidth", CGFloat>(); }
    void setBorderWidth(CGFloat width) { send<"setBorderWidth:">(width); }
    CGFloat cornerRadius() const { return send<"cornerRadius", CGFloat>(); }
    void setCornerRadius(CGFloat radius) { send<"setCornerRadius:">(radius); }
    /// YES draws neither ground nor border, only the title.
    bool isTransparent() const { return send<"isTransparent", bool>(); }
    void setTransparent(bool transparent) { send<"setTransparent:">(transparent); }

private:
    Ref<NSCell> titleCell_;
    Ref<NSView> contentView_;
    Ref<NSColor> borderColor_; // nil: the ordinary one
    Ref<NSColor> fillColor_; // nil: none
    NSSize margins_ { 5, 5 };
    NSBoxType type_ = NSBoxPrimary;
    NSBorderType border_ = NSGrooveBorder;
    NSTitlePosition titlePlace_ = NSAtTop;
    CGFloat borderWidth_ = 1;
    CGFloat radius_ = 0;
    bool transparent_ = false;
};

}
