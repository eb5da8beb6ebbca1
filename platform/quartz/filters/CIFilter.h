// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "CIImage.h"
#include "foundation/StringConstant.h"

namespace brindle {

class NSArray;
class NSDictionary;
class NSMutableDictionary;

inline constexpr StringConstant<"inputImage"> kCIInputImageKey;
inline constexpr StringConstant<"outputImage"> kCIOutputImageKey;
inline constexpr StringConstant<"inputRadius"> kCIInputRadiusKey;
inline constexpr StringConstant<"inputIntensity"> kCIInputIntensityKey;
inline constexpr StringConstant<"inputColor"> kCIInputColorKey;
inline constexpr StringConstant<"inputSaturation"> kCIInputSaturationKey;
inline constexpr StringConstant<"inputBrightness"> kCIInputBrightnessKey;
inline constexpr StringConstant<"inputContrast"> kCIInputContrastKey;

/// Makes a picture of another one. Its inputs are set, and its output read, by key.
///
/// | Name | Inputs besides `inputImage`, with their defaults |
/// |---|---|
/// | `CIColorInvert` | none: every colour becomes 1 minus itself |
/// | `CIColorControls` | `inputSaturation` 1, `inputBrightness` 0, `inputContrast` 1 |
/// | `CIColorMonochrome` | `inputColor` (0.6, 0.45, 0.3), `inputIntensity` 1 |
/// | `CISepiaTone` | `inputIntensity` 1 |
/// | `CIGaussianBlur` | `inputRadius` 10: the deviation, in pixels; the picture grows by three of them |
///
/// Colours are computed as they are encoded and without their alpha, which stays. Numbers of another kind, and such as make no
/// sense, count as the default.
/// - Raises: `NSUnknownKeyException` for a key that the filter does not have.
/// Thread: one at a time.
class CIFilter : public NSObject {
    BRINDLE_OBJECT(CIFilter, NSObject)

public:
    struct Meta : NSObject::Meta {
        /// - Nil: for a name that is not in the table.
        Ref<CIFilter> filterWithName(NSString* name) const
        {
            return send<"filterWithName:", Ref<CIFilter>>(name);
        }
        /// The same with its inputs, the others at their defaults.
        Ref<CIFilter> filterWithName_withInputParameters(
            NSString* name, NSDictionary* parameters) const
        {
            return send<"filterWithName:withInputParameters:", Ref<CIFilter>>(name, parameters);
        }
    };

    Ref<NSString> name() const { return send<"name", Ref<NSString>>(); }
    Ref<NSArray> inputKeys() const { return send<"inputKeys", Ref<NSArray>>(); }
    Ref<NSArray> outputKeys() const { return send<"outputKeys", Ref<NSArray>>(); }
    /// Sets every input but the image to its default.
    void setDefaults() { send<"setDefaults">(); }
    /// Answers what follows from the inputs of now; later changes do not reach it.
    /// - Nil: without an image.
    Ref<CIImage> outputImage() const { return send<"outputImage", Ref<CIImage>>(); }

private:
    const struct FilterKind* kind_ = nullptr;
    Ref<NSMutableDictionary> inputs_;
};

}
