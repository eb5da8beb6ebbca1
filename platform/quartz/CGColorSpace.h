// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "CGTypes.h"
#include "foundation/StringConstant.h"
#include "runtime/NSObject.h"

namespace brindle {

inline constexpr StringConstant<"kCGColorSpaceGenericRGB"> kCGColorSpaceGenericRGB;
inline constexpr StringConstant<"kCGColorSpaceGenericGray"> kCGColorSpaceGenericGray;
inline constexpr StringConstant<"kCGColorSpaceSRGB"> kCGColorSpaceSRGB;

/// Which numbers make a colour. There are a few, each made once; nothing is colour-managed: all spaces of a model
/// read the same numbers as the same colour.
class CGColorSpace : public NSObject {
    BRINDLE_OBJECT(CGColorSpace, NSObject)

public:
    /// The spaces there are.
    enum class Kind : std::uint8_t {
        deviceRGB,
        genericRGB,
        standardRGB,
        deviceGray,
        genericGray,
        pattern, // its cells have colours of their own
        patternOfRGB,
        patternOfGray,
    };

    Kind kind() const { return kind_; }

private:
    friend struct ColorSpaces;
    Kind kind_ = Kind::deviceRGB;
};

BRINDLE_EXPORT CGColorSpaceRef CGColorSpaceCreateDeviceRGB();
BRINDLE_EXPORT CGColorSpaceRef CGColorSpaceCreateDeviceGray();
/// Answers the space of patterns.
/// - base: of the colour that a pattern without own colours is drawn in; NULL for patterns that have them.
BRINDLE_EXPORT CGColorSpaceRef CGColorSpaceCreatePattern(CGColorSpaceRef base);
/// - Nil: NULL for an unknown name.
BRINDLE_EXPORT CGColorSpaceRef CGColorSpaceCreateWithName(NSString* name);
/// Answers the space's name; nil for the device spaces.
BRINDLE_EXPORT Ref<NSString> CGColorSpaceCopyName(CGColorSpaceRef space);
/// Answers how many numbers a colour has without its alpha; 0 for NULL.
BRINDLE_EXPORT std::size_t CGColorSpaceGetNumberOfComponents(CGColorSpaceRef space);
BRINDLE_EXPORT CGColorSpaceModel CGColorSpaceGetModel(CGColorSpaceRef space);
BRINDLE_EXPORT CGColorSpaceRef CGColorSpaceRetain(CGColorSpaceRef space);
BRINDLE_EXPORT void CGColorSpaceRelease(CGColorSpaceRef space);

}
