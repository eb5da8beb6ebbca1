// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "foundation/NSAttributedString.h"
#include "foundation/NSGeometry.h"

namespace brindle {

/// The character that stands in a text for an attachment.
enum : unichar { NSAttachmentCharacter = 0xFFFC };

/// A picture that stands in a text like a letter: the value of `NSAttachmentAttributeName`.
/// Thread: main.
class NSTextAttachment : public NSObject {
    BRINDLE_OBJECT(NSTextAttachment, NSObject)

public:
    /// Answers the picture, an object with `size` and `drawInRect:`; nil draws nothing.
    Ref<NSObject> image() const { return send<"image", Ref<NSObject>>(); }
    void setImage(NSObject* image) { send<"setImage:">(image); }
    /// Where the picture stands: its origin from the pen on the baseline, y up. Empty means: on the baseline, in its own size.
    NSRect bounds() const { return send<"bounds", NSRect>(); }
    void setBounds(NSRect bounds) { send<"setBounds:">(bounds); }

    /// Answers `bounds`, or the picture's own size on the baseline where they are empty.
    NSRect attachmentBounds() const { return send<"attachmentBounds", NSRect>(); }

private:
    Ref<NSObject> image_;
    NSRect bounds_ {};
};

/// Answers a text of one character that stands for the attachment.
inline Ref<NSAttributedString> attributedStringWithAttachment(
    To<Class> cls, NSTextAttachment* attachment)
{
    return cls.send<"attributedStringWithAttachment:", Ref<NSAttributedString>>(attachment);
}

}
