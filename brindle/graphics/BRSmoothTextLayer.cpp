// SPDX-License-Identifier: Apache-2.0
#include "BRSmoothTextLayer.h"

#include <limits>

#include "CALayer+BRExtension.h"
#include "appkit/NSColor.h"
#include "appkit/NSFont.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct BRSmoothTextLayer::Methods<struct Smoothing> {

    static Ref<CALayer> layer(Class& self)
    {
        const Ref<CALayer> fresh
            = cast<CALayer>(Meta { { &self } }.alloc())->send<"init", Ref<CALayer>>();
        maybe(fresh)->setBackgroundColor(NSColor::cls().clearColor()->CGColor().get());
        return fresh;
    }

    static void drawInContext(BRSmoothTextLayer& self, CGContextRef context)
    {
        CGContextSetFillColorWithColor(context, self.backgroundColor().get());
        CGContextFillRect(context, self.bounds());
        CGContextSetShouldSmoothFonts(context, true);
        super<BRSmoothTextLayer, "drawInContext:">(self, context);
    }

    static Ref<NSFont> namedFont(BRSmoothTextLayer& self)
    {
        const Ref<NSObject> name = self.font();
        const bool isName = name && name->isKindOfClass(NSString::cls());
        return NSFont::cls().fontWithName_size(
            isName ? static_cast<NSString*>(name.get()) : nullptr, self.fontSize());
    }
    static void sizeInWidth(BRSmoothTextLayer& self)
    {
        constexpr float kUnbounded = std::numeric_limits<float>::max();
        const auto width = static_cast<float>(frameSizeWidth(self));
        const Ref<NSObject> string = self.string();
        setFrameSize(self,
            maybe(string)->send<"sizeForWidth:height:font:", CGSize>(
                width, kUnbounded, namedFont(self).get()));
    }

    static void table(Builder& t)
    {
        t.classMethods({ { "layer", imp<layer> } });
        t.methods({
            { "drawInContext:", imp<drawInContext> },
            { "sizeInWidth", imp<sizeInWidth> },
        });
    }
};
BRINDLE_RECORD(BRSmoothTextLayer, Smoothing)

}
