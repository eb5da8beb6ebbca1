// SPDX-License-Identifier: Apache-2.0
#include "CIFilter.h"

#include "CIColor.h"
#include "FilterPixelsPrivate.h"
#include "foundation/NSArray.h"
#include "foundation/NSMutableDictionary.h"
#include "foundation/NSNumber.h"
#include "foundation/NSObject+KeyValueCoding.h"
#include "quartz/CGGeometry.h"
#include "runtime/Table.h"

#include <array>
#include <string_view>

namespace brindle {

using quartz::FilterColor;
using quartz::FilterPixels;
using quartz::FilterStep;

namespace {

    /// The inputs besides the image, as numbers in the order in which the kind lists them.
    struct Inputs {
        std::array<double, 3> numbers {};
        FilterColor color {};
    };

    struct Input {
        const char* key = nullptr;
        double standard = 0;
    };

}

/// One kind of filter: its inputs, and the step that they make.
struct FilterKind {
    const char* name;
    std::array<Input, 3> numbers; // those without a key are not there
    bool hasColor;
    FilterStep (*step)(const Inputs& inputs);
};

namespace {

    constexpr double kMostDeviation = 256;
    constexpr FilterColor kStandardColor { 0.6, 0.45, 0.3, 1 };

    double mixed(double from, double to, double share) { return from + (to - from) * share; }

    FilterStep invertStep(const Inputs&) { return { 0, quartz::invert }; }

    FilterStep controlsStep(const Inputs& inputs)
    {
        return { 0, [inputs](FilterPixels& pixels) {
                    const double saturation = inputs.numbers[0];
                    const double brightness = inputs.numbers[1];
                    const double contrast = inputs.numbers[2];
                    quartz::eachColor(pixels, [&](FilterColor& c) {
                        const double grey = c.luminance();
                        for (double* part : { &c.red, &c.green, &c.blue })
                            *part = (mixed(grey, *part, saturation) + brightness - 0.5) * contrast
                                + 0.5;
                    });
                } };
    }

    FilterStep monochromeStep(const Inputs& inputs)
    {
        return { 0, [inputs](FilterPixels& pixels) {
                    const double intensity = inputs.numbers[0];
                    quartz::eachColor(pixels, [&](FilterColor& c) {
                        const double grey = c.luminance();
                        c.red = mixed(c.red, grey * inputs.color.red, intensity);
                        c.green = mixed(c.green, grey * inputs.color.green, intensity);
                        c.blue = mixed(c.blue, grey * inputs.color.blue, intensity);
                    });
                } };
    }

    // The matrix of the sepia filter in "Filter Effects Module Level 1" (W3C).
    FilterStep sepiaStep(const Inputs& inputs)
    {
        return { 0, [inputs](FilterPixels& pixels) {
                    const double intensity = inputs.numbers[0];
                    quartz::eachColor(pixels, [intensity](FilterColor& c) {
                        const auto [r, g, b, a] = c;
                        c.red = mixed(r, 0.393 * r + 0.769 * g + 0.189 * b, intensity);
                        c.green = mixed(g, 0.349 * r + 0.686 * g + 0.168 * b, intensity);
                        c.blue = mixed(b, 0.272 * r + 0.534 * g + 0.131 * b, intensity);
                    });
                } };
    }

    FilterStep blurStep(const Inputs& inputs)
    {
        const double deviation = std::clamp(inputs.numbers[0], 0.0, kMostDeviation);
        return { static_cast<std::ptrdiff_t>(std::ceil(3 * deviation)),
            [deviation](FilterPixels& pixels) { quartz::blur(pixels, deviation); } };
    }

    constexpr FilterKind kKinds[] = {
        { "CIColorInvert", {}, false, invertStep },
        { "CIColorControls",
            { { { "inputSaturation", 1 }, { "inputBrightness", 0 }, { "inputContrast", 1 } } },
            false, controlsStep },
        { "CIColorMonochrome", { { { "inputIntensity", 1 } } }, true, monochromeStep },
        { "CISepiaTone", { { { "inputIntensity", 1 } } }, false, sepiaStep },
        { "CIGaussianBlur", { { { "inputRadius", 10 } } }, false, blurStep },
    };

