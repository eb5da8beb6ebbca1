// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSParagraphStyle.h"
#include "foundation/StringConstant.h"

namespace brindle {

/// How text stands at a tab stop.
enum NSTextTabType : NSUInteger {
    NSLeftTabStopType = 0,
    NSRightTabStopType = 1,
    NSCenterTabStopType = 2,
    NSDecimalTabStopType = 3,
};

class NSCharacterSet;
class NSLocale;

/// Key of a tab's options: an NSCharacterSet. The text behind the tab stands at the stop as far as the first of these
/// characters; the rest follows.
inline constexpr StringConstant<"NSTabColumnTerminatorsAttributeName">
    NSTabColumnTerminatorsAttributeName;

/// A place on the line that a tab leads to. Never changes; equal by value.
///
/// A decimal stop is a right one whose column ends at the decimal separator: numbers stand with their separators, or their
/// ends where they have none, at the stop.
/// Thread: any.
class NSTextTab : public NSObject {
    BRINDLE_OBJECT(NSTextTab, NSObject)

public:
    struct Meta : NSObject::Meta {
        /// Answers what ends the columns of numbers: the decimal separator of a locale, of the user's for nil.
        Ref<NSCharacterSet> columnTerminatorsForLocale(NSLocale* locale) const
        {
            return send<"columnTerminatorsForLocale:", Ref<NSCharacterSet>>(locale);
        }
    };

    /// - location: points from the leading edge; what is no finite positive number counts as 0.
    /// - options: copied, may be nil; `NSTabColumnTerminatorsAttributeName` is obeyed and archived.
    Ref<NSTextTab> initWithTextAlignment_location_options(
        NSTextAlignment alignment, CGFloat location, NSDictionary* options)
    {
        return send<"initWithTextAlignment:location:options:", Ref<NSTextTab>>(
            alignment, location, options);
    }
    /// A decimal stop takes the separator that the user's locale has now; give the other operation
    /// `columnTerminatorsForLocale:` of another.
    Ref<NSTextTab> initWithType_location(NSTextTabType type, CGFloat location)
    {
        return send<"initWithType:location:", Ref<NSTextTab>>(type, location);
    }

    NSTextAlignment alignment() const { return send<"alignment", NSTextAlignment>(); }
    CGFloat location() const { return send<"location", CGFloat>(); }
    Ref<NSDictionary> options() const { return send<"options", Ref<NSDictionary>>(); }
    /// Answers the kind: a right stop whose options end its column is a decimal one.
    NSTextTabType tabStopType() const { return send<"tabStopType", NSTextTabType>(); }

private:
    NSTextAlignment alignment_ = NSTextAlignmentLeft;
    CGFloat location_ = 0;
    Ref<NSDictionary> options_;
};

}
