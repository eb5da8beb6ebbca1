// SPDX-License-Identifier: Apache-2.0
#include <charconv>

#include "NSColorPrivate.h"
#include "foundation/CodingTable.h"
#include "foundation/Exceptions.h"
#include "foundation/NSError.h"
#include "foundation/NSString.h"
#include "runtime/Table.h"

namespace brindle {

// - Shape: "NSColorSpace" is 1 or 2 for calibrated and device RGB, with "NSRGB"; 3 or 4 for calibrated and device white, with
//   "NSWhite"; 6 for system colours, with "NSCatalogName" and "NSColorName"; 10 for patterns, with "NSImage". Numbers are text
//   such as "0.5 0.25 1", a NUL behind it; alpha stands last unless it is 1.
template <> struct NSColor::Methods<struct Coding> {

    enum Number : int {
        kCalibratedRGB = 1,
        kDeviceRGB = 2,
        kCalibratedWhite = 3,
        kDeviceWhite = 4,
        kCatalog = 6,
        kPattern = 10
    };

    static void encodeNumbers(NSColor& self, NSCoder* coder, NSString* key, std::size_t count)
    {
        const std::size_t written = self.components_[count - 1] == 1 ? count - 1 : count;
        std::string text;
        for (std::size_t i = 0; i < written; ++i) {
            char number[32];
            const auto end = std::to_chars(number, number + sizeof number, self.components_[i]).ptr;
            text += (i ? " " : "") + std::string(number, end);
        }
        coder->encodeBytes_length_forKey(text.c_str(), text.size() + 1, key);
    }
    static void encode(NSColor& self, NSCoder* coder)
    {
        const auto space
            = [&](Number number) { coder->encodeInt_forKey(number, "NSColorSpace"_ns); };
        switch (self.space_) {
        case Space::calibratedRGB:
        case Space::deviceRGB:
            space(self.space_ == Space::deviceRGB ? kDeviceRGB : kCalibratedRGB);
            return encodeNumbers(self, coder, "NSRGB"_ns, 4);
        case Space::calibratedWhite:
        case Space::deviceWhite:
            space(self.space_ == Space::deviceWhite ? kDeviceWhite : kCalibratedWhite);
            return encodeNumbers(self, coder, "NSWhite"_ns, 2);
        case Space::named: {
            space(kCatalog);
            coder->encodeObject_forKey(self.catalogNameComponent().get(), "NSCatalogName"_ns);
            coder->encodeObject_forKey(self.colorNameComponent().get(), "NSColorName"_ns);
            return;
        }
        case Space::pattern:
            space(kPattern);
            coder->encodeObject_forKey(self.pattern_.get(), "NSImage"_ns);
            return;
        }
    }

    /// Reads up to `count` numbers; alpha, the last one, may be missing.
    static bool decodeNumbers(NSColor& self, NSCoder* coder, NSString* key, std::size_t count)
    {
        NSUInteger length = 0;
        const auto* at
            = reinterpret_cast<const char*>(coder->decodeBytesForKey_returnedLength(key, &length));
        const char* const end = at + length;
        self.components_[count - 1] = 1;
        std::size_t read = 0;
        for (; at != end && *at && read < count; ++read) {
            while (at != end && *at == ' ')
                ++at;
            double number = 0;
            const auto [rest, error] = std::from_chars(at, end, number);
            if (error != std::errc())
                return false;
            self.components_[read] = colors::unit(number);
            at = rest;
        }
        return read + 1 >= count;
    }
    static Ref<NSColor> systemColor(NSCoder* coder)
    {
        const Ref<NSColor> known = NSColor::cls().colorWithCatalogName_colorName(
            "System"_ns, decode<NSString>(coder, "NSColorName"_ns).get());
        if (known)
            return known;
        // Another system's colour may come with how it looked there.
        return decode<NSColor>(coder, "NSColor"_ns);
    }
    static Ref<NSObject> initWithCoder(NSColor& self, NSCoder* coder)
    {
        const auto numbers = [&](Space space, NSString* key, std::size_t count) -> Ref<NSObject> {
            self.space_ = space;
            return decodeNumbers(self, coder, key, count) ? &self : refuse(coder);
        };
        switch (coder->decodeIntForKey("NSColorSpace"_ns)) {
        case kCalibratedRGB:
            return numbers(Space::calibratedRGB, "NSRGB"_ns, 4);
        case kDeviceRGB:
            return numbers(Space::deviceRGB, "NSRGB"_ns, 4);
        case kCalibratedWhite:
            return numbers(Space::calibratedWhite, "NSWhite"_ns, 2);
        case kDeviceWhite:
            return numbers(Space::deviceWhite, "NSWhite"_ns, 2);
        case kCatalog: {
            const Ref<NSColor> color = systemColor(coder);
            return color && color != &self ? Ref<NSObject>(color) : refuse(coder);
        }
        case kPattern:
            return pattern(coder);
        default:
            return refuse(coder);
        }
    }
    static Ref<NSObject> pattern(NSCoder* coder)
    {
        Class* const image = objc_getClass("NSImage");
        const Ref<NSObject> decoded
            = image ? coder->decodeObjectOfClass_forKey(image, "NSImage"_ns) : nullptr;
        if (!decoded || !decoded->isKindOfClass(image))
            return refuse(coder);
        return NSColor::cls().send<"colorWithPatternImage:", Ref<NSObject>>(decoded.get());
    }
    static Ref<NSObject> refuse(NSCoder* coder)
    {
        Ref<NSError> error;
        reportError(&error, NSCoderReadCorruptError,
            { { NSDebugDescriptionErrorKey,
                "*** -[NSKeyedUnarchiver decodeObjectForKey:]: a color makes no sense"_ns } });
        coder->failWithError(error.get());
        return nullptr;
    }

    static void table(Builder& t) { declareCoding<encode, initWithCoder>(t); }
};
BRINDLE_RECORD(NSColor, Coding)

}
