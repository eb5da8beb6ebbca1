// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "foundation/StringConstant.h"
#include "quartz/CGColor.h"

namespace brindle {

class NSArray;
class NSImage;

inline constexpr StringConstant<"NSCalibratedRGBColorSpace"> NSCalibratedRGBColorSpace;
inline constexpr StringConstant<"NSDeviceRGBColorSpace"> NSDeviceRGBColorSpace;
inline constexpr StringConstant<"NSCalibratedWhiteColorSpace"> NSCalibratedWhiteColorSpace;
inline constexpr StringConstant<"NSDeviceWhiteColorSpace"> NSDeviceWhiteColorSpace;
inline constexpr StringConstant<"NSNamedColorSpace"> NSNamedColorSpace;
inline constexpr StringConstant<"NSPatternColorSpace"> NSPatternColorSpace;

namespace appkit {
    /// How the interface looks.
    enum class Appearance { light, dark };

    BRINDLE_EXPORT Appearance appearance();
    /// Sets the look of the whole process; whoever shows something draws it anew.
    BRINDLE_EXPORT void setAppearance(Appearance appearance);
}

/// A colour in one of a few spaces. Never changes.
///
/// Components are kept as exact doubles, clamped to 0 to 1 when a colour is made; NaN is 0. System colours stand in the
/// named space and take their components from the appearance whenever they are used.
/// Thread: any.
class NSColor : public NSObject {
    BRINDLE_OBJECT(NSColor, NSObject)

public:
    struct Meta : NSObject::Meta {
        Ref<NSColor> colorWithCalibratedRed_green_blue_alpha(
            CGFloat red, CGFloat green, CGFloat blue, CGFloat alpha) const
        {
            return send<"colorWithCalibratedRed:green:blue:alpha:", Ref<NSColor>>(
                red, green, blue, alpha);
        }
        /// Stored as RGB; hue 1 is hue 0.
        Ref<NSColor> colorWithCalibratedHue_saturation_brightness_alpha(
            CGFloat hue, CGFloat saturation, CGFloat brightness, CGFloat alpha) const
        {
            return send<"colorWithCalibratedHue:saturation:brightness:alpha:", Ref<NSColor>>(
                hue, saturation, brightness, alpha);
        }
        Ref<NSColor> colorWithCalibratedWhite_alpha(CGFloat white, CGFloat alpha) const
        {
            return send<"colorWithCalibratedWhite:alpha:", Ref<NSColor>>(white, alpha);
        }
        Ref<NSColor> colorWithDeviceRed_green_blue_alpha(
            CGFloat red, CGFloat green, CGFloat blue, CGFloat alpha) const
        {
            return send<"colorWithDeviceRed:green:blue:alpha:", Ref<NSColor>>(
                red, green, blue, alpha);
        }
        Ref<NSColor> colorWithDeviceHue_saturation_brightness_alpha(
            CGFloat hue, CGFloat saturation, CGFloat brightness, CGFloat alpha) const
        {
            return send<"colorWithDeviceHue:saturation:brightness:alpha:", Ref<NSColor>>(
                hue, saturation, brightness, alpha);
        }
        Ref<NSColor> colorWithDeviceWhite_alpha(CGFloat white, CGFloat alpha) const
        {
            return send<"colorWithDeviceWhite:alpha:", Ref<NSColor>>(white, alpha);
        }
        /// Calibrated RGB.
        Ref<NSColor> colorWithRed_green_blue_alpha(
            CGFloat red, CGFloat green, CGFloat blue, CGFloat alpha) const
        {
            return send<"colorWithRed:green:blue:alpha:", Ref<NSColor>>(red, green, blue, alpha);
        }
        Ref<NSColor> colorWithSRGBRed_green_blue_alpha(
            CGFloat red, CGFloat green, CGFloat blue, CGFloat alpha) const
        {
            return send<"colorWithSRGBRed:green:blue:alpha:", Ref<NSColor>>(
                red, green, blue, alpha);
        }
        Ref<NSColor> colorWithHue_saturation_brightness_alpha(
            CGFloat hue, CGFloat saturation, CGFloat brightness, CGFloat alpha) const
        {
            return send<"colorWithHue:saturation:brightness:alpha:", Ref<NSColor>>(
                hue, saturation, brightness, alpha);
        }
        /// Calibrated white.
        Ref<NSColor> colorWithWhite_alpha(CGFloat white, CGFloat alpha) const
        {
            return send<"colorWithWhite:alpha:", Ref<NSColor>>(white, alpha);
        }
        /// - Nil: nil for NULL and for patterns.
        Ref<NSColor> colorWithCGColor(class CGColor* color) const
        {
            return send<"colorWithCGColor:", Ref<NSColor>>(color);
        }
        /// Paints with the image side by side at its size in points, from the origin of the base space.
        /// - Nil: nil for nil.
        Ref<NSColor> colorWithPatternImage(NSImage* image) const
        {
            return send<"colorWithPatternImage:", Ref<NSColor>>(image);
        }

