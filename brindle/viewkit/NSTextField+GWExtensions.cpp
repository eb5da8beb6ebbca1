// SPDX-License-Identifier: Apache-2.0
#include "NSTextField+GWExtensions.h"

#include "NSView+MovingAndSizing.h"
#include "appkit/NSStringDrawing.h"
#include "foundation/NSDictionary.h"
#include "runtime/Table.h"
#include "text/NSAttributedString+Geometrics.h"

#include <algorithm>

namespace brindle {

namespace {

    struct GWExtensions {

        static void sizeHeight(NSTextField& self)
        {
            const auto width = static_cast<float>(frameSizeWidth(self));
            setFrameSizeHeight(self, heightForWidth(self.attributedStringValue(), width));
        }
        static void sizeWidth(NSTextField& self)
        {
            constexpr double kPadding = 10;
            constexpr double kLeast = 22;
            const Ref<NSString> text = self.stringValue();
            const bool hasText = maybe(text)->length() > 0;
            self.setDrawsBackground(hasText);
            double width = kLeast;
            if (hasText) {
                const Ref<NSDictionary> attributes
                    = self.attributedStringValue()->attributesAtIndex_effectiveRange(0, nullptr);
                width
                    = std::max(sizeWithAttributes(text, attributes.get()).width + kPadding, kLeast);
            }
            setFrameSizeWidth(self, width);
        }

        static void table(Builder& t)
        {
            t.methods({
                { "sizeHeightToFitWidth", imp<sizeHeight> },
                { "sizeToFitNewWidth", imp<sizeWidth> },
            });
        }
    };

}
BRINDLE_EXTENSION(NSTextField, GWExtensions)

}
