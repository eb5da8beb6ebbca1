// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSColor.h"

namespace brindle {

// Every operation works in calibrated RGB, to which it converts its colours first. A colour that cannot be converted, a
// pattern or nil, counts as 0 in every component. Components beyond 0 to 1 are bounded when the answer is made.
// Blending amounts are four numbers, one a component: 0 keeps the receiver's component, 1 takes the other's; they are not
// bounded. Nothing is shared: any thread.

// ---- greys

/// Calibrated RGB 1, 1, 1; `whiteColor` stands in the white space, which has no red.
inline Ref<NSColor> rgbWhite(To<Class> cls) { return cls.send<"rgbWhite", Ref<NSColor>>(); }
inline Ref<NSColor> rgbBlack(To<Class> cls) { return cls.send<"rgbBlack", Ref<NSColor>>(); }
inline Ref<NSColor> rgbGrey(To<Class> cls, double grey)
{
    return cls.send<"rgbGrey:", Ref<NSColor>>(grey);
}
inline Ref<NSColor> rgbGrey_withAlpha(To<Class> cls, double grey, double alpha)
{
    return cls.send<"rgbGrey:withAlpha:", Ref<NSColor>>(grey, alpha);
}
/// Answers the grey that is as light as a colour; the colour's own alpha does not count.
inline Ref<NSColor> rgbGreyWithLuminosityFrom_withAlpha(To<Class> cls, NSColor* color, double alpha)
{
    return cls.send<"rgbGreyWithLuminosityFrom:withAlpha:", Ref<NSColor>>(color, alpha);
}
/// Nine tenths of white.
inline Ref<NSColor> veryLightGrey(To<Class> cls)
{
    return cls.send<"veryLightGrey", Ref<NSColor>>();
}

// ---- hexadecimal text

/// Reads "#rrggbb"; case does not matter, and what follows is ignored.
/// A letter counts 10 to 15, but a decimal digit counts its character code, 48 to 57, so that most texts with digits are
/// white: "#ffffff" is white and so is "#000000", while "#a0a0a0" is 208/255 of it. Nothing else is refused: "g" counts 16.
/// - Returns: alpha 1; components behind a NUL in the text are 0.
/// - Nil: for nil, fewer than 7 UTF-16 units, or another first character than "#".
inline Ref<NSColor> colorWithHexString(To<Class> cls, NSString* text)
{
    return cls.send<"colorWithHexString:", Ref<NSColor>>(text);
}
/// Answers "#RRGGBB", rounded down: 0.999 reads FE. `colorWithHexString:` reads back only what has no decimal digits.
inline Ref<NSString> hexString(To<NSColor> color)
{
    return color.send<"hexString", Ref<NSString>>();
}

// ---- lightness

/// Answers how light the colour looks, 0 to 1: 0.212671 red, 0.71516 green, 0.072169 blue.
inline double luminosity(To<NSColor> color) { return color.send<"luminosity", double>(); }
/// Answers the opaque grey that is as light.
inline Ref<NSColor> colorWithLuminosity(To<NSColor> color)
{
    return color.send<"colorWithLuminosity", Ref<NSColor>>();
}
/// Answers `blackColor` for a luminosity of 0.5 or more, else `whiteColor`.
inline Ref<NSColor> contrastingColor(To<Class> cls, NSColor* color)
{
    return cls.send<"contrastingColor:", Ref<NSColor>>(color);
}
inline Ref<NSColor> contrastingColor(To<NSColor> color)
{
    return color.send<"contrastingColor", Ref<NSColor>>();
}
/// Answers 1 less each of red, green and blue; alpha stays.
inline Ref<NSColor> invertedColor(To<NSColor> color)
{
    return color.send<"invertedColor", Ref<NSColor>>();
}
/// Blends towards white: level 0 is the receiver, 1 is white; alpha stays.
inline Ref<NSColor> lighterColorWithLevel(To<NSColor> color, double level)
{
    return color.send<"lighterColorWithLevel:", Ref<NSColor>>(level);
}
/// Blends towards black: level 0 is the receiver, 1 is black; alpha stays.
inline Ref<NSColor> darkerColorWithLevel(To<NSColor> color, double level)
{
    return color.send<"darkerColorWithLevel:", Ref<NSColor>>(level);
}

// ---- mixtures

/// Answers `from` at 0 and below, `to` at 1 and above, else their mixture, alpha included.
inline Ref<NSColor> colorByInterpolatingFrom_to_atValue(
    To<Class> cls, NSColor* from, NSColor* to, double value)
{
    return cls.send<"colorByInterpolatingFrom:to:atValue:", Ref<NSColor>>(from, to, value);
}
inline Ref<NSColor> interpolatedColorToColor_atValue(To<NSColor> color, NSColor* to, double value)
{
    return color.send<"interpolatedColorToColor:atValue:", Ref<NSColor>>(to, value);
}
/// - Shape: `amounts` are four, for red, green, blue and alpha; without any the receiver's own components stay.
inline Ref<NSColor> colorWithRGBBlendFrom_blendingAmounts(
    To<NSColor> color, NSColor* other, const double* amounts)
{
    return color.send<"colorWithRGBBlendFrom:blendingAmounts:", Ref<NSColor>>(other, amounts);
}
/// - Shape: `amounts` are four, for hue, saturation, brightness and alpha. Hue is a plain number here and does not go
///   round the circle: between 0.95 and 0.05 lies 0.5.
inline Ref<NSColor> colorWithHSBBlendFrom_blendingAmounts(
    To<NSColor> color, NSColor* other, const double* amounts)
{
    return color.send<"colorWithHSBBlendFrom:blendingAmounts:", Ref<NSColor>>(other, amounts);
}
/// The RGB blend by halves.
inline Ref<NSColor> colorWithRGBAverageFrom(To<NSColor> color, NSColor* other)
{
    return color.send<"colorWithRGBAverageFrom:", Ref<NSColor>>(other);
}
/// The HSB blend by halves.
inline Ref<NSColor> colorWithHSBAverageFrom(To<NSColor> color, NSColor* other)
{
    return color.send<"colorWithHSBAverageFrom:", Ref<NSColor>>(other);
}

// These two do not convert.

/// Answers the receiver in another colour's hue.
/// - Raises: as `hueComponent`, when one of the two stands in no RGB space, as `blackColor` does.
inline Ref<NSColor> colorWithHueFrom(To<NSColor> color, NSColor* other)
{
    return color.send<"colorWithHueFrom:", Ref<NSColor>>(other);
}
/// Answers the receiver in another colour's hue and saturation.
/// - Raises: as `colorWithHueFrom:`.
inline Ref<NSColor> colorWithHueAndSaturationFrom(To<NSColor> color, NSColor* other)
{
    return color.send<"colorWithHueAndSaturationFrom:", Ref<NSColor>>(other);
}

// ---- elsewhere

/// Answers nil for every wavelength.
inline Ref<NSColor> colorWithWavelength(To<Class> cls, double wavelength)
{
    return cls.send<"colorWithWavelength:", Ref<NSColor>>(wavelength);
}
/// Answers a new Quartz colour in device RGB.
/// - Owner: the caller; whoever sends the message for a bare `CGColorRef` ends it with `CGColorRelease`.
inline Ref<CGColor> newQuartzColor(To<NSColor> color)
{
    return color.send<"newQuartzColor", Ref<CGColor>>();
}

}