        /// Answers a system colour by its name, such as "textColor".
        /// - Nil: nil for an unknown name and for every catalogue but "System".
        Ref<NSColor> colorWithCatalogName_colorName(NSString* catalog, NSString* name) const
        {
            return send<"colorWithCatalogName:colorName:", Ref<NSColor>>(catalog, name);
        }

        // Each is one object. Calibrated white: 0, 1/3, 1/2, 2/3 and 1; clear is white 0, alpha 0.
        Ref<NSColor> blackColor() const { return send<"blackColor", Ref<NSColor>>(); }
        Ref<NSColor> darkGrayColor() const { return send<"darkGrayColor", Ref<NSColor>>(); }
        Ref<NSColor> grayColor() const { return send<"grayColor", Ref<NSColor>>(); }
        Ref<NSColor> lightGrayColor() const { return send<"lightGrayColor", Ref<NSColor>>(); }
        Ref<NSColor> whiteColor() const { return send<"whiteColor", Ref<NSColor>>(); }
        Ref<NSColor> clearColor() const { return send<"clearColor", Ref<NSColor>>(); }

        // Calibrated RGB.
        Ref<NSColor> redColor() const { return send<"redColor", Ref<NSColor>>(); }
        Ref<NSColor> greenColor() const { return send<"greenColor", Ref<NSColor>>(); }
        Ref<NSColor> blueColor() const { return send<"blueColor", Ref<NSColor>>(); }
        Ref<NSColor> cyanColor() const { return send<"cyanColor", Ref<NSColor>>(); }
        Ref<NSColor> yellowColor() const { return send<"yellowColor", Ref<NSColor>>(); }
        Ref<NSColor> magentaColor() const { return send<"magentaColor", Ref<NSColor>>(); }
        Ref<NSColor> orangeColor() const { return send<"orangeColor", Ref<NSColor>>(); }
        Ref<NSColor> purpleColor() const { return send<"purpleColor", Ref<NSColor>>(); }
        Ref<NSColor> brownColor() const { return send<"brownColor", Ref<NSColor>>(); }

