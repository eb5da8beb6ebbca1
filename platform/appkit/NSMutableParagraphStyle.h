// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSParagraphStyle.h"

namespace brindle {

/// A paragraph style that can be changed. Text keeps what it is given: copy a style before it goes on changing.
///
/// Numbers that are not finite count as 0, and so do negative ones where only a size makes sense.
/// Thread: one at a time.
class NSMutableParagraphStyle : public NSParagraphStyle {
    BRINDLE_OBJECT(NSMutableParagraphStyle, NSParagraphStyle)

public:
    void setAlignment(NSTextAlignment alignment) { send<"setAlignment:">(alignment); }
    void setLineBreakMode(NSLineBreakMode mode) { send<"setLineBreakMode:">(mode); }
    void setBaseWritingDirection(NSWritingDirection direction)
    {
        send<"setBaseWritingDirection:">(direction);
    }
    void setLineSpacing(CGFloat points) { send<"setLineSpacing:">(points); }
    void setParagraphSpacing(CGFloat points) { send<"setParagraphSpacing:">(points); }
    void setParagraphSpacingBefore(CGFloat points) { send<"setParagraphSpacingBefore:">(points); }
    void setLineHeightMultiple(CGFloat factor) { send<"setLineHeightMultiple:">(factor); }
    void setMinimumLineHeight(CGFloat points) { send<"setMinimumLineHeight:">(points); }
    void setMaximumLineHeight(CGFloat points) { send<"setMaximumLineHeight:">(points); }
    void setFirstLineHeadIndent(CGFloat points) { send<"setFirstLineHeadIndent:">(points); }
    void setHeadIndent(CGFloat points) { send<"setHeadIndent:">(points); }
    void setTailIndent(CGFloat points) { send<"setTailIndent:">(points); }
    void setDefaultTabInterval(CGFloat points) { send<"setDefaultTabInterval:">(points); }
    void setHyphenationFactor(float factor) { send<"setHyphenationFactor:">(factor); }
    void setTighteningFactorForTruncation(float factor)
    {
        send<"setTighteningFactorForTruncation:">(factor);
    }
    void setAllowsDefaultTighteningForTruncation(bool allowed)
    {
        send<"setAllowsDefaultTighteningForTruncation:">(allowed);
    }
    void setHeaderLevel(NSInteger level) { send<"setHeaderLevel:">(level); }

    /// Takes `NSTextTab` objects in any order; nil restores the customary ones.
    /// - Raises: `NSInvalidArgumentException` for any other kind of object.
    void setTabStops(NSArray* tabStops) { send<"setTabStops:">(tabStops); }
    void addTabStop(NSTextTab* tab) { send<"addTabStop:">(tab); }
    void removeTabStop(NSTextTab* tab) { send<"removeTabStop:">(tab); }

    /// Takes over everything; nil changes nothing.
    void setParagraphStyle(NSParagraphStyle* style) { send<"setParagraphStyle:">(style); }
};

}
