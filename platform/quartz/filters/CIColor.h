// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "quartz/CGColor.h"

namespace brindle {

/// A colour as an input of filters: four numbers, usually 0 to 1.
/// Thread: any.
class CIColor : public NSObject {
    BRINDLE_OBJECT(CIColor, NSObject)

public:
    struct Meta : NSObject::Meta {
        Ref<CIColor> colorWithRed_green_blue(CGFloat red, CGFloat green, CGFloat blue) const
        {
            return send<"colorWithRed:green:blue:", Ref<CIColor>>(red, green, blue);
        }
        Ref<CIColor> colorWithRed_green_blue_alpha(
            CGFloat red, CGFloat green, CGFloat blue, CGFloat alpha) const
        {
            return send<"colorWithRed:green:blue:alpha:", Ref<CIColor>>(red, green, blue, alpha);
        }
    };

    CGFloat red() const { return send<"red", CGFloat>(); }
    CGFloat green() const { return send<"green", CGFloat>(); }
    CGFloat blue() const { return send<"blue", CGFloat>(); }
    CGFloat alpha() const { return send<"alpha", CGFloat>(); }

private:
    CGFloat red_ = 0;
    CGFloat green_ = 0;
    CGFloat blue_ = 0;
    CGFloat alpha_ = 1;
};

}