        // System colours: named, with a light and a dark variant.
        Ref<NSColor> controlTextColor() const { return send<"controlTextColor", Ref<NSColor>>(); }
        Ref<NSColor> disabledControlTextColor() const
        {
            return send<"disabledControlTextColor", Ref<NSColor>>();
        }
        Ref<NSColor> controlColor() const { return send<"controlColor", Ref<NSColor>>(); }
        Ref<NSColor> controlBackgroundColor() const
        {
            return send<"controlBackgroundColor", Ref<NSColor>>();
        }
        Ref<NSColor> controlHighlightColor() const
        {
            return send<"controlHighlightColor", Ref<NSColor>>();
        }
        Ref<NSColor> controlLightHighlightColor() const
        {
            return send<"controlLightHighlightColor", Ref<NSColor>>();
        }
        Ref<NSColor> controlShadowColor() const
        {
            return send<"controlShadowColor", Ref<NSColor>>();
        }
        Ref<NSColor> controlDarkShadowColor() const
        {
            return send<"controlDarkShadowColor", Ref<NSColor>>();
        }
        Ref<NSColor> selectedControlColor() const
        {
            return send<"selectedControlColor", Ref<NSColor>>();
        }
        Ref<NSColor> selectedControlTextColor() const
        {
            return send<"selectedControlTextColor", Ref<NSColor>>();
        }
        Ref<NSColor> alternateSelectedControlColor() const
        {
            return send<"alternateSelectedControlColor", Ref<NSColor>>();
        }
        Ref<NSColor> alternateSelectedControlTextColor() const
        {
            return send<"alternateSelectedControlTextColor", Ref<NSColor>>();
        }
        Ref<NSColor> secondarySelectedControlColor() const
        {
            return send<"secondarySelectedControlColor", Ref<NSColor>>();
        }
        Ref<NSColor> selectedContentBackgroundColor() const
        {
            return send<"selectedContentBackgroundColor", Ref<NSColor>>();
        }
        Ref<NSColor> unemphasizedSelectedContentBackgroundColor() const
        {
            return send<"unemphasizedSelectedContentBackgroundColor", Ref<NSColor>>();
        }
        Ref<NSColor> unemphasizedSelectedTextBackgroundColor() const
        {
            return send<"unemphasizedSelectedTextBackgroundColor", Ref<NSColor>>();
        }
        Ref<NSColor> unemphasizedSelectedTextColor() const
        {
            return send<"unemphasizedSelectedTextColor", Ref<NSColor>>();
        }
        Ref<NSColor> alternatingContentBackgroundColor() const
        {
            return send<"alternatingContentBackgroundColor", Ref<NSColor>>();
        }
        /// Answers the grounds of even and odd rows, in this order.
        Ref<NSArray> alternatingContentBackgroundColors() const
        {
            return send<"alternatingContentBackgroundColors", Ref<NSArray>>();
        }
        /// The same under its older name.
        Ref<NSArray> controlAlternatingRowBackgroundColors() const
        {
            return send<"controlAlternatingRowBackgroundColors", Ref<NSArray>>();
        }
        Ref<NSColor> findHighlightColor() const
        {
            return send<"findHighlightColor", Ref<NSColor>>();
        }
        Ref<NSColor> keyboardFocusIndicatorColor() const
        {
            return send<"keyboardFocusIndicatorColor", Ref<NSColor>>();
        }
        Ref<NSColor> windowBackgroundColor() const
        {
            return send<"windowBackgroundColor", Ref<NSColor>>();
        }
        Ref<NSColor> windowFrameColor() const { return send<"windowFrameColor", Ref<NSColor>>(); }
        Ref<NSColor> windowFrameTextColor() const
        {
            return send<"windowFrameTextColor", Ref<NSColor>>();
        }
        Ref<NSColor> underPageBackgroundColor() const
        {
            return send<"underPageBackgroundColor", Ref<NSColor>>();
        }
        Ref<NSColor> textColor() const { return send<"textColor", Ref<NSColor>>(); }
        Ref<NSColor> textBackgroundColor() const
        {
            return send<"textBackgroundColor", Ref<NSColor>>();
        }
        Ref<NSColor> selectedTextColor() const { return send<"selectedTextColor", Ref<NSColor>>(); }
        Ref<NSColor> selectedTextBackgroundColor() const
        {
            return send<"selectedTextBackgroundColor", Ref<NSColor>>();
        }
        Ref<NSColor> gridColor() const { return send<"gridColor", Ref<NSColor>>(); }
        Ref<NSColor> headerColor() const { return send<"headerColor", Ref<NSColor>>(); }
        Ref<NSColor> headerTextColor() const { return send<"headerTextColor", Ref<NSColor>>(); }
        Ref<NSColor> scrollBarColor() const { return send<"scrollBarColor", Ref<NSColor>>(); }
        Ref<NSColor> knobColor() const { return send<"knobColor", Ref<NSColor>>(); }
        Ref<NSColor> selectedKnobColor() const { return send<"selectedKnobColor", Ref<NSColor>>(); }
        Ref<NSColor> selectedMenuItemColor() const
        {
            return send<"selectedMenuItemColor", Ref<NSColor>>();
        }
        Ref<NSColor> selectedMenuItemTextColor() const
        {
            return send<"selectedMenuItemTextColor", Ref<NSColor>>();
        }
        Ref<NSColor> highlightColor() const { return send<"highlightColor", Ref<NSColor>>(); }
        Ref<NSColor> shadowColor() const { return send<"shadowColor", Ref<NSColor>>(); }
        Ref<NSColor> labelColor() const { return send<"labelColor", Ref<NSColor>>(); }
        Ref<NSColor> secondaryLabelColor() const
        {
            return send<"secondaryLabelColor", Ref<NSColor>>();
        }
        Ref<NSColor> tertiaryLabelColor() const
        {
            return send<"tertiaryLabelColor", Ref<NSColor>>();
        }
        Ref<NSColor> quaternaryLabelColor() const
        {
            return send<"quaternaryLabelColor", Ref<NSColor>>();
        }
        Ref<NSColor> placeholderTextColor() const
        {
            return send<"placeholderTextColor", Ref<NSColor>>();
        }
        Ref<NSColor> separatorColor() const { return send<"separatorColor", Ref<NSColor>>(); }
        Ref<NSColor> linkColor() const { return send<"linkColor", Ref<NSColor>>(); }
        Ref<NSColor> controlAccentColor() const
        {
            return send<"controlAccentColor", Ref<NSColor>>();
        }
        Ref<NSColor> systemRedColor() const { return send<"systemRedColor", Ref<NSColor>>(); }
        Ref<NSColor> systemOrangeColor() const { return send<"systemOrangeColor", Ref<NSColor>>(); }
        Ref<NSColor> systemYellowColor() const { return send<"systemYellowColor", Ref<NSColor>>(); }
        Ref<NSColor> systemGreenColor() const { return send<"systemGreenColor", Ref<NSColor>>(); }
        Ref<NSColor> systemTealColor() const { return send<"systemTealColor", Ref<NSColor>>(); }
        Ref<NSColor> systemBlueColor() const { return send<"systemBlueColor", Ref<NSColor>>(); }
        Ref<NSColor> systemIndigoColor() const { return send<"systemIndigoColor", Ref<NSColor>>(); }
        Ref<NSColor> systemPurpleColor() const { return send<"systemPurpleColor", Ref<NSColor>>(); }
        Ref<NSColor> systemPinkColor() const { return send<"systemPinkColor", Ref<NSColor>>(); }
        Ref<NSColor> systemBrownColor() const { return send<"systemBrownColor", Ref<NSColor>>(); }
        Ref<NSColor> systemMintColor() const { return send<"systemMintColor", Ref<NSColor>>(); }
        Ref<NSColor> systemCyanColor() const { return send<"systemCyanColor", Ref<NSColor>>(); }
        Ref<NSColor> systemGrayColor() const { return send<"systemGrayColor", Ref<NSColor>>(); }
    };

