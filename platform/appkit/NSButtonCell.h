// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSActionCell.h"

namespace brindle {

class NSColor;
struct ButtonAttributes;

/// What a button does when it is pressed, and how it shows that.
enum NSButtonType : NSUInteger {
    NSMomentaryLightButton = 0,
    NSPushOnPushOffButton = 1,
    NSToggleButton = 2,
    NSSwitchButton = 3, ///< a check box
    NSRadioButton = 4,
    NSMomentaryChangeButton = 5,
    NSOnOffButton = 6,
    NSMomentaryPushInButton = 7,
};

enum NSBezelStyle : NSUInteger {
    NSRoundedBezelStyle = 1, ///< the push button
    NSRegularSquareBezelStyle = 2,
    NSDisclosureBezelStyle = 5, ///< a triangle that turns
    NSShadowlessSquareBezelStyle = 6,
    NSCircularBezelStyle = 7,
    NSTexturedSquareBezelStyle = 8,
    NSHelpButtonBezelStyle = 9,
    NSSmallSquareBezelStyle = 10,
    NSTexturedRoundedBezelStyle = 11,
    NSRoundRectBezelStyle = 12,
    NSRecessedBezelStyle = 13, ///< a bezel only while on, pressed or under the pointer
    NSRoundedDisclosureBezelStyle = 14,
    NSInlineBezelStyle = 15,
};

enum NSGradientType : NSUInteger {
    NSGradientNone = 0,
    NSGradientConcaveWeak = 1,
    NSGradientConcaveStrong = 2,
    NSGradientConvexWeak = 3,
    NSGradientConvexStrong = 4,
};

/// Draws a button of any kind.
///
/// A new one is a push button with the title "Button". Whatever its type, a click goes to the next state and then sends the
/// action; momentary types only do not show it.
///
/// Drawing goes by messages that a subclass may override, in this order: `drawWithFrame:inView:`; with a border
/// `drawBezelWithFrame:inView:`; `drawInteriorWithFrame:inView:`; `drawImage:withFrame:inView:` when the position shows an image;
/// `drawTitle:withFrame:inView:` when it shows a title that is not empty. Bezel and interior get the cell's whole frame, image
/// and title their own rectangles. While the contents show that it is highlighted or on, the alternate ones are passed.
class NSButtonCell : public NSActionCell {
    BRINDLE_OBJECT(NSButtonCell, NSActionCell)

public:
    // ---- kind

    /// Sets the two masks below; switches and radio buttons also get their image, its position, no border and text at the left.
    void setButtonType(NSButtonType type) { send<"setButtonType:">(type); }
    NSCellStyleMask highlightsBy() const { return send<"highlightsBy", NSCellStyleMask>(); }
    void setHighlightsBy(NSCellStyleMask mask) { send<"setHighlightsBy:">(mask); }
    NSCellStyleMask showsStateBy() const { return send<"showsStateBy", NSCellStyleMask>(); }
    void setShowsStateBy(NSCellStyleMask mask) { send<"setShowsStateBy:">(mask); }
    NSBezelStyle bezelStyle() const { return send<"bezelStyle", NSBezelStyle>(); }
    void setBezelStyle(NSBezelStyle style) { send<"setBezelStyle:">(style); }
    NSGradientType gradientType() const { return send<"gradientType", NSGradientType>(); }
    void setGradientType(NSGradientType type) { send<"setGradientType:">(type); }
    bool isTransparent() const { return send<"isTransparent", bool>(); }
    /// A transparent button is not drawn but works.
    void setTransparent(bool transparent) { send<"setTransparent:">(transparent); }
    bool imageDimsWhenDisabled() const { return send<"imageDimsWhenDisabled", bool>(); }
    void setImageDimsWhenDisabled(bool dims) { send<"setImageDimsWhenDisabled:">(dims); }
    bool showsBorderOnlyWhileMouseInside() const
    {
        return send<"showsBorderOnlyWhileMouseInside", bool>();
    }
    void setShowsBorderOnlyWhileMouseInside(bool only)
    {
        send<"setShowsBorderOnlyWhileMouseInside:">(only);
    }
    Ref<NSColor> backgroundColor() const { return send<"backgroundColor", Ref<NSColor>>(); }
    /// Fills borderless buttons. - Nil: nothing.
    void setBackgroundColor(NSColor* color) { send<"setBackgroundColor:">(color); }

    // ---- title and image; `title`, `setTitle:`, `image` and `setImage:` are the cell's

    /// Answers the title with font, colour and a centred paragraph style; empty for an empty title.
    Ref<NSAttributedString> attributedTitle() const
    {
        return send<"attributedTitle", Ref<NSAttributedString>>();
    }
    void setAttributedTitle(NSAttributedString* title) { send<"setAttributedTitle:">(title); }
    Ref<NSString> alternateTitle() const { return send<"alternateTitle", Ref<NSString>>(); }
    void setAlternateTitle(NSString* title) { send<"setAlternateTitle:">(title); }
    Ref<NSAttributedString> attributedAlternateTitle() const
    {
        return send<"attributedAlternateTitle", Ref<NSAttributedString>>();
    }
    void setAttributedAlternateTitle(NSAttributedString* title)
    {
        send<"setAttributedAlternateTitle:">(title);
    }
    Ref<NSImage> alternateImage() const { return send<"alternateImage", Ref<NSImage>>(); }
    void setAlternateImage(NSImage* image) { send<"setAlternateImage:">(image); }
    NSCellImagePosition imagePosition() const
    {
        return send<"imagePosition", NSCellImagePosition>();
    }
    void setImagePosition(NSCellImagePosition position) { send<"setImagePosition:">(position); }
    NSImageScaling imageScaling() const { return send<"imageScaling", NSImageScaling>(); }
    void setImageScaling(NSImageScaling scaling) { send<"setImageScaling:">(scaling); }

    // ---- keyboard

    /// - Nil: "". Return makes it the default button of its window.
    void setKeyEquivalent(NSString* key) { send<"setKeyEquivalent:">(key); }
    NSEventModifierFlags keyEquivalentModifierMask() const
    {
        return send<"keyEquivalentModifierMask", NSEventModifierFlags>();
    }
    void setKeyEquivalentModifierMask(NSEventModifierFlags mask)
    {
        send<"setKeyEquivalentModifierMask:">(mask);
    }
    /// How long a continuous button waits before it repeats, and between repetitions, in seconds; 60 at most.
    void setPeriodicDelay_interval(float delay, float interval)
    {
        send<"setPeriodicDelay:interval:">(delay, interval);
    }

    // ---- drawing

    void drawBezelWithFrame_inView(NSRect frame, NSView* view)
    {
        send<"drawBezelWithFrame:inView:">(frame, view);
    }
    void drawImage_withFrame_inView(NSImage* image, NSRect frame, NSView* view)
    {
        send<"drawImage:withFrame:inView:">(image, frame, view);
    }
    /// - Returns: the rectangle it drew in.
    NSRect drawTitle_withFrame_inView(NSAttributedString* title, NSRect frame, NSView* view)
    {
        return send<"drawTitle:withFrame:inView:", NSRect>(title, frame, view);
    }
    /// Told by the button while it shows its border only under the pointer.
    void mouseEntered(NSEvent* event) { send<"mouseEntered:">(event); }
    void mouseExited(NSEvent* event) { send<"mouseExited:">(event); }

private:
    friend struct ButtonAccess;

    std::shared_ptr<ButtonAttributes> attributes_; // made when first needed
};

}
