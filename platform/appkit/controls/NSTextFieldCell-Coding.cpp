// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSTextFieldCell.h"
#include "appkit/NSColor.h"
#include "appkit/views/CodingPrivate.h"
#include "foundation/NSAttributedString.h"

#include <algorithm>

namespace brindle {

// - Shape: what an action cell writes, and the settings below; what is left as it was made is not written.
template <> struct NSTextFieldCell::Methods<struct Coding> {

    static void encode(NSTextFieldCell& self, NSCoder* coder)
    {
        super<NSTextFieldCell, "encodeWithCoder:">(self, coder);
        coder->encodeObject_forKey(self.textColor_.get(), "NSTextColor"_ns);
        coder->encodeObject_forKey(self.backgroundColor_.get(), "NSBackgroundColor"_ns);
        coder->encodeObject_forKey(self.placeholder_.get(), "NSPlaceholderString"_ns);
        coder->encodeObject_forKey(
            self.attributedPlaceholder_.get(), "NSPlaceholderAttributedString"_ns);
        coder->encodeInteger_forKey(self.maximumNumberOfLines_, "NSMaximumNumberOfLines"_ns);
        coder->encodeInteger_forKey(
            static_cast<NSInteger>(self.bezelStyle_), "NSTextBezelStyle"_ns);
        coder->encodeBool_forKey(self.drawsBackground_, "NSDrawsBackground"_ns);
    }
    static Ref<NSObject> initWithCoder(NSTextFieldCell& self, NSCoder* coder)
    {
        Ref<NSObject> made = super<NSTextFieldCell, "initWithCoder:", Ref<NSObject>>(self, coder);
        self.textColor_ = decode<NSColor>(coder, "NSTextColor"_ns);
        self.backgroundColor_ = decode<NSColor>(coder, "NSBackgroundColor"_ns);
        self.placeholder_ = decode<NSString>(coder, "NSPlaceholderString"_ns);
        self.attributedPlaceholder_
            = decode<NSAttributedString>(coder, "NSPlaceholderAttributedString"_ns);
        self.maximumNumberOfLines_
            = std::max<NSInteger>(coder->decodeIntegerForKey("NSMaximumNumberOfLines"_ns), 0);
        self.bezelStyle_ = coder->decodeIntegerForKey("NSTextBezelStyle"_ns) == 1
            ? NSTextFieldRoundedBezel
            : NSTextFieldSquareBezel;
        self.drawsBackground_ = coder->decodeBoolForKey("NSDrawsBackground"_ns);
        return made;
    }

    static void table(Builder& t) { extendCoding<encode, initWithCoder>(t); }
};
BRINDLE_RECORD(NSTextFieldCell, Coding)

}