    /// Answers one of the space names above.
    Ref<NSString> colorSpaceName() const { return send<"colorSpaceName", Ref<NSString>>(); }
    /// Answers the colour in another space: the receiver itself in its own; white w becomes (w, w, w), RGB keeps its numbers,
    /// RGB becomes white by the weights 0.299, 0.587 and 0.114.
    /// - name: nil means calibrated RGB. - Nil: nil for patterns and for spaces nothing converts to.
    Ref<NSColor> colorUsingColorSpaceName(NSString* name) const
    {
        return send<"colorUsingColorSpaceName:", Ref<NSColor>>(name);
    }
    NSInteger numberOfComponents() const { return send<"numberOfComponents", NSInteger>(); }

    // - Raises: `NSInvalidArgumentException` outside RGB spaces: "*** -redComponent not valid for the NSColor
    //   NSCalibratedWhiteColorSpace 0 1; need to first convert colorspace."
    CGFloat redComponent() const { return send<"redComponent", CGFloat>(); }
    CGFloat greenComponent() const { return send<"greenComponent", CGFloat>(); }
    CGFloat blueComponent() const { return send<"blueComponent", CGFloat>(); }
    /// 0 to 1: red 0, green 1/3, blue 2/3; 0 for greys.
    CGFloat hueComponent() const { return send<"hueComponent", CGFloat>(); }
    /// 0 for black.
    CGFloat saturationComponent() const { return send<"saturationComponent", CGFloat>(); }
    /// The greatest of the three.
    CGFloat brightnessComponent() const { return send<"brightnessComponent", CGFloat>(); }
    /// Any of the addresses may be null.
    void getRed_green_blue_alpha(CGFloat* red, CGFloat* green, CGFloat* blue, CGFloat* alpha) const
    {
        send<"getRed:green:blue:alpha:">(red, green, blue, alpha);
    }
    void getHue_saturation_brightness_alpha(
        CGFloat* hue, CGFloat* saturation, CGFloat* brightness, CGFloat* alpha) const
    {
        send<"getHue:saturation:brightness:alpha:">(hue, saturation, brightness, alpha);
    }
    /// - Raises: as `redComponent`, outside white spaces.
    CGFloat whiteComponent() const { return send<"whiteComponent", CGFloat>(); }
    void getWhite_alpha(CGFloat* white, CGFloat* alpha) const
    {
        send<"getWhite:alpha:">(white, alpha);
    }
    /// Any space; 1 for patterns.
    CGFloat alphaComponent() const { return send<"alphaComponent", CGFloat>(); }
    /// "System". - Raises: as `redComponent`, outside the named space.
    Ref<NSString> catalogNameComponent() const
    {
        return send<"catalogNameComponent", Ref<NSString>>();
    }
    /// The name of a system colour: "textColor". - Raises: as `redComponent`, outside the named space.
    Ref<NSString> colorNameComponent() const { return send<"colorNameComponent", Ref<NSString>>(); }
    /// The numbers of the receiver's space, alpha last.
    void getComponents(CGFloat* components) const { send<"getComponents:">(components); }