    const FilterKind* kindNamed(const NSString* name)
    {
        const std::string text = name ? utf8Of(name) : std::string();
        for (const FilterKind& kind : kKinds) {
            if (text == kind.name)
                return &kind;
        }
        return nullptr;
    }

}

template <> struct CIFilter::Methods<struct All> {

    static Ref<CIFilter> withName(Class& self, NSString* name)
    {
        const FilterKind* const kind = kindNamed(name);
        if (!kind)
            return nullptr;
        Ref<CIFilter> filter = cast<CIFilter>(self.send<"new", Ref<NSObject>>());
        filter->kind_ = kind;
        filter->inputs_ = make<NSMutableDictionary>();
        return filter;
    }
    static Ref<CIFilter> withParameters(Class& self, NSString* name, NSDictionary* parameters)
    {
        Ref<CIFilter> filter = withName(self, name);
        maybe(filter)->setDefaults();
        if (filter && parameters)
            setValuesForKeysWithDictionary(filter, parameters);
        return filter;
    }

    static Ref<NSString> name(CIFilter& self)
    {
        return self.kind_ ? stringFrom(self.kind_->name) : nullptr;
    }
    static std::vector<std::string> keysOf(const CIFilter& self)
    {
        std::vector<std::string> keys;
        if (!self.kind_)
            return keys;
        keys.emplace_back("inputImage");
        if (self.kind_->hasColor)
            keys.emplace_back("inputColor");
        for (const Input& input : self.kind_->numbers) {
            if (input.key)
                keys.emplace_back(input.key);
        }
        return keys;
    }
    static bool hasInput(const CIFilter& self, const NSString* key)
    {
        const std::vector<std::string> keys = keysOf(self);
        return key && std::find(keys.begin(), keys.end(), utf8Of(key)) != keys.end();
    }
    static Ref<NSArray> inputKeys(CIFilter& self)
    {
        std::vector<Ref<NSString>> texts;
        std::vector<NSObject*> bare;
        for (const std::string& key : keysOf(self)) {
            texts.push_back(stringFrom(key));
            bare.push_back(texts.back().get());
        }
        return NSArray::cls().arrayWithObjects_count(bare.data(), bare.size());
    }
    static Ref<NSArray> outputKeys(CIFilter&)
    {
        return NSArray::cls().arrayWithObject(kCIOutputImageKey);
    }

    static void setDefaults(CIFilter& self)
    {
        if (!self.kind_)
            return;
        for (const Input& input : self.kind_->numbers) {
            if (input.key)
                self.inputs_->setObject_forKey(
                    NSNumber::cls().numberWithDouble(input.standard).get(),
                    stringFrom(input.key).get());
        }
        if (self.kind_->hasColor)
            self.inputs_->setObject_forKey(CIColor::cls()
                                               .colorWithRed_green_blue(kStandardColor.red,
                                                   kStandardColor.green, kStandardColor.blue)
                                               .get(),
                kCIInputColorKey);
    }
    static void setValue(CIFilter& self, NSObject* value, NSString* key)
    {
        if (!hasInput(self, key))
            return setValue_forUndefinedKey(self, value, key);
        if (value)
            self.inputs_->setObject_forKey(value, key);
        else
            self.inputs_->removeObjectForKey(key);
    }
    static Ref<NSObject> valueFor(CIFilter& self, NSString* key)
    {
        if (hasInput(self, key))
            return self.inputs_->objectForKey(key);
        if (key && key->isEqual(kCIOutputImageKey.get()))
            return self.outputImage();
        return super<CIFilter, "valueForKey:", Ref<NSObject>>(self, key);
    }

    template <class T> static Ref<T> input(CIFilter& self, NSString* key)
    {
        Ref<NSObject> value = maybe(self.inputs_)->objectForKey(key);
        return value && value->isKindOfClass(T::cls()) ? cast<T>(std::move(value)) : nullptr;
    }
    static Inputs inputsOf(CIFilter& self)
    {
        Inputs inputs { {}, kStandardColor };
        for (std::size_t i = 0; i < inputs.numbers.size(); ++i) {
            const Input& wanted = self.kind_->numbers[i];
            if (!wanted.key)
                continue;
            const auto number = input<NSNumber>(self, stringFrom(wanted.key).get());
            const double value = number ? number->doubleValue() : wanted.standard;
            inputs.numbers[i] = std::isfinite(value) ? value : wanted.standard;
        }
        if (const auto color = input<CIColor>(self, kCIInputColorKey))
            inputs.color = { color->red(), color->green(), color->blue(), color->alpha() };
        return inputs;
    }
    static Ref<CIImage> outputImage(CIFilter& self)
    {
        const Ref<CIImage> image = input<CIImage>(self, kCIInputImageKey);
        if (!image)
            return nullptr;
        FilterStep step = self.kind_->step(inputsOf(self));
        const auto reach = static_cast<double>(step.reach);
        return FilterAccess::derived(
            image.get(), CGRectInset(image->extent(), -reach, -reach), std::move(step));
    }

    static void table(Builder& t)
    {
        t.classMethods({
            { "filterWithName:", imp<withName> },
            { "filterWithName:withInputParameters:", imp<withParameters> },
        });
        t.methods({
            { "name", imp<name> },
            { "inputKeys", imp<inputKeys> },
            { "outputKeys", imp<outputKeys> },
            { "setDefaults", imp<setDefaults> },
            { "setValue:forKey:", imp<setValue> },
            { "valueForKey:", imp<valueFor> },
            { "outputImage", imp<outputImage> },
        });
    }
};
BRINDLE_RECORD(CIFilter, All)

}
