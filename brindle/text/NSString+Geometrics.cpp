// SPDX-License-Identifier: Apache-2.0
#include "NSString+Geometrics.h"

#include <limits>

#include "NSAttributedString+Geometrics.h"
#include "appkit/NSStringDrawing.h"
#include "foundation/NSDictionary.h"
#include "foundation/NSLog.h"
#include "foundation/NSObjCRuntime.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    constexpr float kAnyLength = std::numeric_limits<float>::max();

    struct StringGeometrics {

        static NSSize sizeWithAttributes(
            NSString& self, float width, float height, NSDictionary* attributes)
        {
            const Ref<NSAttributedString> string
                = alloc<NSAttributedString>()->initWithString_attributes(&self, attributes);
            return sizeForWidth_height(string, width, height);
        }
        static float heightWithAttributes(NSString& self, float width, NSDictionary* attributes)
        {
            return static_cast<float>(
                sizeForWidth_height_attributes(self, width, kAnyLength, attributes).height);
        }
        static float widthWithAttributes(NSString& self, float height, NSDictionary* attributes)
        {
            return static_cast<float>(
                sizeForWidth_height_attributes(self, kAnyLength, height, attributes).width);
        }

        static NSSize sizeWithFont(NSString& self, float width, float height, NSFont* font)
        {
            if (!font) {
                NSLog("[%@ %@]: Internal Error 561-3810: Nil font"_ns,
                    NSStringFromClass(self.classObject()),
                    NSStringFromSelector(selector<"sizeForWidth:height:font:">));
                return NSZeroSize;
            }
            const Ref<NSDictionary> attributes
                = NSDictionary::cls().dictionaryWithObject_forKey(font, NSFontAttributeName);
            return sizeForWidth_height_attributes(self, width, height, attributes.get());
        }
        static float heightWithFont(NSString& self, float width, NSFont* font)
        {
            return static_cast<float>(
                sizeForWidth_height_font(self, width, kAnyLength, font).height);
        }
        static float widthWithFont(NSString& self, float height, NSFont* font)
        {
            return static_cast<float>(
                sizeForWidth_height_font(self, kAnyLength, height, font).width);
        }

        static void table(Builder& t)
        {
            t.methods({
                { "sizeForWidth:height:attributes:", imp<sizeWithAttributes> },
                { "heightForWidth:attributes:", imp<heightWithAttributes> },
                { "widthForHeight:attributes:", imp<widthWithAttributes> },
                { "sizeForWidth:height:font:", imp<sizeWithFont> },
                { "heightForWidth:font:", imp<heightWithFont> },
                { "widthForHeight:font:", imp<widthWithFont> },
            });
        }
    };

}
BRINDLE_EXTENSION(NSString, StringGeometrics)

}