    /// Answers the colour with another alpha; system colours answer their look of now.
    Ref<NSColor> colorWithAlphaComponent(CGFloat alpha) const
    {
        return send<"colorWithAlphaComponent:", Ref<NSColor>>(alpha);
    }
    /// Answers a mixture in calibrated RGB: 0 is the receiver, 1 the other.
    /// - Nil: nil when one of them cannot be converted.
    Ref<NSColor> blendedColorWithFraction_ofColor(CGFloat fraction, NSColor* color) const
    {
        return send<"blendedColorWithFraction:ofColor:", Ref<NSColor>>(fraction, color);
    }
    /// Blends with `highlightColor`.
    Ref<NSColor> highlightWithLevel(CGFloat level) const
    {
        return send<"highlightWithLevel:", Ref<NSColor>>(level);
    }
    /// Blends with `shadowColor`.
    Ref<NSColor> shadowWithLevel(CGFloat level) const
    {
        return send<"shadowWithLevel:", Ref<NSColor>>(level);
    }
    /// Answers the Quartz colour of now; nil for patterns.
    Ref<class CGColor> CGColor() const { return send<"CGColor", Ref<class CGColor>>(); }
    Ref<NSImage> patternImage() const { return send<"patternImage", Ref<NSImage>>(); }

    /// Makes this the fill and stroke colour of the current context.
    void set() const { send<"set">(); }
    void setFill() const { send<"setFill">(); }
    void setStroke() const { send<"setStroke">(); }
    /// Fills a rectangle of the current context with the colour.
    void drawSwatchInRect(NSRect rect) const { send<"drawSwatchInRect:">(rect); }

private:
    enum class Space : std::uint8_t {
        calibratedRGB,
        deviceRGB,
        calibratedWhite,
        deviceWhite,
        named,
        pattern
    };

    Space space_ = Space::calibratedRGB;
    std::uint8_t systemIndex_ = 0; // named colours
    CGFloat components_[4] {}; // red green blue alpha, or white alpha
    Ref<NSObject> pattern_; // NSImage
};

}
