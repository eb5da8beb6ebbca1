// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "CALayer.h"

namespace brindle {

inline constexpr StringConstant<"none"> kCATruncationNone;
inline constexpr StringConstant<"start"> kCATruncationStart;
inline constexpr StringConstant<"middle"> kCATruncationMiddle;
inline constexpr StringConstant<"end"> kCATruncationEnd;
inline constexpr StringConstant<"natural"> kCAAlignmentNatural;
inline constexpr StringConstant<"left"> kCAAlignmentLeft;
inline constexpr StringConstant<"right"> kCAAlignmentRight;
inline constexpr StringConstant<"center"> kCAAlignmentCenter;
inline constexpr StringConstant<"justified"> kCAAlignmentJustified;

/// A layer that draws text, its first line at the top.
class CATextLayer : public CALayer {
    BRINDLE_OBJECT(CATextLayer, CALayer)

public:
    /// A string, or an attributed string whose first character's font and colour then hold for all of it.
    Ref<NSObject> string() const { return send<"string", Ref<NSObject>>(); }
    void setString(NSObject* string) { send<"setString:">(string); }
    /// The name of a font, or a font object, of which only the typeface counts.
    /// - Nil: nil and names that are not known mean Helvetica.
    Ref<NSObject> font() const { return send<"font", Ref<NSObject>>(); }
    void setFont(NSObject* font) { send<"setFont:">(font); }
    /// Points, 36 at first.
    CGFloat fontSize() const { return send<"fontSize", CGFloat>(); }
    void setFontSize(CGFloat size) { send<"setFontSize:">(size); }
    /// Opaque white at first.
    Ref<CGColor> foregroundColor() const { return send<"foregroundColor", Ref<CGColor>>(); }
    void setForegroundColor(CGColorRef color) { send<"setForegroundColor:">(color); }
    /// Whether lines are broken at the layer's width. NO at first.
    bool isWrapped() const { return send<"isWrapped", bool>(); }
    void setWrapped(bool wrapped) { send<"setWrapped:">(wrapped); }
    /// How a line that does not fit is cut; when lines are broken, the last one that has room.
    Ref<NSString> truncationMode() const { return send<"truncationMode", Ref<NSString>>(); }
    void setTruncationMode(NSString* mode) { send<"setTruncationMode:">(mode); }
    /// Justified lines are drawn as natural ones.
    Ref<NSString> alignmentMode() const { return send<"alignmentMode", Ref<NSString>>(); }
    void setAlignmentMode(NSString* mode) { send<"setAlignmentMode:">(mode); }

private:
    Ref<NSObject> string_;
    Ref<NSObject> font_;
    Ref<CGColor> foregroundColor_;
    Ref<NSString> truncationMode_ = kCATruncationNone.get();
    Ref<NSString> alignmentMode_ = kCAAlignmentNatural.get();
    CGFloat fontSize_ = 36;
    bool wrapped_ = false;
};

}
