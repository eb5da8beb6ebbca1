// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>

#include "foundation/NSGeometry.h"

/// The names that all of Quartz shares: its references, structures and enumerations.
///
/// What stands behind a reference is an object of the runtime. Functions named Create or Copy answer a count that the
/// caller owns: give it back with the type's Release function, or take it over with `Ref<T>::adopt`. Release and Retain
/// functions take NULL.

namespace brindle {

class CGColor;
class CGColorSpace;
class CGContext;
class CGDataProvider;
class CGFont;
class CGGradient;
class CGImage;
class CGLayer;
class CGPath;
class CGPattern;
class CGShading;

template <> struct Opaque<CGColor> {
    static constexpr const char* encoding = "{CGColor=}";
};
template <> struct Opaque<CGColorSpace> {
    static constexpr const char* encoding = "{CGColorSpace=}";
};
template <> struct Opaque<CGContext> {
    static constexpr const char* encoding = "{CGContext=}";
};
template <> struct Opaque<CGDataProvider> {
    static constexpr const char* encoding = "{CGDataProvider=}";
};
template <> struct Opaque<CGFont> {
    static constexpr const char* encoding = "{CGFont=}";
};
template <> struct Opaque<CGGradient> {
    static constexpr const char* encoding = "{CGGradient=}";
};
template <> struct Opaque<CGImage> {
    static constexpr const char* encoding = "{CGImage=}";
};
template <> struct Opaque<CGLayer> {
    static constexpr const char* encoding = "{CGLayer=}";
};
template <> struct Opaque<CGPath> {
    static constexpr const char* encoding = "{CGPath=}";
};
template <> struct Opaque<CGPattern> {
    static constexpr const char* encoding = "{CGPattern=}";
};
template <> struct Opaque<CGShading> {
    static constexpr const char* encoding = "{CGShading=}";
};

using CGColorRef = CGColor*;
using CGColorSpaceRef = CGColorSpace*;
using CGContextRef = CGContext*;
using CGDataProviderRef = CGDataProvider*;
using CGFontRef = CGFont*;
using CGGradientRef = CGGradient*;
using CGImageRef = CGImage*;
using CGLayerRef = CGLayer*;
using CGPathRef = CGPath*;
using CGMutablePathRef = CGPath*;
using CGPatternRef = CGPattern*;
using CGShadingRef = CGShading*;

/// Maps (x, y) to (a x + c y + tx, b x + d y + ty).
struct CGAffineTransform {
    CGFloat a = 0;
    CGFloat b = 0;
    CGFloat c = 0;
    CGFloat d = 0;
    CGFloat tx = 0;
    CGFloat ty = 0;
    friend bool operator==(const CGAffineTransform&, const CGAffineTransform&) = default;
};
template <> struct Structure<CGAffineTransform> {
    static constexpr const char* encoding = "{CGAffineTransform=dddddd}";
};

using CGRectEdge = NSRectEdge;
inline constexpr CGRectEdge CGRectMinXEdge = NSMinXEdge;
inline constexpr CGRectEdge CGRectMinYEdge = NSMinYEdge;
inline constexpr CGRectEdge CGRectMaxXEdge = NSMaxXEdge;
inline constexpr CGRectEdge CGRectMaxYEdge = NSMaxYEdge;

/// How what is painted meets what is there.
enum CGBlendMode : std::int32_t {
    kCGBlendModeNormal = 0,
    kCGBlendModeMultiply = 1,
    kCGBlendModeScreen = 2,
    kCGBlendModeOverlay = 3,
    kCGBlendModeDarken = 4,
    kCGBlendModeLighten = 5,
    kCGBlendModeColorDodge = 6,
    kCGBlendModeColorBurn = 7,
    kCGBlendModeSoftLight = 8,
    kCGBlendModeHardLight = 9,
    kCGBlendModeDifference = 10,
    kCGBlendModeExclusion = 11,
    kCGBlendModeHue = 12,
    kCGBlendModeSaturation = 13,
    kCGBlendModeColor = 14,
    kCGBlendModeLuminosity = 15,
    kCGBlendModeClear = 16,
    kCGBlendModeCopy = 17,
    kCGBlendModeSourceIn = 18,
    kCGBlendModeSourceOut = 19,
    kCGBlendModeSourceAtop = 20,
    kCGBlendModeDestinationOver = 21,
    kCGBlendModeDestinationIn = 22,
    kCGBlendModeDestinationOut = 23,
    kCGBlendModeDestinationAtop = 24,
    kCGBlendModeXOR = 25,
    kCGBlendModePlusDarker = 26,
    kCGBlendModePlusLighter = 27,
};

enum CGLineCap : std::int32_t { kCGLineCapButt = 0, kCGLineCapRound = 1, kCGLineCapSquare = 2 };
enum CGLineJoin : std::int32_t { kCGLineJoinMiter = 0, kCGLineJoinRound = 1, kCGLineJoinBevel = 2 };

/// How images are sampled. The default averages all covered pixels when it makes an image smaller, like high.
enum CGInterpolationQuality : std::int32_t {
    kCGInterpolationDefault = 0,
    kCGInterpolationNone = 1,
    kCGInterpolationLow = 2,
    kCGInterpolationHigh = 3,
    kCGInterpolationMedium = 4,
};

enum CGPathDrawingMode : std::int32_t {
    kCGPathFill = 0,
    kCGPathEOFill = 1,
    kCGPathStroke = 2,
    kCGPathFillStroke = 3,
    kCGPathEOFillStroke = 4,
};

using CGGradientDrawingOptions = std::uint32_t;
enum : CGGradientDrawingOptions {
    kCGGradientDrawsBeforeStartLocation = 1,
    kCGGradientDrawsAfterEndLocation = 2,
};

/// Where the alpha of a pixel stands, and whether the colours are multiplied by it.
enum CGImageAlphaInfo : std::uint32_t {
    kCGImageAlphaNone = 0,
    kCGImageAlphaPremultipliedLast = 1,
    kCGImageAlphaPremultipliedFirst = 2,
    kCGImageAlphaLast = 3,
    kCGImageAlphaFirst = 4,
    kCGImageAlphaNoneSkipLast = 5,
    kCGImageAlphaNoneSkipFirst = 6,
    kCGImageAlphaOnly = 7,
};

/// An alpha info and a byte order, added together.
using CGBitmapInfo = std::uint32_t;
inline constexpr CGBitmapInfo kCGBitmapAlphaInfoMask = 0x1F;
inline constexpr CGBitmapInfo kCGBitmapFloatComponents = 0x100;
inline constexpr CGBitmapInfo kCGBitmapByteOrderMask = 0x7000;
inline constexpr CGBitmapInfo kCGBitmapByteOrderDefault = 0;
inline constexpr CGBitmapInfo kCGBitmapByteOrder16Little = 0x1000;
inline constexpr CGBitmapInfo kCGBitmapByteOrder32Little = 0x2000;
inline constexpr CGBitmapInfo kCGBitmapByteOrder16Big = 0x3000;
inline constexpr CGBitmapInfo kCGBitmapByteOrder32Big = 0x4000;

enum CGColorRenderingIntent : std::int32_t {
    kCGRenderingIntentDefault = 0,
    kCGRenderingIntentAbsoluteColorimetric = 1,
    kCGRenderingIntentRelativeColorimetric = 2,
    kCGRenderingIntentPerceptual = 3,
    kCGRenderingIntentSaturation = 4,
};

enum CGColorSpaceModel : std::int32_t {
    kCGColorSpaceModelUnknown = -1,
    kCGColorSpaceModelMonochrome = 0,
    kCGColorSpaceModelRGB = 1,
    kCGColorSpaceModelPattern = 6,
};

}
