// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSParagraphStyle.h"

namespace brindle {

/// How text stands at a tab stop.
enum NSTextTabType : NSUInteger {
    NSLeftTabStopType = 0,
    NSRightTabStopType = 1,
    NSCenterTabStopType = 2,
    NSDecimalTabStopType = 3,
};

/// A place on the line that a tab leads to. Never changes; equal by value.
/// Thread: any.
class NSTextTab : public NSObject {
    BRINDLE_OBJECT(NSTextTab, NSObject)

public:
    /// - location: points from the leading edge; what is no finite positive number counts as 0.
    /// - options: kept, may be nil.
    Ref<NSTextTab> initWithTextAlignment_location_options(
        NSTextAlignment alignment, CGFloat location, NSDictionary* options)
    {
        return send<"initWithTextAlignment:location:options:", Ref<NSTextTab>>(
            alignment, location, options);
    }
    Ref<NSTextTab> initWithType_location(NSTextTabType type, CGFloat location)
    {
        return send<"initWithType:location:", Ref<NSTextTab>>(type, location);
    }

    NSTextAlignment alignment() const { return send<"alignment", NSTextAlignment>(); }
    CGFloat location() const { return send<"location", CGFloat>(); }
    Ref<NSDictionary> options() const { return send<"options", Ref<NSDictionary>>(); }
    NSTextTabType tabStopType() const { return send<"tabStopType", NSTextTabType>(); }

private:
    NSTextAlignment alignment_ = NSTextAlignmentLeft;
    CGFloat location_ = 0;
    Ref<NSDictionary> options_;
};

}
