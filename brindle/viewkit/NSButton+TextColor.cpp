// SPDX-License-Identifier: Apache-2.0
#include "NSButton+TextColor.h"

#include "appkit/NSAttributedString+Fixing.h"
#include "appkit/NSColor.h"
#include "appkit/NSStringDrawing.h"
#include "foundation/NSDictionary.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    struct TextColor {

        static Ref<NSColor> textColor(NSButton& self)
        {
            const Ref<NSAttributedString> title = self.attributedTitle();
            const NSRange first { 0, maybe(title)->length() > 0 ? 1u : 0u };
            const Ref<NSDictionary> attributes = fontAttributesInRange(title, first);
            if (!attributes)
                return NSColor::cls().controlTextColor();
            return cast<NSColor>(attributes->objectForKey(NSForegroundColorAttributeName));
        }
        static void setTextColor(NSButton& self, NSColor* color)
        {
            const Ref<NSMutableAttributedString> title
                = cast<NSMutableAttributedString>(maybe(self.attributedTitle())->mutableCopy());
            const NSRange whole { 0, maybe(title)->length() };
            maybe(title)->addAttribute_value_range(NSForegroundColorAttributeName, color, whole);
            fixAttributesInRange(title, whole);
            self.setAttributedTitle(title.get());
        }

        static void table(Builder& t)
        {
            t.methods({
                { "textColor", imp<textColor> },
                { "setTextColor:", imp<setTextColor> },
            });
        }
    };

}
BRINDLE_EXTENSION(NSButton, TextColor)

}
