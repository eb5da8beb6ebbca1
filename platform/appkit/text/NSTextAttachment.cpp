// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSTextAttachment.h"

#include "appkit/NSStringDrawing.h"
#include "foundation/CodingTable.h"
#include "foundation/NSDictionary.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct NSTextAttachment::Methods<struct Values> {

    static NSRect attachmentBounds(NSTextAttachment& self)
    {
        if (!NSIsEmptyRect(self.bounds_))
            return self.bounds_;
        if (!self.image_ || !self.image_->respondsToSelector(selector<"size">))
            return NSZeroRect;
        return { NSZeroPoint, self.image_->send<"size", NSSize>() };
    }

    static void encode(NSTextAttachment& self, NSCoder* coder)
    {
        coder->encodeObject_forKey(self.image_.get(), "NSImage"_ns);
        coder->encodeRect_forKey(self.bounds_, "NSBounds"_ns);
    }
    static Ref<NSObject> initWithCoder(NSTextAttachment& self, NSCoder* coder)
    {
        Class* const image = objc_getClass("NSImage");
        self.image_ = image ? coder->decodeObjectOfClass_forKey(image, "NSImage"_ns) : nullptr;
        self.bounds_ = coder->decodeRectForKey("NSBounds"_ns);
        return &self;
    }

    static void table(Builder& t)
    {
        declareCoding<encode, initWithCoder>(t);
        t.properties({
            property<&NSTextAttachment::image_>("image", nonatomic),
            property<&NSTextAttachment::bounds_>("bounds", nonatomic),
        });
        t.methods({
            { "attachmentBounds", imp<attachmentBounds> },
        });
    }
};
BRINDLE_RECORD(NSTextAttachment, Values)

namespace {

    struct Attachments {

        static Ref<NSAttributedString> withAttachment(Class&, NSTextAttachment* attachment)
        {
            const unichar unit = NSAttachmentCharacter;
            const Ref<NSString> text = stringFrom(std::u16string_view(&unit, 1));
            const Ref<NSDictionary> attributes = attachment
                ? NSDictionary::cls().dictionaryWithObject_forKey(
                    attachment, NSAttachmentAttributeName)
                : nullptr;
            return alloc<NSAttributedString>()->initWithString_attributes(
                text.get(), attributes.get());
        }

        static void table(Builder& t)
        {
            t.classMethods({ { "attributedStringWithAttachment:", imp<withAttachment> } });
        }
    };

}
BRINDLE_EXTENSION(NSAttributedString, Attachments)

}
